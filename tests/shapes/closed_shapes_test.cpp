#include <gtest/gtest.h>

#include <QVariant>
#include <array>
#include <functional>
#include <memory>
#include <string>

#include "platform/stream.h"
#include "shapes/closed_shapes.h"
#include "shapes/drawing_modes.h"
#include "shapes/fake_owner.h"
#include "shapes/sheet.h"

namespace lumatrex {
namespace {

using test::Make;
using test::TFakeOwner;
using test::TSheet;

TArrMyPoint Frame(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

void ExpectNear(const TArrMyPoint& actual, const TArrMyPoint& expected, float tolerance = 1e-3f) {
  ASSERT_EQ(actual.size(), expected.size());
  for (std::size_t i = 0; i < actual.size(); ++i) {
    EXPECT_NEAR(actual[i].X, expected[i].X, tolerance) << "point " << i;
    EXPECT_NEAR(actual[i].Y, expected[i].Y, tolerance) << "point " << i;
  }
}

// ---------------------------------------------------------------------------
// Construction

TEST(TMyRectangle, AssignCopiesTheSideHandleSwitches) {
  TFakeOwner owner;
  TMyRectangle source(&owner), target(&owner);
  source.SetAssociateSideResizing(true);
  source.SetShowSideHot(false);
  source.SetShowHorizontalSideHot(false);
  target.Assign(source);
  EXPECT_TRUE(target.GetAssociateSideResizing());
  EXPECT_FALSE(target.GetShowSideHot());
  EXPECT_FALSE(target.GetShowHorizontalSideHot());
  EXPECT_TRUE(target.GetShowVerticalSideHot());
}

// ---------------------------------------------------------------------------
// Creation by mouse

TEST(TMyRectangle, TwoDistinctClicksMakeTheFourCornersAndFinish) {
  TFakeOwner owner;
  owner.zoom = 2;
  TMyRectangle rectangle(&owner);
  rectangle.AddPointByMouse({10, 60});
  EXPECT_FALSE(rectangle.IsDrawingFinished(mbLeft, {10, 60}));
  rectangle.AddPointByMouse({50, 20});
  EXPECT_TRUE(rectangle.IsDrawingFinished(mbLeft, {50, 20}));
  EXPECT_EQ(rectangle.Points, (TArrMyPoint{{5, 30}, {25, 30}, {25, 10}, {5, 10}}));
  EXPECT_EQ(rectangle.CenterPoint, (TMyPoint{15, 20}));
  rectangle.AddPointByMouse({90, 90});
  EXPECT_EQ(rectangle.GetPointsCount(), 4);
}

TEST(TMyRectangle, ASecondClickOnTheSameRowOrColumnAddsNothing) {
  TFakeOwner owner;
  for (const TPoint second : {TPoint{50, 20}, TPoint{10, 60}}) {
    TMyRectangle rectangle(&owner);
    rectangle.AddPointByMouse({10, 20});
    rectangle.AddPointByMouse(second);
    EXPECT_EQ(rectangle.Points, (TArrMyPoint{{10, 20}})) << second.X << "," << second.Y;
    EXPECT_FALSE(rectangle.IsDrawingFinished(mbLeft, second));
  }
}

// ---------------------------------------------------------------------------
// Handles

// The frame (20,20)-(60,40), first corner at the left top.
struct THandleCase {
  const char* name;
  TPoint p;
  std::int32_t hot;
  TCursor cursor;
};

class RectangleHandles : public ::testing::TestWithParam<THandleCase> {};

TEST_P(RectangleHandles, AreNumberedCornersFirstThenSideMiddlesWithTheirCursors) {
  TFakeOwner owner;
  auto rectangle = Make<TMyRectangle>(owner, Frame(20, 20, 60, 40));
  EXPECT_EQ(rectangle->InWhichHot(GetParam().p), GetParam().hot);
  EXPECT_EQ(rectangle->CurrentHot, GetParam().hot);
  EXPECT_EQ(rectangle->GetMouseCursor(GetParam().p.X, GetParam().p.Y), GetParam().cursor);
}

INSTANTIATE_TEST_SUITE_P(
    Frame, RectangleHandles,
    ::testing::Values(THandleCase{"corner0_left_top", {20, 20}, 0, crSizeNWSE},
                      THandleCase{"corner1_right_top", {60, 20}, 1, crSizeNESW},
                      THandleCase{"corner2_right_bottom", {60, 40}, 2, crSizeNWSE},
                      THandleCase{"corner3_left_bottom", {20, 40}, 3, crSizeNESW},
                      THandleCase{"side4_top", {40, 20}, 4, crSizeNS},
                      THandleCase{"side5_right", {60, 30}, 5, crSizeWE},
                      THandleCase{"side6_bottom", {40, 40}, 6, crSizeNS},
                      THandleCase{"side7_left", {20, 30}, 7, crSizeWE},
                      THandleCase{"square_left_top_edge_included", {16, 16}, 0, crSizeNWSE},
                      THandleCase{"square_right_edge_excluded", {64, 20}, -1, crCross},
                      THandleCase{"body", {40, 30}, -1, crCross}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TMyRectangle, WhereHandleSquaresOverlapTheLastExistingOneWins) {
  TFakeOwner owner;  // squares reach 4 pixels: at (1,0) those of 0, 4 and 7 overlap
  auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 6, 6));
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 7);
  rectangle->SetShowHorizontalSideHot(false);
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 4);
  rectangle->SetShowSideHot(false);
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 0);
}

