// The mouse state machine of the canvas: a press decides what the gesture is
// (drawing, resizing, rotating, dragging, moving a text point, rubber band),
// moves preview it with XOR drawing on the control, and the release commits
// the change as one undo step and repaints.
#include <QKeyEvent>
#include <QToolTip>
#include <algorithm>
#include <cmath>
#include <cstring>

#include "canvas/tmycad.h"
#include "platform/hooks.h"
#include "shapes/bezier.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/drawing_modes.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

bool IsClass(const TMyShape* shape, const char* name) { return shape && std::strcmp(shape->ClassName(), name) == 0; }

bool IsDrawingTool(TDrawTool tool) {
  switch (tool) {
    case SpSelecting:
    case SpRotateSelecting:
    case SpClose:
    case SpPolylinePolygonPointRemoving:
    case SpPolylinePolygonPointAdding:
    case SpDragWhole:
    case SpBrowse: return false;
    default: return true;
  }
}

TActionTools ActionOfTool(TDrawTool tool) {
  switch (tool) {
    case SpSelecting: return dtSelecting;
    case SpRotateSelecting: return dtRotateSelecting;
    case SpPolylinePolygonPointRemoving: return dtPolylinePolygonPointRemoving;
    case SpPolylinePolygonPointAdding: return dtPolylinePolygonPointAdding;
    case SpDragWhole: return dtDragWhole;
    case SpClose: return dtClose;
    case SpBrowse: return dtBrowse;
    default: return dtDrawing;
  }
}

TPoint Rounded(const TMyPoint& p) { return MyPtToPt(p); }

}  // namespace

// ---------------------------------------------------------------------------
// Tools

void TMyCAD::SetShapeTool(TDrawTool value) {
  // A preview goes with the tool it was drawn for, and a dropped unfinished
  // shape (a free-hand stroke is drawn as it grows) with its area.
  ErasePreview();
  EraseRubberBand();
  if (IsDrawingTool(value) && pendingShape_) InvalidateZoomed(pendingShape_->GetBoundsInZoom());
  ClearAllLinkHot();
  const bool crosses = LinkCrossesShown();
  shapeTool_ = value;
  actionTool_ = ActionOfTool(value);
  if (IsDrawingTool(value)) {
    pendingShape_.reset();
    currentShape_ = nullptr;
  }
  if (crosses != LinkCrossesShown()) Invalidate();
  // Handles look different while rotating.
  InvalidateHandles(working_);
}

void TMyCAD::SetRotateConstraintDegree(std::int32_t value) {
  if (value >= 0) rotateConstraintDegree_ = value;
}

// ---------------------------------------------------------------------------
// Press

void TMyCAD::MouseDown(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y) {
  TCustomControl::MouseDown(button, shift, x, y);
  if (textEditor_) CommitTextEdit();
  setFocus();
  if (actionTool_ == dtClose) return;
  if ((shift & ssDouble) && button == mbLeft && actionTool_ == dtSelecting &&
      (OpenTextEditorAt(Point(x, y)) || EnterGroupAt(Point(x, y))))
    return;
  if (actionTool_ != dtDrawing && (shift & ssDouble)) return;
  if (button != mbLeft) return;
  ErasePreview();
  startPoint_ = currentPoint_ = Point(x, y);
  mouseIsDown_ = true;
  clickedChildShape_ = shapeBeneath_ = nullptr;
  if (actionTool_ == dtDrawing) return PressWhileDrawing(shift, x, y);
  if (actionTool_ != dtSelecting && actionTool_ != dtRotateSelecting && actionTool_ != dtBrowse) return;
  SetSelectShapeMode();
  savedActionTool_ = actionTool_;
  if (PressOnHotPoint(x, y)) return;
  if (PressOnSelectedBody(shift, x, y)) return;
  PressOnUnselected(shift, x, y);
}

TPoint TMyCAD::DrawingAnchor() const {
  const std::int32_t count = currentShape_->GetPointsCount();
  if (count == 0) return startPoint_;
  const bool fromLast = dynamic_cast<const TMyPolyLine*>(currentShape_) != nullptr ||
                        dynamic_cast<const TMyBLine*>(currentShape_) != nullptr;
  return Rounded(currentShape_->GetPointInZoom(fromLast ? count - 1 : 0));
}

void TMyCAD::PressWhileDrawing(TShiftState shift, std::int32_t x, std::int32_t y) {
  SetDragResizeRotateShapeMode(Canvas());
  RemoveAllWorkingShapes();
  savedActionTool_ = returnToSelecting_ ? dtSelecting : dtDrawing;
  SnapXY(x, y);
  startPoint_ = currentPoint_ = Point(x, y);
  if (!currentShape_) {
    pendingShape_ = CreateShapeBySpTool(shapeTool_);
    if (!pendingShape_) return;
    pendingShape_->ShapeNo = GetShapesCount();
    currentShape_ = pendingShape_.get();
  }
  TPoint p = Point(x, y);
  if (dynamic_cast<TMyPolyBezier*>(currentShape_)) return PressBezier(shift, p);
  if (currentShape_->GetPointsCount() > 0) DrawMakeSquareorHV(shift, currentShape_, DrawingAnchor(), p);
  TrackDrawnEnd(p);
  currentShape_->AddPointByMouse(p);
  startPoint_ = p;
  currentPoint_ = p;
}

