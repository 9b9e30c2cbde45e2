#include "platform/types.h"

#include <algorithm>
#include <array>
#include <limits>

namespace lumatrex {

namespace {

// The classic default system colours, so that a drawing that names a system
// colour looks the same on every desktop.
constexpr std::array<TColor, 31> kSystemColors = {
    RGB(200, 200, 200),  //  0 scroll bar
    RGB(0, 128, 128),    //  1 desktop background
    RGB(153, 180, 209),  //  2 active caption
    RGB(191, 205, 219),  //  3 inactive caption
    RGB(240, 240, 240),  //  4 menu
    RGB(255, 255, 255),  //  5 window
    RGB(100, 100, 100),  //  6 window frame
    RGB(0, 0, 0),        //  7 menu text
    RGB(0, 0, 0),        //  8 window text
    RGB(0, 0, 0),        //  9 caption text
    RGB(180, 180, 180),  // 10 active border
    RGB(244, 247, 252),  // 11 inactive border
    RGB(171, 171, 171),  // 12 application workspace
    RGB(0, 120, 215),    // 13 highlight
    RGB(255, 255, 255),  // 14 highlight text
    RGB(240, 240, 240),  // 15 button face
    RGB(160, 160, 160),  // 16 button shadow
    RGB(109, 109, 109),  // 17 grey text
    RGB(0, 0, 0),        // 18 button text
    RGB(67, 78, 84),     // 19 inactive caption text
    RGB(255, 255, 255),  // 20 button highlight
    RGB(105, 105, 105),  // 21 3-D dark shadow
    RGB(227, 227, 227),  // 22 3-D light
    RGB(0, 0, 0),        // 23 info text
    RGB(255, 255, 225),  // 24 info background
    RGB(0, 0, 0),        // 25 (unused)
    RGB(0, 102, 204),    // 26 hot light
    RGB(185, 209, 234),  // 27 gradient active caption
    RGB(215, 228, 242),  // 28 gradient inactive caption
    RGB(0, 120, 215),    // 29 menu highlight
    RGB(240, 240, 240),  // 30 menu bar
};

bool FitsInt32(std::int64_t v) {
  return v >= std::numeric_limits<std::int32_t>::min() && v <= std::numeric_limits<std::int32_t>::max();
}

}  // namespace

TColor ColorToRGB(TColor color) {
  if (color < 0) {
    const auto index = static_cast<std::size_t>(color & 0xFF);
    return index < kSystemColors.size() ? kSystemColors[index] : clBlack;
  }
  return color & 0x00FFFFFF;
}

bool InflateRect(TRect& r, std::int32_t dx, std::int32_t dy) {
  const std::int64_t left = std::int64_t{r.Left} - dx, top = std::int64_t{r.Top} - dy;
  const std::int64_t right = std::int64_t{r.Right} + dx, bottom = std::int64_t{r.Bottom} + dy;
  if (!FitsInt32(left) || !FitsInt32(top) || !FitsInt32(right) || !FitsInt32(bottom)) return false;
  r = TRect{static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
            static_cast<std::int32_t>(right), static_cast<std::int32_t>(bottom)};
  return true;
}

bool IntersectRect(TRect& result, const TRect& a, const TRect& b) {
  result = TRect{std::max(a.Left, b.Left), std::max(a.Top, b.Top), std::min(a.Right, b.Right),
                 std::min(a.Bottom, b.Bottom)};
  if (result.Left < result.Right && result.Top < result.Bottom) return true;
  result = TRect{};
  return false;
}

}  // namespace lumatrex
