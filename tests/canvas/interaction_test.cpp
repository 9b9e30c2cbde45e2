// Gestures driven by real Qt mouse events on an offscreen canvas. Every
// editing gesture is followed by one undo that must give back the drawing
// exactly (all shape records, byte for byte).
#include <gtest/gtest.h>

#include <cmath>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/lines.h"
#include "support/mouse.h"

namespace lumatrex {
namespace {

using test::Key;
using test::TMouse;
using test::DocumentState;
using TDocument = std::vector<test::TShapeState>;

struct TCanvasFixture : ::testing::Test {
  TMyCAD cad;
  TMouse mouse{cad};
  void SetUp() override {
    cad.resize(400, 300);
    cad.SetResizeEnable(true);
    cad.SetRotateEnable(true);
    cad.SetDragEnable(true);
    cad.SetDragMode(dgBoth);
  }
  TMyShape* AddRect(float l, float t, float r, float b, float angle = 0) {
    return cad.AddShapeByCode2("TMyRectangle", "", {{l, t}, {r, t}, {r, b}, {l, b}}, angle);
  }
  TMyShape* Last() { return cad.GetShapeByNo(cad.GetShapesCount() - 1); }
  // One undo gives back Before exactly.
  void ExpectUndoRestores(const TDocument& before) {
    EXPECT_GE(cad.PopFromUndoRedoShapeList(), -1);
    EXPECT_EQ(DocumentState(cad), before);
  }
};

// ---------------------------------------------------------------------------
// Drawing every kind

struct TDrawCase {
  const char* name;
  TDrawTool tool;
  const char* className;
  int points;
};

class DrawByDragging : public TCanvasFixture, public ::testing::WithParamInterface<TDrawCase> {};

TEST_P(DrawByDragging, PressDragReleaseMakesOneShapeAndOneUndoRemovesIt) {
  const TDocument before = DocumentState(cad);
  int added = 0;
  cad.OnShapeAdded = [&](QObject*, TMyShape*&, std::int32_t count) { added = count; };
  cad.SetShapeTool(GetParam().tool);
  mouse.Drag(50, 40, 150, 120);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(added, 1);
  EXPECT_STREQ(Last()->ClassName(), GetParam().className);
  EXPECT_EQ(Last()->GetPointsCount(), GetParam().points);
  EXPECT_EQ(Last()->GetName(), "Shape0");
  EXPECT_EQ(Last()->GetPoint(0), (TMyPoint{50, 40}));
  EXPECT_EQ(cad.GetSelectedShape(), Last());
  ExpectUndoRestores(before);
}

INSTANTIATE_TEST_SUITE_P(
    Kinds, DrawByDragging,
    ::testing::Values(TDrawCase{"Line", SpLine, "TMyLine", 2}, TDrawCase{"RuleLine", SpRuleLine, "TMyRuleLine", 2},
                      TDrawCase{"Rectangle", SpRectangle, "TMyRectangle", 4},
                      TDrawCase{"Ellipse", SpEllipse, "TMyEllipse", 4},
                      TDrawCase{"FreeLine", SpFreeLine, "TMyFreeLine", 5}),
    [](const auto& info) { return std::string(info.param.name); });

TEST_F(TCanvasFixture, APolyLineTakesAPointPerClickAndEndsOnADoubleClick) {
  cad.SetShapeTool(SpPolyLine);
  mouse.Click(10, 10).Move(60, 20, false).Click(60, 20).Move(100, 80, false);
  EXPECT_EQ(cad.GetShapesCount(), 0);
  mouse.DoubleClick(100, 80);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(Last()->Points, (TArrMyPoint{{10, 10}, {60, 20}, {100, 80}}));
}

TEST_F(TCanvasFixture, APolyLineDoubleClickOnItsFirstTwoPointsDoesNotFinishIt) {
  cad.SetShapeTool(SpPolyLine);
  mouse.DoubleClick(10, 10);
  EXPECT_EQ(cad.GetShapesCount(), 0);
}

TEST_F(TCanvasFixture, APolygonClosesOnAClickNearItsFirstPoint) {
  cad.SetShapeTool(SpPolygon);
  mouse.Click(10, 10).Click(100, 10).Click(100, 90).Click(12, 11);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_STREQ(Last()->ClassName(), "TMyPolygon");
  EXPECT_EQ(Last()->Points.front(), Last()->Points.back());
}

TEST_F(TCanvasFixture, ASplineTakesClicksAndEndsOnADoubleClick) {
  cad.SetShapeTool(SpBLine);
  mouse.Click(10, 10).Click(50, 60).Click(90, 10).DoubleClick(130, 60);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_STREQ(Last()->ClassName(), "TMyBLine");
  EXPECT_EQ(Last()->GetPointsCount(), 4);
}

TEST_F(TCanvasFixture, ARectangleCanBeDrawnWithTwoClicksAndShiftMakesItSquare) {
  cad.SetShapeTool(SpRectangle);
  mouse.Click(10, 10).Move(40, 30, false).Click(40, 30);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(Last()->GetPoint(2), (TMyPoint{40, 30}));
  mouse.Drag(100, 100, 130, 180, Qt::ShiftModifier);
  EXPECT_EQ(Last()->GetPoint(2), (TMyPoint{180, 180}));
}

TEST_F(TCanvasFixture, WithReturnToSelectingTheToolGoesBackAfterOneShape) {
  cad.SetReturnToSelecting(true);
  int returned = 0;
  cad.OnActionToolToSelecting = [&](QObject*) { ++returned; };
  cad.SetShapeTool(SpLine);
  mouse.Drag(10, 10, 60, 60);
  EXPECT_EQ(cad.GetShapeTool(), SpSelecting);
  EXPECT_EQ(cad.GetActionTool(), dtSelecting);
  EXPECT_EQ(returned, 1);
}

TEST_F(TCanvasFixture, EscapeDropsAnUnfinishedShape) {
  cad.SetShapeTool(SpPolyLine);
  mouse.Click(10, 10).Click(60, 20);
  Key(cad, Qt::Key_Escape);
  mouse.Click(200, 200).DoubleClick(250, 250);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(Last()->GetPoint(0), (TMyPoint{200, 200}));
}

// ---------------------------------------------------------------------------
// Selecting

TEST_F(TCanvasFixture, ClickSelectsShiftClickAddsAndShiftClickOnASelectedShapeDeselects) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  TMyShape* b = AddRect(100, 10, 150, 50);
  cad.SetShapeTool(SpSelecting);
  // Presses keep off the shapes' centres, where the text point's handle is.
  mouse.Click(20, 20);
  EXPECT_EQ(cad.GetSelectedShape(), a);
  mouse.Click(120, 20, Qt::ShiftModifier);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
  EXPECT_EQ(cad.GetActionTool(), dtSelecting);
  mouse.Click(20, 20, Qt::ShiftModifier);
  EXPECT_EQ(cad.GetSelectedShape(), b);
  mouse.Click(300, 250);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
}

TEST_F(TCanvasFixture, ARubberBandSelectsTheShapesInsideIt) {
  AddRect(10, 10, 50, 50);
  AddRect(60, 10, 90, 50);
  AddRect(200, 200, 250, 250);
  cad.SetShapeTool(SpSelecting);
  mouse.Drag(5, 5, 100, 60);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
}

TEST_F(TCanvasFixture, ASecondClickWithoutMovingSelectsTheSmallerShapeBeneath) {
  AddRect(10, 10, 200, 200);
  TMyShape* big = Last();
  TMyShape* small = AddRect(50, 50, 80, 80);
  cad.SendToBack(small, false);
  cad.SetShapeTool(SpSelecting);
  mouse.Click(60, 60);
  EXPECT_EQ(cad.GetSelectedShape(), big);
  mouse.Click(60, 60);
  EXPECT_EQ(cad.GetSelectedShape(), small);
}

// ---------------------------------------------------------------------------
// Dragging

TEST_F(TCanvasFixture, DraggingMovesTheSelectionAndOneUndoMovesItBack) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  AddRect(100, 10, 150, 50);
  cad.SelectAllShapes();
  const auto before = DocumentState(cad);
  int dragged = 0;
  cad.OnShapeMouseDragged = [&](QObject*, TMyShape*, const TPoint&, TPoint&) { ++dragged; };
  cad.SetShapeTool(SpSelecting);
  cad.SelectAllShapes();
  mouse.Drag(20, 20, 35, 60);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{25, 50}));
  EXPECT_EQ(dragged, 2);
  ExpectUndoRestores(before);
}

