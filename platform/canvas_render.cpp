// The figure pipeline: outlines and areas become disjoint pen, gap and brush
// masks, which are combined with the surface in the pen mode.
#include <QPainterPathStroker>
#include <algorithm>
#include <cassert>
#include <cmath>

#include "platform/bitmap.h"
#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"

namespace lumatrex {

using raster::TMask;
using raster::TPaintSource;

std::vector<QPolygonF> Polygons(const QPainterPath& path) {
  const QList<QPolygonF> list = path.toSubpathPolygons();
  return std::vector<QPolygonF>(list.begin(), list.end());
}

// ---------------------------------------------------------------------------
// TPenPlotter

TPenPlotter::TPenPlotter(TPenMasks& masks, TPenStyle style, bool paintGaps)
    : masks_(masks), dash_(style), paintGaps_(paintGaps && !dash_.Solid()) {}

void TPenPlotter::Plot(int x, int y, std::int64_t step) {
  if (masks_.on.Test(x, y) || masks_.gap.Test(x, y)) return;
  if (dash_.On(step))
    masks_.on.Set(x, y);
  else if (paintGaps_)
    masks_.gap.Set(x, y);
}

std::int64_t TPenPlotter::Line(QPoint a, QPoint b, std::int64_t step) {
  return step + raster::LinePixels(a, b, masks_.on.Area(),
                                   [this, step](int x, int y, std::int64_t i) { Plot(x, y, step + i); });
}

// ---------------------------------------------------------------------------
// Pen, brush and background

bool TCanvas::Impl::BrushVisible() const {
  return (brush.Bitmap() && !brush.Bitmap()->Empty()) || brush.Style() != bsClear;
}

// Behind a solid brush the background is the brush colour (text cells, the
// gaps of dashed lines); behind hatches it is white.
QRgb TCanvas::Impl::Background() const {
  return brush.Style() == bsSolid ? raster::ToRgb(brush.Color()) : qRgb(255, 255, 255);
}

TPaintSource TCanvas::Impl::BrushSource() const {
  TPaintSource source;
  source.color = raster::ToRgb(brush.Color());
  if (brush.Bitmap() && !brush.Bitmap()->Empty()) {
    source.kind = TPaintSource::Kind::Tile;
    source.tile = &brush.Bitmap()->impl().Rgb32();
  } else if (brush.Style() != bsSolid) {
    source.kind = TPaintSource::Kind::Hatch;
    source.hatch = brush.Style();
    source.paintBackground = bkMode == bkOpaque;
    source.background = Background();
  }
  return source;
}

QRect TCanvas::Impl::AreaFor(const QRectF& bounds) const {
  // Wide pens reach half their width past the outline, miter joins up to the
  // miter limit (10) times that; two more pixels cover rounding.
  const double grow = (WidePen() ? pen.Width() * 5.0 : 0.0) + 2.0;
  const QRect clip = ClipArea();
  if (clip.isEmpty() || bounds.isNull()) return QRect();
  const double l = std::max<double>(std::floor(bounds.left() - grow), clip.left());
  const double t = std::max<double>(std::floor(bounds.top() - grow), clip.top());
  const double r = std::min<double>(std::ceil(bounds.right() + grow), clip.right());
  const double b = std::min<double>(std::ceil(bounds.bottom() + grow), clip.bottom());
  if (!(l <= r && t <= b)) return QRect();
  return QRect(QPoint(static_cast<int>(l), static_cast<int>(t)), QPoint(static_cast<int>(r), static_cast<int>(b)));
}

// ---------------------------------------------------------------------------
// Strokes

namespace {

QPoint DevicePixel(QPointF p) {
  return QPoint(static_cast<int>(std::floor(p.x() + 0.5)), static_cast<int>(std::floor(p.y() + 0.5)));
}

}  // namespace

template <class Plot>
void TCanvas::Impl::ForEachOutlinePixel(const TFigure& figure, const QRect& area, Plot&& plot) {
  std::int64_t step = 0;  // the dash pattern runs on across the whole figure
  for (std::size_t k = 0; k < figure.outline.size(); ++k) {
    vertices.clear();
    for (const QPointF& p : figure.outline[k]) {
      const QPoint pixel = DevicePixel(p);
      if (vertices.empty() || vertices.back() != pixel) vertices.push_back(pixel);
    }
    if (figure.closed[k] && vertices.size() > 1 && vertices.front() != vertices.back())
      vertices.push_back(vertices.front());
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i)
      step += raster::LinePixels(vertices[i], vertices[i + 1], area,
                                 [&plot, step](int x, int y, std::int64_t n) { plot(x, y, step + n); });
  }
}

