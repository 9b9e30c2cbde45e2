#include "shapes/connectors.h"

#include <cmath>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/record_version.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyLinkPoint

TMyLinkPoint::TMyLinkPoint(TMyShapeOwner* owner) : TMyRectangle(owner) {}

namespace {
// The marker's square on the device: Size pixels around the zoomed centre.
TRect MarkerRect(const TMyPoint& zoomedCentre, std::uint8_t size) {
  const long double h = size / 2.0L;
  return Rect(Round(zoomedCentre.X - h), Round(zoomedCentre.Y - h), Round(zoomedCentre.X + h),
              Round(zoomedCentre.Y + h));
}

void DrawMarker(TCanvas& canvas, const TRect& r) {
  canvas.Ellipse(r.Left, r.Top, r.Right + 1, r.Bottom + 1);
  const std::int32_t cx = (r.Left + r.Right) / 2, cy = (r.Top + r.Bottom) / 2;
  canvas.MoveTo(r.Left, cy);
  canvas.LineTo(r.Right + 1, cy);
  canvas.MoveTo(cx, r.Top);
  canvas.LineTo(cx, r.Bottom + 1);
}
}  // namespace

void TMyLinkPoint::PlaceAt(const TMyPoint& centre) {
  const long double h = size_ / 2.0L / Zoom(), x = centre.X, y = centre.Y;
  auto at = [](long double px, long double py) { return MyPoint(static_cast<float>(px), static_cast<float>(py)); };
  Points = {at(x - h, y - h), at(x + h, y - h), at(x + h, y + h), at(x - h, y + h)};
  CenterPoint = centre;
  TextoutPoint = centre;
  LinkPoints = {centre};
  Changed();
}

void TMyLinkPoint::AddPointByMouse(const TPoint& p) {
  if (Points.empty()) PlaceAt(MyPoint(static_cast<float>(p.X / Zoom()), static_cast<float>(p.Y / Zoom())));
}

void TMyLinkPoint::Draw(TCanvas& canvas) {
  if (Points.empty()) return;
  SetDrawShapeMode(*this, canvas);
  DrawMarker(canvas, MarkerRect(ZoomedValuePt(ComputeCenterPoint(4)), size_));
  DrawInfo(canvas);
}

// The marker is placed by the press, so the preview shows it there.
void TMyLinkPoint::Drawing(TCanvas& canvas, const TPoint&, const TPoint& to) {
  DrawMarker(canvas, MarkerRect(Points.empty() ? PtToMyPt(to) : ZoomedValuePt(ComputeCenterPoint(4)), size_));
}

bool TMyLinkPoint::IsClickedMe(TCanvas&, const TPoint& p) {
  if (Points.empty()) return false;
  const TRect r = MarkerRect(ZoomedValuePt(ComputeCenterPoint(4)), size_);
  return p.X >= r.Left && p.X <= r.Right && p.Y >= r.Top && p.Y <= r.Bottom;
}

std::int32_t TMyLinkPoint::InWhichHot(const TPoint&) {
  CurrentHot = -1;
  return -1;
}

void TMyLinkPoint::DrawHot(TCanvas& canvas) {
  if (OwnerShowsHandles(*this) && !Points.empty()) DrawSquare(*this, canvas, ZoomedValuePt(ComputeCenterPoint(4)));
}

TMyRect TMyLinkPoint::GetBoundsInZoom() {
  TBoundsBuilder box;
  box.Add(TMyRectangle::GetBoundsInZoom());
  const TMyPoint c = ZoomedValuePt(ComputeCenterPoint(4));
  box.AddAround(c.X, c.Y, size_ / 2.0L + 1);
  return box.Grown(0);
}

void TMyLinkPoint::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* point = dynamic_cast<const TMyLinkPoint*>(&source)) size_ = point->size_;
}

void TMyLinkPoint::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteValue(stream, size_);
}

void TMyLinkPoint::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  size_ = ReadValue<std::uint8_t>(stream, "link point size");
}

