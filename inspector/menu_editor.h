// TMenuEditor: edits a menu bar's or a menu's tree of actions in place: add
// items and submenus, remove, reorder, and set text, shortcut and check
// state. Every change reaches the live menu at once, so the dialog has only
// a Close button.
#pragma once

#include <QDialog>
#include <QPointer>

class QAction;
class QCheckBox;
class QKeySequenceEdit;
class QLineEdit;
class QTreeWidget;
class QTreeWidgetItem;

namespace lumatrex {

class TMenuEditor : public QDialog {
  Q_OBJECT

 public:
  // Menu is a QMenuBar or a QMenu; it is not owned and must outlive the editor.
  explicit TMenuEditor(QWidget* menu, QWidget* parent = nullptr);

  QTreeWidget& Tree() { return *tree_; }
  // The commands behind the buttons, acting on the current tree item.
  // New entries go into the current submenu, else after the current item.
  QAction* AddItem(const QString& text);
  QAction* AddSubmenu(const QString& text);
  void RemoveCurrent();
  void MoveCurrent(int step);
  QAction* CurrentAction() const;

 private:
  QAction* Insert(QAction* action);
  // The widget whose action list holds Item's action.
  QWidget* ContainerOf(QTreeWidgetItem* item) const;
  void Reload(QAction* current);
  void AddActions(QTreeWidgetItem* parent, const QWidget& container);
  void ShowCurrent();
  void Apply();

  QPointer<QWidget> menu_;
  QTreeWidget* tree_;
  QLineEdit* text_;
  QKeySequenceEdit* shortcut_;
  QCheckBox* checkable_;
  QCheckBox* checked_;
  bool loading_ = false;
};

}  // namespace lumatrex