bool TCanvas::Impl::PaintsDirectly() const {
  return pen.Mode() == pmCopy && !clipPolygon && (!PenVisible() || (!WidePen() && raster::SolidStyle(pen.Style())));
}

void TCanvas::Impl::StrokeWide(const QPainterPath& centre, TPenMasks& masks) const {
  QPainterPathStroker stroker;
  stroker.setWidth(pen.Width());
  // Cosmetic wide pens are round, as the classic CreatePen makes them.
  // (A value read from a damaged file past the last kind counts as the last.)
  static constexpr Qt::PenCapStyle kCaps[] = {Qt::RoundCap, Qt::SquareCap, Qt::FlatCap};
  static constexpr Qt::PenJoinStyle kJoins[] = {Qt::RoundJoin, Qt::BevelJoin, Qt::SvgMiterJoin};
  stroker.setCapStyle(pen.Geometric() ? kCaps[std::min<int>(pen.EndCap(), pecFlat)] : Qt::RoundCap);
  stroker.setJoinStyle(pen.Geometric() ? kJoins[std::min<int>(pen.Join(), pjMiter)] : Qt::RoundJoin);
  stroker.setMiterLimit(10);
  const std::vector<double> dashes = raster::WideDashPattern(pen.Style());
  if (!dashes.empty()) stroker.setDashPattern(QList<qreal>(dashes.begin(), dashes.end()));
  masks.on = raster::PolygonMask(Polygons(stroker.createStroke(centre)), true, masks.on.Area());
}

QRectF TCanvas::Impl::WideBox(const QRect& box) const {
  // The edge pixels run from left to right - 1; an inside frame moves the
  // centre line in until the pen's outer side is on them.
  const double inset = pen.Style() == psInsideFrame ? (pen.Width() - 1) / 2.0 : 0.0;
  const QRectF edges(QPointF(box.left(), box.top()), QPointF(box.right(), box.bottom()));
  const QRectF inner = edges.adjusted(inset, inset, -inset, -inset);
  return inner.isValid() ? inner : QRectF(edges.center(), QSizeF(0, 0));
}

namespace {

QPainterPath CentreLine(const TFigure& figure) {
  QPainterPath path;
  for (std::size_t k = 0; k < figure.outline.size(); ++k) {
    const QPolygonF& points = figure.outline[k];
    if (points.isEmpty()) continue;
    path.moveTo(points.front());
    for (qsizetype i = 1; i < points.size(); ++i) path.lineTo(points[i]);
    if (figure.closed[k]) path.closeSubpath();
  }
  return path;
}

QRectF Bounds(const TFigure& figure) {
  QRectF bounds;
  for (const QPolygonF& p : figure.outline) bounds |= p.boundingRect().adjusted(0, 0, 1, 1);  // never null
  for (const QPolygonF& p : figure.area) bounds |= p.boundingRect();
  return bounds;
}

}  // namespace

// ---------------------------------------------------------------------------
// Figures

