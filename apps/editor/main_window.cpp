#include "main_window.h"

#include <QActionGroup>
#include <QColorDialog>
#include <QDockWidget>
#include <QFileDialog>
#include <QFontDialog>
#include <QInputDialog>
#include <QMessageBox>
#include <QGridLayout>
#include <QLabel>
#include <QMenuBar>
#include <QMouseEvent>
#include <QScrollArea>
#include <QScrollBar>
#include <QSpinBox>
#include <QStatusBar>
#include <QToolBar>

#include "canvas/tmycad.h"
#include "layers_panel.h"
#include "library/lib_manager.h"
#include "platform/qt_interop.h"
#include "platform/screen.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"

namespace lumatrex::editor {

namespace {

constexpr int kRulerSize = 24;

struct TToolButton {
  const char* label;
  TDrawTool tool;
};

constexpr TToolButton kTools[] = {
    {"Select", SpSelecting},       {"Rotate", SpRotateSelecting},  {"Line", SpLine},
    {"Measure", SpRuleLine},       {"Polyline", SpPolyLine},       {"Freehand", SpFreeLine},
    {"Rectangle", SpRectangle},    {"Ellipse", SpEllipse},         {"Polygon", SpPolygon},
    {"Curve", SpBLine},            {"Add node", SpPolylinePolygonPointAdding},
    {"Remove node", SpPolylinePolygonPointRemoving},                {"Pan", SpDragWhole},
    {"Browse", SpBrowse},
};

// Forwards the canvas's mouse position to the rulers without taking events.
class TMouseTracker : public QObject {
 public:
  // Owned by Watched, so it lives exactly as long as the widget it listens to.
  TMouseTracker(QObject* watched, std::function<void(int, int)> moved) : QObject(watched), moved_(std::move(moved)) {
    watched->installEventFilter(this);
  }

 protected:
  bool eventFilter(QObject*, QEvent* event) override {
    if (event->type() == QEvent::MouseMove) {
      const QPoint p = static_cast<QMouseEvent*>(event)->position().toPoint();
      moved_(p.x(), p.y());
    }
    return false;
  }

