// Feeds arbitrary bytes to the drawing reader. A load either fails with a
// stream error and leaves the canvas as it was, or gives a drawing whose
// saved bytes read back and save to the very same bytes; a drawing read is
// also rendered (at a small size limit), the path coordinates from files
// take into integers, and exported to both kinds of DXF file.
#include <cstdint>
#include <vector>

#include "drawing_check.h"
#include "dxf/dxf.h"

using namespace lumatrex;

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
  fuzz::CheckSavesStably(cad);

  TImageExportOptions small;
  small.MaxPixels = 1 << 16;
  try {
    cad.RenderToBitmap(small);
  } catch (const EPictureTooLarge&) {
  }
  DxfText1(cad);
  DxfText(cad);
  return 0;
}
