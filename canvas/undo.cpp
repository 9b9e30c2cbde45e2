#include <QSet>
#include <algorithm>
#include <iterator>
#include <span>
#include <unordered_map>

#include "canvas/tmycad.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"

namespace lumatrex {

namespace {

constexpr std::size_t kMaxShapeNameBytes = 255;

// A record holding Saved, the state Live had when recorded (a copy, or the
// very object once it has left the list).
TSavedShape MakeRecord(const TMyShape& live, std::unique_ptr<TMyShape> saved, const std::string& action,
                       const TStateKeeper& keep) {
  TSavedShape record{0, live.GetName().substr(0, kMaxShapeNameBytes), nullptr, action,
                     keep ? keep(live) : TKeptState{}, 0};
  saved->LinkLines.clear();
  record.Bytes = ApproxShapeBytes(*saved);
  record.SavedShape = std::move(saved);
  return record;
}

// Appends Shape unless it is already there and, with Members, then its group
// members depth first in child-list order. A shape met twice (a broken child
// list) is taken once, which also ends the walk on a cycle.
void AppendRecorded(const TMyCAD& cad, TMyShape* shape, bool members, std::vector<TMyShape*>& out,
                    QSet<const TMyShape*>& taken) {
  if (!shape || taken.contains(shape)) return;
  taken.insert(shape);
  out.push_back(shape);
  if (members)
    for (const std::int32_t no : shape->ChildShapes) AppendRecorded(cad, cad.GetShapeByNo(no), true, out, taken);
}

// The shapes a step of Action records, in record order.
std::vector<TMyShape*> ShapesToRecord(const TMyCAD& cad, const std::vector<TMyShape*>& shapes,
                                      const std::string& action) {
  std::vector<TMyShape*> recorded;
  // One record per shape of a large deletion: a set without a heap node per
  // entry, sized once.
  QSet<const TMyShape*> taken;
  taken.reserve(static_cast<qsizetype>(shapes.size()));
  if (action == ACT_DELETE || action == ACT_CHANGE) {
    for (auto it = shapes.rbegin(); it != shapes.rend(); ++it) AppendRecorded(cad, *it, true, recorded, taken);
  } else if (action == ACT_UNGROUP) {
    // Only the members of a top-level group can be regrouped by undo.
    for (TMyShape* s : shapes)
      AppendRecorded(cad, s, s && s->HasChildShapes() && !s->HasParentShape(), recorded, taken);
  } else {
    for (TMyShape* s : shapes) AppendRecorded(cad, s, false, recorded, taken);
  }
  // The connectors attached to changed shapes move with them, in the same
  // step. Recorded first, they are put back last, after their shapes have
  // carried them back.
  if (action == ACT_CHANGE) {
    std::vector<TMyShape*> links;
    for (const TMyShape* s : recorded)
      for (const std::uint32_t no : s->LinkLines)
        if (TMyShape* link = cad.GetShapeByNo(static_cast<std::int32_t>(no)); link && !taken.contains(link)) {
          taken.insert(link);
          links.push_back(link);
        }
    recorded.insert(recorded.begin(), links.begin(), links.end());
  }
  return recorded;
}

// Where a connector's ends are bound: shape number and link point at the
// start and at the end. The defaults are free ends.
struct TLinkEnds {
  std::int32_t startNo = -1;
  std::int32_t startPt = -1;
  std::int32_t endNo = -1;
  std::int32_t endPt = -1;
};

void SetEnds(TMyLinkLine& link, const TLinkEnds& ends) {
  link.SetStartSpNo(ends.startNo);
  link.SetStartSpPtId(ends.startPt);
  link.SetEndSpNo(ends.endNo);
  link.SetEndSpPtId(ends.endPt);
}

// The list positions a shape holds, taken from a live shape to survive an
// assignment from a saved copy.
struct TListPositions {
  std::int32_t shapeNo = -1;
  std::int32_t parentId = -1;
  std::vector<std::int32_t> children;
  std::vector<std::uint32_t> linkLines;
  TLinkEnds ends;
};

TListPositions PositionsOf(const TMyShape& shape) {
  TListPositions p{shape.ShapeNo, shape.ParentId, shape.ChildShapes, shape.LinkLines, {}};
  if (const auto* link = dynamic_cast<const TMyLinkLine*>(&shape))
    p.ends = {link->GetStartSpNo(), link->GetStartSpPtId(), link->GetEndSpNo(), link->GetEndSpPtId()};
  return p;
}

void PutBack(TMyShape& shape, const TListPositions& p) {
  shape.ShapeNo = p.shapeNo;
  shape.ParentId = p.parentId;
  shape.ChildShapes = p.children;
  shape.LinkLines = p.linkLines;
  if (auto* link = dynamic_cast<TMyLinkLine*>(&shape)) SetEnds(*link, p.ends);
}

// Gives Live the saved state but keeps Live's list positions. The list may
// have been reordered since the step was taken (the z-order inverses are
// coarse, and deleted shapes come back at the front), so saved positions can
// point at other shapes now; the live ones are kept valid by every reorder.
// A connector end re-bound by the step is therefore not taken back.
void RestoreState(TMyShape& live, const TMyShape& saved) {
  const TListPositions positions = PositionsOf(live);
  live.Assign(saved);
  PutBack(live, positions);
}

// Adds the deleted shapes back at the front, in Records' order. Their group
// relations are renumbered among themselves; a parent or member that was not
// deleted with them is not theirs any more (the live group dropped it), so
// that relation is dropped. Connectors come back detached and no restored
// shape lists connectors: the live shapes forgot them at the deletion.
void RestoreDeleted(TMyCAD& cad, const std::vector<const TSavedShape*>& records) {
  // A kind the canvas cannot make by name (a host's own class) does not come
  // back; the others are numbered without it.
  std::vector<std::pair<const TSavedShape*, std::unique_ptr<TMyShape>>> made;
  for (const TSavedShape* record : records)
    if (std::unique_ptr<TMyShape> shape = cad.CreateShapeByName(record->SavedShape->ClassName()))
      made.emplace_back(record, std::move(shape));
  const std::int32_t front = cad.GetShapesCount();
  // Old position -> new one; with two records of one old position the first
  // counts.
  std::unordered_map<std::int32_t, std::int32_t> moved;
  for (std::size_t i = 0; i < made.size(); ++i)
    moved.try_emplace(made[i].first->SavedShape->ShapeNo, front + static_cast<std::int32_t>(i));
  auto newPosition = [&moved](std::int32_t old) {
    const auto it = moved.find(old);
    return it == moved.end() ? -1 : it->second;
  };
  for (auto& [record, shape] : made) {
    shape->Assign(*record->SavedShape);
    shape->SetName(record->ShapeName);
    shape->RemapShapeNumbers(newPosition);
    shape->LinkLines.clear();
    if (auto* link = dynamic_cast<TMyLinkLine*>(shape.get())) SetEnds(*link, {});
    // A shape whose layer was deleted since comes back on the current one.
    const bool layerExists = cad.GetLayerNoById(shape->LayerId) >= 0;
    cad.AddShape(std::move(shape), layerExists, true);
  }
}

// Groups the former members again; the new group takes the old group's
// name, identity and state, so that older steps still find it by its id.
void Regroup(TMyCAD& cad, const std::vector<TMyShape*>& members, const TSavedShape* oldGroup) {
  const bool combined = oldGroup && dynamic_cast<const TMyCombine*>(oldGroup->SavedShape.get());
  TMyShape* group = combined ? cad.CombineShapes(members, false) : cad.GroupShapes(members, false);
  if (!group || !oldGroup) return;
  RestoreState(*group, *oldGroup->SavedShape);
  group->SetName(oldGroup->ShapeName);
}

struct TZOrderInverse {
  const char* action;
  void (TMyCAD::*inverse)(TMyShape*, bool);
};

constexpr TZOrderInverse kZOrderInverses[] = {
    {ACT_BRINGTOFRONT, &TMyCAD::SendToBack},
    {ACT_SENDTOBACK, &TMyCAD::BringToFront},
    {ACT_BRINGTOFRONTBYSTEP, &TMyCAD::SendToBackByStep},
    {ACT_SENDTOBACKBYSTEP, &TMyCAD::BringToFrontByStep},
};

// The inverse of one record of an add, change, group or z-order step on the
// live shape with the saved identity.
void RevertOnLiveShape(TMyCAD& cad, const TSavedShape& record, TMyShape& live) {
  const std::string& action = record.ActionName;
  if (action == ACT_ADD) {
    cad.DeleteShapeById(live.ShapeId, false);
  } else if (action == ACT_CHANGE) {
    RestoreState(live, *record.SavedShape);
    if (record.KeptState) record.KeptState(live);
    cad.ChangeLinkShapes(&live);
  } else if (action == ACT_GROUP) {
    cad.UnGroupShape(&live, false);
  } else {
    for (const TZOrderInverse& z : kZOrderInverses)
      if (action == z.action) (cad.*z.inverse)(&live, false);
  }
}

// Reverts the records of one step, newest first. Deleted shapes are restored
// and ungrouped members regrouped after the walk, each set at once.
void RevertStep(TMyCAD& cad, std::span<const TSavedShape> step) {
  std::vector<const TSavedShape*> deleted;
  std::vector<TMyShape*> formerMembers;
  const TSavedShape* oldGroup = nullptr;
  for (auto it = step.rbegin(); it != step.rend(); ++it) {
    const TMyShape& saved = *it->SavedShape;
    TMyShape* live = cad.GetShapeByID(saved.ShapeId);
    if (it->ActionName == ACT_DELETE) {
      deleted.push_back(&*it);
    } else if (it->ActionName == ACT_UNGROUP) {
      if (saved.HasChildShapes() && !saved.HasParentShape()) {
        oldGroup = &*it;
      } else if (live && !live->HasParentShape()) {
        // Members of nested groups are still in theirs. Inserting at the
        // front gives the recorded child order back.
        formerMembers.insert(formerMembers.begin(), live);
      }
    } else if (live) {
      RevertOnLiveShape(cad, *it, *live);
    }
  }
  if (!formerMembers.empty()) Regroup(cad, formerMembers, oldGroup);
  if (!deleted.empty()) RestoreDeleted(cad, deleted);
}

}  // namespace

std::int32_t NewestStep(const std::vector<TSavedShape>& list) { return list.empty() ? -1 : list.back().UndoStep; }

void DropOldestStep(std::vector<TSavedShape>& list) {
  if (list.empty()) return;
  const std::int32_t oldest = list.front().UndoStep;
  list.erase(list.begin(), std::find_if(list.begin(), list.end(),
                                        [oldest](const TSavedShape& r) { return r.UndoStep != oldest; }));
  for (TSavedShape& r : list) --r.UndoStep;
}

void AppendStep(std::vector<TSavedShape>& list, std::vector<TSavedShape> records, std::int32_t steps) {
  if (NewestStep(list) == steps - 1) DropOldestStep(list);
  const std::int32_t step = NewestStep(list) + 1;
  for (TSavedShape& record : records) record.UndoStep = step;
  // A large deletion is one record per shape: the records are taken over
  // whole, or moved once into room that grows by doubling.
  if (list.empty()) {
    list = std::move(records);
    return;
  }
  if (const std::size_t needed = list.size() + records.size(); needed > list.capacity())
    list.reserve(std::max(needed, 2 * list.capacity()));
  list.insert(list.end(), std::make_move_iterator(records.begin()), std::make_move_iterator(records.end()));
}

void TMyCAD::PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, const std::string& action,
                                     const TStateKeeper& keep) {
  // A new change ends what could be redone.
  redoList_.clear();
  if (undoRedoSize_ == 0) return;
  std::vector<TSavedShape> records;
  for (TMyShape* shape : ShapesToRecord(*this, shapes, action)) {
    // Only the known kinds can be re-created by name.
    std::unique_ptr<TMyShape> copy = CreateShapeByName(shape->ClassName());
    if (!copy) continue;
    copy->Assign(*shape);
    records.push_back(MakeRecord(*shape, std::move(copy), action, keep));
  }
  PushStep(std::move(records));
}

