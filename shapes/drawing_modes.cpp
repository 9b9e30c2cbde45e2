#include "shapes/drawing_modes.h"

#include <cstring>

#include "platform/hooks.h"
#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

namespace {

TColor g_hotColor = 0x0000FF00;

void SetPenBrush(TCanvas& canvas, TColor penColor, TPenStyle penStyle, TPenMode mode, TColor brushColor,
                 TBrushStyle brushStyle) {
  TPen& pen = canvas.Pen();
  pen.SetCosmetic();
  pen.SetWidth(1);
  pen.SetColor(penColor);
  pen.SetStyle(penStyle);
  pen.SetMode(mode);
  canvas.Brush().SetColor(brushColor);
  canvas.Brush().SetStyle(brushStyle);
}

// A colour seen on a monochrome printer: the mean of its three channels.
TColor GreyOf(TColor color) {
  const TColor c = ColorToRGB(color);
  const auto g = static_cast<std::uint8_t>((GetRValue(c) + GetGValue(c) + GetBValue(c)) / 3);
  return RGB(g, g, g);
}

std::uint8_t OwnerHotSize(const TMyShape& shape) { return shape.Owner() ? shape.Owner()->GetHotSize() : 4; }

// Gives the canvas font the face, style and size of Font scaled by Scale,
// turned by Angle, antialiased.
void PrepareRotatedFont(TCanvas& canvas, const TFont& font, double scale, double angle) {
  TFont& target = canvas.Font();
  target.SetColor(font.Color());
  target.SetStyle(font.Style());
  target.SetCharset(font.Charset());
  target.SetOrientation(Round(static_cast<long double>(angle) * 180 / kPi * 10 * -1));
  target.SetQuality(fqAntialiased);
  target.SetHeight(-Round(font.Size() * static_cast<long double>(scale)));
  target.SetName(font.Name());
}

}  // namespace

bool OwnerIsRotating(const TMyShape& shape) {
  if (!shape.Owner()) return false;
  const TActionTools action = shape.Owner()->GetActionTool();
  return action == dtRotating || action == dtRotateSelecting;
}

bool OwnerShowsHandles(const TMyShape& shape) { return !shape.Owner() || shape.Owner()->GetHotShow(); }

TColor GetHotColor() { return g_hotColor; }
void SetHotColor(TColor color) { g_hotColor = color; }

void SetDrawHotMode(TCanvas& canvas) { SetPenBrush(canvas, clBlack, psSolid, pmCopy, g_hotColor, bsSolid); }

void SetDrawLockedHotMode(TCanvas& canvas) { SetPenBrush(canvas, clBlack, psSolid, pmCopy, 0x808080, bsSolid); }

void SetDragResizeRotateShapeMode(TCanvas& canvas) {
  SetPenBrush(canvas, 0xFFFFFF, psDot, pmXor, canvas.Brush().Color(), bsClear);
}

void SetDrawTriangleMode(const TMyShape& shape, TCanvas& canvas) {
  TPen& pen = canvas.Pen();
  pen.SetColor(shape.Pen().Color());
  pen.SetStyle(shape.Pen().Style());
  pen.SetWidth(shape.Pen().Width());
  pen.SetMode(pmCopy);
  canvas.Font().Assign(shape.Font());
  canvas.Brush().SetColor(shape.Pen().Color());
  canvas.Brush().SetStyle(bsSolid);
}

void SetDrawShapeMode(const TMyShape& shape, TCanvas& canvas) {
  TPen& pen = canvas.Pen();
  TBrush& brush = canvas.Brush();
  if (!IsPrinterCanvas(canvas)) {
    pen.SetColor(shape.Pen().Color());
    pen.SetStyle(shape.Pen().Style());
    pen.SetWidth(shape.Pen().Width());
    pen.SetMode(pmCopy);
    brush.SetColor(shape.Brush().Color());
    brush.SetStyle(shape.Brush().Style());
    return;
  }
  brush.SetStyle(shape.Brush().Style());
  const bool monochrome = PrinterNumColors() == 2;
  pen.SetColor(monochrome ? GreyOf(shape.Pen().Color()) : shape.Pen().Color());
  brush.SetColor(monochrome ? GreyOf(shape.Brush().Color()) : shape.Brush().Color());
  // Setting a colour makes a clear brush solid again.
  if (shape.Brush().Style() == bsClear) brush.SetStyle(bsClear);
  pen.SetStyle(shape.Pen().Style());
  pen.SetWidth(shape.Pen().Width());
  pen.SetMode(pmCopy);
}

