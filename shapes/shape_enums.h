// The published enumerations of shapes and of the canvas. They are one-byte
// enums with classic ordinals (drawing files store the ordinals) and are
// registered with Qt's meta-object system so that the property inspector and
// Qt Designer can show them by name.
#pragma once

#include <QObject>
#include <cstdint>

namespace lumatrex {
Q_NAMESPACE

// Gradient fill kinds; gsNone paints no gradient.
enum TGradientStyle : std::uint8_t {
  gsRadialC,
  gsRadialT,
  gsRadialB,
  gsRadialL,
  gsRadialR,
  gsRadialTL,
  gsRadialTR,
  gsRadialBL,
  gsRadialBR,
  gsLinearH,
  gsLinearV,
  gsReflectedH,
  gsReflectedV,
  gsDiagonalLF,
  gsDiagonalLB,
  gsDiagonalRF,
  gsDiagonalRB,
  gsArrowL,
  gsArrowR,
  gsArrowU,
  gsArrowD,
  gsDiamond,
  gsButterfly,
  gsNone,
};
Q_ENUM_NS(TGradientStyle)

// Line joins of geometric pens; psjtMASK draws like psjtROUND.
enum TPenStyleJoinType : std::uint8_t {
  psjtROUND,
  psjtBEVEL,
  psjtMITER,
  psjtMASK,
};
Q_ENUM_NS(TPenStyleJoinType)

// Line ends of geometric pens; psectMASK draws like psectROUND.
enum TPenStyleEndCapType : std::uint8_t {
  psectROUND,
  psectSQUARE,
  psectFLAT,
  psectMASK,
};
Q_ENUM_NS(TPenStyleEndCapType)

// Unit of reported lengths and areas.
enum TUnits : std::uint8_t {
  pixel,
  mm,
  cm,
  dm,
  m,
  inch,
};
Q_ENUM_NS(TUnits)

// Origin corner of reported coordinates.
enum TXYMode : std::uint8_t {
  Mode0,  // as is
  Mode1,  // y measured up from the bottom edge
  Mode2,  // x from the right edge, y from the bottom edge
  Mode3,  // x from the right edge
};
Q_ENUM_NS(TXYMode)

// Horizontal alignment of multi-line info text.
enum TAlignment : std::uint8_t {
  taLeftJustify,
  taRightJustify,
  taCenter,
};
Q_ENUM_NS(TAlignment)

// Which ends of a line carry an arrow head. ALeft puts the head at the last
// point and ARight at the first: the names are historical and kept.
enum TArrowStyle : std::uint8_t {
  ANone,
  ALeft,
  ARight,
  ADouble,
};
Q_ENUM_NS(TArrowStyle)

// Ticks across the ends of a measuring line.
enum TTickStyle : std::uint8_t {
  tsLine,
  tsNone,
};
Q_ENUM_NS(TTickStyle)

// The tool chosen by the user.
enum TDrawTool : std::uint8_t {
  SpLinkLine,
  SpSelecting,
  SpRotateSelecting,
  SpLine,
  SpRuleLine,
  SpPolyLine,
  SpRectangle,
  SpLinkPoint,
  SpLineLinkLine,
  SpEllipse,
  SpText,
  SpImage,
  SpPolygon,
  SpPolyBezier,
  SpElliArc,
  SpClose,
  SpPolylinePolygonPointRemoving,
  SpPolylinePolygonPointAdding,
  SpDragWhole,
  SpBrowse,
  SpFreeLine,
  SpBLine,
};
Q_ENUM_NS(TDrawTool)

// The canvas's interaction state.
enum TActionTools : std::uint8_t {
  dtClose,
  dtDrawing,
  dtSelecting,
  dtRotateSelecting,
  dtResizing,
  dtDragging,
  dtDraggingTextoutPoint,
  dtRotating,
  dtPolylinePolygonPointRemoving,
  dtPolylinePolygonPointAdding,
  dtDragWhole,
  dtBrowse,
};
Q_ENUM_NS(TActionTools)

// Placement of the canvas's background picture.
enum TBkBitmapMode : std::uint8_t {
  Tiled,    // repeated from the drawing's origin
  Stretch,  // stretched over the control
  Center,   // centred in the control
  LeftTop,  // at the drawing's origin
};
Q_ENUM_NS(TBkBitmapMode)

// Paper sizes of the page setting (ISO A and B series); CustomerPage for any other size.
enum TPageStyle : std::uint8_t {
  A0,
  A1,
  A2,
  A3,
  A4,
  A5,
  B3,
  B4,
  B5,
  CustomerPage,
};
Q_ENUM_NS(TPageStyle)

// How the grid is drawn.
enum TGridType : std::uint8_t {
  gPixel,  // a dot at every grid point
  gLine,   // lines through the grid points
  gNone,
};
Q_ENUM_NS(TGridType)

// Axes along which a drag may move shapes.
enum TDragMode : std::uint8_t {
  dgHorz,
  dgVert,
  dgBoth,
};
Q_ENUM_NS(TDragMode)

// The figure an elliptical-arc shape outlines.
enum TArcStyle : std::uint8_t {
  asArc,    // the curved piece only
  asChord,  // the arc closed by its chord
  asPie,    // the sector: the arc closed through the centre
};
Q_ENUM_NS(TArcStyle)

// Whether an elliptical-arc shape keeps equal radii.
enum TArcMode : std::uint8_t {
  amCircle,   // radii kept equal (a circular arc)
  amEllipse,  // independent radii
};
Q_ENUM_NS(TArcMode)

// Routing of a connector between the shapes it joins.
enum TLinkLineDrawStyle : std::uint8_t {
  lldsLine,  // one straight segment
  lldsHV,    // horizontal first, then vertical
  lldsVH,    // vertical first, then horizontal
  // Our own addition, stored as 3: orthogonal, leaving and entering each
  // shape across the side it is attached to and going around other shapes.
  lldsOrthogonal,
};
Q_ENUM_NS(TLinkLineDrawStyle)

// Vertical placement of a text shape's lines in its frame.
enum TTextLayout : std::uint8_t {
  tlTop,
  tlCenter,
  tlBottom,
};
Q_ENUM_NS(TTextLayout)

// Which colour an image shape leaves out when it is transparent.
enum TTransparentMode : std::uint8_t {
  tmAuto,   // the colour of the bitmap's bottom-left pixel
  tmFixed,  // TransparentColor
};
Q_ENUM_NS(TTransparentMode)

// Which layers the shapes of a block read into a drawing go on.
enum TBlockLayerMode : std::uint8_t {
  Merge,   // all on the drawing's current layer
  Import,  // on the drawing's layer at the position of their layer in the block
};
Q_ENUM_NS(TBlockLayerMode)

}  // namespace lumatrex
