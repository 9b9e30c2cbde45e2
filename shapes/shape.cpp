#include "shapes/shape.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <cstddef>
#include <cstdio>
#include <iterator>
#include <mutex>
#include <new>

#include "platform/canvas.h"
#include "platform/memory.h"
#include "platform/screen.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

namespace {

// Under the address sanitizer every shape has a heap block of its own, so
// that a shape used after it was freed is still caught.
#if defined(__SANITIZE_ADDRESS__)
constexpr bool kPooled = false;
#elif defined(__has_feature)
#if __has_feature(address_sanitizer)
constexpr bool kPooled = false;
#else
constexpr bool kPooled = true;
#endif
#else
constexpr bool kPooled = true;
#endif

// A pass over a whole large list reads each shape's list relations, which
// are its first fields after QObject's: blocks are placed so that those
// start a cache line, and are whole lines long so that every block of a
// slab is placed alike. One line per shape then serves the pass.
constexpr std::size_t kLine = 64;
#pragma GCC diagnostic push
#pragma GCC diagnostic ignored "-Winvalid-offsetof"
constexpr std::size_t kRelationsOffset = offsetof(TMyShape, ShapeNo) % kLine;
#pragma GCC diagnostic pop

// Free lists of blocks by size (in whole cache lines), carved from large
// slabs. Blocks go back on their list, never to the heap: the next drawing
// reuses them. Sizes past the largest list use the heap.
class TShapePool {
 public:
  void* Allocate(std::size_t size) {
    const std::size_t kind = KindOf(size);
    if (!kPooled || kind >= kKinds) return ::operator new(size);
    const std::lock_guard<std::mutex> lock(mutex_);
    if (TFree* block = free_[kind]) {
      free_[kind] = block->next;
      return block;
    }
    const std::size_t bytes = kind * kLine;
    if (static_cast<std::size_t>(slabEnd_ - slabNext_) < bytes) {
      char* slab = static_cast<char*>(AllocateLargePages(kSlab));
      slabNext_ = slab + (kLine - kRelationsOffset) % kLine;
      slabEnd_ = slab + kSlab;
    }
    void* block = slabNext_;
    slabNext_ += bytes;
    return block;
  }

  void Free(void* block, std::size_t size) noexcept {
    const std::size_t kind = KindOf(size);
    if (!kPooled || kind >= kKinds) {
      ::operator delete(block);
      return;
    }
    const std::lock_guard<std::mutex> lock(mutex_);
    free_[kind] = new (block) TFree{free_[kind]};
  }

 private:
  struct TFree {
    TFree* next;
  };
  static constexpr std::size_t kKinds = 4096 / kLine;
  // A large page: a pass over 100,000 shapes then walks 35 pages, not 17,000.
  static constexpr std::size_t kSlab = kLargePageBytes;
  static std::size_t KindOf(std::size_t size) { return (size + kLine - 1) / kLine; }

  std::mutex mutex_;
  std::array<TFree*, kKinds> free_{};
  char* slabNext_ = nullptr;
  char* slabEnd_ = nullptr;
};

// Never destroyed, so that a shape freed during program exit still has it.
TShapePool& ShapePool() {
  static auto* pool = new TShapePool();
  return *pool;
}

}  // namespace

void* TMyShape::operator new(std::size_t size) { return ShapePool().Allocate(size); }

void TMyShape::operator delete(void* block, std::size_t size) noexcept { ShapePool().Free(block, size); }

TMyShape::TMyShape(TMyShapeOwner* owner) : owner_(owner) {
  if (owner_) {
    pen_.Assign(owner_->GetPen());
    brush_.Assign(owner_->GetBrush());
    font_.Assign(owner_->GetFont());
    penStyleJoinType_ = owner_->GetPenStyleJoinType();
    penStyleEndCapType_ = owner_->GetPenStyleEndCapType();
    dragEnable_ = owner_->GetDragEnable();
    resizeEnable_ = owner_->GetResizeEnable();
    rotateEnable_ = owner_->GetRotateEnable();
    hotShow_ = owner_->GetHotShow();
  }
  ConnectChangeNotifications();
}

