#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "library/library_fixture.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::TBytes;
using test::TScratchFolder;

struct TProbe {
  const char* name;
  bool (*probe)(const std::string&);
};

const std::vector<TProbe> kProbes = {
    {"IsZOLTLibFile", IsZOLTLibFile},     {"IsZOLTLibFileX67", IsZOLTLibFileX67},
    {"IsZOLTLibX2File", IsZOLTLibX2File}, {"IsZOLTLibFileX8", IsZOLTLibFileX8},
    {"IsZOLTLibFileX9", IsZOLTLibFileX9}, {"IsZOLTLibFileXA", IsZOLTLibFileXA},
    {"IsZOLTLibFileXE", IsZOLTLibFileXE}, {"IsZOLTLibFileXH", IsZOLTLibFileXH},
    {"IsZOLTLibFileXI", IsZOLTLibFileXI}, {"IsOLDZOLTLibFile", IsOLDZOLTLibFile},
};

// Each tag of tests/data/libraries/tags.txt maps to its record version, and
// exactly the probes listed answer yes for a file starting with it.
TEST(LibraryTags, MapToTheirRecordVersionAndOnlyTheirProbesAnswerYes) {
  TScratchFolder folder;
  for (const std::vector<std::string>& row : test::DataTable("libraries/tags.txt")) {
    SCOPED_TRACE(row[0]);
    EXPECT_EQ(LibTagToFileVersion(row[0]), row[1] == "-" ? "" : row[1]);
    TBytes bytes = test::TagBytes(row[0]);
    bytes.push_back(0x42);  // anything may follow the tag
    const std::string file = folder.Write("probe", bytes);
    const std::string yes = " " + (row.size() > 2 ? row[2] : "") + " ";
    for (const TProbe& p : kProbes)
      EXPECT_EQ(p.probe(file), yes.find(std::string(" ") + p.name + " ") != std::string::npos) << p.name;
  }
}

TEST(LibraryProbes, AFileShorterThanATagIsNoLibrary) {
  TScratchFolder folder;
  const std::string file = folder.Write("short", test::TagBytes("ZOLTLIBX."));
  for (const TProbe& p : kProbes) EXPECT_FALSE(p.probe(file)) << p.name;
  EXPECT_EQ(ReadLibFileTag(file), "");
}

}  // namespace
}  // namespace lumatrex
