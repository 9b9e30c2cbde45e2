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

// A shape as a new one is styled (font "DejaVu Sans" -11 px, black pen of
// width 1 and brush, round pen ends, no user data), numbered No, of class
// ClassName.
struct TShapeFields : TRecordFields { std::string className = "TMyRectangle"; };

inline TShapeFields Shape(const std::string& className, const std::string& name, std::int32_t no, TArrMyPoint points,
                          TMyPoint centre) {
  TShapeFields fields;
  fields.className = className;
  fields.name = name;
  fields.id = no;
  fields.no = no;
  fields.points = std::move(points);
  fields.centre = centre;
  fields.brush = clBlack;
  fields.fontName = kDefaultFontName;
  fields.charset = DEFAULT_CHARSET;
  fields.pitch = fpDefault;
  fields.endCap = psectROUND;
  fields.join = psjtROUND;
  return fields;
}

// Class tag and record of Fields in the layout of drawing version Version. A
// "TMyLinkPoint" gets its Size byte (8).
inline TBytes ShapeBytes(const std::string& version, const TShapeFields& fields) {
  std::string tag = fields.className;
  tag.resize(16, ' ');
  TRecordBytes r;
  r.raw(tag.data(), tag.size()).append(BaseRecord(version, fields).bytes);
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
