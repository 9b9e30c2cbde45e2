#include "platform/graphics.h"

#include <algorithm>
#include <cmath>
#include <limits>

#include "platform/bitmap.h"
#include "platform/screen.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TPen

void TPen::Changed() {
  if (OnChange) OnChange();
}

void TPen::SetColor(TColor value) {
  color_ = value;
  Changed();
}

void TPen::SetWidth(std::int32_t value) {
  width_ = value;
  Changed();
}

void TPen::SetStyle(TPenStyle value) {
  style_ = value;
  Changed();
}

void TPen::SetMode(TPenMode value) {
  mode_ = value;
  Changed();
}

void TPen::SetGeometric(TPenJoin join, TPenEndCap endCap) {
  geometric_ = true;
  join_ = join;
  endCap_ = endCap;
  Changed();
}

void TPen::SetCosmetic() {
  geometric_ = false;
  join_ = pjRound;
  endCap_ = pecRound;
  Changed();
}

void TPen::Assign(const TPen& source) {
  color_ = source.color_;
  width_ = source.width_;
  style_ = source.style_;
  mode_ = source.mode_;
  geometric_ = source.geometric_;
  join_ = source.join_;
  endCap_ = source.endCap_;
  Changed();
}

// ---------------------------------------------------------------------------
// TBrush

TBrush::TBrush() = default;
TBrush::~TBrush() = default;

void TBrush::Changed() {
  if (OnChange) OnChange();
}

void TBrush::SetColor(TColor value) {
  color_ = value;
  if (style_ == bsClear) style_ = bsSolid;
  Changed();
}

void TBrush::SetStyle(TBrushStyle value) {
  style_ = value;
  Changed();
}

void TBrush::SetBitmap(const TBitmap* value) {
  bitmap_ = value ? std::make_unique<TBitmap>(*value) : nullptr;
  Changed();
}

void TBrush::Assign(const TBrush& source) {
  color_ = source.color_;
  style_ = source.style_;
  bitmap_ = source.bitmap_ ? std::make_unique<TBitmap>(*source.bitmap_) : nullptr;
  Changed();
}

// ---------------------------------------------------------------------------
// TFont

TFont::TFont() : height_(0), pixelsPerInch_(ScreenPixelsPerInch()) {
  height_ = -static_cast<std::int32_t>(std::lround(8.0 * pixelsPerInch_ / 72.0));
}

void TFont::Changed() {
  if (OnChange) OnChange();
}

void TFont::SetName(const std::string& value) {
  name_ = value;
  Changed();
}

namespace {

// Sizes and heights convert into each other in 64 bits and are clamped back:
// a font read from a damaged file can hold either near the int32 limits.
std::int32_t SaturateToInt32(long long value) {
  return static_cast<std::int32_t>(
      std::clamp<long long>(value, std::numeric_limits<std::int32_t>::min(), std::numeric_limits<std::int32_t>::max()));
}

}  // namespace

std::int32_t TFont::Size() const { return SaturateToInt32(-std::llround(height_ * 72.0 / pixelsPerInch_)); }

void TFont::SetSize(std::int32_t value) {
  height_ = SaturateToInt32(-std::llround(value * static_cast<double>(pixelsPerInch_) / 72.0));
  Changed();
}

void TFont::SetHeight(std::int32_t value) {
  height_ = value;
  Changed();
}

void TFont::SetPixelsPerInch(std::int32_t value) {
  if (value > 0) pixelsPerInch_ = value;
  Changed();
}

void TFont::SetStyle(TFontStyles value) {
  style_ = value;
  Changed();
}

void TFont::SetCharset(TFontCharset value) {
  charset_ = value;
  Changed();
}

void TFont::SetPitch(TFontPitch value) {
  pitch_ = value;
  Changed();
}

void TFont::SetColor(TColor value) {
  color_ = value;
  Changed();
}

void TFont::SetOrientation(std::int32_t value) {
  orientation_ = value;
  Changed();
}

void TFont::SetQuality(TFontQuality value) {
  quality_ = value;
  Changed();
}

void TFont::Assign(const TFont& source) {
  name_ = source.name_;
  height_ = source.height_;
  pixelsPerInch_ = source.pixelsPerInch_;
  style_ = source.style_;
  charset_ = source.charset_;
  pitch_ = source.pitch_;
  color_ = source.color_;
  orientation_ = source.orientation_;
  quality_ = source.quality_;
  Changed();
}

}  // namespace lumatrex
