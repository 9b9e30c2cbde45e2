#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Box;
using test::DocumentState;
using test::StepCount;

TEST(TMyCADGrouping, GroupShapesAddsAGroupAfterItsMembersFramingThem) {
  TMyCAD cad;
  AddBox(cad, 100, 100, 110, 110);
  TMyShape* a = AddBox(cad, 10, 20, 30, 40);
  TMyShape* b = AddBox(cad, 50, 0, 60, 25);
  const std::int32_t layer = cad.NewLayer("Other", true);
  TMyShape* g = cad.GroupShapes({a, b}, false);
  ASSERT_NE(g, nullptr);
  EXPECT_STREQ(g->ClassName(), "TMyGroup");
  EXPECT_EQ(g->ShapeNo, 3);
  EXPECT_EQ(g->GetName(), "Shape3");
  EXPECT_NE(g->LayerId, layer);  // on its members' layer, not the current one
  EXPECT_EQ(g->LayerId, a->LayerId);
  EXPECT_EQ(g->Points, Box(10, 0, 60, 40));
  EXPECT_EQ(g->GetCenterPoint(), (TMyPoint{35, 20}));
  EXPECT_EQ(g->ChildShapes, (std::vector<std::int32_t>{1, 2}));
  EXPECT_EQ(a->ParentId, 3);
  EXPECT_EQ(b->ParentId, 3);
  EXPECT_EQ(StepCount(cad), 0);
}

TEST(TMyCADGrouping, OnlyTopLevelShapesOfTheCanvasBecomeMembersEachOnce) {
  TMyCAD cad;
  TMyCAD other;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* c = AddBox(cad, 20, 0, 30, 10);
  cad.GroupShapes({a}, false);
  TMyShape* foreign = AddBox(other, 0, 0, 10, 10);
  TMyShape* g = cad.GroupShapes({a, c, c, nullptr, foreign}, false);
  ASSERT_NE(g, nullptr);
  EXPECT_EQ(g->ChildShapes, (std::vector<std::int32_t>{c->ShapeNo}));
  const auto before = DocumentState(cad);
  EXPECT_EQ(cad.GroupShapes({a, nullptr}, false), nullptr);
  EXPECT_EQ(cad.GroupShapes({}, true), nullptr);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

TEST(TMyCADGrouping, SelectedMembersGiveWayToTheirGroup) {
  TMyCAD cad;
  TMyShape* x = AddBox(cad, 0, 0, 10, 10);
  TMyShape* a = AddBox(cad, 20, 0, 30, 10);
  TMyShape* b = AddBox(cad, 40, 0, 50, 10);
  TMyShape* c = AddBox(cad, 60, 0, 70, 10);
  TMyShape* d = AddBox(cad, 80, 0, 90, 10);
  cad.SelectShapeByCode(x->ShapeId, true);
  cad.SelectShapeByCode(a->ShapeId, false);
  TMyShape* g = cad.GroupShapes({a, b}, false);
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{x, g}));
  cad.GroupShapes({c, d}, false);  // no member selected
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{x, g}));
}

TEST(TMyCADGrouping, AGroupDrawsNothingOverOrAroundItsMembers) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 30, 0, 40, 10);
  for (TMyShape* s : {a, b}) s->Brush().SetColor(clRed);
  cad.GroupShapes({a, b}, false);
  const TBitmap picture = cad.RenderToBitmap({1.0, false, 16});
  TBitmap copy(picture);
  EXPECT_EQ(copy.Canvas().GetPixel(16 + 5, 16 + 5), clRed);      // inside a member
  EXPECT_EQ(copy.Canvas().GetPixel(16 + 20, 16 + 0), clWhite);   // the frame's top, between the members
  EXPECT_EQ(copy.Canvas().GetPixel(16 + 20, 16 + 5), clWhite);   // inside the frame, between the members
}

TEST(TMyCADGrouping, UngroupingFreesTheMembersAndDeletesTheGroup) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  TMyShape* b = AddBox(cad, 20, 0, 30, 10);
  const auto before = DocumentState(cad);
  cad.UnGroupShape(cad.GroupShapes({a, b}, false), false);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

struct TRefusedUngroup {
  const char* edge;
  // Picks the shape to ungroup from a canvas holding the group "Outer" of
  // the box "A" and the group "Inner" (of "B").
  TMyShape* (*pick)(TMyCAD& cad);
};

class TMyCADUngroupRefused : public testing::TestWithParam<TRefusedUngroup> {};

TEST_P(TMyCADUngroupRefused, ChangesNothingAndRecordsNothing) {
  TMyCAD cad;
  TMyShape* a = AddBox(cad, 0, 0, 10, 10);
  a->SetName("A");
  TMyShape* inner = cad.GroupShapes({AddBox(cad, 20, 0, 30, 10)}, false);
  inner->SetName("Inner");
  cad.GroupShapes({a, inner}, false)->SetName("Outer");
  TMyShape* shape = GetParam().pick(cad);
  const auto before = DocumentState(cad);
  cad.UnGroupShape(shape, true);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

INSTANTIATE_TEST_SUITE_P(
    Shapes, TMyCADUngroupRefused,
    testing::Values(TRefusedUngroup{"null", [](TMyCAD&) -> TMyShape* { return nullptr; }},
                    TRefusedUngroup{"not_a_group", [](TMyCAD& cad) { return cad.GetShapeByName("A"); }},
                    TRefusedUngroup{"nested_group", [](TMyCAD& cad) { return cad.GetShapeByName("Inner"); }},
                    TRefusedUngroup{"locked_group",
                                    [](TMyCAD& cad) {
                                      TMyShape* outer = cad.GetShapeByName("Outer");
                                      outer->StoreLocked(true);
                                      return outer;
                                    }}),
    [](const testing::TestParamInfo<TRefusedUngroup>& info) { return std::string(info.param.edge); });

}  // namespace
}  // namespace lumatrex
