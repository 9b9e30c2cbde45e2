#include "platform/canvas.h"

#include <algorithm>
#include <cmath>

#include "platform/bitmap.h"
#include "platform/canvas_impl.h"
#include "platform/painter_target.h"

namespace lumatrex {

namespace {

// Device coordinates are kept within ±2^29 so that box arithmetic (widths,
// squared radii) cannot overflow; nothing that large is ever visible.
constexpr double kCoordinateLimit = 1 << 29;

int DeviceInt(double v) {
  return static_cast<int>(std::clamp(std::floor(v + 0.5), -kCoordinateLimit, kCoordinateLimit));
}

void Normalise(std::int32_t& a, std::int32_t& b) {
  if (a > b) std::swap(a, b);
}

}  // namespace

TCanvas::Impl::Impl(TBitmap& target) : bitmap(target) {
  // As on the classic canvas, choosing a brush sets the background mode:
  // opaque behind a solid brush, transparent otherwise. SetBkMode after the
  // brush change wins until the next one.
  brush.OnChange = [this] { bkMode = brush.Style() == bsSolid ? bkOpaque : bkTransparent; };
}

QRect TCanvas::Impl::ClipArea() const {
  const QRect whole = painter ? painter->Extent() : QRect(0, 0, bitmap.Width(), bitmap.Height());
  if (!clipRect) return whole;
  return whole & QRect(QPoint(clipRect->Left, clipRect->Top), QPoint(clipRect->Right - 1, clipRect->Bottom - 1));
}

QPointF TCanvas::Impl::Map(std::int32_t x, std::int32_t y) const { return world.map(QPointF(x, y)); }

QRect TCanvas::Impl::MapBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) const {
  const QPointF a = Map(x1, y1), b = Map(x2, y2);
  int l = DeviceInt(a.x()), t = DeviceInt(a.y()), r = DeviceInt(b.x()), btm = DeviceInt(b.y());
  Normalise(l, r);
  Normalise(t, btm);
  return QRect(l, t, r - l, btm - t);
}

TFigure& TCanvas::Impl::OneOutline(bool closed) {
  TFigure& figure = reused;
  figure.area.clear();  // first, so that the outline's list is no longer shared
  figure.wideOutline = QPainterPath();
  figure.winding = false;
  figure.outline.resize(1);
  figure.closed.assign(1, closed);
  return figure;
}

TFigure& TCanvas::Impl::OneOutline(const std::vector<TPoint>& points, bool closed) {
  TFigure& figure = OneOutline(closed);
  QPolygonF& outline = figure.outline.front();
  outline.resize(static_cast<qsizetype>(points.size()));
  for (std::size_t i = 0; i < points.size(); ++i) outline[static_cast<qsizetype>(i)] = Map(points[i].X, points[i].Y);
  return figure;
}

TFigure& TCanvas::Impl::OneOutline(std::initializer_list<QPointF> points, bool closed) {
  TFigure& figure = OneOutline(closed);
  QPolygonF& outline = figure.outline.front();
  outline.resize(static_cast<qsizetype>(points.size()));
  std::copy(points.begin(), points.end(), outline.begin());
  return figure;
}

// ---------------------------------------------------------------------------
// State

TCanvas::TCanvas(TBitmap& bitmap) : impl_(std::make_unique<Impl>(bitmap)) {}
TCanvas::~TCanvas() = default;

TPen& TCanvas::Pen() { return impl_->pen; }
TBrush& TCanvas::Brush() { return impl_->brush; }
TFont& TCanvas::Font() { return impl_->font; }
TBitmap& TCanvas::Bitmap() { return impl_->bitmap; }

TPoint TCanvas::PenPos() const { return impl_->penPos; }
void TCanvas::SetPenPos(TPoint p) { MoveTo(p.X, p.Y); }
void TCanvas::SetPolyFillMode(TPolyFillMode mode) { impl_->fillMode = mode; }
void TCanvas::SetBkMode(TBkMode mode) { impl_->bkMode = mode; }
TBkMode TCanvas::BkMode() const { return impl_->bkMode; }
void TCanvas::SetTextCharacterExtra(std::int32_t extra) { impl_->charExtra = extra; }
std::int32_t TCanvas::TextCharacterExtra() const { return impl_->charExtra; }

