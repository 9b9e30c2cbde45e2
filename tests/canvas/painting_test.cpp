// Painting: the grid, background and shapes through the back buffer, the
// control base's invalidation, image export, and golden pictures of the
// whole paint pipeline.
#include <gtest/gtest.h>

#include <QApplication>
#include <QImage>
#include <QScrollArea>
#include <QScrollBar>
#include <algorithm>
#include <cstring>
#include <filesystem>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "platform/control.h"
#include "platform/qt_interop.h"
#include "shapes/drawing_modes.h"
#include "support/golden.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Box;

// The grid at the step and zoom given, painted in Clip: the back buffer
// holds the clip only, so buffer (0, 0) is the clip's corner.
TEST(TMyCADGrid, LinesAndDotsSitOnMultiplesOfTheStepInAnyClip) {
  struct Case {
    const char* name;
    TGridType type;
    double step, zoom;
    bool inZoom, shown;
    TRect clip;
    const char* golden;  // under tests/data/canvas
  };
  const TRect all = Rect(0, 0, 100, 100), part = Rect(25, 25, 75, 75);
  const Case cases[] = {
      {"lines in a partial paint: device x 30 is buffer x 5", gLine, 10, 1, false, true, part, "grid-lines-part"},
      {"zoom alone leaves the spacing", gLine, 10, 2, false, true, all, "grid-lines-10"},
      {"zoom with GridInZoom spaces the lines", gLine, 10, 2, true, true, all, "grid-lines-20"},
      {"dots start at the buffer origin without phase", gPixel, 10, 1, false, true, part, "grid-dots-part"},
      {"a zero step draws nothing", gLine, 0, 1, false, true, all, "grid-none"},
      {"a hidden grid draws nothing", gLine, 10, 1, false, false, all, "grid-none"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(100, 100);
    cad.GridOperation()->SetGridColor(clRed);
    cad.GridOperation()->SetGridType(c.type);
    cad.GridOperation()->SetGridWidth(c.step);
    cad.GridOperation()->SetGridHeight(c.step);
    cad.GridOperation()->SetGridInZoom(c.inZoom);
    cad.GridOperation()->SetGridShow(c.shown);
    cad.SetZoom(c.zoom);
    cad.DrawAll(c.clip);
    EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.BackBuffer()), std::string("canvas/") + c.golden + ".png"));
  }
  TMyCAD fresh;  // no grid until a step is set
  fresh.resize(100, 100);
  fresh.DrawAll(Rect(0, 0, 100, 100));
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(fresh.BackBuffer()), "canvas/grid-none.png"));
}

// A picture under tests/data/canvas.
TBitmap Picture(const std::string& name) {
  TBitmap picture;
  picture.LoadFromFile(test::DataPath("canvas/" + name));
  return picture;
}

TEST(TMyCADPaint, ATiledBackgroundInAPartialRepaint) {
  TMyCAD cad;
  cad.resize(100, 60);
  cad.SetBkBitmap(Picture("marker-4x4.bmp"));  // red at its top-left pixel only
  cad.SetBkBitmapMode(Tiled);
  cad.DrawAll(Rect(2, 1, 50, 50));
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.BackBuffer()), "canvas/tiles-from-2-1.png"));
}

TEST(TMyCADPaint, ShiftedPointsGetTheirExactValuesBack) {
  TMyCAD cad;
  cad.resize(300, 300);
  cad.SetZoom(3);
  TMyShape* shape = cad.AddShapeByCode("TMyRectangle", "", {{0.1f, 0.7f}, {33.3f, 0.7f}, {33.3f, 41.9f}, {0.1f, 41.9f}}, 0.3f);
  const TArrMyPoint before = shape->Points;
  const TMyPoint center = shape->CenterPoint;
  for (int i = 0; i < 20; ++i) cad.DrawAll(Rect(7 + i, 13, 200, 200));
  EXPECT_EQ(std::memcmp(before.data(), shape->Points.data(), before.size() * sizeof(TMyPoint)), 0);
  EXPECT_EQ(shape->CenterPoint, center);
}

