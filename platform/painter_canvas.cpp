// The painter back end of TCanvas: each figure the canvas has mapped into its
// device space becomes one QPainter call. See painter_canvas.h for what
// differs from the raster back end and why.
#include "platform/painter_canvas.h"

#include <QBrush>
#include <QPaintEngine>
#include <QPen>

#include "platform/bitmap_impl.h"
#include "platform/canvas_impl.h"
#include "platform/painter_target.h"
#include "platform/qt_interop.h"

namespace lumatrex {

namespace {

// The colour a figure's pen or brush gets in Mode when the mode paints a
// colour of its own; none when it combines with the picture underneath.
std::optional<QColor> ModeColour(TPenMode mode, TColor colour) {
  switch (mode) {
    case pmCopy: return ToQColor(colour);
    case pmNotCopy: return QColor::fromRgb(~ToQRgb(colour) | 0xFF000000u);
    case pmBlack: return QColor(Qt::black);
    case pmWhite: return QColor(Qt::white);
    default: return std::nullopt;
  }
}

// Qt's raster operation for a mode that combines with the picture (only
// images have a picture to combine with); none for pmNop.
std::optional<QPainter::CompositionMode> RasterOp(TPenMode mode) {
  switch (mode) {
    case pmNot: return QPainter::RasterOp_NotDestination;
    case pmMergePenNot: return QPainter::RasterOp_SourceOrNotDestination;
    case pmMaskPenNot: return QPainter::RasterOp_SourceAndNotDestination;
    case pmMergeNotPen: return QPainter::RasterOp_NotSourceOrDestination;
    case pmMaskNotPen: return QPainter::RasterOp_NotSourceAndDestination;
    case pmMerge: return QPainter::RasterOp_SourceOrDestination;
    case pmNotMerge: return QPainter::RasterOp_NotSourceAndNotDestination;
    case pmMask: return QPainter::RasterOp_SourceAndDestination;
    case pmNotMask: return QPainter::RasterOp_NotSourceOrNotDestination;
    case pmXor: return QPainter::RasterOp_SourceXorDestination;
    case pmNotXor: return QPainter::RasterOp_NotSourceXorDestination;
    default: return std::nullopt;
  }
}

// The classic dash patterns: in pixels for one-pixel pens, in pen widths for
// wider ones (Qt counts in pen widths, so both read the same here).
QList<qreal> DashPattern(TPenStyle style, bool wide) {
  switch (style) {
    case psDash: return wide ? QList<qreal>{3, 1} : QList<qreal>{18, 6};
    case psDot: return wide ? QList<qreal>{1, 1} : QList<qreal>{3, 3};
    case psDashDot: return wide ? QList<qreal>{3, 1, 1, 1} : QList<qreal>{9, 6, 3, 6};
    case psDashDotDot: return wide ? QList<qreal>{3, 1, 1, 1, 1, 1} : QList<qreal>{9, 3, 3, 3, 3, 3};
    case psAlternate: return {1, 1};
    default: return {};
  }
}

QPen ToQPen(const TPen& pen, const QColor& colour, double penScale) {
  QPen q(colour, pen.Width() * penScale);
  const bool wide = pen.Width() > 1;
  const QList<qreal> dashes = DashPattern(pen.Style(), wide);
  if (!dashes.isEmpty()) q.setDashPattern(dashes);
  if (!wide) {
    // One-pixel lines, geometric or not: sharp corners, and no cap past the
    // end point, so that a line is as long as its points say.
    q.setJoinStyle(Qt::MiterJoin);
    q.setCapStyle(Qt::FlatCap);
  } else if (pen.Geometric()) {
    q.setJoinStyle(pen.Join() == pjRound ? Qt::RoundJoin : pen.Join() == pjBevel ? Qt::BevelJoin : Qt::MiterJoin);
    q.setCapStyle(pen.EndCap() == pecRound ? Qt::RoundCap : pen.EndCap() == pecSquare ? Qt::SquareCap : Qt::FlatCap);
  } else {
    q.setJoinStyle(Qt::RoundJoin);
    q.setCapStyle(Qt::RoundCap);
  }
  return q;
}

Qt::BrushStyle HatchStyle(TBrushStyle style) {
  switch (style) {
    case bsHorizontal: return Qt::HorPattern;
    case bsVertical: return Qt::VerPattern;
    case bsFDiagonal: return Qt::FDiagPattern;
    case bsBDiagonal: return Qt::BDiagPattern;
    case bsCross: return Qt::CrossPattern;
    case bsDiagCross: return Qt::DiagCrossPattern;
    case bsSolid: return Qt::SolidPattern;
    default: return Qt::NoBrush;
  }
}

bool Hatched(const TBrush& brush) {
  return !(brush.Bitmap() && !brush.Bitmap()->Empty()) && brush.Style() != bsSolid && brush.Style() != bsClear;
}

}  // namespace

QBrush TPainterTarget::ToQBrush(const TBrush& brush) {
  if (brush.Bitmap() && !brush.Bitmap()->Empty()) return QBrush(brush.Bitmap()->impl().Rgb32());
  return QBrush(ToQColor(brush.Color()), HatchStyle(brush.Style()));
}

TPainterTarget::TPainterTarget(QPainter& painter, TSize extent, double penScale)
    : painter_(painter),
      corner_(painter.transform()),
      base_(QTransform::fromTranslate(0.5, 0.5) * painter.transform()),
      extent_(0, 0, extent.cx, extent.cy),
      penScale_(penScale),
      combines_(painter.paintEngine() && painter.paintEngine()->hasFeature(QPaintEngine::RasterOpModes)) {
  painter_.save();
}

TPainterTarget::~TPainterTarget() { painter_.restore(); }

void TPainterTarget::ApplyClip(const TCanvas::Impl& impl) {
  if (clipKnown_ && lastClipRect_ == impl.clipRect && lastClipOutline_ == impl.clipOutline) return;
  clipKnown_ = true;
  lastClipRect_ = impl.clipRect;
  lastClipOutline_ = impl.clipOutline;
  if (!impl.clipRect && !impl.clipOutline) {
    painter_.setClipping(false);
    return;
  }
  // The clip holds whole pixels: [Left, Right) in the painter's pixel-corner
  // space; a clip polygon takes the pixels whose points lie inside it.
  painter_.setTransform(corner_);
  const QRect whole = impl.clipRect ? QRect(QPoint(impl.clipRect->Left, impl.clipRect->Top),
                                            QPoint(impl.clipRect->Right - 1, impl.clipRect->Bottom - 1))
                                    : extent_;
  painter_.setClipRect(whole);
  if (impl.clipOutline) {
    QPainterPath polygon;
    polygon.addPolygon(impl.clipOutline->translated(0.5, 0.5));
    polygon.closeSubpath();
    polygon.setFillRule(Qt::OddEvenFill);
    painter_.setClipPath(polygon, Qt::IntersectClip);
  }
}

void TPainterTarget::Figure(const TCanvas::Impl& impl, const QPainterPath& outline, bool stroke,
                            const QPainterPath& area, bool fill) {
  TPenMode mode = impl.pen.Mode();
  std::optional<QPainter::CompositionMode> rasterOp;
  if (!ModeColour(mode, clBlack)) {
    rasterOp = RasterOp(mode);
    if (!rasterOp || !combines_) return;
    mode = pmCopy;  // the colours go in as they are; the operation combines them
  }
  ApplyClip(impl);
  painter_.setTransform(base_);
  painter_.setCompositionMode(rasterOp.value_or(QPainter::CompositionMode_SourceOver));
  if (fill && impl.BrushVisible()) {
    QBrush brush = ToQBrush(impl.brush);
    if (brush.style() != Qt::TexturePattern) brush.setColor(*ModeColour(mode, impl.brush.Color()));
    QPainterPath filled = area;
    filled.setFillRule(impl.fillMode == pfmWinding ? Qt::WindingFill : Qt::OddEvenFill);
    if (Hatched(impl.brush) && impl.bkMode == bkOpaque) painter_.fillPath(filled, QColor::fromRgb(impl.Background()));
    painter_.fillPath(filled, brush);
  }
  if (stroke && impl.PenVisible()) {
    const QColor colour = *ModeColour(mode, impl.pen.Color());
    // The gaps of a styled one-pixel line show the background in opaque mode.
    if (!impl.WidePen() && !DashPattern(impl.pen.Style(), false).isEmpty() && impl.bkMode == bkOpaque) {
      QPen gaps(QColor::fromRgb(impl.Background()), penScale_);
      gaps.setCapStyle(Qt::FlatCap);
      gaps.setJoinStyle(Qt::MiterJoin);
      painter_.strokePath(outline, gaps);
    }
    painter_.strokePath(outline, ToQPen(impl.pen, colour, penScale_));
  }
  if (rasterOp) painter_.setCompositionMode(QPainter::CompositionMode_SourceOver);
}

void TPainterTarget::Fill(const TCanvas::Impl& impl, const QPainterPath& area, std::optional<QColor> colour) {
  ApplyClip(impl);
  painter_.setTransform(base_);
  if (colour) {
    painter_.fillPath(area, *colour);
    return;
  }
  if (Hatched(impl.brush) && impl.bkMode == bkOpaque) painter_.fillPath(area, QColor::fromRgb(impl.Background()));
  painter_.fillPath(area, ToQBrush(impl.brush));
}

void TPainterTarget::Text(const TCanvas::Impl& impl, const QTransform& toDevice, const QFont& font,
                          const QString& text, int ascent, const QRectF& cell) {
  ApplyClip(impl);
  // The raster back end draws glyphs in pixel-corner space too: text lands
  // where it does there.
  painter_.setTransform(toDevice * corner_);
  if (impl.bkMode == bkOpaque) painter_.fillRect(cell, QColor::fromRgb(impl.Background()));
  painter_.setFont(font);
  painter_.setPen(ToQColor(impl.font.Color()));
  painter_.setBrush(Qt::NoBrush);
  painter_.drawText(QPointF(0, ascent), text);
}

void TPainterTarget::Picture(const TCanvas::Impl& impl, const QTransform& pixelToDevice, const QImage& image) {
  ApplyClip(impl);
  painter_.setTransform(pixelToDevice * corner_);
  painter_.drawImage(QPointF(0, 0), image);
}

TPainterCanvas::TPainterCanvas(QPainter& painter, TSize extent, double penScale)
    : target_(std::make_unique<TPainterTarget>(painter, extent, penScale)), canvas_(std::make_unique<TCanvas>(none_)) {
  canvas_->impl().painter = target_.get();
}

TPainterCanvas::~TPainterCanvas() = default;

void PaintSmoothly(TBitmap& bitmap, const std::function<void(TCanvas& canvas)>& paint) {
  if (bitmap.Empty()) return;
  QPainter painter(&bitmap.impl().PaintSurface());
  painter.setRenderHints(QPainter::Antialiasing | QPainter::TextAntialiasing | QPainter::SmoothPixmapTransform);
  TPainterCanvas smooth(painter, TSize{bitmap.Width(), bitmap.Height()});
  paint(smooth.Canvas());
}

}  // namespace lumatrex
