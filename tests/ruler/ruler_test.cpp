#include <gtest/gtest.h>

#include <QApplication>
#include <algorithm>
#include <ostream>
#include <string>
#include <utility>
#include <vector>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"

namespace lumatrex {

void PrintTo(const TRect& r, std::ostream* out) {
  *out << "Rect(" << r.Left << "," << r.Top << "," << r.Right << "," << r.Bottom << ")";
}

namespace {

// Table rows print as their names in failure messages.
template <typename TCase>
  requires requires(const TCase& c) { c.name; }
void PrintTo(const TCase& c, std::ostream* out) {
  *out << c.name;
}

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

// The pixel Depth pixels in from the ruler's tick edge, Along pixels along it.
TColor PixelFromTickEdge(TBitmap& shot, TRulerDir dir, int along, int depth) {
  switch (dir) {
    case rdTop: return shot.Canvas().GetPixel(along, shot.Height() - 1 - depth);
    case rdBottom: return shot.Canvas().GetPixel(along, depth);
    case rdLeft: return shot.Canvas().GetPixel(shot.Width() - 1 - depth, along);
    default: return shot.Canvas().GetPixel(depth, along);
  }
}

struct TTick {
  int at;      // pixel along the ruler
  int length;  // pixels in tick colour, counted from the tick edge
  friend bool operator==(const TTick&, const TTick&) = default;
  friend std::ostream& operator<<(std::ostream& out, const TTick& t) {
    return out << "{" << t.at << "," << t.length << "}";
  }
};

// Every tick of the rendered ruler, in pixel order.
std::vector<TTick> Ticks(TRsRuler& ruler) {
  TBitmap shot = Rendered(ruler);
  const TRulerDir dir = ruler.GetDirection();
  const int along = IsHorizontal(dir) ? shot.Width() : shot.Height();
  const TColor tick = ColorToRGB(ruler.GetTickColor());
  std::vector<TTick> ticks;
  for (int at = 0; at < along; ++at) {
    int length = 0;
    while (length < 33 && PixelFromTickEdge(shot, dir, at, length) == tick) ++length;
    if (length > 0) ticks.push_back({at, length});
  }
  return ticks;
}

// The ticks at Columns, counted from the scale's origin: every fifth is long.
std::vector<TTick> WithClassicLengths(const std::vector<int>& columns) {
  std::vector<TTick> ticks;
  for (std::size_t i = 0; i < columns.size(); ++i) ticks.push_back({columns[i], i % 5 == 0 ? 7 : 5});
  return ticks;
}

std::vector<TTick> Head(std::vector<TTick> ticks, std::size_t count) {
  ticks.resize(std::min(count, ticks.size()));
  return ticks;
}

using TLabels = std::vector<std::pair<int, std::string>>;  // tick pixel, text

// Compares the ruler's label band (everything but the 7 pixels of tick edge)
// with Labels drawn onto a bare scale in the ruler's font: upright and hanging
// 8 pixels above the bottom edge (rdTop) or below the top (rdBottom), or
// reading upwards 8 pixels from the right (rdLeft) or left (rdRight) edge,
// centred on their ticks.
::testing::AssertionResult ShowsLabels(TRsRuler& ruler, const TLabels& labels) {
  TBitmap shot = Rendered(ruler);
  const int width = shot.Width(), height = shot.Height();
  TBitmap expected(width, height, pf32bit);
  TCanvas& canvas = expected.Canvas();
  canvas.Brush().SetColor(ruler.GetScaleColor());
  canvas.FillRect(Rect(0, 0, width, height));
  const TRulerDir dir = ruler.GetDirection();
  canvas.Font().Assign(ruler.Font());
  canvas.Font().SetOrientation(IsHorizontal(dir) ? 0 : 900);
  canvas.Font().SetColor(ruler.GetTickColor());
  canvas.SetBkMode(bkTransparent);
  for (const auto& [at, text] : labels) {
    const TSize size = canvas.TextExtent(text);
    switch (dir) {
      case rdTop: canvas.TextOut(at - size.cx / 2, height - size.cy - 8, text); break;
      case rdBottom: canvas.TextOut(at - size.cx / 2, 8, text); break;
      case rdLeft: canvas.TextOut(width - size.cy - 8, at + size.cx / 2, text); break;
      case rdRight: canvas.TextOut(8, at + size.cx / 2, text); break;
    }
  }
  TRect band = Rect(0, 0, width, height);
  if (dir == rdTop) band.Bottom -= 7;
  if (dir == rdBottom) band.Top += 7;
  if (dir == rdLeft) band.Right -= 7;
  if (dir == rdRight) band.Left += 7;
  for (int y = band.Top; y < band.Bottom; ++y) {
    for (int x = band.Left; x < band.Right; ++x) {
      if (shot.Canvas().GetPixel(x, y) != expected.Canvas().GetPixel(x, y)) {
        return ::testing::AssertionFailure() << "label band differs first at (" << x << "," << y << ")";
      }
    }
  }
  return ::testing::AssertionSuccess();
}

// The pixels of A and B that differ, as the rectangle around them.
TRect Differing(TBitmap& a, TBitmap& b, bool& inverted) {
  TRect around = Rect(a.Width(), a.Height(), 0, 0);
  inverted = true;
  for (int y = 0; y < a.Height(); ++y) {
    for (int x = 0; x < a.Width(); ++x) {
      const TColor pa = a.Canvas().GetPixel(x, y), pb = b.Canvas().GetPixel(x, y);
      if (pa == pb) continue;
      inverted = inverted && pb == (~pa & 0xFFFFFF);
      around = Rect(std::min(around.Left, x), std::min(around.Top, y), std::max(around.Right, x + 1),
                    std::max(around.Bottom, y + 1));
    }
  }
  return around.Left < around.Right ? around : TRect{};
}

bool SamePicture(TBitmap& a, TBitmap& b) {
  bool inverted = false;
  return Differing(a, b, inverted) == TRect{};
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
  ruler.SetUnit(ruCenti);
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
  EXPECT_EQ(Head(Ticks(ruler), 3), WithClassicLengths({0, 7, 15}));
}

class TPaintCounter : public TRsRuler {
 public:
  int paints = 0;

