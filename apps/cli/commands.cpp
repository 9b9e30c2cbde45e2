#include "commands.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <map>

#include "canvas/tmycad.h"
#include "dump.h"
#include "files.h"
#include "platform/hooks.h"

namespace lumatrex::cli {

namespace {

void Print(const TJson& json) {
  const std::string text = json.Print();
  std::fwrite(text.data(), 1, text.size(), stdout);
}

// Splits Args into plain arguments and "--name value" options (Valued lists
// the options that take a value); unknown options are usage errors.
std::vector<std::string> Positional(const std::vector<std::string>& args, const std::vector<std::string>& flags,
                                    const std::vector<std::string>& valued,
                                    std::map<std::string, std::string>& options) {
  std::vector<std::string> plain;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a.size() < 2 || a[0] != '-') {
      plain.push_back(a);
    } else if (std::ranges::find(flags, a) != flags.end()) {
      options[a] = "";
    } else if (std::ranges::find(valued, a) != valued.end()) {
      if (i + 1 == args.size()) throw EUsageError(a + " needs a value");
      options[a] = args[++i];
    } else {
      throw EUsageError("unknown option " + a);
    }
  }
  return plain;
}

}  // namespace

std::string Expected(std::size_t count) {
  return "expected " + std::to_string(count) + (count == 1 ? " argument" : " arguments");
}

namespace {

void ExpectCount(const std::vector<std::string>& plain, std::size_t count) {
  if (plain.size() != count) throw EUsageError(Expected(count));
}

// A number of Option; Positive: greater than 0, otherwise at least 0.
double ParseNumber(const std::string& option, const std::string& text, bool positive) {
  char* end = nullptr;
  const double value = std::strtod(text.c_str(), &end);
  if (text.empty() || *end != '\0' || !std::isfinite(value) || value < 0 || (positive && value == 0))
    throw EUsageError(option + " takes a " + (positive ? "positive" : "non-negative") + " number, not \"" + text +
                      "\"");
  return value;
}

}  // namespace

int Dump(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  const std::vector<std::string> plain = Positional(args, {"--library"}, {}, options);
  ExpectCount(plain, 1);
  if (options.contains("--library")) {
    const TLibraryContent library = ReadLibraryAsStored(plain[0]);
    Print(DumpLibrary(library.Tag, library.Entries));
  } else {
    TMyCAD cad;
    LoadDrawing(cad, plain[0]);
    Print(DumpDrawing(cad));
  }
  return EXIT_SUCCESS;
}

int Convert(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  const std::vector<std::string> plain = Positional(args, {}, {}, options);
  ExpectCount(plain, 2);
  TMyCAD cad;
  LoadDrawing(cad, plain[0]);
  InFile(plain[1], [&] { return cad.SaveToFile(plain[1]); });
  return EXIT_SUCCESS;
}

int Render(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  const std::vector<std::string> plain =
      Positional(args, {"--no-background"}, {"--zoom", "--dpi", "--margin"}, options);
  ExpectCount(plain, 2);
  TImageExportOptions export_;
  if (options.contains("--zoom")) export_.Zoom = ParseNumber("--zoom", options["--zoom"], true);
  if (options.contains("--dpi")) export_.Dpi = ParseNumber("--dpi", options["--dpi"], true);
  if (options.contains("--margin"))
    export_.Margin = static_cast<std::int32_t>(std::min(ParseNumber("--margin", options["--margin"], false), 10000.0));
  export_.Background = !options.contains("--no-background");
  const std::string& out = plain[1];
  if (!IsImageFileName(out))
    throw EUsageError(out + ": the image type must be .png, .jpg, .jpeg or .bmp (pictures) or .svg or .pdf (vector)");
  TMyCAD cad;
  LoadDrawing(cad, plain[0]);
  try {
    if (cad.SaveToImageFile(out, export_)) return EXIT_SUCCESS;
  } catch (const EPictureTooLarge& e) {
    throw ECliError(plain[0] + ": " + e.what() + " with --zoom");
  }
  if (cad.RenderToBitmap(export_).Empty()) throw ECliError(plain[0] + ": nothing to render (no visible shapes)");
  throw ECliError(out + ": cannot write the image");
}

}  // namespace lumatrex::cli
