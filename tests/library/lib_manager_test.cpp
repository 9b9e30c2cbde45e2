#include <gtest/gtest.h>

#include <cstring>
#include <filesystem>
#include <functional>
#include <sstream>
#include <string>
#include <vector>

#include "library/library_fixture.h"
#include "platform/canvas.h"
#include "shapes/shape_factory.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::Concat;
using test::Library;
using test::TagBytes;
using test::TBytes;
using test::TScratchFolder;

const TBytes kTag = TagBytes("ZOLTLIBX.j");

std::vector<TMyShape*> Pointers(const TCmbShape& entry) {
  std::vector<TMyShape*> shapes;
  for (const auto& s : entry.Shapes) shapes.push_back(s.get());
  return shapes;
}

// The points of a table cell: x and y after x and y.
TArrMyPoint PointsOf(const std::string& cell) {
  std::istringstream in(cell);
  TArrMyPoint points;
  for (TMyPoint p; in >> p.X >> p.Y;) points.push_back(p);
  return points;
}

// Bit-exact float comparison: the library must not drift in the last bits.
bool SameBits(const TMyPoint& a, const TMyPoint& b) { return std::memcmp(&a, &b, sizeof a) == 0; }

// ---------------------------------------------------------------------------
// Reading

// Names, sizes, user data and class tags come back byte for byte in the
// writing test below; here the coordinates, which that test cannot tell apart.
TEST(TLibManagerRead, AnEntryComesBackAtItsStoredSizeOrMovedAndScaledButItsLinkPoints) {
  struct Case { TCmbShapePlacement at; TArrMyPoint points; TMyPoint centre; };
  const TLibManager lib = Library(Concat({kTag, test::PumpEntry()}));
  for (const Case& c : {Case{{}, {{0, 0}, {40, 20}}, {20, 10}},
                        Case{{.Left = 10, .Top = 5, .Width = 4, .Height = 2}, {{10, 5}, {14, 7}}, {12, 6}}}) {
    const std::unique_ptr<TCmbShape> pump = lib.GetCmbShape("Pump", c.at);
    ASSERT_TRUE(pump);
    EXPECT_EQ(pump->Shapes[0]->Points, c.points);
    EXPECT_EQ(pump->Shapes[0]->CenterPoint, c.centre);
    EXPECT_EQ(pump->Shapes[1]->Points, (TArrMyPoint{{100, 200}}));
    EXPECT_EQ(pump->Shapes[1]->Owner(), pump.get());
  }
}

TEST(TLibManagerRead, TheWalkFindsEveryEntryInOrder) {
  const TBytes a = test::BoxEntry("A"), b = test::BoxEntry("B");
  const TLibManager lib = Library(Concat({kTag, a, b}));
  EXPECT_EQ(lib.GetcmbShapesCount(), 2);
  EXPECT_EQ(lib.GetCmbShapesNameByID(0), "A");
  EXPECT_EQ(lib.GetCmbShapesNameByID(1), "B");
  EXPECT_EQ(lib.GetCmbShapesNameByID(2), "");
  EXPECT_EQ(lib.GetCmbShapesNameByID(-1), "");
  std::int64_t position = 0, size = 0;
  ASSERT_TRUE(lib.GetExistShape("B", position, size));
  EXPECT_EQ(position, static_cast<std::int64_t>(kTag.size() + a.size()));
  EXPECT_EQ(size, static_cast<std::int64_t>(b.size()));
  EXPECT_FALSE(lib.GetExistShape("b", position, size));  // names compare exactly
  EXPECT_EQ(lib.GetCmbShape("C"), nullptr);
}

