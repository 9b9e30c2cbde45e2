// The primitive encodings of drawing and library files: little-endian
// integers and floats, 80-bit extended floats of old records, length-prefixed
// strings, space-padded fixed texts and length-prefixed BMP blocks.
//
// Readers never trust a count: every count is checked against the bytes that
// remain before anything is allocated, and malformed values throw
// EStreamFormatError naming the offset and the field.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <type_traits>

#include "platform/bitmap.h"
#include "platform/stream.h"

namespace lumatrex {

// Malformed (not merely truncated) data: a negative string length, a count
// larger than the data that follows, an unreadable embedded bitmap.
class EStreamFormatError : public EReadError {
 public:
  using EReadError::EReadError;
};

// ---- plain values ----------------------------------------------------------------

template <typename T>
  requires std::is_arithmetic_v<T> || std::is_enum_v<T>
void WriteValue(TStream& stream, T value) {
  stream.WriteBuffer(&value, sizeof value);
}

template <typename T>
  requires std::is_arithmetic_v<T> || std::is_enum_v<T>
T ReadValue(TStream& stream, const char* what) {
  T value{};
  stream.ReadBuffer(&value, sizeof value, what);
  return value;
}

// An enumeration ordinal stored as Stored (a byte, or an int32 whose low byte
// holds it). Values past Last are malformed: an ordinal from a file must never
// reach code that indexes a table with it.
template <typename E, typename Stored = std::uint8_t>
  requires std::is_enum_v<E> && std::is_integral_v<Stored>
E ReadOrdinal(TStream& stream, E last, const char* what) {
  const std::int64_t offset = stream.Position();
  const auto ordinal = static_cast<std::uint8_t>(ReadValue<Stored>(stream, what) & 0xFF);
  if (ordinal > static_cast<std::uint8_t>(last))
    throw EStreamFormatError(offset, "ordinal " + std::to_string(ordinal) + " out of range for " + what);
  return static_cast<E>(ordinal);
}

inline void WriteBool(TStream& stream, bool value) { WriteValue<std::uint8_t>(stream, value ? 1 : 0); }
// Any non-zero byte reads as true.
inline bool ReadBool(TStream& stream, const char* what) { return ReadValue<std::uint8_t>(stream, what) != 0; }

// An 80-bit x87 extended float (10 bytes), decoded bit by bit so the result
// does not depend on the host's long double layout.
long double ReadExtended(TStream& stream, const char* what);
void WriteExtended(TStream& stream, long double value);

// A coordinate or angle stored as float32, or as an 80-bit float when
// Extended. NaN, infinities and 80-bit values beyond float32's range are
// malformed: they would reach float-to-integer conversions when drawn.
float ReadFiniteFloat(TStream& stream, bool extended, const char* what);

// ---- counts ------------------------------------------------------------------------

// Reads an int32 count of items of ItemSize bytes each and checks that so many
// items can follow. ItemSize 0 (items that take no bytes) is bounded by
// kMaxCountWithoutData instead.
std::int32_t ReadCount(TStream& stream, std::int64_t itemSize, const char* what);
inline constexpr std::int32_t kMaxCountWithoutData = 1 << 20;

// ---- strings -------------------------------------------------------------------------

// Writes the first Count bytes of Text (Count at most 255; missing bytes are
// written as zeros).
void WriteStrBuffer(TStream& stream, const std::string& text, std::uint8_t count);
std::string ReadStrBuffer(TStream& stream, std::uint8_t count, const char* what = "text");

// int32 length L (the full length), then L mod 256 bytes of text: strings of
// 256 bytes or more are cut, and the length field no longer matches what
// follows; readers read the same L mod 256 bytes.
void WriteLString(TStream& stream, const std::string& text);
// A negative length is malformed.
std::string ReadLString(TStream& stream, const char* what);

// Exactly N bytes: Text cut or right-padded with spaces.
void WriteFixText(TStream& stream, const std::string& text, std::size_t n);
// N bytes trimmed of leading and trailing spaces.
std::string ReadFixText(TStream& stream, std::size_t n, const char* what);

// ---- bitmaps ---------------------------------------------------------------------------

// int64 byte count N, then a BMP file of N bytes; N = 0 for no bitmap (a null
// or empty Bitmap).
void WriteBitmapBuffer(TStream& stream, const TBitmap* bitmap);
// Null when N <= 0 (nothing follows then); the bitmap otherwise. A block that
// does not hold a readable BMP is malformed.
std::unique_ptr<TBitmap> ReadBitmapBuffer(TStream& stream, const char* what);

}  // namespace lumatrex
