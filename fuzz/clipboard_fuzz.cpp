// Feeds arbitrary bytes to the paste of shapes from the clipboard. A paste
// either refuses with a stream error and leaves the drawing as it was, or
// adds shapes after the ones there, and the drawing then saves, reads back
// and saves to the very same bytes.
#include <cstdint>
#include <vector>

#include "canvas/tmycad.h"
#include "fuzz_support.h"
#include "persistence/stream_io.h"

namespace {

using namespace lumatrex;

std::vector<std::uint8_t> Saved(const TMyCAD& cad) {
  TMemoryStream stream;
  cad.SaveToStream(stream);
  return stream.Bytes();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::EnsureHeadlessApp();
  TMyCAD cad;
  cad.AddShapeByCode2("TMyRectangle", "", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}, 0);
  const std::vector<std::uint8_t> before = Saved(cad);
  try {
    cad.AddShapesFromBytes(std::vector<std::uint8_t>(data, data + size), {5, 5}, Import);
  } catch (const EStreamError&) {
    fuzz::Check(Saved(cad) == before);
    return 0;
  }
  fuzz::Check(cad.GetShapesCount() >= 1);
  const std::vector<std::uint8_t> once = Saved(cad);
  TMyCAD again;
  TMemoryStream reread(once);
  fuzz::Check(again.LoadFromStream(reread));
  fuzz::Check(Saved(again) == once);
  // Undoing the paste never takes the shape that was there.
  cad.PopFromUndoRedoShapeList();
  fuzz::Check(cad.GetShapeByNo(0) && cad.GetShapeByNo(0)->ShapeId == 0);
  return 0;
}
