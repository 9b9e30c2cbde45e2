// Damaged libraries: every failure is one of our read errors with the offset
// of the field, never a crash, a hang or a huge allocation.
#include <gtest/gtest.h>

#include <optional>
#include <set>
#include <string>
#include <vector>

#include "library/library_fixture.h"
#include "persistence/stream_io.h"

namespace lumatrex {
namespace {

using test::Concat;
using test::TagBytes;
using test::TBytes;
using test::TRecordBytes;

const TBytes kTag = TagBytes("ZOLTLIBX.j");

// Walks the library and reads every entry.
void ReadEverything(const TLibManager& lib) {
  for (std::int32_t i = 0; i < lib.GetcmbShapesCount(); ++i) lib.GetCmbShape(lib.GetCmbShapesNameByID(i));
}

TEST(MalformedLibraries, TruncationAtEveryByteFailsExceptAtEntryBoundaries) {
  const TBytes pump = test::PumpEntry();
  const TBytes seed = Concat({kTag, pump, test::BoxEntry("A")});
  // Below the tag there is nothing to read; the tag alone and each whole
  // entry are complete libraries.
  std::set<std::size_t> complete = {kTag.size(), kTag.size() + pump.size()};
  for (std::size_t n = 0; n < kTag.size(); ++n) complete.insert(n);
  for (std::size_t length = 0; length < seed.size(); ++length) {
    const TLibManager lib = test::Library(TBytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(length)));
    if (complete.contains(length))
      EXPECT_NO_THROW(ReadEverything(lib)) << length;
    else
      EXPECT_THROW(ReadEverything(lib), EReadError) << length;
  }
}

struct THostile { const char* edge; TBytes bytes; std::int64_t offset; const char* mentions; };

// Tag, then entry "E": name, size, width and height 1, the user data count
// and Rest; Size, when given, replaces the true size.
TBytes Entry(std::int32_t userData, const TBytes& rest, std::optional<std::int32_t> size = {}) {
  const auto trueSize = static_cast<std::int32_t>(12 + rest.size());
  TRecordBytes r;
  r.raw(kTag.data(), kTag.size()).u8(1).raw("E", 1).i32(size.value_or(trueSize));
  return r.i32(1).i32(1).i32(userData).append(rest).bytes;
}

TBytes Count(std::int32_t n) { return TRecordBytes().i32(n).bytes; }

TEST(MalformedLibraries, HostileValuesAreReportedWhereTheyStand) {
  const TBytes square = test::ShapeBytes("XP.j", test::Shape("TMyRectangle", "R", 0, {{0, 0}, {1, 1}}, {}));
  TBytes unknownClass = square;
  std::copy_n("TMyBlob         ", 16, unknownClass.begin());
  const std::vector<THostile> rows = {
      {"entry size past the end", Entry(0, Count(0), 0x7FFFFFFF), 12, "entry size"},
      {"negative entry size", Entry(0, Count(0), -1), 12, "entry size"},
      {"user data count past the data", Entry(0x10000000, Count(0)), 24, "user data"},
      {"negative user data count", Entry(-5, Count(0)), 24, "user data"},
      {"shape count past the data", Entry(0, Count(0x7FFFFFFF)), 28, "shapes"},
      {"unknown class tag", Entry(0, Concat({Count(1), unknownClass})), 32, "TMyBlob"},
      {"entry size larger than its content", Entry(0, Concat({Count(1), square, Count(0)})), 12, "size"},
      {"negative string length in user data", Entry(1, TRecordBytes().i32(-1).i32(0).i32(0).bytes), 28,
       "user data key"},
  };
  for (const THostile& row : rows) {
    const TLibManager lib = test::Library(row.bytes);
    try {
      ReadEverything(lib);
      ADD_FAILURE() << row.edge << ": no error";
    } catch (const EStreamFormatError& e) {
      EXPECT_EQ(e.Offset(), row.offset) << row.edge << ": " << e.what();
      EXPECT_NE(std::string(e.what()).find(row.mentions), std::string::npos) << row.edge << ": " << e.what();
    }
  }
}

TEST(MalformedLibraries, EditsOnADamagedLibraryFailWithoutChangingIt) {
  const TBytes damaged = Entry(0, Count(0), 0x7FFFFFFF);
  TLibManager lib = test::Library(damaged);
  EXPECT_THROW(lib.DeleteShape("E"), EStreamFormatError);
  EXPECT_THROW(lib.AppendNewShape("F", {}, {}, 1, 1), EStreamFormatError);
  EXPECT_EQ(lib.Bytes(), damaged);
}

}  // namespace
}  // namespace lumatrex
