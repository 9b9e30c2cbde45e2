#include <algorithm>
#include <iterator>
#include <unordered_set>

#include "canvas/shape_index.h"
#include "canvas/tmycad.h"
#include "platform/hooks.h"
#include "shapes/connectors.h"
#include "shapes/shape_factory.h"

namespace lumatrex {

namespace {
std::string DefaultShapeName(std::int32_t id) { return "Shape" + std::to_string(id); }
}  // namespace

// ---------------------------------------------------------------------------
// Adding

bool TMyCAD::AddShape(std::unique_ptr<TMyShape> shape, bool keepLayer, bool noCount) {
  if (!shape) return false;
  if (layers_.empty()) {
    ShowMessage("Error!There is no Layer!");
    TerminateApplication();
    return false;
  }
  DropRedoUnlessReplaying();
  if (!keepLayer) shape->LayerId = currentLayerId_;
  shape->ShapeNo = GetShapesCount();
  RegisterShape(shape.get());
  shapes_.push_back(std::move(shape));
  if (auto* link = dynamic_cast<TMyLinkLine*>(shapes_.back().get())) ListLinkLineAtEnds(*link);
  if (!noCount) ++nextShapeId_;
  modified_ = true;
  return true;
}

std::unique_ptr<TMyShape> TMyCAD::CreateShapeByName(const std::string& className) {
  return CreateShapeByClassName(className, this);
}

std::unique_ptr<TMyShape> TMyCAD::CreateShapeBySpTool(TDrawTool tool) { return CreateShapeByDrawTool(tool, this); }

TMyShape* TMyCAD::CreateAddShapeByName(const std::string& className, const TMyShape* templ) {
  std::unique_ptr<TMyShape> shape = CreateShapeByName(className);
  if (!shape) return nullptr;
  if (templ) shape->Assign(*templ);
  shape->ShapeNo = GetShapesCount();
  shape->ShapeId = nextShapeId_;
  shape->SetName(DefaultShapeName(shape->ShapeId));
  shape->SetCaption(shape->GetName());
  TMyShape* added = shape.get();
  return AddShape(std::move(shape), false, false) ? added : nullptr;
}

TMyShape* TMyCAD::AddShapeFromCode(const std::string& className, const std::string& name,
                                   const TArrMyPoint& points, float angle) {
  TMyShape* shape = CreateAddShapeByName(className);
  if (!shape) return nullptr;
  if (!name.empty()) shape->SetName(name);
  shape->Points = points;
  shape->CenterPoint = shape->ComputeCenterPoint(4);
  shape->TextoutPoint = shape->CenterPoint;
  if (angle != 0) shape->RotateChangeValueByAngle(shape->CenterPoint, angle);
  // Points written directly: the index takes the shape's box anew, and its
  // area is repainted.
  shape->Changed();
  return shape;
}

TMyShape* TMyCAD::AddShapeByCode(const std::string& className, const std::string& name, const TArrMyPoint& points,
                                 float angle) {
  TMyShape* shape = AddShapeFromCode(className, name, points, angle);
  if (shape) PushtoUndoRedoShapeList({shape}, ACT_ADD);
  return shape;
}

TMyShape* TMyCAD::AddShapeByCode2(const std::string& className, const std::string& name,
                                  const TArrMyPoint& points, float angle) {
  return AddShapeFromCode(className, name, points, angle);
}

// ---------------------------------------------------------------------------
// Finding

TMyShape* TMyCAD::GetShapeByNo(std::int32_t no) const {
  if (no < 0 || no >= GetShapesCount()) return nullptr;
  return shapes_[static_cast<std::size_t>(no)].get();
}

TMyShape* TMyCAD::GetShapeByID(std::int32_t id) const {
  // Ids changed since the last look are filed anew first.
  SyncIndex();
  TMyShape* found = nullptr;
  index_->ForEachWithId(id, [&](TMyShape* s) {
    if (s->ShapeId == id && (!found || s->ShapeNo < found->ShapeNo)) found = s;
  });
  return found;
}

std::int32_t TMyCAD::GetShapeNoById(std::int32_t id) const {
  const TMyShape* shape = GetShapeByID(id);
  return shape ? shape->ShapeNo : -1;
}

TMyShape* TMyCAD::GetShapeByName(const std::string& name) const {
  const auto it =
      std::find_if(shapes_.begin(), shapes_.end(), [&](const auto& s) { return s->GetName() == name; });
  return it == shapes_.end() ? nullptr : it->get();
}

std::int32_t TMyCAD::GetShapesCountInALayer(std::int32_t layerId) const {
  return static_cast<std::int32_t>(GetShapesByLayerId(layerId).size());
}

std::vector<TMyShape*> TMyCAD::GetShapesByLayerId(std::int32_t layerId) const {
  std::vector<TMyShape*> found;
  for (const auto& s : shapes_)
    if (s->LayerId == layerId) found.push_back(s.get());
  return found;
}

bool TMyCAD::RenameShapeName(const std::string& oldName, const std::string& newName) {
  TMyShape* shape = GetShapeByName(oldName);
  if (!shape) return false;
  shape->SetName(newName);
  return true;
}

TMyShape* TMyCAD::GetRootParentShape(TMyShape* shape) const {
  // A broken parent chain (a cycle or a position past the list) must not hang
  // the canvas: after as many steps as there are shapes, the walk stops.
  for (std::int32_t steps = 0; shape && shape->ParentId != -1 && steps <= GetShapesCount(); ++steps) {
    TMyShape* parent = GetShapeByNo(shape->ParentId);
    if (!parent) break;
    shape = parent;
  }
  return shape;
}

TMyShape* TMyCAD::GetNextSingleorRootShape(std::int32_t no) const {
  for (std::int32_t i = std::max(no + 1, 0); i < GetShapesCount(); ++i)
    if (!GetShapeByNo(i)->HasParentShape()) return GetShapeByNo(i);
  return nullptr;
}

TMyShape* TMyCAD::GetPrevSingleorRootShape(std::int32_t no) const {
  for (std::int32_t i = std::min(no, GetShapesCount()) - 1; i >= 0; --i)
    if (!GetShapeByNo(i)->HasParentShape()) return GetShapeByNo(i);
  return nullptr;
}

// ---------------------------------------------------------------------------
// Deleting and renumbering

std::vector<TMyShape*> TMyCAD::SubtreeOf(TMyShape* shape) const {
  if (!shape->HasChildShapes()) return {shape};
  std::vector<TMyShape*> found;
  std::unordered_set<const TMyShape*> seen;
  std::vector<TMyShape*> pending = {shape};
  // Bounded by the list size so that a broken child list cannot loop.
  while (!pending.empty() && static_cast<std::int32_t>(found.size()) <= GetShapesCount()) {
    TMyShape* s = pending.back();
    pending.pop_back();
    if (!seen.insert(s).second) continue;
    found.push_back(s);
    for (const std::int32_t no : s->ChildShapes)
      if (TMyShape* child = GetShapeByNo(no)) pending.push_back(child);
  }
  return found;
}

void TMyCAD::PrefetchAhead(std::size_t no) const {
  // A pass spends a few nanoseconds a shape; memory answers in about a
  // hundred and fifty, and a shorter lead measured slower at 100k shapes.
  constexpr std::size_t kAhead = 48;
  if (no + kAhead >= shapes_.size()) return;
  // The relations and the list position, which the passes read and write.
  __builtin_prefetch(&shapes_[no + kAhead]->ShapeNo);
}

void TMyCAD::RenumberShapes(const std::function<std::int32_t(std::int32_t)>& map) {
  // A pass over every shape of a large drawing waits on memory, not on the
  // work: the shapes a few places ahead are fetched while one is done.
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    PrefetchAhead(i);
    TMyShape* shape = shapes_[i].get();
    if (shape->HoldsListPositions()) shape->RemapShapeNumbers(map);
    shape->ShapeNo = static_cast<std::int32_t>(i);
  }
}

