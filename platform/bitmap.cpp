#include "platform/bitmap.h"

#include <algorithm>
#include <cstring>

#include "platform/bitmap_impl.h"
#include "platform/bmp_codec.h"
#include "platform/canvas.h"
#include "platform/stream.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// Formats and palettes

TPixelFormat StoredFormat(TPixelFormat format) {
  switch (format) {
    case pfDevice: return pf32bit;
    case pf4bit:
    case pfCustom: return pf8bit;
    default: return format;
  }
}

QImage::Format QtFormat(TPixelFormat stored) {
  switch (stored) {
    case pf1bit: return QImage::Format_Mono;
    case pf8bit: return QImage::Format_Indexed8;
    case pf15bit: return QImage::Format_RGB555;
    case pf16bit: return QImage::Format_RGB16;
    case pf24bit: return QImage::Format_BGR888;
    default: return QImage::Format_RGB32;
  }
}

QList<QRgb> DefaultPalette(TPixelFormat stored) {
  if (stored == pf1bit) return {qRgb(0, 0, 0), qRgb(255, 255, 255)};
  if (stored != pf8bit) return {};
  QList<QRgb> palette = {
      qRgb(0, 0, 0),       qRgb(128, 0, 0),   qRgb(0, 128, 0),   qRgb(128, 128, 0),
      qRgb(0, 0, 128),     qRgb(128, 0, 128), qRgb(0, 128, 128), qRgb(192, 192, 192),
      qRgb(128, 128, 128), qRgb(255, 0, 0),   qRgb(0, 255, 0),   qRgb(255, 255, 0),
      qRgb(0, 0, 255),     qRgb(255, 0, 255), qRgb(0, 255, 255), qRgb(255, 255, 255)};
  for (int r = 0; r < 6; ++r)
    for (int g = 0; g < 6; ++g)
      for (int b = 0; b < 6; ++b) palette.append(qRgb(r * 51, g * 51, b * 51));
  for (int i = 0; i < 24; ++i) palette.append(qRgb(8 + 10 * i, 8 + 10 * i, 8 + 10 * i));
  return palette;
}

