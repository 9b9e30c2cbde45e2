// Output from the editor: printing, print preview, page set-up, the export
// of pictures (PNG, JPEG, BMP) and drawings (SVG, PDF) with their options,
// and the antialiased view.
#include <QCheckBox>
#include <QDialog>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFileInfo>
#include <QFormLayout>
#include <QMenu>
#include <QMessageBox>
#include <QPageSetupDialog>
#include <QPrintDialog>
#include <QPrintPreviewDialog>
#include <QPrinter>
#include <QSpinBox>
#include <cmath>

#include "canvas/tmycad.h"
#include "main_window.h"
#include "platform/screen.h"

namespace lumatrex::editor {

namespace {

// One printer for the session, so that a page set-up holds for later prints.
QPrinter& SessionPrinter() {
  static QPrinter printer(QPrinter::HighResolution);
  return printer;
}

// The export options: zoom or dots per inch, selection only, background,
// margin. False when cancelled.
bool AskExportOptions(QWidget* parent, bool hasSelection, TImageExportOptions& options) {
  QDialog dialog(parent);
  dialog.setWindowTitle(QObject::tr("Export options"));
  auto* form = new QFormLayout(&dialog);
  auto* zoom = new QDoubleSpinBox(&dialog);
  zoom->setRange(0.05, 50);
  zoom->setValue(options.Zoom);
  auto* dpi = new QSpinBox(&dialog);
  dpi->setRange(0, 4800);
  dpi->setSpecialValueText(QObject::tr("screen"));
  auto* margin = new QSpinBox(&dialog);
  margin->setRange(0, 1000);
  margin->setValue(options.Margin);
  auto* selected = new QCheckBox(QObject::tr("Selected shapes only"), &dialog);
  selected->setEnabled(hasSelection);
  selected->setChecked(hasSelection);
  auto* background = new QCheckBox(QObject::tr("Background"), &dialog);
  background->setChecked(options.Background);
  form->addRow(QObject::tr("Zoom"), zoom);
  form->addRow(QObject::tr("Dots per inch"), dpi);
  form->addRow(QObject::tr("Margin (pixels)"), margin);
  form->addRow(selected);
  form->addRow(background);
  auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, &dialog);
  QObject::connect(buttons, &QDialogButtonBox::accepted, &dialog, &QDialog::accept);
  QObject::connect(buttons, &QDialogButtonBox::rejected, &dialog, &QDialog::reject);
  form->addRow(buttons);
  if (dialog.exec() != QDialog::Accepted) return false;
  options.Zoom = zoom->value();
  options.Dpi = dpi->value();
  options.Margin = margin->value();
  options.SelectedOnly = selected->isChecked();
  options.Background = background->isChecked();
  return true;
}

}  // namespace

void TMainWindow::AddPrintActions(QMenu& file) {
  file.addAction(tr("&Print..."), QKeySequence::Print, this, [this] { PrintDrawing(false); });
  file.addAction(tr("Print pre&view..."), this, [this] { PrintDrawing(true); });
  file.addAction(tr("Page set&up..."), this, [this] {
    QPrinter& printer = SessionPrinter();
    cad_->ApplyPageSetup(printer);
    QPageSetupDialog dialog(&printer, this);
    if (dialog.exec() != QDialog::Accepted) return;
    // The canvas keeps the page chosen, so that it is saved with the drawing.
    const QPageLayout layout = printer.pageLayout();
    const QSizeF mm = layout.pageSize().size(QPageSize::Millimeter);
    const bool landscape = layout.orientation() == QPageLayout::Landscape;
    const double ppi = ScreenPixelsPerInch();  // the canvas's page sizes are at this resolution
    const auto w = static_cast<std::int32_t>(std::lround((landscape ? mm.height() : mm.width()) / 25.4 * ppi));
    const auto h = static_cast<std::int32_t>(std::lround((landscape ? mm.width() : mm.height()) / 25.4 * ppi));
    const TPageStyle style = cad_->GetPageStyleByWH(w, h);
    cad_->SetPageOrientation(landscape ? 1 : 0);
    cad_->SetPageStyle(style);
    if (style == CustomerPage) {
      cad_->SetPageWidth(w);
      cad_->SetPageHeight(h);
    }
  });
}

void TMainWindow::AddSmoothViewAction(QMenu& view) {
  QAction* smooth = view.addAction(tr("&Antialiased"));
  smooth->setObjectName("antialiased");
  smooth->setCheckable(true);
  smooth->setChecked(cad_->GetAntialiased());
  connect(smooth, &QAction::toggled, this, [this](bool on) { cad_->SetAntialiased(on); });
}

void TMainWindow::PrintDrawing(bool preview) {
  QPrinter& printer = SessionPrinter();
  cad_->ApplyPageSetup(printer);
  TPrintOptions options;
  options.FileName = fileName_.toStdString();
  options.SelectedOnly = cad_->GetWorkingShapesCount() > 0 &&
                         QMessageBox::question(this, tr("Print"), tr("Print only the selected shapes?")) ==
                             QMessageBox::Yes;
  auto print = [this, options](QPrinter* target) { cad_->Print(*target, options); };
  if (preview) {
    QPrintPreviewDialog dialog(&printer, this);
    connect(&dialog, &QPrintPreviewDialog::paintRequested, this, print);
    dialog.exec();
    return;
  }
  QPrintDialog dialog(&printer, this);
  if (dialog.exec() == QDialog::Accepted && cad_->Print(printer, options) == 0)
    QMessageBox::warning(this, tr("Print"), tr("Nothing was printed."));
}

void TMainWindow::ExportImage() {
  const QString chosen = AskSaveFileName(
      tr("Export"), QString(), tr("Pictures and drawings (*.png *.jpg *.jpeg *.bmp *.svg *.pdf)"));
  if (chosen.isEmpty()) return;
  const QString suffix = QFileInfo(chosen).suffix().toLower();
  const bool known = QStringList{"png", "jpg", "jpeg", "bmp", "svg", "pdf"}.contains(suffix);
  const QString name = known ? chosen : chosen + ".png";
  TImageExportOptions options;
  if (!AskExportOptions(this, cad_->GetWorkingShapesCount() > 0, options)) return;
  bool written = false;
  const bool ok = ReportErrors([&] { written = cad_->SaveToImageFile(name.toStdString(), options); });
  if (ok && !written) QMessageBox::warning(this, tr("Export"), tr("%1 could not be written.").arg(name));
}

}  // namespace lumatrex::editor
