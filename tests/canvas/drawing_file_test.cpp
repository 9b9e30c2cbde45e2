// Drawing files: the writer's exact bytes, the files of every version built
// from the format tables (their fields are pinned by the lumatrex tool's
// dumps of them), round trips of every class tag to the same bytes, edges of
// loading, blocks, files and atomic saves, the modified flag;
// malformed input (truncated, corrupted, hostile) failing with our errors and
// leaving the canvas exactly as it was; and the values that must survive
// opening and saving byte for byte.
#include <gtest/gtest.h>

#include <QDir>
#include <QTemporaryDir>
#include <cstring>
#include <functional>
#include <limits>

#include "canvas/drawing_samples.h"

namespace lumatrex {
namespace {

using namespace test;

// ---------------------------------------------------------------------------
// Writing

TEST(TMyCADDrawingWriter, WritesTheHeaderByteForByte) {
  TMyCAD cad;
  cad.resize(800, 600);
  cad.SetZoom(2);
  cad.SetColorOfBackGround(0x123456);
  cad.SetTheUNIT(cm);
  cad.SetBkBitmapMode(Stretch);
  cad.SetRatio(0.25);
  cad.SetTag(-7);
  cad.UserData().AddKeyandValue("k", "v");
  cad.NewLayer("Plan", false);
  // Zoom 2 stores 400 x 300; the rest as set, Plan current and hidden.
  ExpectGoldenFile(SavedText(cad), "canvas/written-header.zlt");
}

TEST(TMyCADDrawingWriter, StoresTheSizeAtZoomOneRoundedHalfToEvenAndLoadsItAsStored) {
  struct TRow {
    const char* name;
    std::int32_t side;
    double zoom;
    std::int32_t stored;
  };
  const TRow rows[] = {{"a half rounds down to even", 801, 2, 400},
                       {"a half rounds up to even", 803, 2, 402},
                       {"zoom 0.5 doubles", 300, 0.5, 600}};
  for (const TRow& row : rows) {
    SCOPED_TRACE(row.name);
    TMyCAD cad;
    cad.resize(row.side, row.side);
    cad.SetZoom(row.zoom);
    const TBytes saved = Saved(cad);
    std::int32_t stored[2];
    std::memcpy(stored, saved.data() + 64 + 64 + 16 + 10 + 64 + 4, sizeof stored);  // creator to reserved, colour
    EXPECT_EQ(stored[0], row.stored);
    EXPECT_EQ(stored[1], row.stored);
    // Loading sets the control to the stored size, whatever the zoom.
    ASSERT_TRUE(Load(cad, saved));
    EXPECT_EQ(cad.Width(), row.stored);
    EXPECT_EQ(cad.Height(), row.stored);
  }
}

TEST(TMyCADDrawingWriter, StoresTheLayerCountModulo256AndThatManyLayers) {
  TMyCAD cad;
  cad.resize(100, 50);
  for (int i = 1; i <= 256; ++i) cad.NewLayer("L" + std::to_string(i), true);
  // The count wraps to 1: only Layer0 is written, with 256 the current layer.
  ExpectGoldenFile(SavedText(cad), "canvas/written-257-layers.zlt");
}

TEST(TMyCADDrawingWriter, ALayerNameOf300BytesIsStoredWithLength300And44BytesAndReadsBackAsThose) {
  TMyCAD cad;
  cad.SetLayerNameByID(0, std::string(300, 'n'));
  // The layer's length field says 300, and 44 bytes of the name follow.
  ExpectGoldenFile(SavedText(cad), "canvas/written-300-byte-layer-name.zlt");
  ASSERT_TRUE(Load(cad, Saved(cad)));
  EXPECT_EQ(cad.GetLayerNameByID(0), std::string(44, 'n'));
}

// ---------------------------------------------------------------------------
// Reading every version

class TGoldenDrawing : public ::testing::TestWithParam<std::string> {};

TEST_P(TGoldenDrawing, FileHoldsExactlyWhatTheTablesSay) {
  EXPECT_EQ(FileBytes(GoldenPath(GetParam())), GoldenDrawing(GetParam()));
}

// Every field read is pinned by the lumatrex tool's dumps of these files;
// here what a load does to the canvas beyond the fields.
TEST_P(TGoldenDrawing, LoadReplacesTheDrawingAndClearsItsHistory) {
  TMyCAD cad;
  FillWithOldDrawing(cad);
  cad.SetModified(true);
  cad.PushtoUndoRedoShapeList({cad.GetShapeByNo(0)}, ACT_CHANGE);
  cad.SelectAllShapes();
  ASSERT_TRUE(cad.LoadFromFile(GoldenPath(GetParam())));
  TBitmap bk = cad.GetBkBitmap();
  EXPECT_EQ(std::make_pair(bk.Canvas().GetPixel(0, 0), bk.Canvas().GetPixel(1, 0)), std::make_pair(clRed, clBlue));
  EXPECT_EQ(cad.GetShapesCount(), 4);
  // Next ids follow the highest ids read.
  EXPECT_EQ(cad.GetNextShapeId(), 10);
  EXPECT_EQ(cad.NewLayer("next", true), 8);
  EXPECT_FALSE(cad.GetModified());
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
  // The drawing keeps the tag it was read with.
  EXPECT_EQ(cad.GetDiskFileVersion(), GetParam());
}

INSTANTIATE_TEST_SUITE_P(EveryVersion, TGoldenDrawing, ::testing::ValuesIn(kVersions),
                         [](const auto& info) { return "XP_" + info.param.substr(3); });

// ---------------------------------------------------------------------------
// Loading: round trips and edges

// A rectangle record whose font size (after its height, -11) is the
// smallest int32.
TBytes RecordWithTheSmallestFontSize() {
  TBytes record = BaseRecord("XP.j").bytes;
  TRecordBytes heightAndSize;
  heightAndSize.i32(-11).i32(8);
  const auto at = std::search(record.begin(), record.end(), heightAndSize.bytes.begin(), heightAndSize.bytes.end());
  const std::int32_t size = std::numeric_limits<std::int32_t>::min();
  if (at != record.end()) std::memcpy(&*(at + 4), &size, sizeof size);
  return record;
}

TEST(TMyCADDrawingLoad, EdgesOfTheHeaderAndRecordsLoadAsTheyMust) {
  struct Case {
    const char* name;
    std::function<void(THeaderFields&)> header;
    std::vector<TEntry> shapes;
    std::function<void(TMyCAD&)> check;
  };
  const Case cases[] = {
      {"one layer, no shapes, a negative bitmap count: next ids follow",
       [](THeaderFields& h) {
         h.layers = {{"Only", 5, 1}};
         h.bkBitmap = {};
         h.bkBitmapSize = -1;
       },
       {},
       [](TMyCAD& cad) {
         EXPECT_TRUE(cad.GetBkBitmap().Empty());
         EXPECT_EQ(cad.GetShapesCount(), 0);
         EXPECT_EQ(cad.GetNextShapeId(), 1);
         EXPECT_EQ(cad.NewLayer("next", true), 6);
       }},
      {"a bitmap count of zero holds no bitmap", [](THeaderFields& h) { h.bkBitmap = {};
         h.bkBitmapSize = 0; },
       GoldenShapes("XP.j"),
       [](TMyCAD& cad) {
         EXPECT_TRUE(cad.GetBkBitmap().Empty());
         EXPECT_EQ(cad.GetShapesCount(), 4);
       }},
      {"the control size is clamped to what its buffers may hold",
       [](THeaderFields& h) { h.width = -1;
         h.height = 20000; },  // a control of 5000 saved at zoom 0.25
       {}, [](TMyCAD& cad) { EXPECT_EQ(std::make_pair(cad.Width(), cad.Height()), std::make_pair(0, 16384)); }},
      {"only the low byte of the background mode counts", [](THeaderFields& h) { h.bkMode = 0x7F000003; }, {},
       [](TMyCAD& cad) { EXPECT_EQ(cad.GetBkBitmapMode(), LeftTop); }},
      {"a font size at the int32 limit has its height clamped", [](THeaderFields&) {},
       {{"TMyRectangle", RecordWithTheSmallestFontSize()}},
       [](TMyCAD& cad) { EXPECT_EQ(cad.GetShapeByNo(0)->Font().Height(), std::numeric_limits<std::int32_t>::max()); }},
      {"fields older records lack take the loading canvas's defaults", [](THeaderFields& h) { h.version = "XP.h"; },
       GoldenShapes("XP.h"),
       [](TMyCAD& cad) {
         EXPECT_EQ(cad.GetShapeByNo(0)->GetPenStyleJoinType(), psjtMITER);
         EXPECT_FALSE(cad.GetShapeByNo(0)->GetRotateEnable());
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    FillWithOldDrawing(cad);
    cad.SetBkBitmap(SmallPicture());
    cad.SetPenStyleJoinType(psjtMITER);
    cad.SetRotateEnable(false);
    THeaderFields header;
    c.header(header);
    ASSERT_TRUE(Load(cad, Drawing(header, c.shapes)));
    c.check(cad);
  }
}

// ---------------------------------------------------------------------------
// Blocks

// A drawing of 1000 x 100 built from the format tables: a group of two
// members and a connector between them, on layers 3 and 7, with ids far from
// the canvas's (the lumatrex tool's tests dump it).
const char* const kBlock = "drawings/block.zlt";

TEST(TMyCADDrawingBlock, MergeAppendsTheShapesWithNewIdsAndReferencesOnTheCurrentLayerSelected) {
  TMyCAD cad;
  FillWithOldDrawing(cad);  // two shapes, layers 0 and 1 (current)
  cad.SetModified(false);
  TMemoryStream stream(FileBytes(DataPath(kBlock)));
  ASSERT_TRUE(cad.LoadFromStreamforBlock(stream, Merge));
  // Ids 2 to 5 after the canvas's own, references renumbered, all on layer 1.
  ExpectGoldenFile(DocumentText(cad), "canvas/merged-block.txt");
  for (std::int32_t no = 2; no < cad.GetShapesCount(); ++no) EXPECT_EQ(cad.GetShapeByNo(no)->Owner(), &cad);
  EXPECT_EQ(cad.GetNextShapeId(), 6);
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{cad.GetShapeByNo(4), cad.GetShapeByNo(5)}));
  // The control only grows; the background and its placement are the
  // block's, every other setting stays.
  EXPECT_EQ((std::make_pair(cad.Width(), cad.Height())), (std::make_pair(1000, 240)));
  EXPECT_EQ(cad.GetBkBitmap().Width(), 2);
  EXPECT_EQ(cad.GetBkBitmapMode(), Stretch);
  EXPECT_EQ(cad.GetRatio(), 0.25);
  EXPECT_EQ(cad.GetColorOfBackGround(), clGreen);
  EXPECT_EQ(cad.GetTag(), -1);
  EXPECT_EQ(cad.Layers().size(), 2u);
  EXPECT_TRUE(cad.GetModified());
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
}

TEST(TMyCADDrawingBlock, ImportAddsTheExtraLayersAndMatchesLayersByPosition) {
  TMyCAD cad;  // one layer, "Layer0"
  cad.SetBkBitmap(SmallPicture());
  THeaderFields header;  // layers Layer0 (0), Plan (3), Notes (7)
  header.bkBitmap = {};
  const auto on = [](std::int32_t layer) { return TEntry{"TMyRectangle", BaseRecord("XP.j", {.layer = layer}).bytes}; };
  TMemoryStream stream(Drawing(header, {on(7), on(3), on(0), on(99)}));
  ASSERT_TRUE(cad.LoadFromStreamforBlock(stream, Import));
  EXPECT_EQ(cad.Layers(),
            (std::vector<LayerRec>{{"Layer0", 0, true}, {"BlockPlan", 1, true}, {"BlockNotes", 2, true}}));
  std::vector<std::int32_t> layers;
  for (std::int32_t no = 0; no < cad.GetShapesCount(); ++no) layers.push_back(cad.GetShapeByNo(no)->LayerId);
  // Layer 99 is not in the block: the shape goes on the current layer, the
  // last one added.
  EXPECT_EQ(layers, (std::vector<std::int32_t>{2, 1, 0, 2}));
  // A block without a background clears the drawing's.
  EXPECT_TRUE(cad.GetBkBitmap().Empty());
}

// ---------------------------------------------------------------------------
// Files

class TMyCADDrawingFile : public ::testing::Test {
 protected:
  std::string Path(const std::string& name) const {
    return QDir(dir_.path()).filePath(QString::fromStdString(name)).toStdString();
  }
  QStringList Entries() const { return QDir(dir_.path()).entryList(QDir::Files | QDir::Hidden); }

