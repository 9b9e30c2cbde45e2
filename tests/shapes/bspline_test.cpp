#include <gtest/gtest.h>

#include <memory>
#include <vector>

#include "platform/bitmap.h"
#include "platform/canvas.h"
#include "shapes/bspline.h"
#include "shapes/fake_owner.h"
#include "shapes/sheet.h"

namespace lumatrex {
namespace {

using test::TFakeOwner;

// A white picture to draw curves on.
struct TSheet : test::TSheet {
  TSheet() : test::TSheet(200, 150) {}
};

// ---------------------------------------------------------------------------
// Drawing

TEST(TMyBLineDraw, SamplesStartAndEndOnTheClickedEndsInZoomedSpace) {
  TFakeOwner owner(2);
  TMyBLine curve(&owner);
  curve.Points = {{10.25f, 60}, {30, 15}, {60, 55}, {90.5f, 20}};
  TSheet sheet;
  std::vector<TPoint> path;
  std::vector<std::uint8_t> types;
  for (const TPoint& offset : {TPoint{0, 0}, TPoint{4, -3}}) {
    sheet.canvas().BeginPath();
    curve.Draging(sheet.canvas(), {0, 0}, offset);
    sheet.canvas().EndPath();
    sheet.canvas().GetPath(path, types);
    sheet.canvas().AbortPath();
    ASSERT_EQ(path.size(), 601u);
    EXPECT_EQ(types.front(), ptMoveTo);
    EXPECT_EQ(types.back(), ptLineTo);
    EXPECT_EQ(path.front(), (TPoint{20 + offset.X, 120 + offset.Y}));  // 20.5 rounds to even
    EXPECT_EQ(path.back(), (TPoint{181 + offset.X, 40 + offset.Y}));
  }
}

// Draw keeps the curve it painted; after a preview, an edit or a zoom the
// picture and the vertex buffer must be those of a fresh curve.
TEST(TMyBLineDraw, ACachedCurveRedrawsAsAFreshOneAfterEveryChange) {
  struct Case {
    const char* name;
    void (*change)(TMyBLine&, TFakeOwner&);
  };
  const Case cases[] = {
      {"unchanged after a preview",
       [](TMyBLine& c, TFakeOwner&) {
         TSheet preview;
         c.Draging(preview.canvas(), {0, 0}, {7, 3});
       }},
      {"moved point", [](TMyBLine& c, TFakeOwner&) { c.Points[1].Y += 0.25f; }},
      {"zoomed", [](TMyBLine&, TFakeOwner& owner) { owner.zoom = 1.25; }},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.name);
    TFakeOwner owner;
    auto make = [&owner] {
      auto curve = std::make_unique<TMyBLine>(&owner);
      curve->Points = {{10, 60}, {30, 15}, {60, 55}, {90, 20}};
      return curve;
    };
    auto cached = make();
    test::Drawn(*cached);  // fills its cache
    c.change(*cached, owner);
    auto fresh = make();
    c.change(*fresh, owner);
    ASSERT_TRUE(test::Drawn(*cached) == test::Drawn(*fresh));
    ASSERT_EQ(cached->VertexCount(), fresh->VertexCount());
    for (int i = 0; i <= fresh->VertexCount() + 1; ++i) EXPECT_TRUE(cached->Vertex(i) == fresh->Vertex(i)) << i;
  }
}

TEST(TMyBLineDraw, TheOnePixelCurveCoversEveryClickedPoint) {
  TFakeOwner owner;
  TMyBLine curve(&owner);
  curve.Points = {{20, 100}, {60, 30}, {100, 30}, {100, 30}, {100, 30}, {120, 110}, {180, 40}};
  TSheet sheet;
  curve.Draw(sheet.canvas());
  // The stroke leaves out the pixel of its end point, as every open line does.
  EXPECT_TRUE(sheet.LooksLike("bspline_through_every_clicked_point"));
  EXPECT_FALSE(sheet.canvas().Pen().Geometric());  // the shape's pen is not left behind
  curve.Points.resize(1);                          // fewer than two points draw no curve
  TSheet single;
  curve.Draw(single.canvas());
  EXPECT_EQ(single.inked(), 0);
}

TEST(TMyBLineDraw, TheStrokeUsesTheShapesEndCaps) {
  const std::pair<const char*, TPenStyleEndCapType> caps[] = {{"bspline_flat_cap_stops_at_the_end_point", psectFLAT},
                                                              {"bspline_round_cap_reaches_past_it", psectROUND}};
  for (const auto& [picture, cap] : caps) {
    TFakeOwner owner;
    TMyBLine curve(&owner);
    curve.Points = {{50, 50}, {150, 50}};
    curve.Pen().SetWidth(9);
    curve.SetPenStyleEndCapType(cap);
    TSheet sheet;
    curve.Draw(sheet.canvas());
    EXPECT_TRUE(sheet.LooksLike(picture));
  }
}

TEST(TMyBLineDraw, TheDrawingPreviewAfterAClickErasesThePreviewBeforeIt) {
  TFakeOwner owner;
  TMyBLine curve(&owner);
  curve.Points = {{20, 100}, {60, 30}};
  TSheet sheet;
  const TPoint mouse{120, 110};
  curve.Drawing(sheet.canvas(), {60, 30}, mouse);
  EXPECT_GT(sheet.inked(), 100);
  curve.AddPointByMouse(mouse);
  curve.Drawing(sheet.canvas(), mouse, mouse);
  EXPECT_EQ(sheet.inked(), 0);
}

// ---------------------------------------------------------------------------
// Hit tests and handles

TEST(TMyBLineHit, IsClickedMeWithinHotSizeOrHalfThePenWidth) {
  struct Row { const char* edge; std::int32_t penWidth; TPoint p; bool hit; };
  for (const Row& row : {Row{"on the curve", 1, {50, 50}, true}, Row{"HotSize below it", 1, {50, 54}, true},
                         Row{"one pixel further", 1, {50, 55}, false},
                         Row{"HotSize beyond the end", 1, {104, 50}, true},
                         Row{"half a wide pen away", 20, {50, 60}, true},
                         Row{"beyond half a wide pen", 20, {50, 61}, false}}) {
    TFakeOwner owner;
    TMyBLine curve(&owner);
    curve.Points = {{0, 50}, {100, 50}};
    curve.Pen().SetWidth(row.penWidth);
    TSheet sheet;
    EXPECT_EQ(curve.IsClickedMe(sheet.canvas(), row.p), row.hit) << row.edge;
  }
}

TEST(TMyBLineHit, NodeInsertionGoesBeforeTheFollowingClickedPoint) {
  struct Row { const char* edge; TPoint p; std::int32_t index; };
  for (const Row& row : {Row{"first piece", {50, 50}, 1}, Row{"second piece of uneven spacing", {250, 50}, 2},
                         Row{"just after the middle point", {102, 50}, 2}, Row{"off the curve", {50, 70}, -1}}) {
    TFakeOwner owner;
    TMyBLine curve(&owner);
    curve.Points = {{0, 50}, {100, 50}, {300, 50}};
    std::int32_t index = 99;
    EXPECT_EQ(curve.IsClickedMeBeforeWhichPoint(index, row.p), row.index >= 0) << row.edge;
    EXPECT_EQ(index, row.index) << row.edge;
  }
}

// ---------------------------------------------------------------------------
// Creation and editing

TEST(TMyBLineEntry, ARepeatedLastClickEndsEntryAndDropsTheDuplicate) {
  struct Row { const char* edge; std::vector<TPoint> clicks; bool finished; std::size_t points; };
  for (const Row& row : {Row{"double-click on the first point", {{5, 5}, {5, 5}}, false, 2},
                         Row{"distinct clicks go on", {{5, 5}, {9, 9}, {20, 5}}, false, 3},
                         Row{"double-click on the second point", {{5, 5}, {9, 9}, {9, 9}}, true, 2}}) {
    TFakeOwner owner;
    TMyBLine curve(&owner);
    bool finished = false;
    for (const TPoint& p : row.clicks) {
      curve.AddPointByMouse(p);
      finished = curve.IsDrawingFinished(mbLeft, p);
    }
    EXPECT_EQ(finished, row.finished) << row.edge;
    EXPECT_EQ(curve.Points.size(), row.points) << row.edge;
  }
}

TEST(TMyBLineEntry, TheHundredthPointEndsEntryAndNoFurtherPointIsTaken) {
  TFakeOwner owner;
  TMyBLine curve(&owner);
  for (int i = 0; i < TMyBLine::kMaxPoints; ++i) {
    curve.AddPointByMouse({i, i % 2 * 10});
    EXPECT_EQ(curve.IsDrawingFinished(mbLeft, {i, 0}), i == TMyBLine::kMaxPoints - 1) << "point " << i;
  }
  curve.AddPointByMouse({500, 500});
  EXPECT_EQ(curve.GetPointsCount(), TMyBLine::kMaxPoints);
  std::int32_t index = 0;
  EXPECT_FALSE(curve.IsClickedMeBeforeWhichPoint(index, {0, 0}));  // no node insertion on a full curve
  EXPECT_EQ(index, -1);
}

TEST(TMyBLineEntry, ALongerListFromCodeIsDrawnOverItsFirstHundredPoints) {
  TFakeOwner owner;
  TMyBLine curve(&owner);
  for (int i = 0; i < 150; ++i) curve.AddPoint({static_cast<float>(i), 20});
  TSheet sheet;
  curve.Draw(sheet.canvas());
  EXPECT_EQ(curve.VertexCount(), TMyBLine::kMaxPoints);
  EXPECT_EQ(sheet.at(98, 20), clBlack);
  EXPECT_EQ(sheet.at(100, 20), clWhite);
}

TEST(TMyBLineEntry, SizeChangeValueMovesTheCurrentHotPointByTheUnzoomedOffset) {
  TFakeOwner owner(2);
  TMyBLine curve(&owner);
  curve.Points = {{10, 10}, {30, 10}, {50, 30}};
  ASSERT_EQ(curve.InWhichHot({60, 20}), 1);
  curve.SizeChangeValue({60, 20}, {70, 16});
  EXPECT_EQ(curve.Points[1], (TMyPoint{35, 8}));
  EXPECT_EQ(curve.Points[0], (TMyPoint{10, 10}));
  EXPECT_EQ(curve.CenterPoint, (TMyPoint{30, 19}));
}

}  // namespace
}  // namespace lumatrex
