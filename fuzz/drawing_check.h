// Shared by the fuzz targets that end with a drawing: whatever a reader
// accepted must save, read back and save to the very same bytes.
#pragma once

#include <cstdint>
#include <vector>

#include "canvas/tmycad.h"
#include "fuzz_support.h"
#include "persistence/stream_io.h"

namespace lumatrex::fuzz {

inline std::vector<std::uint8_t> SavedDrawing(const TMyCAD& cad) {
  TMemoryStream stream;
  cad.SaveToStream(stream);
  return stream.Bytes();
}

inline void CheckSavesStably(const TMyCAD& cad) {
  const std::vector<std::uint8_t> once = SavedDrawing(cad);
  TMyCAD again;
  TMemoryStream reread(once);
  Check(again.LoadFromStream(reread));
  Check(SavedDrawing(again) == once);
}

}  // namespace lumatrex::fuzz
