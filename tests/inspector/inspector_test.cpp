// The inspector: the property model over any QObject (kinds, edits as undo
// steps, several objects, defaults), the grid's editors driven by key events,
// the component tree, and the property dialogs driven offscreen.
#include <gtest/gtest.h>

#include <QApplication>
#include <QColorDialog>
#include <QComboBox>
#include <QFont>
#include <QFontDialog>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMenuBar>
#include <QPushButton>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>

#include "canvas/document_state.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/menu_editor.h"
#include "inspector/property_dialogs.h"
#include "inspector/property_model.h"
#include "platform/qt_interop.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "shapes/shape_factory.h"
#include "support/mouse.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using K = TPropertyKind;

// A 10 x 10 shape of the class at Left.
TMyShape* AddShape(TMyCAD& cad, const char* className, float left = 0) {
  return cad.AddShapeByCode2(className, "", test::Box(left, 0, left + 10, 10), 0);
}

QString TextAt(const TPropertyModel& model, const QString& path) {
  return model.data(model.FindProperty(path), Qt::DisplayRole).toString();
}

// Every row under Parent, indented by depth: its name, its kind (the number
// in TPropertyKind) and the value shown.
void DumpRows(const TPropertyModel& model, const QModelIndex& parent, const QString& indent, QString& out) {
  for (int r = 0; r < model.rowCount(parent); ++r) {
    const QModelIndex name = model.index(r, 0, parent);
    const QModelIndex value = model.index(r, 1, parent);
    out += indent + name.data().toString() + " | " + QString::number(value.data(TPropertyModel::KindRole).toInt()) +
           " | " + value.data().toString() + "\n";
    DumpRows(model, name, indent + "  ", out);
  }
}

// Sections follow the class chain, base first, each with every property of
// its class: tests/data/inspector/rectangle-properties.txt.
TEST(TPropertyModel, ListsAShapesPropertiesWithTheirKindsAndValueNames) {
  TMyCAD cad;
  TMyShape* shape = AddShape(cad, "TMyRectangle");
  shape->SetGradientStyle(gsLinearH);
  shape->Font().SetStyle(fsBold | fsItalic);
  TPropertyModel model;
  model.SetObject(shape);
  QString rows;
  DumpRows(model, {}, "", rows);
  test::ExpectGoldenFile(rows.toStdString(), "inspector/rectangle-properties.txt");
}

// Every published property of the controls and of each shape kind must have a
// type the inspector knows, or Designer and the grid would show it as text.
TEST(TPropertyModel, EveryPublishedPropertyOfTheControlsAndShapesHasAKnownKind) {
  TMyCAD cad;
  TRsRuler ruler;
  TRsRulerCorner corner;
  std::vector<std::unique_ptr<TMyShape>> shapes;
  std::vector<QObject*> objects{&cad, &ruler, &corner};
  for (const char* kind : {"TMyLine", "TMyPolyLine", "TMyFreeLine", "TMyRuleLine", "TMyRectangle", "TMyEllipse",
                           "TMyPolygon", "TMyBLine", "TMyElliArc", "TMyPolyBezier", "TMyText", "TMyImage",
                           "TMyLinkPoint", "TMyLinkLine", "TMyLineLinkLine", "TMyGroup", "TMyCombine"}) {
    if (auto shape = CreateShapeByClassName(kind, &cad)) objects.push_back(shapes.emplace_back(std::move(shape)).get());
  }
  for (QObject* object : objects) {
    TPropertyModel model;
    model.SetObject(object);
    for (int s = 0; s < model.rowCount(); ++s) {
      for (int r = 0; r < model.rowCount(model.index(s, 0)); ++r) {
        const QModelIndex row = model.index(r, 0, model.index(s, 0));
        SCOPED_TRACE(object->metaObject()->className() + std::string(".") + row.data().toString().toStdString());
        const bool label = row.data().toString().startsWith("Label");  // host QLabel references
        EXPECT_TRUE(label || TPropertyKind(row.data(TPropertyModel::KindRole).toInt()) != K::Other);
      }
    }
  }
}

// A value of Row's kind other than Now, in the form setData takes.
QVariant OtherValue(const QModelIndex& row, const QVariant& now) {
  static TUserData records = [] { TUserData d; d.AddKeyandValue("part", "42"); return d; }();
  static TBitmap picture(3, 2);
  const QVariantList range = row.data(TPropertyModel::RangeRole).toList();
  const QVariantList values = row.data(TPropertyModel::EnumValuesRole).toList();
  switch (TPropertyKind(row.data(TPropertyModel::KindRole).toInt())) {
    case K::Boolean: return !now.toBool();
    case K::Integer: return now.toLongLong() < range[1].toLongLong() ? now.toLongLong() + 1 : now.toLongLong() - 1;
    case K::Float: return now.toDouble() + 0.25;
    case K::String: return now.toString() + "ü";
    case K::Enum: return values[(values.indexOf(now) + 1) % values.size()];
    case K::Flags: return now.toInt() ^ values.front().toInt();
    case K::Color: return now.toInt() == clRed ? int(clBlue) : int(clRed);
    case K::StringList: return now.toStringList() << "x";
    case K::Font: { QFont f = now.value<QFont>(); f.setPointSize(f.pointSize() + 3); return f; }
    case K::Picture: return QVariant::fromValue(&picture);
    case K::UserData: return QVariant::fromValue(&records);
    default: return {};
  }
}

