// The standard colours by their classic names, for the colour cells of the
// inspector: shown by name when a value is one of them, else as "$00BBGGRR".
#pragma once

#include <QString>
#include <span>

#include "platform/types.h"

namespace lumatrex {

struct TNamedColor {
  const char* name;
  TColor color;
};

// The sixteen basic colours and the system colours the library uses.
std::span<const TNamedColor> StandardColors();
QString ColorToText(TColor color);
// Accepts a standard name or "$" followed by up to eight hex digits; false
// (Color untouched) for anything else.
bool TextToColor(const QString& text, TColor& color);

}  // namespace lumatrex
