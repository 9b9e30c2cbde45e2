// Printing: each page is a painter canvas on the printer, in units finer than
// a screen pixel so that a printed length is true to a fraction of a
// millimetre; page decorations (border, header, footer) are drawn at screen
// pixel sizes through a world transform, the shapes at the print's scale.
#include <QDate>
#include <QFileInfo>
#include <QPageLayout>
#include <QPainter>
#include <QPrinter>
#include <algorithm>
#include <cmath>

#include "canvas/tmycad.h"
#include "platform/hooks.h"
#include "platform/painter_canvas.h"
#include "platform/screen.h"

namespace lumatrex {

namespace {

// Page units per screen pixel: a shape's points are rounded to 1/10 of a
// screen pixel (0.026 mm at 96 pixels per inch) on paper.
constexpr int kUnitsPerPixel = 10;

// Gap between a header or footer and the drawing, in screen pixels.
constexpr std::int32_t kTextGap = 4;

QPageSize::PageSizeId PaperOf(TPageStyle style) {
  switch (style) {
    case A0: return QPageSize::A0;
    case A1: return QPageSize::A1;
    case A2: return QPageSize::A2;
    case A3: return QPageSize::A3;
    case A4: return QPageSize::A4;
    case A5: return QPageSize::A5;
    case B3: return QPageSize::B3;
    case B4: return QPageSize::B4;
    case B5: return QPageSize::B5;
    default: return QPageSize::Custom;
  }
}

void ReplaceAll(std::string& text, const std::string& field, const std::string& value) {
  for (std::size_t at = text.find(field); at != std::string::npos; at = text.find(field, at + value.size()))
    text.replace(at, field.size(), value);
}

struct TPageFields {
  std::int32_t page;
  std::int32_t pages;
  std::string date;
  std::string file;
};

std::string Filled(std::string text, const TPageFields& fields) {
  ReplaceAll(text, "[Pages]", std::to_string(fields.pages));
  ReplaceAll(text, "[Page]", std::to_string(fields.page));
  ReplaceAll(text, "[Date]", fields.date);
  ReplaceAll(text, "[File]", fields.file);
  return text;
}

// Text's extent in Font, measured on the screen's terms.
TSize TextExtentIn(const TFont& font, const std::string& text) {
  TBitmap scratch(1, 1, pf32bit);
  scratch.Canvas().Font().Assign(font);
  return scratch.Canvas().TextExtent(text);
}

// The printer queries of the shapes' drawing mode answer for Canvas while a
// print runs, and are given back afterwards.
class TPrinterHooks {
 public:
  TPrinterHooks(const TCanvas& canvas, bool greyScale) : saved_(PlatformHooks()) {
    PlatformHooks().IsPrinterCanvas = [&canvas](const TCanvas& c) { return &c == &canvas; };
    PlatformHooks().PrinterNumColors = [greyScale] { return greyScale ? 2 : 1 << 24; };
  }
  ~TPrinterHooks() { PlatformHooks() = saved_; }
  TPrinterHooks(const TPrinterHooks&) = delete;
  TPrinterHooks& operator=(const TPrinterHooks&) = delete;