void TMyCAD::PushStep(std::vector<TSavedShape> records) {
  // An empty step would only push the oldest one out.
  if (records.empty()) return;
  // An equality on purpose: a history that grew past a lowered size is not
  // trimmed, it keeps growing.
  AppendStep(undoList_, std::move(records), undoRedoSize_);
  TrimHistoryMemory();
}

// Deleting a large selection would otherwise copy every shape for the record
// and then free the original: the records take the removed objects instead,
// which are the state the copies would hold.
void TMyCAD::RemoveRecordingDeletion(const std::vector<TMyShape*>& roots, const std::vector<TMyShape*>& doomed,
                                     bool record) {
  if (record) redoList_.clear();  // a new change ends what could be redone
  if (!record || undoRedoSize_ == 0) {
    RemoveShapes(doomed);
    return;
  }
  const std::vector<TMyShape*> recorded = ShapesToRecord(*this, roots, ACT_DELETE);
  const std::size_t listSize = shapes_.size();
  std::vector<std::unique_ptr<TMyShape>> removed = RemoveShapes(doomed);
  // The removed shapes come in list order and keep the positions they had:
  // each is found from its position. A recorded shape that stayed has a new
  // position, where another object or none is found.
  std::vector<std::int32_t> removedAt(listSize, -1);
  for (std::size_t k = 0; k < removed.size(); ++k)
    removedAt[static_cast<std::size_t>(removed[k]->ShapeNo)] = static_cast<std::int32_t>(k);
  std::vector<TSavedShape> records;
  records.reserve(recorded.size());
  for (TMyShape* shape : recorded) {
    std::unique_ptr<TMyShape>* taken = nullptr;
    const auto no = static_cast<std::size_t>(shape->ShapeNo);
    if (no < listSize && removedAt[no] >= 0) taken = &removed[static_cast<std::size_t>(removedAt[no])];
    if (taken && taken->get() == shape) {
      records.push_back(MakeRecord(*shape, std::move(*taken), ACT_DELETE, {}));
    } else if (std::unique_ptr<TMyShape> copy = CreateShapeByName(shape->ClassName())) {
      // Still in the list (a locked shape is not deleted): recorded as it is.
      copy->Assign(*shape);
      records.push_back(MakeRecord(*shape, std::move(copy), ACT_DELETE, {}));
    }
  }
  PushStep(std::move(records));
}

