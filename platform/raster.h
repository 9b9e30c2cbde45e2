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
#include <algorithm>
#include <cstdint>
#include <cstring>
#include <cwchar>
#include <limits>
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
  template <class F>
  void ForEachSpan(F&& f) const {
    for (std::size_t i = 0; i < rows_.size(); ++i)
      for (const TRun& r : rows_[i]) f(area_.top() + static_cast<int>(i), r.x0, r.x1);
  }

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
template <class Plot>
std::int64_t LinePixels(QPoint a, QPoint b, const QRect& area, Plot&& plot);

// ---------------------------------------------------------------------------
// Polygons
// ---------------------------------------------------------------------------

struct TScanEdge {
  double x0, y0, slope;  // x at y: x0 + (y - y0) * slope
  double top, bottom;    // the edge covers rows y in [top, bottom)
  int dir;               // +1 downward, -1 upward
};

struct TScanCrossing {
  int threshold;  // the first pixel at or right of the crossing
  int dir;
};

// The working lists of the polygon scan. A caller that fills many figures
// keeps one, so that filling allocates nothing once the lists have grown.
struct TScanBuffers {
  std::vector<TScanEdge> edges;
  std::vector<const TScanEdge*> active;
  std::vector<TScanCrossing> crossings;
};

// Calls Span(y, x0, x1) for the runs of pixels within Area whose points lie
// inside the polygons (each implicitly closed, all filled together) under the
// alternate or winding rule. A point exactly on a left or top edge is inside,
// on a right or bottom edge outside, so shapes that share an edge never share
// a pixel and an axis-aligned rectangle (x1,y1)-(x2,y2) fills [x1,x2) x [y1,y2).
template <class Span>
void FillPolygons(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area, Span&& span,
                  TScanBuffers& buffers);
template <class Span>
void FillPolygons(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area, Span&& span) {
  TScanBuffers buffers;
  FillPolygons(polygons, winding, area, span, buffers);
}

TMask PolygonMask(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area);
TMask PolygonMask(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area, TScanBuffers& buffers);

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
// the red, green and blue bits; the result's top byte is D's. Inline: outline
// pixels come through here one by one.
inline std::uint32_t Rop2(TPenMode mode, std::uint32_t p, std::uint32_t d) {
  std::uint32_t r = d;
  switch (mode) {
    case pmBlack: r = 0; break;
    case pmWhite: r = ~0u; break;
    case pmNop: r = d; break;
    case pmNot: r = ~d; break;
    case pmCopy: r = p; break;
    case pmNotCopy: r = ~p; break;
    case pmMergePenNot: r = p | ~d; break;
    case pmMaskPenNot: r = p & ~d; break;
    case pmMergeNotPen: r = ~p | d; break;
    case pmMaskNotPen: r = ~p & d; break;
    case pmMerge: r = p | d; break;
    case pmNotMerge: r = ~(p | d); break;
    case pmMask: r = p & d; break;
    case pmNotMask: r = ~(p & d); break;
    case pmXor: r = p ^ d; break;
    case pmNotXor: r = ~(p ^ d); break;
  }
  return (r & 0x00FFFFFFu) | (d & 0xFF000000u);
}

// Whether pens of Style draw every pixel of their lines (no dash pattern).
bool SolidStyle(TPenStyle style);

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

// Spans from this length on are stored by the C library's wide fill; below
// it the call costs more than it saves (zoom-1 repaints measured slower).
inline constexpr int kWideFillPixels = 64;
static_assert(sizeof(wchar_t) == sizeof(std::uint32_t), "wide fills store whole pixels");