 private:
  QTemporaryDir dir_;
};

// Loaded from its file and saved again, each drawing gives the same bytes:
// the one of every class tag, and one with what used to change on a round
// trip (shapes turned off the middle of their box, whose centre is
// recomputed on reading, and a picture whose fourth byte is alpha). Loading
// and saving a file clear the modified flag.
TEST_F(TMyCADDrawingFile, DrawingsLoadAndSaveToTheSameBytes) {
  for (const std::string golden : {"drawings/every-kind.zlt", "drawings/turned-shapes.zlt"}) {
    SCOPED_TRACE(golden);
    TMyCAD cad;
    cad.SetModified(true);
    ASSERT_TRUE(cad.LoadFromFile(DataPath(golden)));
    EXPECT_FALSE(cad.GetModified());
    for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i)
      EXPECT_EQ(cad.GetShapeByNo(i)->Owner(), &cad);  // they belong to the canvas they were loaded into
    cad.SetModified(true);
    ASSERT_TRUE(cad.SaveToFile(Path("a.zlt")));
    EXPECT_FALSE(cad.GetModified());
    EXPECT_TRUE(TMyCAD::IsZOLTFile(Path("a.zlt")));
    ExpectGoldenFile(ReadFileBytes(Path("a.zlt")), golden);
  }
}

TEST_F(TMyCADDrawingFile, AFileThatIsNoDrawingIsRefusedWithoutTouchingTheCanvas) {
  WriteFileBytes(Path("text.txt"), TBytes(100, 'x'));
  WriteFileBytes(Path("short.zlt"), TBytes(63, ' '));
  TMyCAD cad;
  FillWithOldDrawing(cad);
  const TBytes before = Saved(cad);
  EXPECT_FALSE(TMyCAD::IsZOLTFile(Path("text.txt")));
  EXPECT_FALSE(cad.LoadFromFile(Path("text.txt")));
  EXPECT_FALSE(cad.AddBlockfromZOLTFile(Path("text.txt"), Merge));
  EXPECT_THROW(TMyCAD::IsZOLTFile(Path("short.zlt")), EReadError);
  EXPECT_THROW(cad.LoadFromFile(Path("short.zlt")), EReadError);
  EXPECT_THROW(cad.LoadFromFile(Path("missing.zlt")), EFOpenError);
  EXPECT_EQ(Saved(cad), before);
}

// A rectangle whose record cannot be written, as on a full disk.
class TUnwritableShape : public TMyRectangle {
 public:
  using TMyRectangle::TMyRectangle;
  void SaveToStream(TStream& stream) const override {
    TMyRectangle::SaveToStream(stream);
    throw EWriteError("no space left");
  }
};

// The drawing goes to disk while it is written: megabytes of it are there
// when the last record fails.
TEST_F(TMyCADDrawingFile, AFailedSaveLeavesTheExistingFileAndNoTemporaryFile) {
  WriteFileBytes(Path("old.zlt"), GoldenDrawing("XP.j"));
  TMyCAD cad;
  for (int i = 0; i < 10'000; ++i) cad.AddShapeByCode2("TMyRectangle", "", {{0, 0}, {9, 0}, {9, 9}, {0, 9}}, 0);
  cad.AddShape(std::make_unique<TUnwritableShape>(&cad));
  EXPECT_THROW(cad.SaveToFile(Path("old.zlt")), EWriteError);
  EXPECT_TRUE(cad.GetModified());
  EXPECT_EQ(FileBytes(Path("old.zlt")), GoldenDrawing("XP.j"));
  EXPECT_EQ(Entries(), QStringList{"old.zlt"});
}

TEST_F(TMyCADDrawingFile, WhenTheTemporaryFileCannotBeNamedTheExistingFileStays) {
  // The temporary file's name is the target's plus a suffix: beside a name
  // of 250 bytes it exceeds the file system's 255, whatever the permissions.
  // Depending on the system that fails on creating the file (EFOpenError) or
  // on naming it at the end (EWriteError).
  const std::string name = std::string(246, 'd') + ".zlt";
  WriteFileBytes(Path(name), GoldenDrawing("XP.j"));
  TMyCAD cad;
  EXPECT_THROW(cad.SaveToFile(Path(name)), EStreamError);
  EXPECT_EQ(FileBytes(Path(name)), GoldenDrawing("XP.j"));
  EXPECT_EQ(Entries(), QStringList{QString::fromStdString(name)});
}

// ---------------------------------------------------------------------------
// The modified flag

// Loading and saving to a file clear it, a failed load keeps it (both checked
// above and below); saving to a stream leaves it.
TEST(TMyCADModified, AddingAndDeletingSetItAndSavingToAStreamLeavesIt) {
  TMyCAD cad;
  EXPECT_FALSE(cad.GetModified());
  cad.AddShapeByCode2("TMyRectangle", "", Box(0, 0, 9, 9), 0);
  EXPECT_TRUE(cad.GetModified());
  const TBytes saved = Saved(cad);
  EXPECT_TRUE(cad.GetModified());
  ASSERT_TRUE(Load(cad, saved));
  EXPECT_TRUE(cad.DeleteShapeById(cad.GetShapeByNo(0)->ShapeId, false));
  EXPECT_TRUE(cad.GetModified());
  ASSERT_TRUE(Load(cad, saved));
  cad.DeleteAllShapes();
  EXPECT_TRUE(cad.GetModified());
}

// ---------------------------------------------------------------------------
// Malformed input

TEST(TMyCADDrawingMalformed, EveryTruncationFailsWithOurErrorAndLeavesTheCanvasAsItWas) {
  // Our own output with every class tag, and the oldest layouts: points
  // without coordinates ("XP.2") and 80-bit floats ("XP.5").
  const std::vector<std::pair<std::string, TBytes>> seeds = {
      {"every class tag", FileBytes(EveryKindPath())}, {"XP.2", GoldenDrawing("XP.2")}, {"XP.5", GoldenDrawing("XP.5")}};
  TMyCAD cad;
  FillWithOldDrawing(cad);
  cad.SetModified(true);
  const TBytes before = Saved(cad);
  for (const auto& [name, seed] : seeds) {
    SCOPED_TRACE(name);
    for (std::size_t n = 0; n < seed.size(); ++n) {
      TMemoryStream prefix(TBytes(seed.begin(), seed.begin() + static_cast<std::ptrdiff_t>(n)));
      try {
        cad.LoadFromStream(prefix);
        FAIL() << "a prefix of " << n << " bytes loaded";
      } catch (const EReadError& e) {
        ASSERT_LE(e.Offset(), static_cast<std::int64_t>(n)) << e.what();
      }
      ASSERT_EQ(Saved(cad), before) << "after a prefix of " << n << " bytes";
      ASSERT_TRUE(cad.GetModified());
    }
  }
}

// The hostile drawings and what their errors must say are listed in
// tests/data/malformed/outcomes.txt.
TEST(TMyCADDrawingMalformed, HostileFieldsFailWithAnErrorNamingThemAndChangeNothing) {
  TMyCAD cad;
  FillWithOldDrawing(cad);
  const TBytes before = Saved(cad);
  const auto rows = DataTable("malformed/outcomes.txt");
  EXPECT_EQ(rows.size(), 26u);
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(row.at(0) + ": " + row.at(3));
    TMemoryStream stream(FileBytes(DataPath("malformed/" + row[0])));
    try {
      cad.LoadFromStream(stream);
      ADD_FAILURE() << "loaded";
    } catch (const EStreamFormatError& e) {
      EXPECT_NE(std::string(e.what()).find(row[1]), std::string::npos) << e.what();
      EXPECT_TRUE(row[2] == "-" || e.Offset() == std::stoll(row[2])) << "at " << e.Offset();
    }
    EXPECT_EQ(Saved(cad), before);
  }
}

TEST(TMyCADDrawingBlock, AFailedBlockChangesNothing) {
  TMyCAD cad;
  FillWithOldDrawing(cad);
  const TBytes before = Saved(cad);
  TBytes block = FileBytes(DataPath(kBlock));
  block.pop_back();
  TMemoryStream stream(block);
  EXPECT_THROW(cad.LoadFromStreamforBlock(stream, Import), EReadError);
  EXPECT_EQ(Saved(cad), before);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
}

// ---------------------------------------------------------------------------
// Fidelity

// A drawing in the form our writer gives (layer flags 0 or 1, no bytes a
// reader ignores) holding the values that used to change on a round trip: a
// pen width of 0 and a name that is not UTF-8.
TBytes DrawingWithFragileValues(const std::string& v) {
  THeaderFields header;
  header.version = v;
  header.layers = {{"Layer0", 0, 1}, {"Plan", 3, 0}};
  std::vector<TEntry> shapes;
  const TArrMyPoint points = Box(5, 5, 25, 15);
  shapes.push_back({"TMyRectangle", BaseRecord(v, {.name = "\xff\xfe\xc3(", .id = 11, .points = points, .penWidth = 0}).bytes});
  return Drawing(header, shapes);
}

// Every version is written as the current one; what is written, opened and
// saved again, must come back byte for byte.
TEST(TMyCADDrawingFidelity, OpenThenSaveKeepsEveryByteOfEveryVersion) {
  std::vector<std::pair<std::string, TBytes>> drawings;
  for (const std::string& v : kVersions) drawings.emplace_back(v, DrawingWithFragileValues(v));
  for (const auto& [name, file] : drawings) {
    SCOPED_TRACE(name);
    TMyCAD cad;
    ASSERT_TRUE(Load(cad, file));
    const TBytes saved = Saved(cad);
    TMyCAD again;
    ASSERT_TRUE(Load(again, saved));
    EXPECT_EQ(Saved(again), saved);
    const TMyShape& fragile = *cad.GetShapeByNo(0);
    EXPECT_EQ(fragile.GetName(), "\xff\xfe\xc3(");
    EXPECT_EQ(fragile.Pen().StoredWidth(), 0);
    EXPECT_EQ(fragile.Pen().Width(), 1) << "a pen of width 0 draws one pixel wide";
  }
}

TEST(TMyCADDrawingFidelity, APictureAboveTheLimitIsRefusedWithAZoomThatFits) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  AddBox(cad, 5e6f, 5e6f, 5e6f + 10, 5e6f + 10);
  TImageExportOptions options;
  options.MaxPixels = 40000;
  std::string message;
  try {
    cad.RenderToBitmap(options);
    FAIL() << "rendered";
  } catch (const EPictureTooLarge& e) {
    message = e.what();
  }
  const std::string hint = "lower the zoom to ";
  ASSERT_NE(message.find(hint), std::string::npos) << message;
  EXPECT_NE(message.find(" x "), std::string::npos) << message;
  EXPECT_EQ(cad.GetZoom(), 1.0);
  // The zoom named in the message is one that works.
  options.Zoom = std::stod(message.substr(message.find(hint) + hint.size()));
  const TBitmap picture = cad.RenderToBitmap(options);
  EXPECT_LE(std::int64_t{picture.Width()} * picture.Height(), options.MaxPixels);
}

}  // namespace
}  // namespace lumatrex
