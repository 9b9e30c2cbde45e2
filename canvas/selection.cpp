#include <algorithm>

#include "canvas/tmycad.h"

namespace lumatrex {

namespace {
// Up to this many working shapes the handles are drawn one by one; past it
// only those the index finds in the area being painted.
constexpr std::size_t kFewWorkingShapes = 64;
}  // namespace

void TMyCAD::SetWorking(std::vector<TMyShape*> shapes) {
  working_ = std::move(shapes);
  NumberWorkingFrom(0);
}

void TMyCAD::NumberWorkingFrom(std::size_t first) {
  for (std::size_t i = first; i < working_.size(); ++i) working_[i]->WorkingNo = static_cast<std::int32_t>(i);
}

void TMyCAD::AddWorkingShapes(TMyShape* shape) {
  shape = GetRootParentShape(shape);
  // Only this drawing's shapes: a shape keeps one selection number, which
  // another canvas's selection would overwrite.
  if (!shape || GetShapeByNo(shape->ShapeNo) != shape || IsInWorkingShape(shape) != -1) return;
  shape->WorkingNo = static_cast<std::int32_t>(working_.size());
  working_.push_back(shape);
  InvalidateHandles(std::span(working_).last(1));
}

void TMyCAD::RemoveWorkingShape(TMyShape* shape) {
  if (IsInWorkingShape(shape) == -1) return;
  ForgetShape(shape);
}

void TMyCAD::RemoveAllWorkingShapes() {
  InvalidateHandles(working_);
  working_.clear();
}

std::int32_t TMyCAD::IsInWorkingShape(const TMyShape* shape) const {
  if (!shape) return -1;
  const std::int32_t at = shape->WorkingNo;
  return at >= 0 && static_cast<std::size_t>(at) < working_.size() && working_[static_cast<std::size_t>(at)] == shape
             ? at
             : -1;
}

void TMyCAD::SelectAllWorkingShapes() {
  TCanvas& canvas = Canvas();
  if (working_.size() <= kFewWorkingShapes) {
    for (TMyShape* shape : working_) shape->DrawHot(canvas);
  } else {
    // A shape's handles lie in its indexed box: only the working shapes whose
    // box meets the clip (or, outside a paint, the visible part of the
    // control) can show any, drawn in selection order.
    TRect area = canvas.ClipRect();
    if (TRect visible; !painting_) area = IntersectRect(visible, area, VisibleArea()) ? visible : TRect{};
    std::vector<TMyShape*> shown;
    IndexQuery({static_cast<float>(area.Left), static_cast<float>(area.Top), static_cast<float>(area.Right),
                static_cast<float>(area.Bottom)},
               true, shown);
    std::erase_if(shown, [this](const TMyShape* s) { return IsInWorkingShape(s) == -1; });
    std::sort(shown.begin(), shown.end(), [](const TMyShape* a, const TMyShape* b) { return a->WorkingNo < b->WorkingNo; });
    for (TMyShape* shape : shown) shape->DrawHot(canvas);
  }
  Blit();
}

void TMyCAD::SelectAllShapes() {
  // In one pass: the top-level shapes not yet selected join in list order.
  const std::size_t before = working_.size();
  working_.reserve(before + shapes_.size());
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    PrefetchAhead(i);
    TMyShape* shape = shapes_[i].get();
    if (shape->HasParentShape() || (before > 0 && IsInWorkingShape(shape) != -1)) continue;
    shape->WorkingNo = static_cast<std::int32_t>(working_.size());
    working_.push_back(shape);
  }
  InvalidateHandles(std::span(working_).subspan(before));
}

void TMyCAD::SelectAllShapesByLayerId(std::int32_t layerId) {
  if (currentLayerId_ == -1) return;
  for (TMyShape* shape : GetShapesByLayerId(layerId))
    if (!shape->HasParentShape()) AddWorkingShapes(shape);
}

bool TMyCAD::SelectShapeByCode(std::int32_t id, bool clearFirst) {
  TMyShape* shape = GetShapeByID(id);
  if (!shape) return false;
  if (clearFirst) RemoveAllWorkingShapes();
  AddWorkingShapes(shape);
  if (OnShapeSelected) OnShapeSelected(this, working_.empty() ? nullptr : working_.front(), shape);
  return true;
}

TMyShape* TMyCAD::GetSelectedShape() const { return working_.size() == 1 ? working_.front() : nullptr; }

void TMyCAD::DeSelectedAllShapesByCode() { RemoveAllWorkingShapes(); }

}  // namespace lumatrex
