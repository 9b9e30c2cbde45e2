#include <gtest/gtest.h>

#include <QMetaEnum>
#include <string>
#include <utility>

#include "platform/bitmap.h"
#include "platform/qt_interop.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "support/golden.h"
#include "support/test_paths.h"

namespace lumatrex {

namespace {

// ---------------------------------------------------------------------------
// Helpers: rendered pictures and what they show
// ---------------------------------------------------------------------------

// The screen bitmap as it is now (XOR drawing included, nothing repainted).
TBitmap OnScreen(const TCustomControl& control) { return TBitmap(control.ScreenBitmap()); }

// The screen bitmap after a full repaint.
TBitmap Rendered(TCustomControl& control) {
  control.Repaint();
  return OnScreen(control);
}

bool IsHorizontal(TRulerDir dir) { return dir == rdTop || dir == rdBottom; }

std::pair<int, int> SizeOf(const TCustomControl& control) { return {control.Width(), control.Height()}; }

// A shown, flat ruler on Dir, Length pixels along and 33 across.
void Place(TRsRuler& ruler, TRulerDir dir, int length) {
  ruler.SetFlat(true);
  ruler.SetDirection(dir);
  ruler.resize(IsHorizontal(dir) ? QSize(length, 33) : QSize(33, length));
  ruler.show();
}

// The rendered ruler against its picture in tests/data/ruler, named by Name
// up to any colon (what follows says what the picture shows).
::testing::AssertionResult LooksLike(TCustomControl& control, const std::string& name) {
  return test::MatchesGoldenPicture(ToQImage(Rendered(control)), "ruler/" + name.substr(0, name.find(':')) + ".png");
}

// ---------------------------------------------------------------------------
// TRsRuler: properties
// ---------------------------------------------------------------------------

TEST(TRsRuler, WhileLoadingPropertiesAreTakenAsSaved) {
  TRsRuler ruler;
  ruler.BeginLoading();
  ruler.resize(33, 300);
  ruler.SetDirection(rdLeft);
  ruler.SetOffset(5);
  ruler.SetUnit(ruCenti);  // no conversion of the offset
  ruler.Loaded();
  EXPECT_FALSE(ruler.IsLoading());
  EXPECT_EQ(SizeOf(ruler), std::pair(33, 300));
  EXPECT_EQ(ruler.GetOffset(), 5.0);
}

TEST(TRsRuler, IgnoresValuesThatWouldBreakTheScale) {
  TRsRuler ruler;
  Place(ruler, rdTop, 200);
  ruler.SetScale(0);
  ruler.SetScale(-40);
  ruler.setMyLongTick(0);
  ruler.setMyShortTick(-1);
  EXPECT_EQ(ruler.GetScale(), 100);
  EXPECT_EQ(ruler.GetMyLongTick(), 5);
  EXPECT_EQ(ruler.GetMyShortTick(), 1);
  // and the scale still paints (a zero scale or period would never end the tick walk)
  EXPECT_TRUE(LooksLike(ruler, "edge_top"));
}

// ---------------------------------------------------------------------------
// TRsRuler: ticks and labels
// ---------------------------------------------------------------------------

// A tick every two advances of the unit, on the truncated pixel, every fifth
// long, and a label every tenth tick, centred on it; the picture names say
// where the first ticks fall or which texts the labels show.
TEST(TRsRuler, TicksFallOnTheTruncatedMultiplesOfTwiceTheAdvanceAndEveryTenthIsLabelled) {
  struct Case {
    const char* picture;
    TRulerUnit unit;
    int scale;
    double offset = 0;
    bool showMinus = true;
    int previousScale = 100;  // set before Scale, for multiplier carry-over
    int length = 400;
  };
  const Case cases[] = {
      {"ticks_mm_at_100: 0 7 15 22 30 37 45 52 60 68 75 (7.56 px: 2 mm at 96 ppi)", ruMilli, 100},
      {"ticks_inch_at_400: 0 19 38 57 76 96 115 134 153 172 192", ruInch, 400},
      {"ticks_pixel_at_50: 0 10 20 30 40 50 60 70 80 90 100", ruPixel, 50},
      {"ticks_mm_at_150_inside_a_step_range: 0 5 11 17 22 28 34 39 45 51 56", ruMilli, 150},
      {"ticks_mm_at_2000_keeps_the_finest_step: 0 15 30 45 60 75 90 105 120 136 151", ruMilli, 2000, 0, true, 1000},
      {"ticks_mm_at_2000_keeps_the_unit_step: 0 151 302", ruMilli, 2000},
      {"ticks_none_like_mm: 0 7 15 22 30 37 45 52 60 68 75", ruNone, 50},
      // 254 mm at 70 per cent is exactly 672 pixels; computed, it comes out a hair below.
      {"ticks_on_a_whole_pixel_keep_it: the 128th at 672", ruMilli, 70, 0, true, 100, 700},
      {"labels_mm_at_50: 40 80 120 160 200", ruMilli, 50},
      {"labels_cm_at_400: 0.5 1 1.5 2 2.5", ruCenti, 400},
      {"labels_km_below_a_hundredth: 0 0 0 0 0", ruKilo, 100},
      {"labels_inch_at_150: 1 2", ruInch, 150},
      {"labels_pixel_last_on_the_end_pixel: 100 200 300 400", ruPixel, 100},
      {"labels_pixel_half_rounds_to_even: 102 202 302 402", ruPixel, 100, 2.5},
      {"labels_none: no labels", ruNone, 100},
      {"labels_offset_shifts_values_not_ticks: 25 45 65 85 105", ruMilli, 100, 5},
      {"labels_fractional_offset: 20.33 40.33 60.33 80.33 100.33", ruMilli, 100, 0.333},
      {"labels_negative_offset: -30 -10 10 30 50", ruMilli, 100, -50},
      {"labels_without_show_minus: 30 10 10 30 50", ruMilli, 100, -50, false},
      {"labels_rounding_to_zero_has_no_sign: 0 0.02 0.04 0.06 0.08", ruMeter, 100, -0.021},
  };
  for (const Case& c : cases) {
    TRsRuler ruler;
    Place(ruler, rdTop, c.length);
    ruler.SetUnit(c.unit);
    ruler.SetScale(c.previousScale);
    ruler.SetScale(c.scale);
    ruler.SetOffset(c.offset);
    ruler.SetShowMinus(c.showMinus);
    EXPECT_TRUE(LooksLike(ruler, c.picture));
  }
}

TEST(TRsRuler, LongAndShortTicksFollowTheirPeriods) {
  TRsRuler ruler;
  Place(ruler, rdTop, 200);
  ruler.setMyLongTick(4);
  ruler.setMyShortTick(2);
  EXPECT_TRUE(LooksLike(ruler, "long_every_4_short_every_2"));
  ruler.setMyLongTick(1);
  EXPECT_TRUE(LooksLike(ruler, "long_every_1"));
}

// ---------------------------------------------------------------------------
// TRsRuler: the four edges, both counting directions
// ---------------------------------------------------------------------------

// Ticks on the edge, labels beside them, counted from the far end when reversed.
TEST(TRsRuler, EveryEdgePutsTicksOnItAndLabelsBesideThemCountingEitherWay) {
  const std::pair<TRulerDir, const char*> edges[] = {{rdTop, "top"}, {rdBottom, "bottom"}, {rdLeft, "left"}, {rdRight, "right"}};
  for (const auto& [dir, edge] : edges)
    for (const TRulerScaleDir scaleDir : {rsdNormal, rsdReverse}) {
      TRsRuler ruler;
      Place(ruler, dir, 200);
      ruler.SetScaleDir(scaleDir);
      EXPECT_TRUE(LooksLike(ruler, std::string("edge_") + edge + (scaleDir == rsdReverse ? "_reverse" : "")));
    }
}

// ---------------------------------------------------------------------------
// TRsRuler: colours and the raised edge
// ---------------------------------------------------------------------------

TEST(TRsRuler, PaintsInItsColoursWithARaisedEdgeUnlessFlat) {
  TRsRuler ruler;
  Place(ruler, rdTop, 200);
  ruler.SetScaleColor(clYellow);
  ruler.SetTickColor(clBlue);
  EXPECT_TRUE(LooksLike(ruler, "blue_on_yellow_flat"));
  ruler.SetFlat(false);
  EXPECT_TRUE(LooksLike(ruler, "blue_on_yellow_raised"));
}

// ---------------------------------------------------------------------------
// TRsRuler: scale arithmetic
// ---------------------------------------------------------------------------

// The scale value under a pixel, for the settings of each row of
// tests/data/ruler/pos2unit.txt.
TEST(TRsRuler, Pos2UnitGivesTheScaleValueUnderAPixel) {
  const QMetaEnum units = QMetaEnum::fromType<TRulerUnit>(), directions = QMetaEnum::fromType<TRulerScaleDir>();
  for (const std::vector<std::string>& row : test::DataTable("ruler/pos2unit.txt")) {
    TRsRuler ruler;  // 200 pixels long
    ruler.SetUnit(static_cast<TRulerUnit>(units.keyToValue(row[0].c_str())));
    ruler.SetScale(std::stoi(row[1]));
    ruler.SetOffset(std::stod(row[2]));
    ruler.SetScaleDir(static_cast<TRulerScaleDir>(directions.keyToValue(row[3].c_str())));
    EXPECT_NEAR(ruler.Pos2Unit(std::stoi(row[4])), std::stod(row[5]), 1e-12) << row[0] << " at " << row[4];
  }
}

TEST(TRsRuler, ConvertOffsetKeepsTheOriginsLengthWhenUnitsChange) {
  struct Case { TRulerUnit from, to; double offset, converted; };
  const Case cases[] = {{ruMilli, ruInch, 25.4, 1},  {ruInch, ruPixel, 1, 96},  // at 96 pixels per inch
                        {ruPixel, ruCenti, 48, 1.27}, {ruKilo, ruMeter, 0.001, 1}, {ruMeter, ruMilli, 0.5, 500},
                        {ruCenti, ruMilli, -2.5, -25}, {ruCenti, ruNone, 3, 3},  // none keeps the number
                        {ruNone, ruMilli, 3, 3}};
  for (const Case& c : cases) {
    TRsRuler ruler;
    ruler.SetUnit(c.from);
    ruler.SetOffset(c.offset);
    ruler.SetUnit(c.to);
    EXPECT_NEAR(ruler.GetOffset(), c.converted, 1e-12) << c.from << " to " << c.to;
  }
}

// ---------------------------------------------------------------------------
// TRsRuler: the hair line
// ---------------------------------------------------------------------------

// At position 50 on a 200-pixel ruler the hair line inverts the pixels its
// picture's name says; drawn a second time it erases itself, and moved it
// leaves what a repaint gives.
TEST(TRsRuler, TheHairLineInvertsItsPixelsAndErasesItselfWhenMoved) {
  struct Case { const char* picture; TRulerDir dir; TRulerScaleDir scaleDir; THairLineStyle style; };
  const Case cases[] = {
      {"hair_line_inverts_column_50_across_a_top_ruler", rdTop, rsdNormal, hlsLine},
      {"hair_line_inverts_column_50_whatever_the_counting_direction", rdBottom, rsdReverse, hlsLine},
      {"hair_rect_inverts_from_50_to_the_far_end_when_reversed", rdTop, rsdReverse, hlsRect},
      {"hair_rect_inverts_rows_0_to_50_down_a_right_ruler", rdRight, rsdNormal, hlsRect}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.picture);
    TRsRuler ruler;
    Place(ruler, c.dir, 200);
    ruler.SetScaleDir(c.scaleDir);
    ruler.SetHairLineStyle(c.style);
    ruler.SetHairLine(true);
    const QImage bare = ToQImage(Rendered(ruler));
    ruler.SetHairLinePos(50);
    const QImage drawn = ToQImage(OnScreen(ruler));
    EXPECT_TRUE(test::MatchesGoldenPicture(drawn, std::string("ruler/") + c.picture + ".png"));
    ruler.SetHairLinePos(-1);  // draws it a second time
    EXPECT_TRUE(ToQImage(OnScreen(ruler)) == bare);
    ruler.SetHairLinePos(50);
    ruler.SetHairLinePos(80);
    const QImage moved = ToQImage(OnScreen(ruler));
    EXPECT_TRUE(moved == ToQImage(Rendered(ruler)));
    EXPECT_FALSE(moved == drawn);
  }
}

// ---------------------------------------------------------------------------
// TRsRulerCorner
// ---------------------------------------------------------------------------

TEST(TRsRulerCorner, NamesTheUnitShortAndLong) {
  struct Case { TRulerUnit unit; const char* label; const char* unitName; };
  const Case cases[] = {{ruKilo, "km", "kilometer"}, {ruMeter, "m", "meter"},   {ruCenti, "cm", "centimeter"},
                        {ruMilli, "mm", "millimeter"}, {ruInch, "in", "inch"}, {ruPixel, "px", "pixel"},
                        {ruNone, "", ""}};
  for (const Case& c : cases) {
    TRsRulerCorner corner;
    corner.SetUnit(c.unit);
    EXPECT_EQ(corner.UnitLabel(), c.label);
    EXPECT_EQ(corner.UnitName(), c.unitName);
    EXPECT_EQ(corner.toolTip().toStdString(), c.unitName);
  }
}

TEST(TRsRulerCorner, DrawsTheUnitOnTheLabelRowOfItsRuler) {
  TRsRulerCorner corner;
  corner.SetFlat(true);
  corner.SetUnit(ruCenti);
  corner.show();  // 33 x 33, as its pictures are
  const std::pair<TCornerPos, const char*> positions[] = {
      {cpLeftTop, "top"}, {cpRightTop, "top"}, {cpLeftBottom, "bottom"}, {cpRightBottom, "bottom"}};
  for (const auto& [position, row] : positions) {
    corner.SetPosition(position);
    EXPECT_TRUE(LooksLike(corner, std::string("corner_cm_") + row));
  }
}

}  // namespace
}  // namespace lumatrex
