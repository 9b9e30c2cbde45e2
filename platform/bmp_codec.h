// The BMP file format, independent of any image class: decoding every standard
// variant into plain pixels and encoding the variants TBitmap writes. Internal
// to the platform layer.
#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "platform/bitmap.h"

namespace lumatrex::bmp {

// ---------------------------------------------------------------------------
// Decoding
// ---------------------------------------------------------------------------

// A decoded picture. Palette pictures (1, 2, 4 and 8 bits a pixel, RLE4 and
// RLE8) keep their indices and palette; all others are direct colour.
struct TDecodedBmp {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t bitsPerPixel = 0;    // as stored in the file (2 is possible)
  bool indexed = false;             // true: Indices and Palette are set
  bool hasAlpha = false;            // direct colour with a real alpha channel
  std::vector<TColor> palette;      // 0x00BBGGRR, 1 to 256 entries
  std::vector<std::uint8_t> indices;   // width*height, top-down rows
  // width*height 0xAARRGGBB, top-down rows. AA is the alpha channel when
  // HasAlpha; for 32-bit BI_RGB files it is the stored fourth byte, which the
  // format leaves undefined (TBitmap reads such pictures as opaque);
  // otherwise 0xFF.
  std::vector<std::uint32_t> argb;
};

// Decodes a whole BMP file (file header first). Throws EInvalidGraphic with a
// message naming the problem for malformed or unsupported data; never reads
// outside Data and never allocates more than the file's pixel count allows
// (a declared size above kMaxPixels is refused).
//
// Accepted: headers of 12 (OS/2 1.x), 16 and 64 (OS/2 2.x), 40, 52, 56, 108
// and 124 bytes; BI_RGB at 1, 2, 4, 8, 16 (5-5-5), 24 and 32 bits; RLE8, RLE4;
// BI_BITFIELDS and BI_ALPHABITFIELDS at 16 and 32 bits with contiguous masks
// of any width, scaled to 8 bits by rounding (a zero colour mask reads as 0,
// a missing alpha mask as opaque). Lenient, because it is safe:
//  - every index refers to a palette entry: when pixels use indices past the
//    stored palette, the palette is extended with black up to the highest one;
//  - pixels an RLE stream leaves unwritten (delta, end of line or bitmap)
//    are index 0;
//  - a palette longer than 2^bpp entries is cut, one that would overlap the
//    pixel data is shortened to the entries before it;
//  - bfSize, biSizeImage and the resolution fields are not used.
// Refused: a missing "BM" signature, truncated headers or palettes, unknown
// header sizes, planes other than 1, width below 1, height 0, more than
// kMaxPixels pixels, pixel data starting inside the headers or past the end,
// uncompressed rows missing from the file (even partly), RLE codes that would
// write outside the picture or stop before its end, top-down RLE, RLE
// pictures above a megapixel with fewer than one data byte per 1024 pixels,
// non-contiguous masks, JPEG, PNG, OS/2 Huffman and RLE24 compression, and
// bit counts other than those above.
TDecodedBmp Decode(const std::uint8_t* data, std::size_t size);

inline constexpr std::int64_t kMaxPixels = std::int64_t{1} << 28;

// ---------------------------------------------------------------------------
// Encoding
// ---------------------------------------------------------------------------

// A picture to encode: rows top-down, each Stride bytes, pixels in the layout
// of BitsPerPixel (1, 4, 8: indices, first pixel in the high bits; 16: 5-5-5;
// 24: B,G,R; 32: B,G,R,A).
struct TEncodeSource {
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::int32_t bitsPerPixel = 24;
  std::int32_t stride = 0;
  const std::uint8_t* pixels = nullptr;
  std::vector<TColor> palette;  // for 1, 4 and 8 bits: 1 to 2^bpp entries
  bool alpha = false;           // for 32 bits: the fourth byte is alpha
};

// A complete BMP file, all fields little-endian. This is the byte layout that
// drawing files embed, so it must not change:
//   offset  0  BITMAPFILEHEADER (14 bytes): "BM"; bfSize = whole file;
//              two reserved words 0; bfOffBits = 54 + 4 * palette entries
//   offset 14  BITMAPINFOHEADER (40 bytes): biSize 40; width; height positive
//              (rows bottom-up); planes 1; bit count; BI_RGB (0);
//              biSizeImage = stride * height; both resolutions 0;
//              biClrUsed = palette entries for 1, 4 and 8 bits, else 0;
//              biClrImportant 0
//   offset 54  the palette for 1, 4 and 8 bits: B, G, R, 0 per entry
//   bfOffBits  rows bottom-up, stride = width * bpp rounded up to 4 bytes;
//              bits past the last pixel and padding bytes are 0
// A 32-bit picture's fourth byte is written as it is. When it is alpha
// (Alpha), the info header is instead a 124-byte BITMAPV5HEADER: BI_BITFIELDS
// (3), the masks 0x00FF0000, 0x0000FF00, 0x000000FF, 0xFF000000, colour space
// 'sRGB', intent 4 (images), every other field 0, and bfOffBits 138; readers
// that know only the 40-byte header cannot tell an opaque picture from one
// with alpha, so opaque pictures keep that header. A picture with no
// pixels (width or height 0) gives an empty vector. Throws
// std::invalid_argument for a source that breaks the rules above (unknown bit
// count, negative size, short stride, null pixels, palette size out of range,
// more than kMaxPixels pixels).
std::vector<std::uint8_t> Encode(const TEncodeSource& source);

}  // namespace lumatrex::bmp