TMyShape::~TMyShape() = default;

void TMyShape::ConnectChangeNotifications() {
  pen_.OnChange = [this] {
    DoPenBrushChange();
    Changed();
  };
  brush_.OnChange = [this] {
    DoPenBrushChange();
    Changed();
  };
  font_.OnChange = [this] {
    DoFontChange();
    Changed();
  };
}

void TMyShape::Changed() {
  if (owner_) owner_->ShapeChanged(*this);
}

// ---------------------------------------------------------------------------
// Owner values

double TMyShape::Zoom() const { return owner_ ? owner_->GetZoom() : 1.0; }

std::uint8_t TMyShape::HotSize() const { return owner_ ? owner_->GetHotSize() : 4; }

double TMyShape::Ratio() const { return owner_ ? owner_->GetRatio() : 1.0; }

TUnits TMyShape::TheUNIT() const { return owner_ ? owner_->GetTheUNIT() : mm; }

TPoint TMyShape::MirrorByXYMode(const TPoint& p) const {
  if (!owner_) return p;
  const std::int32_t w = owner_->GetControlWidth(), h = owner_->GetControlHeight();
  switch (owner_->GetXYMode()) {
    case Mode0: break;
    case Mode1: return TPoint{p.X, h - p.Y};
    case Mode2: return TPoint{w - p.X, h - p.Y};
    case Mode3: return TPoint{w - p.X, p.Y};
  }
  return p;
}

void TMyShape::RepaintOwner() const {
  if (owner_) owner_->Repaint();
}

TMyPoint TMyShape::PivotPoint() const {
  if (HasParentShape() && owner_) {
    if (const TMyShape* root = owner_->GetRootParentShape(const_cast<TMyShape*>(this)))
      return root->GetCenterPoint();
  }
  return GetCenterPoint();
}

template <typename Fn>
void TMyShape::ForEachChild(Fn fn) const {
  if (!owner_) return;
  for (const std::int32_t no : ChildShapes)
    if (TMyShape* child = owner_->GetShapeByNo(no)) fn(*child);
}

// ---------------------------------------------------------------------------
// Moving, sizing, rotating, flipping

void TMyShape::DragChangeValue(const TPoint& from, const TPoint& to) {
  DragChangeValuedxdy(to.X - from.X, to.Y - from.Y);
}

void TMyShape::DragChangeValuedxdy(double dx, double dy) {
  if (dx == 0 && dy == 0) return;
  const long double mx = static_cast<long double>(dx) / Zoom();
  const long double my = static_cast<long double>(dy) / Zoom();
  auto move = [&](TMyPoint& p) {
    p.X = static_cast<float>(p.X + mx);
    p.Y = static_cast<float>(p.Y + my);
  };
  std::for_each(Points.begin(), Points.end(), move);
  std::for_each(LinkPoints.begin(), LinkPoints.end(), move);
  move(CenterPoint);
  move(TextoutPoint);
  Changed();
}

void TMyShape::Draging(TCanvas&, const TPoint&, const TPoint&) {}
void TMyShape::Drawing(TCanvas&, const TPoint&, const TPoint&) {}
void TMyShape::Sizing(TCanvas&, const TPoint&, const TPoint&) {}
void TMyShape::Rotating(TCanvas&, const TMyPoint&, long double) {}
void TMyShape::Drawed(const TPoint&, TPoint&) {}
void TMyShape::DrawHot(TCanvas&) {}
void TMyShape::SizeChangeValue(const TMyPoint&, const TMyPoint&) { Changed(); }

TCursor TMyShape::GetMouseCursor(std::int32_t, std::int32_t) { return crCross; }

bool TMyShape::IsDrawingFinished(TMouseButton, const TPoint&) { return false; }

