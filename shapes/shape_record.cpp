// The shape base record of drawing files. Writers always write the current
// version; readers follow the version tag of the file being read, which the
// owner canvas holds while it loads.
#include "persistence/file_version.h"
#include "persistence/stream_io.h"
#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

namespace {

// A point list: float32 pairs; 80-bit pairs in the oldest versions; for
// "XP.2" and unknown tags only the count is stored.
void WritePoints(TStream& stream, const TArrMyPoint& points) {
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(points.size()));
  for (const TMyPoint& p : points) {
    WriteValue(stream, p.X);
    WriteValue(stream, p.Y);
  }
}

TMyPoint ReadPoint(TStream& stream, bool extended, const char* what) {
  const float x = ReadFiniteFloat(stream, extended, what);
  return MyPoint(x, ReadFiniteFloat(stream, extended, what));
}

TArrMyPoint ReadPoints(TStream& stream, const std::string& version, const char* what) {
  const bool stored = FileVersionIndex(version) > 0;
  const bool extended = FileVersionHasExtendedFloats(version);
  const std::int32_t count = ReadCount(stream, stored ? (extended ? 20 : 8) : 0, what);
  TArrMyPoint points(static_cast<std::size_t>(count));
  if (stored)
    for (TMyPoint& p : points) p = ReadPoint(stream, extended, what);
  return points;
}

template <typename T>
std::vector<T> ReadIdList(TStream& stream, const char* what) {
  std::vector<T> ids(static_cast<std::size_t>(ReadCount(stream, 4, what)));
  for (T& id : ids) id = ReadValue<T>(stream, what);
  return ids;
}

template <typename T>
void WriteIdList(TStream& stream, const std::vector<T>& ids) {
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(ids.size()));
  for (const T id : ids) WriteValue(stream, id);
}

void WriteFont(TStream& stream, const TFont& font) {
  WriteLString(stream, font.Name());
  WriteValue(stream, font.Charset());
  WriteValue(stream, font.Color());
  WriteValue(stream, font.Height());
  WriteValue(stream, font.Size());
  WriteValue(stream, static_cast<std::uint8_t>(font.Pitch()));
  WriteValue(stream, font.PixelsPerInch());
  WriteValue(stream, font.Style());
}

void ReadFont(TStream& stream, TFont& font) {
  font.SetName(ReadLString(stream, "font name"));
  font.SetCharset(ReadValue<std::uint8_t>(stream, "font charset"));
  font.SetColor(ReadValue<TColor>(stream, "font colour"));
  font.SetHeight(ReadValue<std::int32_t>(stream, "font height"));
  font.SetSize(ReadValue<std::int32_t>(stream, "font size"));
  font.SetPitch(ReadOrdinal(stream, fpFixed, "font pitch"));
  ReadValue<std::int32_t>(stream, "font pixels per inch");
  font.SetStyle(ReadValue<std::uint8_t>(stream, "font style"));
}

}  // namespace

void TMyShape::SaveToStream(TStream& stream) const {
  WriteLString(stream, GetName());
  WriteValue(stream, ShapeId);
  WriteValue(stream, ShapeNo);
  WriteValue(stream, LayerId);
  WriteValue(stream, ParentId);
  WriteIdList(stream, ChildShapes);
  WriteIdList(stream, LinkLines);
  WritePoints(stream, Points);
  WritePoints(stream, LinkPoints);
  WriteValue(stream, CenterPoint.X);
  WriteValue(stream, CenterPoint.Y);
  WriteValue(stream, tag_);
  WriteValue(stream, angle_);
  WriteBitmapBuffer(stream, brush_.Bitmap());
  WriteValue(stream, brush_.Color());
  WriteValue(stream, static_cast<std::uint8_t>(brush_.Style()));
  WriteLString(stream, caption_);
  WriteValue(stream, colorBegin_);
  WriteValue(stream, colorEnd_);
  WriteFont(stream, font_);
  WriteValue<std::int64_t>(stream, 0);  // reserved
  WriteValue(stream, static_cast<std::uint8_t>(gradientStyle_));
  WriteLString(stream, info_);
  WriteValue(stream, pen_.Color());
  WriteValue(stream, static_cast<std::uint8_t>(pen_.Mode()));
  WriteValue(stream, static_cast<std::uint8_t>(pen_.Style()));
  WriteValue(stream, pen_.StoredWidth());
  WriteValue<std::int32_t>(stream, userData_.GetCount());
  for (const TUserDataRecord& record : userData_.Records()) {
    WriteLString(stream, record.Key);
    WriteLString(stream, record.Value);
  }
  WriteBool(stream, isFlipHorz_);
  WriteBool(stream, isFlipVert_);
  WriteBool(stream, visible_);
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(multiInfo_.size()));
  for (const std::string& line : multiInfo_) WriteLString(stream, line);
  WriteValue(stream, static_cast<std::uint8_t>(multiInfoAlignment_));
  WriteValue(stream, logHeight_);
  WriteBool(stream, logUse_);
  WriteValue(stream, logWidth_);
  WriteBool(stream, locked_);
  WriteValue(stream, static_cast<std::uint8_t>(penStyleEndCapType_));
  WriteValue(stream, static_cast<std::uint8_t>(penStyleJoinType_));
  WriteBool(stream, hotShow_);
  WriteBool(stream, resizeEnable_);
  WriteBool(stream, rotateEnable_);
}

