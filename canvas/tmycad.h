// TMyCAD: the drawing canvas control.
//
// It owns the shapes, kept in a list that is also the paint order (z-order):
// index 0 is painted first, and every shape's ShapeNo equals its index. Groups
// and connectors refer to shapes by these list positions, and every operation
// that reorders or shortens the list renumbers those references. It also owns
// the layers, the selection (the "working shapes"), the view state every shape
// reads (zoom, handle size, unit) and the defaults new shapes copy.
//
// Coordinates: shapes store model coordinates; the control shows them zoomed
// (model x Zoom) and rounded half-to-even to device pixels.
//
// The class is one class in several files, one per concern:
//   tmycad.cpp     construction and view properties
//   document.cpp   the shape list: adding, finding, deleting, renumbering
//   layers.cpp     layers
//   zorder.cpp     paint order
//   selection.cpp  the working shapes
//   painting.cpp   the paint pipeline, background, grid, border, header, footer
//   page.cpp       page styles and extents
//   export.cpp     rendering the drawing to image files
//   vector_export.cpp  SVG and PDF pictures through the painter canvas
//   printing.cpp   page set-up and printing, tiled or fitted, with header and footer
//   undo.cpp       the undo history
//   redo.cpp       redo, and the bound on the history's memory
//   grouping.cpp   grouping and ungrouping
//   align.cpp      lining up and equal sizes of the selection
//   transform_commands.cpp  flips and tilts of the selection
//   clipboard.cpp  cut, copy, paste and duplicate
//   drawing_file.cpp  saving and loading drawings and blocks
//   library_shapes.cpp  placing entries of shape libraries
//   bezier_tool.cpp  drawing Bezier chains and adding or removing their pieces
//   image_tool.cpp   image shapes from files, code and the clipboard
//   text_editor.cpp  the in-place editor of text shapes
//   cross_hair.cpp  the cross-hair through the mouse position
//   line_joining.cpp  joining a newly drawn line to the free end it meets
//   connections.cpp  connectors: ends kept on their link points, routing,
//                  the connector commands
//   link_tool.cpp  link points under the mouse while connectors are drawn
//                  or their ends dragged
//   routing.cpp    the orthogonal router (routing.h)
//   spatial.cpp    the spatial index of shape bounds and what it serves:
//                  hit tests, area queries, partial repaints
//
// Scale: a spatial index (an R-tree of each shape's GetBoundsInZoom) serves
// hit tests, rubber-band selection, snapping and painting, so that a click, a
// hover or the repaint of a small area costs what the shapes there cost, not
// the whole drawing. Every add, delete and change keeps it current: shapes
// tell the canvas when they change (TMyShape::Changed), and the canvas
// recomputes the changed boxes before its next query or paint, repainting
// the old and the new box of each. Commands that reorder or shorten the list
// renumber it in one pass, and ids, selection membership and connector upkeep
// are looked up, not searched.
#pragma once

#include <QLabel>
#include <QObject>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <ranges>
#include <span>
#include <stdexcept>
#include <string>
#include <vector>

#include "canvas/grid.h"
#include "canvas/undo.h"
#include "library/lib_manager.h"
#include "persistence/file_version.h"
#include "persistence/user_data.h"
#include "platform/bitmap.h"
#include "platform/control.h"
#include "platform/graphics.h"
#include "shapes/shape.h"
#include "shapes/shape_enums.h"
#include "shapes/shape_owner.h"

class QPlainTextEdit;
class QPainter;
class QPrinter;

namespace lumatrex {

class TShapeIndex;
class TMyText;
class TMyLinkLine;
class TMyLinkPoint;
enum TLinkLineEnd : std::uint8_t;

// One layer of the drawing.
struct LayerRec {
  std::string LayerName;
  std::int32_t LayerId = 0;
  bool Visible = true;
  friend bool operator==(const LayerRec&, const LayerRec&) = default;
};

// What an image export renders.
struct TImageExportOptions {
  double Zoom = 1.0;
  // Only the selected shapes instead of every shape on a visible layer.
  bool SelectedOnly = false;
  // Blank pixels around the extent of the shapes' points, so that wide pens,
  // arrow heads and labels are not cut.
  std::int32_t Margin = 16;
  // The largest picture made, in pixels (4 bytes each): the extent of far-apart
  // shapes at a high zoom would otherwise ask for gigabytes.
  std::int64_t MaxPixels = std::int64_t{1} << 26;
  // Dots per inch, 0 for the screen's. A bitmap picture is scaled by
  // Dpi / screen pixels per inch on top of Zoom and records it; a PDF keeps
  // its size (the drawing at Zoom, at the screen's pixels per inch) and uses
  // it as its resolution.
  double Dpi = 0;
  // The output background (ColorOfBackGround under PrintBackground, and the
  // background picture). Off, SVG and PDF pictures have none and bitmap
  // pictures stay white.
  bool Background = true;
};

// What a print takes from the drawing.
struct TPrintOptions {
  // Only the selected shapes instead of every shape on a visible layer.
  bool SelectedOnly = false;
  // One page, the drawing scaled to fit; otherwise true scale: one drawing
  // pixel at Zoom prints 1/(screen pixels per inch) inch, over as many pages
  // (tiles, left to right, then top to bottom) as it needs.
  bool FitToPage = false;
  double Zoom = 1.0;
  // Fills the "[File]" field of the page header and footer.
  std::string FileName;
};

// A picture larger than TImageExportOptions::MaxPixels (or wider or taller
// than 32767 pixels) was asked for; the message names the size and the zoom
// that would fit.
class EPictureTooLarge : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

class TMyCAD : public TCustomControl, public TMyShapeOwner {
  Q_OBJECT
  // view
  Q_PROPERTY(double Zoom READ GetZoom WRITE SetZoom)
  Q_PROPERTY(double Ratio READ GetRatio WRITE SetRatio)
  Q_PROPERTY(lumatrex::TUnits TheUNIT READ GetTheUNIT WRITE SetTheUNIT)
  Q_PROPERTY(lumatrex::TXYMode XYMode READ GetXYMode WRITE SetXYMode)
  Q_PROPERTY(std::int32_t ColorOfBackGround READ GetColorOfBackGround WRITE SetColorOfBackGround)
  Q_PROPERTY(lumatrex::TBkBitmapMode BkBitmapMode READ GetBkBitmapMode WRITE SetBkBitmapMode)
  Q_PROPERTY(lumatrex::TGridObject* GridOperation READ GridOperation)
  Q_PROPERTY(bool CrossLine READ GetCrossLine WRITE SetCrossLine)
  Q_PROPERTY(bool HotShow READ GetHotShow WRITE SetHotShow)
  Q_PROPERTY(std::uint8_t HotSize READ GetHotSize WRITE SetHotSize)
  Q_PROPERTY(std::int32_t ColorOfHot READ GetColorOfHot WRITE SetColorOfHot)
  Q_PROPERTY(bool ShowHotLink READ GetShowHotLink WRITE SetShowHotLink)
  // page
  Q_PROPERTY(lumatrex::TPageStyle PageStyle READ GetPageStyle WRITE SetPageStyle)
  Q_PROPERTY(std::int32_t PageWidth READ GetPageWidth WRITE SetPageWidth)
  Q_PROPERTY(std::int32_t PageHeight READ GetPageHeight WRITE SetPageHeight)
  Q_PROPERTY(std::int32_t PageOrientation READ GetPageOrientation WRITE SetPageOrientation)
  Q_PROPERTY(std::string PageHead READ GetPageHead WRITE SetPageHead)
  Q_PROPERTY(std::string PageFoot READ GetPageFoot WRITE SetPageFoot)
  Q_PROPERTY(std::int32_t PageHeadAlignment READ GetPageHeadAlignment WRITE SetPageHeadAlignment)
  Q_PROPERTY(std::int32_t PageFootAlignment READ GetPageFootAlignment WRITE SetPageFootAlignment)
  Q_PROPERTY(std::int32_t PageHeadToTop READ GetPageHeadToTop WRITE SetPageHeadToTop)
  Q_PROPERTY(std::int32_t PageFootToBottom READ GetPageFootToBottom WRITE SetPageFootToBottom)
  Q_PROPERTY(bool PrintABorder READ GetPrintABorder WRITE SetPrintABorder)
  Q_PROPERTY(std::uint8_t PrintABordertoLeft READ GetPrintABordertoLeft WRITE SetPrintABordertoLeft)
  Q_PROPERTY(std::uint8_t PrintABordertoTop READ GetPrintABordertoTop WRITE SetPrintABordertoTop)
  Q_PROPERTY(std::uint8_t PrintABordertoRight READ GetPrintABordertoRight WRITE SetPrintABordertoRight)
  Q_PROPERTY(std::uint8_t PrintABordertoBottom READ GetPrintABordertoBottom WRITE SetPrintABordertoBottom)
  Q_PROPERTY(bool PrintBackground READ GetPrintBackground WRITE SetPrintBackground)
  Q_PROPERTY(bool Antialiased READ GetAntialiased WRITE SetAntialiased)
  // defaults for new shapes
  Q_PROPERTY(std::int32_t ArrowAngle READ GetArrowAngle WRITE SetArrowAngle)
  Q_PROPERTY(std::uint8_t ArrowLength READ GetArrowLength WRITE SetArrowLength)
  Q_PROPERTY(std::uint8_t ArrowOffset READ GetArrowOffset WRITE SetArrowOffset)
  Q_PROPERTY(lumatrex::TArrowStyle ArrowStyle READ GetArrowStyle WRITE SetArrowStyle)
  Q_PROPERTY(bool DragEnable READ GetDragEnable WRITE SetDragEnable)
  Q_PROPERTY(bool ResizeEnable READ GetResizeEnable WRITE SetResizeEnable)
  Q_PROPERTY(bool RotateEnable READ GetRotateEnable WRITE SetRotateEnable)
  Q_PROPERTY(lumatrex::TPenStyleJoinType PenStyleJoinType READ GetPenStyleJoinType WRITE SetPenStyleJoinType)
  Q_PROPERTY(lumatrex::TPenStyleEndCapType PenStyleEndCapType READ GetPenStyleEndCapType WRITE SetPenStyleEndCapType)
  // interaction
  Q_PROPERTY(lumatrex::TDrawTool ShapeTool READ GetShapeTool WRITE SetShapeTool)
  Q_PROPERTY(bool ReturnToSelecting READ GetReturnToSelecting WRITE SetReturnToSelecting)
  Q_PROPERTY(bool SideLinkPoints READ GetSideLinkPoints WRITE SetSideLinkPoints)
  Q_PROPERTY(std::int32_t RotateConstraintDegree READ GetRotateConstraintDegree WRITE SetRotateConstraintDegree)
  Q_PROPERTY(lumatrex::TDragMode DragMode READ GetDragMode WRITE SetDragMode)
  Q_PROPERTY(bool DragTrace READ GetDragTrace WRITE SetDragTrace)
  Q_PROPERTY(bool Snap READ GetSnap WRITE SetSnap)
  Q_PROPERTY(std::uint8_t SnapPixels READ GetSnapPixels WRITE SetSnapPixels)
  Q_PROPERTY(bool SnapShape READ GetSnapShape WRITE SetSnapShape)
  Q_PROPERTY(bool MouseEffect READ GetMouseEffect WRITE SetMouseEffect)
  Q_PROPERTY(bool LockBound READ GetLockBound WRITE SetLockBound)
  Q_PROPERTY(bool DisableTextInput READ GetDisableTextInput WRITE SetDisableTextInput)
  Q_PROPERTY(bool ShowHint READ GetShowHint WRITE SetShowHint)
  // document
  Q_PROPERTY(bool OperateAllLayer READ GetOperateAllLayer WRITE SetOperateAllLayer)
  Q_PROPERTY(lumatrex::TUserData* UserData READ UserDataPtr)
  Q_PROPERTY(std::int32_t Tag READ GetTag WRITE SetTag)
  Q_PROPERTY(std::uint8_t UndoRedoSize READ GetUndoRedoSize WRITE SetUndoRedoSize)
  Q_PROPERTY(std::int64_t UndoMemoryLimit READ GetUndoMemoryLimit WRITE SetUndoMemoryLimit)
  // graphic objects and host labels
  Q_PROPERTY(lumatrex::TPen* Pen READ PenPtr)
  Q_PROPERTY(lumatrex::TBrush* Brush READ BrushPtr)
  Q_PROPERTY(lumatrex::TFont* Font READ FontPtr)
  Q_PROPERTY(lumatrex::TBitmap* BkBitmap READ BkBitmapPtr)
  Q_PROPERTY(lumatrex::TFont* PageHeadFont READ PageHeadFontPtr)
  Q_PROPERTY(lumatrex::TFont* PageFootFont READ PageFootFontPtr)
  Q_PROPERTY(QLabel* LabelXY MEMBER LabelXY)
  Q_PROPERTY(QLabel* LabelValue MEMBER LabelValue)

