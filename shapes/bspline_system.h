// The linear system behind TMyBLine::Interpolate: which control vertices make
// a uniform cubic B-spline pass through given knot points. Kept apart from
// the shape so that the solver's refusal of a degenerate system can be tested
// on its own (the systems the curve builds are diagonally dominant and never
// hit it).
#pragma once

#include <cstdint>
#include <vector>

namespace lumatrex {

// A 102 x 102 system of 32-bit floats (a zero matrix at construction) with
// two right-hand sides, x and y. Rows and columns are numbered as the curve's
// vertex buffer: 0 and 101 are the phantom slots.
class TSplineSystem {
 public:
  static constexpr std::int32_t kSize = 102;

  TSplineSystem();
  // Element (Row, Col); both must lie in 0..kSize-1.
  float& A(std::int32_t row, std::int32_t col);
  float A(std::int32_t row, std::int32_t col) const;
  // Makes Row an identity row: 1 on the diagonal, 0 elsewhere.
  void SetIdentityRow(std::int32_t row);

  std::vector<float> X;
  std::vector<float> Y;

 private:
  std::vector<float> a_;
};

// Solves rows and columns First..Last by Gaussian elimination without
// pivoting and back substitution; X and Y then hold the solution. When any
// diagonal element of those rows is not greater than 1e-6 in magnitude
// nothing is changed and the answer is false.
bool SolveWithoutPivoting(TSplineSystem& system, std::int32_t first, std::int32_t last);

}  // namespace lumatrex
