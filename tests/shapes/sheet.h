// A white 32-bit picture to draw shapes on, with pixel probes.
#pragma once

#include <cstdint>
#include <cstring>
#include <string>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/qt_interop.h"
#include "shapes/shape.h"
#include "support/golden.h"

namespace lumatrex::test {

class TSheet {
 public:
  explicit TSheet(std::int32_t width = 64, std::int32_t height = 64) : bitmap_(width, height, pf32bit) {
    canvas().Brush().SetColor(clWhite);
    canvas().FillRect(Rect(0, 0, width, height));
    canvas().Brush().SetStyle(bsClear);
  }
  TCanvas& canvas() { return bitmap_.Canvas(); }
  TColor at(std::int32_t x, std::int32_t y) { return canvas().GetPixel(x, y); }
  bool inked(std::int32_t x, std::int32_t y) { return at(x, y) != clWhite; }
  // Pixels other than white in [Left, Right) x [Top, Bottom).
  std::int32_t inked(const TRect& r) {
    std::int32_t n = 0;
    for (std::int32_t y = r.Top; y < r.Bottom; ++y)
      for (std::int32_t x = r.Left; x < r.Right; ++x) n += inked(x, y);
    return n;
  }
  std::int32_t inked() { return inked(Rect(0, 0, bitmap_.Width(), bitmap_.Height())); }
  // Compares the sheet with its picture tests/data/shapes/Name.png.
  ::testing::AssertionResult LooksLike(const std::string& name) const {
    return MatchesGoldenPicture(ToQImage(bitmap_), "shapes/" + name + ".png");
  }
  bool operator==(const TSheet& other) const {
    if (bitmap_.Width() != other.bitmap_.Width() || bitmap_.Height() != other.bitmap_.Height()) return false;
    const auto rowBytes = static_cast<std::size_t>(bitmap_.Width()) * 4;
    for (std::int32_t row = 0; row < bitmap_.Height(); ++row)
      if (std::memcmp(bitmap_.ScanLine(row), other.bitmap_.ScanLine(row), rowBytes) != 0) return false;
    return true;
  }

 private:
  TBitmap bitmap_;
};

// A sheet of the given size with Shape drawn on it.
inline TSheet Drawn(TMyShape& shape, std::int32_t width = 64, std::int32_t height = 64) {
  TSheet sheet(width, height);
  shape.Draw(sheet.canvas());
  return sheet;
}

}  // namespace lumatrex::test
