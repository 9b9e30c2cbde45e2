// The full export: an AC1015 drawing with the tables, blocks and objects CAD
// programs look for, and every shape as the native entity closest to it.
//
// Coordinates: the model origin stays the DXF origin and y is negated, so the
// file depends neither on the zoom nor on the control's size, and an import
// with no offset puts every shape back where it was.
#include <algorithm>
#include <cmath>
#include <string_view>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "dxf/dxf_colors.h"
#include "dxf/dxf_geometry.h"
#include "dxf/dxf_out.h"
#include "platform/stream.h"
#include "shapes/arc.h"
#include "shapes/bspline.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

using dxf::TDxfEllipse;
using dxf::TDxfOut;
using dxf::V2;

constexpr double kPi = std::numbers::pi;

struct TLineType {
  const char* name;
  const char* description;
  std::vector<double> pattern;  // millimetres; negative values are gaps
};

// One line type per dashed pen style, in TPenStyle order from psDash.
const TLineType kLineTypes[] = {
    {"DASHED", "Dashed __ __ __", {5.0, -2.5}},
    {"DOT", "Dotted . . . .", {0.0, -1.0}},
    {"DASHDOT", "Dash dot __ . __ .", {5.0, -1.5, 0.0, -1.5}},
    {"DIVIDE", "Dash dot dot __ . . __", {5.0, -1.5, 0.0, -1.5, 0.0, -1.5}},
};

// The line weights DXF files may hold, in hundredths of a millimetre.
constexpr std::int32_t kLineWeights[] = {0,  5,  9,  13, 15, 18, 20,  25,  30,  35,  40,  50,
                                         53, 60, 70, 80, 90, 100, 106, 120, 140, 158, 200, 211};

std::int32_t NearestLineWeight(std::int32_t widthPixels) {
  const double wanted = widthPixels / kDxfPixelsPerMm * 100;
  return *std::min_element(std::begin(kLineWeights), std::end(kLineWeights), [wanted](std::int32_t a, std::int32_t b) {
    return std::abs(a - wanted) < std::abs(b - wanted);
  });
}

// Layer and block names may not hold the characters DXF reserves.
std::string SafeName(const std::string& name) {
  std::string safe = name.empty() ? "Layer" : name;
  for (char& c : safe)
    if (std::string_view("<>/\\\":;?*|=`").find(c) != std::string_view::npos || static_cast<unsigned char>(c) < 32)
      c = '_';
  return safe;
}

class TFullWriter {
 public:
  TFullWriter(const TMyCAD& cad, TDxfWarnings& warnings) : cad_(cad), warnings_(warnings) {}

  std::string Write() {
    modelSpace_ = NewHandle();
    paperSpace_ = NewHandle();
    for (std::int32_t i = 0; i < cad_.GetShapesCount(); ++i) {
      const TMyShape& s = *cad_.GetShapeByNo(i);
      if (!s.HasParentShape()) Shape(s, entities_, modelSpace_);
    }
    // Every handle is given out before the header names the next free one.
    std::string body = Tables().Text();
    body += "0\nSECTION\n2\nBLOCKS\n";
    body += BlockFrame("*Model_Space", modelSpace_, {});
    body += BlockFrame("*Paper_Space", paperSpace_, {});
    for (const TBlock& b : blocks_) body += BlockFrame(b.name, b.record, b.body);
    body += "0\nENDSEC\n0\nSECTION\n2\nENTITIES\n";
    body += entities_.Text();
    body += "0\nENDSEC\n";
    body += Objects().Text();
    body += "0\nEOF\n";
    TDxfOut header;
    Header(header);
    std::string text = std::move(header.Text());
    text += body;
    return text;
  }

 private:
  struct TBlock {
    std::string name;
    std::uint32_t record;
    std::string body;
  };

  std::uint32_t NewHandle() { return nextHandle_++; }

  // ---- header, tables, objects ----------------------------------------------

