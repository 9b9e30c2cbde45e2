// The painter back end against the raster one: the same calls on a QImage
// (antialiasing off) must light the raster picture's pixels, up to a stated
// number of edge pixels; modes without a vector meaning draw nothing. The
// figures of every shape kind are compared in the canvas's vector output test.
#include <gtest/gtest.h>

#include <QPainter>
#include <functional>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/painter_canvas.h"
#include "platform/qt_interop.h"

namespace lumatrex {
namespace {

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
  TBitmap bitmap(kSide, kSide, pf32bit);
  bitmap.Canvas().Brush().SetColor(clWhite);
  bitmap.Canvas().FillRect(Rect(0, 0, kSide, kSide));
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

int Differing(const QImage& a, const QImage& b) {
  int n = 0;
  for (int y = 0; y < kSide; ++y)
    for (int x = 0; x < kSide; ++x) n += (a.pixel(x, y) & 0xFFFFFF) != (b.pixel(x, y) & 0xFFFFFF);
  return n;
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
  for (const Case& c : cases) EXPECT_LE(Differing(Raster(c), Vector(c)), c.tolerance) << c.name;
}

}  // namespace
}  // namespace lumatrex
