// The File menu: new, open, recent files, save, save as, export, library
// placement and quit, and the questions that keep unsaved work from being
// dropped silently.
#include <QCloseEvent>
#include <QFileDialog>
#include <QFileInfo>
#include <QInputDialog>
#include <QMenuBar>
#include <QMessageBox>
#include <QSettings>

#include "canvas/tmycad.h"
#include "dxf/dxf.h"
#include "library/lib_manager.h"
#include "main_window.h"
#include "platform/stream.h"

namespace lumatrex::editor {

namespace {

constexpr int kRecentFiles = 8;
const char* const kRecentKey = "recentFiles";

// Name with ".Suffix" added unless it already ends in one of Known: a
// drawing saved as "plan" (or "plan.v2") must still open as a drawing.
QString WithSuffix(const QString& name, const QString& suffix, const QStringList& known = {}) {
  const QString has = QFileInfo(name).suffix().toLower();
  return has == suffix || known.contains(has) ? name : name + "." + suffix;
}

QSettings Settings() { return QSettings("Lumatrex", "lumatrex-editor"); }

}  // namespace

void TMainWindow::BuildFileMenu() {
  QMenu* file = menuBar()->addMenu(tr("&File"));
  file->addAction(tr("&New"), QKeySequence::New, this, &TMainWindow::NewDrawing);
  file->addAction(tr("&Open..."), QKeySequence::Open, this, &TMainWindow::OpenDrawing);
  QMenu* recent = file->addMenu(tr("Open &recent"));
  connect(recent, &QMenu::aboutToShow, this, [this, recent] { FillRecentMenu(*recent); });
  file->addAction(tr("&Save"), QKeySequence::Save, this, &TMainWindow::SaveDrawing);
  file->addAction(tr("Save &as..."), QKeySequence::SaveAs, this, &TMainWindow::SaveDrawingAs)->setObjectName("saveAs");
  file->addSeparator();
  file->addAction(tr("&Export..."), QKeySequence(tr("Ctrl+E")), this, &TMainWindow::ExportImage);
  AddPrintActions(*file);
  file->addAction(tr("&Place from library..."), this, &TMainWindow::PlaceFromLibrary);
  file->addAction(tr("Import &DXF..."), this, &TMainWindow::ImportDxf);
  file->addAction(tr("Export D&XF..."), this, &TMainWindow::ExportDxf);
  file->addSeparator();
  file->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);
}

void TMainWindow::UpdateTitle() {
  const QString name = fileName_.isEmpty() ? tr("Untitled") : QFileInfo(fileName_).fileName();
  setWindowTitle(name + "[*] \u2014 " + tr("Lumatrex editor"));
  setWindowModified(cad_->GetModified());
}

bool TMainWindow::MaybeSave() {
  if (!cad_->GetModified()) return true;
  const QString name = fileName_.isEmpty() ? tr("Untitled") : QFileInfo(fileName_).fileName();
  const auto answer = QMessageBox::warning(this, tr("Unsaved changes"),
                                           tr("Save the changes to %1 before closing it?").arg(name),
                                           QMessageBox::Save | QMessageBox::Discard | QMessageBox::Cancel,
                                           QMessageBox::Save);
  if (answer == QMessageBox::Save) return SaveDrawing();
  return answer == QMessageBox::Discard;
}

void TMainWindow::closeEvent(QCloseEvent* event) {
  if (MaybeSave())
    event->accept();
  else
    event->ignore();
}

// A blank canvas written and read back gives the new drawing every default
// of a fresh control: one layer, no shapes, no history.
void TMainWindow::NewDrawing() {
  if (!MaybeSave()) return;
  TMyCAD blank;
  TMemoryStream stream;
  blank.SaveToStream(stream);
  stream.SetPosition(0);
  cad_->LoadFromStream(stream);
  fileName_.clear();
  FitCanvasToPage();
  DocumentChanged();
}

void TMainWindow::OpenDrawing() {
  const QString name =
      QFileDialog::getOpenFileName(this, tr("Open drawing"), QString(), tr("Drawings (*.lmx);;All files (*)"));
  if (!name.isEmpty()) OpenFile(name);
}

