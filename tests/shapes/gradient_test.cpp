#include <gtest/gtest.h>

#include <QMetaEnum>
#include <sstream>
#include <string>
#include <tuple>

#include "platform/bitmap.h"
#include "shapes/fake_owner.h"
#include "shapes/gradient.h"
#include "support/test_paths.h"

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

// Each style's fixed size and the ramp index of sample pixels, listed in
// tests/data/shapes/gradient_patterns.txt.
TEST(GradientPattern, HasTheSizeAndTheRampIndicesOfItsStylesFormula) {
  const QMetaEnum styles = QMetaEnum::fromType<TGradientStyle>();
  for (const std::vector<std::string>& row : test::DataTable("shapes/gradient_patterns.txt")) {
    SCOPED_TRACE(row[0]);
    const TBitmap bitmap = Pattern(static_cast<TGradientStyle>(styles.keyToValue(row[0].c_str())));
    EXPECT_EQ(std::tuple(bitmap.Width(), bitmap.Height(), bitmap.PixelFormat()),
              std::tuple(std::stoi(row[1]), std::stoi(row[2]), pf24bit));
    std::istringstream samples(row.size() > 3 ? row[3] : "");
    int x = 0, y = 0, index = 0;
    char comma = 0, colon = 0;
    while (samples >> x >> comma >> y >> colon >> index) EXPECT_EQ(IndexAt(bitmap, x, y), index) << x << "," << y;
  }
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
