// The connection kinds: TMyLinkPoint (a point other shapes' connectors can
// attach to) and the connectors TMyLinkLine and TMyLineLinkLine, whose ends
// follow the shapes they join.
//
// A connector names the shape at each end by its list position (ShapeNo) and
// the link point of that shape by its index; a negative shape number is a
// free end. The numbers are kept valid by RemapShapeNumbers when the owner
// removes or reorders shapes.
//
// These classes are complete for storing, copying and reading. How they
// draw, route, are hit and are edited is later work: until then a link point
// behaves as its rectangle frame and a connector as a plain line.
#pragma once

#include <cstdint>

#include "shapes/closed_shapes.h"
#include "shapes/lines.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyLinkPoint
// ---------------------------------------------------------------------------

// Drawing files store the shape base record, then Size (a byte), in every
// version.
class TMyLinkPoint : public TMyRectangle {
  Q_OBJECT
  Q_PROPERTY(std::uint8_t Size READ GetSize WRITE SetSize)

 public:
  explicit TMyLinkPoint(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyLinkPoint"; }

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

// Drawing files store the line record, then StartSpNo, StartSpPtId, EndSpNo
// and EndSpPtId (int32 each) in every version and, from "XP.5" on,
// LinkLineDrawStyle (a byte).
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
