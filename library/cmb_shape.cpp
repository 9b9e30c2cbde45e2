#include "library/cmb_shape.h"

#include <algorithm>
#include <ranges>
#include <unordered_set>

namespace lumatrex {

TCmbShape::TCmbShape(const std::string& recordVersion, const TMyShapeOwner* defaults) : recordVersion_(recordVersion) {
  if (!defaults) return;
  pen_.Assign(defaults->GetPen());
  brush_.Assign(defaults->GetBrush());
  font_.Assign(defaults->GetFont());
  arrowAngle_ = defaults->GetArrowAngle();
  arrowLength_ = defaults->GetArrowLength();
  arrowOffset_ = defaults->GetArrowOffset();
  arrowStyle_ = defaults->GetArrowStyle();
  dragEnable_ = defaults->GetDragEnable();
  resizeEnable_ = defaults->GetResizeEnable();
  rotateEnable_ = defaults->GetRotateEnable();
  hotShow_ = defaults->GetHotShow();
  joinType_ = defaults->GetPenStyleJoinType();
  endCapType_ = defaults->GetPenStyleEndCapType();
}

// The shapes go first, while the owner they point at is still whole.
TCmbShape::~TCmbShape() { Shapes.clear(); }

TMyShape* TCmbShape::GetShapeByNo(std::int32_t no) const {
  const auto it = std::ranges::find_if(Shapes, [no](const auto& s) { return s->ShapeNo == no; });
  return it == Shapes.end() ? nullptr : it->get();
}

// GetShapeByNo for many lookups at once: the first shape of each ShapeNo.
TCmbShape::TShapeIndex TCmbShape::IndexByNo() const {
  TShapeIndex index;
  for (const auto& s : Shapes) index.try_emplace(s->ShapeNo, s.get());
  return index;
}

TMyShape* TCmbShape::GetRootParentShape(TMyShape* shape) const {
  // At most one step per shape, so that a cyclic parent chain ends.
  for (std::size_t steps = 0; shape && steps < Shapes.size(); ++steps) {
    TMyShape* parent = shape->HasParentShape() ? GetShapeByNo(shape->ParentId) : nullptr;
    if (!parent || parent == shape) break;
    shape = parent;
  }
  return shape;
}

std::vector<TMyShape*> TCmbShape::TopLevelShapes() const {
  const TShapeIndex index = IndexByNo();
  std::vector<TMyShape*> top;
  for (const auto& s : Shapes) {
    const auto parent = s->HasParentShape() ? index.find(s->ParentId) : index.end();
    if (parent == index.end() || parent->second == s.get()) top.push_back(s.get());
  }
  return top;
}

std::vector<TMyShape*> TCmbShape::SubtreeOf(TMyShape* shape) const {
  const TShapeIndex index = IndexByNo();
  std::vector<TMyShape*> found;
  std::unordered_set<const TMyShape*> seen;
  std::vector<TMyShape*> pending = {shape};
  while (!pending.empty()) {
    TMyShape* s = pending.back();
    pending.pop_back();
    if (!seen.insert(s).second) continue;
    found.push_back(s);
    for (auto no = s->ChildShapes.rbegin(); no != s->ChildShapes.rend(); ++no)
      if (const auto child = index.find(*no); child != index.end()) pending.push_back(child->second);
  }
  return found;
}

// Each tree is walked group first, members pushed in order and so taken last
// first; reversed, that is members in order before their group.
std::vector<TMyShape*> TCmbShape::ShapesInPaintOrder() const {
  const TShapeIndex index = IndexByNo();
  std::unordered_set<const TMyShape*> seen;
  std::vector<TMyShape*> order;
  for (TMyShape* top : TopLevelShapes()) {
    std::vector<TMyShape*> tree;
    std::vector<TMyShape*> pending = {top};
    while (!pending.empty()) {
      TMyShape* s = pending.back();
      pending.pop_back();
      if (!s->GetVisible() || !seen.insert(s).second) continue;
      tree.push_back(s);
      for (const std::int32_t no : s->ChildShapes)
        if (const auto child = index.find(no); child != index.end()) pending.push_back(child->second);
    }
    order.insert(order.end(), tree.rbegin(), tree.rend());
  }
  return order;
}

void TCmbShape::RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) {
  for (TMyShape* s : SubtreeOf(shape))
    if (!s->GetLocked()) s->RotateChangeValueByAngle(center, angle);
}

void TCmbShape::LockUnLockforShapes(TMyShape* shape, bool locked) {
  for (TMyShape* s : SubtreeOf(shape)) s->StoreLocked(locked);
}

void TCmbShape::FlipHoriz(TMyShape* shape) {
  for (TMyShape* s : SubtreeOf(shape)) s->FlipHoriz();
}

void TCmbShape::FlipVert(TMyShape* shape) {
  for (TMyShape* s : SubtreeOf(shape)) s->FlipVert();
}

}  // namespace lumatrex
