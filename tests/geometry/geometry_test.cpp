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

// ---------------------------------------------------------------------------
// Rounding and conversions
// ---------------------------------------------------------------------------

TEST(GeometryRound, RoundsHalvesToEven) {
  struct Row { const char* edge; long double value; std::int32_t expected; };
  const Row rows[] = {{"2.5 goes down to even", 2.5L, 2},
                      {"3.5 goes up to even", 3.5L, 4}, {"-2.5 goes toward zero to even", -2.5L, -2},
                      {"-3.5 goes away from zero to even", -3.5L, -4}, {"-0.5 goes to zero", -0.5L, 0},
                      {"float just below one half stays at zero", 0.49999997f, 0},
                      {"float just above 2.5 goes up", 2.5000002f, 3},
                      {"past 32 bits the low bits stay", 4294967299.5L, 4}, {"past 64 bits", 1e20L, 0},
                      {"not a number", std::nanl(""), 0}};
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
    const TMyPoint p = Getintersection(row.p1, row.p2, row.p3, row.p4);
    EXPECT_NEAR(p.X, row.expected.X, 1e-5);
    EXPECT_NEAR(p.Y, row.expected.Y, 1e-5);
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
// Rotation and angle normalisation
// ---------------------------------------------------------------------------

// Quarter turns are checked through the shapes; a zero angle must return the
// point exactly, as float arithmetic would lose the small coordinate when it
// is taken relative to the centre and back.
TEST(GeometryRotation, ZeroAngleReturnsThePointExactly) {
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

}  // namespace
}  // namespace lumatrex
