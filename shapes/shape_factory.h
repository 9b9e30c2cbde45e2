// Creating shapes by the names drawing files and libraries use, and by the
// drawing tool the user chose.
#pragma once

#include <memory>
#include <string>

#include "shapes/shape.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

// A new, empty shape of the class named ClassName (surrounding spaces and
// control characters are ignored, so the space-padded class tags of drawing
// files can be passed as read), owned by
// Owner (may be null). Every kind, TMyGroup and TMyCombine included, is
// created as its own class; an unknown name gives nullptr.
std::unique_ptr<TMyShape> CreateShapeByClassName(const std::string& className, TMyShapeOwner* owner);

// A new, empty shape for a drawing tool (SpLine gives a TMyLine, SpBLine a
// TMyBLine, ...); nullptr for the tools that draw nothing (SpSelecting,
// SpClose, SpDragWhole, ...).
std::unique_ptr<TMyShape> CreateShapeByDrawTool(TDrawTool tool, TMyShapeOwner* owner);

}  // namespace lumatrex
