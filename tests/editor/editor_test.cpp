// The editor started offscreen and driven as a user would: tool buttons,
// mouse gestures and keys on the canvas, menu commands, and the dialogs they
// open answered by the test.
#include <gtest/gtest.h>

#include <QAction>
#include <QApplication>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QMessageBox>
#include <QProcess>
#include <QPushButton>
#include <QScrollArea>
#include <QScrollBar>
#include <QStandardPaths>
#include <QTemporaryDir>
#include <QTimer>
#include <QToolBar>
#include <QTreeWidget>

#include "canvas/tmycad.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"
#include "layers_panel.h"
#include "main_window.h"
#include "sample_drawing.h"
#include "support/mouse.h"

namespace lumatrex {
namespace {

QAction* ToolButton(editor::TMainWindow& window, const QString& label) {
  for (QToolBar* bar : window.findChildren<QToolBar*>())
    for (QAction* action : bar->actions())
      if (action->text() == label) return action;
  return nullptr;
}

// Answers each modal dialog with Answer at every tick until the returned
// timer goes (a file dialog may still be reading its folder at first); Seen
// gets a message box's text.
[[nodiscard]] std::unique_ptr<QTimer> AnswerDialogs(std::function<void(QWidget&)> answer, QString* seen = nullptr) {
  auto timer = std::make_unique<QTimer>();
  QObject::connect(timer.get(), &QTimer::timeout, [answer, seen] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (!dialog) return;
    if (auto* box = qobject_cast<QMessageBox*>(dialog); box && seen) *seen = box->text();
    answer(*dialog);
  });
  timer->start(10);
  return timer;
}

auto Click(QMessageBox::StandardButton button) {
  return [button](QWidget& w) {
    if (auto* box = qobject_cast<QMessageBox*>(&w)) box->button(button)->click();
  };
}

class Editor : public ::testing::Test {
 protected:
  void SetUp() override { QStandardPaths::setTestModeEnabled(true); }

  // A window showing one red rectangle, drawn with the mouse: modified.
  void DrawRectangle() {
    window.show();
    ToolButton(window, "Rectangle")->trigger();
    const int before = cad.GetShapesCount();
    test::TMouse(cad).Drag(40, 40, 140, 120);
    ASSERT_EQ(cad.GetShapesCount(), before + 1);
    QApplication::processEvents();
  }

