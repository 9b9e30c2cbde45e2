#include <gtest/gtest.h>

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

TEST(GradientRamp, EndsAreTheTwoColoursAndTheMiddleTruncates) {
  const TGradientRamp ramp = MakeGradientRamp(clWhite, clBlack);
  EXPECT_EQ(ramp[0], clWhite);
  EXPECT_EQ(ramp[255], clBlack);
  EXPECT_EQ(ramp[128], 0x7F7F7F);  // 255 - 255*128/255 truncated
}

TEST(GradientRamp, ChannelsRunIndependentlyAndSystemColoursResolve) {
  const TGradientRamp ramp = MakeGradientRamp(RGB(0, 100, 200), RGB(255, 100, 0));
  EXPECT_EQ(ramp[51], RGB(51, 100, 160));
  EXPECT_EQ(MakeGradientRamp(clBtnFace, clBtnFace)[7], ColorToRGB(clBtnFace));
}

struct TSizeCase {
  const char* name;
  TGradientStyle style;
  int width;
  int height;
};

class GradientPatternSize : public ::testing::TestWithParam<TSizeCase> {};

TEST_P(GradientPatternSize, HasTheFixedSizeOfItsStyle) {
  const TBitmap bitmap = Pattern(GetParam().style);
  EXPECT_EQ(bitmap.Width(), GetParam().width);
  EXPECT_EQ(bitmap.Height(), GetParam().height);
  EXPECT_EQ(bitmap.PixelFormat(), pf24bit);
}

INSTANTIATE_TEST_SUITE_P(
    Styles, GradientPatternSize,
    ::testing::Values(TSizeCase{"RadialC", gsRadialC, 362, 362}, TSizeCase{"RadialT", gsRadialT, 362, 181},
                      TSizeCase{"RadialB", gsRadialB, 362, 181}, TSizeCase{"RadialL", gsRadialL, 181, 362},
                      TSizeCase{"RadialR", gsRadialR, 181, 362}, TSizeCase{"RadialTL", gsRadialTL, 181, 181},
                      TSizeCase{"RadialTR", gsRadialTR, 181, 181}, TSizeCase{"RadialBL", gsRadialBL, 181, 181},
                      TSizeCase{"RadialBR", gsRadialBR, 181, 181}, TSizeCase{"LinearH", gsLinearH, 1, 256},
                      TSizeCase{"LinearV", gsLinearV, 256, 1}, TSizeCase{"ReflectedH", gsReflectedH, 1, 512},
                      TSizeCase{"ReflectedV", gsReflectedV, 512, 1}, TSizeCase{"DiagonalLF", gsDiagonalLF, 128, 129},
                      TSizeCase{"DiagonalLB", gsDiagonalLB, 128, 129}, TSizeCase{"DiagonalRF", gsDiagonalRF, 256, 256},
                      TSizeCase{"DiagonalRB", gsDiagonalRB, 256, 256}, TSizeCase{"ArrowL", gsArrowL, 129, 256},
                      TSizeCase{"ArrowR", gsArrowR, 129, 256}, TSizeCase{"ArrowU", gsArrowU, 256, 129},
                      TSizeCase{"ArrowD", gsArrowD, 256, 129}, TSizeCase{"Diamond", gsDiamond, 256, 256},
                      TSizeCase{"Butterfly", gsButterfly, 256, 256}, TSizeCase{"None_is_empty", gsNone, 0, 0}),
    [](const auto& info) { return std::string(info.param.name); });

struct TPixelCase {
  const char* name;
  TGradientStyle style;
  int x;
  int y;
  int index;
};

class GradientPatternPixel : public ::testing::TestWithParam<TPixelCase> {};

TEST_P(GradientPatternPixel, HoldsTheRampIndexOfItsFormula) {
  EXPECT_EQ(IndexAt(Pattern(GetParam().style), GetParam().x, GetParam().y), GetParam().index);
}

INSTANTIATE_TEST_SUITE_P(
    Formulas, GradientPatternPixel,
    ::testing::Values(
        TPixelCase{"RadialC_left_centre_column", gsRadialC, 180, 180, 0},
        TPixelCase{"RadialC_right_centre_column", gsRadialC, 181, 180, 0},
        TPixelCase{"RadialC_corner_is_the_far_end", gsRadialC, 0, 0, 255},
        TPixelCase{"RadialC_rounds_the_radius", gsRadialC, 181 + 3, 180 - 4, 5},
        TPixelCase{"RadialT_centre_on_the_top_row", gsRadialT, 181, 0, 0},
        TPixelCase{"RadialB_centre_on_the_bottom_row", gsRadialB, 180, 180, 0},
        TPixelCase{"RadialL_centre_on_the_left_edge", gsRadialL, 0, 181, 0},
        TPixelCase{"RadialR_centre_on_the_right_edge", gsRadialR, 180, 180, 0},
        TPixelCase{"RadialTL_about_the_corner", gsRadialTL, 3, 4, 5},
        TPixelCase{"RadialBR_about_the_corner", gsRadialBR, 177, 176, 5},
        TPixelCase{"LinearH_row", gsLinearH, 0, 77, 77},
        TPixelCase{"LinearV_column", gsLinearV, 77, 0, 77},
        TPixelCase{"ReflectedH_top_half", gsReflectedH, 0, 10, 245},
        TPixelCase{"ReflectedH_mirrored_row", gsReflectedH, 0, 501, 245},
        TPixelCase{"ReflectedV_mirrored_column", gsReflectedV, 511, 0, 255},
        TPixelCase{"DiagonalLF", gsDiagonalLF, 10, 20, 137},
        TPixelCase{"DiagonalLB", gsDiagonalLB, 127, 128, 255},
        TPixelCase{"DiagonalRF", gsDiagonalRF, 200, 20, 180},
        TPixelCase{"DiagonalRB", gsDiagonalRB, 200, 100, 45},
        TPixelCase{"ArrowL_upper_rows", gsArrowL, 10, 20, 225},
        TPixelCase{"ArrowL_lower_rows", gsArrowL, 10, 200, 190},
        TPixelCase{"ArrowR_mirrors_ArrowL", gsArrowR, 118, 20, 225},
        TPixelCase{"ArrowU_left_columns", gsArrowU, 20, 10, 225},
        TPixelCase{"ArrowU_right_columns", gsArrowU, 200, 10, 190},
        TPixelCase{"ArrowD_mirrors_ArrowU", gsArrowD, 200, 118, 190},
        TPixelCase{"Diamond_top_left", gsDiamond, 10, 20, 225},
        TPixelCase{"Diamond_top_right", gsDiamond, 200, 20, 180},
        TPixelCase{"Diamond_bottom_left", gsDiamond, 20, 200, 180},
        TPixelCase{"Diamond_bottom_right", gsDiamond, 200, 200, 145},
        TPixelCase{"Butterfly_top_left", gsButterfly, 20, 10, 138},
        TPixelCase{"Butterfly_top_right", gsButterfly, 200, 10, 173},
        TPixelCase{"Butterfly_bottom_left", gsButterfly, 20, 200, 92},
        TPixelCase{"Butterfly_bottom_right", gsButterfly, 200, 210, 138}),
    [](const auto& info) { return std::string(info.param.name); });

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
