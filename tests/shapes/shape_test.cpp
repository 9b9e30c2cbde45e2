#include <gtest/gtest.h>

#include <cmath>
#include <limits>
#include <random>
#include <utility>
#include <vector>

#include "persistence/stream_io.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/stream.h"
#include "shapes/fake_owner.h"
#include "shapes/outline.h"
#include "shapes/record_bytes.h"
#include "shapes/shape.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

constexpr float kPiF = static_cast<float>(kPi);

void ExpectNear(const TMyPoint& actual, const TMyPoint& expected, float tolerance = 1e-4f) {
  EXPECT_NEAR(actual.X, expected.X, tolerance);
  EXPECT_NEAR(actual.Y, expected.Y, tolerance);
}

TArrMyPoint Box(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

// ---------------------------------------------------------------------------
// Points and coordinate spaces

TEST(TMyShape, GetPointInZoomWithModeMirrorsByTheOwnersAxisMode) {
  struct Case { TXYMode mode; TPoint expected; };
  // 200 x 100; (10.25, 5) zoomed is (20.5, 10), and x rounds half to even.
  for (const Case& c : {Case{Mode0, {20, 10}}, Case{Mode1, {20, 90}}, Case{Mode2, {180, 90}}, Case{Mode3, {180, 10}}}) {
    TFakeOwner owner(2);
    owner.xyMode = c.mode;
    TMyShape shape(&owner);
    shape.AddPoint({10.25f, 5});
    EXPECT_EQ(shape.GetPointInZoomWithMode(0), c.expected) << "mode " << c.mode;
    EXPECT_EQ(shape.GetPointInZoomWithMode(1), TPoint{});
  }
}

TEST(TMyShape, MyWidthAndHeightAreMeasuredInTheUnrotatedFrame) {
  TFakeOwner owner;
  TMyShape& shape = owner.Add(Box(0, 0, 40, 10));
  shape.RotateChangeValueByAngle(shape.CenterPoint, kPiF / 2);
  EXPECT_NEAR(shape.GetWidth(), 10, 1e-3);
  EXPECT_NEAR(shape.GetMyWidth(), 40, 1e-3);
  EXPECT_NEAR(shape.GetMyHeight(), 10, 1e-3);
}

// ---------------------------------------------------------------------------
// Moving, rotating, flipping

TEST(TMyShape, DragMovesEverythingByTheDeviceDistanceOverTheZoom) {
  TFakeOwner owner(2);
  TMyShape& shape = owner.Add({{0, 0}, {10, 10}});
  shape.LinkPoints = {{1, 1}};
  shape.TextoutPoint = {5, 5};
  shape.DragChangeValue(Point(10, 10), Point(30, 0));
  ExpectNear(shape.GetPoint(1), {20, 5});
  ExpectNear(shape.GetLinkPoint(0), {11, -4});
  ExpectNear(shape.CenterPoint, {15, 0});
  ExpectNear(shape.TextoutPoint, {15, 0});
}

// Previews shift zoomed points by whole pixels and round the sum half to
// even; the quick double sum must round as the exact one does, also for
// halves, floats far below a pixel, shifts past 2^24 and values past 2^31.
TEST(TMyShape, ShiftedPointsRoundAsTheExactSum) {
  std::mt19937 random(9);
  std::vector<std::pair<float, std::int32_t>> sums = {
      {2.5f, 0}, {2.5f, 1}, {-0.5f, 0}, {0.5f - 0x1p-25f, (1 << 30) + 1}, {1e-30f, -7}, {3e9f, 5},
      {-2.5f, 1 << 25}, {0x1p-149f, std::numeric_limits<std::int32_t>::min()}, {1e30f, 0}};
  for (int i = 0; i < 20000; ++i) {
    const float x = std::ldexp(static_cast<float>(random() % 4096) - 2048, static_cast<int>(random() % 40) - 30);
    sums.emplace_back(x, static_cast<std::int32_t>(random()) >> (random() % 32));
  }
  for (const auto& [x, d] : sums) {
    const TPoint shifted = ShiftAndRound(TMyPoint{x, -x}, d, d / 3);
    ASSERT_EQ(shifted, Point(Round(static_cast<long double>(x) + d), Round(-static_cast<long double>(x) + d / 3)))
        << x << " + " << d;
  }
}

TEST(TMyShape, RotationTurnsPointsClockwiseOnScreenAndAccumulatesTheAngle) {
  TFakeOwner owner;
  TMyShape& shape = owner.Add({{10, 0}, {0, 0}});
  shape.TextoutPoint = {10, 0};
  shape.RotateChangeValueByAngle({0, 0}, kPi / 2);
  ExpectNear(shape.GetPoint(0), {0, 10});
  ExpectNear(shape.TextoutPoint, {0, 10});
  EXPECT_FLOAT_EQ(shape.GetAngle(), kPiF / 2);
  shape.RotateChangeValueByAngle({0, 0}, 2 * kPi);
  EXPECT_NEAR(shape.GetAngle(), kPi / 2, 1e-5);  // normalised back below 2 pi
}

TEST(TMyShape, FlipHorizTwiceRestoresEveryCoordinateAndTheFlag) {
  TFakeOwner owner;
  TMyShape& shape = owner.Add({{1, 2}, {7, 3}, {4, 9}});
  shape.LinkPoints = {{2, 2}};
  shape.TextoutPoint = {5, 5};
  const TArrMyPoint before = shape.Points;
  shape.FlipHoriz();
  EXPECT_TRUE(shape.GetIsFlipHorz());
  ExpectNear(shape.GetPoint(0), {7, 2});
  ExpectNear(shape.GetLinkPoint(0), {6, 2});
  shape.FlipHoriz();
  EXPECT_FALSE(shape.GetIsFlipHorz());
  EXPECT_EQ(shape.Points, before);
  EXPECT_EQ(shape.GetAngle(), 0);  // an unturned shape stays unturned
}

TEST(TMyShape, FlipsMirrorANonZeroAngle) {
  TFakeOwner owner;
  TMyShape& shape = owner.Add(Box(0, 0, 10, 10));
  shape.RotateChangeValueByAngle(shape.CenterPoint, 0.25);
  shape.FlipHoriz();
  EXPECT_NEAR(shape.GetAngle(), kPi - 0.25, 1e-6);
  shape.FlipVert();
  EXPECT_NEAR(shape.GetAngle(), -(kPi - 0.25), 1e-6);
  EXPECT_TRUE(shape.GetIsFlipVert());
}

// ---------------------------------------------------------------------------
// Copies

TEST(TMyShape, AssignCopiesEverythingRecomputesTheCentreAndDuplicatesTheBrushBitmap) {
  TFakeOwner owner;
  TMyShape source(&owner);
  source.SetName("Source");
  source.SetTag(3);
  source.SetCaption("cap");
  source.ShapeId = 9;
  source.ShapeNo = 4;
  source.LayerId = 2;
  source.ParentId = 1;
  source.ChildShapes = {5, 6};
  source.LinkLines = {7};
  source.Points = {{0, 0}, {10, 20}};
  source.CenterPoint = {99, 99};
  source.TextoutPoint = {1, 2};
  source.SetMultiInfo({"a", "b"});
  source.SetMultiInfoAlignment(taRightJustify);
  source.UserData().AddKeyandValue("k", "v");
  source.SpareRelationId = 12;
  TBitmap pattern(8, 8);
  source.Brush().SetBitmap(&pattern);
  TMyShape copy(&owner);
  copy.Assign(source);
  EXPECT_EQ(copy.CenterPoint, (TMyPoint{5, 10}));
  EXPECT_EQ(copy.SpareRelationId, -1);
  ASSERT_NE(copy.Brush().Bitmap(), nullptr);
  EXPECT_NE(copy.Brush().Bitmap(), source.Brush().Bitmap());  // duplicated, not shared
  source.CenterPoint = copy.CenterPoint;
  TMemoryStream copied, original;
  copy.SaveToStream(copied);
  source.SaveToStream(original);
  EXPECT_EQ(copied.Bytes(), original.Bytes());
}

TEST(TMyShape, AssignWithoutRelationKeepsTheTargetsRelationsNameAndMultiInfo) {
  TFakeOwner owner;
  TMyShape source(&owner);
  source.SetName("Source");
  source.ShapeNo = 4;
  source.ParentId = 1;
  source.ChildShapes = {5};
  source.SetMultiInfo({"source"});
  source.Points = {{0, 0}, {2, 2}};
  TMyShape target(&owner);
  target.SetName("Target");
  target.ShapeNo = 8;
  target.LinkLines = {3};
  target.SetMultiInfo({"target"});
  target.AssignWithoutRelation(source);
  EXPECT_EQ(target.GetName(), "Target");
  EXPECT_EQ(target.ShapeNo, 8);
  EXPECT_EQ(target.ParentId, -1);
  EXPECT_TRUE(target.ChildShapes.empty());
  EXPECT_EQ(target.LinkLines, (std::vector<std::uint32_t>{3}));
  EXPECT_EQ(target.GetMultiInfo(), TStringList{"target"});
  EXPECT_EQ(target.Points, source.Points);
}

// ---------------------------------------------------------------------------
// Hit tests

TEST(TMyShape, HotSquaresIncludeTheirLeftTopEdgesAndTheLastMatchingLinkPointWins) {
  TFakeOwner owner;  // hot size 4
  TMyShape shape(&owner);
  shape.TextoutPoint = {20, 20};
  EXPECT_TRUE(shape.InTextPointHot(Point(16, 16)));
  EXPECT_TRUE(shape.InTextPointHot(Point(23, 23)));
  EXPECT_FALSE(shape.InTextPointHot(Point(24, 20)));
  EXPECT_FALSE(shape.InTextPointHot(Point(20, 24)));
  EXPECT_FALSE(shape.InTextPointHot(Point(15, 20)));
  shape.LinkPoints = {{10, 10}, {12, 10}, {50, 50}};
  EXPECT_EQ(shape.InWhichLinkHot({11, 10}), 1);
  EXPECT_EQ(shape.InWhichLinkHot({50, 50}), 2);
  EXPECT_EQ(shape.InWhichLinkHot({30, 30}), -1);
}

// ---------------------------------------------------------------------------
// Measured lengths

TEST(TMyShape, GetLengthByUnitFormatsOneInchOfDeviceDistance) {
  struct Case { TUnits unit; double zoom; double ratio; const char* expected; };
  for (const Case& c : {Case{pixel, 1, 1, "       96 pixel(s)"}, Case{mm, 1, 1, "    25.40 mm"},
                        Case{inch, 1, 1, "     1.00 in"}, Case{mm, 2, 1, "    12.70 mm"},  // halved at zoom 2
                        Case{mm, 1, 10, "   254.00 mm"}}) {
    TFakeOwner owner;
    owner.unit = c.unit;
    owner.zoom = c.zoom;
    owner.ratio = c.ratio;
    EXPECT_EQ(TMyShape(&owner).GetLengthByUnit(Point(0, 0), Point(96, 0)), c.expected);
  }
}

// ---------------------------------------------------------------------------
// Records

using test::TRecordBytes;

// An "XP.9" record with a brush bitmap: the shape takes the owner's brush
// colour and a solid style, whatever colour and style the record stores.
TEST(TMyShapeRecord, ABrushBitmapReplacesTheStoredBrushColourAndStyle) {
  TBitmap pattern(2, 2, pf24bit);
  TMemoryStream block;
  WriteBitmapBuffer(block, &pattern);
  TRecordBytes r;
  r.str("Shape5").i32(5).i32(2).i32(0).i32(-1).i32(0).i32(0);  // identity, no children, no connectors
  r.i32(1).f32(3).f32(4).i32(0).f32(3).f32(4);                  // one point, no link points, centre
  r.i32(0).f32(0);                                              // tag, angle
  r.raw(block.Memory(), static_cast<std::size_t>(block.Size())).i32(clRed).u8(bsCross);
  r.str("").i32(0).i32(0).str("F").u8(0).i32(0).i32(-11).i32(8).u8(0).i32(96).u8(0);
  r.i64(0).u8(gsNone);
  r.str("info").i32(clBlue).u8(pmCopy).u8(psDash).i32(3);  // info, pen
  r.i32(0).u8(0).u8(0).u8(1);                               // no user data, flips, visible
  TFakeOwner owner;
  owner.brush.SetColor(clGreen);
  owner.version = "XP.9";
  TMyShape& shape = owner.Add();
  TMemoryStream stream(r.bytes);
  shape.LoadFromStream(stream);
  EXPECT_EQ(stream.Remaining(), 0);
  ASSERT_NE(shape.Brush().Bitmap(), nullptr);
  EXPECT_EQ(shape.Brush().Color(), clGreen);
  EXPECT_EQ(shape.Brush().Style(), bsSolid);
}

}  // namespace
}  // namespace lumatrex
