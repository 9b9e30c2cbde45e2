// Joining a newly drawn line to the free ends it meets. People drawing
// connected line work end a line where another starts; without the join they
// get loose pieces that move and select apart. The drawn line (or poly-line)
// and every plain line or poly-line whose free end lies within HotSize device
// pixels of its start or end, on the same layer, become one poly-line, in one
// undo step. Shift held while releasing the button draws a loose line.
#include <algorithm>
#include <cmath>
#include <cstring>

#include "canvas/tmycad.h"

namespace lumatrex {

namespace {

// Plain lines and poly-lines only: connectors, curves and free-hand strokes
// keep their own meaning and are never joined.
bool IsJoinableKind(const TMyShape& shape) {
  return std::strcmp(shape.ClassName(), "TMyLine") == 0 || std::strcmp(shape.ClassName(), "TMyPolyLine") == 0;
}

}  // namespace

bool TMyCAD::EndsMeet(const TMyPoint& a, const TMyPoint& b) const {
  const double reach = hotSize_ / zoom_;  // HotSize is in device pixels
  return std::fabs(a.X - b.X) <= reach && std::fabs(a.Y - b.Y) <= reach;
}

TMyShape* TMyCAD::GetMergeShape(const TMyShape& drawn, const TMyPoint& end, bool& atStart) const {
  // Bounded by the shape count: a join is looked for once per drawn line.
  for (const auto& candidate : shapes_) {
    const TMyShape& s = *candidate;
    // The drawn line is not added yet: it will go to the current layer.
    if (&s == &drawn || !IsJoinableKind(s) || s.LayerId != currentLayerId_ || s.HasParentShape() ||
        s.GetLocked() || !s.LinkLines.empty() || s.Points.size() < 2)
      continue;
    atStart = EndsMeet(s.Points.front(), end);
    if (atStart || EndsMeet(s.Points.back(), end)) return candidate.get();
  }
  return nullptr;
}

std::unique_ptr<TMyShape> TMyCAD::CreateAndDelete(const TMyShape& drawn) {
  if (!IsJoinableKind(drawn) || drawn.Points.size() < 2) return nullptr;
  TArrMyPoint points = drawn.Points;
  std::vector<TMyShape*> pieces;
  for (const bool front : {true, false}) {
    bool atStart = false;
    TMyShape* piece = GetMergeShape(drawn, front ? points.front() : points.back(), atStart);
    if (!piece || std::find(pieces.begin(), pieces.end(), piece) != pieces.end()) continue;
    // The piece goes before the drawn points ending at the shared end, or
    // after them starting there: turned round when it runs the other way. The
    // piece's end point stands for the drawn one it met.
    TArrMyPoint extra = piece->Points;
    if (atStart == front) std::reverse(extra.begin(), extra.end());
    if (front) {
      points.erase(points.begin());
      points.insert(points.begin(), extra.begin(), extra.end());
    } else {
      points.pop_back();
      points.insert(points.end(), extra.begin(), extra.end());
    }
    pieces.push_back(piece);
  }
  if (pieces.empty()) return nullptr;
  std::unique_ptr<TMyShape> joined = CreateShapeByName("TMyPolyLine");
  joined->AssignWithoutRelation(drawn);
  joined->Points = points;
  PushtoUndoRedoShapeList(pieces, ACT_DELETE);
  for (TMyShape* piece : pieces) DeleteShapeById(piece->ShapeId, false);
  return joined;
}

void TMyCAD::JoinNewestUndoSteps() {
  if (undoList_.empty() || undoList_.front().UndoStep == undoList_.back().UndoStep) return;
  const std::int32_t newest = undoList_.back().UndoStep;
  for (auto it = undoList_.rbegin(); it != undoList_.rend() && it->UndoStep == newest; ++it) --it->UndoStep;
}

}  // namespace lumatrex
