// The editor's inspector: the dock follows the canvas's selection, and
// Edit → User data… edits the selected shape (one undo step) or the canvas.
#include <gtest/gtest.h>

#include <QApplication>
#include <QLineEdit>
#include <QMenuBar>
#include <QPushButton>
#include <QTimer>
#include <QTreeWidget>

#include "canvas/tmycad.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"
#include "main_window.h"

namespace lumatrex {
namespace {

QAction* MenuAction(QMenuBar& bar, const QString& text) {
  for (QAction* menu : bar.actions())
    for (QAction* action : menu->menu()->actions())
      if (action->text() == text) return action;
  return nullptr;
}

// Answers the user data editor as a user would: Add…, key and value, OK.
// Buttons are clicked from the event loop, as Add… opens a dialog of its own
// whose loop must see the timer again.
void AddRecordInTheDialogs(QTimer& timer) {
  const auto click = [](QPushButton* button) { QTimer::singleShot(0, button, &QPushButton::click); };
  QObject::connect(&timer, &QTimer::timeout, [click] {
    QWidget* dialog = QApplication::activeModalWidget();
    if (auto* record = qobject_cast<TUserKeyAddFrm*>(dialog)) {
      record->KeyEdit->setText("part");
      record->ValueEdit->setText("42");
      click(record->findChild<QPushButton*>("btnOK"));
    } else if (auto* editor = qobject_cast<TUserKeyFrm*>(dialog)) {
      click(editor->findChild<QPushButton*>(editor->lvKeyValue->topLevelItemCount() ? "btnOK" : "btnAdd"));
    }
  });
  timer.start(10);
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
    QTimer answer;
    AddRecordInTheDialogs(answer);
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
