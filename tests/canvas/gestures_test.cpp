// Gestures driven by real Qt mouse and key events on an offscreen canvas:
// every tool, selecting, dragging, resizing, rotating, nodes, in-place edits
// and the drawing aids. Every editing gesture is followed by one undo that
// must give back the drawing exactly (all shape records, byte for byte).
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPlainTextEdit>
#include <cmath>
#include <functional>

#include "canvas/document_state.h"
#include "platform/qt_interop.h"
#include "shapes/arc.h"
#include "shapes/closed_shapes.h"
#include "shapes/image.h"
#include "shapes/text.h"
#include "support/golden.h"
#include "support/mouse.h"
#include "support/test_paths.h"

namespace lumatrex {
namespace {

using namespace test;
using TDocument = std::vector<TShapeState>;

struct Gestures : ::testing::Test {
  TMyCAD cad;
  TMouse mouse{cad};
  const std::string pictureFile = DataPath("canvas/red-3x2.png");  // read through Qt, not our BMP reader
  // The canvas starts with the selecting tool, which most tests use as it is.
  void SetUp() override {
    cad.resize(400, 300);
    cad.SetResizeEnable(true);
    cad.SetRotateEnable(true);
    cad.SetDragEnable(true);
    cad.SetDragMode(dgBoth);
    cad.OnGetImageFileName = [this](QObject*, std::string& name) {
      name = pictureFile;
      return true;
    };
  }
  TMyShape* AddRect(float l, float t, float r, float b, float angle = 0) {
    return cad.AddShapeByCode2("TMyRectangle", "", Box(l, t, r, b), angle);
  }
  TMyShape* Last() { return cad.GetShapeByNo(cad.GetShapesCount() - 1); }
  QPlainTextEdit* Editor() { return cad.findChild<QPlainTextEdit*>(); }
  void Type(const QString& text) {
    for (const QChar c : text) Key(*Editor(), c.unicode(), Qt::NoModifier, QString(c));
  }
  // One undo gives back Before exactly.
  void ExpectUndoRestores(const TDocument& before) {
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(DocumentState(cad), before);
  }
};

// ---------------------------------------------------------------------------
// Drawing every kind

// The shape each tool makes, its class and points, are listed under the
// row's name in tests/data/canvas/drawn-by-each-tool.txt.
TEST_F(Gestures, EachToolMakesItsKindSelectedAndOneUndoRemovesIt) {
  struct Case {
    const char* name;
    TDrawTool tool;
    std::function<void(Gestures&)> gesture;
  };
  const auto drag = [](Gestures& t) { t.mouse.Drag(50, 40, 150, 120); };
  const Case cases[] = {
      {"line", SpLine, drag},
      {"measuring line", SpRuleLine, drag},
      {"rectangle", SpRectangle, drag},
      {"rectangle by two clicks", SpRectangle,
       [](Gestures& t) { t.mouse.Click(10, 10).Move(40, 30, false).Click(40, 30); }},
      {"square with Shift", SpRectangle, [](Gestures& t) { t.mouse.Drag(100, 100, 130, 180, Qt::ShiftModifier); }},
      {"ellipse", SpEllipse, drag},
      {"free line: every move", SpFreeLine, drag},
      {"poly-line: a point per click, ends on a double click", SpPolyLine,
       [](Gestures& t) { t.mouse.Click(10, 10).Move(60, 20, false).Click(60, 20).Move(100, 80, false).DoubleClick(100, 80); }},
      {"polygon: Enter closes it", SpPolygon,
       [](Gestures& t) {
         t.mouse.Click(20, 20).Click(80, 30).Click(60, 90);
         Key(t.cad, Qt::Key_Return);
       }},
      {"polygon: closes on a click near its first point", SpPolygon,
       [](Gestures& t) { t.mouse.Click(10, 10).Click(100, 10).Click(100, 90).Click(12, 11); }},
      {"spline: clicks, double click", SpBLine,
       [](Gestures& t) { t.mouse.Click(10, 10).Click(50, 60).Click(90, 10).DoubleClick(130, 60); }},
      {"arc: a frame, then a quarter arc", SpElliArc, drag},
      {"Bezier: drag tangents, double click", SpPolyBezier,
       [](Gestures& t) { t.mouse.Drag(20, 20, 60, 20).Drag(100, 80, 140, 80).DoubleClick(200, 30); }},
      {"Bezier: clicks, Enter", SpPolyBezier,
       [](Gestures& t) {
         t.mouse.Click(20, 20).Move(90, 90, false).Click(90, 90);
         Key(t.cad, Qt::Key_Return);
       }},
      {"text: a frame from its far corner, typed lines, Ctrl+Enter", SpText,
       [](Gestures& t) {
         t.mouse.Drag(150, 120, 50, 40);
         t.Type("Hi");
         Key(*t.Editor(), Qt::Key_Return, Qt::ControlModifier);
       }},
      {"image: a frame, then a file", SpImage, drag},
  };
  std::string drawn;
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cad.DeleteAllShapes();
    const TDocument before = DocumentState(cad);
    int added = 0;
    cad.OnShapeAdded = [&](QObject*, TMyShape*&, std::int32_t count) { added = count; };
    cad.SetShapeTool(c.tool);
    c.gesture(*this);
    drawn += std::string("# ") + c.name + "\n" + DocumentText(cad);
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_EQ(added, 1);
    EXPECT_EQ(cad.GetSelectedShape(), Last());
    EXPECT_EQ(Editor(), nullptr);
    if (auto* text = dynamic_cast<TMyText*>(Last())) {
      EXPECT_EQ(text->GetLines(), (TStringList{"Hi"}));
    }
    if (auto* image = dynamic_cast<TMyImage*>(Last())) {
      EXPECT_EQ(std::as_const(*image).Bitmap().Width(), 3);
    }
    ExpectUndoRestores(before);
    cad.SetShapeTool(SpSelecting);
  }
  ExpectGoldenFile(drawn, "canvas/drawn-by-each-tool.txt");
}

TEST_F(Gestures, CancelledToolsAddNothingAndTheNextShapeStartsAfresh) {
  cad.SetShapeTool(SpPolyLine);
  mouse.DoubleClick(10, 10);  // a double click on its first two points does not finish a poly-line
  mouse.Click(60, 20);
  Key(cad, Qt::Key_Escape);
  cad.SetShapeTool(SpPolyBezier);
  mouse.Click(20, 20).Click(80, 80);
  Key(cad, Qt::Key_Escape);
  mouse.DoubleClick(30, 30);  // a single anchor is no chain
  cad.SetShapeTool(SpImage);
  cad.OnGetImageFileName = [](QObject*, std::string&) { return false; };
  mouse.Drag(50, 40, 150, 120);
  // A text frame left without a character, by Ctrl+Enter or by Escape.
  cad.SetShapeTool(SpText);
  for (const int key : {Qt::Key_Return, Qt::Key_Escape}) {
    mouse.Drag(50, 40, 150, 120);
    Key(*Editor(), key, Qt::ControlModifier);
  }
  EXPECT_EQ(cad.GetShapesCount(), 0);
  EXPECT_TRUE(cad.GetUndoRedoShapeList().empty());
  cad.SetShapeTool(SpPolyLine);
  mouse.Click(10, 10).Click(60, 20);
  Key(cad, Qt::Key_Escape);
  mouse.Click(200, 200).DoubleClick(250, 250);
  ASSERT_EQ(cad.GetShapesCount(), 1);
  EXPECT_EQ(Last()->GetPoint(0), (TMyPoint{200, 200}));
}

TEST_F(Gestures, WithReturnToSelectingTheToolGoesBackAfterOneShape) {
  cad.SetReturnToSelecting(true);
  int returned = 0;
  cad.OnActionToolToSelecting = [&](QObject*) { ++returned; };
  cad.SetShapeTool(SpLine);
  mouse.Drag(10, 10, 60, 60);
  EXPECT_EQ(cad.GetShapeTool(), SpSelecting);
  EXPECT_EQ(cad.GetActionTool(), dtSelecting);
  EXPECT_EQ(returned, 1);
}

// ---------------------------------------------------------------------------
// Selecting

TEST_F(Gestures, ClickShiftClickAndRubberBandSelect) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  TMyShape* b = AddRect(100, 10, 150, 50);
  AddRect(200, 200, 250, 250);
  // Presses keep off the shapes' centres, where the text point's handle is.
  mouse.Click(20, 20);
  EXPECT_EQ(cad.GetSelectedShape(), a);
  mouse.Click(120, 20, Qt::ShiftModifier);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 2);
  EXPECT_EQ(cad.GetActionTool(), dtSelecting);
  mouse.Click(20, 20, Qt::ShiftModifier);  // Shift on a selected shape deselects it
  EXPECT_EQ(cad.GetSelectedShape(), b);
  mouse.Click(300, 150);
  EXPECT_EQ(cad.GetSelectedShapesCount(), 0);
  mouse.Drag(5, 5, 160, 60);
  EXPECT_EQ(cad.GetSelectedShapes(), (std::vector<TMyShape*>{a, b}));
}

