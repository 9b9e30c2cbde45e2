#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "platform/screen.h"

namespace lumatrex {
namespace {

using test::Box;
using test::Names;

// Adds a plain shape with the given points and a fresh identity.
TMyShape* AddPlain(TMyCAD& cad, TArrMyPoint points = Box(0, 0, 10, 10)) {
  auto shape = std::make_unique<TMyShape>(&cad);
  shape->ShapeId = cad.GetNextShapeId();
  shape->SetName("Shape" + std::to_string(shape->ShapeId));
  shape->Points = std::move(points);
  shape->CenterPoint = shape->ComputeCenterPoint(4);
  TMyShape* raw = shape.get();
  EXPECT_TRUE(cad.AddShape(std::move(shape)));
  return raw;
}

// Makes Members a group under Group.
void Group(TMyShape* group, const std::vector<TMyShape*>& members) {
  for (TMyShape* m : members) {
    group->ChildShapes.push_back(m->ShapeNo);
    m->ParentId = group->ShapeNo;
  }
}

// ---------------------------------------------------------------------------
// A new canvas

TEST(TMyCADDocument, CreateAddShapeByNameNumbersShapesFromZero) {
  TMyCAD cad;
  TMyShape* first = cad.CreateAddShapeByName("TMyLine");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->ClassName(), "TMyLine");
  EXPECT_EQ(first->GetName(), "Shape0");
  EXPECT_EQ(first->GetCaption(), "Shape0");
  EXPECT_EQ(first->ShapeId, 0);
  EXPECT_EQ(first->ShapeNo, 0);
  EXPECT_EQ(first->LayerId, 0);
  EXPECT_EQ(cad.CreateAddShapeByName("TMyRectangle")->GetName(), "Shape1");
  EXPECT_EQ(cad.CreateAddShapeByName("TNoSuchShape"), nullptr);
}

TEST(TMyCADDocument, AddingWithoutLayersShowsTheMessageEndsTheApplicationAndRefuses) {
  TMyCAD cad;
  cad.DeleteAllLayers();
  test::THookRecorder hooks;
  EXPECT_FALSE(cad.AddShape(std::make_unique<TMyShape>(&cad)));
  EXPECT_EQ(hooks.messages, std::vector<std::string>{"Error!There is no Layer!"});
  EXPECT_EQ(hooks.terminations, 1);
  EXPECT_EQ(cad.GetShapesCount(), 0);
  EXPECT_FALSE(cad.AddShape(nullptr));
}

// ---------------------------------------------------------------------------
// Deleting

TEST(TMyCADDocument, DeletingRenumbersTheLaterShapesAndTheirGroupReferences) {
  TMyCAD cad;
  AddPlain(cad);                          // 0
  TMyShape* group = AddPlain(cad);        // 1
  TMyShape* member = AddPlain(cad);       // 2
  Group(group, {member});
  std::vector<std::string> deleted;
  cad.OnShapeDeleted = [&](QObject*, TMyShape* s) {
    deleted.push_back(s->GetName());
    EXPECT_EQ(cad.GetShapesCount(), 3);  // raised before the removal
  };
  EXPECT_TRUE(cad.DeleteShapeById(0, false));
  EXPECT_EQ(deleted, std::vector<std::string>{"Shape0"});
  EXPECT_EQ(group->ShapeNo, 0);
  EXPECT_EQ(member->ShapeNo, 1);
  EXPECT_EQ(group->ChildShapes, std::vector<std::int32_t>{1});
  EXPECT_EQ(member->ParentId, 0);
}

TEST(TMyCADDocument, DeletingAGroupTakesItsMembersAndDeletingAMemberLeavesTheGroup) {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad);
  TMyShape* a = AddPlain(cad);
  TMyShape* b = AddPlain(cad);
  AddPlain(cad);
  Group(group, {a, b});
  EXPECT_TRUE(cad.DeleteShapeById(a->ShapeId, false));
  EXPECT_EQ(group->ChildShapes, std::vector<std::int32_t>{1});
  EXPECT_EQ(b->ShapeNo, 1);
  EXPECT_TRUE(cad.DeleteShapeById(group->ShapeId, false));
  EXPECT_EQ(Names(cad), std::vector<std::string>{"Shape3"});
  EXPECT_EQ(cad.GetShapeByNo(0)->ShapeNo, 0);
}

