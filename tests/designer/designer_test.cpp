#include <gtest/gtest.h>

#include <QApplication>
#include <QFile>
#include <QPluginLoader>
#include <QTimer>
#include <QUiLoader>
#include <QXmlStreamReader>
#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <set>

#include "canvas/tmycad.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "ui_designer_form.h"

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

// The widget names and property names a form sets on our controls.
std::vector<std::pair<QString, QByteArray>> OurPropertiesIn(const QString& fileName) {
  QFile file(fileName);
  EXPECT_TRUE(file.open(QIODevice::ReadOnly));
  std::vector<std::pair<QString, QByteArray>> found;
  QString widget;
  for (QXmlStreamReader xml(&file); !xml.atEnd();) {
    if (xml.readNext() != QXmlStreamReader::StartElement) continue;
    const auto a = xml.attributes();
    if (xml.name() == u"widget") widget = a.value("class").startsWith(u"lumatrex::") ? a.value("name").toString() : "";
    if (xml.name() == u"property" && !widget.isEmpty() && a.value("name") != u"geometry")
      found.emplace_back(widget, a.value("name").toLatin1());
  }
  return found;
}

// designer_form.ui is a form saved by Qt Designer's own form editor with
// every property Designer can store changed: uic compiles it (Designer marks
// properties without a setX setter stdset="0", so uic calls setProperty), and
// the compiled form and QUiLoader give every control the same values, none
// of them a new control's.
TEST(DesignerForms, AFormSavedByDesignerCompilesWithUicAndLoadsWithQUiLoaderAlike) {
  QWidget compiled;
  Ui::DesignerForm ui;
  ui.setupUi(&compiled);
  QUiLoader loader;
  loader.addPluginPath(LUMATREX_DESIGNER_PLUGIN_DIR);
  QFile file(LUMATREX_FORMS_DIR "/designer_form.ui");
  ASSERT_TRUE(file.open(QIODevice::ReadOnly));
  std::unique_ptr<QWidget> loaded(loader.load(&file));
  ASSERT_NE(loaded, nullptr) << loader.errorString().toStdString();
  const auto properties = OurPropertiesIn(LUMATREX_FORMS_DIR "/designer_form.ui");
  EXPECT_GT(properties.size(), 55u);
  for (const auto& [name, property] : properties) {
    SCOPED_TRACE((name + "." + property).toStdString());
    QWidget* fromUic = compiled.findChild<QWidget*>(name);
    QWidget* fromLoader = loaded->findChild<QWidget*>(name);
    ASSERT_TRUE(fromUic && fromLoader);
    EXPECT_STREQ(fromLoader->metaObject()->className(), fromUic->metaObject()->className());
    std::unique_ptr<QWidget> fresh(loader.createWidget(fromUic->metaObject()->className()));
    const QVariant value = fromUic->property(property);
    ASSERT_TRUE(value.isValid());
    EXPECT_EQ(fromLoader->property(property), value);
    EXPECT_NE(fresh->property(property), value);
  }
}

}  // namespace
}  // namespace lumatrex
