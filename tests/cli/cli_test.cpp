// The lumatrex tool end to end: the built binary is run on files written
// here and on those under tests/data, and its standard output, standard
// error and exit status are checked.
#include <gtest/gtest.h>

#include <QImage>
#include <QProcess>
#include <QProcessEnvironment>
#include <filesystem>
#include <map>
#include <set>
#include <sstream>
#include <string>
#include <vector>

#include "canvas/drawing_bytes.h"
#include "library/library_fixture.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using namespace test;

struct TRun {
  int status = -1;
  std::string out;
  std::string err;
};

TRun Lumatrex(const std::vector<std::string>& args,
              const QProcessEnvironment& env = QProcessEnvironment::systemEnvironment()) {
  QStringList arguments;
  for (const std::string& a : args) arguments << QString::fromStdString(a);
  QProcess process;
  process.setProcessEnvironment(env);
  process.start(LUMATREX_CLI, arguments);
  process.waitForFinished(-1);
  return {process.exitCode(), process.readAllStandardOutput().toStdString(),
          process.readAllStandardError().toStdString()};
}

bool Contains(const std::string& text, const std::string& part) { return text.find(part) != std::string::npos; }

// A rectangle and a line with an arrow head, user data with bytes that need
// escapes.
TBytes SmallDrawing(const std::string& version = "XP.j") {
  THeaderFields header;
  header.version = version;
  header.userData = {{"k", "caf\xe9\n\""}};
  return Drawing(
      header,
      {{"TMyRectangle", BaseRecord(version, Shape("TMyRectangle", "Shape0", 0, {{10, 20}, {30.5f, 40}}, {20.25f, 30})).bytes},
       {"TMyLine", test::LineRecord(version, Shape("TMyLine", "Shape1", 1, {{0, 0}, {0.1f, 50}}, {0.05f, 25}), ALeft).bytes}});
}

// A drawing of one black rectangle.
TBytes BoxDrawing(const THeaderFields& header = {}) {
  return Drawing(header, {{"TMyRectangle", BaseRecord("XP.j", Shape("TMyRectangle", "S", 0, {{10, 20}, {50, 40}}, {30, 30})).bytes}});
}

// The whole dumps are kept as files: every field of a small drawing (its
// layer and both shapes, with the escapes and float spellings), of each
// drawing under tests/data/drawings (every version built from the format
// tables, a shape of every class tag, the painted scene) and library under
// tests/data/libraries, and of a library with its tag and stored coordinates. The tool runs headless without a platform chosen or a
// display.
TEST(LumatrexDump, PrintsEveryFieldOfADrawingOrALibraryWithoutADisplay) {
  TScratchFolder folder;
  QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
  for (const char* name : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) env.remove(name);
  std::vector<std::pair<std::vector<std::string>, std::string>> dumps = {
      {{"dump", folder.Write("small.lmx", SmallDrawing())}, "cli/small-drawing-dump.json"},
      {{"dump", "--library", folder.Write("pump.lib", Concat({TagBytes("ZOLTLIBX.j"), test::PumpEntry()}))},
       "cli/pump-library-dump.json"}};
  // The folders also hold the library tests' tables and hostile files.
  for (const auto& [folder, extension] : {std::pair{"drawings", ".zlt"}, std::pair{"libraries", ".lib"}}) {
    std::set<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(test::DataPath(folder)))
      if (entry.path().extension() == extension) files.insert(entry.path());
    for (const std::filesystem::path& file : files)
      dumps.push_back({extension == std::string(".lib") ? std::vector<std::string>{"dump", "--library", file.string()}
                                                         : std::vector<std::string>{"dump", file.string()},
                       "cli/" + file.stem().string() + "-dump.json"});
  }
  for (const auto& [args, golden] : dumps) {
    SCOPED_TRACE(golden);
    const TRun run = Lumatrex(args, env);
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.err, "");
    test::ExpectGoldenFile(run.out, golden);
  }
}

// ---------------------------------------------------------------------------
// Errors and help

