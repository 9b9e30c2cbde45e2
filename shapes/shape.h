// TMyShape: the abstract base of every figure on the canvas.
//
// A shape keeps its defining points in model coordinates (drawing pixels at
// zoom 1) and draws through the zoomed values: zoomed = model x owner zoom,
// device = zoomed rounded half-to-even. Angles are radians, clockwise on the
// screen. The owner canvas (TMyShapeOwner, normally a TMyCAD) supplies zoom,
// handle size, units and the default pen, brush and font; a shape may also
// live without an owner (zoom 1, handle size 4, nothing to repaint).
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "persistence/user_data.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

class TCanvas;
class TStream;
class TMyShapeOwner;

using TStringList = std::vector<std::string>;

class TMyShape : public QObject {
  Q_OBJECT
  Q_PROPERTY(std::int32_t Tag READ GetTag WRITE SetTag)
  Q_PROPERTY(float Angle READ GetAngle WRITE SetAngle)
  Q_PROPERTY(lumatrex::TBrush* Brush READ BrushPtr)
  Q_PROPERTY(std::string Caption READ GetCaption WRITE SetCaption)
  Q_PROPERTY(bool CaptionShow READ GetCaptionShow WRITE SetCaptionShow)
  Q_PROPERTY(std::int32_t ColorBegin READ GetColorBegin WRITE SetColorBegin)
  Q_PROPERTY(std::int32_t ColorEnd READ GetColorEnd WRITE SetColorEnd)
  Q_PROPERTY(bool DragEnable READ GetDragEnable WRITE SetDragEnable)
  Q_PROPERTY(lumatrex::TFont* Font READ FontPtr)
  Q_PROPERTY(lumatrex::TGradientStyle GradientStyle READ GetGradientStyle WRITE SetGradientStyle)
  Q_PROPERTY(bool HotShow READ GetHotShow WRITE SetHotShow)
  Q_PROPERTY(std::string Info READ GetInfoText WRITE SetInfo)
  Q_PROPERTY(bool IsFlipHorz READ GetIsFlipHorz WRITE SetIsFlipHorz)
  Q_PROPERTY(bool IsFlipVert READ GetIsFlipVert WRITE SetIsFlipVert)
  Q_PROPERTY(bool Locked READ GetLocked WRITE SetLocked)
  Q_PROPERTY(std::int32_t LogHeight READ GetLogHeight WRITE SetLogHeight)
  Q_PROPERTY(bool LogUse READ GetLogUse WRITE SetLogUse)
  Q_PROPERTY(std::int32_t LogWidth READ GetLogWidth WRITE SetLogWidth)
  Q_PROPERTY(lumatrex::TStringList MultiInfo READ GetMultiInfo WRITE SetMultiInfo)
  Q_PROPERTY(lumatrex::TAlignment MultiInfoAlignment READ GetMultiInfoAlignment WRITE SetMultiInfoAlignment)
  Q_PROPERTY(lumatrex::TPen* Pen READ PenPtr)
  Q_PROPERTY(lumatrex::TPenStyleJoinType PenStyleJoinType READ GetPenStyleJoinType WRITE SetPenStyleJoinType)
  Q_PROPERTY(lumatrex::TPenStyleEndCapType PenStyleEndCapType READ GetPenStyleEndCapType WRITE SetPenStyleEndCapType)
  Q_PROPERTY(bool ResizeEnable READ GetResizeEnable WRITE SetResizeEnable)
  Q_PROPERTY(bool RotateEnable READ GetRotateEnable WRITE SetRotateEnable)
  Q_PROPERTY(lumatrex::TUserData* UserData READ UserDataPtr)
  Q_PROPERTY(bool Visible READ GetVisible WRITE SetVisible)

 public:
  // ==== list relations =========================================================
  // Declared before every other field so that they follow QObject's own in
  // one cache line, where the shape pool starts a line: the passes over a
  // whole large list (renumbering, z-order, selecting all) touch only these.

