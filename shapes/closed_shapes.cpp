#include "shapes/closed_shapes.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstdio>
#include <cstring>
#include <memory>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/screen.h"
#include "shapes/drawing_modes.h"
#include "shapes/measures.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

constexpr long double kMmPerInch = 25.4L;

// Which corners a handle drag moves, and along which unrotated axes.
struct TCornerMove {
  std::int8_t corner;  // -1: unused slot
  bool x;
  bool y;
};
// A corner moves fully; the neighbour sharing its y follows in y, the one
// sharing its x in x. A side handle moves both corners of its side (the
// off-axis part of its delta is zeroed beforehand).
constexpr std::array<std::array<TCornerMove, 3>, 8> kHandleMoves{{
    {{{0, true, true}, {1, false, true}, {3, true, false}}},
    {{{1, true, true}, {0, false, true}, {2, true, false}}},
    {{{2, true, true}, {3, false, true}, {1, true, false}}},
    {{{3, true, true}, {2, false, true}, {0, true, false}}},
    {{{0, true, true}, {1, true, true}, {-1, false, false}}},
    {{{1, true, true}, {2, true, true}, {-1, false, false}}},
    {{{2, true, true}, {3, true, true}, {-1, false, false}}},
    {{{3, true, true}, {0, true, true}, {-1, false, false}}},
}};

// The two corners whose middle is side handle 4-7.
constexpr std::array<std::array<std::int32_t, 2>, 4> kSideCorners{{{0, 1}, {1, 2}, {3, 2}, {0, 3}}};

bool SameQuadrant(const TMyPoint& centre, const TMyPoint& a, const TMyPoint& b) {
  return (IsAtLeftTop(centre, a) && IsAtLeftTop(centre, b)) ||
         (IsAtRightBottom(centre, a) && IsAtRightBottom(centre, b)) ||
         (IsAtRightTop(centre, a) && IsAtRightTop(centre, b)) ||
         (IsAtLeftBottom(centre, a) && IsAtLeftBottom(centre, b));
}

// Pixels a filled polygon covers, outline included, on a Width x Height
// 8-bit bitmap: the polygon is filled once in black and once in red on two
// equal (white) bitmaps, and the bytes that differ are the covered pixels.
std::int64_t CoveredPixels(const std::vector<TPoint>& points, std::int32_t width, std::int32_t height) {
  auto filled = [&](TColor colour) {
    auto bitmap = std::make_unique<TBitmap>(width, height, pf8bit);
    TCanvas& canvas = bitmap->Canvas();
    canvas.Pen().SetColor(colour);
    canvas.Pen().SetMode(pmCopy);
    canvas.Brush().SetColor(colour);
    canvas.Brush().SetStyle(bsSolid);
    canvas.Polygon(points);
    return bitmap;
  };
  const auto black = filled(clBlack);
  const auto red = filled(clRed);
  std::int64_t count = 0;
  for (std::int32_t row = 0; row < height; ++row) {
    const std::uint8_t* a = black->ScanLine(row);
    const std::uint8_t* b = red->ScanLine(row);
    for (std::int32_t x = 0; x < width; ++x) count += a[x] != b[x];
  }
  return count;
}

}  // namespace

// ===========================================================================
// TMyRectangle
// ===========================================================================

TMyRectangle::TMyRectangle(TMyShapeOwner* owner) : TMyShape(owner) {}

// ---- interactive drawing --------------------------------------------------------------

void TMyRectangle::AddPointByMouse(const TPoint& p) {
  if (Points.size() > 1) return;
  TMyShape::AddPointByMouse(p);
  if (Points.size() == 1) return;
  const TMyPoint first = Points[0], second = Points[1];
  if (first.X == second.X || first.Y == second.Y) {
    Points.pop_back();
    return;
  }
  Points = {first, {second.X, first.Y}, second, {first.X, second.Y}};
  CenterPoint = ComputeCenterPoint(4);
}

