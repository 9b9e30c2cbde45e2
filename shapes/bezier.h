// TMyPolyBezier: a chain of cubic Bezier pieces over the shape's points
// (model coordinates): anchor A0, its outgoing control, the next anchor's
// incoming control, anchor A1, then two controls and an anchor for every
// further piece, so a finished chain holds 1 + 3n points. Drawing files
// store the shape base record only.
//
// Handles are the points themselves (index = point index); anchors are
// tested after controls, so an anchor wins over a control lying on it.
// Dragging an anchor carries its two controls along.
//
// While the tool draws it, the chain also holds the outgoing control of its
// last anchor (3n + 2 points); EndDrawing drops it.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shapes/shape.h"

namespace lumatrex {

class TMyPolyBezier : public TMyShape {
  Q_OBJECT

 public:
  explicit TMyPolyBezier(TMyShapeOwner* owner) : TMyShape(owner) {}
  const char* ClassName() const override { return "TMyPolyBezier"; }

  // ---- interactive drawing (device pixels) -----------------------------------
  // A press: a new anchor at P whose controls lie on it (a corner).
  void AddPointByMouse(const TPoint& p) override;
  // A drag from the last anchor: its outgoing control goes to P and the
  // incoming one to the mirror of P, so the curve passes smoothly.
  void SetTangentByMouse(const TPoint& p);
  // Drops the pending outgoing control. False, leaving the points alone,
  // when the chain has fewer than two anchors.
  bool EndDrawing();
  // Complete when it holds whole pieces and no pending control.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // The chain drawn so far and, with the button up, the straight rubber band
  // from the last anchor to To (From is not used).
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;

  // ---- painting -----------------------------------------------------------------
  // The curve through the surface's PolyBezier in the shape's pen, then the
  // caption.
  void Draw(TCanvas& canvas) override;
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) override;
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Dotted lines from each anchor to its controls, squares on every point.
  void DrawHot(TCanvas& canvas) override;

  // ---- handles and hit tests ------------------------------------------------------
  std::int32_t InWhichHot(const TPoint& p) override;
  // Within the lines' hit band of the flattened curve.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  static bool IsAnchor(std::int32_t index) { return index % 3 == 0; }

  // ---- changes ---------------------------------------------------------------------
  // Moves point CurrentHot by the device difference B - A; an anchor takes
  // its controls with it. Recomputes the centre.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // Splits the piece under device point P at the nearest curve point into
  // two pieces that trace the same curve; the new anchor's index, or -1
  // when P misses the curve.
  std::int32_t InsertPieceAt(const TPoint& p);
  // Removes the anchor of handle Hot (a control stands for its anchor) with
  // its controls, joining its two pieces (an end anchor takes its piece).
  // False for a chain of one piece or a handle that does not exist.
  bool RemovePieceAt(std::int32_t hot);
  // "Length=" of the curve in the owner's unit.
  std::string GetInfo() override;

  // The curve as a zoomed polyline, every piece cut into straight steps of
  // at most about two device pixels.
  TArrMyPoint FlattenedInZoom() const;

 private:
  std::int32_t PieceCount() const { return GetPointsCount() < 4 ? 0 : (GetPointsCount() - 1) / 3; }
  std::vector<TPoint> DevicePoints(const TArrMyPoint& model) const;
};

}  // namespace lumatrex
