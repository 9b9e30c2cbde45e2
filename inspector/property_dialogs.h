// The property dialogs: string lists, pictures, collections (such as the
// canvas's layers), user data, and wrappers around Qt's font and colour
// dialogs that hand the result back in the library's own types. The menu
// editor has its own header.
//
// Each dialog edits a copy and hands it back only when closed with OK, so a
// cancelled dialog leaves the property as it was.
#pragma once

#include <QDialog>
#include <QFont>
#include <QStringList>
#include <functional>

#include "persistence/user_data.h"
#include "platform/bitmap.h"
#include "platform/types.h"

class QAbstractItemModel;
class QModelIndex;
class QLabel;
class QListWidget;
class QPlainTextEdit;
class QPushButton;
class QSpinBox;
class QCheckBox;
class QTreeWidget;
class QLineEdit;

namespace lumatrex {

class TMyCAD;

// Opens the dialog that fits the row (font, colour, string list, picture,
// user data) and writes an accepted result through Model as one edit. True
// when the value was written.
bool EditPropertyInDialog(QWidget* parent, QAbstractItemModel& model, const QModelIndex& index);

// Qt's colour dialog, starting at Color; true (Color set) on OK.
bool EditColor(QWidget* parent, TColor& color);
// Qt's font dialog, starting at Font; true (Font set) on OK.
bool EditFont(QWidget* parent, QFont& font);

// One line per string.
class TStringListDialog : public QDialog {
  Q_OBJECT
 public:
  explicit TStringListDialog(const QStringList& lines, QWidget* parent = nullptr);
  QStringList Lines() const;

 private:
  QPlainTextEdit* editor_;
};

// Load, save, clear and preview a picture. With ShowFilters the image shape's
// grey scale, brightness and contrast are offered too and previewed on a copy;
// the picture itself stays unfiltered, as the shape filters when it draws.
class TPictureDialog : public QDialog {
  Q_OBJECT
 public:
  struct TFilters {
    bool GrayScale = false;
    std::int32_t Brightness = 0;
    std::int32_t Contrast = 0;
  };
  TPictureDialog(const TBitmap& picture, QWidget* parent = nullptr, const TFilters* filters = nullptr);
  const TBitmap& Picture() const { return picture_; }
  TFilters Filters() const;
  // The file actions, also behind the dialog's buttons (which ask for a name).
  bool LoadFrom(const QString& fileName);
  bool SaveTo(const QString& fileName) const;
  void Clear();

 private:
  void UpdatePreview();
  TBitmap picture_;
  QLabel* preview_;
  QCheckBox* grayScale_ = nullptr;
  QSpinBox* brightness_ = nullptr;
  QSpinBox* contrast_ = nullptr;
};

// The items of a list-valued property, reached through the functions the
// caller provides. Items answers the current names; a missing function
// switches its button off.
struct TCollectionAccess {
  std::function<QStringList()> Items;
  std::function<void()> Add;
  std::function<void(int index)> Remove;
  std::function<void(int from, int to)> Move;
};

// The layers of a canvas: add ("Layer" + a number not yet used), delete
// (with their shapes) and move in the canvas's layer list.
TCollectionAccess LayerCollection(TMyCAD& cad);

// Acts on the collection at once (there is nothing to cancel), so it offers
// only a Close button.
class TCollectionEditor : public QDialog {
  Q_OBJECT
 public:
  TCollectionEditor(TCollectionAccess access, QWidget* parent = nullptr);
  QListWidget& List() { return *list_; }

 private:
  void Reload(int current);
  void MoveCurrent(int step);
  TCollectionAccess access_;
  QListWidget* list_;
};

// The key and value of one user data record (TUserKeyAddFrm).
class TUserKeyAddFrm : public QDialog {
  Q_OBJECT
 public:
  explicit TUserKeyAddFrm(QWidget* parent = nullptr);
  QLineEdit* KeyEdit;
  QLineEdit* ValueEdit;
};

// The user data editor (TUserKeyFrm): one row per record, key then value.
// Insert, Edit, Delete and the moves need a selected row; without one they
// show "Please select the Key/Value first." through the platform's message
// hook and do nothing. On OK the records are rebuilt from the rows top to
// bottom with AddKeyandValue, so a later row repeating a key is dropped.
class TUserKeyFrm : public QDialog {
  Q_OBJECT
 public:
  explicit TUserKeyFrm(const TUserData& data, QWidget* parent = nullptr);
  // The rows as user data, as OK stores them.
  TUserData Result() const;
  QTreeWidget* lvKeyValue;

 private:
  // Asks for a key and value (filled with Key and Value); false on Cancel.
  bool AskRecord(QString& key, QString& value);
  bool NeedSelection();
  void AddRow(int at);
  void EditRow();
  void DeleteRow();
  void MoveRow(int step);
};

// Runs the user data editor on Data; true (Data replaced) on OK.
bool EditUserData(QWidget* parent, TUserData& data);

}  // namespace lumatrex
