// SVG and PDF pictures of the drawing: the shapes draw on a painter canvas
// (platform/painter_canvas.h), so the files hold paths and text, not pixels.
#include <QBuffer>
#include <QPageSize>
#include <QPainter>
#include <QPdfWriter>
#include <QSvgGenerator>

#include "canvas/tmycad.h"
#include "platform/stream.h"
#include "platform/painter_canvas.h"
#include "platform/screen.h"

namespace lumatrex {

namespace {

// The resolution a PDF's coordinates are written at when no Dpi is asked
// for: fine enough that a drawing pixel's position is kept to 1/100 mm.
constexpr int kPdfResolution = 2400;

std::string Bytes(const QByteArray& data) { return std::string(data.constData(), static_cast<std::size_t>(data.size())); }

}  // namespace

void TMyCAD::PaintVectorPicture(QPainter& painter, const TRect& area, const std::vector<TMyShape*>& roots,
                                const TImageExportOptions& options) {
  const TSize size{area.Width(), area.Height()};
  const double savedZoom = zoom_;
  zoom_ = options.Zoom;
  {
    TPainterCanvas picture(painter, size);
    if (options.Background) {
      DrawBackground(picture.Canvas(), size);
      DrawBkBitmap(picture.Canvas(), size, -area.Left, -area.Top);
    }
    DrawShapeList(picture.Canvas(), area, roots, false);
  }
  zoom_ = savedZoom;
}

std::string TMyCAD::RenderToSvg(const std::vector<TMyShape*>& shapes, const TImageExportOptions& options) {
  const std::vector<TMyShape*> roots = OutputRoots(shapes);
  const TRect area = OutputArea(roots, options);
  if (area.Width() <= 0 || area.Height() <= 0) return {};
  QByteArray data;
  QBuffer buffer(&data);
  buffer.open(QIODevice::WriteOnly);
  QSvgGenerator svg;
  svg.setOutputDevice(&buffer);
  svg.setSize(QSize(area.Width(), area.Height()));
  svg.setViewBox(QRect(0, 0, area.Width(), area.Height()));
  svg.setResolution(ScreenPixelsPerInch());
  svg.setTitle("Lumatrex drawing");
  QPainter painter(&svg);
  PaintVectorPicture(painter, area, roots, options);
  painter.end();
  return Bytes(data);
}

bool TMyCAD::SaveToVectorFile(const std::string& fileName, bool pdf, const TImageExportOptions& options) {
  const std::vector<TMyShape*> roots = OutputRoots(options.SelectedOnly);
  std::string bytes;
  if (!pdf) {
    bytes = RenderToSvg(roots, options);
  } else {
    const TRect area = OutputArea(roots, options);
    if (area.Width() <= 0 || area.Height() <= 0) return false;
    QByteArray data;
    QBuffer buffer(&data);
    buffer.open(QIODevice::WriteOnly);
    QPdfWriter writer(&buffer);
    const int resolution = options.Dpi > 0 ? static_cast<int>(options.Dpi) : kPdfResolution;
    const double ppi = ScreenPixelsPerInch();
    writer.setResolution(resolution);
    writer.setCreator("Lumatrex");
    writer.setPageSize(QPageSize(QSizeF(area.Width() * 25.4 / ppi, area.Height() * 25.4 / ppi),
                                 QPageSize::Millimeter, QString(), QPageSize::ExactMatch));
    writer.setPageMargins(QMarginsF(0, 0, 0, 0));
    QPainter painter(&writer);
    if (!painter.isActive()) return false;
    painter.scale(resolution / ppi, resolution / ppi);
    PaintVectorPicture(painter, area, roots, options);
    painter.end();
    bytes = Bytes(data);
  }
  if (bytes.empty()) return false;
  SaveBytesToFileAtomically(fileName, std::vector<std::uint8_t>(bytes.begin(), bytes.end()));
  return true;
}

}  // namespace lumatrex
