// The editing commands of the demo editor as one list of actions, shared by
// the Edit menu and the canvas's context menu: undo, redo, cut, copy,
// paste, duplicate, flips, tilts, group, ungroup, combine and uncombine.
#pragma once

#include <QList>
#include <functional>

class QAction;
class QWidget;

namespace lumatrex {
class TMyCAD;
}

namespace lumatrex::editor {

// Actions parented to Parent acting on Cad; Edited runs after each command
// that may have changed the drawing. The tilts ask for an angle in degrees.
QList<QAction*> MakeEditActions(QWidget* parent, TMyCAD& cad, const std::function<void()>& edited);

}  // namespace lumatrex::editor
