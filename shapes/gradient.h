// Gradient patterns: a 256-entry colour ramp and, for each gradient style, a
// small 24-bit pattern bitmap that shapes stretch over their area.
#pragma once

#include <array>

#include "platform/bitmap.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

using TGradientRamp = std::array<TColor, 256>;

// Entry i = begin + (end - begin) * i / 255 per channel, truncated toward
// zero; entry 0 is Begin and entry 255 End (system colours resolved).
TGradientRamp MakeGradientRamp(TColor begin, TColor end);

// Sizes Bitmap (pf24bit) for Style and fills it from Ramp. gsNone empties it.
// Radial patterns measure r = Round(sqrt(dx^2 + dy^2)) from their centre pixel
// (gsRadialC has two centre columns, 180 and 181, by design).
void PaintGradientPattern(TBitmap& bitmap, TGradientStyle style, const TGradientRamp& ramp);

// Mirrors the pixel columns (Horizontal) and/or rows (Vertical) in place.
void MirrorBitmap(TBitmap& bitmap, bool horizontal, bool vertical);

}  // namespace lumatrex
