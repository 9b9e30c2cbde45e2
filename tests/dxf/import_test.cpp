// The import: files written at test time by ezdxf (an independent DXF
// implementation) in several versions, malformed files, and the full export
// read back by ezdxf and by ourselves.
#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDir>
#include <QTemporaryDir>
#include <cmath>
#include <cstdlib>
#include <fstream>
#include <iomanip>
#include <sstream>
#include <string>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "dxf/dxf_geometry.h"
#include "shapes/arc.h"
#include "shapes/bspline.h"
#include "shapes/text.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using dxf::V2;

// Runs the ezdxf helper; its output lands in Output.
int Ezdxf(const std::string& args, std::string* output = nullptr) {
  const std::string log = QDir::temp().filePath("lumatrex-ezdxf-" + QString::number(QCoreApplication::applicationPid())).toStdString();
  const int status =
      std::system((std::string(LUMATREX_PYTHON) + " " + LUMATREX_SOURCE_DIR "/tests/dxf/ezdxf_tool.py " + args + " > " + log).c_str());
  if (output) {
    std::ifstream in(log);
    *output = std::string(std::istreambuf_iterator<char>(in), {});
  }
  std::remove(log.c_str());
  return status;
}

V2 Mm(const TMyPoint& p) { return {p.X / kDxfPixelsPerMm, -p.Y / kDxfPixelsPerMm}; }

// One line per shape: class, layer, pen colour, centre and every point in
// millimetres (y up), and a text's lines.
std::string Dump(const TMyCAD& cad) {
  std::ostringstream out;
  out << std::fixed << std::setprecision(2);
  auto mm = [&out](const TMyPoint& p) {
    const V2 v = Mm(p);
    out << ' ' << std::round(v.x * 100) / 100 + 0.0 << ',' << std::round(v.y * 100) / 100 + 0.0;
  };
  for (int i = 0; i < cad.GetShapesCount(); ++i) {
    const TMyShape* s = cad.GetShapeByNo(i);
    out << i << ' ' << s->ClassName() << ' ' << cad.GetLayerNameByID(s->LayerId) << ' ' << std::hex
        << s->Pen().Color() << std::dec << " centre";
    mm(s->GetCenterPoint());
    out << " points";
    for (const TMyPoint& p : s->Points) mm(p);
    if (const auto* text = dynamic_cast<const TMyText*>(s))
      for (const std::string& line : text->GetLines()) out << " \"" << line << '"';
    out << '\n';
  }
  return out.str();
}

// The first Count shapes of tests/data/dxf/import.txt.
std::string ExpectedImport(std::size_t count) {
  const auto rows = test::DataTable("dxf/import.txt");
  std::string expected;
  for (std::size_t i = 0; i < count && i < rows.size(); ++i) expected += rows[i][0] + '\n';
  return expected;
}

// Every entity kind of files ezdxf writes in each version: the shapes they
// become are listed in tests/data/dxf/import.txt (R12 has the first 16).
TEST(LoadFromDxf, ReadsEveryEntityKindOfEzdxfFilesInEachVersion) {
  QTemporaryDir dir;
  for (const char* version : {"R12", "R2000", "R2018"}) {
    SCOPED_TRACE(version);
    const std::string file = dir.filePath(QString(version) + ".dxf").toStdString();
    ASSERT_EQ(Ezdxf(std::string("write ") + version + " " + file), 0);
    TMyCAD cad;
    const TDxfImportSummary summary = LoadFromDxf(cad, file);
    const std::size_t shapes = std::string(version) == "R12" ? 16 : 22;
    EXPECT_EQ(summary.ShapesAdded, static_cast<std::int32_t>(shapes));
    EXPECT_EQ(summary.SkippedTotal, 1);  // the 3DFACE
    EXPECT_TRUE(summary.HasExtents);
    EXPECT_EQ(Dump(cad), ExpectedImport(shapes));
    EXPECT_FALSE(cad.IsVisibleLayerByID(cad.GetLayerIdByName("Hidden")));
  }
}

// The malformed files of tests/data/dxf/malformed, each listed with the line
// its error must name and a part of its message.
TEST(LoadFromDxf, RefusesMalformedFilesNamingTheLineAndKeepsTheDrawing) {
  for (const std::vector<std::string>& row : test::DataTable("dxf/malformed.txt")) {
    SCOPED_TRACE(row[0]);
    const std::string text = test::ReadFileBytes(test::DataPath("dxf/malformed/" + row[0]));
    ASSERT_FALSE(text.empty());
    TMyCAD cad;
    cad.AddShapeByCode2("TMyLine", "", {{0, 0}, {1, 1}}, 0);
    try {
      LoadDxfFromBytes(cad, text.data(), text.size());
      ADD_FAILURE() << "no error";
    } catch (const EDxfError& e) {
      EXPECT_EQ(e.Line(), std::stoll(row[1])) << e.what();
      EXPECT_NE(std::string(e.what()).find(row[2]), std::string::npos) << e.what();
    }
    EXPECT_EQ(cad.GetShapesCount(), 1);
    EXPECT_EQ(cad.GetLayersCount(), 1);
  }
}

