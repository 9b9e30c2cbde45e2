// The drawing surface: the raster conventions every shape relies on, pixel
// for pixel (half-open figures, lines without their last pixel, raster
// operations, dashes and hatches), plus clipping, regions, paths, the world
// transform and text (turned text: the ruler's pictures), and the painter
// back end against the raster one.
#include <gtest/gtest.h>

#include <QPainter>
#include <algorithm>
#include <array>
#include <cstdlib>
#include <functional>
#include <limits>
#include <map>
#include <random>
#include <string>
#include <vector>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/painter_canvas.h"
#include "platform/qt_interop.h"
#include "platform/raster.h"
#include "support/golden.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using Art = std::vector<std::string>;

// The picture as one character a pixel: '.' white, 'x' black, 'r' red,
// 'y' yellow, '?' anything else.
Art Picture(TBitmap& bitmap) {
  Art rows;
  for (int y = 0; y < bitmap.Height(); ++y) {
    std::string row;
    for (int x = 0; x < bitmap.Width(); ++x) {
      const TColor c = bitmap.Canvas().GetPixel(x, y);
      row += c == clWhite ? '.' : c == clBlack ? 'x' : c == clRed ? 'r' : c == clYellow ? 'y' : '?';
    }
    rows.push_back(row);
  }
  return rows;
}

std::vector<TColor> Colours(TBitmap& bitmap) {
  std::vector<TColor> colours;
  for (int y = 0; y < bitmap.Height(); ++y)
    for (int x = 0; x < bitmap.Width(); ++x) colours.push_back(bitmap.Canvas().GetPixel(x, y));
  return colours;
}

// Every pixel a different colour, so that a raster operation applied twice
// or to the wrong pixel shows.
void PaintGradient(TBitmap& bitmap) {
  for (int y = 0; y < bitmap.Height(); ++y)
    for (int x = 0; x < bitmap.Width(); ++x)
      bitmap.Canvas().SetPixel(x, y, RGB(static_cast<std::uint8_t>(x * 7), static_cast<std::uint8_t>(y * 11),
                                         static_cast<std::uint8_t>((x + y) * 3)));
}

std::vector<TPoint> Pentagram() { return {{20, 2}, {31, 36}, {2, 14}, {38, 14}, {9, 36}}; }

// ---------------------------------------------------------------------------
// Figures: half-open boxes
// ---------------------------------------------------------------------------

TBitmap Quad() {  // 2x2: red, yellow / black, white
  TBitmap quad(2, 2, pf24bit);
  quad.Canvas().SetPixel(0, 0, clRed);
  quad.Canvas().SetPixel(1, 0, clYellow);
  quad.Canvas().SetPixel(0, 1, clBlack);
  return quad;
}

// A black ring with an island at (3, 3), flood filled red from inside.
void FloodFillRing(TCanvas& canvas, TFillStyle style) {
  canvas.Brush().SetStyle(bsClear);
  canvas.Rectangle(1, 1, 7, 7);
  canvas.SetPixel(3, 3, clBlack);
  canvas.Brush().SetStyle(bsSolid);
  canvas.FloodFill(4, 4, style == fsSurface ? clWhite : clBlack, style);
}

// A one-pixel line From To, which must leave the pen at To.
std::function<void(TCanvas&)> Line(TPoint from, TPoint to) {
  return [=](TCanvas& c) {
    c.MoveTo(from.X, from.Y);
    c.LineTo(to.X, to.Y);
    EXPECT_EQ(c.PenPos(), to);
  };
}

// A styled line along the top row, over a yellow brush of Brush's style.
std::function<void(TCanvas&)> Dashed(TPenStyle style, TBrushStyle brush) {
  return [=](TCanvas& c) {
    c.Pen().SetStyle(style);
    c.Brush().SetColor(clYellow);
    c.Brush().SetStyle(brush);
    c.MoveTo(0, 0);
    c.LineTo(100, 0);
  };
}

// The pictures of tests/data/platform/canvas_pictures.txt by name: a line
// with the name, then a line "| row" for each row.
std::map<std::string, Art> Pictures() {
  std::map<std::string, Art> pictures;
  std::string name;
  for (const std::vector<std::string>& row : test::DataTable("platform/canvas_pictures.txt")) {
    if (row.size() == 1) name = row[0];
    else pictures[name].push_back(row.at(1));
  }
  return pictures;
}

