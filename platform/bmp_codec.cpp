#include "platform/bmp_codec.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <stdexcept>
#include <string>

namespace lumatrex::bmp {

namespace {

// ---------------------------------------------------------------------------
// File layout
// ---------------------------------------------------------------------------

constexpr std::size_t kFileHeaderSize = 14;
constexpr std::size_t kInfoHeaderSize = 40;
constexpr std::size_t kV5HeaderSize = 124;
constexpr std::uint32_t kLcsSrgb = 0x73524742;  // 'sRGB'
constexpr std::uint32_t kLcsGmImages = 4;
// Bit-field masks start right after the 40-byte part of every Windows header,
// inside the header from V2 on, after it for a plain BITMAPINFOHEADER.
constexpr std::size_t kMaskOffset = kFileHeaderSize + kInfoHeaderSize;

constexpr std::uint32_t kBiRgb = 0;
constexpr std::uint32_t kBiRle8 = 1;
constexpr std::uint32_t kBiRle4 = 2;
constexpr std::uint32_t kBiBitfields = 3;
constexpr std::uint32_t kBiJpeg = 4;
constexpr std::uint32_t kBiPng = 5;
constexpr std::uint32_t kBiAlphaBitfields = 6;

// A delta code can skip whole rows, so RLE data has no hard lower size; the
// GDI encoder spends a byte per ~127 pixels at best. Allowing eight times that
// keeps sparse pictures loadable while a 100-byte file cannot ask for a
// gigabyte.
constexpr std::int64_t kRlePixelsPerByte = 1024;
constexpr std::int64_t kRleAlwaysAllowedPixels = std::int64_t{1} << 20;

[[noreturn]] void Fail(const std::string& message) {
  throw EInvalidGraphic("invalid BMP file: " + message);
}

std::string Str(std::int64_t value) { return std::to_string(value); }

// Bytes per row including the padding to 4 bytes. Width is at most
// kMaxPixels, so 64 bits cannot overflow.
std::int64_t Stride(std::int64_t width, std::int64_t bpp) { return (width * bpp + 31) / 32 * 4; }

// ---------------------------------------------------------------------------
// Bounds-checked reading
// ---------------------------------------------------------------------------

class TBytes {
 public:
  TBytes(const std::uint8_t* data, std::size_t size) : data_(data), size_(size) {}

  std::size_t Size() const { return size_; }
  const std::uint8_t* At(std::size_t offset) const { return data_ + offset; }

  void Need(std::size_t offset, std::uint64_t count, const char* what) const {
    if (offset > size_ || count > size_ - offset)
      Fail("the file ends inside " + std::string(what) + " (" + Str(size_) + " bytes)");
  }
  std::uint16_t U16(std::size_t offset, const char* what) const {
    Need(offset, 2, what);
    return static_cast<std::uint16_t>(data_[offset] | data_[offset + 1] << 8);
  }
  std::uint32_t U32(std::size_t offset, const char* what) const {
    Need(offset, 4, what);
    std::uint32_t value = 0;
    for (int i = 3; i >= 0; --i) value = value << 8 | data_[offset + i];
    return value;
  }

