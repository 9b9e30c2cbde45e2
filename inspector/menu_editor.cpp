#include "inspector/menu_editor.h"

#include <QAction>
#include <QCheckBox>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QKeySequenceEdit>
#include <QLineEdit>
#include <QMenu>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

namespace lumatrex {

namespace {

QAction* ActionOf(const QTreeWidgetItem* item) {
  return item ? static_cast<QAction*>(item->data(0, Qt::UserRole).value<QObject*>()) : nullptr;
}

QPushButton* Button(QBoxLayout* layout, const QString& text, const char* name) {
  auto* button = new QPushButton(text);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  layout->addWidget(button);
  return button;
}

}  // namespace

TMenuEditor::TMenuEditor(QWidget* menu, QWidget* parent) : QDialog(parent), menu_(menu) {
  setWindowTitle(tr("Menu Editor"));
  tree_ = new QTreeWidget;
  tree_->setObjectName("menuTree");
  tree_->setHeaderLabels({tr("Text"), tr("Shortcut")});
  text_ = new QLineEdit;
  text_->setObjectName("textEdit");
  shortcut_ = new QKeySequenceEdit;
  shortcut_->setObjectName("shortcutEdit");
  checkable_ = new QCheckBox;
  checkable_->setObjectName("checkableBox");
  checked_ = new QCheckBox;
  checked_->setObjectName("checkedBox");
  auto* form = new QFormLayout;
  form->addRow(tr("Text"), text_);
  form->addRow(tr("Shortcut"), shortcut_);
  form->addRow(tr("Checkable"), checkable_);
  form->addRow(tr("Checked"), checked_);

  auto* buttons = new QHBoxLayout;
  connect(Button(buttons, tr("Add Item"), "btnAdd"), &QPushButton::clicked, this, [this] { AddItem(tr("New Item")); });
  connect(Button(buttons, tr("Add Submenu"), "btnAddMenu"), &QPushButton::clicked, this, [this] { AddSubmenu(tr("New Menu")); });
  connect(Button(buttons, tr("Remove"), "btnRemove"), &QPushButton::clicked, this, &TMenuEditor::RemoveCurrent);
  connect(Button(buttons, tr("Up"), "btnUp"), &QPushButton::clicked, this, [this] { MoveCurrent(-1); });
  connect(Button(buttons, tr("Down"), "btnDown"), &QPushButton::clicked, this, [this] { MoveCurrent(1); });
  buttons->addStretch();
  connect(Button(buttons, tr("Close"), "btnClose"), &QPushButton::clicked, this, &QDialog::accept);

  auto* layout = new QVBoxLayout(this);
  layout->addWidget(tree_, 1);
  layout->addLayout(form);
  layout->addLayout(buttons);

  connect(tree_, &QTreeWidget::currentItemChanged, this, &TMenuEditor::ShowCurrent);
  connect(text_, &QLineEdit::textEdited, this, &TMenuEditor::Apply);
  connect(shortcut_, &QKeySequenceEdit::keySequenceChanged, this, &TMenuEditor::Apply);
  connect(checkable_, &QCheckBox::toggled, this, &TMenuEditor::Apply);
  connect(checked_, &QCheckBox::toggled, this, &TMenuEditor::Apply);
  Reload(nullptr);
}

QAction* TMenuEditor::CurrentAction() const { return ActionOf(tree_->currentItem()); }

QWidget* TMenuEditor::ContainerOf(QTreeWidgetItem* item) const {
  QAction* parent = item ? ActionOf(item->parent()) : nullptr;
  return parent ? parent->menu() : menu_.data();
}

QAction* TMenuEditor::Insert(QAction* action) {
  QTreeWidgetItem* current = tree_->currentItem();
  QAction* at = ActionOf(current);
  if (at && at->menu()) {
    at->menu()->addAction(action);
  } else {
    QWidget* container = ContainerOf(current);
    const QList<QAction*> siblings = container->actions();
    const qsizetype i = siblings.indexOf(at);
    container->insertAction(i >= 0 && i + 1 < siblings.size() ? siblings[i + 1] : nullptr, action);
  }
  Reload(action);
  return action;
}

QAction* TMenuEditor::AddItem(const QString& text) {
  if (!menu_) return nullptr;
  return Insert(new QAction(text, menu_));
}

QAction* TMenuEditor::AddSubmenu(const QString& text) {
  if (!menu_) return nullptr;
  auto* submenu = new QMenu(text, menu_);
  return Insert(submenu->menuAction());
}

void TMenuEditor::RemoveCurrent() {
  QTreeWidgetItem* item = tree_->currentItem();
  QAction* action = ActionOf(item);
  if (!action) return;
  ContainerOf(item)->removeAction(action);
  // A submenu's action belongs to its menu; deleting the menu takes both.
  if (action->menu()) action->menu()->deleteLater();
  else action->deleteLater();
  Reload(nullptr);
}

void TMenuEditor::MoveCurrent(int step) {
  QTreeWidgetItem* item = tree_->currentItem();
  QAction* action = ActionOf(item);
  if (!action) return;
  QWidget* container = ContainerOf(item);
  QList<QAction*> siblings = container->actions();
  const qsizetype from = siblings.indexOf(action);
  const qsizetype to = from + step;
  if (to < 0 || to >= siblings.size()) return;
  container->removeAction(action);
  siblings = container->actions();
  container->insertAction(to < siblings.size() ? siblings[to] : nullptr, action);
  Reload(action);
}

void TMenuEditor::Reload(QAction* current) {
  loading_ = true;
  tree_->clear();
  if (menu_) AddActions(tree_->invisibleRootItem(), *menu_);
  tree_->expandAll();
  loading_ = false;
  for (QTreeWidgetItemIterator it(tree_); *it; ++it)
    if (ActionOf(*it) == current) tree_->setCurrentItem(*it);
  ShowCurrent();
}

void TMenuEditor::AddActions(QTreeWidgetItem* parent, const QWidget& container) {
  for (QAction* action : container.actions()) {
    auto* item = new QTreeWidgetItem(parent, {action->isSeparator() ? QStringLiteral("—") : action->text(),
                                              action->shortcut().toString()});
    item->setData(0, Qt::UserRole, QVariant::fromValue<QObject*>(action));
    if (action->menu()) AddActions(item, *action->menu());
  }
}

void TMenuEditor::ShowCurrent() {
  if (loading_) return;
  loading_ = true;
  QAction* action = CurrentAction();
  text_->setText(action ? action->text() : QString());
  shortcut_->setKeySequence(action ? action->shortcut() : QKeySequence());
  checkable_->setChecked(action && action->isCheckable());
  checked_->setChecked(action && action->isChecked());
  for (QWidget* field : std::initializer_list<QWidget*>{text_, shortcut_, checkable_, checked_}) field->setEnabled(action);
  loading_ = false;
}

void TMenuEditor::Apply() {
  QAction* action = CurrentAction();
  if (loading_ || !action) return;
  action->setText(text_->text());
  if (!action->menu()) action->setShortcut(shortcut_->keySequence());
  action->setCheckable(checkable_->isChecked());
  action->setChecked(checkable_->isChecked() && checked_->isChecked());
  tree_->currentItem()->setText(0, action->text());
  tree_->currentItem()->setText(1, action->shortcut().toString());
}

}  // namespace lumatrex
