// The editor started offscreen: a user picks the rectangle tool and drags on
// the canvas, and the drawing gains a rectangle; undo takes it away.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QMouseEvent>
#include <QToolBar>
#include <set>

#include "canvas/tmycad.h"
#include "main_window.h"
#include "sample_drawing.h"

namespace lumatrex {
namespace {

void Mouse(QWidget& w, QEvent::Type type, int x, int y, Qt::MouseButtons buttons) {
  QMouseEvent event(type, QPointF(x, y), w.mapToGlobal(QPointF(x, y)),
                    type == QEvent::MouseMove ? Qt::NoButton : Qt::LeftButton, buttons, Qt::NoModifier);
  QApplication::sendEvent(&w, &event);
}

QAction* ToolButton(editor::TMainWindow& window, const QString& label) {
  for (QToolBar* bar : window.findChildren<QToolBar*>())
    for (QAction* action : bar->actions())
      if (action->text() == label) return action;
  return nullptr;
}

TEST(Editor, DrawingARectangleThroughTheWindow) {
  editor::TMainWindow window;
  window.show();
  TMyCAD& cad = window.Canvas();
  QAction* rectangle = ToolButton(window, "Rectangle");
  ASSERT_NE(rectangle, nullptr);
  rectangle->trigger();
  EXPECT_EQ(cad.GetActionTool(), dtDrawing);
  Mouse(cad, QEvent::MouseButtonPress, 40, 40, Qt::LeftButton);
  Mouse(cad, QEvent::MouseMove, 90, 80, Qt::LeftButton);
  Mouse(cad, QEvent::MouseButtonRelease, 140, 120, Qt::NoButton);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_STREQ(cad.GetShapeByNo(0)->ClassName(), "TMyRectangle");
  EXPECT_EQ(cad.GetShapeByNo(0)->GetPoint(2), (TMyPoint{140, 120}));
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(cad.GetShapesCount(), 0);
}

TEST(Editor, ZoomResizesTheCanvasWithThePage) {
  editor::TMainWindow window;
  TMyCAD& cad = window.Canvas();
  window.SetZoom(2);
  EXPECT_EQ(cad.width(), cad.GetPageWidth() * 2);
  window.SetZoom(100);  // clamped
  EXPECT_EQ(cad.GetZoom(), 16);
}

TEST(Editor, TheSampleDrawingHasEveryKindOnTwoLayers) {
  TMyCAD cad;
  demo::BuildSampleDrawing(cad);
  EXPECT_EQ(cad.GetLayersCount(), 2);
  std::set<std::string> kinds;
  for (int i = 0; i < cad.GetShapesCount(); ++i) kinds.insert(cad.GetShapeByNo(i)->ClassName());
  EXPECT_EQ(kinds, (std::set<std::string>{"TMyLine", "TMyRuleLine", "TMyPolyLine", "TMyFreeLine", "TMyBLine",
                                          "TMyRectangle", "TMyEllipse", "TMyPolygon", "TMyElliArc",
                                          "TMyPolyBezier", "TMyText", "TMyImage"}));
}

}  // namespace
}  // namespace lumatrex
