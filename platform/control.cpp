#include "platform/control.h"

#include <QMouseEvent>
#include <QPainter>
#include <QPaintEvent>
#include <algorithm>

#include <cmath>

#include "platform/painter_canvas.h"
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

TCustomControl::~TCustomControl() {
  sharpCanvas_.reset();  // before the painter it draws through
  sharpPainter_.reset();
}

TCanvas& TCustomControl::Canvas() {
  MatchScreenSize();
  return sharpCanvas_ ? sharpCanvas_->Canvas() : screen_.Canvas();
}

double TCustomControl::PixelRatio() const { return pixelRatio_ > 0 ? pixelRatio_ : devicePixelRatioF(); }

void TCustomControl::SetPixelRatio(double ratio) {
  pixelRatio_ = std::max(ratio, 0.0);
  MatchScreenSize();
}

void TCustomControl::MatchScreenSize() {
  if (screen_.Width() != width() || screen_.Height() != height()) screen_.SetSize(width(), height());
  MatchSharpPicture();
}

void TCustomControl::MatchSharpPicture() {
  const double ratio = PixelRatio();
  const QSize size = ratio > 1 ? QSize(static_cast<int>(std::ceil(width() * ratio)),
                                       static_cast<int>(std::ceil(height() * ratio)))
                               : QSize();
  if (sharp_.size() == size && sharp_.devicePixelRatio() == (size.isEmpty() ? 1 : ratio)) return;
  sharpCanvas_.reset();
  sharpPainter_.reset();
  sharp_ = QImage();
  if (size.isEmpty()) return;
  sharp_ = QImage(size, QImage::Format_RGB32);
  sharp_.setDevicePixelRatio(ratio);  // so that the painter works in logical pixels
  sharp_.fill(Qt::white);
  sharpPainter_ = std::make_unique<QPainter>(&sharp_);
  sharpCanvas_ = std::make_unique<TPainterCanvas>(*sharpPainter_, TSize{width(), height()});
  AddDirty(ClientRect());
  update();
}

namespace {

// At most this many separate areas are kept; one more merges them all.
constexpr std::size_t kMaxDirtyAreas = 16;

std::int64_t Area(const TRect& r) { return std::int64_t{r.Width()} * r.Height(); }

TRect Bounds(const TRect& a, const TRect& b) {
  return Rect(std::min(a.Left, b.Left), std::min(a.Top, b.Top), std::max(a.Right, b.Right),
              std::max(a.Bottom, b.Bottom));
}

bool Empty(const TRect& r) { return r.Right <= r.Left || r.Bottom <= r.Top; }

// The parts of R outside Hole: up to four bands.
std::vector<TRect> Subtract(const TRect& r, const TRect& hole) {
  TRect overlap;
  if (!IntersectRect(overlap, r, hole)) return {r};
  std::vector<TRect> parts;
  if (r.Top < overlap.Top) parts.push_back(Rect(r.Left, r.Top, r.Right, overlap.Top));
  if (overlap.Bottom < r.Bottom) parts.push_back(Rect(r.Left, overlap.Bottom, r.Right, r.Bottom));
  if (r.Left < overlap.Left) parts.push_back(Rect(r.Left, overlap.Top, overlap.Left, overlap.Bottom));
  if (overlap.Right < r.Right) parts.push_back(Rect(overlap.Right, overlap.Top, r.Right, overlap.Bottom));
  return parts;
}

}  // namespace

void TCustomControl::Invalidate() {
  dirty_.clear();
  AddDirty(ClientRect());
  update();
}

void TCustomControl::InvalidateRect(const TRect& r) {
  TRect inside;
  if (!IntersectRect(inside, r, ClientRect())) return;
  AddDirty(inside);
  update(inside.Left, inside.Top, inside.Width(), inside.Height());
}

void TCustomControl::AddDirty(const TRect& r) {
  if (Empty(r)) return;
  TRect merged = r;
  // Areas that overlap the new one, or whose joint box is hardly larger than
  // the two, become one.
  for (bool grown = true; grown;) {
    grown = false;
    for (std::size_t i = 0; i < dirty_.size(); ++i) {
      const TRect joint = Bounds(dirty_[i], merged);
      if (Area(joint) > Area(dirty_[i]) + Area(merged)) continue;
      merged = joint;
      dirty_[i] = dirty_.back();
      dirty_.pop_back();
      grown = true;
      break;
    }
  }
  dirty_.push_back(merged);
  if (dirty_.size() > kMaxDirtyAreas) {
    TRect all = dirty_.front();
    for (const TRect& d : dirty_) all = Bounds(all, d);
    dirty_ = {all};
  }
}

TRect TCustomControl::InvalidatedBounds() {
  BeforePaint();
  if (dirty_.empty()) return TRect{};
  TRect all = dirty_.front();
  for (const TRect& d : dirty_) all = Bounds(all, d);
  return all;
}

TRect TCustomControl::PaintLimit() const {
  if (!isVisible()) return ClientRect();
  const QRect visible = visibleRegion().boundingRect();
  return Rect(visible.left(), visible.top(), visible.left() + visible.width(), visible.top() + visible.height());
}

void TCustomControl::Repaint() {
  Invalidate();
  PaintInvalidated();
}

void TCustomControl::PaintInvalidated() {
  PaintPending(PaintLimit());
  update();
}

void TCustomControl::PaintPending(const TRect& limit) {
  BeforePaint();
  if (dirty_.empty()) return;
  std::vector<TRect> pending;
  pending.swap(dirty_);
  for (const TRect& r : pending) {
    TRect shown;
    if (IntersectRect(shown, r, limit)) PaintArea(shown);
    // Whatever is off the screen stays invalid until it shows.
    for (const TRect& part : Subtract(r, limit)) AddDirty(part);
  }
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
  if (sharpPainter_) sharpPainter_->setRenderHint(QPainter::Antialiasing, SmoothPicture());
  Paint();
  if (sharpPainter_) sharpPainter_->setRenderHint(QPainter::Antialiasing, false);
  Canvas().ClearClipRect();
}

void TCustomControl::paintEvent(QPaintEvent* event) {
  // Exposed areas need no painting: the screen bitmap still holds them.
  const QRect r = event->rect();
  PaintPending(Rect(r.left(), r.top(), r.left() + r.width(), r.top() + r.height()));
  QPainter painter(this);
  if (sharp_.isNull()) {
    DrawBitmap(painter, r.topLeft(), screen_, r);
    return;
  }
  const double ratio = sharp_.devicePixelRatio();
  painter.drawImage(QRectF(r), sharp_, QRectF(r.left() * ratio, r.top() * ratio, r.width() * ratio, r.height() * ratio));
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
