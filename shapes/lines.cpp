#include "shapes/lines.h"

#include <algorithm>
#include <cmath>
#include <cstring>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

namespace {

constexpr std::int32_t kHitBand = kLineHitBand;
// Half-length of a measuring line's end ticks, in device pixels.
constexpr long double kTickHalf = 10;
// Gap between a measuring line and the bottom of its label, in device pixels.
constexpr long double kLabelGap = 3;

// Horizontal and vertical segments get a band along their length only; a
// sloped one must contain P in its bounding box, then P must lie within the
// band measured along the axis the segment runs closer to.
bool NearSegment(const TPoint& a, const TPoint& b, const TPoint& p) {
  const TRect box = PtToARect(a, b);
  if (a.X == b.X) return PtInRect(Rect(box.Left - kHitBand, box.Top, box.Right + kHitBand, box.Bottom), p);
  if (a.Y == b.Y) return PtInRect(Rect(box.Left, box.Top - kHitBand, box.Right, box.Bottom + kHitBand), p);
  if (!PtInRect(box, p)) return false;
  const long double dx = b.X - a.X, dy = b.Y - a.Y;
  if (std::fabs(dx) > std::fabs(dy)) {
    const long double y = dy / dx * (p.X - a.X) + a.Y;
    return y - kHitBand <= p.Y && p.Y <= y + kHitBand;
  }
  const long double x = dx / dy * (p.Y - a.Y) + a.X;
  return x - kHitBand <= p.X && p.X <= x + kHitBand;
}

bool IsClass(const TMyShape& shape, const char* name) { return std::strcmp(shape.ClassName(), name) == 0; }

}  // namespace

// ===========================================================================
// TMyLine
// ===========================================================================

TMyLine::TMyLine(TMyShapeOwner* owner) : TMyShape(owner) {
  if (!owner) return;
  arrowAngle_ = owner->GetArrowAngle();
  arrowLength_ = owner->GetArrowLength();
  arrowOffset_ = owner->GetArrowOffset();
  arrowStyle_ = owner->GetArrowStyle();
}

// ---- painting --------------------------------------------------------------------

void TMyLine::DrawChainAndHeads(TCanvas& canvas) {
  SetDrawShapeMode(*this, canvas);
  SetPS(canvas, Pen().Style(), Pen().Color(), Pen().Width());
  const TArrMyPoint zoomed = GetPointsInZoom();
  for (std::size_t i = 1; i < zoomed.size(); ++i) LineDraw(*this, canvas, zoomed[i - 1], zoomed[i]);
  if (zoomed.size() < 2) return;
  SetDrawTriangleMode(*this, canvas);
  const std::size_t last = zoomed.size() - 1;
  if (arrowStyle_ == ALeft || arrowStyle_ == ADouble) DrawTriangle(canvas, zoomed[last], zoomed[last - 1]);
  if (arrowStyle_ == ARight || arrowStyle_ == ADouble) DrawTriangle(canvas, zoomed[0], zoomed[1]);
}

// The angle is kept in a float, as the normaliser stores it, and compared
// with the exact bounds. The float nearest pi/2 lies just above it, so a
// straight-down line is turned like a straight-up one: vertical captions
// read upward whichever way the line was drawn.
double TMyLine::CaptionAngle() const {
  auto angle = static_cast<float>(GetSlopeAngle(GetPoint(1), GetPoint(0)));
  RecaclinRad(angle);
  if (angle > kPi / 2 && angle < 3 * kPi / 2) return static_cast<double>(angle + kPi);
  return angle;
}

void TMyLine::Draw(TCanvas& canvas) {
  DrawChainAndHeads(canvas);
  SetTextAngle(CaptionAngle());
  SetDrawShapeMode(*this, canvas);
  DrawInfo(canvas);
}

void TMyLine::DrawTriangle(TCanvas& canvas, const TMyPoint& tip, const TMyPoint& from) {
  TMyPoint t, unused;
  SplitLine(tip, from, arrowOffset_, t, unused);
  // The head length is a byte wide: heads longer than 255 device pixels wrap.
  const auto length = static_cast<std::uint8_t>(Round(Zoom() * arrowLength_));
  const auto angle = static_cast<float>(arrowAngle_ * kPi / 180);
  TMyPoint barb1, barb2;
  GetTriangle(t, from, angle, length, barb1, barb2);
  canvas.Polygon({MyPtToPt(t), MyPtToPt(barb1), MyPtToPt(barb2)});
}

