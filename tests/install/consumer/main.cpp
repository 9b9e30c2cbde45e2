// An application that knows Lumatrex only through its installed package.
#include <lumatrex.h>

#include <cstdio>

int main() {
  using namespace lumatrex;
  const TPoint device = MyPtToPt(MyPoint(2.5f, 3.5f));
  const long double slope = GetSlopeAngle(MyPoint(0, 10), MyPoint(0, 0));
  const TMyPoint turned = RotateAPoint(MyPoint(10, 0), MyPoint(0, 0), static_cast<float>(kPi / 2));
  TArrMyPoint points;
  AppendAPoint(MyPoint(1, 1), points);
  const bool inserted = InsertAPointBeforeId(MyPoint(0, 0), 0, points);
  std::printf("MyPtToPt=(%d,%d) slope=%.4Lf rotated=(%.3f,%.3f) points=%zu\n", device.X, device.Y, slope, turned.X,
              turned.Y, points.size());
  const bool ok = device == Point(2, 4) && slope > 1.5707L && slope < 1.5709L && inserted && points.size() == 2;
  return ok ? 0 : 1;
}
