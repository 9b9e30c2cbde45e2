#include "shapes/bezier.h"

#include <algorithm>
#include <cmath>

#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/measures.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

// Finer steps buy nothing on a screen; the cap bounds the work for a piece
// zoomed far beyond the window.
constexpr long double kFlatStep = 2;
constexpr std::int32_t kMaxSteps = 512;

struct TCubic {
  long double x[4], y[4];
  TMyPoint At(long double t) const {
    const long double s = 1 - t;
    const long double a = s * s * s, b = 3 * s * s * t, c = 3 * s * t * t, d = t * t * t;
    return MyPoint(static_cast<float>(a * x[0] + b * x[1] + c * x[2] + d * x[3]),
                   static_cast<float>(a * y[0] + b * y[1] + c * y[2] + d * y[3]));
  }
  // Steps that keep each straight piece within about kFlatStep of length.
  std::int32_t Steps(long double scale) const {
    long double hull = 0;
    for (int i = 1; i < 4; ++i) hull += std::hypot(x[i] - x[i - 1], y[i] - y[i - 1]);
    return std::clamp(static_cast<std::int32_t>(std::ceil(hull * scale / kFlatStep)), 1, kMaxSteps);
  }
};

TCubic Piece(const TArrMyPoint& points, std::int32_t piece) {
  TCubic c{};
  for (int i = 0; i < 4; ++i) {
    const TMyPoint& p = points[static_cast<std::size_t>(3 * piece + i)];
    c.x[i] = p.X;
    c.y[i] = p.Y;
  }
  return c;
}

TMyPoint Mix(const TMyPoint& a, const TMyPoint& b, long double t) {
  return MyPoint(static_cast<float>(a.X + (static_cast<long double>(b.X) - a.X) * t),
                 static_cast<float>(a.Y + (static_cast<long double>(b.Y) - a.Y) * t));
}

// The piece and parameter where the curve comes nearest to a device point;
// Distance is in device pixels.
struct TNearest {
  std::int32_t piece = -1;
  long double t = 0;
  long double distance = 0;
};

}  // namespace

// ---- interactive drawing --------------------------------------------------------------------

void TMyPolyBezier::AddPointByMouse(const TPoint& p) {
  const long double zoom = Zoom();
  const TMyPoint m = MyPoint(static_cast<float>(p.X / zoom), static_cast<float>(p.Y / zoom));
  if (Points.empty())
    Points = {m, m};
  else
    Points.insert(Points.end(), {m, m, m});
}

void TMyPolyBezier::SetTangentByMouse(const TPoint& p) {
  const std::int32_t n = GetPointsCount();
  if (n < 2) return;
  const long double zoom = Zoom();
  const TMyPoint out = MyPoint(static_cast<float>(p.X / zoom), static_cast<float>(p.Y / zoom));
  const TMyPoint anchor = Points[static_cast<std::size_t>(n - 2)];
  Points.back() = out;
  if (n >= 5) Points[static_cast<std::size_t>(n - 3)] = Mix(out, anchor, 2);
}

bool TMyPolyBezier::EndDrawing() {
  if (GetPointsCount() < 5 || (GetPointsCount() - 2) % 3 != 0) return false;
  Points.pop_back();
  CenterPoint = ComputeCenterPoint(4);
  return true;
}

bool TMyPolyBezier::IsDrawingFinished(TMouseButton, const TPoint&) {
  return GetPointsCount() >= 4 && (GetPointsCount() - 1) % 3 == 0;
}

void TMyPolyBezier::Drawing(TCanvas& canvas, const TPoint&, const TPoint& to) {
  const std::int32_t n = GetPointsCount();
  if (n < 2) return;
  const std::vector<TPoint> device = DevicePoints(Points);
  if (n >= 5) canvas.PolyBezier(std::vector<TPoint>(device.begin(), device.end() - 1));
  const TPoint anchor = device[static_cast<std::size_t>(n - 2)], out = device.back();
  const TPoint in = n >= 5 ? device[static_cast<std::size_t>(n - 3)] : anchor;
  if (in != out) canvas.LineChain({in, anchor, out});
  // While the tangent is being dragged the mouse sits on it: no rubber band.
  if (to != out) canvas.LineChain({anchor, to});
}

