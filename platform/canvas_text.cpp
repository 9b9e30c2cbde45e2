// Text: glyphs are drawn by Qt on a private transparent layer, which is then
// blended onto the surface through our own clip, so text obeys the clip
// polygon exactly like the figures do. Text ignores the pen mode, as the
// classic TextOut does.
#include <QFontMetrics>
#include <QPainter>
#include <algorithm>
#include <cmath>

#include "platform/bitmap.h"
#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"
#include "platform/fonts.h"
#include "platform/painter_target.h"

namespace lumatrex {

using raster::TMask;

namespace {

struct TTextLine {
  QFont font;
  QString text;
  int ascent = 0;
  TSize extent;
};

TTextLine Measure(const TCanvas::Impl& impl, const std::string& text) {
  TTextLine line{ToQFont(impl.font, impl.charExtra), QString::fromStdString(text), 0, {}};
  const QFontMetrics metrics(line.font);
  line.ascent = metrics.ascent();
  line.extent = TSize{metrics.horizontalAdvance(line.text), metrics.ascent() + metrics.descent()};
  return line;
}

// Blends the premultiplied Layer, placed at Origin, over the part of the
// surface within Clip.
void BlendLayer(TCanvas::Impl& impl, const QImage& layer, QPoint origin, const QRect& clip) {
  QImage& surface = impl.bitmap.impl().PaintSurface();
  const QRect blended = clip & QRect(origin, layer.size());
  for (int y = blended.top(); y <= blended.bottom(); ++y) {
    const int ly = y - origin.y();
    const auto* from = reinterpret_cast<const QRgb*>(layer.constScanLine(ly));
    auto* to = reinterpret_cast<QRgb*>(surface.scanLine(y));
    for (int x = blended.left(); x <= blended.right(); ++x) {
      const QRgb s = from[x - origin.x()];
      const int a = qAlpha(s);
      if (a == 0 || (impl.clipPolygon && !impl.clipPolygon->Test(x, y))) continue;
      const QRgb d = to[x];
      auto mix = [a](int sc, int dc) { return std::min(255, sc + (dc * (255 - a) + 127) / 255); };
      to[x] = (d & 0xFF000000u) | static_cast<QRgb>(mix(qRed(s), qRed(d)) << 16) |
              static_cast<QRgb>(mix(qGreen(s), qGreen(d)) << 8) | static_cast<QRgb>(mix(qBlue(s), qBlue(d)));
    }
  }
}

void FillCell(TCanvas::Impl& impl, const QTransform& toDevice, const QRectF& cell) {
  const QPolygonF polygon = toDevice.map(QPolygonF(cell));
  TMask mask = raster::PolygonMask({polygon}, false, impl.AreaFor(polygon.boundingRect()));
  if (impl.clipPolygon) mask.Intersect(*impl.clipPolygon);
  raster::TPaintSource background;
  background.color = impl.Background();
  impl.PaintMask(mask, background, pmCopy);
}

void DrawGlyphs(TCanvas::Impl& impl, const QTransform& toDevice, const TTextLine& line) {
  // Italics, accents and descenders may leave the cell; a margin of one cell
  // height on every side holds them.
  const int margin = line.extent.cy;
  const QRectF bounds =
      toDevice.mapRect(QRectF(-margin, -margin, line.extent.cx + 2.0 * margin, line.extent.cy + 2.0 * margin));
  // The whole text is rendered, whatever part of it the clip keeps: Qt draws
  // the edge of a glyph cut by its layer differently from an uncut one, and
  // a repaint of part of a picture must give the very pixels of the whole.
  const QRect clip = impl.ClipArea();
  if (clip.isEmpty() || !(bounds.right() >= clip.left() && bounds.left() <= clip.right() + 1 &&
                          bounds.bottom() >= clip.top() && bounds.top() <= clip.bottom() + 1))
    return;
  QRect area(QPoint(static_cast<int>(std::floor(std::max(bounds.left(), -1e8))) - 2,
                   static_cast<int>(std::floor(std::max(bounds.top(), -1e8))) - 2),
             QPoint(static_cast<int>(std::ceil(std::min(bounds.right(), 1e8))) + 2,
                    static_cast<int>(std::ceil(std::min(bounds.bottom(), 1e8))) + 2));
  // A giant text is rendered only where it can show (a layer of tens of
  // millions of pixels is not worth the exactness at a cut).
  if (static_cast<double>(area.width()) * area.height() > 16e6) area = impl.AreaFor(bounds);
  if (area.isEmpty()) return;
  QImage layer(area.size(), QImage::Format_ARGB32_Premultiplied);
  layer.fill(Qt::transparent);
  {
    QPainter painter(&layer);
    painter.setTransform(toDevice * QTransform::fromTranslate(-area.left(), -area.top()));
    painter.setFont(line.font);
    painter.setPen(QColor::fromRgb(raster::ToRgb(impl.font.Color())));
    painter.drawText(QPointF(0, line.ascent), line.text);
  }
  BlendLayer(impl, layer, area.topLeft(), clip);
}

}  // namespace

TSize TCanvas::TextExtent(const std::string& text) {
  if (!FontsAvailable()) return TSize{};
  return Measure(*impl_, text).extent;
}

void TCanvas::TextOut(std::int32_t x, std::int32_t y, const std::string& text) {
  if (text.empty() || !FontsAvailable()) return;
  const TTextLine line = Measure(*impl_, text);
  QTransform toDevice;
  toDevice.translate(x, y);
  toDevice.rotate(-impl_->font.Orientation() / 10.0);  // Qt turns clockwise on a y-down screen
  toDevice *= impl_->world;
  if (impl_->path.recording) {
    QPainterPath outline;
    outline.addText(QPointF(0, line.ascent), line.font, line.text);
    impl_->path.AddQtPath(toDevice.map(outline), true);
    return;
  }
  if (impl_->painter) {
    impl_->painter->Text(*impl_, toDevice, line.font, line.text, line.ascent,
                         QRectF(0, 0, line.extent.cx, line.extent.cy));
    return;
  }
  if (impl_->bkMode == bkOpaque) FillCell(*impl_, toDevice, QRectF(0, 0, line.extent.cx, line.extent.cy));
  DrawGlyphs(*impl_, toDevice, line);
}

}  // namespace lumatrex
