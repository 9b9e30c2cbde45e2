#include "view_navigator.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QWheelEvent>
#include <cmath>

namespace lumatrex::editor {

namespace {

// One wheel notch (120 units) zooms by this factor.
constexpr double kZoomPerNotch = 1.25;

}  // namespace

TViewNavigator::TViewNavigator(QScrollArea& scroll, std::function<void(double, QPoint)> zoomBy, QObject* parent)
    : QObject(parent), scroll_(scroll), zoomBy_(std::move(zoomBy)) {}

void TViewNavigator::SetHandTool(bool on) {
  hand_ = on;
  if (QWidget* canvas = scroll_.widget()) UpdateCursor(*canvas);
}

bool TViewNavigator::eventFilter(QObject* watched, QEvent* event) {
  auto& canvas = static_cast<QWidget&>(*watched);
  switch (event->type()) {
    case QEvent::Wheel: return Wheel(static_cast<QWheelEvent&>(*event));
    case QEvent::KeyPress:
    case QEvent::KeyRelease: {
      auto& key = static_cast<QKeyEvent&>(*event);
      if (key.key() != Qt::Key_Space) return false;
      if (!key.isAutoRepeat()) space_ = event->type() == QEvent::KeyPress;
      UpdateCursor(canvas);
      return true;
    }
    case QEvent::MouseButtonPress:
    case QEvent::MouseButtonDblClick: return Press(canvas, static_cast<QMouseEvent&>(*event));
    case QEvent::MouseMove:
      if (!panning_) return false;
      Drag(static_cast<QMouseEvent&>(*event).globalPosition().toPoint());
      return true;
    case QEvent::MouseButtonRelease:
      if (!panning_) return false;
      panning_ = false;
      UpdateCursor(canvas);
      return true;
    default: return false;
  }
}

bool TViewNavigator::Wheel(QWheelEvent& event) {
  const QPoint delta = event.angleDelta();
  if (event.modifiers() & Qt::ControlModifier) {
    const QPoint anchor = scroll_.viewport()->mapFromGlobal(event.globalPosition().toPoint());
    zoomBy_(std::pow(kZoomPerNotch, delta.y() / 120.0), anchor);
    return true;
  }
  // Shift turns the wheel sideways; a tilting wheel already gives x.
  const bool sideways = (event.modifiers() & Qt::ShiftModifier) || delta.x() != 0;
  const int amount = sideways ? (delta.x() != 0 ? delta.x() : delta.y()) : delta.y();
  QScrollBar* bar = sideways ? scroll_.horizontalScrollBar() : scroll_.verticalScrollBar();
  bar->setValue(bar->value() - amount * bar->singleStep() * 3 / 120);
  return true;
}

bool TViewNavigator::Press(QWidget& canvas, QMouseEvent& event) {
  const bool pan = event.button() == Qt::MiddleButton || (event.button() == Qt::LeftButton && (hand_ || space_));
  if (!pan) return false;
  panning_ = true;
  grabbedAt_ = event.globalPosition().toPoint();
  scrolledFrom_ = QPoint(scroll_.horizontalScrollBar()->value(), scroll_.verticalScrollBar()->value());
  UpdateCursor(canvas);
  return true;
}

// Measured in global coordinates: the canvas moves under the mouse while it
// scrolls, so its own coordinates would feed back into the drag.
void TViewNavigator::Drag(const QPoint& global) {
  const QPoint moved = global - grabbedAt_;
  scroll_.horizontalScrollBar()->setValue(scrolledFrom_.x() - moved.x());
  scroll_.verticalScrollBar()->setValue(scrolledFrom_.y() - moved.y());
}

void TViewNavigator::UpdateCursor(QWidget& canvas) {
  if (panning_)
    canvas.setCursor(Qt::ClosedHandCursor);
  else if (hand_ || space_)
    canvas.setCursor(Qt::OpenHandCursor);
  else
    canvas.unsetCursor();
}

}  // namespace lumatrex::editor