TEST(TLibManagerRead, TheReadersForOlderTagsReadTheirLayoutWhateverTheLibraryTag) {
  using TReader = std::unique_ptr<TCmbShape> (TLibManager::*)(const std::string&, const TCmbShapePlacement&) const;
  const std::vector<std::pair<TReader, const char*>> rows = {
      {&TLibManager::GetCmbShapeforX8, "XP.8"}, {&TLibManager::GetCmbShapeforX9, "XP.9"},
      {&TLibManager::GetCmbShapeforXA, "XP.a"}, {&TLibManager::GetCmbShapeforXE, "XP.e"},
      {&TLibManager::GetCmbShapeforXH, "XP.h"}, {&TLibManager::GetCmbShapeforXI, "XP.i"},
  };
  for (const auto& [reader, version] : rows) {
    const TBytes entry = test::EntryBytes(
        "E", 2, 2, nullptr, {test::ShapeBytes(version, test::Shape("TMyRectangle", "R", 0, {{0, 0}, {1, 1}}, {}))});
    const TLibManager lib = Library(Concat({kTag, entry}));
    EXPECT_THROW(lib.GetCmbShape("E"), EReadError) << version;  // as ".j" it lacks the user data section
    const std::unique_ptr<TCmbShape> read = (lib.*reader)("E", {});
    ASSERT_TRUE(read) << version;
    EXPECT_EQ(read->Shapes[0]->Points, (TArrMyPoint{{0, 0}, {2, 2}})) << version;
  }
}

// ---------------------------------------------------------------------------
// Writing

TEST(TLibManagerWrite, ShapesReadBackAndAppendedGiveTheHandWrittenBytesTagFirst) {
  const TLibManager source = Library(Concat({kTag, test::PumpEntry()}));
  // Anywhere on the drawing: the entry stores the offsets from its box.
  const std::unique_ptr<TCmbShape> pump = source.GetCmbShape("Pump", {.Left = 33, .Top = 7});
  TLibManager target;  // empty: the tag comes first
  ASSERT_TRUE(target.AppendNewShape("Pump", Pointers(*pump), pump->UserData, pump->Width, pump->Height));
  EXPECT_EQ(target.Bytes(), source.Bytes());
  EXPECT_EQ(target.GetLibTag(), "ZOLTLIBX.j");
}

TEST(TLibManagerWrite, UnitCoordinatesFollowTheRoundedBoxOfAllButLinkPoints) {
  const auto rows = test::DataTable("libraries/unit-coordinates.txt");
  ASSERT_EQ(rows.size(), 5u);
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(row.at(0));
    const bool withLinkPoint = row.at(3) == "yes";
    TCmbShape drawing("XP.j", nullptr);
    std::vector<TMyShape*> shapes;
    for (const char* kind : {"TMyRectangle", "TMyLinkPoint"}) {
      if (kind == std::string("TMyLinkPoint") && !withLinkPoint) continue;
      drawing.Shapes.push_back(CreateShapeByClassName(kind, &drawing));
      shapes.push_back(drawing.Shapes.back().get());
    }
    shapes[0]->Points = PointsOf(row.at(1));
    shapes[0]->CenterPoint = PointsOf(row.at(2)).at(0);
    if (withLinkPoint) shapes[1]->Points = {{900, -900}};
    TLibManager lib;
    ASSERT_TRUE(lib.AppendNewShape("E", shapes, {}, 0, 0));
    const std::unique_ptr<TCmbShape> stored = lib.GetCmbShape("E", kAsStored);
    EXPECT_EQ(stored->Shapes[0]->Points, PointsOf(row.at(4)));
    EXPECT_EQ(stored->Shapes[0]->CenterPoint, PointsOf(row.at(5)).at(0));
    if (withLinkPoint) {
      EXPECT_EQ(stored->Shapes[1]->Points, (TArrMyPoint{{900, -900}}));
    }
  }
}

