#include <algorithm>

#include "canvas/tmycad.h"

namespace lumatrex {

void TMyCAD::AddWorkingShapes(TMyShape* shape) {
  shape = GetRootParentShape(shape);
  if (shape && IsInWorkingShape(shape) == -1) working_.push_back(shape);
}

void TMyCAD::RemoveWorkingShape(TMyShape* shape) {
  if (IsInWorkingShape(shape) == -1) return;
  ForgetShape(shape);
}

void TMyCAD::RemoveAllWorkingShapes() { working_.clear(); }

std::int32_t TMyCAD::IsInWorkingShape(const TMyShape* shape) const {
  const auto it = std::find(working_.rbegin(), working_.rend(), shape);
  return it == working_.rend() ? -1 : static_cast<std::int32_t>(working_.rend() - it) - 1;
}

void TMyCAD::SelectAllWorkingShapes() {
  for (TMyShape* shape : working_) shape->DrawHot(Canvas());
  Blit();
}

void TMyCAD::SelectAllShapes() {
  for (const auto& shape : shapes_)
    if (!shape->HasParentShape()) AddWorkingShapes(shape.get());
  Invalidate();
}

void TMyCAD::SelectAllShapesByLayerId(std::int32_t layerId) {
  if (currentLayerId_ == -1) return;
  for (TMyShape* shape : GetShapesByLayerId(layerId))
    if (!shape->HasParentShape()) AddWorkingShapes(shape);
  Invalidate();
}

bool TMyCAD::SelectShapeByCode(std::int32_t id, bool clearFirst) {
  TMyShape* shape = GetShapeByID(id);
  if (!shape) return false;
  if (clearFirst) RemoveAllWorkingShapes();
  AddWorkingShapes(shape);
  if (OnShapeSelected) OnShapeSelected(this, working_.empty() ? nullptr : working_.front(), shape);
  Invalidate();
  return true;
}

TMyShape* TMyCAD::GetSelectedShape() const { return working_.size() == 1 ? working_.front() : nullptr; }

void TMyCAD::DeSelectedAllShapesByCode() {
  RemoveAllWorkingShapes();
  Invalidate();
}

}  // namespace lumatrex