  // Position in the owner's shape list (the z-order).
  std::int32_t ShapeNo = 0;
  // List position of the enclosing group; -1 at top level.
  std::int32_t ParentId = -1;
  // Position among the owner's working (selected) shapes, written by the
  // owner, which trusts it only where its own list agrees: a shape that left
  // the selection, or a copy, may keep a stale number. -1 when never
  // selected; not copied by Assign.
  std::int32_t WorkingNo = -1;

 private:
  bool ownListPositions_ = false;

 public:
  // List positions of a group's members.
  std::vector<std::int32_t> ChildShapes;
  // Numbers of the connectors attached to this shape.
  std::vector<std::uint32_t> LinkLines;
  // Whether RemapShapeNumbers has anything to renumber: a parent, members,
  // connectors, or list positions a kind keeps of its own (connector ends).
  // The owner's renumbering passes over shapes without any.
  bool HoldsListPositions() const {
    return ParentId >= 0 || !ChildShapes.empty() || !LinkLines.empty() || ownListPositions_;
  }

  // Takes pen, brush, font, join and end kinds and the drag, resize, rotate
  // and handle switches from Owner (when given); later owner changes do not
  // reach the shape.
  explicit TMyShape(TMyShapeOwner* owner);
  ~TMyShape() override;
  // Shapes come from pools of equal blocks, one pool per object size: a
  // drawing makes and frees them by the hundred thousand, and the general
  // heap slows down badly once a large drawing has been freed in it.
  static void* operator new(std::size_t size);
  static void operator delete(void* block, std::size_t size) noexcept;
  TMyShape(const TMyShape&) = delete;
  TMyShape& operator=(const TMyShape&) = delete;

  // The class name drawing files and libraries use ("TMyLine", ...).
  virtual const char* ClassName() const { return "TMyShape"; }
  TMyShapeOwner* Owner() const { return owner_; }
  // Hands the shape to another owner, whose zoom, version and shape list it
  // consults from then on; the caller moves the ownership with it. The
  // defaults taken at construction stay.
  void SetOwner(TMyShapeOwner* owner) { owner_ = owner; }
  // The name as bytes, kept exactly as set or read even when it is not UTF-8.
  // QObject's objectName stays empty: mirroring the name there costs Qt two
  // allocations per shape, a sixth of loading a large drawing.
  std::string GetName() const { return name_; }
  void SetName(const std::string& name) { name_ = name; }

  // ==== virtual protocol (kinds override; the base behaviour is noted) ========

