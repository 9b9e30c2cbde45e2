// The undo history and the editing commands: what each step records, the
// history's bounds, and every command (z-order, group, combine, flip, tilt,
// align, keys) undone and redone to the exact document before and after it.
#include <gtest/gtest.h>

#include <QApplication>
#include <functional>
#include <iterator>
#include <map>
#include <sstream>
#include <string>
#include <tuple>
#include <vector>

#include "canvas/document_state.h"
#include "geometry/geometry.h"
#include "platform/qt_interop.h"
#include "shapes/groups.h"
#include "support/golden.h"
#include "support/mouse.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using namespace test;

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

// "A"; the group "G" of "M1", the group "Inner" (of "N1") and "M2"; "B"; ten
// wide each, side by side.
struct TGroupScene {
  TMyCAD cad;
  TGroupScene() { EXPECT_TRUE(cad.LoadFromFile(DataPath("drawings/group-scene.zlt"))); }
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

// The names in a row of a table: words split at spaces.
std::vector<std::string> Words(const std::string& list) {
  std::istringstream in(list);
  return {std::istream_iterator<std::string>(in), std::istream_iterator<std::string>()};
}

// The shapes a step records for the shapes given, in order, are the rows of
// tests/data/canvas/undo-records.txt.
TEST(TMyCADUndo, AStepRecordsTheShapesItsActionNeeds) {
  for (const std::vector<std::string>& row : DataTable("canvas/undo-records.txt")) {
    SCOPED_TRACE(row.at(0));
    TGroupScene scene;
    std::vector<TMyShape*> given;
    for (const std::string& name : Words(row.at(2))) given.push_back(scene[name]);
    scene.cad.PushtoUndoRedoShapeList(given, row.at(1));
    std::vector<std::string> recorded;
    for (const TSavedShape& r : scene.cad.GetUndoRedoShapeList()) recorded.push_back(r.ShapeName);
    EXPECT_EQ(recorded, Words(row.at(3)));
    EXPECT_EQ(StepCount(scene.cad), std::stoi(row.at(4)));
  }
}

// The size bounds the history only when a step is added to an exactly full
// one; size 1 keeps the last step alone; size 0 empties and stops it.
TEST(TMyCADUndo, TheSizeDropsTheOldestStepOfAFullHistoryAndZeroStopsIt) {
  TMyCAD cad;
  std::vector<TMyShape*> shapes;
  for (int i = 0; i < 4; ++i) shapes.push_back(AddBox(cad, 0, 0, 10, 10));
  cad.SetUndoRedoSize(3);
  RecordedDrag(cad, {shapes[0], shapes[1]}, 1, 0);  // a step of two records
  for (int i = 1; i < 4; ++i) RecordedDrag(cad, {shapes[i]}, 1, 0);
  std::vector<std::pair<std::int32_t, std::int32_t>> stepAndId;
  for (const TSavedShape& r : cad.GetUndoRedoShapeList()) stepAndId.emplace_back(r.UndoStep, r.SavedShape->ShapeId);
  EXPECT_EQ(stepAndId, (std::vector<std::pair<std::int32_t, std::int32_t>>{{0, 1}, {1, 2}, {2, 3}}));
  cad.SetUndoRedoSize(2);
  EXPECT_EQ(StepCount(cad), 3);  // lowering the size does not trim
  RecordedDrag(cad, {shapes[0]}, 1, 0);
  EXPECT_EQ(StepCount(cad), 4);  // past the size, the history keeps growing
  cad.SetUndoRedoSize(5);
  RecordedDrag(cad, {shapes[0]}, 1, 0);
  RecordedDrag(cad, {shapes[0]}, 1, 0);
  EXPECT_EQ(StepCount(cad), 5);
  cad.SetUndoRedoSize(1);  // each step replaces the last; one undo reverts only it
  cad.ClearAllUndoStuff();
  RecordedDrag(cad, {shapes[0]}, 1, 0);
  const auto afterFirst = DocumentState(cad);
  RecordedDrag(cad, {shapes[1]}, 0, 5);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  EXPECT_EQ(DocumentState(cad), afterFirst);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  cad.SetUndoRedoSize(0);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  RecordedDrag(cad, {shapes[0]}, 1, 0);
  cad.DeleteShapeById(shapes[0]->ShapeId, true);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  cad.SetUndoRedoSize(10);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
  EXPECT_EQ(cad.GetShapesCount(), 3);
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

// A change undone after a reorder leaves the shape in its current place; a
// step whose shape is gone is dropped without effect.
TEST(TMyCADUndo, AChangeUndoneKeepsTheShapesCurrentPlaceAndAStepOfADeletedShapeIsDropped) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  RecordedDrag(cad, {a}, 5, 0);
  cad.BringToFront(a, false);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(cad.GetShapeByNo(1), a);
  EXPECT_EQ(a->Points, Box(0, 0, 10, 10));
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
      {"grouping_is_undone_by_ungrouping", nothing, [](TGroupScene& s) { s.cad.GroupShapes({s["A"], s["B"]}, true); }, 1},
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

// ---------------------------------------------------------------------------
// Adding and deleting

TEST(TMyCADUndo, ADeletedGroupComesBackWithItsMembersAndTheirRelations) {
  TGroupScene scene;
  TMyCAD& cad = scene.cad;
  scene["M1"]->UserData().AddKeyandValue("key", "value");
  cad.DeleteShapeById(scene["G"]->ShapeId, true);
  EXPECT_EQ(Names(cad), (std::vector<std::string>{"A", "B"}));
  cad.PopFromUndoRedoShapeList();
  // Back at the front, with the relations of the tree: G of M1, Inner and M2.
  ExpectGoldenFile(DocumentText(cad), "canvas/deleted-group-back.txt");
  EXPECT_EQ(scene["M1"]->UserData().GetValueByKey("key"), "value");
}

// ---------------------------------------------------------------------------
// Paint order

// Each paint-order command on "A", "B", "C" (back to front) and its undo:
// the rows of tests/data/canvas/undo-z-order.txt.
TEST(TMyCADUndo, PaintOrderCommandsAreTakenBackByTheirInverse) {
  const std::map<std::string, void (TMyCAD::*)(TMyShape*, bool)> commands = {
      {"BringToFront", &TMyCAD::BringToFront},
      {"SendToBack", &TMyCAD::SendToBack},
      {"BringToFrontByStep", &TMyCAD::BringToFrontByStep},
      {"SendToBackByStep", &TMyCAD::SendToBackByStep}};
  for (const std::vector<std::string>& row : DataTable("canvas/undo-z-order.txt")) {
    SCOPED_TRACE(row.at(0));
    TMyCAD cad;
    for (const char* name : {"A", "B", "C"}) AddNamedBox(cad, name);
    const auto before = DocumentState(cad);
    (cad.*commands.at(row.at(1)))(cad.GetShapeByName(row.at(2)), true);
    ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);
    EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, row.at(3));
    EXPECT_EQ(Names(cad), Words(row.at(4)));
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Names(cad), Words(row.at(5)));
    if (row.at(5) == "A B C") {
      EXPECT_EQ(DocumentState(cad), before);
    }
  }
}

