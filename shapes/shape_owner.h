// What a shape asks of the canvas that owns it. TMyCAD implements this; model
// tests implement it with a small fake, so shapes can be tested without a
// window.
#pragma once

#include <cstdint>
#include <string>

#include "geometry/geometry.h"
#include "platform/graphics.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

class TMyShape;

class TMyShapeOwner {
 public:
  virtual ~TMyShapeOwner() = default;

  // ---- view state read when drawing and measuring ----------------------------
  // Model-to-zoomed factor.
  virtual double GetZoom() const = 0;
  // Half-size in device pixels of handle squares and of their hit squares.
  virtual std::uint8_t GetHotSize() const = 0;
  virtual TUnits GetTheUNIT() const = 0;
  // Drawing scale applied to reported lengths.
  virtual double GetRatio() const = 0;
  virtual TXYMode GetXYMode() const = 0;
  // Client size of the control, for mirrored coordinates.
  virtual std::int32_t GetControlWidth() const = 0;
  virtual std::int32_t GetControlHeight() const = 0;
  // The current interaction state (handles look different while rotating).
  virtual TActionTools GetActionTool() const = 0;
  virtual bool GetHotShow() const = 0;
  virtual bool GetShowHotLink() const = 0;

  // ---- defaults copied into a new shape ----------------------------------------
  virtual const TPen& GetPen() const = 0;
  virtual const TBrush& GetBrush() const = 0;
  virtual const TFont& GetFont() const = 0;
  virtual std::int32_t GetArrowAngle() const = 0;
  virtual std::uint8_t GetArrowLength() const = 0;
  virtual std::uint8_t GetArrowOffset() const = 0;
  virtual TArrowStyle GetArrowStyle() const = 0;
  virtual bool GetDragEnable() const = 0;
  virtual bool GetResizeEnable() const = 0;
  virtual bool GetRotateEnable() const = 0;
  virtual TPenStyleJoinType GetPenStyleJoinType() const = 0;
  virtual TPenStyleEndCapType GetPenStyleEndCapType() const = 0;

  // The version tag of the file being read; shape readers decide by it which
  // fields a record holds.
  virtual const std::string& GetDiskFileVersion() const = 0;

  // ---- document services ---------------------------------------------------------
  virtual void Repaint() = 0;
  // Shape (perhaps not one of the owner's) changed something it draws; see
  // TMyShape::Changed. Nothing by default.
  virtual void ShapeChanged(TMyShape& shape) {}
  // True during a bulk update, when a group's pen, brush and font changes are
  // not passed on to its members.
  virtual bool IsUpdating() const = 0;
  // The shape at list position No, or nullptr.
  virtual TMyShape* GetShapeByNo(std::int32_t no) const = 0;
  // The outermost group holding Shape (Shape itself when it has no parent).
  virtual TMyShape* GetRootParentShape(TMyShape* shape) const = 0;
  // Turns Shape and the members of its group about Center by Angle (radians).
  virtual void RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) = 0;
  // Sets Locked on Shape and the members of its group.
  virtual void LockUnLockforShapes(TMyShape* shape, bool locked) = 0;
  // Mirror Shape and the members of its group; each toggles the shape's flag.
  virtual void FlipHoriz(TMyShape* shape) = 0;
  virtual void FlipVert(TMyShape* shape) = 0;
};

}  // namespace lumatrex