// ---- painting ---------------------------------------------------------------------------------

std::vector<TPoint> TMyPolyBezier::DevicePoints(const TArrMyPoint& model) const {
  const long double zoom = Zoom();
  std::vector<TPoint> device;
  device.reserve(model.size());
  for (const TMyPoint& p : model)
    device.push_back(MyPtToPt(MyPoint(static_cast<float>(p.X * zoom), static_cast<float>(p.Y * zoom))));
  return device;
}

void TMyPolyBezier::Draw(TCanvas& canvas) {
  if (PieceCount() == 0) return;
  SetDrawShapeMode(*this, canvas);
  SetPS(canvas, canvas.Pen().Style(), canvas.Pen().Color(), canvas.Pen().Width());
  std::vector<TPoint> device = DevicePoints(Points);
  device.resize(static_cast<std::size_t>(3 * PieceCount() + 1));
  canvas.PolyBezier(device);
  DrawInfo(canvas);
}

void TMyPolyBezier::Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  TArrMyPoint zoomed;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) zoomed.push_back(GetPointInZoom(i));
  canvas.PolyBezier(ShiftAndRound(zoomed, to.X - from.X, to.Y - from.Y));
}

void TMyPolyBezier::Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) {
  TArrMyPoint zoomed;
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) zoomed.push_back(GetPointInZoom(i));
  canvas.PolyBezier(RotatePoints(zoomed, center, angle));
}

// The preview applies the change, draws and takes it back, so it shows
// exactly what the release will make.
void TMyPolyBezier::Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) {
  const TArrMyPoint saved = Points;
  const TMyPoint centre = CenterPoint;
  SizeChangeValue(PtToMyPt(from), PtToMyPt(to));
  const std::vector<TPoint> device = DevicePoints(Points);
  Points = saved;
  CenterPoint = centre;
  canvas.PolyBezier(device);
}

void TMyPolyBezier::DrawHot(TCanvas& canvas) {
  if (!OwnerShowsHandles(*this) || PieceCount() == 0) return;
  const TPenStyle style = canvas.Pen().Style();
  canvas.Pen().SetStyle(psDot);
  for (std::int32_t i = 0; i < GetPointsCount(); ++i)
    if (!IsAnchor(i)) LineDraw(*this, canvas, GetPointInZoom(i), GetPointInZoom(i % 3 == 1 ? i - 1 : i + 1));
  canvas.Pen().SetStyle(style);
  for (std::int32_t i = 0; i < GetPointsCount(); ++i) DrawSquare(*this, canvas, GetPointInZoom(i));
}

// ---- handles and hit tests ------------------------------------------------------------------

std::int32_t TMyPolyBezier::InWhichHot(const TPoint& p) {
  CurrentHot = -1;
  for (const bool anchors : {false, true})
    for (std::int32_t i = 0; i < GetPointsCount(); ++i)
      if (IsAnchor(i) == anchors && InHotSquare(GetPointInZoom(i), p, HotSize())) CurrentHot = i;
  return CurrentHot;
}

TArrMyPoint TMyPolyBezier::FlattenedInZoom() const {
  TArrMyPoint flat;
  const long double zoom = Zoom();
  for (std::int32_t piece = 0; piece < PieceCount(); ++piece) {
    const TCubic cubic = Piece(Points, piece);
    const std::int32_t steps = cubic.Steps(zoom);
    for (std::int32_t i = piece == 0 ? 0 : 1; i <= steps; ++i) {
      const TMyPoint p = cubic.At(static_cast<long double>(i) / steps);
      flat.push_back(MyPoint(static_cast<float>(p.X * zoom), static_cast<float>(p.Y * zoom)));
    }
  }
  return flat;
}

bool TMyPolyBezier::IsClickedMe(TCanvas&, const TPoint& p) { return NearChain(RoundPoints(FlattenedInZoom()), p); }

