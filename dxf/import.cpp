// The import's second stage: the parsed tables become shapes (inserts
// exploded through their transforms), and only then, when nothing can fail
// any more, layers and shapes are added to the canvas.
#include <QFile>
#include <algorithm>
#include <cmath>
#include <array>
#include <memory>
#include <span>
#include <unordered_map>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "dxf/dxf_colors.h"
#include "dxf/dxf_parse.h"
#include "platform/stream.h"
#include "shapes/arc.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

using namespace dxf;

// More than any drawing of ours holds: inserts that multiply past it (arrays
// of arrays, blocks of many inserts nested deep) are refused instead of
// exhausting memory or time. Every array cell and every entity reached
// through an insert counts.
constexpr std::int64_t kMaxInsertWork = 4'000'000;
constexpr std::int32_t kMaxInsertDepth = 32;

// x' = a x + c y + e, y' = b x + d y + f, in millimetres.
struct TAffine {
  double a = 1, b = 0, c = 0, d = 1, e = 0, f = 0;
  V2 operator()(V2 p) const { return {a * p.x + c * p.y + e, b * p.x + d * p.y + f}; }
  V2 Linear(V2 v) const { return {a * v.x + c * v.y, b * v.x + d * v.y}; }
  TAffine Then(const TAffine& inner) const {  // this after inner
    return {a * inner.a + c * inner.b, b * inner.a + d * inner.b, a * inner.c + c * inner.d,
            b * inner.c + d * inner.d, a * inner.e + c * inner.f + e, b * inner.e + d * inner.f + f};
  }
  double Scale() const { return std::sqrt(std::abs(a * d - b * c)); }
};

TAffine Translate(double x, double y) { return {1, 0, 0, 1, x, y}; }
TAffine Rotate(double radians) {
  const double c = std::cos(radians), s = std::sin(radians);
  return {c, s, -s, c, 0, 0};
}
TAffine ScaleBy(double x, double y) { return {x, 0, 0, y, 0, 0}; }

double MillimetresPerUnit(std::int32_t insUnits) {
  switch (insUnits) {
    case 1: return 25.4;
    case 2: return 304.8;
    case 3: return 1609344.0;
    case 5: return 10.0;
    case 6: return 1000.0;
    case 7: return 1e6;
    case 8: return 25.4e-6;
    case 9: return 0.0254;
    case 10: return 914.4;
    case 14: return 100.0;
    default: return 1.0;  // millimetres, and unitless drawings taken as such
  }
}

// An ellipse through the conjugate semi-diameters U and V (the images of two
// perpendicular radii), as a TDxfEllipse with perpendicular axes. A mirrored
// pair runs the other way round, so the piece's parameters are mirrored too.
TDxfEllipse EllipseFromConjugates(V2 centre, V2 u, V2 v, double t0, double t1) {
  if (u.x * v.y - u.y * v.x < 0) {
    v = {-v.x, -v.y};
    std::swap(t0, t1);
    t0 = -t0;
    t1 = -t1;
  }
  const double ts = 0.5 * std::atan2(2 * (u.x * v.x + u.y * v.y), (u.x * u.x + u.y * u.y) - (v.x * v.x + v.y * v.y));
  const double c = std::cos(ts), s = std::sin(ts);
  const V2 a1 = {u.x * c + v.x * s, u.y * c + v.y * s};
  const V2 a2 = {-u.x * s + v.x * c, -u.y * s + v.y * c};
  TDxfEllipse e;
  e.centre = centre;
  e.axis = a1;
  const double a = std::hypot(a1.x, a1.y);
  e.ratio = a > 0 ? std::hypot(a2.x, a2.y) / a : 0;
  e.t0 = t0 - ts;
  e.t1 = t1 - ts;
  return e;
}

struct TStyle {
  TColor color = clBlack;
  std::int32_t width = 1;
};

