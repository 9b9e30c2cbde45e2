#include <gtest/gtest.h>

#include <QCheckBox>
#include <QComboBox>
#include <QLineEdit>
#include <QSpinBox>
#include <QTest>
#include <QTreeView>
#include <QTreeWidget>

#include "inspector/component_inspector.h"
#include "inspector/inspector_fixture.h"
#include "inspector/inspector_grid.h"
#include "support/mouse.h"

namespace lumatrex {
namespace {

using test::AddShape;
using test::UndoSteps;

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
    EXPECT_EQ(UndoSteps(cad), 1);
  }
}

TEST(TInspectorGrid, TheSpinBoxTakesThePropertysRange) {
  TMyCAD cad;
  TInspectorGrid grid;
  grid.show();
  grid.SetObject(&cad);
  auto* spin = qobject_cast<QSpinBox*>(OpenEditor(grid, "HotSize"));
  ASSERT_NE(spin, nullptr);
  EXPECT_EQ(spin->minimum(), 0);
  EXPECT_EQ(spin->maximum(), 255);
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

TEST(TComponentInspector, ShowsTheCanvasLayersAndShapesWithGroupsNested) {
  TTreeScene s;
  ASSERT_EQ(s.inspector.Tree().topLevelItemCount(), 1);
  EXPECT_EQ(s.inspector.Tree().topLevelItem(0)->text(0), "Canvas: TMyCAD");
  ASSERT_EQ(s.Layer()->childCount(), 3);
  EXPECT_EQ(s.Layer()->child(2)->childCount(), 2);
  EXPECT_EQ(s.inspector.Components().count(), 6);  // the canvas and five shapes
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{&s.cad});
}

TEST(TComponentInspector, SelectingInTheTreeSelectsOnTheCanvasAndBack) {
  TTreeScene s;
  s.inspector.Tree().setCurrentItem(s.Layer()->child(1));
  EXPECT_EQ(s.cad.GetSelectedShapes(), std::vector<TMyShape*>{s.b});
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{s.b});

  s.cad.DeSelectedAllShapesByCode();
  s.cad.SelectShapeByCode(s.a->GetShapeId(), true);
  s.cad.SelectShapeByCode(s.g->GetShapeId(), false);
  s.inspector.SyncFromCanvas();
  ASSERT_EQ(s.inspector.Tree().selectedItems().size(), 2);
  EXPECT_EQ(s.grid.Model().Objects(), (std::vector<QObject*>{s.a, s.g}));

  s.inspector.Components().setCurrentIndex(2);  // the ellipse, by the combo box
  emit s.inspector.Components().activated(2);
  EXPECT_EQ(s.cad.GetSelectedShapes(), std::vector<TMyShape*>{s.b});
}

TEST(TComponentInspector, FollowsAClickOnTheCanvas) {
  TTreeScene s;
  s.cad.resize(200, 200);
  s.cad.show();
  QTest::mouseClick(&s.cad, Qt::LeftButton, {}, QPoint(25, 5));
  QCoreApplication::processEvents();
  EXPECT_EQ(s.grid.Model().Objects(), std::vector<QObject*>{s.b});
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

}  // namespace
}  // namespace lumatrex
