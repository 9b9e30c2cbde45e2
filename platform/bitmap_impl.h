// Internal: the storage behind TBitmap. The pixels live in a QImage in the
// layout of the bitmap's pixel format, so that ScanLine hands out the real
// rows. Our raster code (and QPainter) draw only on 32-bit images, so a canvas
// on any other format paints on a 32-bit working copy, converted lazily with a
// note of which copy is newer. Every read of the picture (rows, pixels, files,
// copies) first brings the stored pixels up to date, so it sees the colours
// the format really holds; consecutive drawing calls stay on the working copy,
// so that raster operations remain exact between reads.
#pragma once

#include <QImage>
#include <QRgb>
#include <memory>

#include "platform/bitmap.h"
#include "platform/canvas.h"

namespace lumatrex {

// The format a bitmap actually stores for a requested one (pf4bit and
// pfCustom as pf8bit, pfDevice as pf32bit).
TPixelFormat StoredFormat(TPixelFormat format);
// The QImage layout of a stored format.
QImage::Format QtFormat(TPixelFormat stored);
// The palette a new palette bitmap starts with: black and white for pf1bit;
// for pf8bit the 16 classic colours, a 6x6x6 colour cube and 24 greys.
QList<QRgb> DefaultPalette(TPixelFormat stored);

struct TBitmap::Impl {
  // The pixels in the bitmap's own layout, brought up to date with anything
  // painted on the working copy. A row pointer into them stays valid until
  // the size or the format changes.
  QImage& Pixels();
  // Call after handing out writable rows: the working copy is stale then,
  // and the rows may hold any top bytes.
  void PixelsWritten() {
    fresh_ = Fresh::Pixels;
    opaque_ = false;
  }
  // The 32-bit image a canvas paints on (Format_RGB32 or ARGB32); for a
  // non-32-bit bitmap this marks the working copy as the newer one.
  QImage& PaintSurface();
  // True when every pixel of PaintSurface() has the top byte 0xFF, so that a
  // fill may store whole pixels instead of keeping each one's top byte.
  // Drawing never changes top bytes; only rows handed out and pictures from
  // outside can.
  bool OpaqueSurface() const { return opaque_ && !pixels_.isNull() && pixels_.format() == QImage::Format_RGB32; }
  // The stored pixels as a 32-bit image, for reading (blits, brush patterns).
  const QImage& Rgb32();
  // A stored pixel's colour.
  QRgb PixelAt(int x, int y);

  // Replaces the whole picture; Image must be empty or in QtFormat(Format).
  // Opaque: every top byte of Image is known to be 0xFF.
  void Replace(TPixelFormat format, std::int32_t width, std::int32_t height, QImage image, bool opaque = false);

  static constexpr TPixelFormat kNewFormat = pf24bit;  // of a bitmap never given one
  TPixelFormat format = kNewFormat;
  std::int32_t width = 0;
  std::int32_t height = 0;
  std::unique_ptr<TCanvas> canvas;

 private:
  bool Direct() const { return pixels_.isNull() || pixels_.depth() == 32; }
  void FlushSurface();

  enum class Fresh {
    Pixels,   // the working copy is missing or stale
    Both,     // the working copy is the stored pixels, expanded
    Surface,  // the working copy holds newer drawing
  };
  QImage pixels_;   // null when the bitmap is empty
  QImage surface_;  // the 32-bit working copy of a non-32-bit bitmap
  Fresh fresh_ = Fresh::Pixels;
  bool opaque_ = false;  // see OpaqueSurface
};

}  // namespace lumatrex
