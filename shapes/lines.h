// The open point-list shapes: TMyLine (a straight line or open chain with
// optional arrow heads), TMyPolyLine (a chain entered click by click),
// TMyFreeLine (a freehand stroke) and TMyRuleLine (a measuring line that
// labels itself with its length).
//
// Points are model coordinates; drawing and hit tests work on the zoomed
// points rounded to device pixels. Angles are radians, clockwise on the
// screen, except ArrowAngle, which is in degrees.
#pragma once

#include <cstdint>
#include <string>

#include "shapes/shape.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyLine
// ---------------------------------------------------------------------------

// Drawing files store it as the shape base record followed by ArrowAngle
// (int32), ArrowLength, ArrowOffset and ArrowStyle (a byte each).
//
// Joining a freshly drawn plain line to the line ends it meets (the merge that
// follows Drawed) is the canvas's job, not the line's: Drawed keeps the base
// behaviour.
class TMyLine : public TMyShape {
  Q_OBJECT
  Q_PROPERTY(std::int32_t ArrowAngle READ GetArrowAngle WRITE SetArrowAngle)
  Q_PROPERTY(std::uint8_t ArrowLength READ GetArrowLength WRITE SetArrowLength)
  Q_PROPERTY(std::uint8_t ArrowOffset READ GetArrowOffset WRITE SetArrowOffset)
  Q_PROPERTY(lumatrex::TArrowStyle ArrowStyle READ GetArrowStyle WRITE SetArrowStyle)

 public:
  // The four arrow settings come from Owner; all zero (ANone) without one.
  explicit TMyLine(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyLine"; }

  // ---- painting --------------------------------------------------------------
  // Segments in the shape's pen, then the heads (ALeft at the last point,
  // ARight at the first, ADouble the last one first), then the caption laid
  // along the first segment and never upside down. Heads need two points.
  void Draw(TCanvas& canvas) override;
  // One filled head in the pen colour. Tip and From are zoomed points; the tip
  // is set back ArrowOffset device pixels toward From and the barbs are
  // Zoom x ArrowLength long, taken as a byte (longer heads wrap modulo 256).
  void DrawTriangle(TCanvas& canvas, const TMyPoint& tip, const TMyPoint& from);
  // When the owner shows handles: a square at every zoomed point and the
  // diamond at the zoomed centre.
  void DrawHot(TCanvas& canvas) override;

  // ---- hit tests (device pixels) ------------------------------------------------
  // The point whose handle square contains P; the last one wins. -1 for none.
  // Also stored in CurrentHot.
  std::int32_t InWhichHot(const TPoint& p) override;
  // P lies within 8 device pixels of a segment (whatever the zoom or pen): the
  // band runs across the ends of horizontal and vertical segments only along
  // their length, and a sloped segment is hit only inside its bounding box.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // The same test; on a hit Index is the second point of the first segment
  // hit (where a new point would be inserted), else -1.
  virtual bool IsClickedMeBeforeWhichPoint(std::int32_t& index, const TPoint& p) const;
  // The base box widened by the 8-pixel hit band and the arrow heads.
  TMyRect GetBoundsInZoom() override;

  // ---- interactive drawing and previews (device pixels, canvas pen) -----------
  // Finished with exactly two points.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // Sets the XOR preview mode and draws From-To.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The chain shifted by To - From.
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The two segments at point CurrentHot, that point shifted by To - From.
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The chain turned about the zoomed Center by Angle.
  void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) override;

  // ---- changes -----------------------------------------------------------------
  // Moves point CurrentHot by the device difference B - A (divided by the
  // zoom) and recomputes the centre.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // For a plain TMyLine or TMyRuleLine (exact class): stores and returns the
  // length of the first segment in the owner's unit. Other kinds return ""
  // and keep their info text.
  std::string GetInfo() override;
  // The base copy plus ArrowLength, ArrowAngle and ArrowStyle of a line
  // source; ArrowOffset is deliberately kept.
  void Assign(const TMyShape& source) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // ---- published properties (setters store and tell the owner) --------------
  // Half-angle of a head in degrees: between the line and each barb.
  std::int32_t GetArrowAngle() const { return arrowAngle_; }
  void SetArrowAngle(std::int32_t value) {
    arrowAngle_ = value;
    Changed();
  }
  // Barb length in model pixels.
  std::uint8_t GetArrowLength() const { return arrowLength_; }
  void SetArrowLength(std::uint8_t value) {
    arrowLength_ = value;
    Changed();
  }
  // Set-back of the tip from its end point, in device pixels (not zoomed).
  std::uint8_t GetArrowOffset() const { return arrowOffset_; }
  void SetArrowOffset(std::uint8_t value) {
    arrowOffset_ = value;
    Changed();
  }
  TArrowStyle GetArrowStyle() const { return arrowStyle_; }
  void SetArrowStyle(TArrowStyle value) {
    arrowStyle_ = value;
    Changed();
  }