 public:
  // Sets every default, creates the back buffer and the first layer "Layer0".
  explicit TMyCAD(QWidget* parent = nullptr);
  ~TMyCAD() override;

  // ==== events (called only when set; the sender is the canvas) ===============
  std::function<void(QObject* sender, TMyShape*& shape, std::int32_t shapeCount)> OnShapeAdded;
  // Before the shape is removed.
  std::function<void(QObject* sender, TMyShape* shape)> OnShapeDeleted;
  std::function<void(QObject* sender, TMyShape* lastSelected, TMyShape* selected)> OnShapeSelected;
  std::function<void(QObject* sender, std::int32_t layerId, const std::string& name, bool visible)> OnNewLayer;
  std::function<void(QObject* sender, std::int32_t layerId, const std::string& name, bool visible)> OnDeleteLayer;
  // After every paint, outside design time.
  std::function<void(QObject* sender)> OnPaint;

  // ==== shapes (document.cpp) ==================================================
  // Appends Shape (front-most) and takes ownership. Without KeepLayer the shape
  // goes on the current layer; without NoCount the next shape id grows by one.
  // A canvas without layers shows "Error!There is no Layer!", ends the
  // application and refuses (false; the shape is destroyed). Null gives false.
  bool AddShape(std::unique_ptr<TMyShape> shape, bool keepLayer = false, bool noCount = false);
  // A new shape of the named class ("TMyLine", ...) owned by this canvas;
  // nullptr for an unknown name.
  std::unique_ptr<TMyShape> CreateShapeByName(const std::string& className);
  // CreateShapeByName, a copy of Template when given, then a new identity
  // (ShapeNo, ShapeId, name "Shape"+id, caption = name) and AddShape.
  TMyShape* CreateAddShapeByName(const std::string& className, const TMyShape* templ = nullptr);
  // The shape kind of a drawing tool; nullptr for tools that draw nothing.
  std::unique_ptr<TMyShape> CreateShapeBySpTool(TDrawTool tool);
  // Creates a shape of ClassName with the model Points and Angle (radians),
  // names it (Name, or "Shape"+id when empty) and adds it. AddShapeByCode
  // records an "ACT_ADD" step; AddShapeByCode2 records nothing (bulk use).
  TMyShape* AddShapeByCode(const std::string& className, const std::string& name, const TArrMyPoint& points,
                           float angle);
  TMyShape* AddShapeByCode2(const std::string& className, const std::string& name, const TArrMyPoint& points,
                            float angle);
  // Adds a TMyImage showing a copy of Picture in the frame Points (model
  // corners P0-P3; the picture's own size with its top-left at the origin
  // when Points is empty), turned by Angle, named as AddShapeByCode names.
  // Records "ACT_ADD" and raises OnShapeAdded. nullptr, adding nothing, for
  // an empty picture or a frame without four points.
  TMyShape* AddImageShapeByCode(const TBitmap& picture, const std::string& name, const TArrMyPoint& points,
                                float angle);
  // Reads a picture file into Picture: BMP through our own reader, every
  // other format Qt can read through Qt. False, Picture untouched, when the
  // file cannot be read.
  static bool LoadPictureFile(const std::string& fileName, TBitmap& picture);
  // Adds the clipboard's picture as an image shape at its own size, its
  // top-left at the model origin, selected. False when the clipboard holds
  // no picture.
  bool PasteImage();
  // Asked for the picture file when the image tool has drawn its frame;
  // return false to cancel. Unset: a file dialog.
  std::function<bool(QObject* sender, std::string& fileName)> OnGetImageFileName;
  // In-place editing of a text shape's lines (text_editor.cpp): a multi-line
  // editor over the shape's frame. Escape cancels; Ctrl+Enter, a click on
  // the canvas or leaving the editor commits as one "ACT_CHANGE" step (none
  // when nothing changed). Opened by the text tool and by a double click on
  // a text shape with the selection tool.
  void EditTextInPlace(TMyShape* text);
  bool IsEditingText() const { return textEditor_ != nullptr; }
  void CommitTextEdit();
  void CancelTextEdit();

  // Deletes the shape with ShapeId Id, with its group members, unless it is
  // locked: raises OnShapeDeleted, records "ACT_DELETE" when Record, and
  // renumbers every remaining list reference. False when nothing was deleted.
  bool DeleteShapeById(std::int32_t id, bool record);
  void DeleteAllShapes();
  // Deletes the unlocked selected shapes; with Record as one "ACT_DELETE"
  // step, so that one undo brings them all back.
  void DeleteSelectedShapes(bool record = true);
  // By a lookup in the id index; with several shapes of one id, the first in
  // the list.
  TMyShape* GetShapeByID(std::int32_t id) const;
  TMyShape* GetShapeByName(const std::string& name) const;
  TMyShape* GetShapeByNo(std::int32_t no) const override;
  std::int32_t GetShapeNoById(std::int32_t id) const;
  std::int32_t GetShapesCount() const { return static_cast<std::int32_t>(shapes_.size()); }
  std::int32_t GetShapesCountInALayer(std::int32_t layerId) const;
  std::vector<TMyShape*> GetShapesByLayerId(std::int32_t layerId) const;
  // Renames the shape called OldName; false when there is none.
  bool RenameShapeName(const std::string& oldName, const std::string& newName);
  TMyShape* GetRootParentShape(TMyShape* shape) const override;
  // The first top-level shape after (before) list position No, or nullptr.
  TMyShape* GetNextSingleorRootShape(std::int32_t no) const;
  TMyShape* GetPrevSingleorRootShape(std::int32_t no) const;
  std::int32_t GetNextShapeId() const { return nextShapeId_; }

  // ==== spatial index (spatial.cpp) ==============================================
  // The top-level shape a click at device point (X, Y) picks, by the rules of
  // the selecting tool: the front-most connector (TMyLineLinkLine) hit, else
  // the front-most other shape hit, on visible layers (only the current layer
  // without OperateAllLayer); nullptr for none. Selected shapes count too.
  TMyShape* ShapeAt(std::int32_t x, std::int32_t y);
  // Shape changed something it draws (TMyShape::Changed calls this): its box
  // is taken anew before the next query or paint, and its old and new areas
  // are repainted. Code that writes a shape's fields directly calls
  // Shape.Changed() afterwards. Shapes not on this canvas are ignored.
  void ShapeChanged(TMyShape& shape) override;
  // Every shape (group members too) whose indexed box meets the zoomed
  // rectangle R, borders included, in list order; and the box the index holds
  // for Shape (the zero rectangle for a shape not on the canvas). Both bring
  // the index up to date first. For tests and diagnostics.
  std::vector<TMyShape*> GetShapesInIndex(const TMyRect& r) const;
  TMyRect GetIndexedBounds(const TMyShape* shape) const;

  // ==== group-wide operations (a shape and, recursively, its members) ==========
  void RotateChangeValueforShapes(TMyShape* shape, const TMyPoint& center, double angle) override;
  void LockUnLockforShapes(TMyShape* shape, bool locked) override;
  void FlipHoriz(TMyShape* shape) override;
  void FlipVert(TMyShape* shape) override;

