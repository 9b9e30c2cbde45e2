// Saving and loading drawings and blocks.
//
// Reading goes into a fresh hidden canvas (the parse target), never into this
// one: a truncated or malformed stream throws half way, and only a drawing
// read to its end is moved here, in one step that cannot fail part way.
#include <algorithm>
#include <cstdint>
#include <span>
#include <utility>

#include "canvas/tmycad.h"
#include "geometry/geometry.h"
#include "persistence/stream_io.h"
#include "platform/stream.h"

namespace lumatrex {

namespace {

constexpr const char* kCreator = "Ambrel Component";
constexpr const char* kCreatorText = "Lumatrex drawing";
constexpr const char* kFileDate = "20091209";
constexpr std::size_t kCreatorSize = 64;
constexpr std::size_t kVersionSize = 16;
constexpr std::size_t kDateSize = 10;
constexpr std::size_t kReservedSize = 64;
constexpr std::size_t kClassTagSize = 16;
// Layer counts are a byte everywhere else, so a file never holds more.
constexpr std::int32_t kMaxLayers = 255;
// The control takes the stored size, and its screen and back buffer are
// bitmaps of that size: sides up to 16384 keep them within the largest bitmap
// the platform makes (2^28 pixels). A larger control (one saved at a small
// zoom) is loaded at that limit rather than refused.
constexpr std::int32_t kMaxControlSide = 16384;
// A layer record is at least an empty name (4 bytes), an id and a flag.
constexpr std::int64_t kMinLayerBytes = 12;
// A user data record is at least two empty strings.
constexpr std::int64_t kMinUserDataBytes = 8;

// Text from a file fit for an error message.
std::string Printable(std::string text) {
  for (char& c : text)
    if (c < ' ' || c > '~') c = '?';
  return text;
}

// Id arithmetic wraps at the top of the range, as the id counters do.
std::int32_t IdPlus(std::int32_t id, std::int32_t n) {
  return static_cast<std::int32_t>(static_cast<std::uint32_t>(id) + static_cast<std::uint32_t>(n));
}

// Gives the shape at list position No of a block of Count shapes its place
// after the drawing's First shapes: its id, its position and its references
// (a reference out of the block has nothing to point at and is dropped).
void MoveIntoDrawing(TMyShape& shape, std::int32_t no, std::int32_t count, std::int32_t first, std::int32_t firstId) {
  shape.ShapeId = IdPlus(firstId, no);
  shape.ShapeNo = first + no;
  shape.RemapShapeNumbers([first, count](std::int32_t old) { return old >= 0 && old < count ? first + old : -1; });
}

// The control's side at zoom 1, as stored.
std::int32_t SideAtZoomOne(std::int32_t side, double zoom) { return Round(static_cast<long double>(side) / zoom); }

std::int32_t ReadControlSide(TStream& stream, const char* what) {
  return std::clamp(ReadValue<std::int32_t>(stream, what), 0, kMaxControlSide);
}

void WriteUserData(TStream& stream, const TUserData& data) {
  WriteValue<std::int32_t>(stream, data.GetCount());
  for (const TUserDataRecord& record : data.Records()) {
    WriteLString(stream, record.Key);
    WriteLString(stream, record.Value);
  }
}

void ReadUserData(TStream& stream, TUserData& data) {
  const std::int32_t count = ReadCount(stream, kMinUserDataBytes, "canvas user data");
  for (std::int32_t i = 0; i < count; ++i) {
    const std::string key = ReadLString(stream, "canvas user data key");
    data.AddKeyandValue(key, ReadLString(stream, "canvas user data value"));
  }
}

// Header fields from the creator to Ratio.
void WriteSettings(TStream& stream, const TMyCAD& cad) {
  WriteFixText(stream, kCreator, kCreatorSize);
  WriteFixText(stream, kCreatorText, kCreatorSize);
  WriteFixText(stream, kCurrentFileVersion, kVersionSize);
  WriteFixText(stream, kFileDate, kDateSize);
  // 63 spaces and a zero byte: the first writers padded one byte short and
  // wrote the text's terminator last, and every file since has kept that.
  WriteFixText(stream, std::string(kReservedSize - 1, ' ') + '\0', kReservedSize);
  WriteValue(stream, cad.GetColorOfBackGround());
  WriteValue(stream, SideAtZoomOne(cad.Width(), cad.GetZoom()));
  WriteValue(stream, SideAtZoomOne(cad.Height(), cad.GetZoom()));
  WriteValue(stream, cad.GetTheUNIT());
  WriteBitmapBuffer(stream, &cad.GetBkBitmap());
  WriteValue<std::int32_t>(stream, cad.GetBkBitmapMode());
  WriteValue(stream, cad.GetRatio());
}

// Header fields from the creator to Tag and the user data, into Target.
void ReadSettings(TStream& stream, TMyCAD& target) {
  ReadFixText(stream, kCreatorSize, "creator");
  ReadFixText(stream, kCreatorSize, "creator text");
  const std::int64_t versionOffset = stream.Position();
  const std::string version = ReadFixText(stream, kVersionSize, "version");
  if (FileVersionIndex(version) < 0)
    throw EStreamFormatError(versionOffset, "unknown drawing version \"" + Printable(version) + "\"");
  target.SetDiskFileVersion(version);
  ReadFixText(stream, kDateSize, "date");
  ReadFixText(stream, kReservedSize, "reserved header bytes");
  target.SetColorOfBackGround(ReadValue<TColor>(stream, "background colour"));
  const std::int32_t width = ReadControlSide(stream, "canvas width");
  target.resize(width, ReadControlSide(stream, "canvas height"));
  target.SetTheUNIT(ReadOrdinal(stream, inch, "unit"));
  const std::unique_ptr<TBitmap> background = ReadBitmapBuffer(stream, "background bitmap");
  target.SetBkBitmap(background ? *background : TBitmap());
  target.SetBkBitmapMode(ReadOrdinal<TBkBitmapMode, std::int32_t>(stream, LeftTop, "background bitmap mode"));
  target.SetRatio(ReadValue<double>(stream, "ratio"));
  if (!FileVersionAtLeast(version, "XP.h")) return;
  target.SetTag(ReadValue<std::int32_t>(stream, "canvas tag"));
  ReadUserData(stream, target.UserData());
}

// The class tag and the record of one shape, owned by Target.
std::unique_ptr<TMyShape> ReadShape(TStream& stream, TMyCAD& target) {
  const std::int64_t offset = stream.Position();
  const std::string tag = ReadFixText(stream, kClassTagSize, "shape class tag");
  std::unique_ptr<TMyShape> shape = target.CreateShapeByName(tag);
  // Records carry no length, so past a class we do not know there is no way
  // to find the next record.
  if (!shape) throw EStreamFormatError(offset, "unknown shape class \"" + Printable(tag) + "\"");
  shape->LoadFromStream(stream);
  // Neither the centre nor the text point is taken from the record.
  shape->CenterPoint = shape->ComputeCenterPoint(4);
  shape->TextoutPoint = shape->CenterPoint;
  return shape;
}

// The file at FileName opened for reading when it is a drawing, else null.
std::unique_ptr<TFileStream> OpenDrawingFile(const std::string& fileName) {
  auto file = std::make_unique<TFileStream>(fileName, fmOpenRead);
  if (ReadFixText(*file, kCreatorSize, "creator") != kCreator) return nullptr;
  return file;
}

}  // namespace

// ---------------------------------------------------------------------------
// Saving

bool TMyCAD::SaveToStream(TStream& stream) const {
  // Room for the whole drawing at once (a plain shape's record is about a
  // quarter of a kilobyte): a memory stream then never copies what it holds.
  constexpr std::int64_t kTypicalRecordSize = 256;
  stream.Expect(kTypicalRecordSize * (GetShapesCount() + 1));
  WriteDrawingHead(stream);
  WriteValue<std::int32_t>(stream, GetShapesCount());
  for (const auto& shape : shapes_) WriteShapeEntry(stream, *shape);
  return true;
}

void TMyCAD::WriteShapeEntry(TStream& stream, TMyShape& shape) {
  WriteFixText(stream, shape.ClassName(), kClassTagSize);
  // Reading puts every centre back to the middle of the points' box, so
  // that is what is stored: a turned shape's pivot may lie off it (by
  // rounding, or by more after turning about a group's centre), and storing
  // the pivot would make every open-then-save change the file.
  const TMyPoint pivot = std::exchange(shape.CenterPoint, shape.ComputeCenterPoint(4));
  try {
    shape.SaveToStream(stream);
  } catch (...) {
    shape.CenterPoint = pivot;
    throw;
  }
  shape.CenterPoint = pivot;
}

void TMyCAD::WriteDrawingHead(TStream& stream) const {
  WriteSettings(stream, *this);
  WriteValue(stream, tag_);
  WriteUserData(stream, userData_);
  const std::uint8_t layerCount = GetLayersCount();
  WriteValue<std::int32_t>(stream, layerCount);
  for (const LayerRec& layer : std::span(layers_).first(layerCount)) {
    WriteLString(stream, layer.LayerName);
    WriteValue(stream, layer.LayerId);
    WriteValue<std::int32_t>(stream, layer.Visible ? 1 : 0);
  }
  WriteValue(stream, currentLayerId_);
}

bool TMyCAD::SaveToFile(const std::string& fileName) {
  // Written to disk while it is made; an error on the way leaves the file
  // as it was.
  TAtomicFileStream file(fileName);
  const bool saved = SaveToStream(file);
  file.Commit();
  modified_ = false;
  return saved;
}

// ---------------------------------------------------------------------------
// Reading into a parse target

std::unique_ptr<TMyCAD> TMyCAD::ParseDrawing(TStream& stream, bool asBlock) const {
  auto target = std::make_unique<TMyCAD>();
  target->TakeShapeDefaultsFrom(*this);
  // Reading a group's record sets its pen and brush, which would otherwise be
  // passed on to the shapes at its members' positions over their own styling.
  target->BeginUpdate();
  target->layers_.clear();
  stream.SetPosition(0);
  ReadSettings(stream, *target);
  target->ReadLayers(stream);
  // Shapes from outside (the clipboard) without a layer go on the current
  // layer here like any other, rather than end the application.
  if (asBlock && target->layers_.empty()) target->layers_.push_back({"Layer0", 0, true});
  target->currentLayerId_ = ReadValue<std::int32_t>(stream, "current layer");
  if (!target->ReadShapes(stream)) return nullptr;
  return target;
}

void TMyCAD::TakeShapeDefaultsFrom(const TMyCAD& source) {
  // Every value a shape's constructor copies from its owner: old records
  // lack some of those fields, and the shape keeps these values for them.
  zoom_ = source.zoom_;
  pen_.Assign(source.pen_);
  brush_.Assign(source.brush_);
  font_.Assign(source.font_);
  arrowAngle_ = source.arrowAngle_;
  arrowLength_ = source.arrowLength_;
  arrowOffset_ = source.arrowOffset_;
  arrowStyle_ = source.arrowStyle_;
  dragEnable_ = source.dragEnable_;
  resizeEnable_ = source.resizeEnable_;
  rotateEnable_ = source.rotateEnable_;
  penStyleJoinType_ = source.penStyleJoinType_;
  penStyleEndCapType_ = source.penStyleEndCapType_;
  hotShow_ = source.hotShow_;
}

void TMyCAD::ReadLayers(TStream& stream) {
  const std::int64_t offset = stream.Position();
  const std::int32_t count = ReadCount(stream, kMinLayerBytes, "layers");
  if (count > kMaxLayers)
    throw EStreamFormatError(offset, std::to_string(count) + " layers, more than a drawing can hold");
  std::int32_t highest = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    LayerRec layer;
    layer.LayerName = ReadLString(stream, "layer name");
    layer.LayerId = ReadValue<std::int32_t>(stream, "layer id");
    layer.Visible = ReadValue<std::int32_t>(stream, "layer visibility") == 1;
    highest = std::max(highest, layer.LayerId);
    layers_.push_back(layer);
  }
  nextLayerId_ = IdPlus(highest, 1);
}

