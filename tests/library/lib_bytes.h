// Library files built byte by byte from the format tables, without going
// through the library writer.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "persistence/file_version.h"
#include "platform/graphics.h"
#include "shapes/record_bytes.h"
#include "shapes/shape_enums.h"

namespace lumatrex::test {

// What a hand-built shape record holds; everything else is the default of a
// new shape (font "DejaVu Sans" -11 px, black pen of width 1, no user data).
struct TShapeFields {
  std::string className = "TMyRectangle";
  std::string name = "R";
  std::int32_t id = 0;
  std::int32_t no = 0;
  TArrMyPoint points;
  TArrMyPoint linkPoints;
  TMyPoint centre;
  TColor brush = clBlack;
};

inline TShapeFields Shape(const std::string& className, const std::string& name, std::int32_t no, TArrMyPoint points,
                        TMyPoint centre) {
  TShapeFields fields;
  fields.className = className;
  fields.name = name;
  fields.id = no;
  fields.no = no;
  fields.points = std::move(points);
  fields.centre = centre;
  return fields;
}

// Class tag and record of Fields in the layout of drawing version Version. A
// "TMyLinkPoint" gets its Size byte (8).
inline TBytes ShapeBytes(const std::string& version, const TShapeFields& fields) {
  const bool extended = FileVersionHasExtendedFloats(version);
  const bool coordinates = FileVersionIndex(version) > 0;  // "XP.2" stores counts only
  auto since = [&](const char* tag) { return FileVersionAtLeast(version, tag); };
  TRecordBytes r;
  auto real = [&](float v) { extended ? r.ext(v) : r.f32(v); };
  auto pointList = [&](const TArrMyPoint& points) {
    r.i32(static_cast<std::int32_t>(points.size()));
    if (coordinates)
      for (const TMyPoint& p : points) {
        real(p.X);
        real(p.Y);
      }
  };
  std::string tag = fields.className;
  tag.resize(16, ' ');
  r.raw(tag.data(), tag.size());
  r.str(fields.name).i32(fields.id).i32(fields.no).i32(0).i32(-1).i32(0).i32(0);  // layer 0, top level, no relations
  pointList(fields.points);
  pointList(fields.linkPoints);
  real(fields.centre.X);
  real(fields.centre.Y);
  if (since("XP.3")) {  // tag, angle
    r.i32(0);
    real(0);
  }
  r.i64(0).i32(fields.brush).u8(bsSolid).str("").i32(clWhite).i32(clBlack);  // brush, caption, gradient colours
  r.str(kDefaultFontName).u8(DEFAULT_CHARSET).i32(clBlack).i32(-11).i32(8).u8(fpDefault).i32(96).u8(0);
  if (version != "XP.7") r.i64(0);  // reserved
  r.u8(gsNone);
  if (extended) r.u8(0).u8(0);                                          // legacy bytes
  r.str("").i32(clBlack).u8(pmCopy).u8(psSolid).i32(1);                 // info, pen
  if (since("XP.8")) r.i32(0);                                          // no user data
  if (since("XP.9")) r.u8(0).u8(0).u8(1);                               // not flipped, visible
  if (since("XP.e")) r.i32(0).u8(taCenter);                             // no info lines
  if (since("XP.h")) r.i32(10).u8(0).i32(10).u8(0);                     // log size, unlocked
  if (since("XP.j")) r.u8(psectROUND).u8(psjtROUND).u8(1).u8(1).u8(1);  // pen kinds, switches
  if (fields.className == "TMyLinkPoint") r.u8(8);
  return r.bytes;
}

// One entry: name, size, width, height, [user data], shape count, shapes.
inline TBytes EntryBytes(const std::string& name, std::int32_t width, std::int32_t height,
                         const std::vector<std::pair<std::string, std::string>>* userData,
                         const std::vector<TBytes>& shapes) {
  TRecordBytes body;
  body.i32(width).i32(height);
  if (userData) {
    body.i32(static_cast<std::int32_t>(userData->size()));
    for (const auto& [key, value] : *userData) body.str(key).str(value);
  }
  body.i32(static_cast<std::int32_t>(shapes.size()));
  for (const TBytes& shape : shapes) body.append(shape);
  TRecordBytes entry;
  entry.u8(static_cast<std::uint8_t>(name.size())).raw(name.data(), name.size());
  entry.i32(static_cast<std::int32_t>(body.bytes.size())).append(body.bytes);
  return entry.bytes;
}

inline TBytes Concat(const std::vector<TBytes>& parts) {
  TBytes all;
  for (const TBytes& part : parts) all.insert(all.end(), part.begin(), part.end());
  return all;
}

inline TBytes TagBytes(const std::string& tag) { return TBytes(tag.begin(), tag.end()); }

}  // namespace lumatrex::test
