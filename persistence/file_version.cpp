#include "persistence/file_version.h"

#include <string_view>

namespace lumatrex {

namespace {
// The last characters of the tags "XP.2" to "XP.j", oldest first. Readers ask
// for the version at every versioned field, so a tag is looked up by its last
// character rather than compared with each known tag.
constexpr std::string_view kVersionCharacters = "23456789aehij";
}  // namespace

int FileVersionIndex(const std::string& tag) {
  if (tag.size() != 4 || tag.compare(0, 3, "XP.") != 0) return -1;
  const std::size_t at = kVersionCharacters.find(tag[3]);
  return at == std::string_view::npos ? -1 : static_cast<int>(at);
}

bool FileVersionAtLeast(const std::string& tag, const char* since) {
  const int index = FileVersionIndex(tag);
  return index >= 0 && index >= FileVersionIndex(since);
}

bool FileVersionHasExtendedFloats(const std::string& tag) {
  const int index = FileVersionIndex(tag);
  return index >= 0 && index <= FileVersionIndex("XP.5");
}

}  // namespace lumatrex
