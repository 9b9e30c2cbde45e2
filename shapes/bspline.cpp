#include "shapes/bspline.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <limits>

#include "platform/canvas.h"
#include "shapes/bspline_system.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

constexpr std::int32_t kSampleSegments = 600;
constexpr float kCornerTolerance = 1e-5f;
constexpr TColor kCentreDiamondColor = 65535;

// Distance from P to the segment A-B (device pixels).
long double DistanceToSegment(const TPoint& p, const TMyPoint& a, const TMyPoint& b) {
  const long double dx = static_cast<long double>(b.X) - a.X, dy = static_cast<long double>(b.Y) - a.Y;
  const long double px = p.X - static_cast<long double>(a.X), py = p.Y - static_cast<long double>(a.Y);
  const long double length2 = dx * dx + dy * dy;
  const long double s = length2 > 0 ? std::clamp((px * dx + py * dy) / length2, 0.0L, 1.0L) : 0.0L;
  return std::hypot(px - s * dx, py - s * dy);
}

bool SamePoint(const TMyPoint& a, const TMyPoint& b) {
  return std::fabs(a.X - b.X) < kCornerTolerance && std::fabs(a.Y - b.Y) < kCornerTolerance;
}

TMyPoint Shifted(const TMyPoint& p, long double dx, long double dy) {
  return MyPoint(static_cast<float>(p.X + dx), static_cast<float>(p.Y + dy));
}

}  // namespace

TMyBLine::TMyBLine(TMyShapeOwner* owner) : TMyShape(owner) {}

// ---------------------------------------------------------------------------
// The curve

void TMyBLine::AddVertex(const TMyPoint& p) {
  assert(vertexCount_ < kMaxPoints);
  ++vertexCount_;
  vertices_[static_cast<std::size_t>(vertexCount_)] = p;
  PhantomPoints();
}

void TMyBLine::PhantomPoints() {
  if (vertexCount_ <= 1) return;
  auto reflect = [](const TMyPoint& end, const TMyPoint& neighbour) {
    return MyPoint(static_cast<float>(2.0L * end.X - neighbour.X), static_cast<float>(2.0L * end.Y - neighbour.Y));
  };
  const auto n = static_cast<std::size_t>(vertexCount_);
  vertices_[0] = reflect(vertices_[1], vertices_[2]);
  vertices_[n + 1] = reflect(vertices_[n], vertices_[n - 1]);
}

TMyPoint TMyBLine::Vertex(std::int32_t i) const {
  return i >= 0 && i <= vertexCount_ + 1 ? vertices_[static_cast<std::size_t>(i)] : TMyPoint{};
}

TMyPoint TMyBLine::GetVPoint(float t) const {
  const long double x = static_cast<long double>(vertexCount_ - 1) * t;
  const auto first = static_cast<std::int32_t>(std::trunc(x)) - 2;
  long double sx = 0, sy = 0;
  for (std::int32_t j = first; j < first + 6; ++j) {
    if (j < 0 || j > vertexCount_ + 1) continue;
    // Vertex j is centred at parameter j - 1 (vertex 0 is the phantom).
    const long double d = std::fabs(x - (j - 1));
    if (d >= 2) continue;
    const long double w = d < 1 ? 2.0L / 3 - d * d + d * d * d / 2 : (2 - d) * (2 - d) * (2 - d) / 6;
    sx += w * vertices_[static_cast<std::size_t>(j)].X;
    sy += w * vertices_[static_cast<std::size_t>(j)].Y;
  }
  return MyPoint(static_cast<float>(sx), static_cast<float>(sy));
}