TEST(TMyCADDocument, DeletingASelectedShapeDropsItFromTheSelection) {
  TMyCAD cad;
  AddPlain(cad);
  TMyShape* b = AddPlain(cad);
  cad.SelectAllShapes();
  cad.DeleteShapeById(0, false);
  EXPECT_EQ(cad.GetSelectedShape(), b);
}

// ---------------------------------------------------------------------------
// Layers

TEST(TMyCADLayers, NewLayerRefusesATakenNameAndMakesTheNewLayerCurrent) {
  TMyCAD cad;
  std::vector<std::int32_t> created;
  std::vector<std::string> names;
  cad.OnNewLayer = [&](QObject*, std::int32_t id, const std::string& name, bool visible) {
    created.push_back(id);
    names.push_back(name + (visible ? "+" : "-"));
  };
  EXPECT_EQ(cad.NewLayer("Layer0", true), -1);
  EXPECT_EQ(cad.NewLayer("A", false), 1);
  EXPECT_EQ(cad.GetCurrentLayerId(), 1);
  EXPECT_EQ(cad.NewLayer("layer0", true), 2);  // names compare case-sensitively
  EXPECT_EQ(created, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(names, (std::vector<std::string>{"A-", "layer0+"}));
}

TEST(TMyCADLayers, LayerIdsAreNeverReused) {
  TMyCAD cad;
  cad.NewLayer("A", true);
  std::vector<std::int32_t> removed;
  cad.OnDeleteLayer = [&](QObject*, std::int32_t id, const std::string&, bool) { removed.push_back(id); };
  EXPECT_TRUE(cad.DeleteLayerByID(1));
  EXPECT_EQ(removed, std::vector<std::int32_t>{1});
  EXPECT_EQ(cad.NewLayer("B", true), 2);
  EXPECT_EQ(cad.GetMaxLayerId(), 2);
}

TEST(TMyCADLayers, DeletingALayerDeletesItsShapesEvenLockedOnes) {
  TMyCAD cad;
  AddPlain(cad);
  cad.NewLayer("A", true);
  TMyShape* locked = AddPlain(cad);
  locked->SetLocked(true);
  EXPECT_TRUE(cad.DeleteLayerByName("A"));
  EXPECT_EQ(Names(cad), std::vector<std::string>{"Shape0"});
  EXPECT_EQ(cad.GetLayerNoByName("A"), -1);
}

TEST(TMyCADLayers, MergeMovesTheShapesMakesTheTargetCurrentAndDeletesTheSource) {
  TMyCAD cad;
  cad.NewLayer("A", true);
  TMyShape* s = AddPlain(cad);
  cad.SetCurrentLayerId(1);
  EXPECT_EQ(cad.MergeLayers(0, 0), 0);
  EXPECT_EQ(cad.MergeLayers(0, 9), 0);
  EXPECT_EQ(cad.GetLayersCount(), 2);
  EXPECT_EQ(cad.MergeLayers(0, 1), 1);
  EXPECT_EQ(s->LayerId, 0);
  EXPECT_EQ(cad.GetCurrentLayerId(), 0);
  EXPECT_EQ(cad.GetLayersCount(), 1);
  EXPECT_EQ(cad.GetShapesCount(), 1);
}

// ---------------------------------------------------------------------------
// Paint order

TEST(TMyCADZOrder, BringToFrontPassesWholeGroupsAndKeepsTheirReferences) {
  TMyCAD cad;
  TMyShape* moved = AddPlain(cad);   // 0
  TMyShape* group = AddPlain(cad);   // 1
  TMyShape* member = AddPlain(cad);  // 2
  Group(group, {member});
  TMyShape* last = AddPlain(cad);    // 3
  cad.BringToFrontByStep(moved, false);
  EXPECT_EQ(Names(cad), (std::vector<std::string>{"Shape1", "Shape0", "Shape2", "Shape3"}));
  EXPECT_EQ(member->ParentId, group->ShapeNo);
  EXPECT_EQ(group->ChildShapes, std::vector<std::int32_t>{member->ShapeNo});
  cad.BringToFront(moved, false);
  EXPECT_EQ(cad.GetShapeByNo(cad.GetShapesCount() - 1), moved);
  EXPECT_EQ(last->ShapeNo, 1);
  EXPECT_EQ(member->ParentId, group->ShapeNo);
}

TEST(TMyCADZOrder, NeighbourLookupsSkipGroupMembers) {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad);
  TMyShape* member = AddPlain(cad);
  TMyShape* single = AddPlain(cad);
  Group(group, {member});
  EXPECT_EQ(cad.GetNextSingleorRootShape(0), single);
  EXPECT_EQ(cad.GetPrevSingleorRootShape(2), group);
  EXPECT_EQ(cad.GetNextSingleorRootShape(2), nullptr);
  EXPECT_EQ(cad.GetPrevSingleorRootShape(0), nullptr);
}