 private:
  std::function<void(int, int)> moved_;
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
      position_(new QLabel),
      value_(new QLabel) {
  setWindowTitle(tr("Lumatrex editor"));
  cad_->SetDragMode(dgBoth);
  cad_->SetDragTrace(true);
  cad_->SetResizeEnable(true);
  cad_->SetRotateEnable(true);
  cad_->SetDragEnable(true);
  cad_->SetRotateConstraintDegree(0);
  cad_->SetSnapPixels(5);
  cad_->SetUndoRedoSize(50);
  cad_->LabelXY = position_;
  cad_->LabelValue = value_;
  new TMouseTracker(cad_, [this](int x, int y) { TrackMouse(x, y); });
  cad_->OnShapeAdded = [this](QObject*, TMyShape*&, std::int32_t) { DocumentChanged(); };

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

  statusBar()->addWidget(position_);
  statusBar()->addPermanentWidget(value_);
  BuildToolBars();
  BuildMenus();
  BuildDocks();
  FitCanvasToPage();
  ChooseTool(SpSelecting);
  resize(1100, 760);
}

void TMainWindow::FitCanvasToPage() {
  const double z = cad_->GetZoom();
  cad_->resize(static_cast<int>(cad_->GetPageWidth() * z), static_cast<int>(cad_->GetPageHeight() * z));
  UpdateRulers();
}

void TMainWindow::SetZoom(double zoom) {
  cad_->SetZoom(std::clamp(zoom, 0.1, 16.0));
  FitCanvasToPage();
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
}

void TMainWindow::ChooseTool(int tool) {
  cad_->SetShapeTool(static_cast<TDrawTool>(tool));
  for (QAction* action : tools_->actions())
    if (action->data().toInt() == tool) action->setChecked(true);
}

void TMainWindow::DocumentChanged() {
  layers_->Refresh();
  cad_->Invalidate();
}

void TMainWindow::BuildToolBars() {
  QToolBar* toolBar = addToolBar(tr("Tools"));
  toolBar->setObjectName("tools");
  tools_->setExclusive(true);
  for (const TToolButton& button : kTools) {
    QAction* action = toolBar->addAction(tr(button.label));
    action->setCheckable(true);
    action->setData(static_cast<int>(button.tool));
    tools_->addAction(action);
    connect(action, &QAction::triggered, this, [this, tool = button.tool] { ChooseTool(tool); });
  }

  QToolBar* style = addToolBar(tr("Style"));
  style->setObjectName("style");
  style->addAction(tr("Pen colour"), this, &TMainWindow::PickPenColour);
  style->addAction(tr("Fill colour"), this, &TMainWindow::PickBrushColour);
  style->addAction(tr("Font"), this, &TMainWindow::PickFont);
  auto* width = new QSpinBox;
  width->setRange(1, 40);
  width->setPrefix(tr("Width "));
  connect(width, &QSpinBox::valueChanged, this, [this](int w) { cad_->Pen().SetWidth(w); });
  style->addWidget(width);
  QAction* grid = style->addAction(tr("Grid"));
  grid->setCheckable(true);
  connect(grid, &QAction::toggled, this, [this](bool on) {
    cad_->GridOperation()->SetGridWidth(on ? 20 : 0);
    cad_->GridOperation()->SetGridHeight(on ? 20 : 0);
  });
  QAction* snap = style->addAction(tr("Snap"));
  snap->setCheckable(true);
  connect(snap, &QAction::toggled, this, [this](bool on) { cad_->SetSnap(on); });
  QAction* snapShape = style->addAction(tr("Snap to shapes"));
  snapShape->setCheckable(true);
  connect(snapShape, &QAction::toggled, this, [this](bool on) { cad_->SetSnapShape(on); });
}

void TMainWindow::BuildFileMenu() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  file->addAction(tr("&Open..."), QKeySequence::Open, this, &TMainWindow::OpenDrawing);
  file->addAction(tr("&Save"), QKeySequence::Save, this, &TMainWindow::SaveDrawing);
  file->addAction(tr("Save &as..."), QKeySequence::SaveAs, this, &TMainWindow::SaveDrawingAs);
  file->addSeparator();
  file->addAction(tr("&Place from library..."), this, &TMainWindow::PlaceFromLibrary);
  file->addAction(tr("&Export image..."), this, [this] {
    const QString name = QFileDialog::getSaveFileName(this, tr("Export image"), QString(), tr("Images (*.png *.jpg *.bmp)"));
    if (name.isEmpty()) return;
    ReportErrors([&] {
      if (!cad_->SaveToImageFile(name.toStdString()))
        QMessageBox::warning(this, tr("Export image"), tr("The image could not be written."));
    });
  });
  file->addSeparator();
  file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
}

bool TMainWindow::ReportErrors(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const std::exception& e) {
    QMessageBox::warning(this, windowTitle(), QString::fromUtf8(e.what()));
    return false;
  }
}

void TMainWindow::OpenDrawing() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Open drawing"), QString(), tr("Drawings (*.lmx);;All files (*)"));
  if (name.isEmpty()) return;
  bool loaded = false;
  if (!ReportErrors([&] { loaded = cad_->LoadFromFile(name.toStdString()); })) return;
  if (!loaded) {
    QMessageBox::warning(this, tr("Open drawing"), tr("%1 is not a drawing file.").arg(name));
    return;
  }
  fileName_ = name;
  FitCanvasToPage();
  DocumentChanged();
}

bool TMainWindow::SaveDrawing() {
  if (fileName_.isEmpty()) return SaveDrawingAs();
  return ReportErrors([this] { cad_->SaveToFile(fileName_.toStdString()); });
}