TEST(TLibManagerWrite, TheCallersShapesKeepTheirExactCoordinates) {
  TCmbShape drawing("XP.j", nullptr);
  drawing.Shapes.push_back(CreateShapeByClassName("TMyPolygon", &drawing));
  TMyShape& shape = *drawing.Shapes[0];
  shape.Points = {{0.1f, 0.7f}, {13.3f, 2.9f}, {7.7f, 11.1f}};  // unit round trips would move these
  shape.LinkPoints = {{0.3f, 0.3f}};
  shape.CenterPoint = {6.6f, 5.5f};
  const TArrMyPoint points = shape.Points;
  TLibManager lib;
  ASSERT_TRUE(lib.AppendNewShape("P", {&shape}, {}, 13, 10));
  for (std::size_t i = 0; i < points.size(); ++i) EXPECT_TRUE(SameBits(shape.Points[i], points[i])) << i;
  EXPECT_TRUE(SameBits(shape.LinkPoints[0], {0.3f, 0.3f}));
  EXPECT_TRUE(SameBits(shape.CenterPoint, {6.6f, 5.5f}));
}

// ---------------------------------------------------------------------------
// Edits keep every other entry byte for byte

class TLibManagerEdit : public ::testing::Test {
 protected:
  const TBytes a = test::BoxEntry("A");
  const TBytes b = test::BoxEntry("B");
  const TBytes c = test::BoxEntry("C");
  const TBytes n = test::BoxEntry("N");
  TLibManager lib = Library(Concat({kTag, a, b, c}));

  // N's shapes, to be written by the library.
  std::unique_ptr<TCmbShape> NewShapes() const { return Library(Concat({kTag, n})).GetCmbShape("N"); }
  // Entry bytes with the name replaced.
  static TBytes Renamed(const TBytes& entry, const std::string& name) {
    const std::size_t oldName = 1 + entry[0];
    test::TRecordBytes renamed;
    renamed.u8(static_cast<std::uint8_t>(name.size())).raw(name.data(), name.size());
    return renamed.raw(entry.data() + oldName, entry.size() - oldName).bytes;
  }
};

TEST_F(TLibManagerEdit, MovePutsAnEntryBeforeAnother) {
  ASSERT_TRUE(lib.MoveCmbShapeBeforeByName("C", "A"));
  EXPECT_EQ(lib.Bytes(), Concat({kTag, c, a, b}));
  ASSERT_TRUE(lib.MoveCmbShapeBeforeByName("C", "B"));
  EXPECT_EQ(lib.Bytes(), Concat({kTag, a, c, b}));
}

TEST_F(TLibManagerEdit, InsertAndReplaceWriteInPlace) {
  const std::unique_ptr<TCmbShape> shapes = NewShapes();
  std::int64_t position = 0, size = 0;
  ASSERT_TRUE(lib.GetExistShape("B", position, size));
  ASSERT_TRUE(lib.InsertNewShape(position, "N", Pointers(*shapes), {}, 10, 10));
  EXPECT_EQ(lib.Bytes(), Concat({kTag, a, n, b, c}));
  ASSERT_TRUE(lib.RepalceExistShape("B", Pointers(*shapes), {}, 10, 10));
  EXPECT_EQ(lib.Bytes(), Concat({kTag, a, n, Renamed(n, "B"), c}));
  ASSERT_TRUE(lib.AppendNewShape("Z", Pointers(*shapes), {}, 10, 10));
  EXPECT_EQ(lib.Bytes(), Concat({kTag, a, n, Renamed(n, "B"), c, Renamed(n, "Z")}));
}