// The editable value rows under Parent, depth first.
void EditableRows(const TPropertyModel& model, const QModelIndex& parent, QStringList& paths) {
  for (int r = 0; r < model.rowCount(parent); ++r) {
    const QModelIndex value = model.index(r, 1, parent);
    if (model.flags(value) & Qt::ItemIsEditable) paths << value.data(TPropertyModel::PathRole).toString();
    EditableRows(model, model.index(r, 0, parent), paths);
  }
}

// What a shape is: its drawing-file record and every row's text (some
// properties, such as the side-handle switches, are not in the file).
std::pair<std::vector<std::uint8_t>, QStringList> StateOf(const TMyShape& shape, const TPropertyModel& model,
                                                          const QStringList& paths) {
  TMemoryStream stream;
  shape.SaveToStream(stream);
  QStringList texts;
  for (const QString& path : paths) texts << model.data(model.FindProperty(path), Qt::DisplayRole).toString();
  return {stream.Bytes(), texts};
}

// Every editable row of several kinds: the edit reaches the shape, records
// one step, and undo brings back exactly the earlier shape, including what
// the shape's Assign leaves out (Visible, the Log* settings, enable switches).
TEST(TPropertyModel, EveryEditOfAShapeIsOneUndoStepThatRestoresTheWholeShape) {
  for (const char* kind : {"TMyRuleLine", "TMyElliArc", "TMyText", "TMyImage", "TMyLinkLine"}) {
    QStringList paths;
    {
      TMyCAD cad;
      TPropertyModel model;
      model.SetObject(AddShape(cad, kind));
      EditableRows(model, {}, paths);
    }
    ASSERT_GT(paths.size(), 40) << kind;
    for (const QString& path : paths) {
      SCOPED_TRACE(std::string(kind) + "." + path.toStdString());
      TMyCAD cad;
      AddShape(cad, "TMyRectangle", 30);  // something for a connector end to name
      TMyShape* shape = AddShape(cad, kind);
      cad.ChangeLinkShapes(shape);  // a connector as undo leaves it: routed
      TPropertyModel model;
      model.SetObject(shape);
      const auto before = StateOf(*shape, model, paths);
      const QModelIndex row = model.FindProperty(path);
      ASSERT_TRUE(model.setData(row, OtherValue(row, row.data(Qt::EditRole))));
      EXPECT_NE(StateOf(*shape, model, paths), before);
      EXPECT_EQ(test::StepCount(cad), 1);
      cad.PopFromUndoRedoShapeList();
      EXPECT_EQ(StateOf(*shape, model, paths), before);
    }
  }
}

TEST(TPropertyModel, SeveralObjectsShareCommonPropertiesShowBlankWhereTheyDifferAndChangeTogether) {
  TMyCAD cad;
  TMyShape* line = AddShape(cad, "TMyLine");
  TMyShape* box = AddShape(cad, "TMyRectangle", 20);
  line->SetCaption("one");
  box->SetCaption("two");
  TPropertyModel model;
  model.SetObjects({line, box});
  EXPECT_FALSE(model.FindProperty("ArrowStyle").isValid());  // the rectangle has none
  EXPECT_FALSE(model.FindProperty("ShowSideHot").isValid());
  EXPECT_EQ(TextAt(model, "Caption"), "");
  EXPECT_EQ(TextAt(model, "Visible"), "True");
  EXPECT_TRUE(model.setData(model.FindProperty("Visible"), true));
  EXPECT_EQ(test::StepCount(cad), 0);  // an edit that changes nothing records no step
  ASSERT_TRUE(model.setData(model.FindProperty("Caption"), QString("both")));
  EXPECT_EQ(line->GetCaption(), "both");
  EXPECT_EQ(box->GetCaption(), "both");
  EXPECT_EQ(TextAt(model, "Caption"), "both");
  EXPECT_EQ(test::StepCount(cad), 1);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(line->GetCaption(), "one");
  EXPECT_EQ(box->GetCaption(), "two");
}

