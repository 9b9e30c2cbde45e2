// Cost of the extended-precision kernel against the same work done in double,
// over one batch of points. Compare each pair within one run: the ratio is the
// figure that matters, the absolute times depend on the machine.
#include <benchmark/benchmark.h>

#include <cmath>
#include <cstddef>
#include <random>
#include <vector>

#include "geometry/geometry.h"

namespace {

using lumatrex::TMyPoint;

constexpr std::size_t kPoints = 10000;
constexpr double kTwoPi = 6.283185307179586;

struct Batch {
  std::vector<TMyPoint> points;
  std::vector<float> angles;
};

// A fixed seed, so that every run measures the same inputs.
const Batch& Inputs() {
  static const Batch batch = [] {
    std::mt19937 random(20240501);
    std::uniform_real_distribution<float> coordinate(-1000.0f, 1000.0f);
    std::uniform_real_distribution<float> angle(-7.0f, 7.0f);
    Batch b;
    for (std::size_t i = 0; i < kPoints; ++i) {
      b.points.push_back({coordinate(random), coordinate(random)});
      b.angles.push_back(angle(random));
    }
    return b;
  }();
  return batch;
}

constexpr TMyPoint kCenter{12.5f, -40.25f};

void BM_RotateAPoint(benchmark::State& state) {
  const Batch& in = Inputs();
  for (auto _ : state) {
    for (std::size_t i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(lumatrex::RotateAPoint(in.points[i], kCenter, in.angles[i]));
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPoints));
}
BENCHMARK(BM_RotateAPoint);

// Peer: the plain rotation in double, as code without the compatibility
// requirements would write it.
void BM_RotateAPoint_Peer(benchmark::State& state) {
  const Batch& in = Inputs();
  for (auto _ : state) {
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double c = std::cos(double{in.angles[i]}), s = std::sin(double{in.angles[i]});
      const double dx = double{in.points[i].X} - kCenter.X;
      const double dy = double{in.points[i].Y} - kCenter.Y;
      benchmark::DoNotOptimize(TMyPoint{static_cast<float>(dx * c - dy * s + kCenter.X),
                                        static_cast<float>(dx * s + dy * c + kCenter.Y)});
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPoints));
}
BENCHMARK(BM_RotateAPoint_Peer);

void BM_GetSlopeAngle(benchmark::State& state) {
  const Batch& in = Inputs();
  for (auto _ : state) {
    for (std::size_t i = 0; i < kPoints; ++i) {
      benchmark::DoNotOptimize(lumatrex::GetSlopeAngle(in.points[i], kCenter));
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPoints));
}
BENCHMARK(BM_GetSlopeAngle);

// Peer: the same direction (0 to the right, growing clockwise on a y-down
// screen) from atan2 in double.
void BM_GetSlopeAngle_Peer(benchmark::State& state) {
  const Batch& in = Inputs();
  for (auto _ : state) {
    for (std::size_t i = 0; i < kPoints; ++i) {
      const double t =
          std::atan2(double{in.points[i].Y} - kCenter.Y, double{in.points[i].X} - kCenter.X);
      benchmark::DoNotOptimize(t < 0 ? t + kTwoPi : t);
    }
  }
  state.SetItemsProcessed(static_cast<std::int64_t>(state.iterations() * kPoints));
}
BENCHMARK(BM_GetSlopeAngle_Peer);

}  // namespace
