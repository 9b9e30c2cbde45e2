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
  return GroupAs("TMyGroup", shapes, record);
}

TMyShape* TMyCAD::CombineShapes(const std::vector<TMyShape*>& shapes, bool record) {
  return GroupAs("TMyCombine", shapes, record);
}

TMyShape* TMyCAD::GroupAs(const char* className, const std::vector<TMyShape*>& shapes, bool record) {
  const std::vector<TMyShape*> members = GroupableShapes(*this, shapes);
  if (members.empty()) return nullptr;
  TMyShape* group = CreateAddShapeByName(className);
  if (!group) return nullptr;
  // Styled before it has members, so nothing is passed on to them. A group
  // has no figure of its own: its frame must neither hide nor outline its
  // members. A combined figure wears the style of its back-most member.
  if (dynamic_cast<TMyCombine*>(group)) {
    const TMyShape* back = *std::min_element(members.begin(), members.end(), [](const TMyShape* a, const TMyShape* b) {
      return a->ShapeNo < b->ShapeNo;
    });
    group->Pen().Assign(back->Pen());
    group->Brush().Assign(back->Brush());
  } else {
    group->Pen().SetStyle(psClear);
    group->Brush().SetStyle(bsClear);
  }
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

namespace lumatrex {

// A combined figure is one figure: its members are not entered.
static bool Enterable(const TMyShape* shape) {
  return dynamic_cast<const TMyGroup*>(shape) && !dynamic_cast<const TMyCombine*>(shape);
}

bool TMyCAD::EnterGroupAt(const TPoint& p) {
  TMyShape* group = working_.size() == 1 && Enterable(working_.front()) ? working_.front() : nullptr;
  if (!group && Enterable(ShapeAt(p.X, p.Y))) group = ShapeAt(p.X, p.Y);
  if (!group) return false;
  // The front-most member under P: members paint in list order.
  TMyShape* member = nullptr;
  for (const std::int32_t no : group->ChildShapes)
    if (TMyShape* m = GetShapeByNo(no); m && (!member || m->ShapeNo > member->ShapeNo) && m->IsClickedMe(Canvas(), p))
      member = m;
  if (!member) return false;
  bool accept = true;
  if (OnChildShapeSelected) OnChildShapeSelected(this, member, accept);
  if (!accept) return false;
  clickedChildShape_ = member;
  InvalidateHandles(working_);
  SetWorking({member});
  InvalidateHandles(working_);
  mouseIsDown_ = false;
  return true;
}

bool TMyCAD::LeaveGroup() {
  if (mouseIsDown_ || working_.size() != 1 || !working_.front()->HasParentShape()) return false;
  TMyShape* group = GetShapeByNo(working_.front()->ParentId);
  if (!group) return false;
  clickedChildShape_ = nullptr;
  InvalidateHandles(working_);
  SetWorking({group});
  InvalidateHandles(working_);
  return true;
}

}  // namespace lumatrex
