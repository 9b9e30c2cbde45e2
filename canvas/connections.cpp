// Connectors and the shapes they join: keeping ends on their link points,
// routing, and the connector commands. Every pass here follows the
// connectors a shape lists in LinkLines, or asks the spatial index, so its
// cost is that of the connections involved, never of the drawing.
#include <algorithm>
#include <cmath>

#include "canvas/routing.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"

namespace lumatrex {

void TMyCAD::DragChangeValueDxDyforShapes(TMyShape* shape, double dx, double dy) {
  ForShapeAndMembers(shape, [dx, dy](TMyShape& s) {
    if (!s.GetLocked()) s.DragChangeValuedxdy(dx, dy);
  });
}

namespace {

// The link point an end is bound to, or nullptr when the binding points nowhere.
const TMyShape* BoundShape(const TMyCAD& cad, const TMyLinkLine& link, TLinkLineEnd end) {
  const TMyShape* target = cad.GetShapeByNo(link.EndShapeNo(end));
  const std::int32_t id = link.EndPointId(end);
  return target && id >= 0 && id < target->GetLinkPointsCount() ? target : nullptr;
}

// Moves the end's point to At; false when it was there already.
bool PutEnd(TMyLinkLine& link, TLinkLineEnd end, const TMyPoint& at) {
  TMyPoint& p = link.Points[static_cast<std::size_t>(link.EndIndex(end))];
  if (p == at) return false;
  p = at;
  // A route that needs no change is not redrawn, so the index learns of the
  // moved end here.
  link.Changed();
  return true;
}

// The side of its shape's frame a link point lies on, as the direction a
// route leaves it; none for a point well inside the frame (a link-point
// marker's centre) or on a shape without extent.
TRouteEnd RouteEndOf(const TMyCAD& cad, const TMyLinkLine& link, TLinkLineEnd end) {
  TRouteEnd r{link.Points[static_cast<std::size_t>(link.EndIndex(end))]};
  const TMyShape* target = BoundShape(cad, link, end);
  if (!target || dynamic_cast<const TMyLinkPoint*>(target)) return r;
  const TMyRect f = GetPointsLTRB(target->Points);
  const float distances[4] = {r.at.X - f.Left, f.Right - r.at.X, r.at.Y - f.Top, f.Bottom - r.at.Y};
  const auto nearest = std::min_element(std::begin(distances), std::end(distances)) - std::begin(distances);
  if (std::fabs(distances[nearest]) > 1) return r;
  constexpr std::int8_t kOut[4][2] = {{-1, 0}, {1, 0}, {0, -1}, {0, 1}};
  r.dx = kOut[nearest][0];
  r.dy = kOut[nearest][1];
  return r;
}

TMyRect Around(const TMyPoint& a, const TMyPoint& b, float margin) {
  return {std::min(a.X, b.X) - margin, std::min(a.Y, b.Y) - margin, std::max(a.X, b.X) + margin,
          std::max(a.Y, b.Y) + margin};
}

// The point half-way along the route.
TMyPoint MiddleOfRoute(const TArrMyPoint& points) {
  long double total = 0;
  for (std::size_t i = 1; i < points.size(); ++i)
    total += std::hypot(static_cast<long double>(points[i].X) - points[i - 1].X,
                        static_cast<long double>(points[i].Y) - points[i - 1].Y);
  long double left = total / 2;
  for (std::size_t i = 1; i < points.size(); ++i) {
    const long double dx = static_cast<long double>(points[i].X) - points[i - 1].X;
    const long double dy = static_cast<long double>(points[i].Y) - points[i - 1].Y;
    const long double length = std::hypot(dx, dy);
    if (length >= left && length > 0)
      return MyPoint(static_cast<float>(points[i - 1].X + dx * left / length),
                     static_cast<float>(points[i - 1].Y + dy * left / length));
    left -= length;
  }
  return points.front();
}

// A shape's frame in its own unrotated axes, so that its link points can
// keep their place on it while it is resized.
struct TOwnFrame {
  TMyPoint centre;
  float angle = 0;
  TMyRect box;
};

TOwnFrame OwnFrameOf(const TMyShape& shape) {
  TOwnFrame f{shape.ComputeCenterPoint(4), shape.GetAngle(), {}};
  TArrMyPoint turned;
  for (const TMyPoint& p : shape.Points) turned.push_back(RotateAPoint(p, f.centre, -f.angle));
  f.box = GetPointsLTRB(turned);
  return f;
}

// Where P, placed on frame From, lies on frame To: the same fractions of
// its width and height (the middle along a side of no length).
TMyPoint MapOnFrame(const TMyPoint& p, const TOwnFrame& from, const TOwnFrame& to) {
  const TMyPoint local = RotateAPoint(p, from.centre, -from.angle);
  auto along = [](long double v, float lo, float hi, float lo2, float hi2) {
    const long double u = hi > lo ? (v - lo) / (static_cast<long double>(hi) - lo) : 0.5L;
    return static_cast<float>(lo2 + u * (static_cast<long double>(hi2) - lo2));
  };
  const TMyPoint moved = MyPoint(along(local.X, from.box.Left, from.box.Right, to.box.Left, to.box.Right),
                                 along(local.Y, from.box.Top, from.box.Bottom, to.box.Top, to.box.Bottom));
  return RotateAPoint(moved, to.centre, to.angle);
}

}  // namespace

// ---------------------------------------------------------------------------
// Keeping ends on their points

// Only the connectors the moved shapes list in LinkLines are looked at.
void TMyCAD::ChangeLinkShapes(TMyShape* shape) {
  if (!shape) return;
  if (auto* link = dynamic_cast<TMyLinkLine*>(shape)) SettleLinkLine(*link);
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
      for (const TLinkLineEnd end : {llStart, llEnd})
        if (const TMyShape* target = BoundShape(*this, *link, end); target && touches(target->ShapeNo))
          PutEnd(*link, end, target->GetLinkPoint(link->EndPointId(end)));
      RouteLinkLine(*link);
    }
}