TEST_F(TLibManagerEdit, RefusedEditsChangeNothing) {
  const std::unique_ptr<TCmbShape> shapes = NewShapes();
  const std::vector<TMyShape*> s = Pointers(*shapes);
  const std::vector<std::pair<const char*, std::function<bool()>>> rows = {
      {"append a taken name", [&] { return lib.AppendNewShape("A", s, {}, 1, 1); }},
      {"append an empty name", [&] { return lib.AppendNewShape("", s, {}, 1, 1); }},
      {"append a 256-byte name", [&] { return lib.AppendNewShape(std::string(256, 'x'), s, {}, 1, 1); }},
      {"insert inside an entry", [&] { return lib.InsertNewShape(11, "X", s, {}, 1, 1); }},
      {"insert past the end", [&] { return lib.InsertNewShape(100000, "X", s, {}, 1, 1); }},
      {"delete an unknown name", [&] { return lib.DeleteShape("X"); }},
      {"replace an unknown name", [&] { return lib.RepalceExistShape("X", s, {}, 1, 1); }},
      {"rename an unknown name", [&] { return lib.RenameCmbShapeName("X", "Y"); }},
      {"rename onto a taken name", [&] { return lib.RenameCmbShapeName("A", "B"); }},
      {"rename to an empty name", [&] { return lib.RenameCmbShapeName("A", ""); }},
      {"move before itself", [&] { return lib.MoveCmbShapeBeforeByName("A", "A"); }},
      {"move an unknown name", [&] { return lib.MoveCmbShapeBeforeByName("X", "A"); }},
      {"move before an unknown name", [&] { return lib.MoveCmbShapeBeforeByName("A", "X"); }},
  };
  const TBytes before = lib.Bytes();
  for (const auto& [edge, edit] : rows) {
    EXPECT_FALSE(edit()) << edge;
    EXPECT_EQ(lib.Bytes(), before) << edge;
  }
}

// ---------------------------------------------------------------------------
// The tag and the file

TEST(TLibManagerFile, SavingAnOlderLibraryRewritesOnlyTheTag) {
  TScratchFolder folder;
  const TBytes entry = test::EntryBytes("Old", 1, 1, nullptr,
                                        {test::ShapeBytes("XP.9", test::Shape("TMyRectangle", "R", 0, {{0, 0}}, {}))});
  TLibManager lib;
  lib.LoadFromFile(folder.Write("old.lib", Concat({TagBytes("ZOLTLIBX.9"), entry})));
  EXPECT_EQ(lib.GetLibFileName(), folder.File("old.lib"));
  lib.SaveToFile(folder.File("old.lib"));
  EXPECT_EQ(folder.Read("old.lib"), Concat({kTag, entry}));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.File("")), {}), 1) << "a temporary file was left";
}

TEST(TLibManagerFile, AFailedSaveLeavesTheOldFileWhole) {
  TScratchFolder folder;
  // Beside a 250-byte name the temporary file's name is longer than the file
  // system allows, whatever the permissions, so the save must fail.
  const std::string name = std::string(246, 'l') + ".lib";
  const std::string file = folder.Write(name, TagBytes("previous!!"));
  TLibManager lib = Library(Concat({kTag, test::BoxEntry("A")}));
  EXPECT_THROW(lib.SaveToFile(file), EStreamError);
  EXPECT_EQ(folder.Read(name), TagBytes("previous!!"));
  EXPECT_EQ(std::distance(std::filesystem::directory_iterator(folder.File("")), {}), 1);
}

// ---------------------------------------------------------------------------
// Preview

TEST(TLibManagerPreview, TheEntryIsFittedAndCentredOnWhite) {
  const TLibManager lib = Library(Concat({kTag, test::BoxEntry("A")}));  // a black 10 x 10 square
  TBitmap preview = lib.GetCmbShapeImage("A", 40, 20);
  ASSERT_EQ(preview.Width(), 40);
  ASSERT_EQ(preview.Height(), 20);
  // 12 x 12 (the height less the margins) from (14, 4).
  EXPECT_EQ(preview.Canvas().GetPixel(20, 10), clBlack);
  EXPECT_EQ(preview.Canvas().GetPixel(15, 5), clBlack);
  EXPECT_EQ(preview.Canvas().GetPixel(12, 10), clWhite);
  // No entry or no size: an empty bitmap.
  EXPECT_TRUE(lib.GetCmbShapeImage("B", 40, 20).Empty());
  EXPECT_TRUE(lib.GetCmbShapeImage("A", 0, 20).Empty());
  EXPECT_TRUE(lib.GetCmbShapeImage("A", 40, -1).Empty());
}

}  // namespace
}  // namespace lumatrex
