#include "persistence/file_version.h"

#include <algorithm>
#include <array>

namespace lumatrex {

namespace {
constexpr std::array<const char*, 13> kVersions = {"XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8",
                                                   "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j"};
}

int FileVersionIndex(const std::string& tag) {
  const auto it = std::find(kVersions.begin(), kVersions.end(), tag);
  return it == kVersions.end() ? -1 : static_cast<int>(it - kVersions.begin());
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
