// TLibManager: a shape library held in memory, read and edited in place.
//
// The whole library file lives in one in-memory byte stream (format in
// library/lib_format.h). Entries are found by walking that stream; edits
// splice bytes in and out of it, so every entry an edit does not touch stays
// byte for byte as it was. SaveToFile writes the stream back.
//
// Errors: reading a damaged stream throws EReadError (too short) or
// EStreamFormatError (malformed), both carrying the byte offset and the field;
// nothing is allocated beyond what the data can hold. Operations that take a
// name or a position never throw for an unknown one: they return false, an
// empty string or nullptr. File operations throw EFOpenError or EWriteError.
//
// Layering: library/ sits above shapes/ (it creates shapes) and below
// canvas/; the canvas places entries through TMyCAD::AddUserDefineShapefromLib.
#pragma once

#include <cstdint>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "library/cmb_shape.h"
#include "library/lib_format.h"
#include "persistence/user_data.h"
#include "platform/bitmap.h"
#include "platform/stream.h"
#include "shapes/shape.h"
#include "shapes/shape_owner.h"

namespace lumatrex {

class TLibManager {
 public:
  // Canvas (may be null) lends the defaults that shapes read from the library
  // start with; it must outlive the reads. Shapes read are owned by the
  // TCmbShape they come in, not by the canvas (see library/cmb_shape.h).
  explicit TLibManager(const TMyShapeOwner* canvas = nullptr);

  // ==== files ====================================================================
  // Replaces the library stream with the whole file, as it is (no check of its
  // content), and remembers LibFileName. On an error the library is unchanged.
  void LoadFromFile(const std::string& fileName);
  // Opens a library to be changed: LoadFromFile, then an older "ZOLTLIBX" tag
  // is brought to the current one (UpgradeToCurrentTag) and a "ZOLTLIB2.1"
  // file is converted (LoadFromOldFile). Every entry is read, so a damaged
  // library fails here, leaving the manager unchanged; a tag that is no
  // library tag is malformed (EStreamFormatError at offset 0).
  void LoadForEditing(const std::string& fileName);
  // ReplaceoldTagwithNewTag, then writes the stream to a temporary file next to
  // FileName and renames it over FileName, so a failed save leaves the old file
  // whole. Entries of an older tag keep their old layout (see LoadForEditing).
  void SaveToFile(const std::string& fileName);
  const std::string& GetLibFileName() const { return libFileName_; }

  // A copy of the library bytes.
  std::vector<std::uint8_t> Bytes() const { return stream_.Bytes(); }
  // Replaces the library with Bytes (no check of their content).
  void SetBytes(std::span<const std::uint8_t> bytes);

  // The first 10 bytes, or "" for a stream shorter than a tag.
  std::string GetLibTag() const;
  // Makes the stream start with the current tag: the first 10 bytes are
  // replaced and the rest is kept (an empty stream receives just the tag).
  void ReplaceoldTagwithNewTag();

  // ==== entries ==================================================================
  // Number of entries, found by walking the stream; 0 for an empty stream.
  std::int32_t GetcmbShapesCount() const;
  // Name of the entry at 0-based position No; "" when out of range.
  std::string GetCmbShapesNameByID(std::int32_t no) const;
  // Stream position of the entry called Name and its size in bytes (name
  // length byte to end of entry); false when there is none.
  bool GetExistShape(const std::string& name, std::int64_t& position, std::int64_t& size) const;

  // The entry called Name, read by the library's own tag, its unit coordinates
  // mapped by At; nullptr when there is none. User data is read only from a
  // "ZOLTLIBX.j" library.
  std::unique_ptr<TCmbShape> GetCmbShape(const std::string& name, const TCmbShapePlacement& at = {}) const;
  // The same, reading the entry in the layout of the older tag named by the
  // suffix whatever the library's tag says (no user data section).
  std::unique_ptr<TCmbShape> GetCmbShapeforX8(const std::string& name, const TCmbShapePlacement& at = {}) const;
  std::unique_ptr<TCmbShape> GetCmbShapeforX9(const std::string& name, const TCmbShapePlacement& at = {}) const;
  std::unique_ptr<TCmbShape> GetCmbShapeforXA(const std::string& name, const TCmbShapePlacement& at = {}) const;
  std::unique_ptr<TCmbShape> GetCmbShapeforXE(const std::string& name, const TCmbShapePlacement& at = {}) const;
  std::unique_ptr<TCmbShape> GetCmbShapeforXH(const std::string& name, const TCmbShapePlacement& at = {}) const;
  std::unique_ptr<TCmbShape> GetCmbShapeforXI(const std::string& name, const TCmbShapePlacement& at = {}) const;

  // A Width x Height preview of the entry on white: its shapes drawn through
  // their Draw, scaled to fit inside a margin with the aspect ratio kept and
  // centred. Link point shapes, which keep absolute coordinates, are left
  // out. An empty bitmap when there is no such entry or the size is not
  // positive.
  TBitmap GetCmbShapeImage(const std::string& name, std::int32_t width, std::int32_t height) const;

