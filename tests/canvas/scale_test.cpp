// The canvas at scale: the spatial index against brute force after random
// edits, partial repaints against full ones, the allocation-free hit test
// against the fill it stands for, and the one-pass list commands against
// their step-by-step definitions. Fixed seeds; nothing is timed.
#include <gtest/gtest.h>

#include <QImage>
#include <algorithm>
#include <cstring>
#include <random>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "platform/canvas.h"
#include "platform/qt_interop.h"
#include "platform/stream.h"
#include "shapes/closed_shapes.h"
#include "shapes/lines.h"
#include "shapes/outline.h"
#include "support/golden.h"

namespace lumatrex {
namespace {

using test::DocumentState;

// ---- random drawings ----------------------------------------------------------

class TRandom {
 public:
  explicit TRandom(std::uint32_t seed) : engine_(seed) {}
  int Int(int low, int high) { return low + static_cast<int>(engine_() % static_cast<std::uint32_t>(high - low + 1)); }
  float Real(float low, float high) {
    return low + (high - low) * static_cast<float>(engine_() >> 8) / static_cast<float>(1u << 24);
  }
  bool Chance(int percent) { return Int(0, 99) < percent; }
  template <typename T>
  T Pick(const std::vector<T>& items) {
    return items[static_cast<std::size_t>(Int(0, static_cast<int>(items.size()) - 1))];
  }

