#include "canvas/shape_index.h"

#include "shapes/shape.h"

namespace lumatrex {

void TShapeIndex::Clear() {
  tree_.clear();
  slots_.clear();
  byId_.clear();
  stale_.clear();
}

void TShapeIndex::Add(TMyShape* shape) {
  auto [it, added] = slots_.try_emplace(shape);
  if (!added) {
    MarkStale(shape);
    return;
  }
  it->second.id = shape->ShapeId;
  byId_.emplace(shape->ShapeId, shape);
  stale_.push_back(shape);
}

bool TShapeIndex::Remove(TMyShape* shape, TMyRect& box) {
  const auto it = slots_.find(shape);
  if (it == slots_.end()) return false;
  const bool indexed = it->second.indexed;
  box = it->second.box;
  if (indexed) tree_.remove(TValue(ToBox(box), shape));
  Unfile(shape, it->second.id);
  slots_.erase(it);
  return indexed;
}

bool TShapeIndex::MarkStale(const TMyShape* shape) {
  const auto it = slots_.find(shape);
  if (it == slots_.end()) return false;
  if (!it->second.stale) {
    it->second.stale = true;
    stale_.push_back(const_cast<TMyShape*>(shape));
  }
  return true;
}

const TShapeIndex::TSlot* TShapeIndex::SlotOf(const TMyShape* shape) const {
  const auto it = slots_.find(shape);
  return it == slots_.end() ? nullptr : &it->second;
}

void TShapeIndex::Unfile(const TMyShape* shape, std::int32_t id) {
  const auto [first, last] = byId_.equal_range(id);
  for (auto it = first; it != last; ++it)
    if (it->second == shape) {
      byId_.erase(it);
      return;
    }
}

void TShapeIndex::Refresh(TMyShape* shape, TSlot& slot, TMyRect& before, bool& hadBefore, TMyRect& after) {
  if (shape->ShapeId != slot.id) {
    Unfile(shape, slot.id);
    slot.id = shape->ShapeId;
    byId_.emplace(slot.id, shape);
  }
  after = shape->GetBoundsInZoom();
  hadBefore = slot.indexed;
  before = slot.box;
  if (!slot.indexed) {
    tree_.insert(TValue(ToBox(after), shape));
  } else if (!(before == after)) {
    tree_.remove(TValue(ToBox(before), shape));
    tree_.insert(TValue(ToBox(after), shape));
  }
  slot.box = after;
  slot.indexed = true;
  slot.stale = false;
}

void TShapeIndex::Rebuild(const std::vector<TMyShape*>& shapes) {
  std::vector<TValue> values;
  values.reserve(shapes.size());
  slots_.clear();
  byId_.clear();
  slots_.reserve(shapes.size());
  for (TMyShape* shape : shapes) {
    TSlot& slot = slots_[shape];
    slot.id = shape->ShapeId;
    byId_.emplace(slot.id, shape);
    slot.box = shape->GetBoundsInZoom();
    slot.indexed = true;
    slot.stale = false;
    values.emplace_back(ToBox(slot.box), shape);
  }
  stale_.clear();
  // The packing constructor builds a balanced tree at once.
  tree_ = decltype(tree_)(values.begin(), values.end());
}

}  // namespace lumatrex
