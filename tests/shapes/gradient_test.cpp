#include <gtest/gtest.h>

#include <tuple>

#include "platform/bitmap.h"
#include "shapes/fake_owner.h"
#include "shapes/gradient.h"

namespace lumatrex {
namespace {

// The ramp index a pattern pixel holds, read back through a ramp whose entry i
// is the grey i (so every channel equals the index).
int IndexAt(const TBitmap& bitmap, int x, int y) { return bitmap.ScanLine(y)[3 * x]; }

TGradientRamp GreyRamp() { return MakeGradientRamp(clBlack, clWhite); }

TBitmap Pattern(TGradientStyle style) {
  TBitmap bitmap;
  PaintGradientPattern(bitmap, style, GreyRamp());
  return bitmap;
}

TEST(GradientRamp, EndsAreTheTwoColoursTheMiddleTruncatesAndSystemColoursResolve) {
  const TGradientRamp ramp = MakeGradientRamp(clWhite, clBlack);
  EXPECT_EQ(ramp[0], clWhite);
  EXPECT_EQ(ramp[255], clBlack);
  EXPECT_EQ(ramp[128], 0x7F7F7F);  // 255 - 255*128/255 truncated
  EXPECT_EQ(MakeGradientRamp(RGB(0, 100, 200), RGB(255, 100, 0))[51], RGB(51, 100, 160));  // channels apart
  EXPECT_EQ(MakeGradientRamp(clBtnFace, clBtnFace)[7], ColorToRGB(clBtnFace));
}

TEST(GradientPattern, HasTheFixedSizeOfItsStyle) {
  struct Case { TGradientStyle style; int width, height; };
  const Case cases[] = {
      {gsRadialC, 362, 362},   {gsRadialT, 362, 181},   {gsRadialB, 362, 181},    {gsRadialL, 181, 362},
      {gsRadialR, 181, 362},   {gsRadialTL, 181, 181},  {gsRadialTR, 181, 181},   {gsRadialBL, 181, 181},
      {gsRadialBR, 181, 181},  {gsLinearH, 1, 256},     {gsLinearV, 256, 1},      {gsReflectedH, 1, 512},
      {gsReflectedV, 512, 1},  {gsDiagonalLF, 128, 129}, {gsDiagonalLB, 128, 129}, {gsDiagonalRF, 256, 256},
      {gsDiagonalRB, 256, 256}, {gsArrowL, 129, 256},    {gsArrowR, 129, 256},     {gsArrowU, 256, 129},
      {gsArrowD, 256, 129},    {gsDiamond, 256, 256},   {gsButterfly, 256, 256},  {gsNone, 0, 0}};
  for (const Case& c : cases) {
    const TBitmap bitmap = Pattern(c.style);
    EXPECT_EQ(std::tuple(bitmap.Width(), bitmap.Height(), bitmap.PixelFormat()), std::tuple(c.width, c.height, pf24bit))
        << "style " << int(c.style);
  }
}

TEST(GradientPattern, PixelsHoldTheRampIndexOfTheirStylesFormula) {
  struct Case { const char* name; TGradientStyle style; int x, y, index; };
  const Case cases[] = {
      {"RadialC left centre column", gsRadialC, 180, 180, 0}, {"RadialC right centre column", gsRadialC, 181, 180, 0},
      {"RadialC corner is the far end", gsRadialC, 0, 0, 255}, {"RadialC rounds the radius", gsRadialC, 184, 176, 5},
      {"RadialT centre on the top row", gsRadialT, 181, 0, 0}, {"RadialB centre on the bottom row", gsRadialB, 180, 180, 0},
      {"RadialL centre on the left edge", gsRadialL, 0, 181, 0}, {"RadialR centre on the right edge", gsRadialR, 180, 180, 0},
      {"RadialTL about the corner", gsRadialTL, 3, 4, 5},       {"RadialBR about the corner", gsRadialBR, 177, 176, 5},
      {"LinearH row", gsLinearH, 0, 77, 77},                    {"LinearV column", gsLinearV, 77, 0, 77},
      {"ReflectedH top half", gsReflectedH, 0, 10, 245},        {"ReflectedH mirrored row", gsReflectedH, 0, 501, 245},
      {"ReflectedV mirrored column", gsReflectedV, 511, 0, 255}, {"DiagonalLF", gsDiagonalLF, 10, 20, 137},
      {"DiagonalLB", gsDiagonalLB, 127, 128, 255},              {"DiagonalRF", gsDiagonalRF, 200, 20, 180},
      {"DiagonalRB", gsDiagonalRB, 200, 100, 45},               {"ArrowL upper rows", gsArrowL, 10, 20, 225},
      {"ArrowL lower rows", gsArrowL, 10, 200, 190},            {"ArrowR mirrors ArrowL", gsArrowR, 118, 20, 225},
      {"ArrowU left columns", gsArrowU, 20, 10, 225},           {"ArrowU right columns", gsArrowU, 200, 10, 190},
      {"ArrowD mirrors ArrowU", gsArrowD, 200, 118, 190},       {"Diamond top left", gsDiamond, 10, 20, 225},
      {"Diamond top right", gsDiamond, 200, 20, 180},           {"Diamond bottom left", gsDiamond, 20, 200, 180},
      {"Diamond bottom right", gsDiamond, 200, 200, 145},       {"Butterfly top left", gsButterfly, 20, 10, 138},
      {"Butterfly top right", gsButterfly, 200, 10, 173},       {"Butterfly bottom left", gsButterfly, 20, 200, 92},
      {"Butterfly bottom right", gsButterfly, 200, 210, 138}};
  for (const Case& c : cases) EXPECT_EQ(IndexAt(Pattern(c.style), c.x, c.y), c.index) << c.name;
}

TEST(TMyShapeGradient, StyleChangeBuildsThePatternMirroredByTheFlipFlags) {
  test::TFakeOwner owner;
  TMyShape& shape = owner.Add({{0, 0}, {10, 10}});
  shape.SetColorBegin(clBlack);
  shape.SetColorEnd(clWhite);
  shape.SetIsFlipHorz(true);
  shape.SetGradientStyle(gsLinearV);
  EXPECT_EQ(IndexAt(shape.GradientBitmap(), 0, 0), 255);
  EXPECT_EQ(IndexAt(shape.GradientBitmap(), 255, 0), 0);
  // A colour change rebuilds the pattern unflipped.
  shape.SetColorEnd(RGB(254, 254, 254));
  EXPECT_EQ(IndexAt(shape.GradientBitmap(), 0, 0), 0);
}

}  // namespace
}  // namespace lumatrex
