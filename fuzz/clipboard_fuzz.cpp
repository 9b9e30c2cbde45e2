// Feeds arbitrary bytes to the paste of shapes from the clipboard. A paste
// either refuses with a stream error and leaves the drawing as it was, or
// adds shapes after the ones there, and the drawing then saves, reads back
// and saves to the very same bytes.
#include <cstdint>
#include <vector>

#include "drawing_check.h"

using namespace lumatrex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::EnsureHeadlessApp();
  TMyCAD cad;
  cad.AddShapeByCode2("TMyRectangle", "", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}, 0);
  const std::vector<std::uint8_t> before = fuzz::SavedDrawing(cad);
  try {
    cad.AddShapesFromBytes(std::vector<std::uint8_t>(data, data + size), {5, 5}, Import);
  } catch (const EStreamError&) {
    fuzz::Check(fuzz::SavedDrawing(cad) == before);
    return 0;
  }
  fuzz::Check(cad.GetShapesCount() >= 1);
  fuzz::CheckSavesStably(cad);
  // Undoing the paste never takes the shape that was there.
  cad.PopFromUndoRedoShapeList();
  fuzz::Check(cad.GetShapeByNo(0) && cad.GetShapeByNo(0)->ShapeId == 0);
  return 0;
}
