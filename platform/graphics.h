// Graphic objects of the drawing surface: pen, brush and font. Each is a small
// value holder with a change notification; TCanvas reads them when it draws.
// Enumerations keep their classic ordinals, which drawing files store.
#pragma once

#include <algorithm>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "platform/types.h"

namespace lumatrex {

class TBitmap;

// ---------------------------------------------------------------------------
// Pen
// ---------------------------------------------------------------------------

enum TPenStyle : std::uint8_t {
  psSolid,
  psDash,
  psDot,
  psDashDot,
  psDashDotDot,
  psClear,        // draws nothing
  psInsideFrame,  // solid, drawn inside the figure's bounds
  psUserStyle,
  psAlternate,    // every other pixel
};

// Raster operations combining the pen colour P with the destination D.
enum TPenMode : std::uint8_t {
  pmBlack,        // 0
  pmWhite,        // 1
  pmNop,          // D
  pmNot,          // ~D
  pmCopy,         // P
  pmNotCopy,      // ~P
  pmMergePenNot,  // P | ~D
  pmMaskPenNot,   // P & ~D
  pmMergeNotPen,  // ~P | D
  pmMaskNotPen,   // ~P & D
  pmMerge,        // P | D
  pmNotMerge,     // ~(P | D)
  pmMask,         // P & D
  pmNotMask,      // ~(P & D)
  pmXor,          // P ^ D
  pmNotXor,       // ~(P ^ D)
};

// Join and end kinds of geometric (wide, styled) pens.
enum TPenJoin : std::uint8_t {
  pjRound,
  pjBevel,
  pjMiter,
};

enum TPenEndCap : std::uint8_t {
  pecRound,
  pecSquare,
  pecFlat,
};

class TPen {
 public:
  TColor Color() const { return color_; }
  void SetColor(TColor value);
  // The width lines are drawn with: the stored width, but at least 1.
  std::int32_t Width() const { return std::max(width_, 1); }
  // The width as set, 0 and negative values included, for files to keep.
  std::int32_t StoredWidth() const { return width_; }
  void SetWidth(std::int32_t value);
  TPenStyle Style() const { return style_; }
  void SetStyle(TPenStyle value);
  TPenMode Mode() const { return mode_; }
  void SetMode(TPenMode value);

  // A geometric pen draws with the given join and end kinds (the classic
  // ExtCreatePen); a cosmetic pen (the default) uses round joins and ends for
  // wide lines and exact one-pixel lines otherwise.
  bool Geometric() const { return geometric_; }
  TPenJoin Join() const { return join_; }
  TPenEndCap EndCap() const { return endCap_; }
  void SetGeometric(TPenJoin join, TPenEndCap endCap);
  void SetCosmetic();

  // Copies every setting (not the change handler) and notifies.
  void Assign(const TPen& source);

  // Called after every change.
  std::function<void()> OnChange;

 private:
  void Changed();
  TColor color_ = clBlack;
  std::int32_t width_ = 1;
  TPenStyle style_ = psSolid;
  TPenMode mode_ = pmCopy;
  bool geometric_ = false;
  TPenJoin join_ = pjRound;
  TPenEndCap endCap_ = pecRound;
};

// ---------------------------------------------------------------------------
// Brush
// ---------------------------------------------------------------------------

enum TBrushStyle : std::uint8_t {
  bsSolid,
  bsClear,       // no fill; text is drawn with a transparent background
  bsHorizontal,  // hatch patterns, 8x8 pixels, fixed to the device origin
  bsVertical,
  bsFDiagonal,
  bsBDiagonal,
  bsCross,
  bsDiagCross,
};

class TBrush {
 public:
  TBrush();
  ~TBrush();
  TBrush(const TBrush&) = delete;
  TBrush& operator=(const TBrush&) = delete;

  TColor Color() const { return color_; }
  void SetColor(TColor value);  // a solid colour also ends a clear style
  TBrushStyle Style() const { return style_; }
  void SetStyle(TBrushStyle value);
  // A pattern bitmap tiled from the device origin; it overrides colour and style
  // while set. The brush keeps its own copy; nullptr removes it.
  const TBitmap* Bitmap() const { return bitmap_.get(); }
  void SetBitmap(const TBitmap* value);

  // Copies colour, style and a duplicate of the bitmap (never shared); notifies.
  void Assign(const TBrush& source);

  std::function<void()> OnChange;

 private:
  void Changed();
  TColor color_ = clWhite;
  TBrushStyle style_ = bsSolid;
  std::unique_ptr<TBitmap> bitmap_;
};

// ---------------------------------------------------------------------------
// Font
// ---------------------------------------------------------------------------

enum TFontStyle : std::uint8_t {
  fsBold = 1 << 0,
  fsItalic = 1 << 1,
  fsUnderline = 1 << 2,
  fsStrikeOut = 1 << 3,
};
// A set of TFontStyle bits, stored as one byte.
using TFontStyles = std::uint8_t;

enum TFontPitch : std::uint8_t {
  fpDefault,
  fpVariable,
  fpFixed,
};

using TFontCharset = std::uint8_t;
inline constexpr TFontCharset ANSI_CHARSET = 0;
inline constexpr TFontCharset DEFAULT_CHARSET = 1;

// Text quality: antialiased glyph edges or plain ones.
enum TFontQuality : std::uint8_t {
  fqDefault,
  fqNonAntialiased,
  fqAntialiased,
};

// The face every new font starts with. It is compiled into the library, so
// text looks and measures the same on every machine.
inline constexpr const char* kDefaultFontName = "DejaVu Sans";

class TFont {
 public:
  TFont();

  const std::string& Name() const { return name_; }
  void SetName(const std::string& value);
  // Size in points; Height in pixels, negative for the character (em) height
  // and positive for the cell height. They are two views of one setting,
  // related through PixelsPerInch: Size = -Height * 72 / PixelsPerInch.
  std::int32_t Size() const;
  void SetSize(std::int32_t value);
  std::int32_t Height() const { return height_; }
  void SetHeight(std::int32_t value);
  std::int32_t PixelsPerInch() const { return pixelsPerInch_; }
  void SetPixelsPerInch(std::int32_t value);
  TFontStyles Style() const { return style_; }
  void SetStyle(TFontStyles value);
  TFontCharset Charset() const { return charset_; }
  void SetCharset(TFontCharset value);
  TFontPitch Pitch() const { return pitch_; }
  void SetPitch(TFontPitch value);
  TColor Color() const { return color_; }
  void SetColor(TColor value);
  // Escapement of drawn text in tenths of a degree, counter-clockwise on the
  // screen (the classic LOGFONT convention); text turns about its reference point.
  std::int32_t Orientation() const { return orientation_; }
  void SetOrientation(std::int32_t value);
  TFontQuality Quality() const { return quality_; }
  void SetQuality(TFontQuality value);

  void Assign(const TFont& source);

  std::function<void()> OnChange;

 private:
  void Changed();
  std::string name_ = kDefaultFontName;
  std::int32_t height_;
  std::int32_t pixelsPerInch_;
  TFontStyles style_ = 0;
  TFontCharset charset_ = DEFAULT_CHARSET;
  TFontPitch pitch_ = fpDefault;
  TColor color_ = clWindowText;
  std::int32_t orientation_ = 0;
  TFontQuality quality_ = fqDefault;
};

}  // namespace lumatrex