class TShapeBuilder {
 public:
  TShapeBuilder(TMyCAD& cad, const TDxfFile& file, const TDxfImportOptions& options, TDxfImportSummary& summary)
      : cad_(cad), file_(file), options_(options), summary_(summary) {
    const double scale = MillimetresPerUnit(file.insUnits) * options.Scale;
    root_ = ScaleBy(scale, scale);
    map_.top = options.OffsetY;
    for (std::size_t i = 0; i < file.blocks.size(); ++i) blocks_.emplace(file.blocks[i].name, i);
    for (const TLayerDef& l : file.layers) layerColors_.emplace(l.name, l.trueColor >= 0 ? l.trueColor : AciToRgb(l.color));
  }

  // Every model-space entity as shapes; Groups gets one list per top-level
  // insert when the options ask for groups.
  void Build(std::vector<std::unique_ptr<TMyShape>>& shapes, std::vector<std::pair<std::size_t, std::size_t>>& groups) {
    shapes_ = &shapes;
    for (const TEntity& e : file_.entities) {
      const std::size_t first = shapes.size();
      Entity(e, root_, {}, 0);
      if (options_.GroupInserts && e.kind == ekInsert && shapes.size() - first > 1) groups.push_back({first, shapes.size()});
    }
  }

 private:
  void Entity(const TEntity& e, const TAffine& t, const TStyle& blockStyle, std::int32_t depth) {
    const TStyle style = StyleOf(e, blockStyle);
    const TAffine m = e.mirrored ? t.Then(ScaleBy(-1, 1)) : t;
    switch (e.kind) {
      case ekLine: {
        const std::array<V2, 2> ends = {m(e.p[0]), m(e.p[1])};
        Add("TMyLine", ends, e, style);
        break;
      }
      case ekPolyline:
      case ekLwPolyline: Polyline(e, m, style); break;
      case ekSolid: Solid(e, m, style); break;
      case ekCircle:
        Ellipse(EllipseFromConjugates(m(e.p[0]), m.Linear({e.g40, 0}), m.Linear({0, e.g40}), 0, 2 * kPi), e, style);
        break;
      case ekArc: {
        double t1 = e.g51 * kPi / 180, t0 = e.g50 * kPi / 180;
        while (t1 <= t0) t1 += 2 * kPi;
        Ellipse(EllipseFromConjugates(m(e.p[0]), m.Linear({e.g40, 0}), m.Linear({0, e.g40}), t0, t1), e, style);
        break;
      }
      case ekEllipse: {
        const V2 u = e.p[1], v = {-u.y * e.g40, u.x * e.g40};
        double t0 = e.has41 ? e.g41 : 0, t1 = e.has42 ? e.g42 : 2 * kPi;
        while (t1 <= t0) t1 += 2 * kPi;
        Ellipse(EllipseFromConjugates(m(e.p[0]), m.Linear(u), m.Linear(v), t0, t1), e, style);
        break;
      }
      case ekPoint: Point(m(e.p[0]), e, style); break;
      case ekSpline: Spline(e, m, style); break;
      case ekText:
      case ekMText: Text(e, m, style); break;
      case ekInsert: Insert(e, t, style, depth); break;
      case ekOther: Skip(e.name); break;
    }
  }

  TStyle StyleOf(const TEntity& e, const TStyle& blockStyle) const {
    TStyle s;
    if (e.trueColor >= 0) s.color = RgbToTColor(e.trueColor);
    else if (e.color == 0) s.color = blockStyle.color;
    else if (e.color == 256 || e.color < 0 || e.color > 255) s.color = RgbToTColor(LayerColor(e.layer));
    else s.color = RgbToTColor(AciToRgb(e.color));
    if (e.lineWeight > 0)
      s.width = std::max<std::int32_t>(1, static_cast<std::int32_t>(std::nearbyint(e.lineWeight / 100.0 * kDxfPixelsPerMm)));
    return s;
  }

  std::int32_t LayerColor(std::string_view layer) const {
    const auto it = layerColors_.find(layer);
    return it == layerColors_.end() ? 0 : it->second;
  }

  V2 Pt(const TAffine& m, V2 p) const { return m(p); }

