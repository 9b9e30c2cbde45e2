#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <functional>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Box;
using test::DocumentState;
using test::Names;
using test::StepCount;

TMyShape* AddNamedBox(TMyCAD& cad, const std::string& name, float l = 0, float t = 0) {
  TMyShape* shape = AddBox(cad, l, t, l + 10, t + 10);
  shape->SetName(name);
  return shape;
}

// Records a change step for Shapes and moves them, as a mouse drag does.
void RecordedDrag(TMyCAD& cad, const std::vector<TMyShape*>& shapes, double dx, double dy) {
  cad.PushtoUndoRedoShapeList(shapes, ACT_CHANGE);
  for (TMyShape* s : shapes) cad.DragChangeValueDxDyforShapes(s, dx, dy);
}

// "A"; the group "G" of "M1", the group "Inner" (of "N1") and "M2"; "B".
struct TGroupScene {
  TMyCAD cad;
  TGroupScene() {
    AddNamedBox(cad, "A");
    TMyShape* m1 = AddNamedBox(cad, "M1", 20);
    TMyShape* inner = cad.GroupShapes({AddNamedBox(cad, "N1", 40)}, false);
    inner->SetName("Inner");
    TMyShape* m2 = AddNamedBox(cad, "M2", 60);
    cad.GroupShapes({m1, inner, m2}, false)->SetName("G");
    AddNamedBox(cad, "B", 80);
  }
  TMyShape* operator[](const std::string& name) const { return cad.GetShapeByName(name); }
};

// ---------------------------------------------------------------------------
// Recording

TEST(TMyCADUndo, ARecordHoldsADetachedCopyWithoutConnectorsAndTheNameCutTo255Bytes) {
  TMyCAD cad;
  TMyShape* shape = AddBox(cad, 0, 0, 10, 10);
  shape->SetName(std::string(300, 'n'));
  shape->LinkLines = {4};
  shape->UserData().AddKeyandValue("key", "value");
  cad.PushtoUndoRedoShapeList({shape}, ACT_CHANGE);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);
  const TSavedShape& record = cad.GetUndoRedoShapeList()[0];
  EXPECT_EQ(record.UndoStep, 0);
  EXPECT_EQ(record.ShapeName, std::string(255, 'n'));
  EXPECT_EQ(record.ActionName, "ACT_CHANGE");
  ASSERT_NE(record.SavedShape.get(), shape);
  EXPECT_STREQ(record.SavedShape->ClassName(), "TMyRectangle");
  EXPECT_EQ(record.SavedShape->ShapeId, shape->ShapeId);
  EXPECT_EQ(record.SavedShape->UserData(), shape->UserData());
  EXPECT_TRUE(record.SavedShape->LinkLines.empty());
  shape->SetPoint(0, {99, 99});
  EXPECT_EQ(record.SavedShape->GetPoint(0), (TMyPoint{0, 0}));
}

struct TRecordCase {
  const char* edge;
  const char* action;
  std::vector<std::string> given;
  std::vector<std::string> recorded;
};

class TMyCADUndoRecords : public testing::TestWithParam<TRecordCase> {};

TEST_P(TMyCADUndoRecords, RecordTheShapesTheActionNeeds) {
  const TRecordCase& row = GetParam();
  TGroupScene scene;
  std::vector<TMyShape*> given;
  for (const std::string& name : row.given) given.push_back(scene[name]);
  scene.cad.PushtoUndoRedoShapeList(given, row.action);
  std::vector<std::string> recorded;
  for (const TSavedShape& r : scene.cad.GetUndoRedoShapeList()) recorded.push_back(r.ShapeName);
  EXPECT_EQ(recorded, row.recorded);
  EXPECT_EQ(StepCount(scene.cad), row.recorded.empty() ? 0 : 1);
}

