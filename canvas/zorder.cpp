#include <algorithm>

#include "canvas/tmycad.h"

namespace lumatrex {

void TMyCAD::SwapShape(TMyShape* a, TMyShape* b) {
  if (!a || !b || a == b) return;
  const std::int32_t na = a->ShapeNo, nb = b->ShapeNo;
  if (GetShapeByNo(na) != a || GetShapeByNo(nb) != b) return;
  std::swap(shapes_[static_cast<std::size_t>(na)], shapes_[static_cast<std::size_t>(nb)]);
  RenumberShapes([na, nb](std::int32_t old) { return old == na ? nb : old == nb ? na : old; });
  // Where the two overlap, the other one is on top now.
  InvalidateShapeArea(a);
  InvalidateShapeArea(b);
}

// One swap with the nearest top-level shape after (before) Shape, so that a
// shape passes a whole group at a time.
void TMyCAD::SwapWithNeighbour(TMyShape* shape, bool forward) {
  TMyShape* neighbour =
      forward ? GetNextSingleorRootShape(shape->ShapeNo) : GetPrevSingleorRootShape(shape->ShapeNo);
  if (neighbour) SwapShape(shape, neighbour);
}

void TMyCAD::RotatePositions(const std::vector<std::int32_t>& positions, bool forward) {
  if (positions.size() < 2) return;
  const std::size_t last = positions.size() - 1;
  auto slot = [this](std::int32_t no) -> std::unique_ptr<TMyShape>& { return shapes_[static_cast<std::size_t>(no)]; };
  if (forward) {
    // The first moves to the last place; every other one a place back.
    std::unique_ptr<TMyShape> moving = std::move(slot(positions[0]));
    for (std::size_t j = 0; j < last; ++j) slot(positions[j]) = std::move(slot(positions[j + 1]));
    slot(positions[last]) = std::move(moving);
  } else {
    std::unique_ptr<TMyShape> moving = std::move(slot(positions[last]));
    for (std::size_t j = last; j > 0; --j) slot(positions[j]) = std::move(slot(positions[j - 1]));
    slot(positions[0]) = std::move(moving);
  }
  // Old position -> new one, looked up in the sorted positions (only shapes
  // that hold positions ask): each steps one place along them, the moved one
  // goes to the other end.
  RenumberShapes([&positions, last, forward](std::int32_t old) {
    const auto it = std::lower_bound(positions.begin(), positions.end(), old);
    if (it == positions.end() || *it != old) return old;
    const auto j = static_cast<std::size_t>(it - positions.begin());
    if (forward) return j == 0 ? positions[last] : positions[j - 1];
    return j == last ? positions[0] : positions[j + 1];
  });
}

// Bringing to front is, by definition, swapping the shape with the next
// top-level shape until there is none. Those swaps move the shape to the last
// top-level place and every top-level shape after it one such place back,
// group members staying where they are: that rotation is done at once, with
// one renumbering pass. Sending to back is the mirror image.
//
// Each records its step before the move, also when the shape is already in
// place, so that every command is one undo step.
void TMyCAD::BringToFront(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONT);
  if (!shape || GetShapeByNo(shape->ShapeNo) != shape) return;
  // Kept between calls: a large list needs no fresh memory each time.
  static thread_local std::vector<std::int32_t> positions;
  positions.assign(1, shape->ShapeNo);
  for (std::int32_t i = shape->ShapeNo + 1; i < GetShapesCount(); ++i) {
    PrefetchAhead(static_cast<std::size_t>(i));
    if (!GetShapeByNo(i)->HasParentShape()) positions.push_back(i);
  }
  RotatePositions(positions, true);
  InvalidateShapeArea(shape);
}

void TMyCAD::BringToFrontByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONTBYSTEP);
  if (shape) SwapWithNeighbour(shape, true);
}

void TMyCAD::SendToBack(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACK);
  if (!shape || GetShapeByNo(shape->ShapeNo) != shape) return;
  static thread_local std::vector<std::int32_t> positions;
  positions.clear();
  for (std::int32_t i = 0; i < shape->ShapeNo; ++i) {
    PrefetchAhead(static_cast<std::size_t>(i));
    if (!GetShapeByNo(i)->HasParentShape()) positions.push_back(i);
  }
  positions.push_back(shape->ShapeNo);
  RotatePositions(positions, false);
  InvalidateShapeArea(shape);
}

void TMyCAD::SendToBackByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACKBYSTEP);
  if (shape) SwapWithNeighbour(shape, false);
}

}  // namespace lumatrex