void TMyLine::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this)) return;
  for (const TMyPoint& p : GetPointsInZoom()) DrawSquare(*this, canvas, p);
  DrawDiamond(*this, canvas, GetCenterPointInZoom(), clYellow);
}

// ---- hit tests ----------------------------------------------------------------------

std::int32_t TMyLine::InWhichHot(const TPoint& p) {
  const TArrMyPoint zoomed = GetPointsInZoom();
  CurrentHot = -1;
  for (std::size_t i = 0; i < zoomed.size(); ++i)
    if (InHotSquare(zoomed[i], p, HotSize())) CurrentHot = static_cast<std::int32_t>(i);
  return CurrentHot;
}

std::int32_t TMyLine::SegmentHit(const TPoint& p) const {
  // The rounded zoomed points one by one, as RoundPoints(GetPointsInZoom()) would
  // list them, so a hit test allocates nothing.
  TPoint previous;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) {
    const TPoint next = ShiftAndRound(GetPointInZoom(i), 0, 0);
    if (i > 0 && NearSegment(previous, next, p)) return i;
    previous = next;
  }
  return -1;
}

TMyRect TMyLine::GetBoundsInZoom() {
  TBoundsBuilder box;
  box.Add(TMyShape::GetBoundsInZoom());
  long double reach = kHitBand + 1;
  if (arrowStyle_ != ANone) {
    // A head's tip is set back ArrowOffset toward the other end and its barbs
    // are the zoomed length taken as a byte; the head is outlined in the pen.
    const auto length = static_cast<std::uint8_t>(Round(Zoom() * arrowLength_));
    reach = std::max(reach, static_cast<long double>(length) + arrowOffset_ + PenReach(Pen().Width()) + 1);
  }
  TBoundsBuilder points;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) points.Add(GetPointInZoom(i));
  if (!points.Empty()) box.Add(points.Grown(reach));
  return box.Grown(0);
}

bool TMyLine::IsClickedMe(TCanvas&, const TPoint& p) { return SegmentHit(p) >= 0; }

bool TMyLine::IsClickedMeBeforeWhichPoint(std::int32_t& index, const TPoint& p) const {
  index = SegmentHit(p);
  return index >= 0;
}

// ---- interactive drawing and previews ------------------------------------------------

bool TMyLine::IsDrawingFinished(TMouseButton, const TPoint&) { return GetPointsCount() == 2; }

void TMyLine::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  SetDragResizeRotateShapeMode(canvas);
  canvas.MoveTo(from.X, from.Y);
  canvas.LineTo(to.X, to.Y);
}

void TMyLine::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  canvas.LineChain(ShiftAndRound(GetPointsInZoom(), to.X - from.X, to.Y - from.Y));
}

void TMyLine::DrawMovedVertex(TCanvas& canvas, std::int32_t prev, std::int32_t h, std::int32_t next,
                              std::int32_t dx, std::int32_t dy) {
  const TPoint moved = ShiftAndRound(GetPointInZoom(h), dx, dy);
  if (IsExistPt(prev, Points)) {
    const TPoint a = MyPtToPt(GetPointInZoom(prev));
    canvas.LineChain({a, moved});
  }
  if (IsExistPt(next, Points)) {
    const TPoint b = MyPtToPt(GetPointInZoom(next));
    canvas.LineChain({moved, b});
  }
}

void TMyLine::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const std::int32_t h = CurrentHot;
  if (!IsExistPt(h, Points)) return;
  DrawMovedVertex(canvas, h - 1, h, h + 1, to.X - from.X, to.Y - from.Y);
}

void TMyLine::Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) {
  canvas.LineChain(RotatePoints(GetPointsInZoom(), center, angle));
}

// ---- changes --------------------------------------------------------------------------

void TMyLine::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  TMyShape::SizeChangeValue(a, b);
  PointAddXY(CurrentHot, static_cast<double>(b.X) - a.X, static_cast<double>(b.Y) - a.Y);
  CenterPoint = ComputeCenterPoint(4);
}