class RectangleWhileRotating : public ::testing::TestWithParam<TActionTools> {};

TEST_P(RectangleWhileRotating, ShowsAndHitsOnlyItsCorners) {
  TFakeOwner owner;
  owner.action = GetParam();
  auto rectangle = Make<TMyRectangle>(owner, Frame(20, 20, 60, 40));
  EXPECT_EQ(rectangle->InWhichHot({40, 20}), -1);
  EXPECT_EQ(rectangle->InWhichHot({60, 30}), -1);
  EXPECT_EQ(rectangle->InWhichHot({60, 20}), 1);
  TSheet sheet;
  rectangle->DrawHot(sheet.canvas());
  EXPECT_FALSE(sheet.inked(40, 20));
  EXPECT_FALSE(sheet.inked(20, 30));
  EXPECT_EQ(sheet.at(20, 20), GetHotColor());
}

INSTANTIATE_TEST_SUITE_P(Actions, RectangleWhileRotating, ::testing::Values(dtRotating, dtRotateSelecting));

// ---------------------------------------------------------------------------
// Hit test and painting

TEST(TMyRectangle, IsHitInsideItsFrameOnlyWithoutTolerance) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto rectangle = Make<TMyRectangle>(owner, Frame(10, 10, 30, 20));  // device (20,20)-(60,40)
  TSheet sheet;
  TCanvas& canvas = sheet.canvas();
  EXPECT_TRUE(rectangle->IsClickedMe(canvas, {20, 20}));
  EXPECT_TRUE(rectangle->IsClickedMe(canvas, {59, 39}));
  EXPECT_FALSE(rectangle->IsClickedMe(canvas, {60, 30}));
  EXPECT_FALSE(rectangle->IsClickedMe(canvas, {40, 40}));
  EXPECT_FALSE(rectangle->IsClickedMe(canvas, {19, 30}));
  rectangle->RotateChangeValueByAngle(rectangle->CenterPoint, kPi / 4);  // a diamond now
  EXPECT_TRUE(rectangle->IsClickedMe(canvas, {40, 30}));
  EXPECT_FALSE(rectangle->IsClickedMe(canvas, {21, 39}));  // inside the upright frame
}

