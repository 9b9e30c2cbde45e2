// Internal: the far end of a canvas that issues its operations to a QPainter
// instead of rasterising them (see painter_canvas.h). The canvas's own code
// maps figures into its device space, world transform included, exactly as
// for a bitmap; this class turns each figure into one QPainter call with the
// canvas's pen, brush, font and clip.
//
// Device space here: pixel (x, y) of the canvas stands for the point (x, y),
// so the target shifts everything by half a pixel onto the painter, whose
// transform maps canvas pixels (their top-left corners) onto its device.
#pragma once

#include <QImage>
#include <QPainter>
#include <QPainterPath>
#include <QRect>
#include <optional>

#include "platform/canvas.h"

namespace lumatrex {

class TPainterTarget {
 public:
  TPainterTarget(QPainter& painter, TSize extent, double penScale);
  ~TPainterTarget();

  // The canvas's whole area in its pixels: the clip when none is set.
  QRect Extent() const { return extent_; }

  // Fills Area with the brush, then strokes Outline with the pen, both in the
  // canvas's pen mode (see painter_canvas.h for what the modes mean here).
  void Figure(const TCanvas::Impl& impl, const QPainterPath& outline, bool stroke, const QPainterPath& area,
              bool fill);
  // Fills Area (device space) with the brush, or with Colour when given,
  // ignoring the pen mode.
  void Fill(const TCanvas::Impl& impl, const QPainterPath& area, std::optional<QColor> colour = std::nullopt);
  // Text of Font drawn through ToDevice (which places the cell's top-left at
  // the origin) with its baseline Ascent below it; an opaque cell is filled
  // first.
  void Text(const TCanvas::Impl& impl, const QTransform& toDevice, const QFont& font, const QString& text,
            int ascent, const QRectF& cell);
  // Image drawn so that its pixel (u, v) covers the parallelogram the map
  // PixelToDevice gives of [u, u+1) x [v, v+1), in pixel-corner coordinates
  // of the canvas.
  void Picture(const TCanvas::Impl& impl, const QTransform& pixelToDevice, const QImage& image);

  // The brush of a canvas as Qt paints it (hatches, patterns, solid), or
  // Qt::NoBrush.
  static QBrush ToQBrush(const TBrush& brush);

 private:
  // Puts the canvas's clip on the painter, under the base transform.
  void ApplyClip(const TCanvas::Impl& impl);

  QPainter& painter_;
  QTransform corner_;  // the painter's own transform: pixel corners
  QTransform base_;    // pixel (x, y) at its square's centre
  QRect extent_;
  double penScale_;
  bool combines_;  // whether the device combines colours with its picture (images do)
  // The clip last put on the painter, so that it is set only when it changes.
  bool clipKnown_ = false;
  std::optional<TRect> lastClipRect_;
  std::optional<QPolygonF> lastClipOutline_;
};

}  // namespace lumatrex