void TMyCAD::SettleLinkLine(TMyLinkLine& link) {
  if (link.GetPointsCount() < 2) return;
  bool moved = false;
  for (const TLinkLineEnd end : {llStart, llEnd}) moved = SettleLinkEnd(link, end) || moved;
  if (moved || !link.IsRouted()) RouteLinkLine(link);
}

// An end within a handle's reach of its bound point stays bound; one moved
// further is let go and takes the link point it now lies on, if any.
bool TMyCAD::SettleLinkEnd(TMyLinkLine& link, TLinkLineEnd end) {
  const TMyPoint at = link.Points[static_cast<std::size_t>(link.EndIndex(end))];
  if (const TMyShape* target = BoundShape(*this, link, end)) {
    const TMyPoint bound = target->GetLinkPoint(link.EndPointId(end));
    const double reach = hotSize_ / zoom_;
    if (std::fabs(static_cast<double>(at.X) - bound.X) <= reach && std::fabs(static_cast<double>(at.Y) - bound.Y) <= reach)
      return PutEnd(link, end, bound);
  }
  DetachLinkEnd(link, end);
  std::int32_t id = -1;
  TMyShape* found = InWhichShapeWhichHotLinkId(MyPtToPt(link.ZoomedValuePt(at)), id, &link);
  if (!found) return false;
  AttachLinkEnd(link, end, *found, id);
  return PutEnd(link, end, found->GetLinkPoint(id));
}

void TMyCAD::AttachLinkEnd(TMyLinkLine& link, TLinkLineEnd end, TMyShape& target, std::int32_t pointId) {
  DetachLinkEnd(link, end);
  link.BindEnd(end, target.ShapeNo, pointId);
  AddLinklineShape(target, static_cast<std::uint32_t>(link.ShapeNo));
}

void TMyCAD::DetachLinkEnd(TMyLinkLine& link, TLinkLineEnd end) {
  const std::int32_t no = link.EndShapeNo(end);
  if (no < 0) return;
  const TLinkLineEnd other = end == llStart ? llEnd : llStart;
  // A connector with both ends on one shape stays listed there until both go.
  if (TMyShape* target = GetShapeByNo(no); target && link.EndShapeNo(other) != no)
    RemoveLinklineShape(*target, static_cast<std::uint32_t>(link.ShapeNo));
  link.BindEnd(end, -1, -1);
}

void TMyCAD::ListLinkLineAtEnds(TMyLinkLine& link) {
  for (const TLinkLineEnd end : {llStart, llEnd})
    if (TMyShape* target = GetShapeByNo(link.EndShapeNo(end)); target && BoundShape(*this, link, end))
      AddLinklineShape(*target, static_cast<std::uint32_t>(link.ShapeNo));
}

void TMyCAD::ResizeKeepingLinkPoints(TMyShape& shape, const TMyPoint& a, const TMyPoint& b) {
  if (shape.LinkPoints.empty() || shape.Points.empty()) return shape.SizeChangeValue(a, b);
  const TOwnFrame before = OwnFrameOf(shape);
  shape.SizeChangeValue(a, b);
  const TOwnFrame after = OwnFrameOf(shape);
  for (TMyPoint& p : shape.LinkPoints) p = MapOnFrame(p, before, after);
}

// ---------------------------------------------------------------------------
// Routing

void TMyCAD::RouteLinkLine(TMyLinkLine& link) {
  if (link.GetPointsCount() < 2) return;
  const TMyPoint a = link.Points.front(), b = link.Points.back();
  const TLinkLineDrawStyle style = link.GetLinkLineDrawStyle();
  TArrMyPoint route;
  if (style == lldsOrthogonal) route = RouteAroundShapes(link);
  if (route.empty()) route = TMyLinkLine::SimpleRoute(a, b, style);
  if (route == link.Points) return;
  link.Points = std::move(route);
  link.CenterPoint = link.ComputeCenterPoint(4);
  link.Changed();
}

