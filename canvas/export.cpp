#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <algorithm>
#include <climits>
#include <cmath>
#include <cstdio>

#include "canvas/tmycad.h"
#include "platform/qt_interop.h"
#include "platform/screen.h"

namespace lumatrex {

namespace {

// Side lengths beyond this are refused whatever the pixel count: QImage and
// the integer device coordinates of the paint pipeline stop near it.
constexpr double kMaxPictureSide = 32767;

std::string Decimal(const char* format, double value) {
  char text[64];
  std::snprintf(text, sizeof text, format, value);
  return text;
}

// The largest factor on the zoom that brings the picture within the limits:
// the shapes' part of each side scales with the zoom, the margins do not.
// 0 when even the margins alone are too large.
double FittingScale(double width, double height, double pad, double maxPixels) {
  const double w = std::max(width - pad, 1.0);
  const double h = std::max(height - pad, 1.0);
  // (w s + pad)(h s + pad) <= maxPixels, solved for s.
  const double a = w * h;
  const double b = pad * (w + h);
  const double c = pad * pad - maxPixels;
  if (c >= 0) return 0;
  const double byPixels = (-b + std::sqrt(b * b - 4 * a * c)) / (2 * a);
  return std::min({byPixels, (kMaxPictureSide - pad) / w, (kMaxPictureSide - pad) / h});
}

// The device rectangle of Extent plus Margin, checked in floating point
// before any conversion to integers: far-apart shapes at a high zoom, or
// coordinates near float32's limits, must give an error, not a huge
// allocation or an out-of-range conversion.
TRect PictureArea(const TMyRect& extent, const TImageExportOptions& options) {
  const double left = std::floor(extent.Left) - options.Margin;
  const double top = std::floor(extent.Top) - options.Margin;
  const double width = std::ceil(extent.Right) + options.Margin + 1 - left;
  const double height = std::ceil(extent.Bottom) + options.Margin + 1 - top;
  const double pixels = width * height;
  const bool fits = width <= kMaxPictureSide && height <= kMaxPictureSide &&
                    pixels <= static_cast<double>(options.MaxPixels) && std::fabs(left) <= INT32_MAX / 2 &&
                    std::fabs(top) <= INT32_MAX / 2;
  if (fits) return Rect(static_cast<std::int32_t>(left), static_cast<std::int32_t>(top),
                        static_cast<std::int32_t>(left + width), static_cast<std::int32_t>(top + height));
  const double scale = FittingScale(width, height, 2.0 * options.Margin + 3, static_cast<double>(options.MaxPixels));
  std::string message = "the picture would be " + Decimal("%.0f", width) + " x " + Decimal("%.0f", height) +
                        " pixels, more than the limit of " + std::to_string(options.MaxPixels) +
                        " pixels and 32767 a side";
  if (scale > 0 && std::isfinite(scale))
    message += "; lower the zoom to " + Decimal("%.3g", options.Zoom * scale * 0.98) + " or less";
  else
    message += "; the shapes lie too far from the origin";
  throw EPictureTooLarge(message);
}

}  // namespace

std::vector<TMyShape*> TMyCAD::OutputRoots(const std::vector<TMyShape*>& shapes) const {
  std::vector<TMyShape*> roots;
  for (TMyShape* shape : shapes) {
    TMyShape* root = shape ? GetRootParentShape(shape) : nullptr;
    if (root && !root->HasParentShape() && IsVisibleLayerByID(root->LayerId)) roots.push_back(root);
  }
  std::sort(roots.begin(), roots.end(), [](const TMyShape* a, const TMyShape* b) { return a->ShapeNo < b->ShapeNo; });
  roots.erase(std::unique(roots.begin(), roots.end()), roots.end());
  return roots;
}

std::vector<TMyShape*> TMyCAD::OutputRoots(bool selectedOnly) const {
  std::vector<TMyShape*> chosen;
  for (const auto& shape : shapes_) {
    const bool wanted = !selectedOnly || IsInWorkingShape(shape.get()) != -1;
    if (wanted && !shape->HasParentShape() && IsVisibleLayerByID(shape->LayerId)) chosen.push_back(shape.get());
  }
  return chosen;
}

TRect TMyCAD::OutputArea(const std::vector<TMyShape*>& roots, const TImageExportOptions& options) {
  std::vector<TMyShape*> all;
  for (TMyShape* top : roots)
    for (TMyShape* s : SubtreeOf(top)) all.push_back(s);
  if (all.empty()) return TRect{};
  const double savedZoom = zoom_;
  zoom_ = options.Zoom;
  const TMyRect extent = GetShapesLTRBinZoom(all);
  zoom_ = savedZoom;  // a refused picture leaves the view as it was
  return PictureArea(extent, options);
}

TBitmap TMyCAD::RenderToBitmap(const TImageExportOptions& requested) {
  TImageExportOptions options = requested;
  if (options.Dpi > 0) options.Zoom *= options.Dpi / ScreenPixelsPerInch();
  const std::vector<TMyShape*> chosen = OutputRoots(options.SelectedOnly);
  const TRect area = OutputArea(chosen, options);
  if (area.Width() <= 0 || area.Height() <= 0) return TBitmap(0, 0, pf32bit);
  const double savedZoom = zoom_;
  zoom_ = options.Zoom;
  TBitmap picture(area.Width(), area.Height(), pf32bit);
  if (options.Background) {
    DrawBackground(picture);
    DrawBkBitmap(picture, -area.Left, -area.Top);
  } else {
    picture.Canvas().Brush().SetColor(clWhite);
    picture.Canvas().Brush().SetStyle(bsSolid);
    picture.Canvas().FillRect(Rect(0, 0, area.Width(), area.Height()));
  }
  DrawShapeList(picture.Canvas(), area, chosen, false);
  zoom_ = savedZoom;
  return picture;
}

bool TMyCAD::SaveToImageFile(const std::string& fileName, const TImageExportOptions& options) {
  const QString suffix = QFileInfo(QString::fromStdString(fileName)).suffix().toLower();
  if (suffix == "svg" || suffix == "pdf") return SaveToVectorFile(fileName, suffix == "pdf", options);
  const char* format = suffix == "png" ? "PNG" : (suffix == "jpg" || suffix == "jpeg") ? "JPEG" : suffix == "bmp" ? "BMP" : nullptr;
  if (!format) return false;
  const TBitmap picture = RenderToBitmap(options);
  if (picture.Empty()) return false;
  if (suffix == "bmp") {
    picture.SaveToFile(fileName);
    return true;
  }
  // Encoded in memory first, so that the file is replaced whole or not at all.
  QByteArray encoded;
  QBuffer buffer(&encoded);
  buffer.open(QIODevice::WriteOnly);
  QImage image = ToQImage(picture);
  if (options.Dpi > 0) {
    const int dotsPerMeter = static_cast<int>(std::lround(options.Dpi / 0.0254));
    image.setDotsPerMeterX(dotsPerMeter);
    image.setDotsPerMeterY(dotsPerMeter);
  }
  if (!image.save(&buffer, format)) return false;
  SaveBytesToFileAtomically(fileName, std::vector<std::uint8_t>(encoded.begin(), encoded.end()));
  return true;
}

}  // namespace lumatrex
