// BMP decoding of hand-made files (each variant, each way a file can be
// broken) and the exact bytes that encoding writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <cstdint>
#include <optional>
#include <random>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/bmp_codec.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using Bytes = std::vector<std::uint8_t>;

// "42 4D ..." -> bytes; '|' may separate groups for readability.
Bytes Hex(std::string text) {
  std::replace(text.begin(), text.end(), '|', ' ');
  Bytes bytes;
  std::istringstream in(text);
  std::string token;
  while (in >> token) bytes.push_back(static_cast<std::uint8_t>(std::stoul(token, nullptr, 16)));
  return bytes;
}

void Put16(Bytes& out, std::uint32_t v) {
  out.push_back(static_cast<std::uint8_t>(v));
  out.push_back(static_cast<std::uint8_t>(v >> 8));
}

void Put32(Bytes& out, std::uint32_t v) {
  Put16(out, v & 0xFFFF);
  Put16(out, v >> 16);
}

// A hand-made BMP file, written field by field so that a test can break any
// one of them.
struct TFile {
  std::uint32_t headerSize = 40;
  std::int32_t width = 1;
  std::int32_t height = 1;
  std::uint16_t planes = 1;
  std::uint16_t bpp = 24;
  std::uint32_t compression = 0;
  std::uint32_t clrUsed = 0;
  std::vector<std::uint32_t> masks;      // from offset 54, inside or after the header
  Bytes palette;                         // raw entries
  Bytes pixels;
  std::optional<std::uint32_t> offBits;  // default: right after the palette
  const char* signature = "BM";

  Bytes Build() const {
    Bytes info;
    Put32(info, headerSize);
    if (headerSize == 12) {
      Put16(info, width);
      Put16(info, height);
    } else {
      Put32(info, width);
      Put32(info, height);
    }
    Put16(info, planes);
    Put16(info, bpp);
    if (headerSize >= 40) {
      for (std::uint32_t v : {compression, std::uint32_t(pixels.size()), 2835u, 2835u, clrUsed, 0u}) Put32(info, v);
    }
    for (std::uint32_t mask : masks) Put32(info, mask);
    if (info.size() < headerSize) info.resize(headerSize, 0);
    const auto defaultOffset = static_cast<std::uint32_t>(14 + info.size() + palette.size());
    Bytes file = {std::uint8_t(signature[0]), std::uint8_t(signature[1])};
    Put32(file, static_cast<std::uint32_t>(defaultOffset + pixels.size()));
    Put32(file, 0);
    Put32(file, offBits.value_or(defaultOffset));
    file.insert(file.end(), info.begin(), info.end());
    file.insert(file.end(), palette.begin(), palette.end());
    file.insert(file.end(), pixels.begin(), pixels.end());
    return file;
  }
};

bmp::TDecodedBmp Decode(const Bytes& file) { return bmp::Decode(file.data(), file.size()); }

Bytes DataFile(const std::string& name) {
  std::ifstream in(test::DataPath(name), std::ios::binary);
  return Bytes(std::istreambuf_iterator<char>(in), {});
}

// The bytes of F after Change(F).
template <typename Change>
Bytes Changed(TFile f, Change change) {
  change(f);
  return f.Build();
}

TFile Palette8(std::int32_t width, std::int32_t height, Bytes pixels) {
  TFile f;
  f.width = width;
  f.height = height;
  f.bpp = 8;
  f.palette = Hex("00 00 00 00 | FF FF FF 00");
  f.pixels = std::move(pixels);
  return f;
}

TFile Rle(std::uint32_t compression, std::int32_t width, std::int32_t height, const std::string& data) {
  TFile f = Palette8(width, height, Hex(data));
  f.compression = compression;
  f.bpp = compression == 1 ? 8 : 4;
  return f;
}

TFile Bitfields(std::uint16_t bpp, std::vector<std::uint32_t> masks, Bytes pixels) {
  TFile f;
  f.bpp = bpp;
  f.compression = 3;
  f.masks = std::move(masks);
  f.pixels = std::move(pixels);
  return f;
}

// ---------------------------------------------------------------------------
// Decoding: the variants
// ---------------------------------------------------------------------------

