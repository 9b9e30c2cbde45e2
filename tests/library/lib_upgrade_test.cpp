#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "library/library_fixture.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::Concat;
using test::TagBytes;
using test::TBytes;
using test::TScratchFolder;
using test::TShapeFields;

const TBytes kTag = TagBytes("ZOLTLIBX.j");
const std::vector<std::pair<std::string, std::string>> kNoUserData;

TShapeFields Square(const std::string& name, bool coordinates = true) {
  return test::Shape("TMyRectangle", name, 0, coordinates ? TArrMyPoint{{0, 0}, {1, 1}} : TArrMyPoint{{0, 0}, {0, 0}},
                     {0.5f, 0.5f});
}

TShapeFields LinkPoint(bool coordinates = true) {
  return test::Shape("TMyLinkPoint", "L", 1, {coordinates ? TMyPoint{100, 200} : TMyPoint{0, 0}}, {100, 200});
}

// A library of Tag with entries "E" and "F", each a square and a link point
// in the record layout Tag holds.
TBytes OldLibrary(const std::string& tag) {
  const std::string version = LibTagToFileVersion(tag);
  auto entry = [&](const std::string& name) {
    return test::EntryBytes(name, 6, 3, nullptr,
                            {test::ShapeBytes(version, Square(name)), test::ShapeBytes(version, LinkPoint())});
  };
  return Concat({TagBytes(tag), entry("E"), entry("F")});
}

// The same library as the current writer lays it out. "XP.2" records store no
// coordinates, so their points come back as zeros.
TBytes UpgradedLibrary(const std::string& tag) {
  const bool coordinates = LibTagToFileVersion(tag) != "XP.2";
  auto entry = [&](const std::string& name) {
    return test::EntryBytes(
        name, 6, 3, &kNoUserData,
        {test::ShapeBytes("XP.j", Square(name, coordinates)), test::ShapeBytes("XP.j", LinkPoint(coordinates))});
  };
  return Concat({kTag, entry("E"), entry("F")});
}

TEST(TLibManagerUpgrade, EveryOlderTagComesToTheCurrentLayout) {
  for (const char* tag : {"ZOLTLIBX.2", "ZOLTLIBX.3", "ZOLTLIBX.6", "ZOLTLIBX.7", "ZOLTLIBX.8", "ZOLTLIBX.9",
                          "ZOLTLIBX.a", "ZOLTLIBX.e", "ZOLTLIBX.h", "ZOLTLIBX.i"}) {
    TLibManager lib = test::Library(OldLibrary(tag));
    ASSERT_TRUE(lib.UpgradeToCurrentTag()) << tag;
    EXPECT_EQ(lib.Bytes(), UpgradedLibrary(tag)) << tag;
  }
}

TEST(TLibManagerUpgrade, TheCurrentTagNeedsNoStepAndForeignTagsHaveNone) {
  TLibManager lib = test::Library(UpgradedLibrary("ZOLTLIBX.j"));
  EXPECT_TRUE(lib.UpgradeToCurrentTag());
  EXPECT_EQ(lib.Bytes(), UpgradedLibrary("ZOLTLIBX.j"));
  for (const char* tag : {"ZOLTLIBX.5", "ZOLTLIB2.1", "Ambrel Com"}) {
    const TBytes bytes = Concat({TagBytes(tag), {1, 2, 3}});
    lib.SetBytes(bytes);
    EXPECT_FALSE(lib.UpgradeToCurrentTag()) << tag;
    EXPECT_EQ(lib.Bytes(), bytes) << tag;
  }
}

TEST(TLibManagerUpgrade, OpeningForEditingUpgradesInMemoryOnly) {
  TScratchFolder folder;
  const std::string file = folder.Write("old.lib", OldLibrary("ZOLTLIBX.6"));
  TLibManager lib;
  lib.LoadForEditing(file);
  EXPECT_EQ(lib.Bytes(), UpgradedLibrary("ZOLTLIBX.6"));
  EXPECT_EQ(lib.GetLibFileName(), file);
  EXPECT_EQ(folder.Read("old.lib"), OldLibrary("ZOLTLIBX.6"));
}