  // ==== moving shapes and their connectors (connections.cpp) ===================
  // Moves Shape by the device distance (DX, DY) (divided by the zoom): first
  // every member of a group, then the shape itself unless it is locked.
  void DragChangeValueDxDyforShapes(TMyShape* shape, double dx, double dy);
  // Puts the ends of every connector attached to Shape (or to one of its
  // members) back on the link points they are bound to and routes those
  // connectors again, after Shape moved, was resized or turned. When Shape
  // is itself a connector, its ends are settled first: an end still within
  // HotSize of its bound point goes back onto it, one moved further is let
  // go and binds to the link point it now lies on, if any; the connector is
  // routed again when an end moved or its points are no route of its style.
  // The connectors looked at are those the shapes list in LinkLines (each
  // shape lists the connectors attached to it), so the work does not grow
  // with the drawing.
  void ChangeLinkShapes(TMyShape* shape);
  // Gives the connector the route its LinkLineDrawStyle asks for between its
  // two end points (model coordinates): lldsOrthogonal goes around the
  // frames of the shapes near it (found through the spatial index), leaving
  // and entering each attached shape across the side its link point is on;
  // when no way around is found it takes one bend as lldsHV does.
  void RouteLinkLine(TMyLinkLine& link);

  // ==== connectors (connections.cpp, link_tool.cpp) ==============================
  // The front-most visible shape (group members included, connectors left
  // out, Except skipped) with a link point whose HotSize square holds device
  // point P, and that link point in LinkId; nullptr and -1 for none.
  TMyShape* InWhichShapeWhichHotLinkId(const TPoint& p, std::int32_t& linkId, const TMyShape* except = nullptr);
  // The same for a shape's points (handles): the shape and the last of its
  // points whose HotSize square holds P.
  TMyShape* InWhichShapeWhichPointNo(const TPoint& p, std::int32_t& pointNo, const TMyShape* except = nullptr);
  // Binds End of Link to the link point under device point P (or frees it
  // when there is none), moves P onto that point and marks it. Returns the
  // shape bound to.
  TMyShape* GetMainShape(TMyLinkLine& link, TLinkLineEnd end, TPoint& p);
  // Takes off the mark of the link point an end would bind to.
  void ClearAllLinkHot();
  // A new TMyLinkLine from link point SourcePoint of Source to DestPoint of
  // Dest, routed by Style, listed by both shapes; "ACT_ADD" when Record.
  // nullptr, adding nothing, for a shape not on this canvas or a link point
  // it does not have.
  TMyLinkLine* CreateLink(TMyShape* source, std::int32_t sourcePoint, TMyShape* dest, std::int32_t destPoint,
                          TLinkLineDrawStyle style, bool record = true);
  // Breaks Link at model point At with a new TMyLinkPoint: Link ends there,
  // and a copy of Link runs from there to Link's old end (bound as Link's
  // was). Records "ACT_CHANGE" for Link and then "ACT_ADD" for the point and
  // the copy when Record. Returns the new point; nullptr for a connector not
  // on this canvas. BreakLine breaks at the middle of the route's length.
  TMyLinkPoint* BreakLineByAPoint(TMyLinkLine* link, const TMyPoint& at, bool record = true);
  TMyLinkPoint* BreakLine(TMyLinkLine* link, bool record = true);
  // Frees the start (end) of Link: no longer bound, and no longer listed by
  // that shape. The end's point stays where it is.
  void RemoveSrcLink(TMyLinkLine* link);
  void RemoveDestLink(TMyLinkLine* link);

  // ==== mouse interaction (interaction.cpp, snapping.cpp) ========================
  // Events of gestures. Points are passed through GetPointByMode; a handler
  // may change ToPoint.
  using TShapePointEvent = std::function<void(QObject* sender, TMyShape* shape, const TPoint& from, TPoint& to)>;
  TShapePointEvent OnShapeMouseDragging;
  TShapePointEvent OnShapeMouseDragged;
  TShapePointEvent OnShapeMouseResizing;
  TShapePointEvent OnShapeMouseResized;
  TShapePointEvent OnShapeMouseResizeFinished;
  TShapePointEvent OnShapeMouseRotating;
  TShapePointEvent OnShapeMouseRotated;
  std::function<void(QObject* sender, TMyShape* child, bool& acceptSelect)> OnChildShapeSelected;
  std::function<void(QObject* sender, TMyShape* shape, float dx, float dy)> OnShapeCodeDragging;
  std::function<void(QObject* sender, TMyShape* shape, float angle)> OnShapeCodeRotating;
  std::function<void(QObject* sender, TMyShape* shape)> OnMouseEnterShape;
  std::function<void(QObject* sender, TMyShape* shape)> OnMouseLeaveShape;
  std::function<void(QObject* sender)> OnActionToolToSelecting;
  std::function<void(QObject* sender)> OnWholeDragged;
  std::function<void(QObject* sender, TMyShape*& shape, std::int32_t pointIndex)> OnNodeAdded;
  std::function<void(QObject* sender, TMyShape*& shape, std::int32_t result)> OnNodeDeleted;

  TDrawTool GetShapeTool() const { return shapeTool_; }
  // Stores the tool and sets the action it stands for; a drawing tool drops
  // an unfinished shape.
  void SetShapeTool(TDrawTool value);
  bool GetReturnToSelecting() const { return returnToSelecting_; }
  void SetReturnToSelecting(bool value) { returnToSelecting_ = value; }
  // On: a rectangle, ellipse, text or picture framed with the mouse gets a
  // link point at the middle of each side, for connectors to attach to. Off
  // (the default): a drawn shape keeps exactly the points that were drawn.
  bool GetSideLinkPoints() const { return sideLinkPoints_; }
  void SetSideLinkPoints(bool value) { sideLinkPoints_ = value; }
  // Rotation step in degrees; 0 rotates freely, negative values are ignored.
  std::int32_t GetRotateConstraintDegree() const { return rotateConstraintDegree_; }
  void SetRotateConstraintDegree(std::int32_t value);
  TDragMode GetDragMode() const { return dragMode_; }
  void SetDragMode(TDragMode value) { dragMode_ = value; }
  // Show the XOR outline of dragged shapes while they move.
  bool GetDragTrace() const { return dragTrace_; }
  void SetDragTrace(bool value) { dragTrace_ = value; }
  bool GetSnap() const { return snap_; }
  void SetSnap(bool value) { snap_ = value; }
  std::uint8_t GetSnapPixels() const { return snapPixels_; }
  void SetSnapPixels(std::uint8_t value) { snapPixels_ = value; }
  bool GetSnapShape() const { return snapShape_; }
  void SetSnapShape(bool value) { snapShape_ = value; }
  bool GetMouseEffect() const { return mouseEffect_; }
  void SetMouseEffect(bool value) { mouseEffect_ = value; }
  // Keep a dragged selection inside the control. Qt cannot confine the system
  // cursor everywhere, so the moved position is clamped instead.
  bool GetLockBound() const { return lockBound_; }
  void SetLockBound(bool value) { lockBound_ = value; }
  bool GetDisableTextInput() const { return disableTextInput_; }
  void SetDisableTextInput(bool value) { disableTextInput_ = value; }
  bool GetShowHint() const { return showHint_; }
  void SetShowHint(bool value) { showHint_ = value; }
  // Optional host labels: the mouse position (in XYMode) and the measured
  // value of the shape being drawn.
  QLabel* LabelXY = nullptr;
  QLabel* LabelValue = nullptr;
  void UpdateLabelXY(std::int32_t x, std::int32_t y);
  void UpdateLabelValue(const std::string& text);
  // The interaction state.
  bool IsMouseDown() const { return mouseIsDown_; }
  TActionTools GetSavedActionTool() const { return savedActionTool_; }
  TMyShape* GetCurrentShape() const { return currentShape_; }
  // The group member picked by the last click into a selected group or
  // double click on a group; nullptr once the group is left.
  TMyShape* GetClickedChildShape() const { return clickedChildShape_; }

  // Rubber-band pen: dotted XOR in the half-way colour of the canvas pen.
  void SetSelectShapeMode();
  // Grid and shape snapping of a device point; true when anything snapped.
  bool SnapXY(std::int32_t& x, std::int32_t& y);
  // Shifts (X, Y) so that the box R, moved with it, lands on the grid or on
  // another shape's edge.
  void SnapRect(const TRect& r, std::int32_t& x, std::int32_t& y);
  // dgHorz keeps only the horizontal part of a drag, dgVert the vertical.
  void GetMousePointbyDragMode(const TPoint& p, TPoint& q) const;
  // Device point P in the XYMode system.
  TPoint GetPointByMode(const TPoint& p) const;
  TMyPoint GetMyPointByMode(const TMyPoint& p) const;
  // Whether the zoomed box of Shape's root group lies inside the rectangle
  // spanned by P1 and P2, borders included.
  bool IsInRegion(const TPoint& p1, const TPoint& p2, TMyShape* shape) const;
  bool IsClickedMeforShape(TCanvas& canvas, TMyShape* shape, const TPoint& p);
  void DraggingforShapes(TCanvas& canvas, TMyShape* shape, const TPoint& from, const TPoint& to);
  void SizeChangeValueforShapes(TMyShape* shape, const TPoint& from, const TPoint& to);
  void RotatingforShapes(TCanvas& canvas, TMyShape* shape, const TMyPoint& center, long double angle);
  // With Shift: a box becomes square, a line horizontal or vertical, measured
  // from From.
  void DrawMakeSquareorHV(TShiftState shift, TMyShape* shape, const TPoint& from, TPoint& to) const;
  void ResizeMakeSquareorHV(TShiftState shift, TMyShape* shape, const TPoint& from, TPoint& to) const;
  // Angle (radians) from From to To about the zoomed Center, in steps of
  // RotateConstraintDegree when that is positive.
  double GetRotatedAngle(const TMyPoint& center, const TPoint& from, const TPoint& to) const;
  void ShowHintEnterLeaveShape(TMyShape* shape, bool entered, const TPoint& p);
  // Moves or turns a shape by code, raising the code events.
  void Move(TMyShape* shape, float dx, float dy);
  void Rotate(TMyShape* shape, float angle);

