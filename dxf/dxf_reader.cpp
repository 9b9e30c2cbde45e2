#include "dxf/dxf_reader.h"

#include <charconv>
#include <cmath>
#include <cstring>
#include <string>

#include "dxf/dxf.h"

namespace lumatrex {

EDxfError::EDxfError(std::int64_t line, const std::string& what)
    : std::runtime_error("DXF line " + std::to_string(line) + ": " + what), line_(line) {}

namespace dxf {

namespace {

constexpr std::string_view kBinarySentinel = "AutoCAD Binary DXF";

std::string_view Trim(std::string_view s) {
  while (!s.empty() && (s.front() == ' ' || s.front() == '\t')) s.remove_prefix(1);
  while (!s.empty() && (s.back() == ' ' || s.back() == '\t' || s.back() == '\r')) s.remove_suffix(1);
  return s;
}

// Shows at most 40 bytes of a bad value, so that a message stays one line.
std::string Shown(std::string_view s) {
  std::string shown(s.substr(0, 40));
  for (char& c : shown)
    if (static_cast<unsigned char>(c) < 32) c = '?';
  return "\"" + shown + (s.size() > 40 ? "...\"" : "\"");
}

}  // namespace

TDxfReader::TDxfReader(const char* data, std::size_t size) : pos_(data), end_(data + size) {
  if (size >= kBinarySentinel.size() && std::memcmp(data, kBinarySentinel.data(), kBinarySentinel.size()) == 0)
    throw EDxfError(1, "binary DXF is not supported; save the drawing as ASCII DXF");
  // A UTF-8 byte order mark some writers put first.
  if (size >= 3 && std::memcmp(data, "\xEF\xBB\xBF", 3) == 0) pos_ += 3;
}

std::string_view TDxfReader::NextLine() {
  const char* start = pos_;
  const auto* nl = static_cast<const char*>(std::memchr(pos_, '\n', static_cast<std::size_t>(end_ - pos_)));
  pos_ = nl ? nl + 1 : end_;
  ++line_;
  return Trim(std::string_view(start, static_cast<std::size_t>((nl ? nl : end_) - start)));
}

bool TDxfReader::Next() {
  // Blank lines after the last pair (or an EOF without its line break) end
  // the file quietly.
  while (pos_ < end_) {
    const std::string_view codeText = NextLine();
    if (codeText.empty() && pos_ >= end_) return false;
    const auto r = std::from_chars(codeText.data(), codeText.data() + codeText.size(), code_);
    if (r.ec != std::errc() || r.ptr != codeText.data() + codeText.size() || code_ < -5 || code_ > 1071)
      Fail("group code expected, found " + Shown(codeText));
    if (pos_ >= end_) Fail("the value of group code " + std::to_string(code_) + " is missing (truncated file)");
    value_ = NextLine();
    return true;
  }
  return false;
}

double TDxfReader::Number() const {
  double v = 0;
  std::string_view s = value_;
  if (!s.empty() && s.front() == '+') s.remove_prefix(1);
  const auto r = std::from_chars(s.data(), s.data() + s.size(), v);
  if (r.ec != std::errc() || r.ptr != s.data() + s.size() || !std::isfinite(v))
    Fail("number expected for group code " + std::to_string(code_) + ", found " + Shown(value_));
  return v;
}

std::int64_t TDxfReader::Integer() const {
  std::int64_t v = 0;
  const auto r = std::from_chars(value_.data(), value_.data() + value_.size(), v);
  if (r.ec != std::errc() || r.ptr != value_.data() + value_.size())
    Fail("integer expected for group code " + std::to_string(code_) + ", found " + Shown(value_));
  return v;
}

void TDxfReader::Fail(std::string_view what) const {
  throw EDxfError(line_, std::string(what));
}

}  // namespace dxf
}  // namespace lumatrex
