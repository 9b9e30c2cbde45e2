#include <gtest/gtest.h>

#include <QFont>

#include "inspector/inspector_fixture.h"
#include "inspector/property_model.h"
#include "ruler/ruler.h"
#include "ruler/ruler_corner.h"
#include "platform/stream.h"
#include "shapes/shape_factory.h"

namespace lumatrex {
namespace {

using K = TPropertyKind;
using test::AddShape;
using test::UndoSteps;

TPropertyKind KindAt(const TPropertyModel& model, const QString& path) {
  return TPropertyKind(model.data(model.FindProperty(path), TPropertyModel::KindRole).toInt());
}

QString TextAt(const TPropertyModel& model, const QString& path) {
  return model.data(model.FindProperty(path), Qt::DisplayRole).toString();
}

TEST(TPropertyModel, ListsAShapesPropertiesWithTheirKindsAndValueNames) {
  TMyCAD cad;
  TMyShape* shape = AddShape(cad, "TMyRectangle");
  shape->SetGradientStyle(gsLinearH);
  shape->Font().SetStyle(fsBold | fsItalic);
  TPropertyModel model;
  model.SetObject(shape);
  struct Case { const char* path; TPropertyKind kind; const char* text; };
  const Case cases[] = {
      {"Tag", K::Integer, "0"},
      {"Angle", K::Float, "0"},
      {"Caption", K::String, nullptr},
      {"Visible", K::Boolean, "True"},
      {"GradientStyle", K::Enum, "gsLinearH"},
      {"MultiInfoAlignment", K::Enum, nullptr},
      {"ColorBegin", K::Color, "clWhite"},
      {"Pen", K::Group, "(TPen)"},
      {"Pen.Style", K::Enum, "psSolid"},
      {"Brush.Color", K::Color, nullptr},
      {"Font", K::Font, nullptr},
      {"Font.Style", K::Flags, "[fsBold,fsItalic]"},
      {"MultiInfo", K::StringList, "(0 lines)"},
      {"UserData", K::UserData, "(0 records)"},
      {"ShowSideHot", K::Boolean, "True"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    ASSERT_TRUE(model.FindProperty(c.path).isValid());
    EXPECT_EQ(KindAt(model, c.path), c.kind);
    if (c.text) EXPECT_EQ(TextAt(model, c.path), c.text);
  }
  // Sections follow the class chain, base first.
  ASSERT_EQ(model.rowCount(), 2);
  EXPECT_EQ(model.index(0, 0).data().toString(), "TMyShape");
  EXPECT_EQ(model.index(1, 0).data().toString(), "TMyRectangle");
  EXPECT_EQ(model.rowCount(model.index(0, 0)), TMyShape::staticMetaObject.propertyCount() -
                                                   TMyShape::staticMetaObject.propertyOffset());
  QStringList keys = model.data(model.FindProperty("GradientStyle"), TPropertyModel::EnumKeysRole).toStringList();
  EXPECT_EQ(keys.front(), "gsRadialC");
  EXPECT_EQ(keys.back(), "gsNone");
}

// Every published property of the controls and of each shape kind must have a
// type the inspector knows, or Designer and the grid would show it as text.
TEST(TPropertyModel, EveryPublishedPropertyOfTheControlsAndShapesHasAKnownKind) {
  TMyCAD cad;
  TRsRuler ruler;
  TRsRulerCorner corner;
  std::vector<std::unique_ptr<TMyShape>> shapes;
  std::vector<QObject*> objects{&cad, &ruler, &corner};
  for (const char* kind : {"TMyLine", "TMyPolyLine", "TMyFreeLine", "TMyRuleLine", "TMyRectangle", "TMyEllipse",
                           "TMyPolygon", "TMyBLine", "TMyElliArc", "TMyPolyBezier", "TMyText", "TMyImage",
                           "TMyLinkPoint", "TMyLinkLine", "TMyLineLinkLine", "TMyGroup", "TMyCombine"}) {
    if (auto shape = CreateShapeByClassName(kind, &cad)) objects.push_back(shapes.emplace_back(std::move(shape)).get());
  }
  for (QObject* object : objects) {
    TPropertyModel model;
    model.SetObject(object);
    for (int s = 0; s < model.rowCount(); ++s) {
      for (int r = 0; r < model.rowCount(model.index(s, 0)); ++r) {
        const QModelIndex row = model.index(r, 0, model.index(s, 0));
        SCOPED_TRACE(object->metaObject()->className() + std::string(".") + row.data().toString().toStdString());
        const bool label = row.data().toString().startsWith("Label");  // host QLabel references
        EXPECT_TRUE(label || TPropertyKind(row.data(TPropertyModel::KindRole).toInt()) != K::Other);
      }
    }
  }
}

// A value of Row's kind other than Now, in the form setData takes.
QVariant OtherValue(const QModelIndex& row, const QVariant& now) {
  static TUserData records = [] { TUserData d; d.AddKeyandValue("part", "42"); return d; }();
  static TBitmap picture(3, 2);
  const QVariantList range = row.data(TPropertyModel::RangeRole).toList();
  const QVariantList values = row.data(TPropertyModel::EnumValuesRole).toList();
  switch (TPropertyKind(row.data(TPropertyModel::KindRole).toInt())) {
    case K::Boolean: return !now.toBool();
    case K::Integer: return now.toLongLong() < range[1].toLongLong() ? now.toLongLong() + 1 : now.toLongLong() - 1;
    case K::Float: return now.toDouble() + 0.25;
    case K::String: return now.toString() + "ü";
    case K::Enum: return values[(values.indexOf(now) + 1) % values.size()];
    case K::Flags: return now.toInt() ^ values.front().toInt();
    case K::Color: return now.toInt() == clRed ? int(clBlue) : int(clRed);
    case K::StringList: return now.toStringList() << "x";
    case K::Font: { QFont f = now.value<QFont>(); f.setPointSize(f.pointSize() + 3); return f; }
    case K::Picture: return QVariant::fromValue(&picture);
    case K::UserData: return QVariant::fromValue(&records);
    default: return {};
  }
}

// The editable value rows under Parent, depth first.
void EditableRows(const TPropertyModel& model, const QModelIndex& parent, QStringList& paths) {
  for (int r = 0; r < model.rowCount(parent); ++r) {
    const QModelIndex value = model.index(r, 1, parent);
    if (model.flags(value) & Qt::ItemIsEditable) paths << value.data(TPropertyModel::PathRole).toString();
    EditableRows(model, model.index(r, 0, parent), paths);
  }
}

// What a shape is: its drawing-file record and every row's text (some
// properties, such as the side-handle switches, are not in the file).
std::pair<std::vector<std::uint8_t>, QStringList> StateOf(const TMyShape& shape, const TPropertyModel& model,
                                                          const QStringList& paths) {
  TMemoryStream stream;
  shape.SaveToStream(stream);
  QStringList texts;
  for (const QString& path : paths) texts << model.data(model.FindProperty(path), Qt::DisplayRole).toString();
  return {stream.Bytes(), texts};
}

// Every editable row of several kinds: the edit reaches the shape, records
// one step, and undo brings back exactly the earlier shape, including what
// the shape's Assign leaves out (Visible, the Log* settings, enable switches).
TEST(TPropertyModel, EveryEditOfAShapeIsOneUndoStepThatRestoresTheWholeShape) {
  for (const char* kind : {"TMyRuleLine", "TMyElliArc", "TMyText", "TMyImage", "TMyLinkLine"}) {
    QStringList paths;
    {
      TMyCAD cad;
      TPropertyModel model;
      model.SetObject(AddShape(cad, kind));
      EditableRows(model, {}, paths);
    }
    ASSERT_GT(paths.size(), 40) << kind;
    for (const QString& path : paths) {
      SCOPED_TRACE(std::string(kind) + "." + path.toStdString());
      TMyCAD cad;
      AddShape(cad, "TMyRectangle", 30);  // something for a connector end to name
      TMyShape* shape = AddShape(cad, kind);
      TPropertyModel model;
      model.SetObject(shape);
      const auto before = StateOf(*shape, model, paths);
      const QModelIndex row = model.FindProperty(path);
      ASSERT_TRUE(model.setData(row, OtherValue(row, row.data(Qt::EditRole))));
      EXPECT_NE(StateOf(*shape, model, paths), before);
      EXPECT_EQ(UndoSteps(cad), 1);
      cad.PopFromUndoRedoShapeList();
      EXPECT_EQ(StateOf(*shape, model, paths), before);
    }
  }
}

TEST(TPropertyModel, AnEditThatChangesNothingRecordsNoStep) {
  TMyCAD cad;
  TPropertyModel model;
  model.SetObject(AddShape(cad, "TMyRectangle"));
  EXPECT_TRUE(model.setData(model.FindProperty("Visible"), true));
  EXPECT_EQ(UndoSteps(cad), 0);
}

TEST(TPropertyModel, SeveralObjectsShareCommonPropertiesShowBlankWhereTheyDifferAndChangeTogether) {
  TMyCAD cad;
  TMyShape* line = AddShape(cad, "TMyLine");
  TMyShape* box = AddShape(cad, "TMyRectangle", 20);
  line->SetCaption("one");
  box->SetCaption("two");
  TPropertyModel model;
  model.SetObjects({line, box});
  EXPECT_FALSE(model.FindProperty("ArrowStyle").isValid());  // the rectangle has none
  EXPECT_FALSE(model.FindProperty("ShowSideHot").isValid());
  EXPECT_EQ(TextAt(model, "Caption"), "");
  EXPECT_EQ(TextAt(model, "Visible"), "True");
  ASSERT_TRUE(model.setData(model.FindProperty("Caption"), QString("both")));
  EXPECT_EQ(line->GetCaption(), "both");
  EXPECT_EQ(box->GetCaption(), "both");
  EXPECT_EQ(TextAt(model, "Caption"), "both");
  EXPECT_EQ(UndoSteps(cad), 1);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(line->GetCaption(), "one");
  EXPECT_EQ(box->GetCaption(), "two");
}

TEST(TPropertyModel, ResetsToTheDefaultOfANewObjectOfTheClass) {
  TMyCAD cad;
  cad.SetZoom(3);
  TMyShape* shape = AddShape(cad, "TMyRectangle");
  shape->Pen().SetWidth(9);
  TPropertyModel model;
  model.SetObjects({shape});
  EXPECT_TRUE(model.ResetToDefault(model.FindProperty("Pen.Width")));
  EXPECT_EQ(shape->Pen().Width(), 1);
  model.SetObject(&cad);
  EXPECT_TRUE(model.ResetToDefault(model.FindProperty("Zoom")));
  EXPECT_EQ(cad.GetZoom(), 1.0);
  EXPECT_FALSE(model.ResetToDefault(model.FindProperty("VersionInfo")));
}

TEST(TPropertyModel, ReachesSubObjectsAndForgetsDestroyedObjects) {
  auto cad = std::make_unique<TMyCAD>();
  TPropertyModel model;
  model.SetObject(cad.get());
  ASSERT_TRUE(model.setData(model.FindProperty("GridOperation.GridWidth"), 25.0));
  EXPECT_EQ(cad->GridOperation()->GetGridWidth(), 25.0);
  EXPECT_EQ(TextAt(model, "TheUNIT"), "mm");
  cad.reset();
  EXPECT_EQ(model.rowCount(), 0);
}

}  // namespace
}  // namespace lumatrex