  // ==== layers (layers.cpp) ========================================================
  // Appends a layer and makes it current; -1 (and no change) when the name is
  // taken (case-sensitive). Ids are never reused.
  std::int32_t NewLayer(const std::string& name, bool visible);
  // Unlocks and deletes the layer's top-level shapes, then removes the layer
  // when every deletion succeeded. Empties the selection.
  bool DeleteLayerByID(std::int32_t id);
  bool DeleteLayerByName(const std::string& name);
  void DeleteAllLayers();
  // Moves Source's shapes to Target, makes Target current and deletes Source.
  // 0 (nothing done) when they are equal or either is not a layer, else 1.
  std::int32_t MergeLayers(std::int32_t target, std::int32_t source);
  // Moves the layer at list position From to position To, the others keeping
  // their order; false, with nothing done, for a bad position. The list order
  // is the order layers are listed and saved in; painting follows the shape
  // list, not the layers. Not an undo step: the history holds shapes only.
  bool MoveLayer(std::int32_t from, std::int32_t to);
  // -1 without layers, else the id of the last layer in the list: the most
  // recently created one, unless layers were moved.
  std::int32_t GetMaxLayerId() const;
  // The layer count, as the 8-bit value drawing files and the UI use.
  std::uint8_t GetLayersCount() const { return static_cast<std::uint8_t>(layers_.size()); }
  const std::vector<LayerRec>& Layers() const { return layers_; }
  std::int32_t GetLayerIdByName(const std::string& name) const;
  std::int32_t GetLayerIdByNo(std::int32_t no) const;
  std::string GetLayerNameByID(std::int32_t id) const;
  std::int32_t GetLayerNoById(std::int32_t id) const;
  std::int32_t GetLayerNoByName(const std::string& name) const;
  bool SetLayerNameByID(std::int32_t id, const std::string& name);
  bool SetLayerNameByName(const std::string& oldName, const std::string& newName);
  void VisibleLayerByID(std::int32_t id);
  void VisibleLayerByName(const std::string& name);
  void InVisibleLayerByID(std::int32_t id);
  void InVisibleLayerByName(const std::string& name);
  void VisibleAllLayer();
  bool IsVisibleLayerByID(std::int32_t id) const;
  std::int32_t GetCurrentLayerId() const { return currentLayerId_; }
  void SetCurrentLayerId(std::int32_t id);

  // ==== paint order (zorder.cpp) =====================================================
  // Each moves Shape past whole top-level neighbours (groups move as one),
  // records the named undo step when Record, and repaints.
  void BringToFront(TMyShape* shape, bool record);
  void BringToFrontByStep(TMyShape* shape, bool record);
  void SendToBack(TMyShape* shape, bool record);
  void SendToBackByStep(TMyShape* shape, bool record);
  // Exchanges the list places of A and B; every stored list position follows.
  void SwapShape(TMyShape* a, TMyShape* b);

  // ==== selection (selection.cpp) ======================================================
  // Adds Shape (a group member: its root group) unless already there or not
  // in this drawing.
  // Each repaints the handles that appear or go.
  void AddWorkingShapes(TMyShape* shape);
  void RemoveWorkingShape(TMyShape* shape);
  void RemoveAllWorkingShapes();
  // Index of Shape among the working shapes, or -1; constant time. Shape
  // must be null or a live shape.
  std::int32_t IsInWorkingShape(const TMyShape* shape) const;
  std::int32_t GetWorkingShapesCount() const { return static_cast<std::int32_t>(working_.size()); }
  // Shows the handles of the working shapes on the control (within the clip
  // while painting).
  void SelectAllWorkingShapes();
  void SelectAllShapes();
  void SelectAllShapesByLayerId(std::int32_t layerId);
  // Selects the shape with ShapeId Id (after emptying the selection when
  // ClearFirst); raises OnShapeSelected; false when there is no such shape.
  bool SelectShapeByCode(std::int32_t id, bool clearFirst);
  // The working shape when there is exactly one, else nullptr.
  TMyShape* GetSelectedShape() const;
  const std::vector<TMyShape*>& GetSelectedShapes() const { return working_; }
  std::int32_t GetSelectedShapesCount() const { return GetWorkingShapesCount(); }
  void DeSelectedAllShapesByCode();
  bool GetOperateAllLayer() const { return operateAllLayer_; }
  void SetOperateAllLayer(bool value) { operateAllLayer_ = value; }

  // ==== undo history (undo.cpp) ==================================================
  // Records one step of Action (one of the ACT_ names of canvas/undo.h) for
  // Shapes, before the action changes them (an add or group step: after).
  // A change or delete step also records every group member; an ungroup step
  // the members of a top-level group. When the history holds exactly
  // UndoRedoSize steps the oldest is dropped first. Nothing is recorded when
  // the history is off, for no shapes, or for shapes of no known kind.
  // Keep, when given, is asked for each recorded shape's state beyond its
  // copy, which undo of a change puts back after the copy.
  void PushtoUndoRedoShapeList(const std::vector<TMyShape*>& shapes, const std::string& action,
                               const TStateKeeper& keep = {});
  // Empties the selection, reverts the newest step and repaints. Answers the
  // number of the step that is newest afterwards; -1, with nothing done and
  // no repaint, when there was no step. Reverting records nothing; the step
  // can be taken back by Redo. Deleted shapes come back at the front, with their connectors
  // detached; a changed shape gets its saved state but keeps its current
  // list positions (place, group, connector ends).
  std::int32_t PopFromUndoRedoShapeList();
  void ClearAllUndoStuff();
  // The records, oldest first.
  const std::vector<TSavedShape>& GetUndoRedoShapeList() const { return undoList_; }
  // Steps kept, 10 in a new canvas. 0 switches the history off and empties
  // it. Lowering the value does not trim a longer history, which then keeps
  // growing.
  std::uint8_t GetUndoRedoSize() const { return undoRedoSize_; }
  void SetUndoRedoSize(std::uint8_t value);

  // ==== redo and the history's memory (redo.cpp) ===================================
  // Takes the newest undo back: the document becomes exactly what it was
  // before that undo (every shape's state, the list order, the next id) and
  // the step is on the history again, to be undone once more. Undone steps
  // stay redoable until a new step is recorded or shapes are added or
  // removed without one. False, with nothing done, when there is none.
  bool Redo();
  bool CanUndo() const { return undoRedoSize_ > 0 && !undoList_.empty(); }
  bool CanRedo() const { return !redoList_.empty(); }
  // The memory the undo and redo steps may hold together, in bytes (an
  // estimate of their shape copies; 64 MB in a new canvas). Past it the
  // oldest redo steps go first, then the oldest undo steps; the newest undo
  // step stays whatever its size.
  std::int64_t GetUndoMemoryLimit() const { return undoMemoryLimit_; }
  void SetUndoMemoryLimit(std::int64_t bytes);
  std::int64_t GetUndoMemoryUsed() const;

  // ==== grouping (grouping.cpp) ==================================================
  // Makes the top-level shapes of this canvas among Shapes (each once) the
  // members of a new TMyGroup, added after them as "Shape"+id on the first
  // member's layer: its four points are the members' joint box and it draws
  // nothing itself. Selected members give way to the group in the selection.
  // Records "ACT_GROUP" when Record. nullptr when no shape qualifies.
  TMyShape* GroupShapes(const std::vector<TMyShape*>& shapes, bool record);
  // The same with a TMyCombine, which takes the pen and brush of its first
  // member and paints the members' figures as one even-odd filled figure.
  // UnGroupShape takes it apart again (uncombine).
  TMyShape* CombineShapes(const std::vector<TMyShape*>& shapes, bool record);
  // Makes the members of Group top-level shapes and deletes Group, recording
  // "ACT_UNGROUP" first when Record. Nothing for anything but an unlocked
  // top-level TMyGroup (or TMyCombine) of this canvas.
  void UnGroupShape(TMyShape* group, bool record);

  // ==== alignment (align.cpp) ====================================================
  // Each lines up the selected shapes (with their group members) on an edge
  // or centre line of their joint box, in model coordinates at any zoom, as
  // one "ACT_CHANGE" step, then re-routes their connectors and repaints.
  // Nothing, and no step, with exactly one selected shape.
  void AlignLeft();
  void AlignRight();
  void AlignTop();
  void AlignBottom();
  // On the joint box's centre line, measured by each shape's centre point.
  void AlignHorizontalCenter();
  void AlignVerticalCenter();
  // Give every selected shape the average width (height) of the selection by
  // scaling its points, and its members', along x (y) about the left (top)
  // of its own box, so each keeps its left-top corner. Shapes without width
  // (height), such as a vertical line, take no part. A turned shape is scaled
  // along the canvas axes, so its frame may shear. Locked shapes stay as
  // they are. Same step and exceptions as the alignments.
  void AverageWidth();
  void AverageHeight();

  // ==== flips and tilts of the selection (transform_commands.cpp) ==================
  // Mirror the selection as one block about the vertical (horizontal) centre
  // line of its joint box: each unlocked selected shape flips with its
  // members (toggling their flags) and moves to its mirrored place, and the
  // connectors attached follow. One "ACT_CHANGE" step; nothing, and no step,
  // without a selection.
  void FlipHoriz();
  void FlipVert();
  // Shear the selection about the centre of its joint box by Angle (radians;
  // nothing beyond +-89 degrees): TiltHoriz moves every point sideways by
  // tan(Angle) times its distance below the centre (positive: the bottom goes
  // right), TiltVert down by tan(Angle) times its distance right of it. The
  // shapes' angles stay. One "ACT_CHANGE" step, connectors follow.
  void TiltHoriz(double angle);
  void TiltVert(double angle);

