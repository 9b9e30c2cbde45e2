// Connectors drawn, edited and routed through real mouse gestures: ends stay
// on the link points they are bound to whatever happens to the shapes, and
// one undo gives back every shape's exact record. Cut, copy and paste through
// the system clipboard keep groups and connectors, within a canvas and
// between two.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <algorithm>
#include <functional>

#include "canvas/document_state.h"
#include "shapes/connectors.h"
#include "support/mouse.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using namespace test;

struct Connectors : ::testing::Test {
  TMyCAD cad;
  TMouse mouse{cad};
  void SetUp() override {
    cad.resize(600, 400);
    cad.SetResizeEnable(true);
    cad.SetRotateEnable(true);
    cad.SetDragMode(dgBoth);
    cad.SetSideLinkPoints(true);
  }
  // A rectangle drawn with the mouse: its link points are its sides' middles
  // (0 top, 1 right, 2 bottom, 3 left).
  TMyShape* DrawBox(int l, int t, int r, int b) {
    cad.SetShapeTool(SpRectangle);
    mouse.Drag(l, t, r, b);
    return cad.GetShapeByNo(cad.GetShapesCount() - 1);
  }
  TMyLinkLine* DrawLink(int x1, int y1, int x2, int y2, TDrawTool tool = SpLinkLine) {
    cad.SetShapeTool(tool);
    mouse.Drag(x1, y1, x2, y2);
    cad.SetShapeTool(SpSelecting);
    return dynamic_cast<TMyLinkLine*>(cad.GetShapeByNo(cad.GetShapesCount() - 1));
  }
  // Every bound end lies exactly on its link point, is listed by its shape,
  // and the points are a route of the connector's style.
  void ExpectAttached(const TMyLinkLine& link) {
    for (const TLinkLineEnd end : {llStart, llEnd}) {
      const TMyShape* target = cad.GetShapeByNo(link.EndShapeNo(end));
      if (!target) continue;
      EXPECT_EQ(link.Points[link.EndIndex(end)], target->GetLinkPoint(link.EndPointId(end)));
      EXPECT_NE(std::find(target->LinkLines.begin(), target->LinkLines.end(), static_cast<std::uint32_t>(link.ShapeNo)),
                target->LinkLines.end());
    }
    EXPECT_TRUE(link.IsRouted());
  }
};

TEST_F(Connectors, DrawnFromLinkPointToLinkPointBindsBothEndsForEitherKind) {
  for (const TDrawTool tool : {SpLinkLine, SpLineLinkLine}) {
    DrawBox(40, 40, 120, 100);
    DrawBox(300, 140, 380, 200);
    TMyLinkLine* link = DrawLink(121, 71, 298, 172, tool);  // near A's right, B's left
    ASSERT_NE(link, nullptr);
    // From A's link point 1 to B's 3, with one bend (lldsHV).
    ExpectGoldenFile(DocumentText(cad), std::string("canvas/drawn-") + link->ClassName() + ".txt");
    ExpectAttached(*link);
    cad.DeleteAllShapes();
  }
}

