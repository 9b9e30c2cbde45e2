// The sample drawing the demo shows: every drawing facility of the library on
// one sheet.
#pragma once

#include "platform/canvas.h"

namespace lumatrex::demo {

inline constexpr int kSampleWidth = 640;
inline constexpr int kSampleHeight = 420;

// Paints the sample on Canvas (device pixels from the top-left corner).
void PaintSampleDrawing(TCanvas& canvas);

}  // namespace lumatrex::demo
