// The whole document of a canvas as comparable values, for tests that check
// an edit and its undo: every shape's class, name and drawing-file record
// bytes (identity, list positions, points, pens, user data...), in list order;
// and as text, for golden files.
#pragma once

#include <gtest/gtest.h>

#include <cstdint>
#include <ostream>
#include <sstream>
#include <string>
#include <vector>

#include "canvas/tmycad.h"
#include "platform/hooks.h"
#include "platform/stream.h"
#include "shapes/connectors.h"

namespace lumatrex::test {

struct TShapeState {
  std::string className;
  std::string name;
  std::vector<std::uint8_t> record;
  friend bool operator==(const TShapeState&, const TShapeState&) = default;
  friend void PrintTo(const TShapeState& s, std::ostream* os) {
    *os << s.className << " " << s.name << " (" << s.record.size() << " record bytes)";
  }
};

inline std::vector<TShapeState> DocumentState(const TMyCAD& cad) {
  std::vector<TShapeState> state;
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) {
    const TMyShape* shape = cad.GetShapeByNo(i);
    TMemoryStream record;
    shape->SaveToStream(record);
    state.push_back({shape->ClassName(), shape->GetName(), record.Bytes()});
  }
  return state;
}

// The document as text, for golden files: a shape a line with its list
// position, class, name, id, layer, group relations, connectors, points, link
// points and, for a connector, its ends (shape number and link point).
inline std::string DocumentText(const TMyCAD& cad) {
  std::ostringstream out;
  out.precision(9);  // every float exactly
  const auto points = [&out](const char* what, const TArrMyPoint& list) {
    out << ' ' << what;
    for (const TMyPoint& p : list) out << ' ' << p.X << ',' << p.Y;
  };
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) {
    const TMyShape& s = *cad.GetShapeByNo(i);
    out << s.ShapeNo << ' ' << s.ClassName() << " \"" << s.GetName() << "\" id " << s.ShapeId << " layer " << s.LayerId
        << " parent " << s.ParentId << " members";
    for (const std::int32_t member : s.ChildShapes) out << ' ' << member;
    out << " connectors";
    for (const std::uint32_t link : s.LinkLines) out << ' ' << link;
    points("points", s.Points);
    points("link points", s.LinkPoints);
    if (const auto* link = dynamic_cast<const TMyLinkLine*>(&s))
      out << " from " << link->GetStartSpNo() << ':' << link->GetStartSpPtId() << " to " << link->GetEndSpNo() << ':'
          << link->GetEndSpPtId();
    out << '\n';
  }
  return out.str();
}

// The drawing as its file holds it.
inline std::vector<std::uint8_t> Saved(const TMyCAD& cad) {
  TMemoryStream stream;
  EXPECT_TRUE(cad.SaveToStream(stream));
  return stream.Bytes();
}
// The same bytes, for comparing with a golden file.
inline std::string SavedText(const TMyCAD& cad) {
  const std::vector<std::uint8_t> bytes = Saved(cad);
  return {bytes.begin(), bytes.end()};
}

inline TArrMyPoint Box(float l, float t, float r, float b) { return {{l, t}, {r, t}, {r, b}, {l, b}}; }

// A rectangle added by code without an undo step.
inline TMyShape* AddBox(TMyCAD& cad, float l, float t, float r, float b) {
  return cad.AddShapeByCode2("TMyRectangle", "", Box(l, t, r, b), 0);
}

// The shapes' names in list order.
inline std::vector<std::string> Names(const TMyCAD& cad) {
  std::vector<std::string> names;
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) names.push_back(cad.GetShapeByNo(i)->GetName());
  return names;
}

// The number of steps in the history.
inline std::int32_t StepCount(const TMyCAD& cad) {
  const auto& list = cad.GetUndoRedoShapeList();
  return list.empty() ? 0 : list.back().UndoStep + 1;
}

// Installs message and terminate hooks that count, for the scope's life.
class THookRecorder {
 public:
  THookRecorder() : saved_(PlatformHooks()) {
    PlatformHooks().ShowMessage = [this](const std::string& text) { messages.push_back(text); };
    PlatformHooks().Terminate = [this] { ++terminations; };
  }
  ~THookRecorder() { PlatformHooks() = saved_; }
  std::vector<std::string> messages;
  int terminations = 0;

 private:
  TPlatformHooks saved_;
};

}  // namespace lumatrex::test
