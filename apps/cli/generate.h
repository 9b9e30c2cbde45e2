// Synthetic drawings of many simple shapes, to try the canvas at scale (the
// generate command, and the canvas benchmarks, which build their drawings
// with the same function).
#pragma once

#include <cstdint>
#include <string>
#include <vector>

namespace lumatrex {
class TMyCAD;
}

namespace lumatrex::cli {

struct TGenerateOptions {
  std::int32_t Shapes = 1000;
  std::uint32_t Seed = 1;
  // The area the shapes are spread over, in drawing pixels; the control
  // takes its size. The default is an A4 page at 96 pixels per inch, the
  // editor's page.
  std::int32_t Width = 794;
  std::int32_t Height = 1123;
};

// Adds Options.Shapes shapes to Cad, without undo steps: rectangles (one in
// five turned), ellipses, lines, closed triangles and three-point poly-lines,
// 4 to 40 pixels across, in eight fill colours, each placed uniformly at
// random in the area. The same options give the same drawing on every
// machine (the generator and every draw from it are fixed).
void GenerateDrawing(TMyCAD& cad, const TGenerateOptions& options);

// lumatrex generate --shapes N [--seed S] [--size WxH] OUT
int Generate(const std::vector<std::string>& args);

}  // namespace lumatrex::cli