namespace {

int BitsPerPixel(TPixelFormat stored) {
  switch (stored) {
    case pf1bit: return 1;
    case pf8bit: return 8;
    case pf15bit:
    case pf16bit: return 16;
    case pf24bit: return 24;
    default: return 32;
  }
}

int NearestIndex(const QList<QRgb>& palette, QRgb color) {
  int best = 0;
  long bestDistance = -1;
  for (int i = 0; i < palette.size(); ++i) {
    const long dr = qRed(palette[i]) - qRed(color), dg = qGreen(palette[i]) - qGreen(color),
               db = qBlue(palette[i]) - qBlue(color);
    const long distance = dr * dr + dg * dg + db * db;
    if (bestDistance < 0 || distance < bestDistance) {
      best = i;
      bestDistance = distance;
    }
  }
  return best;
}

// A white picture in a stored format (palette formats get Palette).
QImage WhiteImage(TPixelFormat stored, std::int32_t width, std::int32_t height, const QList<QRgb>& palette) {
  if (width <= 0 || height <= 0) return QImage();
  QImage image(width, height, QtFormat(stored));
  if (image.isNull()) throw std::bad_alloc();
  if (stored == pf1bit || stored == pf8bit) {
    image.setColorTable(palette);
    image.fill(static_cast<uint>(NearestIndex(palette, qRgb(255, 255, 255))));
  } else {
    image.fill(Qt::white);
  }
  return image;
}

// Copies the top-left pixels the two pictures (of one format) have in common.
// Only the pixels' own bits are copied; row padding keeps its zeros.
void CopyOverlap(const QImage& from, QImage& to) {
  const int width = std::min(from.width(), to.width()), height = std::min(from.height(), to.height());
  for (int y = 0; y < height; ++y) {
    const uchar* src = from.constScanLine(y);
    uchar* dst = to.scanLine(y);
    const int bits = width * from.depth();
    std::memcpy(dst, src, static_cast<std::size_t>(bits / 8));
    if (bits % 8) {  // a 1-bit row ending inside a byte: its leading bits only
      const auto keep = static_cast<uchar>(0xFF << (8 - bits % 8));
      dst[bits / 8] = static_cast<uchar>((src[bits / 8] & keep) | (dst[bits / 8] & ~keep));
    }
  }
}

// Zeroes the bytes (and bits) past each row's last pixel, so that saved files
// do not depend on what the allocator left there.
void ClearPadding(QImage& image) {
  const int bits = image.width() * image.depth();
  const auto used = static_cast<std::size_t>((bits + 7) / 8);
  for (int y = 0; y < image.height(); ++y) {
    uchar* row = image.scanLine(y);
    if (bits % 8) row[used - 1] &= static_cast<uchar>(0xFF << (8 - bits % 8));
    std::memset(row + used, 0, static_cast<std::size_t>(image.bytesPerLine()) - used);
  }
}

QList<QRgb> ToQtPalette(const std::vector<TColor>& colors) {
  QList<QRgb> palette;
  for (TColor c : colors) palette.append(qRgb(GetRValue(c), GetGValue(c), GetBValue(c)));
  return palette;
}

// Whether a picture with an alpha channel uses it: only then is it saved
// with the header that marks the fourth byte as alpha.
bool HasTranslucentPixels(const QImage& image) {
  if (!image.hasAlphaChannel()) return false;
  for (int y = 0; y < image.height(); ++y) {
    const auto* row = reinterpret_cast<const QRgb*>(image.constScanLine(y));
    for (int x = 0; x < image.width(); ++x)
      if (qAlpha(row[x]) != 0xFF) return true;
  }
  return false;
}

// The picture of a decoded BMP file in the format TBitmap keeps it in.
QImage ImageFromDecoded(const bmp::TDecodedBmp& d, TPixelFormat& format) {
  if (d.indexed) {
    format = d.bitsPerPixel == 1 ? pf1bit : pf8bit;
    QList<QRgb> palette = ToQtPalette(d.palette);
    if (palette.isEmpty()) palette = DefaultPalette(format);
    if (format == pf1bit) palette.resize(2, qRgb(0, 0, 0));
    QImage image = WhiteImage(format, d.width, d.height, palette);
    for (int y = 0; y < image.height(); ++y) {
      const std::uint8_t* src = d.indices.data() + static_cast<std::size_t>(y) * d.width;
      if (format == pf8bit) {
        std::memcpy(image.scanLine(y), src, static_cast<std::size_t>(d.width));
      } else {
        for (int x = 0; x < d.width; ++x) image.setPixel(x, y, src[x] & 1);
      }
    }
    return image;
  }
  format = d.bitsPerPixel == 32 ? pf32bit : pf24bit;
  const QImage::Format qt =
      format == pf24bit ? QImage::Format_BGR888 : d.hasAlpha ? QImage::Format_ARGB32 : QImage::Format_RGB32;
  if (d.width <= 0 || d.height <= 0) return QImage();
  QImage image(d.width, d.height, qt);
  if (image.isNull()) throw std::bad_alloc();
  for (int y = 0; y < image.height(); ++y) {
    const std::uint32_t* src = d.argb.data() + static_cast<std::size_t>(y) * d.width;
    uchar* dst = image.scanLine(y);
    for (int x = 0; x < d.width; ++x) {
      if (format == pf24bit) {
        dst[3 * x] = static_cast<uchar>(qBlue(src[x]));
        dst[3 * x + 1] = static_cast<uchar>(qGreen(src[x]));
        dst[3 * x + 2] = static_cast<uchar>(qRed(src[x]));
      } else {
        // Without alpha masks the fourth byte is undefined and most writers
        // leave it 0: reading it as alpha would make such pictures vanish.
        reinterpret_cast<QRgb*>(dst)[x] = d.hasAlpha ? src[x] : (src[x] | 0xFF000000u);
      }
    }
  }
  return image;
}

}  // namespace

// ---------------------------------------------------------------------------
// TBitmap::Impl

QImage& TBitmap::Impl::Pixels() {
  if (!Direct() && fresh_ == Fresh::Surface) FlushSurface();
  return pixels_;
}

