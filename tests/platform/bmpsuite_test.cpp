// The BMP conformance images (BMP Suite): every file of g/ must look exactly
// like its reference; the files of q/ and b/ either decode (and then match
// their reference where one exists) or are refused with EInvalidGraphic.
// Each file's expected outcome is listed, so a change of behaviour shows up.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <set>
#include <string>
#include <vector>

#include "platform/bmp_codec.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

enum TOutcome : std::uint8_t {
  kDecodes,
  kRefused,
};

struct TSuiteCase {
  const char* file;       // folder/name.bmp
  TOutcome outcome;
  const char* reference;  // reference/NAME.png, or nullptr
  int tolerance = 0;      // per channel, alpha included
};

void PrintTo(const TSuiteCase& c, std::ostream* out) { *out << c.file; }

// An 8-bit original stored in wider samples by the suite's own rounding, which
// scaling back may resolve to the neighbouring value.
constexpr int kWiderSamples = 1;

const std::vector<TSuiteCase>& SuiteCases() {
  static const std::vector<TSuiteCase> cases = {
      {"g/pal1.bmp", kDecodes, "pal1"}, {"g/pal1bg.bmp", kDecodes, "pal1bg"}, {"g/pal1wb.bmp", kDecodes, "pal1"},
      {"g/pal4.bmp", kDecodes, "pal4"}, {"g/pal4gs.bmp", kDecodes, "pal4gs"}, {"g/pal4rle.bmp", kDecodes, "pal4"},
      {"g/pal8-0.bmp", kDecodes, "pal8"}, {"g/pal8.bmp", kDecodes, "pal8"}, {"g/pal8gs.bmp", kDecodes, "pal8gs"},
      {"g/pal8nonsquare.bmp", kDecodes, "pal8nonsquare-e"},  // pixels as stored, not stretched
      {"g/pal8os2.bmp", kDecodes, "pal8"}, {"g/pal8rle.bmp", kDecodes, "pal8"},
      {"g/pal8topdown.bmp", kDecodes, "pal8"}, {"g/pal8v4.bmp", kDecodes, "pal8"}, {"g/pal8v5.bmp", kDecodes, "pal8"},
      {"g/pal8w124.bmp", kDecodes, "pal8w124"}, {"g/pal8w125.bmp", kDecodes, "pal8w125"},
      {"g/pal8w126.bmp", kDecodes, "pal8w126"}, {"g/rgb16-565.bmp", kDecodes, "rgb16-565"},
      {"g/rgb16-565pal.bmp", kDecodes, "rgb16-565"}, {"g/rgb16.bmp", kDecodes, "rgb16"},
      {"g/rgb16bfdef.bmp", kDecodes, "rgb16"}, {"g/rgb24.bmp", kDecodes, "rgb24"},
      {"g/rgb24pal.bmp", kDecodes, "rgb24"}, {"g/rgb32.bmp", kDecodes, "rgb24"}, {"g/rgb32bf.bmp", kDecodes, "rgb24"},
      {"g/rgb32bfdef.bmp", kDecodes, "rgb24"},

      {"q/pal1huffmsb.bmp", kRefused, nullptr},  // OS/2 Huffman
      {"q/pal1p1.bmp", kDecodes, "pal1p1"}, {"q/pal2.bmp", kDecodes, "pal2"},
      {"q/pal2color.bmp", kDecodes, "pal2color"},
      {"q/pal4rlecut.bmp", kDecodes, "pal4rlecut-0"},  // unwritten pixels are index 0
      {"q/pal4rletrns.bmp", kDecodes, "pal4rletrns-0"}, {"q/pal8offs.bmp", kDecodes, "pal8"},
      {"q/pal8os2-hs.bmp", kDecodes, "pal8"}, {"q/pal8os2-sz.bmp", kDecodes, "pal8"},
      {"q/pal8os2sp.bmp", kDecodes, "pal8"}, {"q/pal8os2v2-16.bmp", kDecodes, "pal8"},
      {"q/pal8os2v2-40sz.bmp", kDecodes, "pal8"}, {"q/pal8os2v2-sz.bmp", kDecodes, "pal8"},
      {"q/pal8os2v2.bmp", kDecodes, "pal8"}, {"q/pal8oversizepal.bmp", kDecodes, "pal8"},
      {"q/pal8rlecut.bmp", kDecodes, "pal8rlecut-0"}, {"q/pal8rletrns.bmp", kDecodes, "pal8rletrns-0"},
      {"q/rgb16-231.bmp", kDecodes, "rgb16-231"}, {"q/rgb16-3103.bmp", kDecodes, "rgb16-3103"},
      {"q/rgb16faketrns.bmp", kDecodes, "rgb16"},  // the top bit is no alpha
      {"q/rgb24jpeg.bmp", kRefused, nullptr}, {"q/rgb24largepal.bmp", kDecodes, "rgb24"},
      {"q/rgb24lprof.bmp", kDecodes, "rgb24"}, {"q/rgb24png.bmp", kRefused, nullptr},
      {"q/rgb24prof.bmp", kDecodes, "rgb24"},
      {"q/rgb24prof2.bmp", kDecodes, nullptr},  // colours meant for its own profile
      {"q/rgb24rle24.bmp", kRefused, nullptr},  // OS/2 RLE24
      {"q/rgb32-111110.bmp", kDecodes, "rgb24", kWiderSamples}, {"q/rgb32-7187.bmp", kDecodes, "rgb32-7187"},
      {"q/rgb32-xbgr.bmp", kDecodes, "rgb24"},
      {"q/rgb32fakealpha.bmp", kDecodes, "rgb24"},  // the fourth byte is no alpha
      {"q/rgb32h52.bmp", kDecodes, "rgb24"}, {"q/rgba16-1924.bmp", kDecodes, "rgba16-1924"},
      {"q/rgba16-4444.bmp", kDecodes, "rgba16-4444"}, {"q/rgba16-5551.bmp", kDecodes, "rgba16-5551"},
      {"q/rgba32-1.bmp", kDecodes, "rgba32"}, {"q/rgba32-1010102.bmp", kDecodes, "rgba32-1010102"},
      {"q/rgba32-2.bmp", kDecodes, "rgba32"}, {"q/rgba32-61754.bmp", kDecodes, "rgba32-61754"},
      {"q/rgba32-81284.bmp", kDecodes, "rgba32-81284"}, {"q/rgba32abf.bmp", kDecodes, "rgba32"},
      {"q/rgba32h56.bmp", kDecodes, "rgba32"}, {"q/rgba64.bmp", kRefused, nullptr},

      {"b/badbitcount.bmp", kRefused, nullptr},
      {"b/badbitssize.bmp", kDecodes, "pal1"},  // biSizeImage is not used
      {"b/baddens1.bmp", kDecodes, "pal1"}, {"b/baddens2.bmp", kDecodes, "pal1"},
      {"b/badfilesize.bmp", kDecodes, "pal1"},  // bfSize is not used
      {"b/badheadersize.bmp", kRefused, nullptr},
      {"b/badpalettesize.bmp", kDecodes, "pal8"},  // palette cut at the pixel data
      {"b/badplanes.bmp", kRefused, nullptr}, {"b/badrle.bmp", kRefused, nullptr},
      {"b/badrle4.bmp", kRefused, nullptr}, {"b/badrle4bis.bmp", kRefused, nullptr},
      {"b/badrle4ter.bmp", kRefused, nullptr}, {"b/badrlebis.bmp", kRefused, nullptr},
      {"b/badrleter.bmp", kRefused, nullptr}, {"b/badwidth.bmp", kRefused, nullptr},
      {"b/pal8badindex.bmp", kDecodes, nullptr},  // checked by OutOfRangeIndicesAreBlack
      {"b/reallybig.bmp", kRefused, nullptr},
      {"b/rgb16-880.bmp", kDecodes, "rgb16-880"},  // zero blue mask reads as 0
      {"b/rletopdown.bmp", kRefused, nullptr}, {"b/shortfile.bmp", kRefused, nullptr},
  };
  return cases;
}

