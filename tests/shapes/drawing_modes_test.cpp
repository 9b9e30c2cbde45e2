// The markers drawn over shapes: handle squares, link crosses, the text-point
// diamond and the info text, each against its picture in tests/data/shapes.
#include <gtest/gtest.h>

#include <functional>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/fake_owner.h"
#include "shapes/sheet.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

TEST(Markers, EachMarkerDrawsExactlyItsPicture) {
  using TDraw = std::function<void(TFakeOwner&, TMyShape&, TCanvas&)>;
  struct Case { const char* picture; TDraw draw; };
  const Case cases[] = {
      {"marker_half_size_grey_square_of_a_locked_group_member", [](TFakeOwner&, TMyShape& s, TCanvas& c) {
         s.ParentId = 0;
         s.StoreLocked(true);
         DrawSquare(s, c, {20, 20});
       }},
      {"marker_circle_while_rotating", [](TFakeOwner& o, TMyShape& s, TCanvas& c) {
         o.action = dtRotating;
         DrawSquare(s, c, {20, 20});
       }},
      {"marker_none", [](TFakeOwner& o, TMyShape& s, TCanvas& c) {  // a shape that may not turn
         o.action = dtRotating;
         s.SetRotateEnable(false);
         DrawSquare(s, c, {20, 20});
       }},
      // Strokes from (7.5 -> 8) to (12.5 -> 12), without their end pixels.
      {"marker_blue_link_cross", [](TFakeOwner&, TMyShape&, TCanvas& c) { DrawLinkSquare(c, {10, 10}); }},
      {"marker_none", [](TFakeOwner&, TMyShape& s, TCanvas& c) { DrawDiamond(s, c, {20, 20}, clYellow); }},  // no info
      {"marker_diamond_of_the_full_hot_size", [](TFakeOwner&, TMyShape& s, TCanvas& c) {
         s.SetInfo("label");
         c.Pen().SetColor(clRed);
         DrawDiamond(s, c, {20, 20}, clYellow);
       }},
      {"marker_info_A", [](TFakeOwner&, TMyShape& s, TCanvas& c) {
         s.SetInfo("A");
         s.DrawInfo(c);
       }},
      {"marker_info_A", [](TFakeOwner&, TMyShape& s, TCanvas& c) {  // the info wins over the lines
         s.SetInfo("A");
         s.SetMultiInfo({"one", "two", "three"});
         s.DrawInfo(c);
       }},
      {"marker_none", [](TFakeOwner&, TMyShape& s, TCanvas& c) {
         s.SetInfo("A");
         s.SetCaptionShow(false);
         s.DrawInfo(c);
       }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.picture);
    TFakeOwner owner;
    TMyShape shape(&owner);
    shape.TextoutPoint = {32, 32};  // where the info is written
    test::TSheet sheet;
    sheet.canvas().Brush().SetStyle(bsSolid);
    c.draw(owner, shape, sheet.canvas());
    EXPECT_TRUE(sheet.LooksLike(c.picture));
  }
}

}  // namespace
}  // namespace lumatrex