  void Polyline(const TEntity& e, const TAffine& m, const TStyle& style) {
    const bool closed = e.flags & 1;
    if (e.kind == ekPolyline && (e.flags & (16 | 64))) return Skip("POLYLINE (mesh)");
    // One buffer for every polyline keeps the import free of per-entity
    // allocations besides the shapes.
    std::vector<V2>& points = scratch_;
    points.clear();
    const std::uint32_t n = e.vertices.Size();
    for (std::uint32_t i = 0; i < n; ++i) {
      const TVertex& v = file_.vertices[e.vertices.begin + i];
      points.push_back(m({v.x, v.y}));
      if (v.bulge != 0 && (closed || i + 1 < n)) {
        const TVertex& w = file_.vertices[e.vertices.begin + (i + 1) % n];
        BulgePoints(m, {v.x, v.y}, {w.x, w.y}, v.bulge, points);
      }
    }
    if (points.size() < 2) return Skip(e.name);
    if (closed) points.push_back(points.front());
    Add(closed ? "TMyPolygon" : "TMyPolyLine", points, e, style);
  }

  // The inner points of the arc from A to B whose bulge is the tangent of a
  // quarter of its sweep (positive: counter-clockwise).
  void BulgePoints(const TAffine& m, V2 a, V2 b, double bulge, std::vector<V2>& out) const {
    const double sweep = 4 * std::atan(bulge);
    const double chord = std::hypot(b.x - a.x, b.y - a.y);
    if (chord == 0) return;
    const double radius = chord / (2 * std::sin(std::abs(sweep) / 2));
    // The centre lies left of A->B for a counter-clockwise sweep, on the far
    // side of the chord when the sweep passes half a turn.
    const double d = (sweep > 0 ? 1 : -1) * radius * std::cos(sweep / 2);
    const V2 centre = {(a.x + b.x) / 2 - d * (b.y - a.y) / chord, (a.y + b.y) / 2 + d * (b.x - a.x) / chord};
    TDxfEllipse arc;
    arc.centre = centre;
    arc.axis = {radius, 0};
    const double start = std::atan2(a.y - centre.y, a.x - centre.x);
    arc.t0 = std::min(start, start + sweep);
    arc.t1 = std::max(start, start + sweep);
    std::vector<V2> samples = arc.Sample();
    if (sweep < 0) std::reverse(samples.begin(), samples.end());
    for (std::size_t i = 1; i + 1 < samples.size(); ++i) out.push_back(m(samples[i]));
  }

  void Solid(const TEntity& e, const TAffine& m, const TStyle& style) {
    std::array<V2, 5> points = {m(e.p[0]), m(e.p[1]), m(e.p[3]), m(e.p[2])};
    const bool triangle = e.p[3].x == e.p[2].x && e.p[3].y == e.p[2].y;
    const std::size_t corners = triangle ? 3 : 4;
    points[corners] = points[0];
    TMyShape* s = Add("TMyPolygon", std::span<const V2>(points.data(), corners + 1), e, style);
    s->Brush().SetColor(style.color);
  }

  // A full ellipse is a TMyEllipse, a piece a TMyElliArc, both in the frame
  // of the ellipse's axes (see ArcEllipse for the arc's points).
  void Ellipse(const TDxfEllipse& e, const TEntity& entity, const TStyle& style) {
    const V2 a1 = e.axis, a2 = {-e.axis.y * e.ratio, e.axis.x * e.ratio};
    const V2 c = e.centre;
    const bool full = e.Full();
    const std::array<V2, 6> frame = {V2{c.x - a1.x + a2.x, c.y - a1.y + a2.y},
                                     V2{c.x + a1.x + a2.x, c.y + a1.y + a2.y},
                                     V2{c.x + a1.x - a2.x, c.y + a1.y - a2.y},
                                     V2{c.x - a1.x - a2.x, c.y - a1.y - a2.y},
                                     full ? V2{} : e.At(e.t1), full ? V2{} : e.At(e.t0)};
    // The frame's first side runs along the axis; on the screen (y down) its
    // angle is the mirror of the DXF one.
    const float angle = static_cast<float>(-std::atan2(a1.y, a1.x));
    TMyShape* s = Add(full ? "TMyEllipse" : "TMyElliArc", std::span<const V2>(frame.data(), full ? 4 : 6), entity,
                      style, angle);
    if (auto* arc = dynamic_cast<TMyElliArc*>(s)) arc->SetArcMode(std::abs(e.ratio - 1) < 1e-9 ? amCircle : amEllipse);
  }

