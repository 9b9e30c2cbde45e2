// The editor's layers panel: lists the canvas's layers with a visibility check
// box each, marks the current layer, and offers new, rename, merge and delete.
#pragma once

#include <QWidget>

class QListWidget;
class QListWidgetItem;

namespace lumatrex {
class TMyCAD;
}

namespace lumatrex::editor {

class TLayersPanel : public QWidget {
  Q_OBJECT

 public:
  explicit TLayersPanel(TMyCAD& cad, QWidget* parent = nullptr);
  // Rebuilds the list from the canvas (after a load or an undo).
  void Refresh();

 signals:
  // A layer was added, renamed, merged, deleted, shown or hidden: the drawing
  // has changed and needs saving.
  void LayersEdited();

 private:
  void AddLayer();
  void RenameLayer();
  void MergeLayer();
  void DeleteLayer();
  void ItemChanged(QListWidgetItem* item);
  std::int32_t SelectedLayerId() const;

  TMyCAD& cad_;
  QListWidget* list_;
  bool refreshing_ = false;
};

}  // namespace lumatrex::editor
