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

// Every device pixel of the frame inside the clip is mapped back onto the
// picture through the inverse of the frame's affine map and takes the source
// pixel under its centre. The cost follows the covered screen area, never
// the picture's size, and rotation and mirroring come for free.
void TMyImage::PaintPicture(TCanvas& canvas, const TMyPoint& origin, const TMyPoint& across,
                            const TMyPoint& down) const {
  const TBitmap& picture = AdjustedPicture();
  const double ax = across.X - static_cast<double>(origin.X), ay = across.Y - static_cast<double>(origin.Y);
  const double dx = down.X - static_cast<double>(origin.X), dy = down.Y - static_cast<double>(origin.Y);
  const double det = ax * dy - ay * dx;
  if (det == 0) return;
  TBitmap& target = canvas.Bitmap();
  const TRect clip = canvas.ClipRect();
  const double xs[] = {origin.X, across.X, down.X, across.X + dx};
  const double ys[] = {origin.Y, across.Y, down.Y, down.Y + ay};
  const auto left = std::max(clip.Left, static_cast<std::int32_t>(std::floor(*std::min_element(xs, xs + 4))));
  const auto right = std::min(clip.Right, static_cast<std::int32_t>(std::ceil(*std::max_element(xs, xs + 4))));
  const auto top = std::max(clip.Top, static_cast<std::int32_t>(std::floor(*std::min_element(ys, ys + 4))));
  const auto bottom = std::min(clip.Bottom, static_cast<std::int32_t>(std::ceil(*std::max_element(ys, ys + 4))));
  const std::int32_t width = picture.Width(), height = picture.Height();
  std::vector<const std::uint8_t*> rows(static_cast<std::size_t>(height));
  for (std::int32_t r = 0; r < height; ++r) rows[static_cast<std::size_t>(r)] = picture.ScanLine(r);
  const TColor skip = transparent_ ? EffectiveTransparentColor() : -1;
  const bool direct = target.PixelFormat() == pf32bit;
  for (std::int32_t y = top; y < bottom; ++y) {
    std::uint8_t* row = direct ? target.ScanLine(y) : nullptr;
    const double qy = y + 0.5 - origin.Y;
    for (std::int32_t x = left; x < right; ++x) {
      const double qx = x + 0.5 - origin.X;
      const double s = (qx * dy - qy * dx) / det, t = (ax * qy - ay * qx) / det;
      if (s < 0 || s >= 1 || t < 0 || t >= 1) continue;
      const std::uint8_t* bgr = rows[static_cast<std::size_t>(t * height)] + 3 * static_cast<std::size_t>(s * width);
      const TColor colour = RGB(bgr[2], bgr[1], bgr[0]);
      if (colour == skip) continue;
      if (!row) {
        canvas.SetPixel(x, y, colour);
        continue;
      }
      std::uint8_t* out = row + 4 * static_cast<std::size_t>(x);
      out[0] = bgr[0], out[1] = bgr[1], out[2] = bgr[2];
    }
  }
}

}  // namespace lumatrex
