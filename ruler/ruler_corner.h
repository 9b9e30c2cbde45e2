// TRsRulerCorner: fills the square where a horizontal and a vertical ruler
// meet and names their unit: a short label drawn in it ("mm") and a
// descriptive name ("millimeter") shown as its tool tip.
#pragma once

#include <string>

#include "ruler/base_ruler.h"

namespace lumatrex {

class TRsRulerCorner : public TRsBaseRuler {
  Q_OBJECT
  Q_PROPERTY(TCornerPos Position READ GetPosition WRITE SetPosition)

 public:
  // 33 x 33 pixels (the thickness of a new ruler), cpLeftTop.
  explicit TRsRulerCorner(QWidget* parent = nullptr);
  ~TRsRulerCorner() override;

  // Which corner of the drawing area it fills. The unit label sits centred
  // across the corner, on the row of the labels of the horizontal ruler
  // beside it: 8 pixels above the bottom edge in the top corners, 8 below
  // the top edge in the bottom ones.
  TCornerPos GetPosition() const { return position_; }
  void SetPosition(TCornerPos value);

  // Also renames the unit: "km", "m", "cm", "mm", "in", "px" and "kilometer",
  // "meter", "centimeter", "millimeter", "inch", "pixel"; ruNone clears both.
  void SetUnit(TRulerUnit value) override;
  const std::string& UnitLabel() const { return unitLabel_; }
  const std::string& UnitName() const { return unitName_; }

 protected:
  void Paint() override;

 private:
  void NameUnit();

  TCornerPos position_ = cpLeftTop;
  std::string unitLabel_;
  std::string unitName_;
};

}  // namespace lumatrex
