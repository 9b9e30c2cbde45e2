// The orthogonal connector router (internal to the canvas).
//
// All coordinates are model coordinates. A route leaves its start across the
// side of the shape it is attached to, reaches its end across that end's
// side, and keeps Clearance away from the obstacle frames it is given. It
// searches a sparse grid made of the lines through the obstacles' sides and
// the two ends (a rectilinear visibility grid) with A*, charging the length
// plus a penalty per bend, so it prefers short routes with few bends.
#pragma once

#include <cstdint>
#include <span>

#include "geometry/geometry.h"

namespace lumatrex {

// One end of a route: where it is, and the direction it must leave (start)
// or come from (end) the shape it sits on: (-1, 0) the left side, (1, 0) the
// right, (0, -1) the top, (0, 1) the bottom; (0, 0) for any direction (a free
// end, or a point inside a shape).
struct TRouteEnd {
  TMyPoint at;
  std::int8_t dx = 0;
  std::int8_t dy = 0;
};

// Room kept between a route and the frames it avoids, and the length of the
// straight piece with which it leaves and enters a shape.
inline constexpr float kRouteClearance = 12;

// The route from A to B around Obstacles (frames, not yet grown by the
// clearance), searched within Area: at least A and B, every segment
// horizontal or vertical, no repeated or collinear inner points. Obstacles
// that hold either end's leaving point are left out, as that end's own shape
// when its link point lies inside it. Empty when Area holds no route.
TArrMyPoint RouteOrthogonal(const TRouteEnd& a, const TRouteEnd& b, std::span<const TMyRect> obstacles,
                            const TMyRect& area);

}  // namespace lumatrex
