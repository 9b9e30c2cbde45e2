// BMP decoding of the hand-made files under tests/data/bmp (each variant,
// each way a file can be broken, listed with what decoding must give) and the
// exact bytes that encoding writes.
#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
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

// Hex numbers separated by blanks.
std::vector<std::uint32_t> Numbers(const std::string& text) {
  std::vector<std::uint32_t> numbers;
  std::istringstream in(text);
  for (std::uint32_t n = 0; in >> std::hex >> n;) numbers.push_back(n);
  return numbers;
}

// "42 4D ..." -> bytes; '|' may separate groups for readability.
Bytes Hex(std::string text) {
  std::replace(text.begin(), text.end(), '|', ' ');
  const std::vector<std::uint32_t> numbers = Numbers(text);
  return Bytes(numbers.begin(), numbers.end());
}

bmp::TDecodedBmp Decode(const Bytes& file) { return bmp::Decode(file.data(), file.size()); }

Bytes DataFile(const std::string& name) {
  const std::string bytes = test::ReadFileBytes(test::DataPath(name));
  return Bytes(bytes.begin(), bytes.end());
}

// ---------------------------------------------------------------------------
// Decoding: the variants
// ---------------------------------------------------------------------------

// The files of tests/data/bmp/decoded, each listed with its bit count, its
// alpha flag, its pixels (ARGB, or palette indices) and where it matters its palette.
TEST(BmpDecode, EachVariantGivesItsPixelsTopRowFirst) {
  for (const std::vector<std::string>& row : test::DataTable("bmp/decoded.txt")) {
    SCOPED_TRACE(row[0]);
    const bmp::TDecodedBmp bmp = Decode(DataFile("bmp/decoded/" + row[0] + ".bmp"));
    EXPECT_EQ(bmp.bitsPerPixel, std::stoi(row[1]));
    EXPECT_EQ(bmp.hasAlpha, row[2] == "yes");
    const std::vector<std::uint32_t> pixels = Numbers(row[3]);
    EXPECT_EQ(std::size_t(bmp.width) * bmp.height, pixels.size());
    if (bmp.indexed) {
      EXPECT_EQ(std::vector<std::uint32_t>(bmp.indices.begin(), bmp.indices.end()), pixels);
    } else {
      EXPECT_EQ(bmp.argb, pixels);
    }
    if (row.size() > 4) {
      EXPECT_EQ(std::vector<std::uint32_t>(bmp.palette.begin(), bmp.palette.end()), Numbers(row[4]));
    }
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

// Complete files without row padding, under tests/data/bmp/complete: every
// shorter prefix lacks data.
TEST(BmpDecode, EveryShorterPrefixOfACompleteFileIsRefused) {
  for (const char* name : {"rgb24", "pal8", "pal8-os2-core", "bitfields16", "rle8"}) {
    SCOPED_TRACE(name);
    const Bytes bytes = DataFile(std::string("bmp/complete/") + name + ".bmp");
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
