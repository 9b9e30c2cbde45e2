#include <QPolygonF>
#include <algorithm>

#include "platform/canvas.h"
#include "platform/raster.h"

namespace lumatrex {

// The polygon itself is kept, not its pixels: hit tests on large zoomed
// shapes then cost nothing to set up, and each test runs the very rasteriser
// that fills polygons, so "inside" means "would be painted".
struct TRegion::Impl {
  std::vector<QPolygonF> polygons;
  bool winding = false;
};

TRegion::TRegion() : impl_(std::make_unique<Impl>()) {}
TRegion::~TRegion() = default;
TRegion::TRegion(TRegion&&) noexcept = default;
TRegion& TRegion::operator=(TRegion&&) noexcept = default;

TRegion TRegion::CreatePolygonRgn(const std::vector<TPoint>& points, TPolyFillMode mode) {
  TRegion region;
  QPolygonF polygon;
  for (const TPoint& p : points) polygon.append(QPointF(p.X, p.Y));
  region.impl_->polygons = {polygon};
  region.impl_->winding = mode == pfmWinding;
  return region;
}

bool TRegion::PtInRegion(std::int32_t x, std::int32_t y) const {
  if (!impl_) return false;
  bool inside = false;
  raster::FillPolygons(impl_->polygons, impl_->winding, QRect(x, y, 1, 1),
                       [&inside](int, int, int) { inside = true; });
  return inside;
}

TRect TRegion::BoundingRect() const {
  if (!impl_ || impl_->polygons.empty()) return TRect{};
  const QRect area = impl_->polygons.front().boundingRect().toAlignedRect();
  int left = area.right() + 1, top = area.bottom() + 1, right = area.left(), bottom = area.top();
  raster::FillPolygons(impl_->polygons, impl_->winding, area, [&](int y, int x0, int x1) {
    left = std::min(left, x0);
    right = std::max(right, x1);
    top = std::min(top, y);
    bottom = std::max(bottom, y + 1);
  });
  return left < right ? TRect{left, top, right, bottom} : TRect{};
}

bool TRegion::IsEmpty() const { return BoundingRect() == TRect{}; }

}  // namespace lumatrex
