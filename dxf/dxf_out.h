// Building DXF text: one group code line and one value line per pair, in a
// single growing buffer, so that 100k entities cost no allocation each.
#pragma once

#include <charconv>
#include <cstdint>
#include <string>
#include <string_view>

namespace lumatrex::dxf {

// Appends V with at most 15 significant digits and no trailing zeros ("100",
// "100.0125", "-3.5", "1e-05"): the classic general float-to-text form. -0
// is written as "0".
void AppendNumber(std::string& out, double v);

class TDxfOut {
 public:
  void Pair(int code, std::string_view value) {
    AppendCode(code);
    text_.append(value);
    text_.push_back('\n');
  }
  void Pair(int code, double value) {
    AppendCode(code);
    AppendNumber(text_, value);
    text_.push_back('\n');
  }
  void Int(int code, std::int64_t value) {
    AppendCode(code);
    AppendInt(value);
    text_.push_back('\n');
  }
  // Group 5 (or Code) with a handle counted in decimal.
  void DecimalHandle(std::int64_t handle) { Int(5, handle); }
  // A handle in the hexadecimal form full drawings use.
  void HexHandle(int code, std::uint32_t handle) {
    AppendCode(code);
    char buf[16];
    auto r = std::to_chars(buf, buf + sizeof buf, handle, 16);
    for (char* p = buf; p < r.ptr; ++p)
      if (*p >= 'a') *p = static_cast<char>(*p - 'a' + 'A');
    text_.append(buf, r.ptr);
    text_.push_back('\n');
  }
  std::string& Text() { return text_; }

 private:
  void AppendCode(int code) {
    AppendInt(code);
    text_.push_back('\n');
  }
  void AppendInt(std::int64_t v) {
    char buf[24];
    auto r = std::to_chars(buf, buf + sizeof buf, v);
    text_.append(buf, r.ptr);
  }
  std::string text_;
};

}  // namespace lumatrex::dxf
