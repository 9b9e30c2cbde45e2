// The Lumatrex demo. With a display it opens a window showing the sample
// drawing; without one (or with --output FILE) it renders the drawing to a PNG
// file and prints where.
#include <QApplication>
#include <QCommandLineParser>
#include <QDir>
#include <cstdio>
#include <cstdlib>

#include "platform/control.h"
#include "platform/qt_interop.h"
#include "sample_drawing.h"

namespace {

using namespace lumatrex;

class TSampleView : public TCustomControl {
 public:
  TSampleView() {
    setWindowTitle("Lumatrex demo");
    resize(demo::kSampleWidth, demo::kSampleHeight);
  }

 protected:
  void Paint() override { demo::PaintSampleDrawing(Canvas()); }
};

bool HasDisplay() {
  return !qEnvironmentVariableIsEmpty("DISPLAY") || !qEnvironmentVariableIsEmpty("WAYLAND_DISPLAY") ||
         !qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM");
}

int RenderToFile(const QString& path) {
  TBitmap picture(demo::kSampleWidth, demo::kSampleHeight, pf32bit);
  demo::PaintSampleDrawing(picture.Canvas());
  QDir().mkpath(QFileInfo(path).absolutePath());
  if (!ToQImage(picture).save(path, "PNG")) {
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

  if (parser.isSet(output)) return RenderToFile(parser.value(output));
  if (!display || QGuiApplication::platformName() == "offscreen")
    return RenderToFile(QDir::current().filePath("out/lumatrex-sample.png"));

  TSampleView view;
  view.show();
  return QApplication::exec();
}
