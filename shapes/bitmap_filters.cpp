#include "shapes/bitmap_filters.h"

#include <cstdlib>

namespace lumatrex {

namespace {

std::uint8_t Clamp(std::int32_t v) { return static_cast<std::uint8_t>(v > 255 ? 255 : v < 0 ? 0 : v); }

// Calls Fn on every channel byte of the 24-bit picture.
template <typename Fn>
void ForEachByte(TBitmap& bitmap, Fn fn) {
  bitmap.SetPixelFormat(pf24bit);
  const std::int32_t bytes = bitmap.Width() * 3;
  for (std::int32_t y = 0; y < bitmap.Height(); ++y) {
    std::uint8_t* row = bitmap.ScanLine(y);
    for (std::int32_t i = 0; i < bytes; ++i) row[i] = fn(row[i]);
  }
}

}  // namespace

void GrayScaleBitmap(TBitmap& bitmap, bool gray) {
  if (!gray) return;
  bitmap.SetPixelFormat(pf24bit);
  for (std::int32_t y = 0; y < bitmap.Height(); ++y) {
    std::uint8_t* p = bitmap.ScanLine(y);
    for (std::int32_t x = 0; x < bitmap.Width(); ++x, p += 3) {
      const auto v = static_cast<std::uint8_t>((p[0] + p[1] + p[2]) / 3);
      p[0] = p[1] = p[2] = v;
    }
  }
}

void AdjustBrightBitmap(TBitmap& bitmap, std::int32_t value) {
  if (value == 0) return;
  ForEachByte(bitmap, [value](std::uint8_t c) { return Clamp(c + value); });
}

void AdjustContrastBitmap(TBitmap& bitmap, std::int32_t value) {
  if (value == 0) return;
  ForEachByte(bitmap, [value](std::uint8_t c) {
    const std::int32_t d = std::abs(c - 127) * value / 255;
    return c < 128 ? Clamp(c - d) : Clamp(c + d);
  });
}

}  // namespace lumatrex
