// The document a canvas holds: shapes and their list positions, groups,
// layers, paint order, selection, page, entries placed from a library, and
// the defaults new shapes take from the canvas.
#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "platform/qt_interop.h"
#include "shapes/connectors.h"
#include "shapes/drawing_modes.h"
#include "support/golden.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using namespace test;

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

// A library with the entry "Pair", drawn 20 x 10: a group (0) of a box (1)
// and a connector (2) from the box's link point to a shape outside the entry
// (its fields are in the lumatrex tool's dump of it).
TLibManager PairLibrary() {
  TLibManager lib;
  lib.LoadFromFile(DataPath("libraries/pair.lib"));
  return lib;
}

// ---------------------------------------------------------------------------
// Shapes

TEST(TMyCADDocument, CreateAddShapeByNameNumbersShapesFromZero) {
  TMyCAD cad;
  TMyShape* first = cad.CreateAddShapeByName("TMyLine");
  ASSERT_NE(first, nullptr);
  EXPECT_STREQ(first->ClassName(), "TMyLine");
  EXPECT_EQ((std::make_tuple(first->GetName(), first->GetCaption(), first->ShapeId, first->ShapeNo, first->LayerId)),
            (std::make_tuple(std::string("Shape0"), std::string("Shape0"), 0, 0, 0)));
  EXPECT_EQ(cad.CreateAddShapeByName("TMyRectangle")->GetName(), "Shape1");
  EXPECT_EQ(cad.CreateAddShapeByName("TNoSuchShape"), nullptr);
}

TEST(TMyCADDocument, WithoutLayersAddingShowsTheMessageEndsTheApplicationAndRefuses) {
  TMyCAD cad;
  cad.DeleteAllLayers();
  THookRecorder hooks;
  EXPECT_FALSE(cad.AddShape(std::make_unique<TMyShape>(&cad)));
  EXPECT_TRUE(cad.AddUserDefineShapefromLib(PairLibrary(), "Pair").empty());
  EXPECT_EQ(hooks.messages, std::vector<std::string>(2, "Error!There is no Layer!"));
  EXPECT_EQ(hooks.terminations, 2);
  EXPECT_EQ(cad.GetShapesCount(), 0);
  EXPECT_FALSE(cad.AddShape(nullptr));
}

TEST(TMyCADDocument, DeletingRenumbersTheLaterShapesTheirGroupReferencesAndTheSelection) {
  TMyCAD cad;
  AddPlain(cad);                     // 0
  TMyShape* group = AddPlain(cad);   // 1
  TMyShape* member = AddPlain(cad);  // 2
  TMyShape* other = AddPlain(cad);   // 3
  AddPlain(cad);                     // 4
  Group(group, {member, other});
  cad.SelectAllShapes();
  std::vector<std::string> deleted;
  cad.OnShapeDeleted = [&](QObject*, TMyShape* s) {
    deleted.push_back(s->GetName());
    EXPECT_EQ(cad.GetShapesCount(), 5);  // raised before the removal
  };
  EXPECT_TRUE(cad.DeleteShapeById(0, false));
  EXPECT_EQ(deleted, std::vector<std::string>{"Shape0"});
  ExpectGoldenFile(DocumentText(cad), "canvas/first-deleted.txt");
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{group, cad.GetShapeByNo(3)}));
  // Deleting a member leaves the group; deleting the group takes its members.
  cad.OnShapeDeleted = nullptr;
  EXPECT_TRUE(cad.DeleteShapeById(member->ShapeId, false));
  ExpectGoldenFile(DocumentText(cad), "canvas/member-deleted.txt");
  EXPECT_TRUE(cad.DeleteShapeById(group->ShapeId, false));
  ExpectGoldenFile(DocumentText(cad), "canvas/group-deleted.txt");
}

TEST(TMyCADDocument, IdLookupsFollowIdsChangedAfterAdding) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  EXPECT_EQ(cad.GetShapeByID(b->ShapeId), b);
  b->ShapeId = 500;
  b->Changed();
  EXPECT_EQ(cad.GetShapeByID(500), b);
  a->ShapeId = 500;  // two shapes with one id: the first in the list
  a->Changed();
  EXPECT_EQ(cad.GetShapeByID(500), a);
  EXPECT_EQ(cad.GetShapeNoById(500), 0);
}

// ---------------------------------------------------------------------------
// Layers, paint order, selection, page

