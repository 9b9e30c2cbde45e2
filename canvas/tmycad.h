// TMyCAD: the drawing canvas control. It owns the shapes (a list that is also
// the z-order), their default pen, brush, font and arrow settings, and the
// view state every shape reads (zoom, handle size, measuring unit).
//
// The class is split into files by concern: tmycad.cpp (construction and
// properties), document.cpp (the shape list and group-wide operations).
#pragma once

#include <QObject>
#include <cstdint>
#include <memory>
#include <vector>

#include "platform/control.h"
#include "persistence/file_version.h"
#include "platform/graphics.h"
#include "shapes/shape.h"
#include "shapes/shape_enums.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

class TMyCAD : public TCustomControl, public TMyShapeOwner {
  Q_OBJECT
  Q_PROPERTY(double Zoom READ GetZoom WRITE SetZoom)
  Q_PROPERTY(double Ratio READ GetRatio WRITE SetRatio)
  Q_PROPERTY(lumatrex::TUnits TheUNIT READ GetTheUNIT WRITE SetTheUNIT)
  Q_PROPERTY(lumatrex::TXYMode XYMode READ GetXYMode WRITE SetXYMode)
  Q_PROPERTY(bool HotShow READ GetHotShow WRITE SetHotShow)
  Q_PROPERTY(std::uint8_t HotSize READ GetHotSize WRITE SetHotSize)
  Q_PROPERTY(std::int32_t ColorOfHot READ GetColorOfHot WRITE SetColorOfHot)
  Q_PROPERTY(bool ShowHotLink READ GetShowHotLink WRITE SetShowHotLink)
  Q_PROPERTY(std::int32_t ArrowAngle READ GetArrowAngle WRITE SetArrowAngle)
  Q_PROPERTY(std::uint8_t ArrowLength READ GetArrowLength WRITE SetArrowLength)
  Q_PROPERTY(std::uint8_t ArrowOffset READ GetArrowOffset WRITE SetArrowOffset)
  Q_PROPERTY(lumatrex::TArrowStyle ArrowStyle READ GetArrowStyle WRITE SetArrowStyle)
  Q_PROPERTY(bool DragEnable READ GetDragEnable WRITE SetDragEnable)
  Q_PROPERTY(bool ResizeEnable READ GetResizeEnable WRITE SetResizeEnable)
  Q_PROPERTY(bool RotateEnable READ GetRotateEnable WRITE SetRotateEnable)
  Q_PROPERTY(lumatrex::TPenStyleJoinType PenStyleJoinType READ GetPenStyleJoinType WRITE SetPenStyleJoinType)
  Q_PROPERTY(lumatrex::TPenStyleEndCapType PenStyleEndCapType READ GetPenStyleEndCapType WRITE SetPenStyleEndCapType)

 public:
  explicit TMyCAD(QWidget* parent = nullptr);
  ~TMyCAD() override;

  // ==== view ===================================================================
  double GetZoom() const override { return zoom_; }
  // Keeps the previous zoom beside the new one and repaints.
  void SetZoom(double value);
  double GetPreviousZoom() const { return previousZoom_; }
  double GetRatio() const override { return ratio_; }
  void SetRatio(double value);
  TUnits GetTheUNIT() const override { return theUnit_; }
  void SetTheUNIT(TUnits value);
  TXYMode GetXYMode() const override { return xyMode_; }
  void SetXYMode(TXYMode value);
  bool GetHotShow() const override { return hotShow_; }
  void SetHotShow(bool value);
  std::uint8_t GetHotSize() const override { return hotSize_; }
  void SetHotSize(std::uint8_t value);
  TColor GetColorOfHot() const { return colorOfHot_; }
  // Also replaces the process-wide handle colour.
  void SetColorOfHot(TColor value);
  bool GetShowHotLink() const override { return showHotLink_; }
  void SetShowHotLink(bool value);
  std::int32_t GetControlWidth() const override { return Width(); }
  std::int32_t GetControlHeight() const override { return Height(); }
  TActionTools GetActionTool() const override { return actionTool_; }
  void SetActionTool(TActionTools value) { actionTool_ = value; }
  // The version tag shape readers follow while a drawing is read.
  const std::string& GetDiskFileVersion() const override { return diskFileVersion_; }
  void SetDiskFileVersion(const std::string& version) { diskFileVersion_ = version; }