  // Moves by the device difference To - From (DragChangeValuedxdy).
  virtual void DragChangeValue(const TPoint& from, const TPoint& to);
  // Moves every point, link point, the centre and the text point by the device
  // distance (DX, DY) divided by the zoom; nothing when both are 0.
  virtual void DragChangeValuedxdy(double dx, double dy);
  // Rubber bands while moving, drawing, sizing and rotating (XOR previews on
  // Canvas, device coordinates). Empty in the base.
  virtual void Draging(TCanvas& canvas, const TPoint& from, const TPoint& to);
  virtual void Drawing(TCanvas& canvas, const TPoint& from, const TPoint& to);
  virtual void Sizing(TCanvas& canvas, const TPoint& from, const TPoint& to);
  virtual void Rotating(TCanvas& canvas, const TMyPoint& center, long double angle);
  // End of interactive drawing; empty in the base.
  virtual void Drawed(const TPoint& p, TPoint& q);
  // Draws the handles of a selected shape; empty in the base.
  virtual void DrawHot(TCanvas& canvas);
  // The device distance A-B as text in the owner's unit, e.g. "    12.70 mm".
  virtual std::string GetLengthByUnit(const TPoint& a, const TPoint& b) const;
  // Cursor over device point (X, Y); the cross cursor in the base.
  virtual TCursor GetMouseCursor(std::int32_t x, std::int32_t y);
  // Whether a press finishes interactive drawing; false in the base.
  virtual bool IsDrawingFinished(TMouseButton button, const TPoint& p);
  // Turns every point, link point, the text point and the centre about C by
  // Angle, then adds Angle to the shape's angle (normalised). A shape without
  // points is left unchanged.
  virtual void RotateChangeValueByAngle(const TMyPoint& c, double angle);
  // Resize from device point A to B; nothing in the base.
  virtual void SizeChangeValue(const TMyPoint& a, const TMyPoint& b);
  // Appends the device point P divided by the zoom.
  virtual void AddPointByMouse(const TPoint& p);
  // Full copy of Source (nothing when Source is this shape); the centre is
  // recomputed from the copied points.
  virtual void Assign(const TMyShape& source);
  // The same without the name, list position, group and connector relations
  // and the multi-line info, which keep this shape's values.
  virtual void AssignWithoutRelation(const TMyShape& source);
  // Renumbers the list positions the shape holds after the owner removed or
  // reordered shapes. Map takes an old position and answers the new one, or
  // a negative number for a shape that is gone: ParentId then becomes -1 (top
  // level) and the entry is dropped from ChildShapes and LinkLines.
  virtual void RemapShapeNumbers(const std::function<std::int32_t(std::int32_t)>& map);
  // Paints the shape; the base draws only the info text.
  virtual void Draw(TCanvas& canvas);
  // Mirror about the pivot's vertical (horizontal) line; the pivot is the
  // centre of the root group, or of the shape when it has no parent.
  virtual void FlipHoriz();
  virtual void FlipVert();
  virtual TMyPoint GetCenterPoint() const;
  virtual TMyPoint GetCenterPointInZoom() const;
  // Kind-specific info text; empty in the base.
  virtual std::string GetInfo();
  // Point Index in model coordinates; (0, 0) when out of range.
  virtual TMyPoint GetPoint(std::int32_t index) const;
  // Handle number under device point P, -1 for none.
  virtual std::int32_t InWhichHot(const TPoint& p);
  // Hit test at device point P; false in the base.
  virtual bool IsClickedMe(TCanvas& canvas, const TPoint& p);
  // A box in zoomed coordinates (model x the owner's zoom) holding every
  // pixel Draw, DrawHot and DrawLinkHot may paint and every device point
  // IsClickedMe, InWhichHot and InTextPointHot may accept; the canvas's
  // spatial index keeps it. The base takes the points, link points, centre
  // and text point grown by the pen, the handle squares and the link
  // crosses, and the info text around the text point; kinds that paint or
  // hit past that widen it. kBoundsEverywhere (shapes/outline.h) for
  // coordinates that are not finite. Not const: curves fill their sample
  // buffers.
  virtual TMyRect GetBoundsInZoom();
  // The figure as one closed chain of zoomed points, for combined figures:
  // the points in the base; kinds whose outline is not their point list
  // (ellipses, arcs) give the outline they draw.
  virtual TArrMyPoint FigureInZoom() const;
  // The shape record of drawing files (field layout shared with the canvas's
  // drawing format).
  virtual void LoadFromStream(TStream& stream);
  virtual void SaveToStream(TStream& stream) const;

  // Tells the owner that something drawn changed: points, link points,
  // centre, text point, angle, pen, font, info text or visibility. The
  // editing methods and setters call it; code that writes Points or other
  // fields directly calls it afterwards, so that the canvas's spatial index
  // and partial repaints follow.
  void Changed();

  // ==== points ===============================================================

