// Output through the painter back end: SVG and PDF pictures of a drawing of
// every shape kind against the raster picture, and printing (true scale,
// tiles with header and footer on every page, the grey-scale printer rule).
#include <gtest/gtest.h>

#include <QPainter>
#include <QPrinter>
#include <QProcess>
#include <QSvgRenderer>
#include <QTemporaryDir>
#include <QXmlStreamReader>
#include <cstdlib>

#include "canvas/drawing_samples.h"
#include "platform/qt_interop.h"
#include "support/golden.h"
#include "support/mouse.h"

namespace lumatrex {
namespace {

using test::Box;

// Share of pixels whose colours differ by more than a third of the range in
// some channel: smoothed glyphs and figure edges differ, a shift by a pixel
// or a wrong scale makes far more. A rasterised page may be a pixel larger.
double DifferingShare(const QImage& a, const QImage& b) {
  if (std::abs(a.width() - b.width()) > 1 || std::abs(a.height() - b.height()) > 1) return 1;
  const int width = std::min(a.width(), b.width()), height = std::min(a.height(), b.height());
  int n = 0;
  for (int y = 0; y < height; ++y)
    for (int x = 0; x < width; ++x) {
      const QColor p = a.pixelColor(x, y), q = b.pixelColor(x, y);
      n += std::max({std::abs(p.red() - q.red()), std::abs(p.green() - q.green()), std::abs(p.blue() - q.blue())}) > 85;
    }
  return static_cast<double>(n) / (width * height);
}

QString RunTool(const QString& program, const QStringList& args) {
  QProcess process;
  process.start(program, args);
  EXPECT_TRUE(process.waitForFinished(60000)) << program.toStdString();
  EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
  return QString::fromUtf8(process.readAllStandardOutput());
}

// Page 1 of Pdf at Dpi, or only its top-left Crop pixels.
QImage Rasterised(const QString& pdf, int dpi, QSize crop = {}) {
  const QString stem = pdf + "-page";
  QStringList args{"-r", QString::number(dpi), "-f", "1", "-l", "1", "-png", "-singlefile"};
  if (!crop.isEmpty()) args << "-W" << QString::number(crop.width()) << "-H" << QString::number(crop.height());
  RunTool("pdftoppm", args << pdf << stem);
  return QImage(stem + ".png").convertToFormat(QImage::Format_RGB32);
}

TEST(VectorOutput, SvgAndPdfShowTheRasterPictureAtEveryZoom) {
  QTemporaryDir folder;
  TMyCAD cad;
  // Every kind side by side, yellow, a text and a picture among them.
  ASSERT_TRUE(cad.LoadFromFile(test::DataPath("drawings/kinds-side-by-side.zlt")));
  struct Case {
    bool pdf;
    double zoom;
  };
  for (const Case c : {Case{false, 1}, Case{false, 2}, Case{true, 1}, Case{true, 2}}) {
    SCOPED_TRACE(testing::Message() << (c.pdf ? "pdf" : "svg") << " at zoom " << c.zoom);
    TImageExportOptions options;
    options.Zoom = c.zoom;
    const QImage raster = ToQImage(cad.RenderToBitmap(options));
    QImage vector;
    if (c.pdf) {
      const QString file = folder.filePath("kinds.pdf");
      ASSERT_TRUE(cad.SaveToImageFile(file.toStdString(), options));
      vector = Rasterised(file, 96);
    } else {
      std::vector<TMyShape*> all;
      for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) all.push_back(cad.GetShapeByNo(i));
      const QByteArray svg = QByteArray::fromStdString(cad.RenderToSvg(all, options));
      // Vector paths and real text, not a picture of them.
      int paths = 0, images = 0;
      QString text;
      for (QXmlStreamReader xml(svg); !xml.atEnd();) {
        if (xml.readNext() != QXmlStreamReader::StartElement) continue;
        paths += xml.name() == u"path";
        images += xml.name() == u"image";
        if (xml.name() == u"text") text += xml.readElementText();
      }
      EXPECT_GE(paths, 15);
      EXPECT_EQ(images, 1);  // the image shape's picture, and only it
      EXPECT_TRUE(text.contains("Lumatrex"));
      QSvgRenderer renderer(svg);
      EXPECT_EQ(renderer.viewBox().size(), raster.size());
      vector = QImage(raster.size(), QImage::Format_RGB32);
      QPainter painter(&vector);
      renderer.render(&painter);
    }
    EXPECT_LT(DifferingShare(raster, vector), 0.03);
  }
}

// The length of the longest dark run on any row of Image, in pixels.
int LongestDarkRun(const QImage& image) {
  int longest = 0;
  for (int y = 0; y < image.height(); ++y)
    for (int x = 0, run = 0; x < image.width(); ++x) {
      run = qGray(image.pixel(x, y)) < 128 ? run + 1 : 0;
      longest = std::max(longest, run);
    }
  return longest;
}

TEST(Printing, TrueScaleKeepsLengthsAndTheGreyScaleRuleHolds) {
  QTemporaryDir folder;
  struct Case {
    const char* name;
    QPrinter::ColorMode mode;
    QRgb red;  // what a red fill prints as
  };
  for (const Case c : {Case{"colour printer", QPrinter::Color, qRgb(255, 0, 0)},
                       Case{"grey-scale printer", QPrinter::GrayScale, qRgb(85, 85, 85)}}) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.SetPrintABorder(false);
    // 100 mm at 96 pixels per inch.
    cad.AddShapeByCode2("TMyLine", "", {{20, 20}, {20 + 100 / 25.4f * 96, 20}}, 0);
    cad.Brush().SetColor(clRed);
    cad.AddShapeByCode2("TMyRectangle", "", Box(20, 60, 120, 160), 0);
    QPrinter printer(QPrinter::HighResolution);
    printer.setOutputFormat(QPrinter::PdfFormat);
    const QString file = folder.filePath("line.pdf");
    printer.setOutputFileName(file);
    printer.setColorMode(c.mode);
    cad.ApplyPageSetup(printer);
    ASSERT_EQ(cad.Print(printer), 1);
    const int dpi = 508;  // 0.05 mm a pixel
    const QImage page = Rasterised(file, dpi, QSize(2600, 1000));
    EXPECT_NEAR(LongestDarkRun(page) * 25.4 / dpi, 100.0, 0.1);
    // The rectangle's middle (70, 110) lies at the frame's corner (20, 20)
    // plus its distance from the drawing's corner (16, 16) inside the margin.
    EXPECT_EQ(page.pixel((20 + 70 - 16) * dpi / 96, (20 + 110 - 16) * dpi / 96) & 0xFFFFFF, c.red & 0xFFFFFF);
  }
}