 private:
  std::mt19937 engine_;
};

const std::vector<std::string> kKinds = {"TMyRectangle", "TMyEllipse",  "TMyLine",     "TMyPolygon",
                                         "TMyPolyLine",  "TMyRuleLine", "TMyBLine",    "TMyText",
                                         "TMyLineLinkLine", "TMyGroup"};

TArrMyPoint RandomPoints(TRandom& r, const std::string& kind, float extent) {
  const float x = r.Real(-20, extent), y = r.Real(-20, extent);
  const float w = r.Real(2, 60), h = r.Real(2, 60);
  if (kind == "TMyLine" || kind == "TMyRuleLine" || kind == "TMyLineLinkLine")
    return {{x, y}, {x + r.Real(-40, 40), y + r.Real(-40, 40)}};
  if (kind == "TMyPolygon") return {{x, y}, {x + w, y + h / 3}, {x + w / 2, y + h}, {x, y}};
  if (kind == "TMyPolyLine") return {{x, y}, {x + w / 2, y + h}, {x + w, y}};
  if (kind == "TMyBLine") return {{x, y}, {x + w / 3, y + h}, {x + 2 * w / 3, y - h / 2}, {x + w, y}};
  return test::Box(x, y, x + w, y + h);
}

TMyShape* AddRandomShape(TMyCAD& cad, TRandom& r, float extent, bool record) {
  const std::string kind = r.Pick(kKinds);
  cad.Brush().SetColor(static_cast<TColor>(r.Int(0, 0xFFFFFF)));
  cad.Brush().SetStyle(r.Chance(15) ? bsDiagCross : bsSolid);
  cad.Pen().SetWidth(r.Chance(20) ? r.Int(2, 5) : 1);
  const TArrMyPoint points = RandomPoints(r, kind, extent);
  const float angle = r.Chance(25) ? r.Real(-1.5f, 1.5f) : 0.0f;
  TMyShape* shape = record ? cad.AddShapeByCode(kind, "", points, angle) : cad.AddShapeByCode2(kind, "", points, angle);
  if (auto* line = dynamic_cast<TMyLine*>(shape); line && r.Chance(40)) {
    line->SetArrowStyle(r.Chance(50) ? ADouble : ARight);
    line->SetArrowLength(static_cast<std::uint8_t>(r.Int(4, 20)));
    line->SetArrowAngle(25);
  }
  if (r.Chance(15)) shape->SetInfo(r.Chance(50) ? "label" : "a longer caption here");
  return shape;
}

TMyShape* RandomShape(TMyCAD& cad, TRandom& r) {
  if (cad.GetShapesCount() == 0) return nullptr;
  return cad.GetShapeByNo(r.Int(0, cad.GetShapesCount() - 1));
}

TMyShape* RandomTopLevel(TMyCAD& cad, TRandom& r) {
  TMyShape* s = RandomShape(cad, r);
  return s ? cad.GetRootParentShape(s) : nullptr;
}

// ---- brute force ----------------------------------------------------------------

bool Meets(const TMyRect& a, const TMyRect& b) {
  return a.Left <= b.Right && b.Left <= a.Right && a.Top <= b.Bottom && b.Top <= a.Bottom;
}

std::vector<TMyShape*> BruteShapesMeeting(TMyCAD& cad, const TMyRect& r) {
  std::vector<TMyShape*> found;
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i)
    if (Meets(cad.GetShapeByNo(i)->GetBoundsInZoom(), r)) found.push_back(cad.GetShapeByNo(i));
  return found;
}

// The pick of the selecting tool as it was written before the index: every
// shape from the front, the first top-level connector hit wins, else the
// first other top-level shape hit.
TMyShape* BrutePick(TMyCAD& cad, const TPoint& p) {
  TMyShape* winner = nullptr;
  TMyShape* fallback = nullptr;
  for (std::int32_t i = cad.GetShapesCount() - 1; i >= 0; --i) {
    TMyShape* s = cad.GetShapeByNo(i);
    if (!cad.IsVisibleLayerByID(s->LayerId)) continue;
    if (!cad.GetOperateAllLayer() && s->LayerId != cad.GetCurrentLayerId()) continue;
    if (!s->IsClickedMe(cad.Canvas(), p)) continue;
    const bool connector = std::strcmp(s->ClassName(), "TMyLineLinkLine") == 0;
    if (connector && !s->HasParentShape() && !winner) winner = s;
    if (!connector && !s->HasParentShape() && !fallback) fallback = s;
  }
  return winner ? winner : fallback;
}

// One random edit of the kinds a user or a host program makes; answers
// what it did.
std::string RandomEdit(TMyCAD& cad, TRandom& r, float extent) {
  TMyShape* s = RandomTopLevel(cad, r);
  TMyShape* other = RandomTopLevel(cad, r);
  const auto selectSome = [&] {
    cad.RemoveAllWorkingShapes();
    for (int k = 0; k < 4; ++k)
      if (TMyShape* t = RandomTopLevel(cad, r)) cad.AddWorkingShapes(t);
  };
  switch (r.Int(0, 19)) {
    case 0:
      AddRandomShape(cad, r, extent, true);
      return "add";
    case 1:
      if (s) cad.DeleteShapeById(s->ShapeId, true);
      return "delete";
    case 2:
      if (s) {
        cad.PushtoUndoRedoShapeList({s}, ACT_CHANGE);
        cad.Move(s, r.Real(-30, 30), r.Real(-30, 30));
      }
      return "move";
    case 3:
      if (auto* box = dynamic_cast<TMyRectangle*>(s); box && box->GetPointsCount() == 4) {
        const TPoint corner = MyPtToPt(box->GetPointInZoom(2));
        if (box->InWhichHot(corner) < 0) return "resize";
        cad.PushtoUndoRedoShapeList({box}, ACT_CHANGE);
        cad.SizeChangeValueforShapes(box, corner, Point(corner.X + r.Int(1, 30), corner.Y + r.Int(1, 30)));
      }
      return "resize";
    case 4:
      if (s) {
        cad.PushtoUndoRedoShapeList({s}, ACT_CHANGE);
        cad.Rotate(s, r.Real(-1, 1));
      }
      return "rotate";
    case 5:
      if (s && other && s != other) cad.GroupShapes({s, other}, true);
      return "group";
    case 6:
      if (s) cad.UnGroupShape(s, true);
      return "ungroup";
    case 7:
    case 8:
      cad.PopFromUndoRedoShapeList();
      return "undo";
    case 9: {
      TMemoryStream stream;
      cad.SaveToStream(stream);
      stream.Seek(0, soBeginning);
      EXPECT_TRUE(cad.LoadFromStream(stream));
      cad.SetUndoRedoSize(30);
      return "load";
    }
    case 10:
      cad.SetZoom(r.Pick(std::vector<double>{0.5, 1, 1.5, 2, 3}));
      return "zoom";
    case 11:
      if (s && s->GetPointsCount() > 0) {
        s->Points[0].X += r.Real(-20, 20);
        s->Changed();
      }
      return "direct edit";
    case 12:
      if (s && r.Chance(50)) cad.BringToFront(s, true);
      if (s && r.Chance(50)) cad.SendToBack(s, true);
      return "z-order";
    case 13:
      selectSome();
      cad.DeleteSelectedShapes(true);
      return "delete selection";
    case 14:
      if (s) {
        s->Pen().SetWidth(r.Int(1, 6));
        s->SetInfo(r.Chance(50) ? "" : "changed text");
        s->SetVisible(r.Chance(80));
      }
      return "look";
    case 15:
      if (s) cad.SelectShapeByCode(s->ShapeId, r.Chance(50));
      return "select";
    case 16:
      cad.DeSelectedAllShapesByCode();
      return "deselect";
    case 17:
      if (cad.IsVisibleLayerByID(0) && r.Chance(30)) cad.InVisibleLayerByID(0);
      else cad.VisibleAllLayer();
      return "layer shown or hidden";
    case 18:
      if (s && other && s != other && !s->Points.empty() && !other->Points.empty()) {
        if (s->LinkPoints.empty()) s->AddLinkPoint(s->Points[0]);
        if (other->LinkPoints.empty()) other->AddLinkPoint(other->Points[0]);
        cad.CreateLink(s, 0, other, 0, r.Chance(50) ? lldsLine : lldsHV, true);
      }
      return "connect";
    default:
      selectSome();
      if (r.Chance(50))
        cad.AlignLeft();
      else
        cad.AlignBottom();
      return "align";
  }
}

void ExpectIndexAgrees(TMyCAD& cad, TRandom& r) {
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) {
    TMyShape* s = cad.GetShapeByNo(i);
    ASSERT_EQ(s->ShapeNo, i);
    ASSERT_TRUE(cad.GetIndexedBounds(s) == s->GetBoundsInZoom()) << "shape " << i << " " << s->ClassName();
    ASSERT_EQ(cad.GetShapeByID(s->ShapeId)->ShapeId, s->ShapeId);
  }
  for (int k = 0; k < 6; ++k) {
    const float x = r.Real(-100, 500), y = r.Real(-100, 500);
    const TMyRect area{x, y, x + r.Real(0, 150), y + r.Real(0, 150)};
    ASSERT_EQ(cad.GetShapesInIndex(area), BruteShapesMeeting(cad, area));
  }
  for (int k = 0; k < 12; ++k) {
    const TPoint p = Point(r.Int(-40, 520), r.Int(-40, 520));
    ASSERT_EQ(cad.ShapeAt(p.X, p.Y), BrutePick(cad, p)) << "at " << p.X << ", " << p.Y;
  }
}