  void Header(TDxfOut& out) {
    out.Pair(0, "SECTION");
    out.Pair(2, "HEADER");
    out.Pair(9, "$ACADVER");
    out.Pair(1, "AC1015");
    out.Pair(9, "$HANDSEED");
    out.HexHandle(5, nextHandle_);
    out.Pair(9, "$INSUNITS");
    out.Int(70, 4);
    out.Pair(9, "$MEASUREMENT");
    out.Int(70, 1);
    for (const auto& [name, p] : {std::pair{"$EXTMIN", extMin_}, std::pair{"$EXTMAX", extMax_}}) {
      out.Pair(9, name);
      out.Pair(10, HasExtent() ? p.x : 0.0);
      out.Pair(20, HasExtent() ? p.y : 0.0);
      out.Pair(30, 0.0);
    }
    out.Pair(0, "ENDSEC");
  }

  bool HasExtent() const { return extMin_.x <= extMax_.x; }

  template <typename Fn>
  void Table(TDxfOut& out, const char* name, std::int32_t count, Fn entries) {
    const std::uint32_t table = NewHandle();
    out.Pair(0, "TABLE");
    out.Pair(2, name);
    out.HexHandle(5, table);
    out.Pair(330, "0");
    out.Pair(100, "AcDbSymbolTable");
    out.Int(70, count);
    entries(table);
    out.Pair(0, "ENDTAB");
  }

  void Record(TDxfOut& out, const char* entity, std::uint32_t table, const char* subclass, const std::string& name,
              int handleCode = 5) {
    out.Pair(0, entity);
    out.HexHandle(handleCode, NewHandle());
    out.HexHandle(330, table);
    out.Pair(100, "AcDbSymbolTableRecord");
    out.Pair(100, subclass);
    out.Pair(2, name);
    out.Int(70, 0);
  }

  TDxfOut Tables() {
    TDxfOut out;
    out.Pair(0, "SECTION");
    out.Pair(2, "TABLES");
    Table(out, "VPORT", 1, [&](std::uint32_t t) {
      Record(out, "VPORT", t, "AcDbViewportTableRecord", "*Active");
      const V2 c = HasExtent() ? V2{(extMin_.x + extMax_.x) / 2, (extMin_.y + extMax_.y) / 2} : V2{};
      out.Pair(10, 0.0), out.Pair(20, 0.0), out.Pair(11, 1.0), out.Pair(21, 1.0);
      out.Pair(12, c.x), out.Pair(22, c.y);
      out.Pair(40, HasExtent() ? std::max(extMax_.y - extMin_.y, 1.0) * 1.1 : 100.0);
      out.Pair(41, 1.5);
    });
    Table(out, "LTYPE", 3 + static_cast<std::int32_t>(std::size(kLineTypes)), [&](std::uint32_t t) {
      for (const TLineType& lt : {TLineType{"ByBlock", "", {}}, TLineType{"ByLayer", "", {}},
                                  TLineType{"Continuous", "Solid line", {}}})
        LineType(out, t, lt);
      for (const TLineType& lt : kLineTypes) LineType(out, t, lt);
    });
    std::vector<std::pair<std::string, bool>> layers = {{"0", true}};
    for (const LayerRec& l : cad_.Layers())
      if (SafeName(l.LayerName) != "0") layers.push_back({SafeName(l.LayerName), l.Visible});
      else layers[0].second = l.Visible;
    Table(out, "LAYER", static_cast<std::int32_t>(layers.size()), [&](std::uint32_t t) {
      for (const auto& [name, visible] : layers) {
        Record(out, "LAYER", t, "AcDbLayerTableRecord", name);
        out.Int(62, visible ? 7 : -7);  // a negative colour switches the layer off
        out.Pair(6, "Continuous");
        out.Int(370, -3);
        out.Pair(390, "0");
      }
    });
    Table(out, "STYLE", 1, [&](std::uint32_t t) {
      Record(out, "STYLE", t, "AcDbTextStyleTableRecord", "Standard");
      out.Pair(40, 0.0), out.Pair(41, 1.0), out.Pair(50, 0.0), out.Int(71, 0), out.Pair(42, 2.5);
      out.Pair(3, "DejaVuSans.ttf");
      out.Pair(4, "");
    });
    Table(out, "VIEW", 0, [](std::uint32_t) {});
    Table(out, "UCS", 0, [](std::uint32_t) {});
    Table(out, "APPID", 1, [&](std::uint32_t t) { Record(out, "APPID", t, "AcDbRegAppTableRecord", "ACAD"); });
    Table(out, "DIMSTYLE", 1,
          [&](std::uint32_t t) { Record(out, "DIMSTYLE", t, "AcDbDimStyleTableRecord", "Standard", 105); });
    Table(out, "BLOCK_RECORD", 2 + static_cast<std::int32_t>(blocks_.size()), [&](std::uint32_t t) {
      BlockRecord(out, t, "*Model_Space", modelSpace_);
      BlockRecord(out, t, "*Paper_Space", paperSpace_);
      for (const TBlock& b : blocks_) BlockRecord(out, t, b.name, b.record);
    });
    out.Pair(0, "ENDSEC");
    return out;
  }

