#include "layers_panel.h"

#include <QHBoxLayout>
#include <QInputDialog>
#include <QListWidget>
#include <QMessageBox>
#include <QPushButton>
#include <QVBoxLayout>

#include "canvas/tmycad.h"

namespace lumatrex::editor {

TLayersPanel::TLayersPanel(TMyCAD& cad, QWidget* parent) : QWidget(parent), cad_(cad), list_(new QListWidget) {
  auto* buttons = new QHBoxLayout;
  const std::pair<const char*, void (TLayersPanel::*)()> actions[] = {
      {"New", &TLayersPanel::AddLayer},
      {"Rename", &TLayersPanel::RenameLayer},
      {"Merge", &TLayersPanel::MergeLayer},
      {"Delete", &TLayersPanel::DeleteLayer}};
  for (const auto& [label, slot] : actions) {
    auto* button = new QPushButton(tr(label));
    connect(button, &QPushButton::clicked, this, slot);
    buttons->addWidget(button);
  }
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(list_);
  layout->addLayout(buttons);
  connect(list_, &QListWidget::itemChanged, this, &TLayersPanel::ItemChanged);
  connect(list_, &QListWidget::currentRowChanged, this, [this](int row) {
    if (!refreshing_ && row >= 0) cad_.SetCurrentLayerId(cad_.GetLayerIdByNo(row));
  });
  Refresh();
}

void TLayersPanel::Refresh() {
  refreshing_ = true;
  list_->clear();
  for (const LayerRec& layer : cad_.Layers()) {
    auto* item = new QListWidgetItem(QString::fromStdString(layer.LayerName), list_);
    item->setFlags(item->flags() | Qt::ItemIsUserCheckable);
    item->setCheckState(layer.Visible ? Qt::Checked : Qt::Unchecked);
    item->setData(Qt::UserRole, layer.LayerId);
  }
  list_->setCurrentRow(cad_.GetLayerNoById(cad_.GetCurrentLayerId()));
  refreshing_ = false;
}

std::int32_t TLayersPanel::SelectedLayerId() const {
  const QListWidgetItem* item = list_->currentItem();
  return item ? item->data(Qt::UserRole).toInt() : -1;
}

void TLayersPanel::ItemChanged(QListWidgetItem* item) {
  if (refreshing_) return;
  const std::int32_t id = item->data(Qt::UserRole).toInt();
  if (item->checkState() == Qt::Checked)
    cad_.VisibleLayerByID(id);
  else
    cad_.InVisibleLayerByID(id);
  emit LayersEdited();
}

void TLayersPanel::AddLayer() {
  const QString name = QInputDialog::getText(this, tr("New layer"), tr("Name:"));
  if (name.isEmpty()) return;
  if (cad_.NewLayer(name.toStdString(), true) == -1) {
    QMessageBox::information(this, tr("New layer"), tr("A layer with that name exists."));
    return;
  }
  emit LayersEdited();
}

void TLayersPanel::RenameLayer() {
  const std::int32_t id = SelectedLayerId();
  if (id < 0) return;
  const QString name = QInputDialog::getText(this, tr("Rename layer"), tr("Name:"), QLineEdit::Normal,
                                             QString::fromStdString(cad_.GetLayerNameByID(id)));
  if (name.isEmpty()) return;
  cad_.SetLayerNameByID(id, name.toStdString());
  emit LayersEdited();
}

void TLayersPanel::MergeLayer() {
  const std::int32_t source = SelectedLayerId();
  QStringList others;
  for (const LayerRec& layer : cad_.Layers())
    if (layer.LayerId != source) others << QString::fromStdString(layer.LayerName);
  if (source < 0 || others.isEmpty()) return;
  bool ok = false;
  const QString target = QInputDialog::getItem(this, tr("Merge layer"), tr("Merge into:"), others, 0, false, &ok);
  if (!ok) return;
  cad_.MergeLayers(cad_.GetLayerIdByName(target.toStdString()), source);
  emit LayersEdited();
}

void TLayersPanel::DeleteLayer() {
  const std::int32_t id = SelectedLayerId();
  if (id < 0) return;
  cad_.DeleteLayerByID(id);
  emit LayersEdited();
}

}  // namespace lumatrex::editor
