#include "sample_drawing.h"

#include "shapes/drawing_modes.h"
#include "shapes/shape.h"

namespace lumatrex::demo {

namespace {

void PaintGrid(TCanvas& canvas) {
  canvas.Pen().SetColor(RGB(225, 230, 240));
  canvas.Pen().SetStyle(psSolid);
  for (int x = 0; x <= kSampleWidth; x += 20) {
    canvas.MoveTo(x, 0);
    canvas.LineTo(x, kSampleHeight);
  }
  for (int y = 0; y <= kSampleHeight; y += 20) {
    canvas.MoveTo(0, y);
    canvas.LineTo(kSampleWidth, y);
  }
}

// A figure filled with one of the gradient styles, its handles shown.
void PaintGradientFigure(TCanvas& canvas, TGradientStyle style, TRect box, TColor from, TColor to) {
  TMyShape figure(nullptr);
  figure.SetColorBegin(from);
  figure.SetColorEnd(to);
  figure.SetGradientStyle(style);
  figure.Pen().SetColor(RGB(40, 40, 60));
  figure.Pen().SetWidth(2);
  const std::vector<TPoint> outline = {Point(box.Left, box.Top), Point(box.Right, box.Top),
                                       Point(box.Right, box.Bottom), Point(box.Left, box.Bottom)};
  figure.PowerDrawShape(canvas, outline, true);
  for (const TPoint& corner : outline) DrawSquare(figure, canvas, PtToMyPt(corner));
}

void PaintCaption(TCanvas& canvas, int x, int y, const std::string& text, double angle = 0) {
  TFont font;
  font.SetSize(11);
  font.SetColor(RGB(30, 30, 30));
  MyLogTextOut(canvas, x, y, text, font, 1.0, angle);
}

}  // namespace

void PaintSampleDrawing(TCanvas& canvas) {
  canvas.Brush().SetColor(clWhite);
  canvas.FillRect(Rect(0, 0, kSampleWidth, kSampleHeight));
  PaintGrid(canvas);

  PaintGradientFigure(canvas, gsRadialC, Rect(40, 40, 200, 160), clWhite, RGB(30, 90, 200));
  PaintGradientFigure(canvas, gsLinearV, Rect(240, 40, 400, 160), RGB(250, 220, 90), RGB(220, 60, 40));
  PaintGradientFigure(canvas, gsDiamond, Rect(440, 40, 600, 160), RGB(200, 250, 200), RGB(20, 120, 60));

  canvas.Pen().SetColor(RGB(90, 40, 140));
  canvas.Pen().SetWidth(3);
  canvas.Brush().SetColor(RGB(230, 215, 245));
  canvas.Brush().SetStyle(bsSolid);
  canvas.Ellipse(40, 210, 200, 330);
  canvas.Brush().SetStyle(bsDiagCross);
  canvas.Brush().SetColor(RGB(90, 40, 140));
  canvas.Polygon({Point(320, 200), Point(400, 330), Point(240, 330)});

  canvas.Pen().SetWidth(1);
  canvas.Pen().SetColor(RGB(20, 20, 20));
  canvas.Brush().SetStyle(bsClear);
  canvas.PolyBezier({Point(440, 320), Point(480, 180), Point(560, 360), Point(600, 220)});
  DrawLinkSquare(canvas, {440, 320});
  DrawLinkSquare(canvas, {600, 220});

  PaintCaption(canvas, 40, 170, "gsRadialC");
  PaintCaption(canvas, 240, 170, "gsLinearV");
  PaintCaption(canvas, 440, 170, "gsDiamond");
  PaintCaption(canvas, 40, 360, "Lumatrex", -0.2);
}

}  // namespace lumatrex::demo
