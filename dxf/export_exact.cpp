// The minimal ENTITIES-only export. Which entities a shape becomes is decided
// by its exact class name, so a subclass never inherits its parent's output.
#include <cmath>
#include <string_view>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "dxf/dxf_geometry.h"
#include "dxf/dxf_out.h"
#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/stream.h"
#include "shapes/arc.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

using dxf::V2;

class TExactWriter {
 public:
  explicit TExactWriter(const TMyCAD& cad) : cad_(cad) { map_.top = cad.GetControlHeight(); }

  std::string Write() {
    out_.Pair(0, "SECTION");
    out_.Pair(2, "ENTITIES");
    for (std::int32_t i = 0; i < cad_.GetShapesCount(); ++i) WriteShape(*cad_.GetShapeByNo(i));
    out_.Pair(0, "ENDSEC");
    out_.Pair(0, "EOF");
    return std::move(out_.Text());
  }

 private:
  void WriteShape(const TMyShape& s) {
    const std::string_view name = s.ClassName();
    if (name == "TMyText") WriteText(static_cast<const TMyText&>(s));
    else if (name == "TMyLine") WriteLine(s, 1);
    else if (name == "TMyLinkLine" || name == "TMyPolyLine") WriteLine(s, s.GetPointsCount() - 1);
    else if (name == "TMyRectangle" || name == "TMyPolygon") WriteClosed(s);
    else if (name == "TMyElliArc") WriteArc(s);
    else if (name == "TMyLineLinkLine") WriteLinkCircles(s);
    else if (name == "TMyEllipse") WriteEllipse(s);
    else if (name == "TMyPolyBezier") WriteBezier(s);
  }

  void Head(std::string_view entity) {
    out_.Pair(0, entity);
    out_.DecimalHandle(handle_++);
    out_.Pair(8, "0");
  }
  void XY(int code, V2 p) {
    out_.Pair(code, p.x);
    out_.Pair(code + 10, p.y);
    out_.Pair(code + 20, "0.0");
  }
  V2 At(const TMyShape& s, std::int32_t i) const { return map_.ToDxf(s.Points[i]); }

  // LINEs between the first Count + 1 points.
  void WriteLine(const TMyShape& s, std::int32_t count) {
    for (std::int32_t i = 0; i < count && i + 1 < s.GetPointsCount(); ++i) {
      Head("LINE");
      XY(10, At(s, i));
      XY(11, At(s, i + 1));
    }
  }

  // A POLYLINE with Flag, one VERTEX per point (with VertexFlag when not 0),
  // then SEQEND.
  void Polyline(const std::vector<V2>& points, int flag, int vertexFlag = 0) {
    Head("POLYLINE");
    out_.Pair(66, "1");
    // The header's own point is written as the literal zeros CAD programs
    // expect there, not as a converted coordinate.
    out_.Pair(10, "0.0");
    out_.Pair(20, "0.0");
    out_.Pair(30, "0.0");
    out_.Int(70, flag);
    for (const V2& p : points) {
      Head("VERTEX");
      XY(10, p);
      if (vertexFlag) out_.Int(70, vertexFlag);
    }
    Head("SEQEND");
  }

  void WriteClosed(const TMyShape& s) {
    std::vector<V2> points;
    for (std::int32_t i = 0; i < s.GetPointsCount(); ++i) points.push_back(At(s, i));
    Polyline(points, 1);
  }

  // A circular open arc stays an ARC; an elliptical arc, a chord or a sector
  // is traced along its outline (a sector through the centre). An open
  // elliptical arc is written open: closing it would add a chord it lacks.
  void WriteArc(const TMyShape& s) {
    const dxf::TDxfEllipse e = dxf::ArcEllipse(s, map_);
    const TArcStyle style = static_cast<const TMyElliArc&>(s).GetArcStyle();
    const bool circular = std::abs(e.A() - e.B()) < 0.5 / kDxfPixelsPerMm;
    if (style == asArc && circular && !e.Full()) {
      Head("ARC");
      XY(10, e.centre);
      out_.Pair(40, e.A());
      // Angles of the rays themselves, so that a ray along an axis gives a
      // round number of degrees.
      const V2 from = At(s, 4), to = At(s, 5);
      out_.Pair(50, Degrees(std::atan2(from.y - e.centre.y, from.x - e.centre.x)));
      out_.Pair(51, Degrees(std::atan2(to.y - e.centre.y, to.x - e.centre.x)));
      return;
    }
    std::vector<V2> points = e.Sample();
    if (style == asPie && !e.Full()) points.push_back(e.centre);
    Polyline(points, style == asArc && !e.Full() ? 0 : 1);
  }