void TMyCAD::ForgetShape(const TMyShape* shape) {
  if (const std::int32_t at = IsInWorkingShape(shape); at != -1) {
    InvalidateHandles(std::span(working_).subspan(static_cast<std::size_t>(at), 1));
    working_.erase(working_.begin() + at);
    NumberWorkingFrom(static_cast<std::size_t>(at));
  }
  // A gesture or a hover must not keep pointing at a shape that is gone.
  for (TMyShape** held : {&currentShape_, &shapeBeneath_, &clickedChildShape_, &hoverShape_})
    if (*held == shape) *held = nullptr;
  std::erase(previewShapes_, shape);
}

// One pass over the list, however many shapes go: they leave the selection,
// the gesture and the index, the rest close up, and every stored position is
// renumbered once.
std::vector<std::unique_ptr<TMyShape>> TMyCAD::RemoveShapes(const std::vector<TMyShape*>& doomed) {
  std::vector<char> gone(shapes_.size(), 0);
  auto isGone = [&](const TMyShape* s) {
    return s && GetShapeByNo(s->ShapeNo) == s && gone[static_cast<std::size_t>(s->ShapeNo)] != 0;
  };
  bool any = false;
  for (TMyShape* s : doomed)
    if (s && GetShapeByNo(s->ShapeNo) == s) {
      gone[static_cast<std::size_t>(s->ShapeNo)] = 1;
      any = true;
    }
  if (!any) return {};
  DropRedoUnlessReplaying();
  if (std::any_of(working_.begin(), working_.end(), isGone)) {
    std::vector<TMyShape*> leaving, staying;
    for (TMyShape* s : working_) (isGone(s) ? leaving : staying).push_back(s);
    InvalidateHandles(leaving);
    SetWorking(std::move(staying));
  }
  for (TMyShape** held : {&currentShape_, &shapeBeneath_, &clickedChildShape_, &hoverShape_})
    if (isGone(*held)) *held = nullptr;
  std::erase_if(previewShapes_, isGone);

  // Taking out a large part of the drawing one box at a time costs more than
  // building the index anew from what stays (which repaints everything).
  const std::size_t count = static_cast<std::size_t>(std::count(gone.begin(), gone.end(), 1));
  if (count > shapes_.size() / 4 + 64) indexNeedsRebuild_ = true;
  std::vector<std::int32_t> newNo(shapes_.size(), -1);
  std::vector<std::unique_ptr<TMyShape>> removed;
  removed.reserve(count);
  std::size_t kept = 0;
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    if (gone[i]) {
      TMyRect box;
      if (!indexNeedsRebuild_ && index_->Remove(shapes_[i].get(), box)) InvalidateZoomed(box);
      removed.push_back(std::move(shapes_[i]));
    } else {
      newNo[i] = static_cast<std::int32_t>(kept);
      if (kept != i) shapes_[kept] = std::move(shapes_[i]);
      ++kept;
    }
  }
  shapes_.resize(kept);
  RenumberShapes([&newNo](std::int32_t old) {
    return old >= 0 && old < static_cast<std::int32_t>(newNo.size()) ? newNo[static_cast<std::size_t>(old)] : -1;
  });
  // Shapes an undo removes are kept for its redo, which puts the same
  // objects back.
  if (undoneShapes_) {
    std::move(removed.begin(), removed.end(), std::back_inserter(*undoneShapes_));
    removed.clear();
  }
  return removed;
}

