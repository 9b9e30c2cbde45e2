// Snapping, axis constraints and the coordinate helpers of the gestures.
#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <utility>

#include "canvas/tmycad.h"
#include "shapes/arc.h"
#include "shapes/closed_shapes.h"
#include "shapes/lines.h"

namespace lumatrex {

namespace {

constexpr std::int32_t kNoCorrection = 10000;

// The correction of smallest magnitude among the non-zero ones, or 0.
std::int32_t SmallestCorrection(const std::vector<std::int32_t>& corrections) {
  std::int32_t best = kNoCorrection;
  for (const std::int32_t c : corrections)
    if (c != 0 && std::abs(c) < std::abs(best)) best = c;
  return best == kNoCorrection ? 0 : best;
}

// One axis of grid snapping: V near a multiple of Step (closer than Pixels)
// moves onto it. The second branch only fires when Pixels exceeds half a
// step; it is kept as drawings made with it expect.
bool SnapAxis(std::int32_t& v, long double step, std::int32_t pixels) {
  const long double q = Round(v / step);
  const long double off = v - q * step;
  if (std::fabs(off) < pixels) {
    const std::int32_t snapped = Round(q * step);
    const bool changed = snapped != v;
    v = snapped;
    return changed;
  }
  if (off > step - pixels) {
    const std::int32_t snapped = Round(Round(v / step + 1) * step);
    const bool changed = snapped != v;
    v = snapped;
    return changed;
  }
  return false;
}

}  // namespace

void TMyCAD::SetSelectShapeMode() {
  TCanvas& canvas = Canvas();
  canvas.Pen().SetCosmetic();
  canvas.Pen().SetWidth(1);
  canvas.Pen().SetStyle(psDot);
  canvas.Pen().SetMode(pmXor);
  canvas.Brush().SetStyle(bsClear);
  canvas.Pen().SetColor((ColorToRGB(pen_.Color()) + 0xFFFFFF) / 2);
}

bool TMyCAD::SnapToGrid(std::int32_t& x, std::int32_t& y) const {
  const double scale = grid_->GetGridInZoom() ? zoom_ : 1.0;
  const long double sx = grid_->GetGridWidth() * scale, sy = grid_->GetGridHeight() * scale;
  bool snapped = false;
  if (sx > 0) snapped = SnapAxis(x, sx, snapPixels_) || snapped;
  if (sy > 0) snapped = SnapAxis(y, sy, snapPixels_) || snapped;
  return snapped;
}

// Edges of other top-level shapes within SnapPixels pull the point onto them.
// The 0.8 and 1.2 factors widen the catch band by scaling the coordinates
// themselves, as drawings made with this rule expect. A shape whose vertical
// edge catches (X, Y) has its box meet the band X +- SnapPixels across and
// Y / 1.2 .. Y / 0.8 down (for either sign of Y), and likewise for the
// horizontal edges: the index gives those candidates, in list order, so the
// last shape that catches still decides, as in a walk over every shape.
void TMyCAD::SnapToShapes(std::int32_t& x, std::int32_t& y) const {
  std::int32_t dxLeft = 0, dxRight = 0, dyTop = 0, dyBottom = 0;
  const long double px = snapPixels_;
  auto band = [](long double v) {
    const long double a = v / 1.2L, b = v / 0.8L;
    return std::pair<float, float>(static_cast<float>(std::min(a, b) - 1), static_cast<float>(std::max(a, b) + 1));
  };
  std::vector<TMyShape*> candidates;
  const auto [top, bottom] = band(y);
  IndexQuery({static_cast<float>(x - px - 1), top, static_cast<float>(x + px + 1), bottom}, true, candidates);
  for (TMyShape* shape : candidates) {
    if (shape == currentShape_) continue;
    const TMyRect r = GetShapesLTRBinZoom({shape});
    auto vertical = [&](long double e, std::int32_t& d) {
      if (e - px <= x && x <= e + px && 0.8L * r.Top <= y && y <= 1.2L * r.Bottom) d = Round(x - e);
    };
    vertical(r.Left, dxLeft);
    vertical(r.Right, dxRight);
  }
  const auto [left, right] = band(x);
  IndexQuery({left, static_cast<float>(y - px - 1), right, static_cast<float>(y + px + 1)}, true, candidates);
  for (TMyShape* shape : candidates) {
    if (shape == currentShape_) continue;
    const TMyRect r = GetShapesLTRBinZoom({shape});
    auto horizontal = [&](long double e, std::int32_t& d) {
      if (e - px <= y && y <= e + px && 0.8L * r.Left <= x && x <= 1.2L * r.Right) d = Round(y - e);
    };
    horizontal(r.Top, dyTop);
    horizontal(r.Bottom, dyBottom);
  }
  x -= SmallestCorrection({dxLeft, dxRight});
  y -= SmallestCorrection({dyTop, dyBottom});
}

bool TMyCAD::SnapXY(std::int32_t& x, std::int32_t& y) {
  const std::int32_t x0 = x, y0 = y;
  const bool grid = snap_ && SnapToGrid(x, y);
  if (snapShape_ && !grid) SnapToShapes(x, y);
  return grid || x != x0 || y != y0;
}

void TMyCAD::SnapRect(const TRect& r, std::int32_t& x, std::int32_t& y) {
  std::vector<std::int32_t> dxs, dys;
  for (const TPoint corner : {Point(r.Left, r.Top), Point(r.Right, r.Top), Point(r.Right, r.Bottom), Point(r.Left, r.Bottom)}) {
    TPoint c = corner;
    SnapXY(c.X, c.Y);
    dxs.push_back(c.X - corner.X);
    dys.push_back(c.Y - corner.Y);
  }
  x += SmallestCorrection(dxs);
  y += SmallestCorrection(dys);
}

void TMyCAD::GetMousePointbyDragMode(const TPoint& p, TPoint& q) const {
  if (dragMode_ == dgHorz) q.Y = p.Y;
  if (dragMode_ == dgVert) q.X = p.X;
}

TPoint TMyCAD::GetPointByMode(const TPoint& p) const {
  switch (xyMode_) {
    case Mode1: return Point(p.X, Height() - p.Y);
    case Mode2: return Point(Width() - p.X, Height() - p.Y);
    case Mode3: return Point(Width() - p.X, p.Y);
    default: return p;
  }
}

TMyPoint TMyCAD::GetMyPointByMode(const TMyPoint& p) const {
  const float w = static_cast<float>(Width()), h = static_cast<float>(Height());
  switch (xyMode_) {
    case Mode1: return MyPoint(p.X, h - p.Y);
    case Mode2: return MyPoint(w - p.X, h - p.Y);
    case Mode3: return MyPoint(w - p.X, p.Y);
    default: return p;
  }
}

bool TMyCAD::IsInRegion(const TPoint& p1, const TPoint& p2, TMyShape* shape) const {
  const TMyRect box = GetShapesLTRBinZoom({GetRootParentShape(shape)});
  return std::min(p1.X, p2.X) <= box.Left && std::min(p1.Y, p2.Y) <= box.Top && std::max(p1.X, p2.X) >= box.Right &&
         std::max(p1.Y, p2.Y) >= box.Bottom;
}

// A box becomes square (the larger side wins); a line snaps to the nearer axis.
void TMyCAD::DrawMakeSquareorHV(TShiftState shift, TMyShape* shape, const TPoint& from, TPoint& to) const {
  if (!(shift & ssShift) || !shape) return;
  const std::int32_t dx = to.X - from.X, dy = to.Y - from.Y;
  if (dynamic_cast<TMyRectangle*>(shape)) {
    const std::int32_t side = std::max(std::abs(dx), std::abs(dy));
    to = Point(from.X + (dx < 0 ? -side : side), from.Y + (dy < 0 ? -side : side));
  } else if (dynamic_cast<TMyLine*>(shape)) {
    if (std::abs(dx) >= std::abs(dy))
      to.Y = from.Y;
    else
      to.X = from.X;
  }
}

void TMyCAD::ResizeMakeSquareorHV(TShiftState shift, TMyShape* shape, const TPoint& from, TPoint& to) const {
  if (!shape) return;
  // An arc's end handles slide along its outline; Shift holds them to whole
  // steps of 15 degrees.
  if (auto* arc = dynamic_cast<TMyElliArc*>(shape); arc && TMyElliArc::IsEndHandle(arc->CurrentHot)) {
    if (shift & ssShift) to = arc->SnapToAngleStep(to);
    return;
  }
  // A rectangle's side handles already move along one axis; only corners
  // are squared, measured from the corner opposite the dragged one.
  if (auto* box = dynamic_cast<TMyRectangle*>(shape)) {
    const std::int32_t hot = box->CurrentHot;
    if (hot < 0 || hot >= 4) return;
    return DrawMakeSquareorHV(shift, shape, MyPtToPt(shape->GetPointInZoom((hot + 2) % 4)), to);
  }
  DrawMakeSquareorHV(shift, shape, from, to);
}

double TMyCAD::GetRotatedAngle(const TMyPoint& center, const TPoint& from, const TPoint& to) const {
  long double angle = GetSlopeAngle(PtToMyPt(to), center) - GetSlopeAngle(PtToMyPt(from), center);
  if (rotateConstraintDegree_ > 0) {
    const long double step = rotateConstraintDegree_ * kPi / 180;
    angle = Round(angle / step) * step;
  }
  return static_cast<double>(angle);
}

}  // namespace lumatrex