// Walks the working shapes in selection order (a scan bounded by the
// selection, not the drawing). With many of them, a shape whose indexed box
// (which holds its handles and hit areas) and whose members' boxes all miss P
// is passed over: none of its tests could succeed there, and it gets the
// "no handle" its own test would have given.
bool TMyCAD::PressOnHotPoint(std::int32_t x, std::int32_t y) {
  const TPoint p = Point(x, y);
  const bool many = working_.size() > 64;
  const TMyRect at{static_cast<float>(x), static_cast<float>(y), static_cast<float>(x), static_cast<float>(y)};
  auto mayHit = [&](const TMyShape* s) {
    const TMyRect box = GetIndexedBounds(s);
    return box.Left <= at.Right && at.Left <= box.Right && box.Top <= at.Bottom && at.Top <= box.Bottom;
  };
  if (many) SyncIndex();
  for (TMyShape* shape : working_) {
    currentShape_ = shape;
    if (IsClass(shape, "TMyFreeLine")) break;
    if (many && !mayHit(shape) &&
        std::none_of(shape->ChildShapes.begin(), shape->ChildShapes.end(),
                     [&](std::int32_t no) { return GetShapeByNo(no) && mayHit(GetShapeByNo(no)); })) {
      shape->CurrentHot = -1;
      continue;
    }
    for (const std::int32_t no : shape->ChildShapes)
      if (TMyShape* child = GetShapeByNo(no); child && child->IsClickedMe(Canvas(), p)) clickedChildShape_ = child;
    const std::int32_t hot = shape->InWhichHot(p);
    if (hot >= 0) {
      if (!dynamic_cast<TMyLinkLine*>(shape) && hot < 4) startPoint_ = Rounded(shape->GetPointInZoom(hot));
      if (actionTool_ == dtSelecting && resizeEnable_) actionTool_ = dtResizing;
      if (LinkCrossesShown()) {
        Invalidate();
        PaintInvalidated();
      }
      if (actionTool_ == dtRotateSelecting && rotateEnable_ && shape->GetRotateEnable()) actionTool_ = dtRotating;
      return true;
    }
    const bool hasText = !shape->GetInfoText().empty() || !shape->GetCaption().empty();
    if (hasText && shape->InTextPointHot(p) && !shape->GetLocked()) {
      startPoint_ = Rounded(shape->ZoomedValuePt(shape->TextoutPoint));
      if (actionTool_ == dtSelecting) actionTool_ = dtDraggingTextoutPoint;
      return true;
    }
  }
  currentShape_ = nullptr;
  return false;
}

bool TMyCAD::PressOnSelectedBody(TShiftState shift, std::int32_t x, std::int32_t y) {
  const TPoint p = Point(x, y);
  const TMyRect at{static_cast<float>(x), static_cast<float>(y), static_cast<float>(x), static_cast<float>(y)};
  // The first working shape, in selection order, that the press hits: only
  // shapes whose indexed box holds P can be hit.
  TMyShape* pressed = nullptr;
  IndexQuery(at, false, hits_);
  for (TMyShape* s : hits_) {
    const std::int32_t order = IsInWorkingShape(s);
    if (order == -1 || (pressed && order > IsInWorkingShape(pressed))) continue;
    if (IsClickedMeforShape(Canvas(), s, p)) pressed = s;
  }
  if (!pressed) return false;
  currentShape_ = pressed;
  if (shift & ssShift) {
    RemoveWorkingShape(pressed);
    currentShape_ = nullptr;
    return true;
  }
  const TMyRect box = GetShapesLTRBinZoom({pressed});
  const TPoint boxA = Point(static_cast<std::int32_t>(std::floor(box.Left)), static_cast<std::int32_t>(std::floor(box.Top)));
  const TPoint boxB = Point(static_cast<std::int32_t>(std::ceil(box.Right)), static_cast<std::int32_t>(std::ceil(box.Bottom)));
  const std::vector<TMyShape*> family = SubtreeOf(pressed);
  // The back-most other shape under P inside the pressed shape's box: the
  // one a click without a drag selects instead (candidates from the index,
  // in list order).
  IndexQuery(at, false, hits_);
  for (TMyShape* s : hits_) {
    if (s == pressed || std::find(family.begin(), family.end(), s) != family.end()) continue;
    if (!IsClickedMeforShape(Canvas(), s, p) || !IsInRegion(boxA, boxB, s)) continue;
    if (s->LayerId != currentLayerId_ && !operateAllLayer_) continue;
    shapeBeneath_ = GetRootParentShape(s);
    break;
  }
  if (actionTool_ != dtBrowse) actionTool_ = dtDragging;
  if (OnShapeSelected) OnShapeSelected(this, pressed, pressed);
  if (pressed->OnClick) pressed->OnClick(this);
  return true;
}