bool TMyRectangle::IsDrawingFinished(TMouseButton, const TPoint&) { return GetPointsCount() == 4; }

void TMyRectangle::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  canvas.Rectangle(from.X, from.Y, to.X, to.Y);
}

// ---- painting ---------------------------------------------------------------------------

void TMyRectangle::Draw(TCanvas& canvas) {
  SetDrawShapeMode(*this, canvas);
  std::vector<TPoint> frame = RoundPoints(GetPointsInZoom());
  if (!frame.empty()) frame.push_back(frame.front());
  PowerDrawShape(canvas, frame, true);
  if (std::strcmp(ClassName(), "TMyText") != 0) DrawInfo(canvas);
}

void TMyRectangle::DrawRectangle(TCanvas& canvas, const std::vector<TPoint>& corners) const {
  StrokeClosedChain(canvas, corners);
}

void TMyRectangle::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  DrawRectangle(canvas, ShiftAndRound(GetPointsInZoom(), to.X - from.X, to.Y - from.Y));
}

void TMyRectangle::Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) {
  DrawRectangle(canvas, RotatePoints(GetPointsInZoom(), center, angle));
}

void TMyRectangle::Sizing(TCanvas& canvas, const TPoint&, const TPoint& to) {
  TArrMyPoint corners;
  if (!ResizedCorners(PtToMyPt(to), corners)) return;
  for (TMyPoint& p : corners) p = ZoomedValuePt(p);
  DrawRectangle(canvas, RoundPoints(corners));
}

void TMyRectangle::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this)) return;
  for (std::int32_t i = 0; i < 8; ++i)
    if (HasHandle(i)) DrawSquare(*this, canvas, ZoomedValuePt(GetPoint(i)));
  DrawDiamond(*this, canvas, GetCenterPointInZoom(), clYellow);
}

// ---- handles and hit tests ----------------------------------------------------------

bool TMyRectangle::HasHandle(std::int32_t index) const {
  if (index >= 0 && index < 4) return true;
  if (index < 4 || index > 7 || !showSideHot_ || OwnerIsRotating(*this)) return false;
  return index % 2 == 0 ? showVerticalSideHot_ : showHorizontalSideHot_;
}

std::int32_t TMyRectangle::InWhichHot(const TPoint& p) {
  CurrentHot = -1;
  for (std::int32_t i = 0; i < 8; ++i)
    if (HasHandle(i) && InHotSquare(ZoomedValuePt(GetPoint(i)), p, HotSize())) CurrentHot = i;
  return CurrentHot;
}

// Side middles are taken in the unrotated frame and turned back, so they sit
// on the sides of the turned frame.
TMyPoint TMyRectangle::GetPoint(std::int32_t index) const {
  if (index < 4) return TMyShape::GetPoint(index);
  if (index > 7) return {};
  const TMyPoint centre = GetCenterPoint();
  const float angle = GetAngle();
  const auto [i, j] = kSideCorners[static_cast<std::size_t>(index - 4)];
  const TMyPoint a = RotateAPoint(TMyShape::GetPoint(i), centre, -angle);
  const TMyPoint b = RotateAPoint(TMyShape::GetPoint(j), centre, -angle);
  const TMyPoint middle{static_cast<float>((static_cast<long double>(a.X) + b.X) / 2),
                        static_cast<float>((static_cast<long double>(a.Y) + b.Y) / 2)};
  return RotateAPoint(middle, centre, angle);
}

TCursor TMyRectangle::GetMouseCursor(std::int32_t x, std::int32_t y) {
  const std::int32_t hot = InWhichHot(Point(x, y));
  if (hot < 0) return crCross;
  if (hot == 4 || hot == 6) return crSizeNS;
  if (hot == 5 || hot == 7) return crSizeWE;
  const TMyPoint centre = GetCenterPoint(), corner = GetPoint(hot);
  TCursor cursor = crCross;
  if (IsAtLeftTop(centre, corner)) cursor = crSizeNWSE;
  if (IsAtLeftBottom(centre, corner)) cursor = crSizeNESW;
  if (IsAtRightTop(centre, corner)) cursor = crSizeNESW;
  if (IsAtRightBottom(centre, corner)) cursor = crSizeNWSE;
  return cursor;
}

