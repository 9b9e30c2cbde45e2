#include "shapes/groups.h"

#include <algorithm>
#include <unordered_set>

#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// Affine maps

TMyPoint TAffineMap::Apply(const TMyPoint& p) const {
  return {static_cast<float>(a * p.X + b * p.Y + tx), static_cast<float>(c * p.X + d * p.Y + ty)};
}

TAffineMap FrameToFrame(const TMyPoint& o, const TMyPoint& x, const TMyPoint& y, const TMyPoint& o2,
                        const TMyPoint& x2, const TMyPoint& y2) {
  // The first frame's sides as columns of M; the map is M2 * M^-1 about the
  // origins.
  const long double ux = x.X - o.X, uy = x.Y - o.Y, vx = y.X - o.X, vy = y.Y - o.Y;
  const long double det = ux * vy - vx * uy;
  if (det == 0) return {};
  const long double ia = vy / det, ib = -vx / det, ic = -uy / det, id = ux / det;
  const long double u2x = x2.X - o2.X, u2y = x2.Y - o2.Y, v2x = y2.X - o2.X, v2y = y2.Y - o2.Y;
  TAffineMap m;
  m.a = u2x * ia + v2x * ic;
  m.b = u2x * ib + v2x * id;
  m.c = u2y * ia + v2y * ic;
  m.d = u2y * ib + v2y * id;
  m.tx = o2.X - (m.a * o.X + m.b * o.Y);
  m.ty = o2.Y - (m.c * o.X + m.d * o.Y);
  return m;
}

TAffineMap Translation(long double dx, long double dy) {
  TAffineMap m;
  m.tx = dx;
  m.ty = dy;
  return m;
}

TAffineMap Shear(bool horizontal, long double tan, long double origin) {
  TAffineMap m;
  if (horizontal) {
    m.b = tan;
    m.tx = -tan * origin;
  } else {
    m.c = tan;
    m.ty = -tan * origin;
  }
  return m;
}

void MapAllPoints(TMyShape& shape, const TAffineMap& map) {
  for (TMyPoint& p : shape.Points) p = map.Apply(p);
  for (TMyPoint& p : shape.LinkPoints) p = map.Apply(p);
  shape.CenterPoint = map.Apply(shape.CenterPoint);
  shape.TextoutPoint = map.Apply(shape.TextoutPoint);
  shape.Changed();
}

// ---------------------------------------------------------------------------
// TMyGroup

std::vector<TMyShape*> TMyGroup::Members() const {
  std::vector<TMyShape*> members;
  if (!Owner()) return members;
  for (const std::int32_t no : ChildShapes)
    if (TMyShape* member = Owner()->GetShapeByNo(no); member && member != this) members.push_back(member);
  return members;
}

std::vector<TMyShape*> TMyGroup::AllMembers() const {
  std::vector<TMyShape*> all;
  // Each shape once, which also ends the walk on a broken (cyclic) child list.
  std::unordered_set<const TMyShape*> met = {this};
  std::vector<const TMyGroup*> pending = {this};
  while (!pending.empty()) {
    const TMyGroup* group = pending.back();
    pending.pop_back();
    for (TMyShape* member : group->Members()) {
      if (!met.insert(member).second) continue;
      all.push_back(member);
      if (const auto* inner = dynamic_cast<const TMyGroup*>(member)) pending.push_back(inner);
    }
  }
  return all;
}

void TMyGroup::Draw(TCanvas& canvas) { DrawInfo(canvas); }

bool TMyGroup::IsClickedMe(TCanvas& canvas, const TPoint& p) {
  const std::vector<TMyShape*> members = Members();
  return std::any_of(members.begin(), members.end(), [&](TMyShape* m) { return m->IsClickedMe(canvas, p); });
}

void TMyGroup::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  if (Points.size() < 4) return TMyRectangle::SizeChangeValue(a, b);
  const TArrMyPoint before = Points;
  TMyRectangle::SizeChangeValue(a, b);
  if (Points == before) return;
  const TAffineMap map = FrameToFrame(before[0], before[1], before[3], Points[0], Points[1], Points[3]);
  TextoutPoint = map.Apply(TextoutPoint);
  for (TMyShape* member : AllMembers()) MapAllPoints(*member, map);
}

// ---------------------------------------------------------------------------
// TMyCombine

std::vector<std::vector<TPoint>> TMyCombine::Figures() const {
  std::vector<std::vector<TPoint>> figures;
  // A group inside adds its members' figures, not its frame.
  for (TMyShape* member : AllMembers())
    if (!dynamic_cast<TMyGroup*>(member)) figures.push_back(RoundPoints(member->FigureInZoom()));
  return figures;
}

void TMyCombine::Draw(TCanvas& canvas) {
  SetDrawShapeMode(*this, canvas);
  canvas.BeginPath();
  for (const std::vector<TPoint>& figure : Figures())
    if (figure.size() >= 2) canvas.Polygon(figure);
  canvas.EndPath();
  canvas.SetPolyFillMode(pfmAlternate);
  canvas.StrokeAndFillPath();
  DrawInfo(canvas);
}

bool TMyCombine::IsClickedMe(TCanvas&, const TPoint& p) {
  // Inside an odd number of figures: where the alternate fill paints.
  bool inside = false;
  for (const std::vector<TPoint>& figure : Figures())
    if (PtInPolygon(figure, p)) inside = !inside;
  return inside;
}

}  // namespace lumatrex