TEST(TMyCADPaint, TheControlShowsTheSelectionHandlesAndNoShapeOfAHiddenLayerOrInvisible) {
  TMyCAD cad;
  cad.resize(80, 80);
  cad.SetHotSize(3);
  cad.Brush().SetColor(clBlue);
  TMyShape* shape = AddBox(cad, 20, 20, 60, 60);
  cad.SelectShapeByCode(shape->ShapeId, true);
  cad.Repaint();
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.ScreenBitmap()), "canvas/selected-box.png"));
  cad.InVisibleLayerByID(0);
  cad.DrawAll(Rect(0, 0, 80, 80));
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.BackBuffer()), "canvas/blank-80x80.png"));
  cad.VisibleAllLayer();
  shape->SetVisible(false);
  cad.DrawAll(Rect(0, 0, 80, 80));
  EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.BackBuffer()), "canvas/blank-80x80.png"));
  int paints = 0;  // a paint arriving during a paint draws nothing
  cad.OnPaint = [&](QObject*) {
    ++paints;
    cad.Repaint();
  };
  cad.Repaint();
  EXPECT_EQ(paints, 1);
}

TEST(TMyCADExport, RendersTheExtentOrTheSelectionAtTheZoomAskedAndWritesImageFiles) {
  TMyCAD cad;
  cad.Brush().SetColor(clBlue);
  cad.AddShapeByCode("TMyRectangle", "", {{10, 10}, {50, 10}, {50, 30}, {10, 30}}, 0);
  TImageExportOptions options;
  options.Zoom = 2;
  options.Margin = 4;
  const TBitmap picture = cad.RenderToBitmap(options);
  EXPECT_EQ(picture.Width(), 80 + 2 * 4 + 1);
  EXPECT_EQ(picture.Height(), 40 + 2 * 4 + 1);
  EXPECT_EQ(TBitmap(picture).Canvas().GetPixel(40, 20), clBlue);
  EXPECT_EQ(cad.GetZoom(), 1.0);  // the view is left as it was

  const std::string dir = testing::TempDir();
  EXPECT_TRUE(cad.SaveToImageFile(dir + "/drawing.png", options));
  EXPECT_EQ(QImage(QString::fromStdString(dir + "/drawing.png")).width(), picture.Width());
  EXPECT_TRUE(cad.SaveToImageFile(dir + "/drawing.bmp", options));
  TBitmap back;
  back.LoadFromFile(dir + "/drawing.bmp");
  EXPECT_EQ(back.Height(), picture.Height());
  EXPECT_FALSE(cad.SaveToImageFile(dir + "/drawing.gif", options));
  EXPECT_FALSE(std::filesystem::exists(dir + "/drawing.gif"));
  // Only the selection when asked; nothing for an empty drawing.
  TMyShape* far = AddBox(cad, 200, 0, 220, 10);
  cad.SelectShapeByCode(far->ShapeId, true);
  options = {};
  options.SelectedOnly = true;
  options.Margin = 0;
  EXPECT_EQ(cad.RenderToBitmap(options).Width(), 21);
  EXPECT_TRUE(TMyCAD().RenderToBitmap().Empty());
}

// ---------------------------------------------------------------------------
// The control base

// Records the clip of every paint, and paints a red square.
class TProbe : public TCustomControl {
 public:
  std::vector<TRect> clips;

 protected:
  void Paint() override {
    clips.push_back(Canvas().ClipRect());
    TCustomControl::Paint();
    Canvas().Brush().SetColor(clRed);
    Canvas().FillRect(Rect(10, 10, 20, 20));
  }
};

// A repaint renders the whole control once into the screen bitmap, an expose
// without invalidation only blits, and invalidated rectangles are painted
// each alone.
TEST(TCustomControl, PaintsInvalidatedRectanglesAloneIntoTheScreenBitmap) {
  TProbe probe;
  probe.resize(64, 48);
  probe.show();
  probe.Repaint();
  EXPECT_EQ(probe.clips.back(), Rect(0, 0, 64, 48));
  EXPECT_EQ(TBitmap(probe.ScreenBitmap()).Canvas().GetPixel(15, 15), clRed);
  EXPECT_EQ(TBitmap(probe.ScreenBitmap()).Canvas().GetPixel(30, 30), clWhite);
  probe.clips.clear();
  probe.repaint();
  EXPECT_TRUE(probe.clips.empty());
  probe.InvalidateRect(Rect(5, 6, 15, 16));
  probe.InvalidateRect(Rect(40, 30, 50, 40));
  EXPECT_EQ(probe.InvalidatedBounds(), Rect(5, 6, 50, 40));
  probe.PaintInvalidated();
  std::sort(probe.clips.begin(), probe.clips.end(), [](const TRect& a, const TRect& b) { return a.Left < b.Left; });
  EXPECT_EQ(probe.clips, (std::vector<TRect>{Rect(5, 6, 15, 16), Rect(40, 30, 50, 40)}));
  EXPECT_EQ(probe.InvalidatedBounds(), TRect{});
  // Past the control nothing is kept.
  probe.InvalidateRect(Rect(100, 100, 120, 120));
  EXPECT_EQ(probe.InvalidatedBounds(), TRect{});
}