// ---------------------------------------------------------------------------
// Alignment

using TCommand = void (TMyCAD::*)();

// Two selected boxes: "first" 10..30 x 0..20 (20 wide, 20 high) and "second"
// 50..60 x 40..100 (10 wide, 60 high); their joint box is 10..60 x 0..100.
// Where each command puts them is in tests/data/canvas/Golden.txt, the same
// at every zoom.
struct TAlignCase {
  const char* edge;
  TCommand command;
  const char* golden;
};

class TMyCADAlign : public testing::TestWithParam<std::tuple<TAlignCase, double>> {};

TEST_P(TMyCADAlign, MovesOrSizesInModelUnitsAtEveryZoomAsOneUndoableStep) {
  const auto& [row, zoom] = GetParam();
  TMyCAD cad;
  cad.SetZoom(zoom);
  TMyShape* first = AddBox(cad, 10, 0, 30, 20);
  AddBox(cad, 50, 40, 60, 100);
  const auto before = DocumentState(cad);
  // With no shape or one shape selected, nothing changes and nothing is recorded.
  (cad.*row.command)();
  cad.SelectShapeByCode(first->ShapeId, true);
  (cad.*row.command)();
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
  cad.SelectAllShapes();
  (cad.*row.command)();
  ExpectGoldenFile(DocumentText(cad), std::string("canvas/") + row.golden + ".txt");
  EXPECT_EQ(StepCount(cad), 1);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 2u);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, "ACT_CHANGE");

  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, TMyCADAlign,
    testing::Combine(
        testing::Values(TAlignCase{"AlignLeft_moves_the_second_by_minus_40", &TMyCAD::AlignLeft, "aligned-left"},
                        TAlignCase{"AlignBottom", &TMyCAD::AlignBottom, "aligned-bottom"},
                        TAlignCase{"AlignHorizontalCenter_on_x_35", &TMyCAD::AlignHorizontalCenter, "aligned-on-x-35"},
                        TAlignCase{"AlignVerticalCenter_different_heights_on_y_50", &TMyCAD::AlignVerticalCenter,
                                   "aligned-on-y-50"},
                        TAlignCase{"AverageWidth_15_keeps_the_left_top_corners", &TMyCAD::AverageWidth,
                                   "average-width-15"},
                        TAlignCase{"AverageHeight_40_keeps_the_left_top_corners", &TMyCAD::AverageHeight,
                                   "average-height-40"}),
        testing::Values(1.0, 2.5)),
    [](const testing::TestParamInfo<std::tuple<TAlignCase, double>>& info) {
      return std::string(std::get<0>(info.param).edge) + (std::get<1>(info.param) == 1.0 ? "_zoom1" : "_zoom2_5");
    });