void TMyShape::LoadFromStream(TStream& stream) {
  const std::string version = owner_ ? owner_->GetDiskFileVersion() : kCurrentFileVersion;
  const bool extended = FileVersionHasExtendedFloats(version);
  auto since = [&](const char* tag) { return FileVersionAtLeast(version, tag); };

  SetName(ReadLString(stream, "shape name"));
  ShapeId = ReadValue<std::int32_t>(stream, "shape id");
  ShapeNo = ReadValue<std::int32_t>(stream, "shape index");
  LayerId = ReadValue<std::int32_t>(stream, "layer id");
  ParentId = ReadValue<std::int32_t>(stream, "parent id");
  ChildShapes = ReadIdList<std::int32_t>(stream, "child shapes");
  LinkLines = ReadIdList<std::uint32_t>(stream, "link lines");
  Points = ReadPoints(stream, version, "points");
  LinkPoints = ReadPoints(stream, version, "link points");
  CenterPoint = ReadPoint(stream, extended, "rotation centre");
  if (since("XP.3")) {
    tag_ = ReadValue<std::int32_t>(stream, "tag");
    angle_ = ReadFiniteFloat(stream, extended, "angle");
  }
  const std::unique_ptr<TBitmap> brushBitmap = ReadBitmapBuffer(stream, "brush bitmap");
  const auto brushColor = ReadValue<TColor>(stream, "brush colour");
  const TBrushStyle brushStyle = ReadOrdinal(stream, bsDiagCross, "brush style");
  if (brushBitmap) {
    brush_.SetBitmap(brushBitmap.get());
  } else {
    brush_.SetColor(brushColor);
    brush_.SetStyle(brushStyle);
  }
  caption_ = ReadLString(stream, "caption");
  colorBegin_ = ReadValue<TColor>(stream, "gradient start colour");
  colorEnd_ = ReadValue<TColor>(stream, "gradient end colour");
  ReadFont(stream, font_);
  if (version != "XP.7") ReadValue<std::int64_t>(stream, "reserved");
  gradientStyle_ = ReadOrdinal(stream, gsNone, "gradient style");
  if (extended) ReadValue<std::uint16_t>(stream, "legacy bytes");
  info_ = ReadLString(stream, "info");
  pen_.SetColor(ReadValue<TColor>(stream, "pen colour"));
  pen_.SetMode(ReadOrdinal(stream, pmNotXor, "pen mode"));
  pen_.SetStyle(ReadOrdinal(stream, psAlternate, "pen style"));
  pen_.SetWidth(ReadValue<std::int32_t>(stream, "pen width"));
  if (since("XP.8")) {
    const std::int32_t count = ReadCount(stream, 8, "user data");
    for (std::int32_t i = 0; i < count; ++i) {
      const std::string key = ReadLString(stream, "user data key");
      userData_.AddKeyandValue(key, ReadLString(stream, "user data value"));
    }
  }
  if (since("XP.9")) {
    isFlipHorz_ = ReadBool(stream, "horizontal flip");
    isFlipVert_ = ReadBool(stream, "vertical flip");
    visible_ = ReadBool(stream, "visible");
  }
  if (since("XP.e")) {
    multiInfo_.assign(static_cast<std::size_t>(ReadCount(stream, 4, "info lines")), std::string());
    for (std::string& line : multiInfo_) line = ReadLString(stream, "info line");
    multiInfoAlignment_ = ReadOrdinal(stream, taCenter, "info alignment");
  }
  if (since("XP.h")) {
    logHeight_ = ReadValue<std::int32_t>(stream, "log height");
    logUse_ = ReadBool(stream, "log use");
    logWidth_ = ReadValue<std::int32_t>(stream, "log width");
    locked_ = ReadBool(stream, "locked");
  }
  if (since("XP.j")) {
    penStyleEndCapType_ = ReadOrdinal(stream, psectMASK, "pen end cap");
    penStyleJoinType_ = ReadOrdinal(stream, psjtMASK, "pen join");
    hotShow_ = ReadBool(stream, "hot show");
    resizeEnable_ = ReadBool(stream, "resize enable");
    rotateEnable_ = ReadBool(stream, "rotate enable");
  }
  // The gradient bitmap is not stored: rebuild it for the style, colours and
  // flips just read, so that the shape paints as it was saved.
  DrawGradient();
  FlipGradientByFlags();
  Changed();
}

}  // namespace lumatrex