void TMyShape::RotateChangeValueByAngle(const TMyPoint& c, double angle) {
  if (Points.empty()) return;
  const auto a = static_cast<float>(angle);
  auto turn = [&](TMyPoint& p) { p = RotateAPoint(p, c, a); };
  std::for_each(Points.begin(), Points.end(), turn);
  std::for_each(LinkPoints.begin(), LinkPoints.end(), turn);
  turn(TextoutPoint);
  turn(CenterPoint);
  angle_ = static_cast<float>(static_cast<long double>(angle_) + angle);
  RecaclinRad(angle_);
  Changed();
}

void TMyShape::SetAngle(float value) {
  if (Points.empty() || !owner_) {
    angle_ = value;
    Changed();
    return;
  }
  owner_->RotateChangeValueforShapes(this, PivotPoint(), static_cast<double>(value) - angle_);
}

void TMyShape::AddPointByMouse(const TPoint& p) {
  AddPoint(MyPoint(static_cast<float>(p.X / Zoom()), static_cast<float>(p.Y / Zoom())));
}

void TMyShape::FlipHoriz() {
  const long double cx = PivotPoint().X;
  auto mirror = [cx](TMyPoint& p) { p.X = static_cast<float>(cx - (p.X - cx)); };
  std::for_each(Points.begin(), Points.end(), mirror);
  std::for_each(LinkPoints.begin(), LinkPoints.end(), mirror);
  mirror(CenterPoint);
  mirror(TextoutPoint);
  if (angle_ != 0) angle_ = static_cast<float>(kPi - angle_);
  isFlipHorz_ = !isFlipHorz_;
  Changed();
  RepaintOwner();
}

void TMyShape::FlipVert() {
  const long double cy = PivotPoint().Y;
  auto mirror = [cy](TMyPoint& p) { p.Y = static_cast<float>(cy - (p.Y - cy)); };
  std::for_each(Points.begin(), Points.end(), mirror);
  std::for_each(LinkPoints.begin(), LinkPoints.end(), mirror);
  mirror(CenterPoint);
  mirror(TextoutPoint);
  if (angle_ != 0) angle_ = -angle_;
  isFlipVert_ = !isFlipVert_;
  Changed();
  RepaintOwner();
}

// ---------------------------------------------------------------------------
// Copies

void TMyShape::CopyCommonFields(const TMyShape& source) {
  tag_ = source.tag_;
  caption_ = source.caption_;
  ShapeId = source.ShapeId;
  LayerId = source.LayerId;
  SpareRelationId = -1;
  gradient_ = source.gradient_;
  colorBegin_ = source.colorBegin_;
  colorEnd_ = source.colorEnd_;
  gradientStyle_ = source.gradientStyle_;
  isFlipHorz_ = source.isFlipHorz_;
  isFlipVert_ = source.isFlipVert_;
  locked_ = source.locked_;
  info_ = source.info_;
  pen_.Assign(source.pen_);
  brush_.Assign(source.brush_);
  font_.Assign(source.font_);
  Points = source.Points;
  LinkPoints = source.LinkPoints;
}

void TMyShape::Assign(const TMyShape& source) {
  if (&source == this) return;
  SetName(source.GetName());
  CopyCommonFields(source);
  ShapeNo = source.ShapeNo;
  ChildShapes = source.ChildShapes;
  LinkLines = source.LinkLines;
  ParentId = source.ParentId;
  angle_ = source.angle_;
  CenterPoint = ComputeCenterPoint(4);
  TextoutPoint = source.TextoutPoint;
  userData_.Assign(source.userData_);
  multiInfo_ = source.multiInfo_;
  multiInfoAlignment_ = source.multiInfoAlignment_;
  Changed();
}

void TMyShape::AssignWithoutRelation(const TMyShape& source) {
  if (&source == this) return;
  CopyCommonFields(source);
  angle_ = source.angle_;
  CenterPoint = ComputeCenterPoint(4);
  TextoutPoint = source.TextoutPoint;
  userData_.Assign(source.userData_);
  Changed();
}

