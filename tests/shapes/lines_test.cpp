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
// Copies

TEST(TMyLine, AssignCopiesTheHeadButNotTheArrowOffsetAndRulesAddOnlyTheUserText) {
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
  TMyRuleLine ruleSource(&owner), ruleTarget(&owner);
  ruleSource.SetUserInfo("10 m");
  ruleSource.SetTickStyle(tsNone);
  ruleSource.SetShowUserInfo(true);
  ruleTarget.Assign(ruleSource);
  EXPECT_EQ(ruleTarget.GetUserInfo(), "10 m");
  EXPECT_EQ(ruleTarget.GetTickStyle(), tsLine);
  EXPECT_FALSE(ruleTarget.GetShowUserInfo());
}

// ---------------------------------------------------------------------------
// Drawing: heads and caption (the golden scene shows every head style)

TEST(TMyLine, AnArrowOffsetSetsTheTipBackInDevicePixels) {
  TFakeOwner owner(2);  // the offset is not zoomed
  auto line = Make<TMyLine>(owner, {{5, 15}, {25, 15}});  // zoomed (10,30)-(50,30)
  line->SetArrowLength(5);                                // 10 device pixels
  TSheet flush, setBack;
  line->Draw(flush.canvas());
  line->SetArrowOffset(5);  // tip on (45,30)
  line->Draw(setBack.canvas());
  EXPECT_TRUE(flush.inked(46, 29));
  EXPECT_FALSE(setBack.inked(46, 29));
  EXPECT_TRUE(setBack.inked(43, 29));
}

TEST(TMyLine, AHeadLongerThan255DevicePixelsWrapsModulo256) {
  TFakeOwner owner(2);
  auto line = Make<TMyLine>(owner, {{10, 150}, {150, 150}});  // zoomed (20,300)-(300,300)
  line->SetArrowLength(200);                                  // 400 device pixels, drawn as 144
  TSheet wrapped(320, 320), exact(320, 320);
  line->Draw(wrapped.canvas());
  line->SetArrowLength(72);
  line->Draw(exact.canvas());
  EXPECT_TRUE(wrapped == exact);
  EXPECT_TRUE(wrapped.inked(200, 290));   // inside a 144-pixel head
  EXPECT_FALSE(wrapped.inked(150, 290));  // would be inside a 400-pixel head
}

TEST(TMyLine, TheCaptionFollowsTheFirstSegmentButNeverReadsUpsideDown) {
  struct Case {
    const char* name;
    TMyPoint end;  // the first segment runs from (20, 20) to End
    double angle;
  };
  for (const Case& c : {Case{"rightward", {30, 20}, 0},
                        Case{"straight down reads upward like straight up", {20, 30}, 3 * kPi / 2},
                        Case{"leftward is turned half round", {10, 20}, 2 * kPi},
                        Case{"straight up is not flipped", {20, 10}, 3 * kPi / 2}}) {
    TFakeOwner owner;
    auto line = Make<TMyLine>(owner, {{20, 20}, c.end, {0, 0}});
    TSheet sheet = test::Drawn(*line);
    EXPECT_NEAR(line->GetTextAngle(), c.angle, 1e-6) << c.name;
  }
}

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

TEST(TMyLine, HitsUseAnEightPixelBandInsideTheSegmentsExtent) {
  struct Case {
    const char* name;
    TMyPoint a, b;  // model segment
    double zoom;
    TPoint p;
    bool hit;
  };
  constexpr TMyPoint kTop{50, 20}, kBottom{50, 80}, kLeft{20, 50}, kRight{80, 50};
  const Case cases[] = {{"vertical, 8 left", kTop, kBottom, 1, {42, 50}, true},
                        {"vertical, 9 left", kTop, kBottom, 1, {41, 50}, false},
                        {"vertical, top end", kTop, kBottom, 1, {50, 20}, true},
                        {"vertical, bottom end excluded", kTop, kBottom, 1, {50, 80}, false},
                        {"band not zoomed", {25, 10}, {25, 40}, 2, {42, 50}, true},
                        {"vertical, 8 right: edge excluded", kTop, kBottom, 1, {58, 50}, false},
                        {"horizontal, left of start", kLeft, kRight, 1, {19, 50}, false},
                        {"flat, on the line", {10, 10}, {50, 30}, 1, {30, 20}, true},
                        {"flat, extension outside the box", {10, 10}, {50, 30}, 1, {5, 8}, false},
                        {"steep, 8 right", {10, 10}, {20, 50}, 1, {19, 20}, true}};
  for (const Case& c : cases) {
    TFakeOwner owner(c.zoom);
    TSheet sheet;
    EXPECT_EQ(Make<TMyLine>(owner, {c.a, c.b})->IsClickedMe(sheet.canvas(), c.p), c.hit) << c.name;
  }
}

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
// Previews

