// Internal: the fonts compiled into the library and the QFont that draws a
// TFont. Text needs a QGuiApplication (Qt's font database lives there).
#pragma once

#include <QFont>
#include <cstdint>

#include "platform/graphics.h"

namespace lumatrex {

// True when a QGuiApplication exists; the bundled faces are registered on the
// first call that finds one.
bool FontsAvailable();

// The QFont for Font with CharacterExtra pixels after every character. A
// negative Height is the em size in pixels, a positive one the cell height
// (ascent + descent), 0 the default 8 points. Glyph outlines are not hinted,
// so that extents scale with the size and do not depend on the desktop's
// font settings.
QFont ToQFont(const TFont& font, std::int32_t characterExtra);

}  // namespace lumatrex
