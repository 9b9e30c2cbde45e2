#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "library/library_fixture.h"

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

TEST(LibraryProbes, EachProbeAnswersExactlyItsTags) {
  struct Row { const char* tag; std::vector<std::string> trueFor; };
  const std::vector<Row> rows = {
      {"ZOLTLIBX.j", {"IsZOLTLibFile"}},
      {"ZOLTLIBX.i", {"IsZOLTLibFileXI"}},  // not a plain library tag on purpose
      {"ZOLTLIBX.h", {"IsZOLTLibFile", "IsZOLTLibFileXH"}},
      {"ZOLTLIBX.e", {"IsZOLTLibFileXE"}},  // likewise
      {"ZOLTLIBX.a", {"IsZOLTLibFile", "IsZOLTLibFileXA"}}, {"ZOLTLIBX.9", {"IsZOLTLibFile", "IsZOLTLibFileX9"}},
      {"ZOLTLIBX.8", {"IsZOLTLibFile", "IsZOLTLibFileX8"}}, {"ZOLTLIBX.7", {"IsZOLTLibFile", "IsZOLTLibFileX67"}},
      {"ZOLTLIBX.6", {"IsZOLTLibFile", "IsZOLTLibFileX67"}}, {"ZOLTLIBX.3", {"IsZOLTLibFile"}},
      {"ZOLTLIBX.2", {"IsZOLTLibFile", "IsZOLTLibX2File"}}, {"ZOLTLIB2.1", {"IsOLDZOLTLibFile"}}, {"ZOLTLIBX.k", {}},
      {"zoltlibx.j", {}},  // tags compare exactly
      {"Ambrel Com", {}},  // a drawing file
  };
  TScratchFolder folder;
  for (const Row& row : rows) {
    TBytes bytes = test::TagBytes(row.tag);
    bytes.push_back(0x42);  // anything may follow the tag
    const std::string file = folder.Write("probe", bytes);
    for (const TProbe& p : kProbes) {
      const bool expected = std::ranges::find(row.trueFor, p.name) != row.trueFor.end();
      EXPECT_EQ(p.probe(file), expected) << p.name << " on " << row.tag;
    }
  }
}

TEST(LibraryProbes, AFileShorterThanATagIsNoLibrary) {
  TScratchFolder folder;
  const std::string file = folder.Write("short", test::TagBytes("ZOLTLIBX."));
  for (const TProbe& p : kProbes) EXPECT_FALSE(p.probe(file)) << p.name;
  EXPECT_EQ(ReadLibFileTag(file), "");
}

TEST(LibraryTags, MapToTheRecordVersionTheyHold) {
  const std::vector<std::pair<std::string, std::string>> rows = {
      {"ZOLTLIBX.j", "XP.j"}, {"ZOLTLIBX.i", "XP.i"}, {"ZOLTLIBX.h", "XP.h"}, {"ZOLTLIBX.e", "XP.e"},
      {"ZOLTLIBX.a", "XP.a"}, {"ZOLTLIBX.9", "XP.9"}, {"ZOLTLIBX.8", "XP.8"}, {"ZOLTLIBX.7", "XP.7"},
      {"ZOLTLIBX.6", "XP.6"}, {"ZOLTLIBX.3", "XP.4"}, {"ZOLTLIBX.2", "XP.2"}, {"ZOLTLIBX.5", ""},
      {"ZOLTLIB2.1", ""},     {"", ""},
  };
  for (const auto& [tag, version] : rows) EXPECT_EQ(LibTagToFileVersion(tag), version) << tag;
}

}  // namespace
}  // namespace lumatrex
