// TRsRuler: properties and the scale arithmetic. Painting is in ruler_paint.cpp.
#include "ruler/ruler.h"

#include <cmath>

#include "platform/screen.h"

namespace lumatrex {

namespace {

// The label-step multiplier for scales up to MaxScale (per cent): coarser
// steps at small scales and finer ones at large scales keep metric ticks 4
// to 12 pixels apart at 96 pixels per inch, and labels on round numbers.
struct TLabelStep {
  std::int32_t maxScale;
  double multiplier;
};

constexpr TLabelStep kLabelSteps[] = {
    {1, 100}, {2, 50}, {5, 25},   {8, 20},    {12, 10},  {25, 5},    {35, 4},
    {50, 2},  {125, 1}, {300, 0.5}, {400, 0.25}, {500, 0.2}, {1000, 0.1},
};

// Millimetres in one Unit; ruNone has no length.
double MillimetresPer(TRulerUnit unit) {
  switch (unit) {
    case ruKilo: return 1e6;
    case ruMeter: return 1000;
    case ruCenti: return 10;
    case ruInch: return 25.4;
    case ruPixel: return 25.4 / ScreenPixelsPerInch();
    default: return 1;
  }
}

}  // namespace

TRsRuler::TRsRuler(QWidget* parent) : TRsBaseRuler(parent) {
  resize(200, 33);
  CalcAdvance();
}

TRsRuler::~TRsRuler() = default;

void TRsRuler::SetDirection(TRulerDir value) {
  const bool wasHorizontal = IsHorizontal();
  direction_ = value;
  if (IsHorizontal() != wasHorizontal && !IsLoading()) resize(height(), width());
  Invalidate();
}

void TRsRuler::SetScaleDir(TRulerScaleDir value) { StoreAndRepaint(scaleDir_, value); }

void TRsRuler::SetScale(std::int32_t value) {
  if (value < 1) return;
  StoreAndRepaint(scale_, value);
  CalcAdvance();
}

void TRsRuler::SetOffset(double value) { StoreAndRepaint(offset_, value); }
void TRsRuler::SetHairLine(bool value) { StoreAndRepaint(hairLine_, value); }

void TRsRuler::SetHairLinePos(std::int32_t value) {
  if (value == hairLinePos_) return;
  DrawHairLine(hairLinePos_);
  hairLinePos_ = value;
  DrawHairLine(hairLinePos_);
  Blit();
}

void TRsRuler::SetHairLineStyle(THairLineStyle value) { StoreAndRepaint(hairLineStyle_, value); }
void TRsRuler::SetShowMinus(bool value) { StoreAndRepaint(showMinus_, value); }

void TRsRuler::setMyLongTick(std::int32_t value) {
  if (value >= 1) StoreAndRepaint(myLongTick_, value);
}

void TRsRuler::setMyShortTick(std::int32_t value) {
  if (value >= 1) StoreAndRepaint(myShortTick_, value);
}

void TRsRuler::SetUnit(TRulerUnit value) {
  const TRulerUnit old = GetUnits();
  if (value == old) return;
  TRsBaseRuler::SetUnit(value);
  // A saved Offset is already in the saved unit.
  if (!IsLoading()) offset_ = ConvertOffset(old);
  CalcAdvance();
}

void TRsRuler::CalcAdvance() {
  advance_ = ScreenPixelsPerInch() / 10.0 * scale_ / 100.0;
  if (GetUnits() != ruInch) advance_ /= 2.54;
  if (GetUnits() == ruPixel) advance_ = scale_ * 5.0 / 100.0;
  for (const TLabelStep& step : kLabelSteps) {
    if (scale_ <= step.maxScale) {
      multiplier_ = step.multiplier;
      break;
    }
  }
  advance_ *= multiplier_;
}

double TRsRuler::Pos2Unit(std::int32_t pos) const {
  const double p = scaleDir_ == rsdReverse ? Length() - pos : pos;
  const double atFullSize = p / scale_ * 100;
  switch (GetUnits()) {
    case ruPixel: return std::trunc(atFullSize) + std::trunc(offset_);
    case ruNone: return atFullSize + offset_;
    default: {
      const double inches = atFullSize / ScreenPixelsPerInch();
      return inches * (25.4 / MillimetresPer(GetUnits())) + offset_;
    }
  }
}

double TRsRuler::ConvertOffset(TRulerUnit oldUnit) const {
  if (oldUnit == ruNone || GetUnits() == ruNone) return offset_;
  return offset_ * MillimetresPer(oldUnit) / MillimetresPer(GetUnits());
}

double TRsRuler::LabelValue(std::int32_t i) const {
  // Tick i lies i x multiplier / 5 centimetres (inches on an inch scale) from
  // the origin whatever the scale: the advance grows with Scale exactly as
  // the screen length of a centimetre does.
  const double step = i * multiplier_ / 5;
  double value = step;
  switch (GetUnits()) {
    case ruKilo: value = step / 100000; break;
    case ruMeter: value = step / 100; break;
    case ruMilli: value = step * 10; break;
    case ruPixel: value = step * 50; break;
    default: break;
  }
  value += offset_;
  if (GetUnits() == ruPixel) value = std::nearbyint(value);
  return showMinus_ ? value : std::fabs(value);
}

}  // namespace lumatrex
