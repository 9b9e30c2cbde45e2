// TRsRuler: a measuring scale along one edge of a drawing area. It draws
// ticks, labels in Units at Scale per cent, and an optional hair line that the
// host moves with the mouse. It knows nothing of any canvas: the host sets
// Scale, Offset and HairLinePos.
//
// Geometry (device pixels of the control, 0 at its left or top end):
//   - The length L is the width of a horizontal ruler (rdTop, rdBottom) and the
//     height of a vertical one (rdLeft, rdRight).
//   - Tick i lies at p = i x 2 x advance for every p <= L, truncated to a
//     pixel; under rsdReverse at L - p. The advance is a tenth of a centimetre
//     (ruInch: of an inch; ruPixel: 5 pixels) at Scale, times the label-step
//     multiplier that keeps ticks legibly spaced at every scale (see
//     CalcAdvance), so at 96 pixels per inch ticks are 7.56 pixels apart for
//     metric units at Scale 100, 19.2 for inches and 10 for pixels.
//   - Every MyLongTick-th tick is long, otherwise every MyShortTick-th short,
//     the rest absent. The tick runs from the ruler's tick edge inward and,
//     like every classic LineTo, leaves out its end: a long tick covers 7
//     pixels, a short one 5.
//   - Every (2 x MyLongTick)-th tick but the first carries a label: the scale
//     value there, centred on the tick, 8 pixels in from the tick edge so that
//     one free pixel separates it from a long tick. Top and bottom labels are
//     upright; left and right ones read upwards.
//   - The hair line inverts the pixels under it, so drawing it twice restores
//     the picture: hlsLine a line one pixel wide across the ruler at
//     HairLinePos, hlsRect the band from the scale's origin (the far end under
//     rsdReverse) to HairLinePos, both included.
//
// Label values: tick i stands for i x multiplier / 5 centimetres (ruInch:
// inches) from the origin, shown in Units (x 10 for millimetres, / 100 for
// metres, / 100000 for kilometres, x 50 for pixels), plus Offset. Pixel
// values round to whole pixels (half to even); every label shows at most two
// decimals without trailing zeros ("0.##"), so inch labels are exact to a
// hundredth of an inch and need no coarser fraction. Known limitation:
// kilometre labels read as Offset (0 when none) at any drawing scale, since
// their steps lie far below a hundredth.
#pragma once

#include <cstdint>

#include "ruler/base_ruler.h"

namespace lumatrex {

class TRsRuler : public TRsBaseRuler {
  Q_OBJECT
  Q_PROPERTY(TRulerDir Direction READ GetDirection WRITE SetDirection)
  Q_PROPERTY(TRulerScaleDir ScaleDir READ GetScaleDir WRITE SetScaleDir)
  Q_PROPERTY(std::int32_t Scale READ GetScale WRITE SetScale)
  Q_PROPERTY(double Offset READ GetOffset WRITE SetOffset)
  Q_PROPERTY(bool HairLine READ GetHairLine WRITE SetHairLine)
  Q_PROPERTY(std::int32_t HairLinePos READ GetHairLinePos WRITE SetHairLinePos)
  Q_PROPERTY(THairLineStyle HairLineStyle READ GetHairLineStyle WRITE SetHairLineStyle)
  Q_PROPERTY(bool ShowMinus READ GetShowMinus WRITE SetShowMinus)
  Q_PROPERTY(std::int32_t MyLongTick READ GetMyLongTick WRITE setMyLongTick)
  Q_PROPERTY(std::int32_t MyShortTick READ GetMyShortTick WRITE setMyShortTick)

 public:
  // 200 x 33 pixels, rdTop, rsdNormal, Scale 100, Offset 0, no hair line
  // (position -1, hlsLine), ShowMinus, long ticks every 5th, short every 1st.
  explicit TRsRuler(QWidget* parent = nullptr);
  ~TRsRuler() override;

  // ==== published properties; every setter stores and repaints =======================

