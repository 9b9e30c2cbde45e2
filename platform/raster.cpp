#include "platform/raster.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdlib>
#include <limits>

namespace lumatrex::raster {

// ---------------------------------------------------------------------------
// TMask

TMask::TMask(const QRect& area) : area_(area.isValid() ? area : QRect()) {
  rows_.resize(static_cast<std::size_t>(area_.isEmpty() ? 0 : area_.height()));
}

const TMask::TRow* TMask::RowAt(int y) const {
  if (y < area_.top() || y > area_.bottom()) return nullptr;
  return &rows_[static_cast<std::size_t>(y - area_.top())];
}

bool TMask::Test(int x, int y) const {
  const TRow* row = RowAt(y);
  if (!row) return false;
  const auto after = std::upper_bound(row->begin(), row->end(), x, [](int v, const TRun& r) { return v < r.x0; });
  return after != row->begin() && x < std::prev(after)->x1;
}

void TMask::SetSpan(int y, int x0, int x1) {
  if (y < area_.top() || y > area_.bottom()) return;
  x0 = std::max(x0, area_.left());
  x1 = std::min(x1, area_.right() + 1);
  if (x0 >= x1) return;
  TRow& row = rows_[static_cast<std::size_t>(y - area_.top())];
  // Merge with every run that overlaps or touches [x0, x1).
  auto first = std::lower_bound(row.begin(), row.end(), x0, [](const TRun& r, int v) { return r.x1 < v; });
  auto last = first;
  while (last != row.end() && last->x0 <= x1) {
    x0 = std::min(x0, last->x0);
    x1 = std::max(x1, last->x1);
    ++last;
  }
  row.insert(row.erase(first, last), TRun{x0, x1});
}

void TMask::Subtract(const TMask& other) {
  for (int y = area_.top(); y <= area_.bottom(); ++y) {
    const TRow* cut = other.RowAt(y);
    TRow& row = rows_[static_cast<std::size_t>(y - area_.top())];
    if (!cut || cut->empty() || row.empty()) continue;
    TRow kept;
    auto c = cut->begin();
    for (TRun r : row) {
      while (c != cut->end() && c->x1 <= r.x0) ++c;
      for (auto k = c; k != cut->end() && k->x0 < r.x1; ++k) {
        if (k->x0 > r.x0) kept.push_back(TRun{r.x0, k->x0});
        r.x0 = std::max(r.x0, k->x1);
      }
      if (r.x0 < r.x1) kept.push_back(r);
    }
    row = std::move(kept);
  }
}

void TMask::Intersect(const TMask& other) {
  for (int y = area_.top(); y <= area_.bottom(); ++y) {
    const TRow* keep = other.RowAt(y);
    TRow& row = rows_[static_cast<std::size_t>(y - area_.top())];
    TRow kept;
    if (keep) {
      auto k = keep->begin();
      for (const TRun& r : row) {
        while (k != keep->end() && k->x1 <= r.x0) ++k;
        for (auto j = k; j != keep->end() && j->x0 < r.x1; ++j)
          kept.push_back(TRun{std::max(r.x0, j->x0), std::min(r.x1, j->x1)});
      }
    }
    row = std::move(kept);
  }
}

bool TMask::Empty() const {
  return std::all_of(rows_.begin(), rows_.end(), [](const TRow& row) { return row.empty(); });
}

// ---------------------------------------------------------------------------
// Lines

namespace {

std::int64_t FloorDiv(__int128 a, __int128 b) {  // b > 0
  __int128 q = a / b;
  if (a % b != 0 && a < 0) --q;
  return static_cast<std::int64_t>(q);
}

}  // namespace

// ceil(t - 1/2) = -floor((N - 2ID) / 2N).
std::int64_t NearestRoundingDown(std::int64_t i, std::int64_t d, std::int64_t n) {
  return -FloorDiv(static_cast<__int128>(n) - 2 * static_cast<__int128>(i) * d, 2 * static_cast<__int128>(n));
}

// ---------------------------------------------------------------------------
// Polygons

namespace {

int ClampToInt(double v, int lo, int hi) {
  if (!(v > lo)) return lo;  // also catches NaN
  if (v > hi) return hi;
  return static_cast<int>(v);
}

}  // namespace

void ScanSetUp(const std::vector<QPolygonF>& polygons, const QRect& area, TScanBuffers& buffers, int& first,
               int& end) {
  std::vector<TScanEdge>& edges = buffers.edges;
  edges.clear();
  buffers.active.clear();
  first = end = 0;
  if (area.isEmpty()) return;
  for (const QPolygonF& polygon : polygons) {
    const qsizetype n = polygon.size();
    for (qsizetype i = 0; i < n; ++i) {
      const QPointF a = polygon[i], b = polygon[i + 1 == n ? 0 : i + 1];
      if (a.y() == b.y() || !std::isfinite(a.x() + a.y() + b.x() + b.y())) continue;
      edges.push_back(TScanEdge{a.x(), a.y(), (b.x() - a.x()) / (b.y() - a.y()), std::min(a.y(), b.y()),
                                std::max(a.y(), b.y()), b.y() > a.y() ? 1 : -1});
    }
  }
  if (edges.empty()) return;
  std::sort(edges.begin(), edges.end(), [](const TScanEdge& l, const TScanEdge& r) { return l.top < r.top; });
  double bottom = edges.front().bottom;
  for (const TScanEdge& e : edges) bottom = std::max(bottom, e.bottom);
  // Rows y in [first top, last bottom).
  first = ClampToInt(std::ceil(edges.front().top), area.top(), area.bottom() + 1);
  end = ClampToInt(std::ceil(bottom), area.top(), area.bottom() + 1);
}

void ScanRow(int y, const QRect& area, std::size_t& next, TScanBuffers& buffers) {
  const std::vector<TScanEdge>& edges = buffers.edges;
  std::vector<const TScanEdge*>& active = buffers.active;
  while (next < edges.size() && edges[next].top <= y) active.push_back(&edges[next++]);
  std::erase_if(active, [y](const TScanEdge* e) { return e->bottom <= y; });
  std::vector<TScanCrossing>& crossings = buffers.crossings;
  crossings.clear();
  const int left = area.left(), right = area.right() + 1;
  for (const TScanEdge* e : active) {
    const double x = e->x0 + (y - e->y0) * e->slope;
    crossings.push_back(TScanCrossing{ClampToInt(std::ceil(x), left, right), e->dir});
  }
  // Most rows cross a few edges, where an insertion sort beats the general
  // one. (Crossings at one threshold bound no pixels, so their order is free.)
  auto before = [](const TScanCrossing& l, const TScanCrossing& r) { return l.threshold < r.threshold; };
  if (crossings.size() > 16) {
    std::sort(crossings.begin(), crossings.end(), before);
    return;
  }
  for (std::size_t i = 1; i < crossings.size(); ++i)
    for (std::size_t j = i; j > 0 && before(crossings[j], crossings[j - 1]); --j) std::swap(crossings[j], crossings[j - 1]);
}

bool AxisAlignedBox(const std::vector<QPolygonF>& polygons, const QRect& area, QRect& box) {
  if (polygons.size() != 1) return false;
  const QPolygonF& p = polygons.front();
  if (p.size() != 4 && !(p.size() == 5 && p[4] == p[0])) return false;
  const bool flatFirst = p[0].y() == p[1].y() && p[1].x() == p[2].x() && p[2].y() == p[3].y() && p[3].x() == p[0].x();
  const bool upFirst = p[0].x() == p[1].x() && p[1].y() == p[2].y() && p[2].x() == p[3].x() && p[3].y() == p[0].y();
  if (!(flatFirst || upFirst) || !std::isfinite(p[0].x() + p[0].y() + p[2].x() + p[2].y())) return false;
  // The thresholds the scan would find: rows [ceil top, ceil bottom) and, on
  // each, pixels from the first at or right of one side to the other's.
  const int left = area.left(), right = area.right() + 1, top = area.top(), bottom = area.bottom() + 1;
  const auto [x0, x1] = std::minmax({p[0].x(), p[2].x()});
  const auto [y0, y1] = std::minmax({p[0].y(), p[2].y()});
  box.setCoords(ClampToInt(std::ceil(x0), left, right), ClampToInt(std::ceil(y0), top, bottom),
                ClampToInt(std::ceil(x1), left, right), ClampToInt(std::ceil(y1), top, bottom));
  return true;
}

TMask PolygonMask(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area, TScanBuffers& buffers) {
  TMask mask(area);
  FillPolygons(polygons, winding, area, [&mask](int y, int x0, int x1) { mask.SetSpan(y, x0, x1); }, buffers);
  return mask;
}

TMask PolygonMask(const std::vector<QPolygonF>& polygons, bool winding, const QRect& area) {
  TScanBuffers buffers;
  return PolygonMask(polygons, winding, area, buffers);
}

// ---------------------------------------------------------------------------
// Ellipses

bool EllipseRow(const QRect& box, int y, int& x0, int& x1) {
  using U = unsigned __int128;
  if (box.isEmpty() || y < box.top() || y > box.bottom()) return false;
  // With dx = 2(x - left) + 1 - W and dy likewise (twice the offset from the
  // centre), a pixel lies inside when dx²H² + dy²W² <= W²H²: exact in
  // integers, so the shape is symmetric.
  const std::int64_t w = box.width(), h = box.height();
  const std::int64_t dy = 2 * (std::int64_t{y} - box.top()) + 1 - h;
  const U rhs = static_cast<U>(w * w) * static_cast<U>(h * h - dy * dy);
  const U h2 = static_cast<U>(h * h);
  auto fits = [&](std::int64_t d) { return static_cast<U>(d) * static_cast<U>(d) * h2 <= rhs; };
  auto d = static_cast<std::int64_t>(std::floor(static_cast<long double>(w) *
                                                std::sqrt(static_cast<long double>(h * h - dy * dy)) / h));
  while (fits(d + 1)) ++d;
  while (d > 0 && !fits(d)) --d;
  // Pixel k = x - left has dx = 2k + 1 - W; keep those with |dx| <= d.
  const std::int64_t kMin = -FloorDiv(-(w - 1 - d), 2);  // ceil((W - 1 - d) / 2)
  const std::int64_t kMax = FloorDiv(w - 1 + d, 2);
  if (kMin > kMax) return false;
  x0 = static_cast<int>(box.left() + kMin);
  x1 = static_cast<int>(box.left() + kMax + 1);
  return true;
}

// ---------------------------------------------------------------------------
// Colours and raster operations

QRgb ToRgb(TColor color) {
  const TColor c = ColorToRGB(color);
  return qRgb(GetRValue(c), GetGValue(c), GetBValue(c));
}

// ---------------------------------------------------------------------------
// Patterns

namespace {

// Run lengths (on, off, on, ...) of the classic styled lines: in pixels for
// one-pixel pens, in pen widths for wide ones.
std::vector<int> DashRuns(TPenStyle style, bool wide) {
  switch (style) {
    case psDash: return wide ? std::vector<int>{3, 1} : std::vector<int>{18, 6};
    case psDot: return wide ? std::vector<int>{1, 1} : std::vector<int>{3, 3};
    case psDashDot: return wide ? std::vector<int>{3, 1, 1, 1} : std::vector<int>{9, 6, 3, 6};
    case psDashDotDot:
      return wide ? std::vector<int>{3, 1, 1, 1, 1, 1} : std::vector<int>{9, 3, 3, 3, 3, 3};
    case psAlternate: return {1, 1};
    default: return {};
  }
}

// Rows of the 8x8 hatch patterns, bit 7 being the leftmost pixel.
constexpr std::array<std::array<std::uint8_t, 8>, 6> kHatches = {{
    {0x00, 0x00, 0x00, 0xFF, 0x00, 0x00, 0x00, 0x00},  // horizontal
    {0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08, 0x08},  // vertical
    {0x80, 0x40, 0x20, 0x10, 0x08, 0x04, 0x02, 0x01},  // forward diagonal: top left to bottom right
    {0x01, 0x02, 0x04, 0x08, 0x10, 0x20, 0x40, 0x80},  // backward diagonal: bottom left to top right
    {0x08, 0x08, 0x08, 0xFF, 0x08, 0x08, 0x08, 0x08},  // cross
    {0x81, 0x42, 0x24, 0x18, 0x18, 0x24, 0x42, 0x81},  // diagonal cross
}};

}  // namespace

TDashPattern::TDashPattern(TPenStyle style) {
  bool on = true;
  for (int run : DashRuns(style, false)) {
    bits_.insert(bits_.end(), static_cast<std::size_t>(run), on);
    on = !on;
  }
}

bool SolidStyle(TPenStyle style) { return DashRuns(style, false).empty(); }

std::vector<double> WideDashPattern(TPenStyle style) {
  const std::vector<int> runs = DashRuns(style, true);
  return std::vector<double>(runs.begin(), runs.end());
}

bool HatchBit(TBrushStyle style, int x, int y) {
  if (style < bsHorizontal || style > bsDiagCross) return true;
  const std::uint8_t row = kHatches[style - bsHorizontal][static_cast<std::size_t>(y & 7)];
  return (row & (0x80 >> (x & 7))) != 0;
}

bool TPaintSource::At(int x, int y, QRgb& out) const {
  switch (kind) {
    case Kind::Solid:
      out = color;
      return true;
    case Kind::Hatch:
      if (HatchBit(hatch, x, y)) {
        out = color;
        return true;
      }
      out = background;
      return paintBackground;
    case Kind::Tile: {
      const int w = tile->width(), h = tile->height();
      const int tx = ((x % w) + w) % w, ty = ((y % h) + h) % h;
      out = reinterpret_cast<const QRgb*>(tile->constScanLine(ty))[tx];
      return true;
    }
  }
  return false;
}

void Composite(const TSurfaceRows& rows, const TMask& mask, const TPaintSource& source, TPenMode mode) {
  if (source.kind == TPaintSource::Kind::Tile && (!source.tile || source.tile->isNull())) return;
  mask.ForEachSpan([&](int y, int x0, int x1) { PaintSpan(rows, y, x0, x1, source, mode); });
}

}  // namespace lumatrex::raster
