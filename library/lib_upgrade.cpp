// Bringing older libraries to the current layout: the upgrade steps of the
// "ZOLTLIBX" family and the conversion of "ZOLTLIB2.1" libraries.
#include <unordered_set>

#include "library/lib_manager.h"
#include "persistence/stream_io.h"

namespace lumatrex {

namespace {

std::vector<TMyShape*> ShapePointers(const TCmbShape& entry) {
  std::vector<TMyShape*> shapes;
  for (const auto& s : entry.Shapes) shapes.push_back(s.get());
  return shapes;
}

}  // namespace

void TLibManager::SetEntries(const std::vector<std::unique_ptr<TCmbShape>>& entries) {
  TMemoryStream library;
  WriteLibTag(library, kCurrentLibTag);
  for (const auto& e : entries) {
    const std::vector<std::uint8_t> entry = EntryBytes(e->Name, ShapePointers(*e), e->UserData, e->Width, e->Height);
    library.WriteBuffer(entry.data(), static_cast<std::int64_t>(entry.size()));
  }
  SetBytes(library.View());
}

// Every entry is read before anything is written, so a damaged entry leaves
// the library as it was. Entries are read in their stored unit coordinates
// and written through the unit rule again, which gives back the stored values
// for entries whose shapes start at 0, as every writer puts them.
void TLibManager::UpgradeFrom(const std::string& oldTag) {
  std::vector<std::unique_ptr<TCmbShape>> entries;
  for (const TEntrySpan& span : Walk()) entries.push_back(ReadEntryAt(span, oldTag, kAsStored));
  SetEntries(entries);
}

void TLibManager::Upgradefromx6tox8() { UpgradeFrom(GetLibTag()); }
void TLibManager::Upgradefromx8tox9() { UpgradeFrom("ZOLTLIBX.8"); }
void TLibManager::Upgradefromx9toxa() { UpgradeFrom("ZOLTLIBX.9"); }
void TLibManager::Upgradefromxatoxe() { UpgradeFrom("ZOLTLIBX.a"); }
void TLibManager::Upgradefromxetoxh() { UpgradeFrom("ZOLTLIBX.e"); }
void TLibManager::Upgradefromxhtoxi() { UpgradeFrom("ZOLTLIBX.h"); }
void TLibManager::Upgradefromxitoxj() { UpgradeFrom("ZOLTLIBX.i"); }

bool TLibManager::UpgradeToCurrentTag() {
  const std::string tag = GetLibTag();
  if (tag == kCurrentLibTag) return true;
  if (tag == "ZOLTLIBX.2" || tag == "ZOLTLIBX.3" || tag == "ZOLTLIBX.6" || tag == "ZOLTLIBX.7")
    Upgradefromx6tox8();
  else if (tag == "ZOLTLIBX.8")
    Upgradefromx8tox9();
  else if (tag == "ZOLTLIBX.9")
    Upgradefromx9toxa();
  else if (tag == "ZOLTLIBX.a")
    Upgradefromxatoxe();
  else if (tag == "ZOLTLIBX.e")
    Upgradefromxetoxh();
  else if (tag == "ZOLTLIBX.h")
    Upgradefromxhtoxi();
  else if (tag == "ZOLTLIBX.i")
    Upgradefromxitoxj();
  else
    return false;
  return true;
}

// ---------------------------------------------------------------------------
// "ZOLTLIB2.1"

std::vector<std::unique_ptr<TCmbShape>> ReadOldLibrary(TStream& stream, const TMyShapeOwner* defaults) {
  const std::int64_t start = stream.Position();
  if (ReadLibTag(stream) != kOldLibTag)
    throw EStreamFormatError(start, std::string("not a ") + kOldLibTag + " library");
  // Name length, width, height and shape count: 16 bytes at least an entry.
  const std::int32_t count = ReadCount(stream, 16, "entries");
  std::vector<std::unique_ptr<TCmbShape>> entries;
  std::unordered_set<std::string> names;
  for (std::int32_t i = 0; i < count; ++i) {
    auto entry = std::make_unique<TCmbShape>("XP.4", defaults);
    const std::int64_t offset = stream.Position();
    entry->Name = ReadLString(stream, "entry name");
    if (!names.insert(entry->Name).second)
      throw EStreamFormatError(offset, "entry name \"" + entry->Name + "\" appears twice");
    ReadWidthHeight(stream, entry->Width, entry->Height);
    ReadShapes(stream, *entry, kAsStored);
    entries.push_back(std::move(entry));
  }
  if (stream.Remaining() > 0) throw EStreamFormatError(stream.Position(), "data after the last entry");
  return entries;
}

void TLibManager::LoadFromOldFile(const std::string& fileName) {
  TFileStream file(fileName, fmOpenRead);
  SetEntries(ReadOldLibrary(file, canvas_));
  libFileName_ = fileName;
}

}  // namespace lumatrex
