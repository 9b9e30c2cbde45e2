// DXF colours: AutoCAD colour indices (ACI) and true colours (0xRRGGBB, the
// value of group 420), and our TColor (0x00BBGGRR).
#pragma once

#include <cstdint>

#include "platform/types.h"

namespace lumatrex::dxf {

// The RGB of ACI 1..255 (the standard palette: 1-9 named colours, 10-249 a
// hue every 10 indices in five shades, each full and pastel, 250-255 greys);
// 0 (black) for anything else.
std::int32_t AciToRgb(std::int32_t aci);
inline TColor RgbToTColor(std::int32_t rgb) {
  return ((rgb & 0xFF) << 16) | (rgb & 0xFF00) | ((rgb >> 16) & 0xFF);
}
// System colours resolved first.
std::int32_t TColorToRgb(TColor color);

}  // namespace lumatrex::dxf