// ---------------------------------------------------------------------------
// TMyLinkLine

TMyLinkLine::TMyLinkLine(TMyShapeOwner* owner) : TMyLine(owner) { DeclareOwnListPositions(); }

// ---- route ---------------------------------------------------------------------

TArrMyPoint TMyLinkLine::SimpleRoute(const TMyPoint& a, const TMyPoint& b, TLinkLineDrawStyle style) {
  TArrMyPoint route{a};
  if (style != lldsLine) {
    const TMyPoint bend = style == lldsVH ? MyPoint(a.X, b.Y) : MyPoint(b.X, a.Y);
    if (bend != a && bend != b) route.push_back(bend);
  }
  route.push_back(b);
  return route;
}

bool TMyLinkLine::IsRouted() const {
  if (Points.size() < 2) return false;
  switch (linkLineDrawStyle_) {
    case lldsLine: return Points.size() == 2;
    case lldsHV:
    case lldsVH: return Points == SimpleRoute(Points.front(), Points.back(), linkLineDrawStyle_);
    case lldsOrthogonal: break;
  }
  for (std::size_t i = 1; i < Points.size(); ++i)
    if (Points[i].X != Points[i - 1].X && Points[i].Y != Points[i - 1].Y) return false;
  return true;
}

void TMyLinkLine::BindEnd(TLinkLineEnd end, std::int32_t shapeNo, std::int32_t pointId) {
  if (shapeNo < 0) shapeNo = pointId = -1;
  (end == llStart ? startSpNo_ : endSpNo_) = shapeNo;
  (end == llStart ? startSpPtId_ : endSpPtId_) = pointId;
}

// ---- handles and editing ---------------------------------------------------------

namespace {
// Inner segments: those that are neither the first nor the last of the route.
template <typename Fn>
void ForEachInnerSegment(const TArrMyPoint& points, Fn fn) {
  for (std::size_t i = 1; i + 2 < points.size(); ++i) fn(static_cast<std::int32_t>(i), points[i], points[i + 1]);
}

TMyPoint Middle(const TMyPoint& a, const TMyPoint& b) {
  return MyPoint(static_cast<float>((static_cast<long double>(a.X) + b.X) / 2),
                 static_cast<float>((static_cast<long double>(a.Y) + b.Y) / 2));
}
}  // namespace

std::int32_t TMyLinkLine::InWhichHot(const TPoint& p) {
  CurrentHot = -1;
  if (Points.empty()) return -1;
  const std::uint8_t hot = HotSize();
  if (InHotSquare(GetPointInZoom(0), p, hot)) CurrentHot = 0;
  if (InHotSquare(GetPointInZoom(GetPointsCount() - 1), p, hot)) CurrentHot = GetPointsCount() - 1;
  if (CurrentHot >= 0 || linkLineDrawStyle_ != lldsOrthogonal) return CurrentHot;
  ForEachInnerSegment(Points, [&](std::int32_t i, const TMyPoint& a, const TMyPoint& b) {
    if (InHotSquare(ZoomedValuePt(Middle(a, b)), p, hot)) CurrentHot = kSegmentHot + i;
  });
  return CurrentHot;
}

void TMyLinkLine::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this) || Points.empty()) return;
  DrawSquare(*this, canvas, GetPointInZoom(0));
  DrawSquare(*this, canvas, GetPointInZoom(GetPointsCount() - 1));
  if (linkLineDrawStyle_ != lldsOrthogonal) return;
  ForEachInnerSegment(Points, [&](std::int32_t, const TMyPoint& a, const TMyPoint& b) {
    DrawSquare(*this, canvas, ZoomedValuePt(Middle(a, b)));
  });
}

