#include <gtest/gtest.h>

#include <QVariant>
#include <cmath>
#include <memory>
#include <string>
#include <vector>

#include "persistence/stream_io.h"
#include "shapes/drawing_modes.h"
#include "shapes/fake_owner.h"
#include "shapes/lines.h"
#include "shapes/record_bytes.h"
#include "shapes/sheet.h"

namespace lumatrex {
namespace {

using test::Make;
using test::TFakeOwner;
using test::TRecordBytes;
using test::TSheet;

// ---------------------------------------------------------------------------
// Construction and properties

TEST(TMyLine, NewLinesTakeTheOwnersArrowSettings) {
  TFakeOwner owner;
  owner.arrowAngle = 45;
  owner.arrowLength = 17;
  owner.arrowOffset = 3;
  owner.arrowStyle = ADouble;
  TMyLine line(&owner);
  EXPECT_EQ(line.GetArrowAngle(), 45);
  EXPECT_EQ(line.GetArrowLength(), 17);
  EXPECT_EQ(line.GetArrowOffset(), 3);
  EXPECT_EQ(line.GetArrowStyle(), ADouble);
}

TEST(TMyLine, ChainsStartWithoutHeadsAndRuleLinesWithTwoSmallOnes) {
  TFakeOwner owner;  // ALeft, 30 degrees, 10 pixels
  owner.arrowOffset = 3;
  EXPECT_EQ(TMyPolyLine(&owner).GetArrowStyle(), ANone);
  EXPECT_EQ(TMyFreeLine(&owner).GetArrowStyle(), ANone);
  TMyRuleLine rule(&owner);
  EXPECT_EQ(rule.GetArrowStyle(), ADouble);
  EXPECT_EQ(rule.GetArrowAngle(), 10);
  EXPECT_EQ(rule.GetArrowLength(), 20);
  EXPECT_EQ(rule.GetArrowOffset(), 3);
  EXPECT_EQ(rule.Font().Size(), 8);
  EXPECT_FALSE(rule.GetShowUserInfo());
  EXPECT_EQ(rule.GetTickStyle(), tsLine);
}

TEST(TMyLine, AssignCopiesTheHeadButKeepsTheTargetsArrowOffset) {
  TFakeOwner owner;
  TMyLine source(&owner), target(&owner);
  source.Points = {{1, 2}, {3, 4}};
  source.SetArrowAngle(45);
  source.SetArrowLength(12);
  source.SetArrowOffset(7);
  source.SetArrowStyle(ADouble);
  target.SetArrowOffset(3);
  target.Assign(source);
  EXPECT_EQ(target.Points, source.Points);
  EXPECT_EQ(target.GetArrowAngle(), 45);
  EXPECT_EQ(target.GetArrowLength(), 12);
  EXPECT_EQ(target.GetArrowStyle(), ADouble);
  EXPECT_EQ(target.GetArrowOffset(), 3);
}

TEST(TMyRuleLine, AssignAddsOnlyTheUserText) {
  TFakeOwner owner;
  TMyRuleLine source(&owner), target(&owner);
  source.SetUserInfo("10 m");
  source.SetTickStyle(tsNone);
  source.SetShowUserInfo(true);
  target.Assign(source);
  EXPECT_EQ(target.GetUserInfo(), "10 m");
  EXPECT_EQ(target.GetTickStyle(), tsLine);
  EXPECT_FALSE(target.GetShowUserInfo());
}

// ---------------------------------------------------------------------------
// Drawing: segments, heads and caption

// A black 1-pixel line (10,30)-(50,30) with 10-pixel heads at 30 degrees. A
// head at the last point has its tip on (50,30) and its barbs on (41,25) and
// (41,35); one at the first point its tip on (10,30) and barbs on (19,25) and
// (19,35).
struct THeadCase {
  const char* name;
  TArrowStyle style;
  bool endHead;    // (42,27) lies inside a head at the last point
  bool startHead;  // (18,27) lies inside a head at the first point
};

class LineHeads : public ::testing::TestWithParam<THeadCase> {};

TEST_P(LineHeads, AreFilledTrianglesInThePenColourAtTheirEnds) {
  TFakeOwner owner;
  auto line = Make<TMyLine>(owner, {{10, 30}, {50, 30}});
  line->SetArrowStyle(GetParam().style);
  line->Pen().SetColor(clBlue);
  TSheet sheet;
  line->Draw(sheet.canvas());
  EXPECT_EQ(sheet.at(42, 27) == clBlue, GetParam().endHead);
  EXPECT_EQ(sheet.at(18, 27) == clBlue, GetParam().startHead);
  EXPECT_EQ(sheet.at(30, 30), clBlue);  // the segment itself
  EXPECT_FALSE(sheet.inked(51, 30));
  EXPECT_FALSE(sheet.inked(40, 27));    // just behind the barbs of an end head
}

INSTANTIATE_TEST_SUITE_P(
    Styles, LineHeads,
    ::testing::Values(THeadCase{"ANone_no_heads", ANone, false, false},
                      THeadCase{"ALeft_head_at_the_last_point", ALeft, true, false},
                      THeadCase{"ARight_head_at_the_first_point", ARight, false, true},
                      THeadCase{"ADouble_both_heads", ADouble, true, true}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TMyLine, AnArrowOffsetSetsTheTipBackInDevicePixels) {
  TFakeOwner owner;
  owner.zoom = 2;  // the offset is not zoomed
  auto line = Make<TMyLine>(owner, {{5, 15}, {25, 15}});  // zoomed (10,30)-(50,30)
  line->SetArrowLength(5);                              // 10 device pixels
  TSheet flush, setBack;
  line->Draw(flush.canvas());
  line->SetArrowOffset(5);  // tip on (45,30)
  line->Draw(setBack.canvas());
  EXPECT_TRUE(flush.inked(46, 29));
  EXPECT_FALSE(setBack.inked(46, 29));
  EXPECT_TRUE(setBack.inked(43, 29));
}

TEST(TMyLine, ADoubleLineShowsExactlyTheTwoSingleHeads) {
  // Both heads are opaque in one colour, so the order (end head first) leaves
  // no trace in the picture; the union of the single heads must.
  TFakeOwner owner;
  auto line = Make<TMyLine>(owner, {{10, 30}, {22, 34}});  // short: the heads overlap
  TSheet both, singles, end;
  line->SetArrowStyle(ADouble);
  line->Draw(both.canvas());
  line->SetArrowStyle(ALeft);
  line->Draw(singles.canvas());
  line->Draw(end.canvas());
  line->SetArrowStyle(ARight);
  line->Draw(singles.canvas());
  EXPECT_TRUE(both == singles);
  EXPECT_FALSE(both == end);
}

TEST(TMyLine, AHeadLongerThan255DevicePixelsWrapsModulo256) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto line = Make<TMyLine>(owner, {{10, 150}, {150, 150}});  // zoomed (20,300)-(300,300)
  line->SetArrowLength(200);                                 // 400 device pixels, drawn as 144
  TSheet wrapped(320, 320), exact(320, 320);
  line->Draw(wrapped.canvas());
  line->SetArrowLength(72);
  line->Draw(exact.canvas());
  EXPECT_TRUE(wrapped == exact);
  EXPECT_TRUE(wrapped.inked(200, 290));   // inside a 144-pixel head
  EXPECT_FALSE(wrapped.inked(150, 290));  // would be inside a 400-pixel head
}

TEST(TMyLine, WithFewerThanTwoPointsNothingIsDrawn) {
  TFakeOwner owner;
  auto line = Make<TMyLine>(owner, {{10, 30}});
  line->SetArrowStyle(ADouble);
  TSheet sheet;
  line->Draw(sheet.canvas());
  EXPECT_EQ(sheet.inked(), 0);
}

struct TCaptionCase {
  const char* name;
  TMyPoint end;  // the first segment runs from (20, 20) to End
  double angle;
};

class LineCaptionAngle : public ::testing::TestWithParam<TCaptionCase> {};

TEST_P(LineCaptionAngle, FollowsTheFirstSegmentButNeverReadsUpsideDown) {
  TFakeOwner owner;
  auto line = Make<TMyLine>(owner, {{20, 20}, GetParam().end, {0, 0}});
  TSheet sheet;
  line->Draw(sheet.canvas());
  EXPECT_NEAR(line->GetTextAngle(), GetParam().angle, 1e-6);
}

INSTANTIATE_TEST_SUITE_P(
    Directions, LineCaptionAngle,
    ::testing::Values(TCaptionCase{"rightward", {30, 20}, 0}, TCaptionCase{"down_right", {30, 30}, kPi / 4},
                      TCaptionCase{"straight_down_reads_upward_like_straight_up", {20, 30}, 3 * kPi / 2},
                      TCaptionCase{"leftward_is_turned_half_round", {10, 20}, 2 * kPi},
                      TCaptionCase{"up_left_is_turned_half_round", {10, 10}, 9 * kPi / 4},
                      TCaptionCase{"straight_up_is_not_flipped", {20, 10}, 3 * kPi / 2}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TMyLine, HandlesAreSquaresAtEveryPointOnlyWhenTheOwnerShowsThem) {
  TFakeOwner owner;
  auto line = Make<TMyLine>(owner, {{10, 10}, {40, 40}});
  TSheet shown;
  line->DrawHot(shown.canvas());
  EXPECT_EQ(shown.at(10, 10), GetHotColor());
  EXPECT_EQ(shown.at(40, 40), GetHotColor());
  EXPECT_EQ(shown.inked(), 2 * 64);
  owner.hotShow = false;
  TSheet hidden;
  line->DrawHot(hidden.canvas());
  EXPECT_EQ(hidden.inked(), 0);
}

// ---------------------------------------------------------------------------
// Hit tests

struct THitCase {
  const char* name;
  TMyPoint a, b;  // model segment
  double zoom;
  TPoint p;
  bool hit;
};

class LineSegmentHit : public ::testing::TestWithParam<THitCase> {};

TEST_P(LineSegmentHit, UsesAnEightPixelBandInsideTheSegmentsExtent) {
  TFakeOwner owner;
  owner.zoom = GetParam().zoom;
  auto line = Make<TMyLine>(owner, {GetParam().a, GetParam().b});
  TSheet sheet;
  EXPECT_EQ(line->IsClickedMe(sheet.canvas(), GetParam().p), GetParam().hit);
}

constexpr TMyPoint kTop{50, 20}, kBottom{50, 80}, kLeft{20, 50}, kRight{80, 50};

INSTANTIATE_TEST_SUITE_P(
    Segments, LineSegmentHit,
    ::testing::Values(THitCase{"vertical_8_left", kTop, kBottom, 1, {42, 50}, true},
                      THitCase{"vertical_9_left", kTop, kBottom, 1, {41, 50}, false},
                      THitCase{"vertical_8_right_edge_excluded", kTop, kBottom, 1, {58, 50}, false},
                      THitCase{"vertical_top_end", kTop, kBottom, 1, {50, 20}, true},
                      THitCase{"vertical_bottom_end_excluded", kTop, kBottom, 1, {50, 80}, false},
                      THitCase{"vertical_band_not_zoomed", {25, 10}, {25, 40}, 2, {42, 50}, true},
                      THitCase{"vertical_band_not_zoomed_beyond", {25, 10}, {25, 40}, 2, {41, 50}, false},
                      THitCase{"horizontal_8_above", kLeft, kRight, 1, {50, 42}, true},
                      THitCase{"horizontal_left_of_start", kLeft, kRight, 1, {19, 50}, false},
                      THitCase{"flat_on_the_line", {10, 10}, {50, 30}, 1, {30, 20}, true},
                      THitCase{"flat_9_below", {10, 10}, {50, 30}, 1, {30, 29}, false},
                      THitCase{"flat_extension_outside_the_box", {10, 10}, {50, 30}, 1, {5, 8}, false},
                      THitCase{"flat_far_end_outside_the_box", {10, 10}, {50, 30}, 1, {50, 30}, false},
                      THitCase{"steep_8_right", {10, 10}, {20, 50}, 1, {19, 20}, true},
                      THitCase{"steep_near_but_outside_the_box", {10, 10}, {20, 50}, 1, {21, 47}, false}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TMyLine, AClickOnASegmentNamesThePointToInsertBefore) {
  TFakeOwner owner;
  auto chain = Make<TMyPolyLine>(owner, {{10, 10}, {50, 10}, {50, 50}});
  std::int32_t index = 99;
  EXPECT_TRUE(chain->IsClickedMeBeforeWhichPoint(index, {30, 12}));
  EXPECT_EQ(index, 1);
  EXPECT_TRUE(chain->IsClickedMeBeforeWhichPoint(index, {52, 30}));
  EXPECT_EQ(index, 2);
  EXPECT_TRUE(chain->IsClickedMeBeforeWhichPoint(index, {45, 12}));  // near both: the first wins
  EXPECT_EQ(index, 1);
  EXPECT_FALSE(chain->IsClickedMeBeforeWhichPoint(index, {30, 40}));
  EXPECT_EQ(index, -1);
}

TEST(TMyLine, TheLastHandleUnderThePointWinsAndIsRemembered) {
  TFakeOwner owner;  // handle squares reach 4 pixels, right and bottom edges out
  auto line = Make<TMyPolyLine>(owner, {{10, 10}, {14, 10}, {40, 40}});
  EXPECT_EQ(line->InWhichHot({12, 10}), 1);
  EXPECT_EQ(line->CurrentHot, 1);
  EXPECT_EQ(line->InWhichHot({7, 6}), 0);
  EXPECT_EQ(line->InWhichHot({43, 43}), 2);
  EXPECT_EQ(line->InWhichHot({44, 40}), -1);
  EXPECT_EQ(line->CurrentHot, -1);
}

// ---------------------------------------------------------------------------
// Creation by mouse

// Clicks at the given points, one by one: after which click each kind
// reports its drawing finished (-1: never within these clicks).
TEST(LineCreation, EachKindFinishesAfterItsOwnClick) {
  struct Case {
    const char* name;
    std::unique_ptr<TMyLine> (*make)(TFakeOwner&);
    std::vector<TPoint> clicks;
    int finishedAfter;
    std::int32_t pointsKept;
  };
  auto plain = [](TFakeOwner& o) -> std::unique_ptr<TMyLine> { return std::make_unique<TMyLine>(&o); };
  auto rule = [](TFakeOwner& o) -> std::unique_ptr<TMyLine> { return std::make_unique<TMyRuleLine>(&o); };
  auto chain = [](TFakeOwner& o) -> std::unique_ptr<TMyLine> { return std::make_unique<TMyPolyLine>(&o); };
  auto stroke = [](TFakeOwner& o) -> std::unique_ptr<TMyLine> { return std::make_unique<TMyFreeLine>(&o); };
  const Case cases[] = {
      {"line_two_points", plain, {{1, 1}, {9, 9}}, 1, 2},
      {"rule_two_points", rule, {{1, 1}, {9, 9}}, 1, 2},
      {"stroke_two_points", stroke, {{1, 1}, {2, 1}}, 1, 2},
      // A double-click on the first point does not finish a chain; one on a
      // later point does, without adding the repeated point.
      {"chain_double_click_on_first", chain, {{10, 10}, {10, 10}}, -1, 2},
      {"chain_double_click_later", chain, {{10, 10}, {20, 20}, {30, 10}, {30, 10}}, 3, 3},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    auto shape = c.make(owner);
    int finished = -1;
    for (std::size_t i = 0; i < c.clicks.size() && finished < 0; ++i) {
      shape->AddPointByMouse(c.clicks[i]);
      if (shape->IsDrawingFinished(mbLeft, c.clicks[i])) finished = static_cast<int>(i);
    }
    EXPECT_EQ(finished, c.finishedAfter);
    EXPECT_EQ(shape->GetPointsCount(), c.pointsKept);
  }
}

// ---------------------------------------------------------------------------
// Previews

TEST(TMyLine, TheRubberBandIsAnXorPreviewThatErasesItself) {
  TFakeOwner owner;
  TMyLine line(&owner);
  TSheet sheet, blank;
  line.Drawing(sheet.canvas(), {5, 5}, {50, 40});
  EXPECT_GT(sheet.inked(), 0);
  line.Drawing(sheet.canvas(), {5, 5}, {50, 40});
  EXPECT_TRUE(sheet == blank);
}

TEST(TMyLine, TheMovePreviewShiftsBeforeRoundingHalfToEven) {
  TFakeOwner owner;
  owner.zoom = 0.5;
  auto line = Make<TMyLine>(owner, {{5, 20}, {5, 60}});  // zoomed x 2.5 (which alone rounds to 2)
  TSheet sheet;
  line->Draging(sheet.canvas(), {0, 0}, {1, 3});          // 3.5 rounds to 4
  EXPECT_TRUE(sheet.inked(4, 20));
  EXPECT_FALSE(sheet.inked(3, 20));
  EXPECT_TRUE(sheet.inked(4, 13));
  EXPECT_FALSE(sheet.inked(4, 12));
}

TEST(TMyLine, TheSizePreviewMovesOnlyTheSegmentsAtTheCurrentHandle) {
  TFakeOwner owner;
  auto chain = Make<TMyPolyLine>(owner, {{10, 10}, {30, 10}, {30, 40}, {50, 40}});
  chain->CurrentHot = 1;
  TSheet sheet;
  chain->Sizing(sheet.canvas(), {30, 10}, {30, 20});  // point 1 previewed at (30,20)
  EXPECT_TRUE(sheet.inked(20, 15));                   // 0 -> moved 1
  EXPECT_TRUE(sheet.inked(30, 30));                   // moved 1 -> 2
  EXPECT_FALSE(sheet.inked(20, 10));                  // the old segment is not drawn
  EXPECT_FALSE(sheet.inked(40, 40));                  // nor the unaffected one
}

TEST(TMyFreeLine, TheStrokeGrowsInItsOwnPenAndStays) {
  TFakeOwner owner;
  TMyFreeLine stroke(&owner);
  stroke.Pen().SetColor(clRed);
  TSheet sheet;
  stroke.Drawing(sheet.canvas(), {5, 5}, {20, 5});
  stroke.Drawing(sheet.canvas(), {5, 5}, {20, 5});
  EXPECT_EQ(sheet.at(10, 5), clRed);
}

TEST(TMyFreeLine, TheMovePreviewIsTheShiftedBoundingBox) {
  TFakeOwner owner;
  auto stroke = Make<TMyFreeLine>(owner, {{10, 10}, {20, 30}, {30, 15}});
  TSheet sheet;
  stroke->Draging(sheet.canvas(), {0, 0}, {2, 3});  // box (12,13)-(32,33)
  EXPECT_TRUE(sheet.inked(12, 20));
  EXPECT_TRUE(sheet.inked(20, 13));
  EXPECT_TRUE(sheet.inked(32, 20));
  EXPECT_TRUE(sheet.inked(20, 33));
  EXPECT_FALSE(sheet.inked(20, 20));
}

// ---------------------------------------------------------------------------
// Changes and info

TEST(TMyLine, ResizingMovesTheCurrentHandleByTheUnzoomedDifference) {
  TFakeOwner owner;
  owner.zoom = 2;
  auto line = Make<TMyLine>(owner, {{0, 0}, {10, 10}});
  line->CurrentHot = 1;
  line->SizeChangeValue({20, 20}, {30, 40});
  EXPECT_EQ(line->Points, (TArrMyPoint{{0, 0}, {15, 20}}));
  EXPECT_EQ(line->CenterPoint, (TMyPoint{7.5f, 10}));
}

TEST(TMyLine, InfoReportsTheFirstSegmentForPlainAndMeasuringLinesOnly) {
  TFakeOwner owner;
  owner.unit = inch;
  auto line = Make<TMyLine>(owner, {{0, 0}, {96, 0}, {96, 500}});
  EXPECT_EQ(line->GetInfo(), "     1.00 in");
  EXPECT_EQ(line->GetInfoText(), "     1.00 in");
  EXPECT_EQ(Make<TMyRuleLine>(owner, {{0, 0}, {0, 48}})->GetInfo(), "     0.50 in");
  auto chain = Make<TMyPolyLine>(owner, {{0, 0}, {96, 0}});
  auto stroke = Make<TMyFreeLine>(owner, {{0, 0}, {96, 0}});
  for (TMyLine* other : {static_cast<TMyLine*>(chain.get()), static_cast<TMyLine*>(stroke.get())}) {
    other->SetInfo("kept");
    EXPECT_EQ(other->GetInfo(), "") << other->ClassName();
    EXPECT_EQ(other->GetInfoText(), "kept");
  }
}

TEST(TMyRuleLine, ResizingTurnsTheCaptionAndStoresTheTrimmedLength) {
  TFakeOwner owner;
  owner.unit = pixel;
  auto rule = Make<TMyRuleLine>(owner, {{0, 0}, {30, 0}});
  rule->CurrentHot = 1;
  rule->SizeChangeValue({30, 0}, {30, 40});
  EXPECT_EQ(rule->GetInfoText(), "50 pixel(s)");
  EXPECT_NEAR(rule->GetTextAngle(), std::atan(40.0 / 30.0), 1e-9);
  rule->CurrentHot = 0;
  rule->SizeChangeValue({0, 0}, {30, 10});  // now vertical
  EXPECT_NEAR(rule->GetTextAngle(), kPi / 2, 1e-9);
  EXPECT_EQ(rule->GetInfoText(), "30 pixel(s)");
}

// ---------------------------------------------------------------------------
// Measuring line drawing

// A rule line (20,40)-(50,40) without heads: ticks from y 30 to 49 at both ends.
std::unique_ptr<TMyRuleLine> LevelRule(TFakeOwner& owner) {
  auto rule = Make<TMyRuleLine>(owner, {{20, 40}, {50, 40}});
  rule->SetArrowStyle(ANone);
  return rule;
}

TEST(TMyRuleLine, TicksReachTenPixelsToEitherSideOfEachEnd) {
  TFakeOwner owner;
  auto rule = LevelRule(owner);
  rule->SetShowUserInfo(true);  // an empty label
  TSheet sheet;
  rule->Draw(sheet.canvas());
  for (std::int32_t x : {20, 50}) {
    EXPECT_FALSE(sheet.inked(x, 29)) << x;
    EXPECT_TRUE(sheet.inked(x, 30)) << x;
    EXPECT_TRUE(sheet.inked(x, 49)) << x;
    EXPECT_FALSE(sheet.inked(x, 50)) << x;
  }
  rule->SetTickStyle(tsNone);
  TSheet plain;
  rule->Draw(plain.canvas());
  EXPECT_FALSE(plain.inked(20, 35));
}

TEST(TMyRuleLine, TheLabelIsTheMeasuredLengthAboveTheLineUnlessUserTextIsShown) {
  TFakeOwner owner;  // millimetres
  auto rule = LevelRule(owner);
  rule->SetTickStyle(tsNone);
  TSheet measured;
  rule->Draw(measured.canvas());
  EXPECT_EQ(rule->GetInfoText(), "     7.94 mm");
  EXPECT_GT(measured.inked(Rect(0, 0, 64, 37)), 0);
  EXPECT_EQ(measured.inked(Rect(0, 41, 64, 64)), 0);
  rule->SetInfo("");
  rule->SetShowUserInfo(true);
  rule->SetUserInfo("AB");
  TSheet user;
  rule->Draw(user.canvas());
  EXPECT_EQ(rule->GetInfoText(), "");
  EXPECT_GT(user.inked(Rect(0, 0, 64, 37)), 0);
  EXPECT_FALSE(user == measured);
}

TEST(TMyRuleLine, AVerticalLabelReadsUpwardOnTheLeftWhicheverWayTheLineWasDrawn) {
  TFakeOwner owner;
  for (const TArrMyPoint& ends : {TArrMyPoint{{30, 4}, {30, 60}}, TArrMyPoint{{30, 60}, {30, 4}}}) {
    auto rule = Make<TMyRuleLine>(owner, ends);
    rule->SetArrowStyle(ANone);
    rule->SetTickStyle(tsNone);
    TSheet sheet;
    rule->Draw(sheet.canvas());
    EXPECT_GT(sheet.inked(Rect(0, 4, 30, 60)), 0) << ends[0].Y;
    EXPECT_EQ(sheet.inked(Rect(31, 0, 64, 64)), 0) << ends[0].Y;
  }
}

// ---------------------------------------------------------------------------
// Drawing-file records

// A line whose base record is test::BaseRecord("XP.j").
template <typename T>
std::unique_ptr<T> RecordFixture() {
  auto shape = std::make_unique<T>(nullptr);
  shape->SetName("S");
  shape->ShapeId = 1;
  TFont& font = shape->Font();
  font.SetName("F");
  font.SetCharset(0);
  font.SetColor(0);
  font.SetPixelsPerInch(96);
  font.SetHeight(-11);
  return shape;
}

TEST(TMyLineRecord, IsTheBaseRecordFollowedByTheFourArrowFields) {
  auto line = RecordFixture<TMyLine>();
  line->SetArrowAngle(-30);
  line->SetArrowLength(200);
  line->SetArrowOffset(2);
  line->SetArrowStyle(ARight);
  TMemoryStream stream;
  line->SaveToStream(stream);
  TRecordBytes expected = test::BaseRecord("XP.j");
  expected.i32(-30).u8(200).u8(2).u8(2);
  EXPECT_EQ(stream.Bytes(), expected.bytes);
}

TEST(TMyRuleLineRecord, AddsShowUserInfoTickStyleAndUserInfo) {
  auto rule = RecordFixture<TMyRuleLine>();  // heads: 10 degrees, 20 pixels, both ends
  rule->SetShowUserInfo(true);
  rule->SetTickStyle(tsNone);
  rule->SetUserInfo("3 m");
  TMemoryStream stream;
  rule->SaveToStream(stream);
  TRecordBytes expected = test::BaseRecord("XP.j");
  expected.i32(10).u8(20).u8(0).u8(3).u8(1).u8(1).str("3 m");
  EXPECT_EQ(stream.Bytes(), expected.bytes);
}

}  // namespace
}  // namespace lumatrex
