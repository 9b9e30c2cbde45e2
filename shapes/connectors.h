// The connection kinds: TMyLinkPoint (a point other shapes' connectors can
// attach to) and the connectors TMyLinkLine and TMyLineLinkLine, whose ends
// follow the shapes they join.
//
// A connector names the shape at each end by its list position (ShapeNo) and
// the link point of that shape by its index; a negative shape number is a
// free end. The numbers are kept valid by RemapShapeNumbers when the owner
// removes or reorders shapes.
//
// A connector's points are its route: the first and last are its ends, the
// ones between are the bends its LinkLineDrawStyle gives. The shapes route
// the styles that need no knowledge of other shapes; the canvas routes
// lldsOrthogonal around the shapes it holds and keeps ends on their points.
#pragma once

#include <cstdint>

#include "shapes/closed_shapes.h"
#include "shapes/lines.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyLinkPoint
// ---------------------------------------------------------------------------

// A marker other shapes' connectors snap to: a circle of Size device pixels
// with a cross, whatever the zoom, and one link point at its centre. Its four
// points are a Size-pixel frame around that centre at the zoom it was placed
// at. Drawing files store the shape base record, then Size (a byte), in every
// version.
class TMyLinkPoint : public TMyRectangle {
  Q_OBJECT
  Q_PROPERTY(std::uint8_t Size READ GetSize WRITE SetSize)

 public:
  explicit TMyLinkPoint(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyLinkPoint"; }

  // Puts the marker's frame (Size device pixels at the owner's zoom) and its
  // one link point around the model point Centre.
  void PlaceAt(const TMyPoint& centre);
  // The first press places the marker at device point P (PlaceAt); later
  // presses add nothing.
  void AddPointByMouse(const TPoint& p) override;
  // The marker at the centre of its points, then the info text.
  void Draw(TCanvas& canvas) override;
  // The marker at To (XOR preview in the canvas's pen).
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Device point P lies in the marker's Size-pixel square.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // A marker has no size to drag: no handles, so a press on it moves it.
  std::int32_t InWhichHot(const TPoint& p) override;
  // One handle square at the centre shows it is selected.
  void DrawHot(TCanvas& canvas) override;
  // The frame's box, grown by the marker so it holds at any zoom.
  TMyRect GetBoundsInZoom() override;
  // The rectangle's copy plus Size of a link-point source.
  void Assign(const TMyShape& source) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // Size of the point's marker in device pixels; 8 for a new link point.
  // The setter only stores.
  std::uint8_t GetSize() const { return size_; }
  void SetSize(std::uint8_t value) { size_ = value; }

 private:
  std::uint8_t size_ = 8;
};

// ---------------------------------------------------------------------------
// TMyLinkLine
// ---------------------------------------------------------------------------

// Which end of a connector an operation binds.
enum TLinkLineEnd : std::uint8_t {
  llStart,  // point 0, StartSpNo/StartSpPtId
  llEnd,    // the last point, EndSpNo/EndSpPtId
};

// Drawing files store the line record, then StartSpNo, StartSpPtId, EndSpNo
// and EndSpPtId (int32 each) in every version and, from "XP.5" on,
// LinkLineDrawStyle (a byte).
//
// Handles: 0 and the last point are the ends. An orthogonal route with inner
// segments (neither the first nor the last) has a handle at the middle of
// each, numbered kSegmentHot + the index of its first point; dragging it
// moves that segment across its own direction only.
class TMyLinkLine : public TMyLine {
  Q_OBJECT
  Q_PROPERTY(std::int32_t StartSpNo READ GetStartSpNo WRITE SetStartSpNo)
  Q_PROPERTY(std::int32_t StartSpPtId READ GetStartSpPtId WRITE SetStartSpPtId)
  Q_PROPERTY(std::int32_t EndSpNo READ GetEndSpNo WRITE SetEndSpNo)
  Q_PROPERTY(std::int32_t EndSpPtId READ GetEndSpPtId WRITE SetEndSpPtId)
  Q_PROPERTY(lumatrex::TLinkLineDrawStyle LinkLineDrawStyle READ GetLinkLineDrawStyle WRITE SetLinkLineDrawStyle)

