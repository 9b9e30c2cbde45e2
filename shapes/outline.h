// Device outlines shared by the point-list kinds (lines, rectangles,
// ellipses, polygons): rounding their zoomed points, stroking previews and
// hit tests. Zoomed points are model x zoom as floats; device points are the
// zoomed ones rounded half-to-even.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "geometry/geometry.h"

namespace lumatrex {

class TCanvas;
class TMyShape;

// Whether two point lists are the same bit for bit: the test of the outline
// caches, which must never take a list that merely compares equal (-0 and 0)
// or miss one that holds the same NaN.
bool SameBits(const TArrMyPoint& a, const TArrMyPoint& b);
// Each zoomed point rounded to a device point.
std::vector<TPoint> RoundPoints(const TArrMyPoint& zoomed);
// Each zoomed point moved by the device offset (DX, DY), then rounded. (The
// shift comes first: rounding half to even does not commute with it.)
TPoint ShiftAndRound(const TMyPoint& zoomed, std::int32_t dx, std::int32_t dy);
std::vector<TPoint> ShiftAndRound(const TArrMyPoint& zoomed, std::int32_t dx, std::int32_t dy);
// Each zoomed point turned about the zoomed Centre by Angle (radians,
// clockwise on the screen), then rounded.
std::vector<TPoint> RotatePoints(const TArrMyPoint& zoomed, const TMyPoint& centre, long double angle);
// TCanvas::LineChain through Points, then back to the first point.
void StrokeClosedChain(TCanvas& canvas, const std::vector<TPoint>& points);
// Whether device point P lies in the hit square of a handle: the rounded
// zoomed handle grown by Hot on each side, left and top edges inside, right
// and bottom edges outside.
bool InHotSquare(const TMyPoint& zoomed, const TPoint& p, std::uint8_t hot);
// Half-width of the band around an outline that counts as a hit, in device
// pixels; lines and every curved outline share it.
inline constexpr std::int32_t kLineHitBand = 8;
// Whether device point P lies within Band pixels (Euclidean) of the open
// chain through Points; a single point is a chain of one dot.
bool NearChain(const std::vector<TPoint>& points, const TPoint& p, long double band = kLineHitBand);
// Whether P lies inside the device polygon under the alternate fill rule,
// exactly the pixels a fill would paint (no outline tolerance); false for
// fewer than three points. No heap allocation: the one pixel is tested
// against the polygon's edges as the fill's scan line would cross them.
bool PtInPolygon(const std::vector<TPoint>& points, const TPoint& p);
// The same test on Shape's zoomed points (through its GetPoint) rounded to
// device pixels, as RoundPoints(Shape.GetPointsInZoom()) would give them, without
// building either list.
bool PtInZoomedPolygon(const TMyShape& shape, const TPoint& p);

// ---- bounds for the canvas's spatial index (zoomed coordinates) -------------
// A box that reaches everywhere: the bounds of a shape whose coordinates are
// not finite, which is then drawn and hit-tested as if it met every area.
inline constexpr TMyRect kBoundsEverywhere{-1e30f, -1e30f, 1e30f, 1e30f};
// Grows a box point by point; an empty box stays empty until a point comes.
// A coordinate that is not finite (or beyond +-1e30) makes it kBoundsEverywhere.
class TBoundsBuilder {
 public:
  void Add(long double x, long double y);
  void Add(const TMyPoint& p) { Add(p.X, p.Y); }
  // The square of half-side Radius around (X, Y).
  void AddAround(long double x, long double y, long double radius);
  void Add(const TMyRect& r);
  bool Empty() const { return !broken_ && left_ > right_; }
  // The box grown by Margin on every side, rounded outward to floats;
  // (0, 0, 0, 0) grown by Margin when nothing was added.
  TMyRect Grown(long double margin) const;

 private:
  long double left_ = 1, top_ = 1, right_ = 0, bottom_ = 0;
  bool broken_ = false;
};
// How far the pixels of a stroke in a pen of Width device pixels reach past
// its outline: a thin pen one pixel, a wide pen half its width, and its miter
// joins up to the miter limit (10) times that.
long double PenReach(std::int32_t width);
// A generous bound of how far text drawn centred on an anchor (and turned
// about it) reaches: Lines lines of at most WidestBytes bytes in Font scaled
// by Scale, whatever the glyphs and the turn.
long double TextReach(std::int32_t fontSize, double scale, std::size_t widestBytes, std::size_t lines);

}  // namespace lumatrex