void TCanvas::SetWorldTransform(const TXForm& x) {
  impl_->world = QTransform(x.eM11, x.eM12, x.eM21, x.eM22, x.eDx, x.eDy);
}

void TCanvas::ResetWorldTransform() { impl_->world.reset(); }

TXForm TCanvas::WorldTransform() const {
  const QTransform& w = impl_->world;
  return TXForm{static_cast<float>(w.m11()), static_cast<float>(w.m12()), static_cast<float>(w.m21()),
                static_cast<float>(w.m22()), static_cast<float>(w.dx()),  static_cast<float>(w.dy())};
}

// ---------------------------------------------------------------------------
// Lines

namespace {

QPolygonF MapPoints(const TCanvas::Impl& impl, const std::vector<TPoint>& points) {
  QPolygonF mapped;
  mapped.reserve(static_cast<qsizetype>(points.size()));
  for (const TPoint& p : points) mapped.append(impl.Map(p.X, p.Y));
  return mapped;
}

// Counter-clockwise on the screen from 3 o'clock, as the classic path records it.
QPainterPath EllipsePath(const QRectF& box) {
  QPainterPath path;
  path.arcMoveTo(box, 0);
  path.arcTo(box, 0, 360);
  return path;
}

QPainterPath PathOf(const QPolygonF& points, bool closed) {
  QPainterPath path;
  path.addPolygon(points);
  if (closed) path.closeSubpath();
  return path;
}

// The boxes a painter draws a box figure (rectangle, ellipse, arc) through:
// the outline through the edge pixels' centres, the area to the outer edges
// of the edge pixels, then Map. While the transform keeps boxes upright they
// are the device box the raster back end takes, so both agree on the pixels.
struct TPainterBoxes {
  QRectF edge;
  QRectF area;
  QTransform map;
};

TPainterBoxes PainterBoxes(const TCanvas::Impl& impl, std::int32_t x1, std::int32_t y1, std::int32_t x2,
                           std::int32_t y2) {
  if (impl.AxisAligned()) {
    const QRect b = impl.MapBox(x1, y1, x2, y2);
    return {QRectF(QPointF(b.left(), b.top()), QPointF(b.right(), b.bottom())), QRectF(b).translated(-0.5, -0.5), {}};
  }
  return {QRectF(QPointF(x1, y1), QPointF(x2 - 1, y2 - 1)), QRectF(QPointF(x1 - 0.5, y1 - 0.5), QPointF(x2 - 0.5, y2 - 0.5)),
          impl.world};
}

TFigure OutlineFigure(const QPolygonF& points, bool closed) {
  TFigure figure;
  figure.outline = {points};
  figure.closed = {closed};
  return figure;
}

}  // namespace

void TCanvas::MoveTo(std::int32_t x, std::int32_t y) {
  impl_->penPos = TPoint{x, y};
  impl_->path.newFigure = true;
}

void TCanvas::LineTo(std::int32_t x, std::int32_t y) {
  const QPointF from = impl_->Map(impl_->penPos.X, impl_->penPos.Y), to = impl_->Map(x, y);
  if (impl_->path.recording)
    impl_->path.LineTo(from, to);
  else if (impl_->painter)
    impl_->painter->Figure(*impl_, PathOf({from, to}, false), true, {}, false);
  else
    impl_->DrawFigure(impl_->OneOutline({from, to}, false), true, false);
  impl_->penPos = TPoint{x, y};
}

void TCanvas::LineChain(const std::vector<TPoint>& points) {
  if (points.empty()) return;
  if (impl_->path.recording || impl_->painter || impl_->WidePen() || impl_->clipPolygon) {
    MoveTo(points.front().X, points.front().Y);
    for (std::size_t i = 1; i < points.size(); ++i) LineTo(points[i].X, points[i].Y);
    return;
  }
  impl_->DrawThinChain(points);
  impl_->penPos = points.back();
}

