#include "canvas/routing.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <queue>
#include <vector>

namespace lumatrex {

namespace {

// A bend costs as much as this much extra length: enough to prefer a route
// with fewer bends over a slightly shorter one that zigzags.
constexpr double kBendCost = 2 * kRouteClearance;

// Directions in the order +x, -x, +y, -y; a direction's opposite is d ^ 1.
constexpr int kDx[4] = {1, -1, 0, 0};
constexpr int kDy[4] = {0, 0, 1, -1};

int DirectionOf(int dx, int dy) {
  for (int d = 0; d < 4; ++d)
    if (kDx[d] == dx && kDy[d] == dy) return d;
  return -1;
}

bool StrictlyInside(const TMyRect& r, double x, double y) {
  return r.Left < x && x < r.Right && r.Top < y && y < r.Bottom;
}

std::vector<double> SortedUnique(std::vector<double> v) {
  std::sort(v.begin(), v.end());
  v.erase(std::unique(v.begin(), v.end()), v.end());
  return v;
}

int IndexIn(const std::vector<double>& v, double x) {
  return static_cast<int>(std::lower_bound(v.begin(), v.end(), x) - v.begin());
}

// The grid: the lines through every obstacle side and both leaving points.
// Obstacle interiors are marked on a doubled grid whose odd rows and columns
// stand for the stretches between two grid lines, so that a step from one
// grid point to the next is free exactly when its middle and its target are.
class TGrid {
 public:
  TGrid(std::vector<double> xs, std::vector<double> ys) : xs_(std::move(xs)), ys_(std::move(ys)) {
    w_ = 2 * static_cast<int>(xs_.size()) - 1;
    h_ = 2 * static_cast<int>(ys_.size()) - 1;
    blocked_.assign(static_cast<std::size_t>(w_) * static_cast<std::size_t>(h_), 0);
  }
  // A frame reaching past the grid blocks the grid's border lines too.
  void Block(const TMyRect& r) {
    const int x1 = r.Left < xs_.front() ? 0 : 2 * IndexIn(xs_, r.Left) + 1;
    const int x2 = r.Right > xs_.back() ? w_ - 1 : 2 * IndexIn(xs_, r.Right) - 1;
    const int y1 = r.Top < ys_.front() ? 0 : 2 * IndexIn(ys_, r.Top) + 1;
    const int y2 = r.Bottom > ys_.back() ? h_ - 1 : 2 * IndexIn(ys_, r.Bottom) - 1;
    for (int y = y1; y <= y2; ++y)
      std::fill_n(blocked_.begin() + static_cast<std::ptrdiff_t>(y) * w_ + x1, std::max(0, x2 - x1 + 1), 1);
  }
  int Nx() const { return static_cast<int>(xs_.size()); }
  int Ny() const { return static_cast<int>(ys_.size()); }
  double X(int i) const { return xs_[static_cast<std::size_t>(i)]; }
  double Y(int j) const { return ys_[static_cast<std::size_t>(j)]; }
  int Node(double x, double y) const { return IndexIn(ys_, y) * Nx() + IndexIn(xs_, x); }
  // Whether the step from node N in direction D stays on the grid and out of
  // every obstacle; the target node in To.
  bool Step(int n, int d, int& to) const {
    const int i = n % Nx() + kDx[d], j = n / Nx() + kDy[d];
    if (i < 0 || j < 0 || i >= Nx() || j >= Ny()) return false;
    if (IsBlocked(2 * i - kDx[d], 2 * j - kDy[d]) || IsBlocked(2 * i, 2 * j)) return false;
    to = j * Nx() + i;
    return true;
  }

