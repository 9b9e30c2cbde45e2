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

void TMyCAD::ChangeLinkShapes(TMyShape* shape) {
  if (!shape) return;
  std::vector<std::int32_t> moved;
  for (const TMyShape* s : SubtreeOf(shape)) moved.push_back(s->ShapeNo);
  auto touches = [&moved](std::int32_t no) { return std::find(moved.begin(), moved.end(), no) != moved.end(); };
  for (const auto& candidate : shapes_) {
    auto* link = dynamic_cast<TMyLinkLine*>(candidate.get());
    if (!link || link->GetPointsCount() < 2) continue;
    TMyPoint at;
    if (touches(link->GetStartSpNo()) && BoundEnd(*this, link->GetStartSpNo(), link->GetStartSpPtId(), at))
      link->SetPoint(0, at);
    if (touches(link->GetEndSpNo()) && BoundEnd(*this, link->GetEndSpNo(), link->GetEndSpPtId(), at))
      link->SetPoint(link->GetPointsCount() - 1, at);
    link->CenterPoint = link->ComputeCenterPoint(4);
  }
}

}  // namespace lumatrex