TEST(BmpDecode, DirectColourVariantsGiveTheirArgbPixels) {
  struct Case { const char* name; TFile file; bool hasAlpha; std::vector<std::uint32_t> argb; };
  TFile rgb24;
  rgb24.width = 2;
  rgb24.height = 2;
  rgb24.pixels = Hex("FF 00 00 | FF FF FF | 00 00 | 00 00 FF | 00 FF 00 | 00 00");
  TFile unpaddedLastRow;
  unpaddedLastRow.height = 2;
  unpaddedLastRow.pixels = Hex("01 02 03 00 | 04 05 06");
  TFile rgb16;
  rgb16.width = 4;
  rgb16.bpp = 16;
  rgb16.pixels = Hex("FF 7F | 00 80 | 00 7C | 03 00");  // white, top bit only, red, blue 3 of 31
  TFile v5 = Bitfields(32, {0x3FF00000, 0x000FFC00, 0x000003FF, 0xC0000000}, {});
  v5.headerSize = 124;
  Put32(v5.pixels, 0x7FF00000u | 512u << 10);  // alpha 1 of 3, red 1023, green 512, blue 0
  const Case cases[] = {
      {"24_bits_rows_bottom_up", rgb24, false, {0xFFFF0000, 0xFF00FF00, 0xFF0000FF, 0xFFFFFFFF}},
      {"last_row_may_lack_its_padding", unpaddedLastRow, false, {0xFF060504, 0xFF030201}},
      {"16_bits_without_masks_are_555_rounded", rgb16, false, {0xFFFFFFFF, 0xFF000000, 0xFFFF0000, 0xFF000019}},
      {"v5_masks_of_any_width_scale_to_8_bits", v5, true, {0x55FF8000}},
      {"zero_colour_mask_reads_0_missing_alpha_opaque", Bitfields(16, {0xFF00, 0x00FF, 0}, Hex("34 12")), false,
       {0xFF123400}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const bmp::TDecodedBmp bmp = Decode(c.file.Build());
    EXPECT_FALSE(bmp.indexed);
    EXPECT_EQ(bmp.hasAlpha, c.hasAlpha);
    EXPECT_EQ(bmp.argb, c.argb);
  }
}

// Palette files: the indices, top row first, and the palette where it matters.
TEST(BmpDecode, IndexedVariantsGiveTheirIndicesTopRowFirst) {
  struct Case { const char* name; Bytes file; int bpp; Bytes indices; std::vector<TColor> palette; };
  const Case cases[] = {
      {"negative height means top-down rows", Palette8(1, -2, Hex("00 00 00 00 | 01 00 00 00")).Build(), 8, {0, 1}, {}},
      {"1 bit: high bits first, the unused ones ignored",  // 1011 0011 | 01 and six unused ones
       Changed(Palette8(10, 1, Hex("B3 7F 00 00")), [](TFile& f) { f.bpp = 1; }), 1, {1, 0, 1, 1, 0, 0, 1, 1, 0, 1}, {}},
      {"4 bits", Changed(Palette8(3, 1, Hex("01 1F 00 00")), [](TFile& f) { f.bpp = 4; }), 4, {0, 1, 1}, {}},
      {"OS/2 core header: three-byte palette entries", Changed(Palette8(2, 1, Hex("80 00 00 00")), [](TFile& f) {
         f.headerSize = 12;
         f.bpp = 1;
         f.palette = Hex("01 02 03 | 04 05 06");
       }), 1, {1, 0}, {RGB(3, 2, 1), RGB(6, 5, 4)}},
      {"indices past the palette are black",
       Changed(Palette8(2, 1, Hex("05 01 00 00")), [](TFile& f) { f.palette = Hex("FF FF FF 00 | 00 00 FF 00"); }), 8,
       {5, 1}, {clWhite, clRed, clBlack, clBlack, clBlack, clBlack}},
      {"RLE8 runs, absolute runs, deltas and end codes",
       Rle(1, 4, 3,
           "03 07 | 00 00 |"              // bottom row: three 7s, end of line
           "00 03 01 02 03 00 | 00 00 |"  // absolute 1 2 3 with its pad byte
           "00 02 01 00 | 01 09 | 00 01")  // delta one right, one 9, end of bitmap
           .Build(),
       8, {0, 9, 0, 0, 1, 2, 3, 0, 7, 7, 7, 0}, {}},
      {"RLE8 delta skipping rows, which keep index 0", Rle(1, 2, 3, "00 02 01 02 | 01 05 | 00 01").Build(), 8,
       {0, 5, 0, 0, 0, 0}, {}},
      {"RLE4 runs alternate nibbles, absolute runs keep word alignment",
       Rle(2, 5, 2,
           "05 12 | 00 00 |"             // bottom row: 1 2 1 2 1
           "00 05 34 56 70 00 | 00 01")  // five nibbles in three bytes, pad byte, end
           .Build(),
       4, {3, 4, 5, 6, 7, 1, 2, 1, 2, 1}, {}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    const bmp::TDecodedBmp bmp = Decode(c.file);
    EXPECT_EQ(bmp.bitsPerPixel, c.bpp);
    EXPECT_EQ(std::size_t(bmp.width) * bmp.height, c.indices.size());
    EXPECT_EQ(bmp.indices, c.indices);
    if (!c.palette.empty()) { EXPECT_EQ(bmp.palette, c.palette); }
  }
}

// ---------------------------------------------------------------------------
// Decoding: refused files
// ---------------------------------------------------------------------------

// The files of tests/data/bmp/refused, each listed with a part of its error's text.
TEST(BmpDecode, RefusedFilesThrowInvalidGraphicNamingTheProblem) {
  for (const std::vector<std::string>& row : test::DataTable("bmp/refused.txt")) {
    SCOPED_TRACE(row[0]);
    const Bytes bytes = DataFile("bmp/refused/" + row[0] + ".bmp");
    ASSERT_FALSE(bytes.empty());
    try {
      Decode(bytes);
      ADD_FAILURE() << "decoded";
    } catch (const EInvalidGraphic& e) {
      EXPECT_NE(std::string(e.what()).find(row[1]), std::string::npos) << e.what();
    }
  }
}

// Valid files without row padding, so that every shorter prefix lacks data.
TEST(BmpDecode, EveryShorterPrefixOfACompleteFileIsRefused) {
  TFile rgb;
  rgb.width = 4;
  rgb.height = 2;
  rgb.pixels = Bytes(24, 0x55);
  TFile core = Palette8(4, 2, Bytes(8, 1));
  core.headerSize = 12;
  core.palette = Hex("00 00 00 | FF FF FF");
  const std::pair<const char*, Bytes> files[] = {
      {"Rgb24", rgb.Build()}, {"Palette8", Palette8(4, 2, Bytes(8, 1)).Build()}, {"Os2Core", core.Build()},
      {"Bitfields16", Changed(Bitfields(16, {0x7C00, 0x3E0, 0x1F}, Hex("FF 7F 00 7C")), [](TFile& f) { f.width = 2; })},
      {"Rle8", Rle(1, 2, 2, "02 01 00 00 02 01 00 01").Build()},
  };
  for (const auto& [name, bytes] : files) {
    SCOPED_TRACE(name);
    ASSERT_NO_THROW(Decode(bytes));
    for (std::size_t size = 0; size < bytes.size(); ++size)
      EXPECT_THROW(bmp::Decode(bytes.data(), size), EInvalidGraphic) << "cut at " << size;
  }
}

// ---------------------------------------------------------------------------
// Encoding
// ---------------------------------------------------------------------------

bmp::TEncodeSource Source(std::int32_t width, std::int32_t height, std::int32_t bpp, const Bytes& pixels,
                          std::int32_t stride) {
  bmp::TEncodeSource s;
  s.width = width;
  s.height = height;
  s.bitsPerPixel = bpp;
  s.stride = stride;
  s.pixels = pixels.data();
  return s;
}

// The files under tests/data/bmp are laid out by hand from the format's
// header tables; the encoder must write them byte for byte.
TEST(BmpEncode, WritesTheHandMadeFilesByteForByte) {
  struct Case {
    const char* file;
    std::int32_t width, height, bpp, stride;
    const char* pixels;
    std::vector<TColor> palette;
    bool alpha;  // marked as such by a BITMAPV5HEADER
  };
  const Case cases[] = {
      {"rgb24-2x2.bmp", 2, 2, 24, 8, "00 00 FF | 00 FF 00 | AA AA | FF 00 00 | FF FF FF | AA AA", {}, false},
      {"pal8-3x2.bmp", 3, 2, 8, 5, "00 01 02 | EE EE | 02 02 00 | EE EE", {clRed, clLime, RGB(1, 2, 3)}, false},
      {"rgba32-1x2.bmp", 1, 2, 32, 4, "10 20 30 40 | 50 60 70 80", {}, true},
      {"pal1-3x1.bmp", 3, 1, 1, 1, "BF", {clBlack, clWhite}, false},  // 1 0 1, then five bits of garbage
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.file);
    const Bytes pixels = Hex(c.pixels);
    bmp::TEncodeSource s = Source(c.width, c.height, c.bpp, pixels, c.stride);
    s.palette = c.palette;
    s.alpha = c.alpha;
    EXPECT_EQ(bmp::Encode(s), DataFile(std::string("bmp/") + c.file));
  }
  const bmp::TDecodedBmp withAlpha = Decode(DataFile("bmp/rgba32-1x2.bmp"));
  EXPECT_TRUE(withAlpha.hasAlpha);
  EXPECT_EQ(withAlpha.argb, (std::vector<std::uint32_t>{0x40302010, 0x80706050}));
}

TEST(BmpEncode, SourcesBreakingTheRulesAreRejected) {
  const Bytes pixels(64, 0);
  auto withPalette = [&](std::int32_t bpp, std::size_t entries) {
    bmp::TEncodeSource s = Source(2, 2, bpp, pixels, 4);
    s.palette.assign(entries, clBlack);
    return s;
  };
  EXPECT_THROW(bmp::Encode(Source(2, 2, 2, pixels, 4)), std::invalid_argument);
  EXPECT_THROW(bmp::Encode(Source(-1, 2, 24, pixels, 8)), std::invalid_argument);
  EXPECT_THROW(bmp::Encode(Source(2, 2, 24, pixels, 5)), std::invalid_argument);  // stride below 6
  bmp::TEncodeSource noPixels = Source(2, 2, 24, pixels, 8);
  noPixels.pixels = nullptr;
  EXPECT_THROW(bmp::Encode(noPixels), std::invalid_argument);
  EXPECT_THROW(bmp::Encode(Source(16385, 16385, 24, pixels, 49156)), std::invalid_argument);
  EXPECT_THROW(bmp::Encode(withPalette(8, 0)), std::invalid_argument);
  EXPECT_THROW(bmp::Encode(withPalette(4, 17)), std::invalid_argument);
  EXPECT_NO_THROW(bmp::Encode(withPalette(4, 16)));
}

// Decode(Encode(x)) == x for odd sizes, whose rows need padding.
TEST(BmpEncode, DecodeGivesBackWhatWasEncodedAtEveryBitCount) {
  for (const int bpp : {1, 4, 8, 24, 32}) {
    SCOPED_TRACE(bpp);
    const std::int32_t width = 13, height = 5, stride = (width * bpp + 7) / 8;
    std::mt19937 random(bpp);
    Bytes pixels(std::size_t(stride) * height);
    for (std::uint8_t& b : pixels) b = static_cast<std::uint8_t>(random());
    bmp::TEncodeSource s = Source(width, height, bpp, pixels, stride);
    if (bpp <= 8)
      for (int i = 0; i < 1 << bpp; ++i) s.palette.push_back(static_cast<TColor>(random() & 0xFFFFFF));
    const bmp::TDecodedBmp bmp = Decode(bmp::Encode(s));
    ASSERT_EQ(bmp.width, width);
    ASSERT_EQ(bmp.height, height);
    EXPECT_EQ(bmp.bitsPerPixel, bpp);
    EXPECT_EQ(bmp.palette, s.palette);
    for (int y = 0; y < height; ++y) {
      const std::uint8_t* row = &pixels[std::size_t(y) * stride];
      for (int x = 0; x < width; ++x) {
        const std::size_t i = std::size_t(y) * width + x;
        if (bpp <= 8) {
          const int perByte = 8 / bpp, shift = 8 - bpp * (x % perByte + 1);
          EXPECT_EQ(bmp.indices[i], row[x / perByte] >> shift & ((1 << bpp) - 1)) << x << "," << y;
        } else {
          const std::uint8_t* p = row + x * (bpp / 8);
          const std::uint32_t alpha = bpp == 32 ? p[3] : 0xFF;
          EXPECT_EQ(bmp.argb[i], alpha << 24 | p[2] << 16 | p[1] << 8 | p[0]) << x << "," << y;
        }
      }
    }
  }
}

}  // namespace
}  // namespace lumatrex
