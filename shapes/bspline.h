// TMyBLine: the smooth curve of the SpBLine tool. The clicked points (the
// shape's point list, model coordinates) are what is stored, moved, sized and
// rotated; every paint solves a uniform cubic B-spline that passes through
// them, with a sharp corner wherever a point is entered three times in a row.
// Its drawing-file record is the shape base record.
//
// Curve space: the drawing operations feed the vertex buffer with zoomed
// points (model x zoom) and draw with the samples rounded half-to-even to
// device pixels.
#pragma once

#include <array>
#include <cstdint>
#include <vector>

#include "shapes/shape.h"

namespace lumatrex {

class TMyBLine : public TMyShape {
  Q_OBJECT

 public:
  // The vertex buffer holds this many vertices besides the two phantom ones.
  // A curve never takes more points: further clicks are refused, node
  // insertion is not offered on a full curve, and only the first kMaxPoints
  // points of a longer list (loaded or set by code) are drawn.
  static constexpr std::int32_t kMaxPoints = 100;

  explicit TMyBLine(TMyShapeOwner* owner);

  const char* ClassName() const override { return "TMyBLine"; }

  // ==== the curve ============================================================

  // Appends P as vertex N + 1 and refreshes the phantom vertices. The caller
  // keeps N below kMaxPoints (asserted).
  void AddVertex(const TMyPoint& p);
  // With two vertices or more: vertex 0 := 2 v1 - v2 and vertex N + 1 :=
  // 2 vN - vN-1, so that the curve starts on v1 and ends on vN.
  void PhantomPoints();
  // The curve at parameter T in 0..1 (0 gives the start, 1 the end).
  TMyPoint GetVPoint(float t) const;
  // Replaces vertices 1..N by control vertices whose curve passes through
  // them (a point equal to both neighbours within 1e-5 stays a sharp corner).
  // A degenerate system leaves the vertices as they are.
  void Interpolate();
  // The curve as a polyline of 601 samples (t = i / 600), each rounded to
  // device pixels: MoveTo the first, LineTo the others.
  void DrawBLine(TCanvas& canvas);
  std::int32_t VertexCount() const { return vertexCount_; }
  // Vertex I of the buffer (0 and N + 1 are the phantoms); (0, 0) out of range.
  TMyPoint Vertex(std::int32_t i) const;

  // ==== shape protocol =========================================================

  // The curve in the shape's pen, stroked as one path so that the pen's joins
  // and end caps apply, then the info text. Fewer than two points draw no curve.
  void Draw(TCanvas& canvas) override;
  // Previews in the canvas's current (XOR) mode, without a path.
  // Draging: the curve moved by To - From.
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Drawing: sets the preview mode and draws the curve through the clicked
  // points and To, on device-rounded points. To is left out when it is the
  // last clicked point (zoomed, rounded): the preview drawn before a click and
  // the redraw with To = that point are the same picture, so a second XOR
  // draw erases it. With kMaxPoints points To is not added.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Sizing: the curve with the current hot point moved by To - From; nothing
  // without a current hot point.
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Rotating: the curve turned about the zoomed centre C by Angle.
  void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) override;
  // When the owner shows handles: a square at every point and the yellow
  // diamond of the zoomed centre.
  void DrawHot(TCanvas& canvas) override;
  // The point whose square of half-width HotSize (device pixels, right and
  // bottom edges excluded) holds P; the last such index wins; -1 for none.
  // Also stored as CurrentHot.
  std::int32_t InWhichHot(const TPoint& p) override;
  // True when device point P lies within the tolerance of the sampled curve:
  // the owner's HotSize, or half the pen width when that is larger.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // The base box and the sampled curve's, widened by the hit tolerance.
  TMyRect GetBoundsInZoom() override;
  // The same test for node insertion: on a hit, Index is the number of the
  // clicked point that follows the piece of curve nearest to P (insert
  // before it) and the answer is true. Otherwise, and on a curve that already
  // holds kMaxPoints points, Index is -1 and the answer false.
  bool IsClickedMeBeforeWhichPoint(std::int32_t& index, const TPoint& p);
  // Refuses the point once the curve holds kMaxPoints points.
  void AddPointByMouse(const TPoint& p) override;
  // Point entry ends like a poly-line's: with more than two points, a click
  // on the last point (the second click of a double-click) ends it and its
  // duplicate is removed. Entry also ends when the kMaxPoints-th point is
  // added. A repeated click therefore always ends the entry; corners (a point
  // three times in a row) come from code, files or node insertion.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // Moves the current hot point by the device offset B - A (divided by the
  // zoom) and recomputes the centre.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;

 private:
  // Loads the first kMaxPoints of Zoomed as vertices and solves them; false
  // when fewer than two remain (no curve).
  bool LoadVertices(const TArrMyPoint& zoomed);
  void DrawCurveThrough(TCanvas& canvas, const TArrMyPoint& zoomed);
  TArrMyPoint ZoomedPoints() const;
  // Index of the sampled segment nearest to P within the hit tolerance, or -1.
  std::int32_t NearestSampleSegment(const TPoint& p);

  // The curve's 601 samples in device pixels; empty without a curve.
  std::vector<TPoint> SampleCurve() const;
  // Draws Draw's curve from the cache, remaking it first when the zoomed
  // points differ in any bit from those it was made from (a move, an edit or
  // a zoom). The vertex buffer is left as making it would leave it.
  void DrawCachedCurve(TCanvas& canvas);

  std::array<TMyPoint, kMaxPoints + 2> vertices_{};
  std::int32_t vertexCount_ = 0;
  struct TCurveCache {
    TArrMyPoint zoomed;
    std::array<TMyPoint, kMaxPoints + 2> vertices{};
    std::int32_t vertexCount = 0;
    std::vector<TPoint> samples;
    bool valid = false;
  };
  TCurveCache curveCache_;
};

}  // namespace lumatrex
