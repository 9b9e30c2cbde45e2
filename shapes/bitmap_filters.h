// In-place filters over 24-bit bitmaps (blue, green, red bytes), used by the
// image shape for its grey-scale, brightness and contrast settings. One pass
// over the pixels, no extra memory. Bitmaps of another format are converted
// to pf24bit first.
#pragma once

#include <cstdint>

#include "platform/bitmap.h"

namespace lumatrex {

// When Gray is true every pixel becomes grey (B + G + R) div 3.
void GrayScaleBitmap(TBitmap& bitmap, bool gray);
// Adds Value to every channel byte, clamped to 0..255; 0 does nothing.
void AdjustBrightBitmap(TBitmap& bitmap, std::int32_t value);
// Pushes every channel away from (positive Value) or toward (negative) the
// middle grey by (|c - 127| * Value) div 255; channels below 128 move down,
// the others up. 0 does nothing.
void AdjustContrastBitmap(TBitmap& bitmap, std::int32_t value);

}  // namespace lumatrex
