#include "dxf/dxf_parse.h"

#include <string>

#include "dxf/dxf.h"
#include "dxf/dxf_reader.h"

namespace lumatrex::dxf {

namespace {

TEntityKind KindOf(std::string_view name) {
  if (name == "LINE") return ekLine;
  if (name == "ARC") return ekArc;
  if (name == "CIRCLE") return ekCircle;
  if (name == "ELLIPSE") return ekEllipse;
  if (name == "LWPOLYLINE") return ekLwPolyline;
  if (name == "POLYLINE") return ekPolyline;
  if (name == "SOLID" || name == "TRACE") return ekSolid;
  if (name == "TEXT") return ekText;
  if (name == "MTEXT") return ekMText;
  if (name == "POINT") return ekPoint;
  if (name == "SPLINE") return ekSpline;
  if (name == "INSERT") return ekInsert;
  return ekOther;
}

class TParser {
 public:
  TParser(const char* data, std::size_t size) : r_(data, size) {}

  TDxfFile Parse() {
    Advance();
    while (!At("EOF")) {
      if (!At("SECTION")) r_.Fail("SECTION or EOF expected, found \"" + std::string(r_.Value().substr(0, 40)) + "\"");
      Advance();
      if (r_.Code() != 2) r_.Fail("section name (group code 2) expected");
      const std::string_view name = r_.Value();
      Advance();
      if (name == "HEADER") Header();
      else if (name == "TABLES") Tables();
      else if (name == "BLOCKS") Blocks();
      else if (name == "ENTITIES") Entities(file_.entities, "ENDSEC");
      else SkipTo("ENDSEC");
      Advance();
    }
    return std::move(file_);
  }

 private:
  // The next pair; running out of lines before EOF means the file was cut.
  void Advance() {
    if (!r_.Next()) r_.Fail("unexpected end of file (truncated: no EOF)");
  }
  bool At(std::string_view entity) const { return r_.Code() == 0 && r_.Value() == entity; }
  void SkipTo(std::string_view entity) {
    while (!At(entity)) Advance();
  }
  std::int32_t Int32() const {
    const std::int64_t v = r_.Integer();
    if (v < INT32_MIN || v > INT32_MAX) r_.Fail("integer out of range");
    return static_cast<std::int32_t>(v);
  }
  std::uint32_t Index(std::size_t size) const {
    if (size >= UINT32_MAX) r_.Fail("too many values");
    return static_cast<std::uint32_t>(size);
  }

  void Header() {
    std::string_view variable;
    while (!At("ENDSEC")) {
      if (r_.Code() == 9) variable = r_.Value();
      else if (variable == "$INSUNITS" && r_.Code() == 70) file_.insUnits = Int32();
      else if (variable == "$EXTMIN" && (r_.Code() == 10 || r_.Code() == 20)) {
        (r_.Code() == 10 ? file_.extMin.x : file_.extMin.y) = r_.Number();
        file_.hasExtMin = true;
      } else if (variable == "$EXTMAX" && (r_.Code() == 10 || r_.Code() == 20)) {
        (r_.Code() == 10 ? file_.extMax.x : file_.extMax.y) = r_.Number();
        file_.hasExtMax = true;
      }
      Advance();
    }
  }

  void Tables() {
    while (!At("ENDSEC")) {
      if (At("LAYER")) Layer();
      else Advance();
    }
  }

  void Layer() {
    TLayerDef layer;
    for (Advance(); r_.Code() != 0; Advance()) {
      switch (r_.Code()) {
        case 2: layer.name = r_.Value(); break;
        case 62: layer.color = Int32(); break;
        case 70: if (Int32() & 1) layer.on = false; break;  // frozen
        case 420: layer.trueColor = Int32() & 0xFFFFFF; break;
        default: break;
      }
    }
    if (layer.color < 0) {
      layer.on = false;
      layer.color = -layer.color;
    }
    if (!layer.name.empty()) file_.layers.push_back(layer);
  }

  void Blocks() {
    while (!At("ENDSEC")) {
      if (!At("BLOCK")) {
        Advance();
        continue;
      }
      TBlockDef block;
      for (Advance(); r_.Code() != 0; Advance()) {
        if (r_.Code() == 2) block.name = r_.Value();
        else if (r_.Code() == 10) block.base.x = r_.Number();
        else if (r_.Code() == 20) block.base.y = r_.Number();
      }
      block.entities.begin = Index(file_.blockEntities.size());
      Entities(file_.blockEntities, "ENDBLK");
      block.entities.end = Index(file_.blockEntities.size());
      file_.blocks.push_back(block);
      for (Advance(); r_.Code() != 0; Advance()) {
      }
    }
  }