// Each case draws on white with a black pen and a red brush and must give
// its picture of the data file, pixel for pixel.
TEST(CanvasPictures, FiguresFillsAndCopiesLightExactlyTheirPixels) {
  struct Case { const char* picture; int width, height; std::function<void(TCanvas&)> draw; };
  const Case cases[] = {
      {"rectangle", 8, 6, [](TCanvas& c) { c.Rectangle(1, 1, 6, 5); }},
      {"rectangle_with_swapped_corners", 8, 6, [](TCanvas& c) { c.Rectangle(6, 5, 1, 1); }},
      {"ellipse_inscribed", 8, 8, [](TCanvas& c) { c.Ellipse(0, 0, 7, 7); }},
      {"fill_rect_ignores_the_pen_mode", 6, 4, [](TCanvas& c) { c.Pen().SetMode(pmXor); c.FillRect(Rect(4, 3, 1, 1)); }},
      {"polygon_fill_without_outline", 6, 6,
       [](TCanvas& c) { c.Pen().SetStyle(psClear); c.Polygon({{1, 1}, {4, 1}, {4, 4}, {1, 4}}); }},
      {"polygon_with_outline", 6, 6, [](TCanvas& c) { c.Polygon({{1, 1}, {4, 1}, {4, 4}, {1, 4}}); }},
      {"xor_polyline", 7, 7, [](TCanvas& c) {
         c.Pen().SetColor(clWhite);
         c.Pen().SetMode(pmXor);
         c.Polyline({{1, 1}, {5, 1}, {5, 5}, {1, 5}, {1, 1}});
       }},
      {"dotted_polyline", 6, 6, [](TCanvas& c) {
         c.Pen().SetStyle(psDot);
         c.Brush().SetStyle(bsClear);
         c.Polyline({{0, 1}, {4, 1}, {4, 5}});
       }},
      {"hatch_over_red", 8, 8, [](TCanvas& c) {
         c.FillRect(Rect(0, 0, 8, 8));
         c.Brush().SetColor(clBlack);
         c.Brush().SetStyle(bsFDiagonal);
         EXPECT_EQ(c.BkMode(), bkTransparent);
         c.FillRect(Rect(0, 0, 8, 8));
       }},
      {"bitmap_brush", 6, 2, [](TCanvas& c) {
         TBitmap pattern(2, 1, pf24bit);
         pattern.Canvas().SetPixel(0, 0, clRed);
         c.Brush().SetBitmap(&pattern);
         c.FillRect(Rect(1, 0, 6, 2));
       }},
      {"flood_fill_surface", 8, 8, [](TCanvas& c) { FloodFillRing(c, fsSurface); }},
      {"flood_fill_border", 8, 8, [](TCanvas& c) { FloodFillRing(c, fsBorder); }},
      {"draw", 4, 4, [](TCanvas& c) { c.Draw(1, 2, Quad()); c.Draw(-1, -1, Quad()); }},
      {"stretch_double", 5, 5, [](TCanvas& c) { c.StretchDraw(Rect(0, 0, 4, 4), Quad()); }},
      {"stretch_half", 2, 1, [](TCanvas& c) {
         TBitmap row(4, 1, pf32bit);
         row.Canvas().SetPixel(1, 0, clRed);
         row.Canvas().SetPixel(3, 0, clBlack);
         c.StretchDraw(Rect(0, 0, 2, 1), row);
       }},
      {"stretch_mirrored", 2, 2, [](TCanvas& c) { c.StretchDraw(Rect(2, 2, 0, 0), Quad()); }},
      {"line_horizontal", 8, 8, Line({0, 0}, {4, 0})},
      {"line_upward_vertical", 8, 8, Line({2, 5}, {2, 1})},
      {"line_diagonal", 8, 8, Line({0, 0}, {3, 3})},
      {"line_tie_goes_to_the_smaller_y", 8, 8, Line({0, 0}, {4, 1})},
      {"line_reversed_covers_the_same_pixels", 8, 8, Line({4, 1}, {0, 0})},
      {"line_steep", 8, 8, Line({1, 0}, {3, 6})},
      {"line_of_zero_length_draws_nothing", 8, 8, Line({3, 3}, {3, 3})},
      {"line_from_far_outside", 8, 8, Line({-100000, 2}, {4, 2})},
      // A clear brush makes the background transparent, as the classic canvas does.
      {"dot_gaps_left_alone", 30, 1, Dashed(psDot, bsClear)},
      {"dot_gaps_in_the_brush_colour", 30, 1, Dashed(psDot, bsSolid)},
      {"alternate", 40, 1, Dashed(psAlternate, bsClear)},
      {"dash", 42, 1, Dashed(psDash, bsClear)},
      {"dash_dot", 42, 1, Dashed(psDashDot, bsClear)},
      {"dash_dot_dot", 42, 1, Dashed(psDashDotDot, bsClear)},
      {"arc_upper_half_counter_clockwise_from_the_right_ray", 21, 21,
       [](TCanvas& c) { c.Arc(0, 0, 21, 21, 21, 10, 0, 10); }},
      {"inside_frame_keeps_a_wide_pen_within_the_box", 20, 20, [](TCanvas& c) {
         c.Pen().SetWidth(4);
         c.Pen().SetStyle(psInsideFrame);
         c.Rectangle(4, 4, 16, 16);
       }},
      {"hatch_anchored_at_the_device_origin_over_an_opaque_background", 20, 20, [](TCanvas& c) {
         c.FillRect(Rect(0, 0, 20, 20));
         c.Brush().SetColor(clBlack);
         c.Brush().SetStyle(bsCross);
         c.SetBkMode(bkOpaque);
         c.FillRect(Rect(3, 5, 19, 19));
       }},
      {"clip_rectangle_limits_every_drawing", 8, 8, [](TCanvas& c) {
         c.SetClipRect(Rect(2, 3, 5, 6));
         c.FillRect(Rect(0, 0, 8, 8));
         c.MoveTo(0, 6);
         c.LineTo(8, 6);
         c.SetPixel(6, 6, clBlack);
         c.Draw(0, 0, Quad());
         c.ClearClipRect();
         EXPECT_EQ(c.ClipRect(), Rect(0, 0, 8, 8));
       }},
  };
  const std::map<std::string, Art> pictures = Pictures();
  for (const Case& c : cases) {
    SCOPED_TRACE(c.picture);
    TBitmap bitmap(c.width, c.height, pf32bit);
    bitmap.Canvas().Brush().SetColor(clRed);
    c.draw(bitmap.Canvas());
    ASSERT_TRUE(pictures.contains(c.picture));
    EXPECT_EQ(Picture(bitmap), pictures.at(c.picture));
  }
}

