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
#include <utility>
#include <vector>

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
  // What the record holds in memory, estimated when it is made; the history
  // is bounded by the sum (TMyCAD::SetUndoMemoryLimit).
  std::int64_t Bytes = 0;
};

// An undone step kept for redo: the records themselves, to be put back on
// the history, and the document as it was before the undo. The shapes the
// undo could touch are copied; Order holds every shape object of the list
// at its place (those the undo removed are kept in Removed), so the redo
// puts the very same objects back and other redo steps' references stay
// good. Copies keep their relations as they were, since the redo puts every
// shape back at its old place.
struct TRedoStep {
  std::vector<TSavedShape> Records;
  std::vector<TMyShape*> Order;
  std::vector<std::unique_ptr<TMyShape>> Removed;
  // Each copy with the place of its shape in Order.
  std::vector<std::pair<std::int32_t, std::unique_ptr<TMyShape>>> Copies;
  // The undo kept the list as it was (a change step): Order stays empty
  // and the copies' states go back into the live shapes at their places.
  bool InPlace = false;
  std::int32_t NextShapeId = 0;
  std::int64_t Bytes = 0;
};

// The step number of the newest record; -1 for an empty history.
std::int32_t NewestStep(const std::vector<TSavedShape>& list);
// Removes the records of the oldest step and numbers the others one lower.
void DropOldestStep(std::vector<TSavedShape>& list);
// Appends Records to List as its newest step, after dropping the oldest step
// when List already holds Steps of them.
void AppendStep(std::vector<TSavedShape>& list, std::vector<TSavedShape> records, std::int32_t steps);

// An estimate of the memory a detached shape copy holds: its points,
// relations, texts, pictures and a fixed part for the object, pen, brush
// and font.
std::int64_t ApproxShapeBytes(const TMyShape& shape);

}  // namespace lumatrex