TEST(TMyCADAlignment, AverageWidthLeavesShapesWithoutWidthOutAndScalesGroupsWhole) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* m = AddBox(cad, 100, 0, 110, 10);
  TMyShape* group = cad.GroupShapes({m, AddBox(cad, 120, 0, 130, 10)}, false);  // 30 wide
  TMyShape* vertical = cad.AddShapeByCode2("TMyLine", "", {{50, 0}, {50, 40}}, 0);
  cad.SelectAllShapes();

  cad.AverageWidth();  // (10 + 30) / 2
  EXPECT_EQ(a->Points, Box(0, 0, 20, 10));
  EXPECT_EQ(group->Points, Box(100, 0, 120, 10));
  EXPECT_FLOAT_EQ(m->Points[1].X, 100 + 20.0f / 3);  // 10 wide, scaled by 20 / 30 about the group's left
  EXPECT_EQ(vertical->Points, (TArrMyPoint{{50, 0}, {50, 40}}));
}

// ---------------------------------------------------------------------------
// Commands

// The whole drawing painted, compared with the picture Name under tests/data/canvas.
::testing::AssertionResult PaintedAs(TMyCAD& cad, const std::string& name) {
  cad.DrawAll(Rect(0, 0, cad.Width(), cad.Height()));
  return MatchesGoldenPicture(ToQImage(cad.BackBuffer()), "canvas/" + name + ".png");
}
// A (20,20)-(60,60) and B (100,80)-(140,120), grouped unless Loose; with
// Nested, B sits in a group of its own inside.
struct TScene {
  TMyCAD cad;
  TMouse mouse{cad};
  TMyShape* a;
  TMyShape* b;
  TMyShape* group = nullptr;
  explicit TScene(bool loose = false, bool nested = false) {
    cad.resize(400, 300);
    cad.SetResizeEnable(true);
    cad.SetDragEnable(true);
    a = AddBox(cad, 20, 20, 60, 60);
    b = AddBox(cad, 100, 80, 140, 120);
    if (loose) {
      cad.SelectShapeByCode(a->ShapeId, true);
      cad.SelectShapeByCode(b->ShapeId, false);
      return;
    }
    TMyShape* inner = nested ? cad.GroupShapes({b}, false) : b;
    group = cad.GroupShapes({a, inner}, false);
    cad.SelectShapeByCode(group->ShapeId, true);
  }
};

void ExpectBox(const TMyCAD& cad, TMyShape* s, const TMyRect& want) {
  const TMyRect got = cad.GetShapesLTRB({s});
  EXPECT_NEAR(got.Left, want.Left, 1e-3);
  EXPECT_NEAR(got.Top, want.Top, 1e-3);
  EXPECT_NEAR(got.Right, want.Right, 1e-3);
  EXPECT_NEAR(got.Bottom, want.Bottom, 1e-3);
}

