// The canvas's entry in Designer's context menu: "Edit user data…" opens the
// user data editor on the canvas under the mouse.
#pragma once

#include <QtDesigner/QDesignerTaskMenuExtension>
#include <QtDesigner/QExtensionFactory>

class QAction;

namespace lumatrex {

class TMyCAD;

class TCanvasTaskMenu : public QObject, public QDesignerTaskMenuExtension {
  Q_OBJECT
  Q_INTERFACES(QDesignerTaskMenuExtension)

 public:
  TCanvasTaskMenu(TMyCAD* canvas, QObject* parent);
  QAction* preferredEditAction() const override { return editUserData_; }
  QList<QAction*> taskActions() const override { return {editUserData_}; }

 private:
  TMyCAD* canvas_;
  QAction* editUserData_;
};

class TCanvasTaskMenuFactory : public QExtensionFactory {
  Q_OBJECT

 public:
  using QExtensionFactory::QExtensionFactory;

 protected:
  QObject* createExtension(QObject* object, const QString& iid, QObject* parent) const override;
};

}  // namespace lumatrex
