// Paths: figures recorded between BeginPath and EndPath, in device space.
#include <cmath>

#include "platform/canvas_impl.h"
#include "platform/painter_target.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TRecordedPath

void TRecordedPath::Clear() {
  points.clear();
  types.clear();
  newFigure = true;
}

void TRecordedPath::LineTo(QPointF from, QPointF to) {
  if (newFigure) {
    points.push_back(from);
    types.push_back(ptMoveTo);
    newFigure = false;
  }
  points.push_back(to);
  types.push_back(ptLineTo);
}

void TRecordedPath::AddPolyline(const QPolygonF& figure, bool closed) {
  for (qsizetype i = 0; i < figure.size(); ++i) {
    points.push_back(figure[i]);
    types.push_back(i == 0 ? ptMoveTo : ptLineTo);
  }
  if (closed) types.back() |= ptCloseFigure;
  newFigure = true;
}

void TRecordedPath::AddBeziers(const QPolygonF& figure) {
  for (qsizetype i = 0; i < figure.size(); ++i) {
    points.push_back(figure[i]);
    types.push_back(i == 0 ? ptMoveTo : ptBezierTo);
  }
  newFigure = true;
}

void TRecordedPath::AddQtPath(const QPainterPath& path, bool closed) {
  for (int i = 0; i < path.elementCount(); ++i) {
    const QPainterPath::Element e = path.elementAt(i);
    if (e.isMoveTo() && closed && !types.empty() && i > 0) types.back() |= ptCloseFigure;
    points.emplace_back(e.x, e.y);
    types.push_back(e.isMoveTo() ? ptMoveTo : e.isLineTo() ? ptLineTo : ptBezierTo);
  }
  if (closed && path.elementCount() > 0) types.back() |= ptCloseFigure;
  newFigure = true;
}

QPainterPath TRecordedPath::ToQt() const {
  QPainterPath path;
  for (std::size_t i = 0; i < points.size(); ++i) {
    const std::uint8_t kind = types[i] & ~ptCloseFigure;
    if (kind == ptMoveTo) {
      path.moveTo(points[i]);
    } else if (kind == ptLineTo) {
      path.lineTo(points[i]);
    } else if (i + 2 < points.size()) {
      path.cubicTo(points[i], points[i + 1], points[i + 2]);
      i += 2;
    }
    if (types[i] & ptCloseFigure) path.closeSubpath();
  }
  return path;
}

void TRecordedPath::Flattened(std::vector<QPolygonF>& polygons, std::vector<bool>& closed) const {
  std::size_t start = 0;
  while (start < points.size()) {
    std::size_t end = start + 1;
    while (end < points.size() && (types[end] & ~ptCloseFigure) != ptMoveTo) ++end;
    TRecordedPath figure;
    figure.points.assign(points.begin() + static_cast<std::ptrdiff_t>(start),
                         points.begin() + static_cast<std::ptrdiff_t>(end));
    figure.types.assign(types.begin() + static_cast<std::ptrdiff_t>(start),
                        types.begin() + static_cast<std::ptrdiff_t>(end));
    const bool isClosed = (figure.types.back() & ptCloseFigure) != 0;
    figure.types.back() &= ~ptCloseFigure;  // the closing side is the polygon's own
    QPolygonF polygon = figure.ToQt().toSubpathPolygons().value(0);
    if (polygon.isEmpty()) polygon.append(figure.points.front());
    if (isClosed && polygon.size() > 1 && polygon.front() == polygon.back()) polygon.removeLast();
    polygons.push_back(polygon);
    closed.push_back(isClosed);
    start = end;
  }
}

// ---------------------------------------------------------------------------
// TCanvas

void TCanvas::BeginPath() {
  impl_->path.Clear();
  impl_->path.recording = true;
}

void TCanvas::EndPath() { impl_->path.recording = false; }

void TCanvas::AbortPath() {
  impl_->path.Clear();
  impl_->path.recording = false;
}

namespace {

void DrawPath(TCanvas::Impl& impl, bool stroke, bool fill) {
  if (impl.painter) {
    const QPainterPath path = impl.path.ToQt();
    impl.painter->Figure(impl, path, stroke, path, fill);
    impl.path.Clear();
    impl.path.recording = false;
    return;
  }
  TFigure figure;
  impl.path.Flattened(figure.outline, figure.closed);
  if (fill) {
    figure.area = figure.outline;
    figure.winding = impl.fillMode == pfmWinding;
  }
  figure.wideOutline = impl.path.ToQt();  // wide pens follow the curves themselves
  impl.DrawFigure(figure, stroke, fill);
  impl.path.Clear();
  impl.path.recording = false;
}

}  // namespace

void TCanvas::StrokePath() { DrawPath(*impl_, true, false); }
void TCanvas::FillPath() { DrawPath(*impl_, false, true); }
void TCanvas::StrokeAndFillPath() { DrawPath(*impl_, true, true); }

void TCanvas::FlattenPath() {
  std::vector<QPolygonF> polygons;
  std::vector<bool> closed;
  impl_->path.Flattened(polygons, closed);
  TRecordedPath& path = impl_->path;
  path.points.clear();
  path.types.clear();
  for (std::size_t k = 0; k < polygons.size(); ++k) path.AddPolyline(polygons[k], closed[k]);
}

void TCanvas::GetPath(std::vector<TPoint>& points, std::vector<std::uint8_t>& types) const {
  points.clear();
  for (const QPointF& p : impl_->path.points)
    points.push_back(TPoint{static_cast<std::int32_t>(std::floor(p.x() + 0.5)),
                            static_cast<std::int32_t>(std::floor(p.y() + 0.5))});
  types = impl_->path.types;
}

}  // namespace lumatrex