// ---------------------------------------------------------------------------
// Relations

namespace {
// The list with every number mapped; numbers of gone shapes are dropped.
template <typename T>
std::vector<T> RemapNumbers(const std::vector<T>& numbers, const std::function<std::int32_t(std::int32_t)>& map) {
  std::vector<T> kept;
  for (const T no : numbers) {
    const std::int32_t mapped = map(static_cast<std::int32_t>(no));
    if (mapped >= 0) kept.push_back(static_cast<T>(mapped));
  }
  return kept;
}
}  // namespace

void TMyShape::RemapShapeNumbers(const std::function<std::int32_t(std::int32_t)>& map) {
  if (ParentId >= 0) ParentId = std::max(map(ParentId), -1);
  ChildShapes = RemapNumbers(ChildShapes, map);
  LinkLines = RemapNumbers(LinkLines, map);
}

// ---------------------------------------------------------------------------
// Queries

TArrMyPoint TMyShape::FigureInZoom() const { return GetPointsInZoom(); }

TMyPoint TMyShape::GetCenterPoint() const { return CenterPoint; }

TMyPoint TMyShape::GetCenterPointInZoom() const { return ZoomedValuePt(GetCenterPoint()); }

std::string TMyShape::GetInfo() { return {}; }

TMyPoint TMyShape::GetPoint(std::int32_t index) const {
  return IsExistPt(index, Points) ? Points[static_cast<std::size_t>(index)] : TMyPoint{};
}

std::int32_t TMyShape::InWhichHot(const TPoint&) { return -1; }

bool TMyShape::IsClickedMe(TCanvas&, const TPoint&) { return false; }

TMyRect TMyShape::GetBoundsInZoom() {
  TBoundsBuilder box;
  for (const TMyPoint& p : Points) box.Add(ZoomedValuePt(p));
  // Without points a shape's extent counts as the zero rectangle at the
  // origin (GetPointsLTRB): snapping and rubber bands measure it there.
  if (Points.empty()) box.Add(0, 0);
  for (const TMyPoint& p : LinkPoints) box.Add(ZoomedValuePt(p));
  box.Add(GetCenterPointInZoom());
  const TMyPoint anchor = ZoomedValuePt(TextoutPoint);
  box.Add(anchor);
  // Handle squares (and their hit squares) reach HotSize past a rounded
  // point, link crosses 3 pixels; the pen reaches past the outline.
  const long double handles = std::max<long double>(HotSize(), 3) + 1;
  TBoundsBuilder all;
  all.Add(box.Grown(handles + PenReach(pen_.Width())));
  if (captionShow_ && (!info_.empty() || !multiInfo_.empty())) {
    std::size_t widest = info_.size(), lines = 1;
    if (info_.empty()) {
      lines = multiInfo_.size();
      widest = 0;
      for (const std::string& line : multiInfo_) widest = std::max(widest, line.size());
    }
    all.AddAround(anchor.X, anchor.Y, TextReach(font_.Size(), Zoom(), widest, lines));
  }
  return all.Grown(0);
}

namespace {
TMyPoint Zoomed(const TMyPoint& p, long double zoom) {
  return MyPoint(static_cast<float>(p.X * zoom), static_cast<float>(p.Y * zoom));
}
}  // namespace

TMyPoint TMyShape::ZoomedValuePt(const TMyPoint& p) const { return Zoomed(p, Zoom()); }

TArrMyPoint TMyShape::GetPointsInZoom() const {
  const long double zoom = Zoom();
  TArrMyPoint zoomed;
  zoomed.reserve(Points.size());
  for (const TMyPoint& p : Points) zoomed.push_back(Zoomed(p, zoom));
  return zoomed;
}

TMyPoint TMyShape::GetPointInZoom(std::int32_t index) const { return ZoomedValuePt(GetPoint(index)); }