// ---- the index ------------------------------------------------------------------

TEST(TMyCADScale, TheIndexAgreesWithABruteForceScanAfterRandomEdits) {
  TRandom r(20240611);
  TMyCAD cad;
  cad.resize(400, 400);
  cad.SetUndoRedoSize(30);
  for (int i = 0; i < 40; ++i) AddRandomShape(cad, r, 400, false);
  ExpectIndexAgrees(cad, r);
  for (int step = 0; step < 400 && !HasFatalFailure(); ++step) {
    const std::string what = RandomEdit(cad, r, 400);
    SCOPED_TRACE("after " + what + " (step " + std::to_string(step) + ")");
    ExpectIndexAgrees(cad, r);
  }
}

// ---- partial repaints ---------------------------------------------------------------

QImage Picture(const TMyCAD& cad) { return ToQImage(cad.ScreenBitmap()).copy(); }

TEST(TMyCADScale, PartialRepaintsGiveTheSamePictureAsAFullRepaint) {
  TRandom r(77);
  TMyCAD cad;
  cad.resize(320, 260);
  cad.SetUndoRedoSize(20);
  cad.SetHotSize(3);
  cad.Font().SetSize(8);
  for (int i = 0; i < 45; ++i) AddRandomShape(cad, r, 300, false);
  cad.Repaint();
  cad.Repaint();
  for (int step = 0; step < 150; ++step) {
    const std::string what = RandomEdit(cad, r, 300);
    // As the event loop would: painting until nothing is left to paint (a
    // measuring line learns its label's length while it is drawn).
    for (int pass = 0; pass < 4 && (pass == 0 || cad.InvalidatedBounds() != TRect{}); ++pass) cad.PaintInvalidated();
    const QImage partial = Picture(cad);
    cad.Repaint();
    const QImage full = Picture(cad);
    ASSERT_TRUE(test::SamePicture(partial, full, "partial-repaint")) << "after " << what << " (step " << step << ")";
  }
}

