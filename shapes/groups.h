// The composite kinds: TMyGroup (shapes kept together; its members are the
// list positions in ChildShapes and point back through ParentId) and
// TMyCombine (members joined into one figure). Both are frames around their
// members, found through the owner's list, and store the shape base record
// only.
//
// Points are the frame's four corners in model coordinates, as a
// rectangle's; hit tests take device pixels.
#pragma once

#include <vector>

#include "shapes/closed_shapes.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// Affine maps of whole shapes (model coordinates)
// ---------------------------------------------------------------------------

// x' = A x + B y + Tx, y' = C x + D y + Ty.
struct TAffineMap {
  long double a = 1, b = 0, c = 0, d = 1, tx = 0, ty = 0;
  TMyPoint Apply(const TMyPoint& p) const;
};
// The map taking the frame (origin O, corners X and Y at the ends of its two
// sides) onto the frame (O2, X2, Y2); the identity when the first frame has
// no area.
TAffineMap FrameToFrame(const TMyPoint& o, const TMyPoint& x, const TMyPoint& y, const TMyPoint& o2,
                        const TMyPoint& x2, const TMyPoint& y2);
TAffineMap Translation(long double dx, long double dy);
// A shear of the x coordinates by Tan times the distance from the line
// y = Origin (Horizontal), or of the y coordinates along x = Origin.
TAffineMap Shear(bool horizontal, long double tan, long double origin);
// Maps every point, link point, the centre and the text point of Shape, and
// tells the owner it changed. The angle stays: a map that is not a turn has
// no angle to add.
void MapAllPoints(TMyShape& shape, const TAffineMap& map);

// ---------------------------------------------------------------------------
// TMyGroup
// ---------------------------------------------------------------------------

// Has no figure of its own: the owner paints its members (before the group),
// and the group adds only its info text. A point hits the group when it hits
// one of its members. Resizing moves the frame as a rectangle's handle does
// and maps every member (nested groups with theirs) from the old frame onto
// the new one, so a turned group scales along its own axes. Moving, turning
// and flipping are done on the members by the owner's group-wide operations.
class TMyGroup : public TMyRectangle {
  Q_OBJECT

 public:
  using TMyRectangle::TMyRectangle;
  const char* ClassName() const override { return "TMyGroup"; }

  // The info text only.
  void Draw(TCanvas& canvas) override;
  // Device point P hits a member.
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;
  void SizeChangeValue(const TMyPoint& a, const TMyPoint& b) override;

 protected:
  // The members the owner holds at the positions in ChildShapes.
  std::vector<TMyShape*> Members() const;
  // The members and, for members that are groups, theirs, depth first.
  std::vector<TMyShape*> AllMembers() const;
};

// ---------------------------------------------------------------------------
// TMyCombine
// ---------------------------------------------------------------------------

// The members' figures (FigureInZoom) joined into one path, filled with the
// alternate (even-odd) rule, so that where two members overlap there is a
// hole, and outlined in the combine's own pen and brush; the members
// themselves are not painted. A point hits it where the fill would paint.
// Uncombining is ungrouping: the members come back as they were.
class TMyCombine : public TMyGroup {
  Q_OBJECT

 public:
  using TMyGroup::TMyGroup;
  const char* ClassName() const override { return "TMyCombine"; }

  void Draw(TCanvas& canvas) override;
  bool IsClickedMe(TCanvas& canvas, const TPoint& p) override;

 private:
  // Each member's figure rounded to device points.
  std::vector<std::vector<TPoint>> Figures() const;
};

}  // namespace lumatrex
