// Feeds arbitrary bytes to the drawing reader. A load either fails with a
// stream error and leaves the canvas as it was, or gives a drawing whose
// saved bytes read back and save to the very same bytes; a drawing read is
// also rendered (at a small size limit), the path coordinates from files
// take into integers.
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
  TMemoryStream input(std::vector<std::uint8_t>(data, data + size));
  try {
    if (!cad.LoadFromStream(input)) return 0;
  } catch (const EStreamError&) {
    fuzz::Check(cad.GetShapesCount() == 0);
    return 0;
  }
  const std::vector<std::uint8_t> once = Saved(cad);
  TMyCAD again;
  TMemoryStream reread(once);
  fuzz::Check(again.LoadFromStream(reread));
  fuzz::Check(Saved(again) == once);

  TImageExportOptions small;
  small.MaxPixels = 1 << 16;
  try {
    cad.RenderToBitmap(small);
  } catch (const EPictureTooLarge&) {
  }
  return 0;
}
