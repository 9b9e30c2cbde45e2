// An application that knows Lumatrex only through its installed package: it
// calls the geometry kernel by name, then puts a canvas together by code and
// exports the drawing to a PNG file.
#include <lumatrex.h>

#include <QApplication>
#include <QImage>
#include <cstdio>

namespace {

bool GeometryWorks() {
  using namespace lumatrex;
  const TPoint device = MyPtToPt(MyPoint(2.5f, 3.5f));
  const long double slope = GetSlopeAngle(MyPoint(0, 10), MyPoint(0, 0));
  const TMyPoint turned = RotateAPoint(MyPoint(10, 0), MyPoint(0, 0), static_cast<float>(kPi / 2));
  TArrMyPoint points;
  AppendAPoint(MyPoint(1, 1), points);
  const bool inserted = InsertAPointBeforeId(MyPoint(0, 0), 0, points);
  std::printf("MyPtToPt=(%d,%d) slope=%.4Lf rotated=(%.3f,%.3f) points=%zu\n", device.X, device.Y, slope, turned.X,
              turned.Y, points.size());
  return device == Point(2, 4) && slope > 1.5707L && slope < 1.5709L && inserted && points.size() == 2;
}

bool CanvasExports(const char* path) {
  using namespace lumatrex;
  TMyCAD cad;
  cad.Brush().SetColor(clYellow);
  cad.AddShapeByCode("TMyRectangle", "Box", {{10, 10}, {110, 10}, {110, 60}, {10, 60}}, 0.2f);
  cad.AddShapeByCode("TMyEllipse", "", {{130, 10}, {200, 10}, {200, 60}, {130, 60}}, 0);
  if (!cad.SaveToImageFile(path)) return false;
  const QImage image(path);
  std::printf("exported %s: %dx%d, %d shapes\n", path, image.width(), image.height(), cad.GetShapesCount());
  return !image.isNull() && image.width() > 190 && cad.GetShapeByName("Box") != nullptr;
}

}  // namespace

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  const bool ok = GeometryWorks() && CanvasExports("consumer-drawing.png");
  return ok ? 0 : 1;
}
