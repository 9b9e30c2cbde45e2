#include "shapes/arc.h"

#include "persistence/stream_io.h"

namespace lumatrex {

TMyElliArc::TMyElliArc(TMyShapeOwner* owner) : TMyShape(owner) {}

void TMyElliArc::Assign(const TMyShape& source) {
  TMyShape::Assign(source);
  if (const auto* arc = dynamic_cast<const TMyElliArc*>(&source)) {
    arcMode_ = arc->arcMode_;
    arcStyle_ = arc->arcStyle_;
  }
}

void TMyElliArc::SaveToStream(TStream& stream) const {
  TMyShape::SaveToStream(stream);
  WriteValue(stream, static_cast<std::uint8_t>(arcMode_));
  WriteValue(stream, static_cast<std::uint8_t>(arcStyle_));
}

void TMyElliArc::LoadFromStream(TStream& stream) {
  TMyShape::LoadFromStream(stream);
  arcMode_ = ReadOrdinal(stream, amEllipse, "arc mode");
  arcStyle_ = ReadOrdinal(stream, asPie, "arc style");
}

}  // namespace lumatrex
