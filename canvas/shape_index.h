// The canvas's spatial index of shape bounds (internal to the canvas, not
// part of the public API; it is the one place that includes Boost).
//
// Every shape of the list has a slot: its box as indexed (zoomed coordinates,
// from TMyShape::GetBoundsInZoom at the zoom the index was built for), the
// ShapeId it is filed under, and whether it changed since. Boxes live in a
// Boost.Geometry R-tree keyed by the shape's address, so reordering the list
// leaves the index alone. Changes are recorded, not applied: the canvas
// flushes them (recomputing the changed boxes) before any query, and learns
// which areas to repaint from the old and new boxes.
#pragma once

// Boost.Geometry still includes a header Boost itself marks as deprecated;
// the note it prints says nothing about this code.
#ifndef BOOST_ALLOW_DEPRECATED_HEADERS
#define BOOST_ALLOW_DEPRECATED_HEADERS
#endif
#include <boost/geometry.hpp>
#include <boost/geometry/index/rtree.hpp>
#include <cstdint>
#include <unordered_map>
#include <utility>
#include <vector>

#include "geometry/geometry.h"

namespace lumatrex {

class TMyShape;

class TShapeIndex {
 public:
  using TPointD = boost::geometry::model::point<double, 2, boost::geometry::cs::cartesian>;
  using TBox = boost::geometry::model::box<TPointD>;
  using TValue = std::pair<TBox, TMyShape*>;

  struct TSlot {
    TMyRect box{};         // as indexed; meaningless while !indexed
    bool indexed = false;  // in the tree
    bool stale = true;     // changed since its box was taken
    std::int32_t id = 0;   // the ShapeId it is filed under in the id map
  };

  // Forgets everything.
  void Clear();
  // A new shape of the list: filed under its id, stale until the next flush.
  void Add(TMyShape* shape);
  // A shape leaving the list: out of the tree and the id map. Returns its
  // indexed box through Box (false when it had none).
  bool Remove(TMyShape* shape, TMyRect& box);
  // Marks a shape of the list as changed; false for a shape not in the list.
  bool MarkStale(const TMyShape* shape);
  bool Contains(const TMyShape* shape) const { return slots_.contains(shape); }
  const TSlot* SlotOf(const TMyShape* shape) const;
  bool HasStale() const { return !stale_.empty(); }
  std::size_t StaleCount() const { return stale_.size(); }

  // Recomputes the boxes of the stale shapes (and refiles changed ids);
  // Repaint(R) is called with the old and the new box of each.
  template <typename Fn>
  void Flush(Fn&& repaint);
  // Takes every box anew at once (after a zoom or handle-size change, or a
  // bulk load): Shapes, all the shapes of the list, get fresh slots.
  void Rebuild(const std::vector<TMyShape*>& shapes);

  // Calls Fn(shape) for every indexed shape whose box meets R (borders
  // included). The order is the tree's.
  template <typename Fn>
  void Query(const TMyRect& r, Fn&& fn) const;

  // The shapes filed under Id (normally one); Fn(shape) for each.
  template <typename Fn>
  void ForEachWithId(std::int32_t id, Fn&& fn) const {
    const auto [first, last] = byId_.equal_range(id);
    for (auto it = first; it != last; ++it) fn(it->second);
  }

  std::size_t Size() const { return slots_.size(); }

  static TBox ToBox(const TMyRect& r) { return TBox(TPointD(r.Left, r.Top), TPointD(r.Right, r.Bottom)); }

 private:
  void Unfile(const TMyShape* shape, std::int32_t id);
  void Refresh(TMyShape* shape, TSlot& slot, TMyRect& before, bool& hadBefore, TMyRect& after);

  boost::geometry::index::rtree<TValue, boost::geometry::index::rstar<16>> tree_;
  std::unordered_map<const TMyShape*, TSlot> slots_;
  std::unordered_multimap<std::int32_t, TMyShape*> byId_;
  // Shapes marked stale since the last flush (each once: its slot's flag).
  std::vector<TMyShape*> stale_;
};

template <typename Fn>
void TShapeIndex::Flush(Fn&& repaint) {
  std::vector<TMyShape*> pending;
  pending.swap(stale_);
  for (TMyShape* shape : pending) {
    // A shape deleted since it was marked has no slot any more; the pointer
    // is not followed then.
    const auto it = slots_.find(shape);
    if (it == slots_.end() || !it->second.stale) continue;
    TMyRect before, after;
    bool hadBefore = false;
    Refresh(shape, it->second, before, hadBefore, after);
    if (hadBefore) repaint(before);
    repaint(after);
  }
}

template <typename Fn>
void TShapeIndex::Query(const TMyRect& r, Fn&& fn) const {
  namespace bgi = boost::geometry::index;
  for (auto it = tree_.qbegin(bgi::intersects(ToBox(r))); it != tree_.qend(); ++it) fn(it->second);
}

}  // namespace lumatrex
