#include "geometry/geometry.h"

#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <limits>
#include <string>
#include <vector>

#include "platform/hooks.h"

namespace lumatrex {
namespace {

constexpr double kPiD = 3.14159265358979323846;
constexpr float kInf = std::numeric_limits<float>::infinity();
constexpr std::int32_t kMaxInt = std::numeric_limits<std::int32_t>::max();
constexpr std::int32_t kMinInt = std::numeric_limits<std::int32_t>::min();

// The float nearest 2pi lies above the true value by this much.
constexpr float kTwoPiFloatExcess = 1.7484555e-7f;

void ExpectNear(const TMyPoint& actual, double x, double y, double tolerance) {
  EXPECT_NEAR(actual.X, x, tolerance);
  EXPECT_NEAR(actual.Y, y, tolerance);
}

// ---------------------------------------------------------------------------
// Rounding and conversions
// ---------------------------------------------------------------------------

TEST(GeometryRound, RoundsHalvesToEven) {
  struct Row { const char* edge; long double value; std::int32_t expected; };
  const Row rows[] = {{"2.5 goes down to even", 2.5L, 2},
                      {"3.5 goes up to even", 3.5L, 4}, {"-2.5 goes toward zero to even", -2.5L, -2},
                      {"-3.5 goes away from zero to even", -3.5L, -4}, {"-0.5 goes to zero", -0.5L, 0},
                      {"float just below one half stays at zero", 0.49999997f, 0},
                      {"float just above 2.5 goes up", 2.5000002f, 3}};
  for (const Row& row : rows) EXPECT_EQ(Round(row.value), row.expected) << row.edge;
}

TEST(GeometryConversion, PointsAndRectanglesRoundEachCoordinateOnItsOwnHalfToEven) {
  EXPECT_EQ(MyPtToPt({2.5f, -2.5f}), (TPoint{2, -2}));
  EXPECT_EQ(MyPtToPt({3.5f, 0.5f}), (TPoint{4, 0}));
  EXPECT_EQ(myRecttoRect({0.5f, 1.5f, 2.5f, -1.5f}), (TRect{0, 2, 2, -2}));
}

TEST(GeometryConversion, PtToARectNormalisesCorners) {
  struct Row { const char* edge; TPoint a, b; };
  const Row rows[] = {{"A top-left of B", {1, 2}, {10, 20}}, {"A bottom-right of B", {10, 20}, {1, 2}},
                      {"A bottom-left of B", {1, 20}, {10, 2}}, {"A top-right of B", {10, 2}, {1, 20}}};
  for (const Row& row : rows) EXPECT_EQ(PtToARect(row.a, row.b), (TRect{1, 2, 10, 20})) << row.edge;
}

TEST(GeometryConversion, ExpandRectGrowsEverySideOrLeavesRectOnOverflowOffsetMovesEdges) {
  struct Row { const char* edge; TRect r; std::int32_t n; TRect expected; };
  const Row rows[] = {{"positive N grows", {10, 20, 30, 40}, 3, {7, 17, 33, 43}},
                      {"negative N shrinks", {10, 20, 30, 40}, -3, {13, 23, 27, 37}},
                      {"right edge would overflow", {0, 0, kMaxInt - 1, 10}, 5, {0, 0, kMaxInt - 1, 10}},
                      {"left edge would underflow", {kMinInt + 1, 0, 0, 10}, 5, {kMinInt + 1, 0, 0, 10}}};
  for (const Row& row : rows) EXPECT_EQ(ExpandRect(row.r, row.n), row.expected) << row.edge;
  TMyRect r{1, 2, 3, 4};
  OffsetMyRect(r, 10, 100);
  EXPECT_EQ(r, (TMyRect{11, 102, 13, 104}));
}

// ---------------------------------------------------------------------------
// Measures
// ---------------------------------------------------------------------------

TEST(GeometryMeasure, LengthIsEuclideanAndSquaresBeyondFloatRangeStayFinite) {
  EXPECT_FLOAT_EQ(GetLengthinPixel({1, 2}, {4, 6}), 5);
  EXPECT_FLOAT_EQ(GetLengthinPixel({3e30f, 0}, {0, 4e30f}), 5e30f);
}

TEST(GeometrySlope, AngleOfBToAFollowsScreenDirections) {
  struct Row { const char* edge; TMyPoint a, b; double expected; };
  const Row rows[] = {{"A right of B", {10, 0}, {0, 0}, 0},
                      {"A below B", {0, 10}, {0, 0}, kPiD / 2}, {"A left of B", {-10, 0}, {0, 0}, kPiD},
                      {"A above B", {0, -10}, {0, 0}, 3 * kPiD / 2}, {"coincident points", {3, 3}, {3, 3}, kPiD / 2},
                      {"A right-below B", {10, 10}, {0, 0}, kPiD / 4},
                      {"A left-below B", {-10, 10}, {0, 0}, 3 * kPiD / 4},
                      {"A left-above B", {-10, -10}, {0, 0}, 5 * kPiD / 4},
                      {"A steeply right-above B", {1, -100}, {0, 0}, 2 * kPiD - std::atan(100.0)}};
  for (const Row& row : rows)
    EXPECT_NEAR(static_cast<double>(GetSlopeAngle(row.a, row.b)), row.expected, 1e-12) << row.edge;
}

TEST(GeometryQuadrant, EqualCoordinatesCountAsLeftAndTop) {
  struct Row {
    const char* edge;
    TMyPoint b;  // relative to A = (0, 0)
    std::int32_t qx, qy;
    bool leftTop, leftBottom, rightTop, rightBottom;
  };
  const Row rows[] = {{"B equal to A", {0, 0}, -1, -1, true, true, true, true},
                      {"B level right of A", {5, 0}, 1, -1, false, false, true, true},
                      {"B level left of A", {-5, 0}, -1, -1, true, true, false, false},
                      {"B straight above A", {0, -5}, -1, -1, true, false, true, false},
                      {"B straight below A", {0, 5}, -1, 1, false, true, false, true},
                      {"B strictly right-below A", {5, 5}, 1, 1, false, false, false, true}};
  const TMyPoint a{0, 0};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    EXPECT_EQ(PointInQuadrantX(a, row.b), row.qx);
    EXPECT_EQ(PointInQuadrantY(a, row.b), row.qy);
    EXPECT_EQ(IsAtLeftTop(a, row.b), row.leftTop);
    EXPECT_EQ(IsAtLeftBottom(a, row.b), row.leftBottom);
    EXPECT_EQ(IsAtRightTop(a, row.b), row.rightTop);
    EXPECT_EQ(IsAtRightBottom(a, row.b), row.rightBottom);
  }
}

// ---------------------------------------------------------------------------
// Intersection
// ---------------------------------------------------------------------------

// Captures the messages shown while a test runs and restores the hook after.
class GeometryIntersection : public ::testing::Test {
 protected:
  void SetUp() override {
    saved_ = PlatformHooks().ShowMessage;
    PlatformHooks().ShowMessage = [this](const std::string& text) { messages_.push_back(text); };
  }
  void TearDown() override { PlatformHooks().ShowMessage = saved_; }

