// The closed, fillable shapes: TMyRectangle (a rotatable frame with corner
// and side handles), TMyEllipse (inscribed in the same frame) and TMyPolygon
// (a closed chain entered click by click). All fill and outline themselves
// through PowerDrawShape and report their area through GetInfo.
//
// Points are model coordinates; hit tests and previews use device pixels
// (the zoomed points rounded). Angles are radians, clockwise on the screen.
// Drawing files store all three as the shape base record only: the
// rectangle's side-handle switches are not saved.
#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "shapes/lines.h"
#include "shapes/shape.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyRectangle
// ---------------------------------------------------------------------------

// Exactly four points once drawn: P0 the first corner clicked, P1 sharing
// P0's y and the second corner's x, P2 the opposite corner, P3 sharing P0's x
// and P2's y, all measured in the frame's own unrotated axes; the stored
// points are the corners turned by Angle about the centre.
//
// Handles: 0-3 the corners P0-P3; 4 the middle of side P0-P1, 5 of P1-P2, 6 of
// P3-P2, 7 of P0-P3. Side handles exist only with ShowSideHot, 4 and 6 with
// ShowVerticalSideHot, 5 and 7 with ShowHorizontalSideHot, and none while
// the owner is rotating.
class TMyRectangle : public TMyShape {
  Q_OBJECT
  Q_PROPERTY(bool AssociateSideResizing READ GetAssociateSideResizing WRITE SetAssociateSideResizing)
  Q_PROPERTY(bool ShowSideHot READ GetShowSideHot WRITE SetShowSideHot)
  Q_PROPERTY(bool ShowHorizontalSideHot READ GetShowHorizontalSideHot WRITE SetShowHorizontalSideHot)
  Q_PROPERTY(bool ShowVerticalSideHot READ GetShowVerticalSideHot WRITE SetShowVerticalSideHot)

 public:
  explicit TMyRectangle(TMyShapeOwner* owner);
  const char* ClassName() const override { return "TMyRectangle"; }

  // ---- interactive drawing (device pixels) ------------------------------------
  // The first call stores the corner. The second completes the frame (and
  // its centre) only when it differs from the first in both x and y; a click
  // on the same row or column adds nothing. Later calls add nothing.
  void AddPointByMouse(const TPoint& p) override;
  // Finished with four points.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // Rectangle From-To in the canvas's current pen and brush.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;

  // ---- painting -----------------------------------------------------------------
  // The closed frame through PowerDrawShape, then the caption (a text shape
  // draws its own text instead).
  void Draw(TCanvas& canvas) override;
  // The outline through the four device corners and back to the first, in
  // the canvas's current pen (previews).
  void DrawRectangle(TCanvas& canvas, const std::vector<TPoint>& corners) const;
  // The frame shifted by To - From.
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The frame turned about the zoomed Center by Angle.
  void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle) override;
  // The frame that SizeChangeValue(From, To) would make; nothing when that
  // drag would be refused.
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // When the owner shows handles: a square at every existing handle, then
  // the diamond at the zoomed centre.
  void DrawHot(TCanvas& canvas) override;

  // ---- handles and hit tests ------------------------------------------------------
  // The existing handle whose square contains device point P; the last one
  // wins. -1 for none. Also stored in CurrentHot.
  std::int32_t InWhichHot(const TPoint& p) override;
  // Model position of handle Index (0-7, see above); (0, 0) for any other.
  TMyPoint GetPoint(std::int32_t index) const override;
  // Over a handle at device (X, Y): crSizeNS for 4 and 6, crSizeWE for 5 and
  // 7; a corner gets crSizeNWSE left-top or right-bottom of the centre and
  // crSizeNESW left-bottom or right-top (for a corner level with the centre
  // the later of these four tests decides). crCross elsewhere.
  TCursor GetMouseCursor(std::int32_t x, std::int32_t y) override;
  // Device point P lies inside the frame, whatever the fill; no tolerance.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // The base box, with the handles of a frame of fewer than four points
  // (which sit at the origin) taken in.
  TMyRect GetBoundsInZoom() override;

  // ---- changes ---------------------------------------------------------------------
  // Drags handle CurrentHot to device point B (A is not used: the handle's
  // own position is the start). A corner goes to B and its two neighbours
  // follow along their shared sides; a side handle moves its side along one
  // axis only. Refused, leaving the frame as it was, when B lies in another
  // quadrant about the centre than the handle, so the frame never turns
  // inside out. Recomputes the centre.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // "Area=" and W x H of the frame in the owner's unit, e.g.
  // "Area=   200.00pixel(s)2".
  std::string GetInfo() override;
  // The two sides of the box spanned by device points A and B, as
  // "m=" width unit CR "n=" height unit, each "%9.2f". Units: " pixel(s)" and
  // "pixel(s)", " mm" and "mm" for every metric unit, " in" and "in"; the
  // inch figure is ten times the length in inches, as drawings expect.
  std::string GetLengthByUnit(const TPoint& a, const TPoint& b) const override;
  // The base copy plus the four side-handle switches of a rectangle source.
  void Assign(const TMyShape& source) override;

  // ---- published properties (setters only store) --------------------------------
  // Kept, copied and offered to the inspector; nothing in the shape reads it.
  bool GetAssociateSideResizing() const { return associateSideResizing_; }
  void SetAssociateSideResizing(bool value) { associateSideResizing_ = value; }
  bool GetShowSideHot() const { return showSideHot_; }
  void SetShowSideHot(bool value) { showSideHot_ = value; }
  bool GetShowHorizontalSideHot() const { return showHorizontalSideHot_; }
  void SetShowHorizontalSideHot(bool value) { showHorizontalSideHot_ = value; }
  bool GetShowVerticalSideHot() const { return showVerticalSideHot_; }
  void SetShowVerticalSideHot(bool value) { showVerticalSideHot_ = value; }

 protected:
  // The four corners after dragging handle CurrentHot to device point To, or
  // false when the drag is refused. Points past the fourth are not touched.
  bool ResizedCorners(const TMyPoint& to, TArrMyPoint& corners) const;

 private:
  bool HasHandle(std::int32_t index) const;

  bool associateSideResizing_ = false;
  bool showSideHot_ = true;
  bool showHorizontalSideHot_ = true;
  bool showVerticalSideHot_ = true;
};

