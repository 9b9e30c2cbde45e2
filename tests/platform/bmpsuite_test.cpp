// The BMP conformance images (BMP Suite): every file of g/ must look exactly
// like its reference; the files of q/ and b/ either decode (and then match
// their reference where one exists) or are refused with EInvalidGraphic.
// Each file's expected outcome is listed, so a change of behaviour shows up.
#include <gtest/gtest.h>

#include <QImage>
#include <cstdlib>
#include <string>
#include <vector>

#include "platform/bmp_codec.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

struct TSuiteCase {
  std::string file;       // folder/name.bmp
  bool decodes = false;   // or is refused
  std::string reference;  // reference/NAME.png, or empty
  int tolerance = 0;      // per channel, alpha included
};

// The expected outcomes, listed in tests/data/bmpsuite/outcomes.txt.
std::vector<TSuiteCase> SuiteCases() {
  std::vector<TSuiteCase> cases;
  for (const std::vector<std::string>& row : test::DataTable("bmpsuite/outcomes.txt")) {
    cases.push_back({row.at(0), row.at(1) == "decodes", row.at(2) == "-" ? "" : row.at(2),
                     row.size() > 3 ? std::stoi(row[3]) : 0});
  }
  return cases;
}

std::string SuitePath(const std::string& relative) { return test::SharedTestData("bmpsuite/" + relative); }

bmp::TDecodedBmp DecodeFile(const std::string& path) {
  const std::string bytes = test::ReadFileBytes(path);
  return bmp::Decode(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
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
  QImage reference(QString::fromStdString(SuitePath("reference/" + c.reference + ".png")));
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

TEST(BmpSuite, EveryFileDecodesOrIsRefusedAsListed) {
  if (SuitePath("g").empty()) GTEST_SKIP() << "BMP suite not present";
  for (const TSuiteCase& c : SuiteCases()) {
    SCOPED_TRACE(c.file);
    const std::string path = SuitePath(c.file);
    if (!c.decodes) {
      EXPECT_THROW(DecodeFile(path), EInvalidGraphic);
    } else if (c.reference.empty()) {
      EXPECT_NO_THROW(DecodeFile(path));
    } else {
      ExpectMatchesReference(DecodeFile(path), c);
    }
  }
}

}  // namespace
}  // namespace lumatrex