void TCanvas::Impl::DrawFigure(const TFigure& figure, bool stroke, bool fill) {
  const bool drawPen = stroke && PenVisible();
  const bool drawBrush = fill && !figure.area.empty() && BrushVisible();
  if (!drawPen && !drawBrush) return;
  const QRect area = AreaFor(Bounds(figure));
  if (area.isEmpty()) return;
  if (PaintsDirectly()) {
    DrawFigureDirectly(figure, area, drawPen, drawBrush);
    return;
  }
  if (drawPen && !drawBrush && !WidePen() && !clipPolygon) {
    DrawThinOutline(figure, area);
    return;
  }
  TPenMasks masks{TMask(area), TMask(area)};
  if (drawPen && WidePen()) {
    StrokeWide(figure.wideOutline.isEmpty() ? CentreLine(figure) : figure.wideOutline, masks);
  } else if (drawPen) {
    TPenPlotter plotter(masks, pen.Style(), bkMode == bkOpaque);
    ForEachOutlinePixel(figure, area, [&plotter](int x, int y, std::int64_t step) { plotter.Plot(x, y, step); });
  }
  TMask brushMask = drawBrush ? raster::PolygonMask(figure.area, figure.winding, area, scan) : TMask();
  Render(drawPen ? &masks : nullptr, drawBrush ? &brushMask : nullptr);
}

void TCanvas::Impl::DrawFigureDirectly(const TFigure& figure, const QRect& area, bool drawPen, bool drawBrush) {
  if (drawBrush) FillWithBrush(figure.area, figure.winding, area);
  if (drawPen) {
    const raster::TSurfaceRows rows = SurfaceRows();
    const std::uint32_t color = raster::ToRgb(pen.Color()) & 0x00FFFFFFu;
    ForEachOutlinePixel(figure, area, [&](int x, int y, std::int64_t) {
      if (!raster::InArea(area, x, y)) return;
      std::uint32_t& pixel = rows.Row(y)[x];
      pixel = color | (pixel & 0xFF000000u);
    });
  }
}

// The first visit of a pixel decides whether it is a dash or a gap, as in the
// pen masks; sorting the visits by place (stably, so the first stays first)
// leaves each pixel once, and runs of equal kind are painted as spans.
void TCanvas::Impl::DrawThinOutline(const TFigure& figure, const QRect& area) {
  struct TVisit {
    int y, x;
    bool on;
  };
  static thread_local std::vector<TVisit> visits;  // kept: previews paint many figures per move
  visits.clear();
  const raster::TDashPattern dash(pen.Style());
  const bool paintGaps = bkMode == bkOpaque && !dash.Solid();
  ForEachOutlinePixel(figure, area, [&](int x, int y, std::int64_t step) {
    const bool on = dash.On(step);
    if (raster::InArea(area, x, y) && (on || paintGaps)) visits.push_back(TVisit{y, x, on});
  });
  // A straight piece visits its pixels in or against place order, each once:
  // only a curve or a crossing outline needs the (allocating) sort.
  const auto before = [](const TVisit& a, const TVisit& b) { return a.y != b.y ? a.y < b.y : a.x < b.x; };
  const auto after = [&before](const TVisit& a, const TVisit& b) { return before(b, a); };
  if (std::adjacent_find(visits.begin(), visits.end(), [&](const TVisit& a, const TVisit& b) { return !after(a, b); }) ==
      visits.end())
    std::reverse(visits.begin(), visits.end());
  else if (!std::is_sorted(visits.begin(), visits.end(), before))
    std::stable_sort(visits.begin(), visits.end(), before);
  TPaintSource penSource, gapSource;
  penSource.color = raster::ToRgb(pen.Color());
  gapSource.color = Background();
  const TPenMode mode = pen.Mode();
  const raster::TSurfaceRows rows = SurfaceRows();
  for (std::size_t i = 0; i < visits.size();) {
    const TVisit run = visits[i];
    int x1 = run.x + 1;
    for (++i; i < visits.size() && visits[i].y == run.y && visits[i].x < x1 + 1; ++i) {
      if (visits[i].x < x1) continue;  // a later visit of a pixel already taken
      if (visits[i].on != run.on) break;
      x1 = visits[i].x + 1;
    }
    raster::PaintSpan(rows, run.y, run.x, x1, run.on ? penSource : gapSource, mode);
  }
}

