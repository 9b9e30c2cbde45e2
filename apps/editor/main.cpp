// The Lumatrex demo editor. With a display it opens the editor window on the
// drawing named on the command line, or on the sample drawing; without one
// (or with --output FILE) it renders that drawing, and a picture of the whole
// editor window beside it, to PNG files and prints where. --sample FILE
// writes the sample drawing as a drawing file for other tools to work on.
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
  // The drawing alone, at the canvas's size: a picture of the drawing, so
  // without the selection's handles.
  cad.RemoveAllWorkingShapes();
  cad.Repaint();
  const QImage drawing = ToQImage(cad.ScreenBitmap()).copy();
  window.show();
  cad.Repaint();
  const QString windowPath = QFileInfo(path).absolutePath() + "/" + QFileInfo(path).completeBaseName() + "-window.png";
  if (!Save(drawing, path) || !Save(window.grab().toImage(), windowPath)) return EXIT_FAILURE;
  std::printf("No display: the drawing was written to %s\n", qPrintable(QFileInfo(path).absoluteFilePath()));
  std::printf("and the editor window to %s\n", qPrintable(QFileInfo(windowPath).absoluteFilePath()));
  return EXIT_SUCCESS;
}

int WriteSample(const QString& path) {
  TMyCAD cad;
  cad.resize(demo::kSampleWidth, demo::kSampleHeight);
  demo::BuildSampleDrawing(cad);
  cad.RemoveAllWorkingShapes();
  try {
    cad.SaveToFile(path.toStdString());
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lumatrex-editor: cannot write %s: %s\n", qPrintable(path), e.what());
    return EXIT_FAILURE;
  }
  std::printf("The sample drawing was written to %s\n", qPrintable(QFileInfo(path).absoluteFilePath()));
  return EXIT_SUCCESS;
}

// Without a display nobody could answer a message box: errors go to
// standard error instead.
bool OpenHeadless(editor::TMainWindow& window, const QString& path) {
  try {
    if (window.Canvas().LoadFromFile(path.toStdString())) {
      window.SetZoom(1);
      window.DocumentChanged();
      return true;
    }
    std::fprintf(stderr, "lumatrex-editor: %s is not a Lumatrex drawing\n", qPrintable(path));
  } catch (const std::exception& e) {
    std::fprintf(stderr, "lumatrex-editor: %s: %s\n", qPrintable(path), e.what());
  }
  return false;
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
  const QCommandLineOption output("output", "Render the drawing to FILE (PNG) and exit.", "FILE");
  const QCommandLineOption sample("sample", "Write the sample drawing to FILE (a .lmx drawing) and exit.", "FILE");
  parser.addOption(output);
  parser.addOption(sample);
  parser.addPositionalArgument("drawing", "The drawing to open (the sample drawing when none is given).", "[FILE]");
  parser.process(app);
  if (parser.isSet(sample)) return WriteSample(parser.value(sample));
  if (parser.positionalArguments().size() > 1) parser.showHelp(2);

  const bool headless = parser.isSet(output) || !display || QGuiApplication::platformName() == "offscreen";
  editor::TMainWindow window;
  if (parser.positionalArguments().isEmpty()) {
    demo::BuildSampleDrawing(window.Canvas());
    window.Canvas().SetModified(false);
    window.DocumentChanged();
  } else if (const QString file = parser.positionalArguments().first(); headless) {
    if (!OpenHeadless(window, file)) return EXIT_FAILURE;
  } else {
    window.OpenFile(file);
  }

  if (headless)
    return RenderToFiles(window, parser.isSet(output) ? parser.value(output)
                                                      : QDir::current().filePath("out/lumatrex-sample.png"));
  window.show();
  return QApplication::exec();
}
