// TInspectorGrid: the object inspector's property grid. A filter box above a
// two-column tree (name, value) of a TPropertyModel: one section per class,
// groups to expand, and in-place editors in the value column.
//
// Keys: the arrows move between rows, Return (or F2, or typing) edits the
// value, Return commits and Escape cancels, Ctrl+R resets the row to its
// default where one is known (also in the context menu). The filter keeps the
// rows whose name contains its text, case-insensitively, with their sections.
#pragma once

#include <QWidget>
#include <vector>

#include "inspector/property_model.h"

class QLineEdit;
class QSortFilterProxyModel;
class QTreeView;

namespace lumatrex {

class TInspectorGrid : public QWidget {
  Q_OBJECT
  Q_PROPERTY(QString Filter READ Filter WRITE SetFilter)

 public:
  explicit TInspectorGrid(QWidget* parent = nullptr);

  void SetObjects(const std::vector<QObject*>& objects);
  void SetObject(QObject* object);
  TPropertyModel& Model() { return *model_; }
  QTreeView& View() { return *view_; }
  QLineEdit& FilterBox() { return *filter_; }
  QString Filter() const;
  void SetFilter(const QString& text);
  // The view's value cell of the property at Path; invalid when filtered out.
  QModelIndex ViewIndex(const QString& path) const;
  // Resets the current row to its default; false when none is known.
  bool ResetCurrent();

  QSize sizeHint() const override { return {260, 400}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void ShowAll();
  TPropertyModel* model_;
  QSortFilterProxyModel* proxy_;
  QTreeView* view_;
  QLineEdit* filter_;
};

}  // namespace lumatrex
