// The ENTITIES-only export, compared line by line.
#include <gtest/gtest.h>

#include <algorithm>
#include <cmath>
#include <sstream>
#include <string>
#include <vector>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "shapes/arc.h"
#include "shapes/text.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

using L = std::vector<std::string>;

TArrMyPoint Box(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

// The lines of tests/data/dxf/Name.
L Expected(const std::string& name) { return Lines(test::ReadFileBytes(test::DataPath("dxf/" + name))); }

TEST(SaveToDxf1, WritesEachClassLineByLine) {
  struct ExactCase {
    const char* name;
    void (*build)(TMyCAD&);
    const char* expected;  // file under tests/data/dxf
  };
  const ExactCase cases[] = {
      {"empty drawing", [](TMyCAD&) {}, "empty.dxf"},
      {"378-pixel line on a 378-pixel control",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyLine", "", {{0, 0}, {378, 0}}, 0); }, "line.dxf"},
      {"poly-line of 4 points takes 3 lines",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyPolyLine", "", {{0, 378}, {96, 378}, {0, 282}, {0, 378}}, 0); },
       "polyline.dxf"},
      {"circle from the ellipse tool",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyEllipse", "", Box(0, 0, 192, 192), 0); }, "circle.dxf"},
      {"rectangle is a closed POLYLINE of its four corners",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyRectangle", "", Box(0, 282, 96, 378), 0); }, "rectangle.dxf"},
      {"connector of the line kind is two circles of its half and quarter width",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyLineLinkLine", "", Box(0, 186, 192, 378), 0); }, "line-connector.dxf"},
      {"images, groups and measuring lines are left out",
       [](TMyCAD& c) {
         c.AddShapeByCode2("TMyImage", "", Box(0, 0, 10, 10), 0);
         c.AddShapeByCode2("TMyRuleLine", "", {{0, 0}, {9, 9}}, 0);
       },
       "empty.dxf"},
  };
  for (const ExactCase& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(400, 378);
    c.build(cad);
    EXPECT_EQ(Lines(DxfText1(cad)), Expected(c.expected));
  }
}

// Points of every VERTEX of the text, in order.
std::vector<std::pair<double, double>> Vertices(const std::vector<std::string>& lines) {
  std::vector<std::pair<double, double>> points;
  for (std::size_t i = 0; i + 9 < lines.size(); ++i)
    if (lines[i] == "VERTEX") points.push_back({std::stod(lines[i + 6]), std::stod(lines[i + 8])});
  return points;
}

// Curves traced as polylines stay within 0.01 mm of the true outline; a
// circular open arc is one ARC whose angles are counter-clockwise in y up.
// The cases are the rows of tests/data/dxf/curves.txt.
TEST(SaveToDxf1, TracesCurvesWithinOneHundredthMillimetre) {
  const auto rows = test::DataTable("dxf/curves.txt");
  ASSERT_EQ(rows.size(), 5u);
  for (const std::vector<std::string>& row : rows) {
    SCOPED_TRACE(row.at(0));
    std::istringstream in(row.at(2));
    int style;
    float width, height;
    in >> style >> width >> height;
    const std::string& polylineFlag = row.at(3);  // "-": no polyline expected
    TMyCAD cad;
    cad.resize(400, 388);
    TArrMyPoint points = Box(96, 100, 96 + width, 100 + height);
    const float cx = 96 + width / 2, cy = 100 + height / 2;
    // From the ray to the right, counter-clockwise on the screen, to the ray up.
    points.push_back({cx + 10, cy});
    points.push_back({cx, cy - 10});
    TMyShape* s = cad.AddShapeByCode2(row.at(1), "", points, 0);
    if (auto* arc = dynamic_cast<TMyElliArc*>(s)) arc->SetArcStyle(static_cast<TArcStyle>(style));
    const auto lines = Lines(DxfText1(cad));
    if (polylineFlag == "-") {
      EXPECT_EQ(L(lines.begin() + 4, lines.end() - 4), Expected("circular-open-arc-entity.dxf"));
      continue;
    }
    ASSERT_EQ(lines[4 + 1], "POLYLINE");
    EXPECT_EQ(lines[4 + 15], polylineFlag);
    const double a = width / 2 / kDxfPixelsPerMm, b = height / 2 / kDxfPixelsPerMm;
    const double mx = cx / kDxfPixelsPerMm, my = (388 - cy) / kDxfPixelsPerMm;
    const auto vertices = Vertices(lines);
    ASSERT_GT(vertices.size(), 8u);
    for (std::size_t i = 0; i + 1 < vertices.size(); ++i) {
      // The chord's middle lies within tolerance of the ellipse (radial error).
      const double x = (vertices[i].first + vertices[i + 1].first) / 2 - mx;
      const double y = (vertices[i].second + vertices[i + 1].second) / 2 - my;
      const bool spoke = std::hypot(vertices[i].first - mx, vertices[i].second - my) < 1e-9 ||
                         std::hypot(vertices[i + 1].first - mx, vertices[i + 1].second - my) < 1e-9;
      if (spoke) continue;
      const double k = std::sqrt((x * x) / (a * a) + (y * y) / (b * b));
      EXPECT_LT(std::hypot(x, y) * std::abs(1 - 1 / k), 0.01) << "chord " << i;
    }
  }
}

// Text is written as the closed outlines of its glyphs, inside its frame.
TEST(SaveToDxf1, WritesTextAsGlyphOutlines) {
  TMyCAD cad;
  cad.resize(400, 378);
  auto* text = static_cast<TMyText*>(cad.AddShapeByCode2("TMyText", "", Box(96, 96, 288, 192), 0));
  text->SetLines({"Hi"});
  const auto lines = Lines(DxfText1(cad));
  EXPECT_GE(std::count(lines.begin(), lines.end(), "POLYLINE"), 2);  // "H" and "i" at least
  for (const auto& [x, y] : Vertices(lines)) {
    EXPECT_GE(x, 25.3);
    EXPECT_LE(x, 76.3);
    EXPECT_LE(y, (378 - 96) / kDxfPixelsPerMm + 0.1);
  }
}

}  // namespace
}  // namespace lumatrex