  void LineType(TDxfOut& out, std::uint32_t table, const TLineType& lt) {
    Record(out, "LTYPE", table, "AcDbLinetypeTableRecord", lt.name);
    out.Pair(3, lt.description);
    out.Int(72, 65);
    out.Int(73, static_cast<std::int64_t>(lt.pattern.size()));
    double length = 0;
    for (double d : lt.pattern) length += std::abs(d);
    out.Pair(40, length);
    for (double d : lt.pattern) {
      out.Pair(49, d);
      out.Int(74, 0);
    }
  }

  void BlockRecord(TDxfOut& out, std::uint32_t table, const std::string& name, std::uint32_t handle) {
    out.Pair(0, "BLOCK_RECORD");
    out.HexHandle(5, handle);
    out.HexHandle(330, table);
    out.Pair(100, "AcDbSymbolTableRecord");
    out.Pair(100, "AcDbBlockTableRecord");
    out.Pair(2, name);
    out.Pair(340, "0");
  }

  std::string BlockFrame(const std::string& name, std::uint32_t record, const std::string& body) {
    TDxfOut out;
    out.Pair(0, "BLOCK");
    out.HexHandle(5, NewHandle());
    out.HexHandle(330, record);
    out.Pair(100, "AcDbEntity");
    out.Pair(8, "0");
    out.Pair(100, "AcDbBlockBegin");
    out.Pair(2, name);
    out.Int(70, 0);
    out.Pair(10, 0.0), out.Pair(20, 0.0), out.Pair(30, 0.0);
    out.Pair(3, name);
    out.Pair(1, "");
    out.Text() += body;
    out.Pair(0, "ENDBLK");
    out.HexHandle(5, NewHandle());
    out.HexHandle(330, record);
    out.Pair(100, "AcDbEntity");
    out.Pair(8, "0");
    out.Pair(100, "AcDbBlockEnd");
    return std::move(out.Text());
  }

  TDxfOut Objects() {
    TDxfOut out;
    const std::uint32_t root = NewHandle(), groups = NewHandle();
    out.Pair(0, "SECTION");
    out.Pair(2, "OBJECTS");
    out.Pair(0, "DICTIONARY");
    out.HexHandle(5, root);
    out.Pair(330, "0");
    out.Pair(100, "AcDbDictionary");
    out.Int(281, 1);
    out.Pair(3, "ACAD_GROUP");
    out.HexHandle(350, groups);
    out.Pair(0, "DICTIONARY");
    out.HexHandle(5, groups);
    out.HexHandle(330, root);
    out.Pair(100, "AcDbDictionary");
    out.Int(281, 1);
    out.Pair(0, "ENDSEC");
    return out;
  }

  // ---- entities ----------------------------------------------------------------

  V2 Map(const TMyPoint& p) {
    const V2 q = map_.ToDxf(p);
    extMin_ = {std::min(extMin_.x, q.x), std::min(extMin_.y, q.y)};
    extMax_ = {std::max(extMax_.x, q.x), std::max(extMax_.y, q.y)};
    return q;
  }
  std::vector<V2> MapAll(const TMyShape& s) {
    std::vector<V2> points;
    points.reserve(s.Points.size());
    for (const TMyPoint& p : s.Points) points.push_back(Map(p));
    return points;
  }