TEST(TPropertyModel, ResetsToANewObjectsDefaultReachesSubObjectsAndForgetsDestroyedObjects) {
  auto cad = std::make_unique<TMyCAD>();
  cad->SetZoom(3);
  TMyShape* shape = AddShape(*cad, "TMyRectangle");
  shape->Pen().SetWidth(9);
  TPropertyModel model;
  model.SetObjects({shape});
  EXPECT_TRUE(model.ResetToDefault(model.FindProperty("Pen.Width")));
  EXPECT_EQ(shape->Pen().Width(), 1);
  model.SetObject(cad.get());
  EXPECT_TRUE(model.ResetToDefault(model.FindProperty("Zoom")));
  EXPECT_EQ(cad->GetZoom(), 1.0);
  EXPECT_FALSE(model.ResetToDefault(model.FindProperty("VersionInfo")));
  ASSERT_TRUE(model.setData(model.FindProperty("GridOperation.GridWidth"), 25.0));
  EXPECT_EQ(cad->GridOperation()->GetGridWidth(), 25.0);
  EXPECT_EQ(TextAt(model, "TheUNIT"), "mm");
  cad.reset();
  EXPECT_EQ(model.rowCount(), 0);
}

// ---------------------------------------------------------------------------
// The grid and the component tree

// Opens the value editor of Path with Return on the grid, as a user does.
QWidget* OpenEditor(TInspectorGrid& grid, const QString& path) {
  const QModelIndex value = grid.ViewIndex(path);
  if (!value.isValid()) return nullptr;
  grid.View().expand(value.parent());
  grid.View().setCurrentIndex(value.siblingAtColumn(0));
  QTest::keyClick(&grid.View(), Qt::Key_Return);
  return grid.View().viewport()->findChild<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
}

void SelectAllAndType(QWidget* editor, const char* text) {
  QTest::keyClick(editor, Qt::Key_A, Qt::ControlModifier);
  QTest::keyClicks(editor, text);
  QTest::keyClick(editor, Qt::Key_Return);
  QCoreApplication::processEvents();  // the delegate commits on the next pass
}

