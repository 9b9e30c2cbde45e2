#include "canvas/tmycad.h"

namespace lumatrex {

void TMyCAD::SwapShape(TMyShape* a, TMyShape* b) {
  if (!a || !b || a == b) return;
  const std::int32_t na = a->ShapeNo, nb = b->ShapeNo;
  if (GetShapeByNo(na) != a || GetShapeByNo(nb) != b) return;
  std::swap(shapes_[static_cast<std::size_t>(na)], shapes_[static_cast<std::size_t>(nb)]);
  RenumberShapes([na, nb](std::int32_t old) { return old == na ? nb : old == nb ? na : old; });
}

// One swap with the nearest top-level shape after (before) Shape, so that a
// shape passes a whole group at a time.
void TMyCAD::SwapWithNeighbour(TMyShape* shape, bool forward) {
  TMyShape* neighbour =
      forward ? GetNextSingleorRootShape(shape->ShapeNo) : GetPrevSingleorRootShape(shape->ShapeNo);
  if (neighbour) SwapShape(shape, neighbour);
}

// Each records its step before the move, also when the shape is already in
// place, so that every command is one undo step.
void TMyCAD::BringToFront(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONT);
  if (shape)
    while (TMyShape* next = GetNextSingleorRootShape(shape->ShapeNo)) SwapShape(shape, next);
  Invalidate();
}

void TMyCAD::BringToFrontByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONTBYSTEP);
  if (shape) SwapWithNeighbour(shape, true);
  Invalidate();
}

void TMyCAD::SendToBack(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACK);
  if (shape)
    while (TMyShape* previous = GetPrevSingleorRootShape(shape->ShapeNo)) SwapShape(shape, previous);
  Invalidate();
}

void TMyCAD::SendToBackByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACKBYSTEP);
  if (shape) SwapWithNeighbour(shape, false);
  Invalidate();
}

}  // namespace lumatrex
