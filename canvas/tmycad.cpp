#include "canvas/tmycad.h"

#include "canvas/shape_index.h"
#include "shapes/drawing_modes.h"

namespace lumatrex {

TMyCAD::TMyCAD(QWidget* parent)
    : TCustomControl(parent),
      grid_(std::make_unique<TGridObject>([this] { Invalidate(); })),
      index_(std::make_unique<TShapeIndex>()),
      backBuffer_(0, 0, pf32bit) {
  ApplyPageSize();
  NewLayer("Layer0", true);
}

TMyCAD::~TMyCAD() {
  // Shapes call back into the canvas while they go (group styling); drop them
  // while the canvas is still whole. Their changes need no bookkeeping now.
  tearingDown_ = true;
  index_->Clear();
  working_.clear();
  shapes_.clear();
  ClearAllUndoStuff();
}

void TMyCAD::SetZoom(double value) {
  previousZoom_ = zoom_;
  // Boxes are kept zoomed: all are taken anew.
  indexNeedsRebuild_ = true;
  StoreAndRepaint(zoom_, value);
}

void TMyCAD::SetRatio(double value) { StoreAndRepaint(ratio_, value); }
void TMyCAD::SetTheUNIT(TUnits value) { StoreAndRepaint(theUnit_, value); }
void TMyCAD::SetXYMode(TXYMode value) { StoreAndRepaint(xyMode_, value); }
void TMyCAD::SetColorOfBackGround(TColor value) { StoreAndRepaint(colorOfBackGround_, value); }

void TMyCAD::SetBkBitmap(const TBitmap& value) {
  bkBitmap_ = value;
  Invalidate();
}

void TMyCAD::SetBkBitmapMode(TBkBitmapMode value) { StoreAndRepaint(bkBitmapMode_, value); }
void TMyCAD::SetCrossLine(bool value) { StoreAndRepaint(crossLine_, value); }
void TMyCAD::SetHotShow(bool value) { StoreAndRepaint(hotShow_, value); }
void TMyCAD::SetHotSize(std::uint8_t value) {
  indexNeedsRebuild_ = true;  // handles are in the boxes
  StoreAndRepaint(hotSize_, value);
}

void TMyCAD::SetColorOfHot(TColor value) {
  SetHotColor(value);
  StoreAndRepaint(colorOfHot_, value);
}

void TMyCAD::SetShowHotLink(bool value) { StoreAndRepaint(showHotLink_, value); }

}  // namespace lumatrex
