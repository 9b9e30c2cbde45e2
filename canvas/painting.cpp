#include <algorithm>
#include <cmath>

#include "canvas/tmycad.h"
#include "platform/canvas.h"
#include "platform/painter_canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/groups.h"

namespace lumatrex {

namespace {

// A shape's point lists as they were before the paint pipeline shifted them.
struct TSavedPoints {
  TMyShape* shape;
  TArrMyPoint points;
  TArrMyPoint linkPoints;
  TMyPoint center;
  TMyPoint textout;
};

TSize SizeOf(const TBitmap& bitmap) { return TSize{bitmap.Width(), bitmap.Height()}; }

// How far a grid line or dot of pen width Size reaches past its position.
long double PenReachOf(std::int32_t size) { return size > 1 ? size * 5.0L + 2 : 2.0L; }

void ShiftShape(TMyShape& shape, long double dx, long double dy) {
  OffsetAllPoints(shape, dx, dy);
  // Kinds that keep their centre in a field draw about it too, so it moves
  // with the points.
  shape.CenterPoint.X = static_cast<float>(shape.CenterPoint.X + dx);
  shape.CenterPoint.Y = static_cast<float>(shape.CenterPoint.Y + dy);
}

}  // namespace

// ---------------------------------------------------------------------------
// The paint pipeline

// The control paints straight onto its screen bitmap, in place and clipped to
// the area being repainted: a partial repaint draws exactly the pixels a full
// one would there, and nothing is copied or allocated per paint.
void TMyCAD::Paint() {
  TCanvas& screen = Canvas();
  if (painting_) return;
  painting_ = true;
  // Off the screen image while it is redrawn (a repaint may cover only part
  // of it), then back where it was.
  const std::optional<TPoint> crossHair = crossHair_;
  MoveCrossHair(std::nullopt);
  const TRect clip = screen.ClipRect();
  // A gesture's XOR preview may reach past the area about to be painted:
  // it is taken off everywhere first, so that no part of it stays behind.
  if (previewShown_ || rubberBandShown_) {
    screen.ClearClipRect();
    ErasePreview();
    EraseRubberBand();
    screen.SetClipRect(clip);
  }
  PaintDrawing(screen, clip);
  SelectAllWorkingShapes();
  if (IsDesigning()) {
    screen.Pen().SetStyle(psDash);
    screen.Pen().SetMode(pmCopy);
    screen.Brush().SetStyle(bsClear);
    screen.Rectangle(0, 0, Width(), Height());
  }
  if (!IsDesigning() && OnPaint) OnPaint(this);
  previewShown_ = false;
  rubberBandShown_ = false;
  MoveCrossHair(crossHair);
  painting_ = false;
}

void TMyCAD::PaintDrawing(TCanvas& screen, const TRect& clip) {
  const TSize size{Width(), Height()};
  screen.Brush().SetColor(colorOfBackGround_);
  screen.Brush().SetStyle(bsSolid);
  screen.FillRect(clip);
  DrawBkBitmap(screen, size, 0, 0);
  DrawGrid(screen, size, ClientRect());
  // The screen bitmap is smoothed through a painter of its own; a painter
  // canvas (a screen of more device pixels than logical ones) already is one.
  if (!antialiased_ || screen.Bitmap().Empty()) {
    DrawShapeList(screen, Rect(0, 0, Width(), Height()), ShapesMeeting(clip), LinkCrossesShown());
    return;
  }
  PaintSmoothly(screen.Bitmap(), [&](TCanvas& smooth) {
    smooth.SetClipRect(clip);
    DrawShapeList(smooth, Rect(0, 0, Width(), Height()), ShapesMeeting(clip), LinkCrossesShown());
  });
}

void TMyCAD::DrawAll(const TRect& clip) {
  const std::int32_t w = std::max(clip.Width(), 0), h = std::max(clip.Height(), 0);
  if (backBuffer_.Width() < w || backBuffer_.Height() < h)
    backBuffer_.SetSize(std::max(backBuffer_.Width(), w), std::max(backBuffer_.Height(), h));
  const TRect whole = Rect(0, 0, w, h);
  TCanvas& canvas = backBuffer_.Canvas();
  canvas.SetClipRect(whole);
  FillBackground(backBuffer_, whole);
  DrawBkBitmap(backBuffer_, -clip.Left, -clip.Top);
  DrawGrid(backBuffer_, clip);
  DrawAllShape(canvas, clip);
  canvas.ClearClipRect();
}

std::vector<TMyShape*> TMyCAD::ShapesMeeting(const TRect& rect) const {
  const TRect n = PtToARect(Point(rect.Left, rect.Top), Point(rect.Right, rect.Bottom));
  std::vector<TMyShape*> found;
  IndexQuery({static_cast<float>(n.Left), static_cast<float>(n.Top), static_cast<float>(n.Right),
              static_cast<float>(n.Bottom)},
             false, found);
  // Each shape met stands for its top-level group, drawn whole in the
  // group's place in the paint order.
  std::vector<TMyShape*> chosen;
  chosen.reserve(found.size());
  for (TMyShape* s : found) {
    TMyShape* root = GetRootParentShape(s);
    if (root && !root->HasParentShape() && IsVisibleLayerByID(root->LayerId)) chosen.push_back(root);
  }
  std::sort(chosen.begin(), chosen.end(), [](const TMyShape* a, const TMyShape* b) { return a->ShapeNo < b->ShapeNo; });
  chosen.erase(std::unique(chosen.begin(), chosen.end()), chosen.end());
  return chosen;
}

void TMyCAD::DrawShapeTree(TCanvas& canvas, TMyShape& shape) {
  if (!shape.GetVisible()) return;
  // A combined figure paints its members' figures itself.
  // (Most shapes have no members: the cast is asked of groups only.)
  if (shape.HasChildShapes() && !dynamic_cast<TMyCombine*>(&shape))
    for (const std::int32_t no : shape.ChildShapes)
      if (TMyShape* child = GetShapeByNo(no); child && child != &shape) DrawShapeTree(canvas, *child);
  shape.Draw(canvas);
}

// Link crosses show only while a connector end is placed: they are where
// it can go, and would clutter the drawing at other times.
void TMyCAD::DrawAllShape(TCanvas& canvas, const TRect& rect) {
  DrawShapeList(canvas, rect, ShapesMeeting(rect), LinkCrossesShown());
}

void TMyCAD::DrawShapeList(TCanvas& canvas, const TRect& rect, const std::vector<TMyShape*>& chosen,
                           bool linkHandles) {
  // Shapes draw from their own points, so they are moved into the target's
  // space for the time of drawing and given their exact old values back
  // afterwards (moving them back by the same amount would drift in floats).
  std::vector<TSavedPoints> saved;
  if (rect.Left != 0 || rect.Top != 0) {
    // Moving points in and out writes them directly: no change to report.
    const long double dx = -rect.Left / static_cast<long double>(zoom_);
    const long double dy = -rect.Top / static_cast<long double>(zoom_);
    for (TMyShape* top : chosen)
      for (TMyShape* s : SubtreeOf(top)) {
        saved.push_back({s, s->Points, s->LinkPoints, s->CenterPoint, s->TextoutPoint});
        ShiftShape(*s, dx, dy);
      }
  }
  for (TMyShape* top : chosen) DrawShapeTree(canvas, *top);
  if (linkHandles)
    for (TMyShape* top : chosen) {
      if (!top->HasChildShapes()) {
        DrawLinkHot(*top, canvas);
        continue;
      }
      for (TMyShape* s : SubtreeOf(top)) DrawLinkHot(*s, canvas);
    }
  for (TSavedPoints& s : saved) {
    s.shape->Points = std::move(s.points);
    s.shape->LinkPoints = std::move(s.linkPoints);
    s.shape->CenterPoint = s.center;
    s.shape->TextoutPoint = s.textout;
  }
}

bool TMyCAD::IsPtinRegion(const TRect& r, const TMyShape& shape) const {
  const TRect n = PtToARect(Point(r.Left, r.Top), Point(r.Right, r.Bottom));
  for (std::int32_t i = 0; i < shape.GetPointsCount(); ++i) {
    const TMyPoint p = shape.GetPointInZoom(i);
    if (p.X >= n.Left && p.X <= n.Right && p.Y >= n.Top && p.Y <= n.Bottom) return true;
  }
  return false;
}

bool TMyCAD::IsShapeBigthanRegion(const TRect& r, const TMyShape& shape) const {
  return std::abs(r.Right - r.Left) < shape.GetWidth() * zoom_ || std::abs(r.Top - r.Bottom) < shape.GetHeight() * zoom_;
}

void TMyCAD::EndUpdate() {
  if (updateDepth_ > 0 && --updateDepth_ == 0) Invalidate();
}

// ---------------------------------------------------------------------------
// Background

void TMyCAD::FillBackground(TBitmap& bitmap, const TRect& rect) {
  TCanvas& canvas = bitmap.Canvas();
  canvas.Brush().SetColor(colorOfBackGround_);
  canvas.Brush().SetStyle(bsSolid);
  canvas.FillRect(rect);
}

void TMyCAD::DrawBackground(TBitmap& bitmap) { DrawBackground(bitmap.Canvas(), SizeOf(bitmap)); }

void TMyCAD::DrawBackground(TCanvas& canvas, TSize size) {
  canvas.Brush().SetColor(printBackground_ ? colorOfBackGround_ : clWhite);
  canvas.Brush().SetStyle(bsSolid);
  canvas.FillRect(Rect(0, 0, size.cx, size.cy));
}

void TMyCAD::DrawBkBitmap(TBitmap& bitmap, std::int32_t dx, std::int32_t dy) {
  DrawBkBitmap(bitmap.Canvas(), SizeOf(bitmap), dx, dy);
}

void TMyCAD::DrawBkBitmap(TCanvas& canvas, TSize size, std::int32_t dx, std::int32_t dy) {
  if (bkBitmap_.Empty()) return;
  const std::int32_t w = bkBitmap_.Width(), h = bkBitmap_.Height();
  switch (bkBitmapMode_) {
    case Tiled: {
      // Tiles stay fixed to the drawing's origin whatever part is repainted.
      std::int32_t startX = dx % w, startY = dy % h;
      if (startX > 0) startX -= w;
      if (startY > 0) startY -= h;
      // Only the tiles meeting the clip are drawn (the others would be cut
      // away whole).
      const TRect clip = canvas.ClipRect();
      if (clip.Left > startX) startX += (clip.Left - startX) / w * w;
      if (clip.Top > startY) startY += (clip.Top - startY) / h * h;
      const std::int32_t endX = std::min(size.cx, clip.Right), endY = std::min(size.cy, clip.Bottom);
      for (std::int32_t y = startY; y < endY; y += h)
        for (std::int32_t x = startX; x < endX; x += w) canvas.Draw(x, y, bkBitmap_);
      break;
    }
    case Stretch: canvas.StretchDraw(Rect(dx, dy, dx + Width(), dy + Height()), bkBitmap_); break;
    case Center: canvas.Draw(dx + (Width() - w) / 2, dy + (Height() - h) / 2, bkBitmap_); break;
    case LeftTop: canvas.Draw(dx, dy, bkBitmap_); break;
  }
}

// ---------------------------------------------------------------------------
// Grid, border, header and footer

void TMyCAD::DrawGrid(TBitmap& bitmap, const TRect& rect) { DrawGrid(bitmap.Canvas(), SizeOf(bitmap), rect); }

void TMyCAD::DrawGrid(TCanvas& canvas, TSize extent, const TRect& rect) {
  const TGridObject& grid = *grid_;
  if (grid.GetGridType() == gNone) return;
  const double scale = grid.GetGridInZoom() ? zoom_ : 1.0;
  const long double sx = grid.GetGridWidth() * scale, sy = grid.GetGridHeight() * scale;
  if (!(sx > 0 && sy > 0)) return;
  // Lines stay at multiples of the step in drawing coordinates when only a
  // part of the control is repainted.
  const long double phaseX = -(rect.Left - Round(rect.Left / sx) * sx);
  const long double phaseY = -(rect.Top - Round(rect.Top / sy) * sy);
  if (!grid.GetGridShow()) return;
  const std::int32_t size = grid.GetGridPenSize();
  canvas.Pen().SetColor(grid.GetGridColor());
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetMode(pmCopy);
  canvas.Pen().SetWidth(size);
  const long double w = extent.cx, h = extent.cy;
  // Lines and dots that cannot reach the clip are skipped; the positions are
  // still stepped from the start, so they are the very ones a whole paint
  // draws.
  const TRect clip = canvas.ClipRect();
  const long double reach = size + PenReachOf(size);
  auto beforeClip = [reach](long double v, std::int32_t low) { return v + reach < low; };
  auto pastClip = [reach](long double v, std::int32_t high) { return v - reach > high; };
  if (grid.GetGridType() == gPixel) {
    canvas.Brush().SetColor(grid.GetGridColor());
    canvas.Brush().SetStyle(bsSolid);
    // Dots start at the bitmap's origin and take no phase, unlike lines.
    for (long double x = 0; x <= w; x += sx) {
      if (pastClip(x, clip.Right)) break;
      if (beforeClip(x, clip.Left)) continue;
      for (long double y = 0; y <= h; y += sy) {
        if (pastClip(y, clip.Bottom)) break;
        if (beforeClip(y, clip.Top)) continue;
        canvas.Rectangle(Round(x - size), Round(y - size), Round(x + size), Round(y + size));
      }
    }
    return;
  }
  for (long double x = phaseX; x <= w; x += sx) {
    if (pastClip(x, clip.Right)) break;
    if (beforeClip(x, clip.Left)) continue;
    canvas.MoveTo(Round(x), 0);
    canvas.LineTo(Round(x), extent.cy);
  }
  for (long double y = phaseY; y <= h; y += sy) {
    if (pastClip(y, clip.Bottom)) break;
    if (beforeClip(y, clip.Top)) continue;
    canvas.MoveTo(0, Round(y));
    canvas.LineTo(extent.cx, Round(y));
  }
}

void TMyCAD::DrawBorder(TBitmap& bitmap) { DrawBorder(bitmap.Canvas(), SizeOf(bitmap)); }

void TMyCAD::DrawBorder(TCanvas& canvas, TSize size) {
  if (!printABorder_) return;
  canvas.Pen().SetColor(clBlack);
  canvas.Pen().SetStyle(psSolid);
  canvas.Pen().SetMode(pmCopy);
  canvas.Pen().SetWidth(1);
  canvas.Brush().SetStyle(bsClear);
  const long double z = zoom_;
  canvas.Rectangle(Round(borderLeft_ * z), Round(borderTop_ * z), Round(size.cx - borderRight_ * z),
                   Round(size.cy - borderBottom_ * z));
}

namespace {

// X of a text of width W aligned (0 left, 1 right, 2 centre) between Left and Right.
std::int32_t AlignedX(std::int32_t alignment, std::int32_t left, std::int32_t right, std::int32_t w) {
  if (alignment == 1) return right - w;
  if (alignment == 2) return left + (right - left - w) / 2;
  return left;
}

}  // namespace

// The header's top lies PageHeadToTop zoomed pixels below the top edge, the
// footer's bottom PageFootToBottom above the bottom edge; both are aligned
// between the border margins.
void TMyCAD::DrawHeadFoot(TBitmap& bitmap) { DrawHeadFoot(bitmap.Canvas(), SizeOf(bitmap), pageHead_, pageFoot_); }

void TMyCAD::DrawHeadFoot(TCanvas& canvas, TSize page, const std::string& head, const std::string& foot) {
  canvas.SetBkMode(bkTransparent);
  const std::int32_t left = Round(borderLeft_ * static_cast<long double>(zoom_));
  const std::int32_t right = page.cx - Round(borderRight_ * static_cast<long double>(zoom_));
  if (!head.empty()) {
    canvas.Font().Assign(pageHeadFont_);
    const TSize size = canvas.TextExtent(head);
    canvas.TextOut(AlignedX(pageHeadAlignment_, left, right, size.cx), Round(pageHeadToTop_ * zoom_), head);
  }
  if (!foot.empty()) {
    canvas.Font().Assign(pageFootFont_);
    const TSize size = canvas.TextExtent(foot);
    canvas.TextOut(AlignedX(pageFootAlignment_, left, right, size.cx),
                   page.cy - Round(pageFootToBottom_ * zoom_) - size.cy, foot);
  }
}

}  // namespace lumatrex
