#include "edit_actions.h"

#include <QAction>
#include <QInputDialog>
#include <QKeySequence>
#include <QWidget>
#include <cmath>
#include <numbers>

#include "canvas/tmycad.h"
#include "shapes/groups.h"

namespace lumatrex::editor {

namespace {

struct TCommand {
  const char* label;
  QKeySequence key;
  std::function<void(TMyCAD&, QWidget*)> run;
};

void AskTilt(TMyCAD& cad, QWidget* parent, bool horizontal) {
  bool ok = false;
  const double degrees = QInputDialog::getDouble(parent, QObject::tr("Tilt"), QObject::tr("Angle in degrees:"), 15,
                                                 -89, 89, 1, &ok);
  if (!ok) return;
  const double radians = degrees * std::numbers::pi / 180;
  horizontal ? cad.TiltHoriz(radians) : cad.TiltVert(radians);
}

// Takes apart the selected groups (Combined false) or combined figures.
void TakeApart(TMyCAD& cad, bool combined) {
  const std::vector<TMyShape*> selected = cad.GetSelectedShapes();
  for (TMyShape* s : selected)
    if ((dynamic_cast<TMyCombine*>(s) != nullptr) == combined) cad.UnGroupShape(s, true);
}

}  // namespace

QList<QAction*> MakeEditActions(QWidget* parent, TMyCAD& cad, const std::function<void()>& edited) {
  const TCommand commands[] = {
      {"&Undo", QKeySequence::Undo, [](TMyCAD& c, QWidget*) { c.PopFromUndoRedoShapeList(); }},
      {"&Redo", QKeySequence(QObject::tr("Ctrl+Shift+Z")), [](TMyCAD& c, QWidget*) { c.Redo(); }},
      {nullptr, {}, {}},
      {"Cu&t", QKeySequence::Cut, [](TMyCAD& c, QWidget*) { c.Cut(); }},
      {"&Copy", QKeySequence::Copy, [](TMyCAD& c, QWidget*) { c.Copy(); }},
      {"&Paste", QKeySequence::Paste, [](TMyCAD& c, QWidget*) { c.Paste(); }},
      {"D&uplicate", QKeySequence(QObject::tr("Ctrl+D")), [](TMyCAD& c, QWidget*) { c.Duplicate(); }},
      {nullptr, {}, {}},
      {"Flip &horizontally", {}, [](TMyCAD& c, QWidget*) { c.FlipHoriz(); }},
      {"Flip &vertically", {}, [](TMyCAD& c, QWidget*) { c.FlipVert(); }},
      {"Tilt horizontally...", {}, [](TMyCAD& c, QWidget* p) { AskTilt(c, p, true); }},
      {"Tilt vertically...", {}, [](TMyCAD& c, QWidget* p) { AskTilt(c, p, false); }},
      {nullptr, {}, {}},
      {"&Group", QKeySequence(QObject::tr("Ctrl+G")),
       [](TMyCAD& c, QWidget*) { c.GroupShapes(c.GetSelectedShapes(), true); }},
      {"U&ngroup", QKeySequence(QObject::tr("Ctrl+Shift+G")), [](TMyCAD& c, QWidget*) { TakeApart(c, false); }},
      {"Com&bine", QKeySequence(QObject::tr("Ctrl+K")),
       [](TMyCAD& c, QWidget*) { c.CombineShapes(c.GetSelectedShapes(), true); }},
      {"Uncombine", QKeySequence(QObject::tr("Ctrl+Shift+K")), [](TMyCAD& c, QWidget*) { TakeApart(c, true); }},
  };
  QList<QAction*> actions;
  for (const TCommand& command : commands) {
    auto* action = new QAction(parent);
    if (!command.label) {
      action->setSeparator(true);
      actions << action;
      continue;
    }
    action->setText(QObject::tr(command.label));
    action->setShortcut(command.key);
    QObject::connect(action, &QAction::triggered, parent, [&cad, parent, edited, run = command.run] {
      run(cad, parent);
      cad.Invalidate();
      edited();
    });
    actions << action;
  }
  // Ctrl+Y is redo on other systems' editors as well.
  actions[1]->setShortcuts({QKeySequence(QObject::tr("Ctrl+Shift+Z")), QKeySequence(QObject::tr("Ctrl+Y"))});
  return actions;
}

}  // namespace lumatrex::editor