  std::vector<std::string> messages_;

 private:
  std::function<void(const std::string&)> saved_;
};

TEST_F(GeometryIntersection, EachCaseGivesItsOwnResultWithoutMessage) {
  struct Row { const char* edge; TMyPoint p1, p2, p3, p4; TMyPoint expected; };
  const Row rows[] = {{"both vertical x=5: halved y difference", {5, 2}, {5, 100}, {5, 8}, {5, -7}, {5, 3}},
                      {"both vertical on different x keep x1", {1, 2}, {7, 0}, {1, 10}, {7, 1}, {1, 4}},
                      {"first vertical", {3, 0}, {0, 0}, {3, 10}, {10, 10}, {3, 3}},
                      {"second vertical", {0, 0}, {4, -1}, {10, 20}, {4, 9}, {4, 8}},
                      {"both horizontal give the halved x difference", {2, 7}, {0, 1}, {12, 7}, {5, 1}, {5, 7}},
                      {"vertical meets horizontal", {3, 0}, {0, 6}, {3, 10}, {10, 6}, {3, 6}},
                      {"horizontal meets vertical", {0, 6}, {3, 0}, {10, 6}, {3, 10}, {3, 6}},
                      {"general crossing", {0, 0}, {0, 10}, {10, 10}, {10, 0}, {5, 5}},
                      {"crossing beyond both segments", {0, 0}, {10, 0}, {1, 1}, {9, 1}, {5, 5}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    ExpectNear(Getintersection(row.p1, row.p2, row.p3, row.p4), row.expected.X, row.expected.Y, 1e-5);
  }
  EXPECT_TRUE(messages_.empty());
}

TEST_F(GeometryIntersection, ParallelSlopedLinesShowErrorAndDivideByZero) {
  const TMyPoint p = Getintersection({0, 0}, {0, 5}, {10, 10}, {10, 15});
  EXPECT_EQ(messages_, std::vector<std::string>{"error"});
  EXPECT_FALSE(std::isfinite(p.X));
  EXPECT_FALSE(std::isfinite(p.Y));
}

// ---------------------------------------------------------------------------
// Arrow-head barbs and split points
// ---------------------------------------------------------------------------

TEST(GeometryTriangle, HorizontalAndVerticalShaftsGiveBarbsMirroredAboutThem) {
  const double back = 20 * std::cos(kPiD / 6);
  TMyPoint b1, b2;
  GetTriangle({100, 50}, {0, 50}, static_cast<float>(kPiD / 6), 20, b1, b2);
  ExpectNear(b1, 100 - back, 60, 1e-4);
  ExpectNear(b2, 100 - back, 40, 1e-4);
  GetTriangle({50, 0}, {50, 100}, static_cast<float>(kPiD / 6), 20, b1, b2);
  ExpectNear(b1, 40, back, 1e-4);
  ExpectNear(b2, 60, back, 1e-4);
}

// Whatever the shaft's direction, each barb lies Len from the tip at Angle
// from the shaft, and the two lie on opposite sides of it.
TEST(GeometryTriangle, BarbsStandAtAngleOnBothSidesInEveryDirection) {
  struct Row {
    const char* edge;
    TMyPoint toward;  // relative to the tip at (0, 0)
  };
  const Row rows[] = {{"toward right-below", {30, 40}},  {"toward left-below", {-30, 40}},
                      {"toward left-above", {-40, -30}}, {"toward right-above", {40, -30}}};
  const float angle = 0.4f;
  const double len = 25;
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    TMyPoint b1, b2;
    GetTriangle({0, 0}, row.toward, angle, static_cast<std::uint8_t>(len), b1, b2);
    const double sx = row.toward.X, sy = row.toward.Y, shaft = std::hypot(sx, sy);
    double side[2];
    int i = 0;
    for (const TMyPoint& b : {b1, b2}) {
      EXPECT_NEAR(std::hypot(b.X, b.Y), len, 1e-4);
      EXPECT_NEAR(std::acos((b.X * sx + b.Y * sy) / (len * shaft)), angle, 1e-5);
      side[i++] = sx * b.Y - sy * b.X;
    }
    EXPECT_LT(side[0] * side[1], 0);
  }
}

TEST(GeometrySplitLine, BothPointsLieDistFromAToBKeepingTheFloatAnglesResidue) {
  struct Row { const char* edge; TMyPoint a, b; std::int32_t dist; TMyPoint expected; };
  const Row rows[] = {{"toward right-below", {10, 10}, {40, 50}, 25, {25, 30}},
                      {"toward left-above", {100, 100}, {40, 20}, 50, {70, 60}},
                      {"Dist past a byte", {10, 10}, {610, 810}, 500, {310, 410}},
                      {"Dist beyond B", {0, 0}, {0, -10}, 30, {0, -30}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    TMyPoint p1, p2;
    SplitLine(row.a, row.b, row.dist, p1, p2);
    ExpectNear(p1, row.expected.X, row.expected.Y, 1e-3);
    EXPECT_EQ(p1, p2);
  }
  // The shaft angle passes through a float, whose pi/2 is off by 4.37e-8; its
  // cosine shows up scaled by Dist across a horizontal line.
  TMyPoint p1, p2;
  SplitLine({0, 0}, {1000, 0}, 300, p1, p2);
  EXPECT_EQ(p1.X, 300);
  EXPECT_FLOAT_EQ(p1.Y, -1.3113417e-5f);
}

// ---------------------------------------------------------------------------
// Rotation and angle normalisation
// ---------------------------------------------------------------------------

TEST(GeometryRotation, PositiveAngleTurnsClockwiseOnScreenAndZeroIsExact) {
  struct Row { const char* edge; TMyPoint p, center; double angle; TMyPoint expected; };
  const Row rows[] = {{"quarter turn takes +x to +y", {10, 0}, {0, 0}, kPiD / 2, {0, 10}},
                      {"about a centre off the origin", {15, 5}, {5, 5}, kPiD / 2, {5, 15}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    ExpectNear(RotateAPoint(row.p, row.center, static_cast<float>(row.angle)), row.expected.X, row.expected.Y, 1e-5);
  }
  // A zero angle returns the point exactly: float arithmetic would lose the
  // small coordinate when it is taken relative to the centre and back.
  const TMyPoint p{1e-8f, 3};
  EXPECT_EQ(RotateAPoint(p, {1, 1}, 0), p);
}

TEST(GeometryAngle, RecaclinRadRemovesWholeTurns) {
  struct Row { const char* edge; float angle; float expected; };
  const float twoPi = static_cast<float>(2 * kPiD);
  const float belowTwoPi = std::nextafter(twoPi, 0.0f);
  const Row rows[] = {{"7 loses one turn", 7.0f, static_cast<float>(7 - 2 * kPiD)},
                      {"-7 gains one turn", -7.0f, static_cast<float>(-7 + 2 * kPiD)},
                      {"20 loses three turns", 20.0f, static_cast<float>(20 - 6 * kPiD)},
                      {"inside the range stays", -6.0f, -6.0f},
                      {"float nearest 2pi lies above it", twoPi, kTwoPiFloatExcess},
                      {"float nearest -2pi lies below it", -twoPi, -kTwoPiFloatExcess},
                      {"largest float below 2pi stays", belowTwoPi, belowTwoPi}, {"infinity stays", kInf, kInf},
                      {"too large for a turn to change stays", 1e30f, 1e30f}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    float angle = row.angle;
    RecaclinRad(angle);
    EXPECT_FLOAT_EQ(angle, row.expected);
  }
}

TEST(GeometryAngle, RecaclinDegKeepsItsNegativeOvershoot) {
  struct Row { const char* edge; std::int32_t angle; std::int32_t expected; };
  const Row rows[] = {{"370 gives 10", 370, 10},           {"361 gives 1", 361, 1},
                      {"720 gives 0", 720, 0},             {"360 stays", 360, 360},
                      {"-360 stays", -360, -360},          {"-400 overshoots to 680", -400, 680},
                      {"-361 overshoots to 719", -361, 719}, {"-720 overshoots to 720", -720, 720}};
  for (const Row& row : rows) {
    std::int32_t angle = row.angle;
    RecaclinDeg(angle);
    EXPECT_EQ(angle, row.expected) << row.edge;
  }
}

// ---------------------------------------------------------------------------
// Point arrays
// ---------------------------------------------------------------------------

const TArrMyPoint kThree{{1, 1}, {2, 2}, {3, 3}};

TEST(GeometryPointArray, InsertBeforeIdAcceptsOnlyExistingIndices) {
  struct Row { const char* edge; TArrMyPoint start; std::int32_t id; bool accepted; TArrMyPoint expected; };
  const Row rows[] = {{"before the first", kThree, 0, true, {{9, 9}, {1, 1}, {2, 2}, {3, 3}}},
                      {"before the last", kThree, 2, true, {{1, 1}, {2, 2}, {9, 9}, {3, 3}}},
                      {"Id equal to the length", kThree, 3, false, kThree},
                      {"negative Id", kThree, -1, false, kThree},
                      {"Id 0 on an empty array", {}, 0, false, {}}};
  for (const Row& row : rows) {
    SCOPED_TRACE(row.edge);
    TArrMyPoint a = row.start;
    EXPECT_EQ(InsertAPointBeforeId({9, 9}, row.id, a), row.accepted);
    EXPECT_EQ(a, row.expected);
  }
}

TEST(GeometryPointArray, RemovePointClosesGapOrDoesNothing) {
  struct Row { const char* edge; std::int32_t id; TArrMyPoint expected; };
  const Row rows[] = {{"last index", 2, {{1, 1}, {2, 2}}}, {"first index", 0, {{2, 2}, {3, 3}}},
                      {"Id equal to the length", 3, kThree}, {"negative Id", -1, kThree}};
  for (const Row& row : rows) {
    TArrMyPoint a = kThree;
    RemovePoint(row.id, a);
    EXPECT_EQ(a, row.expected) << row.edge;
  }
}

TEST(GeometryPointArray, PointsLTRBSpansAllPoints) {
  struct Row { const char* edge; TArrMyPoint points; TMyRect expected; };
  const Row rows[] = {{"first point not extreme", {{0, 0}, {-5, 7}, {3, -2}, {1, 9}}, {-5, -2, 3, 9}},
                      {"single point", {{4, 6}}, {4, 6, 4, 6}},
                      {"empty array gives the zero rectangle", {}, {0, 0, 0, 0}}};
  for (const Row& row : rows) EXPECT_EQ(GetPointsLTRB(row.points), row.expected) << row.edge;
}

}  // namespace
}  // namespace lumatrex
