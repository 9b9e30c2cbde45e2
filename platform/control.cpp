#include "platform/control.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>

#include "platform/qt_interop.h"
#include "platform/widget_hooks.h"

namespace lumatrex {

namespace {

TMouseButton ToButton(Qt::MouseButton button) {
  switch (button) {
    case Qt::RightButton: return mbRight;
    case Qt::MiddleButton: return mbMiddle;
    default: return mbLeft;
  }
}

TShiftState ToShift(const QMouseEvent& event) {
  TShiftState shift = 0;
  const Qt::KeyboardModifiers mods = event.modifiers();
  if (mods & Qt::ShiftModifier) shift |= ssShift;
  if (mods & Qt::AltModifier) shift |= ssAlt;
  if (mods & Qt::ControlModifier) shift |= ssCtrl;
  const Qt::MouseButtons buttons = event.buttons() | event.button();
  if (buttons & Qt::LeftButton) shift |= ssLeft;
  if (buttons & Qt::RightButton) shift |= ssRight;
  if (buttons & Qt::MiddleButton) shift |= ssMiddle;
  return shift;
}

}  // namespace

TCustomControl::TCustomControl(QWidget* parent) : QWidget(parent), screen_(0, 0, pf32bit) {
  InstallWidgetHooks();
  setMouseTracking(true);
  setAttribute(Qt::WA_OpaquePaintEvent);
}

TCustomControl::~TCustomControl() = default;

TCanvas& TCustomControl::Canvas() {
  MatchScreenSize();
  return screen_.Canvas();
}

void TCustomControl::MatchScreenSize() {
  if (screen_.Width() != width() || screen_.Height() != height()) screen_.SetSize(width(), height());
}

void TCustomControl::Invalidate() {
  dirty_ = ClientRect();
  hasDirty_ = true;
  update();
}

void TCustomControl::Repaint() {
  Invalidate();
  PaintPending();
  update();
}

void TCustomControl::PaintPending() {
  if (!hasDirty_) return;
  hasDirty_ = false;
  PaintArea(dirty_);
}

void TCustomControl::SetCursor(TCursor cursor) {
  cursor_ = cursor;
  setCursor(ToQtCursor(cursor));
}

void TCustomControl::Paint() {
  Canvas().Brush().SetColor(clWhite);
  Canvas().Brush().SetStyle(bsSolid);
  Canvas().FillRect(Canvas().ClipRect());
}

void TCustomControl::PaintArea(const TRect& area) {
  TRect clip;
  if (!IntersectRect(clip, area, ClientRect())) return;
  Canvas().SetClipRect(clip);
  Paint();
  Canvas().ClearClipRect();
}

void TCustomControl::paintEvent(QPaintEvent* event) {
  // Exposed areas need no painting: the screen bitmap still holds them.
  PaintPending();
  const QRect r = event->rect();
  QPainter painter(this);
  DrawBitmap(painter, r.topLeft(), screen_, r);
}

void TCustomControl::resizeEvent(QResizeEvent* event) {
  MatchScreenSize();
  Invalidate();
  QWidget::resizeEvent(event);
}

void TCustomControl::MouseDown(TMouseButton, TShiftState, std::int32_t, std::int32_t) {}
void TCustomControl::MouseMove(TShiftState, std::int32_t, std::int32_t) {}
void TCustomControl::MouseUp(TMouseButton, TShiftState, std::int32_t, std::int32_t) {}

void TCustomControl::CMMouseEnter() {
  if (OnMouseEnter) OnMouseEnter(this);
}

void TCustomControl::CMMouseLeave() {
  if (OnMouseLeave) OnMouseLeave(this);
}

void TCustomControl::mousePressEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  MouseDown(ToButton(event->button()), ToShift(*event), p.x(), p.y());
  Blit();
}

void TCustomControl::mouseDoubleClickEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  MouseDown(ToButton(event->button()), ToShift(*event) | ssDouble, p.x(), p.y());
  Blit();
}

void TCustomControl::mouseMoveEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  MouseMove(ToShift(*event), p.x(), p.y());
  Blit();
}

void TCustomControl::mouseReleaseEvent(QMouseEvent* event) {
  const QPoint p = event->position().toPoint();
  MouseUp(ToButton(event->button()), ToShift(*event), p.x(), p.y());
  Blit();
}

void TCustomControl::enterEvent(QEnterEvent*) { CMMouseEnter(); }

void TCustomControl::leaveEvent(QEvent*) { CMMouseLeave(); }

Qt::CursorShape ToQtCursor(TCursor cursor) {
  switch (cursor) {
    case crNone: return Qt::BlankCursor;
    case crCross: return Qt::CrossCursor;
    case crIBeam: return Qt::IBeamCursor;
    case crSizeNESW: return Qt::SizeBDiagCursor;
    case crSizeNS: return Qt::SizeVerCursor;
    case crSizeNWSE: return Qt::SizeFDiagCursor;
    case crSizeWE: return Qt::SizeHorCursor;
    case crUpArrow: return Qt::UpArrowCursor;
    case crHourGlass: return Qt::WaitCursor;
    case crDrag: return Qt::DragMoveCursor;
    case crNoDrop:
    case crNo: return Qt::ForbiddenCursor;
    case crHSplit: return Qt::SplitHCursor;
    case crVSplit: return Qt::SplitVCursor;
    case crMultiDrag: return Qt::DragCopyCursor;
    case crHandPoint: return Qt::PointingHandCursor;
    case crSizeAll: return Qt::SizeAllCursor;
    default: return Qt::ArrowCursor;
  }
}

}  // namespace lumatrex