void TMyCAD::PressOnUnselected(TShiftState shift, std::int32_t x, std::int32_t y) {
  const TPoint p = Point(x, y);
  TMyShape* previous = working_.empty() ? nullptr : working_.front();
  if (previous && OnShapeSelected) OnShapeSelected(this, previous, nullptr);
  TMyShape* winner = PickShape(p, true);
  if (!winner) {
    RemoveAllWorkingShapes();
    return;
  }
  if (shift & ssShift) {
    AddWorkingShapes(winner);
    if (OnShapeSelected) OnShapeSelected(this, nullptr, winner);
    return;
  }
  RemoveAllWorkingShapes();
  AddWorkingShapes(winner);
  currentShape_ = winner;
  if (OnShapeSelected) OnShapeSelected(this, previous, winner);
  if (winner->OnClick) winner->OnClick(this);
  // The new handles show before a drag draws its preview.
  PaintInvalidated();
  if (actionTool_ != dtBrowse) actionTool_ = dtDragging;
}

// ---------------------------------------------------------------------------
// Move

void TMyCAD::MouseMove(TShiftState shift, std::int32_t x, std::int32_t y) {
  TCustomControl::MouseMove(shift, x, y);
  if (actionTool_ == dtDrawing) MoveWhileDrawing(shift, x, y);
  if ((actionTool_ == dtSelecting || actionTool_ == dtRotateSelecting) && !mouseIsDown_) HoverWhileSelecting(x, y);
  UpdateLabelXY(x, y);
  if (mouseIsDown_) MoveWithButton(shift, x, y);
  MoveCrossHair(Point(x, y));
}

void TMyCAD::MoveWhileDrawing(TShiftState shift, std::int32_t x, std::int32_t y) {
  if (!currentShape_ || (!mouseIsDown_ && currentShape_->GetPointsCount() == 0)) return;
  if (!dynamic_cast<TMyLinkLine*>(currentShape_)) SnapXY(x, y);
  TPoint p = Point(x, y);
  if (dynamic_cast<TMyPolyBezier*>(currentShape_)) return MoveBezier(p);
  if (auto* free = dynamic_cast<TMyFreeLine*>(currentShape_); free && mouseIsDown_) {
    // A free-hand stroke keeps every point the mouse passes.
    free->Drawing(Canvas(), currentPoint_, p);
    free->AddPointByMouse(p);
    currentPoint_ = p;
    return;
  }
  ErasePreview();
  DrawMakeSquareorHV(shift, currentShape_, DrawingAnchor(), p);
  TrackDrawnEnd(p);
  currentPoint_ = p;
  DrawPreview();
  UpdateLabelValue(currentShape_->GetLengthByUnit(DrawingAnchor(), currentPoint_));
}

void TMyCAD::HoverWhileSelecting(std::int32_t x, std::int32_t y) {
  const TPoint p = Point(x, y);
  const TMyRect at{static_cast<float>(x), static_cast<float>(y), static_cast<float>(x), static_cast<float>(y)};
  if (mouseEffect_ && !working_.empty()) {
    // The cursor of the first working shape, in selection order, that shows
    // one other than the cross over P. Only shapes whose box holds P (their
    // handles lie in it) can.
    IndexQuery(at, true, hits_);
    std::erase_if(hits_, [this](const TMyShape* s) { return IsInWorkingShape(s) == -1; });
    std::sort(hits_.begin(), hits_.end(),
              [this](const TMyShape* a, const TMyShape* b) { return IsInWorkingShape(a) < IsInWorkingShape(b); });
    TCursor cursor = crCross;
    for (TMyShape* s : hits_)
      if ((cursor = s->GetMouseCursor(x, y)) != crCross) break;
    SetCursor(cursor);
  }
  // The front-most top-level shape on a visible layer under P.
  TMyShape* over = nullptr;
  IndexQuery(at, true, hits_);
  for (auto it = hits_.rbegin(); it != hits_.rend() && !over; ++it)
    if (IsVisibleLayerByID((*it)->LayerId) && IsClickedMeforShape(Canvas(), *it, p)) over = *it;
  ShowHintEnterLeaveShape(over, over != nullptr, p);
}

void TMyCAD::MoveWithButton(TShiftState shift, std::int32_t x, std::int32_t y) {
  TPoint p = Point(x, y);
  switch (actionTool_) {
    case dtSelecting:
    case dtRotateSelecting:
      EraseRubberBand();
      currentPoint_ = p;
      ToggleRubberBand();
      return;
    case dtResizing:
      SnapXY(p.X, p.Y);
      ResizeMakeSquareorHV(shift, currentShape_, startPoint_, p);
      TrackLinkEnd(p);
      break;
    case dtDragging:
      if (snap_ || snapShape_) {
        const TRect box = SelectionBoxInZoom();
        SnapRect(Rect(box.Left + p.X - startPoint_.X, box.Top + p.Y - startPoint_.Y, box.Right + p.X - startPoint_.X,
                      box.Bottom + p.Y - startPoint_.Y),
                 p.X, p.Y);
      }
      if (lockBound_) p = ClampToBounds(p);
      GetMousePointbyDragMode(startPoint_, p);
      break;
    case dtRotating:
    case dtDraggingTextoutPoint:
    case dtDragWhole: break;
    default: return;
  }
  ErasePreview();
  if (actionTool_ == dtResizing) FireShapePoint(OnShapeMouseResizing, currentShape_, p);
  // A walk over the selection (not the drawing), and only when a host
  // listens: each dragged shape is reported.
  if (actionTool_ == dtDragging && OnShapeMouseDragging)
    for (TMyShape* s : working_) FireShapePoint(OnShapeMouseDragging, s, p);
  if (actionTool_ == dtRotating) FireShapePoint(OnShapeMouseRotating, currentShape_, p);
  currentPoint_ = p;
  DrawPreview();
}