  editor::TMainWindow window;
  TMyCAD& cad = window.Canvas();
  QTemporaryDir folder;
};

TEST_F(Editor, DrawingARectangleMarksTheTitleAndCtrlZUndoesIt) {
  DrawRectangle();
  EXPECT_EQ(cad.GetShapeByNo(0)->GetPoint(2), (TMyPoint{140, 120}));
  EXPECT_EQ(window.findChild<QLabel*>("sizes")->text(), "W 26.46 mm  H 21.17 mm");
  EXPECT_TRUE(window.isWindowModified());
  EXPECT_TRUE(window.windowTitle().startsWith("Untitled[*]"));
  test::Key(cad, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(cad.GetShapesCount(), 0);
}

// What the user sees at the far right of the canvas after zooming: the
// background colour, never the blank of an unpainted area. Gradient fills
// once left the canvas clipped at the size it had when they were drawn.
TEST_F(Editor, ThePaintedAreaFollowsTheCanvasSizeAfterEveryZoom) {
  demo::BuildSampleDrawing(cad);
  cad.GridOperation()->SetGridType(gNone);
  window.resize(1000, 700);
  window.show();
  cad.SetColorOfBackGround(RGB(255, 255, 0));
  QApplication::processEvents();
  for (const char* zoom : {"zoomIn", "zoomFit", "zoom100"}) {
    SCOPED_TRACE(zoom);
    window.findChild<QAction*>(zoom)->trigger();
    QApplication::processEvents();
    const QImage shown = cad.grab().toImage();
    ASSERT_EQ(shown.width(), static_cast<int>(cad.GetPageWidth() * cad.GetZoom()));
    for (const QPoint p : {QPoint(shown.width() - 2, 5), QPoint(shown.width() - 2, shown.height() - 2)})
      EXPECT_EQ(shown.pixelColor(p), QColor(255, 255, 0)) << p.x() << "," << p.y();
  }
}

TEST_F(Editor, UnsavedWorkIsOfferedForSavingBeforeItIsDropped) {
  const QString other = folder.filePath("other.lmx");
  TMyCAD().SaveToFile(other.toStdString());
  struct Case {
    const char* name;
    std::function<bool()> drop;
    QMessageBox::StandardButton answer;
    bool dropped;
  };
  const Case cases[] = {
      {"close, cancelled", [&] { return window.close(); }, QMessageBox::Cancel, false},
      {"open, cancelled", [&] { return window.OpenFile(other); }, QMessageBox::Cancel, false},
      {"open, discarded", [&] { return window.OpenFile(other); }, QMessageBox::Discard, true},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    DrawRectangle();
    const int before = cad.GetShapesCount();
    QString asked;
    const auto answering = AnswerDialogs(Click(c.answer), &asked);
    EXPECT_EQ(c.drop(), c.dropped);
    EXPECT_TRUE(asked.contains("Save the changes to Untitled")) << asked.toStdString();
    EXPECT_EQ(cad.GetShapesCount(), c.dropped ? 0 : before);
  }
  EXPECT_EQ(window.FileName(), other);
  EXPECT_FALSE(window.isWindowModified());
  EXPECT_TRUE(window.close());  // nothing to save: no question
}

TEST_F(Editor, LayerEditsMarkTheDrawingModified) {
  window.show();
  auto* list = window.findChild<editor::TLayersPanel*>()->findChild<QListWidget*>();
  ASSERT_GT(list->count(), 0);
  ASSERT_FALSE(window.isWindowModified());
  list->item(0)->setCheckState(Qt::Unchecked);
  EXPECT_TRUE(window.isWindowModified());
  EXPECT_FALSE(cad.IsVisibleLayerByID(cad.GetLayerIdByNo(0)));
}

TEST_F(Editor, SaveAsAddsTheDrawingExtension) {
  struct Case {
    const char* typed;
    const char* written;
  };
  for (const Case c : {Case{"plan", "plan.lmx"}, Case{"site.v2", "site.v2.lmx"}, Case{"kept.LMX", "kept.LMX"}}) {
    SCOPED_TRACE(c.typed);
    DrawRectangle();
    window.AskSaveFileName = [&](const QString&, const QString&, const QString&) { return folder.filePath(c.typed); };
    window.findChild<QAction*>("saveAs")->trigger();
    EXPECT_EQ(window.FileName(), folder.filePath(c.written));
    EXPECT_TRUE(TMyCAD::IsZOLTFile(folder.filePath(c.written).toStdString()));
    EXPECT_FALSE(window.isWindowModified());
  }
}

TEST_F(Editor, HandToolMiddleButtonAndWheelMoveTheViewNotTheDrawing) {
  DrawRectangle();
  window.SetZoom(2);
  QApplication::processEvents();
  QScrollBar& h = *window.ScrollArea().horizontalScrollBar();
  QScrollBar& v = *window.ScrollArea().verticalScrollBar();
  const TMyPoint corner = cad.GetShapeByNo(0)->GetPoint(0);
  h.setValue(300);
  v.setValue(300);
  // Positions in the viewport, which stays still while the canvas scrolls under it.
  const QWidget* viewport = window.ScrollArea().viewport();
  test::TMouse(cad, Qt::MiddleButton, viewport).Drag(500, 500, 450, 470);
  EXPECT_EQ(QPoint(h.value(), v.value()), QPoint(350, 330));
  ToolButton(window, "Hand")->trigger();
  test::TMouse(cad, Qt::LeftButton, viewport).Drag(500, 500, 520, 500);
  EXPECT_EQ(h.value(), 330);
  EXPECT_EQ(cad.GetShapeByNo(0)->GetPoint(0), corner);

  // Ctrl+wheel zooms about the mouse: the drawing point under it stays.
  const QPoint at(200, 150);
  const QPointF model = QPointF(cad.mapFrom(window.ScrollArea().viewport(), at)) / cad.GetZoom();
  QWheelEvent wheel(QPointF(cad.mapFrom(window.ScrollArea().viewport(), at)),
                    cad.mapToGlobal(cad.mapFrom(window.ScrollArea().viewport(), at)).toPointF(), {}, {0, 120},
                    Qt::NoButton, Qt::ControlModifier, Qt::NoScrollPhase, false);
  QApplication::sendEvent(&cad, &wheel);
  EXPECT_DOUBLE_EQ(cad.GetZoom(), 2.5);
  const QPointF after = QPointF(cad.mapFrom(window.ScrollArea().viewport(), at)) / cad.GetZoom();
  EXPECT_NEAR(after.x(), model.x(), 0.5);
  EXPECT_NEAR(after.y(), model.y(), 0.5);
}

TEST_F(Editor, ToolBarsFitA1280PixelWindowAndSwitchesShowTheCanvasState) {
  demo::BuildSampleDrawing(cad);
  window.DocumentChanged();
  window.resize(1280, 800);
  window.show();
  QApplication::processEvents();
  for (QToolBar* bar : window.findChildren<QToolBar*>())
    for (QAction* action : bar->actions()) {
      SCOPED_TRACE(action->text().toStdString());
      const QWidget* button = bar->widgetForAction(action);
      EXPECT_TRUE(button && button->isVisible());
    }
  EXPECT_TRUE(ToolButton(window, "Grid")->isChecked());
  EXPECT_TRUE(ToolButton(window, "Move all")->toolTip().contains("cannot be undone"));
}

TEST(EditorProgram, OpensTheFileNamedOnTheCommandLine) {
  QTemporaryDir folder;
  const QString drawing = folder.filePath("box.lmx"), picture = folder.filePath("box.png");
  {
    TMyCAD cad;
    cad.Brush().SetColor(RGB(255, 0, 0));
    cad.AddShapeByCode("TMyRectangle", "Box", {{10, 10}, {60, 10}, {60, 40}, {10, 40}}, 0);
    cad.SaveToFile(drawing.toStdString());
  }
  QProcess editor;
  editor.start(LUMATREX_EDITOR, {drawing, "--output", picture});
  ASSERT_TRUE(editor.waitForFinished(60000));
  EXPECT_EQ(editor.exitCode(), 0) << editor.readAllStandardError().toStdString();
  const QImage shown(picture);
  EXPECT_EQ(shown.pixelColor(30, 25), QColor(255, 0, 0));
  EXPECT_EQ(shown.pixelColor(200, 200), QColor(255, 255, 255));  // none of the sample drawing
}

// ---------------------------------------------------------------------------
// The inspector dock follows the canvas's selection, and Edit > User data...
// edits the selected shape (one undo step) or the canvas.

QAction* MenuAction(QMenuBar& bar, const QString& text) {
  for (QAction* menu : bar.actions())
    for (QAction* action : menu->menu()->actions())
      if (action->text() == text) return action;
  return nullptr;
}

// Answers the user data editor as a user would: Add…, key and value, OK.
// Buttons are clicked from the event loop, as Add… opens a dialog of its own
// whose loop must see the timer again.
void AddRecord(QWidget& dialog) {
  const auto click = [](QPushButton* button) { QTimer::singleShot(0, button, &QPushButton::click); };
  if (auto* record = qobject_cast<TUserKeyAddFrm*>(&dialog)) {
    record->KeyEdit->setText("part");
    record->ValueEdit->setText("42");
    click(record->findChild<QPushButton*>("btnOK"));
  } else if (auto* editor = qobject_cast<TUserKeyFrm*>(&dialog)) {
    click(editor->findChild<QPushButton*>(editor->lvKeyValue->topLevelItemCount() ? "btnOK" : "btnAdd"));
  }
}

TEST(EditorInspector, UserDataEditsTheSelectedShapeAsOneUndoStepOrElseTheCanvas) {
  for (const bool selectShape : {true, false}) {
    SCOPED_TRACE(selectShape ? "a shape selected" : "nothing selected");
    editor::TMainWindow window;
    TMyCAD& cad = window.Canvas();
    TMyShape* shape = cad.AddShapeByCode2("TMyRectangle", "", {{10, 10}, {60, 10}, {60, 40}, {10, 40}}, 0);
    cad.ClearAllUndoStuff();
    if (selectShape) cad.SelectShapeByCode(shape->GetShapeId(), true);
    auto* inspector = window.findChild<TComponentInspector*>();
    auto* grid = window.findChild<TInspectorGrid*>();
    ASSERT_TRUE(inspector && grid);
    inspector->SyncFromCanvas();
    EXPECT_EQ(grid->Model().Objects(), std::vector<QObject*>{selectShape ? static_cast<QObject*>(shape) : &cad});

    QAction* userData = MenuAction(*window.menuBar(), "User &data…");
    ASSERT_NE(userData, nullptr);
    const auto answering = AnswerDialogs(AddRecord);
    userData->trigger();
    TUserData& edited = selectShape ? shape->UserData() : cad.UserData();
    EXPECT_EQ(edited.GetValueByKey("part"), "42");
    EXPECT_EQ(cad.GetUndoRedoShapeList().size(), selectShape ? 1u : 0u);
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(edited.GetCount(), selectShape ? 0 : 1);
  }
}

}  // namespace
}  // namespace lumatrex