  std::int32_t GetPointsCount() const { return static_cast<std::int32_t>(Points.size()); }
  std::int32_t GetLinkPointsCount() const { return static_cast<std::int32_t>(LinkPoints.size()); }
  TMyPoint GetPointInZoom(std::int32_t index) const;
  // Every point zoomed, as GetPointInZoom gives each (the zoom read once).
  TArrMyPoint GetPointsInZoom() const;
  TMyPoint GetLinkPoint(std::int32_t index) const;
  TMyPoint GetLinkPointInZoom(std::int32_t index) const;
  // The zoomed point rounded and mirrored by the owner's XYMode; (0, 0) out of range.
  TPoint GetPointInZoomWithMode(std::int32_t index) const;
  TMyPoint ZoomedValuePt(const TMyPoint& p) const;
  // Writers of model values; out-of-range indices do nothing.
  void SetPoint(std::int32_t index, const TMyPoint& p);
  void SetPointX(std::int32_t index, float x);
  void SetPointY(std::int32_t index, float y);
  void SetLinkPoint(std::int32_t index, const TMyPoint& p);
  void SetLinkPointX(std::int32_t index, float x);
  void SetLinkPointY(std::int32_t index, float y);
  // Writers of zoomed values (divided by the zoom).
  void SetPointInZoom(std::int32_t index, const TMyPoint& p);
  void SetPointXInZoom(std::int32_t index, float x);
  void SetPointYInZoom(std::int32_t index, float y);
  void AddPoint(const TMyPoint& p) {
    Points.push_back(p);
    Changed();
  }
  void AddLinkPoint(const TMyPoint& p) {
    LinkPoints.push_back(p);
    Changed();
  }
  // Add device offsets, each divided by the zoom.
  void PointAddX(std::int32_t index, double dx);
  void PointAddY(std::int32_t index, double dy);
  void PointAddXY(std::int32_t index, double dx, double dy);
  void LinkPointAddXY(std::int32_t index, double dx, double dy);

  // Corners of the bounding box of the points (model); (0,0) without points.
  TMyPoint GetLeftTop() const;
  TMyPoint GetRightTop() const;
  TMyPoint GetLeftBottom() const;
  TMyPoint GetRightBottom() const;
  float GetWidth() const;
  float GetHeight() const;
  // Width and height in the shape's own unrotated frame.
  float GetMyWidth() const;
  float GetMyHeight() const;
  // 0 left-top, 1 right-top, 2 right-bottom, 3 left-bottom corner of the
  // bounding box, 4 its centre; any other value gives (0, 0).
  TMyPoint ComputeCenterPoint(std::int32_t which) const;

  bool HasParentShape() const { return ParentId > -1; }
  bool HasChildShapes() const { return !ChildShapes.empty(); }
  bool HasLinkShapes() const { return !LinkLines.empty(); }
  std::int32_t GetShapeId() const { return ShapeId; }

  // Whether device point P lies in the handle square of the text point.
  bool InTextPointHot(const TPoint& p) const;
  // The link point whose zoomed handle square contains P (zoomed), or -1.
  std::int32_t InWhichLinkHot(const TMyPoint& p) const;

  // ==== painting helpers for the kinds =======================================

  void DrawHotLinkSquare(TCanvas& canvas, const TMyPoint& p);
  // Rebuilds the gradient bitmap for the current style and colours.
  void DrawGradient();
  const TBitmap& GradientBitmap() const { return gradient_; }
  // Draws Info, or else the MultiInfo block, centred on the text point and
  // turned about it by the text angle.
  void DrawInfo(TCanvas& canvas);
  // Turn of the info text in radians, clockwise on the screen; 0 unless a
  // kind lays its caption along its outline (the lines do, when drawn).
  double GetTextAngle() const { return textAngle_; }
  // Outlines (and for Closed, fills) the device polygon with the shape's pen
  // and brush, or with its gradient stretched over the outline's box and
  // clipped to it.
  void PowerDrawShape(TCanvas& canvas, const std::vector<TPoint>& points, bool closed);
  // Makes Canvas's pen a geometric pen of the shape's join and end kinds.
  void SetPS(TCanvas& canvas, TPenStyle style, TColor color, std::int32_t width) const;
  // Rotated text drawn once, and its extent (see the free functions).
  void MyLogTextOut(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text,
                    const TFont& font, double scale, double angle) const;
  TSize GetTextWidthHeight(TCanvas& canvas, const std::string& text, const TFont& font, double scale,
                           double angle) const;
  // Pass the pen and brush (font) on to the group's members, unless the
  // owner is in a bulk update.
  void DoPenBrushChange();
  void DoFontChange();

