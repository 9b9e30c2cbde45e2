// TRsRuler: painting the scale and the hair line.
#include <charconv>
#include <cmath>
#include <string>

#include "ruler/ruler.h"

namespace lumatrex {

namespace {

constexpr std::int32_t kLongTick = 8;
constexpr std::int32_t kShortTick = 6;

// At most two decimals, no trailing zeros, never "-0" (the "0.##" format).
std::string FormatLabel(double value) {
  char text[400];  // room for the largest double in fixed notation
  const auto [end, error] = std::to_chars(text, text + sizeof text, value, std::chars_format::fixed, 2);
  std::string result(text, error == std::errc() ? end : text);
  result.erase(result.find_last_not_of('0') + 1);
  if (!result.empty() && result.back() == '.') result.pop_back();
  return result == "-0" ? "0" : result;
}

}  // namespace

void TRsRuler::Paint() {
  CalcAdvance();
  PaintBackground();
  PaintScaleTics();
  PaintScaleLabels();
  DrawHairLine(hairLinePos_);
}

std::int32_t TRsRuler::ToPixel(double position) const {
  const double mirrored = scaleDir_ == rsdReverse ? Length() - position : position;
  // Positions that are whole pixels (254 mm at 70 per cent is 672 pixels) may
  // be computed a hair below; they must not lose their pixel to truncation.
  const double nearest = std::nearbyint(mirrored);
  return static_cast<std::int32_t>(std::abs(mirrored - nearest) < 1e-9 ? nearest : std::trunc(mirrored));
}

std::int32_t TRsRuler::TickLength(std::int32_t i) const {
  if (i % myLongTick_ == 0) return kLongTick;
  if (i % myShortTick_ == 0) return kShortTick;
  return 0;
}

void TRsRuler::PaintScaleTics() {
  TCanvas& canvas = Canvas();
  canvas.Pen().SetMode(pmCopy);
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetWidth(1);
  canvas.Pen().SetColor(GetTickColor());
  for (std::int32_t i = 0; TickPosition(i) <= Length(); ++i) {
    const std::int32_t length = TickLength(i);
    if (length > 0) DrawTick(ToPixel(TickPosition(i)), length);
  }
}

void TRsRuler::DrawTick(std::int32_t at, std::int32_t length) {
  TCanvas& canvas = Canvas();
  const std::int32_t right = Width() - 1, bottom = Height() - 1;
  switch (direction_) {
    case rdTop:
      canvas.MoveTo(at, bottom);
      canvas.LineTo(at, Height() - length);
      break;
    case rdBottom:
      canvas.MoveTo(at, 0);
      canvas.LineTo(at, length - 1);
      break;
    case rdLeft:
      canvas.MoveTo(right, at);
      canvas.LineTo(Width() - length, at);
      break;
    case rdRight:
      canvas.MoveTo(0, at);
      canvas.LineTo(length - 1, at);
      break;
  }
}

void TRsRuler::PaintScaleLabels() {
  if (GetUnits() == ruNone) return;
  SelectLabelFont(!IsHorizontal());
  const std::int32_t every = 2 * myLongTick_;
  for (std::int32_t i = every; TickPosition(i) <= Length(); i += every) {
    DrawLabel(ToPixel(TickPosition(i)), LabelValue(i));
  }
}

void TRsRuler::DrawLabel(std::int32_t at, double value) {
  TCanvas& canvas = Canvas();
  const std::string text = FormatLabel(value);
  const TSize extent = canvas.TextExtent(text);
  // Upright text hangs from its top-left corner; text turned to read upwards
  // has that corner at its bottom-left, and its height runs to the right.
  switch (direction_) {
    case rdTop:
      canvas.TextOut(at - extent.cx / 2, Height() - extent.cy - kLabelInset, text);
      break;
    case rdBottom:
      canvas.TextOut(at - extent.cx / 2, kLabelInset, text);
      break;
    case rdLeft:
      canvas.TextOut(Width() - extent.cy - kLabelInset, at + extent.cx / 2, text);
      break;
    case rdRight:
      canvas.TextOut(kLabelInset, at + extent.cx / 2, text);
      break;
  }
}

void TRsRuler::DrawHairLine(std::int32_t pos) {
  if (!hairLine_ || pos == -1) return;
  // hlsLine: one pixel wide; hlsRect: from the scale's origin to the position.
  std::int32_t from = pos, to = pos + 1;
  if (hairLineStyle_ == hlsRect && scaleDir_ == rsdReverse) to = Length();
  if (hairLineStyle_ == hlsRect && scaleDir_ == rsdNormal) from = 0;
  TCanvas& canvas = Canvas();
  // Inverting is its own undo, whatever the colours under the line; pen and
  // brush together touch every pixel of the rectangle once.
  canvas.Pen().SetMode(pmNot);
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetWidth(1);
  canvas.Brush().SetStyle(bsSolid);
  if (IsHorizontal()) {
    canvas.Rectangle(from, 0, to, Height());
  } else {
    canvas.Rectangle(0, from, Width(), to);
  }
  canvas.Pen().SetMode(pmCopy);
}

}  // namespace lumatrex