TEST(CanvasFigures, ClearPenAndClearBrushDrawNothing) {
  TBitmap bitmap(40, 40, pf32bit);
  PaintGradient(bitmap);
  const std::vector<TColor> before = Colours(bitmap);
  TCanvas& canvas = bitmap.Canvas();
  canvas.Pen().SetStyle(psClear);
  canvas.Brush().SetStyle(bsClear);
  canvas.Rectangle(1, 1, 30, 30);
  canvas.Ellipse(1, 1, 30, 30);
  canvas.Polygon(Pentagram());
  canvas.Pie(1, 1, 30, 30, 30, 15, 15, 1);
  canvas.MoveTo(0, 0);
  canvas.LineTo(39, 39);
  canvas.FillRect(Rect(0, 0, 40, 40));
  EXPECT_EQ(Colours(bitmap), before);
}

TEST(CanvasFigures, BrushNeverReachesPastTheOutline) {
  const std::vector<std::pair<const char*, std::function<void(TCanvas&)>>> figures = {
      {"ellipse", [](TCanvas& c) { c.Ellipse(3, 5, 36, 27); }},
      {"pie", [](TCanvas& c) { c.Pie(1, 1, 39, 33, 39, 2, 2, 30); }},
      {"chord", [](TCanvas& c) { c.Chord(1, 1, 39, 33, 39, 20, 5, 1); }},
      {"star", [](TCanvas& c) { c.Polygon(Pentagram()); }},
  };
  for (const auto& [name, draw] : figures) {
    SCOPED_TRACE(name);
    TBitmap bitmap(40, 40, pf32bit);
    bitmap.Canvas().Brush().SetColor(clRed);
    draw(bitmap.Canvas());
    const Art art = Picture(bitmap);
    for (int y = 1; y < 39; ++y) {
      for (int x = 1; x < 39; ++x) {
        if (art[y][x] != 'r') continue;
        ASSERT_TRUE(art[y - 1][x] != '.' && art[y + 1][x] != '.' && art[y][x - 1] != '.' && art[y][x + 1] != '.')
            << x << "," << y;
      }
    }
  }
}

// Figures drawn with a copying pen are painted span by span; under a clip
// polygon they go through coverage masks. With the polygon covering the
// whole picture both ways must paint the same pixels.
TEST(CanvasFigures, CopyingPenPaintsAsTheMaskPipelineDoes) {
  struct Case { const char* name; TPenStyle pen; TBrushStyle brush; };
  const Case cases[] = {{"solid_pen_solid_brush", psSolid, bsSolid},
                        {"solid_pen_hatch", psSolid, bsDiagCross}, {"clear_pen_solid_brush", psClear, bsSolid},
                        {"solid_pen_clear_brush", psSolid, bsClear}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto draw = [&c](bool throughMasks) {
      TBitmap bitmap(48, 40, pf32bit);
      PaintGradient(bitmap);
      TCanvas& canvas = bitmap.Canvas();
      if (throughMasks) canvas.SetClipPolygon({{0, 0}, {48, 0}, {48, 40}, {0, 40}});
      canvas.Pen().SetStyle(c.pen);
      canvas.Pen().SetColor(clRed);
      canvas.Brush().SetColor(clYellow);
      canvas.Brush().SetStyle(c.brush);
      canvas.Polygon(Pentagram());
      canvas.SetPolyFillMode(pfmWinding);
      canvas.Polygon({{30, -5}, {60, 20}, {30, 45}, {20, 20}});
      canvas.Rectangle(-3, 25, 14, 52);
      canvas.Ellipse(5, 3, 44, 37);
      canvas.Ellipse(-20, -9, 11, 12);
      canvas.Polyline({{-7, 39}, {47, 0}, {3, 3}, {40, 36}});
      canvas.MoveTo(47, 39);
      canvas.LineTo(100, -80);
      return Colours(bitmap);
    };
    EXPECT_EQ(draw(false), draw(true));
  }
}