// ---------------------------------------------------------------------------
// TMyEllipse
// ---------------------------------------------------------------------------

// The ellipse inscribed in a rectangle's frame; points, handles, resizing and
// the hit test (on the frame) are the rectangle's.
class TMyEllipse : public TMyRectangle {
  Q_OBJECT

 public:
  using TMyRectangle::TMyRectangle;
  const char* ClassName() const override { return "TMyEllipse"; }

  // The outline as a closed polygon of 73 points (every 5 degrees, the last
  // repeating the first) through PowerDrawShape, then the caption.
  void Draw(TCanvas& canvas) override;
  // Ellipse From-To in the canvas's current pen and brush.
  void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // The outline shifted by To - From.
  void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // "Area=" and pi x W/2 x H/2 of the frame in the owner's unit.
  std::string GetInfo() override;
  // The frame's box and the outline's.
  TMyRect GetBoundsInZoom() override;
  // The 73 outline points.
  TArrMyPoint FigureInZoom() const override { return Outline(); }

 private:
  // The 73 outline points, zoomed.
  TArrMyPoint Outline() const;
  struct TOutlineCache {
    TArrMyPoint points;
    TMyPoint centre{};
    float angle = 0;
    double zoom = 0;
    TArrMyPoint zoomed;           // Outline()
    std::vector<TPoint> device;  // Outline() rounded: what Draw paints
    bool valid = false;
  };
  // The outline, kept with the inputs it was made from (points, centre,
  // angle, zoom) and made again only when one of them differs in any bit, so
  // it is always the outline those inputs give. Paints and drag previews
  // take it from here.
  const TOutlineCache& CachedOutline() const;
  mutable TOutlineCache outlineCache_;
};

// ---------------------------------------------------------------------------
// TMyPolygon
// ---------------------------------------------------------------------------

// Vertices in click order; once drawn the last point is a copy of the first,
// so the outline is explicitly closed. Handles are the line's (one per
// point); vertex 0 and its closing copy are one vertex and move together.
// Carries the line's arrow fields but never draws heads.
class TMyPolygon : public TMyPolyLine {
  Q_OBJECT

 public:
  using TMyPolyLine::TMyPolyLine;
  const char* ClassName() const override { return "TMyPolygon"; }

  // Once it holds more than three points, a click closer than HotSize (in
  // both x and y, device pixels) to the first point or to the next-to-last
  // one (the repeat click of a double-click) finishes it: the last point
  // becomes a copy of the first.
  bool IsDrawingFinished(TMouseButton button, const TPoint& p) override;
  // The closed outline through PowerDrawShape, then the caption.
  void Draw(TCanvas& canvas) override;
  // A square at every vertex (once for vertex 0 and its closing copy), then
  // the diamond at the zoomed centre, when the owner shows handles.
  void DrawHot(TCanvas& canvas) override;
  // Device point P lies inside the outline (alternate rule), no tolerance.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  // The two edges at vertex CurrentHot moved by To - From; for the closing
  // vertex the edges to point 1 and to the next-to-last point.
  void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to) override;
  // Moves vertex CurrentHot (with its closing copy) by the device difference
  // B - A and recomputes the centre.
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;
  // "Area=" and the number of pixels the model outline covers when filled
  // at zoom 1 on a bitmap the size of its bounding box (the outline
  // included, the box's far column and row excluded), in the owner's unit.
  // A polygon of collinear points covers only its outline.
  std::string GetInfo() override;

 private:
  // The other index of the closing vertex when H is 0 or the last point of a
  // closed outline; -1 otherwise.
  std::int32_t ClosingTwin(std::int32_t h) const;
};

}  // namespace lumatrex