// ---------------------------------------------------------------------------
// XOR previews

void TMyCAD::ErasePreview() {
  if (previewShown_) TogglePreview();
}

void TMyCAD::DrawPreview() {
  if (!previewShown_) TogglePreview();
}

// Draws the preview of the running gesture in XOR, so a second call with the
// same state erases it.
void TMyCAD::TogglePreview() {
  TCanvas& canvas = Canvas();
  SetDragResizeRotateShapeMode(canvas);
  previewShown_ = !previewShown_;
  switch (actionTool_) {
    case dtDrawing:
      if (currentShape_ && currentShape_->GetPointsCount() > 0)
        currentShape_->Drawing(canvas, DrawingAnchor(), currentPoint_);
      break;
    case dtResizing: currentShape_->Sizing(canvas, startPoint_, currentPoint_); break;
    case dtDragging:
      if (!dragTrace_) break;
      // The same shapes are drawn to take the preview off as to put it on.
      if (previewShown_) previewShapes_ = ShownWhileDragged(working_, false);
      for (TMyShape* s : previewShapes_) DraggingforShapes(canvas, s, startPoint_, currentPoint_);
      if (!previewShown_) previewShapes_.clear();
      break;
    case dtRotating: {
      const TMyPoint center = currentShape_->ZoomedValuePt(RotationCenterOf(currentShape_));
      RotatingforShapes(canvas, currentShape_, center, GetRotatedAngle(center, startPoint_, currentPoint_));
      break;
    }
    case dtDraggingTextoutPoint: {
      const std::int32_t h = hotSize_;
      canvas.Polygon({Point(currentPoint_.X - h, currentPoint_.Y), Point(currentPoint_.X, currentPoint_.Y - h),
                      Point(currentPoint_.X + h, currentPoint_.Y), Point(currentPoint_.X, currentPoint_.Y + h)});
      break;
    }
    case dtDragWhole:
      if (previewShown_) previewShapes_ = ShownWhileDragged({}, true);
      for (TMyShape* s : previewShapes_) DraggingforShapes(canvas, s, startPoint_, currentPoint_);
      if (!previewShown_) previewShapes_.clear();
      break;
    default: break;
  }
}

void TMyCAD::ToggleRubberBand() {
  if (currentPoint_ == startPoint_) return;
  SetSelectShapeMode();
  Canvas().Rectangle(PtToARect(startPoint_, currentPoint_));
  rubberBandShown_ = !rubberBandShown_;
}

void TMyCAD::EraseRubberBand() {
  if (rubberBandShown_) ToggleRubberBand();
}

// ---------------------------------------------------------------------------
// Release

void TMyCAD::MouseUp(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y) {
  if (!mouseIsDown_) return TCustomControl::MouseUp(button, shift, x, y);
  const TPoint p = Point(x, y);
  ErasePreview();
  if (ReleaseOnChild(p) || ReleaseClickThrough(p)) return TCustomControl::MouseUp(button, shift, x, y);
  switch (actionTool_) {
    case dtDrawing: ReleaseDrawing(button, shift, p); break;
    case dtResizing: ReleaseResizing(shift, p); break;
    case dtDragging: ReleaseDragging(p); break;
    case dtDraggingTextoutPoint:
      gestureChanged_ = true;
      if (currentShape_) {
        currentShape_->TextoutPoint = MyPoint(static_cast<float>(x / zoom_), static_cast<float>(y / zoom_));
        currentShape_->Changed();
      }
      actionTool_ = savedActionTool_;
      break;
    case dtRotating: ReleaseRotating(p); break;
    case dtPolylinePolygonPointRemoving: ReleaseNodeRemoving(); break;
    case dtPolylinePolygonPointAdding: ReleaseNodeAdding(p); break;
    case dtDragWhole: ReleaseDragWhole(p); break;
    case dtSelecting:
    case dtRotateSelecting:
      EraseRubberBand();
      currentPoint_ = p;
      ReleaseRubberBand();
      break;
    default: break;
  }
  EndGesture();
  TCustomControl::MouseUp(button, shift, x, y);
}

void TMyCAD::EndGesture() {
  mouseIsDown_ = false;
  if (gestureChanged_) SetModified(true);
  gestureChanged_ = false;
  SelectAllWorkingShapes();
}

bool TMyCAD::ReleaseOnChild(const TPoint& p) {
  if (p != startPoint_ || !clickedChildShape_) return false;
  bool accept = true;
  if (OnChildShapeSelected) OnChildShapeSelected(this, clickedChildShape_, accept);
  // An accepted member is selected on its own, past the root-group rule.
  if (accept) {
    InvalidateHandles(working_);
    SetWorking({clickedChildShape_});
    InvalidateHandles(working_);
  }
  clickedChildShape_ = nullptr;
  mouseIsDown_ = false;
  actionTool_ = savedActionTool_;
  PaintInvalidated();
  return true;
}

