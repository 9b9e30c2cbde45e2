// The geometry kernel: model points and rectangles, conversions between model
// and device space, measures, rotation and point-array editing.
//
// Spaces: model coordinates are drawing pixels at zoom 1 (32-bit floats);
// zoomed = model x Zoom; device = zoomed rounded half-to-even (integers).
// Angles are radians; the y axis points down, so a positive angle turns
// clockwise on the screen. Intermediate results use extended precision
// (long double) and are stored back as 32-bit floats. Nothing here throws;
// index-taking functions answer false or do nothing on a bad index.
#pragma once

#include <cmath>
#include <cstdint>
#include <vector>

#include "platform/types.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// Types
// ---------------------------------------------------------------------------

struct TMyPoint {
  float X = 0;
  float Y = 0;
  friend constexpr bool operator==(const TMyPoint&, const TMyPoint&) = default;
};

struct TMyRect {
  float Left = 0;
  float Top = 0;
  float Right = 0;
  float Bottom = 0;
  friend constexpr bool operator==(const TMyRect&, const TMyRect&) = default;
};

using TArrMyPoint = std::vector<TMyPoint>;
using TArrPoint = std::vector<TPoint>;

inline constexpr long double kPi = 3.141592653589793238462643383279502884L;

// Round half to even on the exact value (2.5 -> 2, 3.5 -> 4, -2.5 -> -2), as
// lrint gives it. Inline, rounding in the FPU: every outline point of every
// paint comes through here, and lrint is a library call.
inline std::int32_t Round(long double value) {
  const long double nearest = __builtin_rintl(value);
  if (!(nearest > -9.0e18L && nearest < 9.0e18L)) return static_cast<std::int32_t>(std::lrint(value));
  return static_cast<std::int32_t>(static_cast<std::int64_t>(nearest));
}

// ---------------------------------------------------------------------------
// Conversions
// ---------------------------------------------------------------------------

// (Round(P.X), Round(P.Y)).
TPoint MyPtToPt(const TMyPoint& p);
TMyPoint PtToMyPt(const TPoint& p);
TMyPoint MyPoint(float x, float y);
// Each field rounded.
TRect myRecttoRect(const TMyRect& r);
// The normalised rectangle spanned by A and B.
TRect PtToARect(const TPoint& a, const TPoint& b);
// R grown by N on every side; R unchanged when that would overflow.
TRect ExpandRect(const TRect& r, std::int32_t n);
void OffsetMyRect(TMyRect& r, long double dx, long double dy);

// ---------------------------------------------------------------------------
// Measures and tests
// ---------------------------------------------------------------------------

// Euclidean distance, computed in extended precision.
float GetLengthinPixel(const TMyPoint& a, const TMyPoint& b);
// Direction of the vector from B to A in [0, 2pi]: A right of B gives 0,
// below pi/2, left pi, above 3pi/2; coincident points give pi/2.
long double GetSlopeAngle(const TMyPoint& a, const TMyPoint& b);
// 1 when B.X > A.X (B.Y > A.Y), else -1.
std::int32_t PointInQuadrantX(const TMyPoint& a, const TMyPoint& b);
std::int32_t PointInQuadrantY(const TMyPoint& a, const TMyPoint& b);
bool IsAtLeftTop(const TMyPoint& a, const TMyPoint& b);
bool IsAtLeftBottom(const TMyPoint& a, const TMyPoint& b);
bool IsAtRightTop(const TMyPoint& a, const TMyPoint& b);
bool IsAtRightBottom(const TMyPoint& a, const TMyPoint& b);
// Crossing of line P1-P3 with line P2-P4 (the arguments alternate between the
// lines). Two vertical lines give (x1, (y3 - y1) / 2) and two horizontal ones
// ((x3 - x1) / 2, y1): halved differences, not midpoints, by design. Parallel
// sloped lines show the message "error" and the division by zero goes on.
TMyPoint Getintersection(const TMyPoint& p1, const TMyPoint& p2, const TMyPoint& p3,
                         const TMyPoint& p4);
// The two barb ends of an arrow head with its tip at Tip pointing away from
// Toward: Len from the tip at +-Angle (radians) about the shaft.
void GetTriangle(const TMyPoint& tip, const TMyPoint& toward, float angle, std::uint8_t len,
                 TMyPoint& barb1, TMyPoint& barb2);
// Both results are the point at distance Dist from A toward B (beyond B when
// Dist is longer than A-B).
void SplitLine(const TMyPoint& a, const TMyPoint& b, std::int32_t dist, TMyPoint& p1, TMyPoint& p2);
// (min X, min Y, max X, max Y); the array must not be empty (an empty one
// gives the zero rectangle).
TMyRect GetPointsLTRB(const TArrMyPoint& points);
// P turned about Center by Angle (clockwise on the screen for a positive angle).
TMyPoint RotateAPoint(const TMyPoint& p, const TMyPoint& center, float angle);
// Brings radians into (-2pi, 2pi), one whole turn at a time. The bounds are
// compared in extended precision, so the floats nearest +-2pi (which lie just
// outside) come out as about +-1.7e-7. Infinities, and floats too large for a
// turn to change them, are left as they are.
void RecaclinRad(float& angle);
// Brings degrees down below 360; the negative branch overshoots on purpose
// (-400 gives 680), as drawings made with it expect.
void RecaclinDeg(std::int32_t& angle);

// ---------------------------------------------------------------------------
// Point-array editing (0-based indices, in place)
// ---------------------------------------------------------------------------

bool AppendAPoint(const TMyPoint& p, TArrMyPoint& a);
// Inserts before index Id when 0 <= Id <= last index; false otherwise (so a
// point can never be appended with it).
bool InsertAPointBeforeId(const TMyPoint& p, std::int32_t id, TArrMyPoint& a);
bool InsertAPointBeforeId1(const TPoint& p, std::int32_t id, TArrPoint& a);
// Removes index Id when it exists; nothing otherwise.
void RemovePoint(std::int32_t id, TArrMyPoint& a);
bool IsExistPt(std::int32_t id, const TArrMyPoint& a);
bool IsExistPt1(std::int32_t id, const TArrPoint& a);

}  // namespace lumatrex
