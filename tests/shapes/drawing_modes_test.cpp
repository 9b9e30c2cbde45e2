#include <gtest/gtest.h>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/fake_owner.h"
#include "shapes/sheet.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

// A white 64 x 64 picture to draw markers on, its brush solid white.
struct TSheet : test::TSheet {
  TSheet() { canvas().Brush().SetStyle(bsSolid); }
};

TEST(DrawSquare, GroupMembersGetHalfTheSizeAndLockedShapesAGreySquare) {
  TFakeOwner owner;
  TMyShape shape(&owner);
  shape.ParentId = 0;
  shape.StoreLocked(true);
  TSheet sheet;
  DrawSquare(shape, sheet.canvas(), {20, 20});
  EXPECT_EQ(sheet.inked(), 16);
  EXPECT_EQ(sheet.at(19, 19), 0x808080);
}

TEST(DrawSquare, WhileRotatingTopLevelShapesGetCirclesAndFixedShapesNothing) {
  TFakeOwner owner;
  owner.action = dtRotating;
  TMyShape shape(&owner);
  TSheet circle;
  DrawSquare(shape, circle.canvas(), {20, 20});
  EXPECT_EQ(circle.at(16, 16), clWhite);  // the corner of the box stays free
  EXPECT_EQ(circle.at(20, 20), GetHotColor());
  shape.SetRotateEnable(false);
  TSheet none;
  DrawSquare(shape, none.canvas(), {20, 20});
  EXPECT_EQ(none.inked(), 0);
}

TEST(DrawLinkSquare, IsABlueCrossOfTwoRoundedStrokes) {
  TSheet sheet;
  DrawLinkSquare(sheet.canvas(), {10, 10});  // strokes (7.5 -> 8) to (12.5 -> 12)
  EXPECT_EQ(sheet.at(8, 8), clBlue);
  EXPECT_EQ(sheet.at(11, 11), clBlue);
  EXPECT_EQ(sheet.at(12, 12), clWhite);  // the end pixel of LineTo is left out
  EXPECT_EQ(sheet.at(12, 8), clBlue);
  EXPECT_EQ(sheet.inked(), 7);  // the strokes share their middle pixel
}

TEST(DrawDiamond, NeedsInfoTextAndUsesTheFullHotSize) {
  TFakeOwner owner;
  TMyShape shape(&owner);
  TSheet empty;
  DrawDiamond(shape, empty.canvas(), {20, 20}, clYellow);
  EXPECT_EQ(empty.inked(), 0);
  shape.SetInfo("label");
  TSheet sheet;
  sheet.canvas().Pen().SetColor(clRed);
  DrawDiamond(shape, sheet.canvas(), {20, 20}, clYellow);
  EXPECT_EQ(sheet.at(16, 20), clRed);
  EXPECT_EQ(sheet.at(20, 16), clRed);
  EXPECT_EQ(sheet.at(17, 17), clWhite);
}

TEST(DrawInfo, InfoWinsOverMultiInfoAndCaptionShowOffDrawsNothing) {
  TFakeOwner owner;
  TMyShape alone(&owner), both(&owner);
  for (TMyShape* s : {&alone, &both}) {
    s->TextoutPoint = {32, 32};
    s->SetInfo("A");
  }
  both.SetMultiInfo({"one", "two", "three"});
  TSheet a, b;
  alone.DrawInfo(a.canvas());
  both.DrawInfo(b.canvas());
  EXPECT_GT(a.inked(), 0);
  for (int y = 0; y < 64; ++y)
    for (int x = 0; x < 64; ++x) ASSERT_EQ(a.at(x, y), b.at(x, y));
  both.SetCaptionShow(false);
  TSheet none;
  both.DrawInfo(none.canvas());
  EXPECT_EQ(none.inked(), 0);
}

}  // namespace
}  // namespace lumatrex
