// Bridges between the platform's pictures and Qt, for widget code and
// applications: the drawing surface itself never shows Qt to shapes.
#pragma once

#include <QColor>
#include <QImage>
#include <QPoint>
#include <QRect>

#include "platform/bitmap.h"
#include "platform/types.h"

class QPainter;

namespace lumatrex {

// 0x00BBGGRR colour values and Qt's 0xAARRGGBB ones. System colours are
// resolved first; the result is opaque.
QRgb ToQRgb(TColor color);
QColor ToQColor(TColor color);
// The colour of an RGB value; alpha is dropped.
TColor FromQRgb(QRgb rgb);

// A copy of Bitmap's pixels as Format_RGB32 (null for an empty bitmap),
// including everything drawn on its canvas.
QImage ToQImage(const TBitmap& bitmap);
// Replaces Bitmap's picture with a copy of Image: indexed images become pf8bit
// with their colour table (pf1bit for 1-bit ones), 32-bit images pf32bit
// (keeping alpha when the image has it), all others pf24bit.
void AssignQImage(TBitmap& bitmap, const QImage& image);
// Draws Source (bitmap pixels) of Bitmap with its top-left at Target through
// Painter, without copying the picture first: the way a widget shows its
// back buffer in paintEvent. The painter's own transform and clip apply.
void DrawBitmap(QPainter& painter, QPoint target, const TBitmap& bitmap, const QRect& source);

}  // namespace lumatrex
