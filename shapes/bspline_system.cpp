#include "shapes/bspline_system.h"

#include <cassert>
#include <cmath>
#include <cstddef>

namespace lumatrex {

namespace {
constexpr auto kCells = static_cast<std::size_t>(TSplineSystem::kSize) * TSplineSystem::kSize;
constexpr float kDegenerateDiagonal = 1e-6f;
}  // namespace

TSplineSystem::TSplineSystem() : X(kSize, 0.0f), Y(kSize, 0.0f), a_(kCells, 0.0f) {}

float& TSplineSystem::A(std::int32_t row, std::int32_t col) {
  assert(row >= 0 && row < kSize && col >= 0 && col < kSize);
  return a_[static_cast<std::size_t>(row) * kSize + static_cast<std::size_t>(col)];
}

float TSplineSystem::A(std::int32_t row, std::int32_t col) const {
  return const_cast<TSplineSystem&>(*this).A(row, col);
}

void TSplineSystem::SetIdentityRow(std::int32_t row) {
  for (std::int32_t col = 0; col < kSize; ++col) A(row, col) = 0.0f;
  A(row, row) = 1.0f;
}

namespace {

bool HasDegenerateDiagonal(const TSplineSystem& s, std::int32_t first, std::int32_t last) {
  for (std::int32_t i = first; i <= last; ++i)
    if (!(std::fabs(s.A(i, i)) > kDegenerateDiagonal)) return true;
  return false;
}

void EliminateBelow(TSplineSystem& s, std::int32_t k, std::int32_t last) {
  for (std::int32_t r = k + 1; r <= last; ++r) {
    const float factor = s.A(r, k) / s.A(k, k);
    // Rows of a banded system mostly hold a zero here; skipping them changes
    // no value and keeps a 100-point curve cheap to draw.
    if (factor == 0.0f) continue;
    for (std::int32_t c = k; c <= last; ++c) s.A(r, c) -= factor * s.A(k, c);
    s.X[static_cast<std::size_t>(r)] -= factor * s.X[static_cast<std::size_t>(k)];
    s.Y[static_cast<std::size_t>(r)] -= factor * s.Y[static_cast<std::size_t>(k)];
  }
}

void SubstituteBack(TSplineSystem& s, std::int32_t first, std::int32_t last) {
  for (std::int32_t r = last; r >= first; --r) {
    float x = s.X[static_cast<std::size_t>(r)];
    float y = s.Y[static_cast<std::size_t>(r)];
    for (std::int32_t c = r + 1; c <= last; ++c) {
      x -= s.A(r, c) * s.X[static_cast<std::size_t>(c)];
      y -= s.A(r, c) * s.Y[static_cast<std::size_t>(c)];
    }
    s.X[static_cast<std::size_t>(r)] = x / s.A(r, r);
    s.Y[static_cast<std::size_t>(r)] = y / s.A(r, r);
  }
}

}  // namespace

bool SolveWithoutPivoting(TSplineSystem& system, std::int32_t first, std::int32_t last) {
  if (HasDegenerateDiagonal(system, first, last)) return false;
  for (std::int32_t k = first; k < last; ++k) EliminateBelow(system, k, last);
  SubstituteBack(system, first, last);
  return true;
}

}  // namespace lumatrex