TEST_F(Gestures, ASecondClickWithoutMovingSelectsTheSmallerShapeBeneath) {
  TMyShape* big = AddRect(10, 10, 200, 200);
  TMyShape* small = AddRect(50, 50, 80, 80);
  cad.SendToBack(small, false);
  mouse.Click(60, 60);
  EXPECT_EQ(cad.GetSelectedShape(), big);
  mouse.Click(60, 60);
  EXPECT_EQ(cad.GetSelectedShape(), small);
}

// ---------------------------------------------------------------------------
// Dragging

TEST_F(Gestures, DraggingMovesTheSelectionAndOneUndoMovesItBack) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  AddRect(100, 10, 150, 50);
  const TDocument before = DocumentState(cad);
  int dragged = 0;
  cad.OnShapeMouseDragged = [&](QObject*, TMyShape*, const TPoint&, TPoint&) { ++dragged; };
  cad.SelectAllShapes();
  mouse.Drag(20, 20, 35, 60);
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{25, 50}));
  EXPECT_EQ(dragged, 2);
  ExpectUndoRestores(before);
  // Released where it started: nothing moved, nothing recorded.
  dragged = 0;
  mouse.Click(20, 20);
  mouse.Press(20, 20).Move(60, 60).Move(20, 20).Release(20, 20);
  EXPECT_EQ(dragged, 0);
  EXPECT_EQ(cad.PopFromUndoRedoShapeList(), -1);
}

