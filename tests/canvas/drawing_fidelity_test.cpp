// What a drawing file holds survives opening and saving byte for byte, values
// a drawing cannot hold are refused when read, and pictures too large to make
// are refused before anything is allocated.
#include <gtest/gtest.h>

#include <cmath>
#include <limits>

#include <QImage>

#include "canvas/drawing_samples.h"
#include "platform/qt_interop.h"

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

// A drawing made on the canvas with what used to change when it was opened
// and saved again: shapes turned off the middle of their box (the centre is
// recomputed on reading) and a picture whose fourth byte is alpha.
TBytes TurnedShapesAndATranslucentPicture() {
  TMyCAD cad;
  cad.Rotate(cad.AddShapeByCode("TMyPolygon", "", {{0, 0}, {30, 5}, {7, 40}, {0, 0}}, 0), 0.7);
  cad.AddShapeByCode("TMyRectangle", "", Box(3, 4, 50, 21), 0.3f);
  auto* image = dynamic_cast<TMyImage*>(cad.AddShapeByCode("TMyImage", "", Box(0, 0, 20, 10), 0));
  QImage picture(2, 1, QImage::Format_ARGB32);
  picture.setPixel(0, 0, qRgba(255, 0, 0, 128));
  picture.setPixel(1, 0, qRgba(0, 0, 255, 0));
  AssignQImage(image->Bitmap(), picture);
  return Saved(cad);
}

// Every version is written as the current one; what is written, opened and
// saved again, must come back byte for byte.
TEST(TMyCADDrawingFidelity, OpenThenSaveKeepsEveryByteOfEveryVersion) {
  std::vector<std::pair<std::string, TBytes>> drawings;
  for (const std::string& v : kVersions) drawings.emplace_back(v, DrawingWithFragileValues(v));
  drawings.emplace_back("turned shapes and a translucent picture", TurnedShapesAndATranslucentPicture());
  for (const auto& [name, file] : drawings) {
    SCOPED_TRACE(name);
    TMyCAD cad;
    ASSERT_TRUE(Load(cad, file));
    const TBytes saved = Saved(cad);
    TMyCAD again;
    ASSERT_TRUE(Load(again, saved));
    EXPECT_EQ(Saved(again), saved);
    if (name.starts_with("XP.")) {
      const TMyShape& fragile = *cad.GetShapeByNo(0);
      EXPECT_EQ(fragile.GetName(), "\xff\xfe\xc3(");
      EXPECT_EQ(fragile.Pen().StoredWidth(), 0);
      EXPECT_EQ(fragile.Pen().Width(), 1) << "a pen of width 0 draws one pixel wide";
    } else {
      EXPECT_EQ(saved, file);  // a picture read without its alpha would be written without the alpha header
    }
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
