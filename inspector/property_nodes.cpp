#include "inspector/property_nodes.h"

#include <QColor>
#include <QFont>
#include <QMetaEnum>
#include <QMetaProperty>
#include <QPointF>
#include <QWidget>
#include <limits>
#include <string>

#include "inspector/color_names.h"
#include "persistence/user_data.h"
#include "platform/bitmap.h"
#include "platform/graphics.h"
#include "platform/qt_interop.h"

namespace lumatrex {

TPropertyNode* TPropertyNode::Add(std::unique_ptr<TPropertyNode> child) {
  child->parent = this;
  child->row = static_cast<int>(children.size());
  children.push_back(std::move(child));
  return children.back().get();
}

TPropertyNode* TPropertyNode::Find(const QString& wanted) {
  if (path == wanted) return this;
  for (auto& child : children)
    if (TPropertyNode* hit = child->Find(wanted)) return hit;
  return nullptr;
}

namespace {

using Read = std::function<QVariant(QObject*)>;
// Finds the object a row's property lives on (the object itself or a sub-object).
using Owner = std::function<QObject*(QObject*)>;

std::unique_ptr<TPropertyNode> MakeNode(const TPropertyNode& parent, const QString& name, TPropertyKind kind) {
  auto node = std::make_unique<TPropertyNode>();
  node->name = name;
  node->path = parent.path.isEmpty() || parent.kind == TPropertyKind::Section ? name : parent.path + '.' + name;
  node->kind = kind;
  return node;
}

void SetEnum(TPropertyNode& node, std::initializer_list<const char*> keys, int firstValue = 0, bool bits = false) {
  int value = bits ? 1 : firstValue;
  for (const char* key : keys) {
    node.enumKeys << QString::fromLatin1(key);
    node.enumValues << value;
    value = bits ? value << 1 : value + 1;
  }
}

void SetRange(TPropertyNode& node, double minimum, double maximum) {
  node.minimum = minimum;
  node.maximum = maximum;
}

// ---- sub-properties of the platform's graphic objects ------------------------

// Adds a row that reaches an object of type T through the pointer the parent
// group's property holds.
template <class T>
TPropertyNode* AddMember(TPropertyNode& group, const Read& pointer, const QString& name, TPropertyKind kind,
                         std::function<QVariant(const T&)> get, std::function<void(T&, const QVariant&)> set) {
  auto node = MakeNode(group, name, kind);
  node->read = [pointer, get](QObject* o) {
    T* target = qvariant_cast<T*>(pointer(o));
    return target ? get(*target) : QVariant();
  };
  node->write = [pointer, set](QObject* o, const QVariant& v) {
    if (T* target = qvariant_cast<T*>(pointer(o))) set(*target, v);
  };
  return group.Add(std::move(node));
}

void AddPenMembers(TPropertyNode& group, const Read& pointer) {
  using K = TPropertyKind;
  AddMember<TPen>(group, pointer, "Color", K::Color, [](const TPen& p) { return QVariant(p.Color()); },
                  [](TPen& p, const QVariant& v) { p.SetColor(v.toInt()); });
  SetEnum(*AddMember<TPen>(group, pointer, "Mode", K::Enum, [](const TPen& p) { return QVariant(int(p.Mode())); },
                           [](TPen& p, const QVariant& v) { p.SetMode(TPenMode(v.toInt())); }),
          {"pmBlack", "pmWhite", "pmNop", "pmNot", "pmCopy", "pmNotCopy", "pmMergePenNot", "pmMaskPenNot",
           "pmMergeNotPen", "pmMaskNotPen", "pmMerge", "pmNotMerge", "pmMask", "pmNotMask", "pmXor", "pmNotXor"});
  SetEnum(*AddMember<TPen>(group, pointer, "Style", K::Enum, [](const TPen& p) { return QVariant(int(p.Style())); },
                           [](TPen& p, const QVariant& v) { p.SetStyle(TPenStyle(v.toInt())); }),
          {"psSolid", "psDash", "psDot", "psDashDot", "psDashDotDot", "psClear", "psInsideFrame", "psUserStyle",
           "psAlternate"});
  // The stored width, so that a file's 0 (drawn one pixel wide) is shown and
  // kept as it is rather than turned into 1.
  SetRange(*AddMember<TPen>(group, pointer, "Width", K::Integer,
                            [](const TPen& p) { return QVariant(qlonglong(p.StoredWidth())); },
                            [](TPen& p, const QVariant& v) { p.SetWidth(v.toInt()); }),
           0, 1000);
}

void AddBrushMembers(TPropertyNode& group, const Read& pointer) {
  using K = TPropertyKind;
  AddMember<TBrush>(group, pointer, "Color", K::Color, [](const TBrush& b) { return QVariant(b.Color()); },
                    [](TBrush& b, const QVariant& v) { b.SetColor(v.toInt()); });
  SetEnum(*AddMember<TBrush>(group, pointer, "Style", K::Enum, [](const TBrush& b) { return QVariant(int(b.Style())); },
                             [](TBrush& b, const QVariant& v) { b.SetStyle(TBrushStyle(v.toInt())); }),
          {"bsSolid", "bsClear", "bsHorizontal", "bsVertical", "bsFDiagonal", "bsBDiagonal", "bsCross", "bsDiagCross"});
}

void AddFontMembers(TPropertyNode& group, const Read& pointer) {
  using K = TPropertyKind;
  AddMember<TFont>(group, pointer, "Color", K::Color, [](const TFont& f) { return QVariant(f.Color()); },
                   [](TFont& f, const QVariant& v) { f.SetColor(v.toInt()); });
  AddMember<TFont>(group, pointer, "Name", K::String, [](const TFont& f) { return QVariant(QString::fromStdString(f.Name())); },
                   [](TFont& f, const QVariant& v) { f.SetName(v.toString().toStdString()); });
  SetRange(*AddMember<TFont>(group, pointer, "Size", K::Integer, [](const TFont& f) { return QVariant(qlonglong(f.Size())); },
                             [](TFont& f, const QVariant& v) { f.SetSize(v.toInt()); }),
           1, 1638);
  SetEnum(*AddMember<TFont>(group, pointer, "Style", K::Flags, [](const TFont& f) { return QVariant(int(f.Style())); },
                            [](TFont& f, const QVariant& v) { f.SetStyle(TFontStyles(v.toInt())); }),
          {"fsBold", "fsItalic", "fsUnderline", "fsStrikeOut"}, 1, true);
}

QFont ToQFont(const TFont& f) {
  QFont font(QString::fromStdString(f.Name()), f.Size());
  font.setBold(f.Style() & fsBold);
  font.setItalic(f.Style() & fsItalic);
  font.setUnderline(f.Style() & fsUnderline);
  font.setStrikeOut(f.Style() & fsStrikeOut);
  return font;
}

void AssignQFont(TFont& f, const QFont& font) {
  f.SetName(font.family().toStdString());
  if (font.pointSize() > 0) f.SetSize(font.pointSize());
  f.SetStyle(TFontStyles((font.bold() ? fsBold : 0) | (font.italic() ? fsItalic : 0) |
                         (font.underline() ? fsUnderline : 0) | (font.strikeOut() ? fsStrikeOut : 0)));
}

// ---- top-level rows ------------------------------------------------------------

bool IsIntegerType(int id) {
  switch (id) {
    case QMetaType::Int: case QMetaType::UInt: case QMetaType::Short: case QMetaType::UShort:
    case QMetaType::Char: case QMetaType::SChar: case QMetaType::UChar: case QMetaType::Long:
    case QMetaType::ULong: case QMetaType::LongLong: case QMetaType::ULongLong:
      return true;
    default:
      return false;
  }
}

// Spin boxes hold ints, so wider types are edited within the int range.
void SetIntegerRange(TPropertyNode& node, int id) {
  switch (id) {
    case QMetaType::UChar: return SetRange(node, 0, 255);
    case QMetaType::Char: case QMetaType::SChar: return SetRange(node, -128, 127);
    case QMetaType::UShort: return SetRange(node, 0, 65535);
    case QMetaType::Short: return SetRange(node, -32768, 32767);
    case QMetaType::UInt: case QMetaType::ULong: case QMetaType::ULongLong:
      return SetRange(node, 0, std::numeric_limits<int>::max());
    default: return SetRange(node, std::numeric_limits<int>::min(), std::numeric_limits<int>::max());
  }
}

// Colours are plain 32-bit integers (TColor), so the name tells them apart.
bool IsColorName(const QString& name) { return name.contains(QLatin1String("Color")); }

void BuildMembers(TPropertyNode& section, const QMetaObject& meta, int first, int last, const Owner& owner, int depth);

void AddProperty(TPropertyNode& section, const QMetaProperty& property, const Owner& owner, int depth) {
  using K = TPropertyKind;
  const QByteArray name = property.name();
  const QMetaType type = property.metaType();
  const int id = type.id();
  const Read raw = [owner, name](QObject* o) {
    QObject* target = owner(o);
    return target ? target->property(name.constData()) : QVariant();
  };
  const auto store = [owner, name, type](QObject* o, QVariant v) {
    if (QObject* target = owner(o); target && v.convert(type)) target->setProperty(name.constData(), v);
  };
  const bool writable = property.isWritable();
  auto node = MakeNode(section, QString::fromLatin1(name), K::Other);
  TPropertyNode& n = *node;
  n.read = raw;
  if (writable) n.write = store;

  if (property.isEnumType()) {
    const QMetaEnum e = property.enumerator();
    n.kind = e.isFlag() ? K::Flags : K::Enum;
    for (int i = 0; i < e.keyCount(); ++i) {
      n.enumKeys << QString::fromLatin1(e.key(i));
      n.enumValues << e.value(i);
    }
    n.read = [raw](QObject* o) { return QVariant(raw(o).toInt()); };
  } else if (id == QMetaType::Bool) {
    n.kind = K::Boolean;
  } else if (IsIntegerType(id) && IsColorName(n.name)) {
    n.kind = K::Color;
    n.read = [raw](QObject* o) { return QVariant(raw(o).toInt()); };
  } else if (IsIntegerType(id)) {
    n.kind = K::Integer;
    SetIntegerRange(n, id);
    n.read = [raw](QObject* o) { return QVariant(raw(o).toLongLong()); };
  } else if (id == QMetaType::Float || id == QMetaType::Double) {
    n.kind = K::Float;
    SetRange(n, -1e9, 1e9);
    n.read = [raw](QObject* o) { return QVariant(raw(o).toDouble()); };
  } else if (id == QMetaType::QString) {
    n.kind = K::String;
  } else if (type == QMetaType::fromType<std::string>()) {
    n.kind = K::String;
    n.read = [raw](QObject* o) { return QVariant(QString::fromStdString(raw(o).value<std::string>())); };
    if (writable) n.write = [store](QObject* o, const QVariant& v) { store(o, QVariant::fromValue(v.toString().toStdString())); };
  } else if (id == QMetaType::QStringList) {
    n.kind = K::StringList;
  } else if (type == QMetaType::fromType<std::vector<std::string>>()) {
    n.kind = K::StringList;
    n.read = [raw](QObject* o) {
      QStringList lines;
      for (const std::string& line : raw(o).value<std::vector<std::string>>()) lines << QString::fromStdString(line);
      return QVariant(lines);
    };
    if (writable)
      n.write = [store](QObject* o, const QVariant& v) {
        std::vector<std::string> lines;
        for (const QString& line : v.toStringList()) lines.push_back(line.toStdString());
        store(o, QVariant::fromValue(lines));
      };
  } else if (id == QMetaType::QColor) {
    n.kind = K::Color;
    n.read = [raw](QObject* o) { return QVariant(FromQRgb(raw(o).value<QColor>().rgb())); };
    if (writable) n.write = [store](QObject* o, const QVariant& v) { store(o, ToQColor(v.toInt())); };
  } else if (id == QMetaType::QPoint || id == QMetaType::QPointF) {
    n.kind = K::Group;
    n.read = [raw](QObject* o) { return QVariant(raw(o).toPointF()); };
    for (const char* axis : {"X", "Y"}) {
      const bool isX = axis[0] == 'X';
      auto member = MakeNode(n, QString::fromLatin1(axis), K::Float);
      SetRange(*member, -1e9, 1e9);
      member->read = [raw, isX](QObject* o) { const QPointF p = raw(o).toPointF(); return QVariant(isX ? p.x() : p.y()); };
      if (writable)
        member->write = [raw, store, isX](QObject* o, const QVariant& v) {
          QPointF p = raw(o).toPointF();
          (isX ? p.rx() : p.ry()) = v.toDouble();
          store(o, p);
        };
      n.Add(std::move(member));
    }
  } else if (type == QMetaType::fromType<TPen*>() || type == QMetaType::fromType<TBrush*>()) {
    n.kind = K::Group;
    const QString summary = type == QMetaType::fromType<TPen*>() ? "(TPen)" : "(TBrush)";
    n.read = [summary](QObject*) { return QVariant(summary); };
    n.write = nullptr;
    type == QMetaType::fromType<TPen*>() ? AddPenMembers(n, raw) : AddBrushMembers(n, raw);
  } else if (type == QMetaType::fromType<TFont*>()) {
    n.kind = K::Font;
    n.read = [raw](QObject* o) {
      TFont* f = qvariant_cast<TFont*>(raw(o));
      return f ? QVariant(ToQFont(*f)) : QVariant();
    };
    n.write = [raw](QObject* o, const QVariant& v) {
      if (TFont* f = qvariant_cast<TFont*>(raw(o))) AssignQFont(*f, v.value<QFont>());
    };
    AddFontMembers(n, raw);
  } else if (type == QMetaType::fromType<TBitmap*>()) {
    n.kind = K::Picture;
    n.write = [raw](QObject* o, const QVariant& v) {
      TBitmap* target = qvariant_cast<TBitmap*>(raw(o));
      const TBitmap* source = qvariant_cast<TBitmap*>(v);
      if (target && source) target->Assign(*source);
    };
  } else if (type == QMetaType::fromType<TUserData*>()) {
    n.kind = K::UserData;
    n.write = [raw](QObject* o, const QVariant& v) {
      TUserData* target = qvariant_cast<TUserData*>(raw(o));
      const TUserData* source = qvariant_cast<TUserData*>(v);
      if (target && source) target->Assign(*source);
    };
  } else if ((type.flags() & QMetaType::PointerToQObject) && type.metaObject() && depth < 2) {
    n.kind = K::Group;
    n.write = nullptr;
    const QString summary = QStringLiteral("(%1)").arg(QString::fromLatin1(type.metaObject()->className()).section("::", -1));
    n.read = [summary](QObject*) { return QVariant(summary); };
    BuildMembers(n, *type.metaObject(), type.metaObject()->propertyOffset(), type.metaObject()->propertyCount(),
                 [raw](QObject* o) { return raw(o).value<QObject*>(); }, depth + 1);
  } else {
    n.write = nullptr;
  }
  section.Add(std::move(node));
}

void BuildMembers(TPropertyNode& section, const QMetaObject& meta, int first, int last, const Owner& owner, int depth) {
  for (int i = first; i < last; ++i) AddProperty(section, meta.property(i), owner, depth);
}

// A property counts as shared when every object has one of that name and type.
bool SharedByAll(const QMetaProperty& property, const std::vector<QObject*>& objects) {
  for (QObject* o : objects) {
    const int i = o->metaObject()->indexOfProperty(property.name());
    if (i < 0 || o->metaObject()->property(i).metaType() != property.metaType()) return false;
  }
  return true;
}

// Qt's own base classes hold geometry, palettes and the like, which belong to
// a form designer rather than to our inspector.
bool IsQtBase(const QMetaObject* meta) {
  return meta == &QObject::staticMetaObject || meta == &QWidget::staticMetaObject;
}

}  // namespace

std::unique_ptr<TPropertyNode> BuildPropertyTree(const std::vector<QObject*>& objects) {
  auto root = std::make_unique<TPropertyNode>();
  root->kind = TPropertyKind::Section;
  if (objects.empty()) return root;
  std::vector<const QMetaObject*> chain;
  for (const QMetaObject* m = objects.front()->metaObject(); m && !IsQtBase(m); m = m->superClass()) chain.insert(chain.begin(), m);
  const Owner self = [](QObject* o) { return o; };
  for (const QMetaObject* meta : chain) {
    auto section = MakeNode(*root, QString::fromLatin1(meta->className()).section("::", -1), TPropertyKind::Section);
    section->path.clear();
    for (int i = meta->propertyOffset(); i < meta->propertyCount(); ++i)
      if (SharedByAll(meta->property(i), objects)) AddProperty(*section, meta->property(i), self, 0);
    if (!section->children.empty()) root->Add(std::move(section));
  }
  return root;
}

QString PropertyDisplayText(const TPropertyNode& node, const QVariant& value) {
  using K = TPropertyKind;
  if (!value.isValid()) return {};
  switch (node.kind) {
    case K::Enum: {
      const int i = node.enumValues.indexOf(value.toInt());
      return i >= 0 ? node.enumKeys[i] : QString::number(value.toInt());
    }
    case K::Flags: {
      QStringList set;
      for (int i = 0; i < node.enumKeys.size(); ++i)
        if (node.enumValues[i] != 0 && (value.toInt() & node.enumValues[i]) == node.enumValues[i]) set << node.enumKeys[i];
      return '[' + set.join(',') + ']';
    }
    case K::Color: return ColorToText(value.toInt());
    case K::Boolean: return value.toBool() ? QStringLiteral("True") : QStringLiteral("False");
    case K::StringList: return QStringLiteral("(%1 lines)").arg(value.toStringList().size());
    case K::Font: {
      const QFont f = value.value<QFont>();
      return QStringLiteral("%1, %2pt").arg(f.family()).arg(f.pointSize());
    }
    case K::Picture: {
      const TBitmap* b = qvariant_cast<TBitmap*>(value);
      return !b || b->Empty() ? QStringLiteral("(None)") : QStringLiteral("(TBitmap %1 x %2)").arg(b->Width()).arg(b->Height());
    }
    case K::UserData: {
      const TUserData* d = qvariant_cast<TUserData*>(value);
      return QStringLiteral("(%1 records)").arg(d ? d->GetCount() : 0);
    }
    case K::Group:
      if (value.typeId() == QMetaType::QPointF)
        return QStringLiteral("(%1, %2)").arg(value.toPointF().x()).arg(value.toPointF().y());
      return value.toString();
    default: return value.toString();
  }
}

}  // namespace lumatrex