void TCanvas::Polyline(const std::vector<TPoint>& points) {
  if (points.size() < 2) return;
  if (impl_->path.recording)
    impl_->path.AddPolyline(MapPoints(*impl_, points), false);
  else if (impl_->painter)
    impl_->painter->Figure(*impl_, PathOf(MapPoints(*impl_, points), false), true, {}, false);
  else
    impl_->DrawFigure(impl_->OneOutline(points, false), true, false);
}

void TCanvas::Polygon(const std::vector<TPoint>& points) {
  if (points.size() < 2) return;
  if (impl_->path.recording) {
    impl_->path.AddPolyline(MapPoints(*impl_, points), true);
    return;
  }
  if (impl_->painter) {
    const QPainterPath outline = PathOf(MapPoints(*impl_, points), true);
    impl_->painter->Figure(*impl_, outline, true, outline, true);
    return;
  }
  TFigure& figure = impl_->OneOutline(points, true);
  figure.area.push_back(figure.outline.front());
  figure.winding = impl_->fillMode == pfmWinding;
  impl_->DrawFigure(figure, true, true);
}

void TCanvas::PolyBezier(const std::vector<TPoint>& points) {
  if (points.size() < 4 || (points.size() - 1) % 3 != 0) return;
  const QPolygonF mapped = MapPoints(*impl_, points);
  if (impl_->path.recording) {
    impl_->path.AddBeziers(mapped);
    return;
  }
  QPainterPath curve(mapped[0]);
  for (qsizetype i = 1; i + 2 < mapped.size(); i += 3) curve.cubicTo(mapped[i], mapped[i + 1], mapped[i + 2]);
  if (impl_->painter) {
    impl_->painter->Figure(*impl_, curve, true, {}, false);
    return;
  }
  impl_->DrawFigure(OutlineFigure(curve.toSubpathPolygons().value(0), false), true, false);
}

// ---------------------------------------------------------------------------
// Boxes

void TCanvas::Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  Normalise(x1, x2);
  Normalise(y1, y2);
  if (x1 == x2 || y1 == y2) return;
  // The outline runs through the edge pixels, the right and bottom ones being
  // x2 - 1 and y2 - 1; a recorded path keeps the same corners.
  const QPolygonF edge{impl_->Map(x2 - 1, y1), impl_->Map(x1, y1), impl_->Map(x1, y2 - 1), impl_->Map(x2 - 1, y2 - 1)};
  if (impl_->path.recording) {
    impl_->path.AddPolyline(edge, true);
    return;
  }
  if (impl_->painter) {
    const TPainterBoxes boxes = PainterBoxes(*impl_, x1, y1, x2, y2);
    QPainterPath outline, area;
    outline.addPolygon(boxes.map.map(QPolygonF(boxes.edge)));
    area.addPolygon(boxes.map.map(QPolygonF(boxes.area)));
    impl_->painter->Figure(*impl_, outline, true, area, true);
    return;
  }
  TFigure figure = OutlineFigure(edge, true);
  if (impl_->AxisAligned()) {
    const QRect box = impl_->MapBox(x1, y1, x2, y2);
    figure.outline = {QPolygonF{QPointF(box.right(), box.top()), QPointF(box.left(), box.top()),
                                QPointF(box.left(), box.bottom()), QPointF(box.right(), box.bottom())}};
    figure.area = {QPolygonF(QRectF(box))};
    figure.wideOutline.addRect(impl_->WideBox(box));
  } else {
    figure.area = {QPolygonF{impl_->Map(x1, y1), impl_->Map(x2, y1), impl_->Map(x2, y2), impl_->Map(x1, y2)}};
  }
  impl_->DrawFigure(figure, true, true);
}

