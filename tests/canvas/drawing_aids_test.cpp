// Drawing aids driven by real mouse events: the cross-hair through the mouse
// position, and joining a newly drawn line to the free ends it meets.
#include <gtest/gtest.h>

#include <QApplication>
#include <QMouseEvent>

#include "canvas/tmycad.h"
#include "platform/stream.h"

namespace lumatrex {
namespace {

void Send(QWidget& w, QEvent::Type type, int x, int y, Qt::MouseButtons buttons, Qt::KeyboardModifiers mods = {}) {
  const Qt::MouseButton button = type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton;
  QMouseEvent event(type, QPointF(x, y), w.mapToGlobal(QPointF(x, y)), button, buttons, mods);
  QApplication::sendEvent(&w, &event);
}

void Drag(QWidget& w, int x1, int y1, int x2, int y2, Qt::KeyboardModifiers mods = {}) {
  Send(w, QEvent::MouseButtonPress, x1, y1, Qt::LeftButton, mods);
  Send(w, QEvent::MouseMove, (x1 + x2) / 2, (y1 + y2) / 2, Qt::LeftButton, mods);
  Send(w, QEvent::MouseButtonRelease, x2, y2, Qt::NoButton, mods);
}

TColor ScreenPixel(const TMyCAD& cad, int x, int y) { return TBitmap(cad.ScreenBitmap()).Canvas().GetPixel(x, y); }

std::vector<std::uint8_t> Snapshot(const TMyCAD& cad) {
  TMemoryStream stream;
  for (int i = 0; i < cad.GetShapesCount(); ++i) cad.GetShapeByNo(i)->SaveToStream(stream);
  return stream.Bytes();
}

TEST(TMyCADCrossHair, FollowsTheMouseInNotModeAndSurvivesARepaint) {
  for (const bool on : {true, false}) {
    SCOPED_TRACE(on ? "CrossLine on" : "CrossLine off");
    TMyCAD cad;
    cad.resize(200, 150);
    cad.SetCrossLine(on);
    cad.Repaint();
    const TColor crossed = on ? clBlack : clWhite;
    Send(cad, QEvent::MouseMove, 50, 40, Qt::NoButton);
    EXPECT_EQ(ScreenPixel(cad, 5, 40), crossed);
    EXPECT_EQ(ScreenPixel(cad, 50, 140), crossed);
    EXPECT_EQ(ScreenPixel(cad, 5, 5), clWhite);
    Send(cad, QEvent::MouseMove, 120, 90, Qt::NoButton);
    EXPECT_EQ(ScreenPixel(cad, 5, 40), clWhite) << "the old cross-hair stays";
    EXPECT_EQ(ScreenPixel(cad, 199, 90), crossed);
    cad.Repaint();
    EXPECT_EQ(ScreenPixel(cad, 120, 3), crossed);
    EXPECT_EQ(ScreenPixel(cad, 5, 40), clWhite);
  }
}

TEST(TMyCADLineJoining, ALineDrawnFromAFreeEndBecomesOnePolyLineInOneUndoStep) {
  struct Case {
    const char* name;
    int x1, y1, x2, y2;            // the line drawn
    Qt::KeyboardModifiers mods;
    bool otherLayer;               // the existing lines lie on another layer
    int shapes;                    // shapes afterwards
    std::size_t joinedPoints;      // points of the last shape
  };
  // Existing lines: (10,10)-(100,10) and (100,100)-(180,100); HotSize 4.
  const Case cases[] = {
      {"end meets an end", 103, 12, 150, 60, {}, false, 2, 3},
      {"end meets a start", 60, 60, 12, 8, {}, false, 2, 3},
      {"both ends meet two lines", 100, 10, 100, 100, {}, false, 1, 4},
      {"beyond HotSize", 105, 10, 150, 60, {}, false, 3, 2},
      {"Shift held", 100, 10, 150, 60, Qt::ShiftModifier, false, 3, 2},
      {"another layer", 100, 10, 150, 60, {}, true, 3, 2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(300, 200);
    cad.AddShapeByCode2("TMyLine", "", {{10, 10}, {100, 10}}, 0);
    cad.AddShapeByCode2("TMyLine", "", {{100, 100}, {180, 100}}, 0);
    if (c.otherLayer) cad.SetCurrentLayerId(cad.NewLayer("other", true));
    const std::vector<std::uint8_t> before = Snapshot(cad);
    cad.SetShapeTool(SpLine);
    Drag(cad, c.x1, c.y1, c.x2, c.y2, c.mods);
    ASSERT_EQ(cad.GetShapesCount(), c.shapes);
    const TMyShape& last = *cad.GetShapeByNo(c.shapes - 1);
    EXPECT_EQ(last.Points.size(), c.joinedPoints);
    EXPECT_STREQ(last.ClassName(), c.joinedPoints > 2 ? "TMyPolyLine" : "TMyLine");
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(cad.GetShapesCount(), 2);
    if (c.shapes == 2) {
      EXPECT_EQ(Snapshot(cad).size(), before.size()) << "one undo gives the pieces back";
    }
  }
}

}  // namespace
}  // namespace lumatrex
