// lumatrex dxf: DXF export and import of drawings.
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "canvas/tmycad.h"
#include "commands.h"
#include "dxf/dxf.h"
#include "files.h"

namespace lumatrex::cli {

namespace {

double ParseNumber(const std::string& option, const std::string& text) {
  char* end = nullptr;
  const double v = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(v)) throw EUsageError(option + " takes a number, not \"" + text + "\"");
  return v;
}

int Export(const std::vector<std::string>& args) {
  std::vector<std::string> plain;
  bool exact = false;
  for (const std::string& a : args) {
    if (a == "--exact") exact = true;
    else if (a.starts_with("--")) throw EUsageError("unknown option " + a);
    else plain.push_back(a);
  }
  if (plain.size() != 2) throw EUsageError("expected a drawing and an output file");
  TMyCAD cad;
  LoadDrawing(cad, plain[0]);
  InFile(plain[1], [&] {
    if (exact) return SaveToDxf1(cad, plain[1]);
    for (const std::string& warning : SaveToDxf(cad, plain[1])) std::fprintf(stderr, "warning: %s\n", warning.c_str());
  });
  return EXIT_SUCCESS;
}

int Import(const std::vector<std::string>& args) {
  std::vector<std::string> plain;
  TDxfImportOptions options;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a == "--group") {
      options.GroupInserts = true;
    } else if (a == "--scale" || a == "--offset") {
      if (i + 1 == args.size()) throw EUsageError(a + " needs a value");
      const std::string value = args[++i];
      if (a == "--scale") {
        options.Scale = ParseNumber(a, value);
        if (options.Scale <= 0) throw EUsageError("--scale takes a positive number");
      } else {
        const std::size_t comma = value.find(',');
        if (comma == std::string::npos) throw EUsageError("--offset takes X,Y");
        options.OffsetX = ParseNumber(a, value.substr(0, comma));
        options.OffsetY = ParseNumber(a, value.substr(comma + 1));
      }
    } else if (a.starts_with("--")) {
      throw EUsageError("unknown option " + a);
    } else {
      plain.push_back(a);
    }
  }
  if (plain.size() != 2) throw EUsageError("expected a DXF file and an output drawing");
  TMyCAD cad;
  TDxfImportSummary summary;
  try {
    summary = InFile(plain[0], [&] { return LoadFromDxf(cad, plain[0], options); });
  } catch (const EDxfError& e) {
    throw ECliError(plain[0] + ": " + e.what());
  }
  InFile(plain[1], [&] { return cad.SaveToFile(plain[1]); });
  std::fprintf(stdout, "%d shapes, %d layers added", summary.ShapesAdded, summary.LayersAdded);
  for (const auto& [kind, count] : summary.Skipped) std::fprintf(stdout, "; %d %s skipped", count, kind.c_str());
  std::fprintf(stdout, "\n");
  return EXIT_SUCCESS;
}

}  // namespace

int Dxf(const std::vector<std::string>& args) {
  if (args.empty()) throw EUsageError("expected export or import");
  const std::vector<std::string> rest(args.begin() + 1, args.end());
  if (args[0] == "export") return Export(rest);
  if (args[0] == "import") return Import(rest);
  throw EUsageError("unknown dxf command " + args[0] + " (export or import)");
}

}  // namespace lumatrex::cli