 private:
  const std::uint8_t* data_;
  std::size_t size_;
};

// ---------------------------------------------------------------------------
// Headers
// ---------------------------------------------------------------------------

struct THeader {
  std::uint32_t headerSize = 0;
  std::int64_t width = 0;
  std::int64_t height = 0;  // rows, always positive
  bool topDown = false;
  std::uint32_t planes = 0;
  std::uint32_t bpp = 0;
  std::uint32_t compression = kBiRgb;
  std::uint32_t clrUsed = 0;
  std::array<std::uint32_t, 4> masks{};  // red, green, blue, alpha
  std::size_t paletteOffset = 0;         // first byte after headers and masks
  std::size_t paletteEntrySize = 4;
  std::size_t pixelOffset = 0;
};

bool IsOs2v2(std::uint32_t headerSize) { return headerSize == 16 || headerSize == 64; }

bool IsKnownHeaderSize(std::uint32_t size) {
  constexpr std::array<std::uint32_t, 8> kSizes = {12, 16, 40, 52, 56, 64, 108, 124};
  return std::find(kSizes.begin(), kSizes.end(), size) != kSizes.end();
}

void SetHeight(THeader& h, std::int64_t height) {
  h.topDown = height < 0;
  h.height = height < 0 ? -height : height;
}

void ReadCoreHeader(const TBytes& file, THeader& h) {
  h.width = file.U16(18, "the width");
  SetHeight(h, file.U16(20, "the height"));
  h.planes = file.U16(22, "the plane count");
  h.bpp = file.U16(24, "the bit count");
  h.paletteEntrySize = 3;
  h.paletteOffset = kFileHeaderSize + h.headerSize;
}

// Masks come from the header for BI_BITFIELDS (an alpha mask too when the
// header holds one) and BI_ALPHABITFIELDS; they may extend past a short header.
void ReadMasks(const TBytes& file, THeader& h) {
  const bool bitfields = !IsOs2v2(h.headerSize) &&
                         (h.compression == kBiBitfields || h.compression == kBiAlphaBitfields);
  std::size_t count = 0;
  if (bitfields) count = h.compression == kBiAlphaBitfields || h.headerSize >= 56 ? 4 : 3;
  for (std::size_t i = 0; i < count; ++i) h.masks[i] = file.U32(kMaskOffset + 4 * i, "the bit-field masks");
  h.paletteOffset = kFileHeaderSize + h.headerSize;
  if (count > 0) h.paletteOffset = std::max(h.paletteOffset, kMaskOffset + 4 * count);
}

void ReadInfoHeader(const TBytes& file, THeader& h) {
  h.width = static_cast<std::int32_t>(file.U32(18, "the width"));
  SetHeight(h, static_cast<std::int32_t>(file.U32(22, "the height")));
  h.planes = file.U16(26, "the plane count");
  h.bpp = file.U16(28, "the bit count");
  if (h.headerSize >= kInfoHeaderSize) {
    h.compression = file.U32(30, "the compression");
    h.clrUsed = file.U32(46, "the palette size");
  }
  ReadMasks(file, h);
}

THeader ReadHeader(const TBytes& file) {
  file.Need(0, kFileHeaderSize + 4, "the file header");
  if (file.At(0)[0] != 'B' || file.At(0)[1] != 'M') Fail("the signature is not \"BM\"");
  THeader h;
  h.pixelOffset = file.U32(10, "the pixel data offset");
  h.headerSize = file.U32(14, "the header size");
  if (!IsKnownHeaderSize(h.headerSize)) Fail("unknown header size " + Str(h.headerSize));
  file.Need(kFileHeaderSize, h.headerSize, "the bitmap header");
  if (h.headerSize == 12)
    ReadCoreHeader(file, h);
  else
    ReadInfoHeader(file, h);
  return h;
}

// ---------------------------------------------------------------------------
// Validation
// ---------------------------------------------------------------------------

void CheckGeometry(const THeader& h) {
  if (h.width < 1) Fail("width " + Str(h.width) + " is not positive");
  if (h.height == 0) Fail("height is zero");
  if (h.width * h.height > kMaxPixels)
    Fail(Str(h.width) + " x " + Str(h.height) + " pixels exceed the limit of " + Str(kMaxPixels));
  if (h.planes != 1) Fail("plane count " + Str(h.planes) + " is not 1");
}

// A mask must be one run of bits inside the pixel.
void CheckMask(std::uint32_t mask, std::uint32_t bpp) {
  if (mask == 0) return;
  const std::uint32_t run = mask >> std::countr_zero(mask);
  if ((run & (run + 1)) != 0) Fail("bit-field mask " + Str(mask) + " is not contiguous");
  if (bpp < 32 && mask >> bpp != 0) Fail("bit-field mask " + Str(mask) + " lies outside the pixel");
}

void CheckBitfields(const THeader& h) {
  if (h.bpp != 16 && h.bpp != 32) Fail("bit-field masks with " + Str(h.bpp) + " bits a pixel");
  for (std::uint32_t mask : h.masks) CheckMask(mask, h.bpp);
  if ((h.masks[0] | h.masks[1] | h.masks[2]) == 0) Fail("all colour masks are zero");
}

// OS/2 2.x reuses the values 3 and 4 for its own Huffman and RLE24 codes;
// embedded JPEG and PNG are meant for printers, not for bitmaps.
void CheckForeignCompression(const THeader& h) {
  const std::uint32_t c = h.compression;
  if (IsOs2v2(h.headerSize) && c == 3) Fail("OS/2 Huffman compression is not supported");
  if (IsOs2v2(h.headerSize) && c == 4) Fail("OS/2 RLE24 compression is not supported");
  if (c == kBiJpeg) Fail("JPEG data inside a BMP file is not supported");
  if (c == kBiPng) Fail("PNG data inside a BMP file is not supported");
}

void CheckFormat(const THeader& h) {
  CheckForeignCompression(h);
  const std::uint32_t c = h.compression;
  if (c == kBiRle8 || c == kBiRle4) {
    if (h.bpp != (c == kBiRle8 ? 8u : 4u)) Fail("RLE with " + Str(h.bpp) + " bits a pixel");
    if (h.topDown) Fail("RLE pictures cannot be top-down");
  } else if (c == kBiBitfields || c == kBiAlphaBitfields) {
    CheckBitfields(h);
  } else if (c != kBiRgb) {
    Fail("unknown compression " + Str(c));
  } else if (h.bpp != 1 && h.bpp != 2 && h.bpp != 4 && h.bpp != 8 && h.bpp != 16 && h.bpp != 24 &&
             h.bpp != 32) {
    Fail("unsupported bit count " + Str(h.bpp));
  }
}

void CheckPixelOffset(const TBytes& file, const THeader& h) {
  if (h.pixelOffset < h.paletteOffset) Fail("pixel data offset " + Str(h.pixelOffset) + " lies inside the headers");
  if (h.pixelOffset >= file.Size())
    Fail("pixel data offset " + Str(h.pixelOffset) + " is past the end of the file");
}

// ---------------------------------------------------------------------------
// Palette
// ---------------------------------------------------------------------------

std::vector<TColor> ReadPalette(const TBytes& file, const THeader& h) {
  const std::uint64_t full = std::uint64_t{1} << h.bpp;
  const std::uint64_t room = (h.pixelOffset - h.paletteOffset) / h.paletteEntrySize;
  const std::uint64_t count = std::min({h.clrUsed != 0 ? std::uint64_t{h.clrUsed} : full, full, room});
  if (count == 0) Fail("the palette is empty");
  file.Need(h.paletteOffset, count * h.paletteEntrySize, "the palette");
  std::vector<TColor> palette(count);
  for (std::size_t i = 0; i < count; ++i) {
    const std::uint8_t* entry = file.At(h.paletteOffset + i * h.paletteEntrySize);
    palette[i] = RGB(entry[2], entry[1], entry[0]);
  }
  return palette;
}

// Out-of-range indices show as black; extending the palette with black keeps
// every index valid for whoever uses the picture.
void CoverAllIndices(TDecodedBmp& bmp) {
  const std::uint8_t top = *std::max_element(bmp.indices.begin(), bmp.indices.end());
  if (top >= bmp.palette.size()) bmp.palette.resize(std::size_t{top} + 1, clBlack);
}

// ---------------------------------------------------------------------------
// Uncompressed pixels
// ---------------------------------------------------------------------------

// The first byte of each stored row, top row first; refuses data that does
// not hold every row (the last one may lack its padding).
std::vector<const std::uint8_t*> Rows(const TBytes& file, const THeader& h) {
  const std::int64_t stride = Stride(h.width, h.bpp);
  const std::int64_t needed = stride * (h.height - 1) + (h.width * h.bpp + 7) / 8;
  const std::int64_t present = static_cast<std::int64_t>(file.Size() - h.pixelOffset);
  if (needed > present)
    Fail("pixel data is truncated: " + Str(needed) + " bytes needed, " + Str(present) + " present");
  std::vector<const std::uint8_t*> rows(h.height);
  for (std::int64_t r = 0; r < h.height; ++r)
    rows[h.topDown ? r : h.height - 1 - r] = file.At(h.pixelOffset + r * stride);
  return rows;
}

void DecodeIndexed(const TBytes& file, const THeader& h, TDecodedBmp& bmp) {
  const std::uint32_t perByte = 8 / h.bpp;
  const std::uint32_t valueMask = (1u << h.bpp) - 1;
  const std::vector<const std::uint8_t*> rows = Rows(file, h);
  bmp.indices.resize(h.width * h.height);
  std::uint8_t* out = bmp.indices.data();
  for (const std::uint8_t* row : rows) {
    for (std::int64_t x = 0; x < h.width; ++x) {
      const std::uint32_t shift = 8 - h.bpp * (x % perByte + 1);
      *out++ = static_cast<std::uint8_t>(row[x / perByte] >> shift & valueMask);
    }
  }
}

// One channel of a direct-colour pixel, scaled from its mask width to 8 bits.
struct TChannel {
  std::uint32_t mask = 0;
  std::uint32_t shift = 0;
  std::uint64_t max = 0;  // 0 for an absent channel

