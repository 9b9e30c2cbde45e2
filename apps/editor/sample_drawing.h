// The sample drawing the demo opens with: every shape kind on two layers over
// a line grid, one rotated rectangle selected so its handles show.
#pragma once

#include "canvas/tmycad.h"

namespace lumatrex::demo {

inline constexpr int kSampleWidth = 720;
inline constexpr int kSampleHeight = 480;

// Replaces Cad's drawing with the sample.
void BuildSampleDrawing(TMyCAD& cad);

}  // namespace lumatrex::demo
