// Feeds arbitrary bytes to the shape-library reader, both as a current
// library (every entry read by the library's tag) and as an old
// "ZOLTLIB2.1" one. Damaged data must end in a stream error, never a crash,
// a hang or an allocation beyond what the bytes can hold.
#include <cstdint>
#include <vector>

#include "fuzz_support.h"
#include "library/lib_manager.h"

using namespace lumatrex;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  fuzz::EnsureHeadlessApp();
  const std::vector<std::uint8_t> bytes(data, data + size);
  TLibManager lib;
  lib.SetBytes(bytes);
  try {
    const std::int32_t count = lib.GetcmbShapesCount();
    for (std::int32_t i = 0; i < count; ++i) lib.GetCmbShape(lib.GetCmbShapesNameByID(i));
  } catch (const EStreamError&) {
  }
  TMemoryStream old(bytes);
  try {
    ReadOldLibrary(old, nullptr);
  } catch (const EStreamError&) {
  }
  return 0;
}