// A segment alone is a figure whose pixels are all different, in place
// order, with its own dash count from zero: each pixel is combined with the
// picture as it comes. LineTo's area only trims the segment to the clip, so
// the clip serves; a segment too far out to round to pixels is left to
// LineTo's own figure.
void TCanvas::Impl::DrawThinChain(const std::vector<TPoint>& points) {
  if (!PenVisible()) return;
  const QRect clip = ClipArea();
  const raster::TDashPattern dash(pen.Style());
  const bool paintGaps = bkMode == bkOpaque && !dash.Solid();
  const std::uint32_t penColor = raster::ToRgb(pen.Color()), gapColor = Background();
  const TPenMode mode = pen.Mode();
  const raster::TSurfaceRows rows = SurfaceRows();
  // Each point mapped, and its pixel as a figure rounds it: with no world
  // transform, the point itself.
  struct TEnd {
    QPointF mapped;
    QPoint pixel;
    bool nearby;
  };
  const bool identity = world.isIdentity();
  const auto endAt = [&](const TPoint& p) {
    TEnd end{identity ? QPointF(p.X, p.Y) : Map(p.X, p.Y), QPoint(), false};
    end.nearby = std::fabs(end.mapped.x()) < 1e9 && std::fabs(end.mapped.y()) < 1e9;
    if (end.nearby) end.pixel = identity ? QPoint(p.X, p.Y) : DevicePixel(end.mapped);
    return end;
  };
  TEnd from = endAt(points.front());
  for (std::size_t i = 1; i < points.size(); ++i) {
    const TEnd to = endAt(points[i]);
    if (!from.nearby || !to.nearby) {
      DrawFigure(OneOutline({from.mapped, to.mapped}, false), true, false);
    } else if (!clip.isEmpty()) {
      raster::LinePixels(from.pixel, to.pixel, clip, [&](int x, int y, std::int64_t step) {
        const bool on = dash.On(step);
        if (!raster::InArea(clip, x, y) || !(on || paintGaps)) return;
        std::uint32_t& pixel = rows.Row(y)[x];
        pixel = raster::Rop2(mode, on ? penColor : gapColor, pixel);
      });
    }
    from = to;
  }
}

void TCanvas::Impl::Render(TPenMasks* penMasks, TMask* brushMask) {
  if (clipPolygon) {
    if (penMasks) {
      penMasks->on.Intersect(*clipPolygon);
      penMasks->gap.Intersect(*clipPolygon);
    }
    if (brushMask) brushMask->Intersect(*clipPolygon);
  }
  const TPenMode mode = pen.Mode();
  if (brushMask) {
    if (penMasks) {
      brushMask->Subtract(penMasks->on);
      brushMask->Subtract(penMasks->gap);
    }
    PaintMask(*brushMask, BrushSource(), mode);
  }
  if (penMasks) {
    TPaintSource gapSource;
    gapSource.color = Background();
    PaintMask(penMasks->gap, gapSource, mode);
    TPaintSource penSource;
    penSource.color = raster::ToRgb(pen.Color());
    PaintMask(penMasks->on, penSource, mode);
  }
}

void TCanvas::Impl::FillWithBrush(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area) {
  if (area.isEmpty()) return;
  const TPaintSource source = BrushSource();
  if (clipPolygon) {
    TMask mask = raster::PolygonMask(polygons, winding, area, scan);
    mask.Intersect(*clipPolygon);
    PaintMask(mask, source, pmCopy);
    return;
  }
  if (source.kind == TPaintSource::Kind::Tile && (!source.tile || source.tile->isNull())) return;
  const raster::TSurfaceRows rows = SurfaceRows();
  raster::FillPolygons(
      polygons, winding, area, [&](int y, int x0, int x1) { raster::PaintSpan(rows, y, x0, x1, source, pmCopy); },
      scan);
}

raster::TSurfaceRows TCanvas::Impl::SurfaceRows() {
  TBitmap::Impl& pixels = bitmap.impl();
  return raster::TSurfaceRows(pixels.PaintSurface(), pixels.OpaqueSurface());
}

void TCanvas::Impl::PaintMask(const TMask& mask, const TPaintSource& source, TPenMode mode) {
  if (mask.Area().isEmpty() || mask.Empty()) return;
  assert(bitmap.impl().PaintSurface().rect().contains(mask.Area()));
  raster::Composite(SurfaceRows(), mask, source, mode);
}

}  // namespace lumatrex
