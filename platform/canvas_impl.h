// Internal: the state of a TCanvas and the figure pipeline its drawing calls
// share. A figure is turned into coverage masks (pen pixels, dash-gap pixels,
// brush pixels; disjoint), which are then combined with the bitmap's 32-bit
// surface in the pen mode. No QPainter is kept open between calls: text opens
// one on a private layer for the duration of one TextOut.
#pragma once

#include <QPainterPath>
#include <QPolygonF>
#include <QRect>
#include <QTransform>
#include <cstdint>
#include <initializer_list>
#include <memory>
#include <optional>
#include <vector>

#include "platform/canvas.h"
#include "platform/raster.h"

namespace lumatrex {

// A figure in device space, where pixel (x, y) stands for the point (x, y).
// The one-pixel outline runs through its vertices; the area holds the points
// strictly inside, and those on its left and top edges, which is why a
// polygon's fill leaves out its right and bottom edges while its outline
// covers them.
struct TFigure {
  std::vector<QPolygonF> outline;
  std::vector<bool> closed;  // one flag per outline polygon
  // Centre line for wide pens; empty: the outline.
  QPainterPath wideOutline;
  std::vector<QPolygonF> area;  // empty: nothing to fill
  bool winding = false;
};

// Pixels of one stroke: pen colour on On, background colour on Gap.
struct TPenMasks {
  raster::TMask on;
  raster::TMask gap;
};

// Plots one-pixel pen strokes into masks, counting pixels along the stroke for
// the dash pattern; the first visit of a pixel decides it, so crossings and
// joints are combined with the picture once.
class TPenPlotter {
 public:
  TPenPlotter(TPenMasks& masks, TPenStyle style, bool paintGaps);
  void Plot(int x, int y, std::int64_t step);
  // The line from A to B without B; returns Step advanced past it.
  std::int64_t Line(QPoint a, QPoint b, std::int64_t step);

 private:
  TPenMasks& masks_;
  raster::TDashPattern dash_;
  bool paintGaps_;
};

// A path in device space in the classic form: points with one TPathPointType each.
struct TRecordedPath {
  std::vector<QPointF> points;
  std::vector<std::uint8_t> types;
  bool recording = false;
  bool newFigure = true;  // the next LineTo starts a figure at the current position

  void Clear();
  void LineTo(QPointF from, QPointF to);
  void AddPolyline(const QPolygonF& points, bool closed);
  void AddBeziers(const QPolygonF& points);  // start point, then 3 per curve
  // Qt curves become Bezier points; Closed marks every subpath's end.
  void AddQtPath(const QPainterPath& path, bool closed);
  QPainterPath ToQt() const;
  // Each figure as line segments, with its closed flag.
  void Flattened(std::vector<QPolygonF>& polygons, std::vector<bool>& closed) const;
};

class TPainterTarget;

enum class TArcKind {
  Arc,
  Chord,
  Pie,
};

struct TCanvas::Impl {
  explicit Impl(TBitmap& target);

  TBitmap& bitmap;
  TPen pen;
  TBrush brush;
  TFont font;
  TPoint penPos;
  TPolyFillMode fillMode = pfmAlternate;
  TBkMode bkMode = bkOpaque;
  std::int32_t charExtra = 0;
  std::optional<TRect> clipRect;
  std::unique_ptr<raster::TMask> clipPolygon;  // device pixels SetClipPolygon allows
  QTransform world;
  TRecordedPath path;
  // Working lists reused from figure to figure, so drawing does not allocate.
  raster::TScanBuffers scan;
  std::vector<QPoint> vertices;
  TFigure reused;  // behind OneOutline
  // Set on a canvas that issues its operations to a QPainter
  // (painter_canvas.cpp) instead of rasterising them; null on bitmaps.
  TPainterTarget* painter = nullptr;
  // SetClipPolygon's polygon on such a canvas, which has no pixels to mask.
  std::optional<QPolygonF> clipOutline;

  // ---- coordinates (canvas.cpp) ------------------------------------------
  QRect ClipArea() const;
  QPointF Map(std::int32_t x, std::int32_t y) const;
  bool AxisAligned() const { return world.m12() == 0 && world.m21() == 0; }
  // The device box of a logical one, normalised; only for axis-aligned transforms.
  QRect MapBox(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2) const;

  // A figure of one outline (no area, no wide outline) in a TFigure the
  // canvas keeps, so that drawing lines and polygons reuses its lists. Valid
  // until the next call.
  TFigure& OneOutline(bool closed);
  TFigure& OneOutline(const std::vector<TPoint>& points, bool closed);  // mapped
  TFigure& OneOutline(std::initializer_list<QPointF> points, bool closed);

  // ---- rendering (canvas_render.cpp) ---------------------------------------
  bool PenVisible() const { return pen.Style() != psClear; }
  bool BrushVisible() const;
  bool WidePen() const { return pen.Width() > 1; }
  QRgb Background() const;
  raster::TPaintSource BrushSource() const;
  // The device pixels a figure with these bounds may touch, within the clip.
  QRect AreaFor(const QRectF& bounds) const;
  // With a copying pen every pixel simply takes its colour, so painting the
  // brush and then a solid one-pixel pen over it gives the picture the
  // disjoint masks give: such figures are painted span by span, no masks.
  bool PaintsDirectly() const;
  // Calls Plot(x, y, step) for the one-pixel outline's pixels within Area,
  // Step counting along the whole figure (for dash patterns).
  template <class Plot>
  void ForEachOutlinePixel(const TFigure& figure, const QRect& area, Plot&& plot);
  void StrokeWide(const QPainterPath& centre, TPenMasks& masks) const;
  // Wide pens' centre line for a box figure: through the edge pixels, or
  // inside the box for psInsideFrame.
  QRectF WideBox(const QRect& box) const;
  void DrawFigure(const TFigure& figure, bool stroke, bool fill);
  void DrawFigureDirectly(const TFigure& figure, const QRect& area, bool drawPen, bool drawBrush);
  // A one-pixel outline alone, in any pen mode: the picture the masks give,
  // without building them (the XOR previews of a drag are such figures).
  void DrawThinOutline(const TFigure& figure, const QRect& area);
  // LineChain's segments in a one-pixel pen without a clip polygon, each as
  // LineTo would draw it alone, with the pen set up once for them all.
  void DrawThinChain(const std::vector<TPoint>& points);
  // Clips the masks and combines them with the surface, brush first.
  void Render(TPenMasks* pen, raster::TMask* brush);
  void PaintMask(const raster::TMask& mask, const raster::TPaintSource& source, TPenMode mode);
  // The rows of the surface painted on, and whether they are all opaque.
  raster::TSurfaceRows SurfaceRows();
  // Fills Polygons with the brush, copying, within Area. Without a clip
  // polygon the spans are painted as they are found, no mask in between.
  void FillWithBrush(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area);

  // ---- ellipses and arcs on device boxes (canvas_ellipse.cpp) --------------
  void DrawEllipseBox(const QRect& box);
  void DrawEllipseDirectly(const QRect& box, const QRect& area, bool drawPen, bool drawBrush);
  void DrawArcBox(const QRect& box, QPointF start, QPointF end, TArcKind kind);
};

// The arc of the ellipse in Box, counter-clockwise on the screen from the ray
// through Start to the ray through End (a full turn when they coincide); a
// chord closes it, a pie runs through the centre.
QPainterPath ArcPath(const QRectF& box, QPointF start, QPointF end, TArcKind kind);

// The subpaths of Path as polygons, curves flattened.
std::vector<QPolygonF> Polygons(const QPainterPath& path);

}  // namespace lumatrex