 public:
  // Both ends free (-1, -1); routed horizontally first (lldsHV).
  explicit TMyLinkLine(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyLinkLine"; }

  static constexpr std::int32_t kSegmentHot = 1000;

  // ---- route -----------------------------------------------------------------
  // The route between model points A and B that Style gives without looking
  // at other shapes: straight for lldsLine, one bend otherwise (lldsHV and
  // lldsOrthogonal go horizontally first). Repeated points are left out.
  static TArrMyPoint SimpleRoute(const TMyPoint& a, const TMyPoint& b, TLinkLineDrawStyle style);
  // Whether the points are a route of the connector's style: two points for
  // lldsLine; the SimpleRoute of its ends for lldsHV and lldsVH; at least two
  // points and only horizontal and vertical segments for lldsOrthogonal.
  bool IsRouted() const;
  // The end's point index (0 or the last) and model position.
  std::int32_t EndIndex(TLinkLineEnd end) const { return end == llStart ? 0 : GetPointsCount() - 1; }
  // Bound shape number and link point of an end; (-1, -1) when free.
  std::int32_t EndShapeNo(TLinkLineEnd end) const { return end == llStart ? startSpNo_ : endSpNo_; }
  std::int32_t EndPointId(TLinkLineEnd end) const { return end == llStart ? startSpPtId_ : endSpPtId_; }
  void BindEnd(TLinkLineEnd end, std::int32_t shapeNo, std::int32_t pointId);

  // ---- handles and editing (device pixels) --------------------------------------
  // The end or inner-segment handle under P (see above); -1 for none. Also
  // stored in CurrentHot.
  std::int32_t InWhichHot(const TPoint& p) override;
  // Squares at both ends and at the middle of every inner segment.
  void DrawHot(TCanvas& canvas) override;
  // An end handle moves its point by B - A (device, divided by the zoom); a
  // segment handle moves the segment's two points across it by the same
  // distance, so the route stays orthogonal.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // Preview of that change.
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Preview of the route From-To in the connector's style.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;

  // The line's copy plus both ends and the routing of a connector source.
  void Assign(const TMyShape& source) override;
  // The base renumbering, then each attached end follows its shape; an end
  // whose shape is gone becomes free (shape and link point -1).
  void RemapShapeNumbers(const std::function<std::int32_t(std::int32_t)>& map) override;
  // A record older than "XP.5" holds no routing; LinkLineDrawStyle then keeps
  // its value.
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // ---- published properties (setters only store) ----------------------------
  // List position of the shape at the start; negative for a free end.
  std::int32_t GetStartSpNo() const { return startSpNo_; }
  void SetStartSpNo(std::int32_t value) { startSpNo_ = value; }
  // Link point of that shape the start is attached to.
  std::int32_t GetStartSpPtId() const { return startSpPtId_; }
  void SetStartSpPtId(std::int32_t value) { startSpPtId_ = value; }
  std::int32_t GetEndSpNo() const { return endSpNo_; }
  void SetEndSpNo(std::int32_t value) { endSpNo_ = value; }
  std::int32_t GetEndSpPtId() const { return endSpPtId_; }
  void SetEndSpPtId(std::int32_t value) { endSpPtId_ = value; }
  TLinkLineDrawStyle GetLinkLineDrawStyle() const { return linkLineDrawStyle_; }
  void SetLinkLineDrawStyle(TLinkLineDrawStyle value) { linkLineDrawStyle_ = value; }

 private:
  std::int32_t startSpNo_ = -1;
  std::int32_t startSpPtId_ = -1;
  std::int32_t endSpNo_ = -1;
  std::int32_t endSpPtId_ = -1;
  TLinkLineDrawStyle linkLineDrawStyle_ = lldsHV;
};

// ---------------------------------------------------------------------------
// TMyLineLinkLine
// ---------------------------------------------------------------------------

// The connector the canvas prefers when shapes overlap under the mouse; its
// fields and record are TMyLinkLine's.
class TMyLineLinkLine : public TMyLinkLine {
  Q_OBJECT

 public:
  using TMyLinkLine::TMyLinkLine;
  const char* ClassName() const override { return "TMyLineLinkLine"; }
};

}  // namespace lumatrex