  TRulerDir GetDirection() const { return direction_; }
  // Moving between a horizontal and a vertical edge swaps width and height,
  // except while loading.
  void SetDirection(TRulerDir value);
  TRulerScaleDir GetScaleDir() const { return scaleDir_; }
  void SetScaleDir(TRulerScaleDir value);
  // Per cent, 100 = 1:1. Values below 1 are ignored.
  std::int32_t GetScale() const { return scale_; }
  void SetScale(std::int32_t value);
  // The value shown at the scale's origin, in Units.
  double GetOffset() const { return offset_; }
  void SetOffset(double value);
  bool GetHairLine() const { return hairLine_; }
  void SetHairLine(bool value);
  // Pixels along the ruler (control coordinates, whatever ScaleDir); -1 = none.
  std::int32_t GetHairLinePos() const { return hairLinePos_; }
  // Moves the hair line without repainting the scale: erases it at the old
  // position and draws it at the new one, straight onto the screen.
  void SetHairLinePos(std::int32_t value);
  THairLineStyle GetHairLineStyle() const { return hairLineStyle_; }
  void SetHairLineStyle(THairLineStyle value);
  // False shows the absolute value of negative labels.
  bool GetShowMinus() const { return showMinus_; }
  void SetShowMinus(bool value);
  // Every n-th tick is long (the others short or absent). Values below 1 are
  // ignored: the tick rule divides by them.
  std::int32_t GetMyLongTick() const { return myLongTick_; }
  void setMyLongTick(std::int32_t value);
  std::int32_t GetMyShortTick() const { return myShortTick_; }
  void setMyShortTick(std::int32_t value);

  // Also converts Offset to the new unit (see ConvertOffset), except while loading.
  void SetUnit(TRulerUnit value) override;

  // ==== scale arithmetic ===============================================================

  // The scale value at pixel Pos along the ruler (mirrored under rsdReverse):
  // its distance from the origin at 100 per cent, in Units, plus Offset.
  // ruPixel truncates both parts to whole pixels; ruNone gives unscaled pixels.
  double Pos2Unit(std::int32_t pos) const;
  // Offset, taken as a length in OldUnit, re-expressed in Units, so that the
  // origin keeps its physical meaning. Conversions to or from ruNone keep the
  // number as it is; ruPixel counts the screen's pixels per inch.
  double ConvertOffset(TRulerUnit oldUnit) const;

 protected:
  // Recomputes the tick advance and the label-step multiplier from Units,
  // Scale and the screen's pixels per inch. Scales above 1000 keep the
  // multiplier they found.
  void CalcAdvance();
  // Background, ticks, labels and hair line.
  void Paint() override;

 private:
  bool IsHorizontal() const { return direction_ == rdTop || direction_ == rdBottom; }
  // L: the extent along the ruler.
  std::int32_t Length() const { return IsHorizontal() ? Width() : Height(); }
  double TickPosition(std::int32_t i) const { return i * 2 * advance_; }
  // The pixel of a position along the ruler, mirrored under rsdReverse.
  std::int32_t ToPixel(double position) const;
  std::int32_t TickLength(std::int32_t i) const;
  double LabelValue(std::int32_t i) const;

  void PaintScaleTics();
  void PaintScaleLabels();
  void DrawTick(std::int32_t at, std::int32_t length);
  void DrawLabel(std::int32_t at, double value);
  // Inverts the hair line's pixels at Pos (nothing for -1 or when HairLine is
  // off), so that drawing it twice restores the picture.
  void DrawHairLine(std::int32_t pos);

  TRulerDir direction_ = rdTop;
  TRulerScaleDir scaleDir_ = rsdNormal;
  std::int32_t scale_ = 100;
  double offset_ = 0.0;
  bool hairLine_ = false;
  std::int32_t hairLinePos_ = -1;
  THairLineStyle hairLineStyle_ = hlsLine;
  bool showMinus_ = true;
  std::int32_t myLongTick_ = 5;
  std::int32_t myShortTick_ = 1;
  double advance_ = 1.0;     // half the distance between ticks, in pixels
  double multiplier_ = 1.0;  // label step relative to Scale 100
};

}  // namespace lumatrex