bool TMyRectangle::IsClickedMe(TCanvas&, const TPoint& p) { return PtInZoomedPolygon(*this, p); }

TMyRect TMyRectangle::GetBoundsInZoom() {
  const TMyRect base = TMyShape::GetBoundsInZoom();
  if (Points.size() >= 4) return base;
  TBoundsBuilder box;
  box.Add(base);
  for (std::int32_t i = 0; i < 8; ++i) box.Add(ZoomedValuePt(GetPoint(i)));
  return box.Grown(std::max<long double>(HotSize(), 3) + 1 + PenReach(Pen().Width()));
}

// ---- changes -----------------------------------------------------------------------------

bool TMyRectangle::ResizedCorners(const TMyPoint& to, TArrMyPoint& corners) const {
  const std::int32_t hot = CurrentHot;
  if (hot < 0 || hot > 7 || Points.size() < 4) return false;
  const TMyPoint centre = GetCenterPoint();
  const float angle = GetAngle();
  auto unrotated = [&](const TMyPoint& p) { return RotateAPoint(p, centre, -angle); };
  const long double zoom = Zoom();
  const TMyPoint from = unrotated(GetPoint(hot));
  const TMyPoint target = unrotated(MyPoint(static_cast<float>(to.X / zoom), static_cast<float>(to.Y / zoom)));
  if (!SameQuadrant(centre, from, target)) return false;
  long double dx = static_cast<long double>(target.X) - from.X;
  long double dy = static_cast<long double>(target.Y) - from.Y;
  if (hot == 4 || hot == 6) dx = 0;
  if (hot == 5 || hot == 7) dy = 0;
  corners.assign(Points.begin(), Points.begin() + 4);
  for (const TCornerMove& move : kHandleMoves[static_cast<std::size_t>(hot)]) {
    if (move.corner < 0) continue;
    TMyPoint& p = corners[static_cast<std::size_t>(move.corner)];
    const TMyPoint u = unrotated(p);
    const TMyPoint shifted{static_cast<float>(u.X + (move.x ? dx : 0)), static_cast<float>(u.Y + (move.y ? dy : 0))};
    p = RotateAPoint(shifted, centre, angle);
  }
  return true;
}

void TMyRectangle::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  TMyShape::SizeChangeValue(a, b);
  TArrMyPoint corners;
  if (!ResizedCorners(b, corners)) return;
  Points = corners;
  CenterPoint = ComputeCenterPoint(4);
}

std::string TMyRectangle::GetInfo() {
  return AreaText(static_cast<long double>(GetMyWidth()) * GetMyHeight(), Ratio(), TheUNIT());
}

std::string TMyRectangle::GetLengthByUnit(const TPoint& a, const TPoint& b) const {
  const long double ratio = Ratio(), zoom = Zoom(), ppi = ScreenPixelsPerInch();
  const TUnits unit = TheUNIT();
  auto measured = [&](long double pixels) {
    const long double millimetres = pixels * kMmPerInch / ppi * ratio / zoom;
    switch (unit) {
      case pixel: return pixels * ratio / zoom;
      case mm: return millimetres;
      case cm: return millimetres / 10;
      case dm: return millimetres / 100;
      case m: return millimetres / 1000;
      // Ten times the inches: drawings were measured with this factor.
      case inch: return millimetres / 2.54L;
    }
    return millimetres;
  };
  const char* suffix = unit == pixel ? "pixel(s)" : unit == inch ? "in" : "mm";
  const TMyPoint pa = PtToMyPt(a), pb = PtToMyPt(b), corner = MyPoint(pb.X, pa.Y);
  char text[128];
  std::snprintf(text, sizeof text, "m=%9.2Lf %s\rn=%9.2Lf%s", measured(GetLengthinPixel(pa, corner)), suffix,
                measured(GetLengthinPixel(pb, corner)), suffix);
  return text;
}

