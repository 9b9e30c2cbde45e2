#include "shapes/text.h"

#include "persistence/stream_io.h"
#include "shapes/record_version.h"

namespace lumatrex {

TMyText::TMyText(TMyShapeOwner* owner) : TMyRectangle(owner) {}

void TMyText::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* text = dynamic_cast<const TMyText*>(&source)) {
    isBorder_ = text->isBorder_;
    isSolid_ = text->isSolid_;
    lines_ = text->lines_;
    vAlignment_ = text->vAlignment_;
    hAlignment_ = text->hAlignment_;
    wordWrap_ = text->wordWrap_;
    characterSpace_ = text->characterSpace_;
  }
}

void TMyText::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteBool(stream, isBorder_);
  WriteBool(stream, isSolid_);
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(lines_.size()));
  for (const std::string& line : lines_) WriteLString(stream, line);
  WriteValue(stream, static_cast<std::uint8_t>(vAlignment_));
  WriteValue(stream, static_cast<std::uint8_t>(hAlignment_));
  WriteBool(stream, wordWrap_);
}

void TMyText::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  isBorder_ = ReadBool(stream, "text border");
  isSolid_ = ReadBool(stream, "text solid");
  if (!FileVersionAtLeast(RecordVersion(*this), "XP.a")) return;
  lines_.assign(static_cast<std::size_t>(ReadCount(stream, 4, "text lines")), std::string());
  for (std::string& line : lines_) line = ReadLString(stream, "text line");
  vAlignment_ = ReadOrdinal(stream, tlBottom, "text vertical alignment");
  hAlignment_ = ReadOrdinal(stream, taCenter, "text horizontal alignment");
  wordWrap_ = ReadBool(stream, "text word wrap");
}

}  // namespace lumatrex