INSTANTIATE_TEST_SUITE_P(
    Actions, TMyCADUndoRecords,
    testing::Values(
        TRecordCase{"change_last_given_first_members_depth_first", ACT_CHANGE, {"A", "G"},
                    {"G", "M1", "Inner", "N1", "M2", "A"}},
        TRecordCase{"delete_like_change", ACT_DELETE, {"B", "Inner"}, {"Inner", "N1", "B"}},
        TRecordCase{"ungroup_of_a_top_level_group_takes_its_tree", ACT_UNGROUP, {"G"},
                    {"G", "M1", "Inner", "N1", "M2"}},
        TRecordCase{"ungroup_of_a_nested_group_takes_it_alone", ACT_UNGROUP, {"Inner"}, {"Inner"}},
        TRecordCase{"group_takes_the_group_alone", ACT_GROUP, {"G"}, {"G"}},
        TRecordCase{"z_order_in_given_order", ACT_BRINGTOFRONT, {"A", "B"}, {"A", "B"}},
        TRecordCase{"a_shape_given_twice_once", ACT_ADD, {"A", "A"}, {"A"}},
        TRecordCase{"no_shapes_no_step", ACT_CHANGE, {}, {}}),
    [](const testing::TestParamInfo<TRecordCase>& info) { return std::string(info.param.edge); });

TEST(TMyCADUndo, WithSizeOneEachStepReplacesTheLastAndOneUndoRevertsOnlyTheLast) {
  TMyCAD cad;
  cad.SetUndoRedoSize(1);
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  RecordedDrag(cad, {a}, 5, 0);
  const auto afterFirst = DocumentState(cad);
  RecordedDrag(cad, {b}, 0, 5);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].UndoStep, 0);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].SavedShape->ShapeId, b->ShapeId);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);  // step 0 reverted, none left
  EXPECT_EQ(DocumentState(cad), afterFirst);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  EXPECT_EQ(DocumentState(cad), afterFirst);
}

TEST(TMyCADUndo, AFullHistoryDropsItsOldestStepAndNumbersTheRestFromZero) {
  TMyCAD cad;
  cad.SetUndoRedoSize(3);
  std::vector<TMyShape*> shapes;
  for (int i = 0; i < 4; ++i) shapes.push_back(AddBox(cad, 0, 0, 10, 10));
  RecordedDrag(cad, {shapes[0], shapes[1]}, 1, 0);  // a step of two records
  for (int i = 1; i < 4; ++i) RecordedDrag(cad, {shapes[i]}, 1, 0);
  std::vector<std::pair<std::int32_t, std::int32_t>> stepAndId;
  for (const TSavedShape& r : cad.GetUndoRedoShapeList()) stepAndId.emplace_back(r.UndoStep, r.SavedShape->ShapeId);
  EXPECT_EQ(stepAndId, (std::vector<std::pair<std::int32_t, std::int32_t>>{{0, 1}, {1, 2}, {2, 3}}));
}

TEST(TMyCADUndo, LoweringTheSizeDoesNotTrimAndOnlyAnExactlyFullHistoryDropsAStep) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  for (int i = 0; i < 3; ++i) RecordedDrag(cad, {a}, 1, 0);
  cad.SetUndoRedoSize(2);
  EXPECT_EQ(StepCount(cad), 3);
  RecordedDrag(cad, {a}, 1, 0);
  EXPECT_EQ(StepCount(cad), 4);  // past the size, the history keeps growing
  cad.SetUndoRedoSize(5);
  RecordedDrag(cad, {a}, 1, 0);
  EXPECT_EQ(StepCount(cad), 5);
  RecordedDrag(cad, {a}, 1, 0);
  EXPECT_EQ(StepCount(cad), 5);
}

TEST(TMyCADUndo, SizeZeroEmptiesAndStopsTheHistoryAndTenAgainStartsEmpty) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  RecordedDrag(cad, {a}, 1, 0);
  RecordedDrag(cad, {a}, 1, 0);
  cad.SetUndoRedoSize(0);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  RecordedDrag(cad, {a}, 1, 0);
  cad.DeleteShapeById(a->ShapeId, true);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  cad.SetUndoRedoSize(10);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  EXPECT_EQ(cad.GetShapesCount(), 0);
}