  // ==== clipboard and duplicate (clipboard.cpp) ====================================
  // Shapes on the clipboard: a drawing stream of the copied shapes.
  static constexpr const char* kShapesMimeType = "application/x-lumatrex-shapes";
  // Puts the selection on the system clipboard, under kShapesMimeType
  // (SelectionToBytes), and for other programs as a picture of it and as
  // SVG ("image/svg+xml", RenderToSvg). Pasting
  // it here then lands one grid step further each time. False, clipboard
  // untouched, without a selection.
  bool Copy();
  // Copy, then deletes the unlocked selected shapes as one "ACT_DELETE"
  // step; a paste then lands where they were.
  bool Cut();
  // Adds the clipboard's shapes (PasteforBlock(Merge)); without them its
  // picture as an image shape (PasteImage), or else its text as a text
  // shape at the origin. False when it holds nothing of these or its shapes
  // cannot be read, with the drawing as it was.
  bool Paste();
  // Adds the clipboard's shapes, placing their layers as a block load does
  // (Merge: the current layer; Import: by position, with new layers
  // "Block"+name), new ids and names ("Shape"+id), their references moved
  // along, offset as Copy says. They become the selection; one "ACT_ADD"
  // step for the top-level ones; OnShapeAdded for each. False when there
  // are none or they cannot be read.
  bool PasteforBlock(TBlockLayerMode mode);
  // Copies the selection and adds the copy one grid step right and down,
  // selected, as one "ACT_ADD" step; the clipboard is not used. False
  // without a selection.
  bool Duplicate();
  // The selection as a drawing stream: this drawing's header and layers,
  // then the selected shapes with their group members and every connector
  // joining two of them, in list order, each reference renumbered to the
  // copy's own positions (a reference to a shape not copied is dropped).
  std::vector<std::uint8_t> SelectionToBytes();
  // Adds the shapes of a drawing stream such as SelectionToBytes makes,
  // moved by Offset (model units), as PasteforBlock describes. Throws as
  // LoadFromStream does on damaged data, with the drawing untouched.
  std::vector<TMyShape*> AddShapesFromBytes(const std::vector<std::uint8_t>& bytes, const TMyPoint& offset,
                                            TBlockLayerMode mode);

  // ==== view (tmycad.cpp) ===============================================================
  double GetZoom() const override { return zoom_; }
  // Keeps the previous zoom beside the new one.
  void SetZoom(double value);
  double GetPreviousZoom() const { return previousZoom_; }
  double GetRatio() const override { return ratio_; }
  void SetRatio(double value);
  TUnits GetTheUNIT() const override { return theUnit_; }
  void SetTheUNIT(TUnits value);
  TXYMode GetXYMode() const override { return xyMode_; }
  void SetXYMode(TXYMode value);
  TColor GetColorOfBackGround() const { return colorOfBackGround_; }
  void SetColorOfBackGround(TColor value);
  // The background picture; an empty bitmap shows none.
  const TBitmap& GetBkBitmap() const { return bkBitmap_; }
  void SetBkBitmap(const TBitmap& value);
  TBkBitmapMode GetBkBitmapMode() const { return bkBitmapMode_; }
  void SetBkBitmapMode(TBkBitmapMode value);
  TGridObject* GridOperation() const { return grid_.get(); }
  bool GetCrossLine() const { return crossLine_; }
  void SetCrossLine(bool value);
  bool GetHotShow() const override { return hotShow_; }
  void SetHotShow(bool value);
  std::uint8_t GetHotSize() const override { return hotSize_; }
  void SetHotSize(std::uint8_t value);
  TColor GetColorOfHot() const { return colorOfHot_; }
  // Also replaces the process-wide handle colour.
  void SetColorOfHot(TColor value);
  bool GetShowHotLink() const override { return showHotLink_; }
  void SetShowHotLink(bool value);
  std::int32_t GetControlWidth() const override { return Width(); }
  std::int32_t GetControlHeight() const override { return Height(); }
  TActionTools GetActionTool() const override { return actionTool_; }
  void SetActionTool(TActionTools value) { actionTool_ = value; }
  // The version tag shape readers follow while a drawing is read.
  const std::string& GetDiskFileVersion() const override { return diskFileVersion_; }
  void SetDiskFileVersion(const std::string& version) { diskFileVersion_ = version; }
  TUserData& UserData() { return userData_; }
  TUserData* UserDataPtr() { return &userData_; }
  std::int32_t GetTag() const { return tag_; }
  void SetTag(std::int32_t value) { tag_ = value; }

  // ==== page (page.cpp) ===================================================================
  TPageStyle GetPageStyle() const { return pageStyle_; }
  // Also sets PageWidth and PageHeight: the paper at the screen's pixels per
  // inch, in the current orientation (CustomerPage keeps the sizes).
  void SetPageStyle(TPageStyle value);
  std::int32_t GetPageWidth() const { return pageWidth_; }
  void SetPageWidth(std::int32_t value);
  std::int32_t GetPageHeight() const { return pageHeight_; }
  void SetPageHeight(std::int32_t value);
  // 0 portrait, anything else landscape; a paper style is re-measured.
  std::int32_t GetPageOrientation() const { return pageOrientation_; }
  void SetPageOrientation(std::int32_t value);
  // The paper style whose size (either orientation) is Width x Height pixels
  // at the screen's pixels per inch; CustomerPage when none is.
  TPageStyle GetPageStyleByWH(std::int32_t width, std::int32_t height) const;
  const std::string& GetPageHead() const { return pageHead_; }
  void SetPageHead(const std::string& value);
  const std::string& GetPageFoot() const { return pageFoot_; }
  void SetPageFoot(const std::string& value);
  TFont& PageHeadFont() { return pageHeadFont_; }
  TFont& PageFootFont() { return pageFootFont_; }
  // Alignments: 0 left, 1 right, 2 centre.
  std::int32_t GetPageHeadAlignment() const { return pageHeadAlignment_; }
  void SetPageHeadAlignment(std::int32_t value);
  std::int32_t GetPageFootAlignment() const { return pageFootAlignment_; }
  void SetPageFootAlignment(std::int32_t value);
  std::int32_t GetPageHeadToTop() const { return pageHeadToTop_; }
  void SetPageHeadToTop(std::int32_t value);
  std::int32_t GetPageFootToBottom() const { return pageFootToBottom_; }
  void SetPageFootToBottom(std::int32_t value);
  bool GetPrintABorder() const { return printABorder_; }
  void SetPrintABorder(bool value);
  std::uint8_t GetPrintABordertoLeft() const { return borderLeft_; }
  void SetPrintABordertoLeft(std::uint8_t value);
  std::uint8_t GetPrintABordertoTop() const { return borderTop_; }
  void SetPrintABordertoTop(std::uint8_t value);
  std::uint8_t GetPrintABordertoRight() const { return borderRight_; }
  void SetPrintABordertoRight(std::uint8_t value);
  std::uint8_t GetPrintABordertoBottom() const { return borderBottom_; }
  void SetPrintABordertoBottom(std::uint8_t value);
  bool GetPrintBackground() const { return printBackground_; }
  void SetPrintBackground(bool value);
  // Shapes painted smoothly (antialiased, through a QPainter) instead of the
  // classic pixel-exact picture; off by default. Grid, background and the
  // previews of gestures stay as they are.
  bool GetAntialiased() const { return antialiased_; }
  void SetAntialiased(bool value);
  // Bounding box of the given shapes' points, in model (zoomed) coordinates;
  // the zero rectangle for none.
  TMyRect GetShapesLTRB(const std::vector<TMyShape*>& shapes) const;
  TMyRect GetShapesLTRBinZoom(const std::vector<TMyShape*>& shapes) const;

  // ==== defaults for new shapes ===========================================================
  TPen& Pen() { return pen_; }
  TBrush& Brush() { return brush_; }
  TFont& Font() { return font_; }
  // The same objects by pointer, as the properties hand them to the inspector.
  TPen* PenPtr() { return &pen_; }
  TBrush* BrushPtr() { return &brush_; }
  TFont* FontPtr() { return &font_; }
  TFont* PageHeadFontPtr() { return &pageHeadFont_; }
  TFont* PageFootFontPtr() { return &pageFootFont_; }
  TBitmap* BkBitmapPtr() { return &bkBitmap_; }
  const TPen& GetPen() const override { return pen_; }
  const TBrush& GetBrush() const override { return brush_; }
  const TFont& GetFont() const override { return font_; }
  std::int32_t GetArrowAngle() const override { return arrowAngle_; }
  void SetArrowAngle(std::int32_t value) { arrowAngle_ = value; }
  std::uint8_t GetArrowLength() const override { return arrowLength_; }
  void SetArrowLength(std::uint8_t value) { arrowLength_ = value; }
  std::uint8_t GetArrowOffset() const override { return arrowOffset_; }
  void SetArrowOffset(std::uint8_t value) { arrowOffset_ = value; }
  TArrowStyle GetArrowStyle() const override { return arrowStyle_; }
  void SetArrowStyle(TArrowStyle value) { arrowStyle_ = value; }
  bool GetDragEnable() const override { return dragEnable_; }
  void SetDragEnable(bool value) { dragEnable_ = value; }
  bool GetResizeEnable() const override { return resizeEnable_; }
  void SetResizeEnable(bool value) { resizeEnable_ = value; }
  bool GetRotateEnable() const override { return rotateEnable_; }
  void SetRotateEnable(bool value) { rotateEnable_ = value; }
  TPenStyleJoinType GetPenStyleJoinType() const override { return penStyleJoinType_; }
  void SetPenStyleJoinType(TPenStyleJoinType value) { penStyleJoinType_ = value; }
  TPenStyleEndCapType GetPenStyleEndCapType() const override { return penStyleEndCapType_; }
  void SetPenStyleEndCapType(TPenStyleEndCapType value) { penStyleEndCapType_ = value; }

