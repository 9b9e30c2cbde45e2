// The demo editor's main window: the canvas in a scroll area with rulers
// along it, a tool bar with every drawing tool, the hand tool and the editing
// commands, a layers panel, pen/brush/font pickers, grid and snap switches,
// and a status bar with the mouse position and sizes in the canvas's unit and
// the zoom. The window title names the file and marks unsaved changes;
// replacing the drawing or closing the window asks before dropping them.
//
// Files: main_window.cpp (layout, tools, edit menus, status), file_actions.cpp
// (file menu, save prompts, recent files), output_actions.cpp (print, page
// set-up, export, antialiased view), view_navigator.* (wheel, pan),
// tool_icons.* (tool bar pictures).
#pragma once

#include <QMainWindow>
#include <QString>
#include <functional>

#include "shapes/shape_enums.h"

class QLabel;
class QMenu;
class QScrollArea;
class QSpinBox;
class QActionGroup;

namespace lumatrex {
class TComponentInspector;
class TMyCAD;
class TRsRuler;
class TRsRulerCorner;
}  // namespace lumatrex

namespace lumatrex::editor {

class TLayersPanel;
class TViewNavigator;

// The hand tool is the editor's own: it only moves the view.
inline constexpr int kHandTool = -1;

class TMainWindow : public QMainWindow {
  Q_OBJECT

 public:
  TMainWindow();
  TMyCAD& Canvas() { return *cad_; }
  QScrollArea& ScrollArea() { return *scroll_; }
  // Zoom of the view, clamped to 10..1600 %; the canvas grows with it inside
  // the scroll area.
  void SetZoom(double zoom);
  // Zooms by Factor keeping the drawing point under Anchor (viewport
  // coordinates) where it is.
  void ZoomAbout(double factor, QPoint anchor);
  // Chooses a tool (a TDrawTool or kHandTool) as its tool-bar button would.
  void ChooseTool(int tool);
  // Brings panels, switches and title up to date after the drawing was
  // replaced or edited.
  void DocumentChanged();
  // Opens the drawing Path after offering to save unsaved changes. False,
  // with a message box and the drawing kept, when it cannot be read.
  bool OpenFile(const QString& path);
  // Path of the drawing being edited; empty for a new one.
  const QString& FileName() const { return fileName_; }
  // Asks whether to save unsaved changes (Save, Discard, Cancel); true when
  // the drawing may be dropped now.
  bool MaybeSave();
  // Asks which file to write (caption, suggested name, filter); an empty
  // answer cancels. A QFileDialog by default; tests and hosts may replace it.
  std::function<QString(const QString&, const QString&, const QString&)> AskSaveFileName;

 protected:
  void closeEvent(QCloseEvent* event) override;

 private:
  // file_actions.cpp
  void BuildFileMenu();
  void NewDrawing();
  void ImportDxf();
  void ExportDxf();
  void OpenDrawing();
  bool SaveDrawing();
  bool SaveDrawingAs();
  void PlaceFromLibrary();
  // output_actions.cpp
  void ExportImage();
  void AddPrintActions(QMenu& file);
  void AddSmoothViewAction(QMenu& view);
  // Prints through the print dialog, or shows the print preview.
  void PrintDrawing(bool preview);
  void RememberRecent(const QString& path);
  void FillRecentMenu(QMenu& menu);
  // Runs File work, turning a file error into a message box; false on error.
  bool ReportErrors(const std::function<void()>& work);
  void UpdateTitle();

  // main_window.cpp
  void BuildToolBars();
  void BuildStyleBar();
  void BuildMenus();
  void BuildDocks();
  void BuildStatusBar();
  void FitCanvasToPage();
  void UpdateRulers();
  void TrackMouse(int x, int y);
  void ShowSizes();
  // Title, sizes and tool buttons after a mouse gesture or key on the canvas.
  void AfterGesture();
  void Edited();
  void PickPenColour();
  void PickBrushColour();
  void PickFont();
  void ZoomToFit();
  // Routes the selected connectors and the ones drawn next by Style.
  void SetLinkStyle(TLinkLineDrawStyle style);

  TMyCAD* cad_;
  QScrollArea* scroll_;
  TRsRuler* topRuler_;
  TRsRuler* leftRuler_;
  TRsRulerCorner* corner_;
  TLayersPanel* layers_;
  TComponentInspector* components_ = nullptr;
  QActionGroup* tools_;
  TViewNavigator* navigator_;
  QLabel* position_;
  QLabel* sizes_;
  QSpinBox* zoomBox_;
  QAction* gridAction_ = nullptr;
  QAction* snapAction_ = nullptr;
  QAction* snapShapeAction_ = nullptr;
  QString fileName_;
  TLinkLineDrawStyle linkStyle_ = lldsOrthogonal;
};

}  // namespace lumatrex::editor
