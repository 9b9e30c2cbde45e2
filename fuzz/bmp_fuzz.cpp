// Feeds arbitrary bytes to the BMP decoder: it must either refuse them with
// EInvalidGraphic or return a picture whose buffers match its size and whose
// indices all name a palette entry. Palette pictures are also re-encoded and
// must decode to the same indices.
#include <cstdint>

#include "check.h"
#include "platform/bmp_codec.h"

namespace {

using lumatrex::bmp::TDecodedBmp;
using lumatrex::fuzz::Check;

void CheckRoundTrip(const TDecodedBmp& bmp) {
  if (bmp.bitsPerPixel != 8) return;
  lumatrex::bmp::TEncodeSource source;
  source.width = bmp.width;
  source.height = bmp.height;
  source.bitsPerPixel = 8;
  source.stride = bmp.width;
  source.pixels = bmp.indices.data();
  source.palette = bmp.palette;
  const std::vector<std::uint8_t> file = lumatrex::bmp::Encode(source);
  Check(lumatrex::bmp::Decode(file.data(), file.size()).indices == bmp.indices);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TDecodedBmp bmp;
  try {
    bmp = lumatrex::bmp::Decode(data, size);
  } catch (const lumatrex::EInvalidGraphic&) {
    return 0;
  }
  const auto pixels = static_cast<std::size_t>(bmp.width) * static_cast<std::size_t>(bmp.height);
  Check(bmp.width > 0 && bmp.height > 0 && static_cast<std::int64_t>(pixels) <= lumatrex::bmp::kMaxPixels);
  if (!bmp.indexed) {
    Check(bmp.argb.size() == pixels && bmp.indices.empty());
    return 0;
  }
  Check(bmp.indices.size() == pixels && bmp.argb.empty());
  Check(!bmp.palette.empty() && bmp.palette.size() <= 256);
  for (std::uint8_t index : bmp.indices) Check(index < bmp.palette.size());
  CheckRoundTrip(bmp);
  return 0;
}
