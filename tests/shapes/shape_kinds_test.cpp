#include <gtest/gtest.h>

#include <algorithm>
#include <memory>
#include <string>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/fake_owner.h"
#include "shapes/groups.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/record_bytes.h"
#include "shapes/shape_factory.h"
#include "shapes/text.h"

namespace lumatrex {
namespace {

using test::TBytes;
using test::TFakeOwner;
using test::TRecordBytes;

TBytes Saved(const TMyShape& shape) {
  TMemoryStream stream;
  shape.SaveToStream(stream);
  return stream.Bytes();
}

// What Shape writes after the record of its parent class, which must come
// first unchanged.
TBytes TailAfter(const TBytes& whole, const TBytes& parent) {
  EXPECT_GE(whole.size(), parent.size());
  EXPECT_TRUE(std::equal(parent.begin(), parent.end(), whole.begin())) << "the parent record comes first";
  return TBytes(whole.begin() + static_cast<std::ptrdiff_t>(std::min(parent.size(), whole.size())), whole.end());
}

TBitmap Picture() {
  TBitmap picture(3, 2, pf24bit);
  picture.Canvas().Brush().SetColor(0x102030);
  picture.Canvas().FillRect(Rect(0, 0, 2, 2));
  return picture;
}

// Gives the kind-specific fields of Shape values other than their defaults.
void Customize(TMyShape& shape) {
  if (auto* arc = dynamic_cast<TMyElliArc*>(&shape)) {
    arc->SetArcMode(amCircle);
    arc->SetArcStyle(asPie);
  }
  if (auto* text = dynamic_cast<TMyText*>(&shape)) {
    text->SetIsBorder(true);
    text->SetIsSolid(true);
    text->SetLines({"first", "", "third"});
    text->SetVAlignment(tlCenter);
    text->SetHAlignment(taRightJustify);
    text->SetWordWrap(false);
    text->SetCharacterSpace(3);
  }
  if (auto* image = dynamic_cast<TMyImage*>(&shape)) {
    image->Bitmap() = Picture();
    image->SetBrightness(-20);
    image->SetContrast(35);
    image->SetTransparent(true);
    image->SetGrayScale(true);
    image->SetTransparentColor(0x00ABCDEF);
    image->SetTransparentMode(tmFixed);
  }
  if (auto* point = dynamic_cast<TMyLinkPoint*>(&shape)) point->SetSize(13);
  if (auto* stroke = dynamic_cast<TMyFreeLine*>(&shape)) {
    stroke->SetArrowAngle(-30);
    stroke->SetArrowLength(77);
    stroke->SetArrowOffset(2);
    stroke->SetArrowStyle(ARight);
  }
}

// ---------------------------------------------------------------------------
// Records as written

TEST(ShapeKindRecord, KindsWithoutATailWriteTheShapeBaseRecord) {
  TFakeOwner owner;
  for (const char* name : {"TMyRectangle", "TMyEllipse", "TMyPolygon", "TMyPolyLine", "TMyBLine", "TMyPolyBezier",
                           "TMyGroup", "TMyCombine"}) {
    const std::unique_ptr<TMyShape> shape = CreateShapeByClassName(name, &owner);
    shape->Points = {{1, 2}, {3, 4}};
    // Settings these kinds keep only in memory must not leak into the record.
    if (auto* line = dynamic_cast<TMyLine*>(shape.get())) line->SetArrowStyle(ADouble);
    if (auto* rectangle = dynamic_cast<TMyRectangle*>(shape.get())) rectangle->SetShowSideHot(false);
    TMemoryStream base;
    shape->TMyShape::SaveToStream(base);
    EXPECT_EQ(Saved(*shape), base.Bytes()) << name;
  }
}

TEST(ShapeKindRecord, TheTailsAreWrittenByteForByte) {
  TFakeOwner owner;
  TMemoryStream picture;
  const TBitmap bitmap = Picture();
  WriteBitmapBuffer(picture, &bitmap);
  const std::pair<const char*, TBytes> rows[] = {
      {"TMyElliArc", TRecordBytes().u8(amCircle).u8(asPie).bytes},
      // Flags, lines, alignments, word wrap; the character space is not stored.
      {"TMyText", TRecordBytes().u8(1).u8(1).i32(3).str("first").str("").str("third").u8(1).u8(1).u8(0).bytes},
      // Bitmap block, brightness, contrast, transparent, border, grey, colour, mode.
      {"TMyImage", TRecordBytes().append(picture.Bytes()).i32(-20).i32(35).u8(1).u8(0).u8(1).i32(0xABCDEF).i32(1).bytes},
      {"TMyFreeLine", TRecordBytes().i32(-30).u8(77).u8(2).u8(2).bytes},  // angle, length, offset, style
      {"TMyLinkPoint", TRecordBytes().u8(13).bytes},
  };
  for (const auto& [name, tail] : rows) {
    const std::unique_ptr<TMyShape> shape = CreateShapeByClassName(name, &owner);
    shape->Points = {{5, 6}};
    Customize(*shape);
    TMemoryStream base;
    shape->TMyShape::SaveToStream(base);
    EXPECT_EQ(TailAfter(Saved(*shape), base.Bytes()), tail) << name;
  }
}

TEST(ShapeKindRecord, ConnectorsWriteTheLineRecordThenTheirEnds) {
  TFakeOwner owner;
  for (bool lineLink : {false, true}) {
    std::unique_ptr<TMyLinkLine> link = lineLink ? std::make_unique<TMyLineLinkLine>(&owner)
                                                 : std::make_unique<TMyLinkLine>(&owner);
    link->Points = {{0, 0}, {10, 0}};
    link->SetStartSpNo(3);
    link->SetStartSpPtId(1);
    link->SetLinkLineDrawStyle(lldsVH);
    TMemoryStream line;
    link->TMyLine::SaveToStream(line);
    EXPECT_EQ(TailAfter(Saved(*link), line.Bytes()), TRecordBytes().i32(3).i32(1).i32(-1).i32(-1).u8(2).bytes)
        << link->ClassName();
  }
}

// ---------------------------------------------------------------------------
// Creation by drawing tool

// The gesture tests draw every kind a drawing tool makes but the connectors
// and link points; those, and the tools that draw nothing, are checked here.
TEST(CreateShapeByDrawTool, ConnectorToolsGiveTheirKindsOtherToolsNoShape) {
  struct Row {
    TDrawTool tool;
    const char* made;  // nullptr: the tool draws nothing
  };
  const Row rows[] = {{SpLinkLine, "TMyLinkLine"}, {SpLineLinkLine, "TMyLineLinkLine"}, {SpLinkPoint, "TMyLinkPoint"},
                      {SpSelecting, nullptr}, {SpRotateSelecting, nullptr}, {SpClose, nullptr}, {SpDragWhole, nullptr},
                      {SpBrowse, nullptr}, {SpPolylinePolygonPointAdding, nullptr},
                      {SpPolylinePolygonPointRemoving, nullptr}};
  TFakeOwner owner;
  for (const Row& row : rows) {
    const std::unique_ptr<TMyShape> shape = CreateShapeByDrawTool(row.tool, &owner);
    ASSERT_EQ(shape != nullptr, row.made != nullptr) << "tool " << int(row.tool);
    if (!shape) continue;
    EXPECT_STREQ(shape->ClassName(), row.made);
    EXPECT_EQ(shape->Owner(), &owner) << row.made;
  }
}

}  // namespace
}  // namespace lumatrex
