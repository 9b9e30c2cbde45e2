// TCmbShape: one library entry as read, and the owner of its shapes.
//
// An entry's shapes form a small document of their own: their list positions
// (ShapeNo, ParentId, ChildShapes, connector ends) are the numbers stored in
// the entry, so they must not be resolved against a canvas until they are
// placed on one (TMyCAD::AddUserDefineShapefromLib renumbers them then). The
// entry therefore owns its shapes and is their TMyShapeOwner: it answers the
// record version while they are read, finds shapes by their stored ShapeNo
// and gives the view values a shape reads when it draws (zoom 1 unless set,
// handles 4 pixels, millimetres, Mode0). The defaults a new shape copies (pen,
// brush, font, arrows, switches) come from the canvas the library manager was
// given, or are the library's own defaults without one.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <unordered_map>
#include <vector>

#include "persistence/user_data.h"
#include "platform/graphics.h"
#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

class TCmbShape final : public TMyShapeOwner {
 public:
  // RecordVersion is the drawing-file version the shape records follow.
  // Defaults, when given, lends its new-shape defaults (copied now).
  TCmbShape(const std::string& recordVersion, const TMyShapeOwner* defaults);
  ~TCmbShape() override;
  // Shapes point at their owner, so an entry stays where it was made.
  TCmbShape(const TCmbShape&) = delete;
  TCmbShape& operator=(const TCmbShape&) = delete;

  std::string Name;
  // The size stored with the entry (the size its shapes were drawn at).
  std::int32_t Width = 0;
  std::int32_t Height = 0;
  TUserData UserData;
  // In stored order; each owned by this entry.
  std::vector<std::unique_ptr<TMyShape>> Shapes;

  // Shapes with no parent in this entry (a ParentId naming no shape here, or
  // the shape itself, counts as none), in list order.
  std::vector<TMyShape*> TopLevelShapes() const;
  // Shape and its members, each group before its members; every shape once,
  // so that cyclic member lists of a damaged file end.
  std::vector<TMyShape*> SubtreeOf(TMyShape* shape) const;

  // The order a canvas paints them in: top-level shapes in list order, each
  // group's members (in member order) before the group; hidden shapes and the
  // members of hidden groups left out.
  std::vector<TMyShape*> ShapesInPaintOrder() const;

  void SetZoom(double value) { zoom_ = value; }
  void SetRecordVersion(const std::string& version) { recordVersion_ = version; }

  // ---- TMyShapeOwner ----------------------------------------------------------
  double GetZoom() const override { return zoom_; }
  std::uint8_t GetHotSize() const override { return 4; }
  TUnits GetTheUNIT() const override { return mm; }
  double GetRatio() const override { return 1.0; }
  TXYMode GetXYMode() const override { return Mode0; }
  std::int32_t GetControlWidth() const override { return Width; }
  std::int32_t GetControlHeight() const override { return Height; }
  TActionTools GetActionTool() const override { return dtSelecting; }
  bool GetHotShow() const override { return hotShow_; }
  bool GetShowHotLink() const override { return false; }
  const TPen& GetPen() const override { return pen_; }
  const TBrush& GetBrush() const override { return brush_; }
  const TFont& GetFont() const override { return font_; }
  std::int32_t GetArrowAngle() const override { return arrowAngle_; }
  std::uint8_t GetArrowLength() const override { return arrowLength_; }
  std::uint8_t GetArrowOffset() const override { return arrowOffset_; }
  TArrowStyle GetArrowStyle() const override { return arrowStyle_; }
  bool GetDragEnable() const override { return dragEnable_; }
  bool GetResizeEnable() const override { return resizeEnable_; }
  bool GetRotateEnable() const override { return rotateEnable_; }
  TPenStyleJoinType GetPenStyleJoinType() const override { return joinType_; }
  TPenStyleEndCapType GetPenStyleEndCapType() const override { return endCapType_; }
  const std::string& GetDiskFileVersion() const override { return recordVersion_; }
  void Repaint() override {}
  bool IsUpdating() const override { return false; }
  // The first shape whose ShapeNo is No, or nullptr.
  TMyShape* GetShapeByNo(std::int32_t no) const override;
  TMyShape* GetRootParentShape(TMyShape* shape) const override;
  void RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) override;
  void LockUnLockforShapes(TMyShape* shape, bool locked) override;
  void FlipHoriz(TMyShape* shape) override;
  void FlipVert(TMyShape* shape) override;

 private:
  using TShapeIndex = std::unordered_map<std::int32_t, TMyShape*>;
  TShapeIndex IndexByNo() const;

  std::string recordVersion_;
  double zoom_ = 1.0;
  TPen pen_;
  TBrush brush_;
  TFont font_;
  std::int32_t arrowAngle_ = 0;
  std::uint8_t arrowLength_ = 0;
  std::uint8_t arrowOffset_ = 0;
  TArrowStyle arrowStyle_ = ANone;
  bool dragEnable_ = true;
  bool resizeEnable_ = true;
  bool rotateEnable_ = true;
  bool hotShow_ = true;
  TPenStyleJoinType joinType_ = psjtROUND;
  TPenStyleEndCapType endCapType_ = psectROUND;
};

}  // namespace lumatrex