void TMyRectangle::Assign(const TMyShape& source) {
  TMyShape::Assign(source);
  const auto* rectangle = dynamic_cast<const TMyRectangle*>(&source);
  if (!rectangle) return;
  associateSideResizing_ = rectangle->associateSideResizing_;
  showSideHot_ = rectangle->showSideHot_;
  showHorizontalSideHot_ = rectangle->showHorizontalSideHot_;
  showVerticalSideHot_ = rectangle->showVerticalSideHot_;
}

// ===========================================================================
// TMyEllipse
// ===========================================================================

namespace {

constexpr std::int32_t kOutlineSteps = 72;  // every 5 degrees

// sin and cos of the outline's parameter angles, the same for every ellipse.
struct TUnitCircle {
  std::array<long double, kOutlineSteps + 1> sin, cos;
};

const TUnitCircle& UnitCircle() {
  static const TUnitCircle circle = [] {
    TUnitCircle c;
    for (std::int32_t i = 0; i <= kOutlineSteps; ++i) {
      const long double t = i * kPi / 36;
      c.sin[static_cast<std::size_t>(i)] = std::sin(t);
      c.cos[static_cast<std::size_t>(i)] = std::cos(t);
    }
    return c;
  }();
  return circle;
}

template <typename T>
bool SameValueBits(const T& a, const T& b) {
  return std::memcmp(&a, &b, sizeof(T)) == 0;
}

}  // namespace

TArrMyPoint TMyEllipse::Outline() const {
  const long double zoom = Zoom();
  const long double a = zoom * GetMyWidth() / 2, b = zoom * GetMyHeight() / 2;
  const long double angle = GetAngle();
  const long double cosA = std::cos(angle), sinA = std::sin(angle);
  const TMyPoint centre = GetCenterPointInZoom();
  const TUnitCircle& circle = UnitCircle();
  TArrMyPoint outline;
  outline.reserve(kOutlineSteps + 1);
  for (std::size_t i = 0; i <= kOutlineSteps; ++i) {
    const long double u = a * circle.sin[i], v = b * circle.cos[i];
    outline.push_back({static_cast<float>(u * cosA - v * sinA + centre.X),
                       static_cast<float>(u * sinA + v * cosA + centre.Y)});
  }
  return outline;
}

const TMyEllipse::TOutlineCache& TMyEllipse::CachedOutline() const {
  TOutlineCache& cache = outlineCache_;
  const double zoom = Zoom();
  const float angle = GetAngle();
  if (!cache.valid || !SameBits(cache.points, Points) || !SameValueBits(cache.centre, CenterPoint) ||
      !SameValueBits(cache.angle, angle) || !SameValueBits(cache.zoom, zoom)) {
    cache.zoomed = Outline();
    cache.device = RoundPoints(cache.zoomed);
    cache.points = Points;
    cache.centre = CenterPoint;
    cache.angle = angle;
    cache.zoom = zoom;
    cache.valid = true;
  }
  return cache;
}

void TMyEllipse::Draw(TCanvas& canvas) {
  PowerDrawShape(canvas, CachedOutline().device, true);
  DrawInfo(canvas);
}

void TMyEllipse::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  canvas.Ellipse(from.X, from.Y, to.X, to.Y);
}

void TMyEllipse::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  canvas.LineChain(ShiftAndRound(CachedOutline().zoomed, to.X - from.X, to.Y - from.Y));
}

