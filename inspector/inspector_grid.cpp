#include "inspector/inspector_grid.h"

#include <QAction>
#include <QHeaderView>
#include <QKeyEvent>
#include <QLineEdit>
#include <QSortFilterProxyModel>
#include <QTreeView>
#include <QVBoxLayout>

#include "inspector/property_delegate.h"

namespace lumatrex {

TInspectorGrid::TInspectorGrid(QWidget* parent) : QWidget(parent) {
  model_ = new TPropertyModel(this);
  proxy_ = new QSortFilterProxyModel(this);
  proxy_->setSourceModel(model_);
  proxy_->setRecursiveFilteringEnabled(true);
  proxy_->setFilterCaseSensitivity(Qt::CaseInsensitive);
  proxy_->setFilterKeyColumn(0);

  filter_ = new QLineEdit(this);
  filter_->setObjectName("filter");
  filter_->setPlaceholderText(tr("Filter"));
  filter_->setClearButtonEnabled(true);
  connect(filter_, &QLineEdit::textChanged, this, &TInspectorGrid::SetFilter);

  view_ = new QTreeView(this);
  view_->setObjectName("grid");
  view_->setModel(proxy_);
  view_->setItemDelegate(new TPropertyDelegate(view_));
  view_->setAlternatingRowColors(true);
  view_->setUniformRowHeights(true);
  view_->setEditTriggers(QAbstractItemView::DoubleClicked | QAbstractItemView::SelectedClicked |
                         QAbstractItemView::EditKeyPressed | QAbstractItemView::AnyKeyPressed);
  view_->header()->setSectionResizeMode(QHeaderView::Stretch);
  view_->installEventFilter(this);
  connect(model_, &QAbstractItemModel::modelReset, this, &TInspectorGrid::ShowAll);

  auto* reset = new QAction(tr("Reset to default"), view_);
  reset->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_R));
  reset->setShortcutContext(Qt::WidgetWithChildrenShortcut);
  connect(reset, &QAction::triggered, this, &TInspectorGrid::ResetCurrent);
  view_->addAction(reset);
  view_->setContextMenuPolicy(Qt::ActionsContextMenu);

  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(filter_);
  layout->addWidget(view_);
}

void TInspectorGrid::SetObjects(const std::vector<QObject*>& objects) { model_->SetObjects(objects); }
void TInspectorGrid::SetObject(QObject* object) { model_->SetObject(object); }
QString TInspectorGrid::Filter() const { return filter_->text(); }

void TInspectorGrid::SetFilter(const QString& text) {
  if (filter_->text() != text) filter_->setText(text);  // comes back here through textChanged
  proxy_->setFilterFixedString(text);
  ShowAll();
}

// Sections open, their headings across both columns; groups stay closed.
void TInspectorGrid::ShowAll() {
  for (int r = 0; r < proxy_->rowCount(); ++r) {
    view_->setFirstColumnSpanned(r, {}, true);
    view_->expand(proxy_->index(r, 0));
  }
}

QModelIndex TInspectorGrid::ViewIndex(const QString& path) const {
  return proxy_->mapFromSource(model_->FindProperty(path));
}

bool TInspectorGrid::ResetCurrent() {
  return model_->ResetToDefault(proxy_->mapToSource(view_->currentIndex().siblingAtColumn(1)));
}

// Return on a row edits its value, as the grid's main key; the tree would
// otherwise only edit on F2 or typing. The Return that commits an open
// editor also arrives here, and is left alone.
bool TInspectorGrid::eventFilter(QObject* watched, QEvent* event) {
  if (watched == view_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    const QModelIndex value = view_->currentIndex().siblingAtColumn(1);
    if ((key->key() == Qt::Key_Return || key->key() == Qt::Key_Enter) && value.flags() & Qt::ItemIsEditable &&
        !view_->indexWidget(value)) {
      view_->setCurrentIndex(value);
      view_->edit(value);
      return true;
    }
  }
  return QWidget::eventFilter(watched, event);
}

}  // namespace lumatrex