TEST(TMyCADLayers, NamesAreUniqueIdsAreNeverReusedDeletingTakesTheShapesAndMergingMovesThem) {
  TMyCAD cad;
  std::vector<std::string> events;
  cad.OnNewLayer = [&](QObject*, std::int32_t id, const std::string& name, bool visible) {
    events.push_back("new " + std::to_string(id) + " " + name + (visible ? "+" : "-"));
  };
  cad.OnDeleteLayer = [&](QObject*, std::int32_t id, const std::string&, bool) {
    events.push_back("delete " + std::to_string(id));
  };
  AddPlain(cad);
  EXPECT_EQ(cad.NewLayer("Layer0", true), -1);
  EXPECT_EQ(cad.NewLayer("A", false), 1);
  EXPECT_EQ(cad.GetCurrentLayerId(), 1);
  EXPECT_EQ(cad.NewLayer("layer0", true), 2);  // names compare case-sensitively
  AddPlain(cad)->SetLocked(true);
  EXPECT_TRUE(cad.DeleteLayerByName("layer0"));  // with its shapes, even locked ones
  EXPECT_EQ(Names(cad), std::vector<std::string>{"Shape0"});
  EXPECT_EQ(cad.GetLayerNoByName("layer0"), -1);
  EXPECT_EQ(cad.NewLayer("B", true), 3);
  EXPECT_EQ(cad.GetMaxLayerId(), 3);
  EXPECT_EQ(events, (std::vector<std::string>{"new 1 A-", "new 2 layer0+", "delete 2", "new 3 B+"}));
  TMyShape* s = AddPlain(cad);
  EXPECT_EQ(cad.MergeLayers(0, 0), 0);
  EXPECT_EQ(cad.MergeLayers(0, 9), 0);
  EXPECT_EQ(cad.MergeLayers(0, 3), 1);
  EXPECT_EQ(s->LayerId, 0);
  EXPECT_EQ(cad.GetCurrentLayerId(), 0);
  EXPECT_EQ(cad.GetLayersCount(), 2);
  EXPECT_EQ(cad.GetShapesCount(), 2);
}

TEST(TMyCADZOrder, BringToFrontPassesWholeGroupsAndKeepsTheirReferences) {
  TMyCAD cad;
  TMyShape* moved = AddPlain(cad);   // 0
  TMyShape* group = AddPlain(cad);   // 1
  TMyShape* member = AddPlain(cad);  // 2
  Group(group, {member});
  AddPlain(cad);  // 3
  cad.BringToFrontByStep(moved, false);
  ExpectGoldenFile(DocumentText(cad), "canvas/brought-forward-a-step.txt");
  cad.BringToFront(moved, false);
  ExpectGoldenFile(DocumentText(cad), "canvas/brought-to-front.txt");
}

TEST(TMyCADSelection, MembersAreSelectedThroughTheirRootGroupOnceAndSelectAllKeepsTheOrder) {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad);
  TMyShape* member = AddPlain(cad);
  TMyShape* b = AddPlain(cad);
  Group(group, {member});
  cad.NewLayer("A", true);
  TMyShape* c = AddPlain(cad);
  cad.AddWorkingShapes(member);
  cad.AddWorkingShapes(group);
  EXPECT_EQ(cad.GetWorkingShapesCount(), 1);
  EXPECT_EQ(cad.IsInWorkingShape(group), 0);
  EXPECT_EQ(cad.IsInWorkingShape(member), -1);
  EXPECT_EQ(cad.GetSelectedShape(), group);
  cad.RemoveWorkingShape(group);
  EXPECT_EQ(cad.GetSelectedShape(), nullptr);

  std::vector<std::pair<TMyShape*, TMyShape*>> events;
  cad.OnShapeSelected = [&](QObject*, TMyShape* first, TMyShape* selected) { events.push_back({first, selected}); };
  EXPECT_TRUE(cad.SelectShapeByCode(b->ShapeId, true));
  EXPECT_TRUE(cad.SelectShapeByCode(group->ShapeId, false));
  EXPECT_FALSE(cad.SelectShapeByCode(99, true));
  EXPECT_EQ(events, (std::vector<std::pair<TMyShape*, TMyShape*>>{{b, b}, {b, group}}));
  EXPECT_EQ(cad.GetSelectedShape(), nullptr);  // only one selected shape is "the" selected shape
  cad.DeSelectedAllShapesByCode();
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
  cad.SelectAllShapesByLayerId(1);
  EXPECT_EQ(cad.GetSelectedShapes(), std::vector<TMyShape*>{c});
  cad.SelectAllShapes();  // the selected shape stays first, the rest follow in list order
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{c, group, b}));
  cad.RemoveWorkingShape(group);
  EXPECT_EQ(cad.IsInWorkingShape(b), 1);
  // A shape that left keeps its old number, which now names another shape.
  EXPECT_EQ(cad.IsInWorkingShape(group), -1);
  // A kind the canvas cannot make by name does not come back on undo.
  cad.SetUndoRedoSize(5);
  cad.DeleteSelectedShapes(true);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(cad.GetShapesCount(), 2);
}

