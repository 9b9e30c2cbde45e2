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

// Bringing to front is, by definition, swapping the shape with the next
// top-level shape until there is none. Those swaps move the shape to the last
// top-level place and every top-level shape after it one such place back,
// group members staying where they are; sending to back is the mirror image.
// That rotation is done at once. One pass reads every shape once: a moving
// shape takes its new position as it is met, and the shapes that hold list
// positions are remapped after the pass, once the whole rotation is known.
void TMyCAD::MovePastTopLevel(TMyShape* shape, bool forward) {
  const std::int32_t from = shape->ShapeNo;
  // Kept between calls: a large list needs no fresh memory each time.
  static thread_local std::vector<std::int32_t> positions;  // the rotation's places, ascending
  static thread_local std::vector<TMyShape*> holders;
  positions.clear();
  holders.clear();
  TMyShape* behind = nullptr;  // sending back: the top-level shape that takes the next place found
  for (std::int32_t i = 0; i < GetShapesCount(); ++i) {
    PrefetchAhead(static_cast<std::size_t>(i));
    TMyShape* s = shapes_[static_cast<std::size_t>(i)].get();
    if (s->HoldsListPositions()) holders.push_back(s);
    const bool onTheWay = forward ? i > from : i < from;
    if (i != from && (!onTheWay || s->HasParentShape())) continue;
    if (forward && i != from) s->ShapeNo = positions.back();
    if (!forward) {
      if (behind) behind->ShapeNo = i;
      behind = i == from ? nullptr : s;
    }
    positions.push_back(i);
  }
  if (positions.size() < 2) return;
  shape->ShapeNo = forward ? positions.back() : positions.front();

  auto slot = [this](std::int32_t no) -> std::unique_ptr<TMyShape>& { return shapes_[static_cast<std::size_t>(no)]; };
  const std::size_t last = positions.size() - 1;
  if (forward) {
    std::unique_ptr<TMyShape> moving = std::move(slot(positions[0]));
    for (std::size_t j = 0; j < last; ++j) slot(positions[j]) = std::move(slot(positions[j + 1]));
    slot(positions[last]) = std::move(moving);
  } else {
    std::unique_ptr<TMyShape> moving = std::move(slot(positions[last]));
    for (std::size_t j = last; j > 0; --j) slot(positions[j]) = std::move(slot(positions[j - 1]));
    slot(positions[0]) = std::move(moving);
  }
  // Old position -> new one, looked up in the sorted places: each steps one
  // place along them, the moved shape goes to the other end.
  const auto map = [last, forward](std::int32_t old) {
    const auto it = std::lower_bound(positions.begin(), positions.end(), old);
    if (it == positions.end() || *it != old) return old;
    const auto j = static_cast<std::size_t>(it - positions.begin());
    if (forward) return j == 0 ? positions[last] : positions[j - 1];
    return j == last ? positions[0] : positions[j + 1];
  };
  for (TMyShape* s : holders) s->RemapShapeNumbers(map);
}

// Each records its step before the move, also when the shape is already in
// place, so that every command is one undo step.
void TMyCAD::BringToFront(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONT);
  if (!shape || GetShapeByNo(shape->ShapeNo) != shape) return;
  MovePastTopLevel(shape, true);
  InvalidateShapeArea(shape);
}

void TMyCAD::BringToFrontByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_BRINGTOFRONTBYSTEP);
  if (shape) SwapWithNeighbour(shape, true);
}

void TMyCAD::SendToBack(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACK);
  if (!shape || GetShapeByNo(shape->ShapeNo) != shape) return;
  MovePastTopLevel(shape, false);
  InvalidateShapeArea(shape);
}

void TMyCAD::SendToBackByStep(TMyShape* shape, bool record) {
  if (record) PushtoUndoRedoShapeList({shape}, ACT_SENDTOBACKBYSTEP);
  if (shape) SwapWithNeighbour(shape, false);
}

}  // namespace lumatrex