  // ==== defaults for new shapes ==================================================
  TPen& Pen() { return pen_; }
  TBrush& Brush() { return brush_; }
  TFont& Font() { return font_; }
  const TPen& GetPen() const override { return pen_; }
  const TBrush& GetBrush() const override { return brush_; }
  const TFont& GetFont() const override { return font_; }
  std::int32_t GetArrowAngle() const override { return arrowAngle_; }
  void SetArrowAngle(std::int32_t value) { arrowAngle_ = value; }
  std::uint8_t GetArrowLength() const override { return arrowLength_; }
  void SetArrowLength(std::uint8_t value) { arrowLength_ = value; }
  std::uint8_t GetArrowOffset() const override { return arrowOffset_; }
  void SetArrowOffset(std::uint8_t value) { arrowOffset_ = value; }
  TArrowStyle GetArrowStyle() const override { return arrowStyle_; }
  void SetArrowStyle(TArrowStyle value) { arrowStyle_ = value; }
  bool GetDragEnable() const override { return dragEnable_; }
  void SetDragEnable(bool value) { dragEnable_ = value; }
  bool GetResizeEnable() const override { return resizeEnable_; }
  void SetResizeEnable(bool value) { resizeEnable_ = value; }
  bool GetRotateEnable() const override { return rotateEnable_; }
  void SetRotateEnable(bool value) { rotateEnable_ = value; }
  TPenStyleJoinType GetPenStyleJoinType() const override { return penStyleJoinType_; }
  void SetPenStyleJoinType(TPenStyleJoinType value) { penStyleJoinType_ = value; }
  TPenStyleEndCapType GetPenStyleEndCapType() const override { return penStyleEndCapType_; }
  void SetPenStyleEndCapType(TPenStyleEndCapType value) { penStyleEndCapType_ = value; }

  // ==== document ===================================================================
  std::int32_t GetShapesCount() const { return static_cast<std::int32_t>(shapes_.size()); }
  TMyShape* GetShapeByNo(std::int32_t no) const override;
  // Takes ownership of Shape and appends it (front-most), keeping ShapeNo
  // equal to its list position. Returns the shape.
  TMyShape* AppendShape(std::unique_ptr<TMyShape> shape);
  TMyShape* GetRootParentShape(TMyShape* shape) const override;

  // ==== group-wide operations (a shape and, recursively, its members) ================
  void RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) override;
  void LockUnLockforShapes(TMyShape* shape, bool locked) override;
  void FlipHoriz(TMyShape* shape) override;
  void FlipVert(TMyShape* shape) override;

  // ==== repainting ===================================================================
  void Repaint() override { Invalidate(); }
  // A bulk update keeps groups from passing pen, brush and font changes on to
  // their members; calls nest.
  void BeginUpdate() { ++updateDepth_; }
  void EndUpdate();
  bool IsUpdating() const override { return updateDepth_ > 0; }

 private:
  template <typename Fn>
  void ForShapeAndMembers(TMyShape* shape, Fn fn);

  // view
  double zoom_ = 1.0;
  double previousZoom_ = 1.0;
  double ratio_ = 1.0;
  TUnits theUnit_ = mm;
  TXYMode xyMode_ = Mode0;
  bool hotShow_ = true;
  std::uint8_t hotSize_ = 4;
  TColor colorOfHot_ = 0x808080;
  bool showHotLink_ = true;
  TActionTools actionTool_ = dtSelecting;
  std::string diskFileVersion_ = kCurrentFileVersion;
  // defaults for new shapes
  TPen pen_;
  TBrush brush_;
  TFont font_;
  std::int32_t arrowAngle_ = 0;
  std::uint8_t arrowLength_ = 0;
  std::uint8_t arrowOffset_ = 0;
  TArrowStyle arrowStyle_ = ANone;
  bool dragEnable_ = false;
  bool resizeEnable_ = false;
  bool rotateEnable_ = false;
  TPenStyleJoinType penStyleJoinType_ = psjtROUND;
  TPenStyleEndCapType penStyleEndCapType_ = psectROUND;
  // document
  std::vector<std::unique_ptr<TMyShape>> shapes_;
  int updateDepth_ = 0;
};

}  // namespace lumatrex