std::string SuitePath(const std::string& relative) { return test::SharedTestData("bmpsuite/" + relative); }

std::vector<std::uint8_t> ReadFile(const std::string& path) {
  std::ifstream in(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>()};
}

bmp::TDecodedBmp DecodeFile(const std::string& path) {
  const std::vector<std::uint8_t> bytes = ReadFile(path);
  return bmp::Decode(bytes.data(), bytes.size());
}

// The decoded pixels as 0xAARRGGBB, opaque unless the file has an alpha channel.
std::vector<std::uint32_t> Argb(const bmp::TDecodedBmp& bmp) {
  std::vector<std::uint32_t> pixels;
  if (bmp.indexed) {
    for (std::uint8_t index : bmp.indices) {
      const TColor c = bmp.palette.at(index);
      pixels.push_back(0xFF000000u | GetRValue(c) << 16 | GetGValue(c) << 8 | GetBValue(c));
    }
    return pixels;
  }
  for (std::uint32_t p : bmp.argb) pixels.push_back(bmp.hasAlpha ? p : (p | 0xFF000000u));
  return pixels;
}

// The colour of a fully transparent pixel is invisible, and the references
// store it as they like.
bool Matches(std::uint32_t got, std::uint32_t want, int tolerance) {
  if ((got | want) >> 24 == 0) return true;
  for (int shift = 0; shift < 32; shift += 8)
    if (std::abs(int(got >> shift & 0xFF) - int(want >> shift & 0xFF)) > tolerance) return false;
  return true;
}

