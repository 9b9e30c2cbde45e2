// TMyImage: a picture shown in a rectangle's frame, optionally adjusted
// (brightness, contrast, grey scale), framed and drawn with one colour left
// out. Drawing files store the shape base record, then the bitmap (an int64
// byte count and a BMP file; count 0 for none) in every version; from "XP.9"
// on Brightness and Contrast (int32 each), Transparent, Border and GrayScale
// (a byte each); from "XP.i" on TransparentColor (colour) and
// TransparentMode (int32, the ordinal in its low byte).
//
// The class is complete for storing, copying and reading. Drawing the
// picture is later work: until then the image shape draws, is hit and is
// edited as its rectangle frame.
#pragma once

#include <cstdint>

#include "platform/bitmap.h"
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

  // ---- published properties (setters only store) ----------------------------
  // The picture; empty (0 x 0) for none. Owned by the shape.
  TBitmap& Bitmap() { return bitmap_; }
  const TBitmap& Bitmap() const { return bitmap_; }
  TBitmap* BitmapPtr() { return &bitmap_; }
  // The values AdjustBrightBitmap and AdjustContrastBitmap take; 0 leaves the
  // picture as it is.
  std::int32_t GetBrightness() const { return brightness_; }
  void SetBrightness(std::int32_t value) { brightness_ = value; }
  std::int32_t GetContrast() const { return contrast_; }
  void SetContrast(std::int32_t value) { contrast_ = value; }
  // Leave the transparent colour (see TransparentMode) out of the picture.
  bool GetTransparent() const { return transparent_; }
  void SetTransparent(bool value) { transparent_ = value; }
  // Outline the frame with the pen.
  bool GetBorder() const { return border_; }
  void SetBorder(bool value) { border_ = value; }
  bool GetGrayScale() const { return grayScale_; }
  void SetGrayScale(bool value) { grayScale_ = value; }
  TColor GetTransparentColor() const { return transparentColor_; }
  void SetTransparentColor(TColor value) { transparentColor_ = value; }
  TTransparentMode GetTransparentMode() const { return transparentMode_; }
  void SetTransparentMode(TTransparentMode value) { transparentMode_ = value; }

 private:
  TBitmap bitmap_;
  std::int32_t brightness_ = 0;
  std::int32_t contrast_ = 0;
  bool transparent_ = false;
  bool border_ = false;
  bool grayScale_ = false;
  TColor transparentColor_ = clWhite;
  TTransparentMode transparentMode_ = tmAuto;
};

}  // namespace lumatrex