  // ==== edits ====================================================================
  // Each returns false (and changes nothing) for an unknown name, a name taken
  // by another entry, an empty name or one longer than 255 bytes. New entries
  // are written in the current layout, shapes in unit coordinates (see
  // WriteShapes); Width and Height are stored as given.

  // InsertNewShape at the end of the stream.
  bool AppendNewShape(const std::string& name, const std::vector<TMyShape*>& shapes, const TUserData& userData,
                      std::int32_t width, std::int32_t height);
  // Writes a new entry at Position, which must be the start of an entry or the
  // end of the entries (the stream size, and 10 for an empty stream, which
  // first receives the current tag); false for any other position.
  bool InsertNewShape(std::int64_t position, const std::string& name, const std::vector<TMyShape*>& shapes,
                      const TUserData& userData, std::int32_t width, std::int32_t height);
  bool DeleteShape(const std::string& name);
  // Deletes the entry and writes the new one in its place.
  bool RepalceExistShape(const std::string& name, const std::vector<TMyShape*>& shapes, const TUserData& userData,
                         std::int32_t width, std::int32_t height);
  bool RenameCmbShapeName(const std::string& oldName, const std::string& newName);
  // Moves entry Name to just before entry BeforeName; false when either is
  // missing or they are the same entry.
  bool MoveCmbShapeBeforeByName(const std::string& name, const std::string& beforeName);

  // ==== older libraries ============================================================
  // Each step reads every entry with the reader of its old tag and writes it
  // back with the current writer (RepalceExistShape, coordinates kept exactly),
  // then puts the current tag. So the step that matches a library's tag brings
  // it to "ZOLTLIBX.j" at once. Upgradefromx6tox8 reads by the library's own
  // tag, which also serves ".7" and the older ".2" and ".3".
  void Upgradefromx6tox8();
  void Upgradefromx8tox9();
  void Upgradefromx9toxa();
  void Upgradefromxatoxe();
  void Upgradefromxetoxh();
  void Upgradefromxhtoxi();
  void Upgradefromxitoxj();
  // Runs the step for the library's tag. False (and no change) for a tag that
  // is not a "ZOLTLIBX" tag; true, doing nothing, for the current tag.
  bool UpgradeToCurrentTag();

  // Reads a "ZOLTLIB2.1" library and replaces the stream with its entries in
  // the current layout; LibFileName becomes FileName. On an error the library
  // is unchanged. The layout read is described at ReadOldLibrary.
  void LoadFromOldFile(const std::string& fileName);

 private:
  struct TEntrySpan {
    std::string Name;
    std::int64_t Start;  // the name length byte
    std::int64_t Body;   // after the size field
    std::int64_t End;
  };
  // Every entry in stream order; throws on a damaged walk.
  std::vector<TEntrySpan> Walk() const;
  const TEntrySpan* Find(const std::vector<TEntrySpan>& spans, const std::string& name) const;
  std::unique_ptr<TCmbShape> ReadEntry(const std::string& name, const std::string& libTag,
                                       const TCmbShapePlacement& at) const;
  std::unique_ptr<TCmbShape> ReadEntryAt(const TEntrySpan& span, const std::string& libTag,
                                         const TCmbShapePlacement& at) const;
  bool NameIsFree(const std::vector<TEntrySpan>& spans, const std::string& name) const;
  // Replaces the bytes [Start, End) of the stream by Bytes.
  void Splice(std::int64_t start, std::int64_t end, std::span<const std::uint8_t> bytes);
  // One entry in the current layout: name, size, width, height, user data, shapes.
  static std::vector<std::uint8_t> EntryBytes(const std::string& name, const std::vector<TMyShape*>& shapes,
                                              const TUserData& userData, std::int32_t width, std::int32_t height);
  // The current tag followed by Entries in the current layout.
  void SetEntries(const std::vector<std::unique_ptr<TCmbShape>>& entries);
  void UpgradeFrom(const std::string& oldTag);

  const TMyShapeOwner* canvas_;
  // Reads move only the position, so queries stay const.
  mutable TMemoryStream stream_;
  std::string libFileName_;
};

// ---- the "ZOLTLIB2.1" family ---------------------------------------------------------
//
// Layout read (little-endian, encodings of drawing files):
//   tag            10 bytes  "ZOLTLIB2.1"
//   entry count N  int32
//   N entries, one after another:
//     name         lstring   (unique in the library)
//     width        int32     size the shapes were drawn at
//     height       int32
//     shape count  int32
//     shapes       class tag (16 bytes, space-padded) and shape record of
//                  drawing version "XP.4" (80-bit coordinates), each
// Coordinates are absolute drawing coordinates: the unit coordinates of the
// "ZOLTLIBX" family came later. There is no entry size and no user data.
//
// Reads the whole of Stream (positioned at the tag) into entries whose shapes
// keep their stored coordinates; Defaults as for TLibManager. Throws
// EStreamFormatError for a wrong tag or malformed data.
std::vector<std::unique_ptr<TCmbShape>> ReadOldLibrary(TStream& stream, const TMyShapeOwner* defaults);

}  // namespace lumatrex
