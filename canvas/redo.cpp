// Redo, and the bound on the memory of the undo history.
//
// An undo performs the inverse its step's action names, which is not always
// the exact inverse of the change (deleted shapes come back at the front,
// coarse z-order inverses). Redo therefore does not replay the action: before
// an undo it keeps the document as it is, cheaply, and a redo puts exactly
// that back. The shapes the undo can touch (the recorded shapes with their
// group members, the connectors attached to them and the shapes at those
// connectors' ends) are copied. An undo that changes the list (adds,
// removes, reorders) also keeps every other shape by reference at its place
// in the list: one pointer per shape and one pass over the list per undo and
// redo. Undoing a change leaves the list alone, so its redo costs only what
// the step concerns.
#include <algorithm>
#include <unordered_map>
#include <unordered_set>

#include "canvas/shape_index.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"
#include "shapes/image.h"

namespace lumatrex {

namespace {

// The object, its pen, brush, font, strings and relation vectors.
constexpr std::int64_t kShapeBaseBytes = 1024;

std::int64_t PictureBytes(const TBitmap& bitmap) {
  return bitmap.Empty() ? 0 : static_cast<std::int64_t>(bitmap.BytesPerLine()) * bitmap.Height();
}

std::int64_t StepBytes(const std::vector<TSavedShape>& records) {
  std::int64_t bytes = 0;
  for (const TSavedShape& r : records) bytes += r.Bytes;
  return bytes;
}

}  // namespace

std::int64_t ApproxShapeBytes(const TMyShape& shape) {
  std::int64_t bytes = kShapeBaseBytes;
  bytes += static_cast<std::int64_t>((shape.Points.size() + shape.LinkPoints.size()) * sizeof(TMyPoint));
  bytes += static_cast<std::int64_t>((shape.ChildShapes.size() + shape.LinkLines.size()) * sizeof(std::int32_t));
  bytes += static_cast<std::int64_t>(shape.GetName().size() + shape.GetCaption().size() + shape.GetInfoText().size());
  for (const std::string& line : shape.GetMultiInfo()) bytes += static_cast<std::int64_t>(line.size());
  bytes += PictureBytes(shape.GradientBitmap());
  if (const auto* image = dynamic_cast<const TMyImage*>(&shape)) bytes += PictureBytes(image->Bitmap());
  return bytes;
}

std::unique_ptr<TMyShape> TMyCAD::ExactCopy(const TMyShape& shape) {
  std::unique_ptr<TMyShape> copy = CreateShapeByName(shape.ClassName());
  if (!copy) return nullptr;
  copy->Assign(shape);
  copy->CenterPoint = shape.CenterPoint;
  copy->SpareRelationId = shape.SpareRelationId;
  return copy;
}

TRedoStep TMyCAD::CaptureRedoStep(std::span<const TSavedShape> records) {
  TRedoStep step;
  step.NextShapeId = nextShapeId_;
  std::unordered_set<const TMyShape*> touched;
  std::vector<TMyShape*> found;
  auto touch = [&](TMyShape* s) {
    if (s && GetShapeByNo(s->ShapeNo) == s && touched.insert(s).second) found.push_back(s);
  };
  for (const TSavedShape& r : records)
    if (TMyShape* live = GetShapeByID(r.SavedShape->ShapeId))
      for (TMyShape* s : SubtreeOf(live)) touch(s);
  // The connectors of those shapes follow them, and a connector that goes
  // changes the connector lists of the shapes at its ends.
  for (std::size_t i = 0, recorded = found.size(); i < recorded; ++i)
    for (const std::uint32_t no : std::vector<std::uint32_t>(found[i]->LinkLines))
      touch(GetShapeByNo(static_cast<std::int32_t>(no)));
  for (std::size_t i = 0, linked = found.size(); i < linked; ++i)
    if (const auto* link = dynamic_cast<const TMyLinkLine*>(found[i])) {
      touch(GetShapeByNo(link->GetStartSpNo()));
      touch(GetShapeByNo(link->GetEndSpNo()));
    }
  std::sort(found.begin(), found.end(), [](const TMyShape* a, const TMyShape* b) { return a->ShapeNo < b->ShapeNo; });
  for (TMyShape* s : found) {
    std::unique_ptr<TMyShape> copy = ExactCopy(*s);
    step.Bytes += ApproxShapeBytes(*copy);
    step.Copies.emplace_back(s->ShapeNo, std::move(copy));
  }
  // Undoing a change leaves the list as it is, so its redo only gives the
  // touched shapes their state back. Any other undo adds, removes or
  // reorders shapes: the list is kept, one pass over the drawing per undo.
  step.InPlace = std::all_of(records.begin(), records.end(),
                             [](const TSavedShape& r) { return r.ActionName == ACT_CHANGE; });
  if (step.InPlace) return step;
  step.Order.reserve(shapes_.size());
  for (const auto& shape : shapes_) step.Order.push_back(shape.get());
  step.Bytes += static_cast<std::int64_t>(step.Order.size() * sizeof(TMyShape*));
  return step;
}

void TMyCAD::KeepRedoStep(TRedoStep step) {
  step.Bytes += StepBytes(step.Records);
  for (const auto& shape : step.Removed) step.Bytes += ApproxShapeBytes(*shape);
  redoList_.push_back(std::move(step));
  TrimHistoryMemory();
}

bool TMyCAD::Redo() {
  if (redoList_.empty()) return false;
  TRedoStep step = std::move(redoList_.back());
  redoList_.pop_back();
  RemoveAllWorkingShapes();
  ++replayingHistory_;
  if (step.InPlace) {
    RestoreInPlace(step);
  } else {
    RestoreList(step);
  }
  nextShapeId_ = step.NextShapeId;
  // The step goes back on the history, under the same fullness rule as a
  // push.
  AppendStep(undoList_, std::move(step.Records), undoRedoSize_);
  --replayingHistory_;
  modified_ = true;
  Invalidate();
  return true;
}

// Gives Shape the copy's whole state. In a bulk update, so that a group's
// pen and brush do not reach members that get their own saved ones.
static void RestoreFromCopy(TMyShape& shape, const TMyShape& copy) {
  shape.Assign(copy);
  shape.CenterPoint = copy.CenterPoint;
  shape.SpareRelationId = copy.SpareRelationId;
  shape.Changed();
}

void TMyCAD::RestoreInPlace(TRedoStep& step) {
  ++updateDepth_;
  for (const auto& [at, copy] : step.Copies) RestoreFromCopy(*GetShapeByNo(at), *copy);
  --updateDepth_;
}

void TMyCAD::RestoreList(TRedoStep& step) {
  // Where each shape of the list now goes: its place in Order, or -1 for a
  // shape the undo made, which goes.
  std::vector<std::int32_t> newNo(shapes_.size(), -1);
  // The shapes the undo removed, and their places.
  std::unordered_map<const TMyShape*, std::int32_t> removedAt;
  for (const auto& shape : step.Removed) removedAt.emplace(shape.get(), -1);
  for (std::size_t i = 0; i < step.Order.size(); ++i) {
    const auto at = static_cast<std::int32_t>(i);
    if (const auto it = removedAt.find(step.Order[i]); it != removedAt.end()) {
      it->second = at;
    } else {
      newNo[static_cast<std::size_t>(step.Order[i]->ShapeNo)] = at;
    }
  }
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    if (newNo[i] >= 0) continue;
    TMyShape* leaving = shapes_[i].get();
    if (OnShapeDeleted) OnShapeDeleted(this, leaving);
    for (TMyShape** held : {&currentShape_, &shapeBeneath_, &clickedChildShape_, &hoverShape_})
      if (*held == leaving) *held = nullptr;
  }
  previewShapes_.clear();
  // The index is built anew from the list put back.
  index_->Clear();
  indexNeedsRebuild_ = true;
  std::vector<std::unique_ptr<TMyShape>> current = std::move(shapes_);
  // Kept shapes hold positions of the list the undo left; the copies hold
  // those of the list being put back, which every touched shape takes.
  const auto map = [&newNo](std::int32_t old) {
    return old >= 0 && old < static_cast<std::int32_t>(newNo.size()) ? newNo[static_cast<std::size_t>(old)] : -1;
  };
  for (const auto& shape : current)
    if (shape->HoldsListPositions()) shape->RemapShapeNumbers(map);
  ++updateDepth_;
  for (const auto& [at, copy] : step.Copies) RestoreFromCopy(*step.Order[static_cast<std::size_t>(at)], *copy);
  --updateDepth_;
  shapes_.resize(step.Order.size());
  std::vector<TMyShape*> returning;
  for (auto& shape : step.Removed) {
    returning.push_back(shape.get());
    const std::int32_t at = removedAt[shape.get()];
    // A removed shape that Order does not hold (none should) stays removed.
    if (at >= 0) shapes_[static_cast<std::size_t>(at)] = std::move(shape);
  }
  for (std::size_t i = 0; i < current.size(); ++i)
    if (newNo[i] >= 0) shapes_[static_cast<std::size_t>(newNo[i])] = std::move(current[i]);
  current.clear();
  for (std::size_t i = 0; i < shapes_.size(); ++i) shapes_[i]->ShapeNo = static_cast<std::int32_t>(i);
  if (OnShapeAdded)
    for (TMyShape* added : returning) OnShapeAdded(this, added, GetShapesCount());
}

std::int64_t TMyCAD::GetUndoMemoryUsed() const {
  std::int64_t bytes = StepBytes(undoList_);
  for (const TRedoStep& step : redoList_) bytes += step.Bytes;
  return bytes;
}

void TMyCAD::SetUndoMemoryLimit(std::int64_t bytes) {
  undoMemoryLimit_ = std::max<std::int64_t>(bytes, 0);
  TrimHistoryMemory();
}

// The sum is taken over the records, which the limit itself keeps few.
void TMyCAD::TrimHistoryMemory() {
  std::int64_t used = GetUndoMemoryUsed();
  while (used > undoMemoryLimit_ && !redoList_.empty()) {
    used -= redoList_.front().Bytes;
    redoList_.erase(redoList_.begin());
  }
  while (used > undoMemoryLimit_ && !undoList_.empty() && undoList_.front().UndoStep != NewestStep(undoList_)) {
    DropOldestStep(undoList_);
    used = GetUndoMemoryUsed();
  }
}

}  // namespace lumatrex
