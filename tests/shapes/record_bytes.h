// Drawing-file records built byte by byte, the way the file tables lay them
// out, without going through the shape writers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "persistence/file_version.h"
#include "persistence/stream_io.h"
#include "platform/stream.h"

namespace lumatrex::test {

using TBytes = std::vector<std::uint8_t>;

class TRecordBytes {
 public:
  TRecordBytes& i32(std::int32_t v) { return raw(&v, 4); }
  TRecordBytes& i64(std::int64_t v) { return raw(&v, 8); }
  TRecordBytes& f32(float v) { return raw(&v, 4); }
  TRecordBytes& u8(std::uint8_t v) { return raw(&v, 1); }
  TRecordBytes& ext(long double v) {
    TMemoryStream s;
    WriteExtended(s, v);
    return raw(s.Bytes().data(), s.Bytes().size());
  }
  TRecordBytes& str(const std::string& s) {
    i32(static_cast<std::int32_t>(s.size()));
    return raw(s.data(), s.size());
  }
  TRecordBytes& raw(const void* p, std::size_t n) {
    const auto* b = static_cast<const std::uint8_t*>(p);
    bytes.insert(bytes.end(), b, b + n);
    return *this;
  }
  TRecordBytes& append(const TBytes& more) { return raw(more.data(), more.size()); }
  TBytes bytes;
};

// The fields a built base record varies; the defaults give the smallest one.
// The styling fields default to those of the hand-written drawings; New()
// gives the styling a new shape has.
struct TRecordFields {
  std::string name = "S";
  std::int32_t id = 1;
  std::int32_t no = 0;
  std::int32_t layer = 0;
  std::int32_t parent = -1;
  std::vector<std::int32_t> children = {};
  // Coordinates are stored from "XP.3" on; "XP.2" records hold only the count.
  TArrMyPoint points = {};
  TArrMyPoint linkPoints = {};
  TMyPoint centre = {};
  std::int32_t penWidth = 1;
  std::int32_t brush = 0xFFFFFF;
  std::string fontName = "F";
  std::uint8_t charset = 0;
  std::uint8_t pitch = 0;
  std::uint8_t endCap = 0, join = 0;
};

// A shape base record of Version: Fields, no connectors, every field the
// version holds and no other.
inline TRecordBytes BaseRecord(const std::string& version, const TRecordFields& fields = {}) {
  const bool extended = FileVersionHasExtendedFloats(version);
  auto since = [&](const char* tag) { return FileVersionAtLeast(version, tag); };
  auto real = [&](TRecordBytes& r, float v) -> TRecordBytes& { return extended ? r.ext(v) : r.f32(v); };
  TRecordBytes r;
  auto pointList = [&](const TArrMyPoint& points) {
    r.i32(static_cast<std::int32_t>(points.size()));
    if (since("XP.3"))
      for (const TMyPoint& p : points) real(real(r, p.X), p.Y);
  };
  r.str(fields.name).i32(fields.id).i32(fields.no).i32(fields.layer).i32(fields.parent);  // identity
  r.i32(static_cast<std::int32_t>(fields.children.size()));
  for (const std::int32_t child : fields.children) r.i32(child);
  r.i32(0);  // no connectors
  pointList(fields.points);
  pointList(fields.linkPoints);
  real(real(r, fields.centre.X), fields.centre.Y);                          // rotation centre
  if (since("XP.3")) real(r.i32(0), 0);                                     // tag, angle
  r.i64(0).i32(fields.brush).u8(0).str("").i32(0xFFFFFF).i32(0);            // brush, caption, gradient colours
  r.str(fields.fontName).u8(fields.charset).i32(0).i32(-11).i32(8).u8(fields.pitch).i32(96).u8(0);  // font
  if (version != "XP.7") r.i64(0);                                          // reserved
  r.u8(23);                                                                 // gsNone
  if (extended) r.u8(0).u8(0);                                              // legacy bytes
  r.str("").i32(0).u8(4).u8(0).i32(fields.penWidth);                        // info, pen
  if (since("XP.8")) r.i32(0);                                              // no user data
  if (since("XP.9")) r.u8(0).u8(0).u8(1);                                   // flips, visible
  if (since("XP.e")) r.i32(0).u8(2);                                        // no info lines, centred
  if (since("XP.h")) r.i32(10).u8(0).i32(10).u8(0);                         // log size, unlocked
  if (since("XP.j")) r.u8(fields.endCap).u8(fields.join).u8(1).u8(1).u8(1);  // pen kinds, switches
  return r;
}

}  // namespace lumatrex::test
