#include "shapes/arc.h"

#include <algorithm>
#include <cmath>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/measures.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

constexpr long double kDegree = kPi / 180;
// Drawn outlines are sampled at least this finely; at 2 degrees a radius of
// 1000 device pixels strays less than a fifth of a pixel from the curve.
constexpr long double kDrawStep = 2 * kDegree;
// Lengths are measured on a finer sampling.
constexpr long double kMeasureStep = kDegree / 8;
constexpr std::size_t kStart = 4, kEnd = 5;

// The sweep from Start to End with t growing, in (0, 2 pi]; equal ends make
// the whole outline.
long double Sweep(long double start, long double end) {
  long double sweep = std::fmod(end - start, 2 * kPi);
  if (sweep <= 0) sweep += 2 * kPi;
  return sweep;
}

}  // namespace

TMyElliArc::TMyElliArc(TMyShapeOwner* owner) : TMyRectangle(owner) {}

// ---- geometry of the frame ---------------------------------------------------------------

TMyElliArc::TAxes TMyElliArc::Axes() const {
  if (Points.size() < 4) return {};
  const TMyPoint& p0 = Points[0];
  const long double cx = (static_cast<long double>(p0.X) + Points[2].X) / 2;
  const long double cy = (static_cast<long double>(p0.Y) + Points[2].Y) / 2;
  TAxes axes{MyPoint(static_cast<float>(cx), static_cast<float>(cy)),
             (static_cast<long double>(Points[1].X) - p0.X) / 2, (static_cast<long double>(Points[1].Y) - p0.Y) / 2,
             (static_cast<long double>(Points[3].X) - p0.X) / 2, (static_cast<long double>(Points[3].Y) - p0.Y) / 2};
  if (arcMode_ == amCircle) {
    const long double u = std::hypot(axes.ux, axes.uy), v = std::hypot(axes.vx, axes.vy);
    const long double r = std::min(u, v);
    if (u > 0) axes.ux *= r / u, axes.uy *= r / u;
    if (v > 0) axes.vx *= r / v, axes.vy *= r / v;
  }
  return axes;
}

long double TMyElliArc::AngleOf(const TMyPoint& model) const {
  const TAxes a = Axes();
  const long double det = a.ux * a.vy - a.uy * a.vx;
  if (det == 0) return 0;
  const long double qx = static_cast<long double>(model.X) - a.centre.X;
  const long double qy = static_cast<long double>(model.Y) - a.centre.Y;
  return std::atan2((a.ux * qy - a.uy * qx) / det, (qx * a.vy - qy * a.vx) / det);
}

TMyPoint TMyElliArc::OutlineAt(long double t) const {
  const TAxes a = Axes();
  const long double c = std::cos(t), s = std::sin(t);
  return MyPoint(static_cast<float>(a.centre.X + a.ux * c + a.vx * s),
                 static_cast<float>(a.centre.Y + a.uy * c + a.vy * s));
}

long double TMyElliArc::StartAngle() const { return Points.size() > kStart ? AngleOf(Points[kStart]) : 0; }
long double TMyElliArc::EndAngle() const { return Points.size() > kEnd ? AngleOf(Points[kEnd]) : 0; }

void TMyElliArc::PlaceEnds(long double start, long double end) {
  Points.resize(std::max<std::size_t>(Points.size(), kEnd + 1));
  Points[kStart] = OutlineAt(start);
  Points[kEnd] = OutlineAt(end);
  Changed();
}

TArrMyPoint TMyElliArc::OutlineInZoom() const {
  TArrMyPoint outline;
  if (Points.size() < 4) return outline;
  const long double start = StartAngle(), sweep = Sweep(start, EndAngle()), zoom = Zoom();
  const auto steps = static_cast<std::int32_t>(std::ceil(sweep / kDrawStep));
  auto add = [&](const TMyPoint& p) {
    outline.push_back(MyPoint(static_cast<float>(p.X * zoom), static_cast<float>(p.Y * zoom)));
  };
  for (std::int32_t i = 0; i <= steps; ++i) add(OutlineAt(start + sweep * i / steps));
  if (arcStyle_ == asPie) add(Axes().centre);
  return outline;
}

// ---- interactive drawing -----------------------------------------------------------------

void TMyElliArc::AddPointByMouse(const TPoint& p) {
  if (Points.size() >= 4) return;
  TMyRectangle::AddPointByMouse(p);
  if (Points.size() != 4) return;
  // Angle t = -90 degrees lies on the side V points away from; pick the top
  // and the right whatever corner the drag started from.
  const TAxes a = Axes();
  const long double top = a.vy > 0 ? -kPi / 2 : kPi / 2;
  const long double right = a.ux > 0 ? 0 : kPi;
  const bool clockwise = a.ux * a.vy - a.uy * a.vx > 0;
  if (clockwise)
    PlaceEnds(top, right);
  else
    PlaceEnds(right, top);
}

bool TMyElliArc::IsDrawingFinished(TMouseButton, const TPoint&) { return Points.size() > kEnd; }

void TMyElliArc::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const TBrushStyle fill = canvas.Brush().Style();
  canvas.Brush().SetStyle(bsClear);
  canvas.Ellipse(from.X, from.Y, to.X, to.Y);
  canvas.Brush().SetStyle(fill);
}

// ---- painting -------------------------------------------------------------------------------

void TMyElliArc::Draw(TCanvas& canvas) {
  PowerDrawShape(canvas, RoundPoints(OutlineInZoom()), arcStyle_ != asArc);
  DrawInfo(canvas);
}

void TMyElliArc::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const std::vector<TPoint> outline = ShiftAndRound(OutlineInZoom(), to.X - from.X, to.Y - from.Y);
  arcStyle_ == asArc ? canvas.LineChain(outline) : StrokeClosedChain(canvas, outline);
}