bool TMainWindow::SaveDrawingAs() {
  const QString name = QFileDialog::getSaveFileName(this, tr("Save drawing"), fileName_, tr("Drawings (*.lmx)"));
  if (name.isEmpty()) return false;
  fileName_ = name;
  return SaveDrawing();
}

void TMainWindow::PlaceFromLibrary() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Shape library"), QString(), tr("Libraries (*.lml);;All files (*)"));
  if (name.isEmpty()) return;
  TLibManager library;
  if (!ReportErrors([&] { library.LoadFromFile(name.toStdString()); })) return;
  QStringList entries;
  for (std::int32_t i = 0; i < library.GetcmbShapesCount(); ++i)
    entries << QString::fromStdString(library.GetCmbShapesNameByID(i));
  if (entries.isEmpty()) return;
  bool ok = false;
  const QString entry = QInputDialog::getItem(this, tr("Place from library"), tr("Shape:"), entries, 0, false, &ok);
  if (!ok) return;
  ReportErrors([&] { cad_->AddUserDefineShapefromLib(library, entry.toStdString()); });
  DocumentChanged();
}

void TMainWindow::BuildMenus() {
  BuildFileMenu();
  QMenu* edit = menuBar()->addMenu(tr("&Edit"));
  edit->addAction(tr("&Undo"), QKeySequence::Undo, this, [this] {
    cad_->PopFromUndoRedoShapeList();
    DocumentChanged();
  });
  edit->addAction(tr("&Delete"), QKeySequence::Delete, this, [this] {
    cad_->DeleteSelectedShapes(true);
    DocumentChanged();
  });
  edit->addAction(tr("Select &all"), QKeySequence::SelectAll, this, [this] { cad_->SelectAllShapes(); });
  edit->addSeparator();
  edit->addAction(tr("Bring to front"), this, [this] { cad_->BringToFront(cad_->GetSelectedShape(), true); });
  edit->addAction(tr("Bring forward"), this, [this] { cad_->BringToFrontByStep(cad_->GetSelectedShape(), true); });
  edit->addAction(tr("Send backward"), this, [this] { cad_->SendToBackByStep(cad_->GetSelectedShape(), true); });
  edit->addAction(tr("Send to back"), this, [this] { cad_->SendToBack(cad_->GetSelectedShape(), true); });

  QMenu* align = menuBar()->addMenu(tr("&Align"));
  align->addAction(tr("Left"), this, [this] { cad_->AlignLeft(); });
  align->addAction(tr("Right"), this, [this] { cad_->AlignRight(); });
  align->addAction(tr("Top"), this, [this] { cad_->AlignTop(); });
  align->addAction(tr("Bottom"), this, [this] { cad_->AlignBottom(); });
  align->addAction(tr("Horizontal centres"), this, [this] { cad_->AlignHorizontalCenter(); });
  align->addAction(tr("Vertical centres"), this, [this] { cad_->AlignVerticalCenter(); });
  align->addSeparator();
  align->addAction(tr("Same width"), this, [this] { cad_->AverageWidth(); });
  align->addAction(tr("Same height"), this, [this] { cad_->AverageHeight(); });

  QMenu* view = menuBar()->addMenu(tr("&View"));
  view->addAction(tr("Zoom &in"), QKeySequence::ZoomIn, this, [this] { SetZoom(cad_->GetZoom() * 1.25); });
  view->addAction(tr("Zoom &out"), QKeySequence::ZoomOut, this, [this] { SetZoom(cad_->GetZoom() / 1.25); });
  view->addAction(tr("Zoom to &fit"), this, &TMainWindow::ZoomToFit);
  view->addAction(tr("&100 %"), this, [this] { SetZoom(1); });
}

void TMainWindow::BuildDocks() {
  auto* dock = new QDockWidget(tr("Layers"), this);
  dock->setObjectName("layers");
  dock->setWidget(layers_);
  addDockWidget(Qt::RightDockWidgetArea, dock);
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
