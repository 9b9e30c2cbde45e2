#include "inspector/property_delegate.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPixmap>
#include <QSpinBox>
#include <QToolButton>

#include "inspector/color_names.h"
#include "inspector/property_dialogs.h"
#include "inspector/property_model.h"
#include "platform/qt_interop.h"

namespace lumatrex {

namespace {

using K = TPropertyKind;

K KindOf(const QModelIndex& index) { return K(index.data(TPropertyModel::KindRole).toInt()); }

QIcon Swatch(TColor color) {
  QPixmap pixmap(12, 12);
  pixmap.fill(ToQColor(color));
  return QIcon(pixmap);
}

// The colour list: the standard colours by name, the current value when it is
// none of them, and "More…" for Qt's colour dialog.
QComboBox* CreateColorList(QWidget* parent) {
  auto* list = new QComboBox(parent);
  for (const TNamedColor& c : StandardColors()) list->addItem(Swatch(c.color), QString::fromLatin1(c.name), c.color);
  list->addItem(QObject::tr("More…"));
  return list;
}

void SelectColor(QComboBox& list, TColor color) {
  int i = list.findData(color);
  if (i < 0) {
    list.insertItem(0, Swatch(color), ColorToText(color), color);
    i = 0;
  }
  list.setCurrentIndex(i);
}

// Parses "[a,b]" (or "a|b") of value names into a set; unknown names are ignored.
int ParseFlags(const QString& text, const QModelIndex& index) {
  const QStringList keys = index.data(TPropertyModel::EnumKeysRole).toStringList();
  const QVariantList values = index.data(TPropertyModel::EnumValuesRole).toList();
  int set = 0;
  for (const QString& name : QString(text).remove('[').remove(']').split(QRegularExpression("[,|]"), Qt::SkipEmptyParts)) {
    const int i = keys.indexOf(name.trimmed());
    if (i >= 0) set |= values[i].toInt();
  }
  return set;
}

}  // namespace

void TPropertyDelegate::CommitNow(QWidget* editor) const {
  emit const_cast<TPropertyDelegate*>(this)->commitData(editor);
}

QWidget* TPropertyDelegate::CreateDialogButton(QWidget* parent, const QModelIndex& index) const {
  auto* box = new QWidget(parent);
  box->setAutoFillBackground(true);
  auto* layout = new QHBoxLayout(box);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(0);
  layout->addWidget(new QLabel(index.data().toString(), box), 1);
  auto* button = new QToolButton(box);
  button->setText(QStringLiteral("…"));
  button->setObjectName("dialogButton");
  layout->addWidget(button);
  box->setFocusProxy(button);
  const QPersistentModelIndex target(index);
  connect(button, &QToolButton::clicked, box, [this, box, target] {
    auto* model = const_cast<QAbstractItemModel*>(target.model());
    if (target.isValid()) EditPropertyInDialog(box, *model, target);
    emit const_cast<TPropertyDelegate*>(this)->closeEditor(box);
  });
  return box;
}

QWidget* TPropertyDelegate::createEditor(QWidget* parent, const QStyleOptionViewItem& option,
                                         const QModelIndex& index) const {
  const QVariantList range = index.data(TPropertyModel::RangeRole).toList();
  switch (KindOf(index)) {
    case K::Integer: {
      auto* spin = new QSpinBox(parent);
      spin->setRange(range[0].toInt(), range[1].toInt());
      return spin;
    }
    case K::Float: {
      auto* spin = new QDoubleSpinBox(parent);
      spin->setRange(range[0].toDouble(), range[1].toDouble());
      spin->setDecimals(4);
      return spin;
    }
    case K::Boolean: {
      auto* check = new QCheckBox(parent);
      check->setAutoFillBackground(true);
      connect(check, &QCheckBox::toggled, this, [this, check] { CommitNow(check); });
      return check;
    }
    case K::Enum: {
      auto* list = new QComboBox(parent);
      list->addItems(index.data(TPropertyModel::EnumKeysRole).toStringList());
      connect(list, &QComboBox::activated, this, [this, list] { CommitNow(list); });
      return list;
    }
    case K::Color: {
      QComboBox* list = CreateColorList(parent);
      const QPersistentModelIndex target(index);
      connect(list, &QComboBox::activated, this, [this, list, target](int i) {
        if (i == list->count() - 1) {  // "More…"
          TColor color = target.data(Qt::EditRole).toInt();
          if (!EditColor(list, color)) return;
          SelectColor(*list, color);
        }
        CommitNow(list);
      });
      return list;
    }
    case K::Font: case K::StringList: case K::Picture: case K::UserData:
      return CreateDialogButton(parent, index);
    case K::String: case K::Flags:
      return new QLineEdit(parent);
    default:
      return QStyledItemDelegate::createEditor(parent, option, index);
  }
}

void TPropertyDelegate::setEditorData(QWidget* editor, const QModelIndex& index) const {
  const QVariant value = index.data(Qt::EditRole);
  if (auto* spin = qobject_cast<QSpinBox*>(editor)) spin->setValue(value.toInt());
  else if (auto* real = qobject_cast<QDoubleSpinBox*>(editor)) real->setValue(value.toDouble());
  else if (auto* check = qobject_cast<QCheckBox*>(editor)) { QSignalBlocker quiet(check); check->setChecked(value.toBool()); }
  else if (auto* list = qobject_cast<QComboBox*>(editor)) {
    if (KindOf(index) == K::Color) SelectColor(*list, value.toInt());
    else list->setCurrentIndex(index.data(TPropertyModel::EnumValuesRole).toList().indexOf(value));
  } else if (auto* line = qobject_cast<QLineEdit*>(editor)) line->setText(KindOf(index) == K::Flags ? index.data().toString() : value.toString());
}

void TPropertyDelegate::setModelData(QWidget* editor, QAbstractItemModel* model, const QModelIndex& index) const {
  QVariant value;
  if (auto* spin = qobject_cast<QSpinBox*>(editor)) value = qlonglong(spin->value());
  else if (auto* real = qobject_cast<QDoubleSpinBox*>(editor)) value = real->value();
  else if (auto* check = qobject_cast<QCheckBox*>(editor)) value = check->isChecked();
  else if (auto* list = qobject_cast<QComboBox*>(editor)) {
    if (list->currentIndex() < 0 || (KindOf(index) == K::Color && !list->currentData().isValid())) return;
    value = KindOf(index) == K::Color ? list->currentData() : index.data(TPropertyModel::EnumValuesRole).toList().value(list->currentIndex());
  } else if (auto* line = qobject_cast<QLineEdit*>(editor)) {
    value = KindOf(index) == K::Flags ? QVariant(ParseFlags(line->text(), index)) : QVariant(line->text());
  } else {
    return;  // dialog editors write when their dialog closes
  }
  model->setData(index, value);
}

void TPropertyDelegate::updateEditorGeometry(QWidget* editor, const QStyleOptionViewItem& option, const QModelIndex&) const {
  editor->setGeometry(option.rect);
}

}  // namespace lumatrex
