// TGridObject: the grid settings of a canvas. Spacings are in zoomed device
// pixels unless GridInZoom is on, when they are model units that follow the
// zoom. Every setter stores the value and repaints the owning canvas.
#pragma once

#include <QObject>
#include <cstdint>
#include <functional>

#include "platform/types.h"
#include "shapes/shape_enums.h"

namespace lumatrex {

class TGridObject : public QObject {
  Q_OBJECT
  Q_PROPERTY(std::int32_t GridColor READ GetGridColor WRITE SetGridColor)
  Q_PROPERTY(double GridHeight READ GetGridHeight WRITE SetGridHeight)
  Q_PROPERTY(std::uint8_t GridPenSize READ GetGridPenSize WRITE SetGridPenSize)
  Q_PROPERTY(bool GridInZoom READ GetGridInZoom WRITE SetGridInZoom)
  Q_PROPERTY(bool GridShow READ GetGridShow WRITE SetGridShow)
  Q_PROPERTY(lumatrex::TGridType GridType READ GetGridType WRITE SetGridType)
  Q_PROPERTY(double GridWidth READ GetGridWidth WRITE SetGridWidth)

 public:
  // Changed is called after every setter (the canvas repaints).
  explicit TGridObject(std::function<void()> changed) : changed_(std::move(changed)) {}

  TColor GetGridColor() const { return gridColor_; }
  void SetGridColor(TColor value) { Store(gridColor_, value); }
  // Vertical spacing.
  double GetGridHeight() const { return gridHeight_; }
  void SetGridHeight(double value) { Store(gridHeight_, value); }
  // Pen width of lines, half-size of dots.
  std::uint8_t GetGridPenSize() const { return gridPenSize_; }
  void SetGridPenSize(std::uint8_t value) { Store(gridPenSize_, value); }
  bool GetGridInZoom() const { return gridInZoom_; }
  void SetGridInZoom(bool value) { Store(gridInZoom_, value); }
  bool GetGridShow() const { return gridShow_; }
  void SetGridShow(bool value) { Store(gridShow_, value); }
  TGridType GetGridType() const { return gridType_; }
  void SetGridType(TGridType value) { Store(gridType_, value); }
  // Horizontal spacing.
  double GetGridWidth() const { return gridWidth_; }
  void SetGridWidth(double value) { Store(gridWidth_, value); }

 private:
  template <typename T>
  void Store(T& field, T value) {
    field = value;
    if (changed_) changed_();
  }

  std::function<void()> changed_;
  TColor gridColor_ = clSilver;
  double gridHeight_ = 0;
  std::uint8_t gridPenSize_ = 1;
  bool gridInZoom_ = false;
  bool gridShow_ = true;
  TGridType gridType_ = gLine;
  double gridWidth_ = 0;
};

}  // namespace lumatrex
