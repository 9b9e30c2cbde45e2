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
  step.Order.resize(shapes_.size());
  for (std::size_t i = 0; i < shapes_.size(); ++i)
    step.Order[i] = touched.contains(shapes_[i].get()) ? nullptr : shapes_[i].get();
  step.Bytes += static_cast<std::int64_t>(step.Order.size() * sizeof(TMyShape*));
  return step;
}

void TMyCAD::KeepRedoStep(TRedoStep step) {
  step.Bytes += StepBytes(step.Records);
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
  if (NewestStep(undoList_) == undoRedoSize_ - 1) DropOldestStep(undoList_);
  const std::int32_t number = NewestStep(undoList_) + 1;
  for (TSavedShape& r : step.Records) {
    r.UndoStep = number;
    undoList_.push_back(std::move(r));
  }
  --replayingHistory_;
  modified_ = true;
  Invalidate();
  return true;
}

void TMyCAD::RestoreInPlace(TRedoStep& step) {
  // A bulk update keeps a group's pen and brush from reaching members that
  // get their own saved ones.
  ++updateDepth_;
  for (auto& [at, copy] : step.Copies) {
    TMyShape* live = GetShapeByNo(at);
    live->Assign(*copy);
    live->CenterPoint = copy->CenterPoint;
    live->SpareRelationId = copy->SpareRelationId;
    live->Changed();
  }
  --updateDepth_;
}

void TMyCAD::RestoreList(TRedoStep& step) {
  // Which of the shapes now in the list stay: those kept by reference.
  std::vector<char> stays(shapes_.size(), 0);
  std::vector<std::int32_t> newNo(shapes_.size(), -1);
  for (std::size_t i = 0; i < step.Order.size(); ++i)
    if (const TMyShape* s = step.Order[i]) {
      stays[static_cast<std::size_t>(s->ShapeNo)] = 1;
      newNo[static_cast<std::size_t>(s->ShapeNo)] = static_cast<std::int32_t>(i);
    }
  // The others go; what held them points at nothing.
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    if (stays[i]) continue;
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
  shapes_.resize(step.Order.size());
  for (std::size_t i = 0; i < step.Order.size(); ++i)
    if (step.Order[i]) shapes_[i] = std::move(current[static_cast<std::size_t>(step.Order[i]->ShapeNo)]);
  for (auto& [at, copy] : step.Copies) shapes_[static_cast<std::size_t>(at)] = std::move(copy);
  current.clear();
  // Kept shapes hold positions of the list the undo left; copies already
  // hold those of the list being put back.
  const auto map = [&newNo](std::int32_t old) {
    return old >= 0 && old < static_cast<std::int32_t>(newNo.size()) ? newNo[static_cast<std::size_t>(old)] : -1;
  };
  for (std::size_t i = 0; i < shapes_.size(); ++i) {
    TMyShape* s = shapes_[i].get();
    if (step.Order[i] && s->HoldsListPositions()) s->RemapShapeNumbers(map);
    s->ShapeNo = static_cast<std::int32_t>(i);
  }
  if (OnShapeAdded)
    for (const auto& [at, copy] : step.Copies) {
      TMyShape* added = shapes_[static_cast<std::size_t>(at)].get();
      OnShapeAdded(this, added, GetShapesCount());
    }
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
