// A small JSON document builder for the command-line tool's dumps.
//
// Values are formatted when they are made, so that the output does not depend
// on the locale: 32-bit floats with 9 significant digits and 64-bit floats
// with 17 (both read back to the same value), non-finite numbers as null.
// Byte strings map each byte to the code point of the same value; quote,
// backslash, control characters, DEL and bytes from 0x80 are written as
// \u00xx escapes, so the output is plain ASCII.
#pragma once

#include <cstdint>
#include <string>
#include <utility>
#include <vector>

namespace lumatrex::cli {

class TJson {
 public:
  static TJson Null();
  static TJson Bool(bool value);
  static TJson Int(std::int64_t value);
  static TJson Float(float value);
  static TJson Double(double value);
  static TJson Bytes(const std::string& bytes);
  static TJson Array();
  static TJson Object();

  // Appends to an array.
  TJson& Add(TJson value);
  // Adds a member to an object; members keep the order they were added in.
  TJson& Set(const std::string& key, TJson value);

  // Objects and arrays holding objects or arrays take one line per member,
  // indented by two spaces a level; arrays of plain values stay on one line.
  std::string Print() const;

 private:
  enum TKind : std::uint8_t { kScalar, kArray, kObject };
  explicit TJson(TKind kind, std::string text = {}) : kind_(kind), text_(std::move(text)) {}
  bool IsContainer() const { return kind_ != kScalar; }
  void PrintTo(std::string& out, int depth) const;

  TKind kind_;
  std::string text_;                                    // a scalar, formatted
  std::vector<std::pair<std::string, TJson>> members_;  // keys empty in arrays
};

}  // namespace lumatrex::cli
