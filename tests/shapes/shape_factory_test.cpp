#include <gtest/gtest.h>

#include <cstring>
#include <string>

#include "shapes/fake_owner.h"
#include "shapes/shape_factory.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

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
