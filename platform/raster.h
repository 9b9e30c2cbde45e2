// Internal pixel machinery of the drawing surface: coverage masks, the exact
// line and polygon rasterisers, raster operations, dash and hatch patterns.
// Everything here works in device pixels, and pixel (x, y) stands for the
// point (x, y): lines pass through the points of their pixels, and an area
// holds the pixels whose points lie inside it. Outlines and fills thus share
// one geometry, and a fill never leaks past its own outline.
#pragma once

#include <QImage>
#include <QPoint>
#include <QPolygonF>
#include <QRect>
#include <QRgb>
#include <cstdint>
#include <functional>
#include <vector>

#include "platform/graphics.h"

namespace lumatrex::raster {

// ---------------------------------------------------------------------------
// Coverage masks
// ---------------------------------------------------------------------------

// A set of pixels within a fixed device rectangle (its Area); setting a pixel
// outside the area does nothing. A figure's pen and brush masks never share a
// pixel, so every pixel is combined with the destination at most once. Rows
// are kept as sorted runs, so a thin outline around a large area costs its
// length, not its area.
class TMask {
 public:
  TMask() = default;
  explicit TMask(const QRect& area);

  const QRect& Area() const { return area_; }
  bool Test(int x, int y) const;
  void Set(int x, int y) { SetSpan(y, x, x + 1); }
  // Sets [X0, X1) of row Y, clipped to the area.
  void SetSpan(int y, int x0, int x1);
  void Subtract(const TMask& other);
  void Intersect(const TMask& other);
  bool Empty() const;
  // Calls F(y, x0, x1) for every run [x0, x1) of set pixels, top to bottom.
  void ForEachSpan(const std::function<void(int, int, int)>& f) const;

 private:
  struct TRun {
    int x0, x1;
  };
  using TRow = std::vector<TRun>;  // sorted, neither overlapping nor touching
  const TRow* RowAt(int y) const;

  QRect area_;
  std::vector<TRow> rows_;
};

// ---------------------------------------------------------------------------
// Lines
// ---------------------------------------------------------------------------

// The pixels of the one-pixel line from A to B, B left out: Plot(x, y, i) for
// the i-th pixel from A (only those whose major-axis coordinate lies within
// Area are visited, so far-away end points cost nothing). Each pixel is the
// nearest to the ideal line, ties going to the smaller minor coordinate, so a
// line covers the same pixels whichever way it is drawn. Returns the number of
// pixels of the whole line, for dash patterns that continue on the next line.
std::int64_t LinePixels(QPoint a, QPoint b, const QRect& area,
                        const std::function<void(int, int, std::int64_t)>& plot);

// ---------------------------------------------------------------------------
// Polygons
// ---------------------------------------------------------------------------

// Calls Span(y, x0, x1) for the runs of pixels within Area whose points lie
// inside the polygons (each implicitly closed, all filled together) under the
// alternate or winding rule. A point exactly on a left or top edge is inside,
// on a right or bottom edge outside, so shapes that share an edge never share
// a pixel and an axis-aligned rectangle (x1,y1)-(x2,y2) fills [x1,x2) x [y1,y2).
void FillPolygons(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area,
                  const std::function<void(int, int, int)>& span);

TMask PolygonMask(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area);

// ---------------------------------------------------------------------------
// Ellipses
// ---------------------------------------------------------------------------

// The pixels of the ellipse inscribed in Box ([left, right) x [top, bottom)):
// those inside or on the ellipse with centre ((left + right - 1) / 2, (top +
// bottom - 1) / 2) and half-axes width / 2 and height / 2. Row Y's pixels are [X0, X1); false
// when the row holds none.
bool EllipseRow(const QRect& box, int y, int& x0, int& x1);

// ---------------------------------------------------------------------------
// Colours, raster operations and patterns
// ---------------------------------------------------------------------------

// Resolves system colours; the result is 0xFFRRGGBB.
QRgb ToRgb(TColor color);

// Combines pen (or brush) colour P with destination D under Mode, bitwise on
// the red, green and blue bits; the result's top byte is D's.
std::uint32_t Rop2(TPenMode mode, std::uint32_t p, std::uint32_t d);

// The on/off pattern of a one-pixel (cosmetic) styled line, in pixels.
class TDashPattern {
 public:
  explicit TDashPattern(TPenStyle style);
  bool Solid() const { return bits_.empty(); }
  bool On(std::int64_t step) const {
    return bits_.empty() || bits_[static_cast<std::size_t>(step % static_cast<std::int64_t>(bits_.size()))];
  }

 private:
  std::vector<bool> bits_;
};

// Dash lengths of a wide styled line, in pen widths; empty for a solid line.
std::vector<double> WideDashPattern(TPenStyle style);

// True where an 8x8 hatch pattern draws its line at device pixel (x, y).
bool HatchBit(TBrushStyle style, int x, int y);

// Where a figure's colour comes from: one colour, a hatch over an optional
// background, or a 32-bit image tiled from the device origin.
struct TPaintSource {
  enum class Kind { Solid, Hatch, Tile };
  Kind kind = Kind::Solid;
  QRgb color = 0;
  TBrushStyle hatch = bsSolid;
  bool paintBackground = false;  // hatch gaps: painted in Background or left alone
  QRgb background = 0;
  const QImage* tile = nullptr;  // Format_RGB32 or ARGB32

  // The colour at device pixel (x, y); false where nothing is painted.
  bool At(int x, int y, QRgb& out) const;
};

// Combines Source with the 32-bit Surface on every pixel of Mask, whose area
// must lie within the surface.
void Composite(QImage& surface, const TMask& mask, const TPaintSource& source, TPenMode mode);

}  // namespace lumatrex::raster