void TBitmap::Impl::FlushSurface() {
  const QImage converted = pixels_.colorCount() > 0
                               ? surface_.convertToFormat(pixels_.format(), pixels_.colorTable())
                               : surface_.convertToFormat(pixels_.format());
  // Into the existing buffer, so that rows handed out stay valid.
  CopyOverlap(converted, pixels_);
  // The working copy may hold colours the format cannot; from now on the
  // stored pixels are the picture, and painting starts again from them.
  fresh_ = Fresh::Pixels;
}

QImage& TBitmap::Impl::PaintSurface() {
  if (Direct()) return pixels_;
  if (fresh_ == Fresh::Pixels) surface_ = pixels_.convertToFormat(QImage::Format_RGB32);
  fresh_ = Fresh::Surface;
  return surface_;
}

const QImage& TBitmap::Impl::Rgb32() {
  if (Direct()) return pixels_;
  Pixels();
  if (fresh_ == Fresh::Pixels) {
    surface_ = pixels_.convertToFormat(QImage::Format_RGB32);
    fresh_ = Fresh::Both;
  }
  return surface_;
}

QRgb TBitmap::Impl::PixelAt(int x, int y) {
  const QImage& pixels = Pixels();
  if (pixels.colorCount() > 0) {
    // Own lookup: an index past the palette (written through ScanLine) reads
    // as black, the way the conversions treat it, instead of a Qt warning.
    const int index = pixels.pixelIndex(x, y);
    return index < pixels.colorCount() ? pixels.color(index) : qRgb(0, 0, 0);
  }
  return pixels.pixel(x, y);
}

void TBitmap::Impl::Replace(TPixelFormat stored, std::int32_t w, std::int32_t h, QImage image, bool opaque) {
  format = stored;
  opaque_ = opaque;
  width = std::max(w, 0);
  height = std::max(h, 0);
  pixels_ = std::move(image);
  ClearPadding(pixels_);
  surface_ = QImage();
  fresh_ = Fresh::Pixels;
}

// ---------------------------------------------------------------------------
// TBitmap

TBitmap::TBitmap() = default;

TBitmap::Impl& TBitmap::impl() const {
  if (!impl_) impl_ = std::make_unique<Impl>();
  return *impl_;
}

TBitmap::TBitmap(std::int32_t width, std::int32_t height, TPixelFormat format) : TBitmap() {
  const TPixelFormat stored = StoredFormat(format);
  impl().Replace(stored, width, height, WhiteImage(stored, width, height, DefaultPalette(stored)), true);
}

TBitmap::~TBitmap() = default;

TBitmap::TBitmap(const TBitmap& other) : TBitmap() { *this = other; }

TBitmap& TBitmap::operator=(const TBitmap& other) {
  if (this == &other || (!impl_ && !other.impl_)) return *this;
  if (!other.impl_) {
    impl().Replace(Impl::kNewFormat, 0, 0, QImage());  // as a new bitmap is
    return *this;
  }
  const Impl& from = *other.impl_;
  impl().Replace(from.format, from.width, from.height, other.impl().Pixels().copy(), from.OpaqueSurface());
  return *this;
}

std::int32_t TBitmap::Width() const { return impl_ ? impl_->width : 0; }
std::int32_t TBitmap::Height() const { return impl_ ? impl_->height : 0; }

void TBitmap::SetWidth(std::int32_t value) { SetSize(value, Height()); }
void TBitmap::SetHeight(std::int32_t value) { SetSize(Width(), value); }

void TBitmap::SetSize(std::int32_t width, std::int32_t height) {
  width = std::max(width, 0);
  height = std::max(height, 0);
  if (width == Width() && height == Height()) return;
  const QImage& old = impl().Pixels();
  const QList<QRgb> palette = old.isNull() ? DefaultPalette(impl().format) : old.colorTable();
  QImage resized = WhiteImage(impl().format, width, height, palette);
  const bool opaque = old.isNull() || impl().OpaqueSurface();
  if (!old.isNull() && !resized.isNull()) CopyOverlap(old, resized);
  impl().Replace(impl().format, width, height, std::move(resized), opaque);
}

TPixelFormat TBitmap::PixelFormat() const { return impl_ ? impl_->format : Impl::kNewFormat; }

