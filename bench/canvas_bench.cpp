// The canvas at 10,000 and 100,000 shapes, each figure against Qt's own
// QGraphicsScene doing the same work in the same run ("X" against "X_Peer";
// bench/ratios.py prints the ratios, and the 10k -> 100k ratio of every
// benchmark).
//
// The drawings come from the generate command's generator (apps/cli): simple
// shapes 4 to 40 pixels across at one shape per 40 x 40 pixels, so a larger
// drawing covers a larger area at the same density, as a real one grows. The
// scene holds the same figures as Qt items with the same pens and brushes.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QGraphicsItem>
#include <QGraphicsScene>
#include <QImage>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstring>
#include <map>
#include <memory>
#include <random>
#include <vector>

#include "apps/cli/generate.h"
#include "canvas/tmycad.h"
#include "platform/screen.h"
#include "shapes/closed_shapes.h"
#include "shapes/lines.h"

namespace {

using namespace lumatrex;

constexpr int kSmall = 10'000;
constexpr int kLarge = 100'000;
// The control the repaint and drag benchmarks paint on, in device pixels.
constexpr int kControl = 2000;
constexpr int kDirty = 200;

int Side(int shapes) { return static_cast<int>(std::ceil(std::sqrt(shapes * 1600.0))); }

std::unique_ptr<TMyCAD> MakeCanvas(int shapes, double zoom = 1) {
  auto cad = std::make_unique<TMyCAD>();
  cli::TGenerateOptions options;
  options.Shapes = shapes;
  options.Seed = 7;
  options.Width = options.Height = Side(shapes);
  cli::GenerateDrawing(*cad, options);
  cad->SetUndoRedoSize(10);
  cad->SetZoom(zoom);
  cad->resize(kControl, kControl);
  cad->Repaint();  // builds the index and paints once
  return cad;
}

// One canvas per size and zoom, built once; the benchmarks that change the
// drawing build their own.
TMyCAD& Canvas(int shapes, double zoom) {
  static std::map<std::pair<int, double>, std::unique_ptr<TMyCAD>> canvases;
  auto& cad = canvases[{shapes, zoom}];
  if (!cad) cad = MakeCanvas(shapes, zoom);
  return *cad;
}

// ---- the peer: the same drawing as QGraphicsScene items -------------------------

QColor ToQColor(TColor c) {
  const TColor rgb = ColorToRGB(c);
  return QColor(GetRValue(rgb), GetGValue(rgb), GetBValue(rgb));
}

QPolygonF PolygonOf(const TMyShape& s) {
  QPolygonF polygon;
  for (const TMyPoint& p : s.Points) polygon << QPointF(p.X, p.Y);
  return polygon;
}

struct TPeer {
  QGraphicsScene scene;
  std::vector<QGraphicsItem*> items;  // in the canvas's list order
};

TPeer& Peer(int shapes) {
  static std::map<int, std::unique_ptr<TPeer>> peers;
  auto& peer = peers[shapes];
  if (peer) return *peer;
  peer = std::make_unique<TPeer>();
  TMyCAD& cad = Canvas(shapes, 1);
  peer->scene.setSceneRect(0, 0, Side(shapes), Side(shapes));
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) {
    const TMyShape& s = *cad.GetShapeByNo(i);
    const QPen pen(ToQColor(s.Pen().Color()), 0);
    const QBrush brush(ToQColor(s.Brush().Color()));
    QGraphicsItem* item = nullptr;
    const char* kind = s.ClassName();
    if (std::strcmp(kind, "TMyEllipse") == 0) {
      const TMyRect r = GetPointsLTRB(s.Points);
      item = peer->scene.addEllipse(QRectF(r.Left, r.Top, r.Right - r.Left, r.Bottom - r.Top), pen, brush);
    } else if (std::strcmp(kind, "TMyRectangle") == 0 || std::strcmp(kind, "TMyPolygon") == 0) {
      item = peer->scene.addPolygon(PolygonOf(s), pen, brush);
    } else if (std::strcmp(kind, "TMyLine") == 0) {
      item = peer->scene.addLine(QLineF(s.Points[0].X, s.Points[0].Y, s.Points[1].X, s.Points[1].Y), pen);
    } else {
      QPainterPath path;
      path.addPolygon(PolygonOf(s));
      item = peer->scene.addPath(path, pen);
    }
    item->setZValue(i);
    peer->items.push_back(item);
  }
  peer->scene.items(QPointF(0, 0));  // builds the scene's index
  return *peer;
}

// A fixed sequence of dirty rectangles inside the control.
const std::vector<TRect>& DirtyRects() {
  static const std::vector<TRect> rects = [] {
    std::mt19937 random(11);
    std::vector<TRect> r;
    for (int i = 0; i < 64; ++i) {
      const int x = static_cast<int>(random() % (kControl - kDirty)), y = static_cast<int>(random() % (kControl - kDirty));
      r.push_back(Rect(x, y, x + kDirty, y + kDirty));
    }
    return r;
  }();
  return rects;
}

