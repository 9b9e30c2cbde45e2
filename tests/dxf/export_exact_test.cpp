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

namespace lumatrex {
namespace {

std::vector<std::string> Lines(const std::string& text) {
  std::vector<std::string> lines;
  std::istringstream in(text);
  for (std::string line; std::getline(in, line);) lines.push_back(line);
  return lines;
}

using L = std::vector<std::string>;
const L kHead = {"0", "SECTION", "2", "ENTITIES"};
const L kTail = {"0", "ENDSEC", "0", "EOF"};

L Join(std::initializer_list<L> parts) {
  L all;
  for (const L& p : parts) all.insert(all.end(), p.begin(), p.end());
  return all;
}

L LineEntity(int handle, const char* x1, const char* y1, const char* x2, const char* y2) {
  return {"0", "LINE", "5", std::to_string(handle), "8", "0", "10", x1, "20", y1, "30", "0.0",
          "11", x2, "21", y2, "31", "0.0"};
}

L Vertex(int handle, const char* x, const char* y) {
  return {"0", "VERTEX", "5", std::to_string(handle), "8", "0", "10", x, "20", y, "30", "0.0"};
}

TArrMyPoint Box(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

struct ExactCase {
  const char* name;
  void (*build)(TMyCAD&);
  L expected;
};

TEST(SaveToDxf1, WritesEachClassLineByLine) {
  const ExactCase cases[] = {
      {"empty drawing", [](TMyCAD&) {}, Join({kHead, kTail})},
      {"378-pixel line on a 378-pixel control",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyLine", "", {{0, 0}, {378, 0}}, 0); },
       Join({kHead, LineEntity(20, "0", "100.0125", "100.0125", "100.0125"), kTail})},
      {"poly-line of 4 points takes 3 lines",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyPolyLine", "", {{0, 378}, {96, 378}, {0, 282}, {0, 378}}, 0); },
       Join({kHead, LineEntity(20, "0", "0", "25.4", "0"), LineEntity(21, "25.4", "0", "0", "25.4"),
             LineEntity(22, "0", "25.4", "0", "0"), kTail})},
      {"circle from the ellipse tool",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyEllipse", "", Box(0, 0, 192, 192), 0); },
       Join({kHead,
             {"0", "CIRCLE", "5", "20", "8", "0", "10", "25.4", "20", "74.6125", "30", "0.0", "40", "25.4"},
             kTail})},
      {"rectangle is a closed POLYLINE of its four corners",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyRectangle", "", Box(0, 282, 96, 378), 0); },
       Join({kHead,
             {"0", "POLYLINE", "5", "20", "8", "0", "66", "1", "10", "0.0", "20", "0.0", "30", "0.0", "70", "1"},
             Vertex(21, "0", "25.4"), Vertex(22, "25.4", "25.4"), Vertex(23, "25.4", "0"), Vertex(24, "0", "0"),
             {"0", "SEQEND", "5", "25", "8", "0"}, kTail})},
      {"connector of the line kind is two circles of its half and quarter width",
       [](TMyCAD& c) { c.AddShapeByCode2("TMyLineLinkLine", "", Box(0, 186, 192, 378), 0); },
       Join({kHead,
             {"0", "CIRCLE", "5", "20", "8", "0", "10", "25.4", "20", "25.4", "30", "0.0", "40", "25.4"},
             {"0", "CIRCLE", "5", "21", "8", "0", "10", "25.4", "20", "25.4", "30", "0.0", "40", "12.7"}, kTail})},
      {"images, groups and measuring lines are left out",
       [](TMyCAD& c) {
         c.AddShapeByCode2("TMyImage", "", Box(0, 0, 10, 10), 0);
         c.AddShapeByCode2("TMyRuleLine", "", {{0, 0}, {9, 9}}, 0);
       },
       Join({kHead, kTail})},
  };
  for (const ExactCase& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(400, 378);
    c.build(cad);
    EXPECT_EQ(Lines(DxfText1(cad)), c.expected);
  }
}

// Points of every VERTEX of the text, in order.
std::vector<std::pair<double, double>> Vertices(const std::vector<std::string>& lines) {
  std::vector<std::pair<double, double>> points;
  for (std::size_t i = 0; i + 9 < lines.size(); ++i)
    if (lines[i] == "VERTEX") points.push_back({std::stod(lines[i + 6]), std::stod(lines[i + 8])});
  return points;
}

struct CurveCase {
  const char* name;
  const char* className;
  TArcStyle style;
  float width, height;
  const char* polylineFlag;  // nullptr: no polyline expected
};

// Curves traced as polylines stay within 0.01 mm of the true outline; a
// circular open arc is one ARC whose angles are counter-clockwise in y up.
TEST(SaveToDxf1, TracesCurvesWithinOneHundredthMillimetre) {
  const CurveCase cases[] = {
      {"ellipse: open 3D polyline", "TMyEllipse", asArc, 200, 100, "8"},
      {"elliptical open arc stays open", "TMyElliArc", asArc, 200, 100, "0"},
      {"elliptical chord is closed", "TMyElliArc", asChord, 200, 100, "1"},
      {"circular sector is closed", "TMyElliArc", asPie, 192, 192, "1"},
      {"circular open arc is an ARC", "TMyElliArc", asArc, 192, 192, nullptr},
  };
  for (const CurveCase& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(400, 388);
    TArrMyPoint points = Box(96, 100, 96 + c.width, 100 + c.height);
    const float cx = 96 + c.width / 2, cy = 100 + c.height / 2;
    // From the ray to the right, counter-clockwise on the screen, to the ray up.
    points.push_back({cx + 10, cy});
    points.push_back({cx, cy - 10});
    TMyShape* s = cad.AddShapeByCode2(c.className, "", points, 0);
    if (auto* arc = dynamic_cast<TMyElliArc*>(s)) arc->SetArcStyle(c.style);
    const auto lines = Lines(DxfText1(cad));
    if (!c.polylineFlag) {
      const L arc = {"0", "ARC", "5", "20", "8", "0", "10", "50.8", "20", "50.8",
                     "30", "0.0", "40", "25.4", "50", "0", "51", "90"};
      EXPECT_EQ(L(lines.begin() + 4, lines.end() - 4), arc);
      continue;
    }
    ASSERT_EQ(lines[4 + 1], "POLYLINE");
    EXPECT_EQ(lines[4 + 15], c.polylineFlag);
    const double a = c.width / 2 / kDxfPixelsPerMm, b = c.height / 2 / kDxfPixelsPerMm;
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
