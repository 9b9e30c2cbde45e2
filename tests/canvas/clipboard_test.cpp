// Cut, copy and paste through the system clipboard, within a canvas and
// between two: groups stay groups and connectors stay attached.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"
#include "shapes/image.h"
#include "shapes/text.h"

namespace lumatrex {
namespace {

using test::AddBox;

std::vector<std::uint8_t> Saved(const TMyCAD& cad) {
  TMemoryStream stream;
  cad.SaveToStream(stream);
  return stream.Bytes();
}

// D; the group G of A and B; the connector C from A's link point to B's.
struct TDiagram {
  TMyCAD cad;
  TMyShape* a;
  TMyShape* b;
  TMyShape* group;
  TMyLinkLine* link;
  TDiagram() {
    cad.GridOperation()->SetGridWidth(25);
    cad.GridOperation()->SetGridHeight(15);
    AddBox(cad, 200, 0, 210, 10);
    a = AddBox(cad, 0, 0, 20, 20);
    b = AddBox(cad, 60, 0, 80, 20);
    a->AddLinkPoint({20, 10});
    b->AddLinkPoint({60, 10});
    link = dynamic_cast<TMyLinkLine*>(cad.AddShapeByCode2("TMyLinkLine", "", {{20, 10}, {60, 10}}, 0));
    link->SetStartSpNo(a->ShapeNo);
    link->SetStartSpPtId(0);
    link->SetEndSpNo(b->ShapeNo);
    link->SetEndSpPtId(0);
    AddLinklineShape(*a, static_cast<std::uint32_t>(link->ShapeNo));
    AddLinklineShape(*b, static_cast<std::uint32_t>(link->ShapeNo));
    group = cad.GroupShapes({a, b}, false);
    cad.SelectShapeByCode(group->ShapeId, true);
  }
};

// The pasted copy of the diagram, starting at list position First, is a
// group of two boxes joined by a connector that follows them, moved by D.
void ExpectConnectedCopy(TMyCAD& cad, std::int32_t first, float dx, float dy) {
  ASSERT_EQ(cad.GetShapesCount(), first + 4);
  TMyShape* a = cad.GetShapeByNo(first);
  TMyShape* b = cad.GetShapeByNo(first + 1);
  auto* link = dynamic_cast<TMyLinkLine*>(cad.GetShapeByNo(first + 2));
  TMyShape* group = cad.GetShapeByNo(first + 3);
  ASSERT_TRUE(link && group);
  EXPECT_EQ(group->ChildShapes, (std::vector<std::int32_t>{first, first + 1}));
  EXPECT_EQ(a->ParentId, first + 3);
  EXPECT_EQ(link->GetStartSpNo(), first);
  EXPECT_EQ(link->GetEndSpNo(), first + 1);
  const std::vector<std::uint32_t> listed{static_cast<std::uint32_t>(first + 2)};
  EXPECT_EQ(a->LinkLines, listed);
  EXPECT_EQ(b->LinkLines, listed);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{dx, dy}));
  EXPECT_EQ(group->GetName(), "Shape" + std::to_string(group->ShapeId));
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{link, group}));
  // Moving the copy drags the connector's ends along.
  cad.DragChangeValueDxDyforShapes(group, 5, 7);
  cad.ChangeLinkShapes(group);
  EXPECT_EQ(link->GetPoint(0), (TMyPoint{20 + dx + 5, 10 + dy + 7}));
  EXPECT_EQ(link->GetPoint(1), (TMyPoint{60 + dx + 5, 10 + dy + 7}));
}

TEST(TMyCADClipboard, CopyAndPasteKeepGroupsAndConnectorsWithinAndBetweenCanvases) {
  TDiagram d;
  ASSERT_TRUE(d.cad.Copy());
  EXPECT_FALSE(QGuiApplication::clipboard()->image().isNull());  // a picture for other programs
  const QByteArray svg = QGuiApplication::clipboard()->mimeData()->data("image/svg+xml");
  EXPECT_TRUE(svg.contains("<svg") && svg.contains("<path")) << "and vectors";
  const auto before = Saved(d.cad);
  ASSERT_TRUE(d.cad.Paste());
  ExpectConnectedCopy(d.cad, 5, 25, 15);
  d.cad.PopFromUndoRedoShapeList();  // one step takes the whole paste back
  EXPECT_EQ(Saved(d.cad), before);

  TMyCAD other;
  ASSERT_TRUE(other.Paste());
  ExpectConnectedCopy(other, 0, 0, 0);  // where they were copied from
}

TEST(TMyCADClipboard, CutThenPastePutsTheShapesBackWhereTheyWere) {
  TDiagram d;
  ASSERT_TRUE(d.cad.Cut());
  EXPECT_EQ(d.cad.GetShapesCount(), 2);  // D stays, and the connector, freed
  ASSERT_TRUE(d.cad.PasteforBlock(Import));
  EXPECT_EQ(d.cad.GetShapeByNo(2)->GetPoint(0), (TMyPoint{0, 0}));
}

TEST(TMyCADClipboard, PastingTextOrAPictureAddsATextOrImageShapeAndJunkAddsNothing) {
  struct Case {
    const char* name;
    void (*put)();
    const char* className;
  };
  const Case cases[] = {
      {"text", [] { QGuiApplication::clipboard()->setText("one\ntwo"); }, "TMyText"},
      {"a picture", [] { QGuiApplication::clipboard()->setImage(QImage(8, 6, QImage::Format_RGB32)); }, "TMyImage"},
      {"damaged shapes", [] {
         auto* data = new QMimeData;
         data->setData(TMyCAD::kShapesMimeType, "Ambrel Component");
         QGuiApplication::clipboard()->setMimeData(data);
       }, nullptr},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    c.put();
    EXPECT_EQ(cad.Paste(), c.className != nullptr);
    if (!c.className) {
      EXPECT_EQ(cad.GetShapesCount(), 0);
      continue;
    }
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_STREQ(cad.GetShapeByNo(0)->ClassName(), c.className);
    EXPECT_EQ(cad.GetSelectedShape(), cad.GetShapeByNo(0));
  }
}

}  // namespace
}  // namespace lumatrex
