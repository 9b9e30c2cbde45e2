// TCanvas: the drawing surface every shape paints on. It keeps the classic
// raster conventions exactly, so that pictures are the same pixel for pixel
// wherever they are drawn:
//   - Rectangle, Ellipse and FillRect cover [x1, x2) x [y1, y2);
//   - LineTo leaves out its last pixel and moves the current position there;
//     a polyline draws every pixel once, so an XOR polyline drawn twice
//     restores the picture;
//   - pen modes are raster operations on the pixel values (TPenMode);
//   - psClear pens and bsClear brushes draw nothing;
//   - text is drawn at its top-left reference point.
// All coordinates are device pixels (integers) unless a world transform is set.
// No Qt in this header: shapes must not see the painter behind it.
//
// The same calls also serve a vector back end: a TPainterCanvas
// (painter_canvas.h) issues them to a QPainter on a printer, a PDF or SVG
// generator or a smooth image. Everything below holds there too, except the
// raster-only operations its header lists (pen modes without a picture,
// FloodFill, GetPixel).
//
// Pixel (x, y) stands for the point (x, y): a one-pixel line lights the pixels
// nearest to it (ties going to the smaller coordinate, so it covers the same
// pixels in either direction), and a filled area holds the pixels whose points
// lie inside it or on its left or top edge. A polygon's fill therefore leaves
// out its right and bottom edges, while its outline covers them.
//
// Figures (lines, polylines, polygons, Bezier curves, rectangles, ellipses,
// arcs, chords, pies) are drawn with antialiasing off and combine both pen and
// brush with the picture in the pen mode; each pixel of a figure is combined
// once, the pen winning where pen and brush meet. FillRect, FrameRect,
// FloodFill, SetPixel, bitmap copies and text ignore the pen mode.
//
// Pens: width 1 draws exact one-pixel lines; styled ones use the classic
// patterns in pixels (dash 18 on 6 off, dot 3 on 3 off, dash-dot 9-6-3-6,
// dash-dot-dot 9-3-3-3-3-3, alternate 1 on 1 off), counted along the whole
// figure. Wider pens are stroked (round ends and joins unless geometric),
// dashed in pen widths (3-1, 1-1, 3-1-1-1, 3-1-1-1-1-1).
// psInsideFrame keeps a wide pen inside a rectangle's or ellipse's box;
// psUserStyle draws solid. Pen widths are device pixels whatever the world
// transform.
//
// Brushes: hatches are the classic 8x8 patterns fixed to the device origin,
// lines in the brush colour; a pattern bitmap is tiled from the origin.
//
// Non-32-bit bitmaps are drawn through a 32-bit working copy; reads of the
// bitmap (GetPixel, ScanLine, files) see the colours its format holds.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "platform/graphics.h"
#include "platform/types.h"

namespace lumatrex {

class TBitmap;

// Background mode for text cells, the gaps of styled one-pixel lines and the
// gaps of hatches. In opaque mode they are painted in the background colour:
// the brush colour behind a solid brush, white otherwise. As on the classic
// canvas, every brush change sets the mode (opaque for a solid brush,
// transparent otherwise); SetBkMode after it wins until the next brush change.
enum TBkMode : std::uint8_t {
  bkTransparent = 1,
  bkOpaque = 2,
};

enum TFillStyle : std::uint8_t {
  fsSurface,  // fill the area of the given colour
  fsBorder,   // fill up to a border of the given colour
};

// Polygon fill rule for Polygon and regions.
enum TPolyFillMode : std::uint8_t {
  pfmAlternate = 1,
  pfmWinding = 2,
};

// Point kinds reported by GetPath, as bit values.
enum TPathPointType : std::uint8_t {
  ptCloseFigure = 0x01,
  ptLineTo = 0x02,
  ptBezierTo = 0x04,
  ptMoveTo = 0x06,
};

// A point between device pixels, for pictures placed at fractional positions.
struct TPointF {
  double X = 0;
  double Y = 0;
};

// An affine world transform: x' = x*eM11 + y*eM21 + eDx, y' = x*eM12 + y*eM22 + eDy.
struct TXForm {
  float eM11 = 1, eM12 = 0, eM21 = 0, eM22 = 1, eDx = 0, eDy = 0;
};

// A polygon region for hit tests. It holds exactly the pixels a Polygon fill
// under the same rule would paint (so the right and bottom edges of an upright
// rectangle are outside). A moved-from region contains nothing.
class TRegion {
 public:
  TRegion();
  ~TRegion();
  TRegion(TRegion&&) noexcept;
  TRegion& operator=(TRegion&&) noexcept;
  // The pixels inside the polygon under the fill rule (the classic
  // CreatePolygonRgn: the right and bottom edges of the outline are outside).
  static TRegion CreatePolygonRgn(const std::vector<TPoint>& points,
                                  TPolyFillMode mode = pfmAlternate);
  bool PtInRegion(std::int32_t x, std::int32_t y) const;
  bool IsEmpty() const;
  TRect BoundingRect() const;

