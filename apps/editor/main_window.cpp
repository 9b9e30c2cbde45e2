#include "main_window.h"

#include <QActionGroup>
#include <QColorDialog>
#include <QComboBox>
#include <QDockWidget>
#include <QFontDialog>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollArea>
#include <QFileDialog>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QTimer>
#include <QToolBar>
#include <algorithm>
#include <cmath>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "inspector/component_inspector.h"
#include "edit_actions.h"
#include "inspector_dock.h"
#include "layers_panel.h"
#include "platform/qt_interop.h"
#include "platform/screen.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "shapes/connectors.h"
#include "tool_icons.h"
#include "view_navigator.h"

namespace lumatrex::editor {

namespace {

constexpr int kRulerSize = 24;
constexpr double kMinZoom = 0.1, kMaxZoom = 16.0;
constexpr double kDefaultGrid = 20;

struct TToolButton {
  const char* label;
  int tool;  // a TDrawTool or kHandTool
  const char* key;
  const char* hint;  // shown in the status bar while the tool is chosen
};

constexpr const char* kFinishHint = "Click to add points; double-click or Enter to finish, Escape to cancel.";

constexpr TToolButton kTools[] = {
    {"Select", SpSelecting, "V", "Click to select, drag to move; Shift+click adds to the selection."},
    {"Rotate", SpRotateSelecting, "O", "Drag a corner handle to rotate the selection."},
    {"Hand", kHandTool, "H", "Drag to move the view (also: middle button, or Space+drag with any tool)."},
    {"Line", SpLine, "L", "Drag to draw a line."},
    {"Measure", SpRuleLine, "M", "Drag to measure a distance."},
    {"Polyline", SpPolyLine, "Y", kFinishHint},
    {"Freehand", SpFreeLine, "F", "Drag to draw freehand."},
    {"Rectangle", SpRectangle, "R", "Drag to draw a rectangle."},
    {"Ellipse", SpEllipse, "E", "Drag to draw an ellipse."},
    {"Polygon", SpPolygon, "P", kFinishHint},
    {"Curve", SpBLine, "C", kFinishHint},
    {"Arc", SpElliArc, "A", "Drag to draw the frame; then drag the end handles along the outline (Shift: 15\u00b0 steps)."},
    {"Bezier", SpPolyBezier, "Z", "Press for each anchor and drag for its tangent; double-click or Enter to finish."},
    {"Text", SpText, "T", "Drag a frame, then type; Ctrl+Enter or a click outside keeps the text, Escape drops it."},
    {"Image", SpImage, "I", "Drag a frame, then choose a picture file."},
    {"Link point", SpLinkPoint, "K", "Click to place a point connectors can attach to."},
    {"Connector", SpLinkLine, "N", "Drag from one shape's link point (blue cross) to another's; the ends follow the shapes."},
    {"Line connector", SpLineLinkLine, "", "As the connector; picked first where shapes overlap."},
    {"Add node", SpPolylinePolygonPointAdding, "", "Click on a polyline or polygon edge to add a node."},
    {"Remove node", SpPolylinePolygonPointRemoving, "", "Click a node of a polyline or polygon to remove it."},
    {"Move all", SpDragWhole, "", "Drag to move the whole drawing. This cannot be undone."},
    {"Browse", SpBrowse, "B", "Click shapes without changing them."},
};

const TToolButton* FindTool(int tool) {
  for (const TToolButton& b : kTools)
    if (b.tool == tool) return &b;
  return nullptr;
}

// Millimetres (or the canvas's unit) of a length in model pixels.
QString Length(double modelPixels, TUnits unit, double ratio) {
  const double millimetres = modelPixels * 25.4 / ScreenPixelsPerInch() * ratio;
  switch (unit) {
    case pixel: return QString("%1 px").arg(modelPixels * ratio, 0, 'f', 0);
    case mm: return QString("%1 mm").arg(millimetres, 0, 'f', 2);
    case cm: return QString("%1 cm").arg(millimetres / 10, 0, 'f', 2);
    case dm: return QString("%1 dm").arg(millimetres / 100, 0, 'f', 2);
    case m: return QString("%1 m").arg(millimetres / 1000, 0, 'f', 4);
    case inch: return QString("%1 in").arg(millimetres / 25.4, 0, 'f', 3);
  }
  return {};
}

// Forwards the canvas's mouse position, and notes when a gesture or key may
// have changed the drawing, without taking events.
class TCanvasWatcher : public QObject {
 public:
  TCanvasWatcher(std::function<void(int, int)> moved, std::function<void()> edited, QObject* parent)
      : QObject(parent), moved_(std::move(moved)), edited_(std::move(edited)) {}

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    switch (event->type()) {
      case QEvent::MouseMove: {
        const QPoint p = static_cast<QMouseEvent*>(event)->position().toPoint();
        moved_(p.x(), p.y());
        break;
      }
      // The canvas handles these after us: look once it is done.
      case QEvent::MouseButtonRelease:
      case QEvent::MouseButtonDblClick:
      case QEvent::KeyPress: QTimer::singleShot(0, this, edited_); break;
      default: break;
    }
    return false;
  }

