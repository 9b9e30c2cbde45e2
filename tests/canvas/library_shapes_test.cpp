#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "shapes/connectors.h"
#include "shapes/shape_factory.h"

namespace lumatrex {
namespace {

using test::AddBox;
using test::Box;
using test::DocumentState;
using test::StepCount;

// A library with the entry "Pair", drawn 20 x 10: a group (0) of a box (1)
// and a connector (2) from the box's link point to a shape outside the entry.
TLibManager PairLibrary() {
  TCmbShape drawing("XP.j", nullptr);
  for (const char* kind : {"TMyGroup", "TMyRectangle", "TMyLinkLine"})
    drawing.Shapes.push_back(CreateShapeByClassName(kind, &drawing));
  TMyShape& group = *drawing.Shapes[0];
  TMyShape& box = *drawing.Shapes[1];
  auto& link = static_cast<TMyLinkLine&>(*drawing.Shapes[2]);
  group.Points = Box(0, 0, 20, 10);
  group.ChildShapes = {1, 2};
  box.ShapeNo = 1;
  box.ParentId = 0;
  box.Points = Box(0, 0, 10, 10);
  box.LinkPoints = {{10, 5}};
  link.ShapeNo = 2;
  link.ParentId = 0;
  link.Points = {{10, 5}, {20, 5}};
  link.SetStartSpNo(1);
  link.SetStartSpPtId(0);
  link.SetEndSpNo(7);
  link.SetEndSpPtId(0);
  TLibManager lib;
  EXPECT_TRUE(lib.AppendNewShape("Pair", {&group, &box, &link}, {}, 20, 10));
  return lib;
}

TEST(TMyCADLibraryShapes, AnEntryIsPlacedInFrontWithNewIdentitiesAndRenumberedReferences) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  AddBox(cad, 20, 0, 30, 10);
  const std::int32_t firstId = cad.GetNextShapeId();
  const std::vector<TMyShape*> placed = cad.AddUserDefineShapefromLib(PairLibrary(), "Pair", {100, 50, 0, 0});

  ASSERT_EQ(placed.size(), 3u);
  for (std::int32_t i = 0; i < 3; ++i) {
    TMyShape* shape = placed[static_cast<std::size_t>(i)];
    EXPECT_EQ(cad.GetShapeByNo(2 + i), shape);
    EXPECT_EQ(shape->ShapeId, firstId + i);
    EXPECT_EQ(shape->GetName(), "Shape" + std::to_string(firstId + i));
    EXPECT_EQ(shape->LayerId, cad.GetCurrentLayerId());
    EXPECT_EQ(shape->Owner(), &cad);
  }
  EXPECT_EQ(cad.GetNextShapeId(), firstId + 3);
  EXPECT_EQ(placed[0]->ChildShapes, (std::vector<std::int32_t>{3, 4}));
  EXPECT_EQ(placed[1]->ParentId, 2);
  EXPECT_EQ(placed[1]->Points, Box(100, 50, 110, 60));
  EXPECT_EQ(placed[1]->LinkPoints, (TArrMyPoint{{110, 55}}));
  const auto* link = static_cast<const TMyLinkLine*>(placed[2]);
  EXPECT_EQ(link->GetStartSpNo(), 3);
  EXPECT_EQ(link->GetEndSpNo(), -1);  // its shape is not in the entry
}

TEST(TMyCADLibraryShapes, PlacingIsOneAddStepThatUndoTakesBackWhole) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  const auto before = DocumentState(cad);
  int added = 0;
  cad.OnShapeAdded = [&added](QObject*, TMyShape*&, std::int32_t) { ++added; };
  cad.AddUserDefineShapefromLib(PairLibrary(), "Pair");
  EXPECT_EQ(added, 3);
  ASSERT_EQ(StepCount(cad), 1);
  ASSERT_EQ(cad.GetUndoRedoShapeList().size(), 1u);  // the group; its members go with it
  EXPECT_EQ(cad.GetUndoRedoShapeList()[0].ActionName, "ACT_ADD");
  cad.PopFromUndoRedoShapeList();
  EXPECT_EQ(DocumentState(cad), before);
}

TEST(TMyCADLibraryShapes, AnAbsentOrDamagedEntryLeavesTheDrawingAlone) {
  TMyCAD cad;
  AddBox(cad, 0, 0, 10, 10);
  const auto before = DocumentState(cad);
  EXPECT_TRUE(cad.AddUserDefineShapefromLib(PairLibrary(), "Other").empty());
  TLibManager damaged = PairLibrary();
  std::vector<std::uint8_t> bytes = damaged.Bytes();
  bytes.pop_back();
  damaged.SetBytes(bytes);
  EXPECT_THROW(cad.AddUserDefineShapefromLib(damaged, "Pair"), EReadError);
  EXPECT_EQ(DocumentState(cad), before);
  EXPECT_EQ(StepCount(cad), 0);
}

TEST(TMyCADLibraryShapes, WithoutLayersTheCanvasRefusesAsForAnyShape) {
  TMyCAD cad;
  cad.DeleteAllLayers();
  test::THookRecorder hooks;
  EXPECT_TRUE(cad.AddUserDefineShapefromLib(PairLibrary(), "Pair").empty());
  EXPECT_EQ(cad.GetShapesCount(), 0);
  EXPECT_EQ(hooks.messages, std::vector<std::string>{"Error!There is no Layer!"});
  EXPECT_EQ(hooks.terminations, 1);
}

}  // namespace
}  // namespace lumatrex
