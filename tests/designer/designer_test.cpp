#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QPluginLoader>
#include <QTimer>
#include <QUiLoader>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <set>

#include "canvas/tmycad.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "ui_canvas_form.h"

#include "designer/canvas_task_menu.h"

namespace lumatrex {
namespace {

TEST(DesignerPlugin, ReportsTheFiveWidgetsInTheLumatrexGroupAndCreatesEach) {
  QPluginLoader loader(LUMATREX_DESIGNER_PLUGIN);
  auto* collection = qobject_cast<QDesignerCustomWidgetCollectionInterface*>(loader.instance());
  ASSERT_NE(collection, nullptr) << loader.errorString().toStdString();
  std::set<QString> names;
  for (QDesignerCustomWidgetInterface* widget : collection->customWidgets()) {
    SCOPED_TRACE(widget->name().toStdString());
    names.insert(widget->name());
    EXPECT_EQ(widget->group(), "Lumatrex");
    EXPECT_FALSE(widget->icon().isNull());
    EXPECT_FALSE(widget->toolTip().isEmpty());
    EXPECT_TRUE(widget->domXml().contains("class=\"" + widget->name() + "\""));
    QWidget parent;
    QWidget* made = widget->createWidget(&parent);
    ASSERT_NE(made, nullptr);
    EXPECT_EQ(QString::fromLatin1(made->metaObject()->className()), widget->name());
  }
  EXPECT_EQ(names, (std::set<QString>{"lumatrex::TMyCAD", "lumatrex::TRsRuler", "lumatrex::TRsRulerCorner",
                                      "lumatrex::TInspectorGrid", "lumatrex::TComponentInspector"}));
}

TEST(DesignerPlugin, TheCanvasTaskMenuOpensTheUserDataEditor) {
  TMyCAD canvas;
  TRsRuler ruler;
  TCanvasTaskMenuFactory factory(nullptr);
  EXPECT_EQ(factory.extension(&ruler, Q_TYPEID(QDesignerTaskMenuExtension)), nullptr);
  auto* found = qobject_cast<TCanvasTaskMenu*>(factory.extension(&canvas, Q_TYPEID(QDesignerTaskMenuExtension)));
  ASSERT_NE(found, nullptr);
  TCanvasTaskMenu& taskMenu = *found;
  ASSERT_EQ(taskMenu.taskActions().size(), 1);
  EXPECT_EQ(taskMenu.taskActions().front()->text(), QString("Edit user data…"));
  QString opened;
  QTimer::singleShot(0, [&] {
    auto* form = qobject_cast<TUserKeyFrm*>(QApplication::activeModalWidget());
    if (!form) return;
    opened = form->objectName();
    form->reject();
  });
  taskMenu.taskActions().front()->trigger();
  EXPECT_EQ(opened, "TUserKeyFrm");
}

TEST(DesignerForms, AFormWithEveryWidgetLoadsThroughQUiLoader) {
  QUiLoader loader;
  loader.addPluginPath(LUMATREX_DESIGNER_PLUGIN_DIR);
  EXPECT_TRUE(loader.availableWidgets().contains("lumatrex::TMyCAD"));
  QFile file(LUMATREX_FORMS_DIR "/inspector_form.ui");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  std::unique_ptr<QWidget> form(loader.load(&file));
  ASSERT_NE(form, nullptr) << loader.errorString().toStdString();
  auto* canvas = form->findChild<TMyCAD*>("canvas");
  ASSERT_NE(canvas, nullptr);
  EXPECT_TRUE(canvas->GetShowHint());
  EXPECT_NE(form->findChild<TComponentInspector*>("componentInspector"), nullptr);
  EXPECT_NE(form->findChild<TInspectorGrid*>("inspectorGrid"), nullptr);
  EXPECT_NE(form->findChild<TRsRuler*>("ruler"), nullptr);
  EXPECT_NE(form->findChild<TRsRulerCorner*>("rulerCorner"), nullptr);
}

TEST(DesignerForms, AFormCompiledByUicBuildsTheControlsWithTheirProperties) {
  QWidget host;
  Ui::CanvasForm ui;
  ui.setupUi(&host);
  EXPECT_EQ(ui.canvas->GetZoom(), 2.0);
  EXPECT_EQ(ui.ruler->GetScale(), 200);
  EXPECT_NE(ui.corner, nullptr);
}

}  // namespace
}  // namespace lumatrex
