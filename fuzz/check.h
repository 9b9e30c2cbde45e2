// The invariant check of the fuzz targets: a failed one names its line on
// stderr before aborting, so that a crash report from a remote run says which
// promise broke even when only the end of the log survives.
#pragma once

#include <cstdio>
#include <cstdlib>
#include <source_location>

namespace lumatrex::fuzz {

inline void Check(bool condition, const std::source_location where = std::source_location::current()) {
  if (condition) return;
  std::fprintf(stderr, "fuzz check failed: %s:%u\n", where.file_name(), static_cast<unsigned>(where.line()));
  std::abort();
}

}  // namespace lumatrex::fuzz
