#include "library/lib_manager.h"

#include <algorithm>
#include <limits>
#include <utility>

#include "persistence/stream_io.h"

namespace lumatrex {

namespace {

bool IsStorableName(const std::string& name) { return !name.empty() && name.size() <= 255; }

}  // namespace

TLibManager::TLibManager(const TMyShapeOwner* canvas) : canvas_(canvas) {}

// ---------------------------------------------------------------------------
// Files and the stream

void TLibManager::LoadFromFile(const std::string& fileName) {
  TMemoryStream file;
  file.LoadFromFile(fileName);
  stream_ = std::move(file);
  libFileName_ = fileName;
}

void TLibManager::LoadForEditing(const std::string& fileName) {
  TLibManager scratch(canvas_);
  if (IsOLDZOLTLibFile(fileName)) {
    scratch.LoadFromOldFile(fileName);
  } else {
    scratch.LoadFromFile(fileName);
    if (scratch.stream_.Size() > 0 && !scratch.UpgradeToCurrentTag())
      throw EStreamFormatError(0, "not a shape library (tag \"" + scratch.GetLibTag() + "\")");
    for (const TEntrySpan& span : scratch.Walk()) scratch.ReadEntryAt(span, kCurrentLibTag, kAsStored);
  }
  stream_ = std::move(scratch.stream_);
  libFileName_ = fileName;
}

void TLibManager::SaveToFile(const std::string& fileName) {
  ReplaceoldTagwithNewTag();
  SaveBytesToFileAtomically(fileName, stream_.View());
}

void TLibManager::SetBytes(std::span<const std::uint8_t> bytes) { stream_ = TMemoryStream(bytes); }

std::string TLibManager::GetLibTag() const {
  stream_.SetPosition(0);
  return ReadLibTag(stream_);
}

void TLibManager::ReplaceoldTagwithNewTag() {
  TMemoryStream tag;
  WriteLibTag(tag, kCurrentLibTag);
  Splice(0, std::min<std::int64_t>(stream_.Size(), kLibTagSize), tag.View());
}

void TLibManager::Splice(std::int64_t start, std::int64_t end, std::span<const std::uint8_t> bytes) {
  const std::span<const std::uint8_t> old = stream_.View();
  std::vector<std::uint8_t> spliced(old.begin(), old.begin() + start);
  spliced.insert(spliced.end(), bytes.begin(), bytes.end());
  spliced.insert(spliced.end(), old.begin() + end, old.end());
  SetBytes(std::move(spliced));
}

// ---------------------------------------------------------------------------
// The entry walk

std::vector<TLibManager::TEntrySpan> TLibManager::Walk() const {
  std::vector<TEntrySpan> spans;
  // A stream shorter than a tag holds no entries.
  stream_.SetPosition(std::min<std::int64_t>(stream_.Size(), kLibTagSize));
  while (stream_.Remaining() > 0) {
    TEntrySpan span;
    span.Start = stream_.Position();
    span.Name = ReadCmbShapeName(stream_);
    const std::int32_t size = ReadCmbShapeSize(stream_);
    span.Body = stream_.Position();
    span.End = span.Body + size;
    stream_.SetPosition(span.End);
    spans.push_back(std::move(span));
  }
  return spans;
}

const TLibManager::TEntrySpan* TLibManager::Find(const std::vector<TEntrySpan>& spans, const std::string& name) const {
  const auto it = std::ranges::find(spans, name, &TEntrySpan::Name);
  return it == spans.end() ? nullptr : &*it;
}

bool TLibManager::NameIsFree(const std::vector<TEntrySpan>& spans, const std::string& name) const {
  return IsStorableName(name) && !Find(spans, name);
}

std::int32_t TLibManager::GetcmbShapesCount() const { return static_cast<std::int32_t>(Walk().size()); }

std::string TLibManager::GetCmbShapesNameByID(std::int32_t no) const {
  const std::vector<TEntrySpan> spans = Walk();
  if (no < 0 || no >= static_cast<std::int32_t>(spans.size())) return {};
  return spans[static_cast<std::size_t>(no)].Name;
}

bool TLibManager::GetExistShape(const std::string& name, std::int64_t& position, std::int64_t& size) const {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, name);
  if (!span) return false;
  position = span->Start;
  size = span->End - span->Start;
  return true;
}

// ---------------------------------------------------------------------------
// Reading entries

std::unique_ptr<TCmbShape> TLibManager::ReadEntryAt(const TEntrySpan& span, const std::string& libTag,
                                                    const TCmbShapePlacement& at) const {
  auto entry = std::make_unique<TCmbShape>(LibTagToFileVersion(libTag), canvas_);
  entry->Name = span.Name;
  stream_.SetPosition(span.Body);
  ReadWidthHeight(stream_, entry->Width, entry->Height);
  if (LibTagHasUserData(libTag)) ReadUserDataRecords(stream_, entry->UserData);
  ReadShapes(stream_, *entry, at);
  if (stream_.Position() != span.End)
    throw EStreamFormatError(span.Body - 4, "entry \"" + span.Name + "\" holds " +
                                                std::to_string(stream_.Position() - span.Body) +
                                                " bytes, its size says " + std::to_string(span.End - span.Body));
  return entry;
}