TMyPoint TMyShape::GetLinkPoint(std::int32_t index) const {
  return IsExistPt(index, LinkPoints) ? LinkPoints[static_cast<std::size_t>(index)] : TMyPoint{};
}

TMyPoint TMyShape::GetLinkPointInZoom(std::int32_t index) const { return ZoomedValuePt(GetLinkPoint(index)); }

TPoint TMyShape::GetPointInZoomWithMode(std::int32_t index) const {
  if (index < 0 || index >= GetPointsCount()) return {};
  return MirrorByXYMode(MyPtToPt(GetPointInZoom(index)));
}

// ---------------------------------------------------------------------------
// Point writers

namespace {
template <typename Fn>
bool WithPoint(TArrMyPoint& points, std::int32_t index, Fn fn) {
  if (!IsExistPt(index, points)) return false;
  fn(points[static_cast<std::size_t>(index)]);
  return true;
}
}  // namespace

void TMyShape::SetPoint(std::int32_t index, const TMyPoint& p) {
  if (WithPoint(Points, index, [&](TMyPoint& q) { q = p; })) Changed();
}
void TMyShape::SetPointX(std::int32_t index, float x) {
  if (WithPoint(Points, index, [&](TMyPoint& q) { q.X = x; })) Changed();
}
void TMyShape::SetPointY(std::int32_t index, float y) {
  if (WithPoint(Points, index, [&](TMyPoint& q) { q.Y = y; })) Changed();
}
void TMyShape::SetLinkPoint(std::int32_t index, const TMyPoint& p) {
  if (WithPoint(LinkPoints, index, [&](TMyPoint& q) { q = p; })) Changed();
}
void TMyShape::SetLinkPointX(std::int32_t index, float x) {
  if (WithPoint(LinkPoints, index, [&](TMyPoint& q) { q.X = x; })) Changed();
}
void TMyShape::SetLinkPointY(std::int32_t index, float y) {
  if (WithPoint(LinkPoints, index, [&](TMyPoint& q) { q.Y = y; })) Changed();
}
void TMyShape::SetPointInZoom(std::int32_t index, const TMyPoint& p) {
  const long double zoom = Zoom();
  SetPoint(index, MyPoint(static_cast<float>(p.X / zoom), static_cast<float>(p.Y / zoom)));
}
void TMyShape::SetPointXInZoom(std::int32_t index, float x) {
  SetPointX(index, static_cast<float>(x / static_cast<long double>(Zoom())));
}
void TMyShape::SetPointYInZoom(std::int32_t index, float y) {
  SetPointY(index, static_cast<float>(y / static_cast<long double>(Zoom())));
}
void TMyShape::PointAddX(std::int32_t index, double dx) { PointAddXY(index, dx, 0); }
void TMyShape::PointAddY(std::int32_t index, double dy) { PointAddXY(index, 0, dy); }
void TMyShape::PointAddXY(std::int32_t index, double dx, double dy) {
  const long double zoom = Zoom();
  if (WithPoint(Points, index, [&](TMyPoint& q) {
        q.X = static_cast<float>(q.X + dx / zoom);
        q.Y = static_cast<float>(q.Y + dy / zoom);
      }))
    Changed();
}
void TMyShape::LinkPointAddXY(std::int32_t index, double dx, double dy) {
  const long double zoom = Zoom();
  if (WithPoint(LinkPoints, index, [&](TMyPoint& q) {
        q.X = static_cast<float>(q.X + dx / zoom);
        q.Y = static_cast<float>(q.Y + dy / zoom);
      }))
    Changed();
}

// ---------------------------------------------------------------------------
// Extent

TMyPoint TMyShape::GetLeftTop() const { return ComputeCenterPoint(0); }
TMyPoint TMyShape::GetRightTop() const { return ComputeCenterPoint(1); }
TMyPoint TMyShape::GetRightBottom() const { return ComputeCenterPoint(2); }
TMyPoint TMyShape::GetLeftBottom() const { return ComputeCenterPoint(3); }

