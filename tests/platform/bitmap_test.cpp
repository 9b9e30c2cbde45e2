// TBitmap: row layouts of every pixel format, keeping rows and canvas drawing
// consistent, format changes, resizing, copies, BMP streams and the Qt bridge.
#include <gtest/gtest.h>

#include <QImage>
#include <cstdint>
#include <vector>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/qt_interop.h"
#include "platform/stream.h"

namespace lumatrex {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Row(const TBitmap& bitmap, int row, int count) {
  const std::uint8_t* p = bitmap.ScanLine(row);
  return Bytes(p, p + count);
}

void FillRed(TBitmap& bitmap) {
  bitmap.Canvas().Brush().SetColor(clRed);
  bitmap.Canvas().FillRect(Rect(0, 0, bitmap.Width(), bitmap.Height()));
}

// ---------------------------------------------------------------------------
// Pixel formats and rows
// ---------------------------------------------------------------------------

TEST(BitmapRows, NewPixelsAreWhiteAndRowsHoldWhatTheCanvasDrewInEveryFormat) {
  struct Case {
    const char* name;
    TPixelFormat format, stored;
    int bytesPerLine;  // for a width of 3
    Bytes redPixel;    // the first bytes of a row after drawing its first pixel red
  };
  const Case cases[] = {{"pf24bit is blue green red", pf24bit, pf24bit, 12, {0, 0, 0xFF, 0xFF, 0xFF, 0xFF}},
                        {"pf32bit has opaque alpha", pf32bit, pf32bit, 12, {0, 0, 0xFF, 0xFF}},
                        {"pfDevice is stored as pf32bit", pfDevice, pf32bit, 12, {0, 0, 0xFF, 0xFF}},
                        {"pf8bit holds palette indices", pf8bit, pf8bit, 4, {9, 15, 15}},
                        {"pf4bit is stored as pf8bit", pf4bit, pf8bit, 4, {9, 15, 15}},
                        {"pf16bit is 5 6 5", pf16bit, pf16bit, 8, {0x00, 0xF8}},
                        {"pf15bit is 5 5 5", pf15bit, pf15bit, 8, {0x00, 0x7C}},
                        // red becomes black (0), white is 1, the padding 0
                        {"pf1bit is most significant bit first", pf1bit, pf1bit, 4, {0x60}}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TBitmap bitmap(3, 2, c.format);
    EXPECT_EQ(bitmap.PixelFormat(), c.stored);
    EXPECT_EQ(bitmap.BytesPerLine(), c.bytesPerLine);
    EXPECT_EQ(bitmap.Canvas().GetPixel(2, 1), clWhite);
    bitmap.Canvas().SetPixel(0, 1, clRed);
    EXPECT_EQ(Row(bitmap, 1, static_cast<int>(c.redPixel.size())), c.redPixel);
  }
}

TEST(BitmapRows, DrawingAfterARowEditKeepsTheEdit) {
  TBitmap bitmap(3, 3, pf24bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.SetPixel(0, 0, clRed);
  std::uint8_t* row = bitmap.ScanLine(1);
  row[0] = 0x00;  // pixel (0, 1) becomes green: blue, green, red
  row[1] = 0xFF;
  row[2] = 0x00;
  canvas.SetPixel(2, 2, clBlue);
  EXPECT_EQ(canvas.GetPixel(0, 1), clLime);
  EXPECT_EQ(canvas.GetPixel(0, 0), clRed);
  EXPECT_EQ(Row(bitmap, 2, 9), (Bytes{0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0xFF, 0, 0}));
}

TEST(BitmapRows, XorTwiceRestoresAPaletteBitmapExactly) {
  TBitmap bitmap(20, 20, pf8bit);
  TCanvas& canvas = bitmap.Canvas();
  canvas.Brush().SetColor(clTeal);
  canvas.Ellipse(2, 2, 18, 18);
  const Bytes before = Row(bitmap, 10, 20);
  canvas.Pen().SetMode(pmXor);
  canvas.Pen().SetColor(RGB(0x33, 0x66, 0x99));
  canvas.Rectangle(0, 0, 20, 20);
  canvas.Rectangle(0, 0, 20, 20);
  EXPECT_EQ(Row(bitmap, 10, 20), before);
}

// ---------------------------------------------------------------------------
// Format changes and sizes
// ---------------------------------------------------------------------------

TEST(BitmapFormat, ConvertsThroughAPaletteToTheNearestEntry) {
  TBitmap bitmap(2, 1, pf24bit);
  bitmap.Canvas().SetPixel(0, 0, clRed);
  bitmap.Canvas().SetPixel(1, 0, RGB(250, 10, 5));
  bitmap.SetPixelFormat(pf8bit);
  EXPECT_EQ(Row(bitmap, 0, 2), (Bytes{9, 9}));
  bitmap.SetPixelFormat(pf24bit);
  EXPECT_EQ(bitmap.Canvas().GetPixel(1, 0), clRed);
  bitmap.Canvas().SetPixel(0, 0, RGB(10, 200, 30));
  bitmap.SetPixelFormat(pf1bit);
  EXPECT_EQ(bitmap.Canvas().GetPixel(0, 0), clBlack);
  EXPECT_EQ(bitmap.Canvas().GetPixel(1, 0), clBlack);
}

TEST(BitmapFormat, DirectFormatsKeepColoursTheyCanHold) {
  TBitmap bitmap(1, 1, pf32bit);
  bitmap.Canvas().SetPixel(0, 0, RGB(0x12, 0x34, 0x56));
  bitmap.SetPixelFormat(pf24bit);
  EXPECT_EQ(Row(bitmap, 0, 3), (Bytes{0x56, 0x34, 0x12}));
  bitmap.SetPixelFormat(pf16bit);
  bitmap.SetPixelFormat(pf32bit);
  const TColor c = bitmap.Canvas().GetPixel(0, 0);
  EXPECT_NEAR(GetRValue(c), 0x12, 8);
  EXPECT_NEAR(GetGValue(c), 0x34, 4);
  EXPECT_NEAR(GetBValue(c), 0x56, 8);
}

TEST(BitmapFormat, SetPaletteRecoloursIndices) {
  TBitmap bitmap(1, 1, pf8bit);
  bitmap.ScanLine(0)[0] = 2;
  bitmap.SetPalette({clBlack, clWhite, clYellow});
  EXPECT_EQ(bitmap.Canvas().GetPixel(0, 0), clYellow);
  EXPECT_EQ(bitmap.Palette().size(), 3u);
  bitmap.ScanLine(0)[0] = 7;  // past the palette: black
  EXPECT_EQ(bitmap.Canvas().GetPixel(0, 0), clBlack);
}

TEST(BitmapSize, ResizingKeepsTheTopLeftPixelsAndAddsWhite) {
  TBitmap bitmap(4, 3, pf24bit);
  FillRed(bitmap);
  bitmap.SetSize(6, 5);
  EXPECT_EQ(bitmap.Canvas().GetPixel(3, 2), clRed);
  EXPECT_EQ(bitmap.Canvas().GetPixel(4, 2), clWhite);
  EXPECT_EQ(bitmap.Canvas().GetPixel(3, 3), clWhite);
  bitmap.SetWidth(2);
  EXPECT_EQ(bitmap.Width(), 2);
  EXPECT_EQ(bitmap.Canvas().GetPixel(1, 1), clRed);
}

TEST(BitmapSize, OneBitResizeKeepsOnlyThePixelsThatFit) {
  TBitmap bitmap(12, 1, pf1bit);
  bitmap.Canvas().MoveTo(0, 0);
  bitmap.Canvas().LineTo(12, 0);
  bitmap.SetWidth(5);
  bitmap.SetWidth(12);
  EXPECT_EQ(Row(bitmap, 0, 2), (Bytes{0x07, 0xF0}));
}

TEST(BitmapSize, NegativeSizesBecomeEmpty) {
  TBitmap bitmap(3, 3);
  bitmap.SetSize(-2, 4);
  EXPECT_EQ(bitmap.Width(), 0);
  EXPECT_EQ(bitmap.Height(), 4);
  EXPECT_TRUE(bitmap.Empty());
  bitmap.Canvas().Rectangle(0, 0, 5, 5);  // nothing to draw on, nothing happens
  bitmap.SetWidth(2);
  EXPECT_EQ(bitmap.Canvas().GetPixel(1, 3), clWhite);
}

// ---------------------------------------------------------------------------
// BMP streams
// ---------------------------------------------------------------------------

TEST(BitmapStreams, SaveAndLoadKeepPixelsPaletteAndFormat) {
  for (const TPixelFormat format : {pf1bit, pf8bit, pf15bit, pf16bit, pf24bit, pf32bit}) {
    SCOPED_TRACE(format);
    TBitmap bitmap(5, 3, format);
    bitmap.Canvas().SetPixel(1, 1, clBlack);
    bitmap.Canvas().SetPixel(4, 2, clRed);
    TMemoryStream stream;
    bitmap.SaveToStream(stream);
    stream.SetPosition(0);
    TBitmap loaded;
    loaded.LoadFromStream(stream);
    EXPECT_EQ(loaded.PixelFormat(), format == pf15bit || format == pf16bit ? pf24bit : format);
    EXPECT_EQ(loaded.Width(), 5);
    EXPECT_EQ(loaded.Height(), 3);
    EXPECT_EQ(loaded.Palette(), bitmap.Palette());
    for (int y = 0; y < 3; ++y)
      for (int x = 0; x < 5; ++x)
        EXPECT_EQ(loaded.Canvas().GetPixel(x, y), bitmap.Canvas().GetPixel(x, y)) << x << "," << y;
    EXPECT_EQ(stream.Position(), stream.Size());
  }
}

TEST(BitmapStreams, MalformedDataThrowsAndLeavesTheBitmapAlone) {
  TBitmap bitmap(3, 2, pf8bit);
  bitmap.Canvas().SetPixel(0, 0, clRed);
  TMemoryStream stream(Bytes{'B', 'M', 1, 2, 3, 4, 5, 6, 7, 8, 9});
  EXPECT_THROW(bitmap.LoadFromStream(stream), EInvalidGraphic);
  EXPECT_EQ(bitmap.Width(), 3);
  EXPECT_EQ(bitmap.PixelFormat(), pf8bit);
  EXPECT_EQ(bitmap.Canvas().GetPixel(0, 0), clRed);
}

// ---------------------------------------------------------------------------
// Qt bridge
// ---------------------------------------------------------------------------

TEST(BitmapQtInterop, AssignQImageChoosesTheFormatAndCopies) {
  QImage image(2, 1, QImage::Format_RGB888);
  image.fill(qRgb(0, 0, 255));
  TBitmap bitmap;
  AssignQImage(bitmap, image);
  EXPECT_EQ(bitmap.PixelFormat(), pf24bit);
  EXPECT_EQ(bitmap.Canvas().GetPixel(1, 0), clBlue);
  QImage indexed(1, 1, QImage::Format_Indexed8);
  indexed.setColorTable({qRgb(1, 2, 3)});
  indexed.fill(0);
  AssignQImage(bitmap, indexed);
  EXPECT_EQ(bitmap.PixelFormat(), pf8bit);
  EXPECT_EQ(bitmap.Palette(), (std::vector<TColor>{RGB(1, 2, 3)}));
}

}  // namespace
}  // namespace lumatrex
