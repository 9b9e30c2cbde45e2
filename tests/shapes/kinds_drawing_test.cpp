// The arc, Bezier, text and image kinds drawn, hit and edited without a
// canvas control: pixels where the geometry fixes them (exact for pictures,
// end points and anchors for curves, alignment bounds for glyphs).
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <vector>

#include "fake_owner.h"
#include "sheet.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/image.h"
#include "shapes/text.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;
using test::TSheet;

TArrMyPoint Frame(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

// Ink bounds of a sheet: left, top, right, bottom (inclusive); -1 when blank.
TRect InkBox(TSheet& sheet, std::int32_t w, std::int32_t h) {
  TRect box{w, h, -1, -1};
  for (std::int32_t y = 0; y < h; ++y)
    for (std::int32_t x = 0; x < w; ++x)
      if (sheet.inked(x, y)) box = {std::min(box.Left, x), std::min(box.Top, y), std::max(box.Right, x), std::max(box.Bottom, y)};
  return box;
}

bool InkNear(TSheet& sheet, TPoint p, std::int32_t r = 1) { return sheet.inked(Rect(p.X - r, p.Y - r, p.X + r + 1, p.Y + r + 1)) > 0; }

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

// ---- elliptical arc ----------------------------------------------------------------------

TEST(ElliArc, QuarterArcInksItsEndsAndOnlyItsQuadrant) {
  TFakeOwner owner;
  auto arc = MakeArc(owner, Point(4, 4), Point(44, 34));
  TSheet sheet = test::Drawn(*arc, 100, 80);
  EXPECT_TRUE(sheet.inked(24, 4)) << "start: top of the outline";
  EXPECT_TRUE(InkNear(sheet, Point(44, 19))) << "end: right of the outline";
  EXPECT_EQ(sheet.inked(Rect(0, 20, 24, 36)), 0) << "lower-left quadrant";
  EXPECT_EQ(sheet.inked(Rect(0, 0, 23, 19)), 0) << "upper-left quadrant";
}

TEST(ElliArc, ChordAndSectorFillWhereTheirOutlinesCloseAndReportTheirArea) {
  struct Case {
    const char* name;
    TArcStyle style;
    bool chordArea;   // between the chord and the curve
    bool nearCentre;  // inside the sector only
    const char* info; // of a quarter of a circle of radius 50
  };
  const Case cases[] = {{"open arc: no fill, its length", asArc, false, false, "Length=    78.54pixel(s)"},
                        {"chord fills up to its chord", asChord, true, false, "Area=   713.50pixel(s)2"},
                        {"sector fills to the centre", asPie, true, true, "Area=  1963.50pixel(s)2"}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    auto arc = MakeArc(owner, Point(0, 0), Point(200, 150), c.style);
    TSheet sheet = test::Drawn(*arc, 210, 160);
    EXPECT_EQ(sheet.at(150, 20) == clRed, c.chordArea);
    EXPECT_EQ(sheet.at(125, 50) == clRed, c.nearCentre);
    owner.unit = pixel;
    EXPECT_EQ(MakeArc(owner, Point(0, 0), Point(100, 100), c.style)->GetInfo(), c.info);
  }
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

TEST(ElliArc, EndsKeepTheirAnglesThroughResizeModeChangeAndFlip) {
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
  // A flipped frame mirrors the arc: the quarter moves to the upper left.
  auto flipped = MakeArc(owner, Point(0, 0), Point(200, 150));
  flipped->FlipHoriz();
  TSheet sheet = test::Drawn(*flipped, 210, 160);
  EXPECT_EQ(sheet.inked(Rect(105, 0, 210, 70)), 0);
  EXPECT_GT(sheet.inked(Rect(0, 0, 100, 70)), 0);
}

// ---- Bezier chain ------------------------------------------------------------------------------

std::unique_ptr<TMyPolyBezier> MakeChain(TFakeOwner& owner) {
  auto chain = std::make_unique<TMyPolyBezier>(&owner);
  chain->Points = {{10, 40}, {10, 10}, {40, 10}, {40, 40}, {40, 70}, {70, 70}, {70, 40}};
  chain->CenterPoint = chain->ComputeCenterPoint(4);
  chain->Pen().SetColor(clBlack);
  return chain;
}

TEST(PolyBezier, CurvePassesThroughItsAnchorsNotItsControls) {
  TFakeOwner owner;
  auto chain = MakeChain(owner);
  TSheet sheet = test::Drawn(*chain, 80, 80);
  EXPECT_TRUE(sheet.inked(10, 40));
  EXPECT_TRUE(sheet.inked(40, 40));
  EXPECT_TRUE(InkNear(sheet, Point(70, 40)));
  EXPECT_FALSE(sheet.inked(10, 10)) << "a control point is off the curve";
  // The first piece's middle is 3/4 of the way to its controls.
  EXPECT_TRUE(InkNear(sheet, Point(25, 17)));
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

TEST(Text, InkIsAnchoredByTheAlignments) {
  struct Case { const char* name; TAlignment h; TTextLayout v; };
  const Case cases[] = {{"top left", taLeftJustify, tlTop}, {"centre", taCenter, tlCenter},
                        {"bottom right", taRightJustify, tlBottom}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    TMyText text(&owner);
    text.Points = Frame(10, 10, 110, 60);
    text.SetLines({"HHH"});
    text.SetHAlignment(c.h);
    text.SetVAlignment(c.v);
    text.Font().SetColor(clBlack);
    text.Font().SetSize(10);
    TSheet sheet = test::Drawn(text, 120, 70);
    const TRect ink = InkBox(sheet, 120, 70);
    ASSERT_GE(ink.Right, 0);
    if (c.h == taLeftJustify) { EXPECT_NEAR(ink.Left, 10, 3); }
    if (c.h == taRightJustify) { EXPECT_NEAR(ink.Right + 1, 110, 3); }
    if (c.h == taCenter) { EXPECT_NEAR((ink.Left + ink.Right + 1) / 2.0, 60, 2); }
    if (c.v == tlTop) { EXPECT_NEAR(ink.Top, 10, 4); }
    if (c.v == tlBottom) { EXPECT_NEAR(ink.Bottom + 1, 60, 5); }
    if (c.v == tlCenter) { EXPECT_NEAR((ink.Top + ink.Bottom + 1) / 2.0, 35, 3); }
  }
}

TEST(Text, IsClippedToItsFrameAndTurnsWithIt) {
  TFakeOwner owner;
  TMyText text(&owner);
  text.Points = Frame(20, 20, 60, 40);
  text.SetLines({"A line far wider than its frame"});
  text.SetWordWrap(false);
  text.Font().SetColor(clBlack);
  TSheet sheet = test::Drawn(text, 120, 120);
  EXPECT_EQ(sheet.inked() - sheet.inked(Rect(20, 20, 61, 41)), 0);
  // Turned a quarter clockwise about its centre (40, 30) the line runs down.
  text.RotateChangeValueByAngle(MyPoint(40, 30), static_cast<double>(kPi / 2));
  TSheet turned = test::Drawn(text, 120, 120);
  const TRect ink = InkBox(turned, 120, 120);
  EXPECT_GT(ink.Bottom - ink.Top, ink.Right - ink.Left);
  EXPECT_GE(ink.Left, 29);
  EXPECT_LE(ink.Right, 51);
}

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

// Two by two: red, green over blue, yellow.
TBitmap Quadrants() {
  TBitmap picture(2, 2, pf24bit);
  const TColor colours[2][2] = {{clRed, clLime}, {clBlue, clYellow}};
  for (std::int32_t y = 0; y < 2; ++y)
    for (std::int32_t x = 0; x < 2; ++x) picture.Canvas().SetPixel(x, y, colours[y][x]);
  return picture;
}

TEST(Image, PictureFillsItsFrameTurnsAndLeavesOutTheTransparentColour) {
  struct Case {
    const char* name;
    double zoom;
    float angle;  // frame turned about its centre
    bool transparent;
    TColor topLeft, topRight, bottomLeft, bottomRight;
  };
  const Case cases[] = {
      {"upright", 1, 0, false, clRed, clLime, clBlue, clYellow},
      {"zoom 2", 2, 0, false, clRed, clLime, clBlue, clYellow},
      {"bottom-left colour left out", 1, 0, true, clRed, clLime, clWhite, clYellow},
      {"quarter turn clockwise", 1, static_cast<float>(kPi / 2), false, clBlue, clRed, clYellow, clLime},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner(c.zoom);
    TMyImage image(&owner);
    image.Bitmap() = Quadrants();
    image.Points = Frame(10, 10, 30, 30);
    image.CenterPoint = image.ComputeCenterPoint(4);
    image.SetTransparent(c.transparent);
    if (c.angle != 0) image.RotateChangeValueByAngle(image.CenterPoint, c.angle);
    TSheet sheet = test::Drawn(image, 80, 80);
    const auto at = [&](double x, double y) { return sheet.at(static_cast<int>(x * c.zoom), static_cast<int>(y * c.zoom)); };
    EXPECT_EQ(at(10, 10), c.topLeft);
    EXPECT_EQ(at(29.5, 10), c.topRight);
    EXPECT_EQ(at(10, 29.5), c.bottomLeft);
    EXPECT_EQ(at(29.5, 29.5), c.bottomRight);
    EXPECT_FALSE(sheet.inked(static_cast<int>(30 * c.zoom), static_cast<int>(30 * c.zoom)));
    EXPECT_FALSE(sheet.inked(static_cast<int>(9 * c.zoom), static_cast<int>(9 * c.zoom)));
  }
}

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

}  // namespace
}  // namespace lumatrex