// ---- repaint of a dirty rectangle ----------------------------------------------------

void BM_Repaint(benchmark::State& state) {
  TMyCAD& cad = Canvas(static_cast<int>(state.range(0)), static_cast<double>(state.range(1)));
  std::size_t i = 0;
  for (auto _ : state) {
    cad.InvalidateRect(DirtyRects()[i++ % DirtyRects().size()]);
    cad.PaintInvalidated();
  }
}

void BM_Repaint_Peer(benchmark::State& state) {
  TPeer& peer = Peer(static_cast<int>(state.range(0)));
  const double zoom = static_cast<double>(state.range(1));
  QImage image(kDirty, kDirty, QImage::Format_RGB32);
  std::size_t i = 0;
  for (auto _ : state) {
    const TRect r = DirtyRects()[i++ % DirtyRects().size()];
    QPainter painter(&image);
    painter.fillRect(image.rect(), Qt::white);
    peer.scene.render(&painter, QRectF(0, 0, kDirty, kDirty),
                      QRectF(r.Left / zoom, r.Top / zoom, kDirty / zoom, kDirty / zoom), Qt::IgnoreAspectRatio);
  }
}

// ---- hit test ----------------------------------------------------------------------------

const std::vector<QPoint>& HitPoints(int shapes) {
  static std::map<int, std::vector<QPoint>> all;
  auto& points = all[shapes];
  if (points.empty()) {
    std::mt19937 random(3);
    for (int i = 0; i < 1024; ++i)
      points.emplace_back(static_cast<int>(random() % Side(shapes)), static_cast<int>(random() % Side(shapes)));
  }
  return points;
}

void BM_HitTest(benchmark::State& state) {
  const int shapes = static_cast<int>(state.range(0));
  TMyCAD& cad = Canvas(shapes, 1);
  const auto& points = HitPoints(shapes);
  std::size_t i = 0;
  for (auto _ : state) {
    const QPoint p = points[i++ % points.size()];
    benchmark::DoNotOptimize(cad.ShapeAt(p.x(), p.y()));
  }
}

void BM_HitTest_Peer(benchmark::State& state) {
  const int shapes = static_cast<int>(state.range(0));
  TPeer& peer = Peer(shapes);
  const auto& points = HitPoints(shapes);
  std::size_t i = 0;
  for (auto _ : state) {
    const QPoint p = points[i++ % points.size()];
    benchmark::DoNotOptimize(peer.scene.items(QPointF(p)));
  }
}

// ---- one drag move event of 100 selected shapes -----------------------------------------

constexpr int kDragged = 100;

void SendMouse(QWidget& w, QEvent::Type type, int x, int y, Qt::MouseButton button, Qt::MouseButtons buttons) {
  QMouseEvent event(type, QPointF(x, y), w.mapToGlobal(QPointF(x, y)), button, buttons, Qt::NoModifier);
  QApplication::sendEvent(&w, &event);
}

// The 100 top-level shapes nearest the middle of the control, in list order.
std::vector<TMyShape*> DraggedShapes(TMyCAD& cad) {
  const float c = kControl / 2.0f;
  std::vector<TMyShape*> found;
  for (float half = 50; found.size() < kDragged; half *= 1.2f) {
    found.clear();
    for (TMyShape* s : cad.GetShapesInIndex({c - half, c - half, c + half, c + half}))
      if (!s->HasParentShape()) found.push_back(s);
  }
  found.resize(kDragged);
  return found;
}

// Per-event times go to a p99 counter, in milliseconds.
void ReportP99(benchmark::State& state, std::vector<double>& seconds) {
  if (seconds.empty()) return;
  std::sort(seconds.begin(), seconds.end());
  state.counters["p99_ms"] = seconds[std::min(seconds.size() - 1, seconds.size() * 99 / 100)] * 1000;
}

void BM_DragMove(benchmark::State& state) {
  auto cad = MakeCanvas(static_cast<int>(state.range(0)));
  cad->SetDragTrace(true);
  const std::vector<TMyShape*> dragged = DraggedShapes(*cad);
  for (TMyShape* s : dragged) cad->AddWorkingShapes(s);
  cad->PaintInvalidated();
  // Press inside a selected rectangle, away from its handles.
  TMyShape* grip = nullptr;
  for (TMyShape* s : dragged)
    if (std::strcmp(s->ClassName(), "TMyRectangle") == 0 && s->GetAngle() == 0 && s->GetWidth() > 24 && s->GetHeight() > 24)
      grip = s;
  if (!grip) {
    state.SkipWithError("no rectangle to grip");
    return;
  }
  const TMyRect box = GetPointsLTRB(grip->Points);
  const int x = static_cast<int>(box.Left + (box.Right - box.Left) * 0.3f);
  const int y = static_cast<int>(box.Top + (box.Bottom - box.Top) * 0.7f);
  SendMouse(*cad, QEvent::MouseButtonPress, x, y, Qt::LeftButton, Qt::LeftButton);
  std::vector<double> times;
  int step = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    SendMouse(*cad, QEvent::MouseMove, x + 1 + step++ % 40, y, Qt::NoButton, Qt::LeftButton);
    cad->PaintInvalidated();
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(elapsed);
    times.push_back(elapsed);
  }
  SendMouse(*cad, QEvent::MouseButtonRelease, x, y, Qt::LeftButton, Qt::NoButton);
  ReportP99(state, times);
}

