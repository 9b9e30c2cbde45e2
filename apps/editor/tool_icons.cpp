#include "tool_icons.h"

#include <QPainter>
#include <QPainterPath>
#include <QPixmap>
#include <QPolygonF>

#include "main_window.h"
#include "shapes/shape_enums.h"

namespace lumatrex::editor {

namespace {

constexpr int kSize = 24;

QPolygonF Points(std::initializer_list<QPointF> points) { return QPolygonF(QList<QPointF>(points)); }

QPolygonF Arrow() { return Points({{6, 3}, {6, 19}, {10, 15}, {13, 21}, {15, 20}, {12, 14}, {18, 14}}); }

void Paint(QPainter& p, int tool) {
  const QPolygonF zigzag = Points({{3, 19}, {9, 6}, {15, 16}, {21, 5}});
  switch (tool) {
    case SpSelecting: p.setBrush(Qt::black); p.drawPolygon(Arrow()); break;
    case SpRotateSelecting:
      p.drawArc(QRectF(4, 4, 16, 16), 30 * 16, 280 * 16);
      p.drawPolyline(Points({{17, 2}, {19, 7}, {14, 8}}));
      break;
    case SpLine: p.drawLine(QPointF(4, 20), QPointF(20, 4)); break;
    case SpRuleLine:
      p.drawLine(QPointF(3, 16), QPointF(21, 16));
      for (int x = 3; x <= 21; x += 3) p.drawLine(QPointF(x, 16), QPointF(x, x % 2 ? 10 : 12));
      break;
    case SpPolyLine: p.drawPolyline(zigzag); break;
    case SpFreeLine: {
      QPainterPath path(QPointF(3, 16));
      path.cubicTo(QPointF(7, 2), QPointF(12, 24), QPointF(21, 6));
      p.drawPath(path);
      break;
    }
    case SpRectangle: p.drawRect(QRectF(4, 6, 16, 12)); break;
    case SpEllipse: p.drawEllipse(QRectF(3, 6, 18, 12)); break;
    case SpPolygon: p.drawPolygon(Points({{12, 3}, {21, 10}, {17, 20}, {7, 20}, {3, 10}})); break;
    case SpBLine: {
      QPainterPath path(QPointF(3, 19));
      path.cubicTo(QPointF(6, 2), QPointF(18, 22), QPointF(21, 5));
      p.drawPath(path);
      p.drawPolyline(Points({{3, 19}, {6, 2}}));
      break;
    }
    case SpPolylinePolygonPointAdding:
    case SpPolylinePolygonPointRemoving:
      p.drawPolyline(Points({{3, 20}, {10, 10}, {21, 14}}));
      p.drawLine(QPointF(14, 3), QPointF(22, 3));
      if (tool == SpPolylinePolygonPointAdding) p.drawLine(QPointF(18, 0), QPointF(18, 7));
      p.setBrush(Qt::black);
      p.drawRect(QRectF(8.5, 8.5, 3, 3));
      break;
    case SpDragWhole:
      p.drawRect(QRectF(3, 3, 8, 6));
      p.drawEllipse(QRectF(13, 13, 8, 8));
      p.drawLine(QPointF(12, 2), QPointF(12, 22));
      p.drawLine(QPointF(2, 12), QPointF(22, 12));
      break;
    case SpElliArc:
      p.drawArc(QRectF(3, 5, 18, 14), 0, 90 * 16);
      p.setBrush(Qt::black);
      p.drawRect(QRectF(19.5, 10.5, 3, 3));
      p.drawRect(QRectF(10.5, 3.5, 3, 3));
      break;
    case SpPolyBezier: {
      QPainterPath path(QPointF(3, 18));
      path.cubicTo(QPointF(8, 2), QPointF(16, 2), QPointF(21, 18));
      p.drawPath(path);
      p.drawLine(QPointF(3, 18), QPointF(8, 2));
      p.drawLine(QPointF(21, 18), QPointF(16, 2));
      break;
    }
    case SpText:
      p.drawLine(QPointF(5, 4), QPointF(19, 4));
      p.drawLine(QPointF(12, 4), QPointF(12, 21));
      p.drawLine(QPointF(9, 21), QPointF(15, 21));
      break;
    case SpImage:
      p.drawRect(QRectF(3, 4, 18, 16));
      p.drawPolyline(Points({{3, 18}, {9, 11}, {14, 16}, {17, 13}, {21, 17}}));
      p.drawEllipse(QRectF(14, 6, 4, 4));
      break;
    case SpLinkPoint:
      p.drawEllipse(QRectF(6, 6, 12, 12));
      p.drawLine(QPointF(3, 12), QPointF(21, 12));
      p.drawLine(QPointF(12, 3), QPointF(12, 21));
      break;
    case SpLinkLine:
    case SpLineLinkLine:
      p.drawRect(QRectF(2, 3, 7, 6));
      p.drawRect(QRectF(15, 15, 7, 6));
      p.drawPolyline(Points({{9, 6}, {18.5, 6}, {18.5, 15}}));
      if (tool == SpLineLinkLine) p.drawLine(QPointF(3, 21), QPointF(10, 14));
      break;
    case SpBrowse: p.drawEllipse(QRectF(4, 4, 12, 12)); p.drawLine(QPointF(14, 14), QPointF(21, 21)); break;
    case kHandTool:
      p.drawRoundedRect(QRectF(5, 10, 14, 11), 4, 4);
      for (int x = 6; x <= 15; x += 3) p.drawLine(QPointF(x + 0.5, 4), QPointF(x + 0.5, 11));
      p.drawLine(QPointF(3, 10), QPointF(6, 15));
      break;
    default: break;
  }
}

}  // namespace

QIcon ToolIcon(int tool) {
  QPixmap pixmap(kSize, kSize);
  pixmap.fill(Qt::transparent);
  QPainter painter(&pixmap);
  painter.setRenderHint(QPainter::Antialiasing);
  painter.setPen(QPen(Qt::black, 1.5, Qt::SolidLine, Qt::RoundCap, Qt::RoundJoin));
  Paint(painter, tool);
  return QIcon(pixmap);
}

}  // namespace lumatrex::editor