// ---------------------------------------------------------------------------
// Taking a step back

// Repaints are counted through the event loop, as a host sees them.
TEST(TMyCADUndo, UndoAnswersTheNewStepNumberEmptiesTheSelectionAndRepaintsOnlyWhenItReverted) {
  TMyCAD cad;
  cad.resize(64, 48);
  cad.show();
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  cad.SelectShapeByCode(a->ShapeId, true);
  QApplication::processEvents();
  int paints = 0;
  cad.OnPaint = [&paints](QObject*) { ++paints; };

  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  QApplication::processEvents();
  EXPECT_EQ(paints, 0);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 1);

  RecordedDrag(cad, {a}, 1, 0);
  RecordedDrag(cad, {a}, 1, 0);
  QApplication::processEvents();
  paints = 0;
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), 0);
  QApplication::processEvents();
  EXPECT_EQ(paints, 1);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
  EXPECT_EQ(StepCount(cad), 1);
}

TEST(TMyCADUndo, AChangeUndoneAfterAReorderLeavesTheShapeInItsCurrentPlace) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  AddBox(cad, 20, 0, 30, 10);
  RecordedDrag(cad, {a}, 5, 0);
  cad.BringToFront(a, false);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(a->ShapeNo, 1);
  EXPECT_EQ(cad.GetShapeByNo(1), a);
  EXPECT_EQ(a->Points, Box(0, 0, 10, 10));
}

TEST(TMyCADUndo, AStepWhoseShapeIsGoneIsDroppedWithoutEffect) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  RecordedDrag(cad, {a}, 5, 0);
  cad.DeleteShapeById(a->ShapeId, false);
  const auto before = DocumentState(cad);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(cad.GetShapeByNo(0), b);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
}

// ---------------------------------------------------------------------------
// One undo per recorded step gives back the whole document

TEST(TMyCADUndo, UndoingEveryStepRestoresTheDocumentByteForByte) {
  struct Case {
    const char* edge;
    std::function<void(TGroupScene&)> prepare;  // before the document is taken
    std::function<void(TGroupScene&)> edit;
    std::int32_t steps;
  };
  const auto nothing = [](TGroupScene&) {};
  const Case cases[] = {
      {"drag_of_shapes_and_a_group_is_one_step_at_any_zoom", [](TGroupScene& s) { s.cad.SetZoom(2); },
       [](TGroupScene& s) { RecordedDrag(s.cad, {s["A"], s["B"], s["G"]}, 7, -3); }, 1},
      {"group_and_members_get_their_own_pens_back",
       [](TGroupScene& s) {
         s["G"]->Pen().SetColor(clGreen);  // passed on to the members, which then get their own
         s["M1"]->Pen().SetColor(clRed);
         s["M2"]->Pen().SetColor(clBlue);
       },
       [](TGroupScene& s) { RecordedDrag(s.cad, {s["G"]}, 5, 5); }, 1},
      {"add_by_code_is_undone_by_deleting", nothing,
       [](TGroupScene& s) { s.cad.AddShapeByCode("TMyEllipse", "E", Box(0, 0, 20, 10), 0); }, 1},
      {"deleted_text_comes_back_whole",
       [](TGroupScene& s) {
         TMyShape* t = s.cad.AddShapeByCode2("TMyText", "Label", Box(20, 0, 60, 10), 0.5f);
         t->UserData().AddKeyandValue("key", "value");
         t->Pen().SetColor(clRed);
         t->SetCaption("caption");
       },
       [](TGroupScene& s) { s.cad.DeleteShapeById(s["Label"]->ShapeId, true); }, 1},
      {"ungrouping_is_undone_by_regrouping_the_direct_members_with_name_and_identity",
       [](TGroupScene& s) { s["G"]->UserData().AddKeyandValue("key", "value"); },
       [](TGroupScene& s) { s.cad.UnGroupShape(s["G"], true); }, 1},
      {"older_steps_still_find_a_regrouped_group", nothing,
       [](TGroupScene& s) {
         RecordedDrag(s.cad, {s["G"]}, 5, 5);
         s.cad.UnGroupShape(s["G"], true);
       },
       2},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.edge);
    TGroupScene scene;
    scene.cad.SendToBack(scene["B"], false);  // a regrouped group comes back front-most
    c.prepare(scene);
    const auto before = DocumentState(scene.cad);
    c.edit(scene);
    EXPECT_EQ(StepCount(scene.cad), c.steps);
    ASSERT_NE(DocumentState(scene.cad), before);
    for (std::int32_t i = 0; i < c.steps; ++i) scene.cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(DocumentState(scene.cad), before);
  }
}