void DrawSquare(const TMyShape& shape, TCanvas& canvas, const TMyPoint& p) {
  if (!shape.GetHotShow()) return;
  const std::int32_t size = OwnerHotSize(shape);
  const std::int32_t h = shape.ParentId == -1 ? size : size / 2;
  bool round = false;
  if (shape.GetLocked()) {
    SetDrawLockedHotMode(canvas);
  } else {
    SetDrawHotMode(canvas);
    if (OwnerIsRotating(shape)) {
      if (!shape.GetRotateEnable()) return;
      round = shape.ParentId == -1;
    }
  }
  const std::int32_t x1 = Round(p.X - static_cast<long double>(h)), y1 = Round(p.Y - static_cast<long double>(h));
  const std::int32_t x2 = Round(p.X + static_cast<long double>(h)), y2 = Round(p.Y + static_cast<long double>(h));
  if (round)
    canvas.Ellipse(x1, y1, x2, y2);
  else
    canvas.Rectangle(x1, y1, x2, y2);
}

void DrawLinkSquare(TCanvas& canvas, const TMyPoint& p) {
  SetDrawHotMode(canvas);
  canvas.Pen().SetMode(pmCopy);
  canvas.Pen().SetColor(0x00FF0000);
  const long double x = p.X, y = p.Y, d = 2.5L;
  canvas.MoveTo(Round(x - d), Round(y - d));
  canvas.LineTo(Round(x + d), Round(y + d));
  canvas.MoveTo(Round(x + d), Round(y - d));
  canvas.LineTo(Round(x - d), Round(y + d));
}

void DrawLinkHot(const TMyShape& shape, TCanvas& canvas) {
  if (const TMyShapeOwner* owner = shape.Owner(); owner && (!owner->GetHotShow() || !owner->GetShowHotLink()))
    return;
  for (std::int32_t i = 0; i < shape.GetLinkPointsCount(); ++i) DrawLinkSquare(canvas, shape.GetLinkPointInZoom(i));
}

void DrawDiamond(const TMyShape& shape, TCanvas& canvas, const TMyPoint& p, TColor) {
  if (std::strcmp(shape.ClassName(), "TMyText") == 0) return;
  if (shape.GetInfoText().empty() && shape.GetMultiInfo().empty()) return;
  const long double h = OwnerHotSize(shape), x = p.X, y = p.Y;
  canvas.Polygon({Point(Round(x - h), Round(y)), Point(Round(x), Round(y - h)), Point(Round(x + h), Round(y)),
                  Point(Round(x), Round(y + h))});
}

void LineDraw(const TMyShape&, TCanvas& canvas, const TMyPoint& a, const TMyPoint& b) {
  const TPoint from = MyPtToPt(a), to = MyPtToPt(b);
  canvas.MoveTo(from.X, from.Y);
  canvas.LineTo(to.X, to.Y);
}

void DrawRotatedText(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text, const TFont& font,
                     double scale, double angle) {
  PrepareRotatedFont(canvas, font, scale, angle);
  canvas.SetBkMode(bkTransparent);
  canvas.TextOut(x, y, text);
}

void MyLogTextOut(TCanvas& canvas, std::int32_t x, std::int32_t y, const std::string& text, const TFont& font,
                  double scale, double angle) {
  DrawRotatedText(canvas, x, y, text, font, scale, angle);
  DrawRotatedText(canvas, x, y, text, font, scale, angle);
}

TSize GetTextWidthHeight(TCanvas& canvas, const std::string& text, const TFont& font, double scale,
                         double angle) {
  PrepareRotatedFont(canvas, font, scale, angle);
  return canvas.TextExtent(text);
}

}  // namespace lumatrex