TEST_F(TCanvasFixture, ADragReleasedWhereItStartedRecordsNothing) {
  AddRect(10, 10, 50, 50);
  int dragged = 0;
  cad.OnShapeMouseDragged = [&](QObject*, TMyShape*, const TPoint&, TPoint&) { ++dragged; };
  cad.SetShapeTool(SpSelecting);
  mouse.Click(20, 20);
  mouse.Press(20, 20).Move(60, 60).Move(20, 20).Release(20, 20);
  EXPECT_EQ(dragged, 0);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
}

TEST_F(TCanvasFixture, HorizontalDragModeDropsTheVerticalPart) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  cad.SetDragMode(dgHorz);
  cad.SetShapeTool(SpSelecting);
  mouse.Click(20, 20).Drag(20, 20, 60, 80);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{50, 10}));
}

TEST_F(TCanvasFixture, DraggingWithSnapLandsTheBoxOnTheGrid) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  cad.GridOperation()->SetGridWidth(20);
  cad.GridOperation()->SetGridHeight(20);
  cad.SetSnap(true);
  cad.SetSnapPixels(5);
  cad.SetShapeTool(SpSelecting);
  mouse.Click(20, 20).Drag(20, 20, 47, 20);  // the left edge would land at 37
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{40, 10}));
}

