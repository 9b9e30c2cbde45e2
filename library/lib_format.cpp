#include "library/lib_format.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <string_view>
#include <utility>

#include "library/cmb_shape.h"
#include "persistence/stream_io.h"
#include "shapes/shape_factory.h"

namespace lumatrex {

// ---------------------------------------------------------------------------
// Tags

namespace {

constexpr std::array<std::pair<std::string_view, std::string_view>, 11> kTagVersions = {{
    {"ZOLTLIBX.j", "XP.j"},
    {"ZOLTLIBX.i", "XP.i"},
    {"ZOLTLIBX.h", "XP.h"},
    {"ZOLTLIBX.e", "XP.e"},
    {"ZOLTLIBX.a", "XP.a"},
    {"ZOLTLIBX.9", "XP.9"},
    {"ZOLTLIBX.8", "XP.8"},
    {"ZOLTLIBX.7", "XP.7"},
    {"ZOLTLIBX.6", "XP.6"},
    {"ZOLTLIBX.3", "XP.4"},  // the ".3" libraries were written with "XP.4" records
    {"ZOLTLIBX.2", "XP.2"},
}};

bool FileTagIsOneOf(const std::string& fileName, std::initializer_list<std::string_view> tags) {
  const std::string tag = ReadLibFileTag(fileName);
  return std::ranges::find(tags, std::string_view(tag)) != tags.end();
}

}  // namespace

std::string LibTagToFileVersion(const std::string& tag) {
  const auto it = std::ranges::find(kTagVersions, std::string_view(tag), [](const auto& p) { return p.first; });
  return it == kTagVersions.end() ? std::string() : std::string(it->second);
}

bool LibTagHasUserData(const std::string& tag) { return tag == kCurrentLibTag; }

// ---------------------------------------------------------------------------
// Probes

std::string ReadLibFileTag(const std::string& fileName) {
  TFileStream file(fileName, fmOpenRead);
  return ReadLibTag(file);
}

bool IsZOLTLibFile(const std::string& fileName) {
  return FileTagIsOneOf(fileName, {"ZOLTLIBX.j", "ZOLTLIBX.h", "ZOLTLIBX.a", "ZOLTLIBX.9", "ZOLTLIBX.8", "ZOLTLIBX.7",
                                   "ZOLTLIBX.6", "ZOLTLIBX.3", "ZOLTLIBX.2"});
}
bool IsZOLTLibFileX67(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.6", "ZOLTLIBX.7"}); }
bool IsZOLTLibX2File(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.2"}); }
bool IsZOLTLibFileX8(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.8"}); }
bool IsZOLTLibFileX9(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.9"}); }
bool IsZOLTLibFileXA(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.a"}); }
bool IsZOLTLibFileXE(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.e"}); }
bool IsZOLTLibFileXH(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.h"}); }
bool IsZOLTLibFileXI(const std::string& fileName) { return FileTagIsOneOf(fileName, {"ZOLTLIBX.i"}); }
bool IsOLDZOLTLibFile(const std::string& fileName) { return FileTagIsOneOf(fileName, {kOldLibTag}); }

bool IsLinkPointShape(const TMyShape& shape) { return std::string_view(shape.ClassName()) == "TMyLinkPoint"; }

TMyRect CmbShapeBounds(const std::vector<TMyShape*>& shapes) {
  TArrMyPoint corners;
  for (const TMyShape* shape : shapes)
    if (!IsLinkPointShape(*shape) && shape->GetPointsCount() > 0) {
      const TMyRect r = GetPointsLTRB(shape->Points);
      corners.push_back({r.Left, r.Top});
      corners.push_back({r.Right, r.Bottom});
    }
  return GetPointsLTRB(corners);
}

// ---------------------------------------------------------------------------
// Plain fields

namespace {

template <typename Fn>
std::int64_t Measured(TStream& stream, Fn write) {
  const std::int64_t start = stream.Position();
  write();
  return stream.Position() - start;
}

}  // namespace

std::int64_t WriteLibTag(TStream& stream, const std::string& tag) {
  return Measured(stream, [&] { WriteFixText(stream, tag, kLibTagSize); });
}

std::string ReadLibTag(TStream& stream) {
  if (stream.Remaining() < static_cast<std::int64_t>(kLibTagSize)) return {};
  std::string tag(kLibTagSize, ' ');
  stream.ReadBuffer(tag.data(), static_cast<std::int64_t>(kLibTagSize), "library tag");
  return tag;
}

std::int64_t WriteCmbShapeName(TStream& stream, const std::string& name) {
  const auto length = static_cast<std::uint8_t>(std::min<std::size_t>(name.size(), 255));
  return Measured(stream, [&] {
    WriteValue(stream, length);
    WriteStrBuffer(stream, name, length);
  });
}

std::string ReadCmbShapeName(TStream& stream) {
  const auto length = ReadValue<std::uint8_t>(stream, "entry name length");
  return ReadStrBuffer(stream, length, "entry name");
}

std::int64_t WriteCmbShapeSize(TStream& stream, std::int32_t size) {
  return Measured(stream, [&] { WriteValue(stream, size); });
}

std::int32_t ReadCmbShapeSize(TStream& stream) {
  const std::int64_t offset = stream.Position();
  const auto size = ReadValue<std::int32_t>(stream, "entry size");
  if (size < 0 || size > stream.Remaining())
    throw EStreamFormatError(offset, "entry size " + std::to_string(size) + " does not fit the data that follows");
  return size;
}

std::int64_t WriteWidthHeight(TStream& stream, std::int32_t width, std::int32_t height) {
  return Measured(stream, [&] {
    WriteValue(stream, width);
    WriteValue(stream, height);
  });
}

void ReadWidthHeight(TStream& stream, std::int32_t& width, std::int32_t& height) {
  width = ReadValue<std::int32_t>(stream, "entry width");
  height = ReadValue<std::int32_t>(stream, "entry height");
}

std::int64_t WriteUserDataRecords(TStream& stream, const TUserData& userData) {
  return Measured(stream, [&] {
    WriteValue<std::int32_t>(stream, userData.GetCount());
    for (const TUserDataRecord& record : userData.Records()) {
      WriteLString(stream, record.Key);
      WriteLString(stream, record.Value);
    }
  });
}

void ReadUserDataRecords(TStream& stream, TUserData& userData) {
  const std::int32_t count = ReadCount(stream, 8, "entry user data");  // two length fields each
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string key = ReadLString(stream, "entry user data key");
    userData.AddKeyandValue(key, ReadLString(stream, "entry user data value"));
  }
}

// ---------------------------------------------------------------------------
// Shapes in unit coordinates

namespace {

constexpr std::size_t kClassTagSize = 16;

// Unit coordinates are taken against this box: x' = (x - Left) / Width.
struct TUnitFrame {
  long double Left;
  long double Top;
  long double Width;
  long double Height;
};

// Rounded half to even, and 1 instead of 0 so that a flat entry (all points
// on one line) divides by 1 and keeps offsets from its edge.
long double FrameSize(long double extent) {
  const long double size = std::nearbyint(extent);
  return size == 0 ? 1.0L : size;
}

TUnitFrame FrameOfShapes(const std::vector<TMyShape*>& shapes) {
  const TMyRect box = CmbShapeBounds(shapes);
  return {box.Left, box.Top, FrameSize(static_cast<long double>(box.Right) - box.Left),
          FrameSize(static_cast<long double>(box.Bottom) - box.Top)};
}

TUnitFrame FrameOfPlacement(const TCmbShapePlacement& at, std::int32_t storedWidth, std::int32_t storedHeight) {
  auto size = [](float wanted, std::int32_t stored) -> long double {
    if (wanted != 0) return wanted;
    return stored == 0 ? 1.0L : stored;
  };
  return {at.Left, at.Top, size(at.Width, storedWidth), size(at.Height, storedHeight)};
}

TMyPoint ToUnit(const TMyPoint& p, const TUnitFrame& f) {
  return {static_cast<float>((p.X - f.Left) / f.Width), static_cast<float>((p.Y - f.Top) / f.Height)};
}

TMyPoint FromUnit(const TMyPoint& p, const TUnitFrame& f) {
  return {static_cast<float>(f.Width * p.X + f.Left), static_cast<float>(f.Height * p.Y + f.Top)};
}

template <typename Map>
void MapCoordinates(TMyShape& shape, Map map) {
  for (TMyPoint& p : shape.Points) p = map(p);
  for (TMyPoint& p : shape.LinkPoints) p = map(p);
  shape.CenterPoint = map(shape.CenterPoint);
}

// Gives a shape its exact coordinates back when it goes out of scope; mapping
// back by the inverse rule would drift in the last bits.
class TCoordinatesKeeper {
 public:
  explicit TCoordinatesKeeper(TMyShape& shape)
      : shape_(shape), points_(shape.Points), linkPoints_(shape.LinkPoints), center_(shape.CenterPoint) {}
  ~TCoordinatesKeeper() {
    shape_.Points = std::move(points_);
    shape_.LinkPoints = std::move(linkPoints_);
    shape_.CenterPoint = center_;
  }
  TCoordinatesKeeper(const TCoordinatesKeeper&) = delete;
  TCoordinatesKeeper& operator=(const TCoordinatesKeeper&) = delete;

 private:
  TMyShape& shape_;
  TArrMyPoint points_;
  TArrMyPoint linkPoints_;
  TMyPoint center_;
};

}  // namespace

std::int64_t WriteShapes(TStream& stream, const std::vector<TMyShape*>& shapes) {
  const TUnitFrame frame = FrameOfShapes(shapes);
  return Measured(stream, [&] {
    WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(shapes.size()));
    for (TMyShape* shape : shapes) {
      WriteFixText(stream, shape->ClassName(), kClassTagSize);
      const TCoordinatesKeeper keeper(*shape);
      if (!IsLinkPointShape(*shape)) MapCoordinates(*shape, [&](const TMyPoint& p) { return ToUnit(p, frame); });
      shape->SaveToStream(stream);
    }
  });
}

void ReadShapes(TStream& stream, TCmbShape& entry, const TCmbShapePlacement& at) {
  const TUnitFrame frame = FrameOfPlacement(at, entry.Width, entry.Height);
  const std::int32_t count = ReadCount(stream, kClassTagSize, "shapes");
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int64_t offset = stream.Position();
    const std::string className = ReadFixText(stream, kClassTagSize, "class tag");
    std::unique_ptr<TMyShape> shape = CreateShapeByClassName(className, &entry);
    if (!shape) throw EStreamFormatError(offset, "unknown class tag \"" + className + "\"");
    shape->LoadFromStream(stream);
    if (!IsLinkPointShape(*shape)) MapCoordinates(*shape, [&](const TMyPoint& p) { return FromUnit(p, frame); });
    shape->TextoutPoint = shape->CenterPoint;
    entry.Shapes.push_back(std::move(shape));
  }
}

}  // namespace lumatrex
