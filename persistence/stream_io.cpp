#include "persistence/stream_io.h"

#include <cmath>
#include <cstring>
#include <limits>
#include <string_view>
#include <vector>

namespace lumatrex {

namespace {

[[noreturn]] void Malformed(std::int64_t offset, const std::string& what) { throw EStreamFormatError(offset, what); }

}  // namespace

long double ReadExtended(TStream& stream, const char* what) {
  std::uint8_t bytes[10];
  stream.ReadBuffer(bytes, sizeof bytes, what);
  std::uint64_t mantissa = 0;
  for (int i = 7; i >= 0; --i) mantissa = (mantissa << 8) | bytes[i];
  const int signAndExponent = bytes[8] | (bytes[9] << 8);
  const bool negative = (signAndExponent & 0x8000) != 0;
  const int exponent = signAndExponent & 0x7FFF;
  long double value;
  if (exponent == 0x7FFF)
    value = (mantissa << 1) == 0 ? std::numeric_limits<long double>::infinity()
                                 : std::numeric_limits<long double>::quiet_NaN();
  else
    value = std::ldexp(static_cast<long double>(mantissa), (exponent == 0 ? 1 : exponent) - 16383 - 63);
  return negative ? -value : value;
}

float ReadFiniteFloat(TStream& stream, bool extended, const char* what) {
  const std::int64_t offset = stream.Position();
  const long double value = extended ? ReadExtended(stream, what) : ReadValue<float>(stream, what);
  if (!std::isfinite(value) || std::fabs(value) > std::numeric_limits<float>::max())
    Malformed(offset, std::string("non-finite or out-of-range number in ") + what);
  return static_cast<float>(value);
}

void WriteExtended(TStream& stream, long double value) {
  std::uint64_t mantissa = 0;
  int exponent = 0;
  const bool negative = std::signbit(value);
  if (std::isnan(value)) {
    exponent = 0x7FFF;
    mantissa = 0xC000000000000000ull;
  } else if (std::isinf(value)) {
    exponent = 0x7FFF;
    mantissa = 0x8000000000000000ull;
  } else if (value != 0) {
    int e = 0;
    const long double fraction = std::frexp(std::fabs(value), &e);  // [0.5, 1)
    exponent = e - 1 + 16383;
    if (exponent <= 0) {  // below the normal range: write zero
      exponent = 0;
    } else {
      mantissa = static_cast<std::uint64_t>(std::ldexp(fraction, 64));
    }
  }
  std::uint8_t bytes[10];
  for (int i = 0; i < 8; ++i) bytes[i] = static_cast<std::uint8_t>(mantissa >> (8 * i));
  const int signAndExponent = exponent | (negative ? 0x8000 : 0);
  bytes[8] = static_cast<std::uint8_t>(signAndExponent & 0xFF);
  bytes[9] = static_cast<std::uint8_t>(signAndExponent >> 8);
  stream.WriteBuffer(bytes, sizeof bytes);
}

std::int32_t ReadCount(TStream& stream, std::int64_t itemSize, const char* what) {
  const std::int64_t offset = stream.Position();
  const auto count = ReadValue<std::int32_t>(stream, what);
  if (count < 0) Malformed(offset, std::string("negative count for ") + what);
  const bool fits = itemSize > 0 ? count <= stream.Remaining() / itemSize : count <= kMaxCountWithoutData;
  if (!fits)
    Malformed(offset, std::string("count ") + std::to_string(count) + " for " + what +
                          " exceeds the data that follows");
  return count;
}

void WriteStrBuffer(TStream& stream, const std::string& text, std::uint8_t count) {
  std::string bytes = text.substr(0, count);
  bytes.resize(count, '\0');
  stream.WriteBuffer(bytes.data(), count);
}

std::string ReadStrBuffer(TStream& stream, std::uint8_t count, const char* what) {
  std::string text(count, '\0');
  stream.ReadBuffer(text.data(), count, what);
  return text;
}

void WriteLString(TStream& stream, const std::string& text) {
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(text.size()));
  WriteStrBuffer(stream, text, static_cast<std::uint8_t>(text.size() % 256));
}

std::string ReadLString(TStream& stream, const char* what) {
  const std::int64_t offset = stream.Position();
  const auto length = ReadValue<std::int32_t>(stream, what);
  if (length < 0) Malformed(offset, std::string("negative string length for ") + what);
  return ReadStrBuffer(stream, static_cast<std::uint8_t>(length % 256), what);
}

void WriteFixText(TStream& stream, const std::string& text, std::size_t n) {
  std::string bytes = text.substr(0, n);
  bytes.resize(n, ' ');
  stream.WriteBuffer(bytes.data(), static_cast<std::int64_t>(n));
}

std::string ReadFixText(TStream& stream, std::size_t n, const char* what) {
  // A short field is read on the stack: its trimmed text (a class tag of
  // every shape record) then fits in the string without an allocation.
  char small[64];
  std::string large;
  char* bytes = small;
  if (n > sizeof small) {
    large.assign(n, ' ');
    bytes = large.data();
  }
  stream.ReadBuffer(bytes, static_cast<std::int64_t>(n), what);
  const std::string_view text(bytes, n);
  const auto first = text.find_first_not_of(' ');
  if (first == std::string_view::npos) return {};
  return std::string(text.substr(first, text.find_last_not_of(' ') - first + 1));
}

void WriteBitmapBuffer(TStream& stream, const TBitmap* bitmap) {
  if (!bitmap || bitmap->Empty()) {
    WriteValue<std::int64_t>(stream, 0);
    return;
  }
  TMemoryStream bmp;
  bitmap->SaveToStream(bmp);
  WriteValue<std::int64_t>(stream, bmp.Size());
  bmp.SaveToStream(stream);
}

std::unique_ptr<TBitmap> ReadBitmapBuffer(TStream& stream, const char* what) {
  const std::int64_t offset = stream.Position();
  const auto size = ReadValue<std::int64_t>(stream, what);
  if (size <= 0) return nullptr;
  if (size > stream.Remaining())
    Malformed(offset, std::string("bitmap size ") + std::to_string(size) + " for " + what +
                          " exceeds the data that follows");
  std::vector<std::uint8_t> bytes(static_cast<std::size_t>(size));
  stream.ReadBuffer(bytes.data(), size, what);
  TMemoryStream block(bytes);
  auto bitmap = std::make_unique<TBitmap>();
  try {
    bitmap->LoadFromStream(block);
  } catch (const EInvalidGraphic& e) {
    Malformed(offset, std::string(what) + ": " + e.what());
  }
  return bitmap;
}

}  // namespace lumatrex
