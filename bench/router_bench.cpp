// Re-routing 200 connectors in a drawing of 2,000 boxes: the orthogonal
// router, which goes around the boxes near each connector, against the
// one-bend lldsHV route of the same connectors in the same run ("X" against
// "X_Peer"; bench/ratios.py prints the ratio).
//
// The boxes are 40 pixels square on an 80-pixel grid; each connector joins
// a side of one box to a side of another up to three cells away, so that
// other boxes stand between many of them, as in a dense diagram.
#include <memory>
#include <random>
#include <vector>

#include "bench_app.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"

namespace {

using namespace lumatrex;

constexpr int kBoxes = 2000;
constexpr int kLinks = 200;
constexpr int kColumns = 45;
constexpr float kCell = 80, kSide = 40;

struct TDiagram {
  std::unique_ptr<TMyCAD> cad = std::make_unique<TMyCAD>();
  std::vector<TMyLinkLine*> links;
};

TDiagram MakeDiagram(TLinkLineDrawStyle style) {
  TDiagram d;
  d.cad->SetUndoRedoSize(0);
  std::vector<TMyShape*> boxes;
  for (int i = 0; i < kBoxes; ++i) {
    const float l = (i % kColumns) * kCell, t = (i / kColumns) * kCell, r = l + kSide, b = t + kSide;
    TMyShape* box = d.cad->AddShapeByCode2("TMyRectangle", "", {{l, t}, {r, t}, {r, b}, {l, b}}, 0);
    box->LinkPoints = {{l + kSide / 2, t}, {r, t + kSide / 2}, {l + kSide / 2, b}, {l, t + kSide / 2}};
    boxes.push_back(box);
  }
  std::mt19937 random(11);
  std::uniform_int_distribution<int> any(0, kBoxes - 1), step(-3, 3), side(0, 3);
  while (static_cast<int>(d.links.size()) < kLinks) {
    const int from = any(random), to = from + step(random) + kColumns * step(random);
    if (to == from || to < 0 || to >= kBoxes) continue;
    d.links.push_back(d.cad->CreateLink(boxes[from], side(random), boxes[to], side(random), style, false));
  }
  return d;
}

void Reroute(benchmark::State& state, TLinkLineDrawStyle style) {
  TDiagram d = MakeDiagram(style);
  for (auto _ : state)
    for (TMyLinkLine* link : d.links) d.cad->RouteLinkLine(*link);
  state.counters["links"] = kLinks;
}

void BM_Reroute200(benchmark::State& state) { Reroute(state, lldsOrthogonal); }
void BM_Reroute200_Peer(benchmark::State& state) { Reroute(state, lldsHV); }

BENCHMARK(BM_Reroute200)->Unit(benchmark::kMillisecond);
BENCHMARK(BM_Reroute200_Peer)->Unit(benchmark::kMillisecond);

}  // namespace

LUMATREX_BENCH_MAIN()
