#include "dxf/dxf_geometry.h"

#include <algorithm>
#include <cmath>

#include "dxf/dxf.h"
#include "shapes/shape.h"

namespace lumatrex::dxf {

namespace {

constexpr double kTwoPi = 2 * std::numbers::pi;

V2 Minus(V2 a, V2 b) { return {a.x - b.x, a.y - b.y}; }
double Length(V2 v) { return std::hypot(v.x, v.y); }

// Steps for a curve whose second derivative never exceeds Curvature over a
// parameter range Span: the chord error of a step h is at most h^2 M / 8.
std::int64_t StepsFor(double span, double maxSecondDerivative) {
  if (maxSecondDerivative <= 0) return 1;
  const double h = std::sqrt(8 * kChordToleranceMm / maxSecondDerivative);
  // The cap keeps a hostile radius from asking for billions of points.
  return std::clamp<std::int64_t>(static_cast<std::int64_t>(std::ceil(span / h)), 1, 1 << 16);
}

}  // namespace

V2 TDxfMap::ToDxf(const TMyPoint& p) const {
  return {static_cast<double>(p.X) / kDxfPixelsPerMm, (top - static_cast<double>(p.Y)) / kDxfPixelsPerMm};
}

TMyPoint TDxfMap::ToModel(const V2& p) const {
  return {static_cast<float>(p.x * kDxfPixelsPerMm), static_cast<float>(top - p.y * kDxfPixelsPerMm)};
}

double TDxfEllipse::A() const { return Length(axis); }

V2 TDxfEllipse::At(double t) const {
  const double c = std::cos(t), s = std::sin(t);
  // The second axis is the first turned a quarter counter-clockwise.
  return {centre.x + axis.x * c - axis.y * ratio * s, centre.y + axis.y * c + axis.x * ratio * s};
}

double TDxfEllipse::ParamOfRay(const V2& p) const {
  const double a = A();
  if (a == 0 || ratio == 0) return 0;
  const V2 d = Minus(p, centre);
  const double along = (d.x * axis.x + d.y * axis.y) / a;
  const double across = (-d.x * axis.y + d.y * axis.x) / a;
  return std::atan2(across / ratio, along);
}

TDxfEllipse TDxfEllipse::MajorFirst() const {
  if (ratio <= 1) return *this;
  TDxfEllipse e = *this;
  e.axis = {-axis.y * ratio, axis.x * ratio};
  e.ratio = 1 / ratio;
  e.t0 = t0 - std::numbers::pi / 2;
  e.t1 = t1 - std::numbers::pi / 2;
  return e;
}

std::vector<V2> TDxfEllipse::Sample() const {
  const std::int64_t n = std::max<std::int64_t>(StepsFor(t1 - t0, std::max(A(), B())), Full() ? 8 : 1);
  std::vector<V2> points;
  points.reserve(static_cast<std::size_t>(n) + 1);
  for (std::int64_t i = 0; i <= n; ++i) points.push_back(At(t0 + (t1 - t0) * static_cast<double>(i) / n));
  // The full outline ends exactly where it began.
  if (Full()) points.back() = points.front();
  return points;
}

TDxfEllipse FrameEllipse(const TMyShape& shape, const TDxfMap& map) {
  TDxfEllipse e;
  if (shape.GetPointsCount() < 4) return e;
  const V2 p0 = map.ToDxf(shape.Points[0]), p1 = map.ToDxf(shape.Points[1]);
  const V2 p2 = map.ToDxf(shape.Points[2]), p3 = map.ToDxf(shape.Points[3]);
  e.centre = {(p0.x + p2.x) / 2, (p0.y + p2.y) / 2};
  e.axis = {(p1.x - p0.x) / 2, (p1.y - p0.y) / 2};
  const double a = Length(e.axis), b = Length(Minus(p3, p0)) / 2;
  if (a == 0) {
    // A frame flat along its first side: keep the second side as the axis.
    e.axis = {(p3.x - p0.x) / 2, (p3.y - p0.y) / 2};
    e.ratio = 0;
    return e;
  }
  e.ratio = b / a;
  return e;
}

TDxfEllipse ArcEllipse(const TMyShape& shape, const TDxfMap& map) {
  TDxfEllipse e = FrameEllipse(shape, map);
  if (shape.GetPointsCount() < 6) return e;
  e.t0 = e.ParamOfRay(map.ToDxf(shape.Points[5]));
  e.t1 = e.ParamOfRay(map.ToDxf(shape.Points[4]));
  if (e.t1 <= e.t0) e.t1 += kTwoPi;
  return e;
}

std::vector<V2> FlattenBezier(const std::vector<V2>& chain) {
  std::vector<V2> points;
  if (chain.size() < 4) return chain;
  points.push_back(chain[0]);
  for (std::size_t i = 0; i + 3 < chain.size(); i += 3) {
    const V2 p0 = chain[i], p1 = chain[i + 1], p2 = chain[i + 2], p3 = chain[i + 3];
    const double m = 6 * std::max(Length({p0.x - 2 * p1.x + p2.x, p0.y - 2 * p1.y + p2.y}),
                                  Length({p1.x - 2 * p2.x + p3.x, p1.y - 2 * p2.y + p3.y}));
    const std::int64_t n = StepsFor(1, m);
    for (std::int64_t k = 1; k <= n; ++k) {
      const double t = static_cast<double>(k) / n, u = 1 - t;
      const double w0 = u * u * u, w1 = 3 * u * u * t, w2 = 3 * u * t * t, w3 = t * t * t;
      points.push_back({w0 * p0.x + w1 * p1.x + w2 * p2.x + w3 * p3.x, w0 * p0.y + w1 * p1.y + w2 * p2.y + w3 * p3.y});
    }
  }
  return points;
}

}  // namespace lumatrex::dxf
