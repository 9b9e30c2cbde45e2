#include <gtest/gtest.h>

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
// Creation by mouse

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
TEST(TMyRectangle, HandlesAreNumberedCornersFirstThenSideMiddlesWithTheirCursors) {
  struct Case { const char* name; TPoint p; std::int32_t hot; TCursor cursor; };
  const Case cases[] = {{"corner0 left top", {20, 20}, 0, crSizeNWSE}, {"corner1 right top", {60, 20}, 1, crSizeNESW},
                        {"corner2 right bottom", {60, 40}, 2, crSizeNWSE}, {"corner3 left bottom", {20, 40}, 3, crSizeNESW},
                        {"side4 top", {40, 20}, 4, crSizeNS}, {"side5 right", {60, 30}, 5, crSizeWE},
                        {"side6 bottom", {40, 40}, 6, crSizeNS}, {"side7 left", {20, 30}, 7, crSizeWE},
                        {"square's left top edge included", {16, 16}, 0, crSizeNWSE},
                        {"square's right edge excluded", {64, 20}, -1, crCross}, {"body", {40, 30}, -1, crCross}};
  TFakeOwner owner;
  auto rectangle = Make<TMyRectangle>(owner, Frame(20, 20, 60, 40));
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    EXPECT_EQ(rectangle->InWhichHot(c.p), c.hot);
    EXPECT_EQ(rectangle->CurrentHot, c.hot);
    EXPECT_EQ(rectangle->GetMouseCursor(c.p.X, c.p.Y), c.cursor);
  }
}

TEST(TMyRectangle, WhereHandleSquaresOverlapTheLastExistingOneWins) {
  TFakeOwner owner;  // squares reach 4 pixels: at (1,0) those of 0, 4 and 7 overlap
  auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 6, 6));
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 7);
  rectangle->SetShowHorizontalSideHot(false);
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 4);
  rectangle->SetShowSideHot(false);
  EXPECT_EQ(rectangle->InWhichHot({1, 0}), 0);
}

TEST(TMyRectangle, WhileRotatingShowsAndHitsOnlyItsCorners) {
  for (const TActionTools action : {dtRotating, dtRotateSelecting}) {
    SCOPED_TRACE(static_cast<int>(action));
    TFakeOwner owner;
    owner.action = action;
    auto rectangle = Make<TMyRectangle>(owner, Frame(20, 20, 60, 40));
    EXPECT_EQ(rectangle->InWhichHot({40, 20}), -1);
    EXPECT_EQ(rectangle->InWhichHot({60, 30}), -1);
    EXPECT_EQ(rectangle->InWhichHot({60, 20}), 1);
    TSheet sheet;
    rectangle->DrawHot(sheet.canvas());
    EXPECT_TRUE(sheet.LooksLike("rectangle_corner_handles_alone_while_rotating"));
  }
}

// ---------------------------------------------------------------------------
// Hit test and painting

TEST(TMyRectangle, IsHitInsideItsFrameOnlyWithoutTolerance) {
  TFakeOwner owner(2);
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

// ---------------------------------------------------------------------------
// Resizing by handles

// The frame (0,0)-(40,20) turned about its centre (20,10), given in its own
// axes: the handle is dragged to Target and the corners end at Corners.
TEST(TMyRectangle, ResizeMovesTheHandleWithinTheTurnedFrame) {
  struct Case { const char* name; std::int32_t hot; TMyPoint target; TArrMyPoint corners; };
  const Case cases[] = {
      {"corner0", 0, {-5, -4}, {{-5, -4}, {40, -4}, {40, 20}, {-5, 20}}},
      {"corner2", 2, {50, 25}, {{0, 0}, {50, 0}, {50, 25}, {0, 25}}},
      {"side4 moves the top vertically only", 4, {27, -6}, {{0, -6}, {40, -6}, {40, 20}, {0, 20}}},
      {"side5 moves the right horizontally only", 5, {45, 13}, {{0, 0}, {45, 0}, {45, 20}, {0, 20}}},
      {"corner dragged past the centre is refused", 2, {10, 5}, Frame(0, 0, 40, 20)},
      {"side dragged past the centre is refused", 5, {15, 13}, Frame(0, 0, 40, 20)}};
  const TMyPoint centre{20, 10};
  const float angle = static_cast<float>(kPi / 6);
  auto turned = [&](const TMyPoint& p) { return RotateAPoint(p, centre, angle); };
  auto device = [&](const TMyPoint& p) { return TMyPoint{p.X * 2, p.Y * 2}; };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner(2);
    auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 40, 20));
    rectangle->RotateChangeValueByAngle(centre, angle);
    const TMyPoint handle = device(rectangle->GetPoint(c.hot));
    ASSERT_EQ(rectangle->InWhichHot(MyPtToPt(handle)), c.hot);
    TSheet sheet;
    rectangle->Sizing(sheet.canvas(), MyPtToPt(handle), MyPtToPt(device(turned(c.target))));
    rectangle->SizeChangeValue(handle, device(turned(c.target)));
    TArrMyPoint expected;
    for (const TMyPoint& p : c.corners) expected.push_back(turned(p));
    ExpectNear(rectangle->Points, expected);
    const TMyRect box = GetPointsLTRB(expected);
    EXPECT_NEAR(rectangle->CenterPoint.X, (box.Left + box.Right) / 2, 1e-3);
    EXPECT_NEAR(rectangle->CenterPoint.Y, (box.Top + box.Bottom) / 2, 1e-3);
    EXPECT_EQ(sheet.inked() > 0, c.corners != Frame(0, 0, 40, 20));  // a refused drag previews nothing
  }
}