  // ==== published properties =================================================

  std::int32_t GetTag() const { return tag_; }
  void SetTag(std::int32_t value) { tag_ = value; }
  float GetAngle() const { return angle_; }
  // Turns the shape (and its group, about the root group's centre) until its
  // angle is Value; a shape without points only stores it.
  void SetAngle(float value);
  TBrush& Brush() { return brush_; }
  const TBrush& Brush() const { return brush_; }
  const std::string& GetCaption() const { return caption_; }
  void SetCaption(const std::string& value) { caption_ = value; }
  bool GetCaptionShow() const { return captionShow_; }
  void SetCaptionShow(bool value) {
    if (captionShow_ == value) return;
    captionShow_ = value;
    Changed();
  }
  TColor GetColorBegin() const { return colorBegin_; }
  void SetColorBegin(TColor value);
  TColor GetColorEnd() const { return colorEnd_; }
  void SetColorEnd(TColor value);
  bool GetDragEnable() const { return dragEnable_; }
  void SetDragEnable(bool value) { dragEnable_ = value; }
  TFont& Font() { return font_; }
  const TFont& Font() const { return font_; }
  TGradientStyle GetGradientStyle() const { return gradientStyle_; }
  void SetGradientStyle(TGradientStyle value);
  bool GetHotShow() const { return hotShow_; }
  void SetHotShow(bool value) { hotShow_ = value; }
  const std::string& GetInfoText() const { return info_; }
  void SetInfo(const std::string& value) {
    if (info_ == value) return;
    info_ = value;
    Changed();
  }
  bool GetIsFlipHorz() const { return isFlipHorz_; }
  // Any assignment performs the owner's horizontal flip of this shape, which
  // toggles the flag, whatever Value is.
  void SetIsFlipHorz(bool value);
  bool GetIsFlipVert() const { return isFlipVert_; }
  void SetIsFlipVert(bool value);
  bool GetLocked() const { return locked_; }
  // Locks or unlocks the shape and its group through the owner.
  void SetLocked(bool value);
  // Stores the flag for this shape alone (the owner's group-wide lock uses it).
  void StoreLocked(bool value) { locked_ = value; }
  std::int32_t GetLogHeight() const { return logHeight_; }
  void SetLogHeight(std::int32_t value) { logHeight_ = value; }
  bool GetLogUse() const { return logUse_; }
  void SetLogUse(bool value) { logUse_ = value; }
  std::int32_t GetLogWidth() const { return logWidth_; }
  void SetLogWidth(std::int32_t value) { logWidth_ = value; }
  const TStringList& GetMultiInfo() const { return multiInfo_; }
  void SetMultiInfo(const TStringList& value) {
    if (multiInfo_ == value) return;
    multiInfo_ = value;
    Changed();
  }
  TAlignment GetMultiInfoAlignment() const { return multiInfoAlignment_; }
  void SetMultiInfoAlignment(TAlignment value) { multiInfoAlignment_ = value; }
  TPen& Pen() { return pen_; }
  const TPen& Pen() const { return pen_; }
  TPenStyleJoinType GetPenStyleJoinType() const { return penStyleJoinType_; }
  void SetPenStyleJoinType(TPenStyleJoinType value) { penStyleJoinType_ = value; }
  TPenStyleEndCapType GetPenStyleEndCapType() const { return penStyleEndCapType_; }
  void SetPenStyleEndCapType(TPenStyleEndCapType value) { penStyleEndCapType_ = value; }
  bool GetResizeEnable() const { return resizeEnable_; }
  void SetResizeEnable(bool value) { resizeEnable_ = value; }
  bool GetRotateEnable() const { return rotateEnable_; }
  void SetRotateEnable(bool value) { rotateEnable_ = value; }
  TUserData& UserData() { return userData_; }
  const TUserData& UserData() const { return userData_; }
  bool GetVisible() const { return visible_; }
  void SetVisible(bool value) {
    if (visible_ == value) return;
    visible_ = value;
    Changed();
  }
  // The owned pen, brush, font and user data as the property system sees them.
  TPen* PenPtr() { return &pen_; }
  TBrush* BrushPtr() { return &brush_; }
  TFont* FontPtr() { return &font_; }
  TUserData* UserDataPtr() { return &userData_; }