// Upright rectangles skip the scan; their spans must be the scan's for any
// corners, however fractional or far outside the area. A sixth, redundant
// corner on the top edge sends the same rectangle through the scan.
TEST(CanvasFigures, UprightRectanglesFillAsTheScanDoes) {
  std::mt19937 random(5);
  std::uniform_real_distribution<double> coordinate(-12, 36);
  const QRect area(2, 3, 20, 18);
  using Spans = std::vector<std::array<int, 3>>;
  auto spans = [&area](const QPolygonF& polygon) {
    Spans out;
    raster::FillPolygons({polygon}, false, area, [&out](int y, int x0, int x1) { out.push_back({y, x0, x1}); });
    return out;
  };
  for (int i = 0; i < 300; ++i) {
    const double l = coordinate(random), t = coordinate(random), r = coordinate(random), b = coordinate(random);
    const QPolygonF corners{QPointF(l, t), QPointF(r, t), QPointF(r, b), QPointF(l, b)};
    const QPolygonF scanned{QPointF(l, t), QPointF((l + r) / 2, t), QPointF(r, t), QPointF(r, b), QPointF(l, b)};
    ASSERT_EQ(spans(corners), spans(scanned)) << l << " " << t << " " << r << " " << b;
  }
}

// ---------------------------------------------------------------------------
// Lines
// ---------------------------------------------------------------------------

// Lines step from pixel to pixel incrementally; every pixel must still be the
// one the closed formula gives, whatever the direction, length and clip.
TEST(CanvasLines, SteppedPixelsAreTheNearestOnesAlsoWhenClipped) {
  std::mt19937 random(3);
  std::uniform_int_distribution<int> coordinate(-3000, 3000);
  for (int k = 0; k < 300; ++k) {
    const QPoint a(coordinate(random), coordinate(random)), b(coordinate(random), coordinate(random));
    const QRect area(coordinate(random), coordinate(random), 1 + random() % 2000, 1 + random() % 2000);
    const std::int64_t dx = b.x() - a.x(), dy = b.y() - a.y(), n = std::max(std::abs(dx), std::abs(dy));
    const bool xMajor = std::abs(dx) >= std::abs(dy);
    int wrong = 0;
    raster::LinePixels(a, b, area, [&](int x, int y, std::int64_t i) {
      const std::int64_t minor = (xMajor ? a.y() : a.x()) + raster::NearestRoundingDown(i, xMajor ? dy : dx, n);
      const std::int64_t major = (xMajor ? a.x() : a.y()) + i * ((xMajor ? dx : dy) > 0 ? 1 : -1);
      wrong += (xMajor ? x : y) != major || (xMajor ? y : x) != minor;
    });
    EXPECT_EQ(wrong, 0) << "line " << k;
  }
}

// A chain is its segments drawn one after another: XOR inverts a pixel where
// two segments cross twice, each segment starts its own dashes, and the pen
// ends on the last point. Every pen the chain draws itself is compared with
// the separate calls, also clipped, turned, over the picture's edges and
// towards a point too far to round to pixels directly.
TEST(CanvasLines, ChainIsItsSegmentsOneByOne) {
  struct Case { const char* name; TPenMode mode; TPenStyle style; std::int32_t width; bool clipped, turned; };
  const Case cases[] = {{"xor", pmXor, psSolid, 1, false, false},   {"copy", pmCopy, psSolid, 1, false, false},
                        {"dashes", pmCopy, psDashDot, 1, false, false}, {"not_xor_dots", pmNotXor, psDot, 1, true, false},
                        {"turned", pmXor, psSolid, 1, false, true},   {"wide", pmXor, psSolid, 3, true, false}};
  const std::vector<TPoint> chain = {{-6, 5}, {40, 30}, {3, 30}, {30, 2}, {30, 2}, {-2'000'000'000, 9}, {12, 44}, {60, -9}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    auto draw = [&](bool asChain) {
      TBitmap bitmap(48, 40, pf32bit);
      PaintGradient(bitmap);
      TCanvas& canvas = bitmap.Canvas();
      canvas.Pen().SetMode(c.mode);
      canvas.Pen().SetStyle(c.style);
      canvas.Pen().SetWidth(c.width);
      canvas.Pen().SetColor(RGB(0x30, 0xC0, 0x5A));
      canvas.Brush().SetColor(clYellow);
      canvas.SetBkMode(bkOpaque);
      if (c.clipped) canvas.SetClipRect(Rect(5, 4, 37, 33));
      if (c.turned) canvas.SetWorldTransform(TXForm{0.8f, 0.6f, -0.6f, 0.8f, 20, -6});
      if (asChain) {
        canvas.LineChain(chain);
      } else {
        canvas.MoveTo(chain.front().X, chain.front().Y);
        for (std::size_t i = 1; i < chain.size(); ++i) canvas.LineTo(chain[i].X, chain[i].Y);
      }
      EXPECT_EQ(canvas.PenPos(), chain.back());
      return Colours(bitmap);
    };
    EXPECT_EQ(draw(true), draw(false));
  }
}