// ---------------------------------------------------------------------------
// Selection

TEST(TMyCADSelection, AGroupMemberIsSelectedThroughItsRootGroupOnce) {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad);
  TMyShape* member = AddPlain(cad);
  Group(group, {member});
  cad.AddWorkingShapes(member);
  cad.AddWorkingShapes(group);
  EXPECT_EQ(cad.GetWorkingShapesCount(), 1);
  EXPECT_EQ(cad.IsInWorkingShape(group), 0);
  EXPECT_EQ(cad.IsInWorkingShape(member), -1);
  EXPECT_EQ(cad.GetSelectedShape(), group);
  cad.RemoveWorkingShape(group);
  EXPECT_EQ(cad.GetSelectedShape(), nullptr);
}

TEST(TMyCADSelection, SelectShapeByCodeRaisesTheEventWithTheFirstSelected) {
  TMyCAD cad;
  TMyShape* a = AddPlain(cad);
  TMyShape* b = AddPlain(cad);
  std::vector<std::pair<TMyShape*, TMyShape*>> events;
  cad.OnShapeSelected = [&](QObject*, TMyShape* last, TMyShape* selected) { events.push_back({last, selected}); };
  EXPECT_TRUE(cad.SelectShapeByCode(a->ShapeId, true));
  EXPECT_TRUE(cad.SelectShapeByCode(b->ShapeId, false));
  EXPECT_FALSE(cad.SelectShapeByCode(99, true));
  ASSERT_EQ(events.size(), 2u);
  EXPECT_EQ(events[1], std::make_pair(a, b));
  EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
  EXPECT_EQ(cad.GetSelectedShape(), nullptr);
  cad.DeSelectedAllShapesByCode();
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
}

TEST(TMyCADSelection, SelectAllTakesTopLevelShapesOfEveryLayerOrOfOneLayer) {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad);
  Group(group, {AddPlain(cad)});
  cad.NewLayer("A", true);
  AddPlain(cad);
  cad.SelectAllShapesByLayerId(1);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 1);
  cad.SelectAllShapes();
  EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
}

// ---------------------------------------------------------------------------
// Page

TEST(TMyCADPage, PaperStylesMeasureAtTheScreenResolutionInBothOrientations) {
  TMyCAD cad;
  cad.SetPageStyle(A3);
  EXPECT_EQ(cad.GetPageWidth(), 1123);
  EXPECT_EQ(cad.GetPageHeight(), 1587);
  cad.SetPageOrientation(1);
  EXPECT_EQ(cad.GetPageWidth(), 1587);
  EXPECT_EQ(cad.GetPageStyleByWH(1587, 1123), A3);
  EXPECT_EQ(cad.GetPageStyleByWH(1123, 1587), A3);
  EXPECT_EQ(cad.GetPageStyleByWH(665, 945), B5);
  EXPECT_EQ(cad.GetPageStyleByWH(100, 100), CustomerPage);
  cad.SetPageWidth(500);
  cad.SetPageStyle(CustomerPage);
  EXPECT_EQ(cad.GetPageWidth(), 500);
}

TEST(TMyCADPage, ShapesExtentInModelAndZoomedCoordinates) {
  TMyCAD cad;
  TMyShape* a = AddPlain(cad, Box(10, 20, 30, 40));
  TMyShape* b = AddPlain(cad, Box(-5, 25, 0, 60));
  cad.SetZoom(2);
  EXPECT_EQ(cad.GetShapesLTRB({a, b}), (TMyRect{-5, 20, 30, 60}));
  EXPECT_EQ(cad.GetShapesLTRBinZoom({a, b}), (TMyRect{-10, 40, 60, 120}));
  EXPECT_EQ(cad.GetShapesLTRB({}), TMyRect{});
}

}  // namespace
}  // namespace lumatrex