// ---------------------------------------------------------------------------
// Areas and dimensions

TEST(TMyRectangle, TheAreaIsWidthTimesHeightInTheOwnersUnitMeasuredInTheFramesOwnAxes) {
  struct Case { const char* name; TUnits unit; double ratio; float angle; const char* text; };
  const Case cases[] = {{"pixel scaled by ratio squared", pixel, 2, 0, "Area= 36864.00pixel(s)2"},
                        {"mm", mm, 1, 0, "Area=   645.16mm2"}, {"cm", cm, 1, 0, "Area=     6.45cm2"},
                        {"inch", inch, 1, 0, "Area=     1.00inch2"},
                        {"turned frame", pixel, 1, static_cast<float>(kPi / 4), "Area=  9216.00pixel(s)2"}};
  for (const Case& c : cases) {
    TFakeOwner owner;  // 96 pixels per inch
    owner.unit = c.unit;
    owner.ratio = c.ratio;
    owner.zoom = 3;  // plays no part
    auto rectangle = Make<TMyRectangle>(owner, Frame(0, 0, 96, 96));
    rectangle->RotateChangeValueByAngle(rectangle->CenterPoint, c.angle);
    EXPECT_EQ(rectangle->GetInfo(), c.text) << c.name;
  }
}

TEST(TMyRectangle, DimensionsNameBothSidesWithTheFixedUnitSpellings) {
  struct Case {
    TUnits unit;
    double zoom;
    TPoint b;  // from (0, 0)
    const char* text;
  };
  for (const Case& c : {Case{inch, 1, {96, 48}, "m=    10.00 in\rn=     5.00in"},  // one inch reads ten
                        Case{pixel, 2, {30, -10}, "m=    15.00 pixel(s)\rn=     5.00pixel(s)"},
                        Case{cm, 1, {96, 0}, "m=     2.54 mm\rn=     0.00mm"}}) {  // cm is labelled mm
    TFakeOwner owner;
    owner.unit = c.unit;
    owner.zoom = c.zoom;
    EXPECT_EQ(TMyRectangle(&owner).GetLengthByUnit({0, 0}, c.b), c.text);
  }
}

// ---------------------------------------------------------------------------
// TMyEllipse

TEST(TMyEllipse, ATurnedEllipseKeepsItsOwnAxes) {
  TFakeOwner owner;
  auto ellipse = Make<TMyEllipse>(owner, Frame(10, 10, 50, 30));
  ellipse->RotateChangeValueByAngle(ellipse->CenterPoint, kPi / 2);  // now 20 wide, 40 high
  EXPECT_TRUE(test::Drawn(*ellipse).LooksLike("ellipse_40_by_20_turned_upright"));
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
    TSheet before = test::Drawn(*cached);
    c.change(*cached, owner);
    auto fresh = Make<TMyEllipse>(owner, Frame(10, 10, 50, 30));
    c.change(*fresh, owner);
    const TSheet after = test::Drawn(*cached);
    EXPECT_TRUE(after == test::Drawn(*fresh));
    EXPECT_FALSE(after == before);
  }
}

// ---------------------------------------------------------------------------
// TMyPolygon

TEST(TMyPolygon, FinishingNeedsMoreThanThreePointsAndAClickNearTheFirstOrARepeat) {
  struct Case {
    const char* name;
    TArrMyPoint points;  // the last one is the click just added
    bool finished;
  };
  const Case cases[] = {{"three points never finish", {{10, 10}, {30, 10}, {10, 10}}, false},
                        {"click near the first point", {{10, 10}, {30, 10}, {30, 30}, {11, 8.5f}}, true},
                        {"click hot size away is not near", {{10, 10}, {30, 10}, {30, 30}, {12, 10}}, false},
                        {"repeat click of a double click", {{10, 10}, {30, 10}, {30, 30}, {30, 30}}, true},
                        {"ordinary fourth click", {{10, 10}, {30, 10}, {30, 30}, {20, 40}}, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner(2);  // HotSize 4
    TMyPolygon polygon(&owner);
    polygon.Points = c.points;
    const TPoint click = MyPtToPt(polygon.GetPointInZoom(polygon.GetPointsCount() - 1));
    EXPECT_EQ(polygon.IsDrawingFinished(mbLeft, click), c.finished);
    if (c.finished) {
      EXPECT_EQ(polygon.Points.back(), polygon.Points.front());
    } else {
      EXPECT_EQ(polygon.Points, c.points);
    }
  }
}

// The triangle (0,0), (20,0), (0,20), closed.
TArrMyPoint Triangle(float dx = 0, float dy = 0) { return {{dx, dy}, {20 + dx, dy}, {dx, 20 + dy}, {dx, dy}}; }

TEST(TMyPolygon, TheAreaCountsTheCoveredPixelsOfTheBoxOutlineIncludedAnEllipsesIsPiAB) {
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
  auto collinear = Make<TMyPolygon>(owner, {{0, 0}, {10, 10}, {20, 20}, {0, 0}});
  EXPECT_EQ(collinear->GetInfo(), "Area=    20.00pixel(s)2");  // the diagonal within the box
  EXPECT_EQ(Make<TMyEllipse>(owner, Frame(0, 0, 20, 10))->GetInfo(), "Area=   157.08pixel(s)2");  // pi a b
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
    polygon->Sizing(sheet.canvas(), {10, 10}, {10, 15});  // the vertex previewed at (10,15)
    EXPECT_TRUE(sheet.LooksLike("polygon_first_vertex_preview_with_both_edges")) << hot;
  }
}

}  // namespace
}  // namespace lumatrex
