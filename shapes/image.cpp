#include "shapes/image.h"

#include <algorithm>
#include <cmath>
#include <vector>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/bitmap_filters.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/record_version.h"

namespace lumatrex {

TMyImage::TMyImage(TMyShapeOwner* owner) : TMyRectangle(owner) {}

void TMyImage::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* image = dynamic_cast<const TMyImage*>(&source)) {
    bitmap_ = image->bitmap_;
    adjustedValid_ = false;
    brightness_ = image->brightness_;
    contrast_ = image->contrast_;
    transparent_ = image->transparent_;
    border_ = image->border_;
    grayScale_ = image->grayScale_;
    transparentColor_ = image->transparentColor_;
    transparentMode_ = image->transparentMode_;
  }
}

void TMyImage::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteBitmapBuffer(stream, &bitmap_);
  WriteValue(stream, brightness_);
  WriteValue(stream, contrast_);
  WriteBool(stream, transparent_);
  WriteBool(stream, border_);
  WriteBool(stream, grayScale_);
  WriteValue(stream, transparentColor_);
  WriteValue<std::int32_t>(stream, transparentMode_);
}

void TMyImage::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  const std::string version = RecordVersion(*this);
  const std::unique_ptr<TBitmap> picture = ReadBitmapBuffer(stream, "image bitmap");
  bitmap_ = picture ? *picture : TBitmap();
  adjustedValid_ = false;
  if (!FileVersionAtLeast(version, "XP.9")) return;
  brightness_ = ReadValue<std::int32_t>(stream, "image brightness");
  contrast_ = ReadValue<std::int32_t>(stream, "image contrast");
  transparent_ = ReadBool(stream, "image transparent");
  border_ = ReadBool(stream, "image border");
  grayScale_ = ReadBool(stream, "image grey scale");
  if (!FileVersionAtLeast(version, "XP.i")) return;
  transparentColor_ = ReadValue<TColor>(stream, "image transparent colour");
  // Only the low byte holds the ordinal; the other three are not meaningful.
  transparentMode_ = ReadOrdinal<TTransparentMode, std::int32_t>(stream, tmFixed, "image transparent mode");
}

// ---- drawing ---------------------------------------------------------------------------------

const TBitmap& TMyImage::AdjustedPicture() const {
  if (adjustedValid_) return adjusted_;
  adjusted_ = bitmap_;
  if (!adjusted_.Empty()) {
    adjusted_.SetPixelFormat(pf24bit);
    GrayScaleBitmap(adjusted_, grayScale_);
    AdjustBrightBitmap(adjusted_, brightness_);
    AdjustContrastBitmap(adjusted_, contrast_);
  }
  adjustedValid_ = true;
  return adjusted_;
}

TColor TMyImage::EffectiveTransparentColor() const {
  const TBitmap& picture = AdjustedPicture();
  if (picture.Empty()) return -1;
  if (transparentMode_ == tmFixed) return ColorToRGB(transparentColor_);
  const std::uint8_t* pixel = picture.ScanLine(picture.Height() - 1);
  return RGB(pixel[2], pixel[1], pixel[0]);
}

void TMyImage::Draw(TCanvas& canvas) {
  if (Points.size() < 4) return;
  const TMyPoint origin = GetPointInZoom(0), across = GetPointInZoom(1), down = GetPointInZoom(3);
  if (!bitmap_.Empty()) PaintPicture(canvas, origin, across, down);
  if (border_ || bitmap_.Empty()) {
    SetDrawShapeMode(*this, canvas);
    SetPS(canvas, canvas.Pen().Style(), canvas.Pen().Color(), canvas.Pen().Width());
    StrokeClosedChain(canvas, RoundPoints({origin, across, GetPointInZoom(2), down}));
  }
  DrawInfo(canvas);
}

void TMyImage::PaintPicture(TCanvas& canvas, const TMyPoint& origin, const TMyPoint& across,
                            const TMyPoint& down) const {
  canvas.DrawParallelogram(AdjustedPicture(), TPointF{origin.X, origin.Y}, TPointF{across.X, across.Y},
                           TPointF{down.X, down.Y}, transparent_ ? EffectiveTransparentColor() : -1);
}

}  // namespace lumatrex