TMyRect TMyEllipse::GetBoundsInZoom() {
  // The outline's box, worked out from its centre, half-axes and turn.
  const long double zoom = Zoom();
  const long double a = zoom * GetMyWidth() / 2, b = zoom * GetMyHeight() / 2;
  const long double angle = GetAngle();
  const long double c = std::cos(angle), s = std::sin(angle);
  const TMyPoint centre = GetCenterPointInZoom();
  TBoundsBuilder box;
  box.Add(TMyRectangle::GetBoundsInZoom());
  box.Add(centre.X - std::hypot(a * c, b * s), centre.Y - std::hypot(a * s, b * c));
  box.Add(centre.X + std::hypot(a * c, b * s), centre.Y + std::hypot(a * s, b * c));
  return box.Grown(PenReach(Pen().Width()));
}

std::string TMyEllipse::GetInfo() {
  const long double w = GetMyWidth(), h = GetMyHeight();
  return AreaText(kPi * (w / 2) * (h / 2), Ratio(), TheUNIT());
}

// ===========================================================================
// TMyPolygon
// ===========================================================================

bool TMyPolygon::IsDrawingFinished(TMouseButton, const TPoint& p) {
  const std::int32_t n = GetPointsCount();
  if (n <= 3) return false;
  const long double hot = HotSize();
  auto nearClick = [&](const TMyPoint& zoomed) {
    return std::fabs(p.X - static_cast<long double>(zoomed.X)) < hot &&
           std::fabs(p.Y - static_cast<long double>(zoomed.Y)) < hot;
  };
  if (!nearClick(GetPointInZoom(0)) && !nearClick(GetPointInZoom(n - 2))) return false;
  Points.back() = Points.front();
  return true;
}

void TMyPolygon::Draw(TCanvas& canvas) {
  PowerDrawShape(canvas, RoundPoints(GetPointsInZoom()), true);
  DrawInfo(canvas);
}

std::int32_t TMyPolygon::ClosingTwin(std::int32_t h) const {
  const std::int32_t last = GetPointsCount() - 1;
  if (last < 1 || Points.front() != Points.back()) return -1;
  if (h == 0) return last;
  if (h == last) return 0;
  return -1;
}

void TMyPolygon::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this)) return;
  TArrMyPoint vertices = GetPointsInZoom();
  if (ClosingTwin(0) > 0) vertices.pop_back();
  for (const TMyPoint& p : vertices) DrawSquare(*this, canvas, p);
  DrawDiamond(*this, canvas, GetCenterPointInZoom(), clYellow);
}

bool TMyPolygon::IsClickedMe(TCanvas&, const TPoint& p) { return PtInZoomedPolygon(*this, p); }

void TMyPolygon::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  if (ClosingTwin(CurrentHot) < 0) {
    TMyPolyLine::Sizing(canvas, from, to);
    return;
  }
  DrawMovedVertex(canvas, GetPointsCount() - 2, 0, 1, to.X - from.X, to.Y - from.Y);
}

void TMyPolygon::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  // The closing copy moves with vertex 0, so the outline stays closed.
  const std::int32_t twin = ClosingTwin(CurrentHot);
  if (twin >= 0) PointAddXY(twin, static_cast<double>(b.X) - a.X, static_cast<double>(b.Y) - a.Y);
  TMyPolyLine::SizeChangeValue(a, b);
}

std::string TMyPolygon::GetInfo() {
  // Counted on the model outline at zoom 1, moved so its box starts at the
  // origin (the shape's own points are not touched).
  const TMyPoint origin = GetLeftTop();
  std::vector<TPoint> outline;
  outline.reserve(Points.size());
  for (const TMyPoint& p : Points)
    outline.push_back(MyPtToPt(MyPoint(static_cast<float>(static_cast<long double>(p.X) - origin.X),
                                       static_cast<float>(static_cast<long double>(p.Y) - origin.Y))));
  const std::int64_t covered = CoveredPixels(outline, Round(GetWidth()), Round(GetHeight()));
  return AreaText(static_cast<long double>(covered), Ratio(), TheUNIT());
}

}  // namespace lumatrex
