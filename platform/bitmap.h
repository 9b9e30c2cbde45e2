// TBitmap: a raster image with direct row access, a drawing surface and the
// standard BMP file format. No Qt in this header; widget code reaches the
// pixels through platform/qt_interop.h.
#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

#include "platform/types.h"

namespace lumatrex {

class TCanvas;
class TStream;

enum TPixelFormat : std::uint8_t {
  pfDevice,  // the screen's format; stored as pf32bit
  pf1bit,    // palette indices, leftmost pixel in the highest bit; black, white
  pf4bit,    // stored as pf8bit
  pf8bit,    // 8-bit palette indices
  pf15bit,   // 16-bit words, 5-5-5 (red highest)
  pf16bit,   // 16-bit words, 5-6-5 (red highest)
  pf24bit,   // 3 bytes a pixel: blue, green, red
  pf32bit,   // 4 bytes a pixel: blue, green, red, reserved (alpha, 0xFF when drawn)
  pfCustom,  // stored as pf8bit
};

// Raised when BMP data is malformed or uses a variant that cannot be read; the
// message says what is wrong. Loading never allocates more than the data can
// describe, so a hostile header cannot exhaust memory.
class EInvalidGraphic : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TBitmap {
 public:
  // An empty bitmap (0 x 0) in pf24bit.
  TBitmap();
  TBitmap(std::int32_t width, std::int32_t height, TPixelFormat format = pf24bit);
  ~TBitmap();
  // Deep copies: pixels, format and palette.
  TBitmap(const TBitmap& other);
  TBitmap& operator=(const TBitmap& other);
  void Assign(const TBitmap& other) { *this = other; }

  std::int32_t Width() const;
  std::int32_t Height() const;
  bool Empty() const { return Width() == 0 || Height() == 0; }
  // Resizing keeps the overlapping top-left pixels; new pixels are white.
  // Negative sizes are treated as 0.
  void SetWidth(std::int32_t value);
  void SetHeight(std::int32_t value);
  void SetSize(std::int32_t width, std::int32_t height);

  // pf1bit..pf8bit hold palette indices, pf15/16bit 2 bytes a pixel (5-5-5 and
  // 5-6-5), pf24bit and pf32bit direct colour. Changing the format converts
  // the pixels (to the nearest palette entry when going down to a palette).
  // PixelFormat reports the stored format (pf8bit after asking for pf4bit).
  // A new pf8bit palette holds the 16 classic colours, a 6x6x6 colour cube
  // and 24 greys.
  TPixelFormat PixelFormat() const;
  void SetPixelFormat(TPixelFormat value);

  // Row Row (0 = top) in the layout of the pixel format, rows 4-byte aligned
  // and padded with zero bits. Writing through the pointer changes the
  // picture. The pointer stays valid until the size or the format changes;
  // on formats other than 32-bit, drawing on the canvas afterwards needs a
  // fresh ScanLine to see it. Out of range gives nullptr.
  std::uint8_t* ScanLine(std::int32_t row);
  const std::uint8_t* ScanLine(std::int32_t row) const;
  // Bytes per row including padding.
  std::int32_t BytesPerLine() const;

  // The palette of a palette format (0x00BBGGRR entries); empty otherwise.
  std::vector<TColor> Palette() const;
  // Replaces the colours of a palette format (at most 256, pf1bit exactly 2:
  // cut or padded with black); the indices stay, and an index past the
  // palette shows black. Ignored for other formats, an empty list and an
  // empty bitmap.
  void SetPalette(const std::vector<TColor>& colors);

  // A drawing surface on this bitmap, created on first use and owned by it.
  TCanvas& Canvas();

  // Writes a complete BMP file (file header, BITMAPINFOHEADER, palette for
  // palette formats, bottom-up rows) at the stream's position: 1, 8, 24 or
  // 32 bits a pixel as stored; pf15bit and pf16bit as 16-bit 5-5-5.
  void SaveToStream(TStream& stream) const;
  // Reads the rest of the stream as one BMP file. Accepts every standard
  // variant (1/4/8/16/24/32 bits, RLE4/RLE8, bit-field masks, top-down rows,
  // OS/2 and V4/V5 headers); throws EInvalidGraphic on malformed data and
  // leaves the bitmap unchanged then. 1-bit files become pf1bit, other
  // palette files pf8bit (with the file's palette), 32-bit files pf32bit
  // (keeping a real alpha channel), all others pf24bit.
  void LoadFromStream(TStream& stream);
  void SaveToFile(const std::string& fileName) const;
  void LoadFromFile(const std::string& fileName);

  // Implementation detail shared with the canvas and the Qt interop helpers.
  // Made on first use: most bitmaps a drawing holds (every shape's gradient)
  // stay empty, and a large drawing should not pay one allocation each.
  struct Impl;
  Impl& impl() const;

 private:
  mutable std::unique_ptr<Impl> impl_;
};

}  // namespace lumatrex