// Each command moves the members as expected, and undo, redo and undo again
// give back the saved bytes of the drawing before and after it exactly.
TEST(TMyCADCommands, GroupAndSelectionCommandsMoveMembersAndUndoRedoExactly) {
  struct Case {
    const char* name;
    bool loose, nested;
    std::function<void(TScene&)> act;
    TMyRect a, b;
  };
  const Case cases[] = {
      {"a group's corner handle scales every member about the far corner", false, false,
       [](TScene& s) { s.mouse.Drag(140, 120, 260, 220); }, {20, 20, 100, 100}, {180, 140, 260, 220}},
      {"a nested group's members scale with the outer group", false, true,
       [](TScene& s) { s.mouse.Drag(140, 120, 260, 220); }, {20, 20, 100, 100}, {180, 140, 260, 220}},
      {"a quarter turn moves members about the group centre", false, false,
       [](TScene& s) {
         s.cad.PushtoUndoRedoShapeList({s.group}, ACT_CHANGE);
         s.cad.Rotate(s.group, static_cast<float>(kPi / 2));
       },
       {90, 10, 130, 50}, {30, 90, 70, 130}},
      {"a horizontal flip mirrors the selection about its joint centre line", true, false,
       [](TScene& s) { s.cad.FlipHoriz(); }, {100, 20, 140, 60}, {20, 80, 60, 120}},
      {"a vertical flip of a group mirrors its members", false, false, [](TScene& s) { s.cad.FlipVert(); },
       {20, 80, 60, 120}, {100, 20, 140, 60}},
      {"a 45 degree tilt in x shears about the centre line", true, false,
       [](TScene& s) { s.cad.TiltHoriz(static_cast<double>(kPi / 4)); }, {-30, 20, 50, 60}, {110, 80, 190, 120}},
      {"a tilt past 89 degrees does nothing", true, false, [](TScene& s) { s.cad.TiltVert(1.56); },
       {20, 20, 60, 60}, {100, 80, 140, 120}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TScene s(c.loose, c.nested);
    const auto before = Saved(s.cad);
    c.act(s);
    ExpectBox(s.cad, s.a, c.a);
    ExpectBox(s.cad, s.b, c.b);
    const auto after = Saved(s.cad);
    if (after == before) continue;
    s.cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(s.cad), before);
    ASSERT_TRUE(s.cad.Redo());
    EXPECT_EQ(Saved(s.cad), after);
    s.cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(s.cad), before);
  }
}

TEST(TMyCADCommands, CombiningFillsEvenOddWithHolesAndUncombiningGivesTheMembersBack) {
  TMyCAD cad;
  cad.resize(100, 100);
  cad.Brush().SetColor(clRed);
  TMyShape* a = AddBox(cad, 10, 10, 50, 50);
  AddBox(cad, 30, 30, 70, 70);
  cad.Brush().SetColor(clBlue);
  TMyShape* combine = cad.CombineShapes({a, cad.GetShapeByNo(1)}, true);
  ASSERT_NE(combine, nullptr);
  EXPECT_EQ(combine->Brush().Color(), clRed);
  EXPECT_TRUE(PaintedAs(cad, "combined-even-odd"));  // red, the overlap a hole
  EXPECT_EQ(cad.ShapeAt(20, 20), combine);
  EXPECT_EQ(cad.ShapeAt(40, 40), nullptr);
  const auto combined = Saved(cad);
  cad.UnGroupShape(combine, true);
  EXPECT_TRUE(PaintedAs(cad, "uncombined"));  // the front member over the overlap
  EXPECT_EQ(cad.ShapeAt(40, 40), cad.GetShapeByNo(1));
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(Saved(cad), combined);
  EXPECT_STREQ(cad.GetShapeByNo(2)->ClassName(), "TMyCombine");
}