TEST(TCustomControl, InAScrollAreaOnlyTheVisiblePartIsPaintedAndTheRestWhenItShows) {
  QScrollArea area;
  area.resize(120, 100);
  auto* probe = new TProbe;
  probe->resize(2000, 1500);
  area.setWidget(probe);
  area.show();
  QApplication::processEvents();
  probe->clips.clear();
  probe->Repaint();
  ASSERT_FALSE(probe->clips.empty());
  for (const TRect& clip : probe->clips) {
    EXPECT_LE(clip.Right, 120);
    EXPECT_LE(clip.Bottom, 100);
  }
  EXPECT_NE(probe->InvalidatedBounds(), TRect{});  // the rest waits until it shows
  probe->clips.clear();
  area.horizontalScrollBar()->setValue(1500);
  area.verticalScrollBar()->setValue(1000);
  QApplication::processEvents();
  ASSERT_FALSE(probe->clips.empty());
  for (const TRect& clip : probe->clips) EXPECT_GE(clip.Right, 1500);
}

// ---------------------------------------------------------------------------
// Golden images of the whole paint pipeline: a scene with every line, closed
// and curve shape kind (kept as a drawing file, its fields in the lumatrex
// tool's dump of it), drawn by a real canvas at zoom 1 and 2 with its frame
// selected, and the four placements of a background picture.
//
// Tolerance: none. Figures follow the exact raster conventions, and text uses
// the library's bundled font, so every pixel is expected to match. After an
// intended change of the pictures, regenerate them with
//   LUMATREX_UPDATE_GOLDEN=1 build/tests/canvas/canvas_tests --gtest_filter='*Golden*'
// and look at the new files before committing them. A mismatch writes the
// rendered picture next to the test's temporary files and names it.

// Renders Cad through its paint pipeline and compares with the golden picture.
::testing::AssertionResult MatchesGolden(TMyCAD& cad, const std::string& name) {
  cad.Repaint();
  return test::MatchesGoldenPicture(ToQImage(cad.ScreenBitmap()), "golden/" + name + ".png");
}

TEST(Golden, TheSceneAtZoom1And2AndTheFourBackgroundPlacementsMatchTheirPictures) {
  struct Scene {
    const char* name;
    int zoom;
    TGridType grid;
  };
  for (const Scene& c : {Scene{"scene_zoom1_line_grid", 1, gLine}, Scene{"scene_zoom2_dot_grid", 2, gPixel}}) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    ASSERT_TRUE(cad.LoadFromFile(test::DataPath("drawings/painted-scene.zlt")));
    cad.resize(320 * c.zoom, 180 * c.zoom);
    cad.GridOperation()->SetGridType(c.grid);
    cad.GridOperation()->SetGridColor(RGB(220, 220, 230));
    cad.GridOperation()->SetGridWidth(20);
    cad.GridOperation()->SetGridHeight(20);
    cad.GridOperation()->SetGridInZoom(true);
    cad.SetHotSize(3);
    cad.SelectShapeByCode(cad.GetShapeByNo(6)->ShapeId, true);  // the turned frame
    cad.SetZoom(c.zoom);
    EXPECT_TRUE(MatchesGolden(cad, c.name));
  }
  const std::pair<const char*, TBkBitmapMode> backgrounds[] = {
      {"background_tiled", Tiled}, {"background_stretch", Stretch}, {"background_center", Center}, {"background_lefttop", LeftTop}};
  for (const auto& [name, mode] : backgrounds) {
    SCOPED_TRACE(name);
    TMyCAD cad;
    cad.resize(40, 30);
    cad.SetBkBitmap(Picture("tile-6x6.bmp"));  // light blue with a red top-left pixel
    cad.SetBkBitmapMode(mode);
    EXPECT_TRUE(MatchesGolden(cad, name));
  }
}

}  // namespace
}  // namespace lumatrex
