// Pixel-level operations: rectangle fills, flood fill, single pixels, bitmap
// copies and the clip. Fills here take the brush as it is (the pen mode is
// for figures only), as the classic FillRect and FloodFill do.
#include <algorithm>
#include <cmath>
#include <vector>

#include "platform/bitmap.h"
#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"
#include "platform/painter_target.h"

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

// The same area in a painter's space: the pixels' squares, half a pixel
// past their centres.
QPainterPath PainterRect(const TCanvas::Impl& impl, const TRect& r) {
  QPainterPath path;
  path.addPolygon(DeviceRect(impl, r).translated(-0.5, -0.5));
  path.closeSubpath();
  return path;
}

void FillMaskWithBrush(TCanvas::Impl& impl, TMask& mask) {
  if (impl.clipPolygon) mask.Intersect(*impl.clipPolygon);
  impl.PaintMask(mask, impl.BrushSource(), pmCopy);
}

}  // namespace

// ---------------------------------------------------------------------------
// Fills

void TCanvas::FillRect(const TRect& rect) {
  const TRect r = Normalised(rect);
  if (!impl_->BrushVisible() || r.Left == r.Right || r.Top == r.Bottom) return;
  if (impl_->painter) {
    impl_->painter->Fill(*impl_, PainterRect(*impl_, r));
    return;
  }
  const QPolygonF area = DeviceRect(*impl_, r);
  impl_->FillWithBrush({area}, false, impl_->AreaFor(area.boundingRect()));
}

void TCanvas::FrameRect(const TRect& rect) {
  const TRect r = Normalised(rect);
  if (!impl_->BrushVisible() || r.Left == r.Right || r.Top == r.Bottom) return;
  if (impl_->painter) {
    QPainterPath frame = PainterRect(*impl_, r);
    if (r.Right - r.Left > 2 && r.Bottom - r.Top > 2)
      frame.addPath(PainterRect(*impl_, TRect{r.Left + 1, r.Top + 1, r.Right - 1, r.Bottom - 1}));
    frame.setFillRule(Qt::OddEvenFill);
    impl_->painter->Fill(*impl_, frame);
    return;
  }
  const QPolygonF outer = DeviceRect(*impl_, r);
  const QRect area = impl_->AreaFor(outer.boundingRect());
  TMask mask = raster::PolygonMask({outer}, false, area);
  if (r.Right - r.Left > 2 && r.Bottom - r.Top > 2)
    mask.Subtract(raster::PolygonMask({DeviceRect(*impl_, TRect{r.Left + 1, r.Top + 1, r.Right - 1, r.Bottom - 1})},
                                      false, area));
  FillMaskWithBrush(*impl_, mask);
}

void TCanvas::FloodFill(std::int32_t x, std::int32_t y, TColor color, TFillStyle style) {
  const QRect area = impl_->ClipArea();
  if (!impl_->BrushVisible() || !area.contains(x, y) || impl_->painter) return;
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
  if (impl_->painter || x < 0 || y < 0 || x >= impl_->bitmap.Width() || y >= impl_->bitmap.Height()) return -1;
  const QRgb c = impl_->bitmap.impl().PixelAt(x, y);
  return RGB(static_cast<std::uint8_t>(qRed(c)), static_cast<std::uint8_t>(qGreen(c)),
             static_cast<std::uint8_t>(qBlue(c)));
}

void TCanvas::SetPixel(std::int32_t x, std::int32_t y, TColor color) {
  if (impl_->painter) {
    QPainterPath square;
    square.addRect(QRectF(x - 0.5, y - 0.5, 1, 1));
    impl_->painter->Fill(*impl_, square, QColor::fromRgb(raster::ToRgb(color)));
    return;
  }
  if (!impl_->ClipArea().contains(x, y) || (impl_->clipPolygon && !impl_->clipPolygon->Test(x, y))) return;
  auto* row = reinterpret_cast<QRgb*>(impl_->bitmap.impl().PaintSurface().scanLine(y));
  row[x] = (raster::ToRgb(color) & 0xFFFFFFu) | (row[x] & 0xFF000000u);
}

// ---------------------------------------------------------------------------
// Bitmap copies