  // ==== painting (painting.cpp) ==============================================================
  // Paints the whole control now (shapes call it after a visible change);
  // during a bulk update only marks it for the update's end.
  void Repaint() override {
    if (updateDepth_ > 0) return Invalidate();
    TCustomControl::Repaint();
  }
  // A bulk update keeps groups from passing pen, brush and font changes on to
  // their members; calls nest, and the last EndUpdate repaints.
  void BeginUpdate() { ++updateDepth_; }
  void EndUpdate();
  bool IsUpdating() const override { return updateDepth_ > 0; }
  // Renders the device rectangle Clip of the drawing into the back buffer:
  // its top-left Clip-sized part, with (0, 0) standing for Clip's top-left
  // corner. The buffer only grows, so repeated renders allocate nothing.
  // (The control itself paints straight onto its screen bitmap, in place.)
  void DrawAll(const TRect& clip);
  const TBitmap& BackBuffer() const { return backBuffer_; }
  // Fills Rect of Bitmap with ColorOfBackGround.
  void FillBackground(TBitmap& bitmap, const TRect& rect);
  // Fills all of Bitmap for output: ColorOfBackGround with PrintBackground,
  // white otherwise.
  void DrawBackground(TBitmap& bitmap);
  // Draws the background picture with the drawing's origin at (DX, DY) of Bitmap.
  void DrawBkBitmap(TBitmap& bitmap, std::int32_t dx, std::int32_t dy);
  // The grid over Rect (device coordinates of the drawing) on Bitmap.
  void DrawGrid(TBitmap& bitmap, const TRect& rect);
  void DrawBorder(TBitmap& bitmap);
  void DrawHeadFoot(TBitmap& bitmap);
  // The same on any canvas of Size pixels (a printer's page, a vector picture).
  void DrawBackground(TCanvas& canvas, TSize size);
  void DrawBkBitmap(TCanvas& canvas, TSize size, std::int32_t dx, std::int32_t dy);
  void DrawBorder(TCanvas& canvas, TSize size);
  void DrawGrid(TCanvas& canvas, TSize size, const TRect& rect);
  // Head and Foot stand for PageHead and PageFoot (a printed page fills in
  // its fields first).
  void DrawHeadFoot(TCanvas& canvas, TSize page, const std::string& head, const std::string& foot);
  // Draws the visible top-level shapes meeting Rect (device coordinates of
  // the drawing) on Canvas, whose origin is Rect's top-left corner.
  void DrawAllShape(TCanvas& canvas, const TRect& rect);
  // The shapes DrawAllShape would draw, in paint order: the top-level shapes
  // on visible layers of which the indexed box of the shape or of one of its
  // members meets Rect.
  std::vector<TMyShape*> ShapesMeeting(const TRect& rect) const;
  // Hit helpers of earlier paint pipelines (device coordinates of the
  // drawing); the index decides now.
  bool IsPtinRegion(const TRect& r, const TMyShape& shape) const;
  bool IsShapeBigthanRegion(const TRect& r, const TMyShape& shape) const;

  // ==== export (export.cpp) ===================================================================
  // Renders the drawing's extent (every shape on a visible layer, or the
  // selection) at Options.Zoom on the output background. An empty drawing
  // gives an empty bitmap.
  // Throws EPictureTooLarge when the picture would pass the size limits.
  TBitmap RenderToBitmap(const TImageExportOptions& options = {});
  // RenderToBitmap saved by the file's extension: .png, .jpg/.jpeg or .bmp
  // (.svg and .pdf: the vector picture, below),
  // replacing the file whole (SaveBytesToFileAtomically). False (with nothing
  // written) for another extension or nothing to render; a failed write
  // throws EStreamError naming the reason, EPictureTooLarge as RenderToBitmap.
  bool SaveToImageFile(const std::string& fileName, const TImageExportOptions& options = {});

  // ==== vector output (vector_export.cpp) and printing (printing.cpp) ====
  // SaveToImageFile writes .svg and .pdf too: vector paths, real text and
  // embedded pictures, the picture RenderToBitmap would give but sharp at
  // any scale (one drawing pixel at Zoom is 1/(screen pixels per inch) inch).
  // Shapes, with their members, as an SVG document in memory (the
  // clipboard's "image/svg+xml"): the area RenderToBitmap would take for
  // them. Empty for no shapes; EPictureTooLarge as RenderToBitmap.
  std::string RenderToSvg(const std::vector<TMyShape*>& shapes, const TImageExportOptions& options = {});
  // Sets Printer's paper and orientation from PageStyle (PageWidth and
  // PageHeight at the screen's pixels per inch for CustomerPage) and
  // PageOrientation.
  void ApplyPageSetup(QPrinter& printer) const;
  // Prints the drawing (or the selection) on Printer as its page layout
  // stands: the border margins and the header and footer on every page, the
  // header's and footer's fields "[Page]", "[Pages]", "[Date]" and "[File]"
  // filled in. The shapes draw in the printer's colours, or in grey levels
  // on a grey-scale printer. Returns the number of pages printed, 0 when
  // there is nothing to print or the printer does not start.
  std::int32_t Print(QPrinter& printer, const TPrintOptions& options = {});

  // ==== drawing files (drawing_file.cpp) ====
  // A drawing file holds a header (the creator "Ambrel Component", a version
  // tag, the canvas settings, user data and layers), then each shape as its
  // class name padded to 16 bytes and its record, in paint order. Writers
  // always write "XP.j"; readers take every tag from "XP.2" to "XP.j", and
  // the shape records follow the tag of the file being read.
  //
  // A load never leaves the drawing half replaced: the stream is read into a
  // fresh hidden canvas, and only a drawing read to its end moves here.
  // Truncated data throws EReadError; malformed data (an unknown version or
  // class tag, a negative or oversized count or size, an ordinal out of
  // range, an unreadable bitmap) throws EStreamFormatError (both carry the
  // byte offset and the field, persistence/stream_io.h). This canvas is then
  // untouched.

  // Writes the drawing at Stream's position. The stored size is the
  // control's size divided by Zoom, rounded half to even; the layer count is
  // stored modulo 256, followed by that many layers. Returns true.
  bool SaveToStream(TStream& stream) const;
  // Replaces the drawing by the one at the start of Stream: settings, control
  // size (as stored, each side clamped to 0..16384, the largest the back
  // buffer may be), user data, layers, current layer and shapes, each
  // shape's centre set to the centre of its points' box. The next shape
  // (layer) id becomes the highest id read + 1, and 1 when none is above 0.
  // Empties the selection and the undo history, clears Modified, repaints.
  // A drawing with shapes but no layer shows "Error!There is no Layer!",
  // calls the terminate hook and returns false, leaving the canvas as it was.
  bool LoadFromStream(TStream& stream);
  // Writes a temporary file beside FileName and renames it over FileName, so
  // that a failed save leaves an existing file as it was: throws EFOpenError
  // when the temporary file cannot be created, EWriteError when writing or
  // renaming fails. Clears Modified; returns true.
  bool SaveToFile(const std::string& fileName);
  // False, with the drawing untouched, when the file is not a drawing
  // (IsZOLTFile); otherwise LoadFromStream on the file.
  bool LoadFromFile(const std::string& fileName);
  // Whether the file's first 64 bytes, trimmed of spaces, are "Ambrel
  // Component". Throws EFOpenError when the file cannot be opened and
  // EReadError when it is shorter than 64 bytes.
  static bool IsZOLTFile(const std::string& fileName);
  // Adds the drawing at the start of Stream to this one as a block. Its
  // shapes are appended in their order, with new ids (the next shape id plus
  // their position in the block) and their group and connector references
  // moved along, and become the selection, so that a drag places them. Merge
  // puts them on the current layer. Import first adds a visible layer
  // "Block"+name for each block layer past this canvas's layer count (modulo
  // 256), then puts each shape on the layer at the position its layer has in
  // the block (on the current layer when there is none). The control grows
  // to the block's size; BkBitmap (cleared when the block has none),
  // BkBitmapMode and Ratio are the block's; its other settings are dropped.
  // Empties the undo history and sets Modified. Errors as LoadFromStream.
  bool LoadFromStreamforBlock(TStream& stream, TBlockLayerMode mode);
  // LoadFromStreamforBlock on the file; false, with nothing changed, when it
  // is not a drawing (IsZOLTFile).
  bool AddBlockfromZOLTFile(const std::string& fileName, TBlockLayerMode mode);
  // Inserts Shape, just read from a stream, at list position Position
  // (clamped to the list) keeping its layer and its list references as read:
  // a stream's records hold final positions. Unless Loading, the next shape
  // id grows by one. Without layers: as AddShape (message, terminate, false).
  bool AddShapeforLoadfromStream(std::int32_t position, std::unique_ptr<TMyShape> shape, bool loading);
  // Whether the drawing changed since it was created, loaded or saved. Set by
  // AddShape, DeleteShapeById, DeleteAllShapes, block loads, every mouse
  // gesture that changed the drawing, key nudges, alignment and undo; a host
  // that edits shapes directly reports it through SetModified.
  bool GetModified() const { return modified_; }
  void SetModified(bool value) { modified_ = value; }

  // ==== library shapes (library_shapes.cpp) ====
  // Places the entry Name of Lib on the drawing, in front of every shape and
  // on the current layer: its unit coordinates mapped by At (the stored size
  // at (0, 0) by default; link points keep their stored places). Each shape
  // gets a new identity: ShapeId from the next shape id, the name "Shape"+id
  // and its list position; group members, parents and connector ends move to
  // the new positions, and references to shapes outside the entry are
  // dropped. Records one "ACT_ADD" step for the placed top-level shapes,
  // raises OnShapeAdded for each placed shape and repaints. Returns the
  // placed shapes in list order; none when Lib has no such entry. A damaged
  // entry throws (EReadError, EStreamFormatError) with the drawing untouched.
  // Without layers: as AddShape (message, terminate hook, nothing placed).
  std::vector<TMyShape*> AddUserDefineShapefromLib(const TLibManager& lib, const std::string& name,
                                                   const TCmbShapePlacement& at = {});

