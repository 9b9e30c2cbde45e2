// The cross-hair (CrossLine): a horizontal and a vertical line through the
// mouse position across the whole control, drawn on the screen image in NOT
// mode like the other previews, so drawing it twice restores every pixel and
// the back buffer never holds it.
#include "canvas/tmycad.h"

namespace lumatrex {

void TMyCAD::ToggleCrossHair(const TPoint& at) {
  TCanvas& canvas = Canvas();
  canvas.Pen().SetCosmetic();
  canvas.Pen().SetWidth(1);
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetMode(pmNot);
  canvas.MoveTo(0, at.Y);
  canvas.LineTo(width(), at.Y);
  canvas.MoveTo(at.X, 0);
  canvas.LineTo(at.X, height());
}

void TMyCAD::MoveCrossHair(std::optional<TPoint> to) {
  if (crossHair_) ToggleCrossHair(*crossHair_);
  crossHair_ = crossLine_ ? to : std::nullopt;
  if (crossHair_) ToggleCrossHair(*crossHair_);
}

void TMyCAD::CMMouseLeave() {
  TCustomControl::CMMouseLeave();
  MoveCrossHair(std::nullopt);
  Blit();
}

}  // namespace lumatrex
