#include <algorithm>

#include "canvas/tmycad.h"

namespace lumatrex {

LayerRec* TMyCAD::FindLayer(std::int32_t id) {
  const auto it = std::find_if(layers_.begin(), layers_.end(), [id](const LayerRec& l) { return l.LayerId == id; });
  return it == layers_.end() ? nullptr : &*it;
}

const LayerRec* TMyCAD::FindLayer(std::int32_t id) const { return const_cast<TMyCAD*>(this)->FindLayer(id); }

std::int32_t TMyCAD::NewLayer(const std::string& name, bool visible) {
  if (GetLayerIdByName(name) != -1) return -1;
  const std::int32_t id = nextLayerId_;
  layers_.push_back({name, id, visible});
  currentLayerId_ = id;
  if (OnNewLayer) OnNewLayer(this, id, name, visible);
  ++nextLayerId_;
  return id;
}

bool TMyCAD::DeleteLayerByID(std::int32_t id) {
  RemoveAllWorkingShapes();
  if (!FindLayer(id)) return false;
  bool deletedAll = true;
  for (TMyShape* shape : GetShapesByLayerId(id)) {
    // An earlier deletion may have taken this shape with its group.
    if (GetShapeNoById(shape->ShapeId) < 0 || shape->HasParentShape()) continue;
    shape->StoreLocked(false);
    deletedAll = DeleteShapeById(shape->ShapeId, true) && deletedAll;
  }
  if (!deletedAll) return false;
  const LayerRec removed = *FindLayer(id);
  layers_.erase(layers_.begin() + GetLayerNoById(id));
  if (currentLayerId_ == id) currentLayerId_ = GetMaxLayerId();
  if (OnDeleteLayer) OnDeleteLayer(this, removed.LayerId, removed.LayerName, removed.Visible);
  Invalidate();
  return true;
}

bool TMyCAD::DeleteLayerByName(const std::string& name) {
  const std::int32_t id = GetLayerIdByName(name);
  return id != -1 && DeleteLayerByID(id);
}

void TMyCAD::DeleteAllLayers() {
  while (!layers_.empty())
    if (!DeleteLayerByID(layers_.back().LayerId)) break;
}

std::int32_t TMyCAD::MergeLayers(std::int32_t target, std::int32_t source) {
  if (target == source || !FindLayer(target) || !FindLayer(source)) return 0;
  for (TMyShape* shape : GetShapesByLayerId(source)) shape->LayerId = target;
  currentLayerId_ = target;
  DeleteLayerByID(source);
  return 1;
}

bool TMyCAD::MoveLayer(std::int32_t from, std::int32_t to) {
  const auto count = static_cast<std::int32_t>(layers_.size());
  if (from < 0 || from >= count || to < 0 || to >= count) return false;
  const auto first = layers_.begin();
  if (from < to)
    std::rotate(first + from, first + from + 1, first + to + 1);
  else
    std::rotate(first + to, first + from, first + from + 1);
  SetModified(true);
  return true;
}

std::int32_t TMyCAD::GetMaxLayerId() const { return layers_.empty() ? -1 : layers_.back().LayerId; }

std::int32_t TMyCAD::GetLayerIdByName(const std::string& name) const {
  const auto it = std::find_if(layers_.begin(), layers_.end(), [&](const LayerRec& l) { return l.LayerName == name; });
  return it == layers_.end() ? -1 : it->LayerId;
}

std::int32_t TMyCAD::GetLayerIdByNo(std::int32_t no) const {
  return no >= 0 && no < static_cast<std::int32_t>(layers_.size()) ? layers_[static_cast<std::size_t>(no)].LayerId
                                                                    : -1;
}

std::string TMyCAD::GetLayerNameByID(std::int32_t id) const {
  const LayerRec* layer = FindLayer(id);
  return layer ? layer->LayerName : std::string();
}

std::int32_t TMyCAD::GetLayerNoById(std::int32_t id) const {
  const LayerRec* layer = FindLayer(id);
  return layer ? static_cast<std::int32_t>(layer - layers_.data()) : -1;
}

std::int32_t TMyCAD::GetLayerNoByName(const std::string& name) const {
  return GetLayerNoById(GetLayerIdByName(name));
}

bool TMyCAD::SetLayerNameByID(std::int32_t id, const std::string& name) {
  LayerRec* layer = FindLayer(id);
  if (!layer) return false;
  layer->LayerName = name;
  return true;
}

bool TMyCAD::SetLayerNameByName(const std::string& oldName, const std::string& newName) {
  return SetLayerNameByID(GetLayerIdByName(oldName), newName);
}

void TMyCAD::VisibleLayerByID(std::int32_t id) {
  if (LayerRec* layer = FindLayer(id)) StoreAndRepaint(layer->Visible, true);
}

void TMyCAD::VisibleLayerByName(const std::string& name) { VisibleLayerByID(GetLayerIdByName(name)); }

void TMyCAD::InVisibleLayerByID(std::int32_t id) {
  if (LayerRec* layer = FindLayer(id)) StoreAndRepaint(layer->Visible, false);
}

void TMyCAD::InVisibleLayerByName(const std::string& name) { InVisibleLayerByID(GetLayerIdByName(name)); }

void TMyCAD::VisibleAllLayer() {
  for (LayerRec& layer : layers_) layer.Visible = true;
  Invalidate();
}

bool TMyCAD::IsVisibleLayerByID(std::int32_t id) const {
  const LayerRec* layer = FindLayer(id);
  return layer && layer->Visible;
}

void TMyCAD::SetCurrentLayerId(std::int32_t id) { currentLayerId_ = id; }

}  // namespace lumatrex
