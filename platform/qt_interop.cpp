#include "platform/qt_interop.h"

#include <QPainter>

#include "platform/bitmap_impl.h"
#include "platform/raster.h"

namespace lumatrex {

QRgb ToQRgb(TColor color) { return raster::ToRgb(color); }

QColor ToQColor(TColor color) { return QColor::fromRgb(raster::ToRgb(color)); }

TColor FromQRgb(QRgb rgb) {
  return RGB(static_cast<std::uint8_t>(qRed(rgb)), static_cast<std::uint8_t>(qGreen(rgb)),
             static_cast<std::uint8_t>(qBlue(rgb)));
}

QImage ToQImage(const TBitmap& bitmap) {
  if (bitmap.Empty()) return QImage();
  return bitmap.impl().Rgb32().convertToFormat(QImage::Format_RGB32).copy();
}

void AssignQImage(TBitmap& bitmap, const QImage& image) {
  TPixelFormat format = pf24bit;
  if (image.format() == QImage::Format_Mono || image.format() == QImage::Format_MonoLSB)
    format = pf1bit;
  else if (image.colorCount() > 0)
    format = pf8bit;
  else if (image.depth() == 32)
    format = pf32bit;
  QImage::Format layout = QtFormat(format);
  if (format == pf32bit && image.hasAlphaChannel()) layout = QImage::Format_ARGB32;
  QImage copy = image.convertToFormat(layout);
  if (copy.constBits() == image.constBits()) copy = image.copy();  // never share with the caller
  bitmap.impl().Replace(format, image.width(), image.height(), std::move(copy));
}

void DrawBitmap(QPainter& painter, QPoint target, const TBitmap& bitmap, const QRect& source) {
  if (!bitmap.Empty()) painter.drawImage(target, bitmap.impl().Rgb32(), source);
}

}  // namespace lumatrex
