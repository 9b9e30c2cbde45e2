// TMyElliArc: an arc, chord or sector (ArcStyle) of the ellipse inscribed in
// a rectangle's rotatable frame, or of the largest circle centred in it
// (ArcMode). Drawing files store the shape base record followed by ArcMode
// and ArcStyle, one ordinal byte each, in every version.
//
// Points (model coordinates): P0-P3 the frame as for TMyRectangle, P4 the
// start and P5 the end of the arc, both on the outline. The frame's own axes
// are U = (P1 - P0) / 2 and V = (P3 - P0) / 2 about the centre; the outline
// point of angle t is centre + U cos t + V sin t (radii made equal in circle
// mode), and the arc runs from P4 to P5 with t growing, which is clockwise
// on the screen for a frame drawn left to right and top to bottom. Keeping
// the ends as points lets moving, rotating and flipping treat them as any
// other point; a flipped frame mirrors the arc with it.
//
// Handles: the rectangle's 0-7, then 8 the start and 9 the end point; those
// two slide along the outline.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shapes/closed_shapes.h"

namespace lumatrex {

class TMyElliArc : public TMyRectangle {
  Q_OBJECT
  Q_PROPERTY(lumatrex::TArcMode ArcMode READ GetArcMode WRITE SetArcMode)
  Q_PROPERTY(lumatrex::TArcStyle ArcStyle READ GetArcStyle WRITE SetArcStyle)

 public:
  // A new arc is an elliptical arc (amEllipse, asArc).
  explicit TMyElliArc(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyElliArc"; }

  // ---- interactive drawing (device pixels) -----------------------------------
  // The frame as the rectangle takes it; once it is complete the arc is the
  // quarter from the top of the outline to its right.
  void AddPointByMouse(const TPoint& p) override;
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // The ellipse From-To in the canvas's current pen.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;

  // ---- painting -----------------------------------------------------------------
  // The arc through PowerDrawShape (open for asArc, filled for chord and
  // sector), then the caption.
  void Draw(TCanvas& canvas) override;
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) override;
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The rectangle's handles, then the two end handles.
  void DrawHot(TCanvas& canvas) override;

  // ---- handles and hit tests ------------------------------------------------------
  std::int32_t InWhichHot(const TPoint& p) override;
  // Handles 0-7 as the rectangle, 8 and 9 the start and end points.
  TMyPoint GetPoint(std::int32_t index) const override;
  // Within the lines' hit band of the outline, or inside a chord or sector.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // Device point P moved onto the outline at the nearest multiple of 15
  // degrees of the frame angle t (Shift while dragging an end handle).
  TPoint SnapToAngleStep(const TPoint& p) const;
  static bool IsEndHandle(std::int32_t hot) { return hot == 8 || hot == 9; }

  // ---- changes ---------------------------------------------------------------------
  // An end handle goes to the outline point nearest in angle to device
  // point B; a frame handle resizes the frame as the rectangle does and the
  // ends keep their angles.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // "Length=" of the curve for asArc, "Area=" of chord and sector, in the
  // owner's unit.
  std::string GetInfo() override;

  // The base copy plus ArcMode and ArcStyle of an arc source.
  void Assign(const TMyShape& source) override;
  void LoadFromStream(TStream& stream) override;
  void SaveToStream(TStream& stream) const override;

  // Angles t (radians, see above) of the start and end points; 0 without them.
  long double StartAngle() const;
  long double EndAngle() const;
  // Zoomed points of the drawn figure: the arc sampled every 2 degrees or
  // finer, then for a chord nothing more (closed by the painter) and for a
  // sector the centre.
  TArrMyPoint OutlineInZoom() const;
  TArrMyPoint FigureInZoom() const override { return OutlineInZoom(); }

  // ---- published properties (setters store and repaint) -----------------------
  TArcMode GetArcMode() const { return arcMode_; }
  void SetArcMode(TArcMode value);
  TArcStyle GetArcStyle() const { return arcStyle_; }
  void SetArcStyle(TArcStyle value);

 private:
  struct TAxes {
    TMyPoint centre;
    long double ux, uy, vx, vy;
  };
  // The frame's half axes in model units, equal length in circle mode.
  TAxes Axes() const;
  long double AngleOf(const TMyPoint& model) const;
  TMyPoint OutlineAt(long double t) const;
  // Puts P4 and P5 back on the outline at the given angles.
  void PlaceEnds(long double start, long double end);

  TArcMode arcMode_ = amEllipse;
  TArcStyle arcStyle_ = asArc;
};

}  // namespace lumatrex