// Every outline as points in millimetres, curves traced finely.
std::vector<V2> Outline(const TMyShape& s) {
  const dxf::TDxfMap map;
  const std::string name = s.ClassName();
  if (name == "TMyEllipse") return dxf::FrameEllipse(s, map).Sample();
  if (name == "TMyElliArc") return dxf::ArcEllipse(s, map).Sample();
  if (name == "TMyLinkPoint") return {map.ToDxf(s.ComputeCenterPoint(4))};
  // MTEXT keeps a text's corner, width and lines, not the frame's height.
  if (name == "TMyText") return {map.ToDxf(s.Points[0]), map.ToDxf(s.Points[1])};
  std::vector<V2> points;
  for (const TMyPoint& p : s.Points) points.push_back(map.ToDxf(p));
  if (name == "TMyPolyBezier") return dxf::FlattenBezier(points);
  if (name != "TMyBLine") return points;
  TMyBLine curve(nullptr);
  for (const TMyPoint& p : s.Points) curve.AddVertex(p);
  curve.PhantomPoints();
  curve.Interpolate();
  points.clear();
  for (int i = 0; i <= 4000; ++i) points.push_back(map.ToDxf(curve.GetVPoint(i / 4000.0f)));
  return points;
}

double DistanceToChain(V2 p, const std::vector<V2>& chain) {
  double best = 1e300;
  for (std::size_t i = 0; i + 1 < chain.size() || i == 0; ++i) {
    const V2 a = chain[i], b = chain[std::min(i + 1, chain.size() - 1)];
    const double dx = b.x - a.x, dy = b.y - a.y, len = dx * dx + dy * dy;
    const double t = len == 0 ? 0 : std::clamp(((p.x - a.x) * dx + (p.y - a.y) * dy) / len, 0.0, 1.0);
    best = std::min(best, std::hypot(p.x - a.x - t * dx, p.y - a.y - t * dy));
  }
  return best;
}

double Hausdorff(const std::vector<V2>& a, const std::vector<V2>& b) {
  double d = 0;
  for (const V2& p : a) d = std::max(d, DistanceToChain(p, b));
  for (const V2& p : b) d = std::max(d, DistanceToChain(p, a));
  return d;
}

std::vector<const TMyShape*> Drawn(const TMyCAD& cad) {
  std::vector<const TMyShape*> shapes;
  for (int i = 0; i < cad.GetShapesCount(); ++i)
    if (std::string(cad.GetShapeByNo(i)->ClassName()) != "TMyGroup") shapes.push_back(cad.GetShapeByNo(i));
  return shapes;
}

// The full export of tests/data/dxf/every-kind.zlt (every kind, turned and
// filled ones, a group, a text with braces and a backslash on the hidden
// layer "Second") passes ezdxf's audit; both our file and ezdxf's rewrite of
// it import back to every shape's outline within 0.01 mm, on its layer.
TEST(SaveToDxf, AuditsCleanInEzdxfAndRoundTripsEveryShape) {
  TMyCAD cad;
  ASSERT_TRUE(cad.LoadFromFile(test::DataPath("dxf/every-kind.zlt")));
  QTemporaryDir dir;
  const std::string ours = dir.filePath("ours.dxf").toStdString(), theirs = dir.filePath("theirs.dxf").toStdString();
  EXPECT_TRUE(SaveToDxf(cad, ours).empty());
  std::string report;
  ASSERT_EQ(Ezdxf("audit " + ours + " " + theirs, &report), 0) << report;
  EXPECT_NE(report.find("errors 0\n"), std::string::npos);
  for (const char* kind : {"ARC 1", "CIRCLE 1", "ELLIPSE 2", "SPLINE 2", "MTEXT 1", "HATCH 4", "INSERT 1", "POINT 1"})
    EXPECT_NE(report.find(std::string(kind) + "\n"), std::string::npos) << kind << " not in\n" << report;
  for (const std::string& file : {ours, theirs}) {
    SCOPED_TRACE(file);
    TMyCAD back;
    LoadFromDxf(back, file);
    const auto before = Drawn(cad), after = Drawn(back);
    ASSERT_EQ(before.size(), after.size());
    for (std::size_t i = 0; i < before.size(); ++i) {
      SCOPED_TRACE(before[i]->ClassName() + std::to_string(i));
      EXPECT_LT(Hausdorff(Outline(*before[i]), Outline(*after[i])), 0.01);
      EXPECT_EQ(back.GetLayerNameByID(after[i]->LayerId), cad.GetLayerNameByID(before[i]->LayerId));
    }
    EXPECT_FALSE(back.IsVisibleLayerByID(back.GetLayerIdByName("Second")));
    TMyCAD grouped;
    TDxfImportOptions options;
    options.GroupInserts = true;
    LoadFromDxf(grouped, file, options);
    EXPECT_EQ(grouped.GetShapesCount(), back.GetShapesCount() + 1) << "one group for the one insert";
    EXPECT_EQ(static_cast<const TMyText*>(after.back())->GetLines(), static_cast<const TMyText*>(before.back())->GetLines());
  }
}

}  // namespace
}  // namespace lumatrex
