#include "inspector/component_inspector.h"

#include <QAction>
#include <QComboBox>
#include <QEvent>
#include <QHeaderView>
#include <QHash>
#include <QKeyEvent>
#include <QTimer>
#include <QTreeView>
#include <QTreeWidget>
#include <QTreeWidgetItemIterator>
#include <QVBoxLayout>
#include <functional>

#include "canvas/tmycad.h"
#include "inspector/inspector_grid.h"
#include "inspector/property_dialogs.h"

namespace lumatrex {

namespace {

// Tree items keep the ShapeId of their shape (-1 for the canvas) and, for
// layers, the layer id.
constexpr int kShapeIdRole = Qt::UserRole;
constexpr int kLayerIdRole = Qt::UserRole + 1;

// "Name: Kind", with Fallback for an empty name.
QString Label(const QObject& object, const QString& name, const QString& fallback) {
  const QString kind = QString::fromLatin1(object.metaObject()->className()).section("::", -1);
  return QStringLiteral("%1: %2").arg(name.isEmpty() ? fallback : name, kind);
}

}  // namespace

TComponentInspector::TComponentInspector(QWidget* parent) : QWidget(parent) {
  combo_ = new QComboBox(this);
  combo_->setObjectName("components");
  tree_ = new QTreeWidget(this);
  tree_->setObjectName("componentTree");
  tree_->setHeaderHidden(true);
  tree_->setSelectionMode(QAbstractItemView::ExtendedSelection);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->addWidget(combo_);
  layout->addWidget(tree_);
  connect(tree_, &QTreeWidget::itemSelectionChanged, this, &TComponentInspector::TreeSelectionChanged);
  connect(combo_, &QComboBox::activated, this, &TComponentInspector::ComboChosen);
  // The layer commands sit in the tree's context menu; Ctrl+Up and Ctrl+Down
  // move a layer from the keyboard (see eventFilter).
  tree_->setContextMenuPolicy(Qt::ActionsContextMenu);
  tree_->installEventFilter(this);
  const std::pair<QString, std::function<void()>> actions[] = {
      {tr("Move Layer Up"), [this] { MoveCurrentLayer(-1); }},
      {tr("Move Layer Down"), [this] { MoveCurrentLayer(1); }},
      {tr("Layers…"), [this] { EditLayers(); }},
  };
  for (const auto& [text, run] : actions) connect(new QAction(text, tree_), &QAction::triggered, this, run);
  tree_->addActions(tree_->findChildren<QAction*>(Qt::FindDirectChildrenOnly));
}

void TComponentInspector::MoveCurrentLayer(int step) {
  QTreeWidgetItem* item = tree_->currentItem();
  if (!cad_ || !item || item->data(0, kShapeIdRole).toInt() != -2) return;
  const int id = item->data(0, kLayerIdRole).toInt();
  const int no = cad_->GetLayerNoById(id);
  if (!cad_->MoveLayer(no, no + step)) return;
  Rebuild();
  for (QTreeWidgetItemIterator it(tree_); *it; ++it)
    if ((*it)->data(0, kShapeIdRole).toInt() == -2 && (*it)->data(0, kLayerIdRole).toInt() == id)
      tree_->setCurrentItem(*it);
}

void TComponentInspector::EditLayers() {
  if (!cad_) return;
  TCollectionEditor editor(LayerCollection(*cad_), this);
  editor.exec();
  Rebuild();
  SyncFromCanvas();
}

void TComponentInspector::SetCanvas(TMyCAD* cad) {
  if (cad_) cad_->removeEventFilter(this);
  disconnect(canvasGone_);
  cad_ = cad;
  if (cad_) {
    cad_->installEventFilter(this);
    canvasGone_ = connect(cad_, &QObject::destroyed, this, [this] { SetCanvas(nullptr); });
  }
  builtFor_ = {-1, -1};
  SyncFromCanvas();
}

void TComponentInspector::SetGrid(TInspectorGrid* grid) {
  grid_ = grid;
  TreeSelectionChanged();
}

// The canvas handles its own mouse and keys first; the selection it ends up
// with is read once the event is done. A repaint of the canvas (after an undo,
// say) repaints the grid, whose values are read as it draws.
bool TComponentInspector::eventFilter(QObject* watched, QEvent* event) {
  if (watched == tree_ && event->type() == QEvent::KeyPress) {
    const auto* key = static_cast<QKeyEvent*>(event);
    if (key->modifiers() == Qt::ControlModifier && (key->key() == Qt::Key_Up || key->key() == Qt::Key_Down)) {
      MoveCurrentLayer(key->key() == Qt::Key_Up ? -1 : 1);
      return true;
    }
  }
  if (!cad_ || watched != static_cast<QObject*>(cad_)) return QWidget::eventFilter(watched, event);
  if (event->type() == QEvent::MouseButtonRelease || event->type() == QEvent::KeyRelease)
    QTimer::singleShot(0, this, &TComponentInspector::SyncFromCanvas);
  if (event->type() == QEvent::Paint && grid_) grid_->View().viewport()->update();
  return QWidget::eventFilter(watched, event);
}

void TComponentInspector::Rebuild() {
  const QSignalBlocker quietTree(tree_);
  tree_->clear();
  combo_->clear();
  if (!cad_) return;
  builtFor_ = {cad_->GetShapesCount(), cad_->GetLayersCount()};
  auto* root = new QTreeWidgetItem(tree_, {Label(*cad_, cad_->objectName(), "Canvas")});
  root->setData(0, kShapeIdRole, -1);
  combo_->addItem(root->text(0), -1);
  for (const LayerRec& layer : cad_->Layers()) {
    auto* item = new QTreeWidgetItem(root, {QString::fromStdString(layer.LayerName)});
    item->setData(0, kShapeIdRole, -2);
    item->setData(0, kLayerIdRole, layer.LayerId);
    // Bounded by the shape count once per layer; drawings have few layers.
    for (TMyShape* shape : cad_->GetShapesByLayerId(layer.LayerId))
      if (!shape->HasParentShape()) AddShapeItem(item, shape);
  }
  tree_->expandToDepth(1);
}

QTreeWidgetItem* TComponentInspector::AddShapeItem(QTreeWidgetItem* parent, TMyShape* shape) {
  auto* item = new QTreeWidgetItem(parent, {Label(*shape, QString::fromStdString(shape->GetName()), "Shape")});
  item->setData(0, kShapeIdRole, shape->GetShapeId());
  combo_->addItem(item->text(0), shape->GetShapeId());
  for (std::int32_t no : shape->ChildShapes)
    if (TMyShape* child = cad_->GetShapeByNo(no)) AddShapeItem(item, child);
  return item;
}

void TComponentInspector::SyncFromCanvas() {
  if (!cad_) {
    Rebuild();
    ShowInGrid({});
    return;
  }
  if (builtFor_ != std::pair<int, int>{cad_->GetShapesCount(), cad_->GetLayersCount()}) Rebuild();
  syncing_ = true;
  tree_->clearSelection();
  // One pass over the tree rather than one per selected shape, so selecting
  // everything in a large drawing stays linear.
  QHash<int, QTreeWidgetItem*> items;
  for (QTreeWidgetItemIterator it(tree_); *it; ++it) items.insert((*it)->data(0, kShapeIdRole).toInt(), *it);
  std::vector<QObject*> shown;
  for (TMyShape* shape : cad_->GetSelectedShapes()) {
    if (QTreeWidgetItem* item = items.value(shape->GetShapeId())) item->setSelected(true);
    shown.push_back(shape);
  }
  if (shown.empty() && tree_->topLevelItemCount() > 0) {
    tree_->topLevelItem(0)->setSelected(true);
    shown.push_back(cad_);
  }
  syncing_ = false;
  combo_->setCurrentIndex(shown.size() == 1 ? combo_->findData(shown.front() == cad_ ? -1 : static_cast<TMyShape*>(shown.front())->GetShapeId()) : -1);
  ShowInGrid(shown);
}

void TComponentInspector::TreeSelectionChanged() {
  if (syncing_ || !cad_) return;
  std::vector<QObject*> chosen;
  std::vector<std::int32_t> shapeIds;
  for (QTreeWidgetItem* item : tree_->selectedItems()) {
    const int id = item->data(0, kShapeIdRole).toInt();
    if (id == -1) chosen.push_back(cad_);
    if (id == -2) cad_->SetCurrentLayerId(item->data(0, kLayerIdRole).toInt());
    if (TMyShape* shape = id >= 0 ? cad_->GetShapeByID(id) : nullptr) {
      chosen.push_back(shape);
      shapeIds.push_back(id);
    }
  }
  cad_->DeSelectedAllShapesByCode();
  for (std::int32_t id : shapeIds) cad_->SelectShapeByCode(id, false);
  cad_->Invalidate();
  ShowInGrid(chosen);
}

void TComponentInspector::ComboChosen(int index) {
  const int id = combo_->itemData(index).toInt();
  for (QTreeWidgetItemIterator it(tree_); *it; ++it) {
    if ((*it)->data(0, kShapeIdRole).toInt() == id) {
      tree_->setCurrentItem(*it);  // selects it alone, which selects on the canvas
      return;
    }
  }
}

void TComponentInspector::ShowInGrid(const std::vector<QObject*>& objects) {
  if (grid_) grid_->SetObjects(objects);
}

}  // namespace lumatrex
