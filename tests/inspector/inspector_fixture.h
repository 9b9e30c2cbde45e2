// A canvas with shapes for the inspector tests.
#pragma once

#include <cstdint>

#include "canvas/tmycad.h"

namespace lumatrex::test {

inline TMyShape* AddShape(TMyCAD& cad, const char* className, float left = 0) {
  return cad.AddShapeByCode2(className, "", {{left, 0}, {left + 10, 0}, {left + 10, 10}, {left, 10}}, 0);
}

inline std::int32_t UndoSteps(const TMyCAD& cad) {
  const auto& list = cad.GetUndoRedoShapeList();
  return list.empty() ? 0 : list.back().UndoStep + 1;
}

}  // namespace lumatrex::test
