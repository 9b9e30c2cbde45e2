#include <gtest/gtest.h>

#include <cstring>
#include <vector>

#include "persistence/stream_io.h"
#include "shapes/fake_owner.h"
#include "shapes/record_bytes.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;
using test::TBytes;
using test::TRecordBytes;

// Fields 1 to 14 of a record with one point (3, 4) and no link points.
TRecordBytes Head(bool extended, bool coordinates) {
  TRecordBytes r;
  r.str("Shape5").i32(5).i32(2).i32(0).i32(-1).i32(0).i32(0).i32(1);
  if (coordinates) extended ? r.ext(3).ext(4) : r.f32(3).f32(4);
  r.i32(0);
  extended ? r.ext(3).ext(4) : r.f32(3).f32(4);
  return r;
}

// Fields 34 to 38.
void InfoAndPen(TRecordBytes& r) { r.str("info").i32(clBlue).u8(pmCopy).u8(psDash).i32(3); }

TMyShape& Load(TFakeOwner& owner, const std::string& version, const TBytes& bytes, std::int64_t* left = nullptr) {
  owner.version = version;
  TMyShape& shape = owner.Add();
  TMemoryStream stream(bytes);
  shape.LoadFromStream(stream);
  if (left) *left = stream.Remaining();
  return shape;
}

TEST(TMyShapeRecord, ABrushBitmapReplacesTheStoredBrushColourAndStyle) {
  TBitmap pattern(2, 2, pf24bit);
  TMemoryStream block;
  WriteBitmapBuffer(block, &pattern);
  TRecordBytes r = Head(false, true);
  r.i32(0).f32(0);
  r.raw(block.Memory(), static_cast<std::size_t>(block.Size())).i32(clRed).u8(bsCross);
  r.str("").i32(0).i32(0).str("F").u8(0).i32(0).i32(-11).i32(8).u8(0).i32(96).u8(0);
  r.i64(0).u8(gsNone);
  InfoAndPen(r);
  r.i32(0).u8(0).u8(0).u8(1);  // XP.9: no user data, flips, visible
  TFakeOwner owner;
  owner.brush.SetColor(clGreen);
  std::int64_t left = -1;
  TMyShape& shape = Load(owner, "XP.9", r.bytes, &left);
  EXPECT_EQ(left, 0);
  ASSERT_NE(shape.Brush().Bitmap(), nullptr);
  EXPECT_EQ(shape.Brush().Color(), clGreen);
  EXPECT_EQ(shape.Brush().Style(), bsSolid);
}

}  // namespace
}  // namespace lumatrex