float TMyShape::GetWidth() const {
  const TMyRect r = GetPointsLTRB(Points);
  return std::fabs(r.Right - r.Left);
}

float TMyShape::GetHeight() const {
  const TMyRect r = GetPointsLTRB(Points);
  return std::fabs(r.Bottom - r.Top);
}

namespace {
TMyRect UnrotatedBox(const TArrMyPoint& points, const TMyPoint& center, float angle) {
  TArrMyPoint turned;
  turned.reserve(points.size());
  for (const TMyPoint& p : points) turned.push_back(RotateAPoint(p, center, -angle));
  return GetPointsLTRB(turned);
}
}  // namespace

float TMyShape::GetMyWidth() const {
  const TMyRect r = UnrotatedBox(Points, CenterPoint, angle_);
  return r.Right - r.Left;
}

float TMyShape::GetMyHeight() const {
  const TMyRect r = UnrotatedBox(Points, CenterPoint, angle_);
  return r.Bottom - r.Top;
}

TMyPoint TMyShape::ComputeCenterPoint(std::int32_t which) const {
  const TMyRect r = GetPointsLTRB(Points);
  switch (which) {
    case 0: return MyPoint(r.Left, r.Top);
    case 1: return MyPoint(r.Right, r.Top);
    case 2: return MyPoint(r.Right, r.Bottom);
    case 3: return MyPoint(r.Left, r.Bottom);
    case 4:
      return MyPoint(static_cast<float>(r.Left + (static_cast<long double>(r.Right) - r.Left) / 2),
                     static_cast<float>(r.Top + (static_cast<long double>(r.Bottom) - r.Top) / 2));
    default: return {};
  }
}

// ---------------------------------------------------------------------------
// Handles

bool TMyShape::InTextPointHot(const TPoint& p) const {
  const TPoint anchor = MyPtToPt(ZoomedValuePt(TextoutPoint));
  const std::int32_t h = HotSize();
  return PtInRect(Rect(anchor.X - h, anchor.Y - h, anchor.X + h, anchor.Y + h), p);
}

std::int32_t TMyShape::InWhichLinkHot(const TMyPoint& p) const {
  const float h = HotSize();
  std::int32_t hit = -1;
  for (std::int32_t i = 0; i < GetLinkPointsCount(); ++i) {
    const TMyPoint c = GetLinkPointInZoom(i);
    if (p.X >= c.X - h && p.X < c.X + h && p.Y >= c.Y - h && p.Y < c.Y + h) hit = i;
  }
  return hit;
}

void TMyShape::DrawHotLinkSquare(TCanvas& canvas, const TMyPoint& p) { DrawLinkSquare(canvas, p); }

// ---------------------------------------------------------------------------
// Text

std::string TMyShape::GetLengthByUnit(const TPoint& a, const TPoint& b) const {
  const long double factor = Ratio() / Zoom();
  const long double ppi = ScreenPixelsPerInch();
  const long double dx = static_cast<long double>(a.X) - b.X, dy = static_cast<long double>(a.Y) - b.Y;
  const long double inches = std::sqrt(dx * dx + dy * dy) / ppi;
  const long double mmValue = factor * inches * 25.4L;
  char text[64];
  switch (TheUNIT()) {
    case pixel: std::snprintf(text, sizeof text, "%9.0Lf pixel(s)", factor * inches * ppi); break;
    case mm: std::snprintf(text, sizeof text, "%9.2Lf mm", mmValue); break;
    case cm: std::snprintf(text, sizeof text, "%9.2Lf cm", mmValue / 10); break;
    case dm: std::snprintf(text, sizeof text, "%9.2Lf dm", mmValue / 100); break;
    case m: std::snprintf(text, sizeof text, "%9.2Lf m", mmValue / 1000); break;
    case inch: std::snprintf(text, sizeof text, "%9.2Lf in", factor * inches); break;
  }
  return text;
}

void TMyShape::MyLogTextOut(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                            const TFont& font, double scale, double angle) const {
  DrawRotatedText(canvas, x, y, text, font, scale, angle);
}

