// DXF exchange of a canvas's drawing with CAD programs.
//
// Units: shapes hold model coordinates (drawing pixels at zoom 1, y down);
// DXF files hold millimetres (96 pixels per inch, 25.4 mm per inch) with y up.
// Zoom never reaches a file. Angles in DXF files are degrees counter-clockwise
// in the y-up system, which is counter-clockwise as seen on the screen too.
#pragma once

#include <cstdint>
#include <stdexcept>
#include <string>
#include <vector>

namespace lumatrex {

class TMyCAD;

// Pixels per millimetre at 96 pixels per inch.
inline constexpr double kDxfPixelsPerMm = 3.779527559055118;

// ==== export ===============================================================

// The minimal file other CAD programs open: only an ENTITIES section, every
// entity on layer "0", handles counted in decimal from 20, y measured up from
// the control's current height. Shapes are chosen by exact class name; kinds
// without a DXF form (images, groups, link points, measuring lines) are left
// out. Replaces FileName atomically; throws EFOpenError or EWriteError.
void SaveToDxf1(const TMyCAD& cad, const std::string& fileName);
// The same file as text.
std::string DxfText1(const TMyCAD& cad);

// What the full export could not carry, one line each ("image Shape4 left
// out: ..."); empty when everything was written.
using TDxfWarnings = std::vector<std::string>;

// A complete AC1015 drawing in millimetres ($INSUNITS 4) with the drawing's
// extents, a layer per canvas layer (hidden layers off), line types, true
// colours and line weights from the pens, native curves, text as MTEXT, solid
// hatches under filled closed shapes and a block with one insert per group.
// y is measured up from the top of the drawing's shapes' extent, so the file
// does not depend on the control's size. Images are left out with a warning.
// Replaces FileName atomically; throws EFOpenError or EWriteError.
TDxfWarnings SaveToDxf(const TMyCAD& cad, const std::string& fileName);
std::string DxfText(const TMyCAD& cad, TDxfWarnings* warnings = nullptr);

// ==== import ===============================================================

// A file that cannot be read: the message names the line (1-based) and what
// was expected there.
class EDxfError : public std::runtime_error {
 public:
  EDxfError(std::int64_t line, const std::string& what);
  std::int64_t Line() const { return line_; }

 private:
  std::int64_t line_;
};

struct TDxfImportOptions {
  // Applied after the file's units are turned into millimetres: model =
  // (mm x Scale + Offset) in pixels, y turned down.
  double Scale = 1.0;
  double OffsetX = 0.0;
  double OffsetY = 0.0;
  // Each top-level insert becomes a TMyGroup instead of loose shapes.
  bool GroupInserts = false;
};

struct TDxfImportSummary {
  std::int32_t ShapesAdded = 0;
  std::int32_t LayersAdded = 0;
  // Entities of kinds the import does not take, by DXF name, and the sum.
  std::vector<std::pair<std::string, std::int32_t>> Skipped;
  std::int32_t SkippedTotal = 0;
  // $EXTMIN and $EXTMAX of the header in the file's units, when present.
  bool HasExtents = false;
  double ExtMin[2] = {0, 0};
  double ExtMax[2] = {0, 0};
};

// Reads an ASCII DXF (R12 to current) and adds its entities as shapes: each on
// the canvas layer of its DXF layer's name (created when missing, visible when
// the DXF layer is on), inserts exploded with their blocks (or grouped),
// colours by entity or layer. Everything is parsed before the drawing is
// touched: on EDxfError the canvas is unchanged. Binary DXF is refused with
// EDxfError, and so are blocks inserting themselves, nesting deeper than 32,
// and inserts expanding to more than 4 million entities. Throws EFOpenError
// when the file cannot be read. The drawing's origin is the DXF origin with
// y negated (before Offset), as the full export writes it.
TDxfImportSummary LoadFromDxf(TMyCAD& cad, const std::string& fileName, double scale = 1.0, double offsetX = 0.0,
                              double offsetY = 0.0);
TDxfImportSummary LoadFromDxf(TMyCAD& cad, const std::string& fileName, const TDxfImportOptions& options);
// The same from bytes in memory.
TDxfImportSummary LoadDxfFromBytes(TMyCAD& cad, const char* data, std::size_t size,
                                   const TDxfImportOptions& options = {});

}  // namespace lumatrex
