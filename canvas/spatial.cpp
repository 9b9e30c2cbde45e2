// The spatial index of the canvas and what it serves: hit tests, area
// queries and the bookkeeping of partial repaints.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "canvas/shape_index.h"
#include "canvas/tmycad.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

// Past this many working shapes whose handles change, one box around them
// all is repainted instead of each.
constexpr std::size_t kFewHandleChanges = 64;
// A box up to this area (device pixels) is repainted whole when only its
// handles change; a larger one only around each handle.
constexpr long double kSmallBox = 128.0L * 128.0L;

// The device pixels a zoomed box may touch, a pixel wider on every side for
// rounding; far values are clamped so that they stay integers.
TRect DeviceRectOf(const TMyRect& r) {
  auto low = [](float v) { return static_cast<std::int32_t>(std::clamp<long double>(std::floor(v) - 1, -1e9L, 1e9L)); };
  auto high = [](float v) { return static_cast<std::int32_t>(std::clamp<long double>(std::ceil(v) + 2, -1e9L, 1e9L)); };
  return Rect(low(r.Left), low(r.Top), high(r.Right), high(r.Bottom));
}

bool ByListPosition(const TMyShape* a, const TMyShape* b) { return a->ShapeNo < b->ShapeNo; }

}  // namespace

void TMyCAD::SyncIndex() const {
  auto* self = const_cast<TMyCAD*>(this);
  // After a load, a zoom or a change of most of the drawing, one bulk build
  // is cheaper than box-by-box updates, and everything is repainted anyway.
  if (indexNeedsRebuild_ || index_->StaleCount() > shapes_.size() / 4 + 64) {
    std::vector<TMyShape*> all;
    all.reserve(shapes_.size());
    for (const auto& shape : shapes_) all.push_back(shape.get());
    index_->Rebuild(all);
    indexNeedsRebuild_ = false;
    self->Invalidate();
    return;
  }
  if (index_->HasStale()) index_->Flush([self](const TMyRect& r) { self->InvalidateZoomed(r); });
}

void TMyCAD::RegisterShape(TMyShape* shape) {
  // A rebuild to come takes every shape of the list anyway.
  if (!indexNeedsRebuild_) index_->Add(shape);
}

void TMyCAD::ShapeChanged(TMyShape& shape) {
  if (tearingDown_ || !index_) return;
  // A shape of the list sits at its ShapeNo: copies (undo records) and shapes
  // not added yet are told apart without a lookup.
  if (GetShapeByNo(shape.ShapeNo) != &shape) return;
  if (index_->MarkStale(&shape)) update();
}

void TMyCAD::BeforePaint() { SyncIndex(); }

void TMyCAD::InvalidateZoomed(const TMyRect& r) { InvalidateRect(DeviceRectOf(r)); }

void TMyCAD::InvalidateShapeArea(TMyShape* shape) {
  if (!shape) return;
  for (TMyShape* s : SubtreeOf(shape))
    if (const TShapeIndex::TSlot* slot = index_->SlotOf(s); slot && slot->indexed) InvalidateZoomed(slot->box);
}

void TMyCAD::InvalidateHandles(std::span<TMyShape* const> shapes) {
  // Handles lie in the shape's indexed box. A shape not indexed yet, or
  // changed since, has its old and new boxes repainted by the next flush.
  if (shapes.size() > kFewHandleChanges) {
    // A good part of the drawing: its handles are about everywhere.
    if (shapes.size() > shapes_.size() / 8) {
      Invalidate();
      return;
    }
    TBoundsBuilder all;
    for (const TMyShape* s : shapes)
      if (const TShapeIndex::TSlot* slot = index_->SlotOf(s); slot && slot->indexed) all.Add(slot->box);
    if (!all.Empty()) InvalidateZoomed(all.Grown(0));
    return;
  }
  for (TMyShape* s : shapes) {
    const TShapeIndex::TSlot* slot = index_->SlotOf(s);
    if (!slot || !slot->indexed) continue;
    const TMyRect& box = slot->box;
    const long double area = (static_cast<long double>(box.Right) - box.Left) * (static_cast<long double>(box.Bottom) - box.Top);
    if (area <= kSmallBox) {
      InvalidateZoomed(box);
      continue;
    }
    // Around each handle of a large shape: its points (a frame's eight), its
    // centre and its text point.
    const long double h = GetHotSize() + 2;
    auto around = [&](const TMyPoint& p) {
      InvalidateZoomed({static_cast<float>(p.X - h), static_cast<float>(p.Y - h), static_cast<float>(p.X + h),
                        static_cast<float>(p.Y + h)});
    };
    for (std::int32_t i = 0; i < std::max(s->GetPointsCount(), 8); ++i) around(s->GetPointInZoom(i));
    around(s->GetCenterPointInZoom());
    around(s->ZoomedValuePt(s->TextoutPoint));
  }
}

void TMyCAD::IndexQuery(const TMyRect& r, bool topLevel, std::vector<TMyShape*>& out) const {
  SyncIndex();
  out.clear();
  index_->Query(r, [&](TMyShape* s) {
    if (!topLevel || !s->HasParentShape()) out.push_back(s);
  });
  std::sort(out.begin(), out.end(), ByListPosition);
}

TMyShape* TMyCAD::PickShape(const TPoint& p, bool skipSelected) {
  const TMyRect at{static_cast<float>(p.X), static_cast<float>(p.Y), static_cast<float>(p.X), static_cast<float>(p.Y)};
  // Only top-level shapes can be picked, and only those whose box holds P
  // can be hit. Front to back: the first connector hit wins; without one,
  // the first other shape hit.
  IndexQuery(at, true, hits_);
  TMyShape* fallback = nullptr;
  for (auto it = hits_.rbegin(); it != hits_.rend(); ++it) {
    TMyShape* s = *it;
    if ((skipSelected && IsInWorkingShape(s) != -1) || !IsVisibleLayerByID(s->LayerId)) continue;
    if (!operateAllLayer_ && s->LayerId != currentLayerId_) continue;
    if (!IsClickedMeforShape(Canvas(), s, p)) continue;
    if (std::strcmp(s->ClassName(), "TMyLineLinkLine") == 0) return s;
    if (!fallback) fallback = s;
  }
  return fallback;
}

TMyShape* TMyCAD::ShapeAt(std::int32_t x, std::int32_t y) { return PickShape(Point(x, y), false); }

std::vector<TMyShape*> TMyCAD::GetShapesInIndex(const TMyRect& r) const {
  std::vector<TMyShape*> found;
  IndexQuery(r, false, found);
  return found;
}

TMyRect TMyCAD::GetIndexedBounds(const TMyShape* shape) const {
  SyncIndex();
  const TShapeIndex::TSlot* slot = index_->SlotOf(shape);
  return slot && slot->indexed ? slot->box : TMyRect{};
}

TRect TMyCAD::VisibleArea() const {
  if (!isVisible()) return ClientRect();
  const QRect r = visibleRegion().boundingRect();
  return Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height());
}

}  // namespace lumatrex
