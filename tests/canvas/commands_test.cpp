// Groups as frames, combined figures, flips and tilts, redo and the editing
// keys, on an offscreen canvas driven by real mouse and key events.
#include <gtest/gtest.h>

#include <cmath>
#include <functional>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "geometry/geometry.h"
#include "shapes/groups.h"
#include "support/mouse.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Key;
using test::TMouse;

std::vector<std::uint8_t> Saved(const TMyCAD& cad) {
  TMemoryStream stream;
  cad.SaveToStream(stream);
  return stream.Bytes();
}

TColor PixelAt(TMyCAD& cad, int x, int y) {
  cad.DrawAll(Rect(0, 0, cad.Width(), cad.Height()));
  return TBitmap(cad.BackBuffer()).Canvas().GetPixel(x, y);
}

// A (20,20)-(60,60) and B (100,80)-(140,120), grouped unless Loose; with
// Nested, B sits in a group of its own inside.
struct TScene {
  TMyCAD cad;
  TMouse mouse{cad};
  TMyShape* a;
  TMyShape* b;
  TMyShape* group = nullptr;
  explicit TScene(bool loose = false, bool nested = false) {
    cad.resize(400, 300);
    cad.SetResizeEnable(true);
    cad.SetDragEnable(true);
    a = AddBox(cad, 20, 20, 60, 60);
    b = AddBox(cad, 100, 80, 140, 120);
    if (loose) {
      cad.SelectShapeByCode(a->ShapeId, true);
      cad.SelectShapeByCode(b->ShapeId, false);
      return;
    }
    TMyShape* inner = nested ? cad.GroupShapes({b}, false) : b;
    group = cad.GroupShapes({a, inner}, false);
    cad.SelectShapeByCode(group->ShapeId, true);
  }
};

void ExpectBox(const TMyCAD& cad, TMyShape* s, const TMyRect& want) {
  const TMyRect got = cad.GetShapesLTRB({s});
  EXPECT_NEAR(got.Left, want.Left, 1e-3);
  EXPECT_NEAR(got.Top, want.Top, 1e-3);
  EXPECT_NEAR(got.Right, want.Right, 1e-3);
  EXPECT_NEAR(got.Bottom, want.Bottom, 1e-3);
}

// Each command moves the members as expected, and undo, redo and undo again
// give back the saved bytes of the drawing before and after it exactly.
TEST(TMyCADCommands, GroupAndSelectionCommandsMoveMembersAndUndoRedoExactly) {
  struct Case {
    const char* name;
    bool loose, nested;
    std::function<void(TScene&)> act;
    TMyRect a, b;
  };
  const Case cases[] = {
      {"a group's corner handle scales every member about the far corner", false, false,
       [](TScene& s) { s.mouse.Drag(140, 120, 260, 220); }, {20, 20, 100, 100}, {180, 140, 260, 220}},
      {"a nested group's members scale with the outer group", false, true,
       [](TScene& s) { s.mouse.Drag(140, 120, 260, 220); }, {20, 20, 100, 100}, {180, 140, 260, 220}},
      {"a quarter turn moves members about the group centre", false, false,
       [](TScene& s) {
         s.cad.PushtoUndoRedoShapeList({s.group}, ACT_CHANGE);
         s.cad.Rotate(s.group, static_cast<float>(kPi / 2));
       },
       {90, 10, 130, 50}, {30, 90, 70, 130}},
      {"a horizontal flip mirrors the selection about its joint centre line", true, false,
       [](TScene& s) { s.cad.FlipHoriz(); }, {100, 20, 140, 60}, {20, 80, 60, 120}},
      {"a vertical flip of a group mirrors its members", false, false, [](TScene& s) { s.cad.FlipVert(); },
       {20, 80, 60, 120}, {100, 20, 140, 60}},
      {"a 45 degree tilt in x shears about the centre line", true, false,
       [](TScene& s) { s.cad.TiltHoriz(static_cast<double>(kPi / 4)); }, {-30, 20, 50, 60}, {110, 80, 190, 120}},
      {"a tilt past 89 degrees does nothing", true, false, [](TScene& s) { s.cad.TiltVert(1.56); },
       {20, 20, 60, 60}, {100, 80, 140, 120}},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TScene s(c.loose, c.nested);
    const auto before = Saved(s.cad);
    c.act(s);
    ExpectBox(s.cad, s.a, c.a);
    ExpectBox(s.cad, s.b, c.b);
    const auto after = Saved(s.cad);
    if (after == before) continue;
    s.cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(s.cad), before);
    ASSERT_TRUE(s.cad.Redo());
    EXPECT_EQ(Saved(s.cad), after);
    s.cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(s.cad), before);
  }
}

TEST(TMyCADCommands, CombiningFillsEvenOddWithHolesAndUncombiningGivesTheMembersBack) {
  TMyCAD cad;
  cad.resize(100, 100);
  cad.Brush().SetColor(clRed);
  TMyShape* a = AddBox(cad, 10, 10, 50, 50);
  AddBox(cad, 30, 30, 70, 70);
  cad.Brush().SetColor(clBlue);
  TMyShape* combine = cad.CombineShapes({a, cad.GetShapeByNo(1)}, true);
  ASSERT_NE(combine, nullptr);
  EXPECT_EQ(combine->Brush().Color(), clRed);
  EXPECT_EQ(PixelAt(cad, 20, 20), clRed);
  EXPECT_EQ(PixelAt(cad, 40, 40), clWhite);  // the overlap is a hole
  EXPECT_EQ(PixelAt(cad, 60, 60), clRed);
  EXPECT_EQ(cad.ShapeAt(20, 20), combine);
  EXPECT_EQ(cad.ShapeAt(40, 40), nullptr);
  const auto combined = Saved(cad);
  cad.UnGroupShape(combine, true);
  EXPECT_EQ(PixelAt(cad, 40, 40), clRed);  // the front member, painted again
  EXPECT_EQ(cad.ShapeAt(40, 40), cad.GetShapeByNo(1));
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(Saved(cad), combined);
  EXPECT_STREQ(cad.GetShapeByNo(2)->ClassName(), "TMyCombine");
}