// A shape keeps one selection number, which only its own canvas may write.
TEST(TMyCADSelection, AnotherDrawingsShapeIsRefusedAndStaysSelectedThere) {
  TMyCAD cad, other;
  cad.AddWorkingShapes(cad.CreateAddShapeByName("TMyLine"));
  TMyShape* foreign = other.CreateAddShapeByName("TMyLine");
  other.AddWorkingShapes(foreign);
  cad.AddWorkingShapes(foreign);
  EXPECT_EQ((std::make_pair(cad.GetWorkingShapesCount(), other.IsInWorkingShape(foreign))), std::make_pair(1, 0));
}

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

// ---------------------------------------------------------------------------
// Defaults and groups as frames

// The handle colour is one for the whole process; a new canvas leaves it.
TEST(TMyCAD, TheHandleColourIsProcessWideAndANewCanvasLeavesIt) {
  const TColor before = GetHotColor();
  TMyCAD cad;
  EXPECT_EQ(cad.GetColorOfHot(), 0x808080);
  EXPECT_EQ(GetHotColor(), before);
  cad.SetColorOfHot(clAqua);
  EXPECT_EQ(GetHotColor(), clAqua);
  SetHotColor(before);
}

// A group (position 0) of two members, a (1) and b (2).
struct TGroupOfTwo {
  TMyCAD cad;
  TMyShape* group = AddPlain(cad, Box(0, 0, 100, 100));
  TMyShape* a = AddPlain(cad, Box(0, 0, 10, 10));
  TMyShape* b = AddPlain(cad, Box(90, 90, 100, 100));
  TGroupOfTwo() { Group(group, {a, b}); }
};

TEST(TMyCAD, MembersHaveTheirRootGroupAndTurnAndFlipAboutItsCentreAndLockedOnesStay) {
  TGroupOfTwo turned;
  EXPECT_EQ(turned.cad.GetRootParentShape(turned.a), turned.group);
  EXPECT_EQ(turned.cad.GetRootParentShape(turned.group), turned.group);
  turned.a->SetAngle(static_cast<float>(kPi));
  EXPECT_NEAR(turned.a->GetPoint(0).X, 100, 1e-3);
  EXPECT_NEAR(turned.a->GetPoint(0).Y, 100, 1e-3);
  TGroupOfTwo flipped;
  flipped.group->SetIsFlipHorz(true);
  EXPECT_TRUE(flipped.a->GetIsFlipHorz());
  EXPECT_NEAR(flipped.a->GetPoint(0).X, 100, 1e-4);
  EXPECT_NEAR(flipped.b->GetPoint(0).X, 10, 1e-4);
  TGroupOfTwo locked;
  locked.a->SetLocked(true);
  EXPECT_FALSE(locked.b->GetLocked());
  locked.cad.RotateChangeValueforShapes(locked.group, {50, 50}, kPi);
  EXPECT_EQ(locked.a->GetPoint(0), (TMyPoint{0, 0}));
  EXPECT_NEAR(locked.b->GetPoint(0).X, 10, 1e-4);
  EXPECT_NEAR(locked.group->GetAngle(), kPi, 1e-6);
  locked.group->SetLocked(true);  // locking a group locks its members
  EXPECT_TRUE(locked.b->GetLocked());
  locked.group->ParentId = 1;  // a broken file could hold a cycle
  EXPECT_NE(locked.cad.GetRootParentShape(locked.a), nullptr);
}

TEST(TMyCAD, BulkUpdateStopsGroupStylingAndNests) {
  TGroupOfTwo c;
  c.cad.BeginUpdate();
  c.cad.BeginUpdate();
  c.group->Pen().SetColor(clRed);
  c.cad.EndUpdate();
  EXPECT_TRUE(c.cad.IsUpdating());
  EXPECT_NE(c.a->Pen().Color(), clRed);
  c.cad.EndUpdate();
  c.group->Pen().SetColor(clLime);
  EXPECT_EQ(c.a->Pen().Color(), clLime);
}

// ---------------------------------------------------------------------------
// Grouping