  explicit TChannel(std::uint32_t m) : mask(m) {
    if (m == 0) return;
    shift = std::countr_zero(m);
    max = m >> shift;
  }
  std::uint32_t Get(std::uint32_t pixel, std::uint32_t absent) const {
    if (max == 0) return absent;
    const std::uint64_t value = (pixel & mask) >> shift;
    return static_cast<std::uint32_t>((value * 255 + max / 2) / max);
  }
};

struct TPixelMasks {
  TChannel r, g, b, a;
  std::uint32_t Argb(std::uint32_t pixel) const {
    return a.Get(pixel, 0xFF) << 24 | r.Get(pixel, 0) << 16 | g.Get(pixel, 0) << 8 | b.Get(pixel, 0);
  }
};

// BI_RGB files have fixed layouts: 16 bits 5-5-5, 24 and 32 bits 8-8-8. The
// fourth byte of a 32-bit pixel is passed through (see TDecodedBmp::argb).
TPixelMasks MasksOf(const THeader& h) {
  if (h.compression != kBiRgb)
    return {TChannel(h.masks[0]), TChannel(h.masks[1]), TChannel(h.masks[2]), TChannel(h.masks[3])};
  if (h.bpp == 16) return {TChannel(0x7C00), TChannel(0x03E0), TChannel(0x001F), TChannel(0)};
  const std::uint32_t alpha = h.bpp == 32 ? 0xFF000000 : 0;
  return {TChannel(0xFF0000), TChannel(0xFF00), TChannel(0xFF), TChannel(alpha)};
}

std::uint32_t RawPixel(const std::uint8_t* p, std::uint32_t bytes) {
  std::uint32_t value = 0;
  for (std::uint32_t i = bytes; i-- > 0;) value = value << 8 | p[i];
  return value;
}

void DecodeDirect(const TBytes& file, const THeader& h, TDecodedBmp& bmp) {
  const TPixelMasks masks = MasksOf(h);
  const std::uint32_t bytes = h.bpp / 8;
  bmp.hasAlpha = h.compression != kBiRgb && h.masks[3] != 0;
  const std::vector<const std::uint8_t*> rows = Rows(file, h);
  bmp.argb.resize(h.width * h.height);
  std::uint32_t* out = bmp.argb.data();
  for (const std::uint8_t* row : rows)
    for (std::int64_t x = 0; x < h.width; ++x) *out++ = masks.Argb(RawPixel(row + x * bytes, bytes));
}

// ---------------------------------------------------------------------------
// RLE4 and RLE8
// ---------------------------------------------------------------------------

class TRleDecoder {
 public:
  TRleDecoder(const std::uint8_t* data, std::size_t size, const THeader& h, std::uint8_t* out)
      : data_(data), size_(size), width_(h.width), height_(h.height), four_(h.compression == kBiRle4),
        out_(out) {}

