// Drawing files built byte by byte from the format tables, never by our
// writer: the header fields and a shape table.
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "persistence/file_version.h"
#include "persistence/user_data.h"
#include "shapes/record_bytes.h"
#include "shapes/shape_enums.h"
#include "support/test_paths.h"

namespace lumatrex::test {

inline TBytes FileBytes(const std::string& path) {
  const std::string bytes = ReadFileBytes(path);
  return TBytes(bytes.begin(), bytes.end());
}

inline TRecordBytes& FixText(TRecordBytes& r, const std::string& text, std::size_t n) {
  std::string bytes = text;
  bytes.resize(n, ' ');
  return r.raw(bytes.data(), n);
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
  TBytes bkBitmap = FileBytes(DataPath("canvas/red-blue-2x1.bmp"));  // 24 bits a pixel: red, then blue
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

}  // namespace lumatrex::test