TEST(TLibManagerUpgrade, OpeningADamagedLibraryLeavesTheManagerAsItWas) {
  TScratchFolder folder;
  TBytes damaged = OldLibrary("ZOLTLIBX.6");
  damaged.pop_back();
  const std::vector<std::pair<const char*, TBytes>> rows = {
      {"truncated last entry", damaged}, {"unknown tag", Concat({TagBytes("ZOLTLIBX.k"), test::BoxEntry("A")})},
      {"shorter than a tag", TagBytes("ZOLT")},
  };
  for (const auto& [edge, bytes] : rows) {
    TLibManager lib = test::Library(UpgradedLibrary("ZOLTLIBX.j"));
    EXPECT_THROW(lib.LoadForEditing(folder.Write("bad.lib", bytes)), EReadError) << edge;
    EXPECT_EQ(lib.Bytes(), UpgradedLibrary("ZOLTLIBX.j")) << edge;
  }
}

TEST(TLibManagerUpgrade, AnEmptyFileOpensAsAnEmptyLibrary) {
  TScratchFolder folder;
  TLibManager lib;
  lib.LoadForEditing(folder.Write("empty.lib", {}));
  EXPECT_EQ(lib.GetcmbShapesCount(), 0);
}

// ---------------------------------------------------------------------------
// "ZOLTLIB2.1"

// An old library: tag, entry count, then name, width, height and absolutely
// placed "XP.4" shapes per entry.
TBytes Zoltlib21(const std::vector<std::string>& names, const TBytes& trailer = {}) {
  test::TRecordBytes r;
  r.raw("ZOLTLIB2.1", 10).i32(static_cast<std::int32_t>(names.size()));
  for (const std::string& name : names) {
    r.str(name).i32(40).i32(20).i32(2);
    r.append(test::ShapeBytes("XP.4", test::Shape("TMyRectangle", name, 0, {{10, 10}, {50, 30}}, {30, 20})));
    r.append(test::ShapeBytes("XP.4", LinkPoint()));
  }
  return Concat({r.bytes, trailer});
}

TEST(TLibManagerOldFamily, EntriesAreConvertedToUnitCoordinates) {
  TScratchFolder folder;
  const std::string file = folder.Write("old.lib", Zoltlib21({"Valve", "Pump"}));
  EXPECT_TRUE(IsOLDZOLTLibFile(file));
  TLibManager lib;
  lib.LoadFromOldFile(file);
  auto entry = [](const std::string& name) {
    return test::EntryBytes(name, 40, 20, &kNoUserData,
                            {test::ShapeBytes("XP.j", Square(name)), test::ShapeBytes("XP.j", LinkPoint())});
  };
  EXPECT_EQ(lib.Bytes(), Concat({kTag, entry("Valve"), entry("Pump")}));
  EXPECT_EQ(lib.GetLibFileName(), file);

  TLibManager edited;
  edited.LoadForEditing(file);
  EXPECT_EQ(edited.Bytes(), lib.Bytes());
}

TEST(TLibManagerOldFamily, MalformedOldLibrariesAreRefusedWhole) {
  TScratchFolder folder;
  TBytes truncated = Zoltlib21({"Valve"});
  truncated.resize(truncated.size() - 3);
  const std::vector<std::pair<const char*, TBytes>> rows = {
      {"a name twice", Zoltlib21({"Valve", "Valve"})}, {"bytes after the last entry", Zoltlib21({"Valve"}, {0})},
      {"truncated", truncated}, {"entry count past the data", Concat({TagBytes("ZOLTLIB2.1"), {0xFF, 0xFF, 0, 0}})},
  };
  for (const auto& [edge, bytes] : rows) {
    TLibManager lib;
    lib.SetBytes(kTag);
    EXPECT_THROW(lib.LoadFromOldFile(folder.Write("bad.lib", bytes)), EReadError) << edge;
    EXPECT_EQ(lib.Bytes(), kTag) << edge;
  }
}

// ---------------------------------------------------------------------------
// Tags and the probes that tell library files apart

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