 protected:
  // Sets the shape's pen and draws the segments and the heads.
  void DrawChainAndHeads(TCanvas& canvas);
  // Direction of the first segment (point 0 toward point 1) in [0, 2pi),
  // turned by pi when it points leftward (strictly between pi/2 and 3pi/2),
  // so that text along it reads upright; vertical segments give 3pi/2
  // (reading upward) whichever way they run.
  double CaptionAngle() const;
  // The device distance of points 0 and 1 as text in the owner's unit.
  std::string FirstSegmentLength() const;
  // Preview of vertex H shifted by (DX, DY): the segment from Prev to it and
  // from it to Next, each drawn only when that point exists.
  void DrawMovedVertex(TCanvas& canvas, std::int32_t prev, std::int32_t h, std::int32_t next, std::int32_t dx,
                       std::int32_t dy);

 private:
  std::int32_t SegmentHit(const TPoint& p) const;

  std::int32_t arrowAngle_ = 0;
  std::uint8_t arrowLength_ = 0;
  std::uint8_t arrowOffset_ = 0;
  TArrowStyle arrowStyle_ = ANone;
};

// ---------------------------------------------------------------------------
// TMyPolyLine
// ---------------------------------------------------------------------------

// Starts without arrow heads. Drawing files store the shape base record only
// (no arrow fields).
class TMyPolyLine : public TMyLine {
  Q_OBJECT

 public:
  explicit TMyPolyLine(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyPolyLine"; }

  // Finished by the repeat click of a double-click: more than two points and
  // the last two equal; the repeated point is then removed. A double-click
  // on the second point does not finish.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // Appends device point P, first mirrored by the owner's XYMode (against the
  // control size) and then divided by the zoom.
  void AppendPoint(const TPoint& p);
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;
};

// ---------------------------------------------------------------------------
// TMyFreeLine
// ---------------------------------------------------------------------------

// A freehand stroke; the canvas feeds it the mouse path. Drawing files store
// the line record (base record and arrow fields).
class TMyFreeLine : public TMyPolyLine {
  Q_OBJECT

 public:
  using TMyPolyLine::TMyPolyLine;
  const char* ClassName() const override { return "TMyFreeLine"; }

  // Finished as soon as it holds two points.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // The newest piece From-To in the shape's own pen and copy mode, so the
  // stroke stays on screen while it grows.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The bounding box of the stroke shifted by To - From.
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;
};

// ---------------------------------------------------------------------------
// TMyRuleLine
// ---------------------------------------------------------------------------

// A measuring line: heads at both ends, a tick across each end and a label
// above its middle. Drawing files store the line record, then ShowUserInfo
// and TickStyle (a byte each) and UserInfo (a length-prefixed string).
class TMyRuleLine : public TMyLine {
  Q_OBJECT
  Q_PROPERTY(bool ShowUserInfo READ GetShowUserInfo WRITE SetShowUserInfo)
  Q_PROPERTY(lumatrex::TTickStyle TickStyle READ GetTickStyle WRITE SetTickStyle)
  Q_PROPERTY(std::string UserInfo READ GetUserInfo WRITE SetUserInfo)

 public:
  // Font size 8, heads of 20 pixels at 10 degrees at both ends.
  explicit TMyRuleLine(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyRuleLine"; }

  // The line and its heads, then (on the first segment levelled about the
  // zoomed centre) ticks reaching 10 device pixels to either side of each
  // end, and the label centred 3 pixels above, all turned back along the
  // line. The label is UserInfo when ShowUserInfo is on; otherwise the
  // measured length, which also becomes the info text.
  void Draw(TCanvas& canvas) override;
  // The line's box widened by the ticks and the label around the centre.
  TMyRect GetBoundsInZoom() override;
  // Moves the point as a line does, then turns the caption along the first
  // segment and stores the trimmed length as the info text.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // The line's copy plus UserInfo.
  void Assign(const TMyShape& source) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // ---- published properties (setters store and tell the owner) --------------
  bool GetShowUserInfo() const { return showUserInfo_; }
  void SetShowUserInfo(bool value) {
    showUserInfo_ = value;
    Changed();
  }
  TTickStyle GetTickStyle() const { return tickStyle_; }
  void SetTickStyle(TTickStyle value) {
    tickStyle_ = value;
    Changed();
  }
  const std::string& GetUserInfo() const { return userInfo_; }
  void SetUserInfo(const std::string& value) {
    userInfo_ = value;
    Changed();
  }

 private:
  bool showUserInfo_ = false;
  TTickStyle tickStyle_ = tsLine;
  std::string userInfo_;
};

}  // namespace lumatrex
