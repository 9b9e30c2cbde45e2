// The editor's object inspector: a dock with the component tree above the
// property grid, following the canvas's selection, and the Edit menu's
// "User data…" command.
#pragma once

class QMainWindow;
class QMenu;

namespace lumatrex {

class TMyCAD;
class TComponentInspector;

// Docks the inspector on the right of Window, bound to Canvas; returns its
// component inspector (owned by the dock) so that the window can resync it
// after the drawing is replaced.
TComponentInspector* AddInspectorDock(QMainWindow& window, TMyCAD& canvas);
// Adds "User data…" to Menu: edits the user data of the one selected shape
// (as an undoable change), or of the canvas when no single shape is selected.
void AddUserDataAction(QMenu& menu, TMyCAD& canvas);

}  // namespace lumatrex
