// Drawings and shape libraries as JSON documents: every persisted field under
// its published name, enumerations and sets as their ordinal or bit mask.
#pragma once

#include <memory>
#include <vector>

#include "canvas/tmycad.h"
#include "json.h"
#include "library/cmb_shape.h"

namespace lumatrex::cli {

// The drawing on Cad: header fields, user data, layers and shapes (Cad is
// not changed; its user data has no const access).
TJson DumpDrawing(TMyCAD& cad);
// A library: its tag and each entry with its shapes at their stored (unit)
// coordinates.
TJson DumpLibrary(const std::string& tag, const std::vector<std::unique_ptr<TCmbShape>>& entries);

}  // namespace lumatrex::cli