void TCanvas::Ellipse(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) {
  Normalise(x1, x2);
  Normalise(y1, y2);
  if (x1 == x2 || y1 == y2) return;
  if (!impl_->path.recording && impl_->painter) {
    const TPainterBoxes boxes = PainterBoxes(*impl_, x1, y1, x2, y2);
    impl_->painter->Figure(*impl_, boxes.map.map(EllipsePath(boxes.edge)), true,
                           boxes.map.map(EllipsePath(boxes.area)), true);
    return;
  }
  if (!impl_->path.recording && impl_->AxisAligned()) {
    impl_->DrawEllipseBox(impl_->MapBox(x1, y1, x2, y2));
    return;
  }
  // Outline and path through the edge pixels' positions, as for Rectangle.
  const QPainterPath outline = impl_->world.map(EllipsePath(QRectF(QPointF(x1, y1), QPointF(x2 - 1, y2 - 1))));
  if (impl_->path.recording) {
    impl_->path.AddQtPath(outline, true);
    return;
  }
  // The area is the ellipse whose points EllipseRow takes for an upright box.
  const QPainterPath area = EllipsePath(QRectF(QPointF(x1 - 0.5, y1 - 0.5), QPointF(x2 - 0.5, y2 - 0.5)));
  TFigure figure = OutlineFigure(outline.toSubpathPolygons().value(0), true);
  figure.area = Polygons(impl_->world.map(area));
  impl_->DrawFigure(figure, true, true);
}

namespace {

void ArcFigure(TCanvas::Impl& impl, std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
               TPoint start, TPoint end, TArcKind kind) {
  Normalise(x1, x2);
  Normalise(y1, y2);
  if (x1 == x2 || y1 == y2) return;
  if (!impl.path.recording && impl.painter) {
    const TPainterBoxes boxes = PainterBoxes(impl, x1, y1, x2, y2);
    // Upright boxes are in device space already, and so must the rays be.
    const QPointF from = impl.AxisAligned() ? impl.Map(start.X, start.Y) : QPointF(start.X, start.Y);
    const QPointF to = impl.AxisAligned() ? impl.Map(end.X, end.Y) : QPointF(end.X, end.Y);
    impl.painter->Figure(impl, boxes.map.map(ArcPath(boxes.edge, from, to, kind)), true,
                         boxes.map.map(ArcPath(boxes.area, from, to, kind)), kind != TArcKind::Arc);
    return;
  }
  if (!impl.path.recording && impl.AxisAligned()) {
    impl.DrawArcBox(impl.MapBox(x1, y1, x2, y2), impl.Map(start.X, start.Y), impl.Map(end.X, end.Y), kind);
    return;
  }
  const QRectF edgeBox(QPointF(x1, y1), QPointF(x2 - 1, y2 - 1));
  const QPainterPath outline =
      impl.world.map(ArcPath(edgeBox, QPointF(start.X, start.Y), QPointF(end.X, end.Y), kind));
  if (impl.path.recording) {
    impl.path.AddQtPath(outline, kind != TArcKind::Arc);
    return;
  }

  TFigure figure = OutlineFigure(outline.toSubpathPolygons().value(0), kind != TArcKind::Arc);
  if (kind != TArcKind::Arc) {
    const QRectF box(QPointF(x1 - 0.5, y1 - 0.5), QPointF(x2 - 0.5, y2 - 0.5));
    figure.area = Polygons(impl.world.map(ArcPath(box, QPointF(start.X, start.Y), QPointF(end.X, end.Y), kind)));
  }
  impl.DrawFigure(figure, true, kind != TArcKind::Arc);
}

}  // namespace

void TCanvas::Arc(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, std::int32_t x3,
                  std::int32_t y3, std::int32_t x4, std::int32_t y4) {
  ArcFigure(*impl_, x1, y1, x2, y2, TPoint{x3, y3}, TPoint{x4, y4}, TArcKind::Arc);
}

void TCanvas::Chord(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, std::int32_t x3,
                    std::int32_t y3, std::int32_t x4, std::int32_t y4) {
  ArcFigure(*impl_, x1, y1, x2, y2, TPoint{x3, y3}, TPoint{x4, y4}, TArcKind::Chord);
}

void TCanvas::Pie(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2, std::int32_t x3,
                  std::int32_t y3, std::int32_t x4, std::int32_t y4) {
  ArcFigure(*impl_, x1, y1, x2, y2, TPoint{x3, y3}, TPoint{x4, y4}, TArcKind::Pie);
}

}  // namespace lumatrex