bool TMyCAD::DeleteShapeById(std::int32_t id, bool record) {
  TMyShape* shape = GetShapeByID(id);
  if (!shape || shape->GetLocked()) return false;
  if (OnShapeDeleted) OnShapeDeleted(this, shape);
  RemoveRecordingDeletion({shape}, SubtreeOf(shape), record);
  modified_ = true;
  return true;
}

void TMyCAD::DeleteAllShapes() {
  DropRedoUnlessReplaying();
  working_.clear();
  previewShapes_.clear();
  for (TMyShape** held : {&currentShape_, &shapeBeneath_, &clickedChildShape_, &hoverShape_})
    if (*held && GetShapeByNo((*held)->ShapeNo) == *held) *held = nullptr;
  index_->Clear();
  indexNeedsRebuild_ = false;
  shapes_.clear();
  modified_ = true;
  Invalidate();
}

void TMyCAD::DeleteSelectedShapes(bool record) {
  std::vector<TMyShape*> doomed;
  std::vector<std::int32_t> ids;
  for (TMyShape* shape : working_)
    if (!shape->GetLocked()) {
      doomed.push_back(shape);
      ids.push_back(shape->ShapeId);
    }
  // Each shape by id, as DeleteShapeById would take them one after the
  // other (a shape already gone with an earlier group is refused, a locked
  // one kept), but removed together in one pass.
  std::vector<TMyShape*> removed;
  std::vector<char> taken(shapes_.size(), 0);  // by list position, which stays put until the removal
  auto isTaken = [&](const TMyShape* s) { return taken[static_cast<std::size_t>(s->ShapeNo)] != 0; };
  auto take = [&](TMyShape* s) {
    if (isTaken(s)) return;
    taken[static_cast<std::size_t>(s->ShapeNo)] = 1;
    removed.push_back(s);
  };
  SyncIndex();
  for (const std::int32_t id : ids) {
    // The first shape in the list with the id that is still there.
    TMyShape* shape = nullptr;
    index_->ForEachWithId(id, [&](TMyShape* s) {
      if (s->ShapeId == id && !isTaken(s) && (!shape || s->ShapeNo < shape->ShapeNo)) shape = s;
    });
    if (!shape || shape->GetLocked()) continue;
    if (OnShapeDeleted) OnShapeDeleted(this, shape);
    if (!shape->HasChildShapes()) {
      take(shape);
      continue;
    }
    for (TMyShape* s : SubtreeOf(shape)) take(s);
  }
  // One step for the whole selection, so that one undo brings it all back.
  RemoveRecordingDeletion(doomed, removed, record);
  if (!removed.empty()) modified_ = true;
}

// ---------------------------------------------------------------------------
// Group-wide operations

void TMyCAD::RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) {
  ForShapeAndMembers(shape, [&](TMyShape& s) {
    if (!s.GetLocked()) s.RotateChangeValueByAngle(center, angle);
  });
  Invalidate();
}

void TMyCAD::LockUnLockforShapes(TMyShape* shape, bool locked) {
  ForShapeAndMembers(shape, [locked](TMyShape& s) { s.StoreLocked(locked); });
  Invalidate();
}

void TMyCAD::FlipHoriz(TMyShape* shape) {
  ForShapeAndMembers(shape, [](TMyShape& s) { s.FlipHoriz(); });
}

void TMyCAD::FlipVert(TMyShape* shape) {
  ForShapeAndMembers(shape, [](TMyShape& s) { s.FlipVert(); });
}

}  // namespace lumatrex
