// Feeds arbitrary bytes to the DXF parser, the stage of the import that reads
// outside data: it must either refuse them with EDxfError or return tables
// whose ranges all lie inside their shared arrays.
#include <cstdint>

#include "check.h"
#include "dxf/dxf.h"
#include "dxf/dxf_parse.h"

namespace {

using namespace lumatrex::dxf;
using lumatrex::fuzz::Check;

void CheckEntity(const TDxfFile& file, const TEntity& e) {
  Check(e.vertices.begin <= e.vertices.end && e.vertices.end <= file.vertices.size());
  Check(e.fitPoints.begin <= e.fitPoints.end && e.fitPoints.end <= file.vertices.size());
  Check(e.knots.begin <= e.knots.end && e.knots.end <= file.knots.size());
  Check(e.text.begin <= e.text.end && e.text.end <= file.text.size());
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  TDxfFile file;
  try {
    file = ParseDxf(reinterpret_cast<const char*>(data), size);
  } catch (const lumatrex::EDxfError& e) {
    Check(e.Line() >= 0);
    return 0;
  }
  for (const TEntity& e : file.entities) CheckEntity(file, e);
  for (const TEntity& e : file.blockEntities) CheckEntity(file, e);
  for (const TBlockDef& b : file.blocks) Check(b.entities.begin <= b.entities.end && b.entities.end <= file.blockEntities.size());
  return 0;
}