void TMyLinkLine::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  if (CurrentHot < kSegmentHot) return TMyLine::SizeChangeValue(a, b);
  const std::int32_t i = CurrentHot - kSegmentHot;
  if (i < 1 || i + 2 >= GetPointsCount()) return;
  const double dx = static_cast<double>(b.X) - a.X, dy = static_cast<double>(b.Y) - a.Y;
  // A horizontal segment moves up or down, a vertical one sideways; its
  // neighbours stretch, so the route stays orthogonal.
  const bool horizontal = Points[i].Y == Points[i + 1].Y;
  for (std::int32_t k : {i, i + 1}) PointAddXY(k, horizontal ? 0 : dx, horizontal ? dy : 0);
  CenterPoint = ComputeCenterPoint(4);
}

void TMyLinkLine::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  if (CurrentHot < kSegmentHot) return TMyLine::Sizing(canvas, from, to);
  const std::int32_t i = CurrentHot - kSegmentHot;
  if (i < 1 || i + 2 >= GetPointsCount()) return;
  const bool horizontal = Points[i].Y == Points[i + 1].Y;
  const std::int32_t dx = horizontal ? 0 : to.X - from.X, dy = horizontal ? to.Y - from.Y : 0;
  canvas.LineChain({MyPtToPt(GetPointInZoom(i - 1)), ShiftAndRound(GetPointInZoom(i), dx, dy),
                       ShiftAndRound(GetPointInZoom(i + 1), dx, dy), MyPtToPt(GetPointInZoom(i + 2))});
}

void TMyLinkLine::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  SetDragResizeRotateShapeMode(canvas);
  std::vector<TPoint> chain;
  for (const TMyPoint& p : SimpleRoute(PtToMyPt(from), PtToMyPt(to), linkLineDrawStyle_)) chain.push_back(MyPtToPt(p));
  canvas.LineChain(chain);
}

void TMyLinkLine::Assign(const TMyShape& source) {
  TMyLine::Assign(source);
  if (const auto* link = dynamic_cast<const TMyLinkLine*>(&source)) {
    startSpNo_ = link->startSpNo_;
    startSpPtId_ = link->startSpPtId_;
    endSpNo_ = link->endSpNo_;
    endSpPtId_ = link->endSpPtId_;
    linkLineDrawStyle_ = link->linkLineDrawStyle_;
  }
}

namespace {
// Renumbers one attached end; an end whose shape is gone is freed.
void RemapEnd(std::int32_t& shapeNo, std::int32_t& pointId, const std::function<std::int32_t(std::int32_t)>& map) {
  if (shapeNo < 0) return;
  shapeNo = map(shapeNo);
  if (shapeNo >= 0) return;
  shapeNo = -1;
  pointId = -1;
}
}  // namespace

void TMyLinkLine::RemapShapeNumbers(const std::function<std::int32_t(std::int32_t)>& map) {
  TMyLine::RemapShapeNumbers(map);
  RemapEnd(startSpNo_, startSpPtId_, map);
  RemapEnd(endSpNo_, endSpPtId_, map);
}

void TMyLinkLine::SaveToStream(TStream& stream) const {
  TMyLine::SaveToStream(stream);
  WriteValue(stream, startSpNo_);
  WriteValue(stream, startSpPtId_);
  WriteValue(stream, endSpNo_);
  WriteValue(stream, endSpPtId_);
  WriteValue(stream, static_cast<std::uint8_t>(linkLineDrawStyle_));
}

void TMyLinkLine::LoadFromStream(TStream& stream) {
  TMyLine::LoadFromStream(stream);
  startSpNo_ = ReadValue<std::int32_t>(stream, "link start shape");
  startSpPtId_ = ReadValue<std::int32_t>(stream, "link start point");
  endSpNo_ = ReadValue<std::int32_t>(stream, "link end shape");
  endSpPtId_ = ReadValue<std::int32_t>(stream, "link end point");
  if (FileVersionAtLeast(RecordVersion(*this), "XP.5"))
    linkLineDrawStyle_ = ReadOrdinal(stream, lldsOrthogonal, "link draw style");
}

}  // namespace lumatrex
