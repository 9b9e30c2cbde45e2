// TRsBaseRuler: what the ruler and its corner piece share. The ruler family's
// enumerations, the unit, the scale and tick colours, the flat or raised look
// and the fonts its labels are drawn in.
//
// The enumerations are members of TRsBaseRuler, registered with Q_ENUM, so
// that the inspector and Qt Designer show ruler properties by value name. They
// cannot join the Q_NAMESPACE of lumatrex: that meta-object lives in the shapes
// layer, which the ruler may not include, and a namespace has only one.
// Namespace-level aliases below give them their plain names (lumatrex::TRulerDir,
// lumatrex::rdTop) as well.
#pragma once

#include <QObject>
#include <cstdint>
#include <string>

#include "platform/control.h"
#include "platform/graphics.h"

namespace lumatrex {

class TRsBaseRuler : public TCustomControl {
  Q_OBJECT
  Q_PROPERTY(TRulerUnit Units READ GetUnits WRITE SetUnit)
  Q_PROPERTY(bool Flat READ GetFlat WRITE SetFlat)
  Q_PROPERTY(std::int32_t ScaleColor READ GetScaleColor WRITE SetScaleColor)
  Q_PROPERTY(std::int32_t TickColor READ GetTickColor WRITE SetTickColor)
  Q_PROPERTY(std::string VersionInfo READ GetVersionInfo)
  Q_PROPERTY(lumatrex::TFont* Font READ FontPtr)

 public:
  // ==== enumerations (one byte, classic order) ===================================

  // The edge of the drawing area the ruler lies along.
  enum TRulerDir : std::uint8_t {
    rdTop,     // horizontal, ticks hang from the bottom edge
    rdLeft,    // vertical, ticks at the right edge
    rdRight,   // vertical, ticks at the left edge
    rdBottom,  // horizontal, ticks stand on the top edge
  };
  Q_ENUM(TRulerDir)

  enum TRulerScaleDir : std::uint8_t {
    rsdNormal,   // counts from the left or top end
    rsdReverse,  // counts from the right or bottom end
  };
  Q_ENUM(TRulerScaleDir)

  enum TRulerUnit : std::uint8_t {
    ruKilo,
    ruMeter,
    ruCenti,
    ruMilli,
    ruInch,
    ruPixel,
    ruNone,  // ticks only: no labels, no unit text
  };
  Q_ENUM(TRulerUnit)

  // The corner of the drawing area a TRsRulerCorner fills.
  enum TCornerPos : std::uint8_t {
    cpLeftTop,
    cpRightTop,
    cpLeftBottom,
    cpRightBottom,
  };
  Q_ENUM(TCornerPos)

  enum THairLineStyle : std::uint8_t {
    hlsLine,  // a line across the ruler at the position
    hlsRect,  // a band from the scale's origin up to the position
  };
  Q_ENUM(THairLineStyle)

  // ==== construction ================================================================

  // Units ruMilli, not flat, a white (clWindow) scale with black (clWindowText)
  // ticks, labels in the bundled face at 7 points.
  explicit TRsBaseRuler(QWidget* parent = nullptr);
  ~TRsBaseRuler() override;

  // ==== published properties; every setter stores and repaints =======================

  TRulerUnit GetUnits() const { return units_; }
  virtual void SetUnit(TRulerUnit value);
  // Flat drops the raised edge (highlight on the top and left, shadow on the
  // bottom and right) around the scale.
  bool GetFlat() const { return flat_; }
  void SetFlat(bool value);
  // Background of the scale.
  TColor GetScaleColor() const { return scaleColor_; }
  void SetScaleColor(TColor value);
  // Ticks, labels and unit text.
  TColor GetTickColor() const { return tickColor_; }
  void SetTickColor(TColor value);
  // "Lumatrex " and the library version.
  std::string GetVersionInfo() const;
  // The face, size and style of labels. Orientation and Color are ignored:
  // the ruler turns its labels itself and draws them in TickColor. Changes
  // rebuild the label fonts and repaint.
  TFont& Font() { return font_; }
  const TFont& Font() const { return font_; }

  // ==== reading from a form ==========================================================

  // A host that restores the controls' properties from a saved form brackets
  // the assignments with BeginLoading and Loaded. In between, properties are
  // taken as saved: a direction change keeps the saved size and a unit change
  // keeps the saved Offset.
  void BeginLoading() { loading_ = true; }
  virtual void Loaded();
  bool IsLoading() const { return loading_; }

 protected:
  // Labels keep this distance from the edge the ticks stand on: a long tick
  // covers 7 pixels, then one pixel stays free.
  static constexpr std::int32_t kLabelInset = 8;

  template <typename T>
  void StoreAndRepaint(T& field, T value) {
    field = value;
    Invalidate();
  }

  // Fills the client area with ScaleColor and, unless Flat, draws the raised edge.
  void PaintBackground();
  // Prepares Canvas() for label text: the label font upright or turned a
  // quarter counter-clockwise (reading upwards), in TickColor, transparent.
  void SelectLabelFont(bool vertical);

 private:
  TFont* FontPtr() { return &font_; }
  // Rebuilds the upright and the turned label font from Font.
  void ChangeFonts();
  void FontChange();

  TRulerUnit units_ = ruMilli;
  bool flat_ = false;
  TColor scaleColor_ = clWindow;
  TColor tickColor_ = clWindowText;
  TFont font_;
  TFont uprightFont_;
  TFont turnedFont_;
  bool loading_ = false;
};

// The enumerations under their plain names, values included.
using TRulerDir = TRsBaseRuler::TRulerDir;
using TRulerScaleDir = TRsBaseRuler::TRulerScaleDir;
using TRulerUnit = TRsBaseRuler::TRulerUnit;
using TCornerPos = TRsBaseRuler::TCornerPos;
using THairLineStyle = TRsBaseRuler::THairLineStyle;
using enum TRsBaseRuler::TRulerDir;
using enum TRsBaseRuler::TRulerScaleDir;
using enum TRsBaseRuler::TRulerUnit;
using enum TRsBaseRuler::TCornerPos;
using enum TRsBaseRuler::THairLineStyle;

}  // namespace lumatrex
