#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "shapes/fake_owner.h"
#include "shapes/shape_factory.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

TEST(CreateShapeByClassName, TrimsTheClassTagAndRefusesOtherNames) {
  struct Row {
    const char* edge;
    std::string name;
    const char* made;  // nullptr: no shape
  };
  for (const Row& row : {Row{"16-byte tag padded with spaces", "TMyText        ", "TMyText"},
                         Row{"leading blanks and a tab", "  \tTMyBLine", "TMyBLine"},
                         Row{"only the base class", "TMyShape", nullptr}, Row{"wrong case", "tmyline", nullptr},
                         Row{"a prefix of a class name", "TMyLin", nullptr}, Row{"empty", "", nullptr},
                         Row{"blanks only", "                ", nullptr}}) {
    const std::unique_ptr<TMyShape> shape = CreateShapeByClassName(row.name, nullptr);
    if (!row.made) {
      EXPECT_EQ(shape, nullptr) << row.edge;
      continue;
    }
    ASSERT_NE(shape, nullptr) << row.edge;
    EXPECT_STREQ(shape->ClassName(), row.made) << row.edge;
  }
}

TEST(CreateShapeByDrawTool, EachDrawingToolGivesItsKind) {
  struct Row {
    TDrawTool tool;
    const char* made;  // nullptr: the tool draws nothing
  };
  const Row rows[] = {
      {SpLinkLine, "TMyLinkLine"}, {SpSelecting, nullptr}, {SpRotateSelecting, nullptr}, {SpLine, "TMyLine"},
      {SpRuleLine, "TMyRuleLine"}, {SpPolyLine, "TMyPolyLine"}, {SpRectangle, "TMyRectangle"},
      {SpLinkPoint, "TMyLinkPoint"}, {SpLineLinkLine, "TMyLineLinkLine"}, {SpEllipse, "TMyEllipse"},
      {SpText, "TMyText"}, {SpImage, "TMyImage"}, {SpPolygon, "TMyPolygon"}, {SpPolyBezier, "TMyPolyBezier"},
      {SpElliArc, "TMyElliArc"}, {SpClose, nullptr}, {SpPolylinePolygonPointRemoving, nullptr},
      {SpPolylinePolygonPointAdding, nullptr}, {SpDragWhole, nullptr}, {SpBrowse, nullptr},
      {SpFreeLine, "TMyFreeLine"}, {SpBLine, "TMyBLine"},
  };
  TFakeOwner owner;
  for (const Row& row : rows) {
    const std::unique_ptr<TMyShape> shape = CreateShapeByDrawTool(row.tool, &owner);
    if (!row.made) {
      EXPECT_EQ(shape, nullptr) << "tool " << int(row.tool);
      continue;
    }
    ASSERT_NE(shape, nullptr) << row.made;
    EXPECT_STREQ(shape->ClassName(), row.made);
    EXPECT_EQ(shape->Owner(), &owner) << row.made;
  }
  EXPECT_EQ(std::size(rows), std::size_t{SpBLine} + 1);  // every tool has a row
}

}  // namespace
}  // namespace lumatrex
