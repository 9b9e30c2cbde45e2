// The arc, Bezier, text and image tools and edits driven by real mouse and
// key events; each gesture is followed by one undo that must give back the
// document exactly.
#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QImage>
#include <QPlainTextEdit>
#include <QTemporaryDir>
#include <cmath>

#include "document_state.h"
#include "support/mouse.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/image.h"
#include "shapes/text.h"

namespace lumatrex {
namespace {

using test::DocumentState;
using test::Key;
using test::TMouse;

struct KindTools : ::testing::Test {
  TMyCAD cad;
  TMouse mouse{cad};
  QTemporaryDir dir;
  std::string pictureFile;
  void SetUp() override {
    cad.resize(400, 300);
    cad.SetResizeEnable(true);
    cad.SetRotateEnable(true);
    cad.SetDragEnable(true);
    QImage picture(3, 2, QImage::Format_RGB32);
    picture.fill(Qt::red);
    pictureFile = dir.filePath("picture.png").toStdString();
    ASSERT_TRUE(picture.save(QString::fromStdString(pictureFile)));
    cad.OnGetImageFileName = [this](QObject*, std::string& name) {
      name = pictureFile;
      return true;
    };
  }
  TMyShape* Last() { return cad.GetShapeByNo(cad.GetShapesCount() - 1); }
  QPlainTextEdit* Editor() { return cad.findChild<QPlainTextEdit*>(); }
  void Type(const QString& text) {
    for (const QChar c : text) Key(*Editor(), c.unicode(), Qt::NoModifier, QString(c));
  }
  void ExpectOneUndoRestores(const std::vector<test::TShapeState>& before) {
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(DocumentState(cad), before);
  }
};

// ---- the tools ---------------------------------------------------------------------------

TEST_F(KindTools, EachToolMakesItsKindAndOneUndoRemovesIt) {
  struct Case {
    const char* name;
    TDrawTool tool;
    std::function<void(KindTools&)> gesture;
    const char* className;
    std::int32_t points;
  };
  const Case cases[] = {
      {"arc: a frame, then a quarter arc", SpElliArc, [](KindTools& t) { t.mouse.Drag(50, 40, 150, 120); }, "TMyElliArc", 6},
      {"Bezier: drag tangents, double click", SpPolyBezier,
       [](KindTools& t) { t.mouse.Drag(20, 20, 60, 20).Drag(100, 80, 140, 80).DoubleClick(200, 30); }, "TMyPolyBezier", 7},
      {"Bezier: clicks, Enter", SpPolyBezier,
       [](KindTools& t) {
         t.mouse.Click(20, 20).Move(90, 90, false).Click(90, 90);
         Key(t.cad, Qt::Key_Return);
       },
       "TMyPolyBezier", 4},
      {"text: a frame, typed lines, Ctrl+Enter", SpText,
       [](KindTools& t) {
         t.mouse.Drag(150, 120, 50, 40);
         t.Type("Hi");
         Key(*t.Editor(), Qt::Key_Return, Qt::ControlModifier);
       },
       "TMyText", 4},
      {"image: a frame, then a file", SpImage, [](KindTools& t) { t.mouse.Drag(50, 40, 150, 120); }, "TMyImage", 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cad.DeleteAllShapes();
    const auto before = DocumentState(cad);
    cad.SetShapeTool(c.tool);
    c.gesture(*this);
    ASSERT_EQ(cad.GetShapesCount(), 1);
    EXPECT_STREQ(Last()->ClassName(), c.className);
    EXPECT_EQ(Last()->GetPointsCount(), c.points);
    EXPECT_EQ(Editor(), nullptr);
    ExpectOneUndoRestores(before);
    cad.SetShapeTool(SpSelecting);
  }
  // What each gesture made, checked on fresh drawings.
  cad.SetShapeTool(SpPolyBezier);
  mouse.Drag(20, 20, 60, 20).Drag(100, 80, 140, 80).DoubleClick(200, 30);
  EXPECT_EQ(Last()->Points, (TArrMyPoint{{20, 20}, {60, 20}, {60, 80}, {100, 80}, {140, 80}, {200, 30}, {200, 30}}));
  cad.SetShapeTool(SpText);
  mouse.Drag(150, 120, 50, 40);
  Type("Hi");
  Key(*Editor(), Qt::Key_Return, Qt::ControlModifier);
  EXPECT_EQ(dynamic_cast<TMyText*>(Last())->GetLines(), (TStringList{"Hi"}));
  EXPECT_EQ(Last()->GetPoint(0), MyPoint(50, 40)) << "the frame starts at its top-left";
  cad.SetShapeTool(SpImage);
  mouse.Drag(50, 40, 150, 120);
  EXPECT_EQ(std::as_const(*dynamic_cast<TMyImage*>(Last())).Bitmap().Width(), 3);
}

TEST_F(KindTools, CancelledToolsAddNothing) {
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
}

// ---- edits of finished shapes --------------------------------------------------------------

TEST_F(KindTools, DraggingAnArcEndWithShiftSnapsItTo15Degrees) {
  cad.SetShapeTool(SpElliArc);
  mouse.Drag(100, 50, 300, 250);  // a circle of radius 100 about (200, 150)
  cad.SetShapeTool(SpSelecting);
  auto* arc = dynamic_cast<TMyElliArc*>(Last());
  arc->SetArcMode(amCircle);
  const auto before = DocumentState(cad);
  // The end handle sits at the right; drag it to about 40 degrees below.
  mouse.Drag(300, 150, 277, 214, Qt::ShiftModifier);
  EXPECT_NEAR(static_cast<double>(arc->EndAngle()), static_cast<double>(kPi / 4), 1e-4);
  EXPECT_NEAR(static_cast<double>(arc->StartAngle()), static_cast<double>(-kPi / 2), 1e-4);
  ExpectOneUndoRestores(before);
}

TEST_F(KindTools, DoubleClickEditsATextInPlaceOneStepPerCommit) {
  TMyShape* text = cad.AddShapeByCode2("TMyText", "", test::Box(50, 40, 200, 120), 0);
  dynamic_cast<TMyText*>(text)->SetLines({"old"});
  cad.SetShapeTool(SpSelecting);
  const auto before = DocumentState(cad);
  struct Case {
    const char* name;
    std::function<void(KindTools&)> end;
    bool changed;
  };
  const Case cases[] = {{"Escape cancels", [](KindTools& t) { Key(*t.Editor(), Qt::Key_Escape); }, false},
                        {"a click outside commits", [](KindTools& t) { t.mouse.Click(350, 280); }, true},
                        {"Ctrl+Enter commits", [](KindTools& t) { Key(*t.Editor(), Qt::Key_Enter, Qt::ControlModifier); }, true}};
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
    EXPECT_EQ(test::StepCount(cad), c.changed ? 1 : 0);
    if (c.changed) ExpectOneUndoRestores(before);
  }
}

TEST_F(KindTools, BezierAnchorsDragWithTheirControlsAndPiecesComeAndGo) {
  TMyShape* chain = cad.AddShapeByCode2("TMyPolyBezier", "",
                                        {{20, 150}, {20, 50}, {120, 50}, {120, 150}, {120, 250}, {220, 250}, {220, 150}}, 0);
  cad.SelectShapeByCode(chain->ShapeId, true);
  const auto before = DocumentState(cad);
  struct Case {
    const char* name;
    TDrawTool tool;
    std::function<void(KindTools&)> gesture;
    std::int32_t points;
  };
  const Case cases[] = {
      {"anchor drag", SpSelecting, [](KindTools& t) { t.mouse.Drag(120, 150, 130, 160); }, 7},
      {"piece added on the curve", SpPolylinePolygonPointAdding, [](KindTools& t) { t.mouse.Click(70, 75); }, 10},
      {"piece removed at an anchor", SpPolylinePolygonPointRemoving, [](KindTools& t) { t.mouse.Click(120, 150); }, 4},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    cad.SetShapeTool(c.tool);
    cad.SelectShapeByCode(chain->ShapeId, true);
    c.gesture(*this);
    EXPECT_EQ(chain->GetPointsCount(), c.points);
    if (c.tool == SpSelecting) { EXPECT_EQ(chain->Points[2], MyPoint(130, 60)); }
    ExpectOneUndoRestores(before);
  }
}

// ---- image by code and from the clipboard; the drawing file ----------------------------------

TEST_F(KindTools, ImagesComeFromCodeAndTheClipboardAsOneAddedStep) {
  std::int32_t added = 0;
  cad.OnShapeAdded = [&](QObject*, TMyShape*&, std::int32_t count) { added = count; };
  TBitmap picture;
  ASSERT_TRUE(TMyCAD::LoadPictureFile(pictureFile, picture));
  EXPECT_FALSE(TMyCAD::LoadPictureFile(dir.filePath("missing.png").toStdString(), picture));
  EXPECT_EQ(cad.AddImageShapeByCode(TBitmap(), "", {}, 0), nullptr);
  TMyShape* byCode = cad.AddImageShapeByCode(picture, "photo", {}, 0);
  ASSERT_NE(byCode, nullptr);
  EXPECT_EQ(added, 1);
  EXPECT_EQ(byCode->GetName(), "photo");
  EXPECT_EQ(byCode->GetPoint(2), MyPoint(3, 2)) << "its own size at the origin";
  QImage copied(5, 4, QImage::Format_RGB32);
  copied.fill(Qt::blue);
  QGuiApplication::clipboard()->setImage(copied);
  const auto before = DocumentState(cad);
  ASSERT_TRUE(cad.PasteImage());
  EXPECT_EQ(added, 2);
  EXPECT_EQ(cad.GetSelectedShape(), Last());
  EXPECT_EQ(std::as_const(*dynamic_cast<TMyImage*>(Last())).Bitmap().Width(), 5);
  ExpectOneUndoRestores(before);
}

}  // namespace
}  // namespace lumatrex