  static double Degrees(double radians) {
    double d = std::fmod(radians * 180 / std::numbers::pi, 360.0);
    return d < 0 ? d + 360 : d;
  }

  void WriteLinkCircles(const TMyShape& s) {
    if (s.GetPointsCount() < 3) return;
    const double r = std::abs(s.Points[2].X - s.Points[0].X) / 2 / kDxfPixelsPerMm;
    const V2 c = map_.ToDxf(s.GetCenterPoint());
    for (double radius : {r, r / 2}) {
      Head("CIRCLE");
      XY(10, c);
      out_.Pair(40, radius);
    }
  }

  void WriteEllipse(const TMyShape& s) {
    const dxf::TDxfEllipse e = dxf::FrameEllipse(s, map_);
    if (std::abs(e.A() - e.B()) >= 0.5 / kDxfPixelsPerMm) {
      Polyline(e.Sample(), 8, 32);
      return;
    }
    Head("CIRCLE");
    XY(10, e.centre);
    out_.Pair(40, e.A());
  }

  void WriteBezier(const TMyShape& s) {
    std::vector<V2> chain;
    for (std::int32_t i = 0; i < s.GetPointsCount(); ++i) chain.push_back(At(s, i));
    Polyline(dxf::FlattenBezier(chain), 1);
  }

  // The glyph outlines of the text lines, laid from the frame's top-left
  // corner one line height apart, as the platform's path flattens them.
  void WriteText(const TMyText& s) {
    if (s.GetPointsCount() < 4) return;
    TBitmap bitmap(1, 1);
    TCanvas canvas(bitmap);
    canvas.Font().Assign(s.Font());
    const TMyPoint lt = s.GetLeftTop();
    // Glyphs are laid out in integer device pixels: a corner far beyond any
    // page (from a damaged file) has none to give, nor do lines past it.
    constexpr double kFarthest = 1e9;
    if (!(std::fabs(lt.X) <= kFarthest && std::fabs(lt.Y) <= kFarthest)) return;
    canvas.BeginPath();
    std::int64_t y = static_cast<std::int64_t>(std::nearbyint(lt.Y));
    for (const std::string& line : s.GetLines()) {
      if (y > kFarthest) break;
      canvas.TextOut(static_cast<std::int32_t>(std::nearbyint(lt.X)), static_cast<std::int32_t>(y), line);
      y += canvas.TextHeight(line.empty() ? std::string("X") : line);
    }
    canvas.EndPath();
    canvas.FlattenPath();
    std::vector<TPoint> points;
    std::vector<std::uint8_t> types;
    canvas.GetPath(points, types);
    std::vector<V2> figure;
    for (std::size_t i = 0; i <= points.size(); ++i) {
      if (i == points.size() || (types[i] & ptMoveTo) == ptMoveTo) {
        if (figure.size() > 1) Polyline(figure, 1);
        figure.clear();
        if (i == points.size()) break;
      }
      figure.push_back(map_.ToDxf(MyPoint(points[i].X, points[i].Y)));
    }
  }

  const TMyCAD& cad_;
  dxf::TDxfMap map_;
  dxf::TDxfOut out_;
  std::int64_t handle_ = 20;
};

}  // namespace

std::string DxfText1(const TMyCAD& cad) { return TExactWriter(cad).Write(); }

void SaveToDxf1(const TMyCAD& cad, const std::string& fileName) {
  const std::string text = DxfText1(cad);
  SaveBytesToFileAtomically(fileName, std::vector<std::uint8_t>(text.begin(), text.end()));
}

}  // namespace lumatrex