// Sets the colour bits of Row's pixels [X0, X1) to Color, keeping their top
// bytes; on an opaque row (every top byte 0xFF) it stores whole pixels, which
// spares reading rows that are not in the cache. Filling spans is most of
// what painting costs: long opaque spans go to the wide fill, the rest four
// pixels a step.
inline void CopySpan(std::uint32_t* row, int x0, int x1, std::uint32_t color, bool opaque) {
  using TQuad = std::uint32_t __attribute__((vector_size(16)));
  const TQuad colors = {color, color, color, color};
  const TQuad tops = {0xFF000000u, 0xFF000000u, 0xFF000000u, 0xFF000000u};
  int x = x0;
  if (opaque) {
    // The C library's wide fill picks the widest stores the processor has
    // at run time: a 200-pixel repaint at zoom 4 takes 0.4-0.65 of the
    // time it took with 16-byte stores.
    if (x1 - x0 >= kWideFillPixels) {
      std::wmemset(reinterpret_cast<wchar_t*>(row + x0), static_cast<wchar_t>(color | 0xFF000000u),
                   static_cast<std::size_t>(x1 - x0));
      return;
    }
    const TQuad quad = colors | tops;
    for (; x + 4 <= x1; x += 4) std::memcpy(row + x, &quad, sizeof quad);
  } else {
    for (; x + 4 <= x1; x += 4) {
      TQuad quad;
      std::memcpy(&quad, row + x, sizeof quad);
      quad = (quad & tops) | colors;
      std::memcpy(row + x, &quad, sizeof quad);
    }
  }
  for (; x < x1; ++x) row[x] = color | (row[x] & 0xFF000000u);
}

// Whether (X, Y) lies in the proper rectangle Area: QRect::contains, which
// also takes reversed rectangles, is a library call per outline pixel.
inline bool InArea(const QRect& area, int x, int y) {
  return x >= area.left() && x <= area.right() && y >= area.top() && y <= area.bottom();
}

// The rows of a 32-bit surface, found once per figure rather than per pixel.
// Opaque: every pixel's top byte is known to be 0xFF (see CopySpan).
class TSurfaceRows {
 public:
  TSurfaceRows(QImage& surface, bool opaque)
      : bits_(surface.bits()), stride_(surface.bytesPerLine()), opaque_(opaque) {}
  std::uint32_t* Row(int y) const { return reinterpret_cast<std::uint32_t*>(bits_ + stride_ * y); }
  bool Opaque() const { return opaque_; }

 private:
  uchar* bits_;
  qsizetype stride_;
  bool opaque_;
};

// Combines Source with row Y of a 32-bit surface on the pixels [X0, X1).
inline void PaintSpan(const TSurfaceRows& rows, int y, int x0, int x1, const TPaintSource& source, TPenMode mode) {
  std::uint32_t* row = rows.Row(y);
  if (source.kind == TPaintSource::Kind::Solid && mode == pmCopy) {  // backgrounds and fills, without dispatch
    CopySpan(row, x0, x1, source.color & 0x00FFFFFFu, rows.Opaque());
    return;
  }
  QRgb p;
  for (int x = x0; x < x1; ++x)
    if (source.At(x, y, p)) row[x] = Rop2(mode, p, row[x]);
}

// Combines Source with the 32-bit surface of Rows on every pixel of Mask,
// whose area must lie within the surface.
void Composite(const TSurfaceRows& rows, const TMask& mask, const TPaintSource& source, TPenMode mode);

// ---------------------------------------------------------------------------
// Template definitions
// ---------------------------------------------------------------------------

// The integer nearest to I*D/N (N > 0), ties toward minus infinity.
std::int64_t NearestRoundingDown(std::int64_t i, std::int64_t d, std::int64_t n);