  void Point(V2 p, const TEntity& e, const TStyle& style) {
    const double r = 2 / kDxfPixelsPerMm;
    const std::array<V2, 4> frame = {V2{p.x - r, p.y + r}, V2{p.x + r, p.y + r}, V2{p.x + r, p.y - r}, V2{p.x - r, p.y - r}};
    Add("TMyLinkPoint", frame, e, style);
  }

  // A clamped cubic whose inner knots come in threes is a Bezier chain and
  // stays one; any other spline is traced through de Boor's evaluation.
  void Spline(const TEntity& e, const TAffine& m, const TStyle& style) {
    const std::uint32_t n = e.vertices.Size();
    const std::int32_t degree = e.flags2 > 0 ? e.flags2 : 3;
    const double* k = file_.knots.data() + e.knots.begin;
    const bool knotsFit = n > static_cast<std::uint32_t>(degree) && e.knots.Size() == n + degree + 1 && degree <= 10;
    if (!knotsFit) {
      TRange points = e.fitPoints.Size() >= 2 ? e.fitPoints : e.vertices;
      if (points.Size() < 2) return Skip(e.name);
      std::vector<V2> line;
      for (std::uint32_t i = points.begin; i < points.end; ++i) line.push_back(m({file_.vertices[i].x, file_.vertices[i].y}));
      Add("TMyPolyLine", line, e, style);
      return;
    }
    std::vector<V2> control;
    for (std::uint32_t i = 0; i < n; ++i) control.push_back(m({file_.vertices[e.vertices.begin + i].x, file_.vertices[e.vertices.begin + i].y}));
    if (degree == 3 && !e.rational && IsBezierChain(k, n)) {
      Add("TMyPolyBezier", control, e, style);
      return;
    }
    std::vector<V2> line;
    for (std::uint32_t span = degree; span < n; ++span) {
      if (k[span + 1] <= k[span]) continue;
      const std::int64_t steps = SplineSteps(control, span, degree);
      for (std::int64_t i = (line.empty() ? 0 : 1); i <= steps; ++i)
        line.push_back(DeBoor(control, k, degree, span, k[span] + (k[span + 1] - k[span]) * i / steps));
    }
    if (line.size() < 2) return Skip(e.name);
    Add(e.flags & 1 ? "TMyPolygon" : "TMyPolyLine", line, e, style);
  }

  // Steps for one knot span: the curve's second derivative is bounded by the
  // second differences of the span's control points (times the degree's
  // factor), which bounds the chord error as for any curve.
  static std::int64_t SplineSteps(const std::vector<V2>& c, std::uint32_t span, std::int32_t p) {
    double d = 0;
    for (std::uint32_t j = span - p + 1; j < span; ++j)
      d = std::max(d, std::hypot(c[j + 1].x - 2 * c[j].x + c[j - 1].x, c[j + 1].y - 2 * c[j].y + c[j - 1].y));
    const double steps = std::ceil(std::sqrt(p * (p - 1) * d / (8 * kChordToleranceMm)));
    return std::clamp<std::int64_t>(static_cast<std::int64_t>(steps), 4, 4096);
  }

  static bool IsBezierChain(const double* k, std::uint32_t n) {
    if ((n - 1) % 3 != 0) return false;
    for (std::uint32_t i = 1; i < 4; ++i)
      if (k[i] != k[0] || k[n + i] != k[n]) return false;
    for (std::uint32_t i = 4; i < n; i += 3)
      if (k[i] != k[i + 1] || k[i] != k[i + 2]) return false;
    return true;
  }