std::unique_ptr<TCmbShape> TLibManager::ReadEntry(const std::string& name, const std::string& libTag,
                                                  const TCmbShapePlacement& at) const {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, name);
  return span ? ReadEntryAt(*span, libTag, at) : nullptr;
}

std::unique_ptr<TCmbShape> TLibManager::GetCmbShape(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, GetLibTag(), at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforX8(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.8", at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforX9(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.9", at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforXA(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.a", at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforXE(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.e", at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforXH(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.h", at);
}
std::unique_ptr<TCmbShape> TLibManager::GetCmbShapeforXI(const std::string& name, const TCmbShapePlacement& at) const {
  return ReadEntry(name, "ZOLTLIBX.i", at);
}

// ---------------------------------------------------------------------------
// Edits

std::vector<std::uint8_t> TLibManager::EntryBytes(const std::string& name, const std::vector<TMyShape*>& shapes,
                                                  const TUserData& userData, std::int32_t width, std::int32_t height) {
  TMemoryStream entry;
  WriteCmbShapeName(entry, name);
  const std::int64_t sizeField = entry.Position();
  WriteCmbShapeSize(entry, 0);  // provisional, the true size follows the body
  const std::int64_t size =
      WriteWidthHeight(entry, width, height) + WriteUserDataRecords(entry, userData) + WriteShapes(entry, shapes);
  if (size > std::numeric_limits<std::int32_t>::max())
    throw EWriteError("entry \"" + name + "\" is too large for a library (" + std::to_string(size) + " bytes)");
  entry.SetPosition(sizeField);
  WriteCmbShapeSize(entry, static_cast<std::int32_t>(size));
  return entry.Bytes();
}

bool TLibManager::AppendNewShape(const std::string& name, const std::vector<TMyShape*>& shapes,
                                 const TUserData& userData, std::int32_t width, std::int32_t height) {
  return InsertNewShape(std::max<std::int64_t>(stream_.Size(), kLibTagSize), name, shapes, userData, width, height);
}

bool TLibManager::InsertNewShape(std::int64_t position, const std::string& name, const std::vector<TMyShape*>& shapes,
                                 const TUserData& userData, std::int32_t width, std::int32_t height) {
  const std::vector<TEntrySpan> spans = Walk();
  if (!NameIsFree(spans, name)) return false;
  const std::int64_t end = std::max<std::int64_t>(stream_.Size(), kLibTagSize);
  const bool atEntry = std::ranges::find(spans, position, &TEntrySpan::Start) != spans.end();
  if (position != end && !atEntry) return false;
  std::vector<std::uint8_t> entry = EntryBytes(name, shapes, userData, width, height);
  if (stream_.Size() < static_cast<std::int64_t>(kLibTagSize)) ReplaceoldTagwithNewTag();
  Splice(position, position, entry);
  return true;
}

bool TLibManager::DeleteShape(const std::string& name) {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, name);
  if (!span) return false;
  Splice(span->Start, span->End, {});
  return true;
}

bool TLibManager::RepalceExistShape(const std::string& name, const std::vector<TMyShape*>& shapes,
                                    const TUserData& userData, std::int32_t width, std::int32_t height) {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, name);
  if (!span) return false;
  Splice(span->Start, span->End, EntryBytes(name, shapes, userData, width, height));
  return true;
}

bool TLibManager::RenameCmbShapeName(const std::string& oldName, const std::string& newName) {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, oldName);
  if (!span || (newName != oldName && !NameIsFree(spans, newName))) return false;
  TMemoryStream name;
  WriteCmbShapeName(name, newName);
  // The size field counts only what follows it, so it stays valid.
  Splice(span->Start, span->Start + 1 + static_cast<std::int64_t>(oldName.size()), name.View());
  return true;
}

bool TLibManager::MoveCmbShapeBeforeByName(const std::string& name, const std::string& beforeName) {
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* moved = Find(spans, name);
  const TEntrySpan* before = Find(spans, beforeName);
  if (!moved || !before || moved == before) return false;
  const std::span<const std::uint8_t> bytes = stream_.View();
  const std::vector<std::uint8_t> entry(bytes.begin() + moved->Start, bytes.begin() + moved->End);
  const std::int64_t length = moved->End - moved->Start;
  const std::int64_t target = before->Start > moved->Start ? before->Start - length : before->Start;
  Splice(moved->Start, moved->End, {});
  Splice(target, target, entry);
  return true;
}

}  // namespace lumatrex