  // ==== unpublished state ======================================================

  TArrMyPoint Points;
  TArrMyPoint LinkPoints;
  TMyPoint CenterPoint;
  TMyPoint TextoutPoint;
  std::int32_t ShapeId = 0;
  std::int32_t LayerId = 0;
  // Relation id kept for the drawing format; -1 after creation and copies.
  std::int32_t SpareRelationId = -1;
  // The handle found by the last InWhichHot, -1 for none.
  std::int32_t CurrentHot = -1;

  // Raised by the canvas on a click on the shape; the argument is the sender.
  std::function<void(QObject* sender)> OnClick;


 protected:
  // Owner values with the no-owner fallbacks (zoom 1, handle size 4, ratio
  // 1, millimetres).
  double Zoom() const;
  std::uint8_t HotSize() const;
  double Ratio() const;
  TUnits TheUNIT() const;
  // Device point P mirrored by the owner's XYMode against the control size;
  // P itself without an owner. Mirroring twice gives P back.
  TPoint MirrorByXYMode(const TPoint& p) const;
  void SetTextAngle(double value) { textAngle_ = value; }
  // Centre of the root group, or of this shape when it has no parent.
  TMyPoint PivotPoint() const;
  // Mirrors the gradient bitmap by the flip flags.
  void FlipGradientByFlags();
  // For kinds that store list positions of their own and renumber them in
  // RemapShapeNumbers.
  void DeclareOwnListPositions() { ownListPositions_ = true; }
  void RepaintOwner() const;

 private:
  void CopyCommonFields(const TMyShape& source);
  void ConnectChangeNotifications();
  template <typename Fn>
  void ForEachChild(Fn fn) const;

  TMyShapeOwner* owner_;
  std::string name_;
  std::int32_t tag_ = 0;
  float angle_ = 0;
  TBrush brush_;
  std::string caption_;
  bool captionShow_ = true;
  TColor colorBegin_ = clWhite;
  TColor colorEnd_ = clBlack;
  bool dragEnable_ = true;
  TFont font_;
  TGradientStyle gradientStyle_ = gsNone;
  bool hotShow_ = true;
  std::string info_;
  bool isFlipHorz_ = false;
  bool isFlipVert_ = false;
  bool locked_ = false;
  std::int32_t logHeight_ = 10;
  bool logUse_ = false;
  std::int32_t logWidth_ = 10;
  TStringList multiInfo_;
  TAlignment multiInfoAlignment_ = taCenter;
  TPen pen_;
  TPenStyleJoinType penStyleJoinType_ = psjtROUND;
  TPenStyleEndCapType penStyleEndCapType_ = psectROUND;
  bool resizeEnable_ = true;
  bool rotateEnable_ = true;
  TUserData userData_;
  bool visible_ = true;
  TBitmap gradient_;
  double textAngle_ = 0;
};

// ---------------------------------------------------------------------------
// Free helpers on a shape's point lists (model coordinates)
// ---------------------------------------------------------------------------

// Adds (DX, DY) to every point, every link point and the text point (not the
// centre). The canvas uses it to shift shapes into back-buffer space.
void OffsetAllPoints(TMyShape& shape, long double dx, long double dy);
// Empties the point list; link points stay.
void RemoveAllPoints(TMyShape& shape);
// Appends connector number Id to the shape's LinkLines unless it is there.
void AddLinklineShape(TMyShape& shape, std::uint32_t id);
// Removes the last occurrence of Id from LinkLines; nothing when absent.
void RemoveLinklineShape(TMyShape& shape, std::uint32_t id);

}  // namespace lumatrex