  static V2 DeBoor(const std::vector<V2>& c, const double* k, std::int32_t p, std::uint32_t span, double t) {
    V2 d[11];
    for (std::int32_t j = 0; j <= p; ++j) d[j] = c[span - p + j];
    for (std::int32_t r = 1; r <= p; ++r)
      for (std::int32_t j = p; j >= r; --j) {
        const std::uint32_t i = span - p + j;
        const double den = k[i + p - r + 1] - k[i];
        const double alpha = den == 0 ? 0 : (t - k[i]) / den;
        d[j] = {(1 - alpha) * d[j - 1].x + alpha * d[j].x, (1 - alpha) * d[j - 1].y + alpha * d[j].y};
      }
    return d[p];
  }

  // Text shapes in the frame the text takes: TEXT from its base line (or
  // its alignment point), MTEXT from its attachment corner.
  void Text(const TEntity& e, const TAffine& m, const TStyle& style) {
    std::vector<std::string> lines = e.kind == ekMText ? MTextLines(e) : std::vector<std::string>{TextOf(e)};
    const double h = e.g40 > 0 ? e.g40 : 2.5;
    std::size_t longest = 1;
    for (const std::string& l : lines) longest = std::max(longest, l.size());
    const double w = e.kind == ekMText && e.g41 > 0 ? e.g41 : 0.6 * h * static_cast<double>(longest);
    const double height = h * (1.5 * static_cast<double>(lines.size()) - 0.5);
    double rotation = e.g50 * kPi / 180;
    if (e.kind == ekMText) rotation = (e.p[1].x != 0 || e.p[1].y != 0) ? std::atan2(e.p[1].y, e.p[1].x) : e.g50;
    // The frame's top-left corner relative to the anchor, in the text's own axes.
    V2 origin = {0, h};  // TEXT: above the base line
    if (e.kind == ekMText) {
      const std::int32_t attach = std::clamp(e.flags2, 1, 9) - 1;
      origin = {-w * (attach % 3) / 2, height * (attach / 3) / 2};
    } else if (e.flags3 == 1 || e.flags3 == 2) {
      origin.x = -w * e.flags3 / 2;
    }
    const V2 anchor = e.kind == ekText && (e.flags3 != 0) ? e.p[1] : e.p[0];
    const TAffine local = m.Then(Translate(anchor.x, anchor.y)).Then(Rotate(rotation)).Then(Translate(origin.x, origin.y));
    const std::vector<V2> frame = {local({0, 0}), local({w, 0}), local({w, -height}), local({0, -height})};
    const V2 side = {frame[1].x - frame[0].x, frame[1].y - frame[0].y};
    auto* text = static_cast<TMyText*>(Add("TMyText", frame, e, style, static_cast<float>(-std::atan2(side.y, side.x))));
    text->SetLines(lines);
    text->Font().SetColor(style.color);
    text->Font().SetHeight(-std::max<std::int32_t>(1, static_cast<std::int32_t>(std::nearbyint(h * m.Scale() * kDxfPixelsPerMm))));
  }

  std::string TextOf(const TEntity& e) const { return file_.text.substr(e.text.begin, e.text.Size()); }

  // MTEXT paragraphs ("\P") as lines, with inline formatting removed.
  std::vector<std::string> MTextLines(const TEntity& e) const {
    const std::string raw = TextOf(e);
    std::vector<std::string> lines(1);
    for (std::size_t i = 0; i < raw.size(); ++i) {
      const char ch = raw[i];
      if (ch == '{' || ch == '}') continue;
      if (ch != '\\' || i + 1 >= raw.size()) {
        lines.back() += ch;
        continue;
      }
      const char op = raw[++i];
      if (op == 'P') lines.emplace_back();
      else if (op == '~') lines.back() += ' ';
      else if (op == '\\' || op == '{' || op == '}') lines.back() += op;
      else if (std::string_view("ACcFfHhQTWp").find(op) != std::string_view::npos) {
        const std::size_t end = raw.find(';', i);
        i = end == std::string::npos ? raw.size() : end;
      }
    }
    return lines;
  }

