// TPainterCanvas: a TCanvas whose operations go to a QPainter on any paint
// device (a printer, a PDF or SVG generator, an image painted smoothly)
// instead of being rasterised pixel by pixel. Shapes draw on its Canvas()
// with the very code they use on a bitmap; figures keep their curves,
// text stays text and bitmaps stay pictures, so the output is sharp at any
// resolution.
//
// Coordinates: the canvas's device pixels, as on a bitmap. Pixel (x, y)
// stands for the point (x, y), so a one-pixel line through it covers the same
// square [x, x+1) x [y, y+1) of the painter's space that the raster back end
// lights; the painter's transform at construction maps that space onto its
// device (a scale of 1 on a QImage; printer dots per canvas pixel on a
// printer). Pen widths, dash lengths, hatches and fonts are in canvas pixels
// and scale with that transform. Antialiasing follows the painter's hints.
//
// What a painter cannot do, and so what differs from a bitmap:
//   - pen modes: pmCopy draws the colours, pmNotCopy their inverse, pmBlack
//     and pmWhite those colours, pmNop nothing. The modes that combine with
//     the picture underneath (pmXor, pmNot, pmMerge, ...) are Qt's raster
//     operations on a device that has them (an image; antialiasing off keeps
//     an XOR figure drawn twice exact), and draw nothing on the others (PDF,
//     SVG, printers): they serve the screen's previews. Pen and brush are
//     combined one after the other, so where a figure's pen and fill meet a
//     pixel is combined twice.
//   - FloodFill draws nothing and GetPixel answers -1: there are no pixels to
//     read. SetPixel fills the pixel's square.
//   - CopyRect copies from a bitmap canvas; a painter canvas as source gives
//     nothing.
//   - psInsideFrame draws as psSolid on the outline.
// Paths, clipping, world transforms, text extents and every figure behave as
// on a bitmap.
#pragma once

#include <functional>
#include <memory>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/types.h"

class QPainter;

namespace lumatrex {

class TPainterTarget;

class TPainterCanvas {
 public:
  // Painter must be active and outlive this object. Extent is the canvas's
  // size in its pixels (its ClipRect while no clip is set). Pens are
  // PenScale times their width wide, so that a canvas whose pixels are finer
  // than the screen's (a printed page placing shapes to a fraction of a
  // screen pixel) keeps their screen thickness. The painter's state is
  // restored when this object goes.
  TPainterCanvas(QPainter& painter, TSize extent, double penScale = 1);
  ~TPainterCanvas();
  TPainterCanvas(const TPainterCanvas&) = delete;
  TPainterCanvas& operator=(const TPainterCanvas&) = delete;

  TCanvas& Canvas() { return *canvas_; }

 private:
  TBitmap none_;  // the canvas's Bitmap(): empty, nothing is rasterised
  std::unique_ptr<TPainterTarget> target_;
  std::unique_ptr<TCanvas> canvas_;
};

// Runs Paint with a painter canvas on Bitmap's own picture, antialiased: the
// smooth counterpart of drawing on Bitmap.Canvas(). The canvas covers the
// bitmap; Bitmap's canvas state (clip, pen) is not involved.
void PaintSmoothly(TBitmap& bitmap, const std::function<void(TCanvas& canvas)>& paint);

}  // namespace lumatrex
