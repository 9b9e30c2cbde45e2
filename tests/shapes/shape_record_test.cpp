#include <gtest/gtest.h>

#include "persistence/stream_io.h"
#include "shapes/fake_owner.h"
#include "shapes/record_bytes.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;
using test::TRecordBytes;

// An "XP.9" record with a brush bitmap: the shape takes the owner's brush
// colour and a solid style, whatever colour and style the record stores.
TEST(TMyShapeRecord, ABrushBitmapReplacesTheStoredBrushColourAndStyle) {
  TBitmap pattern(2, 2, pf24bit);
  TMemoryStream block;
  WriteBitmapBuffer(block, &pattern);
  TRecordBytes r;
  r.str("Shape5").i32(5).i32(2).i32(0).i32(-1).i32(0).i32(0);  // identity, no children, no connectors
  r.i32(1).f32(3).f32(4).i32(0).f32(3).f32(4);                  // one point, no link points, centre
  r.i32(0).f32(0);                                              // tag, angle
  r.raw(block.Memory(), static_cast<std::size_t>(block.Size())).i32(clRed).u8(bsCross);
  r.str("").i32(0).i32(0).str("F").u8(0).i32(0).i32(-11).i32(8).u8(0).i32(96).u8(0);
  r.i64(0).u8(gsNone);
  r.str("info").i32(clBlue).u8(pmCopy).u8(psDash).i32(3);  // info, pen
  r.i32(0).u8(0).u8(0).u8(1);                               // no user data, flips, visible
  TFakeOwner owner;
  owner.brush.SetColor(clGreen);
  owner.version = "XP.9";
  TMyShape& shape = owner.Add();
  TMemoryStream stream(r.bytes);
  shape.LoadFromStream(stream);
  EXPECT_EQ(stream.Remaining(), 0);
  ASSERT_NE(shape.Brush().Bitmap(), nullptr);
  EXPECT_EQ(shape.Brush().Color(), clGreen);
  EXPECT_EQ(shape.Brush().Style(), bsSolid);
}

}  // namespace
}  // namespace lumatrex
