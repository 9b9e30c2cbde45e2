#include "sample_drawing.h"

#include "platform/canvas.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/text.h"

namespace lumatrex::demo {

namespace {

TArrMyPoint Box(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

template <typename T>
T* Add(TMyCAD& cad, const char* className, const TArrMyPoint& points, float angle = 0) {
  return static_cast<T*>(cad.AddShapeByCode2(className, "", points, angle));
}

void AddArrows(TMyCAD& cad) {
  const TArrowStyle styles[] = {ANone, ALeft, ARight, ADouble};
  for (int i = 0; i < 4; ++i) {
    const float y = 40.0f + 30.0f * i;
    auto* line = Add<TMyLine>(cad, "TMyLine", {{40, y}, {220, y}});
    line->Pen().SetColor(RGB(40, 40, 90));
    line->Pen().SetWidth(2);
    line->SetArrowStyle(styles[i]);
    line->SetArrowAngle(25);
    line->SetArrowLength(12);
  }
}

void AddMeasuring(TMyCAD& cad) {
  auto* rule = Add<TMyRuleLine>(cad, "TMyRuleLine", {{40, 190}, {220, 230}});
  rule->Pen().SetColor(RGB(170, 40, 40));
  auto* poly = Add<TMyPolyLine>(cad, "TMyPolyLine", {{40, 270}, {90, 320}, {140, 270}, {190, 320}, {220, 290}});
  poly->Pen().SetColor(RGB(30, 120, 60));
  poly->Pen().SetWidth(3);
  auto* free = Add<TMyFreeLine>(cad, "TMyFreeLine", {{40, 380}, {60, 360}, {85, 372}, {110, 350}, {140, 380}, {170, 360}});
  free->Pen().SetColor(RGB(120, 60, 160));
  auto* spline = Add<TMyBLine>(cad, "TMyBLine", {{40, 440}, {100, 400}, {150, 450}, {150, 450}, {150, 450}, {210, 410}});
  spline->Pen().SetColor(RGB(20, 20, 20));
  spline->Pen().SetWidth(2);
}

void AddFigures(TMyCAD& cad) {
  cad.Brush().SetColor(RGB(225, 235, 250));
  auto* frame = Add<TMyRectangle>(cad, "TMyRectangle", Box(300, 50, 470, 160), 0.3f);
  frame->SetColorBegin(clWhite);
  frame->SetColorEnd(RGB(40, 100, 200));
  frame->SetGradientStyle(gsRadialC);
  frame->SetInfo("rotated");
  cad.Brush().SetColor(RGB(250, 230, 200));
  auto* ellipse = Add<TMyEllipse>(cad, "TMyEllipse", Box(520, 60, 680, 170));
  ellipse->Pen().SetColor(RGB(200, 90, 20));
  ellipse->Pen().SetWidth(3);
  cad.Brush().SetColor(RGB(220, 245, 220));
  Add<TMyPolygon>(cad, "TMyPolygon", {{330, 260}, {460, 230}, {500, 340}, {380, 400}, {330, 260}});
  cad.Brush().SetColor(RGB(255, 250, 220));
  auto* square = Add<TMyRectangle>(cad, "TMyRectangle", Box(540, 250, 660, 370));
  square->SetGradientStyle(gsDiamond);
  square->SetColorBegin(RGB(255, 250, 200));
  square->SetColorEnd(RGB(230, 160, 30));
  cad.SelectShapeByCode(frame->ShapeId, true);
}

// A small picture drawn on the spot, so the sample needs no file.
TBitmap SamplePicture() {
  TBitmap picture(64, 48, pf24bit);
  TCanvas& canvas = picture.Canvas();
  canvas.Brush().SetColor(RGB(150, 200, 240));
  canvas.FillRect(Rect(0, 0, 64, 48));
  canvas.Brush().SetColor(RGB(250, 210, 60));
  canvas.Pen().SetColor(RGB(250, 210, 60));
  canvas.Ellipse(40, 6, 56, 22);
  canvas.Brush().SetColor(RGB(60, 140, 60));
  canvas.Pen().SetColor(RGB(60, 140, 60));
  canvas.Polygon({Point(0, 48), Point(22, 20), Point(44, 48)});
  return picture;
}

void AddOtherKinds(TMyCAD& cad) {
  cad.Brush().SetColor(RGB(250, 220, 220));
  auto* arc = Add<TMyElliArc>(cad, "TMyElliArc", Box(300, 440, 420, 540));
  arc->Points.insert(arc->Points.end(), {{360, 440}, {420, 490}});
  arc->SetArcStyle(asPie);
  arc->Pen().SetWidth(2);
  auto* chain = Add<TMyPolyBezier>(cad, "TMyPolyBezier",
                                   {{450, 520}, {470, 430}, {530, 430}, {550, 480}, {570, 530}, {630, 530}, {650, 440}});
  chain->Pen().SetColor(RGB(160, 30, 120));
  chain->Pen().SetWidth(2);
  auto* text = Add<TMyText>(cad, "TMyText", Box(300, 580, 480, 640), -0.1f);
  text->SetLines({"Double-click to edit", "this text block"});
  text->SetHAlignment(taCenter);
  text->SetVAlignment(tlCenter);
  text->SetIsBorder(true);
  auto* image = Add<TMyImage>(cad, "TMyImage", Box(520, 570, 648, 666), 0.15f);
  image->Bitmap() = SamplePicture();
  image->SetBorder(true);
}

}  // namespace

void BuildSampleDrawing(TMyCAD& cad) {
  cad.DeleteAllShapes();
  cad.GridOperation()->SetGridColor(RGB(228, 232, 240));
  cad.GridOperation()->SetGridType(gLine);
  cad.GridOperation()->SetGridWidth(20);
  cad.GridOperation()->SetGridHeight(20);
  cad.SetLayerNameByID(0, "Figures");
  cad.SetRotateEnable(true);
  cad.SetResizeEnable(true);
  cad.SetDragEnable(true);
  AddFigures(cad);
  AddOtherKinds(cad);
  cad.NewLayer("Lines", true);
  AddArrows(cad);
  AddMeasuring(cad);
}

}  // namespace lumatrex::demo