TEST(TMyRectangle, DrawsItsClosedFrameInPenAndBrush) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto rectangle = Make<TMyRectangle>(owner, Frame(5, 5, 15, 10));  // device (10,10)-(30,20)
  rectangle->Brush().SetColor(clRed);
  TSheet sheet;
  rectangle->Draw(sheet.canvas());
  EXPECT_EQ(sheet.at(10, 10), clBlack);
  EXPECT_EQ(sheet.at(30, 20), clBlack);  // the outline covers the far corner
  EXPECT_EQ(sheet.at(20, 15), clRed);
  EXPECT_EQ(sheet.at(31, 15), clWhite);
  EXPECT_EQ(sheet.at(20, 21), clWhite);
}

TEST(TMyRectangle, PreviewsDrawTheFrameMovedOrTurned) {
  TFakeOwner owner;
  auto rectangle = Make<TMyRectangle>(owner, Frame(10, 20, 50, 30));
  TSheet band;
  rectangle->Drawing(band.canvas(), {10, 10}, {20, 20});
  EXPECT_TRUE(band.inked(10, 10));
  EXPECT_TRUE(band.inked(19, 19));
  EXPECT_FALSE(band.inked(20, 20));
  TSheet moved;
  rectangle->Draging(moved.canvas(), {0, 0}, {3, 4});
  EXPECT_TRUE(moved.inked(13, 24));
  EXPECT_TRUE(moved.inked(53, 34));
  EXPECT_FALSE(moved.inked(10, 20));
  TSheet turned;
  rectangle->Rotating(turned.canvas(), rectangle->CenterPoint, kPi / 2);  // (25,5)-(35,45)
  EXPECT_TRUE(turned.inked(25, 10));
  EXPECT_FALSE(turned.inked(15, 20));
}

// ---------------------------------------------------------------------------
// Resizing by handles

// The frame (0,0)-(40,20) about its centre (20,10), given in its own axes:
// the handle is dragged to Target and the corners end at Corners.
struct TResizeCase {
  const char* name;
  std::int32_t hot;
  TMyPoint target;
  TArrMyPoint corners;
};

class RectangleResize : public ::testing::TestWithParam<TResizeCase> {};

TEST_P(RectangleResize, MovesTheHandleWithinTheTurnedFrame) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 40, 20));
  const TMyPoint centre{20, 10};
  const float angle = static_cast<float>(kPi / 6);
  rectangle->RotateChangeValueByAngle(centre, angle);
  auto turned = [&](const TMyPoint& p) { return RotateAPoint(p, centre, angle); };
  auto device = [&](const TMyPoint& p) { return TMyPoint{p.X * 2, p.Y * 2}; };

  const TMyPoint handle = device(rectangle->GetPoint(GetParam().hot));
  ASSERT_EQ(rectangle->InWhichHot(MyPtToPt(handle)), GetParam().hot);
  TSheet sheet;
  rectangle->Sizing(sheet.canvas(), MyPtToPt(handle), MyPtToPt(device(turned(GetParam().target))));
  rectangle->SizeChangeValue(handle, device(turned(GetParam().target)));

  TArrMyPoint expected;
  for (const TMyPoint& p : GetParam().corners) expected.push_back(turned(p));
  ExpectNear(rectangle->Points, expected);
  const TMyRect box = GetPointsLTRB(expected);
  EXPECT_NEAR(rectangle->CenterPoint.X, (box.Left + box.Right) / 2, 1e-3);
  EXPECT_NEAR(rectangle->CenterPoint.Y, (box.Top + box.Bottom) / 2, 1e-3);
  EXPECT_EQ(sheet.inked() > 0, GetParam().corners != Frame(0, 0, 40, 20));  // a refused drag previews nothing
}

