// The Qt Designer plugin: puts TMyCAD, TRsRuler, TRsRulerCorner,
// TInspectorGrid and TComponentInspector in Designer's widget box under
// "Lumatrex", and adds "Edit user data…" to a canvas's context menu.
//
// Designer finds the plugin in the "designer" folder of its plugin paths:
// `cmake --install` puts it in <libdir>/qt6/plugins/designer under the install
// prefix, which is Qt's own folder for the prefix /usr; for other prefixes
// add <prefix>/<libdir>/qt6/plugins to QT_PLUGIN_PATH.
#pragma once

#include <QtUiPlugin/QDesignerCustomWidgetCollectionInterface>
#include <QtUiPlugin/QDesignerCustomWidgetInterface>
#include <functional>

namespace lumatrex {

// One widget of the collection, described by the values Designer asks for.
class TWidgetPlugin : public QObject, public QDesignerCustomWidgetInterface {
  Q_OBJECT
  Q_INTERFACES(QDesignerCustomWidgetInterface)

 public:
  struct TDescription {
    QString className;  // with the namespace, as forms and uic spell it
    QString header;
    QString toolTip;
    QString objectName;  // the name a new instance gets on a form
    QSize size;          // its size on a new form
    QColor iconColor;
    std::function<QWidget*(QWidget* parent)> create;
  };
  TWidgetPlugin(TDescription description, QObject* parent);

  QString name() const override { return d_.className; }
  QString group() const override { return QStringLiteral("Lumatrex"); }
  QString toolTip() const override { return d_.toolTip; }
  QString whatsThis() const override { return d_.toolTip; }
  QString includeFile() const override { return d_.header; }
  QIcon icon() const override;
  bool isContainer() const override { return false; }
  QWidget* createWidget(QWidget* parent) override { return d_.create(parent); }
  bool isInitialized() const override { return initialized_; }
  void initialize(QDesignerFormEditorInterface* core) override;
  QString domXml() const override;

 private:
  TDescription d_;
  bool initialized_ = false;
};

class TLumatrexWidgets : public QObject, public QDesignerCustomWidgetCollectionInterface {
  Q_OBJECT
  Q_PLUGIN_METADATA(IID "org.qt-project.Qt.QDesignerCustomWidgetCollectionInterface")
  Q_INTERFACES(QDesignerCustomWidgetCollectionInterface)

 public:
  explicit TLumatrexWidgets(QObject* parent = nullptr);
  QList<QDesignerCustomWidgetInterface*> customWidgets() const override { return widgets_; }

 private:
  QList<QDesignerCustomWidgetInterface*> widgets_;
};

}  // namespace lumatrex
