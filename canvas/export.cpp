#include <QFileInfo>
#include <QImage>
#include <cmath>

#include "canvas/tmycad.h"
#include "platform/qt_interop.h"

namespace lumatrex {

TBitmap TMyCAD::RenderToBitmap(const TImageExportOptions& options) {
  std::vector<TMyShape*> chosen;
  for (const auto& shape : shapes_) {
    const bool wanted = !options.SelectedOnly || IsInWorkingShape(shape.get()) != -1;
    if (wanted && !shape->HasParentShape() && IsVisibleLayerByID(shape->LayerId)) chosen.push_back(shape.get());
  }
  std::vector<TMyShape*> all;
  for (TMyShape* top : chosen)
    for (TMyShape* s : SubtreeOf(top)) all.push_back(s);
  if (all.empty()) return TBitmap(0, 0, pf32bit);

  const double savedZoom = zoom_;
  zoom_ = options.Zoom;
  const TMyRect extent = GetShapesLTRBinZoom(all);
  const TRect area = Rect(static_cast<std::int32_t>(std::floor(extent.Left)) - options.Margin,
                          static_cast<std::int32_t>(std::floor(extent.Top)) - options.Margin,
                          static_cast<std::int32_t>(std::ceil(extent.Right)) + options.Margin + 1,
                          static_cast<std::int32_t>(std::ceil(extent.Bottom)) + options.Margin + 1);
  TBitmap picture(area.Width(), area.Height(), pf32bit);
  DrawBackground(picture);
  DrawBkBitmap(picture, -area.Left, -area.Top);
  DrawShapeList(picture.Canvas(), area, chosen, false);
  zoom_ = savedZoom;
  return picture;
}

bool TMyCAD::SaveToImageFile(const std::string& fileName, const TImageExportOptions& options) {
  const QString suffix = QFileInfo(QString::fromStdString(fileName)).suffix().toLower();
  const char* format = suffix == "png" ? "PNG" : (suffix == "jpg" || suffix == "jpeg") ? "JPEG" : suffix == "bmp" ? "BMP" : nullptr;
  if (!format) return false;
  const TBitmap picture = RenderToBitmap(options);
  if (picture.Empty()) return false;
  if (suffix == "bmp") {
    try {
      picture.SaveToFile(fileName);
    } catch (const std::exception&) {
      return false;
    }
    return true;
  }
  return ToQImage(picture).save(QString::fromStdString(fileName), format);
}

}  // namespace lumatrex