void BM_DragMove_Peer(benchmark::State& state) {
  const int shapes = static_cast<int>(state.range(0));
  TPeer& peer = Peer(shapes);
  TMyCAD& cad = Canvas(shapes, 1);
  std::vector<QGraphicsItem*> dragged;
  for (TMyShape* s : DraggedShapes(cad)) dragged.push_back(peer.items[static_cast<std::size_t>(s->ShapeNo)]);
  QImage image(1200, 1200, QImage::Format_RGB32);
  std::vector<double> times;
  int step = 0;
  for (auto _ : state) {
    const auto start = std::chrono::steady_clock::now();
    const double dx = step++ % 40 < 20 ? 1 : -1;
    QRectF area;
    for (QGraphicsItem* item : dragged) {
      area |= item->sceneBoundingRect();
      item->moveBy(dx, 0);
      area |= item->sceneBoundingRect();
    }
    QPainter painter(&image);
    const QRectF target(0, 0, std::min(area.width(), 1200.0), std::min(area.height(), 1200.0));
    painter.fillRect(target, Qt::white);
    peer.scene.render(&painter, target, area, Qt::IgnoreAspectRatio);
    painter.end();
    const double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
    state.SetIterationTime(elapsed);
    times.push_back(elapsed);
  }
  ReportP99(state, times);
}

// ---- list commands (no peer: the 10k -> 100k ratio is the figure) ----------------------

void BM_BringToFront(benchmark::State& state) {
  auto cad = MakeCanvas(static_cast<int>(state.range(0)));
  std::int32_t no = cad->GetShapesCount() / 3;
  for (auto _ : state) {
    cad->BringToFront(cad->GetShapeByNo(no), true);
    no = (no + 7919) % cad->GetShapesCount();
  }
}

void BM_DeleteSelection(benchmark::State& state) {
  auto cad = MakeCanvas(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    cad->SelectAllShapes();
    state.ResumeTiming();
    cad->DeleteSelectedShapes(true);
    state.PauseTiming();
    cad->PopFromUndoRedoShapeList();  // all back, for the next round
    cad->PaintInvalidated();
    state.ResumeTiming();
  }
}

void BM_SelectAll(benchmark::State& state) {
  auto cad = MakeCanvas(static_cast<int>(state.range(0)));
  for (auto _ : state) {
    state.PauseTiming();
    cad->RemoveAllWorkingShapes();
    state.ResumeTiming();
    cad->SelectAllShapes();
  }
}

void BM_UndoOneStep(benchmark::State& state) {
  auto cad = MakeCanvas(static_cast<int>(state.range(0)));
  std::int32_t no = cad->GetShapesCount() / 2;
  for (auto _ : state) {
    state.PauseTiming();
    TMyShape* shape = cad->GetShapeByNo(no);
    no = (no + 7919) % cad->GetShapesCount();
    cad->PushtoUndoRedoShapeList({shape}, ACT_CHANGE);
    cad->Move(shape, 3, 2);
    cad->PaintInvalidated();
    state.ResumeTiming();
    cad->PopFromUndoRedoShapeList();
  }
}

void Sizes(benchmark::internal::Benchmark* b) { b->Arg(kSmall)->Arg(kLarge); }
void SizesAndZooms(benchmark::internal::Benchmark* b) {
  for (const int zoom : {1, 4}) b->Args({kSmall, zoom})->Args({kLarge, zoom});
}

BENCHMARK(BM_Repaint)->Apply(SizesAndZooms)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_Repaint_Peer)->Apply(SizesAndZooms)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HitTest)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_HitTest_Peer)->Apply(Sizes)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DragMove)->Apply(Sizes)->UseManualTime()->Iterations(400)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_DragMove_Peer)->Apply(Sizes)->UseManualTime()->Iterations(400)->Unit(benchmark::kMicrosecond);
BENCHMARK(BM_BringToFront)->Apply(Sizes)->MinTime(0.3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_DeleteSelection)->Apply(Sizes)->Iterations(3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_SelectAll)->Apply(Sizes)->MinTime(0.3)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_UndoOneStep)->Apply(Sizes)->Iterations(200)->Unit(benchmark::kMicrosecond);

}  // namespace

int main(int argc, char** argv) {
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  SetScreenPixelsPerInch(96);
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 1;
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