bool TMainWindow::OpenFile(const QString& path) {
  if (!MaybeSave()) return false;
  bool loaded = false;
  if (!ReportErrors([&] { loaded = cad_->LoadFromFile(path.toStdString()); })) return false;
  if (!loaded) {
    QMessageBox::warning(this, tr("Open drawing"), tr("%1 is not a Lumatrex drawing.").arg(path));
    return false;
  }
  fileName_ = QFileInfo(path).absoluteFilePath();
  RememberRecent(fileName_);
  FitCanvasToPage();
  DocumentChanged();
  return true;
}

bool TMainWindow::SaveDrawing() {
  if (fileName_.isEmpty()) return SaveDrawingAs();
  const bool saved = ReportErrors([this] { cad_->SaveToFile(fileName_.toStdString()); });
  UpdateTitle();
  return saved;
}

bool TMainWindow::SaveDrawingAs() {
  const QString chosen = AskSaveFileName(tr("Save drawing"), fileName_, tr("Drawings (*.lmx)"));
  if (chosen.isEmpty()) return false;
  const QString name = WithSuffix(chosen, "lmx");
  if (!ReportErrors([&] { cad_->SaveToFile(name.toStdString()); })) return false;
  fileName_ = QFileInfo(name).absoluteFilePath();
  RememberRecent(fileName_);
  UpdateTitle();
  return true;
}

void TMainWindow::RememberRecent(const QString& path) {
  QSettings settings = Settings();
  QStringList files = settings.value(kRecentKey).toStringList();
  files.removeAll(path);
  files.prepend(path);
  settings.setValue(kRecentKey, files.mid(0, kRecentFiles));
}

void TMainWindow::FillRecentMenu(QMenu& menu) {
  menu.clear();
  const QStringList files = Settings().value(kRecentKey).toStringList();
  for (const QString& path : files) menu.addAction(path, this, [this, path] { OpenFile(path); });
  if (files.isEmpty()) menu.addAction(tr("No recent files"))->setEnabled(false);
}

bool TMainWindow::ReportErrors(const std::function<void()>& work) {
  try {
    work();
    return true;
  } catch (const std::exception& e) {
    QMessageBox::warning(this, tr("Lumatrex editor"), QString::fromUtf8(e.what()));
    return false;
  }
}

void TMainWindow::PlaceFromLibrary() {
  const QString name =
      QFileDialog::getOpenFileName(this, tr("Shape library"), QString(), tr("Libraries (*.lml);;All files (*)"));
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
  Edited();
}

// DXF drawings have y up from their own origin: the imported shapes are
// moved so that their joint box starts at the drawing's top-left corner.
void TMainWindow::ImportDxf() {
  const QString name = QFileDialog::getOpenFileName(this, tr("Import DXF"), QString(), tr("DXF drawings (*.dxf);;All files (*)"));
  if (name.isEmpty()) return;
  const std::int32_t first = cad_->GetShapesCount();
  TDxfImportSummary summary;
  if (!ReportErrors([&] { summary = LoadFromDxf(*cad_, name.toStdString()); })) return;
  std::vector<TMyShape*> added;
  for (std::int32_t i = first; i < cad_->GetShapesCount(); ++i) added.push_back(cad_->GetShapeByNo(i));
  const TMyRect box = cad_->GetShapesLTRBinZoom(added);
  for (TMyShape* s : added) cad_->DragChangeValueDxDyforShapes(s, 10 - box.Left, 10 - box.Top);
  cad_->Invalidate();
  Edited();
  if (summary.SkippedTotal > 0) {
    QStringList skipped;
    for (const auto& [kind, count] : summary.Skipped) skipped << QString("%1 %2").arg(count).arg(QString::fromStdString(kind));
    QMessageBox::information(this, tr("Import DXF"), tr("Not imported: %1.").arg(skipped.join(", ")));
  }
}

void TMainWindow::ExportDxf() {
  const QString chosen = AskSaveFileName(tr("Export DXF"), QString(), tr("DXF drawings (*.dxf)"));
  if (chosen.isEmpty()) return;
  const QString name = WithSuffix(chosen, "dxf");
  TDxfWarnings warnings;
  if (!ReportErrors([&] { warnings = SaveToDxf(*cad_, name.toStdString()); })) return;
  QStringList lines;
  for (const std::string& w : warnings) lines << QString::fromStdString(w);
  if (!lines.isEmpty()) QMessageBox::information(this, tr("Export DXF"), lines.join('\n'));
}

}  // namespace lumatrex::editor