// ---------------------------------------------------------------------------
// Pen modes
// ---------------------------------------------------------------------------

// The modes in their enum order, pen 0xAA0FF0 over destination 0x563412:
// 0, 1, D, ~D, P, ~P, P|~D, P&~D, ~P|D, ~P&D, P|D, ~(P|D), P&D, ~(P&D), P^D, ~(P^D).
TEST(CanvasPenModes, AllSixteenCombinePenWithDestinationBitwiseAndKeepAlphaOpaque) {
  const std::vector<TColor> expected = {0x000000, 0xFFFFFF, 0x563412, 0xA9CBED, 0xAA0FF0, 0x55F00F,
                                        0xABCFFD, 0xA80BE0, 0x57F41F, 0x543002, 0xFE3FF2, 0x01C00D,
                                        0x020410, 0xFDFBEF, 0xFC3BE2, 0x03C41D};
  TBitmap bitmap(17, 1, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.Pen().SetColor(RGB(0xF0, 0x0F, 0xAA));
  std::vector<TColor> got;
  for (int mode = pmBlack; mode <= pmNotXor; ++mode) {
    canvas.SetPixel(mode, 0, RGB(0x12, 0x34, 0x56));
    canvas.Pen().SetMode(static_cast<TPenMode>(mode));
    canvas.MoveTo(mode, 0);
    canvas.LineTo(mode + 1, 0);
    got.push_back(canvas.GetPixel(mode, 0));
    EXPECT_EQ(bitmap.ScanLine(0)[4 * mode + 3], 0xFF) << mode;
  }
  EXPECT_EQ(got, expected);
  EXPECT_EQ(canvas.GetPixel(16, 0), clWhite);  // the end pixel is left out
}

// Filling stores whole pixels only on bitmaps known to be opaque: top bytes
// a host wrote through ScanLine survive fills, copies and resizing.
TEST(CanvasPenModes, FillsKeepTopBytesTheHostWrote) {
  for (const std::string after : {"nothing", "copy", "resize"}) {
    TBitmap written(9, 1, pf32bit);
    for (int x = 0; x < 9; ++x) written.ScanLine(0)[4 * x + 3] = 0x40;
    TBitmap copy(written);
    if (after == "resize") copy.SetSize(10, 2);
    TBitmap& filled = after == "nothing" ? written : copy;
    filled.Canvas().Brush().SetColor(RGB(0x12, 0x34, 0x56));
    filled.Canvas().FillRect(Rect(0, 0, 10, 2));
    for (int x = 0; x < 9; ++x) {
      EXPECT_EQ(filled.ScanLine(0)[4 * x + 3], 0x40) << after << " pixel " << x;
      EXPECT_EQ(filled.ScanLine(0)[4 * x], 0x56) << after << " pixel " << x;
    }
  }
}

TEST(CanvasPenModes, NotInvertsWhateverThePenColourAndAppliesToTheBrushToo) {
  TBitmap bitmap(6, 6, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.SetPixel(2, 2, RGB(0x10, 0x20, 0x30));
  canvas.Pen().SetColor(clRed);
  canvas.Brush().SetColor(clYellow);
  canvas.Pen().SetMode(pmNot);
  canvas.Rectangle(0, 0, 6, 6);
  EXPECT_EQ(canvas.GetPixel(0, 0), clBlack);
  EXPECT_EQ(canvas.GetPixel(2, 2), RGB(0xEF, 0xDF, 0xCF));
}

TEST(CanvasXorTwice, RestoresEveryPixel) {
  const std::pair<const char*, std::function<void(TCanvas&)>> figures[] = {
      {"line", [](TCanvas& c) { c.MoveTo(3, 4); c.LineTo(37, 21); }},
      {"self-crossing polyline", [](TCanvas& c) { c.Polyline({{2, 2}, {30, 30}, {30, 2}, {2, 30}}); }},
      {"ellipse", [](TCanvas& c) { c.Ellipse(4, 4, 36, 28); }},
      {"winding star polygon", [](TCanvas& c) { c.SetPolyFillMode(pfmWinding); c.Polygon(Pentagram()); }},
      {"dotted rubber band",
       [](TCanvas& c) { c.Pen().SetStyle(psDot); c.Brush().SetStyle(bsClear); c.Rectangle(2, 2, 37, 31); }},
      {"hatched rectangle",
       [](TCanvas& c) { c.Brush().SetStyle(bsDiagCross); c.SetBkMode(bkOpaque); c.Rectangle(1, 1, 39, 39); }},
      {"wide polyline", [](TCanvas& c) { c.Pen().SetWidth(5); c.Polyline({{5, 5}, {35, 10}, {10, 35}}); }},
      {"bezier", [](TCanvas& c) { c.PolyBezier({{2, 38}, {2, 2}, {38, 2}, {38, 38}}); }},
      {"turned figures", [](TCanvas& c) {
         c.SetWorldTransform(TXForm{0.8f, 0.6f, -0.6f, 0.8f, 20, 2});
         c.Rectangle(0, 0, 20, 12); c.Ellipse(2, 14, 22, 28); c.Pie(0, 0, 20, 20, 20, 0, 0, 20);
       }}};
  for (const auto& [name, draw] : figures) {
    SCOPED_TRACE(name);
    TBitmap bitmap(40, 40, pf32bit);
    PaintGradient(bitmap);
    const std::vector<TColor> before = Colours(bitmap);
    TCanvas& canvas = bitmap.Canvas();
    canvas.Pen().SetColor(RGB(0x5A, 0xA5, 0x3C));
    canvas.Brush().SetColor(RGB(0x0F, 0x77, 0xE1));
    canvas.Pen().SetMode(pmXor);
    draw(canvas);
    EXPECT_NE(Colours(bitmap), before);
    draw(canvas);
    EXPECT_EQ(Colours(bitmap), before);
  }
}

// ---------------------------------------------------------------------------
// Pen styles and brush patterns
// ---------------------------------------------------------------------------

// ---------------------------------------------------------------------------
// Pixels, flood fill and bitmap copies
// ---------------------------------------------------------------------------

TEST(CanvasFloodFill, LargeAreaNeedsNoRecursion) {
  TBitmap bitmap(300, 300, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  for (int x = 2; x < 300; x += 4) {  // a comb: one long winding corridor
    canvas.MoveTo(x, x % 8 == 2 ? 0 : 1);
    canvas.LineTo(x, x % 8 == 2 ? 299 : 300);
  }
  canvas.Brush().SetColor(clRed);
  canvas.FloodFill(0, 0, clWhite, fsSurface);
  EXPECT_EQ(canvas.GetPixel(297, 150), clRed);
  EXPECT_EQ(canvas.GetPixel(299, 299), clRed);
}

TEST(CanvasCopies, DrawOntoItsOwnBitmapReadsTheOriginal) {
  TBitmap row(4, 1, pf32bit);
  row.Canvas().SetPixel(0, 0, clRed);
  row.Canvas().SetPixel(1, 0, clBlack);
  row.Canvas().Draw(1, 0, row);
  EXPECT_EQ(Picture(row)[0], "rrx.");
}

// ---------------------------------------------------------------------------
// Clipping and regions
// ---------------------------------------------------------------------------

TEST(CanvasClip, ClipPolygonPassesExactlyThePixelsOfItsRegion) {
  const std::vector<TPoint> triangle = {{1, 1}, {18, 4}, {6, 17}};
  TBitmap bitmap(20, 20, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.SetClipPolygon(triangle);
  canvas.Brush().SetColor(clRed);
  canvas.FillRect(Rect(0, 0, 20, 20));
  const TRegion region = TRegion::CreatePolygonRgn(triangle);
  for (int y = 0; y < 20; ++y)
    for (int x = 0; x < 20; ++x)
      ASSERT_EQ(canvas.GetPixel(x, y) == clRed, region.PtInRegion(x, y)) << x << "," << y;
}

TEST(Region, AlternateLeavesTheStarCentreOutWindingTakesItIn) {
  const TRegion alternate = TRegion::CreatePolygonRgn(Pentagram(), pfmAlternate);
  const TRegion winding = TRegion::CreatePolygonRgn(Pentagram(), pfmWinding);
  EXPECT_FALSE(alternate.PtInRegion(20, 20));
  EXPECT_TRUE(winding.PtInRegion(20, 20));
  EXPECT_TRUE(alternate.PtInRegion(20, 8));  // a tip is inside under both rules
  EXPECT_TRUE(winding.PtInRegion(20, 8));
  EXPECT_FALSE(winding.PtInRegion(2, 30));
  // Degenerate polygons are empty.
  EXPECT_TRUE(TRegion::CreatePolygonRgn({}).IsEmpty());
  EXPECT_TRUE(TRegion::CreatePolygonRgn({{0, 0}, {10, 10}}).IsEmpty());
  EXPECT_FALSE(TRegion::CreatePolygonRgn({{0, 0}, {10, 10}}).PtInRegion(5, 5));
}

// ---------------------------------------------------------------------------
// Paths
// ---------------------------------------------------------------------------

TEST(CanvasPaths, RecordedFiguresRunThroughTheirEdgePixels) {
  TBitmap bitmap(40, 50, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  std::vector<TPoint> points;
  std::vector<std::uint8_t> types;
  canvas.BeginPath();
  canvas.Rectangle(10, 20, 30, 40);
  canvas.EndPath();
  EXPECT_EQ(Picture(bitmap), Art(50, std::string(40, '.')));  // recorded, not drawn
  canvas.GetPath(points, types);
  EXPECT_EQ(points, (std::vector<TPoint>{{29, 20}, {10, 20}, {10, 39}, {29, 39}}));
  EXPECT_EQ(types, (std::vector<std::uint8_t>{ptMoveTo, ptLineTo, ptLineTo, ptLineTo | ptCloseFigure}));
  // An ellipse is four Beziers, counter-clockwise on the screen from three o'clock.
  canvas.BeginPath();
  canvas.Ellipse(0, 0, 21, 11);
  canvas.EndPath();
  canvas.GetPath(points, types);
  ASSERT_EQ(types.size(), 13u);
  EXPECT_EQ(types.back(), ptBezierTo | ptCloseFigure);
  EXPECT_EQ(points.front(), Point(20, 5));
  EXPECT_LT(points[1].Y, 5);
  EXPECT_EQ(points[3], Point(10, 0));
}

TEST(CanvasPaths, FlattenPathTurnsABezierIntoLinesWithTheSameEnds) {
  TBitmap bitmap(10, 10, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.BeginPath();
  canvas.PolyBezier({{0, 0}, {0, 100}, {100, 100}, {100, 0}});
  canvas.EndPath();
  std::vector<TPoint> points;
  std::vector<std::uint8_t> types;
  canvas.GetPath(points, types);
  EXPECT_EQ(types, (std::vector<std::uint8_t>{ptMoveTo, ptBezierTo, ptBezierTo, ptBezierTo}));
  canvas.FlattenPath();
  canvas.GetPath(points, types);
  ASSERT_GT(points.size(), 8u);
  EXPECT_EQ(points.front(), Point(0, 0));
  EXPECT_EQ(points.back(), Point(100, 0));
  EXPECT_EQ(types.front(), ptMoveTo);
  for (std::size_t i = 1; i < types.size(); ++i) EXPECT_EQ(types[i], ptLineTo);
  // The curve's middle, at 3/4 of the control points' height, is a vertex.
  EXPECT_NE(std::find(points.begin(), points.end(), Point(50, 75)), points.end());
}

TEST(CanvasPaths, StrokePathDrawsWhatTheFiguresWouldAndClearsThePath) {
  TBitmap direct(20, 20, pf32bit), stroked(20, 20, pf32bit);
  auto figures = [](TCanvas& c) {
    c.MoveTo(2, 3);
    c.LineTo(17, 9);
    c.LineTo(5, 16);
    c.Polyline({{1, 18}, {18, 18}});
  };
  figures(direct.Canvas());
  TCanvas& canvas = stroked.Canvas();
  canvas.BeginPath();
  figures(canvas);
  canvas.EndPath();
  canvas.StrokePath();
  EXPECT_EQ(Picture(stroked), Picture(direct));
  std::vector<TPoint> points;
  std::vector<std::uint8_t> types;
  canvas.GetPath(points, types);
  EXPECT_TRUE(points.empty());
}

// ---------------------------------------------------------------------------
// Text
// ---------------------------------------------------------------------------

TEST(CanvasText, CharacterExtraAddsItsPixelsAfterEveryCharacter) {
  TBitmap bitmap(1, 1, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  const TSize plain = canvas.TextExtent("Hello");
  canvas.SetTextCharacterExtra(3);
  EXPECT_EQ(canvas.TextExtent("Hello"), (TSize{plain.cx + 15, plain.cy}));
}

TEST(CanvasText, FontHeightsAtTheInt32LimitsMeasureWithoutOverflow) {
  constexpr std::int32_t kMin = std::numeric_limits<std::int32_t>::min(), kMax = std::numeric_limits<std::int32_t>::max();
  // Height, pixels per inch: a zero height takes eight points at that
  // density, here 20,000 pixels, where Qt's metrics have wrapped.
  constexpr std::pair<std::int32_t, std::int32_t> kFonts[] = {{kMin, 96}, {kMax, 96}, {0, 180'000}};
  for (const auto& [height, pixelsPerInch] : kFonts) {
    TBitmap bitmap(1, 1, pf32bit);
    TCanvas& canvas = bitmap.Canvas();
    canvas.Font().SetPixelsPerInch(pixelsPerInch);
    canvas.Font().SetHeight(height);
    const TSize extent = canvas.TextExtent("Hi");
    EXPECT_GT(extent.cy, 0) << height;
    EXPECT_LT(extent.cy, 65536) << height;
  }
  TFont font;
  font.SetPixelsPerInch(72);
  font.SetHeight(kMin);
  EXPECT_EQ(font.Size(), kMax);
}

TEST(CanvasText, OpaqueBackgroundFillsTheCellWithTheBrushColour) {
  TBitmap bitmap(80, 30, pf32bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.Brush().SetColor(clYellow);
  canvas.TextOut(5, 4, "Hi");
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(bitmap), "platform/text_hi_on_its_yellow_cell.png"));
}

// ---------------------------------------------------------------------------
// The painter back end against the raster one: the same calls on a QImage
// (antialiasing off) must light the raster picture's pixels, up to a stated
// number of edge pixels; modes without a vector meaning draw nothing. The
// figures of every shape kind are compared in the canvas's vector output test.
// ---------------------------------------------------------------------------

constexpr int kSide = 64;

struct Case {
  const char* name;
  std::function<void(TCanvas&)> draw;
  // Pixels allowed to differ: the ends of thin lines and the steps of slanted
  // edges, where Qt's rasteriser rounds the other way.
  int tolerance;
};

void Style(TCanvas& c, TColor pen, int width, TPenStyle style, TColor brush, TBrushStyle fill) {
  c.Pen().SetColor(pen);
  c.Pen().SetWidth(width);
  c.Pen().SetStyle(style);
  c.Brush().SetColor(brush);
  c.Brush().SetStyle(fill);
}

QImage Raster(const Case& c) {
  TBitmap bitmap(kSide, kSide, pf32bit);  // white, as the painter's image
  c.draw(bitmap.Canvas());
  return ToQImage(bitmap);
}

QImage Vector(const Case& c) {
  QImage image(kSide, kSide, QImage::Format_RGB32);
  image.fill(Qt::white);
  QPainter painter(&image);
  {
    TPainterCanvas canvas(painter, TSize{kSide, kSide});
    c.draw(canvas.Canvas());
  }
  painter.end();
  return image;
}

TEST(PainterCanvas, LightsTheRasterPixels) {
  const std::vector<Case> cases = {
      {"one-pixel line leaves out its end",
       [](TCanvas& c) { c.MoveTo(5, 10); c.LineTo(50, 10); c.MoveTo(20, 5); c.LineTo(20, 60); }, 4},
      {"filled rectangle covers [x1,x2)",
       [](TCanvas& c) { Style(c, clBlack, 1, psSolid, clRed, bsSolid); c.Rectangle(10, 12, 40, 50); }, 0},
      {"wide pen", [](TCanvas& c) { Style(c, clNavy, 5, psSolid, clWhite, bsClear); c.Polyline({{8, 8}, {56, 8}, {30, 50}}); }, 30},
      {"bitmap stretched and mirrored", [](TCanvas& c) {
         TBitmap b(2, 2, pf32bit);
         b.Canvas().SetPixel(0, 0, clRed);
         b.Canvas().SetPixel(1, 1, clBlue);
         c.StretchDraw(Rect(40, 40, 10, 10), b);
       }, 0},
      {"clip rectangle", [](TCanvas& c) {
         Style(c, clBlack, 1, psClear, clRed, bsSolid);
         c.SetClipRect(Rect(20, 20, 44, 44));
         c.Rectangle(0, 0, kSide, kSide);
       }, 0},
      {"world transform", [](TCanvas& c) {
         Style(c, clBlack, 1, psSolid, clRed, bsSolid);
         c.SetWorldTransform(TXForm{2, 0, 0, 2, 4, 4});
         c.Rectangle(2, 2, 20, 12);
       }, 0},
      // Drawn twice, an XOR figure restores the raster picture; the painter
      // draws it not at all.
      {"xor preview leaves nothing", [](TCanvas& c) {
         Style(c, clBlack, 1, psDot, clRed, bsSolid);
         c.Pen().SetMode(pmXor);
         c.Rectangle(2, 2, 20, 12);
         c.Rectangle(2, 2, 20, 12);
       }, 0},
  };
  for (const Case& c : cases) EXPECT_LE(test::DifferingPixels(Raster(c), Vector(c)), c.tolerance) << c.name;
}

}  // namespace
}  // namespace lumatrex
