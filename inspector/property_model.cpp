#include "inspector/property_model.h"

#include <QColor>
#include <QPixmap>
#include <map>

#include "canvas/tmycad.h"
#include "canvas/undo.h"
#include "inspector/property_nodes.h"
#include "platform/qt_interop.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "shapes/shape_factory.h"

namespace lumatrex {

namespace {

// The canvas a shape lives on, when it is in that canvas's list.
TMyCAD* CanvasOf(QObject* object) {
  auto* shape = qobject_cast<TMyShape*>(object);
  auto* cad = shape ? dynamic_cast<TMyCAD*>(shape->Owner()) : nullptr;
  return cad && cad->GetShapeByNo(shape->ShapeNo) == shape ? cad : nullptr;
}

// What an edit of Property must bring back on undo besides the shape's copy.
// Undo assigns the saved copy, and Assign leaves some properties out
// (Visible, CaptionShow, the Log* text settings, the enable switches, pen
// join and end kinds, ...), so the property's earlier value is kept too and
// written back where the copy did not restore it. Properties Assign does
// copy compare equal by then and are not written again, which matters for
// setters that act rather than store (Angle rotates, IsFlipHorz flips).
TStateKeeper KeepProperty(const QByteArray& property) {
  return [property](const TMyShape& shape) -> TKeptState {
    const QVariant before = shape.property(property.constData());
    if (!before.isValid()) return {};
    return [property, before](TMyShape& live) {
      if (live.property(property.constData()) != before) live.setProperty(property.constData(), before);
    };
  };
}

// One "ACT_CHANGE" step per canvas for the shapes an edit of Property is
// about to change.
void RecordChange(const std::vector<QObject*>& objects, const QByteArray& property) {
  std::map<TMyCAD*, std::vector<TMyShape*>> byCanvas;
  for (QObject* o : objects)
    if (TMyCAD* cad = CanvasOf(o)) byCanvas[cad].push_back(static_cast<TMyShape*>(o));
  for (auto& [cad, shapes] : byCanvas) cad->PushtoUndoRedoShapeList(shapes, ACT_CHANGE, KeepProperty(property));
}

// Shape setters only store, so the canvas showing them must repaint; controls
// repaint in their own setters, except for changes made through a sub-object.
void Repaint(const std::vector<QObject*>& objects) {
  for (QObject* o : objects) {
    if (TMyCAD* cad = CanvasOf(o)) cad->Invalidate();
    if (auto* control = qobject_cast<TCustomControl*>(o)) control->Invalidate();
  }
}

// A fresh object of Object's class, whose values are the defaults; nullptr
// for classes the inspector does not know how to create. Shapes are made for
// Object's owner, as new shapes take the canvas's settings.
std::unique_ptr<QObject> Prototype(QObject* object) {
  if (auto* shape = qobject_cast<TMyShape*>(object))
    return CreateShapeByClassName(shape->ClassName(), shape->Owner());
  if (qobject_cast<TMyCAD*>(object)) return std::make_unique<TMyCAD>();
  if (qobject_cast<TRsRulerCorner*>(object)) return std::make_unique<TRsRulerCorner>();
  if (qobject_cast<TRsRuler*>(object)) return std::make_unique<TRsRuler>();
  return nullptr;
}

bool HasPrototype(QObject* object) {
  return qobject_cast<TMyShape*>(object) || qobject_cast<TMyCAD*>(object) || qobject_cast<TRsBaseRuler*>(object);
}

bool IsValueKind(TPropertyKind kind) {
  return kind != TPropertyKind::Section && kind != TPropertyKind::Group && kind != TPropertyKind::Other;
}

}  // namespace

TPropertyModel::TPropertyModel(QObject* parent)
    : QAbstractItemModel(parent), root_(BuildPropertyTree({})) {}

TPropertyModel::~TPropertyModel() {
  for (auto& c : watches_) disconnect(c);
}

void TPropertyModel::SetObjects(const std::vector<QObject*>& objects) {
  beginResetModel();
  for (auto& c : watches_) disconnect(c);
  watches_.clear();
  objects_ = objects;
  for (QObject* o : objects_)
    watches_.push_back(connect(o, &QObject::destroyed, this, [this, o] { Forget(o); }));
  root_ = BuildPropertyTree(objects_);
  endResetModel();
}

void TPropertyModel::Forget(QObject* object) {
  std::vector<QObject*> rest;
  for (QObject* o : objects_)
    if (o != object) rest.push_back(o);
  SetObjects(rest);
}

TPropertyNode* TPropertyModel::NodeOf(const QModelIndex& index) const {
  return index.isValid() ? static_cast<TPropertyNode*>(index.internalPointer()) : root_.get();
}

QModelIndex TPropertyModel::IndexOf(const TPropertyNode* node, int column) const {
  return node == root_.get() ? QModelIndex() : createIndex(node->row, column, const_cast<TPropertyNode*>(node));
}

QModelIndex TPropertyModel::index(int row, int column, const QModelIndex& parent) const {
  const TPropertyNode* node = NodeOf(parent);
  if (row < 0 || row >= static_cast<int>(node->children.size()) || column < 0 || column > 1) return {};
  return IndexOf(node->children[row].get(), column);
}

QModelIndex TPropertyModel::parent(const QModelIndex& index) const {
  const TPropertyNode* node = NodeOf(index);
  return node == root_.get() ? QModelIndex() : IndexOf(node->parent, 0);
}

int TPropertyModel::rowCount(const QModelIndex& parent) const {
  if (parent.column() > 0) return 0;
  return static_cast<int>(NodeOf(parent)->children.size());
}

int TPropertyModel::columnCount(const QModelIndex&) const { return 2; }

QVariant TPropertyModel::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  return section == 0 ? tr("Property") : tr("Value");
}

