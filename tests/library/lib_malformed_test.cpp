// Damaged libraries: every failure is one of our read errors with the offset
// of the field, never a crash, a hang or a huge allocation.
#include <gtest/gtest.h>

#include <set>
#include <string>
#include <vector>

#include "library/library_fixture.h"
#include "persistence/stream_io.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::Concat;
using test::TagBytes;
using test::TBytes;

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

TBytes Hostile(const std::string& name) {
  const std::string bytes = test::ReadFileBytes(test::DataPath("libraries/hostile/" + name + ".lib"));
  return TBytes(bytes.begin(), bytes.end());
}

// The damaged libraries of tests/data/libraries/hostile, each listed with the
// offset and a part of the text its error must give.
TEST(MalformedLibraries, HostileValuesAreReportedWhereTheyStand) {
  for (const std::vector<std::string>& row : test::DataTable("libraries/hostile.txt")) {
    SCOPED_TRACE(row[0]);
    const TLibManager lib = test::Library(Hostile(row[0]));
    try {
      ReadEverything(lib);
      ADD_FAILURE() << "no error";
    } catch (const EStreamFormatError& e) {
      EXPECT_EQ(e.Offset(), std::stoll(row[1])) << e.what();
      EXPECT_NE(std::string(e.what()).find(row[2]), std::string::npos) << e.what();
    }
  }
}

TEST(MalformedLibraries, EditsOnADamagedLibraryFailWithoutChangingIt) {
  const TBytes damaged = Hostile("entry-size-past-the-end");
  ASSERT_FALSE(damaged.empty());
  TLibManager lib = test::Library(damaged);
  EXPECT_THROW(lib.DeleteShape("E"), EStreamFormatError);
  EXPECT_THROW(lib.AppendNewShape("F", {}, {}, 1, 1), EStreamFormatError);
  EXPECT_EQ(lib.Bytes(), damaged);
}

}  // namespace
}  // namespace lumatrex
