#include "designer/canvas_task_menu.h"

#include <QAction>

#include "canvas/tmycad.h"
#include "inspector/property_dialogs.h"

namespace lumatrex {

TCanvasTaskMenu::TCanvasTaskMenu(TMyCAD* canvas, QObject* parent)
    : QObject(parent), canvas_(canvas), editUserData_(new QAction(tr("Edit user data…"), this)) {
  connect(editUserData_, &QAction::triggered, this, [this] { EditUserData(canvas_, canvas_->UserData()); });
}

QObject* TCanvasTaskMenuFactory::createExtension(QObject* object, const QString& iid, QObject* parent) const {
  auto* canvas = qobject_cast<TMyCAD*>(object);
  if (!canvas || iid != Q_TYPEID(QDesignerTaskMenuExtension)) return nullptr;
  return new TCanvasTaskMenu(canvas, parent);
}

}  // namespace lumatrex
