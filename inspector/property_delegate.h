// TPropertyDelegate: the in-place editors of the inspector grid's value
// column, chosen by the row's TPropertyKind: a spin box within the
// property's range, a line edit, a check box, a drop-down list of value
// names, a colour list with swatches and "More…", and a "…" button for
// values edited in a dialog (fonts, string lists, pictures, user data).
//
// Text editors commit on Return or when focus leaves them; check boxes and
// lists commit as soon as they change; dialog editors commit when their
// dialog closes with OK.
#pragma once

#include <QStyledItemDelegate>

namespace lumatrex {

class TPropertyDelegate : public QStyledItemDelegate {
  Q_OBJECT

 public:
  using QStyledItemDelegate::QStyledItemDelegate;

  QWidget* createEditor(QWidget* parent, const QStyleOptionViewItem& option, const QModelIndex& index) const override;
  void setEditorData(QWidget* editor, const QModelIndex& index) const override;
  void setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const override;
  void updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex& index) const override;

 private:
  void CommitNow(QWidget* editor) const;
  QWidget* CreateDialogButton(QWidget* parent, const QModelIndex& index) const;
};

}  // namespace lumatrex
