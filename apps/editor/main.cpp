// The Lumatrex demo. With a display it opens a window with the canvas showing
// the sample drawing; without one (or with --output FILE) it renders what the
// window would show to a PNG file and prints where.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <QFileInfo>
#include <cstdio>
#include <cstdlib>

#include "canvas/tmycad.h"
#include "platform/qt_interop.h"
#include "sample_drawing.h"

namespace {

using namespace lumatrex;

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int RenderToFile(TMyCAD& cad, const QString& path) {
  cad.Repaint();
  QDir().mkpath(QFileInfo(path).absolutePath());
  if (!ToQImage(cad.ScreenBitmap()).save(path, "PNG")) {
    std::fprintf(stderr, "lumatrex-editor: cannot write %s\n", qPrintable(path));
    return EXIT_FAILURE;
  }
  std::printf("No display: the sample drawing was written to %s\n", qPrintable(QFileInfo(path).absoluteFilePath()));
  return EXIT_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
  const bool display = HasDisplay();
  if (!display) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  QApplication::setApplicationName("lumatrex-editor");
  QCommandLineParser parser;
  parser.setApplicationDescription("Lumatrex demo: shows the sample drawing, or renders it to a PNG file.");
  parser.addHelpOption();
  const QCommandLineOption output("output", "Render the sample drawing to FILE (PNG) and exit.", "FILE");
  parser.addOption(output);
  parser.process(app);

  TMyCAD cad;
  cad.setWindowTitle("Lumatrex demo");
  cad.resize(demo::kSampleWidth, demo::kSampleHeight);
  demo::BuildSampleDrawing(cad);

  if (parser.isSet(output)) return RenderToFile(cad, parser.value(output));
  if (!display || QGuiApplication::platformName() == "offscreen")
    return RenderToFile(cad, QDir::current().filePath("out/lumatrex-sample.png"));
  cad.show();
  return QApplication::exec();
}