void ExpectMatchesReference(const bmp::TDecodedBmp& bmp, const TSuiteCase& c) {
  QImage reference(QString::fromStdString(SuitePath(std::string("reference/") + c.reference + ".png")));
  ASSERT_FALSE(reference.isNull()) << "reference " << c.reference << " missing";
  reference = reference.convertToFormat(QImage::Format_ARGB32);
  ASSERT_EQ(bmp.width, reference.width());
  ASSERT_EQ(bmp.height, reference.height());
  const std::vector<std::uint32_t> pixels = Argb(bmp);
  int mismatches = 0;
  std::string first;
  for (int y = 0; y < bmp.height; ++y) {
    for (int x = 0; x < bmp.width; ++x) {
      const std::uint32_t want = reference.pixel(x, y), got = pixels[std::size_t(y) * bmp.width + x];
      if (Matches(got, want, c.tolerance)) continue;
      if (mismatches++ == 0)
        first = "(" + std::to_string(x) + "," + std::to_string(y) + "): got " + QString::number(got, 16).toStdString() +
                " want " + QString::number(want, 16).toStdString();
    }
  }
  EXPECT_EQ(mismatches, 0) << "first difference at " << first;
}

class BmpSuite : public testing::TestWithParam<TSuiteCase> {};

TEST_P(BmpSuite, DecodesAsListed) {
  const TSuiteCase& c = GetParam();
  const std::string path = SuitePath(c.file);
  if (path.empty()) GTEST_SKIP() << "BMP suite not present";
  if (c.outcome == kRefused) {
    EXPECT_THROW(DecodeFile(path), EInvalidGraphic);
    return;
  }
  const bmp::TDecodedBmp bmp = DecodeFile(path);
  if (c.reference != nullptr) ExpectMatchesReference(bmp, c);
}

std::string CaseName(const testing::TestParamInfo<TSuiteCase>& info) {
  std::string name = info.param.file;
  std::replace_if(name.begin(), name.end(), [](char ch) { return !std::isalnum(static_cast<unsigned char>(ch)); }, '_');
  return name;
}

INSTANTIATE_TEST_SUITE_P(Files, BmpSuite, testing::ValuesIn(SuiteCases()), CaseName);

// A file added to the suite must get an expected outcome here, so that none
// goes untested.
TEST(BmpSuiteListing, EveryFileHasAnExpectedOutcome) {
  if (SuitePath("g").empty()) GTEST_SKIP() << "BMP suite not present";
  std::set<std::string> listed;
  for (const TSuiteCase& c : SuiteCases()) listed.insert(c.file);
  for (const char* folder : {"g", "q", "b"}) {
    for (const auto& entry : std::filesystem::directory_iterator(SuitePath(folder))) {
      const std::string file = std::string(folder) + "/" + entry.path().filename().string();
      EXPECT_TRUE(listed.count(file)) << file << " has no expected outcome";
    }
  }
}

// Indices past the 101-entry palette of this file show as black.
TEST(BmpSuiteListing, OutOfRangeIndicesAreBlack) {
  const std::string path = SuitePath("b/pal8badindex.bmp");
  if (path.empty()) GTEST_SKIP() << "BMP suite not present";
  const bmp::TDecodedBmp bmp = DecodeFile(path);
  const std::uint8_t top = *std::max_element(bmp.indices.begin(), bmp.indices.end());
  ASSERT_GE(top, 101);
  ASSERT_EQ(bmp.palette.size(), std::size_t{top} + 1);
  for (std::size_t i = 101; i < bmp.palette.size(); ++i) EXPECT_EQ(bmp.palette[i], clBlack) << i;
}

}  // namespace
}  // namespace lumatrex