TEST_F(Connectors, EditsOfAJoinedShapeCarryTheEndsAndOneUndoRestoresExactly) {
  struct Case {
    const char* name;
    std::function<void(Connectors&)> edit;
  };
  const Case cases[] = {
      {"drag by mouse", [](Connectors& t) { t.mouse.Drag(340, 190, 380, 300); }},
      {"corner resize by mouse", [](Connectors& t) { t.mouse.Click(340, 190).Drag(380, 200, 430, 260); }},
      {"rotate by mouse", [](Connectors& t) {
         t.cad.SetShapeTool(SpRotateSelecting);
         t.mouse.Click(340, 190).Drag(380, 200, 400, 260);
       }},
      {"flip", [](Connectors& t) {
         t.mouse.Click(340, 190);
         t.cad.FlipHoriz();
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    DrawBox(40, 40, 120, 100);
    TMyShape* b = DrawBox(300, 140, 380, 200);
    TMyLinkLine* link = DrawLink(120, 70, 300, 170);
    const auto before = DocumentState(cad);
    c.edit(*this);
    ASSERT_NE(DocumentState(cad), before);
    EXPECT_EQ(link->GetEndSpNo(), b->ShapeNo);
    ExpectAttached(*link);
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(DocumentState(cad), before);
    cad.DeleteAllShapes();
  }
}

TEST_F(Connectors, ALinkPointPlacedByAClickTakesAConnectorAndDragsItsEnd) {
  DrawBox(40, 40, 120, 100);
  cad.SetShapeTool(SpLinkPoint);
  mouse.Click(250, 300);
  auto* marker = dynamic_cast<TMyLinkPoint*>(cad.GetShapeByNo(1));
  ASSERT_NE(marker, nullptr);
  EXPECT_EQ(marker->LinkPoints, (TArrMyPoint{{250, 300}}));
  TMyLinkLine* link = DrawLink(120, 70, 252, 298);
  EXPECT_EQ(link->GetEndSpNo(), marker->ShapeNo);
  mouse.Click(500, 380).Drag(253, 303, 353, 323);  // past the connector's end, on the marker
  EXPECT_EQ(link->Points.back(), (TMyPoint{350, 320}));
  ExpectAttached(*link);
}

// Restored shapes come back without their connectors: a freed end stays
// free where it was, and a connector deleted with one of its shapes comes
// back with it, detached.
TEST_F(Connectors, DeletingAJoinedShapeFreesTheEndWhereItWasAndUndoKeepsItFree) {
  TMyShape* a = DrawBox(40, 40, 120, 100);
  TMyShape* b = DrawBox(300, 140, 380, 200);
  TMyLinkLine* link = DrawLink(120, 70, 300, 170);
  const TArrMyPoint points = link->Points;
  cad.DeleteShapeById(b->ShapeId, true);
  EXPECT_EQ(link->GetEndSpNo(), -1);
  EXPECT_EQ(link->Points, points);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(link->GetEndSpNo(), -1);
  EXPECT_TRUE(cad.GetShapeByNo(cad.GetShapesCount() - 1)->LinkLines.empty());
  cad.SelectShapeByCode(a->ShapeId, true);
  cad.SelectShapeByCode(link->ShapeId, false);
  cad.DeleteSelectedShapes(true);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  cad.PopFromUndoRedoShapeList();
  // Both back, the connector with both ends free where they were.
  ExpectGoldenFile(DocumentText(cad), "canvas/joined-shape-and-connector-back.txt");
}

TEST_F(Connectors, DraggingAnEndOffDetachesOntoAnotherReattachesAndUndoGoesBack) {
  DrawBox(40, 40, 120, 100);
  TMyShape* b = DrawBox(300, 140, 380, 200);
  TMyShape* c = DrawBox(200, 300, 280, 360);
  TMyLinkLine* link = DrawLink(120, 70, 300, 170);
  const auto attached = DocumentState(cad);
  mouse.Click(200, 70).Drag(300, 170, 450, 250);  // select, then drag the end away
  EXPECT_EQ(link->GetEndSpNo(), -1);
  EXPECT_TRUE(b->LinkLines.empty());
  EXPECT_EQ(link->Points.back(), (TMyPoint{450, 250}));
  const auto detached = DocumentState(cad);
  mouse.Drag(450, 250, 243, 298);  // near C's top
  EXPECT_EQ(std::make_pair(link->GetEndSpNo(), link->GetEndSpPtId()), std::make_pair(c->ShapeNo, 0));
  ExpectAttached(*link);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), detached);
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), attached);
}

