#include <gtest/gtest.h>

#include <QImage>
#include <cstring>
#include <filesystem>

#include "canvas/tmycad.h"
#include "shapes/drawing_modes.h"

namespace lumatrex {
namespace {

TColor BufferAt(const TMyCAD& cad, int x, int y) { return TBitmap(cad.BackBuffer()).Canvas().GetPixel(x, y); }

struct TGridCanvas {
  TMyCAD cad;
  explicit TGridCanvas(TGridType type, double step = 10) {
    cad.resize(100, 100);
    cad.GridOperation()->SetGridColor(clRed);
    cad.GridOperation()->SetGridType(type);
    cad.GridOperation()->SetGridWidth(step);
    cad.GridOperation()->SetGridHeight(step);
  }
};

TEST(TMyCADGrid, LinesStayOnMultiplesOfTheStepWhenOnlyPartOfTheControlIsPainted) {
  TGridCanvas c(gLine);
  c.cad.DrawAll(Rect(25, 25, 75, 75));
  // Device x = 30 is buffer x = 5.
  EXPECT_EQ(BufferAt(c.cad, 5, 2), clRed);
  EXPECT_EQ(BufferAt(c.cad, 4, 2), clWhite);
  EXPECT_EQ(BufferAt(c.cad, 15, 2), clRed);
  EXPECT_EQ(BufferAt(c.cad, 2, 5), clRed);  // horizontal line at device y = 30
  EXPECT_EQ(c.cad.BackBuffer().Width(), 50);
}

TEST(TMyCADGrid, SpacingFollowsTheZoomOnlyWithGridInZoom) {
  TGridCanvas c(gLine);
  c.cad.SetZoom(2);
  c.cad.DrawAll(Rect(0, 0, 100, 100));
  EXPECT_EQ(BufferAt(c.cad, 10, 5), clRed);
  c.cad.GridOperation()->SetGridInZoom(true);
  c.cad.DrawAll(Rect(0, 0, 100, 100));
  EXPECT_EQ(BufferAt(c.cad, 10, 5), clWhite);
  EXPECT_EQ(BufferAt(c.cad, 20, 5), clRed);
}

TEST(TMyCADGrid, DotsStartAtTheBufferOriginWithoutPhase) {
  TGridCanvas c(gPixel);
  c.cad.DrawAll(Rect(25, 25, 75, 75));
  EXPECT_EQ(BufferAt(c.cad, 0, 0), clRed);
  EXPECT_EQ(BufferAt(c.cad, 10, 10), clRed);
  EXPECT_EQ(BufferAt(c.cad, 5, 5), clWhite);
}

TEST(TMyCADGrid, ZeroOrNegativeStepsAndHiddenGridsDrawNothing) {
  for (double step : {0.0, -10.0}) {
    TGridCanvas c(gLine, step);
    c.cad.DrawAll(Rect(0, 0, 100, 100));
    EXPECT_EQ(BufferAt(c.cad, 0, 0), clWhite);
  }
  TGridCanvas hidden(gLine);
  hidden.cad.GridOperation()->SetGridShow(false);
  hidden.cad.DrawAll(Rect(0, 0, 100, 100));
  EXPECT_EQ(BufferAt(hidden.cad, 10, 3), clWhite);
  TMyCAD fresh;  // no grid until a step is set
  fresh.resize(50, 50);
  fresh.DrawAll(Rect(0, 0, 50, 50));
  EXPECT_EQ(BufferAt(fresh, 0, 0), clWhite);
}

// A 4 x 4 picture whose only red pixel is its top-left one.
TBitmap Marker() {
  TBitmap picture(4, 4, pf24bit);
  picture.Canvas().SetPixel(0, 0, clRed);
  return picture;
}

// The golden pictures pin every placement over a full repaint; this pins
// where a partial repaint puts the tiles, and that it paints only its clip.
TEST(TMyCADPaint, ATiledBackgroundInAPartialRepaint) {
  TMyCAD cad;
  cad.resize(100, 60);
  cad.SetBkBitmap(Marker());
  cad.SetBkBitmapMode(Tiled);
  cad.DrawAll(Rect(2, 1, 50, 50));
  EXPECT_EQ(BufferAt(cad, 2, 3), clRed);
  EXPECT_EQ(BufferAt(cad, 0, 0), clWhite);
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

TEST(TMyCADPaint, APaintArrivingDuringAPaintDrawsNothing) {
  TMyCAD cad;
  cad.resize(40, 40);
  int paints = 0;
  cad.OnPaint = [&](QObject*) {
    ++paints;
    cad.Repaint();
  };
  cad.Repaint();
  EXPECT_EQ(paints, 1);
}

TEST(TMyCADPaint, HiddenLayersAndInvisibleShapesAreNotDrawn) {
  TMyCAD cad;
  cad.resize(60, 60);
  cad.Brush().SetColor(clBlue);
  TMyShape* shape = cad.AddShapeByCode("TMyRectangle", "", {{10, 10}, {50, 10}, {50, 50}, {10, 50}}, 0);
  cad.DrawAll(Rect(0, 0, 60, 60));
  EXPECT_EQ(BufferAt(cad, 30, 30), clBlue);
  cad.InVisibleLayerByID(0);
  cad.DrawAll(Rect(0, 0, 60, 60));
  EXPECT_EQ(BufferAt(cad, 30, 30), clWhite);
  cad.VisibleAllLayer();
  shape->SetVisible(false);
  cad.DrawAll(Rect(0, 0, 60, 60));
  EXPECT_EQ(BufferAt(cad, 30, 30), clWhite);
}

TEST(TMyCADPaint, TheControlShowsTheBackBufferAndTheSelectionHandles) {
  TMyCAD cad;
  cad.resize(80, 80);
  cad.SetHotSize(3);
  TMyShape* shape = cad.AddShapeByCode("TMyRectangle", "", {{20, 20}, {60, 20}, {60, 60}, {20, 60}}, 0);
  cad.SelectShapeByCode(shape->ShapeId, true);
  cad.Repaint();
  TBitmap screen(cad.ScreenBitmap());
  EXPECT_EQ(screen.Canvas().GetPixel(17, 17), clBlack);  // handle outline around the corner
  EXPECT_EQ(screen.Canvas().GetPixel(18, 18), GetHotColor());
}

TEST(TMyCADExport, RendersTheExtentAtTheZoomAskedAndWritesImageFiles) {
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
}

TEST(TMyCADExport, OnlyTheSelectionWhenAskedAndNothingForAnEmptyDrawing) {
  TMyCAD cad;
  EXPECT_TRUE(cad.RenderToBitmap().Empty());
  cad.AddShapeByCode("TMyRectangle", "", {{0, 0}, {10, 0}, {10, 10}, {0, 10}}, 0);
  TMyShape* far = cad.AddShapeByCode("TMyRectangle", "", {{200, 0}, {220, 0}, {220, 10}, {200, 10}}, 0);
  cad.SelectShapeByCode(far->ShapeId, true);
  TImageExportOptions options;
  options.SelectedOnly = true;
  options.Margin = 0;
  EXPECT_EQ(cad.RenderToBitmap(options).Width(), 21);
}

}  // namespace
}  // namespace lumatrex