  void Run() {
    for (;;) {
      if (size_ - pos_ < 2) {
        if (y_ >= height_) return;  // the last end-of-line closed the picture
        Fail("RLE data ends before the end of the picture");
      }
      const std::uint8_t count = data_[pos_], value = data_[pos_ + 1];
      pos_ += 2;
      if (count > 0)
        EncodedRun(count, value);
      else if (value == 0)
        EndOfLine();
      else if (value == 1)
        return;
      else if (value == 2)
        Delta();
      else
        AbsoluteRun(value);
    }
  }

 private:
  // The output of Count pixels at the current position, rows bottom-up.
  std::uint8_t* Claim(std::int64_t count) {
    if (y_ >= height_) Fail("RLE data continues past the last row");
    if (x_ + count > width_) Fail("RLE run overruns row " + Str(y_) + " counted from the bottom");
    std::uint8_t* target = out_ + (height_ - 1 - y_) * width_ + x_;
    x_ += count;
    return target;
  }
  void Need(std::size_t count) {
    if (size_ - pos_ < count) Fail("RLE data ends inside a code");
  }
  static std::uint8_t Nibble(std::uint8_t byte, std::int64_t i) {
    return static_cast<std::uint8_t>(i % 2 == 0 ? byte >> 4 : byte & 0x0F);
  }

