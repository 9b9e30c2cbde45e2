#include "shapes/outline.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>

#include "platform/canvas.h"
#include "shapes/shape.h"

namespace lumatrex {

bool SameBits(const TArrMyPoint& a, const TArrMyPoint& b) {
  return a.size() == b.size() && (a.empty() || std::memcmp(a.data(), b.data(), a.size() * sizeof(TMyPoint)) == 0);
}

std::vector<TPoint> RoundPoints(const TArrMyPoint& zoomed) { return ShiftAndRound(zoomed, 0, 0); }

namespace {

// Round(X + D), in double arithmetic whenever the sum is exact there, which
// it is unless the float carries bits far below a pixel while the shift is
// large. An exact sum rounds the same in any precision; adding and taking
// away 1.5 x 2^52 rounds it half to even without the slow long double path.
std::int32_t RoundSum(float x, std::int32_t d) {
  const double a = x, b = d, sum = a + b;
  const double bPart = sum - a;
  const double error = (a - (sum - bPart)) + (b - bPart);
  if (error != 0 || !(std::fabs(sum) < 0x1p51)) return Round(static_cast<long double>(x) + d);
  const double nearest = (sum + 0x1.8p52) - 0x1.8p52;
  return static_cast<std::int32_t>(static_cast<std::int64_t>(nearest));
}

}  // namespace

TPoint ShiftAndRound(const TMyPoint& zoomed, std::int32_t dx, std::int32_t dy) {
  return Point(RoundSum(zoomed.X, dx), RoundSum(zoomed.Y, dy));
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

void StrokeClosedChain(TCanvas& canvas, const std::vector<TPoint>& points) {
  if (points.empty()) return;
  canvas.LineChain(points);
  canvas.LineTo(points.front().X, points.front().Y);
}

bool InHotSquare(const TMyPoint& zoomed, const TPoint& p, std::uint8_t hot) {
  const TPoint c = MyPtToPt(zoomed);
  return PtInRect(Rect(c.X - hot, c.Y - hot, c.X + hot, c.Y + hot), p);
}

namespace {

// The polygon fill's verdict on one pixel, edge by edge. The fill scans row Y
// with every edge whose rows [top, bottom) hold Y, puts each crossing at the
// first pixel at or right of it (ceil) and paints between the odd and even
// crossings. Pixel X is painted when an odd number of crossings lie at or
// left of it and at least one lies right of it. The arithmetic is the fill's,
// in the same order and precision, so the answers agree bit for bit.
class TPixelInPolygon {
 public:
  explicit TPixelInPolygon(const TPoint& p) : px_(p.X), py_(p.Y) {}
  void Edge(const TPoint& a, const TPoint& b) {
    const double ax = a.X, ay = a.Y, bx = b.X, by = b.Y;
    if (ay == by) return;
    if (!(std::min(ay, by) <= py_ && py_ < std::max(ay, by))) return;
    const double slope = (bx - ax) / (by - ay);
    const double x = ax + (py_ - ay) * slope;
    if (std::ceil(x) > px_)
      ++right_;
    else
      ++atOrLeft_;
  }
  bool Inside() const { return right_ > 0 && (atOrLeft_ & 1) != 0; }

 private:
  double px_, py_;
  int atOrLeft_ = 0, right_ = 0;
};

}  // namespace

bool PtInPolygon(const std::vector<TPoint>& points, const TPoint& p) {
  if (points.size() < 3) return false;
  TPixelInPolygon test(p);
  for (std::size_t i = 0; i < points.size(); ++i) test.Edge(points[i], points[(i + 1) % points.size()]);
  return test.Inside();
}

bool PtInZoomedPolygon(const TMyShape& shape, const TPoint& p) {
  const std::int32_t n = shape.GetPointsCount();
  if (n < 3) return false;
  TPixelInPolygon test(p);
  const TPoint first = ShiftAndRound(shape.GetPointInZoom(0), 0, 0);
  TPoint previous = first;
  for (std::int32_t i = 1; i < n; ++i) {
    const TPoint next = ShiftAndRound(shape.GetPointInZoom(i), 0, 0);
    test.Edge(previous, next);
    previous = next;
  }
  test.Edge(previous, first);
  return test.Inside();
}

// ---------------------------------------------------------------------------
// Bounds

namespace {
constexpr long double kFar = 1e30L;
}  // namespace

void TBoundsBuilder::Add(long double x, long double y) {
  if (!(std::fabs(x) < kFar) || !(std::fabs(y) < kFar)) {
    broken_ = true;
    return;
  }
  if (left_ > right_) {
    left_ = right_ = x;
    top_ = bottom_ = y;
    return;
  }
  left_ = std::min(left_, x);
  right_ = std::max(right_, x);
  top_ = std::min(top_, y);
  bottom_ = std::max(bottom_, y);
}

void TBoundsBuilder::AddAround(long double x, long double y, long double radius) {
  Add(x - radius, y - radius);
  Add(x + radius, y + radius);
}

void TBoundsBuilder::Add(const TMyRect& r) {
  if (r == kBoundsEverywhere) {
    broken_ = true;
    return;
  }
  Add(r.Left, r.Top);
  Add(r.Right, r.Bottom);
}

TMyRect TBoundsBuilder::Grown(long double margin) const {
  if (broken_ || !(margin < kFar)) return kBoundsEverywhere;
  const bool empty = left_ > right_;
  // One more pixel than asked covers the rounding to floats.
  const long double m = margin + 1;
  auto clamp = [](long double v) { return static_cast<float>(std::clamp(v, -kFar, kFar)); };
  return {clamp((empty ? 0 : left_) - m), clamp((empty ? 0 : top_) - m), clamp((empty ? 0 : right_) + m),
          clamp((empty ? 0 : bottom_) + m)};
}

long double PenReach(std::int32_t width) { return width > 1 ? width * 5.0L + 2 : 2.0L; }

long double TextReach(std::int32_t fontSize, double scale, std::size_t widestBytes, std::size_t lines) {
  const long double em = (std::abs(static_cast<long double>(fontSize)) + 2) * std::fabs(scale) * 1.5L + 2;
  const long double w = static_cast<long double>(widestBytes) * em, h = static_cast<long double>(lines) * em;
  return std::hypot(w, h) / 2 + 2 * em;
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