INSTANTIATE_TEST_SUITE_P(
    Handles, RectangleResize,
    ::testing::Values(
        TResizeCase{"corner0", 0, {-5, -4}, {{-5, -4}, {40, -4}, {40, 20}, {-5, 20}}},
        TResizeCase{"corner1", 1, {46, 2}, {{0, 2}, {46, 2}, {46, 20}, {0, 20}}},
        TResizeCase{"corner2", 2, {50, 25}, {{0, 0}, {50, 0}, {50, 25}, {0, 25}}},
        TResizeCase{"corner3", 3, {-3, 24}, {{-3, 0}, {40, 0}, {40, 24}, {-3, 24}}},
        TResizeCase{"side4_moves_the_top_vertically_only", 4, {27, -6}, {{0, -6}, {40, -6}, {40, 20}, {0, 20}}},
        TResizeCase{"side5_moves_the_right_horizontally_only", 5, {45, 13}, {{0, 0}, {45, 0}, {45, 20}, {0, 20}}},
        TResizeCase{"side6_moves_the_bottom_vertically_only", 6, {14, 28}, {{0, 0}, {40, 0}, {40, 28}, {0, 28}}},
        TResizeCase{"side7_moves_the_left_horizontally_only", 7, {-4, 7}, {{-4, 0}, {40, 0}, {40, 20}, {-4, 20}}},
        TResizeCase{"corner_dragged_past_the_centre_is_refused", 2, {10, 5}, Frame(0, 0, 40, 20)},
        TResizeCase{"side_dragged_past_the_centre_is_refused", 5, {15, 13}, Frame(0, 0, 40, 20)}),
    [](const auto& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------
// Areas and dimensions

struct TAreaCase {
  const char* name;
  TUnits unit;
  double ratio;
  const char* text;
};

class RectangleArea : public ::testing::TestWithParam<TAreaCase> {};

TEST_P(RectangleArea, IsWidthTimesHeightInTheOwnersUnit) {
  TFakeOwner owner;  // 96 pixels per inch
  owner.unit = GetParam().unit;
  owner.ratio = GetParam().ratio;
  owner.zoom = 3;  // plays no part
  auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 96, 96));
  EXPECT_EQ(rectangle->GetInfo(), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Units, RectangleArea,
    ::testing::Values(TAreaCase{"pixel_scaled_by_ratio_squared", pixel, 2, "Area= 36864.00pixel(s)2"},
                      TAreaCase{"mm", mm, 1, "Area=   645.16mm2"}, TAreaCase{"cm", cm, 1, "Area=     6.45cm2"},
                      TAreaCase{"inch", inch, 1, "Area=     1.00inch2"}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TMyRectangle, TheAreaOfATurnedFrameIsMeasuredInItsOwnAxes) {
  TFakeOwner owner;
  owner.unit = pixel;
  auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 20, 10));
  rectangle->RotateChangeValueByAngle(rectangle->CenterPoint, kPi / 4);
  EXPECT_EQ(rectangle->GetInfo(), "Area=   200.00pixel(s)2");
}

struct TDimensionCase {
  const char* name;
  TUnits unit;
  double zoom;
  TPoint b;  // from (0, 0)
  const char* text;
};

class RectangleDimensions : public ::testing::TestWithParam<TDimensionCase> {};

TEST_P(RectangleDimensions, NameBothSidesWithTheFixedUnitSpellings) {
  TFakeOwner owner;
  owner.unit = GetParam().unit;
  owner.zoom = GetParam().zoom;
  TMyRectangle rectangle(&owner);
  EXPECT_EQ(rectangle.GetLengthByUnit({0, 0}, GetParam().b), GetParam().text);
}

