// The screen's pixels per inch, used to convert lengths between pixels and
// real units and point sizes into pixels.
#pragma once

#include <cstdint>

namespace lumatrex {

// The logical pixels per inch of the primary screen, or 96 when there is no
// screen (a command-line tool). An override set with SetScreenPixelsPerInch wins.
std::int32_t ScreenPixelsPerInch();

// Fixes the value that ScreenPixelsPerInch reports (tests and batch tools use
// 96 so that output is the same everywhere); 0 or less goes back to the screen.
void SetScreenPixelsPerInch(std::int32_t value);

}  // namespace lumatrex
