// Fixed drawing modes of the canvas surface and the small markers painted on
// top of shapes: handle squares, link crosses, text-point diamonds, and
// rotated text. All positions are device positions that are already zoomed,
// given as floats and rounded half-to-even.
#pragma once

#include <cstdint>
#include <string>

#include "geometry/geometry.h"
#include "platform/canvas.h"

namespace lumatrex {

class TMyShape;

// ---- what the handle painters ask of the owner -------------------------------
// True while the shape's owner rotates (dtRotating or dtRotateSelecting);
// false without an owner.
bool OwnerIsRotating(const TMyShape& shape);
// The owner's HotShow switch; true without an owner.
bool OwnerShowsHandles(const TMyShape& shape);

// ---- the process-wide hot colour --------------------------------------------
// Fill of unlocked handle squares; 0x00FF00 until a canvas sets its ColorOfHot
// (with several canvases the last one set wins).
TColor GetHotColor();
void SetHotColor(TColor color);

// ---- drawing modes ------------------------------------------------------------
// Black 1-pixel solid pen in copy mode; brush the hot colour.
void SetDrawHotMode(TCanvas& canvas);
// Black 1-pixel solid pen in copy mode; grey brush.
void SetDrawLockedHotMode(TCanvas& canvas);
// White dotted 1-pixel pen in XOR mode, clear brush: previews that erase
// themselves when drawn twice.
void SetDragResizeRotateShapeMode(TCanvas& canvas);
// Pen in the shape's colour, style and width (copy mode), solid brush in the
// pen colour, canvas font = shape font: filled arrow heads.
void SetDrawTriangleMode(const TMyShape& shape, TCanvas& canvas);
// The shape's pen and brush in copy mode. On the printer's canvas a
// monochrome printer gets grey levels (R+G+B) div 3 of the colours.
void SetDrawShapeMode(const TMyShape& shape, TCanvas& canvas);

// ---- markers --------------------------------------------------------------------
// One handle of a selected shape at P: a square of half-width HotSize (half
// that for a group member), grey when locked, a circle for top-level shapes
// while the canvas rotates, nothing while rotating a shape that may not
// rotate, and nothing at all when the shape's HotShow is off.
void DrawSquare(const TMyShape& shape, TCanvas& canvas, const TMyPoint& p);
// A blue 5-pixel cross marking a link point.
void DrawLinkSquare(TCanvas& canvas, const TMyPoint& p);
// Link crosses at every zoomed link point, when the owner shows handles and links.
void DrawLinkHot(const TMyShape& shape, TCanvas& canvas);
// The diamond handle of the text point (full HotSize), in the canvas's current
// pen and brush. Colour is accepted but not applied. Nothing for text shapes
// or shapes without info text.
void DrawDiamond(const TMyShape& shape, TCanvas& canvas, const TMyPoint& p, TColor color);
// MoveTo(rounded A), LineTo(rounded B).
void LineDraw(const TMyShape& shape, TCanvas& canvas, const TMyPoint& a, const TMyPoint& b);

// ---- rotated text ------------------------------------------------------------------
// Text with its reference point at device (X, Y), turned by Angle (radians,
// clockwise on the screen), in Font scaled by Scale (the font size taken as
// pixels at zoom 1), antialiased and transparent. Drawn twice on purpose: the
// second pass darkens the antialiased edges.
void MyLogTextOut(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                  const TFont& font, double scale, double angle);
// The same text drawn once (the shapes' own text calls).
void DrawRotatedText(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                     const TFont& font, double scale, double angle);
// The unrotated extent of Text in the font MyLogTextOut would use.
TSize GetTextWidthHeight(TCanvas& canvas, const std::string& text, const TFont& font, double scale,
                         double angle);

}  // namespace lumatrex
