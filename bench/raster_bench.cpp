// Cost of painting a whole drawing of N mixed shapes (lines, rectangles,
// ellipses, polygons; one-pixel pens, solid brushes, no captions) into a
// 1920 x 1080 back buffer, against a plain QPainter loop drawing the same
// primitives at the same device coordinates on a QImage, antialiasing off.
// Compare each pair within one run: the ratio is the figure that matters.
// The painter back end is measured the same way against QGraphicsScene.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsScene>
#include <QImage>
#include <QPainter>
#include <cstdint>
#include <map>
#include <memory>
#include <vector>

#include "bench_app.h"
#include "canvas/tmycad.h"
#include "platform/painter_canvas.h"
#include "shapes/shape.h"

namespace lumatrex {
namespace {

constexpr int kWidth = 1920, kHeight = 1080;

// One shape of the scene in device pixels, kind by index (i % 4).
struct TPlaced {
  int kind;
  QRect box;
  QColor pen, brush;
};

// A fixed linear congruential sequence, so every run draws the same scene.
std::vector<TPlaced> Scene(int n) {
  std::uint32_t state = 20261123;
  auto next = [&state](int range) {
    state = state * 1664525u + 1013904223u;
    return static_cast<int>((state >> 8) % static_cast<std::uint32_t>(range));
  };
  static const QColor kColors[] = {Qt::black, Qt::darkBlue, Qt::darkRed, Qt::darkGreen, QColor(230, 200, 120),
                                   QColor(180, 220, 250), QColor(250, 190, 200), QColor(200, 250, 200)};
  std::vector<TPlaced> scene;
  for (int i = 0; i < n; ++i) {
    const int w = 8 + next(56), h = 8 + next(56);
    scene.push_back(TPlaced{i % 4, QRect(next(kWidth - w), next(kHeight - h), w, h), kColors[next(4)],
                            kColors[4 + next(4)]});
  }
  return scene;
}

TColor ToColor(const QColor& c) {
  return RGB(static_cast<std::uint8_t>(c.red()), static_cast<std::uint8_t>(c.green()),
             static_cast<std::uint8_t>(c.blue()));
}

TArrMyPoint ModelPoints(const TPlaced& p) {
  const float l = p.box.left(), t = p.box.top(), r = l + p.box.width(), b = t + p.box.height();
  switch (p.kind) {
    case 0: return {{l, t}, {r, b}};
    case 3: return {{l, b}, {(l + r) / 2, t}, {r, b}, {(l + r) / 2, (t + b) / 2}};
    default: return {{l, t}, {r, t}, {r, b}, {l, b}};
  }
}

std::unique_ptr<TMyCAD> Drawing(int n) {
  auto cad = std::make_unique<TMyCAD>();
  cad->resize(kWidth, kHeight);
  cad->SetHotShow(false);
  static const char* kClasses[] = {"TMyLine", "TMyRectangle", "TMyEllipse", "TMyPolygon"};
  for (const TPlaced& p : Scene(n)) {
    TMyShape* shape = cad->AddShapeByCode2(kClasses[p.kind], "", ModelPoints(p), 0);
    shape->SetCaptionShow(false);
    shape->Pen().SetColor(ToColor(p.pen));
    shape->Brush().SetColor(ToColor(p.brush));
    shape->Brush().SetStyle(bsSolid);
  }
  return cad;
}

void BM_DrawMixed(benchmark::State& state) {
  const auto n = static_cast<int>(state.range(0));
  const std::unique_ptr<TMyCAD> cad = Drawing(n);
  // The first paint builds the index and the outline caches once; at 100k it
  // would be the only iteration timed, so it is left out of the steady cost.
  cad->DrawAll(Rect(0, 0, kWidth, kHeight));
  for (auto _ : state) {
    cad->DrawAll(Rect(0, 0, kWidth, kHeight));
    benchmark::DoNotOptimize(cad->BackBuffer().Width());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_DrawMixed_Peer(benchmark::State& state) {
  const auto n = static_cast<int>(state.range(0));
  // The same device geometry the shapes draw: ellipses as the 73-point
  // outlines they paint would be unfair to the peer, so it draws its own.
  std::vector<TPlaced> scene = Scene(n);
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  for (auto _ : state) {
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.fillRect(image.rect(), Qt::white);
    for (const TPlaced& p : scene) {
      painter.setPen(QPen(p.pen, 0));
      painter.setBrush(p.brush);
      const QRect& b = p.box;
      switch (p.kind) {
        case 0: painter.drawLine(b.topLeft(), b.bottomRight() + QPoint(1, 1)); break;
        case 1: painter.drawRect(b); break;
        case 2: painter.drawEllipse(b); break;
        default: {
          const QPoint points[] = {QPoint(b.left(), b.bottom() + 1), QPoint(b.center().x(), b.top()),
                                   QPoint(b.right() + 1, b.bottom() + 1), b.center()};
          painter.drawPolygon(points, 4);
        }
      }
    }
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

// The same drawing through the painter back end on an antialiased image (the
// smooth view), against QGraphicsScene::render of the same shapes as items.
void BM_DrawVector(benchmark::State& state) {
  const auto n = static_cast<int>(state.range(0));
  const std::unique_ptr<TMyCAD> cad = Drawing(n);
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  for (auto _ : state) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    {
      TPainterCanvas canvas(painter, TSize{kWidth, kHeight});
      cad->DrawAllShape(canvas.Canvas(), Rect(0, 0, kWidth, kHeight));
    }
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

void BM_DrawVector_Peer(benchmark::State& state) {
  const auto n = static_cast<int>(state.range(0));
  QGraphicsScene scene(0, 0, kWidth, kHeight);
  for (const TPlaced& p : Scene(n)) {
    const QRectF b(p.box);
    const QPen pen(p.pen, 1);
    switch (p.kind) {
      case 0: scene.addLine(QLineF(b.topLeft(), b.bottomRight()), pen); break;
      case 1: scene.addRect(b, pen, p.brush); break;
      case 2: scene.addEllipse(b, pen, p.brush); break;
      default:
        scene.addPolygon(QPolygonF{QPointF(b.left(), b.bottom()), QPointF(b.center().x(), b.top()),
                                   QPointF(b.right(), b.bottom()), b.center()},
                         pen, p.brush);
    }
  }
  QImage image(kWidth, kHeight, QImage::Format_RGB32);
  for (auto _ : state) {
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    scene.render(&painter, QRectF(0, 0, kWidth, kHeight), QRectF(0, 0, kWidth, kHeight));
    painter.end();
    benchmark::DoNotOptimize(image.constBits());
  }
  state.SetItemsProcessed(state.iterations() * n);
}

BENCHMARK(BM_DrawMixed)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawMixed_Peer)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawVector)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DrawVector_Peer)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond);

}  // namespace
}  // namespace lumatrex

LUMATREX_BENCH_MAIN()