// Each redo brings back exactly the drawing its undo started from (undo
// itself may not: deleted shapes come back at the front, z-order inverses
// are coarse), so undoing everything and redoing it all ends on the last
// state, and a new change ends what could be redone.
TEST(TMyCADCommands, RedoReturnsToTheStateBeforeEachUndoAndANewChangeEndsIt) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  const std::vector<std::function<void()>> steps = {
      [&] { cad.AddShapeByCode("TMyEllipse", "", test::Box(20, 0, 30, 10), 0); },
      [&] { cad.GroupShapes({cad.GetShapeByNo(0), cad.GetShapeByNo(1)}, true); },
      [&] { cad.BringToFront(cad.GetShapeByNo(2), true); },
      [&] { cad.AddShapeByCode("TMyRectangle", "", test::Box(0, 40, 10, 50), 0); },
      [&] { cad.SendToBack(cad.GetShapeByNo(3), true); },
      [&] { cad.UnGroupShape(cad.GetShapeByNo(3), true); },
      [&] { cad.DeleteShapeById(cad.GetShapeByNo(1)->ShapeId, true); },
  };
  for (const auto& step : steps) step();
  std::vector<std::vector<std::uint8_t>> seen = {Saved(cad)};  // before each undo, and after the last
  while (cad.CanUndo()) {
    cad.PopFromUndoRedoShapeList();
    seen.push_back(Saved(cad));
  }
  ASSERT_EQ(seen.size(), steps.size() + 1);
  for (std::size_t i = seen.size() - 1; i-- > 0;) {
    SCOPED_TRACE(i);
    ASSERT_TRUE(cad.Redo());
    EXPECT_EQ(Saved(cad), seen[i]);
  }
  EXPECT_FALSE(cad.Redo());
  for (std::size_t i = 1; i < seen.size(); ++i) {
    cad.PopFromUndoRedoShapeList();
    EXPECT_EQ(Saved(cad), seen[i]);  // undoing again gives what it gave before
  }
  cad.AddShapeByCode("TMyLine", "", {{0, 0}, {5, 5}}, 0);
  EXPECT_FALSE(cad.CanRedo());
}

TEST(TMyCADCommands, TheHistoryKeepsItsMemoryUnderTheLimitButAlwaysTheNewestStep) {
  TMyCAD cad;
  for (int i = 0; i < 5; ++i) cad.AddShapeByCode("TMyRectangle", "", test::Box(0, 0, 10, 10), 0);
  EXPECT_EQ(test::StepCount(cad), 5);
  const std::int64_t perStep = cad.GetUndoMemoryUsed() / 5;
  cad.SetUndoMemoryLimit(perStep * 2);
  EXPECT_EQ(test::StepCount(cad), 2);
  cad.SetUndoMemoryLimit(0);
  EXPECT_EQ(test::StepCount(cad), 1);
  EXPECT_EQ(cad.GetUndoMemoryLimit(), 0);
}

TEST(TMyCADCommands, KeysAndDoubleClicksEditAsInOtherEditors) {
  struct Case {
    const char* name;
    std::function<void(TScene&)> act;
    int shapes;
    std::function<TMyShape*(TScene&)> selected;
  };
  auto groupSelected = [](TScene& s) { return s.group; };
  const Case cases[] = {
      {"Ctrl+D duplicates the group with its members", [](TScene& s) { Key(s.cad, Qt::Key_D, Qt::ControlModifier); },
       6, [](TScene& s) { return s.cad.GetShapeByNo(5); }},
      {"Ctrl+C, Ctrl+V pastes a copy", [](TScene& s) {
         Key(s.cad, Qt::Key_C, Qt::ControlModifier);
         Key(s.cad, Qt::Key_V, Qt::ControlModifier);
       }, 6, [](TScene& s) { return s.cad.GetShapeByNo(5); }},
      {"Ctrl+X cuts", [](TScene& s) { Key(s.cad, Qt::Key_X, Qt::ControlModifier); }, 0,
       [](TScene&) -> TMyShape* { return nullptr; }},
      {"Ctrl+Y after Ctrl+Z redoes", [](TScene& s) {
         Key(s.cad, Qt::Key_D, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Y, Qt::ControlModifier);
       }, 6, [](TScene&) -> TMyShape* { return nullptr; }},
      {"Ctrl+Shift+Z redoes too", [](TScene& s) {
         Key(s.cad, Qt::Key_X, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier);
         Key(s.cad, Qt::Key_Z, Qt::ControlModifier | Qt::ShiftModifier);
       }, 0, [](TScene&) -> TMyShape* { return nullptr; }},
      {"a double click enters the group at the member", [](TScene& s) { s.mouse.DoubleClick(120, 100); }, 3,
       [](TScene& s) { return s.b; }},
      {"Escape leaves the group", [](TScene& s) {
         s.mouse.DoubleClick(120, 100);
         Key(s.cad, Qt::Key_Escape);
       }, 3, groupSelected},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TScene s;
    c.act(s);
    EXPECT_EQ(s.cad.GetShapesCount(), c.shapes);
    EXPECT_EQ(s.cad.GetSelectedShape(), c.selected(s));
  }
}

}  // namespace
}  // namespace lumatrex
