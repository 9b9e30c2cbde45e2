#include "shapes/connectors.h"

#include "persistence/stream_io.h"
#include "shapes/record_version.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// TMyLinkPoint

TMyLinkPoint::TMyLinkPoint(TMyShapeOwner* owner) : TMyRectangle(owner) {}

void TMyLinkPoint::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* point = dynamic_cast<const TMyLinkPoint*>(&source)) size_ = point->size_;
}

void TMyLinkPoint::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteValue(stream, size_);
}

void TMyLinkPoint::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  size_ = ReadValue<std::uint8_t>(stream, "link point size");
}

// ---------------------------------------------------------------------------
// TMyLinkLine

TMyLinkLine::TMyLinkLine(TMyShapeOwner* owner) : TMyLine(owner) { DeclareOwnListPositions(); }

void TMyLinkLine::Assign(const TMyShape& source) {
  TMyLine::Assign(source);
  if (const auto* link = dynamic_cast<const TMyLinkLine*>(&source)) {
    startSpNo_ = link->startSpNo_;
    startSpPtId_ = link->startSpPtId_;
    endSpNo_ = link->endSpNo_;
    endSpPtId_ = link->endSpPtId_;
    linkLineDrawStyle_ = link->linkLineDrawStyle_;
  }
}

namespace {
// Renumbers one attached end; an end whose shape is gone is freed.
void RemapEnd(std::int32_t& shapeNo, std::int32_t& pointId, const std::function<std::int32_t(std::int32_t)>& map) {
  if (shapeNo < 0) return;
  shapeNo = map(shapeNo);
  if (shapeNo >= 0) return;
  shapeNo = -1;
  pointId = -1;
}
}  // namespace

void TMyLinkLine::RemapShapeNumbers(const std::function<std::int32_t(std::int32_t)>& map) {
  TMyLine::RemapShapeNumbers(map);
  RemapEnd(startSpNo_, startSpPtId_, map);
  RemapEnd(endSpNo_, endSpPtId_, map);
}

void TMyLinkLine::SaveToStream(TStream& stream) const {
  TMyLine::SaveToStream(stream);
  WriteValue(stream, startSpNo_);
  WriteValue(stream, startSpPtId_);
  WriteValue(stream, endSpNo_);
  WriteValue(stream, endSpPtId_);
  WriteValue(stream, static_cast<std::uint8_t>(linkLineDrawStyle_));
}

void TMyLinkLine::LoadFromStream(TStream& stream) {
  TMyLine::LoadFromStream(stream);
  startSpNo_ = ReadValue<std::int32_t>(stream, "link start shape");
  startSpPtId_ = ReadValue<std::int32_t>(stream, "link start point");
  endSpNo_ = ReadValue<std::int32_t>(stream, "link end shape");
  endSpPtId_ = ReadValue<std::int32_t>(stream, "link end point");
  if (FileVersionAtLeast(RecordVersion(*this), "XP.5"))
    linkLineDrawStyle_ = ReadOrdinal(stream, lldsVH, "link draw style");
}

}  // namespace lumatrex
