#include <algorithm>

#include "canvas/tmycad.h"
#include "shapes/connectors.h"

namespace lumatrex {

void TMyCAD::DragChangeValueDxDyforShapes(TMyShape* shape, double dx, double dy) {
  ForShapeAndMembers(shape, [dx, dy](TMyShape& s) {
    if (!s.GetLocked()) s.DragChangeValuedxdy(dx, dy);
  });
}

namespace {

// The model position a connector end bound to (Shape number, link point) should
// take, or false when the binding points nowhere.
bool BoundEnd(const TMyCAD& cad, std::int32_t shapeNo, std::int32_t linkPoint, TMyPoint& at) {
  const TMyShape* target = cad.GetShapeByNo(shapeNo);
  if (!target || linkPoint < 0 || linkPoint >= target->GetLinkPointsCount()) return false;
  at = target->GetLinkPoint(linkPoint);
  return true;
}

}  // namespace

// Only the connectors the moved shapes list in LinkLines are looked at: the
// work follows the connections, not the size of the drawing.
void TMyCAD::ChangeLinkShapes(TMyShape* shape) {
  if (!shape) return;
  const std::vector<TMyShape*> movedShapes = SubtreeOf(shape);
  std::vector<std::int32_t> moved;
  moved.reserve(movedShapes.size());
  for (const TMyShape* s : movedShapes) moved.push_back(s->ShapeNo);
  std::sort(moved.begin(), moved.end());
  auto touches = [&moved](std::int32_t no) { return std::binary_search(moved.begin(), moved.end(), no); };
  std::vector<TMyLinkLine*> done;
  for (const TMyShape* s : movedShapes)
    for (const std::uint32_t no : s->LinkLines) {
      auto* link = dynamic_cast<TMyLinkLine*>(GetShapeByNo(static_cast<std::int32_t>(no)));
      if (!link || link->GetPointsCount() < 2 || std::find(done.begin(), done.end(), link) != done.end()) continue;
      done.push_back(link);
      TMyPoint at;
      if (touches(link->GetStartSpNo()) && BoundEnd(*this, link->GetStartSpNo(), link->GetStartSpPtId(), at))
        link->SetPoint(0, at);
      if (touches(link->GetEndSpNo()) && BoundEnd(*this, link->GetEndSpNo(), link->GetEndSpPtId(), at))
        link->SetPoint(link->GetPointsCount() - 1, at);
      link->CenterPoint = link->ComputeCenterPoint(4);
      link->Changed();
    }
}

}  // namespace lumatrex