TEST(Printing, TilesCarryHeaderAndFooterOnEveryPage) {
  QTemporaryDir folder;
  TMyCAD cad;
  cad.SetPageHead("Plan [Page] of [Pages]");
  cad.SetPageFoot("[File]");
  cad.AddShapeByCode2("TMyLine", "", {{0, 0}, {2000, 1200}}, 0);
  QPrinter printer(QPrinter::HighResolution);
  printer.setOutputFormat(QPrinter::PdfFormat);
  const QString file = folder.filePath("tiles.pdf");
  printer.setOutputFileName(file);
  cad.ApplyPageSetup(printer);
  TPrintOptions options;
  options.FileName = "/somewhere/plan.lmx";
  const int pages = cad.Print(printer, options);
  ASSERT_EQ(pages, 3 * 2);  // 2000 x 1200 pixels on A4 frames of about 750 x 1050
  for (int page = 1; page <= pages; ++page) {
    SCOPED_TRACE(page);
    const QString text = RunTool("pdftotext", {"-f", QString::number(page), "-l", QString::number(page), file, "-"});
    EXPECT_TRUE(text.contains(QString("Plan %1 of %2").arg(page).arg(pages)));
    EXPECT_TRUE(text.contains("plan.lmx"));
  }
  // Fitted, the same drawing takes one page.
  options.FitToPage = true;
  EXPECT_EQ(cad.Print(printer, options), 1);
}

TEST(AntialiasedView, SmoothsShapesOnlyWhenOn) {
  for (const bool on : {false, true}) {
    SCOPED_TRACE(on);
    TMyCAD cad;
    cad.resize(100, 100);
    cad.SetAntialiased(on);
    cad.AddShapeByCode2("TMyLine", "", {{10, 10}, {90, 50}}, 0);
    cad.Repaint();
    EXPECT_TRUE(test::MatchesGoldenPicture(ToQImage(cad.ScreenBitmap()),
                                           on ? "canvas/line-antialiased.png" : "canvas/line-aliased.png"));
  }
}

// With two device pixels a logical one, a rectangle drawn by a real drag
// shows at device resolution (its one-pixel outline two device pixels wide,
// at twice the logical position), and clicks still hit in logical pixels.
TEST(SharpScreen, DrawsAtDeviceResolutionWhileEventsStayLogical) {
  TMyCAD cad;
  cad.resize(120, 80);
  cad.SetPixelRatio(2);
  cad.SetCrossLine(false);  // it would run along the rectangle's far edges
  cad.Brush().SetColor(clYellow);
  cad.SetShapeTool(SpRectangle);
  test::TMouse mouse(cad);
  mouse.Drag(10, 10, 60, 40);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(cad.GetShapeByNo(0)->Points[2].X, 60);
  cad.SetShapeTool(SpSelecting);
  mouse.Click(100, 70);  // nothing there: no handles in the picture
  EXPECT_EQ(cad.GetWorkingShapesCount(), 0);
  // The outline runs through the points x = 10 and 60: device pixels 20-21 and 120-121.
  cad.Repaint();
  EXPECT_TRUE(test::MatchesGoldenPicture(cad.SharpPicture(), "canvas/sharp-rectangle.png"));
  mouse.Click(35, 25);
  EXPECT_EQ(cad.GetWorkingShapesCount(), 1);
}

}  // namespace
}  // namespace lumatrex