bool TMyCAD::ReleaseClickThrough(const TPoint& p) {
  if (!shapeBeneath_ || p != startPoint_) return false;
  TMyShape* pressed = currentShape_;
  RemoveAllWorkingShapes();
  AddWorkingShapes(shapeBeneath_);
  mouseIsDown_ = false;
  actionTool_ = dtSelecting;
  PaintInvalidated();
  if (OnShapeSelected) OnShapeSelected(this, pressed, shapeBeneath_);
  if (shapeBeneath_->OnClick) shapeBeneath_->OnClick(this);
  currentShape_ = shapeBeneath_;
  return true;
}

void TMyCAD::ReleaseDrawing(TMouseButton button, TShiftState shift, TPoint p) {
  if (button != mbLeft || !currentShape_) return;
  if (dynamic_cast<TMyPolyBezier*>(currentShape_)) return ReleaseBezier(p);
  gestureChanged_ = true;
  if (!dynamic_cast<TMyLinkLine*>(currentShape_)) SnapXY(p.X, p.Y);
  DrawMakeSquareorHV(shift, currentShape_, DrawingAnchor(), p);
  TrackDrawnEnd(p);
  // A press-drag-release draws the second point where the button comes up;
  // a click leaves it to the next press.
  if (p != startPoint_ && !dynamic_cast<TMyFreeLine*>(currentShape_)) currentShape_->AddPointByMouse(p);
  currentPoint_ = p;
  if (!currentShape_->IsDrawingFinished(button, startPoint_)) return;
  joinDrawnLine_ = !(shift & ssShift);
  FinishDrawnShape();
}

void TMyCAD::FinishDrawnShape() {
  std::unique_ptr<TMyShape> shape = std::move(pendingShape_);
  currentShape_ = nullptr;
  std::unique_ptr<TMyShape> joined = joinDrawnLine_ ? CreateAndDelete(*shape) : nullptr;
  const bool wasJoined = joined != nullptr;
  if (wasJoined) shape = std::move(joined);
  TMyShape* added = shape.get();
  added->ShapeNo = GetShapesCount();
  added->ShapeId = nextShapeId_;
  added->SetName("Shape" + std::to_string(added->ShapeId));
  added->SetCaption(added->GetName());
  added->CenterPoint = added->ComputeCenterPoint(4);
  added->TextoutPoint = added->CenterPoint;
  // Text and pictures read along P0-P1, so their frame starts upright at the
  // top-left whichever way it was dragged.
  if (dynamic_cast<TMyText*>(added) || dynamic_cast<TMyImage*>(added)) {
    const TMyRect box = GetPointsLTRB(added->Points);
    added->Points = {{box.Left, box.Top}, {box.Right, box.Top}, {box.Right, box.Bottom}, {box.Left, box.Bottom}};
  }
  ClearAllLinkHot();
  if (sideLinkPoints_) AddSideLinkPoints(*added);
  if (dynamic_cast<TMyImage*>(added) && !FillImageFromUserFile(added)) return Invalidate();
  if (!AddShape(std::move(shape), false, false)) {
    Invalidate();  // a free-hand stroke may be left on the screen
    return;
  }
  if (dynamic_cast<TMyLinkLine*>(added)) ChangeLinkShapes(added);
  RemoveAllWorkingShapes();
  AddWorkingShapes(added);
  TPoint end = currentPoint_;
  added->Drawed(startPoint_, end);
  std::int32_t count = GetShapesCount();
  TMyShape* reported = added;
  if (OnShapeAdded) OnShapeAdded(this, reported, count);
  PushtoUndoRedoShapeList({added}, "ACT_ADD");
  if (wasJoined) JoinNewestUndoSteps();  // the pieces' deletion and the join undo as one
  if (returnToSelecting_) {
    if (OnActionToolToSelecting) OnActionToolToSelecting(this);
    actionTool_ = savedActionTool_;
    shapeTool_ = SpSelecting;
  }
  Invalidate();
  if (dynamic_cast<TMyText*>(added) && !disableTextInput_) {
    EditTextInPlace(added);
    editedIsNew_ = true;
  }
}

void TMyCAD::ReleaseResizing(TShiftState shift, TPoint p) {
  gestureChanged_ = true;
  if (shapeTool_ != SpLinkLine) SnapXY(p.X, p.Y);
  PushtoUndoRedoShapeList({currentShape_}, "ACT_CHANGE");
  ResizeMakeSquareorHV(shift, currentShape_, startPoint_, p);
  const bool crosses = LinkCrossesShown();
  TrackLinkEnd(p);
  ClearAllLinkHot();
  SizeChangeValueforShapes(currentShape_, startPoint_, p);
  TPoint to = p;
  FireShapePoint(OnShapeMouseResized, currentShape_, to);
  if (to != p && dynamic_cast<TMyRectangle*>(currentShape_)) SizeChangeValueforShapes(currentShape_, p, to);
  ChangeLinkShapes(currentShape_);
  FireShapePoint(OnShapeMouseResizeFinished, currentShape_, to);
  actionTool_ = savedActionTool_;
  if (crosses) Invalidate();
}