std::int32_t TMyCAD::PopFromUndoRedoShapeList() {
  if (undoRedoSize_ == 0 || undoList_.empty()) return -1;
  RemoveAllWorkingShapes();
  const std::int32_t step = undoList_.back().UndoStep;
  const auto first = std::find_if(undoList_.rbegin(), undoList_.rend(),
                                  [step](const TSavedShape& r) { return r.UndoStep != step; })
                         .base();
  // A bulk update keeps a restored group's pen, brush and font from being
  // passed on to members that get their own saved values. Its end does not
  // repaint everything: each shape the step touched repaints where it was
  // and where it is.
  ++updateDepth_;
  const std::span<const TSavedShape> records(first, undoList_.end());
  TRedoStep redo = CaptureRedoStep(records);
  ++replayingHistory_;
  undoneShapes_ = &redo.Removed;
  RevertStep(*this, records);
  undoneShapes_ = nullptr;
  --replayingHistory_;
  redo.Records.assign(std::make_move_iterator(first), std::make_move_iterator(undoList_.end()));
  undoList_.erase(first, undoList_.end());
  KeepRedoStep(std::move(redo));
  SetModified(true);
  --updateDepth_;
  if (updateDepth_ == 0) update();
  return step - 1;
}

void TMyCAD::ClearAllUndoStuff() {
  undoList_.clear();
  redoList_.clear();
}

void TMyCAD::SetUndoRedoSize(std::uint8_t value) {
  if (value == undoRedoSize_) return;
  undoRedoSize_ = value;
  if (value == 0) ClearAllUndoStuff();
}

}  // namespace lumatrex
