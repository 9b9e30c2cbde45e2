// The Bezier chain tool works the way pen tools of vector editors do: a
// press sets an anchor, dragging before the release pulls out its tangent,
// a double click or Enter ends the chain and Escape drops it. Node adding
// and removing work on whole pieces, so the chain always stays 1 + 3n
// points.
#include "canvas/tmycad.h"
#include "shapes/bezier.h"

namespace lumatrex {

void TMyCAD::PressBezier(TShiftState shift, const TPoint& p) {
  auto* chain = dynamic_cast<TMyPolyBezier*>(currentShape_);
  if (shift & ssDouble) {
    // The first click of the double click has set the last anchor.
    mouseIsDown_ = false;
    FinishBezier();
    return;
  }
  chain->AddPointByMouse(p);
  startPoint_ = currentPoint_ = p;
}

void TMyCAD::MoveBezier(const TPoint& p) {
  auto* chain = dynamic_cast<TMyPolyBezier*>(currentShape_);
  ErasePreview();
  if (mouseIsDown_) chain->SetTangentByMouse(p);
  currentPoint_ = p;
  DrawPreview();
}

void TMyCAD::ReleaseBezier(const TPoint& p) {
  auto* chain = dynamic_cast<TMyPolyBezier*>(currentShape_);
  gestureChanged_ = true;
  if (p != startPoint_) chain->SetTangentByMouse(p);
  currentPoint_ = p;
  DrawPreview();
}

void TMyCAD::FinishBezier() {
  auto* chain = dynamic_cast<TMyPolyBezier*>(currentShape_);
  if (!chain) return;
  ErasePreview();
  if (!chain->EndDrawing()) return CancelGesture();
  SetModified(true);
  FinishDrawnShape();
}

bool TMyCAD::ReleaseBezierNodeRemoving(TMyShape* shape) {
  auto* chain = dynamic_cast<TMyPolyBezier*>(shape);
  if (!chain) return false;
  const std::int32_t hot = chain->InWhichHot(startPoint_);
  if (hot < 0) return true;
  std::int32_t result = hot;
  // Two pieces at least must remain joinable into one.
  if (chain->GetPointsCount() < 7) {
    result = -8;
  } else {
    PushtoUndoRedoShapeList({chain}, ACT_CHANGE);
    chain->RemovePieceAt(hot);
    SetModified(true);
  }
  if (OnNodeDeleted) OnNodeDeleted(this, shape, result);
  Invalidate();
  return true;
}

bool TMyCAD::ReleaseBezierNodeAdding(TMyShape* shape, const TPoint& p) {
  auto* chain = dynamic_cast<TMyPolyBezier*>(shape);
  if (!chain) return false;
  // The step must hold the chain as it was, so the split is tried first and
  // recorded only when it hit the curve.
  const TArrMyPoint before = chain->Points;
  const TMyPoint centre = chain->CenterPoint;
  std::int32_t index = chain->InsertPieceAt(p);
  if (index < 0) return true;
  const TArrMyPoint after = chain->Points;
  chain->Points = before;
  chain->CenterPoint = centre;
  PushtoUndoRedoShapeList({chain}, ACT_CHANGE);
  chain->Points = after;
  chain->CenterPoint = chain->ComputeCenterPoint(4);
  chain->Changed();
  SetModified(true);
  Invalidate();
  TMyShape* reported = chain;
  if (OnNodeAdded) OnNodeAdded(this, reported, index);
  return true;
}

}  // namespace lumatrex