 private:
  std::function<void(int, int)> moved_;
  std::function<void()> edited_;
};

}  // namespace

TMainWindow::TMainWindow()
    : cad_(new TMyCAD),
      scroll_(new QScrollArea),
      topRuler_(new TRsRuler),
      leftRuler_(new TRsRuler),
      corner_(new TRsRulerCorner),
      layers_(new TLayersPanel(*cad_)),
      tools_(new QActionGroup(this)),
      navigator_(new TViewNavigator(*scroll_, [this](double f, QPoint at) { ZoomAbout(f, at); }, this)),
      position_(new QLabel),
      sizes_(new QLabel),
      zoomBox_(new QSpinBox) {
  AskSaveFileName = [this](const QString& caption, const QString& start, const QString& filter) {
    return QFileDialog::getSaveFileName(this, caption, start, filter);
  };
  cad_->SetDragMode(dgBoth);
  cad_->SetDragTrace(true);
  cad_->SetResizeEnable(true);
  cad_->SetRotateEnable(true);
  cad_->SetDragEnable(true);
  cad_->SetRotateConstraintDegree(0);
  cad_->SetSnapPixels(5);
  cad_->SetUndoRedoSize(50);
  cad_->SetSideLinkPoints(true);  // drawn boxes take connectors at once
  cad_->setFocusPolicy(Qt::StrongFocus);
  // The navigator goes on last so that it sees events first.
  cad_->installEventFilter(new TCanvasWatcher([this](int x, int y) { TrackMouse(x, y); },
                                              [this] { AfterGesture(); }, this));
  cad_->installEventFilter(navigator_);
  cad_->OnShapeAdded = [this](QObject*, TMyShape*& shape, std::int32_t) {
    // A new connector takes the route style picked on the style bar.
    if (auto* link = dynamic_cast<TMyLinkLine*>(shape)) {
      link->SetLinkLineDrawStyle(linkStyle_);
      cad_->RouteLinkLine(*link);
    }
    DocumentChanged();
  };
  connect(layers_, &TLayersPanel::LayersEdited, this, &TMainWindow::Edited);

  leftRuler_->SetDirection(rdLeft);
  topRuler_->SetHairLine(true);
  leftRuler_->SetHairLine(true);
  topRuler_->setFixedHeight(kRulerSize);
  leftRuler_->setFixedWidth(kRulerSize);
  corner_->setFixedSize(kRulerSize, kRulerSize);

  scroll_->setWidget(cad_);
  scroll_->setBackgroundRole(QPalette::Dark);
  connect(scroll_->horizontalScrollBar(), &QScrollBar::valueChanged, this, [this] { UpdateRulers(); });
  connect(scroll_->verticalScrollBar(), &QScrollBar::valueChanged, this, [this] { UpdateRulers(); });

  auto* central = new QWidget;
  auto* grid = new QGridLayout(central);
  grid->setSpacing(0);
  grid->setContentsMargins(0, 0, 0, 0);
  grid->addWidget(corner_, 0, 0);
  grid->addWidget(topRuler_, 0, 1);
  grid->addWidget(leftRuler_, 1, 0);
  grid->addWidget(scroll_, 1, 1);
  setCentralWidget(central);

  BuildStatusBar();
  BuildToolBars();
  BuildMenus();
  BuildDocks();
  FitCanvasToPage();
  ChooseTool(SpSelecting);
  UpdateTitle();
  resize(1100, 760);
}

void TMainWindow::FitCanvasToPage() {
  const double z = cad_->GetZoom();
  cad_->resize(static_cast<int>(cad_->GetPageWidth() * z), static_cast<int>(cad_->GetPageHeight() * z));
  UpdateRulers();
}

void TMainWindow::SetZoom(double zoom) {
  cad_->SetZoom(std::clamp(zoom, kMinZoom, kMaxZoom));
  FitCanvasToPage();
  const QSignalBlocker quiet(zoomBox_);
  zoomBox_->setValue(static_cast<int>(std::lround(cad_->GetZoom() * 100)));
}