  void Insert(const TEntity& e, const TAffine& t, const TStyle& style, std::int32_t depth) {
    const auto it = blocks_.find(e.block);
    if (it == blocks_.end()) return Skip("INSERT (no such block)");
    const TBlockDef& block = file_.blocks[it->second];
    if (std::find(stack_.begin(), stack_.end(), it->second) != stack_.end())
      throw EDxfError(e.line, "block \"" + std::string(block.name) + "\" inserts itself");
    if (depth >= kMaxInsertDepth)
      throw EDxfError(e.line, "blocks nested deeper than " + std::to_string(kMaxInsertDepth));
    const std::int64_t cols = std::max<std::int32_t>(1, e.flags), rows = std::max<std::int32_t>(1, e.flags2);
    if (cols * rows > kMaxInsertWork) throw EDxfError(e.line, "insert array too large");
    const double sx = e.has41 ? e.g41 : 1, sy = e.has42 ? e.g42 : 1;
    const double rotation = e.g50 * kPi / 180;
    stack_.push_back(it->second);
    for (std::int64_t row = 0; row < rows; ++row)
      for (std::int64_t col = 0; col < cols; ++col) {
        const TAffine place = Translate(e.p[0].x, e.p[0].y)
                                  .Then(Rotate(rotation))
                                  .Then(Translate(col * e.g44, row * e.g45))
                                  .Then(ScaleBy(sx, sy))
                                  .Then(Translate(-block.base.x, -block.base.y));
        const TAffine m = t.Then(e.mirrored ? ScaleBy(-1, 1).Then(place) : place);
        CountInsertWork(e, 1 + block.entities.Size());
        for (std::uint32_t i = block.entities.begin; i < block.entities.end; ++i)
          Entity(file_.blockEntities[i], m, style, depth + 1);
      }
    stack_.pop_back();
  }

  void CountInsertWork(const TEntity& insert, std::int64_t amount) {
    insertWork_ += amount;
    if (insertWork_ > kMaxInsertWork)
      throw EDxfError(insert.line, "the inserts expand to more than " + std::to_string(kMaxInsertWork) + " entities");
  }

  // Creates the shape in model coordinates (Points given in DXF space after
  // the root scale), on the entity's layer, in the entity's pen.
  TMyShape* Add(const char* className, std::span<const V2> points, const TEntity& e, const TStyle& style,
                float angle = 0) {
    std::unique_ptr<TMyShape> shape = cad_.CreateShapeByName(className);
    // Stored while the shape has no points, so that nothing is turned.
    shape->SetAngle(angle);
    shape->Points.reserve(points.size());
    for (const V2& p : points) {
      TMyPoint q = map_.ToModel(p);
      q.X += static_cast<float>(options_.OffsetX);
      shape->Points.push_back(q);
    }
    shape->CenterPoint = shape->ComputeCenterPoint(4);
    shape->TextoutPoint = shape->CenterPoint;
    shape->Pen().SetColor(style.color);
    shape->Pen().SetWidth(style.width);
    shape->Brush().SetStyle(bsClear);
    layerNames_.push_back(e.layer);
    shapes_->push_back(std::move(shape));
    return shapes_->back().get();
  }

  void Skip(std::string_view name) {
    ++summary_.SkippedTotal;
    for (auto& [kind, count] : summary_.Skipped)
      if (kind == name) {
        ++count;
        return;
      }
    summary_.Skipped.emplace_back(std::string(name), 1);
  }

 public:
  // The DXF layer of each built shape, in order.
  std::vector<std::string_view> layerNames_;

 private:
  static constexpr double kPi = std::numbers::pi;
  TMyCAD& cad_;
  const TDxfFile& file_;
  const TDxfImportOptions& options_;
  TDxfImportSummary& summary_;
  TAffine root_;
  TDxfMap map_;
  std::unordered_map<std::string_view, std::size_t> blocks_;
  std::unordered_map<std::string_view, std::int32_t> layerColors_;
  std::vector<std::size_t> stack_;
  std::vector<V2> scratch_;
  std::int64_t insertWork_ = 0;
  std::vector<std::unique_ptr<TMyShape>>* shapes_ = nullptr;
};

