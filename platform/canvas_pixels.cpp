// Pixel-level operations: rectangle fills, flood fill, single pixels, bitmap
// copies and the clip. Fills here take the brush as it is (the pen mode is
// for figures only), as the classic FillRect and FloodFill do.
#include <algorithm>
#include <vector>

#include "platform/bitmap.h"
#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"

namespace lumatrex {

using raster::TMask;

namespace {

TRect Normalised(TRect r) {
  if (r.Left > r.Right) std::swap(r.Left, r.Right);
  if (r.Top > r.Bottom) std::swap(r.Top, r.Bottom);
  return r;
}

// The rectangle's area in device space: exact pixel spans for an
// axis-aligned transform, the mapped corners otherwise.
QPolygonF DeviceRect(const TCanvas::Impl& impl, const TRect& r) {
  if (impl.AxisAligned()) return QPolygonF(QRectF(impl.MapBox(r.Left, r.Top, r.Right, r.Bottom)));
  return QPolygonF{impl.Map(r.Left, r.Top), impl.Map(r.Right, r.Top), impl.Map(r.Right, r.Bottom),
                   impl.Map(r.Left, r.Bottom)};
}

void FillWithBrush(TCanvas::Impl& impl, TMask& mask) {
  if (impl.clipPolygon) mask.Intersect(*impl.clipPolygon);
  impl.PaintMask(mask, impl.BrushSource(), pmCopy);
}

}  // namespace

// ---------------------------------------------------------------------------
// Fills

void TCanvas::FillRect(const TRect& rect) {
  const TRect r = Normalised(rect);
  if (!impl_->BrushVisible() || r.Left == r.Right || r.Top == r.Bottom) return;
  const QPolygonF area = DeviceRect(*impl_, r);
  TMask mask = raster::PolygonMask({area}, false, impl_->AreaFor(area.boundingRect()));
  FillWithBrush(*impl_, mask);
}

void TCanvas::FrameRect(const TRect& rect) {
  const TRect r = Normalised(rect);
  if (!impl_->BrushVisible() || r.Left == r.Right || r.Top == r.Bottom) return;
  const QPolygonF outer = DeviceRect(*impl_, r);
  const QRect area = impl_->AreaFor(outer.boundingRect());
  TMask mask = raster::PolygonMask({outer}, false, area);
  if (r.Right - r.Left > 2 && r.Bottom - r.Top > 2)
    mask.Subtract(raster::PolygonMask({DeviceRect(*impl_, TRect{r.Left + 1, r.Top + 1, r.Right - 1, r.Bottom - 1})},
                                      false, area));
  FillWithBrush(*impl_, mask);
}

void TCanvas::FloodFill(std::int32_t x, std::int32_t y, TColor color, TFillStyle style) {
  const QRect area = impl_->ClipArea();
  if (!impl_->BrushVisible() || !area.contains(x, y)) return;
  const QImage& surface = impl_->bitmap.impl().PaintSurface();
  const QRgb target = raster::ToRgb(color) & 0xFFFFFFu;
  TMask region(area);
  auto fillable = [&](int px, int py) {
    if (region.Test(px, py) || (impl_->clipPolygon && !impl_->clipPolygon->Test(px, py))) return false;
    const bool same = (reinterpret_cast<const QRgb*>(surface.constScanLine(py))[px] & 0xFFFFFFu) == target;
    return style == fsSurface ? same : !same;
  };
  // Span filling with an explicit stack: four-connected, no recursion.
  std::vector<QPoint> seeds{QPoint(x, y)};
  while (!seeds.empty()) {
    const QPoint seed = seeds.back();
    seeds.pop_back();
    if (!fillable(seed.x(), seed.y())) continue;
    int left = seed.x(), right = seed.x();
    while (left > area.left() && fillable(left - 1, seed.y())) --left;
    while (right < area.right() && fillable(right + 1, seed.y())) ++right;
    region.SetSpan(seed.y(), left, right + 1);
    for (int ny : {seed.y() - 1, seed.y() + 1}) {
      if (ny < area.top() || ny > area.bottom()) continue;
      for (int nx = left; nx <= right; ++nx)
        if (fillable(nx, ny) && (nx == left || !fillable(nx - 1, ny))) seeds.emplace_back(nx, ny);
    }
  }
  impl_->PaintMask(region, impl_->BrushSource(), pmCopy);
}

// ---------------------------------------------------------------------------
// Pixels

TColor TCanvas::GetPixel(std::int32_t x, std::int32_t y) const {
  if (x < 0 || y < 0 || x >= impl_->bitmap.Width() || y >= impl_->bitmap.Height()) return -1;
  const QRgb c = impl_->bitmap.impl().PixelAt(x, y);
  return RGB(static_cast<std::uint8_t>(qRed(c)), static_cast<std::uint8_t>(qGreen(c)),
             static_cast<std::uint8_t>(qBlue(c)));
}

void TCanvas::SetPixel(std::int32_t x, std::int32_t y, TColor color) {
  if (!impl_->ClipArea().contains(x, y) || (impl_->clipPolygon && !impl_->clipPolygon->Test(x, y))) return;
  auto* row = reinterpret_cast<QRgb*>(impl_->bitmap.impl().PaintSurface().scanLine(y));
  row[x] = (raster::ToRgb(color) & 0xFFFFFFu) | (row[x] & 0xFF000000u);
}

// ---------------------------------------------------------------------------
// Bitmap copies

namespace {

// Copies Source's SourceRect onto Dest, scaled by picking the source pixel
// under each destination pixel's centre (the classic COLORONCOLOR stretch).
// A rectangle given right-to-left or bottom-to-top mirrors the picture.
void Blit(TCanvas::Impl& impl, TRect dest, const TBitmap& source, TRect sourceRect) {
  const bool flipX = (dest.Right < dest.Left) != (sourceRect.Right < sourceRect.Left);
  const bool flipY = (dest.Bottom < dest.Top) != (sourceRect.Bottom < sourceRect.Top);
  dest = Normalised(dest);
  sourceRect = Normalised(sourceRect);
  const std::int64_t dw = dest.Width(), dh = dest.Height(), sw = sourceRect.Width(), sh = sourceRect.Height();
  const QRect target = impl.ClipArea() & QRect(dest.Left, dest.Top, dest.Width(), dest.Height());
  if (dw == 0 || dh == 0 || sw == 0 || sh == 0 || target.isEmpty() || source.Empty()) return;
  // Drawing a bitmap onto itself reads from a copy, as overlapping copies must.
  const QImage picture = &source == &impl.bitmap ? source.impl().Rgb32().copy() : source.impl().Rgb32();
  auto sourceIndex = [](std::int64_t i, std::int64_t dn, std::int64_t sn, bool flip) {
    const std::int64_t s = (2 * i + 1) * sn / (2 * dn);
    return flip ? sn - 1 - s : s;
  };
  QImage& surface = impl.bitmap.impl().PaintSurface();
  for (int y = target.top(); y <= target.bottom(); ++y) {
    const std::int64_t sy = sourceRect.Top + sourceIndex(y - dest.Top, dh, sh, flipY);
    if (sy < 0 || sy >= picture.height()) continue;
    const auto* from = reinterpret_cast<const QRgb*>(picture.constScanLine(static_cast<int>(sy)));
    auto* to = reinterpret_cast<QRgb*>(surface.scanLine(y));
    for (int x = target.left(); x <= target.right(); ++x) {
      const std::int64_t sx = sourceRect.Left + sourceIndex(x - dest.Left, dw, sw, flipX);
      if (sx < 0 || sx >= picture.width() || (impl.clipPolygon && !impl.clipPolygon->Test(x, y))) continue;
      to[x] = (from[sx] & 0xFFFFFFu) | (to[x] & 0xFF000000u);
    }
  }
}

}  // namespace

void TCanvas::Draw(std::int32_t x, std::int32_t y, const TBitmap& bitmap) {
  Blit(*impl_, TRect{x, y, x + bitmap.Width(), y + bitmap.Height()}, bitmap,
       TRect{0, 0, bitmap.Width(), bitmap.Height()});
}

void TCanvas::StretchDraw(const TRect& dest, const TBitmap& bitmap) {
  Blit(*impl_, dest, bitmap, TRect{0, 0, bitmap.Width(), bitmap.Height()});
}

void TCanvas::CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect) {
  Blit(*impl_, dest, source.Bitmap(), sourceRect);
}

// ---------------------------------------------------------------------------
// Clipping

TRect TCanvas::ClipRect() const {
  const QRect r = impl_->ClipArea();
  return r.isEmpty() ? TRect{} : TRect{r.left(), r.top(), r.right() + 1, r.bottom() + 1};
}

void TCanvas::SetClipRect(const TRect& r) {
  impl_->clipRect = Normalised(r);
  impl_->clipPolygon.reset();
}

void TCanvas::ClearClipRect() {
  impl_->clipRect.reset();
  impl_->clipPolygon.reset();
}

void TCanvas::SetClipPolygon(const std::vector<TPoint>& points) {
  QPolygonF polygon;
  for (const TPoint& p : points) polygon.append(QPointF(p.X, p.Y));
  impl_->clipPolygon = std::make_unique<TMask>(raster::PolygonMask({polygon}, false, impl_->ClipArea()));
}

}  // namespace lumatrex
