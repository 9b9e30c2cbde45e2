// TPropertyModel: the Q_PROPERTYs of one or more QObjects as a two-column
// item model (name, value), so any QTreeView can show and edit them.
//
// Rows: one section per declaring class (most derived last), holding that
// class's properties; pens, brushes, fonts, points and QObject-valued
// properties (the canvas grid) expand into their sub-properties. Only the
// classes above QObject and QWidget are listed, so a control shows its own
// settings rather than Qt's geometry.
//
// With several objects the model lists the properties all of them have (same
// name and type); a value that differs between them shows blank, and an edit
// sets it on every object. Values are read on every data() call, so the model
// is always live; call Refresh() after changing objects behind its back to
// repaint attached views.
//
// Writing goes through the property's setter (or, for sub-properties, the
// sub-object's). Shapes that sit on a canvas get one "ACT_CHANGE" undo step
// per edit, recorded before the change, and the canvas repaints. Undo of that
// step brings back the shape's whole earlier state, including the edited
// property where the shape's Assign (which undo uses) would leave it out.
#pragma once

#include <QAbstractItemModel>
#include <QStringList>
#include <functional>
#include <memory>
#include <vector>

namespace lumatrex {

// What a row holds; decides how it is shown and which editor it gets.
enum class TPropertyKind {
  Section,     // a class heading, no value
  Integer,     // ranged by RangeRole
  Float,
  String,
  Boolean,
  Enum,        // one of EnumKeysRole, shown by name
  Flags,       // a set of EnumKeysRole, shown as "a|b"
  Color,       // a TColor (0x00BBGGRR, negative: system colour)
  StringList,  // edited in the string list dialog
  Picture,     // a TBitmap, edited in the picture dialog
  UserData,    // a TUserData, edited in the user data dialog
  Group,       // sub-properties only (pen, brush, point, sub-object)
  Font,        // a TFont group that also has a font dialog
  Other,       // shown as text, read-only
};

struct TPropertyNode;

class TPropertyModel : public QAbstractItemModel {
  Q_OBJECT

 public:
  enum Role {
    KindRole = Qt::UserRole + 1,  // TPropertyKind as int
    PathRole,                     // "Pen.Color"
    RangeRole,                    // QVariantList{minimum, maximum} for numbers
    EnumKeysRole,                 // QStringList of value names
    EnumValuesRole,               // QVariantList of their values, same order
    ObjectValueRole,              // the first object's raw value (pointers for pictures, user data)
    HasDefaultRole,               // whether ResetToDefault can act
  };

  explicit TPropertyModel(QObject* parent = nullptr);
  ~TPropertyModel() override;

  // Shows the given objects (none: an empty model). The model does not own
  // them; it forgets an object that is destroyed.
  void SetObjects(const std::vector<QObject*>& objects);
  void SetObject(QObject* object) { SetObjects(object ? std::vector<QObject*>{object} : std::vector<QObject*>{}); }
  const std::vector<QObject*>& Objects() const { return objects_; }

  // The value cell of the property at Path ("Visible", "Pen.Color"); invalid
  // when there is none.
  QModelIndex FindProperty(const QString& path) const;
  // Re-reads every value into attached views.
  void Refresh();
  // Sets the row back to the value a new object of the same class has, as one
  // edit. False (nothing done) when no default is known or the row is read-only.
  bool ResetToDefault(const QModelIndex& index);

  // Writes Value to the row on every object. Pictures and user data take a
  // pointer to a replacement (TBitmap*, TUserData*), copied into the object.
  bool setData(const QModelIndex& index, const QVariant& value, int role = Qt::EditRole) override;
  QVariant data(const QModelIndex& index, int role) const override;
  Qt::ItemFlags flags(const QModelIndex& index) const override;
  QVariant headerData(int section, Qt::Orientation orientation, int role) const override;
  QModelIndex index(int row, int column, const QModelIndex& parent = {}) const override;
  QModelIndex parent(const QModelIndex& index) const override;
  int rowCount(const QModelIndex& parent = {}) const override;
  int columnCount(const QModelIndex& parent = {}) const override;

 private:
  TPropertyNode* NodeOf(const QModelIndex& index) const;
  QModelIndex IndexOf(const TPropertyNode* node, int column) const;
  QVariant SharedValue(const TPropertyNode& node) const;
  void Write(const TPropertyNode& node, const QVariant& value);
  void RefreshChildren(const QModelIndex& parent);
  void Forget(QObject* object);

  std::vector<QObject*> objects_;
  std::unique_ptr<TPropertyNode> root_;
  std::vector<QMetaObject::Connection> watches_;
};

}  // namespace lumatrex