void TMyBLine::Interpolate() {
  const std::int32_t n = vertexCount_;
  // Allocated here and released on return, whatever the outcome.
  TSplineSystem system;
  system.SetIdentityRow(1);
  system.SetIdentityRow(n);
  // Interior rows: the curve at knot i is (v[i-1] + 4 v[i] + v[i+1]) / 6.
  for (std::int32_t i = 2; i < n; ++i) {
    system.A(i, i - 1) = 1.0f / 6;
    system.A(i, i) = 2.0f / 3;
    system.A(i, i + 1) = 1.0f / 6;
  }
  // A tripled point pins all three control vertices to it: the curve runs
  // straight into the point and straight out again.
  for (std::int32_t i = 2; i < n; ++i) {
    const auto at = static_cast<std::size_t>(i);
    if (!SamePoint(vertices_[at], vertices_[at - 1]) || !SamePoint(vertices_[at], vertices_[at + 1])) continue;
    system.SetIdentityRow(i - 1);
    system.SetIdentityRow(i);
    system.SetIdentityRow(i + 1);
  }
  for (std::int32_t i = 1; i <= n; ++i) {
    system.X[static_cast<std::size_t>(i)] = vertices_[static_cast<std::size_t>(i)].X;
    system.Y[static_cast<std::size_t>(i)] = vertices_[static_cast<std::size_t>(i)].Y;
  }
  if (!SolveWithoutPivoting(system, 1, n)) return;
  for (std::int32_t i = 1; i <= n; ++i)
    vertices_[static_cast<std::size_t>(i)] =
        MyPoint(system.X[static_cast<std::size_t>(i)], system.Y[static_cast<std::size_t>(i)]);
  PhantomPoints();
}

std::vector<TPoint> TMyBLine::SampleCurve() const {
  std::vector<TPoint> samples;
  samples.reserve(kSampleSegments + 1);
  for (std::int32_t i = 0; i <= kSampleSegments; ++i)
    samples.push_back(MyPtToPt(GetVPoint(static_cast<float>(i) / kSampleSegments)));
  return samples;
}

void TMyBLine::DrawBLine(TCanvas& canvas) { canvas.LineChain(SampleCurve()); }

void TMyBLine::DrawCachedCurve(TCanvas& canvas) {
  TCurveCache& cache = curveCache_;
  TArrMyPoint zoomed = ZoomedPoints();
  if (!cache.valid || !SameBits(zoomed, cache.zoomed)) {
    cache.samples = LoadVertices(zoomed) ? SampleCurve() : std::vector<TPoint>();
    cache.zoomed = std::move(zoomed);
    cache.vertices = vertices_;
    cache.vertexCount = vertexCount_;
    cache.valid = true;
  } else {
    vertices_ = cache.vertices;
    vertexCount_ = cache.vertexCount;
  }
  canvas.LineChain(cache.samples);
}

bool TMyBLine::LoadVertices(const TArrMyPoint& zoomed) {
  vertexCount_ = 0;
  const std::size_t count = std::min(zoomed.size(), static_cast<std::size_t>(kMaxPoints));
  for (std::size_t i = 0; i < count; ++i) AddVertex(zoomed[i]);
  Interpolate();
  return vertexCount_ >= 2;
}

void TMyBLine::DrawCurveThrough(TCanvas& canvas, const TArrMyPoint& zoomed) {
  if (LoadVertices(zoomed)) DrawBLine(canvas);
}

TArrMyPoint TMyBLine::ZoomedPoints() const {
  TArrMyPoint zoomed;
  zoomed.reserve(Points.size());
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) zoomed.push_back(GetPointInZoom(i));
  return zoomed;
}

// ---------------------------------------------------------------------------
// Painting

void TMyBLine::Draw(TCanvas& canvas) {
  SetDrawShapeMode(*this, canvas);
  TPen previous;
  previous.Assign(canvas.Pen());
  SetPS(canvas, canvas.Pen().Style(), canvas.Pen().Color(), canvas.Pen().Width());
  canvas.BeginPath();
  DrawCachedCurve(canvas);
  canvas.EndPath();
  canvas.StrokePath();
  canvas.Pen().Assign(previous);
  DrawInfo(canvas);
}

void TMyBLine::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const long double dx = to.X - from.X, dy = to.Y - from.Y;
  TArrMyPoint zoomed = ZoomedPoints();
  for (TMyPoint& p : zoomed) p = Shifted(p, dx, dy);
  DrawCurveThrough(canvas, zoomed);
}

void TMyBLine::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  SetDragResizeRotateShapeMode(canvas);
  TArrMyPoint rounded;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) rounded.push_back(PtToMyPt(MyPtToPt(GetPointInZoom(i))));
  const TMyPoint mouse = PtToMyPt(to);
  if (GetPointsCount() < kMaxPoints && (rounded.empty() || !(rounded.back() == mouse))) rounded.push_back(mouse);
  DrawCurveThrough(canvas, rounded);
}