TEST(TInspectorGrid, EditorsCommitFromKeyEventsAsOneUndoStepEach) {
  struct Case {
    const char* path;
    std::function<void(QWidget*)> keys;
    std::function<bool(const TMyShape&)> changed;
  };
  const Case cases[] = {
      {"Tag", [](QWidget* e) { SelectAllAndType(e, "42"); }, [](const TMyShape& s) { return s.GetTag() == 42; }},
      {"Caption", [](QWidget* e) { SelectAllAndType(e, "door"); }, [](const TMyShape& s) { return s.GetCaption() == "door"; }},
      {"Pen.Width", [](QWidget* e) { SelectAllAndType(e, "5"); }, [](const TMyShape& s) { return s.Pen().Width() == 5; }},
      {"Angle", [](QWidget* e) { SelectAllAndType(e, "0.5"); }, [](const TMyShape& s) { return s.GetAngle() == 0.5f; }},
      {"Font.Style", [](QWidget* e) { SelectAllAndType(e, "[fsBold,fsItalic]"); },
       [](const TMyShape& s) { return s.Font().Style() == (fsBold | fsItalic); }},
      {"Locked", [](QWidget* e) { QTest::keyClick(e, Qt::Key_Space); }, [](const TMyShape& s) { return s.GetLocked(); }},
      {"GradientStyle", [](QWidget* e) { QTest::keyClick(e, Qt::Key_Up); },
       [](const TMyShape& s) { return s.GetGradientStyle() == gsButterfly; }},
      {"ColorBegin", [](QWidget* e) { QTest::keyClick(e, Qt::Key_Up); }, [](const TMyShape& s) { return s.GetColorBegin() == clAqua; }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    TMyCAD cad;
    TMyShape* shape = AddShape(cad, "TMyRectangle");
    TInspectorGrid grid;
    grid.resize(300, 900);
    grid.show();
    grid.SetObject(shape);
    QWidget* editor = OpenEditor(grid, c.path);
    ASSERT_NE(editor, nullptr);
    c.keys(editor);
    EXPECT_TRUE(c.changed(*shape));
    EXPECT_EQ(test::StepCount(cad), 1);
  }
  // A spin box takes the property's range.
  TMyCAD cad;
  TInspectorGrid grid;
  grid.show();
  grid.SetObject(&cad);
  auto* spin = qobject_cast<QSpinBox*>(OpenEditor(grid, "HotSize"));
  ASSERT_NE(spin, nullptr);
  EXPECT_EQ(std::make_pair(spin->minimum(), spin->maximum()), std::make_pair(0, 255));
}

TEST(TInspectorGrid, TheFilterKeepsMatchingRowsWithTheirSections) {
  TMyCAD cad;
  TInspectorGrid grid;
  grid.SetObject(AddShape(cad, "TMyRectangle"));
  QTest::keyClicks(&grid.FilterBox(), "grad");
  EXPECT_TRUE(grid.ViewIndex("GradientStyle").isValid());
  EXPECT_FALSE(grid.ViewIndex("Caption").isValid());
  EXPECT_FALSE(grid.ViewIndex("ShowSideHot").isValid());  // nor its section
  EXPECT_EQ(grid.View().model()->rowCount(), 1);
}

// "Canvas" > "Layer0" > A, B, G > (M1, M2).
struct TTreeScene {
  TMyCAD cad;
  TMyShape* a = AddShape(cad, "TMyRectangle", 0);
  TMyShape* b = AddShape(cad, "TMyEllipse", 20);
  TMyShape* g = cad.GroupShapes({AddShape(cad, "TMyRectangle", 40), AddShape(cad, "TMyRectangle", 60)}, false);
  TInspectorGrid grid;
  TComponentInspector inspector;
  TTreeScene() {
    inspector.SetGrid(&grid);
    inspector.SetCanvas(&cad);
  }
  QTreeWidgetItem* Layer() { return inspector.Tree().topLevelItem(0)->child(0); }
};

TEST(TComponentInspector, ShowsTheDocumentTreeAndSelectsWithTheCanvasBothWays) {
  TTreeScene s;
  ASSERT_EQ(s.inspector.Tree().topLevelItemCount(), 1);
  EXPECT_EQ(s.inspector.Tree().topLevelItem(0)->text(0), "Canvas: TMyCAD");
  ASSERT_EQ(s.Layer()->childCount(), 3);
  EXPECT_EQ(s.Layer()->child(2)->childCount(), 2);
  EXPECT_EQ(s.inspector.Components().count(), 6);  // the canvas and five shapes
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{&s.cad});

  s.inspector.Tree().setCurrentItem(s.Layer()->child(1));
  EXPECT_EQ(s.cad.GetSelectedShapes(), std::vector<TMyShape*>{s.b});
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{s.b});

  s.cad.DeSelectedAllShapesByCode();
  s.cad.SelectShapeByCode(s.a->GetShapeId(), true);
  s.cad.SelectShapeByCode(s.g->GetShapeId(), false);
  s.inspector.SyncFromCanvas();
  ASSERT_EQ(s.inspector.Tree().selectedItems().size(), 2);
  EXPECT_EQ(s.grid.Model().Objects(), (std::vector<QObject*>{s.a, s.g}));

  s.cad.resize(200, 200);
  s.cad.show();
  QTest::mouseClick(&s.cad, Qt::LeftButton, {}, QPoint(25, 5));  // a click on the ellipse
  QCoreApplication::processEvents();
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{s.b});

  s.inspector.Components().setCurrentIndex(1);  // the first box, by the combo box
  emit s.inspector.Components().activated(1);
  EXPECT_EQ(s.cad.GetSelectedShapes(), std::vector<TMyShape*>{s.a});
}

TEST(TComponentInspector, CtrlUpAndDownMoveTheCurrentLayerInTheCanvasList) {
  TTreeScene s;
  s.cad.NewLayer("B", true);
  s.inspector.SyncFromCanvas();
  QTreeWidget& tree = s.inspector.Tree();
  tree.setCurrentItem(tree.topLevelItem(0)->child(1));
  struct Step { int key; const char* layers; };
  for (const Step& step : {Step{Qt::Key_Up, "B Layer0"}, Step{Qt::Key_Up, "B Layer0"}, Step{Qt::Key_Down, "Layer0 B"}}) {
    test::Key(tree, step.key, Qt::ControlModifier);
    QStringList layers, listed;
    for (const LayerRec& layer : s.cad.Layers()) layers << QString::fromStdString(layer.LayerName);
    for (int i = 0; i < tree.topLevelItem(0)->childCount(); ++i) listed << tree.topLevelItem(0)->child(i)->text(0);
    EXPECT_EQ(layers.join(' '), step.layers);
    EXPECT_EQ(listed, layers);
    EXPECT_EQ(tree.currentItem()->text(0), "B");
  }
  EXPECT_EQ(s.Layer()->text(0), "Layer0");
  EXPECT_EQ(s.Layer()->childCount(), 3);  // the shapes moved with their layer
}

// ---------------------------------------------------------------------------
// Dialogs

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
  test::THookRecorder hooks;
  TUserData data;
  data.AddKeyandValue("a", "1");
  TUserKeyFrm form(data);
  for (const char* button : {"btnInsert", "btnEdit", "btnDelete", "btnUp", "btnDown"}) {
    SCOPED_TRACE(button);
    hooks.messages.clear();
    Click(form, button);
    EXPECT_EQ(hooks.messages, std::vector<std::string>{"Please select the Key/Value first."});
    EXPECT_EQ(Records(form), data.Records());
  }
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
