#include "geometry/geometry.h"

#include <algorithm>
#include <cmath>

#include "platform/hooks.h"

namespace lumatrex {

namespace {

constexpr long double kTwoPi = 2 * kPi;

template <class T>
bool IsIndexIn(std::int32_t id, const std::vector<T>& a) {
  return id >= 0 && static_cast<std::size_t>(id) < a.size();
}

template <class T>
bool InsertBefore(const T& p, std::int32_t id, std::vector<T>& a) {
  if (!IsIndexIn(id, a)) return false;
  a.insert(a.begin() + id, p);
  return true;
}

// Angle of the shaft Tip-Toward against the y axis, less the barb angle. It is
// kept in a float on purpose: arrow heads (and split points) of existing
// drawings were computed from the float value, down to its rounding residue.
float FirstBarbAngle(const TMyPoint& tip, const TMyPoint& toward, float angle) {
  if (tip.Y == toward.Y) return static_cast<float>(kPi / 2 - angle);
  const long double dx = static_cast<long double>(tip.X) - toward.X;
  const long double dy = static_cast<long double>(tip.Y) - toward.Y;
  return static_cast<float>(std::fabs(std::atan(dx / dy)) - angle);
}

// The base angle covers a single quadrant (|arctan| lies in [0, pi/2]); the
// signs turn each barb back toward Toward, an equal coordinate counting as
// "Toward lies ahead".
TMyPoint BarbEnd(const TMyPoint& tip, const TMyPoint& toward, long double a, long double len) {
  const long double sx = tip.X <= toward.X ? 1 : -1;
  const long double sy = tip.Y <= toward.Y ? 1 : -1;
  return {static_cast<float>(tip.X + sx * (std::sin(a) * len)),
          static_cast<float>(tip.Y + sy * (std::cos(a) * len))};
}

// Shared by GetTriangle and SplitLine. Len is a full integer here so that
// SplitLine can reach past 255 pixels; only GetTriangle's callers use a byte.
void Barbs(const TMyPoint& tip, const TMyPoint& toward, float angle, std::int32_t len,
           TMyPoint& barb1, TMyPoint& barb2) {
  const long double a1 = FirstBarbAngle(tip, toward, angle);
  const long double a2 = a1 + 2.0L * angle;
  barb1 = BarbEnd(tip, toward, a1, len);
  barb2 = BarbEnd(tip, toward, a2, len);
}

// One step of the radian normalisation, stored back in a float. Returns false
// when the float does not change (infinite, or so large that 2pi is below half
// its spacing): repeating the step could never end.
bool StepAngle(float& angle, long double delta) {
  const float next = static_cast<float>(angle + delta);
  if (next == angle) return false;
  angle = next;
  return true;
}

}  // namespace

// lrint honours the current rounding mode; the library never changes it from
// the default round-to-nearest-even. Values past 32 bits wrap.
// ---------------------------------------------------------------------------
// Conversions
// ---------------------------------------------------------------------------

TPoint MyPtToPt(const TMyPoint& p) { return {Round(p.X), Round(p.Y)}; }

TMyPoint PtToMyPt(const TPoint& p) { return {static_cast<float>(p.X), static_cast<float>(p.Y)}; }

TMyPoint MyPoint(float x, float y) { return {x, y}; }

TRect myRecttoRect(const TMyRect& r) {
  return {Round(r.Left), Round(r.Top), Round(r.Right), Round(r.Bottom)};
}

TRect PtToARect(const TPoint& a, const TPoint& b) {
  return {std::min(a.X, b.X), std::min(a.Y, b.Y), std::max(a.X, b.X), std::max(a.Y, b.Y)};
}

TRect ExpandRect(const TRect& r, std::int32_t n) {
  TRect grown = r;
  return InflateRect(grown, n, n) ? grown : r;
}

void OffsetMyRect(TMyRect& r, long double dx, long double dy) {
  r.Left = static_cast<float>(r.Left + dx);
  r.Right = static_cast<float>(r.Right + dx);
  r.Top = static_cast<float>(r.Top + dy);
  r.Bottom = static_cast<float>(r.Bottom + dy);
}

// ---------------------------------------------------------------------------
// Measures and tests
// ---------------------------------------------------------------------------

float GetLengthinPixel(const TMyPoint& a, const TMyPoint& b) {
  const long double dx = static_cast<long double>(a.X) - b.X;
  const long double dy = static_cast<long double>(a.Y) - b.Y;
  return static_cast<float>(std::sqrt(dx * dx + dy * dy));
}

// arctan gives the angle within (-pi/2, pi/2); the quadrant of B relative to A
// then places it on the full turn.
long double GetSlopeAngle(const TMyPoint& a, const TMyPoint& b) {
  const long double dx = static_cast<long double>(a.X) - b.X;
  const long double dy = static_cast<long double>(a.Y) - b.Y;
  const long double t = dx == 0 ? kPi / 2 : std::atan(dy / dx);
  const bool right = PointInQuadrantX(a, b) > 0;
  const bool below = PointInQuadrantY(a, b) > 0;
  if (!right && !below) return t;
  if (right && !below) return kPi + t;
  if (right && below) return std::fabs(t) + kPi;
  return kTwoPi - std::fabs(t);
}

std::int32_t PointInQuadrantX(const TMyPoint& a, const TMyPoint& b) { return b.X > a.X ? 1 : -1; }

std::int32_t PointInQuadrantY(const TMyPoint& a, const TMyPoint& b) { return b.Y > a.Y ? 1 : -1; }

bool IsAtLeftTop(const TMyPoint& a, const TMyPoint& b) { return b.X <= a.X && b.Y <= a.Y; }

bool IsAtLeftBottom(const TMyPoint& a, const TMyPoint& b) { return b.X <= a.X && b.Y >= a.Y; }

bool IsAtRightTop(const TMyPoint& a, const TMyPoint& b) { return b.X >= a.X && b.Y <= a.Y; }

bool IsAtRightBottom(const TMyPoint& a, const TMyPoint& b) { return b.X >= a.X && b.Y >= a.Y; }

// Callers rely on the exact results of the degenerate cases, halved
// differences included, so the cases are tested in this order and not merged.
TMyPoint Getintersection(const TMyPoint& p1, const TMyPoint& p2, const TMyPoint& p3,
                         const TMyPoint& p4) {
  const long double x1 = p1.X, y1 = p1.Y, x2 = p2.X, y2 = p2.Y;
  const long double x3 = p3.X, y3 = p3.Y, x4 = p4.X, y4 = p4.Y;
  auto point = [](long double x, long double y) {
    return TMyPoint{static_cast<float>(x), static_cast<float>(y)};
  };
  if (x1 == x3 && x2 == x4) return point(x1, (y3 - y1) / 2);
  if (x1 == x3) return point(x1, (x1 - x2) * ((y4 - y2) / (x4 - x2)) + y2);
  const long double k1 = (y3 - y1) / (x3 - x1);
  if (x2 == x4) return point(x2, (x2 - x1) * k1 + y1);
  if (y1 == y3 && y2 == y4) return point((x3 - x1) / 2, y1);
  const long double k2 = (y4 - y2) / (x4 - x2);
  // Parallel lines are reported but not caught: the division below yields an
  // infinity (or NaN for one line given twice), which is what callers get.
  if (k1 == k2) ShowMessage("error");
  const long double x = (k2 * x2 - y2 - k1 * x1 + y1) / (k2 - k1);
  return point(x, (x - x1) * k1 + y1);
}

void GetTriangle(const TMyPoint& tip, const TMyPoint& toward, float angle, std::uint8_t len,
                 TMyPoint& barb1, TMyPoint& barb2) {
  Barbs(tip, toward, angle, len, barb1, barb2);
}

void SplitLine(const TMyPoint& a, const TMyPoint& b, std::int32_t dist, TMyPoint& p1,
               TMyPoint& p2) {
  Barbs(a, b, 0, dist, p1, p2);
}

TMyRect GetPointsLTRB(const TArrMyPoint& points) {
  if (points.empty()) return {};
  TMyRect r{points[0].X, points[0].Y, points[0].X, points[0].Y};
  for (const TMyPoint& p : points) {
    r.Left = std::min(r.Left, p.X);
    r.Top = std::min(r.Top, p.Y);
    r.Right = std::max(r.Right, p.X);
    r.Bottom = std::max(r.Bottom, p.Y);
  }
  return r;
}

// The offsets are doubled and the sum halved again: stored drawings were
// rotated this way, and the extra rounding steps show in the last bits.
TMyPoint RotateAPoint(const TMyPoint& p, const TMyPoint& center, float angle) {
  const long double c = std::cos(static_cast<long double>(angle));
  const long double s = std::sin(static_cast<long double>(angle));
  const long double u = (static_cast<long double>(p.X) - center.X) * 2;
  const long double v = (static_cast<long double>(p.Y) - center.Y) * 2;
  return {static_cast<float>((u * c - v * s) / 2 + center.X),
          static_cast<float>((u * s + v * c) / 2 + center.Y)};
}

// Each turn is subtracted from the float and stored back, so many turns
// accumulate float rounding exactly as drawings saved earlier did. No float
// equals 2pi in extended precision, so "subtract until below 2pi" and "while
// above 2pi" are the same loop.
void RecaclinRad(float& angle) {
  while (angle > kTwoPi && StepAngle(angle, -kTwoPi)) {
  }
  while (angle < -kTwoPi && StepAngle(angle, kTwoPi)) {
  }
}

// The negative branch keeps adding while the angle is up to 360, so it lands
// in (360, 720]; stored angles were normalised that way and must read back
// the same.
void RecaclinDeg(std::int32_t& angle) {
  if (angle > 360) {
    while (angle >= 360) angle -= 360;
  } else if (angle < -360) {
    while (angle <= 360) angle += 360;
  }
}

// ---------------------------------------------------------------------------
// Point-array editing
// ---------------------------------------------------------------------------

bool AppendAPoint(const TMyPoint& p, TArrMyPoint& a) {
  a.push_back(p);
  return true;
}

bool InsertAPointBeforeId(const TMyPoint& p, std::int32_t id, TArrMyPoint& a) {
  return InsertBefore(p, id, a);
}

bool InsertAPointBeforeId1(const TPoint& p, std::int32_t id, TArrPoint& a) {
  return InsertBefore(p, id, a);
}

void RemovePoint(std::int32_t id, TArrMyPoint& a) {
  if (IsIndexIn(id, a)) a.erase(a.begin() + id);
}

bool IsExistPt(std::int32_t id, const TArrMyPoint& a) { return IsIndexIn(id, a); }

bool IsExistPt1(std::int32_t id, const TArrPoint& a) { return IsIndexIn(id, a); }

}  // namespace lumatrex
