#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "persistence/stream_io.h"

namespace lumatrex {
namespace {

using TBytes = std::vector<std::uint8_t>;

// The lengths' low-byte rule and exact layout are checked by the drawing writer's
// tests (a 300-byte layer name); here the refused lengths.
TEST(LString, ANegativeLengthIsMalformedAtItsOffsetATruncatedTextAReadError) {
  TMemoryStream stream(TBytes{9, 0xFF, 0xFF, 0xFF, 0xFF});
  stream.SetPosition(1);
  try {
    ReadLString(stream, "caption");
    FAIL() << "no error";
  } catch (const EStreamFormatError& e) {
    EXPECT_EQ(e.Offset(), 1);
    EXPECT_NE(std::string(e.what()).find("caption"), std::string::npos);
  }
  TMemoryStream truncated(TBytes{5, 0, 0, 0, 'a'});
  EXPECT_THROW(ReadLString(truncated, "name"), EReadError);
}

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

TEST(ReadCount, RefusesCountsTheRemainingBytesCannotHold) {
  TMemoryStream ok(TBytes{2, 0, 0, 0, 1, 2, 3, 4, 5, 6, 7, 8});
  EXPECT_EQ(ReadCount(ok, 4, "ids"), 2);
  TMemoryStream huge(TBytes{0xFF, 0xFF, 0xFF, 0x7F, 1, 2, 3, 4});
  EXPECT_THROW(ReadCount(huge, 8, "points"), EStreamFormatError);
  TMemoryStream negative(TBytes{0xFE, 0xFF, 0xFF, 0xFF});
  EXPECT_THROW(ReadCount(negative, 4, "ids"), EStreamFormatError);
  // Items without bytes are bounded by a sane limit.
  TMemoryStream fine(TBytes{0x00, 0x00, 0x10, 0x00});  // 1 << 20
  EXPECT_EQ(ReadCount(fine, 0, "points"), kMaxCountWithoutData);
  TMemoryStream tooMany(TBytes{0x01, 0x00, 0x10, 0x00});
  EXPECT_THROW(ReadCount(tooMany, 0, "points"), EStreamFormatError);
}

enum TThree : std::uint8_t { kFirst, kSecond, kLast };

TEST(ReadOrdinal, TheLastValueReadsAndOnePastItIsMalformedAtItsOffset) {
  TMemoryStream stream(TBytes{2, 3});
  EXPECT_EQ(ReadOrdinal(stream, kLast, "three"), kLast);
  try {
    ReadOrdinal(stream, kLast, "three");
    FAIL() << "no error";
  } catch (const EStreamFormatError& e) {
    EXPECT_EQ(e.Offset(), 1);
    EXPECT_NE(std::string(e.what()).find("three"), std::string::npos);
  }
}

TEST(BitmapBuffer, ZeroOrNegativeCountsHoldNoBitmapABitmapRoundTripsAndGarbageIsRefused) {
  TMemoryStream stream(TBytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 'x'});
  EXPECT_EQ(ReadBitmapBuffer(stream, "background"), nullptr);
  EXPECT_EQ(stream.Position(), 8);
  TBitmap picture(3, 2, pf24bit);
  picture.ScanLine(1)[0] = 0x42;
  TMemoryStream written;
  WriteBitmapBuffer(written, &picture);
  written.SetPosition(0);
  const auto back = ReadBitmapBuffer(written, "picture");
  ASSERT_NE(back, nullptr);
  EXPECT_EQ(back->Width(), 3);
  EXPECT_EQ(back->ScanLine(1)[0], 0x42);
  EXPECT_EQ(written.Remaining(), 0);

  TMemoryStream garbage(TBytes{4, 0, 0, 0, 0, 0, 0, 0, 'n', 'o', 'p', 'e'});
  EXPECT_THROW(ReadBitmapBuffer(garbage, "picture"), EStreamFormatError);
  TMemoryStream past(TBytes{100, 0, 0, 0, 0, 0, 0, 0, 'B', 'M'});
  EXPECT_THROW(ReadBitmapBuffer(past, "picture"), EStreamFormatError);
}

}  // namespace
}  // namespace lumatrex
