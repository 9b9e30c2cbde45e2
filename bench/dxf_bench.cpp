// DXF exchange against Debian's DXF libraries, measured in the same run:
// writing 100k lines (our full export of a drawing against dxflib writing
// the same lines) and reading a file of 100k lines (our import into a canvas
// against dime reading it into its model). Both sides go through files.
#include <benchmark/benchmark.h>

#include <QApplication>
#include <QDir>
#include <memory>
#include <string>

#include <dime/Input.h>
#include <dime/Model.h>
#include <dxflib/dl_dxf.h>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"

namespace {

using namespace lumatrex;

constexpr int kLines = 100000;

std::string TempPath(const char* name) { return QDir::temp().filePath(name).toStdString(); }

// The line I of every benchmark, in model pixels.
TArrMyPoint LinePoints(int i) {
  const float x = static_cast<float>(i % 1000), y = static_cast<float>(i / 1000);
  return {{x, y}, {x + 0.5f, y + 0.25f}};
}

const TMyCAD& Drawing() {
  static const std::unique_ptr<TMyCAD> cad = [] {
    auto c = std::make_unique<TMyCAD>();
    for (int i = 0; i < kLines; ++i) c->AddShapeByCode2("TMyLine", "", LinePoints(i), 0);
    return c;
  }();
  return *cad;
}

void BM_DxfExport(benchmark::State& state) {
  const TMyCAD& cad = Drawing();
  const std::string file = TempPath("lumatrex-bench-export.dxf");
  for (auto _ : state) SaveToDxf(cad, file);
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_DxfExport)->Unit(benchmark::kMillisecond);

void BM_DxfExport_Peer(benchmark::State& state) {
  const std::string file = TempPath("lumatrex-bench-export-peer.dxf");
  for (auto _ : state) {
    DL_Dxf dxf;
    std::unique_ptr<DL_WriterA> dw(dxf.out(file.c_str(), DL_Codes::AC1015));
    dxf.writeHeader(*dw);
    dw->sectionEnd();
    dw->sectionEntities();
    const DL_Attributes attributes("0", 256, -1, "BYLAYER", 1.0);
    for (int i = 0; i < kLines; ++i) {
      const TArrMyPoint p = LinePoints(i);
      dxf.writeLine(*dw, DL_LineData(p[0].X / kDxfPixelsPerMm, -p[0].Y / kDxfPixelsPerMm, 0,
                                     p[1].X / kDxfPixelsPerMm, -p[1].Y / kDxfPixelsPerMm, 0),
                    attributes);
    }
    dw->sectionEnd();
    dw->dxfEOF();
    dw->close();
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_DxfExport_Peer)->Unit(benchmark::kMillisecond);

// The file both readers read: our export of the 100k lines.
const std::string& ImportFile() {
  static const std::string file = [] {
    const std::string name = TempPath("lumatrex-bench-import.dxf");
    SaveToDxf(Drawing(), name);
    return name;
  }();
  return file;
}

void BM_DxfImport(benchmark::State& state) {
  const std::string& file = ImportFile();
  for (auto _ : state) {
    state.PauseTiming();
    auto cad = std::make_unique<TMyCAD>();
    state.ResumeTiming();
    benchmark::DoNotOptimize(LoadFromDxf(*cad, file).ShapesAdded);
    state.PauseTiming();
    cad.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_DxfImport)->Unit(benchmark::kMillisecond);

void BM_DxfImport_Peer(benchmark::State& state) {
  const std::string& file = ImportFile();
  for (auto _ : state) {
    state.PauseTiming();
    auto model = std::make_unique<dimeModel>();
    state.ResumeTiming();
    dimeInput in;
    in.setFile(file.c_str());
    benchmark::DoNotOptimize(model->read(&in));
    state.PauseTiming();
    model.reset();
    state.ResumeTiming();
  }
  state.SetItemsProcessed(state.iterations() * kLines);
}
BENCHMARK(BM_DxfImport_Peer)->Unit(benchmark::kMillisecond);

}  // namespace

// The canvas is a widget: a headless application must exist first.
int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
