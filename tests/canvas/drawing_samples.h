// Sample drawings for the drawing-file tests: drawings built byte by byte
// from the format tables (never by our writer), and helpers for drawings
// made on a canvas.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "persistence/file_version.h"
#include "persistence/stream_io.h"
#include "platform/hooks.h"
#include "shapes/arc.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/record_bytes.h"
#include "shapes/text.h"
#include "support/test_paths.h"

namespace lumatrex::test {

inline const std::vector<std::string> kVersions = {"XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8",
                                                   "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j"};

inline const std::vector<std::string> kClassTags = {
    "TMyRectangle",    "TMyEllipse", "TMyPolygon", "TMyPolyLine", "TMyPolyBezier", "TMyBLine",
    "TMyFreeLine",     "TMyGroup",   "TMyCombine", "TMyLine",     "TMyRuleLine",   "TMyLinkLine",
    "TMyLineLinkLine", "TMyElliArc", "TMyText",    "TMyImage",    "TMyLinkPoint"};

inline bool Load(TMyCAD& cad, const TBytes& bytes) {
  TMemoryStream stream(bytes);
  return cad.LoadFromStream(stream);
}

inline TBytes FileBytes(const std::string& path) {
  const std::string bytes = ReadFileBytes(path);
  return TBytes(bytes.begin(), bytes.end());
}

inline void WriteFileBytes(const std::string& path, const TBytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

// ---------------------------------------------------------------------------
// Drawings built from the format tables

inline TRecordBytes& FixText(TRecordBytes& r, const std::string& text, std::size_t n) {
  std::string bytes = text;
  bytes.resize(n, ' ');
  return r.raw(bytes.data(), n);
}

// A 2 x 1 BMP file of 24 bits a pixel: red, then blue; rows padded to 4 bytes.
inline TBytes TwoPixelBmp() {
  TRecordBytes r;
  r.u8('B').u8('M').i32(62).i32(0).i32(54);                        // file header: size, reserved, pixel offset
  r.i32(40).i32(2).i32(1).u8(1).u8(0).u8(24).u8(0).i32(0).i32(8);  // 2 x 1, one plane, 24 bits, BI_RGB, 8 bytes
  r.i32(0).i32(0).i32(0).i32(0);                                   // resolution, palette
  r.u8(0).u8(0).u8(255).u8(255).u8(0).u8(0).u8(0).u8(0);           // blue-green-red triples, padding
  return r.bytes;
}

struct TLayerFields {
  std::string name;
  std::int32_t id;
  std::int32_t visible;  // only exactly 1 means visible
};

// Header fields 1 to 18, with the values of the golden drawings. The count
// overrides write a count that does not match what follows.
struct THeaderFields {
  std::string version = "XP.j";
  std::string creatorText = "written by hand from the tables";
  TColor background = 0x123456;
  std::int32_t width = 640;
  std::int32_t height = 480;
  std::uint8_t unit = inch;
  TBytes bkBitmap = TwoPixelBmp();
  std::optional<std::int64_t> bkBitmapSize = {};
  std::int32_t bkMode = Stretch;
  double ratio = 0.25;
  std::int32_t tag = 42;  // tag and user data are stored from "XP.h" on
  std::vector<TUserDataRecord> userData = {{"author", "lm"}, {"k2", "v2"}};
  std::optional<std::int32_t> userDataCount = {};
  std::vector<TLayerFields> layers = {{"Layer0", 0, 1}, {"Plan", 3, 2}, {"Notes", 7, 0}};
  std::optional<std::int32_t> layerCount = {};
  std::int32_t currentLayer = 3;
};

inline TRecordBytes Header(const THeaderFields& f) {
  TRecordBytes r;
  FixText(r, "Ambrel Component", 64);
  FixText(r, f.creatorText, 64);
  FixText(r, f.version, 16);
  FixText(r, "20091209", 10);
  FixText(r, std::string(63, ' ') + '\0', 64);
  r.i32(f.background).i32(f.width).i32(f.height).u8(f.unit);
  r.i64(f.bkBitmapSize.value_or(static_cast<std::int64_t>(f.bkBitmap.size()))).append(f.bkBitmap);
  r.i32(f.bkMode).raw(&f.ratio, 8);
  if (FileVersionAtLeast(f.version, "XP.h")) {
    r.i32(f.tag).i32(f.userDataCount.value_or(static_cast<std::int32_t>(f.userData.size())));
    for (const auto& [key, value] : f.userData) r.str(key).str(value);
  }
  r.i32(f.layerCount.value_or(static_cast<std::int32_t>(f.layers.size())));
  for (const TLayerFields& l : f.layers) r.str(l.name).i32(l.id).i32(l.visible);
  return r.i32(f.currentLayer);
}

struct TEntry {
  std::string classTag;
  TBytes record;
};

inline TBytes Drawing(const THeaderFields& header, const std::vector<TEntry>& shapes,
                      std::optional<std::int32_t> shapeCount = std::nullopt) {
  TRecordBytes r = Header(header);
  r.i32(shapeCount.value_or(static_cast<std::int32_t>(shapes.size())));
  for (const TEntry& e : shapes) FixText(r, e.classTag, 16).append(e.record);
  return r.bytes;
}

// The line record: the base record and the four arrow fields.
inline TRecordBytes LineRecord(const std::string& version, const TRecordFields& fields,
                               std::uint8_t arrowStyle = ADouble) {
  return BaseRecord(version, fields).i32(30).u8(12).u8(3).u8(arrowStyle);
}

// A rectangle, a text, a connector and an image, each tail as its version has it.
inline std::vector<TEntry> GoldenShapes(const std::string& v) {
  const auto since = [&](const char* tag) { return FileVersionAtLeast(v, tag); };
  TRecordBytes text = BaseRecord(v, {.name = "Note", .id = 9, .points = Box(0, 0, 40, 20)});
  text.u8(1).u8(0);  // border, not solid
  if (since("XP.a")) text.i32(2).str("one").str("two").u8(tlCenter).u8(taRightJustify).u8(1);
  TRecordBytes link = LineRecord(v, {.name = "Wire", .id = 2, .layer = 7, .points = {{110, 45}, {200, 10}}});
  link.i32(0).i32(1).i32(3).i32(2);  // from shape 0's link point 1 to shape 3's link point 2
  if (since("XP.5")) link.u8(lldsHV);
  TRecordBytes image = BaseRecord(v, {.name = "Photo", .id = 4, .layer = 3, .points = Box(200, 0, 260, 30)});
  image.i64(0);  // no picture
  if (since("XP.9")) image.i32(5).i32(-5).u8(1).u8(0).u8(1);
  if (since("XP.i")) image.i32(clLime).i32(0x7F000001);  // tmFixed in the low byte, noise above it
  return {{"TMyRectangle", BaseRecord(v, {.name = "Box", .id = 5, .layer = 3, .points = Box(10, 20, 110, 70)}).bytes},
          {"TMyText", text.bytes},
          {"TMyLinkLine", link.bytes},
          {"TMyImage", image.bytes}};
}

inline TBytes GoldenDrawing(const std::string& version) {
  THeaderFields header;
  header.version = version;
  return Drawing(header, GoldenShapes(version));
}

inline std::string GoldenPath(const std::string& version) { return DataPath("drawings/drawing-" + version + ".zlt"); }

// A drawing made on a canvas, with a shape of every class tag and the header
// fields and every record's tail away from their defaults; the lumatrex
// tool's tests dump it field by field.
inline std::string EveryKindPath() { return DataPath("drawings/every-kind.zlt"); }

// A group of two members and a connector between them, on block layers 3
// and 7, with ids far from the canvas's.
inline std::vector<TEntry> GroupAndConnector() {
  TRecordBytes link = LineRecord("XP.j", {.name = "W", .id = 53, .layer = 7});
  link.i32(0).i32(0).i32(1).i32(0).u8(lldsLine);  // from member A to member B
  return {
      {"TMyRectangle",
       BaseRecord("XP.j", {.name = "A", .id = 50, .layer = 3, .parent = 2, .points = Box(0, 0, 5, 5)}).bytes},
      {"TMyEllipse",
       BaseRecord("XP.j", {.name = "B", .id = 51, .layer = 7, .parent = 2, .points = Box(9, 0, 15, 5)}).bytes},
      {"TMyGroup",
       BaseRecord("XP.j", {.name = "G", .id = 52, .layer = 3, .children = {0, 1}, .points = Box(0, 0, 15, 5)}).bytes},
      {"TMyLinkLine", link.bytes}};
}

// ---------------------------------------------------------------------------
// Drawings made with the canvas

// A 3 x 2 picture with three colours in its first row.
inline TBitmap SmallPicture() {
  TBitmap bitmap(3, 2, pf24bit);
  std::uint8_t* row = bitmap.ScanLine(0);
  const std::uint8_t bgr[] = {0, 0, 255, 0, 255, 0, 255, 0, 0};
  std::copy(std::begin(bgr), std::end(bgr), row);
  return bitmap;
}

template <typename T>
inline T& Kind(TMyCAD& cad, const std::string& classTag) {
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i)
    if (cad.GetShapeByNo(i)->ClassName() == classTag) return dynamic_cast<T&>(*cad.GetShapeByNo(i));
  throw std::logic_error("no " + classTag);
}

// A canvas with content of its own, which failed loads must leave alone.
inline void FillWithOldDrawing(TMyCAD& cad) {
  cad.resize(320, 240);
  cad.SetColorOfBackGround(clGreen);
  cad.SetTag(-1);
  cad.UserData().AddKeyandValue("old", "data");
  cad.NewLayer("Old", true);
  cad.AddShapeByCode2("TMyEllipse", "Old0", Box(1, 2, 30, 40), 0);
  cad.AddShapeByCode2("TMyLine", "Old1", {{0, 0}, {9, 9}}, 0);
}

}  // namespace lumatrex::test
