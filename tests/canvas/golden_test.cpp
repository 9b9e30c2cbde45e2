// Golden images of the whole paint pipeline: a scene with every line, closed
// and curve shape kind, drawn by a real canvas at zoom 1 and 2, and the four
// placements of a background picture.
//
// Tolerance: none. Figures follow the exact raster conventions, and text uses
// the library's bundled font, so every pixel is expected to match. After an
// intended change of the pictures, regenerate them with
//   LUMATREX_UPDATE_GOLDEN=1 build/tests/canvas/canvas_tests --gtest_filter='*Golden*'
// and look at the new files before committing them. A mismatch writes the
// rendered picture next to the test's temporary files and names it.
#include <gtest/gtest.h>

#include <QImage>
#include <string>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "platform/qt_interop.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/lines.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::Box;

template <typename T>
T* Add(TMyCAD& cad, const char* className, const TArrMyPoint& points, float angle = 0) {
  return static_cast<T*>(cad.AddShapeByCode2(className, "", points, angle));
}

// A 6 x 6 picture: a blue square with a red top-left pixel.
TBitmap Tile() {
  TBitmap tile(6, 6, pf24bit);
  tile.Canvas().Brush().SetColor(RGB(200, 210, 255));
  tile.Canvas().FillRect(Rect(0, 0, 6, 6));
  tile.Canvas().SetPixel(0, 0, clRed);
  return tile;
}

void BuildScene(TMyCAD& cad) {
  cad.SetHotSize(3);
  cad.Font().SetSize(8);
  const TArrowStyle styles[] = {ANone, ALeft, ARight, ADouble};
  for (int i = 0; i < 4; ++i) {
    auto* line = Add<TMyLine>(cad, "TMyLine", {{10, 12.0f + 16 * i}, {110, 12.0f + 16 * i}});
    line->SetArrowStyle(styles[i]);
    line->SetArrowAngle(30);
    line->SetArrowLength(8);
  }
  auto* rule = Add<TMyRuleLine>(cad, "TMyRuleLine", {{10, 100}, {110, 120}});
  rule->Pen().SetColor(clMaroon);
  Add<TMyPolyLine>(cad, "TMyPolyLine", {{10, 140}, {40, 160}, {70, 140}, {100, 160}});
  cad.Brush().SetColor(RGB(255, 240, 200));
  auto* frame = Add<TMyRectangle>(cad, "TMyRectangle", Box(140, 20, 220, 70), 0.4f);
  frame->SetGradientStyle(gsLinearV);
  cad.Brush().SetColor(RGB(210, 240, 210));
  auto* ellipse = Add<TMyEllipse>(cad, "TMyEllipse", Box(140, 100, 220, 150));
  ellipse->Pen().SetWidth(2);
  Add<TMyPolygon>(cad, "TMyPolygon", {{240, 20}, {300, 30}, {280, 80}, {240, 20}});
  Add<TMyBLine>(cad, "TMyBLine", {{240, 150}, {260, 100}, {280, 140}, {280, 140}, {280, 140}, {300, 100}});
  cad.SelectShapeByCode(frame->ShapeId, true);
}

std::string GoldenPath(const std::string& name) { return test::DataPath("golden/" + name + ".png"); }

// Renders Cad through its paint pipeline and compares with the golden picture.
void ExpectGolden(TMyCAD& cad, const std::string& name) {
  cad.Repaint();
  const QImage actual = ToQImage(cad.ScreenBitmap());
  const QString path = QString::fromStdString(GoldenPath(name));
  if (qEnvironmentVariableIsSet("LUMATREX_UPDATE_GOLDEN")) {
    ASSERT_TRUE(actual.save(path, "PNG")) << "cannot write " << path.toStdString();
    return;
  }
  const QImage expected = QImage(path).convertToFormat(QImage::Format_RGB32);
  ASSERT_FALSE(expected.isNull()) << "missing golden picture " << path.toStdString();
  ASSERT_EQ(actual.size(), expected.size());
  int differing = 0;
  for (int y = 0; y < actual.height(); ++y)
    for (int x = 0; x < actual.width(); ++x)
      if ((actual.pixel(x, y) & 0xFFFFFF) != (expected.pixel(x, y) & 0xFFFFFF)) ++differing;
  if (differing > 0) {
    const std::string saved = testing::TempDir() + name + ".actual.png";
    actual.save(QString::fromStdString(saved), "PNG");
    ADD_FAILURE() << differing << " pixels differ from " << path.toStdString() << "; rendered picture: " << saved;
  }
}

struct TSceneCase {
  const char* name;
  double zoom;
  TGridType grid;
};

class GoldenScene : public ::testing::TestWithParam<TSceneCase> {};

TEST_P(GoldenScene, MatchesItsPicture) {
  TMyCAD cad;
  cad.resize(320 * static_cast<int>(GetParam().zoom), 180 * static_cast<int>(GetParam().zoom));
  cad.GridOperation()->SetGridType(GetParam().grid);
  cad.GridOperation()->SetGridColor(RGB(220, 220, 230));
  cad.GridOperation()->SetGridWidth(20);
  cad.GridOperation()->SetGridHeight(20);
  cad.GridOperation()->SetGridInZoom(true);
  BuildScene(cad);
  cad.SetZoom(GetParam().zoom);
  ExpectGolden(cad, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Zooms, GoldenScene,
                         ::testing::Values(TSceneCase{"scene_zoom1_line_grid", 1, gLine},
                                           TSceneCase{"scene_zoom2_dot_grid", 2, gPixel}),
                         [](const auto& info) { return std::string(info.param.name); });

struct TBackgroundCase {
  const char* name;
  TBkBitmapMode mode;
};

class GoldenBackground : public ::testing::TestWithParam<TBackgroundCase> {};

TEST_P(GoldenBackground, PlacesThePictureByItsMode) {
  TMyCAD cad;
  cad.resize(40, 30);
  cad.SetBkBitmap(Tile());
  cad.SetBkBitmapMode(GetParam().mode);
  ExpectGolden(cad, GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Modes, GoldenBackground,
                         ::testing::Values(TBackgroundCase{"background_tiled", Tiled},
                                           TBackgroundCase{"background_stretch", Stretch},
                                           TBackgroundCase{"background_center", Center},
                                           TBackgroundCase{"background_lefttop", LeftTop}),
                         [](const auto& info) { return std::string(info.param.name); });

}  // namespace
}  // namespace lumatrex