namespace {

// A painter draws the part of SourceRect within the picture, mapped onto
// Dest (pixel corners) as the raster stretch maps it.
void DrawScaled(TCanvas::Impl& impl, const TRect& dest, const TBitmap& source, const TRect& sourceRect, bool flipX,
                bool flipY) {
  const QImage& picture = source.impl().Rgb32();
  const QRect part = picture.rect() & QRect(sourceRect.Left, sourceRect.Top, sourceRect.Width(), sourceRect.Height());
  if (part.isEmpty()) return;
  const double sx = static_cast<double>(dest.Width()) / sourceRect.Width();
  const double sy = static_cast<double>(dest.Height()) / sourceRect.Height();
  // Picture pixel u lands at Left + (u - source left) * sx, or mirrored from Right.
  const QTransform map(flipX ? -sx : sx, 0, 0, flipY ? -sy : sy,
                       flipX ? dest.Right + sourceRect.Left * sx : dest.Left - sourceRect.Left * sx,
                       flipY ? dest.Bottom + sourceRect.Top * sy : dest.Top - sourceRect.Top * sy);
  impl.painter->Picture(impl, QTransform::fromTranslate(part.left(), part.top()) * map, picture.copy(part));
}

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
  if (impl.painter) {
    DrawScaled(impl, dest, source, sourceRect, flipX, flipY);
    return;
  }
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

// Every device pixel of the frame inside the clip is mapped back onto the
// picture through the inverse of the frame's affine map and takes the source
// pixel under its centre. The cost follows the covered screen area, never
// the picture's size, and rotation and mirroring come for free.
void TCanvas::DrawParallelogram(const TBitmap& picture, TPointF origin, TPointF across, TPointF down,
                                TColor transparent) {
  const double ax = across.X - origin.X, ay = across.Y - origin.Y;
  const double dx = down.X - origin.X, dy = down.Y - origin.Y;
  const double det = ax * dy - ay * dx;
  if (det == 0 || picture.Empty()) return;
  const std::int32_t width = picture.Width(), height = picture.Height();
  if (impl_->painter) {
    QImage image = picture.impl().Rgb32().convertToFormat(QImage::Format_ARGB32);
    if (transparent != -1) {
      const QRgb skip = raster::ToRgb(transparent) & 0xFFFFFFu;
      for (int y = 0; y < image.height(); ++y) {
        auto* row = reinterpret_cast<QRgb*>(image.scanLine(y));
        for (int x = 0; x < image.width(); ++x)
          if ((row[x] & 0xFFFFFFu) == skip) row[x] = 0;
      }
    }
    impl_->painter->Picture(*impl_, QTransform(ax / width, ay / width, dx / height, dy / height, origin.X, origin.Y),
                            image);
    return;
  }
  TBitmap& target = impl_->bitmap;
  const TRect clip = ClipRect();
  const double xs[] = {origin.X, across.X, down.X, across.X + dx};
  const double ys[] = {origin.Y, across.Y, down.Y, down.Y + ay};
  const auto left = std::max(clip.Left, static_cast<std::int32_t>(std::floor(*std::min_element(xs, xs + 4))));
  const auto right = std::min(clip.Right, static_cast<std::int32_t>(std::ceil(*std::max_element(xs, xs + 4))));
  const auto top = std::max(clip.Top, static_cast<std::int32_t>(std::floor(*std::min_element(ys, ys + 4))));
  const auto bottom = std::min(clip.Bottom, static_cast<std::int32_t>(std::ceil(*std::max_element(ys, ys + 4))));
  std::vector<const std::uint8_t*> rows(static_cast<std::size_t>(height));
  for (std::int32_t r = 0; r < height; ++r) rows[static_cast<std::size_t>(r)] = picture.ScanLine(r);
  const bool direct = target.PixelFormat() == pf32bit;
  for (std::int32_t y = top; y < bottom; ++y) {
    std::uint8_t* row = direct ? target.ScanLine(y) : nullptr;
    const double qy = y + 0.5 - origin.Y;
    for (std::int32_t x = left; x < right; ++x) {
      const double qx = x + 0.5 - origin.X;
      const double s = (qx * dy - qy * dx) / det, t = (ax * qy - ay * qx) / det;
      if (s < 0 || s >= 1 || t < 0 || t >= 1) continue;
      const std::uint8_t* bgr = rows[static_cast<std::size_t>(t * height)] + 3 * static_cast<std::size_t>(s * width);
      const TColor colour = RGB(bgr[2], bgr[1], bgr[0]);
      if (colour == transparent) continue;
      if (!row) {
        SetPixel(x, y, colour);
        continue;
      }
      std::uint8_t* out = row + 4 * static_cast<std::size_t>(x);
      out[0] = bgr[0], out[1] = bgr[1], out[2] = bgr[2];
    }
  }
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
  impl_->clipOutline.reset();
}

void TCanvas::ClearClipRect() {
  impl_->clipRect.reset();
  impl_->clipPolygon.reset();
  impl_->clipOutline.reset();
}

void TCanvas::SetClipPolygon(const std::vector<TPoint>& points) {
  QPolygonF polygon;
  for (const TPoint& p : points) polygon.append(QPointF(p.X, p.Y));
  if (impl_->painter) {
    impl_->clipOutline = polygon;
    return;
  }
  impl_->clipPolygon = std::make_unique<TMask>(raster::PolygonMask({polygon}, false, impl_->ClipArea()));
}

}  // namespace lumatrex
