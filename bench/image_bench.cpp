// Painting a large picture shape into a window-sized surface. The cost must
// follow the covered screen area, not the picture: a 4000 x 3000 picture
// zoomed in (only a corner visible) should cost about what zoom 1 costs, and
// a repaint after a filter change pays the filter pass once.
#include <benchmark/benchmark.h>

#include "platform/bitmap.h"
#include "shapes/image.h"

namespace {

using namespace lumatrex;

TMyImage& LargeImage() {
  static TMyImage image(nullptr);
  static const bool ready = [] {
    image.Bitmap() = TBitmap(4000, 3000, pf24bit);
    image.Points = {{0, 0}, {4000, 0}, {4000, 3000}, {0, 3000}};
    image.CenterPoint = image.ComputeCenterPoint(4);
    return true;
  }();
  (void)ready;
  return image;
}

// The picture scaled into an 800 x 600 window by Scale (0.2 shows all of it,
// 2 only its top-left corner), the frame scaled rather than the zoom so that
// no owner is needed.
void BM_PaintLargePicture(benchmark::State& state) {
  const float scale = static_cast<float>(state.range(0)) / 10;
  TMyImage& image = LargeImage();
  image.Points = {{0, 0}, {4000 * scale, 0}, {4000 * scale, 3000 * scale}, {0, 3000 * scale}};
  TBitmap window(800, 600, pf32bit);
  for (auto _ : state) image.Draw(window.Canvas());
}
BENCHMARK(BM_PaintLargePicture)->Arg(2)->Arg(10)->Arg(20)->Unit(benchmark::kMillisecond);

void BM_PaintAfterFilterChange(benchmark::State& state) {
  TMyImage& image = LargeImage();
  image.Points = {{0, 0}, {800, 0}, {800, 600}, {0, 600}};
  TBitmap window(800, 600, pf32bit);
  std::int32_t brightness = 0;
  for (auto _ : state) {
    image.SetBrightness(++brightness % 50);
    image.Draw(window.Canvas());
  }
}
BENCHMARK(BM_PaintAfterFilterChange)->Unit(benchmark::kMillisecond);

}  // namespace
