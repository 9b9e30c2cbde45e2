// Version tags of drawing files, oldest first. Readers decide which fields a
// record holds by comparing the file's tag with the tag that introduced them.
#pragma once

#include <string>

namespace lumatrex {

// The tag every writer writes.
inline constexpr const char* kCurrentFileVersion = "XP.j";

// Position of Tag in "XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8",
// "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j" (0 to 12); -1 for an unknown tag.
int FileVersionIndex(const std::string& tag);

// True when Tag is known and not older than Since.
bool FileVersionAtLeast(const std::string& tag, const char* since);

// True when Tag is one of "XP.2" to "XP.5" (records with 80-bit floats).
bool FileVersionHasExtendedFloats(const std::string& tag);

}  // namespace lumatrex