std::string TMyLine::FirstSegmentLength() const {
  return GetLengthByUnit(MyPtToPt(GetPointInZoom(0)), MyPtToPt(GetPointInZoom(1)));
}

std::string TMyLine::GetInfo() {
  // Chains and connectors are lines too, but only a single measured segment
  // has a meaningful length to report.
  if (!IsClass(*this, "TMyLine") && !IsClass(*this, "TMyRuleLine")) return {};
  SetInfo(FirstSegmentLength());
  return GetInfoText();
}

void TMyLine::Assign(const TMyShape& source) {
  TMyShape::Assign(source);
  const auto* line = dynamic_cast<const TMyLine*>(&source);
  if (!line) return;
  // ArrowOffset stays: it belongs to the target's placement, not its look.
  arrowLength_ = line->arrowLength_;
  arrowAngle_ = line->arrowAngle_;
  arrowStyle_ = line->arrowStyle_;
}

void TMyLine::SaveToStream(TStream& stream) const {
  TMyShape::SaveToStream(stream);
  WriteValue(stream, arrowAngle_);
  WriteValue(stream, arrowLength_);
  WriteValue(stream, arrowOffset_);
  WriteValue(stream, arrowStyle_);
}

void TMyLine::LoadFromStream(TStream& stream) {
  TMyShape::LoadFromStream(stream);
  arrowAngle_ = ReadValue<std::int32_t>(stream, "arrow angle");
  arrowLength_ = ReadValue<std::uint8_t>(stream, "arrow length");
  arrowOffset_ = ReadValue<std::uint8_t>(stream, "arrow offset");
  arrowStyle_ = ReadOrdinal(stream, ADouble, "arrow style");
}

// ===========================================================================
// TMyPolyLine
// ===========================================================================

TMyPolyLine::TMyPolyLine(TMyShapeOwner* owner) : TMyLine(owner) { SetArrowStyle(ANone); }

bool TMyPolyLine::IsDrawingFinished(TMouseButton, const TPoint&) {
  const std::size_t n = Points.size();
  if (n <= 2 || Points[n - 1] != Points[n - 2]) return false;
  Points.pop_back();
  return true;
}

void TMyPolyLine::AppendPoint(const TPoint& p) { TMyShape::AddPointByMouse(MirrorByXYMode(p)); }

// The drawing format gives chains the base record only.
void TMyPolyLine::SaveToStream(TStream& stream) const { TMyShape::SaveToStream(stream); }
void TMyPolyLine::LoadFromStream(TStream& stream) { TMyShape::LoadFromStream(stream); }

// ===========================================================================
// TMyFreeLine
// ===========================================================================

bool TMyFreeLine::IsDrawingFinished(TMouseButton, const TPoint&) { return GetPointsCount() >= 2; }

void TMyFreeLine::Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  SetDrawShapeMode(*this, canvas);
  canvas.MoveTo(from.X, from.Y);
  canvas.LineTo(to.X, to.Y);
}

void TMyFreeLine::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const TArrMyPoint zoomed = GetPointsInZoom();
  if (zoomed.empty()) return;
  const TMyRect box = GetPointsLTRB(zoomed);
  const TArrMyPoint corners{{box.Left, box.Top}, {box.Right, box.Top}, {box.Right, box.Bottom}, {box.Left, box.Bottom}};
  StrokeClosedChain(canvas, ShiftAndRound(corners, to.X - from.X, to.Y - from.Y));
}

// Unlike the other chains, a freehand stroke keeps the line record.
void TMyFreeLine::SaveToStream(TStream& stream) const { TMyLine::SaveToStream(stream); }
void TMyFreeLine::LoadFromStream(TStream& stream) { TMyLine::LoadFromStream(stream); }

// ===========================================================================
// TMyRuleLine
// ===========================================================================

TMyRuleLine::TMyRuleLine(TMyShapeOwner* owner) : TMyLine(owner) {
  Font().SetSize(8);
  SetArrowAngle(10);
  SetArrowLength(20);
  SetArrowStyle(ADouble);
}

