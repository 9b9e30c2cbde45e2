#include "json.h"

#include <algorithm>
#include <cmath>
#include <cstdio>

namespace lumatrex::cli {

namespace {

std::string Formatted(const char* format, double value) {
  if (!std::isfinite(value)) return "null";
  char text[32];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

std::string Quoted(const std::string& bytes) {
  std::string out = "\"";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    if (byte < 0x20 || byte >= 0x7F || c == '"' || c == '\\') {
      char escape[8];
      std::snprintf(escape, sizeof escape, "\\u%04x", byte);
      out += escape;
    } else {
      out += c;
    }
  }
  return out + "\"";
}

}  // namespace

TJson TJson::Null() { return TJson(kScalar, "null"); }
TJson TJson::Bool(bool value) { return TJson(kScalar, value ? "true" : "false"); }
TJson TJson::Int(std::int64_t value) { return TJson(kScalar, std::to_string(value)); }
TJson TJson::Float(float value) { return TJson(kScalar, Formatted("%.9g", value)); }
TJson TJson::Double(double value) { return TJson(kScalar, Formatted("%.17g", value)); }
TJson TJson::Bytes(const std::string& bytes) { return TJson(kScalar, Quoted(bytes)); }
TJson TJson::Array() { return TJson(kArray); }
TJson TJson::Object() { return TJson(kObject); }

TJson& TJson::Add(TJson value) {
  members_.emplace_back(std::string(), std::move(value));
  return *this;
}

TJson& TJson::Set(const std::string& key, TJson value) {
  members_.emplace_back(key, std::move(value));
  return *this;
}

std::string TJson::Print() const {
  std::string out;
  PrintTo(out, 0);
  return out + "\n";
}

void TJson::PrintTo(std::string& out, int depth) const {
  if (kind_ == kScalar) {
    out += text_;
    return;
  }
  const char* brackets = kind_ == kObject ? "{}" : "[]";
  out += brackets[0];
  const bool flat =
      kind_ == kArray && std::ranges::none_of(members_, [](const auto& m) { return m.second.IsContainer(); });
  const std::string indent(2 * static_cast<std::size_t>(depth + 1), ' ');
  for (std::size_t i = 0; i < members_.size(); ++i) {
    if (i > 0) out += flat ? ", " : ",";
    if (!flat) out += "\n" + indent;
    if (kind_ == kObject) out += Quoted(members_[i].first) + ": ";
    members_[i].second.PrintTo(out, depth + 1);
  }
  if (!flat && !members_.empty()) out += "\n" + std::string(2 * static_cast<std::size_t>(depth), ' ');
  out += brackets[1];
}

}  // namespace lumatrex::cli
