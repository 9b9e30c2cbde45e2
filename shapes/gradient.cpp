#include "shapes/gradient.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstdlib>
#include <functional>

#include "geometry/geometry.h"
#include "shapes/shape.h"

namespace lumatrex {

namespace {

// The ramp index of pixel (x, y) for one style.
using TIndexFn = std::function<int(int x, int y)>;

struct TPattern {
  int width;
  int height;
  TIndexFn index;
};

int Radius(int dx, int dy) { return Round(std::sqrt(static_cast<long double>(dx * dx + dy * dy))); }

// Distance from the two centre columns (or rows) 180 and 181 of a 362-wide axis.
int SplitCentre(int v) { return v <= 180 ? 180 - v : v - 181; }

int ArrowL(int x, int y) { return y <= 127 ? 255 - (x + y) : y - x; }
int ArrowU(int x, int y) { return x <= 127 ? 255 - (x + y) : x - y; }

int Diamond(int x, int y) {
  const bool left = x < 128, top = y < 128;
  if (top) return left ? 255 - (x + y) : x - y;
  return left ? y - x : x + y - 255;
}

int Butterfly(int x, int y) {
  const bool left = x < 128, top = y < 128;
  if (top) return left ? x - y + 128 : 383 - (x + y);
  return left ? x + y - 128 : y - x + 128;
}

TPattern PatternOf(TGradientStyle style) {
  switch (style) {
    case gsRadialC: return {362, 362, [](int x, int y) { return Radius(SplitCentre(x), 180 - y); }};
    case gsRadialT: return {362, 181, [](int x, int y) { return Radius(SplitCentre(x), y); }};
    case gsRadialB: return {362, 181, [](int x, int y) { return Radius(SplitCentre(x), 180 - y); }};
    case gsRadialL: return {181, 362, [](int x, int y) { return Radius(x, SplitCentre(y)); }};
    case gsRadialR: return {181, 362, [](int x, int y) { return Radius(180 - x, SplitCentre(y)); }};
    case gsRadialTL: return {181, 181, [](int x, int y) { return Radius(x, y); }};
    case gsRadialTR: return {181, 181, [](int x, int y) { return Radius(180 - x, y); }};
    case gsRadialBL: return {181, 181, [](int x, int y) { return Radius(x, 180 - y); }};
    case gsRadialBR: return {181, 181, [](int x, int y) { return Radius(180 - x, 180 - y); }};
    case gsLinearH: return {1, 256, [](int, int y) { return y; }};
    case gsLinearV: return {256, 1, [](int x, int) { return x; }};
    case gsReflectedH: return {1, 512, [](int, int y) { return 255 - std::min(y, 511 - y); }};
    case gsReflectedV: return {512, 1, [](int x, int) { return 255 - std::min(x, 511 - x); }};
    case gsDiagonalLF: return {128, 129, [](int x, int y) { return y - x + 127; }};
    case gsDiagonalLB: return {128, 129, [](int x, int y) { return x + y; }};
    case gsDiagonalRF: return {256, 256, [](int x, int y) { return std::abs(y - x); }};
    case gsDiagonalRB: return {256, 256, [](int x, int y) { return std::abs(255 - (x + y)); }};
    case gsArrowL: return {129, 256, ArrowL};
    case gsArrowR: return {129, 256, [](int x, int y) { return ArrowL(128 - x, y); }};
    case gsArrowU: return {256, 129, ArrowU};
    case gsArrowD: return {256, 129, [](int x, int y) { return ArrowU(x, 128 - y); }};
    case gsDiamond: return {256, 256, Diamond};
    case gsButterfly: return {256, 256, Butterfly};
    case gsNone: break;
  }
  return {0, 0, nullptr};
}

}  // namespace

TGradientRamp MakeGradientRamp(TColor begin, TColor end) {
  const TColor b = ColorToRGB(begin), e = ColorToRGB(end);
  auto channel = [](int from, int to, int i) { return static_cast<std::uint8_t>(from + (to - from) * i / 255); };
  TGradientRamp ramp{};
  for (int i = 0; i < 256; ++i)
    ramp[static_cast<std::size_t>(i)] = RGB(channel(GetRValue(b), GetRValue(e), i),
                                            channel(GetGValue(b), GetGValue(e), i),
                                            channel(GetBValue(b), GetBValue(e), i));
  return ramp;
}

void PaintGradientPattern(TBitmap& bitmap, TGradientStyle style, const TGradientRamp& ramp) {
  bitmap.SetPixelFormat(pf24bit);
  const TPattern pattern = PatternOf(style);
  bitmap.SetSize(pattern.width, pattern.height);
  for (int y = 0; y < pattern.height; ++y) {
    std::uint8_t* row = bitmap.ScanLine(y);
    for (int x = 0; x < pattern.width; ++x) {
      const int index = pattern.index(x, y);
      assert(index >= 0 && index <= 255);
      const TColor c = ramp[static_cast<std::size_t>(std::clamp(index, 0, 255))];
      row[3 * x] = GetBValue(c);
      row[3 * x + 1] = GetGValue(c);
      row[3 * x + 2] = GetRValue(c);
    }
  }
}

void MirrorBitmap(TBitmap& bitmap, bool horizontal, bool vertical) {
  const int w = bitmap.Width(), h = bitmap.Height();
  if (horizontal) {
    const int bpp = bitmap.PixelFormat() == pf32bit ? 4 : 3;
    for (int y = 0; y < h; ++y) {
      std::uint8_t* row = bitmap.ScanLine(y);
      for (int x = 0; x < w / 2; ++x) std::swap_ranges(row + bpp * x, row + bpp * (x + 1), row + bpp * (w - 1 - x));
    }
  }
  if (vertical) {
    const int bytes = bitmap.BytesPerLine();
    for (int y = 0; y < h / 2; ++y) std::swap_ranges(bitmap.ScanLine(y), bitmap.ScanLine(y) + bytes, bitmap.ScanLine(h - 1 - y));
  }
}

void TMyShape::DrawGradient() {
  // Most shapes have no gradient; their empty pattern needs no ramp.
  const TGradientRamp ramp = gradientStyle_ == gsNone ? TGradientRamp{} : MakeGradientRamp(colorBegin_, colorEnd_);
  PaintGradientPattern(gradient_, gradientStyle_, ramp);
}

void TMyShape::FlipGradientByFlags() { MirrorBitmap(gradient_, isFlipHorz_, isFlipVert_); }

}  // namespace lumatrex
