// lumatrex: the command-line tool for Lumatrex drawing files and shape
// libraries. It runs headless (the offscreen platform unless another is
// chosen) at a fixed 96 pixels per inch, so that its output is the same on
// every machine.
#include <QApplication>
#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "commands.h"
#include "generate.h"
#include "platform/screen.h"

namespace {

using namespace lumatrex::cli;

struct TCommand {
  const char* name;
  const char* usage;
  const char* help;
  int (*run)(const std::vector<std::string>& args);
};

const TCommand kCommands[] = {
    {"dump", "lumatrex dump [--library] FILE",
     "Prints a drawing file as JSON: its header fields, user data, layers and every\n"
     "shape with each stored field under its property name. With --library, prints a\n"
     "shape library: its tag and each entry (name, size, user data, shapes at their\n"
     "stored unit coordinates).\n"
     "Enumerations and sets print as integers, Booleans as true/false, 32-bit floats\n"
     "with 9 significant digits, byte strings with each byte as the code point of\n"
     "the same value, bitmaps as null or {Width, Height, BitsPerPixel}.\n",
     Dump},
    {"convert", "lumatrex convert IN OUT",
     "Reads the drawing IN, of any version from XP.2 to XP.j, and writes it to OUT\n"
     "as an XP.j drawing.\n",
     Convert},
    {"render",
     "lumatrex render IN OUT.png|OUT.jpg|OUT.bmp|OUT.svg|OUT.pdf [--zoom Z] [--dpi D] [--margin M]\n"
     "       [--no-background]",
     "Renders the shapes on visible layers of the drawing IN at zoom Z (default 1)\n"
     "and writes the picture to OUT, whose extension chooses the type: a bitmap, or\n"
     "an SVG or PDF drawing of vector paths and text. D dots per inch scale a bitmap\n"
     "(D / 96 on top of Z) and set a PDF's resolution; M pixels (default 16) of\n"
     "margin surround the shapes; --no-background leaves the background colour and\n"
     "picture out.\n",
     Render},
    {"generate", "lumatrex generate --shapes N [--seed S] [--size WxH] OUT",
     "Writes to OUT a drawing of N simple shapes (rectangles, some turned, ellipses,\n"
     "lines, triangles and poly-lines, 4 to 40 pixels across, in eight colours)\n"
     "placed at random over an area of W x H drawing pixels (default 794x1123, an A4\n"
     "page at 96 pixels per inch), for trying the editor and the canvas at scale.\n"
     "The same N, S (default 1) and size give the same file.\n",
     Generate},
    {"lib", "lumatrex lib FILE list|add NAME DRAWING|extract NAME OUT|delete NAME|rename OLD NEW|upgrade",
     "Works on the shape library FILE:\n"
     "  list                 prints the entry names, one a line\n"
     "  add NAME DRAWING     adds the shapes of the drawing file DRAWING as entry NAME\n"
     "                       (FILE is created when missing)\n"
     "  extract NAME OUT     writes entry NAME to the drawing file OUT\n"
     "  delete NAME          removes entry NAME\n"
     "  rename OLD NEW       renames entry OLD to NEW\n"
     "  upgrade              rewrites a library of an older tag as ZOLTLIBX.j\n"
     "Commands that change FILE first bring an older library to the current tag.\n",
     Lib},
    {"dxf", "lumatrex dxf export [--exact] DRAWING OUT.dxf | import IN.dxf OUT [--scale S] [--offset X,Y] [--group]",
     "Exchanges drawings with CAD programs:\n"
     "  export DRAWING OUT.dxf    writes a complete AC1015 DXF in millimetres; with\n"
     "                            --exact, the minimal ENTITIES-only file instead\n"
     "  import IN.dxf OUT         reads an ASCII DXF (R12 and later) into the new\n"
     "                            drawing OUT: millimetres times S (default 1) at\n"
     "                            96 pixels per inch, y turned down, moved by the\n"
     "                            pixel offset X,Y; --group makes a group of each\n"
     "                            insert. Prints what was added and skipped.\n",
     Dxf},
};

constexpr const char* kExitStatus =
    "Exit status: 0 on success, 1 when a file cannot be read, written or used,\n"
    "2 for wrong arguments. Errors go to standard error.\n";

void PrintOverview(std::FILE* out) {
  std::fprintf(out,
               "Usage: lumatrex COMMAND ARGUMENTS...\n       lumatrex --version\n\nReads, converts and renders Lumatrex drawings and "
               "edits shape libraries.\n\nCommands:\n");
  for (const TCommand& c : kCommands) std::fprintf(out, "  %s\n", c.usage);
  std::fprintf(out, "\nRun \"lumatrex COMMAND --help\" for one command.\n%s", kExitStatus);
}

int Run(const std::vector<std::string>& args) {
  if (args.empty()) {
    PrintOverview(stderr);
    return 2;
  }
  if (args[0] == "--version") {
    std::printf("lumatrex %s\n", LUMATREX_VERSION);
    return EXIT_SUCCESS;
  }
  if (args[0] == "--help" || args[0] == "help") {
    PrintOverview(stdout);
    return EXIT_SUCCESS;
  }
  for (const TCommand& c : kCommands) {
    if (args[0] != c.name) continue;
    const std::vector<std::string> rest(args.begin() + 1, args.end());
    if (std::find(rest.begin(), rest.end(), "--help") != rest.end()) {
      std::printf("Usage: %s\n\n%s\n%s", c.usage, c.help, kExitStatus);
      return EXIT_SUCCESS;
    }
    try {
      return c.run(rest);
    } catch (const EUsageError& e) {
      std::fprintf(stderr, "lumatrex %s: %s\nUsage: %s\n", c.name, e.what(), c.usage);
      return 2;
    } catch (const EEndRequested&) {
      return EXIT_FAILURE;  // the message is already on standard error
    } catch (const std::exception& e) {
      std::fprintf(stderr, "lumatrex %s: %s\n", c.name, e.what());
      return EXIT_FAILURE;
    }
  }
  std::fprintf(stderr, "lumatrex: unknown command \"%s\"\n\n", args[0].c_str());
  PrintOverview(stderr);
  return 2;
}

// Qt's own notices (a missing runtime folder, font hints) are not the tool's
// output; only its critical and fatal messages reach standard error.
void QuietQtMessages(QtMsgType type, const QMessageLogContext&, const QString& message) {
  if (type == QtCriticalMsg || type == QtFatalMsg) std::fprintf(stderr, "lumatrex: %s\n", qPrintable(message));
}

}  // namespace

int main(int argc, char** argv) {
  qInstallMessageHandler(QuietQtMessages);
  if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  // Before any control exists: controls install dialogs only for unset hooks.
  InstallConsoleHooks();
  QApplication app(argc, argv);
  lumatrex::SetScreenPixelsPerInch(96);
  return Run(std::vector<std::string>(argv + 1, argv + argc));
}