// Canvas layer ids for DXF layer names: an existing layer of that name, the
// current layer for "0" when the canvas has none of that name, else a new one.
class TLayerMapper {
 public:
  TLayerMapper(TMyCAD& cad, const TDxfFile& file, TDxfImportSummary& summary) : cad_(cad), summary_(summary) {
    for (const TLayerDef& l : file.layers) visible_.emplace(l.name, l.on);
  }
  std::int32_t IdOf(std::string_view name) {
    if (name.empty()) name = "0";
    const auto it = ids_.find(name);
    if (it != ids_.end()) return it->second;
    std::int32_t id = cad_.GetLayerIdByName(std::string(name));
    if (id < 0 && name == "0") id = cad_.GetCurrentLayerId();
    if (id < 0) {
      const auto v = visible_.find(name);
      id = cad_.NewLayer(std::string(name), v == visible_.end() || v->second);
      ++summary_.LayersAdded;
    }
    ids_.emplace(name, id);
    return id;
  }

 private:
  TMyCAD& cad_;
  TDxfImportSummary& summary_;
  std::unordered_map<std::string_view, bool> visible_;
  std::unordered_map<std::string_view, std::int32_t> ids_;
};

}  // namespace

TDxfImportSummary LoadDxfFromBytes(TMyCAD& cad, const char* data, std::size_t size, const TDxfImportOptions& options) {
  TDxfImportSummary summary;
  const TDxfFile file = ParseDxf(data, size);
  summary.HasExtents = file.hasExtMin && file.hasExtMax;
  summary.ExtMin[0] = file.extMin.x, summary.ExtMin[1] = file.extMin.y;
  summary.ExtMax[0] = file.extMax.x, summary.ExtMax[1] = file.extMax.y;
  std::vector<std::unique_ptr<TMyShape>> shapes;
  std::vector<std::pair<std::size_t, std::size_t>> groups;
  TShapeBuilder builder(cad, file, options, summary);
  builder.Build(shapes, groups);
  if (cad.Layers().empty()) throw EDxfError(0, "the drawing has no layer to import into");

  // Nothing below can fail: the drawing changes only from here on.
  const std::int32_t current = cad.GetCurrentLayerId();
  TLayerMapper layers(cad, file, summary);
  for (const TLayerDef& l : file.layers) layers.IdOf(l.name);
  std::vector<TMyShape*> added;
  added.reserve(shapes.size());
  for (std::size_t i = 0; i < shapes.size(); ++i) {
    TMyShape* s = shapes[i].get();
    s->LayerId = layers.IdOf(builder.layerNames_[i]);
    s->ShapeId = cad.GetNextShapeId();
    s->SetName("Shape" + std::to_string(s->ShapeId));
    s->SetCaption(s->GetName());
    cad.AddShape(std::move(shapes[i]), true, false);
    added.push_back(s);
  }
  cad.SetCurrentLayerId(current);
  for (const auto& [first, last] : groups)
    cad.GroupShapes(std::vector<TMyShape*>(added.begin() + first, added.begin() + last), false);
  summary.ShapesAdded = static_cast<std::int32_t>(shapes.size());
  cad.Invalidate();
  return summary;
}

TDxfImportSummary LoadFromDxf(TMyCAD& cad, const std::string& fileName, const TDxfImportOptions& options) {
  QFile file(QString::fromStdString(fileName));
  if (!file.open(QIODevice::ReadOnly)) throw EFOpenError("cannot open " + fileName);
  const QByteArray bytes = file.readAll();
  return LoadDxfFromBytes(cad, bytes.constData(), static_cast<std::size_t>(bytes.size()), options);
}

TDxfImportSummary LoadFromDxf(TMyCAD& cad, const std::string& fileName, double scale, double offsetX, double offsetY) {
  return LoadFromDxf(cad, fileName, TDxfImportOptions{scale, offsetX, offsetY, false});
}

}  // namespace lumatrex
