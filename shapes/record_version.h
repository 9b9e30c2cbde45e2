// The version tag a shape's reader follows: the owner's disk file version
// while it loads, the current version for a shape without an owner.
#pragma once

#include <string>

#include "persistence/file_version.h"
#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

inline std::string RecordVersion(const TMyShape& shape) {
  return shape.Owner() ? shape.Owner()->GetDiskFileVersion() : std::string(kCurrentFileVersion);
}

}  // namespace lumatrex