// ---- changes --------------------------------------------------------------------------------

void TMyPolyBezier::SizeChangeValue(const TMyPoint& a, const TMyPoint& b) {
  const std::int32_t hot = CurrentHot;
  if (hot < 0 || hot >= GetPointsCount()) return;
  const double dx = static_cast<double>(b.X) - a.X, dy = static_cast<double>(b.Y) - a.Y;
  PointAddXY(hot, dx, dy);
  if (IsAnchor(hot)) {
    if (hot > 0) PointAddXY(hot - 1, dx, dy);
    if (hot + 1 < GetPointsCount()) PointAddXY(hot + 1, dx, dy);
  }
  CenterPoint = ComputeCenterPoint(4);
}

std::int32_t TMyPolyBezier::InsertPieceAt(const TPoint& p) {
  const long double zoom = Zoom();
  TNearest best;
  best.distance = kLineHitBand;
  for (std::int32_t piece = 0; piece < PieceCount(); ++piece) {
    const TCubic cubic = Piece(Points, piece);
    const std::int32_t steps = cubic.Steps(zoom) * 4;
    for (std::int32_t i = 1; i < steps; ++i) {
      const long double t = static_cast<long double>(i) / steps;
      const TMyPoint q = cubic.At(t);
      const long double d = std::hypot(q.X * zoom - p.X, q.Y * zoom - p.Y);
      if (d <= best.distance) best = {piece, t, d};
    }
  }
  if (best.piece < 0) return -1;
  // De Casteljau: the two halves trace the original piece exactly.
  const auto at = static_cast<std::size_t>(3 * best.piece);
  const TMyPoint p0 = Points[at], p1 = Points[at + 1], p2 = Points[at + 2], p3 = Points[at + 3];
  const long double t = best.t;
  const TMyPoint p01 = Mix(p0, p1, t), p12 = Mix(p1, p2, t), p23 = Mix(p2, p3, t);
  const TMyPoint p012 = Mix(p01, p12, t), p123 = Mix(p12, p23, t), middle = Mix(p012, p123, t);
  Points.erase(Points.begin() + static_cast<std::ptrdiff_t>(at + 1), Points.begin() + static_cast<std::ptrdiff_t>(at + 3));
  Points.insert(Points.begin() + static_cast<std::ptrdiff_t>(at + 1), {p01, p012, middle, p123, p23});
  CenterPoint = ComputeCenterPoint(4);
  Changed();
  return static_cast<std::int32_t>(at + 3);
}

bool TMyPolyBezier::RemovePieceAt(std::int32_t hot) {
  const std::int32_t pieces = PieceCount();
  if (pieces < 2 || hot < 0 || hot > 3 * pieces) return false;
  const std::int32_t anchor = hot % 3 == 1 ? hot - 1 : hot % 3 == 2 ? hot + 1 : hot;
  // The three points that go: an inner anchor with both its controls, an end
  // anchor with the two controls of its piece.
  const std::int32_t first = anchor == 0 ? 0 : anchor == 3 * pieces ? anchor - 2 : anchor - 1;
  Points.erase(Points.begin() + first, Points.begin() + first + 3);
  CenterPoint = ComputeCenterPoint(4);
  Changed();
  return true;
}

std::string TMyPolyBezier::GetInfo() {
  long double length = 0;
  for (std::int32_t piece = 0; piece < PieceCount(); ++piece) {
    const TCubic cubic = Piece(Points, piece);
    const std::int32_t steps = cubic.Steps(1) * 8;
    TMyPoint last = cubic.At(0);
    for (std::int32_t i = 1; i <= steps; ++i) {
      const TMyPoint q = cubic.At(static_cast<long double>(i) / steps);
      length += std::hypot(static_cast<long double>(q.X) - last.X, static_cast<long double>(q.Y) - last.Y);
      last = q;
    }
  }
  return LengthText(length, Ratio(), TheUNIT());
}

}  // namespace lumatrex