TEST(TMyCADUndo, UndoingAGroupStepUngroups) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  const auto before = DocumentState(cad);
  TMyShape* g = cad.GroupShapes({a, b}, true);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, "ACT_GROUP");
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].SavedShape->ShapeId, g->ShapeId);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

// ---------------------------------------------------------------------------
// Adding and deleting

TEST(TMyCADUndo, ADeletedShapeComesBackAtTheFront) {
  TMyCAD cad;
  for (const char* name : {"A", "B", "C"}) AddNamedBox(cad, name);
  cad.DeleteShapeById(cad.GetShapeByName("B")->ShapeId, true);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(Names(cad), (std::vector<std::string>{"A", "C", "B"}));
  EXPECT_EQ(cad.GetShapeByName("B")->ShapeNo, 2);
  EXPECT_EQ(cad.GetShapeByName("B")->ShapeId, 1);
}

TEST(TMyCADUndo, ADeletedGroupComesBackWithItsMembersAndTheirRelations) {
  TGroupScene scene;
  TMyCAD& cad = scene.cad;
  scene["M1"]->UserData().AddKeyandValue("key", "value");
  cad.DeleteShapeById(scene["G"]->ShapeId, true);
  EXPECT_EQ(Names(cad), (std::vector<std::string>{"A", "B"}));
  cad.PopFromUndoRedoShapeList();
  ASSERT_EQ(cad.GetShapesCount(), 7);
  TMyShape* g = scene["G"];
  std::vector<std::string> members;
  for (const std::int32_t no : g->ChildShapes) {
    members.push_back(cad.GetShapeByNo(no)->GetName());
    EXPECT_EQ(cad.GetShapeByNo(no)->ParentId, g->ShapeNo);
  }
  EXPECT_EQ(members, (std::vector<std::string>{"M1", "Inner", "M2"}));
  EXPECT_EQ(cad.GetRootParentShape(scene["N1"]), g);
  EXPECT_EQ(cad.GetShapeByNo(scene["Inner"]->ChildShapes.at(0)), scene["N1"]);
  EXPECT_EQ(g->ParentId, -1);
  EXPECT_EQ(scene["M1"]->UserData().GetValueByKey("key"), "value");
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) EXPECT_EQ(cad.GetShapeByNo(i)->ShapeNo, i);
}

TEST(TMyCADUndo, UndoingTheDeletionOfAConnectorAndOneOfItsShapesRestoresBothWithTheConnectorDetached) {
  TMyCAD cad;
  TMyShape* a = AddNamedBox(cad, "A");
  TMyShape* b = AddNamedBox(cad, "B", 40);
  auto* link = static_cast<TMyLinkLine*>(cad.AddShapeByCode2("TMyLinkLine", "Link", {{10, 5}, {40, 5}}, 0));
  link->SetStartSpNo(a->ShapeNo);
  link->SetStartSpPtId(0);
  link->SetEndSpNo(b->ShapeNo);
  link->SetEndSpPtId(0);
  a->LinkLines = b->LinkLines = {static_cast<std::uint32_t>(link->ShapeNo)};
  cad.SelectShapeByCode(a->ShapeId, true);
  cad.SelectShapeByCode(link->ShapeId, false);
  cad.DeleteSelectedShapes(true);
  EXPECT_EQ(StepCount(cad), 1);
  ASSERT_EQ(Names(cad), (std::vector<std::string>{"B"}));

  cad.PopFromUndoRedoShapeList();
  ASSERT_EQ(cad.GetShapesCount(), 3);
  link = static_cast<TMyLinkLine*>(cad.GetShapeByName("Link"));
  ASSERT_NE(link, nullptr);
  EXPECT_EQ(link->GetStartSpNo(), -1);
  EXPECT_EQ(link->GetEndSpNo(), -1);
  EXPECT_EQ(link->Points, (TArrMyPoint{{10, 5}, {40, 5}}));
  EXPECT_TRUE(cad.GetShapeByName("A")->LinkLines.empty());
  EXPECT_TRUE(cad.GetShapeByName("B")->LinkLines.empty());
}

