#include "dxf/dxf_colors.h"

#include <algorithm>
#include <cmath>

namespace lumatrex::dxf {

namespace {

std::int32_t Rgb(double r, double g, double b) {
  auto byte = [](double v) { return static_cast<std::int32_t>(std::nearbyint(std::clamp(v, 0.0, 1.0) * 255)); };
  return (byte(r) << 16) | (byte(g) << 8) | byte(b);
}

}  // namespace

std::int32_t AciToRgb(std::int32_t aci) {
  static constexpr std::int32_t kFirst[10] = {0,        0xFF0000, 0xFFFF00, 0x00FF00, 0x00FFFF,
                                              0x0000FF, 0xFF00FF, 0xFFFFFF, 0x808080, 0xC0C0C0};
  if (aci >= 1 && aci <= 9) return kFirst[aci];
  if (aci >= 250 && aci <= 255) {
    const double grey = 0.2 + 0.8 * (aci - 250) / 5.0;
    return Rgb(grey, grey, grey);
  }
  if (aci < 10 || aci > 249) return 0;
  // Hue in 24 steps of 15 degrees; even indices full colour, odd pastel;
  // the shade darkens every two indices.
  static constexpr double kShade[5] = {1.0, 0.65, 0.5, 0.3, 0.15};
  const double hue = (aci - 10) / 10 * 15.0;
  const double value = kShade[(aci % 10) / 2];
  const double saturation = (aci % 2) ? 0.5 : 1.0;
  const double h = hue / 60.0, f = h - std::floor(h);
  const double p = value * (1 - saturation), q = value * (1 - saturation * f), t = value * (1 - saturation * (1 - f));
  switch (static_cast<int>(h) % 6) {
    case 0: return Rgb(value, t, p);
    case 1: return Rgb(q, value, p);
    case 2: return Rgb(p, value, t);
    case 3: return Rgb(p, q, value);
    case 4: return Rgb(t, p, value);
    default: return Rgb(value, p, q);
  }
}

std::int32_t TColorToRgb(TColor color) {
  const TColor c = ColorToRGB(color);
  return ((c & 0xFF) << 16) | (c & 0xFF00) | ((c >> 16) & 0xFF);
}

}  // namespace lumatrex::dxf
