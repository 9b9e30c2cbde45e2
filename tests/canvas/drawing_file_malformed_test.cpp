// Malformed drawings: truncated, corrupted and hostile input must fail with
// our errors (EReadError, EStreamFormatError naming offset and field) and
// leave the canvas exactly as it was.
#include <gtest/gtest.h>

#include "canvas/drawing_samples.h"

namespace lumatrex {
namespace {

using namespace test;

// ---------------------------------------------------------------------------
// Malformed input

TEST(TMyCADDrawingMalformed, EveryTruncationFailsWithOurErrorAndLeavesTheCanvasAsItWas) {
  TMyCAD source;
  BuildEveryKind(source);
  // Our own output with every class tag, and the oldest layouts: points
  // without coordinates ("XP.2") and 80-bit floats ("XP.5").
  const std::vector<std::pair<std::string, TBytes>> seeds = {
      {"every class tag", Saved(source)}, {"XP.2", GoldenDrawing("XP.2")}, {"XP.5", GoldenDrawing("XP.5")}};
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

struct TMalformed {
  const char* name;  // the edge it probes
  TBytes bytes;
  std::string field;  // what the error must name
};

std::vector<TMalformed> MalformedDrawings() {
  const auto with = [](auto change) {
    THeaderFields header;
    std::vector<TEntry> shapes = GoldenShapes("XP.j");
    change(header, shapes);
    return Drawing(header, shapes);
  };
  using THeader = THeaderFields&;
  using TShapes = std::vector<TEntry>&;
  const auto record = [](auto build) {
    TRecordBytes r;
    build(r);
    return r.bytes;
  };
  // "XP.2" records store no coordinates: only the count bounds the points.
  const auto xp2 = [](std::vector<std::int32_t> pointCounts) {
    THeaderFields header;
    header.version = "XP.2";
    std::vector<TEntry> shapes;
    for (const std::int32_t count : pointCounts)
      shapes.push_back(
          {"TMyPolyLine", BaseRecord("XP.2", {.points = TArrMyPoint(static_cast<std::size_t>(count))}).bytes});
    return Drawing(header, shapes);
  };
  TBytes endCap = BaseRecord("XP.j").bytes;
  endCap[endCap.size() - 5] = psectMASK + 1;  // the record ends with end cap, join and three switches
  std::vector<TLayerFields> layers256;
  for (std::int32_t id = 0; id < 256; ++id) layers256.push_back({"L", id, 1});
  return {
      {"unknown version", with([](THeader h, TShapes) { h.version = "XP.k"; }), "version"},
      {"blank version", with([](THeader h, TShapes) { h.version = ""; }), "version"},
      {"unit past inch", with([](THeader h, TShapes) { h.unit = inch + 1; }), "unit"},
      {"bitmap size past the data", with([](THeader h, TShapes) { h.bkBitmapSize = std::int64_t{1} << 62; }),
       "background bitmap"},
      {"bitmap that is no BMP", with([](THeader h, TShapes) {
         h.bkBitmap = {'a', 'b', 'c', 'd'};
       }),
       "background bitmap"},
      {"background mode past LeftTop", with([](THeader h, TShapes) { h.bkMode = LeftTop + 1; }),
       "background bitmap mode"},
      {"negative user data count", with([](THeader h, TShapes) { h.userDataCount = -2; }), "canvas user data"},
      {"user data count past the data", with([](THeader h, TShapes) { h.userDataCount = 1 << 30; }),
       "canvas user data"},
      {"negative layer count", with([](THeader h, TShapes) { h.layerCount = -1; }), "layers"},
      {"layer count past the data", with([](THeader h, TShapes) { h.layerCount = 0x7FFFFFFF; }), "layers"},
      {"256 layers", with([&](THeader h, TShapes) { h.layers = layers256; }), "layers"},
      // One layer announced and none written: the current layer id is read as
      // the layer name's length.
      {"negative layer name length", with([](THeader h, TShapes) {
         h.layers = {};
         h.layerCount = 1;
         h.currentLayer = -5;
       }),
       "layer name"},
      {"negative shape count", Drawing(THeaderFields{}, {}, -1), "shapes"},
      {"shape count past the data", Drawing(THeaderFields{}, GoldenShapes("XP.j"), 0x7FFFFFF0), "shapes"},
      {"unknown class tag", with([](THeader, TShapes s) { s[1].classTag = "TMyCircle"; }), "TMyCircle"},
      {"the abstract base's class tag", with([](THeader, TShapes s) { s[0].classTag = "TMyShape"; }), "TMyShape"},
      {"negative shape name length",
       with([&](THeader, TShapes s) { s[0].record = record([](TRecordBytes& r) { r.i32(-1); }); }), "shape name"},
      {"negative child count", with([&](THeader, TShapes s) {
         s[0].record = record([](TRecordBytes& r) { r.str("S").i32(1).i32(0).i32(0).i32(-1).i32(-1); });
       }),
       "child shapes"},
      {"point count past the data", with([&](THeader, TShapes s) {
         s[0].record =
             record([](TRecordBytes& r) { r.str("S").i32(1).i32(0).i32(0).i32(-1).i32(0).i32(0).i32(1 << 28); });
       }),
       "points"},
      {"pen end cap past psectMASK", with([&](THeader, TShapes s) { s[0].record = endCap; }), "pen end cap"},
      {"arrow style past ADouble", with([](THeader, TShapes s) {
         s[2] = {"TMyLine", LineRecord("XP.j", {}, ADouble + 1).bytes};
       }),
       "arrow style"},
      {"link draw style past lldsOrthogonal", with([](THeader, TShapes s) { s[2].record.back() = lldsOrthogonal + 1; }),
       "link draw style"},
      {"text alignment past taCenter", with([](THeader, TShapes s) {
         s[1].record[s[1].record.size() - 2] = taCenter + 1;  // the tail ends with both alignments and word wrap
       }),
       "text horizontal alignment"},
      {"transparent mode past tmFixed",
       with([](THeader, TShapes s) { s[3].record[s[3].record.size() - 4] = tmFixed + 1; }), "image transparent mode"},
      {"arc style past asPie", with([](THeader, TShapes s) {
         s[0] = {"TMyElliArc", BaseRecord("XP.j").u8(amCircle).u8(asPie + 1).bytes};
       }),
       "arc style"},
      {"XP.2 point count past the sane limit", xp2({kMaxCountWithoutData + 1}), "points"},
      {"XP.2 points past the drawing's limit", xp2({kMaxCountWithoutData, kMaxCountWithoutData}), "points"},
  };
}

TEST(TMyCADDrawingMalformed, HostileFieldsFailWithAnErrorNamingThemAndChangeNothing) {
  TMyCAD cad;
  FillWithOldDrawing(cad);
  const TBytes before = Saved(cad);
  for (const TMalformed& c : MalformedDrawings()) {
    SCOPED_TRACE(c.name);
    TMemoryStream stream(c.bytes);
    try {
      cad.LoadFromStream(stream);
      ADD_FAILURE() << "loaded";
    } catch (const EStreamFormatError& e) {
      EXPECT_NE(std::string(e.what()).find(c.field), std::string::npos) << e.what();
    }
    EXPECT_EQ(Saved(cad), before);
  }
}

TEST(TMyCADDrawingMalformed, AnUnknownClassTagNamesItsOffset) {
  THeaderFields header;
  std::vector<TEntry> shapes = GoldenShapes("XP.j");
  shapes[1].classTag = "TMyCircle";
  const TBytes bytes = Drawing(header, shapes);
  const auto tagOffset = static_cast<std::int64_t>(Drawing(header, {shapes[0]}).size());
  TMyCAD cad;
  TMemoryStream stream(bytes);
  try {
    cad.LoadFromStream(stream);
    FAIL() << "loaded";
  } catch (const EStreamFormatError& e) {
    EXPECT_EQ(e.Offset(), tagOffset);
  }
}

TEST(TMyCADDrawingBlock, AFailedBlockChangesNothing) {
  TMyCAD cad;
  FillWithOldDrawing(cad);
  const TBytes before = Saved(cad);
  TBytes block = Drawing(THeaderFields{}, GroupAndConnector());
  block.pop_back();
  TMemoryStream stream(block);
  EXPECT_THROW(cad.LoadFromStreamforBlock(stream, Import), EReadError);
  EXPECT_EQ(Saved(cad), before);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
}

}  // namespace
}  // namespace lumatrex