void TMainWindow::ZoomAbout(double factor, QPoint anchor) {
  QScrollBar* h = scroll_->horizontalScrollBar();
  QScrollBar* v = scroll_->verticalScrollBar();
  const double before = cad_->GetZoom();
  const QPointF model = QPointF(anchor - cad_->pos()) / before;
  SetZoom(before * factor);
  // The canvas has its new size now; scroll so that Model is under Anchor again.
  const QPointF device = model * cad_->GetZoom();
  h->setValue(static_cast<int>(std::lround(device.x() - anchor.x())));
  v->setValue(static_cast<int>(std::lround(device.y() - anchor.y())));
}

void TMainWindow::ZoomToFit() {
  const double zx = scroll_->viewport()->width() / static_cast<double>(cad_->GetPageWidth());
  const double zy = scroll_->viewport()->height() / static_cast<double>(cad_->GetPageHeight());
  SetZoom(std::min(zx, zy));
}

// The rulers show millimetres of the drawing: the value at their origin is
// the scrolled-away part, and their scale follows the zoom.
void TMainWindow::UpdateRulers() {
  const double mmPerPixel = 25.4 / ScreenPixelsPerInch() / cad_->GetZoom();
  const auto scale = static_cast<std::int32_t>(std::lround(cad_->GetZoom() * 100));
  topRuler_->SetScale(scale);
  leftRuler_->SetScale(scale);
  topRuler_->SetOffset(scroll_->horizontalScrollBar()->value() * mmPerPixel);
  leftRuler_->SetOffset(scroll_->verticalScrollBar()->value() * mmPerPixel);
}

void TMainWindow::TrackMouse(int x, int y) {
  topRuler_->SetHairLinePos(x - scroll_->horizontalScrollBar()->value());
  leftRuler_->SetHairLinePos(y - scroll_->verticalScrollBar()->value());
  const double z = cad_->GetZoom();
  position_->setText(QString("X %1  Y %2")
                         .arg(Length(x / z, cad_->GetTheUNIT(), cad_->GetRatio()),
                              Length(y / z, cad_->GetTheUNIT(), cad_->GetRatio())));
  ShowSizes();
}

// The size of the shape being drawn or sized, else of the selection.
void TMainWindow::ShowSizes() {
  TMyShape* shape = cad_->GetCurrentShape();
  if (!shape && cad_->GetSelectedShapesCount() == 1) shape = cad_->GetSelectedShape();
  if (!shape || shape->GetPointsCount() == 0) {
    sizes_->clear();
    return;
  }
  sizes_->setText(QString("W %1  H %2")
                      .arg(Length(shape->GetWidth(), cad_->GetTheUNIT(), cad_->GetRatio()),
                           Length(shape->GetHeight(), cad_->GetTheUNIT(), cad_->GetRatio())));
}

void TMainWindow::ChooseTool(int tool) {
  navigator_->SetHandTool(tool == kHandTool);
  // The hand keeps the canvas in browse mode: the navigator takes its drags.
  cad_->SetShapeTool(static_cast<TDrawTool>(tool == kHandTool ? SpBrowse : tool));
  for (QAction* action : tools_->actions())
    if (action->data().toInt() == tool) action->setChecked(true);
  if (const TToolButton* button = FindTool(tool)) statusBar()->showMessage(tr(button->hint));
}

void TMainWindow::DocumentChanged() {
  layers_->Refresh();
  if (components_) components_->SyncFromCanvas();
  cad_->Invalidate();
  const TGridObject& grid = *cad_->GridOperation();
  gridAction_->setChecked(grid.GetGridType() != gNone && grid.GetGridWidth() > 0 && grid.GetGridHeight() > 0);
  snapAction_->setChecked(cad_->GetSnap());
  snapShapeAction_->setChecked(cad_->GetSnapShape());
  AfterGesture();
}

void TMainWindow::AfterGesture() {
  // The canvas may have gone back to selecting after a shape was drawn.
  if (!navigator_->HandTool())
    for (QAction* action : tools_->actions())
      if (action->data().toInt() == cad_->GetShapeTool()) action->setChecked(true);
  ShowSizes();
  UpdateTitle();
}

// Menu commands that change the drawing behind the canvas's back.
void TMainWindow::Edited() {
  cad_->SetModified(true);
  DocumentChanged();
}