TEST(TMyCADUndo, DeletingTheSelectionIsOneStepThatLeavesLockedShapesOut) {
  TMyCAD cad;
  AddNamedBox(cad, "A");
  AddNamedBox(cad, "B");
  AddNamedBox(cad, "Locked")->StoreLocked(true);
  cad.SelectAllShapes();
  cad.DeleteSelectedShapes(true);
  EXPECT_EQ(Names(cad), (std::vector<std::string>{"Locked"}));
  EXPECT_EQ(StepCount(cad), 1);
  cad.PopFromUndoRedoShapeList();
  auto names = Names(cad);
  std::sort(names.begin(), names.end());
  EXPECT_EQ(names, (std::vector<std::string>{"A", "B", "Locked"}));
}

// ---------------------------------------------------------------------------
// Paint order

struct TZOrderCase {
  const char* edge;
  void (TMyCAD::*command)(TMyShape*, bool);
  const char* shape;
  const char* action;
  std::vector<std::string> afterCommand;
  std::vector<std::string> afterUndo;
};

class TMyCADUndoZOrder : public testing::TestWithParam<TZOrderCase> {};

TEST_P(TMyCADUndoZOrder, TheInverseCommandIsApplied) {
  const TZOrderCase& row = GetParam();
  TMyCAD cad;
  for (const char* name : {"A", "B", "C"}) AddNamedBox(cad, name);
  const auto before = DocumentState(cad);
  (cad.*row.command)(cad.GetShapeByName(row.shape), true);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, row.action);
  EXPECT_EQ(Names(cad), row.afterCommand);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(Names(cad), row.afterUndo);
  if (row.afterUndo == std::vector<std::string>{"A", "B", "C"}) {
    EXPECT_EQ(DocumentState(cad), before);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Commands, TMyCADUndoZOrder,
    testing::Values(
        TZOrderCase{"BringToFront_back_most", &TMyCAD::BringToFront, "A", ACT_BRINGTOFRONT, {"B", "C", "A"},
                    {"A", "B", "C"}},
        TZOrderCase{"BringToFront_middle_comes_back_at_the_very_back", &TMyCAD::BringToFront, "B",
                    ACT_BRINGTOFRONT, {"A", "C", "B"}, {"B", "A", "C"}},
        TZOrderCase{"BringToFront_front_most_records_and_undo_sends_it_back", &TMyCAD::BringToFront, "C",
                    ACT_BRINGTOFRONT, {"A", "B", "C"}, {"C", "A", "B"}},
        TZOrderCase{"SendToBack_front_most", &TMyCAD::SendToBack, "C", ACT_SENDTOBACK, {"C", "A", "B"},
                    {"A", "B", "C"}},
        TZOrderCase{"BringToFrontByStep", &TMyCAD::BringToFrontByStep, "A", ACT_BRINGTOFRONTBYSTEP,
                    {"B", "A", "C"}, {"A", "B", "C"}},
        TZOrderCase{"SendToBackByStep", &TMyCAD::SendToBackByStep, "C", ACT_SENDTOBACKBYSTEP, {"A", "C", "B"},
                    {"A", "B", "C"}}),
    [](const testing::TestParamInfo<TZOrderCase>& info) { return std::string(info.param.edge); });

// ---------------------------------------------------------------------------
// Grouping

}  // namespace
}  // namespace lumatrex
