#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "persistence/stream_io.h"
#include "shapes/drawing_modes.h"
#include "shapes/fake_owner.h"
#include "shapes/lines.h"
#include "shapes/record_bytes.h"
#include "shapes/sheet.h"
#include "support/test_paths.h"

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
// Caption

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

// ---------------------------------------------------------------------------
// Hit tests

// The rows of tests/data/shapes/line-hits.txt: a model segment, the zoom, a
// device point and whether it hits.
TEST(TMyLine, HitsUseAnEightPixelBandInsideTheSegmentsExtent) {
  const auto rows = test::DataTable("shapes/line-hits.txt");
  ASSERT_EQ(rows.size(), 10u);
  for (const std::vector<std::string>& row : rows) {
    std::istringstream in(row.at(1));
    TMyPoint a, b;
    double zoom;
    TPoint p;
    in >> a.X >> a.Y >> b.X >> b.Y >> zoom >> p.X >> p.Y;
    TFakeOwner owner(zoom);
    TSheet sheet;
    EXPECT_EQ(Make<TMyLine>(owner, {a, b})->IsClickedMe(sheet.canvas(), p), row.at(2) == "hit") << row.at(0);
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
// Pictures: heads, handles, previews and measuring labels

// A rule line without heads or ticks: the line and its label alone.
std::unique_ptr<TMyRuleLine> PlainRule(TFakeOwner& owner, const TArrMyPoint& ends) {
  auto rule = Make<TMyRuleLine>(owner, ends);
  rule->SetArrowStyle(ANone);
  rule->SetTickStyle(tsNone);
  return rule;
}

// Each drawing against its picture; equal pictures share a file, and the
// names say what the picture shows.
TEST(LinePictures, HeadsHandlesPreviewsAndLabelsDrawExactlyTheirPictures) {
  using TDraw = std::function<void(TFakeOwner&, TCanvas&)>;
  struct Case { const char* picture; double zoom; int size; TDraw draw; };
  const auto head = [](TFakeOwner& o, TCanvas& c, std::uint8_t length, std::uint8_t offset) {
    auto line = Make<TMyLine>(o, {{5, 15}, {25, 15}});  // zoomed (10,30)-(50,30)
    line->SetArrowLength(length);
    line->SetArrowOffset(offset);
    line->Draw(c);
  };
  const auto longHead = [](TFakeOwner& o, TCanvas& c, std::uint8_t length) {
    auto line = Make<TMyLine>(o, {{10, 150}, {150, 150}});
    line->SetArrowLength(length);
    line->Draw(c);
  };
  const Case cases[] = {
      {"line_head_of_10_device_pixels_at_zoom_2", 2, 64, [&](TFakeOwner& o, TCanvas& c) { head(o, c, 5, 0); }},
      {"line_head_set_back_5_device_pixels_not_zoomed", 2, 64, [&](TFakeOwner& o, TCanvas& c) { head(o, c, 5, 5); }},
      // 400 device pixels wrap modulo 256 to 144, as a head of 72 at zoom 2 is.
      {"line_head_of_144_device_pixels", 2, 320, [&](TFakeOwner& o, TCanvas& c) { longHead(o, c, 200); }},
      {"line_head_of_144_device_pixels", 2, 320, [&](TFakeOwner& o, TCanvas& c) { longHead(o, c, 72); }},
      {"line_handle_squares_at_every_point", 1, 64,
       [](TFakeOwner& o, TCanvas& c) { Make<TMyLine>(o, {{10, 10}, {40, 40}})->DrawHot(c); }},
      {"blank", 1, 64, [](TFakeOwner& o, TCanvas& c) {  // the owner hides handles
         o.hotShow = false;
         Make<TMyLine>(o, {{10, 10}, {40, 40}})->DrawHot(c);
       }},
      {"line_rubber_band", 1, 64, [](TFakeOwner& o, TCanvas& c) { TMyLine(&o).Drawing(c, {5, 5}, {50, 40}); }},
      {"blank", 1, 64, [](TFakeOwner& o, TCanvas& c) {  // an XOR preview erases itself
         TMyLine line(&o);
         line.Drawing(c, {5, 5}, {50, 40});
         line.Drawing(c, {5, 5}, {50, 40});
       }},
      {"line_freehand_stroke_stays_in_its_pen", 1, 64, [](TFakeOwner& o, TCanvas& c) {
         TMyFreeLine stroke(&o);
         stroke.Pen().SetColor(clRed);
         stroke.Drawing(c, {5, 5}, {20, 5});
         stroke.Drawing(c, {5, 5}, {20, 5});
       }},
      // Zoomed x is 2.5, which alone rounds to 2; shifted by 1 first, 3.5 rounds to 4.
      {"line_move_preview_shifts_before_rounding", 0.5, 64,
       [](TFakeOwner& o, TCanvas& c) { Make<TMyLine>(o, {{5, 20}, {5, 60}})->Draging(c, {0, 0}, {1, 3}); }},
      {"line_size_preview_of_point_1_moved_to_30_20", 1, 64, [](TFakeOwner& o, TCanvas& c) {
         auto chain = Make<TMyPolyLine>(o, {{10, 10}, {30, 10}, {30, 40}, {50, 40}});
         chain->CurrentHot = 1;
         chain->Sizing(c, {30, 10}, {30, 20});
       }},
      {"rule_measured_length_above_the_line", 1, 64, [](TFakeOwner& o, TCanvas& c) {
         auto rule = PlainRule(o, {{20, 40}, {50, 40}});
         rule->Draw(c);
         EXPECT_EQ(rule->GetInfoText(), "     7.94 mm");
       }},
      {"rule_user_text_above_the_line", 1, 64, [](TFakeOwner& o, TCanvas& c) {
         auto rule = PlainRule(o, {{20, 40}, {50, 40}});
         rule->SetInfo("");
         rule->SetShowUserInfo(true);
         rule->SetUserInfo("AB");
         rule->Draw(c);
         EXPECT_EQ(rule->GetInfoText(), "");
       }},
      {"rule_drawn_down_label_reads_upward_on_the_left", 1, 64,
       [](TFakeOwner& o, TCanvas& c) { PlainRule(o, {{30, 4}, {30, 60}})->Draw(c); }},
      {"rule_drawn_up_label_reads_upward_on_the_left", 1, 64,
       [](TFakeOwner& o, TCanvas& c) { PlainRule(o, {{30, 60}, {30, 4}})->Draw(c); }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.picture);
    TFakeOwner owner(c.zoom);
    TSheet sheet(c.size, c.size);
    c.draw(owner, sheet.canvas());
    EXPECT_TRUE(sheet.LooksLike(c.picture));
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
