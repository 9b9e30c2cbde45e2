// The Lumatrex demo editor. With a display it opens the editor window on the
// sample drawing; without one (or with --output FILE) it renders the sample
// drawing, and a picture of the whole editor window beside it, to PNG files
// and prints where.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

#include "canvas/tmycad.h"
#include "main_window.h"
#include "platform/qt_interop.h"
#include "sample_drawing.h"

namespace {

using namespace lumatrex;

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

bool Save(const QImage& image, const QString& path) {
  QDir().mkpath(QFileInfo(path).absolutePath());
  if (image.save(path, "PNG")) return true;
  std::fprintf(stderr, "lumatrex-editor: cannot write %s\n", qPrintable(path));
  return false;
}

int RenderToFiles(editor::TMainWindow& window, const QString& path) {
  TMyCAD& cad = window.Canvas();
  TMyCAD sheet;  // the drawing alone, at the sample's size
  sheet.resize(demo::kSampleWidth, demo::kSampleHeight);
  demo::BuildSampleDrawing(sheet);
  sheet.Repaint();
  window.show();
  cad.Repaint();
  const QString windowPath = QFileInfo(path).absolutePath() + "/" + QFileInfo(path).completeBaseName() + "-window.png";
  if (!Save(ToQImage(sheet.ScreenBitmap()), path) || !Save(window.grab().toImage(), windowPath)) return EXIT_FAILURE;
  std::printf("No display: the sample drawing was written to %s\n", qPrintable(QFileInfo(path).absoluteFilePath()));
  std::printf("and the editor window to %s\n", qPrintable(QFileInfo(windowPath).absoluteFilePath()));
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const bool display = HasDisplay();
  if (!display) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setApplicationName("lumatrex-editor");
  QCommandLineParser parser;
  parser.setApplicationDescription("Lumatrex demo editor: draw, select, move, size, rotate, align and layer shapes.");
  parser.addHelpOption();
  const QCommandLineOption output("output", "Render the sample drawing to FILE (PNG) and exit.", "FILE");
  parser.addOption(output);
  parser.process(app);

  editor::TMainWindow window;
  demo::BuildSampleDrawing(window.Canvas());
  window.DocumentChanged();

  if (parser.isSet(output)) return RenderToFiles(window, parser.value(output));
  if (!display || QGuiApplication::platformName() == "offscreen")
    return RenderToFiles(window, QDir::current().filePath("out/lumatrex-sample.png"));
  window.show();
  return QApplication::exec();
}
