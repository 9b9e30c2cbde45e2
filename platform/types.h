// Basic value types of the drawing platform: colours, device points and
// rectangles, cursors and mouse state. Plain C++; no Qt here, so model code
// can use them freely.
#pragma once

#include <cstdint>

namespace lumatrex {

// ---------------------------------------------------------------------------
// Colours
// ---------------------------------------------------------------------------

// A colour value laid out as 0x00BBGGRR (red in the lowest byte). Negative
// values name system colours (0xFF0000nn, nn the system colour index) and are
// resolved with ColorToRGB.
using TColor = std::int32_t;

inline constexpr TColor clBlack = 0x000000;
inline constexpr TColor clMaroon = 0x000080;
inline constexpr TColor clGreen = 0x008000;
inline constexpr TColor clOlive = 0x008080;
inline constexpr TColor clNavy = 0x800000;
inline constexpr TColor clPurple = 0x800080;
inline constexpr TColor clTeal = 0x808000;
inline constexpr TColor clGray = 0x808080;
inline constexpr TColor clSilver = 0xC0C0C0;
inline constexpr TColor clRed = 0x0000FF;
inline constexpr TColor clLime = 0x00FF00;
inline constexpr TColor clYellow = 0x00FFFF;
inline constexpr TColor clBlue = 0xFF0000;
inline constexpr TColor clFuchsia = 0xFF00FF;
inline constexpr TColor clAqua = 0xFFFF00;
inline constexpr TColor clWhite = 0xFFFFFF;

// System colours: the index of the platform colour table in the low byte.
inline constexpr TColor clSystemColor = static_cast<TColor>(0xFF000000u);
inline constexpr TColor clScrollBar = clSystemColor | 0;
inline constexpr TColor clBackground = clSystemColor | 1;
inline constexpr TColor clActiveCaption = clSystemColor | 2;
inline constexpr TColor clWindow = clSystemColor | 5;
inline constexpr TColor clWindowFrame = clSystemColor | 6;
inline constexpr TColor clWindowText = clSystemColor | 8;
inline constexpr TColor clHighlight = clSystemColor | 13;
inline constexpr TColor clHighlightText = clSystemColor | 14;
inline constexpr TColor clBtnFace = clSystemColor | 15;
inline constexpr TColor clBtnShadow = clSystemColor | 16;
inline constexpr TColor clGrayText = clSystemColor | 17;
inline constexpr TColor clBtnText = clSystemColor | 18;
inline constexpr TColor clBtnHighlight = clSystemColor | 20;
inline constexpr TColor clInfoText = clSystemColor | 23;
inline constexpr TColor clInfoBk = clSystemColor | 24;
inline constexpr TColor clNone = 0x1FFFFFFF;
inline constexpr TColor clDefault = 0x20000000;

// Resolves a system colour through the fixed platform table (the classic
// Windows defaults, so output does not depend on the desktop theme); other
// values pass through with the top byte cleared.
TColor ColorToRGB(TColor color);

constexpr std::uint8_t GetRValue(TColor c) { return static_cast<std::uint8_t>(c & 0xFF); }
constexpr std::uint8_t GetGValue(TColor c) { return static_cast<std::uint8_t>((c >> 8) & 0xFF); }
constexpr std::uint8_t GetBValue(TColor c) { return static_cast<std::uint8_t>((c >> 16) & 0xFF); }
constexpr TColor RGB(std::uint8_t r, std::uint8_t g, std::uint8_t b) {
  return static_cast<TColor>(r | (g << 8) | (b << 16));
}

// ---------------------------------------------------------------------------
// Device geometry (integer pixels)
// ---------------------------------------------------------------------------

struct TPoint {
  std::int32_t X = 0;
  std::int32_t Y = 0;
  friend constexpr bool operator==(const TPoint&, const TPoint&) = default;
};

constexpr TPoint Point(std::int32_t x, std::int32_t y) { return TPoint{x, y}; }

struct TSize {
  std::int32_t cx = 0;
  std::int32_t cy = 0;
  friend constexpr bool operator==(const TSize&, const TSize&) = default;
};

// A device rectangle; by platform convention it covers [Left, Right) x [Top, Bottom).
struct TRect {
  std::int32_t Left = 0;
  std::int32_t Top = 0;
  std::int32_t Right = 0;
  std::int32_t Bottom = 0;
  constexpr std::int32_t Width() const { return Right - Left; }
  constexpr std::int32_t Height() const { return Bottom - Top; }
  friend constexpr bool operator==(const TRect&, const TRect&) = default;
};

constexpr TRect Rect(std::int32_t l, std::int32_t t, std::int32_t r, std::int32_t b) {
  return TRect{l, t, r, b};
}

// True when P lies in R, the left and top edges included, right and bottom excluded.
constexpr bool PtInRect(const TRect& r, const TPoint& p) {
  return p.X >= r.Left && p.X < r.Right && p.Y >= r.Top && p.Y < r.Bottom;
}

// Grows R by dx on the left and right and dy on the top and bottom. Returns
// false (R unchanged) when the result would overflow 32 bits.
bool InflateRect(TRect& r, std::int32_t dx, std::int32_t dy);

// True when the two rectangles overlap in at least one pixel; Result gets the
// overlap (empty rectangle when they do not).
bool IntersectRect(TRect& result, const TRect& a, const TRect& b);

// ---------------------------------------------------------------------------
// Cursors and mouse state
// ---------------------------------------------------------------------------

using TCursor = std::int16_t;
inline constexpr TCursor crDefault = 0;
inline constexpr TCursor crNone = -1;
inline constexpr TCursor crArrow = -2;
inline constexpr TCursor crCross = -3;
inline constexpr TCursor crIBeam = -4;
inline constexpr TCursor crSizeNESW = -6;
inline constexpr TCursor crSizeNS = -7;
inline constexpr TCursor crSizeNWSE = -8;
inline constexpr TCursor crSizeWE = -9;
inline constexpr TCursor crUpArrow = -10;
inline constexpr TCursor crHourGlass = -11;
inline constexpr TCursor crDrag = -12;
inline constexpr TCursor crNoDrop = -13;
inline constexpr TCursor crHSplit = -14;
inline constexpr TCursor crVSplit = -15;
inline constexpr TCursor crMultiDrag = -16;
inline constexpr TCursor crNo = -18;
inline constexpr TCursor crHandPoint = -21;
inline constexpr TCursor crSizeAll = -22;

enum TMouseButton : std::uint8_t {
  mbLeft,
  mbRight,
  mbMiddle,
};

// Keyboard and mouse modifier set, one bit per member.
enum TShiftStateFlag : std::uint8_t {
  ssShift = 1 << 0,
  ssAlt = 1 << 1,
  ssCtrl = 1 << 2,
  ssLeft = 1 << 3,
  ssRight = 1 << 4,
  ssMiddle = 1 << 5,
  ssDouble = 1 << 6,
};
using TShiftState = std::uint8_t;

}  // namespace lumatrex
