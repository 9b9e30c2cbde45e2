// The composite kinds: TMyGroup (shapes kept together; its members are the
// list positions in ChildShapes and point back through ParentId) and
// TMyCombine (members joined into one figure). Both are frames around their
// members and store the shape base record only.
//
// The classes are complete for storing, copying and reading. Grouping,
// combining and how the composites draw and edit are later work: until then
// both behave as their rectangle frame.
#pragma once

#include "shapes/closed_shapes.h"

namespace lumatrex {

class TMyGroup : public TMyRectangle {
  Q_OBJECT

 public:
  using TMyRectangle::TMyRectangle;
  const char* ClassName() const override { return "TMyGroup"; }
};

class TMyCombine : public TMyRectangle {
  Q_OBJECT

 public:
  using TMyRectangle::TMyRectangle;
  const char* ClassName() const override { return "TMyCombine"; }
};

}  // namespace lumatrex
