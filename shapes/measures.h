// Lengths and areas as the shapes report them: model pixels (zoom 1) scaled
// by the drawing's Ratio and converted to the owner's unit with the screen's
// pixels per inch, formatted "%9.2f" with a unit suffix.
#pragma once

#include <string>

#include "platform/types.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

// "Area=" and S square model pixels in Unit, e.g. "Area=   200.00pixel(s)2".
std::string AreaText(long double s, long double ratio, TUnits unit);
// "Length=" and L model pixels in Unit, e.g. "Length=    12.70mm".
std::string LengthText(long double l, long double ratio, TUnits unit);

}  // namespace lumatrex
