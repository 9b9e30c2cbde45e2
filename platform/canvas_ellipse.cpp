// Ellipses, arcs, chords and pies on device boxes. Their one-pixel outline is
// the inside edge of the filled ellipse, so an arc lies on the very pixels of
// the ellipse drawn in the same box, and the fill never pokes out of it.
#include <algorithm>
#include <cmath>
#include <numbers>

#include "platform/bitmap.h"
#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"

namespace lumatrex {

using raster::TMask;

namespace {

constexpr double kTurn = 2 * std::numbers::pi;

struct TEdgePixel {
  QPoint pixel;
  double angle;  // from the arc's start, counter-clockwise on the screen
};

// The point the ellipse in Box is centred on (pixels stand for their points).
QPointF EllipseCentre(const QRect& box) {
  return QPointF(box.left() + (box.width() - 1) / 2.0, box.top() + (box.height() - 1) / 2.0);
}

// The counter-clockwise screen angle of (x, y) seen from (cx, cy), in [0, 2π).
double ScreenAngle(double x, double y, double cx, double cy) {
  const double a = std::atan2(cy - y, x - cx);
  return a < 0 ? a + kTurn : a;
}

// Calls F for the ellipse's pixels in rows [First, Last] that have a
// 4-neighbour outside it.
template <class F>
void ForEachEdgePixel(const QRect& box, int first, int last, F&& f) {
  first = std::max(first, box.top());
  last = std::min(last, box.bottom());
  for (int y = first; y <= last; ++y) {
    int a, b, ua, ub, da, db;
    if (!raster::EllipseRow(box, y, a, b)) continue;
    int innerLeft = b, innerRight = b;  // interior pixels: [innerLeft, innerRight)
    if (raster::EllipseRow(box, y - 1, ua, ub) && raster::EllipseRow(box, y + 1, da, db)) {
      innerLeft = std::max({a + 1, ua, da});
      innerRight = std::min({b - 1, ub, db});
    }
    if (innerLeft >= innerRight) innerLeft = innerRight = b;
    for (int x = a; x < innerLeft; ++x) f(x, y);
    for (int x = innerRight; x < b; ++x) f(x, y);
  }
}

// The edge pixels within Sweep counter-clockwise of Start, in that order.
std::vector<TEdgePixel> EdgeChain(const QRect& box, double start, double sweep) {
  const QPointF c = EllipseCentre(box);
  std::vector<TEdgePixel> chain;
  ForEachEdgePixel(box, box.top(), box.bottom(), [&](int x, int y) {
    const double angle = std::fmod(ScreenAngle(x, y, c.x(), c.y()) - start + kTurn, kTurn);
    if (angle <= sweep) chain.push_back(TEdgePixel{QPoint(x, y), angle});
  });
  std::sort(chain.begin(), chain.end(), [](const TEdgePixel& l, const TEdgePixel& r) {
    if (l.angle != r.angle) return l.angle < r.angle;
    return l.pixel.y() != r.pixel.y() ? l.pixel.y() < r.pixel.y() : l.pixel.x() < r.pixel.x();
  });
  return chain;
}

// The counter-clockwise sweep from the ray through Start to the ray through
// End about C, in (0, 2π]; a full turn when the rays coincide.
double Sweep(QPointF c, QPointF start, QPointF end) {
  const QPointF s = start - c, e = end - c;
  if (s.x() * e.y() - s.y() * e.x() == 0 && s.x() * e.x() + s.y() * e.y() >= 0) return kTurn;
  const double sweep = ScreenAngle(end.x(), end.y(), c.x(), c.y()) - ScreenAngle(start.x(), start.y(), c.x(), c.y());
  return sweep <= 0 ? sweep + kTurn : sweep;
}

TMask EllipseMask(const QRect& box, const QRect& area) {
  TMask mask(area);
  for (int y = area.top(); y <= area.bottom(); ++y) {
    int x0, x1;
    if (raster::EllipseRow(box, y, x0, x1)) mask.SetSpan(y, x0, x1);
  }
  return mask;
}

// The part of the plane a chord or pie keeps, bounded by straight sides
// through the pixels its one-pixel sides are drawn between, so that the brush
// stops exactly at those lines; the curved side runs outside the ellipse,
// whose own pixels bound the fill there.
QPainterPath SectorThroughPixels(const QRect& box, const std::vector<TEdgePixel>& chain, QPoint centre,
                                 TArcKind kind) {
  const QPointF c = EllipseCentre(box);
  const QPointF first = chain.front().pixel, last = chain.back().pixel;
  const double from = ScreenAngle(first.x(), first.y(), c.x(), c.y());
  const double sweep = std::fmod(ScreenAngle(last.x(), last.y(), c.x(), c.y()) - from + kTurn, kTurn);
  const double rx = box.width() / 2.0 + 2, ry = box.height() / 2.0 + 2;
  QPainterPath path(kind == TArcKind::Pie ? QPointF(centre) : first);
  if (kind == TArcKind::Pie) path.lineTo(first);
  const int samples = std::max(8, box.width() + box.height());
  for (int i = 0; i <= samples; ++i) {
    const double angle = from + sweep * i / samples;
    const double r = rx * ry / std::hypot(ry * std::cos(angle), rx * std::sin(angle));
    path.lineTo(c + QPointF(r * std::cos(angle), -r * std::sin(angle)));
  }
  path.lineTo(last);
  path.closeSubpath();
  return path;
}

}  // namespace

QPainterPath ArcPath(const QRectF& box, QPointF start, QPointF end, TArcKind kind) {
  const QPointF c = box.center();
  const double a = box.width() / 2, b = box.height() / 2;
  // Qt measures arcs by the ellipse's parameter, the classic Arc by the rays'
  // screen angles: turn one into the other.
  auto parameter = [a, b](double polar) {
    return std::atan2(a * std::sin(polar), b * std::cos(polar)) * 180 / std::numbers::pi;
  };
  const double polar = ScreenAngle(start.x(), start.y(), c.x(), c.y()), polarSweep = Sweep(c, start, end);
  const double from = parameter(polar);
  double sweep = polarSweep == kTurn ? 360 : parameter(polar + polarSweep) - from;
  while (sweep <= 0) sweep += 360;
  QPainterPath path;
  if (kind == TArcKind::Pie)
    path.moveTo(c);
  else
    path.arcMoveTo(box, from);
  path.arcTo(box, from, sweep);
  if (kind != TArcKind::Arc) path.closeSubpath();
  return path;
}

void TCanvas::Impl::DrawEllipseBox(const QRect& box) {
  const bool drawPen = PenVisible(), drawBrush = BrushVisible();
  const QRect area = AreaFor(QRectF(box));
  if (box.isEmpty() || area.isEmpty() || (!drawPen && !drawBrush)) return;
  if (PaintsDirectly()) {
    DrawEllipseDirectly(box, area, drawPen, drawBrush);
    return;
  }
  TPenMasks masks{TMask(area), TMask(area)};
  if (drawPen && WidePen()) {
    QPainterPath centre;
    centre.addEllipse(WideBox(box));
    StrokeWide(centre, masks);
  } else if (drawPen) {
    TPenPlotter plotter(masks, pen.Style(), bkMode == bkOpaque);
    if (raster::TDashPattern(pen.Style()).Solid()) {
      ForEachEdgePixel(box, area.top(), area.bottom(), [&](int x, int y) { plotter.Plot(x, y, 0); });
    } else {  // dashes count along the whole outline, whatever the clip
      std::int64_t step = 0;
      for (const TEdgePixel& p : EdgeChain(box, 0, kTurn)) plotter.Plot(p.pixel.x(), p.pixel.y(), step++);
    }
  }
  TMask brushMask = drawBrush ? EllipseMask(box, area) : TMask();
  Render(drawPen ? &masks : nullptr, drawBrush ? &brushMask : nullptr);
}

void TCanvas::Impl::DrawEllipseDirectly(const QRect& box, const QRect& area, bool drawPen, bool drawBrush) {
  const raster::TSurfaceRows rows = SurfaceRows();
  const raster::TPaintSource source = BrushSource();
  if (drawBrush && !(source.kind == raster::TPaintSource::Kind::Tile && source.tile->isNull())) {
    for (int y = area.top(); y <= area.bottom(); ++y) {
      int x0, x1;
      if (!raster::EllipseRow(box, y, x0, x1)) continue;
      x0 = std::max(x0, area.left());
      x1 = std::min(x1, area.right() + 1);
      if (x0 < x1) raster::PaintSpan(rows, y, x0, x1, source, pmCopy);
    }
  }
  if (drawPen) {
    const std::uint32_t color = raster::ToRgb(pen.Color()) & 0x00FFFFFFu;
    ForEachEdgePixel(box, area.top(), area.bottom(), [&](int x, int y) {
      if (!area.contains(x, y)) return;
      std::uint32_t& pixel = rows.Row(y)[x];
      pixel = color | (pixel & 0xFF000000u);
    });
  }
}

void TCanvas::Impl::DrawArcBox(const QRect& box, QPointF start, QPointF end, TArcKind kind) {
  const bool drawPen = PenVisible(), drawBrush = kind != TArcKind::Arc && BrushVisible();
  const QRect area = AreaFor(QRectF(box));
  if (box.isEmpty() || area.isEmpty() || (!drawPen && !drawBrush)) return;
  const QPointF c = EllipseCentre(box);
  const QPoint centre(static_cast<int>(std::floor(c.x() + 0.5)), static_cast<int>(std::floor(c.y() + 0.5)));
  const std::vector<TEdgePixel> chain =
      EdgeChain(box, ScreenAngle(start.x(), start.y(), c.x(), c.y()), Sweep(c, start, end));
  TPenMasks masks{TMask(area), TMask(area)};
  if (drawPen && WidePen()) {
    StrokeWide(ArcPath(WideBox(box), start, end, kind), masks);
  } else if (drawPen) {
    TPenPlotter plotter(masks, pen.Style(), bkMode == bkOpaque);
    std::int64_t step = 0;
    for (const TEdgePixel& p : chain) plotter.Plot(p.pixel.x(), p.pixel.y(), step++);
    if (!chain.empty() && kind == TArcKind::Chord)
      plotter.Line(chain.back().pixel, chain.front().pixel, step);
    else if (!chain.empty() && kind == TArcKind::Pie)
      plotter.Line(centre, chain.front().pixel, plotter.Line(chain.back().pixel, centre, step));
  }
  TMask brushMask;
  if (drawBrush) {
    brushMask = EllipseMask(box, area);
    const QPainterPath sector = chain.empty() || WidePen()
                                    ? ArcPath(QRectF(box).translated(-0.5, -0.5), start, end, kind)
                                    : SectorThroughPixels(box, chain, centre, kind);
    brushMask.Intersect(raster::PolygonMask(Polygons(sector), false, area));
  }
  Render(drawPen ? &masks : nullptr, drawBrush ? &brushMask : nullptr);
}

}  // namespace lumatrex
