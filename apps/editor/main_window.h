// The demo editor's main window: the canvas in a scroll area with rulers
// along it, a tool bar with every drawing tool and the editing commands, a
// layers panel, pen/brush/font pickers, grid and snap switches, and a status
// bar showing the mouse position and the measured value.
#pragma once

#include <QMainWindow>
#include <QString>
#include <functional>

class QLabel;
class QScrollArea;
class QActionGroup;

namespace lumatrex {
class TMyCAD;
class TRsRuler;
class TRsRulerCorner;
}  // namespace lumatrex

namespace lumatrex::editor {

class TLayersPanel;

class TMainWindow : public QMainWindow {
  Q_OBJECT

 public:
  TMainWindow();
  TMyCAD& Canvas() { return *cad_; }
  // Zoom of the view; the canvas grows with it inside the scroll area.
  void SetZoom(double zoom);
  // Chooses a tool as its tool-bar button would.
  void ChooseTool(int tool);
  // Brings the panels up to date after the drawing was replaced or edited.
  void DocumentChanged();

 private:
  void BuildFileMenu();
  void ImportDxf();
  void OpenDrawing();
  bool SaveDrawing();
  bool SaveDrawingAs();
  void PlaceFromLibrary();
  // Runs File work, turning a file error into a message box; false on error.
  bool ReportErrors(const std::function<void()>& work);
  void BuildToolBars();
  void BuildMenus();
  void BuildDocks();
  void FitCanvasToPage();
  void UpdateRulers();
  void TrackMouse(int x, int y);
  void PickPenColour();
  void PickBrushColour();
  void PickFont();
  void ZoomToFit();

  TMyCAD* cad_;
  QScrollArea* scroll_;
  TRsRuler* topRuler_;
  TRsRuler* leftRuler_;
  TRsRulerCorner* corner_;
  TLayersPanel* layers_;
  QActionGroup* tools_;
  QLabel* position_;
  QLabel* value_;
  QString fileName_;
};

}  // namespace lumatrex::editor
