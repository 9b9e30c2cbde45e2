#include "ruler/base_ruler.h"

namespace lumatrex {

TRsBaseRuler::TRsBaseRuler(QWidget* parent) : TCustomControl(parent) {
  font_.SetSize(7);
  font_.OnChange = [this] { FontChange(); };
  ChangeFonts();
}

TRsBaseRuler::~TRsBaseRuler() = default;

void TRsBaseRuler::SetUnit(TRulerUnit value) { StoreAndRepaint(units_, value); }
void TRsBaseRuler::SetFlat(bool value) { StoreAndRepaint(flat_, value); }
void TRsBaseRuler::SetScaleColor(TColor value) { StoreAndRepaint(scaleColor_, value); }
void TRsBaseRuler::SetTickColor(TColor value) { StoreAndRepaint(tickColor_, value); }

std::string TRsBaseRuler::GetVersionInfo() const { return "Lumatrex " LUMATREX_VERSION; }

void TRsBaseRuler::Loaded() {
  loading_ = false;
  Invalidate();
}

void TRsBaseRuler::ChangeFonts() {
  uprightFont_.Assign(font_);
  uprightFont_.SetOrientation(0);
  turnedFont_.Assign(font_);
  turnedFont_.SetOrientation(900);
}

void TRsBaseRuler::FontChange() {
  ChangeFonts();
  Invalidate();
}

void TRsBaseRuler::PaintBackground() {
  TCanvas& canvas = Canvas();
  canvas.Brush().SetStyle(bsSolid);
  canvas.Brush().SetColor(scaleColor_);
  canvas.FillRect(ClientRect());
  if (flat_) return;
  const std::int32_t right = Width() - 1, bottom = Height() - 1;
  canvas.Pen().SetMode(pmCopy);
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetWidth(1);
  canvas.Pen().SetColor(clBtnHighlight);
  canvas.MoveTo(0, bottom);
  canvas.LineTo(0, 0);
  canvas.LineTo(right, 0);
  canvas.Pen().SetColor(clBtnShadow);
  canvas.LineTo(right, bottom);
  canvas.LineTo(-1, bottom);
}

void TRsBaseRuler::SelectLabelFont(bool vertical) {
  TCanvas& canvas = Canvas();
  canvas.Font().Assign(vertical ? turnedFont_ : uprightFont_);
  canvas.Font().SetColor(tickColor_);
  canvas.SetBkMode(bkTransparent);
}

}  // namespace lumatrex
