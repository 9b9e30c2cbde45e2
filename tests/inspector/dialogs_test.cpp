#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeWidget>

#include "inspector/inspector_fixture.h"
#include "inspector/menu_editor.h"
#include "inspector/property_dialogs.h"
#include "platform/hooks.h"
#include "platform/qt_interop.h"

namespace lumatrex {
namespace {

void Click(QWidget& dialog, const char* button) {
  auto* b = dialog.findChild<QPushButton*>(button);
  ASSERT_NE(b, nullptr) << button;
  QTest::mouseClick(b, Qt::LeftButton);
}

// Answers the next modal dialog of type T once it is up.
template <class T>
void WhenShown(std::function<void(T&)> answer) {
  QTimer::singleShot(0, [answer] {
    if (auto* dialog = qobject_cast<T*>(QApplication::activeModalWidget())) answer(*dialog);
  });
}

void AnswerRecord(const char* key, const char* value) {
  WhenShown<TUserKeyAddFrm>([key, value](TUserKeyAddFrm& form) {
    form.KeyEdit->setText(key);
    form.ValueEdit->setText(value);
    Click(form, "btnOK");
  });
}

std::vector<TUserDataRecord> Records(const TUserKeyFrm& form) { return form.Result().Records(); }

TEST(TUserKeyFrm, CommandsWithoutASelectedRowShowTheMessageAndChangeNothing) {
  std::vector<std::string> messages;
  auto saved = PlatformHooks().ShowMessage;
  PlatformHooks().ShowMessage = [&](const std::string& text) { messages.push_back(text); };
  TUserData data;
  data.AddKeyandValue("a", "1");
  TUserKeyFrm form(data);
  for (const char* button : {"btnInsert", "btnEdit", "btnDelete", "btnUp", "btnDown"}) {
    SCOPED_TRACE(button);
    messages.clear();
    Click(form, button);
    EXPECT_EQ(messages, std::vector<std::string>{"Please select the Key/Value first."});
    EXPECT_EQ(Records(form), data.Records());
  }
  PlatformHooks().ShowMessage = saved;
}

TEST(TUserKeyFrm, AddInsertEditMoveAndDeleteRowsThenKeepTheFirstOfEachKey) {
  TUserKeyFrm form(TUserData{});
  AnswerRecord("a", "1");
  Click(form, "btnAdd");
  AnswerRecord("b", "2");
  Click(form, "btnAdd");  // b is now selected
  AnswerRecord("c", "3");
  Click(form, "btnInsert");  // before b: a c b
  EXPECT_EQ(Records(form), (std::vector<TUserDataRecord>{{"a", "1"}, {"c", "3"}, {"b", "2"}}));
  AnswerRecord("a", "9");
  Click(form, "btnEdit");  // c becomes a second "a": dropped on OK
  EXPECT_EQ(Records(form), (std::vector<TUserDataRecord>{{"a", "1"}, {"b", "2"}}));
  Click(form, "btnUp");  // the edited row moves above the first "a", which is then dropped
  EXPECT_EQ(Records(form), (std::vector<TUserDataRecord>{{"a", "9"}, {"b", "2"}}));
  Click(form, "btnDelete");
  EXPECT_EQ(Records(form), (std::vector<TUserDataRecord>{{"a", "1"}, {"b", "2"}}));
  EXPECT_EQ(form.lvKeyValue->topLevelItemCount(), 2);
}

TEST(TUserKeyFrm, EditUserDataReplacesTheRecordsOnlyOnOk) {
  TUserData data;
  data.AddKeyandValue("k", "v");
  WhenShown<TUserKeyFrm>([](TUserKeyFrm& form) { form.reject(); });
  EXPECT_FALSE(EditUserData(nullptr, data));
  EXPECT_EQ(data.GetCount(), 1);
  WhenShown<TUserKeyFrm>([](TUserKeyFrm& form) {
    form.lvKeyValue->setCurrentItem(form.lvKeyValue->topLevelItem(0));
    Click(form, "btnDelete");
    Click(form, "btnOK");
  });
  EXPECT_TRUE(EditUserData(nullptr, data));
  EXPECT_EQ(data.GetCount(), 0);
}

TEST(PropertyDialogs, StringListDialogGivesOneStringPerLine) {
  TStringListDialog dialog({"one"});
  auto* editor = dialog.findChild<QWidget*>("lines");
  QTest::keyClick(editor, Qt::Key_End, Qt::ControlModifier);
  QTest::keyClick(editor, Qt::Key_Return);
  QTest::keyClicks(editor, "two");
  EXPECT_EQ(dialog.Lines(), (QStringList{"one", "two"}));
}

TEST(PropertyDialogs, PictureDialogLoadsSavesClearsAndPreviewsTheFilters) {
  QTemporaryDir dir;
  QImage image(4, 3, QImage::Format_RGB32);
  image.fill(Qt::red);
  ASSERT_TRUE(image.save(dir.filePath("red.png")));
  TPictureDialog::TFilters filters{true, 10, 0};
  TPictureDialog dialog(TBitmap(), nullptr, &filters);
  EXPECT_FALSE(dialog.LoadFrom(dir.filePath("missing.png")));
  ASSERT_TRUE(dialog.LoadFrom(dir.filePath("red.png")));
  EXPECT_EQ(dialog.Picture().Width(), 4);
  EXPECT_EQ(dialog.Filters().Brightness, 10);
  const QImage preview = dialog.findChild<QLabel*>("preview")->pixmap().toImage();
  EXPECT_EQ(qRed(preview.pixel(0, 0)), qGreen(preview.pixel(0, 0)));  // grey in the preview only
  EXPECT_EQ(ToQImage(dialog.Picture()).pixel(0, 0), QColor(Qt::red).rgb());  // the picture stays as loaded
  EXPECT_TRUE(dialog.SaveTo(dir.filePath("copy.png")));
  EXPECT_EQ(QImage(dir.filePath("copy.png")).size(), QSize(4, 3));
  Click(dialog, "btnClear");
  EXPECT_TRUE(dialog.Picture().Empty());
  EXPECT_FALSE(dialog.SaveTo(dir.filePath("none.png")));
}

TEST(PropertyDialogs, CollectionEditorAddsMovesAndRemovesLayers) {
  TMyCAD cad;
  TCollectionEditor editor(LayerCollection(cad));
  struct Step { const char* button; const char* layers; int current; };
  const Step steps[] = {
      {"btnAdd", "Layer0 Layer1", 1},
      {"btnAdd", "Layer0 Layer1 Layer2", 2},
      {"btnUp", "Layer0 Layer2 Layer1", 1},
      {"btnUp", "Layer2 Layer0 Layer1", 0},
      {"btnUp", "Layer2 Layer0 Layer1", 0},  // already the first
      {"btnDown", "Layer0 Layer2 Layer1", 1},
      {"btnAdd", "Layer0 Layer2 Layer1 Layer3", 3},
      {"btnRemove", "Layer0 Layer2 Layer1", 2},
  };
  for (const Step& step : steps) {
    SCOPED_TRACE(std::string(step.button) + " -> " + step.layers);
    Click(editor, step.button);
    QStringList layers, listed;
    for (const LayerRec& layer : cad.Layers()) layers << QString::fromStdString(layer.LayerName);
    for (int i = 0; i < editor.List().count(); ++i) listed << editor.List().item(i)->text();
    EXPECT_EQ(layers.join(' '), step.layers);
    EXPECT_EQ(listed, layers);
    EXPECT_EQ(editor.List().currentRow(), step.current);
  }
}

TEST(PropertyDialogs, MenuEditorAddsReordersRemovesAndSetsTextShortcutAndCheck) {
  QMenuBar bar;
  QMenu* file = bar.addMenu("File");
  file->addAction("Open");
  QAction* save = file->addAction("Save");
  TMenuEditor editor(&bar);
  ASSERT_EQ(editor.Tree().topLevelItemCount(), 1);
  editor.Tree().setCurrentItem(editor.Tree().topLevelItem(0)->child(1));
  Click(editor, "btnUp");
  EXPECT_EQ(file->actions().front(), save);
  QTest::keyClicks(editor.findChild<QLineEdit*>("textEdit"), " As");
  EXPECT_EQ(save->text(), "Save As");
  QTest::keyClick(editor.findChild<QWidget*>("checkableBox"), Qt::Key_Space);
  EXPECT_TRUE(save->isCheckable());
  QAction* added = editor.AddItem("Close");
  EXPECT_EQ(file->actions().indexOf(added), 1);  // after the current item
  editor.Tree().setCurrentItem(editor.Tree().topLevelItem(0));
  QAction* sub = editor.AddSubmenu("Recent");
  EXPECT_EQ(file->actions().back(), sub);  // into the current menu
  Click(editor, "btnRemove");
  EXPECT_EQ(file->actions().size(), 3);
}

TEST(PropertyDialogs, ColourAndFontDialogsHandTheResultBack) {
  TColor color = clBlack;
  WhenShown<QColorDialog>([](QColorDialog& d) {
    d.setCurrentColor(Qt::blue);
    d.accept();
  });
  ASSERT_TRUE(EditColor(nullptr, color));
  EXPECT_EQ(color, clBlue);
  QFont font("DejaVu Sans", 10);
  WhenShown<QFontDialog>([](QFontDialog& d) {
    QFont chosen("DejaVu Sans", 14);
    d.setCurrentFont(chosen);
    d.accept();
  });
  ASSERT_TRUE(EditFont(nullptr, font));
  EXPECT_EQ(font.pointSize(), 14);
  WhenShown<QColorDialog>([](QColorDialog& d) { d.reject(); });
  EXPECT_FALSE(EditColor(nullptr, color));
}

}  // namespace
}  // namespace lumatrex