bool TMyCAD::ReadShapes(TStream& stream) {
  const std::int32_t count = ReadCount(stream, kClassTagSize, "shapes");
  // "XP.2" records size their point lists without storing coordinates, so
  // the stream's length alone does not bound them: a drawing may hold at most
  // kMaxCountWithoutData points more than its bytes could store.
  const std::int64_t pointBudget = kMaxCountWithoutData + stream.Size() / 8;
  std::int64_t points = 0;
  std::int32_t highest = 0;
  for (std::int32_t i = 0; i < count; ++i) {
    const std::int64_t offset = stream.Position();
    std::unique_ptr<TMyShape> shape = ReadShape(stream, *this);
    points += shape->GetPointsCount() + shape->GetLinkPointsCount();
    if (points > pointBudget) throw EStreamFormatError(offset, "the shapes hold more points than a drawing can");
    highest = std::max(highest, shape->ShapeId);
    if (!AddShapeforLoadfromStream(i, std::move(shape), true)) return false;
  }
  nextShapeId_ = IdPlus(highest, 1);
  return true;
}

bool TMyCAD::AddShapeforLoadfromStream(std::int32_t position, std::unique_ptr<TMyShape> shape, bool loading) {
  if (!AddShape(std::move(shape), true, loading)) return false;
  const auto at = shapes_.begin() + std::clamp(position, 0, GetShapesCount() - 1);
  std::rotate(at, shapes_.end() - 1, shapes_.end());
  for (auto it = at; it != shapes_.end(); ++it) (*it)->ShapeNo = static_cast<std::int32_t>(it - shapes_.begin());
  return true;
}