void TMyCAD::ReleaseDragging(TPoint p) {
  gestureChanged_ = true;
  if (lockBound_) p = ClampToBounds(p);
  GetMousePointbyDragMode(startPoint_, p);
  double dx = p.X - startPoint_.X, dy = p.Y - startPoint_.Y;
  if (dx == 0 && dy == 0) {
    actionTool_ = savedActionTool_;
    return;
  }
  if (snap_ || snapShape_) {
    const TRect box = SelectionBoxInZoom();
    TPoint snapped = p;
    SnapRect(Rect(box.Left + p.X - startPoint_.X, box.Top + p.Y - startPoint_.Y, box.Right + p.X - startPoint_.X,
                  box.Bottom + p.Y - startPoint_.Y),
             snapped.X, snapped.Y);
    dx = snapped.X - startPoint_.X;
    dy = snapped.Y - startPoint_.Y;
  }
  PushtoUndoRedoShapeList(working_, "ACT_CHANGE");
  for (TMyShape* s : working_) DragChangeValueDxDyforShapes(s, dx, dy);
  for (TMyShape* s : working_) ChangeLinkShapes(s);
  TPoint to = Point(startPoint_.X + static_cast<std::int32_t>(dx), startPoint_.Y + static_cast<std::int32_t>(dy));
  for (TMyShape* s : working_) FireShapePoint(OnShapeMouseDragged, s, to);
  actionTool_ = savedActionTool_;
}

void TMyCAD::ReleaseRotating(const TPoint& p) {
  gestureChanged_ = true;
  PushtoUndoRedoShapeList({currentShape_}, "ACT_CHANGE");
  const TMyPoint center = RotationCenterOf(currentShape_);
  const double angle = GetRotatedAngle(currentShape_->ZoomedValuePt(center), startPoint_, p);
  RotateChangeValueforShapes(currentShape_, center, angle);
  ChangeLinkShapes(currentShape_);
  TPoint to = p;
  FireShapePoint(OnShapeMouseRotated, currentShape_, to);
  actionTool_ = savedActionTool_;
}

void TMyCAD::ReleaseNodeRemoving() {
  if (working_.size() != 1) return;
  TMyShape* shape = working_.front();
  if (ReleaseBezierNodeRemoving(shape)) return;
  const bool polygon = dynamic_cast<TMyPolygon*>(shape) != nullptr;
  const bool chain = !polygon && (dynamic_cast<TMyPolyLine*>(shape) || dynamic_cast<TMyBLine*>(shape));
  if (!polygon && !chain) return;
  const std::int32_t hot = shape->InWhichHot(startPoint_);
  if (hot < 0) return;  // no node hit: nothing to report
  const std::int32_t count = shape->GetPointsCount();
  std::int32_t result = hot;
  if (polygon && hot == count - 1) {
    result = -7;  // the closing copy of the first point
  } else if ((polygon && count <= 4) || (chain && count < 3)) {
    result = -8;
  } else {
    PushtoUndoRedoShapeList({shape}, "ACT_CHANGE");
    RemovePoint(hot, shape->Points);
    if (polygon && hot == 0) shape->Points.back() = shape->Points.front();
    shape->CenterPoint = shape->ComputeCenterPoint(4);
    shape->Changed();
  }
  if (OnNodeDeleted) OnNodeDeleted(this, shape, result);
}

void TMyCAD::ReleaseNodeAdding(const TPoint& p) {
  for (TMyShape* shape : working_) {
    if (ReleaseBezierNodeAdding(shape, p)) continue;
    std::int32_t index = -1;
    bool hit = false;
    if (auto* spline = dynamic_cast<TMyBLine*>(shape))
      hit = spline->IsClickedMeBeforeWhichPoint(index, p);
    else if (auto* chain = dynamic_cast<TMyPolyLine*>(shape))
      hit = chain->IsClickedMeBeforeWhichPoint(index, p);
    if (!hit || index < 0) continue;
    PushtoUndoRedoShapeList({shape}, "ACT_CHANGE");
    InsertAPointBeforeId(MyPoint(static_cast<float>(p.X / zoom_), static_cast<float>(p.Y / zoom_)), index,
                         shape->Points);
    shape->CenterPoint = shape->ComputeCenterPoint(4);
    shape->Changed();
    TMyShape* reported = shape;
    if (OnNodeAdded) OnNodeAdded(this, reported, index);
  }
}

void TMyCAD::ReleaseDragWhole(TPoint p) {
  gestureChanged_ = true;
  GetMousePointbyDragMode(startPoint_, p);
  const double dx = p.X - startPoint_.X, dy = p.Y - startPoint_.Y;
  if (dx == 0 && dy == 0) {
    return;
  }
  // Panning the whole drawing is not an edit: no undo step.
  const std::vector<TMyShape*> moved = WholeDragShapes();
  for (TMyShape* s : moved) DragChangeValueDxDyforShapes(s, dx, dy);
  for (TMyShape* s : moved) ChangeLinkShapes(s);
  if (OnWholeDragged) OnWholeDragged(this);
}

void TMyCAD::ReleaseRubberBand() {
  // A shape inside the band has its box meeting the band: the index gives
  // the candidates, in list order, and the exact test decides.
  const TRect band = PtToARect(currentPoint_, startPoint_);
  std::vector<TMyShape*> candidates;
  IndexQuery({static_cast<float>(band.Left), static_cast<float>(band.Top), static_cast<float>(band.Right),
              static_cast<float>(band.Bottom)},
             true, candidates);
  for (TMyShape* s : candidates) {
    if (!s->GetVisible() || !IsVisibleLayerByID(s->LayerId)) continue;
    if (!operateAllLayer_ && s->LayerId != currentLayerId_) continue;
    if (IsInRegion(currentPoint_, startPoint_, s)) AddWorkingShapes(s);
  }
}

