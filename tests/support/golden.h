// Expected pictures kept as PNG files under tests/data. With
// LUMATREX_UPDATE_GOLDEN=1 in the environment every check writes the actual
// picture over its file instead and passes; look at the new files before
// committing them.
#pragma once

#include <gtest/gtest.h>

#include <QImage>
#include <string>

namespace lumatrex::test {

// The pixels whose colours (alpha left out) differ between two pictures of
// one size; Where, when given, grows to the box around them.
int DifferingPixels(const QImage& a, const QImage& b, QRect* where = nullptr);

// Actual and Expected have one size and the same colours. A mismatch saves
// both in the test's temporary folder, named after Name, and says where.
::testing::AssertionResult SamePicture(const QImage& actual, const QImage& expected, const std::string& name);

// Compares the colours of Actual (alpha left out) with the picture at
// tests/data/Relative, pixel for pixel. A mismatch saves the actual picture
// in the test's temporary folder and names it.
::testing::AssertionResult MatchesGoldenPicture(const QImage& actual, const std::string& relative);

}  // namespace lumatrex::test
