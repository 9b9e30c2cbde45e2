// Rows of TPropertyModel and how they are built from Qt's meta-objects.
// Internal to the inspector.
//
// Every row reads and writes through small functions of the object it is
// asked about, so one tree serves several selected objects. Values travel in
// one form per kind: Integer qlonglong, Float double, String QString, Boolean
// bool, Enum/Flags/Color int, StringList QStringList, Font QFont, Group a
// summary text (QPointF for points), Picture TBitmap*, UserData TUserData*.
#pragma once

#include <QList>
#include <QString>
#include <QStringList>
#include <QVariant>
#include <functional>
#include <memory>
#include <vector>

#include "inspector/property_model.h"

namespace lumatrex {

struct TPropertyNode {
  QString name;
  QString path;  // dotted from the top-level property
  TPropertyKind kind = TPropertyKind::Other;
  QStringList enumKeys;
  QList<int> enumValues;
  double minimum = 0;
  double maximum = 0;
  std::function<QVariant(QObject*)> read;
  std::function<void(QObject*, const QVariant&)> write;  // empty: read-only
  TPropertyNode* parent = nullptr;
  int row = 0;
  std::vector<std::unique_ptr<TPropertyNode>> children;

  TPropertyNode* Add(std::unique_ptr<TPropertyNode> child);
  TPropertyNode* Find(const QString& path);
};

// Sections and rows for the properties every one of Objects has; an empty
// root for no objects.
std::unique_ptr<TPropertyNode> BuildPropertyTree(const std::vector<QObject*>& objects);

// The value cell's text for a value of the row's kind.
QString PropertyDisplayText(const TPropertyNode& node, const QVariant& value);

}  // namespace lumatrex