TSize TMyShape::GetTextWidthHeight(TCanvas& canvas, const std::string& text, const TFont& font,
                                   double scale, double angle) const {
  return lumatrex::GetTextWidthHeight(canvas, text, font, scale, angle);
}

void TMyShape::DrawInfo(TCanvas& canvas) {
  if (!captionShow_) return;
  const double zoom = Zoom();
  const TPoint anchor = MyPtToPt(ZoomedValuePt(TextoutPoint));
  // The text is laid out upright around the anchor and the layout is then
  // turned about the anchor, so a turned caption stays centred on it. At
  // angle 0 the positions are exactly the upright ones.
  auto draw = [&](std::int32_t x, std::int32_t y, const std::string& text) {
    const TPoint at = MyPtToPt(RotateAPoint(PtToMyPt(Point(x, y)), PtToMyPt(anchor), static_cast<float>(textAngle_)));
    MyLogTextOut(canvas, at.X, at.Y, text, font_, zoom, textAngle_);
  };
  if (!info_.empty()) {
    const TSize size = GetTextWidthHeight(canvas, info_, font_, zoom, textAngle_);
    draw(Round(anchor.X - size.cx / 2.0L), Round(anchor.Y - size.cy / 2.0L), info_);
    return;
  }
  if (multiInfo_.empty()) return;
  std::vector<TSize> sizes;
  std::int32_t widest = 0, total = 0;
  for (const std::string& line : multiInfo_) {
    sizes.push_back(GetTextWidthHeight(canvas, line, font_, zoom, textAngle_));
    widest = std::max(widest, sizes.back().cx);
    total += sizes.back().cy;
  }
  const std::int32_t step = sizes.back().cy;
  const std::int32_t x0 = Round(anchor.X - widest / 2.0L);
  std::int32_t y = Round(anchor.Y - total / 2.0L);
  for (std::size_t i = 0; i < multiInfo_.size(); ++i) {
    const std::int32_t w = sizes[i].cx;
    std::int32_t x = x0;
    if (multiInfoAlignment_ == taRightJustify) x = x0 + widest - w;
    if (multiInfoAlignment_ == taCenter) x = x0 + Round((widest - w) / 2.0L);
    draw(x, y, multiInfo_[i]);
    y += step;
  }
}

void TMyShape::Draw(TCanvas& canvas) { DrawInfo(canvas); }

// ---------------------------------------------------------------------------
// Pen, brush and outline painting

void TMyShape::SetPS(TCanvas& canvas, TPenStyle style, TColor color, std::int32_t width) const {
  static constexpr TPenJoin kJoins[] = {pjRound, pjBevel, pjMiter, pjRound};
  static constexpr TPenEndCap kCaps[] = {pecRound, pecSquare, pecFlat, pecRound};
  TPen& pen = canvas.Pen();
  pen.SetStyle(style);
  pen.SetColor(color);
  pen.SetWidth(width);
  // Values read from a file are not trusted to be in range.
  const TPenJoin join = penStyleJoinType_ < std::size(kJoins) ? kJoins[penStyleJoinType_] : pjRound;
  const TPenEndCap cap = penStyleEndCapType_ < std::size(kCaps) ? kCaps[penStyleEndCapType_] : pecRound;
  pen.SetGeometric(join, cap);
}

