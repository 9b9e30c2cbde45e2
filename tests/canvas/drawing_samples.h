// Sample drawings for the drawing-file tests: drawings built byte by byte
// from the format tables (never by our writer), and helpers for drawings
// made on a canvas.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/drawing_bytes.h"
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
#include "shapes/text.h"
#include "support/test_paths.h"

namespace lumatrex::test {

inline const std::vector<std::string> kVersions = {"XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8",
                                                   "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j"};

inline bool Load(TMyCAD& cad, const TBytes& bytes) {
  TMemoryStream stream(bytes);
  return cad.LoadFromStream(stream);
}

inline void WriteFileBytes(const std::string& path, const TBytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

// ---------------------------------------------------------------------------
// Drawings built from the format tables

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

// ---------------------------------------------------------------------------
// Drawings made with the canvas

// A 3 x 2 picture with three colours in its first row.
inline TBitmap SmallPicture() {
  TBitmap picture;
  picture.LoadFromFile(DataPath("canvas/three-colours-3x2.bmp"));
  return picture;
}

// A canvas with content of its own, which failed loads must leave alone:
// 320 x 240, green, tag -1, user data, two layers, an ellipse and a line.
inline void FillWithOldDrawing(TMyCAD& cad) { ASSERT_TRUE(cad.LoadFromFile(DataPath("drawings/old-drawing.zlt"))); }

}  // namespace lumatrex::test
