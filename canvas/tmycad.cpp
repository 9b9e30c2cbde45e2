#include "canvas/tmycad.h"

#include "shapes/drawing_modes.h"

namespace lumatrex {

TMyCAD::TMyCAD(QWidget* parent) : TCustomControl(parent) {}

TMyCAD::~TMyCAD() = default;

void TMyCAD::SetZoom(double value) {
  previousZoom_ = zoom_;
  zoom_ = value;
  Invalidate();
}

void TMyCAD::SetRatio(double value) {
  ratio_ = value;
  Invalidate();
}

void TMyCAD::SetTheUNIT(TUnits value) {
  theUnit_ = value;
  Invalidate();
}

void TMyCAD::SetXYMode(TXYMode value) {
  xyMode_ = value;
  Invalidate();
}

void TMyCAD::SetHotShow(bool value) {
  hotShow_ = value;
  Invalidate();
}

void TMyCAD::SetHotSize(std::uint8_t value) {
  hotSize_ = value;
  Invalidate();
}

void TMyCAD::SetColorOfHot(TColor value) {
  colorOfHot_ = value;
  SetHotColor(value);
  Invalidate();
}

void TMyCAD::SetShowHotLink(bool value) {
  showHotLink_ = value;
  Invalidate();
}

void TMyCAD::EndUpdate() {
  if (updateDepth_ > 0 && --updateDepth_ == 0) Invalidate();
}

}  // namespace lumatrex