// ---------------------------------------------------------------------------
// Gesture helpers

TMyPoint TMyCAD::RotationCenterOf(TMyShape* shape) const { return GetRootParentShape(shape)->GetCenterPoint(); }

std::vector<TMyShape*> TMyCAD::ShownWhileDragged(const std::vector<TMyShape*>& shapes, bool all) const {
  if (!all && shapes.size() <= 64) return shapes;
  // The drawing's area that the visible part of the control shows once the
  // dragged shapes are moved by the gesture: only shapes meeting it can show.
  const TRect visible = VisibleArea();
  const float dx = static_cast<float>(currentPoint_.X - startPoint_.X);
  const float dy = static_cast<float>(currentPoint_.Y - startPoint_.Y);
  const TMyRect area{visible.Left - dx, visible.Top - dy, visible.Right - dx, visible.Bottom - dy};
  std::vector<TMyShape*> shown;
  if (!all && shapes.size() <= 4096) {
    // A few thousand boxes are quicker to look at than the index's answer
    // for a large visible area.
    for (TMyShape* s : shapes) {
      const TMyRect box = GetIndexedBounds(s);
      if (box.Left <= area.Right && area.Left <= box.Right && box.Top <= area.Bottom && area.Top <= box.Bottom)
        shown.push_back(s);
    }
    return shown;
  }
  IndexQuery(area, all, shown);
  if (all) {
    std::erase_if(shown, [this](const TMyShape* s) { return !operateAllLayer_ && s->LayerId != currentLayerId_; });
  } else {
    std::erase_if(shown, [this](const TMyShape* s) { return IsInWorkingShape(s) == -1; });
  }
  return shown;
}

// Every top-level shape on the layers the tool works on: a scan of the whole
// list, as panning the whole drawing moves all of it (once, on release).
std::vector<TMyShape*> TMyCAD::WholeDragShapes() const {
  std::vector<TMyShape*> found;
  for (const auto& s : shapes_)
    if (!s->HasParentShape() && (operateAllLayer_ || s->LayerId == currentLayerId_)) found.push_back(s.get());
  return found;
}

// Measures the selection, not the drawing (a drag with snapping asks for it
// on every move).
TRect TMyCAD::SelectionBoxInZoom() const {
  const TMyRect box = GetShapesLTRBinZoom(working_);
  return myRecttoRect(box);
}

TPoint TMyCAD::ClampToBounds(const TPoint& p) const {
  const TRect box = SelectionBoxInZoom();
  const std::int32_t minX = startPoint_.X - box.Left, maxX = startPoint_.X + (Width() - box.Right);
  const std::int32_t minY = startPoint_.Y - box.Top, maxY = startPoint_.Y + (Height() - box.Bottom);
  return Point(std::clamp(p.X, std::min(minX, maxX), std::max(minX, maxX)),
               std::clamp(p.Y, std::min(minY, maxY), std::max(minY, maxY)));
}

void TMyCAD::FireShapePoint(const TShapePointEvent& event, TMyShape* shape, TPoint& to) {
  if (!event) return;
  TPoint mapped = GetPointByMode(to);
  event(this, shape, GetPointByMode(startPoint_), mapped);
  to = GetPointByMode(mapped);  // the mirroring is its own inverse
}

void TMyCAD::CancelGesture() {
  if (pendingShape_) {
    pendingShape_.reset();
    currentShape_ = nullptr;
  }
  if (mouseIsDown_ && actionTool_ != dtDrawing) actionTool_ = savedActionTool_;
  mouseIsDown_ = false;
  previewShown_ = false;
  linkHot_.reset();
  rubberBandShown_ = false;
  previewShapes_.clear();
  Invalidate();
}

void TMyCAD::NudgeSelection(std::int32_t dx, std::int32_t dy) {
  if (working_.empty()) return;
  SetModified(true);
  PushtoUndoRedoShapeList(working_, "ACT_CHANGE");
  for (TMyShape* s : working_) DragChangeValueDxDyforShapes(s, dx, dy);
  for (TMyShape* s : working_) ChangeLinkShapes(s);
}

