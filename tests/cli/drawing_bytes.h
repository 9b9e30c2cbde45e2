// Drawing files built byte by byte from the format tables.
#pragma once

#include <string>
#include <utility>
#include <vector>

#include "library/lib_bytes.h"

namespace lumatrex::test {

struct TDrawingContent {
  std::string version = "XP.j";
  std::vector<std::pair<std::string, std::string>> userData;
  std::vector<std::pair<std::string, std::int32_t>> layers = {{"Layer0", 0}};
  std::vector<TBytes> shapes;  // class tag and record each
};

// Header (creator, banner, version, date, reserved), background white,
// 200 x 100, millimetres, no background bitmap, Center, ratio 1.5, tag 7 (from
// "XP.h"), user data, visible layers, current layer 0, shapes.
inline TBytes DrawingBytes(const TDrawingContent& fields) {
  TRecordBytes r;
  auto fixed = [&r](const std::string& text, std::size_t n) {
    std::string padded = text;
    padded.resize(n, ' ');
    r.raw(padded.data(), n);
  };
  fixed("Ambrel Component", 64);
  fixed("hand-written test drawing", 64);
  fixed(fields.version, 16);
  fixed("20240101", 10);
  fixed("", 63);
  r.u8(0);
  r.i32(clWhite).i32(200).i32(100).u8(mm).i64(0).i32(Center);
  const double ratio = 1.5;
  r.raw(&ratio, 8);
  if (FileVersionAtLeast(fields.version, "XP.h")) {
    r.i32(7).i32(static_cast<std::int32_t>(fields.userData.size()));
    for (const auto& [key, value] : fields.userData) r.str(key).str(value);
  }
  r.i32(static_cast<std::int32_t>(fields.layers.size()));
  for (const auto& [name, id] : fields.layers) r.str(name).i32(id).i32(1);
  r.i32(0).i32(static_cast<std::int32_t>(fields.shapes.size()));
  for (const TBytes& shape : fields.shapes) r.append(shape);
  return r.bytes;
}

// A TMyLine record: the base record and the arrow tail (angle 30, length 10,
// offset 0, head at the last point).
inline TBytes LineBytes(const std::string& version, const TShapeFields& fields) {
  TRecordBytes r;
  r.append(ShapeBytes(version, fields)).i32(30).u8(10).u8(0).u8(ALeft);
  return r.bytes;
}

}  // namespace lumatrex::test