INSTANTIATE_TEST_SUITE_P(
    Units, RectangleDimensions,
    ::testing::Values(
        TDimensionCase{"one_inch_reads_ten", inch, 1, {96, 48}, "m=    10.00 in\rn=     5.00in"},
        TDimensionCase{"pixels_unzoomed", pixel, 2, {30, -10}, "m=    15.00 pixel(s)\rn=     5.00pixel(s)"},
        TDimensionCase{"cm_is_labelled_mm", cm, 1, {96, 0}, "m=     2.54 mm\rn=     0.00mm"}),
    [](const auto& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------
// TMyEllipse

TEST(TMyEllipse, ATurnedEllipseKeepsItsOwnAxes) {
  TFakeOwner owner;
  auto ellipse = Make<TMyEllipse>(owner, Frame(10, 10, 50, 30));
  ellipse->RotateChangeValueByAngle(ellipse->CenterPoint, kPi / 2);  // now 20 wide, 40 high
  TSheet sheet;
  ellipse->Draw(sheet.canvas());
  EXPECT_TRUE(sheet.inked(30, 40));
  EXPECT_TRUE(sheet.inked(20, 20));
  EXPECT_FALSE(sheet.inked(50, 20));
  EXPECT_FALSE(sheet.inked(30, 42));
}

// Draw keeps the outline it painted; after any change of its inputs the
// picture must be the one a fresh ellipse in the new state paints.
TEST(TMyEllipse, AChangedEllipsePaintsAsAFreshOne) {
  struct Case {
    const char* name;
    std::function<void(TMyEllipse&, TFakeOwner&)> change;
  };
  const Case cases[] = {
      {"moved point", [](TMyEllipse& e, TFakeOwner&) { e.Points[2].X += 3; }},
      {"moved centre", [](TMyEllipse& e, TFakeOwner&) { e.CenterPoint.Y += 2; }},
      {"turned", [](TMyEllipse& e, TFakeOwner&) { e.RotateChangeValueByAngle(e.CenterPoint, 0.3); }},
      {"zoomed", [](TMyEllipse&, TFakeOwner& owner) { owner.zoom = 1.5; }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    auto cached = Make<TMyEllipse>(owner, Frame(10, 10, 50, 30));
    TSheet before;
    cached->Draw(before.canvas());
    c.change(*cached, owner);
    auto fresh = Make<TMyEllipse>(owner, Frame(10, 10, 50, 30));
    c.change(*fresh, owner);
    TSheet after, expected;
    cached->Draw(after.canvas());
    fresh->Draw(expected.canvas());
    EXPECT_TRUE(after == expected);
    EXPECT_FALSE(after == before);
  }
}

TEST(TMyEllipse, TheAreaIsPiTimesTheHalfAxes) {
  TFakeOwner owner;
  owner.unit = pixel;
  EXPECT_EQ(Make<TMyEllipse>(owner, Frame(0, 0, 20, 10))->GetInfo(), "Area=   157.08pixel(s)2");
}

// ---------------------------------------------------------------------------
// TMyPolygon

struct TFinishCase {
  const char* name;
  TArrMyPoint points;  // the last one is the click just added
  bool finished;
};

class PolygonFinish : public ::testing::TestWithParam<TFinishCase> {};

TEST_P(PolygonFinish, NeedsMoreThanThreePointsAndAClickNearTheFirstOrARepeat) {
  TFakeOwner owner;  // HotSize 4
  owner.zoom = 2;
  TMyPolygon polygon(&owner);
  polygon.Points = GetParam().points;
  const TPoint click = MyPtToPt(polygon.GetPointInZoom(polygon.GetPointsCount() - 1));
  EXPECT_EQ(polygon.IsDrawingFinished(mbLeft, click), GetParam().finished);
  if (GetParam().finished) {
    EXPECT_EQ(polygon.Points.back(), polygon.Points.front());
  } else {
    EXPECT_EQ(polygon.Points, GetParam().points);
  }
}

INSTANTIATE_TEST_SUITE_P(
    Clicks, PolygonFinish,
    ::testing::Values(TFinishCase{"three_points_never_finish", {{10, 10}, {30, 10}, {10, 10}}, false},
                      TFinishCase{"click_near_the_first_point", {{10, 10}, {30, 10}, {30, 30}, {11, 8.5f}}, true},
                      TFinishCase{"click_hot_size_away_is_not_near", {{10, 10}, {30, 10}, {30, 30}, {12, 10}}, false},
                      TFinishCase{"repeat_click_of_a_double_click", {{10, 10}, {30, 10}, {30, 30}, {30, 30}}, true},
                      TFinishCase{"ordinary_fourth_click", {{10, 10}, {30, 10}, {30, 30}, {20, 40}}, false}),
    [](const auto& info) { return std::string(info.param.name); });

// The triangle (0,0), (20,0), (0,20), closed.
TArrMyPoint Triangle(float dx = 0, float dy = 0) { return {{dx, dy}, {20 + dx, dy}, {dx, 20 + dy}, {dx, dy}}; }

TEST(TMyPolygon, TheAreaCountsTheCoveredPixelsOfTheBoxOutlineIncluded) {
  TFakeOwner owner;
  owner.unit = pixel;
  // 210 pixels with x + y < 20 are filled; the outline adds the 19 pixels of
  // the diagonal x + y = 20 that lie in the 20 x 20 box.
  auto triangle = Make<TMyPolygon>(owner, Triangle(5.25f, 7));
  triangle->TextoutPoint = {1, 2};
  EXPECT_EQ(triangle->GetInfo(), "Area=   229.00pixel(s)2");
  EXPECT_EQ(triangle->Points, Triangle(5.25f, 7));  // counted without moving the shape
  EXPECT_EQ(triangle->TextoutPoint, (TMyPoint{1, 2}));
  auto square = Make<TMyPolygon>(owner, {{0, 0}, {10, 0}, {10, 10}, {0, 10}, {0, 0}});
  EXPECT_EQ(square->GetInfo(), "Area=   100.00pixel(s)2");
}

TEST(TMyPolygon, ACollinearPolygonCoversOnlyItsOutline) {
  TFakeOwner owner;
  owner.unit = pixel;
  auto polygon = Make<TMyPolygon>(owner, {{0, 0}, {10, 10}, {20, 20}, {0, 0}});
  EXPECT_EQ(polygon->GetInfo(), "Area=    20.00pixel(s)2");  // the diagonal within the box
}

TEST(TMyPolygon, IsHitInsideItsOutlineOnly) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto triangle = Make<TMyPolygon>(owner, Triangle(10, 10));  // device (20,20), (60,20), (20,60)
  TSheet sheet;
  EXPECT_TRUE(triangle->IsClickedMe(sheet.canvas(), {22, 22}));
  EXPECT_TRUE(triangle->IsClickedMe(sheet.canvas(), {38, 40}));
  EXPECT_FALSE(triangle->IsClickedMe(sheet.canvas(), {45, 45}));
  EXPECT_FALSE(triangle->IsClickedMe(sheet.canvas(), {19, 30}));
}

TEST(TMyPolygon, DraggingTheFirstVertexMovesItsClosingCopyToo) {
  TFakeOwner owner;
  auto triangle = Make<TMyPolygon>(owner, Triangle(10, 10));
  EXPECT_EQ(triangle->InWhichHot({10, 10}), 3);  // the copy is the last handle there
  triangle->SizeChangeValue({10, 10}, {14, 12});
  EXPECT_EQ(triangle->Points, (TArrMyPoint{{14, 12}, {30, 10}, {10, 30}, {14, 12}}));
  EXPECT_EQ(triangle->CenterPoint, (TMyPoint{20, 20}));
  triangle->CurrentHot = 1;
  triangle->SizeChangeValue({0, 0}, {0, 5});
  EXPECT_EQ(triangle->Points, (TArrMyPoint{{14, 12}, {30, 15}, {10, 30}, {14, 12}}));
}

TEST(TMyPolygon, TheSizePreviewOfTheFirstVertexShowsBothOfItsEdges) {
  TFakeOwner owner;
  auto polygon = Make<TMyPolygon>(owner, {{10, 10}, {50, 10}, {50, 50}, {10, 10}});
  for (const std::int32_t hot : {0, 3}) {
    polygon->CurrentHot = hot;
    TSheet sheet;
    polygon->Sizing(sheet.canvas(), {10, 10}, {10, 15});       // the vertex previewed at (10,15)
    EXPECT_GT(sheet.inked(Rect(29, 11, 31, 14)), 0) << hot;  // edge to point 1
    EXPECT_GT(sheet.inked(Rect(29, 31, 31, 34)), 0) << hot;  // edge from the next-to-last point
    EXPECT_FALSE(sheet.inked(30, 10)) << hot;
  }
}

}  // namespace
}  // namespace lumatrex