TEST(TMyCADScale, APartialRepaintPaintsOnlyWhatChanged) {
  TMyCAD cad;
  cad.resize(400, 300);
  TMyShape* a = test::AddBox(cad, 10, 10, 40, 40);
  test::AddBox(cad, 300, 200, 340, 240);
  cad.Repaint();
  EXPECT_EQ(cad.InvalidatedBounds(), TRect{});
  cad.Move(a, 5, 0);
  const TRect dirty = cad.InvalidatedBounds();
  // Around the moved shape only, its old and its new place.
  EXPECT_LT(dirty.Left, 10);
  EXPECT_GT(dirty.Right, 45);
  EXPECT_LE(dirty.Right, 100);
  EXPECT_LE(dirty.Bottom, 100);
  cad.PaintInvalidated();
  EXPECT_EQ(cad.InvalidatedBounds(), TRect{});
  cad.SelectShapeByCode(a->ShapeId, true);
  // The handles of the selection change.
  EXPECT_NE(cad.InvalidatedBounds(), TRect{});
  EXPECT_LE(cad.InvalidatedBounds().Right, 100);
}

// ---- the hit test -----------------------------------------------------------------

TEST(TMyCADScale, TheAllocationFreePolygonTestIsTheFillsVerdict) {
  TRandom r(5);
  for (int polygon = 0; polygon < 300; ++polygon) {
    std::vector<TPoint> points;
    const int n = r.Int(3, 8);
    for (int i = 0; i < n; ++i) points.push_back(Point(r.Int(-10, 30), r.Int(-10, 30)));
    const TRegion region = TRegion::CreatePolygonRgn(points, pfmAlternate);
    for (int y = -12; y <= 32; ++y)
      for (int x = -12; x <= 32; ++x)
        ASSERT_EQ(PtInPolygon(points, Point(x, y)), region.PtInRegion(x, y))
            << "polygon " << polygon << " at " << x << ", " << y;
  }
}

// ---- list commands in one pass ------------------------------------------------------

// A drawing with groups (nested too) among plain shapes and connectors.
void BuildGroupedDrawing(TMyCAD& cad, std::uint32_t seed) {
  TRandom r(seed);
  for (int i = 0; i < 30; ++i) AddRandomShape(cad, r, 300, false);
  for (int g = 0; g < 6; ++g) {
    std::vector<TMyShape*> members;
    for (int k = 0; k < 3; ++k)
      if (TMyShape* s = RandomTopLevel(cad, r)) members.push_back(s);
    cad.GroupShapes(members, false);
  }
}

// On the same grouped drawing, z-order moves and then the deletion of a
// selection (locked shapes among it), each against its step-by-step form.
TEST(TMyCADScale, ZOrderMovesAndDeletingTheSelectionEqualTheirStepByStepForms) {
  for (std::uint32_t seed = 1; seed <= 12; ++seed) {
    SCOPED_TRACE(seed);
    TMyCAD done, reference;
    BuildGroupedDrawing(done, seed);
    BuildGroupedDrawing(reference, seed);
    TRandom r(seed * 7);
    for (int k = 0; k < 6; ++k) {
      const std::int32_t no = r.Int(0, done.GetShapesCount() - 1);
      TMyShape* a = done.GetShapeByNo(no);
      TMyShape* b = reference.GetShapeByNo(no);
      if (r.Chance(50)) {
        done.BringToFront(a, false);
        while (TMyShape* next = reference.GetNextSingleorRootShape(b->ShapeNo)) reference.SwapShape(b, next);
      } else {
        done.SendToBack(a, false);
        while (TMyShape* previous = reference.GetPrevSingleorRootShape(b->ShapeNo)) reference.SwapShape(b, previous);
      }
      ASSERT_EQ(DocumentState(done), DocumentState(reference)) << "move " << k;
    }
    std::vector<std::int32_t> ids;
    for (int k = 0; k < 8; ++k)
      if (TMyShape* s = RandomTopLevel(done, r)) {
        if (r.Chance(20)) s->StoreLocked(true);
        reference.GetShapeByID(s->ShapeId)->StoreLocked(s->GetLocked());
        done.AddWorkingShapes(s);
      }
    for (TMyShape* s : done.GetSelectedShapes()) ids.push_back(s->ShapeId);
    const std::int32_t count = done.GetShapesCount();
    done.DeleteSelectedShapes(true);
    for (const std::int32_t id : ids) reference.DeleteShapeById(id, false);
    ASSERT_EQ(DocumentState(done), DocumentState(reference));
    // One step, and one undo brings them all back.
    done.PopFromUndoRedoShapeList();
    EXPECT_EQ(done.GetUndoRedoShapeList().size(), 0u);
    EXPECT_EQ(done.GetShapesCount(), count);
  }
}

}  // namespace
}  // namespace lumatrex
