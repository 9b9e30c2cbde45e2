// What a drawing file holds survives opening and saving byte for byte, values
// a drawing cannot hold are refused when read, and pictures too large to make
// are refused before anything is allocated.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include "canvas/drawing_samples.h"

namespace lumatrex {
namespace {

using namespace test;

// A drawing in the form our writer gives (layer flags 0 or 1, no bytes a
// reader ignores) holding the values that used to change on a round trip: a
// pen width of 0 and a name that is not UTF-8.
TBytes DrawingWithFragileValues(const std::string& v) {
  THeaderFields header;
  header.version = v;
  header.layers = {{"Layer0", 0, 1}, {"Plan", 3, 0}};
  std::vector<TEntry> shapes;
  const TArrMyPoint points = Box(5, 5, 25, 15);
  shapes.push_back({"TMyRectangle", BaseRecord(v, {.name = "\xff\xfe\xc3(", .id = 11, .points = points, .penWidth = 0}).bytes});
  return Drawing(header, shapes);
}

TEST(TMyCADDrawingFidelity, OpenThenSaveKeepsEveryByteOfEveryVersion) {
  for (const std::string& v : kVersions) {
    SCOPED_TRACE(v);
    const TBytes file = DrawingWithFragileValues(v);
    TMyCAD cad;
    ASSERT_TRUE(Load(cad, file));
    const TBytes saved = Saved(cad);
    // Every version is written as the current one: that output, opened and
    // saved again, must stay as it is.
    const TMyShape& fragile = *cad.GetShapeByNo(0);
    EXPECT_EQ(fragile.GetName(), "\xff\xfe\xc3(");
    EXPECT_EQ(fragile.Pen().StoredWidth(), 0);
    EXPECT_EQ(fragile.Pen().Width(), 1) << "a pen of width 0 draws one pixel wide";
    TMyCAD again;
    ASSERT_TRUE(Load(again, saved));
    EXPECT_EQ(Saved(again), saved);
  }
}

TEST(TMyCADDrawingFidelity, NonFiniteCoordinatesAreRefusedWhenRead) {
  const float nan = std::numeric_limits<float>::quiet_NaN();
  const float inf = std::numeric_limits<float>::infinity();
  struct Case {
    const char* name;
    std::string version;
    TArrMyPoint points;
  };
  const Case cases[] = {
      {"NaN x, float32", "XP.j", {{nan, 0}, {1, 1}}},
      {"infinite y, float32", "XP.9", {{0, -inf}, {1, 1}}},
      {"infinite x, 80-bit", "XP.5", {{inf, 0}, {1, 1}}},
      {"NaN y, 80-bit", "XP.3", {{1, 1}, {0, nan}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    THeaderFields header;
    header.version = c.version;
    const TBytes file = Drawing(header, {{"TMyLine", LineRecord(c.version, {.points = c.points}).bytes}});
    TMyCAD cad;
    try {
      Load(cad, file);
      ADD_FAILURE() << "loaded";
    } catch (const EStreamFormatError& e) {
      EXPECT_NE(std::string(e.what()).find("non-finite"), std::string::npos) << e.what();
    }
    EXPECT_EQ(cad.GetShapesCount(), 0);
  }
}

TEST(TMyCADDrawingFidelity, APictureAboveTheLimitIsRefusedWithAZoomThatFits) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  AddBox(cad, 5e6f, 5e6f, 5e6f + 10, 5e6f + 10);
  TImageExportOptions options;
  options.MaxPixels = 40000;
  std::string message;
  try {
    cad.RenderToBitmap(options);
    FAIL() << "rendered";
  } catch (const EPictureTooLarge& e) {
    message = e.what();
  }
  const std::string hint = "lower the zoom to ";
  ASSERT_NE(message.find(hint), std::string::npos) << message;
  EXPECT_NE(message.find(" x "), std::string::npos) << message;
  EXPECT_EQ(cad.GetZoom(), 1.0);
  // The zoom named in the message is one that works.
  options.Zoom = std::stod(message.substr(message.find(hint) + hint.size()));
  const TBitmap picture = cad.RenderToBitmap(options);
  EXPECT_LE(std::int64_t{picture.Width()} * picture.Height(), options.MaxPixels);
}

}  // namespace
}  // namespace lumatrex
