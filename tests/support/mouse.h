// Real Qt mouse and key events sent to a widget, as a user's gestures arrive.
#pragma once

#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QWidget>

namespace lumatrex::test {

// Presses and releases Button; positions are given in Frame's coordinates
// (the widget's own by default), as a view that scrolls during a drag moves
// the widget under a still frame.
class TMouse {
 public:
  explicit TMouse(QWidget& w, Qt::MouseButton button = Qt::LeftButton, const QWidget* frame = nullptr)
      : w_(w), button_(button), frame_(frame ? *frame : w) {}
  TMouse& Press(int x, int y, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    Send(QEvent::MouseButtonPress, x, y, button_, button_, mods);
    return *this;
  }
  TMouse& Move(int x, int y, bool held = true, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    Send(QEvent::MouseMove, x, y, Qt::NoButton, held ? button_ : Qt::NoButton, mods);
    return *this;
  }
  TMouse& Release(int x, int y, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    Send(QEvent::MouseButtonRelease, x, y, button_, Qt::NoButton, mods);
    return *this;
  }
  TMouse& DoubleClick(int x, int y) {
    Press(x, y).Release(x, y);
    Send(QEvent::MouseButtonDblClick, x, y, button_, button_, Qt::NoModifier);
    return Release(x, y);
  }
  TMouse& Click(int x, int y, Qt::KeyboardModifiers mods = Qt::NoModifier) { return Press(x, y, mods).Release(x, y, mods); }
  // Press, a few moves on the way, release.
  TMouse& Drag(int x1, int y1, int x2, int y2, Qt::KeyboardModifiers mods = Qt::NoModifier) {
    Press(x1, y1, mods);
    for (int i = 1; i <= 4; ++i) Move(x1 + (x2 - x1) * i / 4, y1 + (y2 - y1) * i / 4, true, mods);
    return Release(x2, y2, mods);
  }

 private:
  void Send(QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons buttons,
            Qt::KeyboardModifiers mods) {
    const QPointF global = frame_.mapToGlobal(QPointF(x, y));
    QMouseEvent event(type, w_.mapFromGlobal(global), global, button, buttons, mods);
    QApplication::sendEvent(&w_, &event);
  }
  QWidget& w_;
  Qt::MouseButton button_;
  const QWidget& frame_;
};

inline void Key(QWidget& w, int key, Qt::KeyboardModifiers mods = Qt::NoModifier, const QString& text = {}) {
  QKeyEvent event(QEvent::KeyPress, key, mods, text);
  QApplication::sendEvent(&w, &event);
}

}  // namespace lumatrex::test