void TMyShape::PowerDrawShape(TCanvas& canvas, const std::vector<TPoint>& points, bool closed) {
  if (points.empty()) return;
  SetDrawShapeMode(*this, canvas);
  SetPS(canvas, canvas.Pen().Style(), canvas.Pen().Color(), canvas.Pen().Width());
  if (!closed) {
    canvas.Polyline(points);
    return;
  }
  if (gradientStyle_ == gsNone || gradient_.Empty()) {
    canvas.Polygon(points);
    return;
  }
  std::int32_t left = points[0].X, top = points[0].Y, right = left, bottom = top;
  for (const TPoint& p : points) {
    left = std::min(left, p.X);
    top = std::min(top, p.Y);
    right = std::max(right, p.X);
    bottom = std::max(bottom, p.Y);
  }
  // Put the clip back as it was. "None" must stay none: a rectangle of
  // today's bitmap size would cut the drawing once the bitmap grows (a
  // canvas's back buffer grows with the zoom).
  const TRect clip = canvas.ClipRect();
  const bool clipped = clip != Rect(0, 0, canvas.Bitmap().Width(), canvas.Bitmap().Height());
  canvas.SetClipPolygon(points);
  canvas.StretchDraw(Rect(left, top, right, bottom), gradient_);
  canvas.ClearClipRect();
  if (clipped) canvas.SetClipRect(clip);
  const TBrushStyle fill = canvas.Brush().Style();
  canvas.Brush().SetStyle(bsClear);
  canvas.Polygon(points);
  canvas.Brush().SetStyle(fill);
}

void TMyShape::DoPenBrushChange() {
  if (owner_ && owner_->IsUpdating()) return;
  ForEachChild([this](TMyShape& child) {
    child.Pen().Assign(pen_);
    child.Brush().Assign(brush_);
  });
}

void TMyShape::DoFontChange() {
  if (owner_ && owner_->IsUpdating()) return;
  ForEachChild([this](TMyShape& child) { child.Font().Assign(font_); });
}

// ---------------------------------------------------------------------------
// Property setters with side effects

void TMyShape::SetColorBegin(TColor value) {
  if (value == colorBegin_) return;
  colorBegin_ = value;
  DrawGradient();
  DoPenBrushChange();
  RepaintOwner();
}

void TMyShape::SetColorEnd(TColor value) {
  if (value == colorEnd_) return;
  colorEnd_ = value;
  DrawGradient();
  DoPenBrushChange();
  RepaintOwner();
}

void TMyShape::SetGradientStyle(TGradientStyle value) {
  if (value == gradientStyle_) return;
  gradientStyle_ = value;
  DoPenBrushChange();
  DrawGradient();
  FlipGradientByFlags();
  RepaintOwner();
}

void TMyShape::SetIsFlipHorz(bool) {
  if (owner_)
    owner_->FlipHoriz(this);
  else
    FlipHoriz();
  DrawGradient();
  FlipGradientByFlags();
}

void TMyShape::SetIsFlipVert(bool) {
  if (owner_)
    owner_->FlipVert(this);
  else
    FlipVert();
  DrawGradient();
  FlipGradientByFlags();
}

void TMyShape::SetLocked(bool value) {
  if (value == locked_) return;
  if (owner_)
    owner_->LockUnLockforShapes(this, value);
  else
    locked_ = value;
  RepaintOwner();
}

// ---------------------------------------------------------------------------
// Free helpers on a shape's points

void OffsetAllPoints(TMyShape& shape, long double dx, long double dy) {
  auto move = [&](TMyPoint& p) {
    p.X = static_cast<float>(p.X + dx);
    p.Y = static_cast<float>(p.Y + dy);
  };
  std::for_each(shape.Points.begin(), shape.Points.end(), move);
  std::for_each(shape.LinkPoints.begin(), shape.LinkPoints.end(), move);
  move(shape.TextoutPoint);
}

void RemoveAllPoints(TMyShape& shape) { shape.Points.clear(); }

void AddLinklineShape(TMyShape& shape, std::uint32_t id) {
  if (std::find(shape.LinkLines.begin(), shape.LinkLines.end(), id) == shape.LinkLines.end())
    shape.LinkLines.push_back(id);
}

void RemoveLinklineShape(TMyShape& shape, std::uint32_t id) {
  const auto last = std::find(shape.LinkLines.rbegin(), shape.LinkLines.rend(), id);
  if (last != shape.LinkLines.rend()) shape.LinkLines.erase(std::next(last).base());
}

}  // namespace lumatrex
