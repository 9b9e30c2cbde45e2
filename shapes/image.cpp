#include "shapes/image.h"

#include "persistence/stream_io.h"
#include "shapes/record_version.h"

namespace lumatrex {

TMyImage::TMyImage(TMyShapeOwner* owner) : TMyRectangle(owner) {}

void TMyImage::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* image = dynamic_cast<const TMyImage*>(&source)) {
    bitmap_ = image->bitmap_;
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

}  // namespace lumatrex