// ---------------------------------------------------------------------------
// Loading a whole drawing

bool TMyCAD::LoadFromStream(TStream& stream) {
  const std::unique_ptr<TMyCAD> loaded = ParseDrawing(stream);
  if (!loaded) return false;
  TakeDrawing(*loaded);
  return true;
}

void TMyCAD::TakeDrawing(TMyCAD& loaded) {
  // The bitmap copy is the only step that can fail; it goes first, before
  // anything else has changed.
  bkBitmap_ = loaded.bkBitmap_;
  DeleteAllShapes();
  colorOfBackGround_ = loaded.colorOfBackGround_;
  resize(loaded.width(), loaded.height());
  theUnit_ = loaded.theUnit_;
  bkBitmapMode_ = loaded.bkBitmapMode_;
  ratio_ = loaded.ratio_;
  tag_ = loaded.tag_;
  userData_ = std::move(loaded.userData_);
  layers_ = std::move(loaded.layers_);
  nextLayerId_ = loaded.nextLayerId_;
  currentLayerId_ = loaded.currentLayerId_;
  shapes_ = std::move(loaded.shapes_);
  for (const auto& shape : shapes_) shape->SetOwner(this);
  // The index is built in one go before the next query or paint.
  indexNeedsRebuild_ = true;
  nextShapeId_ = loaded.nextShapeId_;
  // The drawing keeps the tag it was read with until it is saved again.
  diskFileVersion_ = loaded.diskFileVersion_;
  ClearAllUndoStuff();
  modified_ = false;
  Invalidate();
}

