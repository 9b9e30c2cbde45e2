// The shapes' geometry in DXF space: millimetres, y up, angles counter-
// clockwise. Both exports and the import go through these, so a round trip
// meets the same conventions twice.
#pragma once

#include <cstdint>
#include <numbers>
#include <vector>

#include "geometry/geometry.h"

namespace lumatrex {
class TMyShape;
}

namespace lumatrex::dxf {

struct V2 {
  double x = 0, y = 0;
};

// Largest distance the polylines written for curves keep from the true
// curve, in millimetres: half the 0.01 mm a CAD user can still measure, the
// other half left for the 32-bit model coordinates.
inline constexpr double kChordToleranceMm = 0.005;

// Model point (pixels, y down) to DXF (millimetres, y up from Top) and back.
struct TDxfMap {
  double top = 0;  // model y that becomes DXF y = 0
  V2 ToDxf(const TMyPoint& p) const;
  TMyPoint ToModel(const V2& p) const;
};

// An ellipse, or a piece of it from parameter T0 counter-clockwise to T1
// (radians, T1 > T0 for pieces): centre, the vector of the first semi-axis
// and the ratio of the second semi-axis (90 degrees counter-clockwise) to it.
struct TDxfEllipse {
  V2 centre;
  V2 axis;
  double ratio = 1;
  double t0 = 0, t1 = 2 * std::numbers::pi;
  bool Full() const { return t1 - t0 >= 2 * std::numbers::pi - 1e-12; }
  double A() const;
  double B() const { return A() * ratio; }
  V2 At(double t) const;
  // Parameter of the point on the ellipse along the ray from the centre
  // through P.
  double ParamOfRay(const V2& p) const;
  // The same ellipse with its longer semi-axis first (ratio <= 1), the
  // parameters moved along.
  TDxfEllipse MajorFirst() const;
  // Points from T0 to T1, both included, spaced so that no chord strays more
  // than kChordToleranceMm from the curve.
  std::vector<V2> Sample() const;
};

// The ellipse inscribed in a rectangle-like shape's frame (points 0-3: the
// corners turned by its angle); the full outline.
TDxfEllipse FrameEllipse(const TMyShape& shape, const TDxfMap& map);
// A TMyElliArc: the ellipse of its frame, cut from the ray through point 5
// counter-clockwise (as seen on the screen) to the ray through point 4: the
// arc runs clockwise on the screen from point 4 to point 5. An arc without
// those points is its whole ellipse.
TDxfEllipse ArcEllipse(const TMyShape& shape, const TDxfMap& map);

// Cubic Bezier chain (start, then two controls and an end per piece), each
// piece cut into equal parameter steps fine enough for kChordToleranceMm.
// Points are already in DXF space.
std::vector<V2> FlattenBezier(const std::vector<V2>& chain);

}  // namespace lumatrex::dxf