  void Shape(const TMyShape& s, TDxfOut& out, std::uint32_t owner) {
    const std::string_view name = s.ClassName();
    if (name == "TMyGroup" || name == "TMyCombine") return Group(s, out, owner);
    if (name == "TMyImage") {
      warnings_.push_back("image " + s.GetName() + " left out: pictures are not written to DXF files");
      return;
    }
    if (s.GetPointsCount() < 1) return;
    std::vector<V2> points = MapAll(s);
    if (name == "TMyLinkPoint") return Point(s, out, owner);
    if (name == "TMyText") return Text(static_cast<const TMyText&>(s), points, out, owner);
    if (name == "TMyEllipse") return Ellipse(s, out, owner);
    if (name == "TMyElliArc") return Arc(static_cast<const TMyElliArc&>(s), out, owner);
    if (name == "TMyPolyBezier") return Bezier(s, points, out, owner);
    if (name == "TMyBLine") return BSpline(s, out, owner);
    const bool closed = name == "TMyRectangle" || name == "TMyPolygon";
    if (closed && points.size() > 2 && points.front().x == points.back().x && points.front().y == points.back().y)
      points.pop_back();
    if (closed) Hatch(s, points, out, owner);
    Polyline(s, points, closed, out, owner);
  }

  void Common(const TMyShape& s, const char* entity, const char* subclass, TDxfOut& out, std::uint32_t owner,
              bool fill = false) {
    out.Pair(0, entity);
    out.HexHandle(5, NewHandle());
    out.HexHandle(330, owner);
    out.Pair(100, "AcDbEntity");
    out.Pair(8, LayerName(s.LayerId));
    const TPenStyle style = s.Pen().Style();
    if (!fill && style >= psDash && style <= psDashDotDot) out.Pair(6, kLineTypes[style - psDash].name);
    out.Int(420, dxf::TColorToRgb(fill ? s.Brush().Color() : s.Pen().Color()));
    if (!fill) out.Int(370, NearestLineWeight(s.Pen().Width()));
    out.Pair(100, subclass);
  }

  // Layer names once per layer, not once per entity.
  const std::string& LayerName(std::int32_t id) {
    for (const auto& [known, name] : layerNames_)
      if (known == id) return name;
    layerNames_.emplace_back(id, SafeName(cad_.GetLayerNameByID(id)));
    return layerNames_.back().second;
  }

  void XY(TDxfOut& out, int code, V2 p) {
    out.Pair(code, p.x);
    out.Pair(code + 10, p.y);
    out.Pair(code + 20, 0.0);
  }

  void Polyline(const TMyShape& s, const std::vector<V2>& points, bool closed, TDxfOut& out, std::uint32_t owner) {
    if (points.size() == 2 && !closed) {
      Common(s, "LINE", "AcDbLine", out, owner);
      XY(out, 10, points[0]);
      XY(out, 11, points[1]);
      return;
    }
    if (points.size() < 2) return;
    Common(s, "LWPOLYLINE", "AcDbPolyline", out, owner);
    out.Int(90, static_cast<std::int64_t>(points.size()));
    out.Int(70, closed ? 1 : 0);
    for (const V2& p : points) {
      out.Pair(10, p.x);
      out.Pair(20, p.y);
    }
  }

  // A solid fill under a closed shape whose brush fills, bounded by Outline.
  void Hatch(const TMyShape& s, const std::vector<V2>& outline, TDxfOut& out, std::uint32_t owner) {
    if (s.Brush().Style() != bsSolid || outline.size() < 3) return;
    Common(s, "HATCH", "AcDbHatch", out, owner, true);
    XY(out, 10, {});
    out.Pair(210, 0.0), out.Pair(220, 0.0), out.Pair(230, 1.0);
    out.Pair(2, "SOLID");
    out.Int(70, 1);
    out.Int(71, 0);
    out.Int(91, 1);
    out.Int(92, 2);  // a polyline boundary
    out.Int(72, 0);
    out.Int(73, 1);
    out.Int(93, static_cast<std::int64_t>(outline.size()));
    for (const V2& p : outline) {
      out.Pair(10, p.x);
      out.Pair(20, p.y);
    }
    out.Int(97, 0);
    out.Int(75, 0);
    out.Int(76, 1);
    out.Int(98, 0);
  }

  void Point(const TMyShape& s, TDxfOut& out, std::uint32_t owner) {
    Common(s, "POINT", "AcDbPoint", out, owner);
    XY(out, 10, Map(s.ComputeCenterPoint(4)));
  }

