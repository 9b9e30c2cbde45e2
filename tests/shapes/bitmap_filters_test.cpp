#include <gtest/gtest.h>

#include <vector>

#include "shapes/bitmap_filters.h"

namespace lumatrex {
namespace {

using TBgr = std::vector<int>;

// A one-row 24-bit bitmap holding the given blue, green, red bytes.
TBitmap Row(const TBgr& bytes) {
  TBitmap bitmap(static_cast<int>(bytes.size() / 3), 1, pf24bit);
  for (std::size_t i = 0; i < bytes.size(); ++i) bitmap.ScanLine(0)[i] = static_cast<std::uint8_t>(bytes[i]);
  return bitmap;
}

TBgr Bytes(const TBitmap& bitmap) {
  const std::uint8_t* row = bitmap.ScanLine(0);
  return TBgr(row, row + bitmap.Width() * 3);
}

TEST(GrayScaleBitmap, AveragesTheThreeChannelsTruncating) {
  TBitmap bitmap = Row({31, 20, 10, 0, 0, 2});
  GrayScaleBitmap(bitmap, true);
  EXPECT_EQ(Bytes(bitmap), (TBgr{20, 20, 20, 0, 0, 0}));
}

TEST(AdjustBrightBitmap, ShiftsEveryByteAndClamps) {
  TBitmap bitmap = Row({0, 100, 250});
  AdjustBrightBitmap(bitmap, 10);
  EXPECT_EQ(Bytes(bitmap), (TBgr{10, 110, 255}));
  AdjustBrightBitmap(bitmap, 300);
  EXPECT_EQ(Bytes(bitmap), (TBgr{255, 255, 255}));
  AdjustBrightBitmap(bitmap, -300);
  EXPECT_EQ(Bytes(bitmap), (TBgr{0, 0, 0}));
}

TEST(AdjustContrastBitmap, FullContrastSplitsAtTheMiddleGrey) {
  TBitmap bitmap = Row({0, 200, 127, 128, 255, 100});
  AdjustContrastBitmap(bitmap, 255);
  // 0 - 127 clamps, 200 + 73 clamps, 127 moves by 0, 128 by 1, 100 by 27.
  EXPECT_EQ(Bytes(bitmap), (TBgr{0, 255, 127, 129, 255, 73}));
}

TEST(AdjustContrastBitmap, ZeroDoesNothingAndOtherFormatsAreConvertedFirst) {
  TBitmap same = Row({1, 2, 3});
  AdjustContrastBitmap(same, 0);
  EXPECT_EQ(Bytes(same), (TBgr{1, 2, 3}));
  TBitmap wide(1, 1, pf32bit);
  AdjustBrightBitmap(wide, -255);
  EXPECT_EQ(wide.PixelFormat(), pf24bit);
  EXPECT_EQ(Bytes(wide), (TBgr{0, 0, 0}));
}

}  // namespace
}  // namespace lumatrex
