// TComponentInspector: the components of a canvas as a combo box and a tree
// (canvas, its layers, their top-level shapes, group members nested under
// their group), bound to a TInspectorGrid.
//
// Choosing in the tree or the combo box selects on the canvas (shapes) or
// makes a layer current, and shows the choice in the grid. The other way,
// SyncFromCanvas follows the canvas's selection; it runs by itself after every
// mouse or key release on the canvas, and a host calls it after changing the
// selection or the shape list by code.
//
// Layers are reordered in the canvas's layer list with Ctrl+Up and Ctrl+Down
// on a layer, or from the tree's context menu, which also opens the layer
// collection editor ("Layers…").
#pragma once

#include <QPointer>
#include <QWidget>

class QComboBox;
class QTreeWidget;
class QTreeWidgetItem;

namespace lumatrex {

class TMyCAD;
class TMyShape;
class TInspectorGrid;

class TComponentInspector : public QWidget {
  Q_OBJECT

 public:
  explicit TComponentInspector(QWidget* parent = nullptr);

  void SetCanvas(TMyCAD* cad);
  TMyCAD* Canvas() const { return cad_; }
  // The grid that shows the chosen components; not owned.
  void SetGrid(TInspectorGrid* grid);
  QComboBox& Components() { return *combo_; }
  QTreeWidget& Tree() { return *tree_; }
  // Rebuilds the tree and combo box when the shapes or layers changed, then
  // selects what the canvas has selected (the canvas itself when nothing).
  void SyncFromCanvas();

  QSize sizeHint() const override { return {260, 240}; }

 protected:
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  void Rebuild();
  QTreeWidgetItem* AddShapeItem(QTreeWidgetItem* parent, TMyShape* shape);
  void TreeSelectionChanged();
  void ComboChosen(int index);
  void ShowInGrid(const std::vector<QObject*>& objects);
  // Moves the current tree item's layer by Step places in the canvas's list.
  void MoveCurrentLayer(int step);
  void EditLayers();

  TMyCAD* cad_ = nullptr;  // cleared when the canvas is destroyed
  QPointer<TInspectorGrid> grid_;
  QMetaObject::Connection canvasGone_;
  QComboBox* combo_;
  QTreeWidget* tree_;
  // Shape and layer counts when the tree was built: a change means rebuild.
  std::pair<int, int> builtFor_{-1, -1};
  bool syncing_ = false;
};

}  // namespace lumatrex