  // A circle when the radii agree, else an ELLIPSE (a piece of one for arcs)
  // with its longer axis first as DXF requires.
  void Curve(const TMyShape& s, const TDxfEllipse& e, TDxfOut& out, std::uint32_t owner) {
    // Radii that differ by less than the 32-bit model coordinates can tell
    // apart make a circle.
    if (std::abs(e.A() - e.B()) < 1e-4) {
      const bool full = e.Full();
      Common(s, full ? "CIRCLE" : "ARC", "AcDbCircle", out, owner);
      XY(out, 10, e.centre);
      out.Pair(40, e.A());
      if (full) return;
      out.Pair(100, "AcDbArc");
      const double turn = std::atan2(e.axis.y, e.axis.x);
      out.Pair(50, Degrees(e.t0 + turn));
      out.Pair(51, Degrees(e.t1 + turn));
      return;
    }
    const TDxfEllipse m = e.MajorFirst();
    Common(s, "ELLIPSE", "AcDbEllipse", out, owner);
    XY(out, 10, m.centre);
    XY(out, 11, m.axis);
    out.Pair(40, m.ratio);
    out.Pair(41, m.Full() ? 0.0 : Radians(m.t0));
    out.Pair(42, m.Full() ? 2 * kPi : Radians(m.t0) + (m.t1 - m.t0));
  }

  static double Degrees(double radians) {
    const double d = std::fmod(radians * 180 / kPi, 360.0);
    return d < 0 ? d + 360 : d;
  }
  static double Radians(double r) {
    const double v = std::fmod(r, 2 * kPi);
    return v < 0 ? v + 2 * kPi : v;
  }

  void Ellipse(const TMyShape& s, TDxfOut& out, std::uint32_t owner) {
    const TDxfEllipse e = dxf::FrameEllipse(s, map_);
    Extend(e);
    Hatch(s, e.Sample(), out, owner);
    Curve(s, e, out, owner);
  }

  void Arc(const TMyElliArc& s, TDxfOut& out, std::uint32_t owner) {
    const TDxfEllipse e = dxf::ArcEllipse(s, map_);
    Extend(e);
    const TArcStyle style = e.Full() ? asArc : s.GetArcStyle();
    std::vector<V2> outline = e.Sample();
    if (style == asPie) outline.push_back(e.centre);
    if (style != asArc) Hatch(s, outline, out, owner);
    Curve(s, e, out, owner);
    // The straight sides of a chord or a sector.
    if (style == asChord) Polyline(s, {e.At(e.t1), e.At(e.t0)}, false, out, owner);
    if (style == asPie) Polyline(s, {e.At(e.t1), e.centre, e.At(e.t0)}, false, out, owner);
  }

  void Extend(const TDxfEllipse& e) {
    for (const V2& p : e.Sample()) {
      extMin_ = {std::min(extMin_.x, p.x), std::min(extMin_.y, p.y)};
      extMax_ = {std::max(extMax_.x, p.x), std::max(extMax_.y, p.y)};
    }
  }

  // SPLINE of degree 3 over Control with the given knots.
  void Spline(const TMyShape& s, const std::vector<V2>& control, const std::vector<double>& knots, TDxfOut& out,
              std::uint32_t owner) {
    Common(s, "SPLINE", "AcDbSpline", out, owner);
    out.Pair(210, 0.0), out.Pair(220, 0.0), out.Pair(230, 1.0);
    out.Int(70, 8);  // planar
    out.Int(71, 3);
    out.Int(72, static_cast<std::int64_t>(knots.size()));
    out.Int(73, static_cast<std::int64_t>(control.size()));
    out.Int(74, 0);
    for (double k : knots) out.Pair(40, k);
    for (const V2& p : control) XY(out, 10, p);
  }

  // A Bezier chain is a clamped cubic spline whose inner knots come in threes.
  void Bezier(const TMyShape& s, const std::vector<V2>& points, TDxfOut& out, std::uint32_t owner) {
    if (points.size() < 4 || (points.size() - 1) % 3 != 0) return Polyline(s, points, false, out, owner);
    const std::size_t pieces = (points.size() - 1) / 3;
    std::vector<double> knots(4, 0.0);
    for (std::size_t i = 1; i < pieces; ++i) knots.insert(knots.end(), 3, static_cast<double>(i));
    knots.insert(knots.end(), 4, static_cast<double>(pieces));
    Spline(s, points, knots, out, owner);
  }