void TMainWindow::BuildToolBars() {
  QToolBar* toolBar = new QToolBar(tr("Tools"));
  toolBar->setObjectName("tools");
  addToolBar(Qt::LeftToolBarArea, toolBar);
  tools_->setExclusive(true);
  for (const TToolButton& button : kTools) {
    QAction* action = toolBar->addAction(ToolIcon(button.tool), tr(button.label));
    action->setCheckable(true);
    action->setData(button.tool);
    const QKeySequence key(button.key);
    action->setShortcut(key);
    action->setToolTip(key.isEmpty() ? tr(button.label)
                                     : QString("%1 (%2)").arg(tr(button.label), key.toString(QKeySequence::NativeText)));
    if (button.tool == SpDragWhole) action->setToolTip(tr("Move all: drags the whole drawing; cannot be undone"));
    tools_->addAction(action);
    connect(action, &QAction::triggered, this, [this, tool = button.tool] { ChooseTool(tool); });
  }
  BuildStyleBar();
}

void TMainWindow::BuildStyleBar() {
  QToolBar* style = addToolBar(tr("Style"));
  style->setObjectName("style");
  style->addAction(tr("Pen colour"), this, &TMainWindow::PickPenColour);
  style->addAction(tr("Fill colour"), this, &TMainWindow::PickBrushColour);
  style->addAction(tr("Font"), this, &TMainWindow::PickFont);
  auto* width = new QSpinBox;
  width->setRange(1, 40);
  width->setPrefix(tr("Width "));
  width->setToolTip(tr("Pen width of new shapes"));
  connect(width, &QSpinBox::valueChanged, this, [this](int w) { cad_->Pen().SetWidth(w); });
  style->addWidget(width);
  style->addSeparator();
  gridAction_ = style->addAction(tr("Grid"));
  gridAction_->setCheckable(true);
  gridAction_->setShortcut(QKeySequence(tr("Ctrl+'")));
  gridAction_->setToolTip(tr("Show the grid (Ctrl+')"));
  connect(gridAction_, &QAction::triggered, this, [this](bool on) {
    TGridObject& grid = *cad_->GridOperation();
    grid.SetGridType(on ? gLine : gNone);
    if (on && grid.GetGridWidth() <= 0) grid.SetGridWidth(kDefaultGrid);
    if (on && grid.GetGridHeight() <= 0) grid.SetGridHeight(kDefaultGrid);
  });
  snapAction_ = style->addAction(tr("Snap"));
  snapAction_->setCheckable(true);
  snapAction_->setToolTip(tr("Snap points to the grid"));
  connect(snapAction_, &QAction::triggered, this, [this](bool on) { cad_->SetSnap(on); });
  style->addSeparator();
  auto* route = new QComboBox;
  route->addItems({tr("Straight"), tr("Across, then down"), tr("Down, then across"), tr("Around shapes")});
  route->setCurrentIndex(linkStyle_);
  route->setToolTip(tr("Route of new connectors and of the selected ones"));
  connect(route, &QComboBox::activated, this, [this](int index) { SetLinkStyle(static_cast<TLinkLineDrawStyle>(index)); });
  style->addWidget(route);
  snapShapeAction_ = style->addAction(tr("Snap to shapes"));
  snapShapeAction_->setCheckable(true);
  snapShapeAction_->setToolTip(tr("Snap points to the points of other shapes"));
  connect(snapShapeAction_, &QAction::triggered, this, [this](bool on) { cad_->SetSnapShape(on); });
}

void TMainWindow::SetLinkStyle(TLinkLineDrawStyle style) {
  linkStyle_ = style;
  std::vector<TMyShape*> links;
  for (TMyShape* s : cad_->GetSelectedShapes())
    if (dynamic_cast<TMyLinkLine*>(s)) links.push_back(s);
  if (links.empty()) return;
  cad_->PushtoUndoRedoShapeList(links, ACT_CHANGE);
  for (TMyShape* s : links) {
    auto* link = static_cast<TMyLinkLine*>(s);
    link->SetLinkLineDrawStyle(style);
    cad_->RouteLinkLine(*link);
  }
  Edited();
}

