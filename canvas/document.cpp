#include "canvas/tmycad.h"

namespace lumatrex {

TMyShape* TMyCAD::GetShapeByNo(std::int32_t no) const {
  if (no < 0 || no >= GetShapesCount()) return nullptr;
  return shapes_[static_cast<std::size_t>(no)].get();
}

TMyShape* TMyCAD::AppendShape(std::unique_ptr<TMyShape> shape) {
  shape->ShapeNo = GetShapesCount();
  shapes_.push_back(std::move(shape));
  return shapes_.back().get();
}

TMyShape* TMyCAD::GetRootParentShape(TMyShape* shape) const {
  // A broken parent chain (a cycle or a position past the list) must not hang
  // the canvas: after as many steps as there are shapes, the walk stops.
  for (std::int32_t steps = 0; shape && shape->ParentId != -1 && steps <= GetShapesCount(); ++steps) {
    TMyShape* parent = GetShapeByNo(shape->ParentId);
    if (!parent) break;
    shape = parent;
  }
  return shape;
}

// Members first, then the shape itself, as every group-wide edit expects.
template <typename Fn>
void TMyCAD::ForShapeAndMembers(TMyShape* shape, Fn fn) {
  if (!shape) return;
  for (const std::int32_t no : shape->ChildShapes) {
    TMyShape* child = GetShapeByNo(no);
    if (child && child != shape) ForShapeAndMembers(child, fn);
  }
  fn(*shape);
}

void TMyCAD::RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) {
  ForShapeAndMembers(shape, [&](TMyShape& s) {
    if (!s.GetLocked()) s.RotateChangeValueByAngle(center, angle);
  });
  Invalidate();
}

void TMyCAD::LockUnLockforShapes(TMyShape* shape, bool locked) {
  ForShapeAndMembers(shape, [locked](TMyShape& s) { s.StoreLocked(locked); });
  Invalidate();
}

void TMyCAD::FlipHoriz(TMyShape* shape) {
  ForShapeAndMembers(shape, [](TMyShape& s) { s.FlipHoriz(); });
}

void TMyCAD::FlipVert(TMyShape* shape) {
  ForShapeAndMembers(shape, [](TMyShape& s) { s.FlipVert(); });
}

}  // namespace lumatrex