bool TMyCAD::LoadFromFile(const std::string& fileName) {
  const std::unique_ptr<TFileStream> file = OpenDrawingFile(fileName);
  return file && LoadFromStream(*file);
}

bool TMyCAD::IsZOLTFile(const std::string& fileName) { return OpenDrawingFile(fileName) != nullptr; }

// ---------------------------------------------------------------------------
// Loading a block

bool TMyCAD::LoadFromStreamforBlock(TStream& stream, TBlockLayerMode mode) {
  const std::unique_ptr<TMyCAD> block = ParseDrawing(stream);
  if (!block) return false;
  TakeBlock(*block, mode);
  return true;
}

bool TMyCAD::AddBlockfromZOLTFile(const std::string& fileName, TBlockLayerMode mode) {
  const std::unique_ptr<TFileStream> file = OpenDrawingFile(fileName);
  return file && LoadFromStreamforBlock(*file, mode);
}

void TMyCAD::TakeBlock(TMyCAD& block, TBlockLayerMode mode) {
  bkBitmap_ = block.bkBitmap_;  // first, as in TakeDrawing
  resize(std::max(width(), block.width()), std::max(height(), block.height()));
  bkBitmapMode_ = block.bkBitmapMode_;
  ratio_ = block.ratio_;
  RemoveAllWorkingShapes();
  for (TMyShape* shape : AppendBlockShapes(block, BlockLayerIds(block.layers_, mode))) {
    // Group members take their group's pen and brush, as after any change.
    shape->DoPenBrushChange();
    if (!shape->HasParentShape()) AddWorkingShapes(shape);
  }
  ClearAllUndoStuff();
  modified_ = true;
  Invalidate();
}

std::vector<TMyShape*> TMyCAD::AppendBlockShapes(TMyCAD& block, const std::vector<std::int32_t>& layerIds) {
  const std::int32_t first = GetShapesCount();
  const std::int32_t count = block.GetShapesCount();
  DropRedoUnlessReplaying();
  std::vector<TMyShape*> added;
  for (std::int32_t no = 0; no < count; ++no) {
    std::unique_ptr<TMyShape>& shape = block.shapes_[static_cast<std::size_t>(no)];
    shape->SetOwner(this);
    MoveIntoDrawing(*shape, no, count, first, nextShapeId_);
    const std::int32_t layerNo = block.GetLayerNoById(shape->LayerId);
    shape->LayerId = layerNo < 0 ? currentLayerId_ : layerIds[static_cast<std::size_t>(layerNo)];
    RegisterShape(shape.get());
    added.push_back(shape.get());
    shapes_.push_back(std::move(shape));
  }
  nextShapeId_ = IdPlus(nextShapeId_, count);
  return added;
}

std::vector<std::int32_t> TMyCAD::BlockLayerIds(const std::vector<LayerRec>& blockLayers, TBlockLayerMode mode) {
  if (mode == Import)
    for (std::size_t no = GetLayersCount(); no < blockLayers.size(); ++no)
      NewLayer("Block" + blockLayers[no].LayerName, true);
  // The canvas layer standing for each block layer: the current one (Merge),
  // or the one at the same position, when there is one (Import).
  std::vector<std::int32_t> ids;
  for (std::size_t no = 0; no < blockLayers.size(); ++no) {
    const std::int32_t id = GetLayerIdByNo(static_cast<std::int32_t>(no));
    ids.push_back(mode == Merge || id == -1 ? currentLayerId_ : id);
  }
  return ids;
}

}  // namespace lumatrex
