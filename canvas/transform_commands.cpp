// Flips and tilts of the selection, as one block about its joint centre.
#include <cmath>

#include "canvas/tmycad.h"
#include "geometry/geometry.h"
#include "shapes/groups.h"

namespace lumatrex {

namespace {

// The steepest tilt taken: tan(89 degrees) is already 57.
constexpr long double kMaxTilt = 89 * kPi / 180;

TMyPoint CentreOf(const TMyRect& r) { return {(r.Right - r.Left) / 2 + r.Left, (r.Bottom - r.Top) / 2 + r.Top}; }

}  // namespace

void TMyCAD::MapSelection(const std::function<void(TMyShape&)>& map) {
  std::vector<TMyShape*> shapes;
  for (TMyShape* s : working_)
    if (!s->GetLocked()) shapes.push_back(s);
  if (shapes.empty()) return;
  PushtoUndoRedoShapeList(shapes, ACT_CHANGE);
  // One repaint at the end, not one per flipped shape.
  BeginUpdate();
  for (TMyShape* s : shapes) map(*s);
  for (TMyShape* s : shapes) ChangeLinkShapes(s);
  SetModified(true);
  EndUpdate();
}

// A top-level shape flips its whole group about its own centre (the pivot
// of every member); moving the group by twice the distance from that centre
// to the block's then gives the flip about the block's centre.
void TMyCAD::FlipHoriz() {
  const TMyPoint c = CentreOf(GetShapesLTRB(working_));
  MapSelection([&](TMyShape& s) {
    const float pivot = s.GetCenterPoint().X;
    FlipHoriz(&s);
    for (TMyShape* m : SubtreeOf(&s)) MapAllPoints(*m, Translation(2.0L * (c.X - pivot), 0));
  });
}

void TMyCAD::FlipVert() {
  const TMyPoint c = CentreOf(GetShapesLTRB(working_));
  MapSelection([&](TMyShape& s) {
    const float pivot = s.GetCenterPoint().Y;
    FlipVert(&s);
    for (TMyShape* m : SubtreeOf(&s)) MapAllPoints(*m, Translation(0, 2.0L * (c.Y - pivot)));
  });
}

void TMyCAD::TiltHoriz(double angle) {
  if (!(std::fabs(angle) <= kMaxTilt)) return;
  const TAffineMap shear = Shear(true, std::tan(static_cast<long double>(angle)), CentreOf(GetShapesLTRB(working_)).Y);
  MapSelection([&](TMyShape& s) {
    for (TMyShape* m : SubtreeOf(&s)) MapAllPoints(*m, shear);
  });
}

void TMyCAD::TiltVert(double angle) {
  if (!(std::fabs(angle) <= kMaxTilt)) return;
  const TAffineMap shear = Shear(false, std::tan(static_cast<long double>(angle)), CentreOf(GetShapesLTRB(working_)).X);
  MapSelection([&](TMyShape& s) {
    for (TMyShape* m : SubtreeOf(&s)) MapAllPoints(*m, shear);
  });
}

}  // namespace lumatrex