// The wrong uses listed in tests/data/cli/errors.txt, on files written here.
TEST(LumatrexErrors, GoToStandardErrorWithANonZeroStatus) {
  TScratchFolder folder;
  TBytes truncated = SmallDrawing();
  truncated.resize(300);
  const std::map<std::string, std::string> names = {
      {"{drawing}", folder.Write("small.lmx", SmallDrawing())},
      {"{truncated}", folder.Write("truncated.lmx", truncated)},
      {"{junk}", folder.Write("junk.bin", TBytes(100, 'x'))},
      {"{empty}", folder.Write("empty.lmx", {})},
      {"{layerless}", folder.Write("nolayer.lmx", BoxDrawing({.layers = {}}))},
      {"{lib}", folder.Write("a.lib", Concat({TagBytes("ZOLTLIBX.j"), test::BoxEntry("A")}))},
      {"{dir}", folder.File("")},
      {"\\n", "\n"}};
  const auto expand = [&names](std::string text) {
    for (const auto& [name, value] : names)
      for (std::size_t at; (at = text.find(name)) != std::string::npos;) text.replace(at, name.size(), value);
    return text;
  };
  for (const std::vector<std::string>& row : test::DataTable("cli/errors.txt")) {
    SCOPED_TRACE(row.at(0));
    std::vector<std::string> args;
    std::istringstream words(row.at(1));
    for (std::string word; words >> word;) args.push_back(expand(word));
    const TRun run = Lumatrex(args);
    EXPECT_EQ(run.status, std::stoi(row.at(2))) << run.err;
    EXPECT_TRUE(Contains(run.err, expand(row.at(3)))) << run.err;
    EXPECT_EQ(run.out, "");
  }
}

TEST(LumatrexHelp, EachCommandDescribesItselfOnStandardOutput) {
  for (const char* command : {"dump", "convert", "render", "lib", "generate"}) {
    const TRun run = Lumatrex({command, "--help"});
    EXPECT_EQ(run.status, 0) << command;
    EXPECT_TRUE(run.out.starts_with(std::string("Usage: lumatrex ") + command)) << run.out;
    EXPECT_TRUE(Contains(run.out, "Exit status")) << command;
    EXPECT_EQ(run.err, "") << command;
  }
  const TRun overview = Lumatrex({"--help"});
  EXPECT_EQ(overview.status, 0);
  EXPECT_TRUE(overview.out.starts_with("Usage: lumatrex COMMAND"));
  const TRun version = Lumatrex({"--version"});
  EXPECT_EQ(version.status, 0);
  EXPECT_TRUE(version.out.starts_with("lumatrex ") && version.out.ends_with("\n")) << version.out;
}

// ---------------------------------------------------------------------------
// convert and render

// The dump without its Version line.
std::string Content(const std::string& dump) {
  const std::size_t line = dump.find("  \"Version\"");
  return line == std::string::npos ? dump : dump.substr(0, line) + dump.substr(dump.find('\n', line) + 1);
}

TEST(LumatrexConvert, AnOlderDrawingBecomesXPjWithTheSameContent) {
  TScratchFolder folder;
  const std::string old = folder.Write("old.lmx", SmallDrawing("XP.7"));
  const TRun before = Lumatrex({"dump", old});
  ASSERT_EQ(before.status, 0) << before.err;
  EXPECT_TRUE(Contains(before.out, "  \"Version\": \"XP.7\",\n")) << before.out;

  ASSERT_EQ(Lumatrex({"convert", old, folder.File("new.lmx")}).status, 0);
  const TBytes converted = folder.Read("new.lmx");
  EXPECT_EQ(std::string(converted.begin() + 128, converted.begin() + 132), "XP.j");
  const TRun after = Lumatrex({"dump", folder.File("new.lmx")});
  ASSERT_EQ(after.status, 0) << after.err;
  EXPECT_EQ(Content(after.out), Content(before.out));
  ASSERT_EQ(Lumatrex({"convert", folder.File("new.lmx"), folder.File("again.lmx")}).status, 0);
  EXPECT_EQ(folder.Read("again.lmx"), converted);
}

TEST(LumatrexRender, WritesAPngOfTheDrawingsExtentAtTheZoom) {
  TScratchFolder folder;
  const std::string drawing = folder.Write("box.lmx", BoxDrawing());
  ASSERT_EQ(Lumatrex({"render", drawing, folder.File("one.png")}).status, 0);
  const TRun twice = Lumatrex({"render", drawing, folder.File("two.png"), "--zoom", "2"});
  ASSERT_EQ(twice.status, 0) << twice.err;
  EXPECT_EQ(twice.out + twice.err, "");
  const QImage one(QString::fromStdString(folder.File("one.png")), "PNG");
  const QImage two(QString::fromStdString(folder.File("two.png")), "PNG");
  // The extent plus a 16-pixel margin each side and the closing pixel.
  EXPECT_EQ(one.size(), QSize(40 + 33, 20 + 33));
  EXPECT_EQ(two.size(), QSize(80 + 33, 40 + 33));
  EXPECT_EQ(one.pixelColor(16 + 20, 16 + 10), QColor(Qt::black));  // the rectangle's black fill
}

