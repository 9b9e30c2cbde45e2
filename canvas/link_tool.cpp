// Connectors under the mouse: finding the link point (or shape point) under
// the cursor, binding a connector's ends to it while the connector is drawn
// or an end is dragged, and the marks that show where an end will land.
#include <cstring>

#include "canvas/tmycad.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"

namespace lumatrex {

namespace {

TMyRect AroundDevicePoint(const TPoint& p, float reach) {
  return {p.X - reach, p.Y - reach, p.X + reach, p.Y + reach};
}

bool IsConnectorTool(TDrawTool tool) { return tool == SpLinkLine || tool == SpLineLinkLine; }

}  // namespace

// Front to back among the shapes the index holds near P (group members
// too): a connector never offers itself or another connector's ends.
TMyShape* TMyCAD::InWhichShapeWhichHotLinkId(const TPoint& p, std::int32_t& linkId, const TMyShape* except) {
  linkId = -1;
  std::vector<TMyShape*> near;
  IndexQuery(AroundDevicePoint(p, hotSize_ + 1.0f), false, near);
  for (auto it = near.rbegin(); it != near.rend(); ++it) {
    TMyShape* s = *it;
    if (s == except || dynamic_cast<TMyLinkLine*>(s) || !s->GetVisible() || !IsVisibleLayerByID(s->LayerId)) continue;
    linkId = s->InWhichLinkHot(PtToMyPt(p));
    if (linkId >= 0) return s;
  }
  return nullptr;
}

TMyShape* TMyCAD::InWhichShapeWhichPointNo(const TPoint& p, std::int32_t& pointNo, const TMyShape* except) {
  pointNo = -1;
  std::vector<TMyShape*> near;
  IndexQuery(AroundDevicePoint(p, hotSize_ + 1.0f), false, near);
  for (auto it = near.rbegin(); it != near.rend(); ++it) {
    TMyShape* s = *it;
    if (s == except || !s->GetVisible() || !IsVisibleLayerByID(s->LayerId)) continue;
    for (std::int32_t i = 0; i < s->GetPointsCount(); ++i)
      if (InHotSquare(s->GetPointInZoom(i), p, hotSize_)) pointNo = i;
    if (pointNo >= 0) return s;
  }
  return nullptr;
}

TMyShape* TMyCAD::GetMainShape(TMyLinkLine& link, TLinkLineEnd end, TPoint& p) {
  std::int32_t id = -1;
  TMyShape* shape = InWhichShapeWhichHotLinkId(p, id, &link);
  link.BindEnd(end, shape ? shape->ShapeNo : -1, id);
  if (shape) p = MyPtToPt(shape->GetLinkPointInZoom(id));
  MarkLinkHot(shape ? std::optional<TPoint>(p) : std::nullopt);
  return shape;
}

void TMyCAD::ClearAllLinkHot() { MarkLinkHot(std::nullopt); }

// An XOR square, so that the same call takes it off again.
void TMyCAD::MarkLinkHot(std::optional<TPoint> at) {
  if (at == linkHot_) return;
  auto toggle = [this](const TPoint& c) {
    TCanvas& canvas = Canvas();
    SetDragResizeRotateShapeMode(canvas);
    canvas.Pen().SetStyle(psSolid);
    const std::int32_t h = hotSize_ + 2;
    canvas.Rectangle(c.X - h, c.Y - h, c.X + h + 1, c.Y + h + 1);
  };
  if (linkHot_) toggle(*linkHot_);
  linkHot_ = at;
  if (linkHot_) toggle(*linkHot_);
}

bool TMyCAD::IsLinkEndDrag() const {
  const auto* link = dynamic_cast<const TMyLinkLine*>(currentShape_);
  return actionTool_ == dtResizing && link &&
         (link->CurrentHot == 0 || link->CurrentHot == link->GetPointsCount() - 1);
}

bool TMyCAD::LinkCrossesShown() const {
  return (actionTool_ == dtDrawing && IsConnectorTool(shapeTool_)) || IsLinkEndDrag();
}

void TMyCAD::TrackLinkEnd(TPoint& p) {
  if (!IsLinkEndDrag()) return;
  std::int32_t id = -1;
  const TMyShape* shape = InWhichShapeWhichHotLinkId(p, id, currentShape_);
  if (shape) p = MyPtToPt(shape->GetLinkPointInZoom(id));
  MarkLinkHot(shape ? std::optional<TPoint>(p) : std::nullopt);
}

void TMyCAD::TrackDrawnEnd(TPoint& p) {
  if (auto* link = dynamic_cast<TMyLinkLine*>(currentShape_)) {
    GetMainShape(*link, link->GetPointsCount() == 0 ? llStart : llEnd, p);
  } else if (shapeTool_ == SpLine) {
    // Shows the line end another line would join.
    std::int32_t no = -1;
    const TMyShape* shape = InWhichShapeWhichPointNo(p, no, currentShape_);
    MarkLinkHot(shape ? std::optional<TPoint>(MyPtToPt(shape->GetPointInZoom(no))) : std::nullopt);
  }
}

// A drawn frame offers the middles of its four sides; a link-point marker
// has its own point.
void TMyCAD::AddSideLinkPoints(TMyShape& shape) {
  if (!dynamic_cast<TMyRectangle*>(&shape) || dynamic_cast<TMyLinkPoint*>(&shape) || !shape.LinkPoints.empty() ||
      shape.GetPointsCount() < 4)
    return;
  for (std::int32_t side = 4; side < 8; ++side) shape.LinkPoints.push_back(shape.GetPoint(side));
}

}  // namespace lumatrex