TEST(TMyCADGrouping, AGroupIsAddedAfterItsMembersFramingThemAndUngroupingRemovesIt) {
  TMyCAD cad;
  TMyShape* x = AddBox(cad, 100, 100, 110, 110);
  TMyShape* a = AddBox(cad, 10, 20, 30, 40);
  TMyShape* b = AddBox(cad, 50, 0, 60, 25);
  const auto before = DocumentState(cad);
  cad.NewLayer("Other", true);
  cad.SelectShapeByCode(x->ShapeId, true);
  cad.SelectShapeByCode(a->ShapeId, false);
  TMyShape* g = cad.GroupShapes({a, b}, false);
  ASSERT_NE(g, nullptr);
  // The group "Shape3" at position 3, on its members' layer 0 (not the
  // current one), framing them: (10, 0) to (60, 40).
  ExpectGoldenFile(DocumentText(cad), "canvas/grouped.txt");
  EXPECT_EQ(g->GetCenterPoint(), (TMyPoint{35, 20}));
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{x, g}));  // selected members give way to their group
  EXPECT_EQ(StepCount(cad), 0);
  cad.DeSelectedAllShapesByCode();
  cad.UnGroupShape(g, false);
  EXPECT_EQ(DocumentState(cad), before);
}

TEST(TMyCADGrouping, OnlyTopLevelShapesOfTheCanvasBecomeMembersEachOnceAndRefusalsChangeNothing) {
  TMyCAD cad;
  TMyCAD other;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* c = AddBox(cad, 20, 0, 30, 10);
  TMyShape* inner = cad.GroupShapes({a}, false);
  TMyShape* g = cad.GroupShapes({a, c, c, inner, nullptr, AddBox(other, 0, 0, 10, 10)}, false);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(g->ChildShapes, (std::vector<std::int32_t>{c->ShapeNo, inner->ShapeNo}));
  const auto grouped = DocumentState(cad);
  EXPECT_EQ(cad.GroupShapes({a, nullptr}, false), nullptr);
  EXPECT_EQ(cad.GroupShapes({}, true), nullptr);
  EXPECT_EQ(DocumentState(cad), grouped);
  // Ungrouping a null, a non-group, a nested or a locked group.
  for (TMyShape* shape : {static_cast<TMyShape*>(nullptr), a, inner, g}) {
    if (shape == g) g->StoreLocked(true);
    const auto before = DocumentState(cad);
    cad.UnGroupShape(shape, true);
    EXPECT_EQ(DocumentState(cad), before);
  }
  EXPECT_EQ(StepCount(cad), 0);
}

TEST(TMyCADGrouping, AGroupDrawsNothingOverOrAroundItsMembers) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 30, 0, 40, 10);
  for (TMyShape* s : {a, b}) s->Brush().SetColor(clRed);
  cad.GroupShapes({a, b}, false);
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.RenderToBitmap({1.0, false, 16})), "canvas/group-of-two.png"));
}

// ---------------------------------------------------------------------------
// Entries placed from a library

TEST(TMyCADLibraryShapes, AnEntryIsPlacedInFrontWithNewIdentitiesAndRenumberedReferencesAsOneStep) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  AddBox(cad, 20, 0, 30, 10);
  const auto before = DocumentState(cad);
  int added = 0;
  cad.OnShapeAdded = [&added](QObject*, TMyShape*&, std::int32_t) { ++added; };
  const std::vector<TMyShape*> placed = cad.AddUserDefineShapefromLib(PairLibrary(), "Pair", {100, 50, 0, 0});
  EXPECT_EQ(added, 3);
  // Ids, names and references after the canvas's own, on the current layer,
  // at (100, 50); the connector's outside end is free.
  ExpectGoldenFile(DocumentText(cad), "canvas/placed-pair.txt");
  EXPECT_EQ(placed, (std::vector<TMyShape*>{cad.GetShapeByNo(2), cad.GetShapeByNo(3), cad.GetShapeByNo(4)}));
  for (const TMyShape* shape : placed) EXPECT_EQ(shape->Owner(), &cad);
  EXPECT_EQ(cad.GetNextShapeId(), 5);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);  // the group; its members go with it
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, "ACT_ADD");
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

TEST(TMyCADLibraryShapes, AnAbsentOrDamagedEntryLeavesTheDrawingAlone) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  const auto before = DocumentState(cad);
  EXPECT_TRUE(cad.AddUserDefineShapefromLib(PairLibrary(), "Other").empty());
  TLibManager damaged = PairLibrary();
  std::vector<std::uint8_t> bytes = damaged.Bytes();
  bytes.pop_back();
  damaged.SetBytes(bytes);
  EXPECT_THROW(cad.AddUserDefineShapefromLib(damaged, "Pair"), EReadError);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

}  // namespace
}  // namespace lumatrex