  // Entities up to the pair "0 Stop", which stays current.
  void Entities(std::vector<TEntity>& out, std::string_view stop) {
    while (!At(stop)) {
      if (r_.Code() != 0) r_.Fail("entity (group code 0) expected");
      if (At("ENDSEC") || At("EOF")) r_.Fail(std::string(stop) + " expected");
      // Attributes and the end of their sequence belong to the insert before.
      if (At("SEQEND") || At("ATTRIB")) {
        SkipEntity();
        continue;
      }
      out.push_back(Entity());
    }
  }

  void SkipEntity() {
    for (Advance(); r_.Code() != 0; Advance()) {
    }
  }

  TEntity Entity() {
    TEntity e;
    e.name = r_.Value();
    e.kind = KindOf(e.name);
    e.line = r_.Line();
    e.vertices.begin = e.vertices.end = Index(file_.vertices.size());
    e.knots.begin = Index(file_.knots.size());
    e.text.begin = e.text.end = Index(file_.text.size());
    std::vector<TVertex>& vertices = file_.vertices;
    const std::size_t fitStart = fit_.size();
    for (Advance(); r_.Code() != 0; Advance()) {
      const int code = r_.Code();
      if (code == 8) e.layer = r_.Value();
      else if (code == 62) e.color = Int32();
      else if (code == 420) e.trueColor = Int32() & 0xFFFFFF;
      else if (code == 370) e.lineWeight = Int32();
      else if (code == 70) e.flags = Int32();
      else if (code == 71) e.flags2 = Int32();
      else if (code == 72) e.flags3 = Int32();
      else if (code == 230) e.mirrored = r_.Number() < 0;
      else if (code == 2) e.block = r_.Value();
      else if ((code == 1 || code == 3) && (e.kind == ekText || e.kind == ekMText)) file_.text.append(r_.Value());
      else if (code == 10 && (e.kind == ekLwPolyline || e.kind == ekSpline)) vertices.push_back({r_.Number(), 0, 0});
      else if (code == 20 && (e.kind == ekLwPolyline || e.kind == ekSpline) && vertices.size() > e.vertices.begin)
        vertices.back().y = r_.Number();
      else if (code == 42 && e.kind == ekLwPolyline && vertices.size() > e.vertices.begin)
        vertices.back().bulge = r_.Number();
      else if (code == 11 && e.kind == ekSpline) fit_.push_back({r_.Number(), 0, 0});
      else if (code == 21 && e.kind == ekSpline && fit_.size() > fitStart) fit_.back().y = r_.Number();
      else if (code == 40 && e.kind == ekSpline) file_.knots.push_back(r_.Number());
      else if (code == 41 && e.kind == ekSpline) e.rational |= r_.Number() != 1;
      else if (code >= 10 && code <= 13) e.p[code - 10].x = r_.Number();
      else if (code >= 20 && code <= 23) e.p[code - 20].y = r_.Number();
      else if (code == 40) e.g40 = r_.Number();
      else if (code == 41) e.g41 = r_.Number(), e.has41 = true;
      else if (code == 42) e.g42 = r_.Number(), e.has42 = true;
      else if (code == 43) e.g43 = r_.Number();
      else if (code == 44) e.g44 = r_.Number();
      else if (code == 45) e.g45 = r_.Number();
      else if (code == 50) e.g50 = r_.Number();
      else if (code == 51) e.g51 = r_.Number();
    }
    e.vertices.end = Index(vertices.size());
    e.text.end = Index(file_.text.size());
    if (e.kind == ekSpline) {
      // Fit points follow the control points in the shared vertex array.
      e.fitPoints.begin = Index(vertices.size());
      vertices.insert(vertices.end(), fit_.begin() + static_cast<std::ptrdiff_t>(fitStart), fit_.end());
      e.fitPoints.end = Index(vertices.size());
      fit_.resize(fitStart);
    }
    e.knots.end = Index(file_.knots.size());
    if (e.kind == ekPolyline) PolylineVertices(e);
    return e;
  }

  // The VERTEX entities of an old-style POLYLINE, up to its SEQEND. Spline
  // frame points (flag 16) are construction points, not part of the line.
  void PolylineVertices(TEntity& e) {
    e.vertices.begin = Index(file_.vertices.size());
    while (At("VERTEX")) {
      TVertex v;
      std::int32_t flags = 0;
      for (Advance(); r_.Code() != 0; Advance()) {
        if (r_.Code() == 10) v.x = r_.Number();
        else if (r_.Code() == 20) v.y = r_.Number();
        else if (r_.Code() == 42) v.bulge = r_.Number();
        else if (r_.Code() == 70) flags = Int32();
      }
      if (!(flags & 16)) file_.vertices.push_back(v);
    }
    if (!At("SEQEND")) r_.Fail("SEQEND expected after the vertices of the POLYLINE");
    SkipEntity();
    e.vertices.end = Index(file_.vertices.size());
  }

  TDxfReader r_;
  TDxfFile file_;
  std::vector<TVertex> fit_;
};

}  // namespace

TDxfFile ParseDxf(const char* data, std::size_t size) { return TParser(data, size).Parse(); }

}  // namespace lumatrex::dxf