  // The curve of a TMyBLine is the uniform cubic B-spline over its solved
  // vertices, the two phantom ones included, on uniform knots.
  void BSpline(const TMyShape& s, TDxfOut& out, std::uint32_t owner) {
    TMyBLine curve(nullptr);
    const std::int32_t n = std::min<std::int32_t>(s.GetPointsCount(), TMyBLine::kMaxPoints);
    if (n < 2) return;
    for (std::int32_t i = 0; i < n; ++i) curve.AddVertex(s.Points[i]);
    curve.PhantomPoints();
    curve.Interpolate();
    std::vector<V2> control;
    for (std::int32_t i = 0; i <= n + 1; ++i) control.push_back(Map(curve.Vertex(i)));
    std::vector<double> knots;
    for (std::size_t i = 0; i < control.size() + 4; ++i) knots.push_back(static_cast<double>(i));
    Spline(s, control, knots, out, owner);
  }

  // MTEXT from the frame's first corner along its first side, one paragraph
  // per line; the height is the font's em height.
  void Text(const TMyText& s, const std::vector<V2>& frame, TDxfOut& out, std::uint32_t owner) {
    if (frame.size() < 4) return;
    if (s.GetIsSolid()) Hatch(s, frame, out, owner);
    if (s.GetIsBorder()) Polyline(s, frame, true, out, owner);
    std::string text;
    for (const std::string& line : s.GetLines()) {
      if (!text.empty()) text += "\\P";
      for (char c : line) {
        if (c == '\\' || c == '{' || c == '}') text += '\\';
        text += c;
      }
    }
    Common(s, "MTEXT", "AcDbMText", out, owner);
    XY(out, 10, frame[0]);
    // In 64 bits: a height read from a damaged file can be INT32_MIN.
    const std::int64_t em = std::abs(static_cast<std::int64_t>(s.Font().Height()));
    out.Pair(40, static_cast<double>(std::max<std::int64_t>(em, 1)) / kDxfPixelsPerMm);
    const V2 side = {frame[1].x - frame[0].x, frame[1].y - frame[0].y};
    out.Pair(41, std::hypot(side.x, side.y));
    out.Int(71, 1);  // attached at the top left
    out.Int(72, 1);
    // Long texts go in chunks of 250 bytes, the last under group 1.
    std::size_t at = 0;
    for (; text.size() - at > 250; at += 250) out.Pair(3, std::string_view(text).substr(at, 250));
    out.Pair(1, std::string_view(text).substr(at));
    out.Pair(7, "Standard");
    if (side.x != 0 || side.y != 0) XY(out, 11, side);
  }

  // A group's members go into a block of their own, placed by one insert.
  void Group(const TMyShape& s, TDxfOut& out, std::uint32_t owner) {
    TBlock block{"GROUP_" + std::to_string(s.ShapeId), NewHandle(), {}};
    TDxfOut body;
    for (std::int32_t child : s.ChildShapes)
      if (const TMyShape* member = cad_.GetShapeByNo(child)) Shape(*member, body, block.record);
    block.body = std::move(body.Text());
    Common(s, "INSERT", "AcDbBlockReference", out, owner);
    out.Pair(2, block.name);
    XY(out, 10, {});
    blocks_.push_back(std::move(block));
  }

  const TMyCAD& cad_;
  TDxfWarnings& warnings_;
  dxf::TDxfMap map_;
  TDxfOut entities_;
  std::vector<TBlock> blocks_;
  std::vector<std::pair<std::int32_t, std::string>> layerNames_;
  std::uint32_t nextHandle_ = 0x20;
  std::uint32_t modelSpace_ = 0, paperSpace_ = 0;
  V2 extMin_{1e300, 1e300}, extMax_{-1e300, -1e300};
};

}  // namespace

std::string DxfText(const TMyCAD& cad, TDxfWarnings* warnings) {
  TDxfWarnings ignored;
  return TFullWriter(cad, warnings ? *warnings : ignored).Write();
}

TDxfWarnings SaveToDxf(const TMyCAD& cad, const std::string& fileName) {
  TDxfWarnings warnings;
  const std::string text = DxfText(cad, &warnings);
  SaveBytesToFileAtomically(fileName, std::vector<std::uint8_t>(text.begin(), text.end()));
  return warnings;
}

}  // namespace lumatrex
