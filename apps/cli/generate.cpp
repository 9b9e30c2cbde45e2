#include "generate.h"

#include <cstdlib>
#include <map>
#include <random>

#include "canvas/tmycad.h"
#include "commands.h"
#include "files.h"

namespace lumatrex::cli {

namespace {

// Draws from a Mersenne twister, whose sequence the standard fixes; the
// mapping to ranges is done here, not by the library's distributions, whose
// results differ between implementations.
class TDraw {
 public:
  explicit TDraw(std::uint32_t seed) : engine_(seed) {}
  // Uniform in [0, 1).
  double Unit() { return static_cast<double>(engine_() >> 8) / static_cast<double>(1u << 24); }
  double Between(double low, double high) { return low + (high - low) * Unit(); }
  std::uint32_t Below(std::uint32_t n) { return static_cast<std::uint32_t>(Unit() * n); }

 private:
  std::mt19937 engine_;
};

constexpr TColor kFills[] = {0x00C0E0FF, 0x00FFE0C0, 0x00C0FFC0, 0x00E0C0FF,
                             0x00A0D0F0, 0x00F0F0A0, 0x00D0D0D0, 0x00FFC0E0};

TArrMyPoint Box(float left, float top, float width, float height) {
  return {{left, top}, {left + width, top}, {left + width, top + height}, {left, top + height}};
}

std::int32_t ParseCount(const std::string& option, const std::string& text, std::int64_t low, std::int64_t high) {
  char* end = nullptr;
  const long long value = std::strtoll(text.c_str(), &end, 10);
  if (text.empty() || *end != '\0' || value < low || value > high)
    throw EUsageError(option + " takes a whole number from " + std::to_string(low) + " to " + std::to_string(high) +
                      ", not \"" + text + "\"");
  return static_cast<std::int32_t>(value);
}

}  // namespace

void GenerateDrawing(TMyCAD& cad, const TGenerateOptions& options) {
  TDraw draw(options.Seed);
  cad.resize(options.Width, options.Height);
  for (std::int32_t i = 0; i < options.Shapes; ++i) {
    const float width = static_cast<float>(draw.Between(4, 40));
    const float height = static_cast<float>(draw.Between(4, 40));
    const float left = static_cast<float>(draw.Between(0, options.Width - width));
    const float top = static_cast<float>(draw.Between(0, options.Height - height));
    cad.Brush().SetColor(kFills[draw.Below(8)]);
    const std::uint32_t kind = draw.Below(100);
    if (kind < 35) {
      const float angle = draw.Below(5) == 0 ? static_cast<float>(draw.Between(-1.5, 1.5)) : 0.0f;
      cad.AddShapeByCode2("TMyRectangle", "", Box(left, top, width, height), angle);
    } else if (kind < 60) {
      cad.AddShapeByCode2("TMyEllipse", "", Box(left, top, width, height), 0);
    } else if (kind < 80) {
      cad.AddShapeByCode2("TMyLine", "", {{left, top}, {left + width, top + height}}, 0);
    } else if (kind < 90) {
      cad.AddShapeByCode2("TMyPolygon", "",
                          {{left, top + height}, {left + width / 2, top}, {left + width, top + height}, {left, top + height}},
                          0);
    } else {
      cad.AddShapeByCode2("TMyPolyLine", "", {{left, top}, {left + width / 2, top + height}, {left + width, top}}, 0);
    }
  }
  cad.SetModified(false);
}

int Generate(const std::vector<std::string>& args) {
  std::map<std::string, std::string> options;
  std::vector<std::string> plain;
  for (std::size_t i = 0; i < args.size(); ++i) {
    const std::string& a = args[i];
    if (a == "--shapes" || a == "--seed" || a == "--size") {
      if (i + 1 == args.size()) throw EUsageError(a + " needs a value");
      options[a] = args[++i];
    } else if (a.size() > 1 && a[0] == '-') {
      throw EUsageError("unknown option " + a);
    } else {
      plain.push_back(a);
    }
  }
  if (plain.size() != 1) throw EUsageError("expected 1 argument");
  if (!options.contains("--shapes")) throw EUsageError("--shapes is required");
  TGenerateOptions generate;
  generate.Shapes = ParseCount("--shapes", options["--shapes"], 0, 10'000'000);
  if (options.contains("--seed"))
    generate.Seed = static_cast<std::uint32_t>(ParseCount("--seed", options["--seed"], 0, 2'147'483'647));
  if (options.contains("--size")) {
    const std::string& size = options["--size"];
    const std::size_t x = size.find('x');
    if (x == std::string::npos) throw EUsageError("--size takes WIDTHxHEIGHT, not \"" + size + "\"");
    generate.Width = ParseCount("--size", size.substr(0, x), 64, 16384);
    generate.Height = ParseCount("--size", size.substr(x + 1), 64, 16384);
  }
  TMyCAD cad;
  GenerateDrawing(cad, generate);
  InFile(plain[0], [&] { return cad.SaveToFile(plain[0]); });
  return EXIT_SUCCESS;
}

}  // namespace lumatrex::cli
