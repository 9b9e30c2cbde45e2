// TMyImage: a picture stretched into a rectangle's rotatable frame,
// optionally adjusted (grey scale, brightness, contrast), framed and drawn
// with one colour left out. Drawing files store the shape base record, then
// the bitmap (an int64 byte count and a BMP file; count 0 for none) in every
// version; from "XP.9" on Brightness and Contrast (int32 each), Transparent,
// Border and GrayScale (a byte each); from "XP.i" on TransparentColor
// (colour) and TransparentMode (int32, the ordinal in its low byte).
//
// The picture's top-left pixel sits at P0, its rows run along P0-P1 and its
// columns along P0-P3, so it turns and mirrors with its frame. The filters
// act on a cached copy made when the picture or a filter changes; the stored
// picture is never altered by drawing. A paint touches only the device
// pixels the frame covers inside the clip, whatever the picture's size.
#pragma once

#include <cstdint>

#include "platform/bitmap.h"
#include "platform/types.h"
#include "shapes/closed_shapes.h"

namespace lumatrex {

class TMyImage : public TMyRectangle {
  Q_OBJECT
  Q_PROPERTY(lumatrex::TBitmap* Bitmap READ BitmapPtr)
  Q_PROPERTY(std::int32_t Brightness READ GetBrightness WRITE SetBrightness)
  Q_PROPERTY(std::int32_t Contrast READ GetContrast WRITE SetContrast)
  Q_PROPERTY(bool Transparent READ GetTransparent WRITE SetTransparent)
  Q_PROPERTY(bool Border READ GetBorder WRITE SetBorder)
  Q_PROPERTY(bool GrayScale READ GetGrayScale WRITE SetGrayScale)
  Q_PROPERTY(std::int32_t TransparentColor READ GetTransparentColor WRITE SetTransparentColor)
  Q_PROPERTY(lumatrex::TTransparentMode TransparentMode READ GetTransparentMode WRITE SetTransparentMode)

 public:
  // A new image has an empty bitmap, no adjustment, no border, and is
  // opaque (tmAuto, white as the fixed colour).
  explicit TMyImage(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyImage"; }

  // The rectangle's copy plus the bitmap (a deep copy) and every property
  // above of an image source.
  void Assign(const TMyShape& source) override;
  // Fields a record's version does not hold keep their values; a record
  // without a bitmap leaves the bitmap empty.
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // The picture mapped onto the frame (nearest pixel, as StretchDraw picks
  // them), without the transparent colour when Transparent, then the frame
  // outline in the pen when Border. An empty picture shows the outline only.
  void Draw(TCanvas& canvas) override;
  // The colour left out when Transparent: TransparentColor for tmFixed, the
  // adjusted picture's bottom-left pixel for tmAuto; -1 for an empty picture.
  TColor EffectiveTransparentColor() const;
  // The picture as drawn: a pf24bit copy with the filters applied (grey
  // scale, then brightness, then contrast), remade only after a change.
  const TBitmap& AdjustedPicture() const;

  // ---- published properties (setters store; filters repaint) -----------------
  // The picture; empty (0 x 0) for none. Owned by the shape. Taking it for
  // writing marks the drawn copy out of date.
  TBitmap& Bitmap() {
    adjustedValid_ = false;
    return bitmap_;
  }
  const TBitmap& Bitmap() const { return bitmap_; }
  TBitmap* BitmapPtr() { return &Bitmap(); }
  // The values AdjustBrightBitmap and AdjustContrastBitmap take; 0 leaves the
  // picture as it is.
  std::int32_t GetBrightness() const { return brightness_; }
  void SetBrightness(std::int32_t value) { SetFilter(brightness_, value); }
  std::int32_t GetContrast() const { return contrast_; }
  void SetContrast(std::int32_t value) { SetFilter(contrast_, value); }
  // Leave the transparent colour (see TransparentMode) out of the picture.
  bool GetTransparent() const { return transparent_; }
  void SetTransparent(bool value) { transparent_ = value; }
  // Outline the frame with the pen.
  bool GetBorder() const { return border_; }
  void SetBorder(bool value) { border_ = value; }
  bool GetGrayScale() const { return grayScale_; }
  void SetGrayScale(bool value) { SetFilter(grayScale_, value); }
  TColor GetTransparentColor() const { return transparentColor_; }
  void SetTransparentColor(TColor value) { transparentColor_ = value; }
  TTransparentMode GetTransparentMode() const { return transparentMode_; }
  void SetTransparentMode(TTransparentMode value) { transparentMode_ = value; }

 private:
  template <typename T>
  void SetFilter(T& field, T value) {
    if (field == value) return;
    field = value;
    adjustedValid_ = false;
    RepaintOwner();
  }
  // The frame's zoomed corners P0, P1 and P3.
  void PaintPicture(TCanvas& canvas, const TMyPoint& origin, const TMyPoint& across, const TMyPoint& down) const;

  TBitmap bitmap_;
  mutable TBitmap adjusted_;
  mutable bool adjustedValid_ = false;
  std::int32_t brightness_ = 0;
  std::int32_t contrast_ = 0;
  bool transparent_ = false;
  bool border_ = false;
  bool grayScale_ = false;
  TColor transparentColor_ = clWhite;
  TTransparentMode transparentMode_ = tmAuto;
};

}  // namespace lumatrex
