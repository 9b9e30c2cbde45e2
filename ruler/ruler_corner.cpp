#include "ruler/ruler_corner.h"

namespace lumatrex {

namespace {

struct TUnitNames {
  const char* label;
  const char* name;
};

TUnitNames NamesOf(TRulerUnit unit) {
  switch (unit) {
    case ruKilo: return {"km", "kilometer"};
    case ruMeter: return {"m", "meter"};
    case ruCenti: return {"cm", "centimeter"};
    case ruMilli: return {"mm", "millimeter"};
    case ruInch: return {"in", "inch"};
    case ruPixel: return {"px", "pixel"};
    default: return {"", ""};
  }
}

}  // namespace

TRsRulerCorner::TRsRulerCorner(QWidget* parent) : TRsBaseRuler(parent) {
  resize(33, 33);
  NameUnit();
}

TRsRulerCorner::~TRsRulerCorner() = default;

void TRsRulerCorner::SetPosition(TCornerPos value) { StoreAndRepaint(position_, value); }

void TRsRulerCorner::SetUnit(TRulerUnit value) {
  if (value == GetUnits()) return;
  TRsBaseRuler::SetUnit(value);
  NameUnit();
}

void TRsRulerCorner::NameUnit() {
  const TUnitNames names = NamesOf(GetUnits());
  unitLabel_ = names.label;
  unitName_ = names.name;
  setToolTip(QString::fromStdString(unitName_));
}

void TRsRulerCorner::Paint() {
  PaintBackground();
  SelectLabelFont(false);
  TCanvas& canvas = Canvas();
  const TSize extent = canvas.TextExtent(unitLabel_);
  const bool top = position_ == cpLeftTop || position_ == cpRightTop;
  const std::int32_t y = top ? Height() - extent.cy - kLabelInset : kLabelInset;
  canvas.TextOut((Width() - extent.cx) / 2, y, unitLabel_);
}

}  // namespace lumatrex