 protected:
  void Paint() override {
    ++paints;
    TRsRuler::Paint();
  }
};

// Repaints are counted through the event loop, as a host sees them.
TEST(TRsRuler, SettersRepaintButMovingTheHairLineDoesNot) {
  TPaintCounter ruler;
  Place(ruler, rdTop, 200);
  ruler.SetHairLine(true);
  ruler.Repaint();
  const int paints = ruler.paints;
  ruler.SetScale(200);
  QApplication::processEvents();
  EXPECT_EQ(ruler.paints, paints + 1);
  ruler.SetHairLinePos(30);
  ruler.SetHairLinePos(60);
  QApplication::processEvents();
  EXPECT_EQ(ruler.paints, paints + 1);
}

// ---------------------------------------------------------------------------
// TRsRuler: ticks
// ---------------------------------------------------------------------------

struct TTickCase {
  const char* name;
  TRulerUnit unit;
  int previousScale;  // set before Scale, for multiplier carry-over
  int scale;
  std::vector<int> columns;  // of the first eleven ticks
};

class TRsRulerTicks : public ::testing::TestWithParam<TTickCase> {};

TEST_P(TRsRulerTicks, FallOnTheTruncatedMultiplesOfTwiceTheAdvance) {
  const TTickCase& c = GetParam();
  TRsRuler ruler;
  Place(ruler, rdTop, 400);
  ruler.SetUnit(c.unit);
  ruler.SetScale(c.previousScale);
  ruler.SetScale(c.scale);
  EXPECT_EQ(Head(Ticks(ruler), c.columns.size()), WithClassicLengths(c.columns));
}

const std::vector<int> kMetricPitch = {0, 7, 15, 22, 30, 37, 45, 52, 60, 68, 75};  // 7.56 px: 2 mm at 96 ppi
const std::vector<int> kInchPitch = {0, 19, 38, 57, 76, 96, 115, 134, 153, 172, 192};
const std::vector<int> kPixelPitch = {0, 10, 20, 30, 40, 50, 60, 70, 80, 90, 100};

INSTANTIATE_TEST_SUITE_P(
    UnitsAndScales, TRsRulerTicks,
    ::testing::Values(
        TTickCase{"mm_at_100", ruMilli, 100, 100, kMetricPitch},
        TTickCase{"inch_at_400", ruInch, 100, 400, kInchPitch},
        TTickCase{"pixel_at_50", ruPixel, 100, 50, kPixelPitch},
        TTickCase{"mm_at_150_inside_a_step_range", ruMilli, 100, 150, {0, 5, 11, 17, 22, 28, 34, 39, 45, 51, 56}},
        TTickCase{"mm_at_30_inside_a_step_range", ruMilli, 100, 30, {0, 9, 18, 27, 36, 45, 54, 63, 72, 81, 90}},
        TTickCase{"mm_at_2000_keeps_the_finest_step", ruMilli, 1000, 2000,
                  {0, 15, 30, 45, 60, 75, 90, 105, 120, 136, 151}},
        TTickCase{"mm_at_2000_keeps_the_unit_step", ruMilli, 100, 2000, {0, 151, 302}},
        TTickCase{"none_like_mm", ruNone, 100, 50, kMetricPitch},
        TTickCase{"inch_at_150", ruInch, 100, 150, {0, 14, 28, 43, 57, 72, 86, 100, 115, 129, 144}},
        TTickCase{"pixel_at_150", ruPixel, 100, 150, {0, 7, 15, 22, 30, 37, 45, 52, 60, 67, 75}}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TRsRuler, ATickOnAWholePixelKeepsItsPixel) {
  // 254 mm at 70 per cent is exactly 672 pixels; computed, it comes out a hair below.
  TRsRuler ruler;
  Place(ruler, rdTop, 700);
  ruler.SetScale(70);
  const std::vector<TTick> ticks = Ticks(ruler);
  ASSERT_GE(ticks.size(), 129u);
  EXPECT_EQ(ticks[127], (TTick{672, 5}));
}

TEST(TRsRuler, LongAndShortTicksFollowTheirPeriods) {
  TRsRuler ruler;
  Place(ruler, rdTop, 200);
  ruler.setMyLongTick(4);
  ruler.setMyShortTick(2);
  EXPECT_EQ(Head(Ticks(ruler), 5), (std::vector<TTick>{{0, 7}, {15, 5}, {30, 7}, {45, 5}, {60, 7}}));
  EXPECT_TRUE(ShowsLabels(ruler, {{60, "16"}, {120, "32"}, {181, "48"}}));
  ruler.setMyLongTick(1);
  EXPECT_EQ(Head(Ticks(ruler), 3), (std::vector<TTick>{{0, 7}, {7, 7}, {15, 7}}));
}

// ---------------------------------------------------------------------------
// TRsRuler: the four edges, both counting directions
// ---------------------------------------------------------------------------

struct TEdgeCase { const char* name; TRulerDir dir; TRulerScaleDir scaleDir; };

class TRsRulerEdges : public ::testing::TestWithParam<TEdgeCase> {};

TEST_P(TRsRulerEdges, PutTicksOnTheEdgeAndLabelsBesideThem) {
  const TEdgeCase& c = GetParam();
  TRsRuler ruler;
  Place(ruler, c.dir, 200);
  ruler.SetScaleDir(c.scaleDir);
  std::vector<TTick> ticks = Ticks(ruler);
  if (c.scaleDir == rsdReverse) {
    // Counted from the far end; the origin tick itself, at pixel 200, lies outside.
    std::reverse(ticks.begin(), ticks.end());
    EXPECT_EQ(Head(ticks, 6), (std::vector<TTick>{{192, 5}, {184, 5}, {177, 5}, {169, 5}, {162, 7}, {154, 5}}));
    EXPECT_TRUE(ShowsLabels(ruler, {{124, "20"}, {48, "40"}}));
  } else {
    EXPECT_EQ(Head(ticks, 6), WithClassicLengths({0, 7, 15, 22, 30, 37}));
    EXPECT_TRUE(ShowsLabels(ruler, {{75, "20"}, {151, "40"}}));
  }
}

INSTANTIATE_TEST_SUITE_P(
    EveryEdge, TRsRulerEdges,
    ::testing::Values(TEdgeCase{"top", rdTop, rsdNormal}, TEdgeCase{"bottom", rdBottom, rsdNormal},
                      TEdgeCase{"left", rdLeft, rsdNormal}, TEdgeCase{"right", rdRight, rsdNormal},
                      TEdgeCase{"top_reversed", rdTop, rsdReverse}, TEdgeCase{"bottom_reversed", rdBottom, rsdReverse},
                      TEdgeCase{"left_reversed", rdLeft, rsdReverse}, TEdgeCase{"right_reversed", rdRight, rsdReverse}),
    [](const auto& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------
// TRsRuler: label texts
// ---------------------------------------------------------------------------

struct TLabelCase { const char* name; TRulerUnit unit; int scale; double offset; bool showMinus; TLabels labels; };

class TRsRulerLabels : public ::testing::TestWithParam<TLabelCase> {};

TEST_P(TRsRulerLabels, ShowTheScaleValueAtEveryTenthTick) {
  const TLabelCase& c = GetParam();
  TRsRuler ruler;
  Place(ruler, rdTop, 400);
  ruler.SetUnit(c.unit);
  ruler.SetScale(c.scale);
  ruler.SetOffset(c.offset);
  ruler.SetShowMinus(c.showMinus);
  EXPECT_TRUE(ShowsLabels(ruler, c.labels));
}

// Texts on the labelled ticks of a 400-pixel ruler: metric ones 7.56 pixels
// apart, pixel ones 10.
TLabels AtMetricTicks(std::vector<std::string> texts) {
  const int at[] = {75, 151, 226, 302, 377};
  TLabels labels;
  for (std::size_t i = 0; i < texts.size(); ++i) labels.push_back({at[i], texts[i]});
  return labels;
}

TLabels AtPixelTicks(std::vector<std::string> texts) {
  TLabels labels;
  for (std::size_t i = 0; i < texts.size(); ++i) labels.push_back({100 * static_cast<int>(i + 1), texts[i]});
  return labels;
}

INSTANTIATE_TEST_SUITE_P(
    UnitsScalesAndOffsets, TRsRulerLabels,
    ::testing::Values(
        TLabelCase{"mm_at_50", ruMilli, 50, 0, true, AtMetricTicks({"40", "80", "120", "160", "200"})},
        TLabelCase{"cm_at_400_half_centimetres", ruCenti, 400, 0, true,
                   AtMetricTicks({"0.5", "1", "1.5", "2", "2.5"})},
        TLabelCase{"m_at_100_two_decimals", ruMeter, 100, 0, true,
                   AtMetricTicks({"0.02", "0.04", "0.06", "0.08", "0.1"})},
        TLabelCase{"km_below_a_hundredth_reads_0", ruKilo, 100, 0, true, AtMetricTicks({"0", "0", "0", "0", "0"})},
        TLabelCase{"km_shows_its_offset", ruKilo, 100, 1.25, true,
                   AtMetricTicks({"1.25", "1.25", "1.25", "1.25", "1.25"})},
        TLabelCase{"inch_at_150", ruInch, 150, 0, true, {{144, "1"}, {288, "2"}}},
        TLabelCase{"inch_offset_keeps_hundredths", ruInch, 100, 0.3, true, {{192, "2.3"}, {384, "4.3"}}},
        TLabelCase{"pixel_at_100_last_label_on_the_end_pixel", ruPixel, 100, 0, true,
                   AtPixelTicks({"100", "200", "300", "400"})},
        TLabelCase{"pixel_half_rounds_to_even_down", ruPixel, 100, 2.5, true,
                   AtPixelTicks({"102", "202", "302", "402"})},
        TLabelCase{"none_has_no_labels", ruNone, 100, 0, true, {}},
        TLabelCase{"offset_shifts_values_not_ticks", ruMilli, 100, 5, true,
                   AtMetricTicks({"25", "45", "65", "85", "105"})},
        TLabelCase{"fractional_offset_two_decimals", ruMilli, 100, 0.333, true,
                   AtMetricTicks({"20.33", "40.33", "60.33", "80.33", "100.33"})},
        TLabelCase{"negative_offset_keeps_signs", ruMilli, 100, -50, true,
                   AtMetricTicks({"-30", "-10", "10", "30", "50"})},
        TLabelCase{"without_ShowMinus_absolute_values", ruMilli, 100, -50, false,
                   AtMetricTicks({"30", "10", "10", "30", "50"})},
        TLabelCase{"rounding_to_zero_has_no_sign", ruMeter, 100, -0.021, true,
                   AtMetricTicks({"0", "0.02", "0.04", "0.06", "0.08"})}),
    [](const auto& info) { return std::string(info.param.name); });

TEST(TRsRuler, PaintsInItsColoursWithARaisedEdgeUnlessFlat) {
  TRsRuler ruler;
  Place(ruler, rdTop, 200);
  ruler.SetScaleColor(clYellow);
  ruler.SetTickColor(clBlue);
  EXPECT_EQ(Head(Ticks(ruler), 2), WithClassicLengths({0, 7}));
  EXPECT_TRUE(ShowsLabels(ruler, {{75, "20"}, {151, "40"}}));

  ruler.SetFlat(false);
  TBitmap raised = Rendered(ruler);
  EXPECT_EQ(raised.Canvas().GetPixel(100, 0), ColorToRGB(clBtnHighlight));
  EXPECT_EQ(raised.Canvas().GetPixel(0, 10), ColorToRGB(clBtnHighlight));
  EXPECT_EQ(raised.Canvas().GetPixel(199, 10), ColorToRGB(clBtnShadow));
  EXPECT_EQ(raised.Canvas().GetPixel(101, 32), ColorToRGB(clBtnShadow));
  EXPECT_EQ(raised.Canvas().GetPixel(100, 5), clYellow);
}

// ---------------------------------------------------------------------------
// TRsRuler: scale arithmetic
// ---------------------------------------------------------------------------

struct TPositionCase {
  const char* name;
  TRulerUnit unit;
  int scale;
  double offset;
  TRulerScaleDir scaleDir;
  int pos;
  double value;
};

class TRsRulerPos2Unit : public ::testing::TestWithParam<TPositionCase> {};

TEST_P(TRsRulerPos2Unit, GivesTheScaleValueUnderAPixel) {
  const TPositionCase& c = GetParam();
  TRsRuler ruler;  // 200 pixels long
  ruler.SetUnit(c.unit);
  ruler.SetScale(c.scale);
  ruler.SetOffset(c.offset);
  ruler.SetScaleDir(c.scaleDir);
  EXPECT_NEAR(ruler.Pos2Unit(c.pos), c.value, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    UnitsScalesAndOffsets, TRsRulerPos2Unit,
    ::testing::Values(TPositionCase{"an_inch_in_mm", ruMilli, 100, 0, rsdNormal, 96, 25.4},
                      TPositionCase{"cm_at_200", ruCenti, 200, 0, rsdNormal, 96, 1.27},
                      TPositionCase{"inch_at_50", ruInch, 50, 0, rsdNormal, 96, 2},
                      TPositionCase{"m", ruMeter, 100, 0, rsdNormal, 96, 0.0254},
                      TPositionCase{"km", ruKilo, 100, 0, rsdNormal, 96, 0.0000254},
                      TPositionCase{"offset_added", ruMilli, 100, 10, rsdNormal, 96, 35.4},
                      TPositionCase{"pixel_truncates_position_and_offset", ruPixel, 200, 2.9, rsdNormal, 101, 52},
                      TPositionCase{"pixel_truncates_negative_offset_toward_0", ruPixel, 200, -2.9, rsdNormal, 101, 48},
                      TPositionCase{"none_gives_unscaled_pixels", ruNone, 200, 1, rsdNormal, 101, 51.5},
                      TPositionCase{"reverse_counts_from_the_far_end", ruMilli, 100, 0, rsdReverse, 104, 25.4},
                      TPositionCase{"reverse_far_end_is_the_offset", ruMilli, 100, 7, rsdReverse, 200, 7}),
    [](const auto& info) { return std::string(info.param.name); });

struct TConversionCase { const char* name; TRulerUnit from; TRulerUnit to; double offset; double converted; };

class TRsRulerConvertOffset : public ::testing::TestWithParam<TConversionCase> {};

TEST_P(TRsRulerConvertOffset, KeepsTheOriginsLengthWhenUnitsChange) {
  const TConversionCase& c = GetParam();
  TRsRuler ruler;
  ruler.SetUnit(c.from);
  ruler.SetOffset(c.offset);
  ruler.SetUnit(c.to);
  EXPECT_NEAR(ruler.GetOffset(), c.converted, 1e-12);
}

INSTANTIATE_TEST_SUITE_P(
    UnitPairs, TRsRulerConvertOffset,
    ::testing::Values(TConversionCase{"mm_to_inch", ruMilli, ruInch, 25.4, 1},
                      TConversionCase{"inch_to_pixel_at_96_ppi", ruInch, ruPixel, 1, 96},
                      TConversionCase{"pixel_to_cm", ruPixel, ruCenti, 48, 1.27},
                      TConversionCase{"km_to_m", ruKilo, ruMeter, 0.001, 1},
                      TConversionCase{"m_to_mm", ruMeter, ruMilli, 0.5, 500},
                      TConversionCase{"negative_cm_to_mm", ruCenti, ruMilli, -2.5, -25},
                      TConversionCase{"to_none_keeps_the_number", ruCenti, ruNone, 3, 3},
                      TConversionCase{"from_none_keeps_the_number", ruNone, ruMilli, 3, 3}),
    [](const auto& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------
// TRsRuler: the hair line
// ---------------------------------------------------------------------------

struct THairLineCase {
  const char* name;
  TRulerDir dir;
  TRulerScaleDir scaleDir;
  THairLineStyle style;
  TRect inverted;  // at position 50 on a 200-pixel ruler
};

class TRsRulerHairLine : public ::testing::TestWithParam<THairLineCase> {};

TEST_P(TRsRulerHairLine, InvertsItsPixelsAndErasesItselfWhenMoved) {
  const THairLineCase& c = GetParam();
  TRsRuler ruler;
  Place(ruler, c.dir, 200);
  ruler.SetScaleDir(c.scaleDir);
  ruler.SetHairLineStyle(c.style);
  ruler.SetHairLine(true);
  TBitmap bare = Rendered(ruler);

  ruler.SetHairLinePos(50);
  TBitmap drawn = OnScreen(ruler);
  bool inverted = false;
  EXPECT_EQ(Differing(bare, drawn, inverted), c.inverted);
  EXPECT_TRUE(inverted);

  ruler.SetHairLinePos(-1);  // draws it a second time
  TBitmap erased = OnScreen(ruler);
  EXPECT_TRUE(SamePicture(erased, bare));

  ruler.SetHairLinePos(50);
  ruler.SetHairLinePos(80);
  TBitmap moved = OnScreen(ruler);
  TBitmap repainted = Rendered(ruler);
  EXPECT_TRUE(SamePicture(moved, repainted));
  EXPECT_FALSE(SamePicture(moved, drawn));
}

INSTANTIATE_TEST_SUITE_P(
    StylesAndEdges, TRsRulerHairLine,
    ::testing::Values(
        THairLineCase{"line_across_a_top_ruler", rdTop, rsdNormal, hlsLine, Rect(50, 0, 51, 33)},
        THairLineCase{"line_across_a_left_ruler", rdLeft, rsdNormal, hlsLine, Rect(0, 50, 33, 51)},
        THairLineCase{"line_ignores_the_counting_direction", rdBottom, rsdReverse, hlsLine, Rect(50, 0, 51, 33)},
        THairLineCase{"rect_from_the_origin", rdTop, rsdNormal, hlsRect, Rect(0, 0, 51, 33)},
        THairLineCase{"rect_from_the_far_end_when_reversed", rdTop, rsdReverse, hlsRect, Rect(50, 0, 200, 33)},
        THairLineCase{"rect_down_a_right_ruler", rdRight, rsdNormal, hlsRect, Rect(0, 0, 33, 51)},
        THairLineCase{"rect_up_a_reversed_left_ruler", rdLeft, rsdReverse, hlsRect, Rect(0, 50, 33, 200)}),
    [](const auto& info) { return std::string(info.param.name); });

// ---------------------------------------------------------------------------
// TRsRulerCorner
// ---------------------------------------------------------------------------

struct TCornerUnitCase { const char* name; TRulerUnit unit; const char* label; const char* unitName; };

class TRsRulerCornerUnits : public ::testing::TestWithParam<TCornerUnitCase> {};

TEST_P(TRsRulerCornerUnits, NameTheUnitShortAndLong) {
  const TCornerUnitCase& c = GetParam();
  TRsRulerCorner corner;
  corner.SetUnit(c.unit);
  EXPECT_EQ(corner.UnitLabel(), c.label);
  EXPECT_EQ(corner.UnitName(), c.unitName);
  EXPECT_EQ(corner.toolTip().toStdString(), c.unitName);
}

INSTANTIATE_TEST_SUITE_P(EveryUnit, TRsRulerCornerUnits,
                         ::testing::Values(TCornerUnitCase{"km", ruKilo, "km", "kilometer"},
                                           TCornerUnitCase{"m", ruMeter, "m", "meter"},
                                           TCornerUnitCase{"cm", ruCenti, "cm", "centimeter"},
                                           TCornerUnitCase{"mm_from_the_start", ruMilli, "mm", "millimeter"},
                                           TCornerUnitCase{"inch", ruInch, "in", "inch"},
                                           TCornerUnitCase{"pixel", ruPixel, "px", "pixel"},
                                           TCornerUnitCase{"none_is_blank", ruNone, "", ""}),
                         [](const auto& info) { return std::string(info.param.name); });

TEST(TRsRulerCorner, DrawsTheUnitOnTheLabelRowOfItsRuler) {
  TRsRulerCorner corner;
  corner.SetFlat(true);
  corner.SetUnit(ruCenti);
  corner.show();
  EXPECT_EQ(SizeOf(corner), std::pair(33, 33));
  for (const TCornerPos position : {cpLeftTop, cpRightTop, cpLeftBottom, cpRightBottom}) {
    corner.SetPosition(position);
    TBitmap shot = Rendered(corner);
    TBitmap expected(33, 33, pf32bit);
    TCanvas& canvas = expected.Canvas();
    canvas.Brush().SetColor(corner.GetScaleColor());
    canvas.FillRect(Rect(0, 0, 33, 33));
    canvas.Font().Assign(corner.Font());
    canvas.Font().SetColor(corner.GetTickColor());
    canvas.SetBkMode(bkTransparent);
    const TSize size = canvas.TextExtent("cm");
    const bool top = position == cpLeftTop || position == cpRightTop;
    canvas.TextOut((33 - size.cx) / 2, top ? 33 - size.cy - 8 : 8, "cm");
    EXPECT_TRUE(SamePicture(shot, expected)) << static_cast<int>(position);
  }
}

}  // namespace
}  // namespace lumatrex
