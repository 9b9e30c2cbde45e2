#include <gtest/gtest.h>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/drawing_modes.h"

namespace lumatrex {
namespace {

using test::Box;

// A canvas holding a group (position 0) with two members (1 and 2).
struct TGroupedCanvas {
  TMyCAD cad;
  TMyShape* group;
  TMyShape* a;
  TMyShape* b;
  TGroupedCanvas() {
    group = Add(Box(0, 0, 100, 100));
    a = Add(Box(0, 0, 10, 10));
    b = Add(Box(90, 90, 100, 100));
    group->ChildShapes = {1, 2};
    a->ParentId = b->ParentId = 0;
  }
  TMyShape* Add(TArrMyPoint points) {
    auto shape = std::make_unique<TMyShape>(&cad);
    shape->Points = std::move(points);
    shape->CenterPoint = shape->ComputeCenterPoint(4);
    TMyShape* raw = shape.get();
    cad.AddShape(std::move(shape));
    return raw;
  }
};

TEST(TMyCAD, NewShapesTakeTheCanvasDefaultsAtCreation) {
  TMyCAD cad;
  cad.Pen().SetColor(clRed);
  cad.SetHotShow(false);
  cad.SetRotateEnable(true);
  cad.SetPenStyleJoinType(psjtMITER);
  TMyShape shape(&cad);
  cad.Pen().SetColor(clGreen);  // later canvas changes do not reach the shape
  EXPECT_EQ(shape.Pen().Color(), clRed);
  EXPECT_FALSE(shape.GetHotShow());
  EXPECT_TRUE(shape.GetRotateEnable());
  EXPECT_FALSE(shape.GetResizeEnable());  // the canvas's switches start off
  EXPECT_EQ(shape.GetPenStyleJoinType(), psjtMITER);
}

TEST(TMyCAD, ColorOfHotReplacesTheProcessWideHandleColour) {
  const TColor before = GetHotColor();
  TMyCAD cad;
  EXPECT_EQ(cad.GetColorOfHot(), 0x808080);
  EXPECT_EQ(GetHotColor(), before);  // a new canvas does not set it
  cad.SetColorOfHot(clAqua);
  EXPECT_EQ(GetHotColor(), clAqua);
  SetHotColor(before);
}

TEST(TMyCAD, RootParentOfAMemberIsItsOutermostGroupAndACycleDoesNotHang) {
  TGroupedCanvas c;
  EXPECT_EQ(c.cad.GetRootParentShape(c.a), c.group);
  EXPECT_EQ(c.cad.GetRootParentShape(c.group), c.group);
  c.group->ParentId = 1;  // a broken file could hold a cycle
  EXPECT_NE(c.cad.GetRootParentShape(c.a), nullptr);
}

TEST(TMyCAD, LockingAGroupLocksItsMembersAndRotationSkipsLockedShapes) {
  TGroupedCanvas c;
  c.a->SetLocked(true);
  EXPECT_TRUE(c.a->GetLocked());
  EXPECT_FALSE(c.b->GetLocked());
  c.cad.RotateChangeValueforShapes(c.group, {50, 50}, kPi);
  EXPECT_EQ(c.a->GetPoint(0), (TMyPoint{0, 0}));  // locked: unmoved
  EXPECT_NEAR(c.b->GetPoint(0).X, 10, 1e-4);
  EXPECT_NEAR(c.group->GetAngle(), kPi, 1e-6);
  c.group->SetLocked(true);
  EXPECT_TRUE(c.b->GetLocked());
}

TEST(TMyCAD, SettingAMembersAngleTurnsItAboutTheGroupCentre) {
  TGroupedCanvas c;
  c.a->SetAngle(static_cast<float>(kPi));
  EXPECT_NEAR(c.a->GetPoint(0).X, 100, 1e-3);
  EXPECT_NEAR(c.a->GetPoint(0).Y, 100, 1e-3);
}

TEST(TMyCAD, FlippingAGroupMirrorsEveryMemberAboutTheGroupCentre) {
  TGroupedCanvas c;
  c.group->SetIsFlipHorz(true);
  EXPECT_TRUE(c.group->GetIsFlipHorz());
  EXPECT_TRUE(c.a->GetIsFlipHorz());
  EXPECT_NEAR(c.a->GetPoint(0).X, 100, 1e-4);
  EXPECT_NEAR(c.b->GetPoint(0).X, 10, 1e-4);
}

TEST(TMyCAD, BulkUpdateStopsGroupStylingAndNests) {
  TGroupedCanvas c;
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

}  // namespace
}  // namespace lumatrex
