#include <algorithm>

#include "canvas/tmycad.h"

namespace lumatrex {

namespace {

// How an alignment measures, in model coordinates: the shapes go to Line of
// their joint box; a shape is measured by Line of its own box, or, ByCentre,
// by its centre point.
struct TAlignRule {
  bool horizontal;
  float (*line)(const TMyRect& box);
  bool byCentre;
};

float LeftOf(const TMyRect& r) { return r.Left; }
float RightOf(const TMyRect& r) { return r.Right; }
float TopOf(const TMyRect& r) { return r.Top; }
float BottomOf(const TMyRect& r) { return r.Bottom; }
float MiddleXOf(const TMyRect& r) { return (r.Right - r.Left) / 2 + r.Left; }
float MiddleYOf(const TMyRect& r) { return (r.Bottom - r.Top) / 2 + r.Top; }

long double ValueOf(const TMyCAD& cad, TMyShape* shape, const TAlignRule& rule) {
  if (!rule.byCentre) return rule.line(cad.GetShapesLTRB({shape}));
  const TMyPoint centre = shape->GetCenterPoint();
  return rule.horizontal ? centre.X : centre.Y;
}

void AlignSelection(TMyCAD& cad, const TAlignRule& rule) {
  const std::vector<TMyShape*> shapes = cad.GetSelectedShapes();
  if (shapes.size() == 1) return;
  cad.PushtoUndoRedoShapeList(shapes, ACT_CHANGE);
  cad.SetModified(true);
  const long double target = rule.line(cad.GetShapesLTRB(shapes));
  for (TMyShape* shape : shapes) {
    // The move takes device pixels and divides them by the zoom, so the model
    // distance is zoomed first; the two cancel at every zoom.
    const double delta = static_cast<double>((target - ValueOf(cad, shape, rule)) * cad.GetZoom());
    cad.DragChangeValueDxDyforShapes(shape, rule.horizontal ? delta : 0, rule.horizontal ? 0 : delta);
  }
  for (TMyShape* shape : shapes) cad.ChangeLinkShapes(shape);
}

float ExtentOf(const TMyRect& r, bool horizontal) { return horizontal ? r.Right - r.Left : r.Bottom - r.Top; }

// Scales one coordinate of every point of Shape about Origin by Factor.
void ScaleAlong(TMyShape& shape, bool horizontal, long double origin, long double factor) {
  auto scale = [&](TMyPoint& p) {
    float& c = horizontal ? p.X : p.Y;
    c = static_cast<float>(origin + (c - origin) * factor);
  };
  std::for_each(shape.Points.begin(), shape.Points.end(), scale);
  std::for_each(shape.LinkPoints.begin(), shape.LinkPoints.end(), scale);
  scale(shape.CenterPoint);
  scale(shape.TextoutPoint);
  shape.Changed();
}

}  // namespace

void TMyCAD::AlignLeft() { AlignSelection(*this, {true, LeftOf, false}); }
void TMyCAD::AlignRight() { AlignSelection(*this, {true, RightOf, false}); }
void TMyCAD::AlignTop() { AlignSelection(*this, {false, TopOf, false}); }
void TMyCAD::AlignBottom() { AlignSelection(*this, {false, BottomOf, false}); }
void TMyCAD::AlignHorizontalCenter() { AlignSelection(*this, {true, MiddleXOf, true}); }
void TMyCAD::AlignVerticalCenter() { AlignSelection(*this, {false, MiddleYOf, true}); }

void TMyCAD::AverageWidth() { ResizeToAverage(true); }
void TMyCAD::AverageHeight() { ResizeToAverage(false); }

void TMyCAD::ResizeToAverage(bool horizontal) {
  const std::vector<TMyShape*> shapes = working_;
  if (shapes.size() == 1) return;
  PushtoUndoRedoShapeList(shapes, ACT_CHANGE);
  SetModified(true);
  std::vector<TMyShape*> sized;
  long double total = 0;
  for (TMyShape* shape : shapes)
    if (const float extent = ExtentOf(GetShapesLTRB({shape}), horizontal); extent > 0) {
      sized.push_back(shape);
      total += extent;
    }
  for (TMyShape* shape : sized) {
    const TMyRect box = GetShapesLTRB({shape});
    const long double factor = total / static_cast<long double>(sized.size()) / ExtentOf(box, horizontal);
    ForShapeAndMembers(shape, [&](TMyShape& s) {
      if (!s.GetLocked()) ScaleAlong(s, horizontal, horizontal ? box.Left : box.Top, factor);
    });
  }
  for (TMyShape* shape : shapes) ChangeLinkShapes(shape);
}

}  // namespace lumatrex
