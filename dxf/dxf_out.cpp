#include "dxf/dxf_out.h"

#include <cmath>

namespace lumatrex::dxf {

void AppendNumber(std::string& out, double v) {
  // -0 and values a corrupt shape may hold are written as 0, which every
  // reader accepts.
  if (v == 0 || !std::isfinite(v)) v = 0;
  char buf[32];
  const auto r = std::to_chars(buf, buf + sizeof buf, v, std::chars_format::general, 15);
  out.append(buf, r.ptr);
}

}  // namespace lumatrex::dxf
