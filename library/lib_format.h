// The shape library file format: version tags, the file probes and the field
// codecs the library manager builds entries from.
//
// A library is a 10-byte tag followed by entries, one after another, with no
// count and no terminator:
//   name length N (byte), N name bytes, entry size S (int32: the bytes that
//   follow up to the end of the entry), width and height (int32 each),
//   [user data: int32 count, count x (lstring key, lstring value); only in
//   libraries tagged "ZOLTLIBX.j"], int32 shape count K, K x (16-byte
//   space-padded class tag, shape record of a drawing file).
// Shape records follow the drawing-file version that LibTagToFileVersion maps
// the library tag to.
//
// Coordinates inside an entry are unit coordinates: relative to the bounding
// box of the entry's shapes (link point shapes excluded), divided by its
// rounded size. Link point shapes (class "TMyLinkPoint") keep their absolute
// coordinates.
//
// Layering: this folder sits above shapes/ because reading an entry creates
// shapes; persistence/ below it holds only the primitive encodings.
#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "geometry/geometry.h"
#include "persistence/user_data.h"
#include "platform/stream.h"
#include "shapes/shape.h"

namespace lumatrex {

class TCmbShape;

// ==== tags ===================================================================

inline constexpr std::size_t kLibTagSize = 10;
// The tag every writer puts.
inline constexpr const char* kCurrentLibTag = "ZOLTLIBX.j";
// The tag of the older library family (see LoadFromOldFile).
inline constexpr const char* kOldLibTag = "ZOLTLIB2.1";

// The drawing-file version whose shape records a library of Tag holds:
// "ZOLTLIBX.j" -> "XP.j" and so on down to ".6"; "ZOLTLIBX.3" holds "XP.4"
// records and "ZOLTLIBX.2" "XP.2" records. Any other tag gives "".
std::string LibTagToFileVersion(const std::string& tag);
// Whether entries of a library of Tag carry a user data section.
bool LibTagHasUserData(const std::string& tag);

// ==== file probes ==============================================================
// Each reads the first 10 bytes of the file. A file shorter than that holds no
// tag and gives false; a file that cannot be opened throws EFOpenError.

// The file's tag, or "" when the file is shorter than a tag.
std::string ReadLibFileTag(const std::string& fileName);
// ".j", ".h", ".a", ".9", ".8", ".7", ".6", ".3" and ".2"; not ".i" and not
// ".e", which have probes of their own.
bool IsZOLTLibFile(const std::string& fileName);
bool IsZOLTLibFileX67(const std::string& fileName);
bool IsZOLTLibX2File(const std::string& fileName);
bool IsZOLTLibFileX8(const std::string& fileName);
bool IsZOLTLibFileX9(const std::string& fileName);
bool IsZOLTLibFileXA(const std::string& fileName);
bool IsZOLTLibFileXE(const std::string& fileName);
bool IsZOLTLibFileXH(const std::string& fileName);
bool IsZOLTLibFileXI(const std::string& fileName);
bool IsOLDZOLTLibFile(const std::string& fileName);

// Whether Shape is a link point shape (class "TMyLinkPoint"), which keeps its
// absolute coordinates in an entry.
bool IsLinkPointShape(const TMyShape& shape);

// The box of the points of Shapes, link point shapes left out: what unit
// coordinates are taken against, and the natural stored size of an entry
// (its width and height rounded half to even). The zero rectangle for none.
TMyRect CmbShapeBounds(const std::vector<TMyShape*>& shapes);

// ==== field codecs ===============================================================
// Each works at the stream's position and leaves it after the field; writers
// return the number of bytes written. Readers throw EReadError on a short
// stream and EStreamFormatError (offset and field named) on malformed data.

// Exactly 10 bytes of Tag (cut or padded with spaces).
std::int64_t WriteLibTag(TStream& stream, const std::string& tag);
// "" without reading when fewer than 10 bytes remain.
std::string ReadLibTag(TStream& stream);

// A name of at most 255 bytes (longer names are cut): length byte, bytes.
std::int64_t WriteCmbShapeName(TStream& stream, const std::string& name);
std::string ReadCmbShapeName(TStream& stream);

// The entry size; reading checks that so many bytes follow.
std::int64_t WriteCmbShapeSize(TStream& stream, std::int32_t size);
std::int32_t ReadCmbShapeSize(TStream& stream);

std::int64_t WriteWidthHeight(TStream& stream, std::int32_t width, std::int32_t height);
void ReadWidthHeight(TStream& stream, std::int32_t& width, std::int32_t& height);

// Reading adds each record with AddKeyandValue (a repeated key is dropped).
std::int64_t WriteUserDataRecords(TStream& stream, const TUserData& userData);
void ReadUserDataRecords(TStream& stream, TUserData& userData);

// Writes the shape count and each shape's class tag and record (current
// version), in unit coordinates. The shapes are moved into unit coordinates
// for the time of writing and given their exact values back, so the caller
// sees no change. List positions (group members, parent, connector ends) are
// written as they are.
std::int64_t WriteShapes(TStream& stream, const std::vector<TMyShape*>& shapes);

// Where an entry's unit coordinates land, in model coordinates:
// x = Left + x' * Width, y = Top + y' * Height. A Width or Height of 0 takes
// the entry's stored size (itself taken as 1 when it is 0, as on writing).
// {0, 0, 1, 1} gives the coordinates as stored.
struct TCmbShapePlacement {
  float Left = 0;
  float Top = 0;
  float Width = 0;
  float Height = 0;
};
inline constexpr TCmbShapePlacement kAsStored{0, 0, 1, 1};

// Reads the shape count and the shapes into Entry (which owns them and
// answers the record version), mapping unit coordinates by At; link point
// shapes keep their stored coordinates. An unknown class tag is malformed.
void ReadShapes(TStream& stream, TCmbShape& entry, const TCmbShapePlacement& at);

}  // namespace lumatrex