void TMyRuleLine::Draw(TCanvas& canvas) {
  DrawChainAndHeads(canvas);
  const double angle = CaptionAngle();
  SetTextAngle(angle);
  // Ticks and label are laid out on the line turned level about the centre,
  // then turned back along it.
  const TMyPoint centre = GetCenterPointInZoom();
  const TMyPoint end0 = GetPointInZoom(0), end1 = GetPointInZoom(1);
  const TMyPoint level0 = RotateAPoint(end0, centre, static_cast<float>(-angle));
  const TMyPoint level1 = RotateAPoint(end1, centre, static_cast<float>(-angle));
  const long double row = level0.Y;
  auto turnedBack = [&](long double x, long double y) {
    return MyPtToPt(RotateAPoint(MyPoint(static_cast<float>(x), static_cast<float>(y)), centre,
                                 static_cast<float>(angle)));
  };
  if (tickStyle_ == tsLine) {
    for (const TMyPoint& end : {level0, level1})
      canvas.LineChain({turnedBack(end.X, row - kTickHalf), turnedBack(end.X, row + kTickHalf)});
  }
  std::string label = userInfo_;
  if (!showUserInfo_) {
    label = FirstSegmentLength();
    SetInfo(label);
  }
  const TSize size = GetTextWidthHeight(canvas, label, Font(), Zoom(), angle);
  const long double length = GetLengthinPixel(end0, end1);
  const long double left = std::min(level0.X, level1.X) + (length - size.cx) / 2;
  const TPoint at = turnedBack(left, row - size.cy - kLabelGap);
  MyLogTextOut(canvas, at.X, at.Y, label, Font(), Zoom(), angle);
}

TMyRect TMyRuleLine::GetBoundsInZoom() {
  TBoundsBuilder box;
  box.Add(TMyLine::GetBoundsInZoom());
  if (GetPointsCount() < 2) return box.Grown(0);
  // Ticks and label are laid out about the zoomed centre on the levelled
  // line: within D of the centre lie both ends, within 2D the label's middle.
  const TMyPoint centre = GetCenterPointInZoom();
  long double d = 0;
  for (std::int32_t i = 0; i < 2; ++i) {
    const TMyPoint end = GetPointInZoom(i);
    d = std::max(d, std::hypot(static_cast<long double>(end.X) - centre.X, static_cast<long double>(end.Y) - centre.Y));
  }
  const std::size_t bytes = std::max(userInfo_.size(), FirstSegmentLength().size());
  const long double label = TextReach(Font().Size(), Zoom(), bytes, 1);
  box.AddAround(centre.X, centre.Y, 3 * d + kTickHalf + kLabelGap + 2 * label + PenReach(Pen().Width()));
  return box.Grown(0);
}

void TMyRuleLine::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  TMyLine::SizeChangeValue(a, b);
  const TMyPoint p0 = GetPoint(0), p1 = GetPoint(1);
  const long double dx = static_cast<long double>(p1.X) - p0.X, dy = static_cast<long double>(p1.Y) - p0.Y;
  SetTextAngle(static_cast<double>(dx == 0 ? kPi / 2 : std::atan(dy / dx)));
  const std::string text = FirstSegmentLength();
  const std::size_t first = text.find_first_not_of(' '), last = text.find_last_not_of(' ');
  SetInfo(first == std::string::npos ? std::string() : text.substr(first, last - first + 1));
}

void TMyRuleLine::Assign(const TMyShape& source) {
  TMyLine::Assign(source);
  if (const auto* rule = dynamic_cast<const TMyRuleLine*>(&source)) userInfo_ = rule->userInfo_;
}

void TMyRuleLine::SaveToStream(TStream& stream) const {
  TMyLine::SaveToStream(stream);
  WriteBool(stream, showUserInfo_);
  WriteValue(stream, tickStyle_);
  WriteLString(stream, userInfo_);
}

void TMyRuleLine::LoadFromStream(TStream& stream) {
  TMyLine::LoadFromStream(stream);
  showUserInfo_ = ReadBool(stream, "show user info");
  tickStyle_ = ReadOrdinal(stream, tsNone, "tick style");
  userInfo_ = ReadLString(stream, "user info");
}

}  // namespace lumatrex