void TBitmap::SetPixelFormat(TPixelFormat value) {
  const TPixelFormat stored = StoredFormat(value);
  if (stored == PixelFormat()) return;  // without making storage for an empty bitmap
  const QImage& old = impl().Pixels();
  QImage converted;
  if (!old.isNull()) {
    converted = stored == pf1bit || stored == pf8bit
                    ? old.convertToFormat(QImage::Format_RGB32).convertToFormat(QtFormat(stored), DefaultPalette(stored))
                    : old.convertToFormat(QtFormat(stored));
  }
  impl().Replace(stored, Width(), Height(), std::move(converted));
}

std::uint8_t* TBitmap::ScanLine(std::int32_t row) {
  if (row < 0 || row >= Height() || Empty()) return nullptr;
  QImage& pixels = impl().Pixels();
  impl().PixelsWritten();
  return pixels.scanLine(row);
}

const std::uint8_t* TBitmap::ScanLine(std::int32_t row) const {
  if (row < 0 || row >= Height() || Empty()) return nullptr;
  return impl().Pixels().constScanLine(row);
}

std::int32_t TBitmap::BytesPerLine() const {
  return (Width() * BitsPerPixel(impl().format) + 31) / 32 * 4;
}

std::vector<TColor> TBitmap::Palette() const {
  std::vector<TColor> colors;
  for (QRgb c : impl().Pixels().colorTable())
    colors.push_back(RGB(static_cast<std::uint8_t>(qRed(c)), static_cast<std::uint8_t>(qGreen(c)),
                         static_cast<std::uint8_t>(qBlue(c))));
  return colors;
}

void TBitmap::SetPalette(const std::vector<TColor>& colors) {
  const TPixelFormat format = impl().format;
  if ((format != pf1bit && format != pf8bit) || colors.empty() || Empty()) return;
  QList<QRgb> palette = ToQtPalette(colors);
  palette.resize(format == pf1bit ? 2 : std::min<qsizetype>(palette.size(), 256), qRgb(0, 0, 0));
  impl().Pixels().setColorTable(palette);
  impl().PixelsWritten();
}

TCanvas& TBitmap::Canvas() {
  if (!impl().canvas) impl().canvas = std::make_unique<TCanvas>(*this);
  return *impl().canvas;
}

void TBitmap::SaveToStream(TStream& stream) const {
  QImage pixels = impl().Pixels();
  if (impl().format == pf16bit) {  // the plain BMP 16-bit layout is 5-5-5
    pixels = pixels.convertToFormat(QImage::Format_RGB555);
  }
  const bool alpha = impl().format == pf32bit && HasTranslucentPixels(pixels);
  if (alpha) pixels = pixels.convertToFormat(QImage::Format_ARGB32);  // B, G, R, A in memory
  bmp::TEncodeSource source;
  source.width = Width();
  source.height = Height();
  source.bitsPerPixel = BitsPerPixel(impl().format);
  source.stride = BytesPerLine();
  source.pixels = pixels.isNull() ? nullptr : pixels.constBits();
  source.palette = Palette();
  source.alpha = alpha;
  const std::vector<std::uint8_t> file = bmp::Encode(source);
  stream.WriteBuffer(file.data(), static_cast<std::int64_t>(file.size()));
}

void TBitmap::LoadFromStream(TStream& stream) {
  std::vector<std::uint8_t> data(static_cast<std::size_t>(std::max<std::int64_t>(stream.Remaining(), 0)));
  stream.ReadBuffer(data.data(), static_cast<std::int64_t>(data.size()), "bitmap file");
  const bmp::TDecodedBmp decoded = bmp::Decode(data.data(), data.size());
  TPixelFormat format = pf24bit;
  QImage image = ImageFromDecoded(decoded, format);
  impl().Replace(format, decoded.width, decoded.height, std::move(image));
}

void TBitmap::SaveToFile(const std::string& fileName) const {
  TMemoryStream bytes;
  SaveToStream(bytes);
  SaveBytesToFileAtomically(fileName, bytes.View());
}

void TBitmap::LoadFromFile(const std::string& fileName) {
  TFileStream stream(fileName, fmOpenRead);
  LoadFromStream(stream);
}

}  // namespace lumatrex