TEST_F(Gestures, DragModeAndSnapShapeTheMove) {
  struct Case {
    const char* name;
    std::function<void(TMyCAD&)> set;
    int toX, toY;
    TMyPoint corner;
  };
  const Case cases[] = {
      {"horizontal drag mode drops the vertical part", [](TMyCAD& c) { c.SetDragMode(dgHorz); }, 60, 80, {50, 10}},
      {"snap lands the box's left edge (37) on the grid", [](TMyCAD& c) {
         c.GridOperation()->SetGridWidth(20);
         c.GridOperation()->SetGridHeight(20);
         c.SetSnap(true);
         c.SetSnapPixels(5);
       }, 47, 20, {40, 10}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cad.DeleteAllShapes();
    TMyShape* a = AddRect(10, 10, 50, 50);
    c.set(cad);
    mouse.Click(20, 20).Drag(20, 20, c.toX, c.toY);
    EXPECT_EQ(a->GetPoint(0), c.corner);
  }
  // With no snap distance nothing ever snaps.
  cad.SetSnapPixels(0);
  std::int32_t x = 41, y = 39;
  EXPECT_FALSE(cad.SnapXY(x, y));
  EXPECT_EQ(Point(x, y), Point(41, 39));
}

TEST_F(Gestures, ArrowKeysNudgeTheSelectionDeleteRemovesItCtrlZBringsItBack) {
  TMyShape* a = AddRect(10, 10, 50, 50);
  cad.SelectShapeByCode(a->ShapeId, true);
  Key(cad, Qt::Key_Right, Qt::ShiftModifier);  // by the grid
  Key(cad, Qt::Key_Up);                        // by a pixel
  EXPECT_EQ(a->GetPoint(0), (TMyPoint{20, 9}));
  Key(cad, Qt::Key_Delete);
  EXPECT_EQ(cad.GetShapesCount(), 0);
  Key(cad, Qt::Key_Z, Qt::ControlModifier);
  EXPECT_EQ(cad.GetShapesCount(), 1);
}

TEST_F(Gestures, AWholeDragPansEveryShapeWithoutAnUndoStep) {
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

// ---------------------------------------------------------------------------
// Resizing and rotating

class ResizeRotatedRectangle : public Gestures, public ::testing::WithParamInterface<int> {};

TEST_P(ResizeRotatedRectangle, EachHandleResizesLikeTheShapeItselfAndUndoRestores) {
  TMyShape* shape = AddRect(100, 80, 220, 160, 0.3f);
  TMyRectangle reference(&cad);
  reference.Assign(*shape);
  cad.SelectShapeByCode(shape->ShapeId, true);
  const TDocument before = DocumentState(cad);
  const TArrMyPoint original = shape->Points;
  const int hot = GetParam();
  const TPoint handle = MyPtToPt(shape->GetPointInZoom(hot));
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

TEST_F(Gestures, RotatingWithAConstraintTurnsInWholeSteps) {
  TMyShape* shape = AddRect(100, 100, 200, 160);
  cad.SetRotateConstraintDegree(15);
  cad.SelectShapeByCode(shape->ShapeId, true);
  const TDocument before = DocumentState(cad);
  cad.SetShapeTool(SpRotateSelecting);
  mouse.Press(200, 160).Move(190, 175).Release(185, 182);
  const double degrees = shape->GetAngle() * 180 / kPi;
  EXPECT_GT(degrees, 1);
  EXPECT_NEAR(std::fmod(degrees + 1e-3, 15.0), 0, 1e-2);
  ExpectUndoRestores(before);
}

TEST_F(Gestures, DraggingAnArcEndWithShiftSnapsItTo15Degrees) {
  cad.SetShapeTool(SpElliArc);
  mouse.Drag(100, 50, 300, 250);  // a circle of radius 100 about (200, 150)
  cad.SetShapeTool(SpSelecting);
  auto* arc = dynamic_cast<TMyElliArc*>(Last());
  arc->SetArcMode(amCircle);
  const TDocument before = DocumentState(cad);
  // The end handle sits at the right; drag it to about 40 degrees below.
  mouse.Drag(300, 150, 277, 214, Qt::ShiftModifier);
  EXPECT_NEAR(static_cast<double>(arc->EndAngle()), static_cast<double>(kPi / 4), 1e-4);
  EXPECT_NEAR(static_cast<double>(arc->StartAngle()), static_cast<double>(-kPi / 2), 1e-4);
  ExpectUndoRestores(before);
}

// ---------------------------------------------------------------------------
// Nodes

TEST_F(Gestures, NodeRemovalReportsTheIndexOrWhyItRefused) {
  TMyShape* triangle = cad.AddShapeByCode2("TMyPolygon", "", {{10, 10}, {100, 10}, {50, 90}, {10, 10}}, 0);
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyLine", "", {{200, 10}, {250, 50}, {300, 10}}, 0);
  std::vector<std::int32_t> codes;
  cad.OnNodeDeleted = [&](QObject*, TMyShape*&, std::int32_t code) { codes.push_back(code); };
  cad.SetShapeTool(SpPolylinePolygonPointRemoving);
  cad.SelectShapeByCode(triangle->ShapeId, true);
  mouse.Click(100, 10);  // a triangle plus its closing copy: too few points
  mouse.Click(10, 10);   // the closing copy is the last handle hit
  cad.SelectShapeByCode(chain->ShapeId, true);
  const TDocument before = DocumentState(cad);
  mouse.Click(250, 50);
  EXPECT_EQ(codes, (std::vector<std::int32_t>{-8, -7, 1}));
  EXPECT_EQ(chain->Points, (TArrMyPoint{{200, 10}, {300, 10}}));
  ExpectUndoRestores(before);
  mouse.Click(350, 250);  // no node: nothing reported
  EXPECT_EQ(codes.size(), 3u);
}

TEST_F(Gestures, NodeAddingInsertsTheClickBeforeTheSegmentsEnd) {
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyLine", "", {{10, 10}, {110, 10}, {110, 110}}, 0);
  std::vector<std::int32_t> added;
  cad.OnNodeAdded = [&](QObject*, TMyShape*&, std::int32_t index) { added.push_back(index); };
  cad.SelectShapeByCode(chain->ShapeId, true);
  const TDocument before = DocumentState(cad);
  cad.SetShapeTool(SpPolylinePolygonPointAdding);
  mouse.Click(60, 12);
  EXPECT_EQ(added, std::vector<std::int32_t>{1});
  EXPECT_EQ(chain->Points, (TArrMyPoint{{10, 10}, {60, 12}, {110, 10}, {110, 110}}));
  ExpectUndoRestores(before);
}

TEST_F(Gestures, BezierAnchorsDragWithTheirControlsAndPiecesComeAndGo) {
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyBezier", "",
                                        {{20, 150}, {20, 50}, {120, 50}, {120, 150}, {120, 250}, {220, 250}, {220, 150}}, 0);
  const TDocument before = DocumentState(cad);
  struct Case {
    const char* name;
    TDrawTool tool;
    std::function<void(Gestures&)> gesture;
    std::int32_t points;
  };
  const Case cases[] = {
      {"anchor drag", SpSelecting, [](Gestures& t) { t.mouse.Drag(120, 150, 130, 160); }, 7},
      {"piece added on the curve", SpPolylinePolygonPointAdding, [](Gestures& t) { t.mouse.Click(70, 75); }, 10},
      {"piece removed at an anchor", SpPolylinePolygonPointRemoving, [](Gestures& t) { t.mouse.Click(120, 150); }, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cad.SetShapeTool(c.tool);
    cad.SelectShapeByCode(chain->ShapeId, true);
    c.gesture(*this);
    EXPECT_EQ(chain->GetPointsCount(), c.points);
    if (c.tool == SpSelecting) {
      EXPECT_EQ(chain->Points[2], MyPoint(130, 60));
    }
    ExpectUndoRestores(before);
  }
}

// ---------------------------------------------------------------------------
// Text in place, images by code and from the clipboard

TEST_F(Gestures, DoubleClickEditsATextInPlaceOneStepPerCommit) {
  TMyShape* text = cad.AddShapeByCode2("TMyText", "", Box(50, 40, 200, 120), 0);
  dynamic_cast<TMyText*>(text)->SetLines({"old"});
  const TDocument before = DocumentState(cad);
  struct Case {
    const char* name;
    std::function<void(Gestures&)> end;
    bool changed;
  };
  const Case cases[] = {{"Escape cancels", [](Gestures& t) { Key(*t.Editor(), Qt::Key_Escape); }, false},
                        {"a click outside commits", [](Gestures& t) { t.mouse.Click(350, 280); }, true},
                        {"Ctrl+Enter commits", [](Gestures& t) { Key(*t.Editor(), Qt::Key_Enter, Qt::ControlModifier); }, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    mouse.DoubleClick(100, 80);
    ASSERT_NE(Editor(), nullptr);
    EXPECT_EQ(Editor()->toPlainText(), "old");
    Type("er");
    c.end(*this);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(Editor(), nullptr);
    EXPECT_EQ(dynamic_cast<TMyText*>(text)->GetLines(), c.changed ? TStringList{"older"} : TStringList{"old"});
    EXPECT_EQ(StepCount(cad), c.changed ? 1 : 0);
    if (c.changed) ExpectUndoRestores(before);
  }
}

TEST_F(Gestures, ImagesComeFromCodeAndTheClipboardAsOneAddedStep) {
  std::int32_t added = 0;
  cad.OnShapeAdded = [&](QObject*, TMyShape*&, std::int32_t count) { added = count; };
  TBitmap picture;
  ASSERT_TRUE(TMyCAD::LoadPictureFile(pictureFile, picture));
  EXPECT_FALSE(TMyCAD::LoadPictureFile(DataPath("missing.png"), picture));
  EXPECT_EQ(cad.AddImageShapeByCode(TBitmap(), "", {}, 0), nullptr);
  TMyShape* byCode = cad.AddImageShapeByCode(picture, "photo", {}, 0);
  ASSERT_NE(byCode, nullptr);
  EXPECT_EQ(added, 1);
  EXPECT_EQ(byCode->GetName(), "photo");
  EXPECT_EQ(byCode->GetPoint(2), MyPoint(3, 2)) << "its own size at the origin";
  QImage copied(5, 4, QImage::Format_RGB32);
  copied.fill(Qt::blue);
  QGuiApplication::clipboard()->setImage(copied);
  const TDocument before = DocumentState(cad);
  ASSERT_TRUE(cad.PasteImage());
  EXPECT_EQ(added, 2);
  EXPECT_EQ(cad.GetSelectedShape(), Last());
  EXPECT_EQ(std::as_const(*dynamic_cast<TMyImage*>(Last())).Bitmap().Width(), 5);
  ExpectUndoRestores(before);
}

// ---------------------------------------------------------------------------
// Drawing aids: the cross-hair and joining a new line to free ends

// The screen after each move, as pictures: one cross-hair through the mouse,
// the old one erased, the same after a repaint; nothing when it is off.
TEST(TMyCADCrossHair, FollowsTheMouseInNotModeAndSurvivesARepaint) {
  for (const bool on : {true, false}) {
    SCOPED_TRACE(on ? "CrossLine on" : "CrossLine off");
    TMyCAD cad;
    cad.resize(200, 150);
    cad.SetCrossLine(on);
    cad.Repaint();
    const auto screenIs = [&cad, on](const std::string& crossed) {
      const std::string golden = "canvas/" + (on ? crossed : std::string("blank-200x150")) + ".png";
      return test::MatchesGoldenPicture(ToQImage(cad.ScreenBitmap()), golden);
    };
    TMouse(cad).Move(50, 40, false);
    EXPECT_TRUE(screenIs("cross-hair-50-40"));
    TMouse(cad).Move(120, 90, false);
    EXPECT_TRUE(screenIs("cross-hair-120-90"));
    cad.Repaint();
    EXPECT_TRUE(screenIs("cross-hair-120-90"));
  }
}

TEST(TMyCADLineJoining, ALineDrawnFromAFreeEndBecomesOnePolyLineInOneUndoStep) {
  struct Case {
    const char* name;
    int x1, y1, x2, y2;  // the line drawn
    Qt::KeyboardModifiers mods;
    bool otherLayer;           // the existing lines lie on another layer
    int shapes;            // shapes afterwards
    TArrMyPoint points;    // of the last shape, running on through the joined ends
  };
  // Existing lines: (10,10)-(100,10) and (100,100)-(180,100); HotSize 4.
  const Case cases[] = {
      {"end meets an end", 103, 12, 150, 60, {}, false, 2, {{10, 10}, {100, 10}, {150, 60}}},
      {"end meets a start", 60, 60, 12, 8, {}, false, 2, {{60, 60}, {10, 10}, {100, 10}}},
      {"both ends meet two lines", 100, 10, 100, 100, {}, false, 1, {{10, 10}, {100, 10}, {100, 100}, {180, 100}}},
      {"start meets a start", 12, 8, 40, 60, {}, false, 2, {{100, 10}, {10, 10}, {40, 60}}},
      {"beyond HotSize", 105, 10, 150, 60, {}, false, 3, {{105, 10}, {150, 60}}},
      {"Shift held (and the line kept level)", 100, 10, 150, 60, Qt::ShiftModifier, false, 3, {{100, 10}, {150, 10}}},
      {"another layer", 100, 10, 150, 60, {}, true, 3, {{100, 10}, {150, 60}}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TMyCAD cad;
    cad.resize(300, 200);
    cad.AddShapeByCode2("TMyLine", "", {{10, 10}, {100, 10}}, 0);
    cad.AddShapeByCode2("TMyLine", "", {{100, 100}, {180, 100}}, 0);
    if (c.otherLayer) cad.SetCurrentLayerId(cad.NewLayer("other", true));
    cad.SetShapeTool(SpLine);
    TMouse(cad).Drag(c.x1, c.y1, c.x2, c.y2, c.mods);
    ASSERT_EQ(cad.GetShapesCount(), c.shapes);
    const TMyShape& last = *cad.GetShapeByNo(c.shapes - 1);
    EXPECT_EQ(last.Points, c.points);
    EXPECT_STREQ(last.ClassName(), c.points.size() > 2 ? "TMyPolyLine" : "TMyLine");
    cad.PopFromUndoRedoShapeList();
    ASSERT_EQ(cad.GetShapesCount(), 2);
    // One undo gives the pieces back where they were (deleted ones come back
    // at the front of the list).
    EXPECT_EQ(cad.GetShapeByName("Shape0")->Points, (TArrMyPoint{{10, 10}, {100, 10}}));
    EXPECT_EQ(cad.GetShapeByName("Shape1")->Points, (TArrMyPoint{{100, 100}, {180, 100}}));
  }
}

}  // namespace
}  // namespace lumatrex
