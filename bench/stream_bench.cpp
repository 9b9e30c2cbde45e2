// Cost of saving and loading a drawing of N shapes, through memory and
// through a file, against QDataStream writing and reading the same values
// (the same fields of every shape record, into plain structures) on a
// QByteArray and a QFile. Compare each pair within one run; the file and
// memory rows of ours compare with each other too.
#include <benchmark/benchmark.h>

#include <QBuffer>
#include <QByteArray>
#include <QDataStream>
#include <QDir>
#include <QFile>
#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "bench_app.h"
#include "canvas/tmycad.h"
#include "platform/stream.h"
#include "shapes/shape.h"

namespace lumatrex {
namespace {

const std::string& FilePath() {
  static const std::string path = QDir::temp().filePath("lumatrex_stream_bench.lmx").toStdString();
  return path;
}

std::unique_ptr<TMyCAD> Drawing(int n) {
  auto cad = std::make_unique<TMyCAD>();
  static const char* kClasses[] = {"TMyLine", "TMyRectangle", "TMyEllipse", "TMyPolygon"};
  for (int i = 0; i < n; ++i) {
    const float x = static_cast<float>(i % 1000) * 1.5f, y = static_cast<float>(i / 1000) * 2.5f;
    const TArrMyPoint points = i % 4 == 0 ? TArrMyPoint{{x, y}, {x + 9, y + 7}}
                                          : TArrMyPoint{{x, y}, {x + 9, y}, {x + 9, y + 7}, {x, y + 7}};
    cad->AddShapeByCode2(kClasses[i % 4], "", points, 0);
  }
  return cad;
}

// ---------------------------------------------------------------------------
// The peer: every field of a shape record in a plain structure.

struct TPlainFont {
  QByteArray name;
  std::uint8_t charset = 1, pitch = 0, style = 0;
  std::int32_t color = 0, height = -11, size = 8, pixelsPerInch = 96;
};

struct TPlainShape {
  QByteArray className, name, caption, info;
  std::int32_t id = 0, no = 0, layer = 0, parent = -1, tag = 0;
  std::vector<std::int32_t> children;
  std::vector<std::uint32_t> links;
  std::vector<float> points, linkPoints;  // x, y pairs
  float centreX = 0, centreY = 0, angle = 0;
  std::int32_t brushBitmap = 0, brushColor = 0, colorBegin = 0, colorEnd = 0, penColor = 0, penWidth = 1;
  std::uint8_t brushStyle = 0, gradient = 0, penMode = 0, penStyle = 0, alignment = 0, endCap = 0, join = 0;
  TPlainFont font;
  qint64 reserved = 0;
  std::int32_t userData = 0, infoLines = 0, logHeight = 0, logWidth = 0;
  bool flipH = false, flipV = false, visible = true, logUse = false, locked = false, hotShow = true,
       resize = true, rotate = true;
};

std::vector<TPlainShape> PlainShapes(const TMyCAD& cad) {
  std::vector<TPlainShape> shapes;
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) {
    const TMyShape& s = *cad.GetShapeByNo(i);
    TPlainShape p;
    p.className = s.ClassName();
    p.name = QByteArray::fromStdString(s.GetName());
    p.caption = QByteArray::fromStdString(s.GetCaption());
    p.id = s.ShapeId;
    p.no = s.ShapeNo;
    p.layer = s.LayerId;
    for (const TMyPoint& q : s.Points) p.points.insert(p.points.end(), {q.X, q.Y});
    p.centreX = s.CenterPoint.X;
    p.centreY = s.CenterPoint.Y;
    p.font.name = QByteArray::fromStdString(s.Font().Name());
    shapes.push_back(std::move(p));
  }
  return shapes;
}

template <typename T>
void WriteList(QDataStream& out, const std::vector<T>& list) {
  out << static_cast<std::int32_t>(list.size());
  for (const T& v : list) out << v;
}

template <typename T>
void ReadList(QDataStream& in, std::vector<T>& list) {
  std::int32_t n = 0;
  in >> n;
  list.resize(static_cast<std::size_t>(std::max(n, 0)));
  for (T& v : list) in >> v;
}

void WritePlain(QDataStream& out, const std::vector<TPlainShape>& shapes) {
  out << static_cast<std::int32_t>(shapes.size());
  for (const TPlainShape& s : shapes) {
    out << s.className << s.name << s.id << s.no << s.layer << s.parent;
    WriteList(out, s.children);
    WriteList(out, s.links);
    WriteList(out, s.points);
    WriteList(out, s.linkPoints);
    out << s.centreX << s.centreY << s.tag << s.angle << s.brushBitmap << s.brushColor << s.brushStyle << s.caption
        << s.colorBegin << s.colorEnd;
    out << s.font.name << s.font.charset << s.font.color << s.font.height << s.font.size << s.font.pitch
        << s.font.pixelsPerInch << s.font.style;
    out << s.reserved << s.gradient << s.info << s.penColor << s.penMode << s.penStyle << s.penWidth << s.userData
        << s.flipH << s.flipV << s.visible << s.infoLines << s.alignment << s.logHeight << s.logUse << s.logWidth
        << s.locked << s.endCap << s.join << s.hotShow << s.resize << s.rotate;
  }
}

std::vector<TPlainShape> ReadPlain(QDataStream& in) {
  std::int32_t n = 0;
  in >> n;
  std::vector<TPlainShape> shapes(static_cast<std::size_t>(std::max(n, 0)));
  for (TPlainShape& s : shapes) {
    in >> s.className >> s.name >> s.id >> s.no >> s.layer >> s.parent;
    ReadList(in, s.children);
    ReadList(in, s.links);
    ReadList(in, s.points);
    ReadList(in, s.linkPoints);
    in >> s.centreX >> s.centreY >> s.tag >> s.angle >> s.brushBitmap >> s.brushColor >> s.brushStyle >> s.caption >>
        s.colorBegin >> s.colorEnd;
    in >> s.font.name >> s.font.charset >> s.font.color >> s.font.height >> s.font.size >> s.font.pitch >>
        s.font.pixelsPerInch >> s.font.style;
    in >> s.reserved >> s.gradient >> s.info >> s.penColor >> s.penMode >> s.penStyle >> s.penWidth >> s.userData >>
        s.flipH >> s.flipV >> s.visible >> s.infoLines >> s.alignment >> s.logHeight >> s.logUse >> s.logWidth >>
        s.locked >> s.endCap >> s.join >> s.hotShow >> s.resize >> s.rotate;
  }
  return shapes;
}

void Configure(QDataStream& stream) {
  stream.setByteOrder(QDataStream::LittleEndian);
  stream.setFloatingPointPrecision(QDataStream::SinglePrecision);
}

// Runs Body twice untimed, then timed. The first runs pay for growing the
// heap, which would otherwise count against whichever benchmark runs first:
// a load keeps the old drawing until the new one is read, so memory stops
// growing only after the second.
template <typename F>
void Run(benchmark::State& state, F&& body) {
  body();
  body();
  for (auto _ : state) body();
}

// ---------------------------------------------------------------------------
// Saving

void BM_SaveMemory(benchmark::State& state) {
  const std::unique_ptr<TMyCAD> cad = Drawing(static_cast<int>(state.range(0)));
  Run(state, [&] {
    TMemoryStream stream;
    cad->SaveToStream(stream);
    benchmark::DoNotOptimize(stream.Memory());
  });
}

void BM_SaveMemory_Peer(benchmark::State& state) {
  const std::vector<TPlainShape> shapes = PlainShapes(*Drawing(static_cast<int>(state.range(0))));
  Run(state, [&] {
    QByteArray bytes;
    QDataStream out(&bytes, QIODevice::WriteOnly);
    Configure(out);
    WritePlain(out, shapes);
    benchmark::DoNotOptimize(bytes.constData());
  });
}

void BM_SaveFile(benchmark::State& state) {
  const std::unique_ptr<TMyCAD> cad = Drawing(static_cast<int>(state.range(0)));
  Run(state, [&] { cad->SaveToFile(FilePath()); });
}

void BM_SaveFile_Peer(benchmark::State& state) {
  const std::vector<TPlainShape> shapes = PlainShapes(*Drawing(static_cast<int>(state.range(0))));
  Run(state, [&] {
    QFile file(QString::fromStdString(FilePath()));
    if (!file.open(QIODevice::WriteOnly)) state.SkipWithError("cannot write the file");
    QDataStream out(&file);
    Configure(out);
    WritePlain(out, shapes);
  });
}

// ---------------------------------------------------------------------------
// Loading

void BM_LoadMemory(benchmark::State& state) {
  TMemoryStream saved;
  Drawing(static_cast<int>(state.range(0)))->SaveToStream(saved);
  TMyCAD cad;
  Run(state, [&] {
    TMemoryStream stream(saved.View());
    benchmark::DoNotOptimize(cad.LoadFromStream(stream));
  });
}

void BM_LoadMemory_Peer(benchmark::State& state) {
  QByteArray bytes;
  {
    QDataStream out(&bytes, QIODevice::WriteOnly);
    Configure(out);
    WritePlain(out, PlainShapes(*Drawing(static_cast<int>(state.range(0)))));
  }
  Run(state, [&] {
    QByteArray copy(bytes.constData(), bytes.size());  // as ours copies its bytes
    QDataStream in(copy);
    Configure(in);
    benchmark::DoNotOptimize(ReadPlain(in).size());
  });
}

void BM_LoadFile(benchmark::State& state) {
  Drawing(static_cast<int>(state.range(0)))->SaveToFile(FilePath());
  TMyCAD cad;
  Run(state, [&] { benchmark::DoNotOptimize(cad.LoadFromFile(FilePath())); });
}

void BM_LoadFile_Peer(benchmark::State& state) {
  {
    QFile file(QString::fromStdString(FilePath()));
    if (!file.open(QIODevice::WriteOnly)) state.SkipWithError("cannot write the file");
    QDataStream out(&file);
    Configure(out);
    WritePlain(out, PlainShapes(*Drawing(static_cast<int>(state.range(0)))));
  }
  Run(state, [&] {
    QFile file(QString::fromStdString(FilePath()));
    if (!file.open(QIODevice::ReadOnly)) state.SkipWithError("cannot read the file");
    QDataStream in(&file);
    Configure(in);
    benchmark::DoNotOptimize(ReadPlain(in).size());
  });
}

#define LUMATREX_STREAM_BENCH(name) \
  BENCHMARK(name)->Arg(10000)->Arg(100000)->Unit(benchmark::kMillisecond)->Iterations(3)

LUMATREX_STREAM_BENCH(BM_SaveMemory);
LUMATREX_STREAM_BENCH(BM_SaveMemory_Peer);
LUMATREX_STREAM_BENCH(BM_SaveFile);
LUMATREX_STREAM_BENCH(BM_SaveFile_Peer);
LUMATREX_STREAM_BENCH(BM_LoadMemory);
LUMATREX_STREAM_BENCH(BM_LoadMemory_Peer);
LUMATREX_STREAM_BENCH(BM_LoadFile);
LUMATREX_STREAM_BENCH(BM_LoadFile_Peer);

}  // namespace
}  // namespace lumatrex

LUMATREX_BENCH_MAIN()