void TMainWindow::BuildMenus() {
  BuildFileMenu();
  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  // One list serves the menu and the canvas's context menu.
  const QList<QAction*> commands = MakeEditActions(this, *cad_, [this] { DocumentChanged(); });
  edit->addActions(commands);
  cad_->addActions(commands);
  cad_->setContextMenuPolicy(Qt::ActionsContextMenu);
  edit->addSeparator();
  edit->addAction(tr("&Delete"), QKeySequence::Delete, this, [this] {
    cad_->DeleteSelectedShapes(true);
    Edited();
  });
  edit->addAction(tr("Select &all"), QKeySequence::SelectAll, this, [this] { cad_->SelectAllShapes(); });
  AddUserDataAction(*edit, *cad_);
  edit->addSeparator();
  edit->addAction(tr("Bring to front"), this, [this] { cad_->BringToFront(cad_->GetSelectedShape(), true); Edited(); });
  edit->addAction(tr("Bring forward"), this, [this] { cad_->BringToFrontByStep(cad_->GetSelectedShape(), true); Edited(); });
  edit->addAction(tr("Send backward"), this, [this] { cad_->SendToBackByStep(cad_->GetSelectedShape(), true); Edited(); });
  edit->addAction(tr("Send to back"), this, [this] { cad_->SendToBack(cad_->GetSelectedShape(), true); Edited(); });

  QMenu* align = menuBar()->addMenu(tr("&Align"));
  const std::pair<const char*, void (TMyCAD::*)()> aligns[] = {
      {"Left", &TMyCAD::AlignLeft},          {"Right", &TMyCAD::AlignRight},
      {"Top", &TMyCAD::AlignTop},            {"Bottom", &TMyCAD::AlignBottom},
      {"Horizontal centres", &TMyCAD::AlignHorizontalCenter},
      {"Vertical centres", &TMyCAD::AlignVerticalCenter},
      {"Same width", &TMyCAD::AverageWidth}, {"Same height", &TMyCAD::AverageHeight},
  };
  for (const auto& [label, command] : aligns)
    align->addAction(tr(label), this, [this, command = command] {
      (cad_->*command)();
      Edited();
    });

  QMenu* view = menuBar()->addMenu(tr("&View"));
  view->addAction(tr("Zoom &in"), QKeySequence::ZoomIn, this, [this] { SetZoom(cad_->GetZoom() * 1.25); })
      ->setObjectName("zoomIn");
  view->addAction(tr("Zoom &out"), QKeySequence::ZoomOut, this, [this] { SetZoom(cad_->GetZoom() / 1.25); })
      ->setObjectName("zoomOut");
  view->addAction(tr("Zoom to &fit"), QKeySequence(tr("Ctrl+9")), this, &TMainWindow::ZoomToFit)
      ->setObjectName("zoomFit");
  view->addAction(tr("&100 %"), QKeySequence(tr("Ctrl+0")), this, [this] { SetZoom(1); })->setObjectName("zoom100");
  view->addSeparator();
  AddSmoothViewAction(*view);
}

void TMainWindow::BuildDocks() {
  auto* dock = new QDockWidget(tr("Layers"), this);
  dock->setObjectName("layers");
  dock->setWidget(layers_);
  addDockWidget(Qt::RightDockWidgetArea, dock);
  components_ = AddInspectorDock(*this, *cad_);
}

void TMainWindow::BuildStatusBar() {
  zoomBox_->setRange(static_cast<int>(kMinZoom * 100), static_cast<int>(kMaxZoom * 100));
  zoomBox_->setSuffix(" %");
  zoomBox_->setValue(100);
  zoomBox_->setKeyboardTracking(false);
  zoomBox_->setToolTip(tr("Zoom (Ctrl+wheel zooms about the mouse)"));
  connect(zoomBox_, &QSpinBox::valueChanged, this, [this](int percent) { SetZoom(percent / 100.0); });
  position_->setMinimumWidth(220);
  sizes_->setObjectName("sizes");
  statusBar()->addPermanentWidget(position_);
  statusBar()->addPermanentWidget(sizes_);
  statusBar()->addPermanentWidget(zoomBox_);
}

void TMainWindow::PickPenColour() {
  const QColor colour = QColorDialog::getColor(ToQColor(cad_->Pen().Color()), this, tr("Pen colour"));
  if (colour.isValid()) cad_->Pen().SetColor(FromQRgb(colour.rgb()));
}

void TMainWindow::PickBrushColour() {
  const QColor colour = QColorDialog::getColor(ToQColor(cad_->Brush().Color()), this, tr("Fill colour"));
  if (colour.isValid()) cad_->Brush().SetColor(FromQRgb(colour.rgb()));
}

void TMainWindow::PickFont() {
  bool ok = false;
  const QFont font = QFontDialog::getFont(&ok, QFont(QString::fromStdString(cad_->Font().Name())), this);
  if (!ok) return;
  cad_->Font().SetName(font.family().toStdString());
  if (font.pointSize() > 0) cad_->Font().SetSize(font.pointSize());
}

}  // namespace lumatrex::editor