template <class Plot>
std::int64_t LinePixels(QPoint a, QPoint b, const QRect& area, Plot&& plot) {
  const std::int64_t dx = std::int64_t{b.x()} - a.x(), dy = std::int64_t{b.y()} - a.y();
  const std::int64_t n = std::max(dx < 0 ? -dx : dx, dy < 0 ? -dy : dy);
  if (n == 0 || area.isEmpty()) return n;
  const bool xMajor = (dx < 0 ? -dx : dx) >= (dy < 0 ? -dy : dy);
  const std::int64_t major0 = xMajor ? a.x() : a.y();
  const std::int64_t minor0 = xMajor ? a.y() : a.x();
  const std::int64_t step = (xMajor ? dx : dy) > 0 ? 1 : -1;
  const std::int64_t d = xMajor ? dy : dx;
  const std::int64_t lo = xMajor ? area.left() : area.top();
  const std::int64_t hi = xMajor ? area.right() : area.bottom();
  // Steps whose major coordinate major0 + step*i lies in [lo, hi].
  const std::int64_t first = std::max<std::int64_t>(step > 0 ? lo - major0 : major0 - hi, 0);
  const std::int64_t last = std::min(step > 0 ? hi - major0 : major0 - lo, n - 1);
  if (first > last) return n;
  // The minor offset at step i is q = ceil((2id - n) / 2n); it is carried
  // from step to step with the remainder r = 2nq - (2id - n), kept in [0, 2n).
  const std::int64_t twoN = 2 * n;
  // From the first pixel (the usual case) q = 0 and r = n, without dividing.
  std::int64_t q = first == 0 ? 0 : NearestRoundingDown(first, d, n);
  std::int64_t r = first == 0 ? n
                              : static_cast<std::int64_t>(static_cast<__int128>(twoN) * q -
                                                          (2 * static_cast<__int128>(first) * d - n));
  for (std::int64_t i = first; i <= last; ++i) {
    const std::int64_t minor = minor0 + q;
    if (minor >= std::numeric_limits<int>::min() && minor <= std::numeric_limits<int>::max()) {
      const auto major = static_cast<int>(major0 + step * i);
      if (xMajor)
        plot(major, static_cast<int>(minor), i);
      else
        plot(static_cast<int>(minor), major, i);
    }
    r -= 2 * d;
    if (r < 0) {
      r += twoN;
      ++q;
    } else if (r >= twoN) {
      r -= twoN;
      --q;
    }
  }
  return n;
}

// Gathers the polygons' edges, sorted by top; returns the rows [First, End)
// of Area they may cover (First >= End: none).
void ScanSetUp(const std::vector<QPolygonF>& polygons, const QRect& area, TScanBuffers& buffers, int& first,
               int& end);
// Brings the active edges up to row Y and sorts their crossings of it into
// buffers.crossings.
void ScanRow(int y, const QRect& area, std::size_t& next, TScanBuffers& buffers);

// The pixel box [Left, Right) x [Top, Bottom) within Area that the scan fills
// for Polygons when they are one axis-aligned rectangle of finite corners;
// false for any other figure.
bool AxisAlignedBox(const std::vector<QPolygonF>& polygons, const QRect& area, QRect& box);

template <class Span>
void FillPolygons(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area, Span&& span,
                  TScanBuffers& buffers) {
  // Backgrounds and upright rectangles, the commonest fills, need no scan.
  if (QRect box; AxisAlignedBox(polygons, area, box)) {
    if (box.left() < box.right())
      for (int y = box.top(); y < box.bottom(); ++y) span(y, box.left(), box.right());
    return;
  }
  int firstRow = 0, endRow = 0;
  ScanSetUp(polygons, area, buffers, firstRow, endRow);
  std::size_t next = 0;
  for (int y = firstRow; y < endRow; ++y) {
    ScanRow(y, area, next, buffers);
    const std::vector<TScanCrossing>& crossings = buffers.crossings;
    int count = 0;
    for (std::size_t k = 0; k + 1 < crossings.size(); ++k) {
      count += winding ? crossings[k].dir : 1;
      const bool inside = winding ? count != 0 : (count & 1) != 0;
      if (inside && crossings[k].threshold < crossings[k + 1].threshold)
        span(y, crossings[k].threshold, crossings[k + 1].threshold);
    }
  }
}

}  // namespace lumatrex::raster
