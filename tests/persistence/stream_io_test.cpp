#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "persistence/stream_io.h"

namespace lumatrex {
namespace {

using TBytes = std::vector<std::uint8_t>;

TEST(Extended, DecodesKnownBitPatternsAndRoundTripsExactly) {
  // 1.0: mantissa 0x8000000000000000, exponent 16383.
  TMemoryStream one(TBytes{0, 0, 0, 0, 0, 0, 0, 0x80, 0xFF, 0x3F});
  EXPECT_EQ(ReadExtended(one, "x"), 1.0L);
  // -2.5: mantissa 0xA000000000000000, exponent 16384, sign set.
  TMemoryStream minus(TBytes{0, 0, 0, 0, 0, 0, 0, 0xA0, 0x00, 0xC0});
  EXPECT_EQ(ReadExtended(minus, "x"), -2.5L);
  for (long double v : {0.1L, 3.0e-300L, 1.0e4000L}) {
    TMemoryStream stream;
    WriteExtended(stream, v);
    EXPECT_EQ(stream.Size(), 10);
    stream.SetPosition(0);
    EXPECT_EQ(ReadExtended(stream, "x"), v);
  }
  TMemoryStream inf;
  WriteExtended(inf, -INFINITY);
  inf.SetPosition(0);
  EXPECT_EQ(ReadExtended(inf, "x"), -std::numeric_limits<long double>::infinity());
}

}  // namespace
}  // namespace lumatrex