 private:
  TPlatformHooks saved_;
};

}  // namespace

void TMyCAD::ApplyPageSetup(QPrinter& printer) const {
  const QPageSize::PageSizeId id = PaperOf(pageStyle_);
  if (id != QPageSize::Custom) {
    printer.setPageSize(QPageSize(id));
    printer.setPageOrientation(pageOrientation_ == 0 ? QPageLayout::Portrait : QPageLayout::Landscape);
    return;
  }
  // A custom page holds its width and height as they stand on the screen.
  const double mmPerPixel = 25.4 / ScreenPixelsPerInch();
  const double w = pageWidth_ * mmPerPixel, h = pageHeight_ * mmPerPixel;
  printer.setPageSize(QPageSize(QSizeF(std::min(w, h), std::max(w, h)), QPageSize::Millimeter, QString(),
                                QPageSize::ExactMatch));
  printer.setPageOrientation(w > h ? QPageLayout::Landscape : QPageLayout::Portrait);
}

std::int32_t TMyCAD::Print(QPrinter& printer, const TPrintOptions& options) {
  const std::vector<TMyShape*> roots = OutputRoots(options.SelectedOnly);
  std::vector<TMyShape*> all;
  for (TMyShape* top : roots)
    for (TMyShape* s : SubtreeOf(top)) all.push_back(s);
  if (all.empty()) return 0;
  const TMyRect model = GetShapesLTRB(all);
  printer.setFullPage(true);
  const double ppi = ScreenPixelsPerInch();
  const QRectF paperInches = printer.pageLayout().fullRect(QPageLayout::Inch);
  const TSize paper{static_cast<std::int32_t>(std::floor(paperInches.width() * ppi)),
                    static_cast<std::int32_t>(std::floor(paperInches.height() * ppi))};

  // The drawing's frame on the page, in screen pixels: inside the border
  // margins, below the header and above the footer.
  const TSize headSize = pageHead_.empty() ? TSize{} : TextExtentIn(pageHeadFont_, pageHead_);
  const TSize footSize = pageFoot_.empty() ? TSize{} : TextExtentIn(pageFootFont_, pageFoot_);
  const std::int32_t frameLeft = borderLeft_, frameRight = paper.cx - borderRight_;
  const std::int32_t frameTop =
      std::max<std::int32_t>(borderTop_, pageHead_.empty() ? 0 : pageHeadToTop_ + headSize.cy + kTextGap);
  const std::int32_t frameBottom = std::min<std::int32_t>(
      paper.cy - borderBottom_, pageFoot_.empty() ? paper.cy : paper.cy - pageFootToBottom_ - footSize.cy - kTextGap);
  if (frameRight <= frameLeft || frameBottom <= frameTop) return 0;

  // A margin of a few pixels around the points keeps wide pens and arrow
  // heads whole at the frame's edges.
  const double pad = 4;
  const double extentW = model.Right - model.Left + 2 * pad, extentH = model.Bottom - model.Top + 2 * pad;
  const double scale = options.FitToPage
                           ? std::min((frameRight - frameLeft) / extentW, (frameBottom - frameTop) / extentH)
                           : options.Zoom;
  if (!(scale > 0) || !std::isfinite(scale)) return 0;
  const double unitZoom = scale * kUnitsPerPixel;
  const double originX = std::floor((model.Left - pad) * unitZoom), originY = std::floor((model.Top - pad) * unitZoom);
  const double tileW = (frameRight - frameLeft) * double{kUnitsPerPixel};
  const double tileH = (frameBottom - frameTop) * double{kUnitsPerPixel};
  const auto columns = static_cast<std::int32_t>(std::max(1.0, std::ceil(extentW * unitZoom / tileW - 1e-9)));
  const auto rows = static_cast<std::int32_t>(std::max(1.0, std::ceil(extentH * unitZoom / tileH - 1e-9)));
  if (static_cast<double>(columns) * rows > 10000) return 0;  // a scale no printer run could mean

  QPainter painter;
  if (!painter.begin(&printer)) return 0;
  const double toDots = printer.resolution() / (ppi * kUnitsPerPixel);
  painter.setTransform(QTransform::fromScale(toDots, toDots));
  const TPageFields common{0, columns * rows, QDate::currentDate().toString(Qt::ISODate).toStdString(),
                           QFileInfo(QString::fromStdString(options.FileName)).fileName().toStdString()};
  const double savedZoom = zoom_;
  for (std::int32_t row = 0; row < rows; ++row)
    for (std::int32_t column = 0; column < columns; ++column) {
      if ((row > 0 || column > 0) && !printer.newPage()) break;
      TPageFields fields = common;
      fields.page = row * columns + column + 1;
      TPainterCanvas page(painter, TSize{paper.cx * kUnitsPerPixel, paper.cy * kUnitsPerPixel}, kUnitsPerPixel);
      TCanvas& canvas = page.Canvas();
      TPrinterHooks printerHooks(canvas, printer.colorMode() == QPrinter::GrayScale);
      zoom_ = 1;
      canvas.SetWorldTransform(TXForm{kUnitsPerPixel, 0, 0, kUnitsPerPixel, 0, 0});
      if (printBackground_) DrawBackground(canvas, paper);
      DrawBorder(canvas, paper);
      DrawHeadFoot(canvas, paper, Filled(pageHead_, fields), Filled(pageFoot_, fields));
      canvas.ResetWorldTransform();
      canvas.SetClipRect(Rect(frameLeft * kUnitsPerPixel, frameTop * kUnitsPerPixel, frameRight * kUnitsPerPixel,
                              frameBottom * kUnitsPerPixel));
      zoom_ = unitZoom;
      // DrawShapeList puts Rect's top-left at the canvas origin: this tile's
      // part of the drawing lands in the frame.
      const double left = originX + column * tileW - frameLeft * kUnitsPerPixel;
      const double top = originY + row * tileH - frameTop * kUnitsPerPixel;
      const auto l = static_cast<std::int32_t>(left), t = static_cast<std::int32_t>(top);
      DrawShapeList(canvas, Rect(l, t, l + paper.cx * kUnitsPerPixel, t + paper.cy * kUnitsPerPixel), roots, false);
      zoom_ = savedZoom;
    }
  zoom_ = savedZoom;
  painter.end();
  return columns * rows;
}

}  // namespace lumatrex
