#include "shapes/outline.h"

#include <cstring>

#include "platform/canvas.h"
#include "shapes/shape.h"

namespace lumatrex {

TArrMyPoint ZoomedPoints(const TMyShape& shape) {
  TArrMyPoint zoomed;
  zoomed.reserve(static_cast<std::size_t>(shape.GetPointsCount()));
  for (std::int32_t i = 0; i < shape.GetPointsCount(); ++i) zoomed.push_back(shape.GetPointInZoom(i));
  return zoomed;
}

bool SameBits(const TArrMyPoint& a, const TArrMyPoint& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(TMyPoint)) == 0);
}

std::vector<TPoint> RoundPoints(const TArrMyPoint& zoomed) { return ShiftAndRound(zoomed, 0, 0); }

TPoint ShiftAndRound(const TMyPoint& zoomed, std::int32_t dx, std::int32_t dy) {
  return Point(Round(static_cast<long double>(zoomed.X) + dx), Round(static_cast<long double>(zoomed.Y) + dy));
}

std::vector<TPoint> ShiftAndRound(const TArrMyPoint& zoomed, std::int32_t dx, std::int32_t dy) {
  std::vector<TPoint> points;
  points.reserve(zoomed.size());
  for (const TMyPoint& p : zoomed) points.push_back(ShiftAndRound(p, dx, dy));
  return points;
}

std::vector<TPoint> RotatePoints(const TArrMyPoint& zoomed, const TMyPoint& centre, long double angle) {
  TArrMyPoint turned;
  turned.reserve(zoomed.size());
  for (const TMyPoint& p : zoomed) turned.push_back(RotateAPoint(p, centre, static_cast<float>(angle)));
  return RoundPoints(turned);
}

void StrokeChain(TCanvas& canvas, const std::vector<TPoint>& points) {
  if (points.empty()) return;
  canvas.MoveTo(points.front().X, points.front().Y);
  for (std::size_t i = 1; i < points.size(); ++i) canvas.LineTo(points[i].X, points[i].Y);
}

void StrokeClosedChain(TCanvas& canvas, const std::vector<TPoint>& points) {
  if (points.empty()) return;
  StrokeChain(canvas, points);
  canvas.LineTo(points.front().X, points.front().Y);
}

bool InHotSquare(const TMyPoint& zoomed, const TPoint& p, std::uint8_t hot) {
  const TPoint c = MyPtToPt(zoomed);
  return PtInRect(Rect(c.X - hot, c.Y - hot, c.X + hot, c.Y + hot), p);
}

bool PtInPolygon(const std::vector<TPoint>& points, const TPoint& p) {
  if (points.size() < 3) return false;
  return TRegion::CreatePolygonRgn(points, pfmAlternate).PtInRegion(p.X, p.Y);
}

}  // namespace lumatrex