TEST_F(TCanvasFixture, SnapPixelsZeroNeverSnapsToTheGrid) {
  cad.GridOperation()->SetGridWidth(20);
  cad.GridOperation()->SetGridHeight(20);
  cad.SetSnap(true);
  std::int32_t x = 41, y = 39;
  EXPECT_FALSE(cad.SnapXY(x, y));
  EXPECT_EQ(Point(x, y), Point(41, 39));
  cad.SetSnapPixels(2);
  EXPECT_TRUE(cad.SnapXY(x, y));
  EXPECT_EQ(Point(x, y), Point(40, 40));
}

TEST_F(TCanvasFixture, ArrowKeysNudgeTheSelectionAndDeleteRemovesIt) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  cad.SelectShapeByCode(a->ShapeId, true);
  Key(cad, Qt::Key_Right, Qt::ShiftModifier);
  Key(cad, Qt::Key_Up);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{20, 9}));
  Key(cad, Qt::Key_Delete);
  EXPECT_EQ(cad.GetShapesCount(), 0);
  Key(cad, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(cad.GetShapesCount(), 1);
}

// ---------------------------------------------------------------------------
// Resizing and rotating

class ResizeRotatedRectangle : public TCanvasFixture, public ::testing::WithParamInterface<int> {};

TEST_P(ResizeRotatedRectangle, EachHandleResizesLikeTheShapeItselfAndUndoRestores) {
  const float angle = 0.3f;
  TMyShape* shape = AddRect(100, 80, 220, 160, angle);
  TMyRectangle reference(&cad);
  reference.Assign(*shape);
  cad.SelectShapeByCode(shape->ShapeId, true);
  const auto before = DocumentState(cad);
  const TArrMyPoint original = shape->Points;
  const int hot = GetParam();
  const TPoint handle = MyPtToPt(shape->GetPointInZoom(hot));
  cad.SetShapeTool(SpSelecting);
  // Outward from the centre, so that no handle crosses it.
  const TMyPoint center = shape->GetCenterPointInZoom();
  const TPoint to = Point(handle.X + Round((handle.X - center.X) * 0.15L), handle.Y + Round((handle.Y - center.Y) * 0.15L));
  mouse.Press(handle.X, handle.Y).Move(to.X, to.Y).Release(to.X, to.Y);
  reference.CurrentHot = hot;
  reference.SizeChangeValue(PtToMyPt(handle), PtToMyPt(to));
  EXPECT_EQ(shape->Points, reference.Points) << "handle " << hot;
  EXPECT_NE(shape->Points, original);
  ExpectUndoRestores(before);
}

