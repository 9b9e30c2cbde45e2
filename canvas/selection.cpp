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
  workingAt_.clear();
  workingAt_.reserve(working_.size());
  for (std::size_t i = 0; i < working_.size(); ++i) workingAt_[working_[i]] = static_cast<std::int32_t>(i);
}

void TMyCAD::AddWorkingShapes(TMyShape* shape) {
  shape = GetRootParentShape(shape);
  if (!shape || workingAt_.contains(shape)) return;
  workingAt_[shape] = static_cast<std::int32_t>(working_.size());
  working_.push_back(shape);
  InvalidateHandles({shape});
}

void TMyCAD::RemoveWorkingShape(TMyShape* shape) {
  if (IsInWorkingShape(shape) == -1) return;
  ForgetShape(shape);
}

void TMyCAD::RemoveAllWorkingShapes() {
  InvalidateHandles(working_);
  working_.clear();
  workingAt_.clear();
}

std::int32_t TMyCAD::IsInWorkingShape(const TMyShape* shape) const {
  return workingAt_.value(shape, -1);
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
    std::erase_if(shown, [this](const TMyShape* s) { return !workingAt_.contains(s); });
    std::sort(shown.begin(), shown.end(),
              [this](const TMyShape* a, const TMyShape* b) { return workingAt_.value(a) < workingAt_.value(b); });
    for (TMyShape* shape : shown) shape->DrawHot(canvas);
  }
  Blit();
}

void TMyCAD::SelectAllShapes() {
  // In one pass: the top-level shapes not yet selected join in list order.
  std::vector<TMyShape*> added;
  added.reserve(shapes_.size());
  workingAt_.reserve(working_.size() + shapes_.size());
  working_.reserve(working_.size() + shapes_.size());
  const bool none = working_.empty();
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    PrefetchShape(i + 16);
    TMyShape* shape = shapes_[i].get();
    if (shape->HasParentShape() || (!none && workingAt_.contains(shape))) continue;
    workingAt_.emplace(shape, static_cast<std::int32_t>(working_.size()));
    working_.push_back(shape);
    added.push_back(shape);
  }
  InvalidateHandles(added);
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