// The obstacles are the shapes the index finds near the ends: a small area
// first, and once more a wider one when that holds no way through. Both are
// a few times the connector's own box, so the work grows with the connector
// and the shapes around it, not with the drawing.
TArrMyPoint TMyCAD::RouteAroundShapes(const TMyLinkLine& link) {
  const TRouteEnd a = RouteEndOf(*this, link, llStart), b = RouteEndOf(*this, link, llEnd);
  TMyRect area = Around(a.at, b.at, 3 * kRouteClearance);
  std::vector<TMyRect> obstacles;
  std::vector<TMyShape*> found;
  for (int attempt = 0; attempt < 2; ++attempt) {
    const auto z = static_cast<float>(zoom_);
    IndexQuery({area.Left * z, area.Top * z, area.Right * z, area.Bottom * z}, false, found);
    obstacles.clear();
    for (const TMyShape* s : found) {
      if (s == &link || dynamic_cast<const TMyLinkLine*>(s) || dynamic_cast<const TMyLinkPoint*>(s)) continue;
      if (s->HasChildShapes() || !s->GetVisible() || s->Points.size() < 2 || !IsVisibleLayerByID(s->LayerId)) continue;
      obstacles.push_back(GetPointsLTRB(s->Points));
    }
    TArrMyPoint route = RouteOrthogonal(a, b, obstacles, area);
    if (!route.empty()) return route;
    const float grow = std::max(area.Right - area.Left, area.Bottom - area.Top);
    area = {area.Left - grow, area.Top - grow, area.Right + grow, area.Bottom + grow};
  }
  return {};
}

// ---------------------------------------------------------------------------
// Commands

void TMyCAD::RemoveSrcLink(TMyLinkLine* link) {
  if (link) DetachLinkEnd(*link, llStart);
}

void TMyCAD::RemoveDestLink(TMyLinkLine* link) {
  if (link) DetachLinkEnd(*link, llEnd);
}

TMyLinkLine* TMyCAD::CreateLink(TMyShape* source, std::int32_t sourcePoint, TMyShape* dest, std::int32_t destPoint,
                                TLinkLineDrawStyle style, bool record) {
  auto onCanvas = [this](TMyShape* s, std::int32_t id) {
    return s && GetShapeByNo(s->ShapeNo) == s && id >= 0 && id < s->GetLinkPointsCount();
  };
  if (!onCanvas(source, sourcePoint) || !onCanvas(dest, destPoint)) return nullptr;
  auto* link = static_cast<TMyLinkLine*>(CreateAddShapeByName("TMyLinkLine"));
  if (!link) return nullptr;
  link->SetLinkLineDrawStyle(style);
  link->Points = {source->GetLinkPoint(sourcePoint), dest->GetLinkPoint(destPoint)};
  AttachLinkEnd(*link, llStart, *source, sourcePoint);
  AttachLinkEnd(*link, llEnd, *dest, destPoint);
  RouteLinkLine(*link);
  link->Changed();
  if (record) PushtoUndoRedoShapeList({link}, ACT_ADD);
  return link;
}

TMyLinkPoint* TMyCAD::BreakLineByAPoint(TMyLinkLine* link, const TMyPoint& at, bool record) {
  if (!link || GetShapeByNo(link->ShapeNo) != link || link->GetPointsCount() < 2) return nullptr;
  if (record) PushtoUndoRedoShapeList({link}, ACT_CHANGE);
  auto* joint = static_cast<TMyLinkPoint*>(CreateAddShapeByName("TMyLinkPoint"));
  auto* rest = static_cast<TMyLinkLine*>(CreateAddShapeByName(link->ClassName(), link));
  if (!joint || !rest) return nullptr;
  joint->PlaceAt(at);
  // The second half takes over the old end's binding, the first half and
  // the second meet at the new point.
  TMyShape* oldEnd = GetShapeByNo(link->EndShapeNo(llEnd));
  const std::int32_t oldEndPoint = link->EndPointId(llEnd);
  // The copy came with Link's bindings, listed by both shapes: let go first.
  DetachLinkEnd(*rest, llStart);
  DetachLinkEnd(*rest, llEnd);
  rest->Points = {at, link->Points.back()};
  link->Points.back() = at;
  AttachLinkEnd(*link, llEnd, *joint, 0);
  AttachLinkEnd(*rest, llStart, *joint, 0);
  if (oldEnd && oldEndPoint >= 0) AttachLinkEnd(*rest, llEnd, *oldEnd, oldEndPoint);
  RouteLinkLine(*link);
  RouteLinkLine(*rest);
  link->Changed();
  rest->Changed();
  if (record) PushtoUndoRedoShapeList({joint, rest}, ACT_ADD);
  return joint;
}

TMyLinkPoint* TMyCAD::BreakLine(TMyLinkLine* link, bool record) {
  if (!link || link->GetPointsCount() < 2) return nullptr;
  return BreakLineByAPoint(link, MiddleOfRoute(link->Points), record);
}

}  // namespace lumatrex