void TMyBLine::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  if (!IsExistPt(CurrentHot, Points)) return;
  TArrMyPoint zoomed = ZoomedPoints();
  TMyPoint& moved = zoomed[static_cast<std::size_t>(CurrentHot)];
  moved = Shifted(moved, to.X - from.X, to.Y - from.Y);
  DrawCurveThrough(canvas, zoomed);
}

void TMyBLine::Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) {
  TArrMyPoint zoomed = ZoomedPoints();
  for (TMyPoint& p : zoomed) p = RotateAPoint(p, center, static_cast<float>(angle));
  DrawCurveThrough(canvas, zoomed);
}

void TMyBLine::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this)) return;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) DrawSquare(*this, canvas, GetPointInZoom(i));
  DrawDiamond(*this, canvas, GetCenterPointInZoom(), kCentreDiamondColor);
}

// ---------------------------------------------------------------------------
// Hit tests

std::int32_t TMyBLine::InWhichHot(const TPoint& p) {
  const std::int32_t h = HotSize();
  CurrentHot = -1;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) {
    const TPoint c = MyPtToPt(GetPointInZoom(i));
    if (PtInRect(Rect(c.X - h, c.Y - h, c.X + h, c.Y + h), p)) CurrentHot = i;
  }
  return CurrentHot;
}

std::int32_t TMyBLine::NearestSampleSegment(const TPoint& p) {
  if (!LoadVertices(ZoomedPoints())) return -1;
  const long double tolerance = std::max<long double>(HotSize(), Pen().Width() / 2.0L);
  long double nearest = std::numeric_limits<long double>::max();
  std::int32_t found = -1;
  TMyPoint previous = GetVPoint(0);
  for (std::int32_t i = 1; i <= kSampleSegments; ++i) {
    const TMyPoint next = GetVPoint(static_cast<float>(i) / kSampleSegments);
    const long double d = DistanceToSegment(p, previous, next);
    if (d <= tolerance && d < nearest) {
      nearest = d;
      found = i - 1;
    }
    previous = next;
  }
  return found;
}

bool TMyBLine::IsClickedMe(TCanvas&, const TPoint& p) { return NearestSampleSegment(p) >= 0; }

TMyRect TMyBLine::GetBoundsInZoom() {
  TBoundsBuilder box;
  box.Add(TMyShape::GetBoundsInZoom());
  if (!LoadVertices(ZoomedPoints())) return box.Grown(0);
  TBoundsBuilder curve;
  for (std::int32_t i = 0; i <= kSampleSegments; ++i) curve.Add(GetVPoint(static_cast<float>(i) / kSampleSegments));
  const long double tolerance = std::max<long double>(HotSize(), Pen().Width() / 2.0L);
  box.Add(curve.Grown(std::max(tolerance, PenReach(Pen().Width())) + 1));
  return box.Grown(0);
}

bool TMyBLine::IsClickedMeBeforeWhichPoint(std::int32_t& index, const TPoint& p) {
  index = -1;
  if (GetPointsCount() >= kMaxPoints) return false;
  const std::int32_t segment = NearestSampleSegment(p);
  if (segment < 0) return false;
  // Clicked point k lies at parameter k of the curve; the middle of the hit
  // sample tells which two clicked points it runs between.
  const long double x = (vertexCount_ - 1) * (segment + 0.5L) / kSampleSegments;
  index = std::clamp(static_cast<std::int32_t>(x), 0, vertexCount_ - 2) + 1;
  return true;
}

// ---------------------------------------------------------------------------
// Creation and editing

void TMyBLine::AddPointByMouse(const TPoint& p) {
  if (GetPointsCount() < kMaxPoints) TMyShape::AddPointByMouse(p);
}

bool TMyBLine::IsDrawingFinished(TMouseButton, const TPoint&) {
  const std::int32_t n = GetPointsCount();
  if (n > 2 && Points[static_cast<std::size_t>(n - 1)] == Points[static_cast<std::size_t>(n - 2)]) {
    Points.pop_back();
    return true;
  }
  return n >= kMaxPoints;
}

void TMyBLine::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  TMyShape::SizeChangeValue(a, b);
  PointAddXY(CurrentHot, static_cast<double>(b.X) - a.X, static_cast<double>(b.Y) - a.Y);
  CenterPoint = ComputeCenterPoint(4);
}

}  // namespace lumatrex