// Keys a drawing canvas is expected to know: Delete, Escape (ends a gesture,
// or leaves the group a member was picked in), Enter (ends a
// multi-click shape), the arrows (one pixel; with Shift one grid step),
// Ctrl+Z (undo), Ctrl+Shift+Z and Ctrl+Y (redo), Ctrl+C, Ctrl+X, Ctrl+V
// (copy, cut, paste) and Ctrl+D (duplicate).
void TMyCAD::keyPressEvent(QKeyEvent* event) {
  const bool shift = event->modifiers() & Qt::ShiftModifier;
  const bool ctrl = event->modifiers() & Qt::ControlModifier;
  const std::int32_t dx = shift ? GridStep(grid_->GetGridWidth()) : 1;
  const std::int32_t dy = shift ? GridStep(grid_->GetGridHeight()) : 1;
  switch (event->key()) {
    case Qt::Key_Delete: DeleteSelectedShapes(true); break;
    case Qt::Key_Escape:
      if (!LeaveGroup()) CancelGesture();
      break;
    case Qt::Key_Left: NudgeSelection(-dx, 0); break;
    case Qt::Key_Right: NudgeSelection(dx, 0); break;
    case Qt::Key_Up: NudgeSelection(0, -dy); break;
    case Qt::Key_Down: NudgeSelection(0, dy); break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
      if (!FinishShapeByKey()) {
        TCustomControl::keyPressEvent(event);
        return;
      }
      break;
    case Qt::Key_C:
    case Qt::Key_X:
    case Qt::Key_V:
    case Qt::Key_D:
      if (!ctrl || shift) {
        TCustomControl::keyPressEvent(event);
        return;
      }
      if (event->key() == Qt::Key_C) Copy();
      if (event->key() == Qt::Key_X) Cut();
      if (event->key() == Qt::Key_V) Paste();
      if (event->key() == Qt::Key_D) Duplicate();
      break;
    case Qt::Key_Z:
    case Qt::Key_Y:
      if (!ctrl) {
        TCustomControl::keyPressEvent(event);
        return;
      }
      if (event->key() == Qt::Key_Z && !shift) {
        PopFromUndoRedoShapeList();
      } else {
        Redo();
      }
      break;
    default: TCustomControl::keyPressEvent(event); return;
  }
  event->accept();
}

// Ends a multi-click shape as a double-click would: by a second click on its
// last point, so the shape decides as usual whether that finishes it.
bool TMyCAD::FinishShapeByKey() {
  if (actionTool_ == dtDrawing && dynamic_cast<TMyPolyBezier*>(currentShape_)) {
    FinishBezier();
    return true;
  }
  if (actionTool_ != dtDrawing || !currentShape_ || mouseIsDown_ || currentShape_->GetPointsCount() < 2) return false;
  const TPoint last = Rounded(currentShape_->GetPointInZoom(currentShape_->GetPointsCount() - 1));
  MouseDown(mbLeft, ssLeft | ssDouble, last.X, last.Y);
  MouseUp(mbLeft, ssLeft, last.X, last.Y);
  return true;
}

// One grid step in device pixels; ten pixels while no grid is set.
std::int32_t TMyCAD::GridStep(double spacing) const {
  const double device = grid_->GetGridInZoom() ? spacing * zoom_ : spacing;
  return device >= 1 ? static_cast<std::int32_t>(std::nearbyint(device)) : 10;
}

// ---------------------------------------------------------------------------
// Operations the gestures use

bool TMyCAD::IsClickedMeforShape(TCanvas& canvas, TMyShape* shape, const TPoint& p) {
  return shape && shape->IsClickedMe(canvas, p);
}

void TMyCAD::DraggingforShapes(TCanvas& canvas, TMyShape* shape, const TPoint& from, const TPoint& to) {
  if (shape && !shape->GetLocked()) shape->Draging(canvas, from, to);
}

void TMyCAD::SizeChangeValueforShapes(TMyShape* shape, const TPoint& from, const TPoint& to) {
  if (!shape || shape->GetLocked()) return;
  ResizeKeepingLinkPoints(*shape, PtToMyPt(from), PtToMyPt(to));
  shape->Changed();
}

void TMyCAD::RotatingforShapes(TCanvas& canvas, TMyShape* shape, const TMyPoint& center, long double angle) {
  ForShapeAndMembers(shape, [&](TMyShape& s) {
    if (!s.GetLocked()) s.Rotating(canvas, center, angle);
  });
}

void TMyCAD::ShowHintEnterLeaveShape(TMyShape* shape, bool entered, const TPoint& p) {
  if (entered && shape != hoverShape_ && OnMouseEnterShape) OnMouseEnterShape(this, shape);
  if (hoverShape_ && hoverShape_ != shape && OnMouseLeaveShape) OnMouseLeaveShape(this, hoverShape_);
  hoverShape_ = shape;
  if (shape && showHint_) {
    const std::string& hint = shape->GetInfoText().empty() ? shape->GetCaption() : shape->GetInfoText();
    QToolTip::showText(mapToGlobal(QPoint(p.X, p.Y)), QString::fromStdString(hint), this);
  }
}

void TMyCAD::UpdateLabelXY(std::int32_t x, std::int32_t y) {
  if (!LabelXY) return;
  const TPoint p = GetPointByMode(Point(x, y));
  LabelXY->setText(QString("X: %1  Y: %2").arg(p.X).arg(p.Y));
}

void TMyCAD::UpdateLabelValue(const std::string& text) {
  if (LabelValue) LabelValue->setText(QString::fromStdString(text).trimmed());
}

void TMyCAD::Move(TMyShape* shape, float dx, float dy) {
  if (!shape) return;
  DragChangeValueDxDyforShapes(shape, dx * zoom_, dy * zoom_);
  ChangeLinkShapes(shape);
  if (OnShapeCodeDragging) OnShapeCodeDragging(this, shape, dx, dy);
}

void TMyCAD::Rotate(TMyShape* shape, float angle) {
  if (!shape) return;
  RotateChangeValueforShapes(shape, RotationCenterOf(shape), angle);
  ChangeLinkShapes(shape);
  if (OnShapeCodeRotating) OnShapeCodeRotating(this, shape, angle);
}

}  // namespace lumatrex