 private:
  struct Impl;
  std::unique_ptr<Impl> impl_;
};

class TCanvas {
 public:
  // A canvas drawing on Bitmap, which must outlive it (TBitmap::Canvas() makes
  // the usual one).
  explicit TCanvas(TBitmap& bitmap);
  ~TCanvas();
  TCanvas(const TCanvas&) = delete;
  TCanvas& operator=(const TCanvas&) = delete;

  TPen& Pen();
  TBrush& Brush();
  TFont& Font();
  TBitmap& Bitmap();

  // ---- lines and figures -------------------------------------------------
  void MoveTo(std::int32_t x, std::int32_t y);
  void LineTo(std::int32_t x, std::int32_t y);
  TPoint PenPos() const;
  void SetPenPos(TPoint p);
  // MoveTo the first point, then LineTo each following one: the same pixels,
  // each segment combined with the picture before the next (an XOR chain
  // inverts a pixel two segments share twice), and the pen ends on the last
  // point. Cheaper than the separate calls: previews draw long chains.
  void LineChain(const std::vector<TPoint>& points);
  void Polyline(const std::vector<TPoint>& points);
  // Closed figure filled with the brush (fill rule from SetPolyFillMode) and
  // outlined with the pen.
  void Polygon(const std::vector<TPoint>& points);
  // Cubic Bezier chain: 1 + 3n points (any other count draws nothing), drawn
  // as a polyline of the flattened curve. Neither uses nor moves PenPos.
  void PolyBezier(const std::vector<TPoint>& points);
  void Rectangle(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
  void Rectangle(const TRect& r) { Rectangle(r.Left, r.Top, r.Right, r.Bottom); }
  void Ellipse(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2);
  void Ellipse(const TRect& r) { Ellipse(r.Left, r.Top, r.Right, r.Bottom); }
  // Elliptic arc of the ellipse in (x1,y1,x2,y2), counter-clockwise on the
  // screen from the ray toward (x3,y3) to the ray toward (x4,y4), both rays
  // from the ellipse's centre; a full ellipse when the rays coincide. Its
  // pixels are those of the Ellipse outline in the same box. Chord closes the
  // arc with a line and fills it; Pie runs through the centre and fills it.
  void Arc(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
           std::int32_t x3, std::int32_t y3, std::int32_t x4, std::int32_t y4);
  void Chord(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
             std::int32_t x3, std::int32_t y3, std::int32_t x4, std::int32_t y4);
  void Pie(std::int32_t x1, std::int32_t y1, std::int32_t x2, std::int32_t y2,
           std::int32_t x3, std::int32_t y3, std::int32_t x4, std::int32_t y4);
  void SetPolyFillMode(TPolyFillMode mode);

  // ---- fills and pixels ----------------------------------------------------
  // Fills [Left, Right) x [Top, Bottom) with the brush; no outline. Swapped
  // corners are put in order.
  void FillRect(const TRect& r);
  // A one-pixel frame along the inside of [Left, Right) x [Top, Bottom), in
  // the brush.
  void FrameRect(const TRect& r);
  // Fills with the brush the four-connected area around device pixel (x, y)
  // of pixels of Color (fsSurface) or of pixels other than Color (fsBorder),
  // within the clip; nothing when (x, y) itself does not qualify.
  void FloodFill(std::int32_t x, std::int32_t y, TColor color, TFillStyle style);
  // The colour (0x00BBGGRR) the bitmap holds at device pixel (x, y); -1
  // outside the bitmap.
  TColor GetPixel(std::int32_t x, std::int32_t y) const;
  // Sets device pixel (x, y) when it lies in the clip.
  void SetPixel(std::int32_t x, std::int32_t y, TColor color);

  // ---- text ----------------------------------------------------------------
  // Draws Text (UTF-8) with its top-left at (x, y), turned by the font's
  // Orientation about that point; moves nothing. In opaque background mode the
  // text cell is first filled with the background colour (see TBkMode).
  // Glyph edges are antialiased unless the font's Quality is
  // fqNonAntialiased. Text needs a QGuiApplication; without one nothing is
  // drawn.
  void TextOut(std::int32_t x, std::int32_t y, const std::string& text);
  // Unrotated extent of Text in the current font (GetTextExtentPoint32):
  // the advance width including the extra character spacing, and the cell
  // height (ascent + descent), also for empty text. (0, 0) without a
  // QGuiApplication.
  TSize TextExtent(const std::string& text);
  std::int32_t TextWidth(const std::string& text) { return TextExtent(text).cx; }
  std::int32_t TextHeight(const std::string& text) { return TextExtent(text).cy; }
  void SetBkMode(TBkMode mode);
  TBkMode BkMode() const;
  // Extra pixels added after every character (SetTextCharacterExtra).
  void SetTextCharacterExtra(std::int32_t extra);
  std::int32_t TextCharacterExtra() const;

  // ---- bitmaps -------------------------------------------------------------
  // Bitmap copies work in device pixels, within the clip; they copy colours
  // and keep the destination's alpha bytes. Scaling picks the source pixel
  // under each destination pixel's centre (the classic COLORONCOLOR stretch);
  // a rectangle given right-to-left or bottom-to-top mirrors the picture.
  // Drawing a bitmap onto itself reads the picture as it was before.
  void Draw(std::int32_t x, std::int32_t y, const TBitmap& bitmap);
  void StretchDraw(const TRect& dest, const TBitmap& bitmap);
  // Copies Source's SourceRect into Dest on this canvas, scaling when sizes
  // differ; pixels outside Source's bitmap are left alone.
  void CopyRect(const TRect& dest, TCanvas& source, const TRect& sourceRect);
  // Draws Picture (pf24bit) onto the parallelogram with corners Origin (the
  // picture's top-left), Across (its top-right) and Down (its bottom-left),
  // in device coordinates where pixel x covers [x, x+1): each device pixel
  // within the clip whose centre falls inside takes the picture's pixel
  // under that centre, except pixels of colour Transparent (-1: none). The
  // world transform does not apply. The cost follows the covered area.
  void DrawParallelogram(const TBitmap& picture, TPointF origin, TPointF across, TPointF down, TColor transparent);

  // ---- clipping --------------------------------------------------------------
  // The clip is in device pixels, whatever the world transform.
  // The clip rectangle within the bitmap (the whole bitmap when none is set).
  TRect ClipRect() const;
  // Replaces the clip, a clip polygon included.
  void SetClipRect(const TRect& r);
  void ClearClipRect();
  // Restricts drawing to the inside of a polygon (alternate rule) within the
  // current clip rectangle; ClearClipRect removes it.
  void SetClipPolygon(const std::vector<TPoint>& points);

  // ---- paths -----------------------------------------------------------------
  // Between BeginPath and EndPath, figure calls (MoveTo/LineTo, Polyline,
  // Polygon, PolyBezier, Rectangle, Ellipse, Arc, Chord, Pie and the glyph
  // outlines of TextOut) record outlines instead of drawing. A rectangle is
  // recorded through its edge pixels, from (x2-1, y1) counter-clockwise and
  // closed; ellipses and arcs as Bezier curves, counter-clockwise from their
  // start. StrokePath draws the recorded path with the pen, FillPath fills
  // its figures (open ones closed) with the brush under the polygon fill
  // mode; each then clears the path. BeginPath discards any earlier path.
  void BeginPath();
  void EndPath();
  void AbortPath();
  void StrokePath();
  void FillPath();
  void StrokeAndFillPath();
  // Replaces every curve of the path by line segments.
  void FlattenPath();
  // The path recorded so far in device coordinates (rounded), with one
  // TPathPointType per point; the last point of a closed figure also carries
  // ptCloseFigure.
  void GetPath(std::vector<TPoint>& points, std::vector<std::uint8_t>& types) const;

  // ---- world transform -------------------------------------------------------
  // Maps the coordinates of later figures, FillRect, FrameRect, text and
  // recorded paths to device pixels (vertices are rounded after mapping; an
  // upright transform keeps boxes exact). Pixel operations, bitmap copies and
  // the clip stay in device pixels.
  void SetWorldTransform(const TXForm& xform);
  void ResetWorldTransform();
  TXForm WorldTransform() const;

  // Implementation detail shared with the Qt interop helpers.
  struct Impl;
  Impl& impl() const { return *impl_; }

 private:
  std::unique_ptr<Impl> impl_;
};

}  // namespace lumatrex
