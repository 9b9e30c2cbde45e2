#include <gtest/gtest.h>

#include <string>
#include <tuple>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Box;
using test::DocumentState;
using test::StepCount;

using TCommand = void (TMyCAD::*)();

// Two selected boxes: "first" 10..30 x 0..20 (20 wide, 20 high) and "second"
// 50..60 x 40..100 (10 wide, 60 high); their joint box is 10..60 x 0..100.
struct TAlignCase {
  const char* edge;
  TCommand command;
  TMyRect first;
  TMyRect second;
};

TArrMyPoint BoxOf(const TMyRect& r) { return Box(r.Left, r.Top, r.Right, r.Bottom); }

class TMyCADAlign : public testing::TestWithParam<std::tuple<TAlignCase, double>> {};

TEST_P(TMyCADAlign, MovesOrSizesInModelUnitsAtEveryZoomAsOneUndoableStep) {
  const auto& [row, zoom] = GetParam();
  TMyCAD cad;
  cad.SetZoom(zoom);
  TMyShape* first = AddBox(cad, 10, 0, 30, 20);
  TMyShape* second = AddBox(cad, 50, 40, 60, 100);
  cad.SelectAllShapes();
  const auto before = DocumentState(cad);

  (cad.*row.command)();
  EXPECT_EQ(first->Points, BoxOf(row.first));
  EXPECT_EQ(second->Points, BoxOf(row.second));
  EXPECT_EQ(StepCount(cad), 1);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 2u);
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, "ACT_CHANGE");

  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

INSTANTIATE_TEST_SUITE_P(
    Commands, TMyCADAlign,
    testing::Combine(
        testing::Values(
            TAlignCase{"AlignLeft_moves_the_second_by_minus_40", &TMyCAD::AlignLeft, {10, 0, 30, 20},
                       {10, 40, 20, 100}},
            TAlignCase{"AlignRight", &TMyCAD::AlignRight, {40, 0, 60, 20}, {50, 40, 60, 100}},
            TAlignCase{"AlignTop", &TMyCAD::AlignTop, {10, 0, 30, 20}, {50, 0, 60, 60}},
            TAlignCase{"AlignBottom", &TMyCAD::AlignBottom, {10, 80, 30, 100}, {50, 40, 60, 100}},
            TAlignCase{"AlignHorizontalCenter_on_x_35", &TMyCAD::AlignHorizontalCenter, {25, 0, 45, 20},
                       {30, 40, 40, 100}},
            TAlignCase{"AlignVerticalCenter_different_heights_on_y_50", &TMyCAD::AlignVerticalCenter,
                       {10, 40, 30, 60}, {50, 20, 60, 80}},
            TAlignCase{"AverageWidth_15_keeps_the_left_top_corners", &TMyCAD::AverageWidth, {10, 0, 25, 20},
                       {50, 40, 65, 100}},
            TAlignCase{"AverageHeight_40_keeps_the_left_top_corners", &TMyCAD::AverageHeight, {10, 0, 30, 40},
                       {50, 40, 60, 80}}),
        testing::Values(1.0, 2.5)),
    [](const testing::TestParamInfo<std::tuple<TAlignCase, double>>& info) {
      return std::string(std::get<0>(info.param).edge) + (std::get<1>(info.param) == 1.0 ? "_zoom1" : "_zoom2_5");
    });

class TMyCADAlignNoOp : public testing::TestWithParam<TCommand> {};

TEST_P(TMyCADAlignNoOp, WithOneSelectedShapeOrNoneNothingChangesAndNoStepIsRecorded) {
  TMyCAD cad;
  TMyShape* first = AddBox(cad, 10, 0, 30, 20);
  AddBox(cad, 50, 40, 60, 100);
  const auto before = DocumentState(cad);
  (cad.*GetParam())();
  cad.SelectShapeByCode(first->ShapeId, true);
  (cad.*GetParam())();
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

INSTANTIATE_TEST_SUITE_P(Commands, TMyCADAlignNoOp,
                         testing::Values(&TMyCAD::AlignLeft, &TMyCAD::AlignRight, &TMyCAD::AlignTop,
                                         &TMyCAD::AlignBottom, &TMyCAD::AlignHorizontalCenter,
                                         &TMyCAD::AlignVerticalCenter, &TMyCAD::AverageWidth,
                                         &TMyCAD::AverageHeight));

TEST(TMyCADAlignment, AGroupMovesWithItsMembersAndAttachedConnectorsFollow) {
  TMyCAD cad;
  TMyShape* member = AddBox(cad, 50, 0, 60, 10);
  member->AddLinkPoint({60, 5});
  TMyShape* group = cad.GroupShapes({member, AddBox(cad, 70, 0, 80, 10)}, false);
  TMyShape* box = AddBox(cad, 10, 30, 20, 40);
  auto* link = static_cast<TMyLinkLine*>(cad.AddShapeByCode2("TMyLinkLine", "", {{60, 5}, {100, 5}}, 0));
  link->SetStartSpNo(member->ShapeNo);
  link->SetStartSpPtId(0);
  member->LinkLines = {static_cast<std::uint32_t>(link->ShapeNo)};  // the shape lists its connector
  cad.SelectShapeByCode(group->ShapeId, true);
  cad.SelectShapeByCode(box->ShapeId, false);

  cad.AlignLeft();
  EXPECT_EQ(group->Points, Box(10, 0, 40, 10));
  EXPECT_EQ(member->Points, Box(10, 0, 20, 10));
  EXPECT_EQ(link->GetPoint(0), (TMyPoint{20, 5}));
  EXPECT_EQ(link->GetPoint(1), (TMyPoint{100, 5}));
  // The group, its two members, the box, and the connector that follows.
  EXPECT_EQ(cad.GetUndoRedoShapeList().size(), 5u);
}

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

}  // namespace
}  // namespace lumatrex