  void EncodedRun(std::uint8_t count, std::uint8_t value) {
    std::uint8_t* target = Claim(count);
    for (std::int64_t i = 0; i < count; ++i) target[i] = four_ ? Nibble(value, i) : value;
  }
  void AbsoluteRun(std::uint8_t count) {
    const std::size_t bytes = four_ ? (count + 1) / 2 : count;
    Need(bytes);
    std::uint8_t* target = Claim(count);
    const std::uint8_t* source = data_ + pos_;
    for (std::int64_t i = 0; i < count; ++i) target[i] = four_ ? Nibble(source[i / 2], i) : source[i];
    pos_ += (bytes + 1) & ~std::size_t{1};  // absolute runs keep 16-bit alignment
    pos_ = std::min(pos_, size_);
  }
  void EndOfLine() {
    x_ = 0;
    ++y_;
  }
  void Delta() {
    Need(2);
    x_ += data_[pos_];
    y_ += data_[pos_ + 1];
    pos_ += 2;
    if (x_ > width_ || y_ >= height_) Fail("RLE delta moves outside the picture");
  }

  const std::uint8_t* data_;
  std::size_t size_;
  std::size_t pos_ = 0;
  std::int64_t width_, height_;
  bool four_;
  std::uint8_t* out_;
  std::int64_t x_ = 0;
  std::int64_t y_ = 0;  // rows counted from the bottom, as stored
};

void DecodeRle(const TBytes& file, const THeader& h, TDecodedBmp& bmp) {
  const std::int64_t dataBytes = static_cast<std::int64_t>(file.Size() - h.pixelOffset);
  const std::int64_t pixels = h.width * h.height;
  if (pixels > kRleAlwaysAllowedPixels && pixels > dataBytes * kRlePixelsPerByte)
    Fail(Str(dataBytes) + " bytes of RLE data cannot describe " + Str(pixels) + " pixels");
  bmp.indices.assign(pixels, 0);
  TRleDecoder(file.At(h.pixelOffset), dataBytes, h, bmp.indices.data()).Run();
}

// ---------------------------------------------------------------------------
// Encoding
// ---------------------------------------------------------------------------

void CheckSource(const TEncodeSource& s) {
  const std::int32_t bpp = s.bitsPerPixel;
  if (bpp != 1 && bpp != 4 && bpp != 8 && bpp != 16 && bpp != 24 && bpp != 32)
    throw std::invalid_argument("BMP encoding: unsupported bit count " + Str(bpp));
  if (s.width < 0 || s.height < 0) throw std::invalid_argument("BMP encoding: negative size");
  if (std::int64_t{s.width} * s.height > kMaxPixels) throw std::invalid_argument("BMP encoding: picture too large");
  if (s.width == 0 || s.height == 0) return;
  if (s.pixels == nullptr || s.stride < (std::int64_t{s.width} * bpp + 7) / 8)
    throw std::invalid_argument("BMP encoding: missing pixels or stride too short");
  if (bpp <= 8 && (s.palette.empty() || s.palette.size() > (std::size_t{1} << bpp)))
    throw std::invalid_argument("BMP encoding: palette of " + Str(s.palette.size()) + " entries");
}

void Put16(std::vector<std::uint8_t>& out, std::uint32_t value) {
  out.push_back(static_cast<std::uint8_t>(value));
  out.push_back(static_cast<std::uint8_t>(value >> 8));
}

void Put32(std::vector<std::uint8_t>& out, std::uint32_t value) {
  Put16(out, value & 0xFFFF);
  Put16(out, value >> 16);
}

// A 32-bit picture with alpha gets a BITMAPV5HEADER with the channel masks,
// so that readers take the fourth byte as alpha; every other picture the
// 40-byte BITMAPINFOHEADER drawing files have always held.
void PutHeaders(std::vector<std::uint8_t>& out, const TEncodeSource& s, std::uint32_t paletteSize,
                std::uint32_t imageSize) {
  const bool alpha = s.bitsPerPixel == 32 && s.alpha;
  const auto infoSize = static_cast<std::uint32_t>(alpha ? kV5HeaderSize : kInfoHeaderSize);
  const auto offBits = static_cast<std::uint32_t>(kFileHeaderSize + infoSize + 4 * paletteSize);
  out.push_back('B');
  out.push_back('M');
  Put32(out, offBits + imageSize);  // bfSize
  Put32(out, 0);                    // bfReserved1, bfReserved2
  Put32(out, offBits);
  Put32(out, infoSize);
  Put32(out, s.width);
  Put32(out, s.height);  // positive: rows bottom-up
  Put16(out, 1);         // planes
  Put16(out, s.bitsPerPixel);
  Put32(out, alpha ? kBiBitfields : kBiRgb);
  Put32(out, imageSize);
  Put32(out, 0);  // biXPelsPerMeter
  Put32(out, 0);  // biYPelsPerMeter
  Put32(out, paletteSize);
  Put32(out, 0);  // biClrImportant
  if (!alpha) return;
  for (std::uint32_t mask : {0x00FF0000u, 0x0000FF00u, 0x000000FFu, 0xFF000000u}) Put32(out, mask);
  Put32(out, kLcsSrgb);
  out.resize(out.size() + 36 + 12, 0);  // colour space end points and gammas: unused for sRGB
  Put32(out, kLcsGmImages);
  out.resize(out.size() + 12, 0);  // no profile; reserved
}

void PutPalette(std::vector<std::uint8_t>& out, const std::vector<TColor>& palette) {
  for (TColor c : palette) {
    out.push_back(GetBValue(c));
    out.push_back(GetGValue(c));
    out.push_back(GetRValue(c));
    out.push_back(0);
  }
}

// Copies the rows bottom-up; bits past the last pixel and the padding are
// zeroed so that a file depends only on the pixels.
void PutRows(std::vector<std::uint8_t>& out, const TEncodeSource& s, std::int64_t stride) {
  const std::int64_t bits = std::int64_t{s.width} * s.bitsPerPixel;
  const std::size_t used = static_cast<std::size_t>((bits + 7) / 8);
  const std::uint8_t lastByteMask = bits % 8 == 0 ? 0xFF : static_cast<std::uint8_t>(0xFF << (8 - bits % 8));
  for (std::int64_t y = s.height - 1; y >= 0; --y) {
    const std::size_t start = out.size();
    const std::uint8_t* row = s.pixels + y * s.stride;
    out.insert(out.end(), row, row + used);
    out.back() &= lastByteMask;
    out.resize(start + stride, 0);
  }
}

}  // namespace

// ---------------------------------------------------------------------------

TDecodedBmp Decode(const std::uint8_t* data, std::size_t size) {
  const TBytes file(data, size);
  const THeader h = ReadHeader(file);
  CheckGeometry(h);
  CheckFormat(h);
  CheckPixelOffset(file, h);

  TDecodedBmp bmp;
  bmp.width = static_cast<std::int32_t>(h.width);
  bmp.height = static_cast<std::int32_t>(h.height);
  bmp.bitsPerPixel = static_cast<std::int32_t>(h.bpp);
  bmp.indexed = h.bpp <= 8;
  if (!bmp.indexed) {
    DecodeDirect(file, h, bmp);
    return bmp;
  }
  bmp.palette = ReadPalette(file, h);
  if (h.compression == kBiRgb)
    DecodeIndexed(file, h, bmp);
  else
    DecodeRle(file, h, bmp);
  CoverAllIndices(bmp);
  return bmp;
}

std::vector<std::uint8_t> Encode(const TEncodeSource& source) {
  CheckSource(source);
  if (source.width == 0 || source.height == 0) return {};
  const std::int64_t stride = Stride(source.width, source.bitsPerPixel);
  const auto paletteSize = static_cast<std::uint32_t>(source.bitsPerPixel <= 8 ? source.palette.size() : 0);
  const auto imageSize = static_cast<std::uint32_t>(stride * source.height);
  std::vector<std::uint8_t> out;
  out.reserve(kFileHeaderSize + kV5HeaderSize + 4 * paletteSize + imageSize);
  PutHeaders(out, source, paletteSize, imageSize);
  if (paletteSize > 0) PutPalette(out, source.palette);
  PutRows(out, source, stride);
  return out;
}

}  // namespace lumatrex::bmp
