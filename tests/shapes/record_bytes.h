// Drawing-file records built byte by byte, the way the file tables lay them
// out, without going through the shape writers.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

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

// The smallest shape base record of Version: name "S", no points, no
// relations, default styling, every field the version holds and no other.
inline TRecordBytes BaseRecord(const std::string& version) {
  const bool extended = FileVersionHasExtendedFloats(version);
  auto since = [&](const char* tag) { return FileVersionAtLeast(version, tag); };
  auto real = [&](TRecordBytes& r) -> TRecordBytes& { return extended ? r.ext(0) : r.f32(0); };
  TRecordBytes r;
  r.str("S").i32(1).i32(0).i32(0).i32(-1).i32(0).i32(0).i32(0).i32(0);  // ids, relations, no points
  real(real(r));                                                        // rotation centre
  if (since("XP.3")) real(r.i32(0));                                    // tag, angle
  r.i64(0).i32(0xFFFFFF).u8(0).str("").i32(0xFFFFFF).i32(0);            // brush, caption, gradient colours
  r.str("F").u8(0).i32(0).i32(-11).i32(8).u8(0).i32(96).u8(0);          // font
  if (version != "XP.7") r.i64(0);                                      // reserved
  r.u8(23);                                                             // gsNone
  if (extended) r.u8(0).u8(0);                                          // legacy bytes
  r.str("").i32(0).u8(4).u8(0).i32(1);                                  // info, pen
  if (since("XP.8")) r.i32(0);                                          // no user data
  if (since("XP.9")) r.u8(0).u8(0).u8(1);                               // flips, visible
  if (since("XP.e")) r.i32(0).u8(2);                                    // no info lines, centred
  if (since("XP.h")) r.i32(10).u8(0).i32(10).u8(0);                     // log size, unlocked
  if (since("XP.j")) r.u8(0).u8(0).u8(1).u8(1).u8(1);                   // pen kinds, switches
  return r;
}

}  // namespace lumatrex::test
