// TMyPolyBezier: a chain of cubic Bezier pieces over the shape's points
// (start, two control points, end, then two control points and an end for
// every further piece). Drawing files store the shape base record only.
//
// The class is complete for storing, copying and reading. How the chain
// draws, is hit and is edited is later work: until then Draw and the other
// virtual operations keep the shape base's behaviour (Draw paints only the
// info text).
#pragma once

#include "shapes/shape.h"

namespace lumatrex {

class TMyPolyBezier : public TMyShape {
  Q_OBJECT

 public:
  explicit TMyPolyBezier(TMyShapeOwner* owner) : TMyShape(owner) {}
  const char* ClassName() const override { return "TMyPolyBezier"; }
};

}  // namespace lumatrex