void TMyElliArc::Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) {
  const std::vector<TPoint> outline = RotatePoints(OutlineInZoom(), center, angle);
  arcStyle_ == asArc ? canvas.LineChain(outline) : StrokeClosedChain(canvas, outline);
}

// The preview is the outline the release will make: the change is applied,
// drawn and taken back, so preview and result cannot disagree.
void TMyElliArc::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const TArrMyPoint saved = Points;
  const TMyPoint centre = CenterPoint;
  SizeChangeValue(PtToMyPt(from), PtToMyPt(to));
  const std::vector<TPoint> outline = RoundPoints(OutlineInZoom());
  Points = saved;
  CenterPoint = centre;
  arcStyle_ == asArc ? canvas.LineChain(outline) : StrokeClosedChain(canvas, outline);
}

void TMyElliArc::DrawHot(TCanvas& canvas) {
  TMyRectangle::DrawHot(canvas);
  if (!OwnerShowsHandles(*this) || Points.size() <= kEnd) return;
  DrawSquare(*this, canvas, ZoomedValuePt(Points[kStart]));
  DrawSquare(*this, canvas, ZoomedValuePt(Points[kEnd]));
}

// ---- handles and hit tests ---------------------------------------------------------------------

std::int32_t TMyElliArc::InWhichHot(const TPoint& p) {
  TMyRectangle::InWhichHot(p);
  if (Points.size() > kEnd)
    for (std::int32_t hot : {8, 9})
      if (InHotSquare(ZoomedValuePt(GetPoint(hot)), p, HotSize())) CurrentHot = hot;
  return CurrentHot;
}

TMyPoint TMyElliArc::GetPoint(std::int32_t index) const {
  if (IsEndHandle(index)) return TMyShape::GetPoint(index - 4);
  return TMyRectangle::GetPoint(index);
}

bool TMyElliArc::IsClickedMe(TCanvas&, const TPoint& p) {
  const std::vector<TPoint> outline = RoundPoints(OutlineInZoom());
  return NearChain(outline, p) || (arcStyle_ != asArc && PtInPolygon(outline, p));
}

TPoint TMyElliArc::SnapToAngleStep(const TPoint& p) const {
  const long double zoom = Zoom(), step = 15 * kDegree;
  const long double t = AngleOf(MyPoint(static_cast<float>(p.X / zoom), static_cast<float>(p.Y / zoom)));
  const TMyPoint snapped = OutlineAt(std::nearbyint(t / step) * step);
  return MyPtToPt(ZoomedValuePt(snapped));
}

// ---- changes ------------------------------------------------------------------------------------

void TMyElliArc::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  if (Points.size() < 4) return;
  const long double start = StartAngle(), end = EndAngle();
  if (IsEndHandle(CurrentHot) && Points.size() > kEnd) {
    const long double zoom = Zoom();
    const long double t = AngleOf(MyPoint(static_cast<float>(b.X / zoom), static_cast<float>(b.Y / zoom)));
    CurrentHot == 8 ? PlaceEnds(t, end) : PlaceEnds(start, t);
    return;
  }
  TMyShape::SizeChangeValue(a, b);
  TArrMyPoint corners;
  if (!ResizedCorners(b, corners)) return;
  const bool hasEnds = Points.size() > kEnd;
  std::copy(corners.begin(), corners.end(), Points.begin());
  if (hasEnds) PlaceEnds(start, end);
  CenterPoint = ComputeCenterPoint(4);
}

std::string TMyElliArc::GetInfo() {
  if (Points.size() < 4) return {};
  const long double start = StartAngle(), sweep = Sweep(start, EndAngle());
  if (arcStyle_ != asArc) {
    // The frame maps the unit circle onto the outline, so areas are the
    // circle's sector (t / 2) and segment ((t - sin t) / 2) times |U x V|.
    const TAxes a = Axes();
    const long double scale = std::fabs(a.ux * a.vy - a.uy * a.vx);
    const long double unit = arcStyle_ == asPie ? sweep / 2 : (sweep - std::sin(sweep)) / 2;
    return AreaText(scale * unit, Ratio(), TheUNIT());
  }
  const auto steps = static_cast<std::int32_t>(std::ceil(sweep / kMeasureStep));
  long double length = 0;
  TMyPoint last = OutlineAt(start);
  for (std::int32_t i = 1; i <= steps; ++i) {
    const TMyPoint p = OutlineAt(start + sweep * i / steps);
    length += std::hypot(static_cast<long double>(p.X) - last.X, static_cast<long double>(p.Y) - last.Y);
    last = p;
  }
  return LengthText(length, Ratio(), TheUNIT());
}

void TMyElliArc::SetArcMode(TArcMode value) {
  if (value == arcMode_) return;
  const long double start = StartAngle(), end = EndAngle();
  const bool hasEnds = Points.size() > kEnd;
  arcMode_ = value;
  if (hasEnds) PlaceEnds(start, end);
  RepaintOwner();
}

void TMyElliArc::SetArcStyle(TArcStyle value) {
  arcStyle_ = value;
  RepaintOwner();
}

// ---- copies and records -------------------------------------------------------------------------

void TMyElliArc::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* arc = dynamic_cast<const TMyElliArc*>(&source)) {
    arcMode_ = arc->arcMode_;
    arcStyle_ = arc->arcStyle_;
  }
}

void TMyElliArc::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteValue(stream, static_cast<std::uint8_t>(arcMode_));
  WriteValue(stream, static_cast<std::uint8_t>(arcStyle_));
}

void TMyElliArc::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  arcMode_ = ReadOrdinal(stream, amEllipse, "arc mode");
  arcStyle_ = ReadOrdinal(stream, asPie, "arc style");
}

}  // namespace lumatrex
