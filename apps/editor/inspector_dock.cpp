#include "inspector_dock.h"

#include <QDockWidget>
#include <QMainWindow>
#include <QMenu>
#include <QSplitter>

#include "canvas/tmycad.h"
#include "inspector/component_inspector.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"
#include "inspector/property_model.h"

namespace lumatrex {

TComponentInspector* AddInspectorDock(QMainWindow& window, TMyCAD& canvas) {
  auto* splitter = new QSplitter(Qt::Vertical);
  auto* components = new TComponentInspector(splitter);
  auto* grid = new TInspectorGrid(splitter);
  splitter->setStretchFactor(1, 2);
  components->SetGrid(grid);
  components->SetCanvas(&canvas);
  auto* dock = new QDockWidget(QObject::tr("Inspector"), &window);
  dock->setObjectName("inspector");
  dock->setWidget(splitter);
  window.addDockWidget(Qt::RightDockWidgetArea, dock);
  return components;
}

void AddUserDataAction(QMenu& menu, TMyCAD& canvas) {
  menu.addAction(QObject::tr("User &data…"), &canvas, [&canvas] {
    TMyShape* shape = canvas.GetSelectedShape();
    QObject* target = shape ? static_cast<QObject*>(shape) : &canvas;
    // Through the property model, so a shape's edit is one undo step.
    TPropertyModel model;
    model.SetObject(target);
    EditPropertyInDialog(canvas.window(), model, model.FindProperty("UserData"));
  });
}

}  // namespace lumatrex
