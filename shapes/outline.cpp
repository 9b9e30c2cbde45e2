#include "shapes/outline.h"

#include <algorithm>
#include <cmath>
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

// The distance to each segment, measured to its nearest point.
bool NearChain(const std::vector<TPoint>& points, const TPoint& p, long double band) {
  for (std::size_t i = 0; i < points.size(); ++i) {
    const TPoint& a = points[i];
    const TPoint& b = points[std::min(i + 1, points.size() - 1)];
    const long double dx = b.X - a.X, dy = b.Y - a.Y, length2 = dx * dx + dy * dy;
    long double t = length2 > 0 ? ((p.X - a.X) * dx + (p.Y - a.Y) * dy) / length2 : 0;
    t = std::clamp(t, 0.0L, 1.0L);
    if (std::hypot(a.X + t * dx - p.X, a.Y + t * dy - p.Y) <= band) return true;
  }
  return false;
}

}  // namespace lumatrex
