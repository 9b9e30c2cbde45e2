// The records of the canvas's undo history.
//
// A step is a run of records sharing one step number. Each record holds a
// detached copy of one shape as it was when the step was taken, the shape's
// name, and the action the step performed; taking the step back performs the
// inverse of that action (TMyCAD::PopFromUndoRedoShapeList). Actions are
// compared as exact strings, the constants below.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <string>

#include "shapes/shape.h"

namespace lumatrex {

// Undo removes the added shape.
inline constexpr const char* ACT_ADD = "ACT_ADD";
// Undo copies the saved state back into the live shape.
inline constexpr const char* ACT_CHANGE = "ACT_CHANGE";
// Undo re-creates the shape, at the front and with its connectors detached.
inline constexpr const char* ACT_DELETE = "ACT_DELETE";
// Undo ungroups the group.
inline constexpr const char* ACT_GROUP = "ACT_GROUP";
// Undo groups the former members again under the old group's state.
inline constexpr const char* ACT_UNGROUP = "ACT_UNGROUP";
// The z-order inverses are coarse: undoing a bring-to-front sends the shape
// all the way to the back, not to its former place.
inline constexpr const char* ACT_BRINGTOFRONT = "ACT_BRINGTOFRONT";
inline constexpr const char* ACT_SENDTOBACK = "ACT_SENDTOBACK";
inline constexpr const char* ACT_BRINGTOFRONTBYSTEP = "ACT_BRINGTOFRONTBYSTEP";
inline constexpr const char* ACT_SENDTOBACKBYSTEP = "ACT_SENDTOBACKBYSTEP";

// State of one shape that its Assign does not copy (Visible, the enable
// switches, ...), kept by a recorder whose change may touch it, such as an
// inspector edit. Undo of a change puts it back on the live shape after
// assigning the saved copy.
using TKeptState = std::function<void(TMyShape& live)>;
// Captures a shape's kept state as the shape is recorded.
using TStateKeeper = std::function<TKeptState(const TMyShape& shape)>;

// One history record.
struct TSavedShape {
  // Step number; 0 is the oldest kept step.
  std::int32_t UndoStep = 0;
  // The shape's name when recorded, cut to its first 255 bytes.
  std::string ShapeName;
  // A copy of the shape's whole state, owned here, with an empty link-line
  // list. Its ShapeId names the live shape the inverse acts on; its list
  // positions are those of recording time.
  std::unique_ptr<TMyShape> SavedShape;
  std::string ActionName;
  // Empty unless the recorder asked for more than the copy holds.
  TKeptState KeptState;
};

}  // namespace lumatrex
