// Placing shape library entries on the drawing.
#include <unordered_map>

#include "canvas/tmycad.h"

namespace lumatrex {

std::vector<TMyShape*> TMyCAD::AddUserDefineShapefromLib(const TLibManager& lib, const std::string& name,
                                                         const TCmbShapePlacement& at) {
  // Read whole first: a damaged entry throws before the drawing changes.
  std::unique_ptr<TCmbShape> entry = lib.GetCmbShape(name, at);
  if (!entry) return {};
  // The entry's references are the numbers stored with its shapes; each
  // becomes the list position its shape is about to take here.
  std::unordered_map<std::int32_t, std::int32_t> newNo;
  for (std::size_t i = 0; i < entry->Shapes.size(); ++i)
    newNo.try_emplace(entry->Shapes[i]->ShapeNo, GetShapesCount() + static_cast<std::int32_t>(i));
  const auto map = [&newNo](std::int32_t old) {
    const auto it = newNo.find(old);
    return it == newNo.end() ? -1 : it->second;
  };

  std::vector<TMyShape*> placed;
  for (std::unique_ptr<TMyShape>& shape : entry->Shapes) {
    shape->RemapShapeNumbers(map);
    shape->SetOwner(this);
    shape->ShapeId = GetNextShapeId();
    shape->SetName("Shape" + std::to_string(shape->ShapeId));
    TMyShape* added = shape.get();
    if (!AddShape(std::move(shape))) break;
    placed.push_back(added);
  }
  std::vector<TMyShape*> topLevel;
  for (TMyShape* shape : placed)
    if (!shape->HasParentShape()) topLevel.push_back(shape);
  PushtoUndoRedoShapeList(topLevel, "ACT_ADD");
  if (OnShapeAdded)
    for (TMyShape* shape : placed) {
      TMyShape* reported = shape;
      OnShapeAdded(this, reported, GetShapesCount());
    }
  return placed;
}

}  // namespace lumatrex
