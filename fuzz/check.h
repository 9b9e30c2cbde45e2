// The invariant check of the fuzz targets: a failed one names its line on
// stderr before aborting, so that a crash report from a remote run says which
// promise broke even when only the end of the log survives.
#pragma once

#include <cstdio>
#include <cstdlib>

namespace lumatrex::fuzz {

// The builtins give the caller's place (std::source_location is missing from
// the standard library clang uses here).
inline void Check(bool condition, const char* file = __builtin_FILE(), int line = __builtin_LINE()) {
  if (condition) return;
  std::fprintf(stderr, "fuzz check failed: %s:%d\n", file, line);
  std::abort();
}

}  // namespace lumatrex::fuzz
