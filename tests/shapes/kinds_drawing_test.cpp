// The arc, Bezier, text and image kinds drawn, hit and edited without a
// canvas control (their pictures are goldens in tests/data/shapes), and the
// picture filters of the image kind.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstring>
#include <functional>
#include <vector>

#include "fake_owner.h"
#include "sheet.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/bitmap_filters.h"
#include "shapes/image.h"
#include "shapes/text.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;
using test::TSheet;

TArrMyPoint Frame(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

// An arc drawn by the tool's own steps: a frame, then the quarter arc.
std::unique_ptr<TMyElliArc> MakeArc(TFakeOwner& owner, TPoint a, TPoint b, TArcStyle style = asArc) {
  auto arc = std::make_unique<TMyElliArc>(&owner);
  arc->AddPointByMouse(a);
  arc->AddPointByMouse(b);
  arc->CenterPoint = arc->ComputeCenterPoint(4);
  arc->SetArcStyle(style);
  arc->Pen().SetColor(clBlack);
  arc->Brush().SetColor(clRed);
  return arc;
}

std::unique_ptr<TMyPolyBezier> MakeChain(TFakeOwner& owner) {
  auto chain = std::make_unique<TMyPolyBezier>(&owner);
  chain->Points = {{10, 40}, {10, 10}, {40, 10}, {40, 40}, {40, 70}, {70, 70}, {70, 40}};
  chain->CenterPoint = chain->ComputeCenterPoint(4);
  chain->Pen().SetColor(clBlack);
  return chain;
}

// "HHH" in 10 point type, aligned in the frame (10,10)-(110,60).
std::unique_ptr<TMyShape> AlignedText(TFakeOwner& owner, TAlignment h, TTextLayout v) {
  auto text = std::make_unique<TMyText>(&owner);
  text->Points = Frame(10, 10, 110, 60);
  text->SetLines({"HHH"});
  text->SetHAlignment(h);
  text->SetVAlignment(v);
  text->Font().SetColor(clBlack);
  text->Font().SetSize(10);
  return text;
}

// A line far wider than its frame (20,20)-(60,40), turned about the frame's centre.
std::unique_ptr<TMyShape> ClippedText(TFakeOwner& owner, double angle) {
  auto text = std::make_unique<TMyText>(&owner);
  text->Points = Frame(20, 20, 60, 40);
  text->SetLines({"A line far wider than its frame"});
  text->SetWordWrap(false);
  text->Font().SetColor(clBlack);
  if (angle != 0) text->RotateChangeValueByAngle(MyPoint(40, 30), angle);
  return text;
}

// Two by two: red, green over blue, yellow.
TBitmap Quadrants() {
  TBitmap picture(2, 2, pf24bit);
  const TColor colours[2][2] = {{clRed, clLime}, {clBlue, clYellow}};
  for (std::int32_t y = 0; y < 2; ++y)
    for (std::int32_t x = 0; x < 2; ++x) picture.Canvas().SetPixel(x, y, colours[y][x]);
  return picture;
}

// The quadrants stretched over the frame (10,10)-(30,30), turned about its centre.
std::unique_ptr<TMyShape> Picture(TFakeOwner& owner, bool transparent, float angle) {
  auto image = std::make_unique<TMyImage>(&owner);
  image->Bitmap() = Quadrants();
  image->Points = Frame(10, 10, 30, 30);
  image->CenterPoint = image->ComputeCenterPoint(4);
  image->SetTransparent(transparent);
  if (angle != 0) image->RotateChangeValueByAngle(image->CenterPoint, angle);
  return image;
}

// Each shape drawn alone on a white sheet, against its picture; the names
// say what the picture shows.
TEST(KindPictures, EachKindDrawsExactlyItsPicture) {
  using TMake = std::function<std::unique_ptr<TMyShape>(TFakeOwner&)>;
  struct Case { const char* picture; double zoom; int width, height; TMake make; };
  const Case cases[] = {
      {"arc_open_upper_right_quarter", 1, 210, 160, [](TFakeOwner& o) { return MakeArc(o, Point(0, 0), Point(200, 150)); }},
      {"arc_chord_filled_up_to_its_chord", 1, 210, 160,
       [](TFakeOwner& o) { return MakeArc(o, Point(0, 0), Point(200, 150), asChord); }},
      {"arc_sector_filled_to_the_centre", 1, 210, 160,
       [](TFakeOwner& o) { return MakeArc(o, Point(0, 0), Point(200, 150), asPie); }},
      {"arc_flipped_to_the_upper_left", 1, 210, 160, [](TFakeOwner& o) {
         auto arc = MakeArc(o, Point(0, 0), Point(200, 150));
         arc->FlipHoriz();
         return arc;
       }},
      {"bezier_through_its_anchors_not_its_controls", 1, 80, 80, [](TFakeOwner& o) { return MakeChain(o); }},
      {"text_top_left", 1, 120, 70, [](TFakeOwner& o) { return AlignedText(o, taLeftJustify, tlTop); }},
      {"text_centre", 1, 120, 70, [](TFakeOwner& o) { return AlignedText(o, taCenter, tlCenter); }},
      {"text_bottom_right", 1, 120, 70, [](TFakeOwner& o) { return AlignedText(o, taRightJustify, tlBottom); }},
      {"text_clipped_to_its_frame", 1, 120, 120, [](TFakeOwner& o) { return ClippedText(o, 0); }},
      {"text_turned_a_quarter_runs_down", 1, 120, 120, [](TFakeOwner& o) { return ClippedText(o, kPi / 2); }},
      {"image_fills_its_frame", 1, 80, 80, [](TFakeOwner& o) { return Picture(o, false, 0); }},
      {"image_at_zoom_2", 2, 80, 80, [](TFakeOwner& o) { return Picture(o, false, 0); }},
      {"image_leaves_out_its_bottom_left_colour", 1, 80, 80, [](TFakeOwner& o) { return Picture(o, true, 0); }},
      {"image_turned_a_quarter_clockwise", 1, 80, 80,
       [](TFakeOwner& o) { return Picture(o, false, static_cast<float>(kPi / 2)); }},
  };
  for (const Case& c : cases) {
    TFakeOwner owner(c.zoom);
    EXPECT_TRUE(test::Drawn(*c.make(owner), c.width, c.height).LooksLike(c.picture));
  }
}

// ---- elliptical arc ----------------------------------------------------------------------

TEST(ElliArc, InfoIsTheLengthOfAnOpenArcAndTheAreaOfAClosedOne) {
  // Of a quarter of a circle of radius 50.
  const std::pair<TArcStyle, const char*> rows[] = {
      {asArc, "Length=    78.54pixel(s)"}, {asChord, "Area=   713.50pixel(s)2"}, {asPie, "Area=  1963.50pixel(s)2"}};
  TFakeOwner owner;
  owner.unit = pixel;
  for (const auto& [style, info] : rows) EXPECT_EQ(MakeArc(owner, Point(0, 0), Point(100, 100), style)->GetInfo(), info);
}

TEST(ElliArc, HitOnTheOutlineBandAndInsideClosedStyles) {
  struct Case { const char* name; TPoint p; bool arc, chord, pie; };
  const Case cases[] = {{"on the curve", Point(171, 22), true, true, true},
                        {"6 px outside the curve", Point(175, 18), true, true, true},
                        {"inside the sector only", Point(125, 50), false, false, true},
                        {"between the chord and the curve", Point(165, 35), false, true, true},
                        {"other quadrant", Point(40, 120), false, false, false}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    TSheet sheet;
    const std::pair<TArcStyle, bool> styles[] = {{asArc, c.arc}, {asChord, c.chord}, {asPie, c.pie}};
    for (auto [style, expected] : styles)
      EXPECT_EQ(MakeArc(owner, Point(0, 0), Point(200, 150), style)->IsClickedMe(sheet.canvas(), c.p), expected)
          << static_cast<int>(style);
  }
}

TEST(ElliArc, EndsKeepTheirAnglesThroughResizeAndModeChange) {
  TFakeOwner owner;
  auto arc = MakeArc(owner, Point(0, 0), Point(200, 100));
  arc->CurrentHot = 9;
  arc->SizeChangeValue(MyPoint(0, 0), MyPoint(20, 95));  // end dragged to the lower left
  const long double start = arc->StartAngle(), end = arc->EndAngle();
  EXPECT_NEAR(static_cast<double>(start), -kPi / 2, 1e-6);
  EXPECT_GT(end, kPi / 2);
  arc->CurrentHot = 2;
  arc->SizeChangeValue(MyPoint(200, 100), MyPoint(300, 160));
  EXPECT_NEAR(static_cast<double>(arc->StartAngle()), static_cast<double>(start), 1e-5);
  EXPECT_NEAR(static_cast<double>(arc->EndAngle()), static_cast<double>(end), 1e-5);
  EXPECT_FLOAT_EQ(arc->GetPoint(8).X, 150);
  arc->SetArcMode(amCircle);
  EXPECT_NEAR(static_cast<double>(arc->EndAngle()), static_cast<double>(end), 1e-5);
}

TEST(PolyBezier, HitsTheFlattenedCurveOnly) {
  struct Case { const char* name; TPoint p; bool hit; };
  const Case cases[] = {{"middle of the first piece", Point(25, 18), true},
                        {"5 px off the curve", Point(25, 13), true}, {"control point", Point(10, 10), false},
                        {"inside the hump", Point(25, 32), false}};
  TFakeOwner owner;
  auto chain = MakeChain(owner);
  TSheet sheet;
  for (const Case& c : cases) EXPECT_EQ(chain->IsClickedMe(sheet.canvas(), c.p), c.hit) << c.name;
}

TEST(PolyBezier, AddingAPieceKeepsTheCurveRemovingOneJoinsItsNeighbours) {
  TFakeOwner owner;
  auto chain = MakeChain(owner);
  const TArrMyPoint before = chain->Points;
  EXPECT_EQ(chain->InsertPieceAt(Point(60, 300)), -1);
  const std::int32_t anchor = chain->InsertPieceAt(Point(25, 18));
  ASSERT_EQ(anchor, 3);
  ASSERT_EQ(chain->GetPointsCount(), 10);
  EXPECT_NEAR(chain->Points[3].X, 25, 1.5);
  EXPECT_NEAR(chain->Points[3].Y, 17.5, 1.5);
  EXPECT_EQ(chain->Points.back(), before.back());
  EXPECT_TRUE(chain->RemovePieceAt(0));
  EXPECT_EQ(chain->GetPointsCount(), 7);
  EXPECT_TRUE(chain->RemovePieceAt(5)) << "a control stands for its anchor";
  EXPECT_FALSE(chain->RemovePieceAt(0)) << "one piece is left";
  EXPECT_EQ(chain->GetPointsCount(), 4);
}

// ---- text ---------------------------------------------------------------------------------------

TEST(Text, WrapsAtSpacesAndGivesGlyphOutlinesInsideTheFrame) {
  TFakeOwner owner;
  TMyText text(&owner);
  text.Points = Frame(0, 0, 60, 80);
  text.SetLines({"one two three four"});
  TSheet sheet(100, 100);
  EXPECT_GT(text.LaidOutLines(sheet.canvas()).size(), 1u);
  text.SetWordWrap(false);
  EXPECT_EQ(text.LaidOutLines(sheet.canvas()).size(), 1u);
  text.SetWordWrap(true);
  std::vector<TPoint> points;
  std::vector<std::uint8_t> types;
  text.GetPathPoints(sheet.canvas(), points, types);
  ASSERT_FALSE(points.empty());
  EXPECT_EQ(points.size(), types.size());
  EXPECT_TRUE(std::any_of(types.begin(), types.end(), [](std::uint8_t t) { return t & ptCloseFigure; }));
  EXPECT_TRUE(std::none_of(types.begin(), types.end(), [](std::uint8_t t) { return t == ptBezierTo; }));
  for (const TPoint& p : points) EXPECT_TRUE(p.X >= -1 && p.X <= 61 && p.Y >= -1 && p.Y <= 81) << p.X << "," << p.Y;
  EXPECT_EQ(sheet.inked(), 0) << "outlines draw nothing";
}

// ---- image --------------------------------------------------------------------------------------

TEST(Image, FiltersWorkOnADrawnCopyTheStoredPictureNeverChanges) {
  TFakeOwner owner;
  TMyImage image(&owner);
  image.Bitmap() = Quadrants();
  image.Points = Frame(0, 0, 20, 20);
  const TBitmap& stored = std::as_const(image).Bitmap();
  std::vector<std::uint8_t> before(stored.ScanLine(0), stored.ScanLine(0) + stored.BytesPerLine());
  image.SetGrayScale(true);
  image.SetBrightness(40);
  image.SetContrast(20);
  TSheet sheet = test::Drawn(image, 40, 40);
  image.Draw(sheet.canvas());
  EXPECT_EQ(std::memcmp(before.data(), stored.ScanLine(0), before.size()), 0);
  const TColor drawn = sheet.at(2, 2);
  EXPECT_EQ(drawn & 0xFF, (drawn >> 8) & 0xFF) << "grey";
  EXPECT_NE(drawn, clRed);
  image.SetGrayScale(false);
  image.SetBrightness(0);
  image.SetContrast(0);
  image.Draw(sheet.canvas());
  EXPECT_EQ(sheet.at(2, 2), clRed) << "a filter change remakes the drawn copy";
}

// ---- picture filters, byte for byte -------------------------------------------------------------

using TBgr = std::vector<int>;

// A one-row 24-bit bitmap holding the given blue, green, red bytes.
TBitmap Row(const TBgr& bytes) {
  TBitmap bitmap(static_cast<int>(bytes.size() / 3), 1, pf24bit);
  for (std::size_t i = 0; i < bytes.size(); ++i) bitmap.ScanLine(0)[i] = static_cast<std::uint8_t>(bytes[i]);
  return bitmap;
}

TBgr Bytes(const TBitmap& bitmap) {
  const std::uint8_t* row = bitmap.ScanLine(0);
  return TBgr(row, row + bitmap.Width() * 3);
}

TEST(GrayScaleBitmap, AveragesTheThreeChannelsTruncating) {
  TBitmap bitmap = Row({31, 20, 10, 0, 0, 2});
  GrayScaleBitmap(bitmap, true);
  EXPECT_EQ(Bytes(bitmap), (TBgr{20, 20, 20, 0, 0, 0}));
}

TEST(AdjustBrightBitmap, ShiftsEveryByteAndClamps) {
  TBitmap bitmap = Row({0, 100, 250});
  AdjustBrightBitmap(bitmap, 10);
  EXPECT_EQ(Bytes(bitmap), (TBgr{10, 110, 255}));
  AdjustBrightBitmap(bitmap, 300);
  EXPECT_EQ(Bytes(bitmap), (TBgr{255, 255, 255}));
  AdjustBrightBitmap(bitmap, -300);
  EXPECT_EQ(Bytes(bitmap), (TBgr{0, 0, 0}));
}

TEST(AdjustContrastBitmap, FullContrastSplitsAtTheMiddleGrey) {
  TBitmap bitmap = Row({0, 200, 127, 128, 255, 100});
  AdjustContrastBitmap(bitmap, 255);
  // 0 - 127 clamps, 200 + 73 clamps, 127 moves by 0, 128 by 1, 100 by 27.
  EXPECT_EQ(Bytes(bitmap), (TBgr{0, 255, 127, 129, 255, 73}));
}

TEST(AdjustContrastBitmap, ZeroDoesNothingAndOtherFormatsAreConvertedFirst) {
  TBitmap same = Row({1, 2, 3});
  AdjustContrastBitmap(same, 0);
  EXPECT_EQ(Bytes(same), (TBgr{1, 2, 3}));
  TBitmap wide(1, 1, pf32bit);
  AdjustBrightBitmap(wide, -255);
  EXPECT_EQ(wide.PixelFormat(), pf24bit);
  EXPECT_EQ(Bytes(wide), (TBgr{0, 0, 0}));
}

}  // namespace
}  // namespace lumatrex