 private:
  bool IsBlocked(int x, int y) const { return blocked_[static_cast<std::size_t>(y) * w_ + x] != 0; }
  std::vector<double> xs_, ys_;
  int w_ = 0, h_ = 0;
  std::vector<std::uint8_t> blocked_;
};

// Drops repeated points and the middle one of three on a line.
TArrMyPoint Simplified(const TArrMyPoint& points) {
  TArrMyPoint out;
  for (const TMyPoint& p : points) {
    if (!out.empty() && out.back() == p) continue;
    if (out.size() >= 2) {
      const TMyPoint& a = out[out.size() - 2];
      const TMyPoint& b = out.back();
      if ((a.X == b.X && b.X == p.X) || (a.Y == b.Y && b.Y == p.Y)) out.pop_back();
    }
    out.push_back(p);
  }
  return out;
}

}  // namespace

TArrMyPoint RouteOrthogonal(const TRouteEnd& a, const TRouteEnd& b, std::span<const TMyRect> obstacles,
                            const TMyRect& area) {
  const float c = kRouteClearance;
  const TMyPoint sa = MyPoint(a.at.X + a.dx * c, a.at.Y + a.dy * c);
  const TMyPoint sb = MyPoint(b.at.X + b.dx * c, b.at.Y + b.dy * c);
  const double left = std::min({static_cast<double>(area.Left), double{sa.X}, double{sb.X}});
  const double right = std::max({static_cast<double>(area.Right), double{sa.X}, double{sb.X}});
  const double top = std::min({static_cast<double>(area.Top), double{sa.Y}, double{sb.Y}});
  const double bottom = std::max({static_cast<double>(area.Bottom), double{sa.Y}, double{sb.Y}});
  std::vector<TMyRect> grown;
  std::vector<double> xs{left, right, sa.X, sb.X}, ys{top, bottom, sa.Y, sb.Y};
  auto within = [](std::vector<double>& lines, double v, double lo, double hi) {
    if (lo < v && v < hi) lines.push_back(v);
  };
  for (const TMyRect& o : obstacles) {
    const TMyRect g{o.Left - c, o.Top - c, o.Right + c, o.Bottom + c};
    if (g.Right <= left || g.Left >= right || g.Bottom <= top || g.Top >= bottom) continue;
    if (StrictlyInside(g, sa.X, sa.Y) || StrictlyInside(g, sb.X, sb.Y)) continue;
    grown.push_back(g);
    within(xs, g.Left, left, right);
    within(xs, g.Right, left, right);
    within(ys, g.Top, top, bottom);
    within(ys, g.Bottom, top, bottom);
  }
  TGrid grid(SortedUnique(std::move(xs)), SortedUnique(std::move(ys)));
  for (const TMyRect& g : grown) grid.Block(g);

  // A* over (grid point, direction of arrival); one extra state stands for
  // "arrived at B", reached from B's leaving point with the cost of the last
  // bend into B.
  const int start = grid.Node(sa.X, sa.Y), goal = grid.Node(sb.X, sb.Y);
  const int states = grid.Nx() * grid.Ny() * 4, done = states;
  std::vector<double> cost(static_cast<std::size_t>(states) + 1, std::numeric_limits<double>::infinity());
  std::vector<int> from(static_cast<std::size_t>(states) + 1, -1);
  using TEntry = std::pair<double, int>;
  std::priority_queue<TEntry, std::vector<TEntry>, std::greater<>> open;
  auto h = [&](int n) { return std::fabs(grid.X(n % grid.Nx()) - sb.X) + std::fabs(grid.Y(n / grid.Nx()) - sb.Y); };
  auto reach = [&](int state, double g, int parent) {
    if (g >= cost[static_cast<std::size_t>(state)]) return;
    cost[static_cast<std::size_t>(state)] = g;
    from[static_cast<std::size_t>(state)] = parent;
    open.push({g + (state == done ? 0 : h(state / 4)), state});
  };
  const int leave = DirectionOf(a.dx, a.dy);
  for (int d = 0; d < 4; ++d)
    if (leave < 0 || d == leave) reach(start * 4 + d, 0, -1);
  const int enter = DirectionOf(-b.dx, -b.dy);
  while (!open.empty()) {
    const auto [f, state] = open.top();
    open.pop();
    if (state == done) break;
    const double g = cost[static_cast<std::size_t>(state)];
    if (f > g + h(state / 4)) continue;  // a stale entry
    const int node = state / 4, dir = state % 4;
    if (node == goal) reach(done, g + (enter < 0 || dir == enter ? 0 : (dir == (enter ^ 1) ? 2 : 1) * kBendCost), state);
    for (int d = 0; d < 4; ++d) {
      int to = 0;
      if (d == (dir ^ 1) || !grid.Step(node, d, to)) continue;
      const double length = std::fabs(grid.X(to % grid.Nx()) - grid.X(node % grid.Nx())) +
                            std::fabs(grid.Y(to / grid.Nx()) - grid.Y(node / grid.Nx()));
      reach(to * 4 + d, g + length + (d == dir ? 0 : kBendCost), state);
    }
  }
  if (from[static_cast<std::size_t>(done)] < 0) return {};
  TArrMyPoint reversed{b.at, sb};
  for (int s = from[static_cast<std::size_t>(done)]; s >= 0; s = from[static_cast<std::size_t>(s)]) {
    const int n = s / 4;
    reversed.push_back(MyPoint(static_cast<float>(grid.X(n % grid.Nx())), static_cast<float>(grid.Y(n / grid.Nx()))));
  }
  reversed.push_back(sa);
  reversed.push_back(a.at);
  std::reverse(reversed.begin(), reversed.end());
  return Simplified(reversed);
}

}  // namespace lumatrex
