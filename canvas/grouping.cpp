#include <algorithm>
#include <unordered_set>

#include "canvas/tmycad.h"
#include "shapes/groups.h"

namespace lumatrex {

namespace {

// The corners of R in the order a rectangle keeps them: left-top, right-top,
// right-bottom, left-bottom.
TArrMyPoint Corners(const TMyRect& r) {
  return {{r.Left, r.Top}, {r.Right, r.Top}, {r.Right, r.Bottom}, {r.Left, r.Bottom}};
}

// The top-level shapes of Cad among Shapes, each once, in the given order.
std::vector<TMyShape*> GroupableShapes(const TMyCAD& cad, const std::vector<TMyShape*>& shapes) {
  std::vector<TMyShape*> members;
  std::unordered_set<const TMyShape*> taken;
  for (TMyShape* s : shapes)
    if (s && cad.GetShapeByNo(s->ShapeNo) == s && !s->HasParentShape() && taken.insert(s).second)
      members.push_back(s);
  return members;
}

}  // namespace

TMyShape* TMyCAD::GroupShapes(const std::vector<TMyShape*>& shapes, bool record) {
  const std::vector<TMyShape*> members = GroupableShapes(*this, shapes);
  if (members.empty()) return nullptr;
  TMyShape* group = CreateAddShapeByName("TMyGroup");
  if (!group) return nullptr;
  // A group has no figure of its own: its frame must neither hide nor
  // outline its members. Styled before it has members, so nothing is passed on.
  group->Pen().SetStyle(psClear);
  group->Brush().SetStyle(bsClear);
  group->LayerId = members.front()->LayerId;
  group->Points = Corners(GetShapesLTRB(members));
  group->CenterPoint = group->ComputeCenterPoint(4);
  group->TextoutPoint = group->CenterPoint;
  for (TMyShape* member : members) {
    group->ChildShapes.push_back(member->ShapeNo);
    member->ParentId = group->ShapeNo;
    // Members are painted with their group, in its place of the order now.
    InvalidateShapeArea(member);
  }
  // The selection holds top-level shapes only: selected members give way to
  // their group.
  if (std::any_of(members.begin(), members.end(), [this](TMyShape* m) { return IsInWorkingShape(m) != -1; })) {
    for (TMyShape* member : members) RemoveWorkingShape(member);
    AddWorkingShapes(group);
  }
  if (record) PushtoUndoRedoShapeList({group}, ACT_GROUP);
  return group;
}

void TMyCAD::UnGroupShape(TMyShape* group, bool record) {
  if (!dynamic_cast<TMyGroup*>(group) || GetShapeByNo(group->ShapeNo) != group || group->HasParentShape() ||
      group->GetLocked())
    return;
  if (record) PushtoUndoRedoShapeList({group}, ACT_UNGROUP);
  for (const std::int32_t no : group->ChildShapes)
    if (TMyShape* member = GetShapeByNo(no)) {
      member->ParentId = -1;
      InvalidateShapeArea(member);
    }
  group->ChildShapes.clear();
  DeleteShapeById(group->ShapeId, false);
}

}  // namespace lumatrex
