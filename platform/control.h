// TCustomControl: the base of our visual controls, a QWidget that paints
// through a TCanvas and reports the mouse in the classic form.
//
// The control keeps the image it shows (its screen bitmap). Paint renders into
// it; drawing on Canvas() outside Paint (XOR previews during a gesture) goes to
// the same image and shows at the next blit, which every mouse handler
// requests. paintEvent only calls Paint for invalidated areas and blits.
//
// Invalidated areas are kept as a short list of rectangles. They are painted
// as far as they are on the screen: a control in a scroll area paints the
// part of an invalidated area that is scrolled into view, and keeps the rest
// invalid until it shows. A hidden control paints all of it.
#pragma once

#include <QImage>
#include <QWidget>
#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "platform/types.h"

class QPainter;

namespace lumatrex {

class TPainterCanvas;

class TCustomControl : public QWidget {
  Q_OBJECT

 public:
  explicit TCustomControl(QWidget* parent = nullptr);
  ~TCustomControl() override;

  // The surface of the screen bitmap, client coordinates. While Paint runs its
  // clip rectangle is the area being repainted.
  // On a screen of more device pixels than logical ones (PixelRatio above 1)
  // it is instead a painter canvas (platform/painter_canvas.h) on
  // SharpPicture(), still in logical client coordinates: the control then
  // shows at the screen's full resolution, previews included (raster
  // operations work on the picture), and the screen bitmap stays unused.
  TCanvas& Canvas();
  // Device pixels per logical pixel: the window's, unless set (0 gives the
  // window's back).
  double PixelRatio() const;
  void SetPixelRatio(double ratio);
  // The picture at device resolution; null while PixelRatio is 1.
  const QImage& SharpPicture() const { return sharp_; }
  const TBitmap& ScreenBitmap() const { return screen_; }
  std::int32_t Width() const { return width(); }
  std::int32_t Height() const { return height(); }
  TRect ClientRect() const { return Rect(0, 0, width(), height()); }

  // Marks the whole control for repainting at the next event loop pass.
  void Invalidate();
  // Marks R (client coordinates) for repainting at the next event loop pass.
  void InvalidateRect(const TRect& r);
  // Renders the whole control into the screen bitmap now, as far as it is on
  // the screen (all of it for a hidden control); the window shows it at its
  // next blit, and parts scrolled out of view are painted when they show.
  virtual void Repaint();
  // Paints the invalidated areas now, as far as they are on the screen.
  void PaintInvalidated();
  // The bounding box of the areas still to paint, once BeforePaint has added
  // what it knows; empty when none.
  TRect InvalidatedBounds();
  // Makes drawing done on Canvas() outside Paint visible.
  void Blit() { update(); }

  TCursor GetCursor() const { return cursor_; }
  void SetCursor(TCursor cursor);
  // True inside Qt Designer (the classic csDesigning state).
  bool IsDesigning() const { return designing_; }
  void SetDesigning(bool value) { designing_ = value; }

  // Host events, called after the control's own handling.
  std::function<void(QObject* sender)> OnMouseEnter;
  std::function<void(QObject* sender)> OnMouseLeave;

 protected:
  // Renders the invalidated area into Canvas(); the default fills it white.
  virtual void Paint();
  // Called before invalidated areas are painted; a control may invalidate
  // more here (what changed since the last paint). Nothing by default.
  virtual void BeforePaint() {}
  // Whether Paint is antialiased on the picture at device resolution (the
  // previews drawn between paints never are, so that XOR stays exact).
  virtual bool SmoothPicture() const { return false; }
  virtual void MouseDown(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y);
  virtual void MouseMove(TShiftState shift, std::int32_t x, std::int32_t y);
  virtual void MouseUp(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y);
  virtual void CMMouseEnter();
  virtual void CMMouseLeave();

  void paintEvent(QPaintEvent* event) override;
  void resizeEvent(QResizeEvent* event) override;
  void mousePressEvent(QMouseEvent* event) override;
  void mouseDoubleClickEvent(QMouseEvent* event) override;
  void mouseMoveEvent(QMouseEvent* event) override;
  void mouseReleaseEvent(QMouseEvent* event) override;
  void enterEvent(QEnterEvent* event) override;
  void leaveEvent(QEvent* event) override;

 private:
  void PaintArea(const TRect& area);
  // Keeps the screen bitmap the size of the control (a hidden control gets no
  // resize events).
  void MatchScreenSize();
  // Keeps the picture at device resolution, and its canvas, the size of the
  // control at the current pixel ratio (none at 1); a new one is all invalid.
  void MatchSharpPicture();
  // Paints what is invalidated within Limit; the rest stays invalid.
  void PaintPending(const TRect& limit);
  // The client area on the screen: the visible part of a shown control, all
  // of a hidden one.
  TRect PaintLimit() const;
  void AddDirty(const TRect& r);

  TBitmap screen_;
  double pixelRatio_ = 0;  // 0: the window's
  QImage sharp_;
  std::unique_ptr<QPainter> sharpPainter_;
  std::unique_ptr<TPainterCanvas> sharpCanvas_;
  // Disjoint or not; merged when they overlap, and into one box past a few.
  std::vector<TRect> dirty_;
  TCursor cursor_ = crDefault;
  bool designing_ = false;
};

// Maps our cursor values to Qt's cursor shapes.
Qt::CursorShape ToQtCursor(TCursor cursor);

}  // namespace lumatrex
