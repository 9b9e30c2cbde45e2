// Cut, copy, paste and duplicate.
//
// Shapes travel as a drawing stream of their own, the format of drawing
// files: a paste reads it as a block is read (into a parse target first, so
// that damaged data leaves the drawing as it was) and appends its shapes
// with new identities. Group members, parents and connector ends are list
// positions within the copy, so they move along with the shapes.
#include <algorithm>
#include <unordered_map>

#include "canvas/tmycad.h"
#include "persistence/stream_io.h"
#include "platform/clipboard.h"
#include "platform/stream.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

// A text shape's frame reaches this far past its widest line and its lines.
constexpr std::int32_t kTextMargin = 4;

bool Joins(const TMyLinkLine& link, const std::unordered_map<std::int32_t, std::int32_t>& copied) {
  return copied.contains(link.GetStartSpNo()) && copied.contains(link.GetEndSpNo());
}

}  // namespace

// O(selection): the shapes copied are found from the selection through
// their members and connectors, never by a pass over the drawing.
std::vector<std::uint8_t> TMyCAD::SelectionToBytes() {
  std::vector<TMyShape*> chosen;
  // List position -> position in the copy, filled once the order is known.
  std::unordered_map<std::int32_t, std::int32_t> copied;
  auto take = [&](TMyShape* top) {
    for (TMyShape* s : SubtreeOf(top))
      if (copied.emplace(s->ShapeNo, -1).second) chosen.push_back(s);
  };
  for (TMyShape* s : working_) take(s);
  // A connector joining two copied shapes comes along.
  for (std::size_t i = 0, shapes = chosen.size(); i < shapes; ++i)
    for (const std::uint32_t no : chosen[i]->LinkLines)
      if (auto* link = dynamic_cast<TMyLinkLine*>(GetShapeByNo(static_cast<std::int32_t>(no)));
          link && !link->HasParentShape() && Joins(*link, copied))
        take(link);
  std::sort(chosen.begin(), chosen.end(), [](const TMyShape* a, const TMyShape* b) { return a->ShapeNo < b->ShapeNo; });
  for (std::size_t i = 0; i < chosen.size(); ++i) copied[chosen[i]->ShapeNo] = static_cast<std::int32_t>(i);
  const auto map = [&copied](std::int32_t old) {
    const auto it = copied.find(old);
    return it == copied.end() ? -1 : it->second;
  };

  TMemoryStream stream;
  WriteDrawingHead(stream);
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(chosen.size()));
  for (TMyShape* s : chosen) {
    std::unique_ptr<TMyShape> copy = ExactCopy(*s);
    copy->RemapShapeNumbers(map);
    copy->ShapeNo = map(s->ShapeNo);
    WriteShapeEntry(stream, *copy);
  }
  return stream.Bytes();
}

std::vector<TMyShape*> TMyCAD::AddShapesFromBytes(const std::vector<std::uint8_t>& bytes, const TMyPoint& offset,
                                                  TBlockLayerMode mode) {
  if (layers_.empty()) return {};
  TMemoryStream stream(bytes);
  const std::unique_ptr<TMyCAD> block = ParseDrawing(stream, true);
  if (!block || block->GetShapesCount() == 0) return {};
  const std::vector<TMyShape*> added = AppendBlockShapes(*block, BlockLayerIds(block->layers_, mode));
  std::vector<TMyShape*> topLevel;
  for (TMyShape* s : added) {
    s->SetName("Shape" + std::to_string(s->ShapeId));
    if (offset.X != 0 || offset.Y != 0) MapAllPoints(*s, Translation(offset.X, offset.Y));
    if (!s->HasParentShape()) topLevel.push_back(s);
  }
  PushtoUndoRedoShapeList(topLevel, ACT_ADD);
  RemoveAllWorkingShapes();
  for (TMyShape* s : topLevel) AddWorkingShapes(s);
  if (OnShapeAdded)
    for (TMyShape* s : added) {
      TMyShape* reported = s;
      OnShapeAdded(this, reported, GetShapesCount());
    }
  SetModified(true);
  Invalidate();
  return added;
}

TMyPoint TMyCAD::GridOffset(std::int32_t steps) const {
  return {static_cast<float>(steps * GridStep(grid_->GetGridWidth()) / zoom_),
          static_cast<float>(steps * GridStep(grid_->GetGridHeight()) / zoom_)};
}

bool TMyCAD::Copy() {
  if (working_.empty()) return false;
  TClipboardContent content;
  content.Data.emplace_back(kShapesMimeType, SelectionToBytes());
  TImageExportOptions picture;
  picture.SelectedOnly = true;
  try {
    content.Picture = RenderToBitmap(picture);
  } catch (const EPictureTooLarge&) {
    // The shapes still go; other programs just get no picture of them.
  }
  // Drawing programs take the selection as vectors.
  const std::string svg = RenderToSvg(working_, picture);
  if (!svg.empty()) content.Data.emplace_back("image/svg+xml", std::vector<std::uint8_t>(svg.begin(), svg.end()));
  SetClipboardContent(content);
  nextPasteSteps_ = 1;
  return true;
}

bool TMyCAD::Cut() {
  if (!Copy()) return false;
  DeleteSelectedShapes(true);
  nextPasteSteps_ = 0;
  return true;
}

bool TMyCAD::PasteforBlock(TBlockLayerMode mode) {
  const std::optional<std::vector<std::uint8_t>> bytes = ClipboardData(kShapesMimeType);
  if (!bytes) return false;
  try {
    if (AddShapesFromBytes(*bytes, GridOffset(nextPasteSteps_), mode).empty()) return false;
  } catch (const EStreamError&) {
    return false;
  }
  ++nextPasteSteps_;
  return true;
}

bool TMyCAD::Paste() {
  if (ClipboardData(kShapesMimeType)) return PasteforBlock(Merge);
  if (PasteImage()) return true;
  const std::string text = ClipboardText();
  if (text.empty() || layers_.empty()) return false;
  TStringList lines;
  for (std::size_t from = 0; from <= text.size();) {
    const std::size_t end = std::min(text.find('\n', from), text.size());
    lines.push_back(text.substr(from, end - from));
    from = end + 1;
  }
  // The frame holds the lines as the shape's font sets them at zoom 1.
  auto probe = CreateShapeByName("TMyText");
  std::int32_t width = 0, height = 0;
  for (const std::string& line : lines) {
    const TSize size = probe->GetTextWidthHeight(Canvas(), line.empty() ? " " : line, probe->Font(), 1, 0);
    width = std::max(width, size.cx);
    height += size.cy;
  }
  const auto w = static_cast<float>(width + 2 * kTextMargin), h = static_cast<float>(height + 2 * kTextMargin);
  auto* shape = dynamic_cast<TMyText*>(AddShapeFromCode("TMyText", "", {{0, 0}, {w, 0}, {w, h}, {0, h}}, 0));
  if (!shape) return false;
  shape->SetLines(lines);
  PushtoUndoRedoShapeList({shape}, ACT_ADD);
  TMyShape* reported = shape;
  if (OnShapeAdded) OnShapeAdded(this, reported, GetShapesCount());
  RemoveAllWorkingShapes();
  AddWorkingShapes(shape);
  SetModified(true);
  return true;
}

bool TMyCAD::Duplicate() {
  if (working_.empty()) return false;
  // The copy carries this drawing's layers, so Import puts each shape on
  // the layer of its original.
  return !AddShapesFromBytes(SelectionToBytes(), GridOffset(1), Import).empty();
}

}  // namespace lumatrex