 protected:
  void Paint() override;
  void BeforePaint() override;
  bool SmoothPicture() const override { return antialiased_; }
  void MouseDown(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y) override;
  void MouseMove(TShiftState shift, std::int32_t x, std::int32_t y) override;
  void MouseUp(TMouseButton button, TShiftState shift, std::int32_t x, std::int32_t y) override;
  void keyPressEvent(QKeyEvent* event) override;
  void CMMouseLeave() override;

 private:
  template <typename T>
  void StoreAndRepaint(T& field, T value) {
    field = value;
    Invalidate();
  }
  // Calls Fn on Shape's members first, then on Shape, as every group-wide
  // edit expects.
  template <typename Fn>
  void ForShapeAndMembers(TMyShape* shape, Fn fn) {
    if (!shape) return;
    const std::vector<TMyShape*> subtree = SubtreeOf(shape);
    for (auto s = subtree.rbegin(); s != subtree.rend(); ++s) fn(**s);
  }
  // Shape and every shape of its group subtree, each group before its members.
  std::vector<TMyShape*> SubtreeOf(TMyShape* shape) const;
  // Gives every stored list position its new value after the list changed:
  // Map(old position) is the new one, -1 for a removed shape.
  void RenumberShapes(const std::function<std::int32_t(std::int32_t)>& map);
  // Asks the processor, in a pass now at list position No, for the shape a
  // memory round trip ahead.
  void PrefetchAhead(std::size_t no) const;
  // Takes Doomed out of the list and answers them (none while an undo keeps
  // them for its redo).
  std::vector<std::unique_ptr<TMyShape>> RemoveShapes(const std::vector<TMyShape*>& doomed);
  // RemoveShapes(Doomed), recorded, when Record is set, as one "ACT_DELETE"
  // step of Roots whose records hold the removed objects themselves.
  void RemoveRecordingDeletion(const std::vector<TMyShape*>& roots, const std::vector<TMyShape*>& doomed,
                               bool record);
  void ForgetShape(const TMyShape* shape);
  TMyShape* AddShapeFromCode(const std::string& className, const std::string& name, const TArrMyPoint& points,
                             float angle);
  void SwapWithNeighbour(TMyShape* shape, bool forward);
  // Moves Shape, a listed top-level shape, past every top-level shape
  // after it (Forward) or before it, each of which steps one top-level place
  // towards where Shape was; group members keep their places.
  void MovePastTopLevel(TMyShape* shape, bool forward);
  // ---- spatial index (spatial.cpp) ----
  // Applies the recorded changes to the index (or rebuilds it), repainting
  // the old and new areas.
  void SyncIndex() const;
  void RegisterShape(TMyShape* shape);
  // Repaints the zoomed box R (grown to whole pixels).
  void InvalidateZoomed(const TMyRect& r);
  // Repaints where Shape and its members are (their indexed boxes).
  void InvalidateShapeArea(TMyShape* shape);
  // Repaints the handles of Shapes (selection changes).
  void InvalidateHandles(std::span<TMyShape* const> shapes);
  // Shapes whose indexed box meets the zoomed R, in Out (cleared first), in
  // list order; with TopLevel only top-level ones.
  void IndexQuery(const TMyRect& r, bool topLevel, std::vector<TMyShape*>& out) const;
  // The pick of ShapeAt, leaving selected shapes out when SkipSelected.
  TMyShape* PickShape(const TPoint& p, bool skipSelected);
  // The drawing's part Clip of the control, on Screen (the control's canvas).
  void PaintDrawing(TCanvas& screen, const TRect& clip);
  // The top-level shapes of Shapes (or those the roots of), each once, in
  // paint order, on visible layers.
  std::vector<TMyShape*> OutputRoots(const std::vector<TMyShape*>& shapes) const;
  std::vector<TMyShape*> OutputRoots(bool selectedOnly) const;
  // The device rectangle at Options.Zoom a picture of Roots covers, margin
  // included; an empty one for no points. Throws EPictureTooLarge.
  TRect OutputArea(const std::vector<TMyShape*>& roots, const TImageExportOptions& options);
  // Draws Roots' Area on a vector canvas of Area's size at Options.Zoom.
  bool SaveToVectorFile(const std::string& fileName, bool pdf, const TImageExportOptions& options);
  void PaintVectorPicture(QPainter& painter, const TRect& area, const std::vector<TMyShape*>& roots,
                          const TImageExportOptions& options);
  TRect VisibleArea() const;
  LayerRec* FindLayer(std::int32_t id);
  const LayerRec* FindLayer(std::int32_t id) const;
  void ApplyPageSize();
  void DrawShapeTree(TCanvas& canvas, TMyShape& shape);
  // Draws Chosen (top-level shapes, with their members) on Canvas whose origin
  // is Rect's top-left corner; with LinkHandles also their link crosses.
  void DrawShapeList(TCanvas& canvas, const TRect& rect, const std::vector<TMyShape*>& chosen, bool linkHandles);

  // view
  double zoom_ = 1.0;
  double previousZoom_ = 1.0;
  double ratio_ = 1.0;
  TUnits theUnit_ = mm;
  TXYMode xyMode_ = Mode0;
  TColor colorOfBackGround_ = clWhite;
  TBitmap bkBitmap_;
  TBkBitmapMode bkBitmapMode_ = Center;
  std::unique_ptr<TGridObject> grid_;
  bool crossLine_ = true;
  bool hotShow_ = true;
  std::uint8_t hotSize_ = 4;
  TColor colorOfHot_ = 0x808080;
  bool showHotLink_ = true;
  TActionTools actionTool_ = dtSelecting;
  std::string diskFileVersion_ = kCurrentFileVersion;
  TUserData userData_;
  std::int32_t tag_ = 0;
  // page
  TPageStyle pageStyle_ = A4;
  std::int32_t pageWidth_ = 0;
  std::int32_t pageHeight_ = 0;
  std::int32_t pageOrientation_ = 0;
  std::string pageHead_;
  std::string pageFoot_;
  TFont pageHeadFont_;
  TFont pageFootFont_;
  std::int32_t pageHeadAlignment_ = 2;
  // Differs from the published default (2) on purpose: a stored 2 is not
  // written to forms, so a reloaded control shows 1.
  std::int32_t pageFootAlignment_ = 1;
  std::int32_t pageHeadToTop_ = 15;
  std::int32_t pageFootToBottom_ = 15;
  bool printABorder_ = true;
  std::uint8_t borderLeft_ = 20;
  std::uint8_t borderTop_ = 20;
  std::uint8_t borderRight_ = 20;
  std::uint8_t borderBottom_ = 20;
  bool printBackground_ = false;
  bool antialiased_ = false;
  // defaults for new shapes
  TPen pen_;
  TBrush brush_;
  TFont font_;
  std::int32_t arrowAngle_ = 0;
  std::uint8_t arrowLength_ = 0;
  std::uint8_t arrowOffset_ = 0;
  TArrowStyle arrowStyle_ = ANone;
  bool dragEnable_ = false;
  bool resizeEnable_ = false;
  bool rotateEnable_ = false;
  TPenStyleJoinType penStyleJoinType_ = psjtROUND;
  TPenStyleEndCapType penStyleEndCapType_ = psectROUND;
  // document
  std::vector<std::unique_ptr<TMyShape>> shapes_;
  std::int32_t nextShapeId_ = 0;
  std::vector<LayerRec> layers_;
  std::int32_t nextLayerId_ = 0;
  std::int32_t currentLayerId_ = -1;
  // The working shapes; each knows its position here (TMyShape::WorkingNo),
  // so that membership needs no table of 100k entries.
  std::vector<TMyShape*> working_;
  bool operateAllLayer_ = true;
  // The spatial index and id index of the shapes (spatial.cpp); rebuilt
  // whole after a zoom or handle-size change or a bulk load.
  std::unique_ptr<TShapeIndex> index_;
  mutable bool indexNeedsRebuild_ = true;
  bool tearingDown_ = false;
  // Reused query results, so hit tests allocate nothing once warm.
  mutable std::vector<TMyShape*> hits_;
  void SetWorking(std::vector<TMyShape*> shapes);
  // Tells the working shapes from First on their positions.
  void NumberWorkingFrom(std::size_t first);
  // painting
  TBitmap backBuffer_;
  bool painting_ = false;
  int updateDepth_ = 0;