INSTANTIATE_TEST_SUITE_P(Handles, ResizeRotatedRectangle, ::testing::Range(0, 8));

TEST_F(TCanvasFixture, RotatingWithAConstraintTurnsInWholeSteps) {
  TMyShape* shape = AddRect(100, 100, 200, 160);
  cad.SetRotateConstraintDegree(15);
  cad.SelectShapeByCode(shape->ShapeId, true);
  const auto before = DocumentState(cad);
  cad.SetShapeTool(SpRotateSelecting);
  mouse.Press(200, 160).Move(190, 175).Release(185, 182);
  const double degrees = shape->GetAngle() * 180 / kPi;
  EXPECT_GT(degrees, 1);
  EXPECT_NEAR(std::fmod(degrees + 1e-3, 15.0), 0, 1e-2);
  ExpectUndoRestores(before);
}

// ---------------------------------------------------------------------------
// Nodes

TEST_F(TCanvasFixture, NodeRemovalReportsTheIndexOrWhyItRefused) {
  TMyShape* triangle = cad.AddShapeByCode2("TMyPolygon", "", {{10, 10}, {100, 10}, {50, 90}, {10, 10}}, 0);
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyLine", "", {{200, 10}, {250, 50}, {300, 10}}, 0);
  std::vector<std::int32_t> codes;
  cad.OnNodeDeleted = [&](QObject*, TMyShape*&, std::int32_t code) { codes.push_back(code); };
  cad.SetShapeTool(SpPolylinePolygonPointRemoving);
  cad.SelectShapeByCode(triangle->ShapeId, true);
  mouse.Click(100, 10);  // a triangle plus its closing copy: too few points
  mouse.Click(10, 10);   // the closing copy is the last handle hit
  cad.SelectShapeByCode(chain->ShapeId, true);
  const auto before = DocumentState(cad);
  mouse.Click(250, 50);
  EXPECT_EQ(codes, (std::vector<std::int32_t>{-8, -7, 1}));
  EXPECT_EQ(chain->Points, (TArrMyPoint{{200, 10}, {300, 10}}));
  ExpectUndoRestores(before);
  mouse.Click(350, 250);  // no node: nothing reported
  EXPECT_EQ(codes.size(), 3u);
}

TEST_F(TCanvasFixture, NodeAddingInsertsTheClickBeforeTheSegmentsEnd) {
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyLine", "", {{10, 10}, {110, 10}, {110, 110}}, 0);
  std::vector<std::int32_t> added;
  cad.OnNodeAdded = [&](QObject*, TMyShape*&, std::int32_t index) { added.push_back(index); };
  cad.SelectShapeByCode(chain->ShapeId, true);
  const auto before = DocumentState(cad);
  cad.SetShapeTool(SpPolylinePolygonPointAdding);
  mouse.Click(60, 12);
  EXPECT_EQ(added, std::vector<std::int32_t>{1});
  EXPECT_EQ(chain->Points, (TArrMyPoint{{10, 10}, {60, 12}, {110, 10}, {110, 110}}));
  ExpectUndoRestores(before);
}

// ---------------------------------------------------------------------------
// Whole-page drag

TEST_F(TCanvasFixture, AWholeDragPansEveryShapeWithoutAnUndoStep) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  TMyShape* b = AddRect(100, 100, 150, 150);
  int panned = 0;
  cad.OnWholeDragged = [&](QObject*) { ++panned; };
  cad.SetShapeTool(SpDragWhole);
  mouse.Drag(200, 200, 210, 230);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{20, 40}));
  EXPECT_EQ(b->GetPoint(0), (TMyPoint{110, 130}));
  EXPECT_EQ(panned, 1);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
}

}  // namespace
}  // namespace lumatrex
