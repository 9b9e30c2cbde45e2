#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "persistence/file_version.h"
#include "persistence/stream_io.h"

namespace lumatrex {
namespace {

using TBytes = std::vector<std::uint8_t>;

TBytes Written(const std::function<void(TStream&)>& write) {
  TMemoryStream stream;
  write(stream);
  return stream.Bytes();
}

TEST(LString, WritesTheFullLengthAndTheLowEightBitsWorthOfBytes) {
  EXPECT_EQ(Written([](TStream& s) { WriteLString(s, "ab"); }), (TBytes{2, 0, 0, 0, 'a', 'b'}));
  const TBytes longOne = Written([](TStream& s) { WriteLString(s, std::string(258, 'x')); });
  EXPECT_EQ(longOne, (TBytes{2, 1, 0, 0, 'x', 'x'}));  // 258 = 0x102, 2 bytes follow
  TMemoryStream back(longOne);
  EXPECT_EQ(ReadLString(back, "text"), "xx");
  EXPECT_EQ(back.Remaining(), 0);
}

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

TEST(FixText, PadsWithSpacesCutsAndTrimsOnReading) {
  EXPECT_EQ(Written([](TStream& s) { WriteFixText(s, "XP.j", 6); }), (TBytes{'X', 'P', '.', 'j', ' ', ' '}));
  EXPECT_EQ(Written([](TStream& s) { WriteFixText(s, "abcdef", 3); }), (TBytes{'a', 'b', 'c'}));
  TMemoryStream stream(TBytes{' ', 'a', ' ', 'b', ' ', ' '});
  EXPECT_EQ(ReadFixText(stream, 6, "tag"), "a b");
}

TEST(Extended, DecodesKnownBitPatternsAndRoundTripsExactly) {
  // 1.0: mantissa 0x8000000000000000, exponent 16383.
  TMemoryStream one(TBytes{0, 0, 0, 0, 0, 0, 0, 0x80, 0xFF, 0x3F});
  EXPECT_EQ(ReadExtended(one, "x"), 1.0L);
  // -2.5: mantissa 0xA000000000000000, exponent 16384, sign set.
  TMemoryStream minus(TBytes{0, 0, 0, 0, 0, 0, 0, 0xA0, 0x00, 0xC0});
  EXPECT_EQ(ReadExtended(minus, "x"), -2.5L);
  TMemoryStream zero(TBytes(10, 0));
  EXPECT_EQ(ReadExtended(zero, "x"), 0.0L);

  for (long double v : {0.1L, -123456.789L, 3.0e-300L, 1.0e4000L, 7.0L}) {
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

TEST(FileVersion, OrdersTheKnownTagsAndRejectsOthers) {
  EXPECT_EQ(FileVersionIndex("XP.2"), 0);
  EXPECT_EQ(FileVersionIndex("XP.j"), 12);
  EXPECT_EQ(FileVersionIndex("XP.b"), -1);
  EXPECT_TRUE(FileVersionAtLeast("XP.a", "XP.9"));
  EXPECT_FALSE(FileVersionAtLeast("XP.7", "XP.8"));
  EXPECT_FALSE(FileVersionAtLeast("junk", "XP.2"));
  EXPECT_TRUE(FileVersionHasExtendedFloats("XP.2"));
  EXPECT_TRUE(FileVersionHasExtendedFloats("XP.5"));
  EXPECT_FALSE(FileVersionHasExtendedFloats("XP.6"));
}

}  // namespace
}  // namespace lumatrex
