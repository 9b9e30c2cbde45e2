// Moving the view over the drawing without touching it: the wheel scrolls
// (Shift+wheel sideways), Ctrl+wheel zooms about the mouse, and the middle
// button, Space+left drag or the hand tool drag the view. Installed as an
// event filter on the canvas, it swallows the events it uses so the canvas
// never sees them as edits.
#pragma once

#include <QObject>
#include <QPoint>
#include <functional>

class QScrollArea;
class QMouseEvent;
class QWheelEvent;

namespace lumatrex::editor {

class TViewNavigator : public QObject {
 public:
  // ZoomBy(factor, anchor) zooms by Factor keeping the drawing point under
  // Anchor (viewport coordinates) in place.
  TViewNavigator(QScrollArea& scroll, std::function<void(double, QPoint)> zoomBy, QObject* parent);
  // With the hand tool on, a left drag pans too.
  void SetHandTool(bool on);
  bool HandTool() const { return hand_; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  bool Wheel(QWheelEvent& event);
  bool Press(QWidget& canvas, QMouseEvent& event);
  void Drag(const QPoint& global);
  void UpdateCursor(QWidget& canvas);

  QScrollArea& scroll_;
  std::function<void(double, QPoint)> zoomBy_;
  bool hand_ = false;
  bool space_ = false;
  bool panning_ = false;
  QPoint grabbedAt_;      // global mouse position when the drag started
  QPoint scrolledFrom_;   // scroll bar values then
};

}  // namespace lumatrex::editor