QModelIndex TPropertyModel::FindProperty(const QString& path) const {
  const TPropertyNode* node = path.isEmpty() ? nullptr : root_->Find(path);
  return node && node->kind != TPropertyKind::Section ? IndexOf(node, 1) : QModelIndex();
}

QVariant TPropertyModel::SharedValue(const TPropertyNode& node) const {
  if (objects_.empty() || !node.read) return {};
  const QVariant first = node.read(objects_.front());
  for (QObject* o : objects_)
    if (node.read(o) != first) return {};
  return first;
}

Qt::ItemFlags TPropertyModel::flags(const QModelIndex& index) const {
  if (!index.isValid()) return Qt::NoItemFlags;
  const TPropertyNode* node = NodeOf(index);
  Qt::ItemFlags f = Qt::ItemIsEnabled | Qt::ItemIsSelectable;
  if (index.column() == 1 && node->write && IsValueKind(node->kind)) f |= Qt::ItemIsEditable;
  return f;
}

QVariant TPropertyModel::data(const QModelIndex& index, int role) const {
  const TPropertyNode* node = NodeOf(index);
  if (!index.isValid()) return {};
  switch (role) {
    case Qt::DisplayRole:
      return index.column() == 0 ? QVariant(node->name) : QVariant(PropertyDisplayText(*node, SharedValue(*node)));
    case Qt::EditRole:
      return index.column() == 1 ? SharedValue(*node) : QVariant(node->name);
    case Qt::DecorationRole:
      if (index.column() == 1 && node->kind == TPropertyKind::Color) {
        const QVariant v = SharedValue(*node);
        if (!v.isValid()) return {};
        QPixmap swatch(12, 12);
        swatch.fill(ToQColor(v.toInt()));
        return swatch;
      }
      return {};
    case Qt::ToolTipRole: return node->path;
    case KindRole: return static_cast<int>(node->kind);
    case PathRole: return node->path;
    case RangeRole: return QVariantList{node->minimum, node->maximum};
    case EnumKeysRole: return node->enumKeys;
    case EnumValuesRole: {
      QVariantList values;
      for (int v : node->enumValues) values << v;
      return values;
    }
    case ObjectValueRole: return objects_.empty() || !node->read ? QVariant() : node->read(objects_.front());
    case HasDefaultRole:
      return node->write && IsValueKind(node->kind) && !objects_.empty() && HasPrototype(objects_.front());
    default: return {};
  }
}

bool TPropertyModel::setData(const QModelIndex& index, const QVariant& value, int role) {
  const TPropertyNode* node = NodeOf(index);
  if (!index.isValid() || role != Qt::EditRole || !(flags(index) & Qt::ItemIsEditable)) return false;
  const bool byPointer = node->kind == TPropertyKind::Picture || node->kind == TPropertyKind::UserData;
  // An edit that changes nothing leaves no undo step behind.
  if (!byPointer && SharedValue(*node) == value) return true;
  Write(*node, value);
  return true;
}

void TPropertyModel::Write(const TPropertyNode& node, const QVariant& value) {
  // The top-level property: a sub-property ("Pen.Color") lives in an object
  // the shape's copy holds whole.
  RecordChange(objects_, node.path.section('.', 0, 0).toLatin1());
  for (QObject* o : objects_) node.write(o, value);
  Repaint(objects_);
  Refresh();
}

bool TPropertyModel::ResetToDefault(const QModelIndex& index) {
  if (!data(index, HasDefaultRole).toBool()) return false;
  const TPropertyNode* node = NodeOf(index);
  const std::unique_ptr<QObject> prototype = Prototype(objects_.front());
  if (!prototype) return false;
  const QVariant value = node->read(prototype.get());
  if (node->kind == TPropertyKind::Picture || node->kind == TPropertyKind::UserData) {
    Write(*node, value);  // the pointer into the prototype is copied from
    return true;
  }
  return setData(index, value);
}

void TPropertyModel::Refresh() { RefreshChildren({}); }

void TPropertyModel::RefreshChildren(const QModelIndex& parent) {
  const int rows = rowCount(parent);
  if (rows == 0) return;
  emit dataChanged(index(0, 1, parent), index(rows - 1, 1, parent));
  for (int r = 0; r < rows; ++r) RefreshChildren(index(r, 0, parent));
}

}  // namespace lumatrex
