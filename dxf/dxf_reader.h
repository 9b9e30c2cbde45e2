// A streaming reader of ASCII DXF group pairs over bytes in memory. It never
// copies: codes and values are views into the caller's bytes, which must
// outlive the reader. Every error names the 1-based line it was found on.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lumatrex::dxf {

class TDxfReader {
 public:
  // Refuses binary DXF (EDxfError on line 1).
  TDxfReader(const char* data, std::size_t size);

  // Reads the next pair; false at the end of the bytes. A code line that is
  // not an integer group code, or a code without its value line, throws.
  bool Next();
  int Code() const { return code_; }
  // The value line without its line break and surrounding blanks.
  std::string_view Value() const { return value_; }
  // Line of the current pair's value.
  std::int64_t Line() const { return line_; }
  // The value as a number; throws EDxfError naming the line when it is not.
  double Number() const;
  std::int64_t Integer() const;
  // Throws EDxfError "line N: What".
  [[noreturn]] void Fail(std::string_view what) const;

 private:
  std::string_view NextLine();

  const char* pos_;
  const char* end_;
  std::int64_t line_ = 0;
  int code_ = 0;
  std::string_view value_;
};

}  // namespace lumatrex::dxf
