// A stand-in for the canvas: the view values a shape reads (fixed where no
// test varies them) and a shape list for group lookups.
#pragma once

#include <memory>
#include <vector>

#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex::test {

class TFakeOwner : public TMyShapeOwner {
 public:
  explicit TFakeOwner(double zoomFactor = 1.0) : zoom(zoomFactor) {}
  double GetZoom() const override { return zoom; }
  std::uint8_t GetHotSize() const override { return 4; }
  TUnits GetTheUNIT() const override { return unit; }
  double GetRatio() const override { return ratio; }
  TXYMode GetXYMode() const override { return xyMode; }
  std::int32_t GetControlWidth() const override { return width; }
  std::int32_t GetControlHeight() const override { return height; }
  TActionTools GetActionTool() const override { return action; }
  bool GetHotShow() const override { return hotShow; }
  bool GetShowHotLink() const override { return true; }
  const TPen& GetPen() const override { return pen; }
  const TBrush& GetBrush() const override { return brush; }
  const TFont& GetFont() const override { return font; }
  std::int32_t GetArrowAngle() const override { return 30; }
  std::uint8_t GetArrowLength() const override { return 10; }
  std::uint8_t GetArrowOffset() const override { return 0; }
  TArrowStyle GetArrowStyle() const override { return ALeft; }
  bool GetDragEnable() const override { return false; }
  bool GetResizeEnable() const override { return false; }
  bool GetRotateEnable() const override { return true; }
  TPenStyleJoinType GetPenStyleJoinType() const override { return psjtBEVEL; }
  TPenStyleEndCapType GetPenStyleEndCapType() const override { return psectFLAT; }
  const std::string& GetDiskFileVersion() const override { return version; }
  void Repaint() override {}
  bool IsUpdating() const override { return false; }
  TMyShape* GetShapeByNo(std::int32_t no) const override {
    return no >= 0 && no < static_cast<int>(shapes.size()) ? shapes[static_cast<std::size_t>(no)].get() : nullptr;
  }
  TMyShape* GetRootParentShape(TMyShape* shape) const override {
    while (shape && shape->ParentId != -1 && GetShapeByNo(shape->ParentId)) shape = GetShapeByNo(shape->ParentId);
    return shape;
  }
  void RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) override {
    shape->RotateChangeValueByAngle(center, angle);
  }
  void LockUnLockforShapes(TMyShape* shape, bool locked) override {
    shape->StoreLocked(locked);
    for (std::int32_t no : shape->ChildShapes) GetShapeByNo(no)->StoreLocked(locked);
  }
  void FlipHoriz(TMyShape* shape) override { shape->FlipHoriz(); }
  void FlipVert(TMyShape* shape) override { shape->FlipVert(); }

  // Adds a plain shape at the end of the list with the given points.
  TMyShape& Add(std::vector<TMyPoint> points = {}) {
    shapes.push_back(std::make_unique<TMyShape>(this));
    TMyShape& s = *shapes.back();
    s.ShapeNo = static_cast<std::int32_t>(shapes.size()) - 1;
    s.Points = std::move(points);
    s.CenterPoint = s.ComputeCenterPoint(4);
    return s;
  }

  std::string version = "XP.j";
  double zoom = 1.0;
  TUnits unit = mm;
  double ratio = 1.0;
  TXYMode xyMode = Mode0;
  std::int32_t width = 200;
  std::int32_t height = 100;
  TActionTools action = dtSelecting;
  bool hotShow = true;
  TPen pen;
  TBrush brush;
  TFont font;
  std::vector<std::unique_ptr<TMyShape>> shapes;
};

// A shape of kind T owned by Owner, with Points and the centre they give.
template <typename T>
std::unique_ptr<T> Make(TFakeOwner& owner, std::vector<TMyPoint> points) {
  auto shape = std::make_unique<T>(&owner);
  shape->Points = std::move(points);
  shape->CenterPoint = shape->ComputeCenterPoint(4);
  return shape;
}

}  // namespace lumatrex::test
