#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
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
  std::vector<TRect> clips;

 protected:
  void Paint() override {
    ++paints;
    lastClip = Canvas().ClipRect();
    clips.push_back(lastClip);
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

TEST(TCustomControl, AnInvalidatedRectangleIsPaintedAlone) {
  TProbe probe;
  probe.resize(64, 48);
  probe.Repaint();
  probe.clips.clear();
  probe.InvalidateRect(Rect(5, 6, 15, 16));
  probe.InvalidateRect(Rect(40, 30, 50, 40));
  EXPECT_EQ(probe.InvalidatedBounds(), Rect(5, 6, 50, 40));
  probe.PaintInvalidated();
  std::vector<TRect> expected = {Rect(5, 6, 15, 16), Rect(40, 30, 50, 40)};
  std::sort(probe.clips.begin(), probe.clips.end(), [](const TRect& a, const TRect& b) { return a.Left < b.Left; });
  EXPECT_EQ(probe.clips, expected);
  EXPECT_EQ(probe.InvalidatedBounds(), TRect{});
  // Past the control nothing is kept.
  probe.InvalidateRect(Rect(100, 100, 120, 120));
  EXPECT_EQ(probe.InvalidatedBounds(), TRect{});
}

TEST(TCustomControl, InAScrollAreaOnlyTheVisiblePartIsPaintedAndTheRestWhenItShows) {
  QScrollArea area;
  area.resize(120, 100);
  auto* probe = new TProbe;
  probe->resize(2000, 1500);
  area.setWidget(probe);
  area.show();
  QApplication::processEvents();
  probe->clips.clear();
  probe->Repaint();
  ASSERT_FALSE(probe->clips.empty());
  for (const TRect& clip : probe->clips) {
    EXPECT_LE(clip.Right, 120);
    EXPECT_LE(clip.Bottom, 100);
  }
  EXPECT_NE(probe->InvalidatedBounds(), TRect{});  // the rest waits until it shows
  probe->clips.clear();
  area.horizontalScrollBar()->setValue(1500);
  area.verticalScrollBar()->setValue(1000);
  QApplication::processEvents();
  ASSERT_FALSE(probe->clips.empty());
  for (const TRect& clip : probe->clips) EXPECT_GE(clip.Right, 1500);
}

}  // namespace
}  // namespace lumatrex
