// The import's first stage: the whole file read into flat tables (entities,
// their vertices, knots and texts in shared arrays, blocks, layers, header),
// so that nothing reaches the drawing before the last line was understood.
#pragma once

#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "dxf/dxf_geometry.h"

namespace lumatrex::dxf {

enum TEntityKind : std::uint8_t {
  ekLine,
  ekArc,
  ekCircle,
  ekEllipse,
  ekLwPolyline,
  ekPolyline,
  ekSolid,  // also TRACE: four corners, the last two crossed
  ekText,
  ekMText,
  ekPoint,
  ekSpline,
  ekInsert,
  ekOther,  // counted in the summary and left out
};

struct TVertex {
  double x = 0, y = 0, bulge = 0;
};

// A range [Begin, End) in one of the shared arrays.
struct TRange {
  std::uint32_t begin = 0, end = 0;
  std::uint32_t Size() const { return end - begin; }
};

struct TEntity {
  TEntityKind kind = ekOther;
  std::string_view name;   // the DXF entity name
  std::string_view layer;  // views into the file's bytes
  std::string_view block;  // INSERT: the block's name
  std::int64_t line = 0;   // where the entity starts, for messages
  std::int32_t color = 256;  // ACI; 256 by layer, 0 by block
  std::int32_t trueColor = -1;  // 0xRRGGBB, -1 for none
  std::int32_t lineWeight = -1;  // hundredths of a millimetre; negative: default
  std::int32_t flags = 0;     // group 70
  std::int32_t flags2 = 0;    // group 71 (spline degree, insert rows, MTEXT attachment)
  std::int32_t flags3 = 0;    // group 72 (TEXT horizontal justification)
  V2 p[4];                    // groups 10-13
  double g40 = 0, g41 = 0, g42 = 0, g43 = 0, g44 = 0, g45 = 0, g50 = 0, g51 = 0;
  bool has41 = false, has42 = false;
  bool mirrored = false;      // extrusion (0, 0, -1): x runs the other way
  bool rational = false;      // a spline with weights other than 1
  TRange vertices;            // LWPOLYLINE, POLYLINE, SPLINE control points
  TRange fitPoints;           // SPLINE
  TRange knots;               // SPLINE
  TRange text;                // TEXT, MTEXT
};

struct TBlockDef {
  std::string_view name;
  V2 base;
  TRange entities;  // in TDxfFile::blockEntities
};

struct TLayerDef {
  std::string_view name;
  bool on = true;
  std::int32_t color = 7;
  std::int32_t trueColor = -1;
};

struct TDxfFile {
  std::int32_t insUnits = 0;
  bool hasExtMin = false, hasExtMax = false;
  V2 extMin, extMax;
  std::vector<TLayerDef> layers;
  std::vector<TBlockDef> blocks;
  std::vector<TEntity> entities;       // model space, in file order
  std::vector<TEntity> blockEntities;  // every block's, block after block
  std::vector<TVertex> vertices;
  std::vector<double> knots;
  std::string text;
};

// Parses the whole of Data (which must outlive the result: names are views
// into it). Throws EDxfError naming the line of the first fault.
TDxfFile ParseDxf(const char* data, std::size_t size);

}  // namespace lumatrex::dxf