  // ---- interaction (interaction.cpp) ----
  void PressWhileDrawing(TShiftState shift, std::int32_t x, std::int32_t y);
  bool PressOnHotPoint(std::int32_t x, std::int32_t y);
  bool PressOnSelectedBody(TShiftState shift, std::int32_t x, std::int32_t y);
  void PressOnUnselected(TShiftState shift, std::int32_t x, std::int32_t y);
  void MoveWhileDrawing(TShiftState shift, std::int32_t x, std::int32_t y);
  void HoverWhileSelecting(std::int32_t x, std::int32_t y);
  void MoveWithButton(TShiftState shift, std::int32_t x, std::int32_t y);
  bool ReleaseOnChild(const TPoint& p);
  bool ReleaseClickThrough(const TPoint& p);
  void ReleaseDrawing(TMouseButton button, TShiftState shift, TPoint p);
  void FinishDrawnShape();
  void ReleaseResizing(TShiftState shift, TPoint p);
  void ReleaseDragging(TPoint p);
  void ReleaseRotating(const TPoint& p);
  void ReleaseNodeRemoving();
  void ReleaseNodeAdding(const TPoint& p);
  void ReleaseDragWhole(TPoint p);
  void ReleaseRubberBand();
  void EndGesture();
  void CancelGesture();
  void NudgeSelection(std::int32_t dx, std::int32_t dy);
  // XOR previews of the running gesture, drawn and erased in pairs.
  void TogglePreview();
  void DrawPreview();
  void ErasePreview();
  void ToggleRubberBand();
  // The cross-hair (cross_hair.cpp): Move erases it where it is on the
  // screen and, while CrossLine is on, draws it at To (none: hidden).
  void ToggleCrossHair(const TPoint& at);
  void MoveCrossHair(std::optional<TPoint> to);
  // Line joining (line_joining.cpp). GetMergeShape: a plain line or poly-line
  // other than Drawn, on its layer, top level, unlocked, without connectors,
  // with an end within HotSize device pixels of End (model coordinates);
  // AtStart tells which end. CreateAndDelete: the poly-line Drawn becomes
  // with the pieces its ends meet (recording their deletion as an undo step
  // and deleting them), or nullptr when it meets none; JoinNewestUndoSteps
  // then makes that step one with the next.
  bool EndsMeet(const TMyPoint& a, const TMyPoint& b) const;
  TMyShape* GetMergeShape(const TMyShape& drawn, const TMyPoint& end, bool& atStart) const;
  std::unique_ptr<TMyShape> CreateAndDelete(const TMyShape& drawn);
  void JoinNewestUndoSteps();
  TMyPoint RotationCenterOf(TMyShape* shape) const;
  TPoint DrawingAnchor() const;
  std::vector<TMyShape*> WholeDragShapes() const;
  // The shapes whose drag preview can show: those of Shapes whose box,
  // shifted by the gesture, meets the visible part of the control (all of
  // them for a small set).
  std::vector<TMyShape*> ShownWhileDragged(const std::vector<TMyShape*>& shapes, bool all) const;
  TRect SelectionBoxInZoom() const;
  TPoint ClampToBounds(const TPoint& p) const;
  void FireShapePoint(const TShapePointEvent& event, TMyShape* shape, TPoint& to);
  // ---- the Bezier chain tool and its node editing (bezier_tool.cpp) ----
  // Press: a new anchor (a double click ends the chain instead). Move with
  // the button down: the anchor's tangent. Release: the tangent's end.
  void PressBezier(TShiftState shift, const TPoint& p);
  void MoveBezier(const TPoint& p);
  void ReleaseBezier(const TPoint& p);
  // Ends the chain being drawn (Enter, double click): added with one
  // "ACT_ADD" step, or dropped when it has fewer than two anchors.
  void FinishBezier();
  bool ReleaseBezierNodeRemoving(TMyShape* shape);
  bool ReleaseBezierNodeAdding(TMyShape* shape, const TPoint& p);
  // ---- the image tool (image_tool.cpp) ----
  // Fills a newly drawn image shape from the file the user picks; false
  // when cancelled or unreadable.
  bool FillImageFromUserFile(TMyShape* image);
  // ---- connectors (connections.cpp, link_tool.cpp) ----
  void SettleLinkLine(TMyLinkLine& link);
  bool SettleLinkEnd(TMyLinkLine& link, TLinkLineEnd end);
  void AttachLinkEnd(TMyLinkLine& link, TLinkLineEnd end, TMyShape& target, std::int32_t pointId);
  void DetachLinkEnd(TMyLinkLine& link, TLinkLineEnd end);
  // Lists a connector just added at the shapes its ends are bound to.
  void ListLinkLineAtEnds(TMyLinkLine& link);
  TArrMyPoint RouteAroundShapes(const TMyLinkLine& link);
  // SizeChangeValue, with the shape's link points keeping their place on
  // its frame.
  void ResizeKeepingLinkPoints(TMyShape& shape, const TMyPoint& a, const TMyPoint& b);
  void AddSideLinkPoints(TMyShape& shape);
  // While a connector is drawn or one of its ends dragged, link points show
  // as crosses, and the one the end would bind to carries an XOR mark.
  bool IsLinkEndDrag() const;
  bool LinkCrossesShown() const;
  void MarkLinkHot(std::optional<TPoint> at);
  // Moves device point P of a dragged connector end (of the end or line
  // being drawn) onto the link point under it, marking that point.
  void TrackLinkEnd(TPoint& p);
  void TrackDrawnEnd(TPoint& p);
  std::optional<TPoint> linkHot_;
  // ---- snapping (snapping.cpp) ----
  bool SnapToGrid(std::int32_t& x, std::int32_t& y) const;
  std::int32_t GridStep(double spacing) const;
  bool FinishShapeByKey();
  void SnapToShapes(std::int32_t& x, std::int32_t& y) const;

  // The in-place text editor (a child widget) and what it edits; the step
  // of a text the tool has just added is its "ACT_ADD".
  QPlainTextEdit* textEditor_ = nullptr;
  TMyShape* editedText_ = nullptr;
  bool editedIsNew_ = false;
  bool OpenTextEditorAt(const TPoint& p);
  // Closes the editor; the text it edited, or null if that has gone.
  TMyText* CloseTextEditor();
  void DropNewText(TMyShape& text);

  TDrawTool shapeTool_ = SpSelecting;
  bool returnToSelecting_ = false;
  bool sideLinkPoints_ = false;
  std::int32_t rotateConstraintDegree_ = 0;
  TDragMode dragMode_ = dgHorz;
  bool dragTrace_ = false;
  bool snap_ = false;
  std::uint8_t snapPixels_ = 0;
  bool snapShape_ = false;
  bool mouseEffect_ = false;
  bool lockBound_ = false;
  bool disableTextInput_ = false;
  bool showHint_ = false;
  bool mouseIsDown_ = false;
  TActionTools savedActionTool_ = dtClose;
  TPoint startPoint_;
  TPoint currentPoint_;
  // The shape being drawn is owned here until it is added.
  std::unique_ptr<TMyShape> pendingShape_;
  TMyShape* currentShape_ = nullptr;
  TMyShape* shapeBeneath_ = nullptr;
  TMyShape* clickedChildShape_ = nullptr;
  TMyShape* hoverShape_ = nullptr;
  bool gestureChanged_ = false;
  // Whether the gesture's XOR preview (the rubber band) is on the screen now.
  bool previewShown_ = false;
  std::optional<TPoint> crossHair_;  // where the cross-hair is on the screen
  bool joinDrawnLine_ = true;        // false when Shift was held at the release
  bool rubberBandShown_ = false;
  void EraseRubberBand();
  // The shapes whose drag preview is on the screen, so that the same ones
  // are drawn again to take it off.
  std::vector<TMyShape*> previewShapes_;

  // ---- undo history (undo.cpp) ----
  std::vector<TSavedShape> undoList_;
  std::uint8_t undoRedoSize_ = 10;
  // Undone steps, the next to redo last.
  std::vector<TRedoStep> redoList_;
  std::int64_t undoMemoryLimit_ = std::int64_t{64} << 20;
  // Non-zero while an undo or redo changes the document: the adds and
  // removals it makes keep the redo steps.
  int replayingHistory_ = 0;
  // While an undo runs: where the shapes it removes go instead of being
  // destroyed (its redo step).
  std::vector<std::unique_ptr<TMyShape>>* undoneShapes_ = nullptr;
  TRedoStep CaptureRedoStep(std::span<const TSavedShape> records);
  void KeepRedoStep(TRedoStep step);
  void RestoreInPlace(TRedoStep& step);
  void RestoreList(TRedoStep& step);
  void TrimHistoryMemory();
  // Appends Records as the newest step, dropping the oldest when full.
  void PushStep(std::vector<TSavedShape> records);
  // Adds and removals outside undo and redo leave the kept documents behind.
  void DropRedoUnlessReplaying() {
    if (replayingHistory_ == 0) redoList_.clear();
  }
  // A copy of Shape owned by this canvas but not in its list, equal in every
  // stored field (the centre too, which Assign recomputes).
  std::unique_ptr<TMyShape> ExactCopy(const TMyShape& shape);
  // ---- alignment (align.cpp) ----
  void ResizeToAverage(bool horizontal);
  // ---- editing commands (transform_commands.cpp, clipboard.cpp) ----
  // The unlocked selected shapes, each with its members, mapped by Map;
  // recorded first as one "ACT_CHANGE" step, connectors following.
  void MapSelection(const std::function<void(TMyShape&)>& map);
  // Grid steps right and down the next paste lands from the copied place:
  // Copy sets 1, Cut 0, and each paste one more.
  std::int32_t nextPasteSteps_ = 0;
  TMyPoint GridOffset(std::int32_t steps) const;
  // Appends the shapes of Block (a parsed stream) with new ids and list
  // positions, each on the layer LayerIds gives for its block layer's
  // position (the current layer for none). Returns them in list order.
  std::vector<TMyShape*> AppendBlockShapes(TMyCAD& block, const std::vector<std::int32_t>& layerIds);
  // ---- grouping (grouping.cpp) ----
  // Double click: selects the front-most member under P of the selected
  // group, or else of the group under P, raising OnChildShapeSelected;
  // false when there is none. Escape: a selected member gives way to its
  // group; false when the selection is not one member.
  bool EnterGroupAt(const TPoint& p);
  bool LeaveGroup();
  TMyShape* GroupAs(const char* className, const std::vector<TMyShape*>& shapes, bool record);

  // ---- drawing files (drawing_file.cpp) ----
  // Reads the drawing at the start of Stream into a fresh hidden canvas that
  // makes shapes as this one would (same zoom and shape defaults); nullptr
  // for a drawing with shapes but no layer.
  // AsBlock: a drawing without layers is read as if it had one.
  std::unique_ptr<TMyCAD> ParseDrawing(TStream& stream, bool asBlock = false) const;
  // The header, settings, user data and layers; then the shape count and
  // each shape as its class tag and record.
  void WriteDrawingHead(TStream& stream) const;
  static void WriteShapeEntry(TStream& stream, TMyShape& shape);
  void TakeShapeDefaultsFrom(const TMyCAD& source);
  void ReadLayers(TStream& stream);
  bool ReadShapes(TStream& stream);
  // Moves Loaded's drawing here in one step; its shapes become this canvas's.
  void TakeDrawing(TMyCAD& loaded);
  void TakeBlock(TMyCAD& block, TBlockLayerMode mode);
  std::vector<std::int32_t> BlockLayerIds(const std::vector<LayerRec>& blockLayers, TBlockLayerMode mode);
  bool modified_ = false;
};

}  // namespace lumatrex
