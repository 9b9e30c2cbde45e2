#include "inspector/property_dialogs.h"

#include <QAbstractItemModel>
#include <QCheckBox>
#include <QColorDialog>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QFontDialog>
#include <QFormLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSpinBox>
#include <QTreeWidget>
#include <QVBoxLayout>

#include "canvas/tmycad.h"
#include "inspector/property_model.h"
#include "platform/hooks.h"
#include "platform/qt_interop.h"
#include "shapes/bitmap_filters.h"

namespace lumatrex {

namespace {

QPushButton* AddButton(QBoxLayout* layout, const QString& text, const char* name) {
  auto* button = new QPushButton(text);
  button->setObjectName(QLatin1String(name));
  button->setAutoDefault(false);
  layout->addWidget(button);
  return button;
}

// OK and Cancel at the foot of a dialog, named as the classic forms name them.
void AddOkCancel(QDialog* dialog, QBoxLayout* layout) {
  auto* row = new QHBoxLayout;
  row->addStretch();
  QPushButton* ok = AddButton(row, QObject::tr("OK"), "btnOK");
  ok->setDefault(true);
  QObject::connect(ok, &QPushButton::clicked, dialog, &QDialog::accept);
  QObject::connect(AddButton(row, QObject::tr("Cancel"), "btnCancel"), &QPushButton::clicked, dialog, &QDialog::reject);
  layout->addLayout(row);
}

// The sibling row at Path of the model behind Index, for the image filters.
QModelIndex Sibling(const QAbstractItemModel& model, const QModelIndex& index, const char* name) {
  const QModelIndexList hits = model.match(model.index(0, 0, index.parent().parent()), TPropertyModel::PathRole,
                                           QString::fromLatin1(name), 1, Qt::MatchExactly | Qt::MatchRecursive);
  return hits.isEmpty() ? QModelIndex() : hits.front().siblingAtColumn(1);
}

bool EditPicture(QWidget* parent, QAbstractItemModel& model, const QModelIndex& index) {
  const TBitmap* current = qvariant_cast<TBitmap*>(index.data(TPropertyModel::ObjectValueRole));
  const QModelIndex gray = Sibling(model, index, "GrayScale");
  const QModelIndex bright = Sibling(model, index, "Brightness");
  const QModelIndex contrast = Sibling(model, index, "Contrast");
  const bool hasFilters = gray.isValid() && bright.isValid() && contrast.isValid();
  TPictureDialog::TFilters filters;
  if (hasFilters) filters = {gray.data(Qt::EditRole).toBool(), bright.data(Qt::EditRole).toInt(), contrast.data(Qt::EditRole).toInt()};
  TPictureDialog dialog(current ? *current : TBitmap(), parent, hasFilters ? &filters : nullptr);
  if (dialog.exec() != QDialog::Accepted) return false;
  TBitmap picture = dialog.Picture();
  model.setData(index, QVariant::fromValue(&picture));
  if (hasFilters) {
    model.setData(gray, dialog.Filters().GrayScale);
    model.setData(bright, qlonglong(dialog.Filters().Brightness));
    model.setData(contrast, qlonglong(dialog.Filters().Contrast));
  }
  return true;
}

}  // namespace

bool EditColor(QWidget* parent, TColor& color) {
  const QColor chosen = QColorDialog::getColor(ToQColor(color), parent);
  if (!chosen.isValid()) return false;
  color = FromQRgb(chosen.rgb());
  return true;
}

bool EditFont(QWidget* parent, QFont& font) {
  bool ok = false;
  const QFont chosen = QFontDialog::getFont(&ok, font, parent);
  if (ok) font = chosen;
  return ok;
}

bool EditPropertyInDialog(QWidget* parent, QAbstractItemModel& model, const QModelIndex& index) {
  const QModelIndex cell = index.siblingAtColumn(1);
  switch (TPropertyKind(cell.data(TPropertyModel::KindRole).toInt())) {
    case TPropertyKind::Color: {
      TColor color = cell.data(Qt::EditRole).toInt();
      return EditColor(parent, color) && model.setData(cell, color);
    }
    case TPropertyKind::Font: {
      QFont font = cell.data(TPropertyModel::ObjectValueRole).value<QFont>();
      return EditFont(parent, font) && model.setData(cell, font);
    }
    case TPropertyKind::StringList: {
      TStringListDialog dialog(cell.data(TPropertyModel::ObjectValueRole).toStringList(), parent);
      return dialog.exec() == QDialog::Accepted && model.setData(cell, dialog.Lines());
    }
    case TPropertyKind::UserData: {
      const TUserData* current = qvariant_cast<TUserData*>(cell.data(TPropertyModel::ObjectValueRole));
      TUserData data = current ? *current : TUserData();
      return EditUserData(parent, data) && model.setData(cell, QVariant::fromValue(&data));
    }
    case TPropertyKind::Picture: return EditPicture(parent, model, cell);
    default: return false;
  }
}

// ---- string list ------------------------------------------------------------------

TStringListDialog::TStringListDialog(const QStringList& lines, QWidget* parent) : QDialog(parent) {
  setWindowTitle(tr("String List Editor"));
  auto* layout = new QVBoxLayout(this);
  editor_ = new QPlainTextEdit(lines.join('\n'));
  editor_->setObjectName("lines");
  layout->addWidget(editor_);
  AddOkCancel(this, layout);
}

QStringList TStringListDialog::Lines() const {
  const QString text = editor_->toPlainText();
  return text.isEmpty() ? QStringList() : text.split('\n');
}

// ---- picture ----------------------------------------------------------------------

TPictureDialog::TPictureDialog(const TBitmap& picture, QWidget* parent, const TFilters* filters)
    : QDialog(parent), picture_(picture) {
  setWindowTitle(tr("Picture Editor"));
  auto* layout = new QVBoxLayout(this);
  preview_ = new QLabel;
  preview_->setObjectName("preview");
  preview_->setMinimumSize(160, 120);
  preview_->setAlignment(Qt::AlignCenter);
  layout->addWidget(preview_, 1);
  if (filters) {
    auto* form = new QFormLayout;
    grayScale_ = new QCheckBox;
    grayScale_->setChecked(filters->GrayScale);
    brightness_ = new QSpinBox;
    contrast_ = new QSpinBox;
    for (QSpinBox* spin : {brightness_, contrast_}) spin->setRange(-255, 255);
    brightness_->setValue(filters->Brightness);
    contrast_->setValue(filters->Contrast);
    form->addRow(tr("Grey scale"), grayScale_);
    form->addRow(tr("Brightness"), brightness_);
    form->addRow(tr("Contrast"), contrast_);
    layout->addLayout(form);
    connect(grayScale_, &QCheckBox::toggled, this, &TPictureDialog::UpdatePreview);
    for (QSpinBox* spin : {brightness_, contrast_}) connect(spin, &QSpinBox::valueChanged, this, &TPictureDialog::UpdatePreview);
  }
  auto* files = new QHBoxLayout;
  connect(AddButton(files, tr("Load…"), "btnLoad"), &QPushButton::clicked, this, [this] {
    const QString name = QFileDialog::getOpenFileName(this, tr("Load Picture"), {}, tr("Pictures (*.bmp *.png *.jpg *.jpeg)"));
    if (!name.isEmpty()) LoadFrom(name);
  });
  connect(AddButton(files, tr("Save…"), "btnSave"), &QPushButton::clicked, this, [this] {
    const QString name = QFileDialog::getSaveFileName(this, tr("Save Picture"), {}, tr("Pictures (*.bmp *.png)"));
    if (!name.isEmpty()) SaveTo(name);
  });
  connect(AddButton(files, tr("Clear"), "btnClear"), &QPushButton::clicked, this, &TPictureDialog::Clear);
  layout->addLayout(files);
  AddOkCancel(this, layout);
  UpdatePreview();
}

TPictureDialog::TFilters TPictureDialog::Filters() const {
  if (!grayScale_) return {};
  return {grayScale_->isChecked(), brightness_->value(), contrast_->value()};
}

bool TPictureDialog::LoadFrom(const QString& fileName) {
  const QImage image(fileName);
  if (image.isNull()) return false;
  AssignQImage(picture_, image);
  UpdatePreview();
  return true;
}

bool TPictureDialog::SaveTo(const QString& fileName) const {
  return !picture_.Empty() && ToQImage(picture_).save(fileName);
}

void TPictureDialog::Clear() {
  picture_ = TBitmap();
  UpdatePreview();
}

void TPictureDialog::UpdatePreview() {
  if (picture_.Empty()) {
    preview_->setPixmap({});
    preview_->setText(tr("(None)"));
    return;
  }
  TBitmap shown = picture_;
  const TFilters f = Filters();
  GrayScaleBitmap(shown, f.GrayScale);
  if (f.Brightness != 0) AdjustBrightBitmap(shown, f.Brightness);
  if (f.Contrast != 0) AdjustContrastBitmap(shown, f.Contrast);
  preview_->setPixmap(QPixmap::fromImage(ToQImage(shown)).scaled(preview_->minimumSize(), Qt::KeepAspectRatio));
}

// ---- collection -------------------------------------------------------------------

TCollectionAccess LayerCollection(TMyCAD& cad) {
  TCollectionAccess access;
  access.Items = [&cad] {
    QStringList names;
    for (const LayerRec& layer : cad.Layers()) names << QString::fromStdString(layer.LayerName);
    return names;
  };
  // "Layer" + the first number no layer is named with, as layer names are
  // unique and layers can be renamed and moved.
  access.Add = [&cad] {
    for (int n = cad.GetLayersCount();; ++n)
      if (cad.NewLayer("Layer" + std::to_string(n), true) != -1) return;
  };
  access.Remove = [&cad](int index) { cad.DeleteLayerByID(cad.GetLayerIdByNo(index)); };
  access.Move = [&cad](int from, int to) { cad.MoveLayer(from, to); };
  return access;
}

TCollectionEditor::TCollectionEditor(TCollectionAccess access, QWidget* parent)
    : QDialog(parent), access_(std::move(access)) {
  setWindowTitle(tr("Collection Editor"));
  auto* layout = new QHBoxLayout(this);
  list_ = new QListWidget;
  layout->addWidget(list_, 1);
  auto* buttons = new QVBoxLayout;
  QPushButton* add = AddButton(buttons, tr("Add"), "btnAdd");
  QPushButton* remove = AddButton(buttons, tr("Remove"), "btnRemove");
  QPushButton* up = AddButton(buttons, tr("Move Up"), "btnUp");
  QPushButton* down = AddButton(buttons, tr("Move Down"), "btnDown");
  buttons->addStretch();
  connect(AddButton(buttons, tr("Close"), "btnClose"), &QPushButton::clicked, this, &QDialog::accept);
  layout->addLayout(buttons);
  add->setEnabled(bool(access_.Add));
  remove->setEnabled(bool(access_.Remove));
  up->setEnabled(bool(access_.Move));
  down->setEnabled(bool(access_.Move));
  connect(add, &QPushButton::clicked, this, [this] {
    access_.Add();
    Reload(list_->count());
  });
  connect(remove, &QPushButton::clicked, this, [this] {
    const int row = list_->currentRow();
    if (row < 0) return;
    access_.Remove(row);
    Reload(row);
  });
  connect(up, &QPushButton::clicked, this, [this] { MoveCurrent(-1); });
  connect(down, &QPushButton::clicked, this, [this] { MoveCurrent(1); });
  Reload(0);
}

void TCollectionEditor::Reload(int current) {
  list_->clear();
  list_->addItems(access_.Items());
  list_->setCurrentRow(std::min(current, list_->count() - 1));
}

void TCollectionEditor::MoveCurrent(int step) {
  const int row = list_->currentRow();
  if (row < 0 || row + step < 0 || row + step >= list_->count()) return;
  access_.Move(row, row + step);
  Reload(row + step);
}

// ---- user data --------------------------------------------------------------------

TUserKeyAddFrm::TUserKeyAddFrm(QWidget* parent) : QDialog(parent) {
  setObjectName("TUserKeyAddFrm");
  setWindowTitle(tr("Key and Value"));
  auto* layout = new QVBoxLayout(this);
  auto* form = new QFormLayout;
  KeyEdit = new QLineEdit;
  KeyEdit->setObjectName("KeyEdit");
  ValueEdit = new QLineEdit;
  ValueEdit->setObjectName("ValueEdit");
  form->addRow(tr("Key"), KeyEdit);
  form->addRow(tr("Value"), ValueEdit);
  layout->addLayout(form);
  AddOkCancel(this, layout);
}

TUserKeyFrm::TUserKeyFrm(const TUserData& data, QWidget* parent) : QDialog(parent) {
  setObjectName("TUserKeyFrm");
  setWindowTitle(tr("User Data"));
  auto* layout = new QVBoxLayout(this);
  auto* body = new QHBoxLayout;
  lvKeyValue = new QTreeWidget;
  lvKeyValue->setObjectName("lvKeyValue");
  lvKeyValue->setHeaderLabels({tr("Key"), tr("Value")});
  lvKeyValue->setRootIsDecorated(false);
  for (const TUserDataRecord& r : data.Records())
    new QTreeWidgetItem(lvKeyValue, {QString::fromStdString(r.Key), QString::fromStdString(r.Value)});
  body->addWidget(lvKeyValue, 1);
  auto* buttons = new QVBoxLayout;
  connect(AddButton(buttons, tr("Add…"), "btnAdd"), &QPushButton::clicked, this, [this] { AddRow(lvKeyValue->topLevelItemCount()); });
  connect(AddButton(buttons, tr("Insert…"), "btnInsert"), &QPushButton::clicked, this, [this] {
    if (NeedSelection()) AddRow(lvKeyValue->indexOfTopLevelItem(lvKeyValue->currentItem()));
  });
  connect(AddButton(buttons, tr("Edit…"), "btnEdit"), &QPushButton::clicked, this, &TUserKeyFrm::EditRow);
  connect(AddButton(buttons, tr("Delete"), "btnDelete"), &QPushButton::clicked, this, &TUserKeyFrm::DeleteRow);
  connect(AddButton(buttons, tr("Move Up"), "btnUp"), &QPushButton::clicked, this, [this] { MoveRow(-1); });
  connect(AddButton(buttons, tr("Move Down"), "btnDown"), &QPushButton::clicked, this, [this] { MoveRow(1); });
  buttons->addStretch();
  body->addLayout(buttons);
  layout->addLayout(body);
  AddOkCancel(this, layout);
}

bool TUserKeyFrm::NeedSelection() {
  if (lvKeyValue->currentItem() && lvKeyValue->currentItem()->isSelected()) return true;
  ShowMessage("Please select the Key/Value first.");
  return false;
}

bool TUserKeyFrm::AskRecord(QString& key, QString& value) {
  TUserKeyAddFrm form(this);
  form.KeyEdit->setText(key);
  form.ValueEdit->setText(value);
  if (form.exec() != QDialog::Accepted) return false;
  key = form.KeyEdit->text();
  value = form.ValueEdit->text();
  return true;
}

void TUserKeyFrm::AddRow(int at) {
  QString key, value;
  if (!AskRecord(key, value)) return;
  auto* item = new QTreeWidgetItem({key, value});
  lvKeyValue->insertTopLevelItem(at, item);
  lvKeyValue->setCurrentItem(item);
}

void TUserKeyFrm::EditRow() {
  if (!NeedSelection()) return;
  QTreeWidgetItem* item = lvKeyValue->currentItem();
  QString key = item->text(0), value = item->text(1);
  if (!AskRecord(key, value)) return;
  item->setText(0, key);
  item->setText(1, value);
}

void TUserKeyFrm::DeleteRow() {
  if (NeedSelection()) delete lvKeyValue->currentItem();
}

void TUserKeyFrm::MoveRow(int step) {
  if (!NeedSelection()) return;
  const int row = lvKeyValue->indexOfTopLevelItem(lvKeyValue->currentItem());
  if (row + step < 0 || row + step >= lvKeyValue->topLevelItemCount()) return;
  QTreeWidgetItem* item = lvKeyValue->takeTopLevelItem(row);
  lvKeyValue->insertTopLevelItem(row + step, item);
  lvKeyValue->setCurrentItem(item);
}

TUserData TUserKeyFrm::Result() const {
  TUserData data;
  for (int i = 0; i < lvKeyValue->topLevelItemCount(); ++i)
    data.AddKeyandValue(lvKeyValue->topLevelItem(i)->text(0).toStdString(), lvKeyValue->topLevelItem(i)->text(1).toStdString());
  return data;
}

bool EditUserData(QWidget* parent, TUserData& data) {
  TUserKeyFrm form(data, parent);
  if (form.exec() != QDialog::Accepted) return false;
  data.ClearAll();
  data.Assign(form.Result());
  return true;
}

}  // namespace lumatrex