TEST(LumatrexGenerate, WritesTheSameDrawingOfNShapesForTheSameSeed) {
  TScratchFolder folder;
  const TRun run = Lumatrex({"generate", "--shapes", "300", "--seed", "4", folder.File("a.lmx")});
  ASSERT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out + run.err, "");
  ASSERT_EQ(Lumatrex({"generate", "--shapes", "300", "--seed", "4", folder.File("b.lmx")}).status, 0);
  ASSERT_EQ(Lumatrex({"generate", "--shapes", "300", "--seed", "5", folder.File("c.lmx")}).status, 0);
  EXPECT_EQ(folder.Read("a.lmx"), folder.Read("b.lmx"));
  EXPECT_NE(folder.Read("a.lmx"), folder.Read("c.lmx"));
  const TRun dump = Lumatrex({"dump", folder.File("a.lmx")});
  ASSERT_EQ(dump.status, 0) << dump.err;
  std::size_t shapes = 0;
  for (std::size_t at = 0; (at = dump.out.find("\"ShapeNo\"", at)) != std::string::npos; ++at) ++shapes;
  EXPECT_EQ(shapes, 300u);
  for (const char* kind : {"TMyRectangle", "TMyEllipse", "TMyLine", "TMyPolygon", "TMyPolyLine"})
    EXPECT_TRUE(Contains(dump.out, std::string("\"") + kind + "\"")) << kind;
  EXPECT_EQ(Lumatrex({"generate", folder.File("d.lmx")}).status, 2);  // --shapes is required
  EXPECT_EQ(Lumatrex({"generate", "--shapes", "-1", folder.File("d.lmx")}).status, 2);
  EXPECT_EQ(Lumatrex({"generate", "--shapes", "5", "--size", "12", folder.File("d.lmx")}).status, 2);
}

// ---------------------------------------------------------------------------
// lib

TEST(LumatrexLib, EverySubcommandEndToEnd) {
  TScratchFolder folder;
  const std::string lib = folder.File("shapes.lib");
  const std::string drawing = folder.Write("pump.lmx", BoxDrawing({.userData = {{"part", "P-1"}}}));
  auto list = [&] { return Lumatrex({"lib", lib, "list"}).out; };

  ASSERT_EQ(Lumatrex({"lib", lib, "add", "Pump", drawing}).status, 0);  // creates the library
  ASSERT_EQ(Lumatrex({"lib", lib, "add", "Valve", drawing}).status, 0);
  EXPECT_EQ(list(), "Pump\nValve\n");
  const TBytes written = folder.Read("shapes.lib");
  EXPECT_EQ(std::string(written.begin(), written.begin() + 10), "ZOLTLIBX.j");

  ASSERT_EQ(Lumatrex({"lib", lib, "extract", "Pump", folder.File("out.lmx")}).status, 0);
  // The entry's drawing: 40 x 20, its user data, the shape moved to the origin.
  test::ExpectGoldenFile(Lumatrex({"dump", folder.File("out.lmx")}).out, "cli/extracted-entry-dump.json");

  ASSERT_EQ(Lumatrex({"lib", lib, "rename", "Pump", "Big pump"}).status, 0);
  EXPECT_EQ(list(), "Big pump\nValve\n");
  ASSERT_EQ(Lumatrex({"lib", lib, "delete", "Valve"}).status, 0);
  EXPECT_EQ(list(), "Big pump\n");

  const TRun current = Lumatrex({"lib", lib, "upgrade"});
  EXPECT_EQ(current.status, 0);
  EXPECT_EQ(current.out, lib + ": already ZOLTLIBX.j\n");
}

TEST(LumatrexLib, UpgradeRewritesAnOlderLibrary) {
  TScratchFolder folder;
  const TBytes entry = test::EntryBytes(
      "Old", 2, 2, nullptr, {test::ShapeBytes("XP.6", Shape("TMyRectangle", "R", 0, {{0, 0}, {1, 1}}, {0.5f, 0.5f}))});
  const std::string lib = folder.Write("old.lib", Concat({TagBytes("ZOLTLIBX.6"), entry}));
  EXPECT_EQ(Lumatrex({"lib", lib, "list"}).out, "Old\n");
  EXPECT_EQ(folder.Read("old.lib"), Concat({TagBytes("ZOLTLIBX.6"), entry}));  // reading changes nothing
  const TRun run = Lumatrex({"lib", lib, "upgrade"});
  EXPECT_EQ(run.status, 0) << run.err;
  EXPECT_EQ(run.out, lib + ": ZOLTLIBX.6 -> ZOLTLIBX.j\n");
  const std::vector<std::pair<std::string, std::string>> none;
  EXPECT_EQ(folder.Read("old.lib"),
            Concat({TagBytes("ZOLTLIBX.j"),
                    test::EntryBytes(
                        "Old", 2, 2, &none,
                        {test::ShapeBytes("XP.j", Shape("TMyRectangle", "R", 0, {{0, 0}, {1, 1}}, {0.5f, 0.5f}))})}));
}

}  // namespace
}  // namespace lumatrex