TEST_F(Connectors, BreakLineJoinsTwoHalvesAtANewPointAndTwoUndosRestore) {
  TMyShape* a = DrawBox(40, 40, 120, 100);
  TMyShape* b = DrawBox(300, 140, 380, 200);
  TMyLinkLine* link = DrawLink(120, 70, 300, 170);
  const auto before = DocumentState(cad);
  TMyLinkPoint* joint = cad.BreakLine(link);
  ASSERT_NE(joint, nullptr);
  auto* rest = dynamic_cast<TMyLinkLine*>(cad.GetShapeByNo(cad.GetShapesCount() - 1));
  EXPECT_EQ(link->GetEndSpNo(), joint->ShapeNo);
  EXPECT_EQ(rest->GetStartSpNo(), joint->ShapeNo);
  EXPECT_EQ(rest->GetEndSpNo(), b->ShapeNo);
  // Each shape lists exactly the connectors bound to it.
  const auto no = [](const TMyShape* s) { return static_cast<std::uint32_t>(s->ShapeNo); };
  EXPECT_EQ(a->LinkLines, (std::vector<std::uint32_t>{no(link)}));
  EXPECT_EQ(b->LinkLines, (std::vector<std::uint32_t>{no(rest)}));
  EXPECT_EQ(joint->LinkLines, (std::vector<std::uint32_t>{no(link), no(rest)}));
  ExpectAttached(*link);
  ExpectAttached(*rest);
  cad.PopFromUndoRedoShapeList();
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

// Hand-drawn layouts: box 0's link point to box 1's, the other boxes in the
// way. Every segment is horizontal or vertical, the route leaves and enters
// across the sides it is attached to, and it crosses no box.
TEST_F(Connectors, OrthogonalRoutesGoAroundShapes) {
  struct Case {
    const char* name;
    std::vector<TMyRect> boxes;
    std::int32_t from, to;  // link points of boxes 0 and 1
  };
  const Case cases[] = {
      {"wall between", {{40, 150, 100, 200}, {400, 150, 460, 200}, {220, 60, 260, 300}}, 1, 3},
      {"target behind the start", {{300, 150, 360, 200}, {40, 150, 100, 200}}, 1, 3},
      {"top to bottom past a block", {{40, 250, 100, 300}, {400, 40, 460, 90}, {150, 100, 350, 240}}, 0, 2},
  };
  const float out[4][2] = {{0, -1}, {1, 0}, {0, 1}, {-1, 0}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    std::vector<TMyShape*> shapes;
    for (const TMyRect& r : c.boxes) shapes.push_back(DrawBox(r.Left, r.Top, r.Right, r.Bottom));
    TMyLinkLine* link = cad.CreateLink(shapes[0], c.from, shapes[1], c.to, lldsOrthogonal);
    ASSERT_NE(link, nullptr);
    const TArrMyPoint& p = link->Points;
    ASSERT_GE(p.size(), 3u);
    ExpectAttached(*link);
    auto direction = [](const TMyPoint& a, const TMyPoint& b) {
      return std::make_pair(static_cast<float>((b.X > a.X) - (b.X < a.X)), static_cast<float>((b.Y > a.Y) - (b.Y < a.Y)));
    };
    EXPECT_EQ(direction(p[0], p[1]), std::make_pair(out[c.from][0], out[c.from][1]));
    EXPECT_EQ(direction(p[p.size() - 1], p[p.size() - 2]), std::make_pair(out[c.to][0], out[c.to][1]));
    for (std::size_t i = 1; i < p.size(); ++i)
      for (const TMyRect& r : c.boxes) {
        const float l = std::min(p[i - 1].X, p[i].X), rr = std::max(p[i - 1].X, p[i].X);
        const float t = std::min(p[i - 1].Y, p[i].Y), bb = std::max(p[i - 1].Y, p[i].Y);
        EXPECT_FALSE(l < r.Right && rr > r.Left && t < r.Bottom && bb > r.Top) << "segment " << i;
      }
    cad.DeleteAllShapes();
  }
}

TEST_F(Connectors, DraggingAnInnerSegmentMovesThatSegmentOnly) {
  TMyShape* a = DrawBox(40, 40, 120, 100);
  TMyShape* b = DrawBox(300, 240, 380, 300);
  TMyLinkLine* link = cad.CreateLink(a, 1, b, 3, lldsOrthogonal);
  ASSERT_EQ(link->Points.size(), 4u);  // right, down, right
  TArrMyPoint expected = link->Points;
  const TMyPoint middle{expected[1].X, (expected[1].Y + expected[2].Y) / 2};
  cad.SetShapeTool(SpSelecting);
  mouse.Click(middle.X, middle.Y).Drag(middle.X, middle.Y, middle.X + 30, middle.Y + 9);
  expected[1].X += 30;
  expected[2].X += 30;
  EXPECT_EQ(link->Points, expected);
  ExpectAttached(*link);
}

// ---------------------------------------------------------------------------
// The clipboard

// D (0); the group G (4) of A (1) and B (2); the connector C (3) from A's
// link point to B's; G selected.
struct TDiagram {
  TMyCAD cad;
  TDiagram() {
    EXPECT_TRUE(cad.LoadFromFile(test::DataPath("drawings/diagram.zlt")));
    cad.GridOperation()->SetGridWidth(25);
    cad.GridOperation()->SetGridHeight(15);
    cad.SelectShapeByCode(cad.GetShapeByNo(4)->ShapeId, true);
  }
};

// The pasted copy of the diagram, from list position First: a group of two
// boxes joined by a connector (the whole document is in Golden), selected,
// whose connector follows the boxes when they move.
void ExpectConnectedCopy(TMyCAD& cad, std::int32_t first, const std::string& golden) {
  ExpectGoldenFile(DocumentText(cad), golden);
  auto* link = dynamic_cast<TMyLinkLine*>(cad.GetShapeByNo(first + 2));
  TMyShape* group = cad.GetShapeByNo(first + 3);
  ASSERT_TRUE(link && group);
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{link, group}));
  const TArrMyPoint ends = link->Points;
  cad.DragChangeValueDxDyforShapes(group, 5, 7);
  cad.ChangeLinkShapes(group);
  EXPECT_EQ(link->Points, (TArrMyPoint{{ends[0].X + 5, ends[0].Y + 7}, {ends[1].X + 5, ends[1].Y + 7}}));
}

TEST(TMyCADClipboard, CopyAndPasteKeepGroupsAndConnectorsWithinAndBetweenCanvases) {
  TDiagram d;
  ASSERT_TRUE(d.cad.Copy());
  EXPECT_FALSE(QGuiApplication::clipboard()->image().isNull());  // a picture for other programs
  const QByteArray svg = QGuiApplication::clipboard()->mimeData()->data("image/svg+xml");
  EXPECT_TRUE(svg.contains("<svg") && svg.contains("<path")) << "and vectors";
  const auto before = Saved(d.cad);
  ASSERT_TRUE(d.cad.Paste());
  ExpectConnectedCopy(d.cad, 5, "canvas/pasted-diagram.txt");  // moved by a grid step
  d.cad.PopFromUndoRedoShapeList();  // one step takes the whole paste back
  EXPECT_EQ(Saved(d.cad), before);

  TMyCAD other;
  ASSERT_TRUE(other.Paste());
  ExpectConnectedCopy(other, 0, "canvas/diagram-pasted-elsewhere.txt");  // where they were copied from
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
