#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>
#include <vector>

#include "platform/control.h"

namespace lumatrex {
namespace {

// Records what the control base reports, and paints a red square.
class TProbe : public TCustomControl {
 public:
  struct TCall {
    char kind;  // 'd'own, 'm'ove, 'u'p
    TMouseButton button;
    TShiftState shift;
    TPoint at;
  };
  std::vector<TCall> calls;
  int paints = 0;
  TRect lastClip;

 protected:
  void Paint() override {
    ++paints;
    lastClip = Canvas().ClipRect();
    TCustomControl::Paint();
    Canvas().Brush().SetColor(clRed);
    Canvas().FillRect(Rect(10, 10, 20, 20));
  }
  void MouseDown(TMouseButton b, TShiftState s, std::int32_t x, std::int32_t y) override {
    calls.push_back({'d', b, s, Point(x, y)});
  }
  void MouseMove(TShiftState s, std::int32_t x, std::int32_t y) override {
    calls.push_back({'m', mbLeft, s, Point(x, y)});
  }
  void MouseUp(TMouseButton b, TShiftState s, std::int32_t x, std::int32_t y) override {
    calls.push_back({'u', b, s, Point(x, y)});
  }
};

void Send(QWidget& w, QEvent::Type type, QPoint at, Qt::MouseButton button, Qt::MouseButtons buttons,
          Qt::KeyboardModifiers mods = Qt::NoModifier) {
  QMouseEvent event(type, QPointF(at), w.mapToGlobal(QPointF(at)), button, buttons, mods);
  QApplication::sendEvent(&w, &event);
}

TEST(TCustomControl, ReportsQtMouseEventsInTheClassicForm) {
  TProbe probe;
  probe.resize(100, 80);
  Send(probe, QEvent::MouseButtonPress, {5, 6}, Qt::LeftButton, Qt::LeftButton, Qt::ShiftModifier);
  Send(probe, QEvent::MouseMove, {7, 8}, Qt::NoButton, Qt::LeftButton);
  Send(probe, QEvent::MouseButtonRelease, {9, 10}, Qt::RightButton, Qt::NoButton, Qt::ControlModifier);
  ASSERT_EQ(probe.calls.size(), 3u);
  EXPECT_EQ(probe.calls[0].kind, 'd');
  EXPECT_EQ(probe.calls[0].button, mbLeft);
  EXPECT_EQ(probe.calls[0].shift, ssShift | ssLeft);
  EXPECT_EQ(probe.calls[0].at, Point(5, 6));
  EXPECT_EQ(probe.calls[1].shift, ssLeft);
  EXPECT_EQ(probe.calls[2].button, mbRight);
  EXPECT_EQ(probe.calls[2].shift, ssCtrl | ssRight);
}

TEST(TCustomControl, PaintRendersInvalidatedAreasIntoTheScreenBitmapOnce) {
  TProbe probe;
  probe.resize(64, 48);
  probe.show();
  probe.Repaint();
  EXPECT_GE(probe.paints, 1);
  EXPECT_EQ(probe.lastClip, Rect(0, 0, 64, 48));
  EXPECT_EQ(TBitmap(probe.ScreenBitmap()).Canvas().GetPixel(15, 15), clRed);
  EXPECT_EQ(TBitmap(probe.ScreenBitmap()).Canvas().GetPixel(30, 30), clWhite);
  const int paints = probe.paints;
  probe.repaint();  // an expose without invalidation only blits
  EXPECT_EQ(probe.paints, paints);
}

}  // namespace
}  // namespace lumatrex