TEST(TMyLine, TheRubberBandIsAnXorPreviewThatErasesItselfAStrokeStaysInItsPen) {
  TFakeOwner owner;
  TMyLine line(&owner);
  TSheet sheet, blank;
  line.Drawing(sheet.canvas(), {5, 5}, {50, 40});
  EXPECT_GT(sheet.inked(), 0);
  line.Drawing(sheet.canvas(), {5, 5}, {50, 40});
  EXPECT_TRUE(sheet == blank);
  TMyFreeLine stroke(&owner);
  stroke.Pen().SetColor(clRed);
  stroke.Drawing(sheet.canvas(), {5, 5}, {20, 5});
  stroke.Drawing(sheet.canvas(), {5, 5}, {20, 5});
  EXPECT_EQ(sheet.at(10, 5), clRed);
}

TEST(TMyLine, TheMovePreviewShiftsBeforeRoundingHalfToEven) {
  TFakeOwner owner(0.5);
  auto line = Make<TMyLine>(owner, {{5, 20}, {5, 60}});  // zoomed x 2.5 (which alone rounds to 2)
  TSheet sheet;
  line->Draging(sheet.canvas(), {0, 0}, {1, 3});  // 3.5 rounds to 4
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

// ---------------------------------------------------------------------------
// Changes and info

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

TEST(TMyRuleLine, TheLabelIsTheMeasuredLengthAboveTheLineUnlessUserTextIsShown) {
  TFakeOwner owner;  // millimetres
  auto rule = LevelRule(owner);
  rule->SetTickStyle(tsNone);
  TSheet measured = test::Drawn(*rule);
  EXPECT_EQ(rule->GetInfoText(), "     7.94 mm");
  EXPECT_GT(measured.inked(Rect(0, 0, 64, 37)), 0);
  EXPECT_EQ(measured.inked(Rect(0, 41, 64, 64)), 0);
  rule->SetInfo("");
  rule->SetShowUserInfo(true);
  rule->SetUserInfo("AB");
  TSheet user = test::Drawn(*rule);
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
    TSheet sheet = test::Drawn(*rule);
    EXPECT_GT(sheet.inked(Rect(0, 4, 30, 60)), 0) << ends[0].Y;
    EXPECT_EQ(sheet.inked(Rect(31, 0, 64, 64)), 0) << ends[0].Y;
  }
}

// ---------------------------------------------------------------------------
// Drawing-file records

// The base record of a line is test::BaseRecord("XP.j") once these fields are set.
void AsRecordFixture(TMyShape& shape) {
  shape.SetName("S");
  shape.ShapeId = 1;
  TFont& font = shape.Font();
  font.SetName("F");
  font.SetCharset(0);
  font.SetColor(0);
  font.SetPixelsPerInch(96);
  font.SetHeight(-11);
}

TEST(TMyLineRecord, IsTheBaseRecordFollowedByTheArrowFieldsAndForRulesTheirLabel) {
  TMyLine line(nullptr);
  AsRecordFixture(line);
  line.SetArrowAngle(-30);
  line.SetArrowLength(200);
  line.SetArrowOffset(2);
  line.SetArrowStyle(ARight);
  TMyRuleLine rule(nullptr);  // heads: 10 degrees, 20 pixels, both ends
  AsRecordFixture(rule);
  rule.SetShowUserInfo(true);
  rule.SetTickStyle(tsNone);
  rule.SetUserInfo("3 m");
  TMemoryStream lineStream, ruleStream;
  line.SaveToStream(lineStream);
  rule.SaveToStream(ruleStream);
  EXPECT_EQ(lineStream.Bytes(), TRecordBytes(test::BaseRecord("XP.j")).i32(-30).u8(200).u8(2).u8(2).bytes);
  EXPECT_EQ(ruleStream.Bytes(),
            TRecordBytes(test::BaseRecord("XP.j")).i32(10).u8(20).u8(0).u8(3).u8(1).u8(1).str("3 m").bytes);
}

}  // namespace
}  // namespace lumatrex