// Each redo brings back exactly the drawing its undo started from (undo
// itself may not: deleted shapes come back at the front, z-order inverses
// are coarse), so undoing everything and redoing it all ends on the last
// state, and a new change ends what could be redone.
TEST(TMyCADCommands, RedoReturnsToTheStateBeforeEachUndoAndANewChangeEndsIt) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  const std::vector<std::function<void()>> steps = {
      [&] { cad.AddShapeByCode("TMyEllipse", "", Box(20, 0, 30, 10), 0); },
      [&] { cad.GroupShapes({cad.GetShapeByNo(0), cad.GetShapeByNo(1)}, true); },
      [&] { cad.BringToFront(cad.GetShapeByNo(2), true); },
      [&] { cad.AddShapeByCode("TMyRectangle", "", Box(0, 40, 10, 50), 0); },
      [&] { cad.SendToBack(cad.GetShapeByNo(3), true); },
      [&] { cad.UnGroupShape(cad.GetShapeByNo(3), true); },
      [&] { cad.DeleteShapeById(cad.GetShapeByNo(1)->ShapeId, true); },
  };
  for (const auto& step : steps) step();
  std::vector<std::vector<std::uint8_t>> seen = {Saved(cad)};  // before each undo, and after the last
  while (cad.CanUndo()) {
    cad.PopFromUndoRedoShapeList();
    seen.push_back(Saved(cad));
  }
  ASSERT_EQ(seen.size(), steps.size() + 1);
  for (std::size_t i = seen.size() - 1; i-- > 0;) {
    SCOPED_TRACE(i);
    ASSERT_TRUE(cad.Redo());
    EXPECT_EQ(Saved(cad), seen[i]);
  }
  EXPECT_FALSE(cad.Redo());
  for (std::size_t i = 1; i < seen.size(); ++i) {
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(cad), seen[i]);  // undoing again gives what it gave before
  }
  cad.AddShapeByCode("TMyLine", "", {{0, 0}, {5, 5}}, 0);
  EXPECT_FALSE(cad.CanRedo());
}

TEST(TMyCADCommands, TheHistoryKeepsItsMemoryUnderTheLimitButAlwaysTheNewestStep) {
  TMyCAD cad;
  for (int i = 0; i < 5; ++i) cad.AddShapeByCode("TMyRectangle", "", Box(0, 0, 10, 10), 0);
  EXPECT_EQ(StepCount(cad), 5);
  const std::int64_t perStep = cad.GetUndoMemoryUsed() / 5;
  cad.SetUndoMemoryLimit(perStep * 2);
  EXPECT_EQ(StepCount(cad), 2);
  cad.SetUndoMemoryLimit(0);
  EXPECT_EQ(StepCount(cad), 1);
}

TEST(TMyCADCommands, KeysAndDoubleClicksEditAsInOtherEditors) {
  struct Case {
    const char* name;
    std::function<void(TScene&)> act;
    int shapes;
    std::function<TMyShape*(TScene&)> selected;
  };
  auto groupSelected = [](TScene& s) { return s.group; };
  const Case cases[] = {
      {"Ctrl+D duplicates the group with its members", [](TScene& s) { Key(s.cad, Qt::Key_D, Qt::ControlModifier); },
       6, [](TScene& s) { return s.cad.GetShapeByNo(5); }},
      {"Ctrl+C, Ctrl+V pastes a copy", [](TScene& s) {
         Key(s.cad, Qt::Key_C, Qt::ControlModifier);
         Key(s.cad, Qt::Key_V, Qt::ControlModifier);
       }, 6, [](TScene& s) { return s.cad.GetShapeByNo(5); }},
      {"Ctrl+X cuts", [](TScene& s) { Key(s.cad, Qt::Key_X, Qt::ControlModifier); }, 0,
       [](TScene&) -> TMyShape* { return nullptr; }},
      {"Ctrl+Y after Ctrl+Z redoes", [](TScene& s) {
         Key(s.cad, Qt::Key_D, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Y, Qt::ControlModifier);
       }, 6, [](TScene&) -> TMyShape* { return nullptr; }},
      {"Ctrl+Shift+Z redoes too", [](TScene& s) {
         Key(s.cad, Qt::Key_X, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
       }, 0, [](TScene&) -> TMyShape* { return nullptr; }},
      {"a double click enters the group at the member", [](TScene& s) { s.mouse.DoubleClick(120, 100); }, 3,
       [](TScene& s) { return s.b; }},
      {"Escape leaves the group", [](TScene& s) {
         s.mouse.DoubleClick(120, 100);
         Key(s.cad, Qt::Key_Escape);
       }, 3, groupSelected},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TScene s;
    c.act(s);
    EXPECT_EQ(s.cad.GetShapesCount(), c.shapes);
    EXPECT_EQ(s.cad.GetSelectedShape(), c.selected(s));
  }
}

}  // namespace
}  // namespace lumatrex
