// Sample drawings for the drawing-file tests: drawings built byte by byte
// from the format tables (never by our writer), and drawings built on a
// canvas with every class tag.
#pragma once

#include <gtest/gtest.h>

#include <algorithm>
#include <fstream>
#include <iterator>
#include <optional>
#include <stdexcept>
#include <string>
#include <vector>

#include "canvas/document_state.h"
#include "canvas/tmycad.h"
#include "persistence/file_version.h"
#include "persistence/stream_io.h"
#include "platform/hooks.h"
#include "shapes/arc.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/record_bytes.h"
#include "shapes/text.h"
#include "support/test_paths.h"

namespace lumatrex::test {

inline const std::vector<std::string> kVersions = {"XP.2", "XP.3", "XP.4", "XP.5", "XP.6", "XP.7", "XP.8",
                                                   "XP.9", "XP.a", "XP.e", "XP.h", "XP.i", "XP.j"};

inline const std::vector<std::string> kClassTags = {
    "TMyRectangle",    "TMyEllipse", "TMyPolygon", "TMyPolyLine", "TMyPolyBezier", "TMyBLine",
    "TMyFreeLine",     "TMyGroup",   "TMyCombine", "TMyLine",     "TMyRuleLine",   "TMyLinkLine",
    "TMyLineLinkLine", "TMyElliArc", "TMyText",    "TMyImage",    "TMyLinkPoint"};

inline bool Load(TMyCAD& cad, const TBytes& bytes) {
  TMemoryStream stream(bytes);
  return cad.LoadFromStream(stream);
}

inline TBytes FileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return TBytes(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

inline void WriteFileBytes(const std::string& path, const TBytes& bytes) {
  std::ofstream(path, std::ios::binary).write(reinterpret_cast<const char*>(bytes.data()), bytes.size());
}

// ---------------------------------------------------------------------------
// Drawings built from the format tables

inline TRecordBytes& FixText(TRecordBytes& r, const std::string& text, std::size_t n) {
  std::string bytes = text;
  bytes.resize(n, ' ');
  return r.raw(bytes.data(), n);
}

// A 2 x 1 BMP file of 24 bits a pixel: red, then blue; rows padded to 4 bytes.
inline TBytes TwoPixelBmp() {
  TRecordBytes r;
  r.u8('B').u8('M').i32(62).i32(0).i32(54);                        // file header: size, reserved, pixel offset
  r.i32(40).i32(2).i32(1).u8(1).u8(0).u8(24).u8(0).i32(0).i32(8);  // 2 x 1, one plane, 24 bits, BI_RGB, 8 bytes
  r.i32(0).i32(0).i32(0).i32(0);                                   // resolution, palette
  r.u8(0).u8(0).u8(255).u8(255).u8(0).u8(0).u8(0).u8(0);           // blue-green-red triples, padding
  return r.bytes;
}

struct TLayerFields {
  std::string name;
  std::int32_t id;
  std::int32_t visible;  // only exactly 1 means visible
};

// Header fields 1 to 18, with the values of the golden drawings. The count
// overrides write a count that does not match what follows.
struct THeaderFields {
  std::string version = "XP.j";
  std::string creatorText = "written by hand from the tables";
  TColor background = 0x123456;
  std::int32_t width = 640;
  std::int32_t height = 480;
  std::uint8_t unit = inch;
  TBytes bkBitmap = TwoPixelBmp();
  std::optional<std::int64_t> bkBitmapSize = {};
  std::int32_t bkMode = Stretch;
  double ratio = 0.25;
  std::int32_t tag = 42;  // tag and user data are stored from "XP.h" on
  std::vector<TUserDataRecord> userData = {{"author", "lm"}, {"k2", "v2"}};
  std::optional<std::int32_t> userDataCount = {};
  std::vector<TLayerFields> layers = {{"Layer0", 0, 1}, {"Plan", 3, 2}, {"Notes", 7, 0}};
  std::optional<std::int32_t> layerCount = {};
  std::int32_t currentLayer = 3;
};

inline TRecordBytes Header(const THeaderFields& f) {
  TRecordBytes r;
  FixText(r, "Ambrel Component", 64);
  FixText(r, f.creatorText, 64);
  FixText(r, f.version, 16);
  FixText(r, "20091209", 10);
  FixText(r, std::string(63, ' ') + '\0', 64);
  r.i32(f.background).i32(f.width).i32(f.height).u8(f.unit);
  r.i64(f.bkBitmapSize.value_or(static_cast<std::int64_t>(f.bkBitmap.size()))).append(f.bkBitmap);
  r.i32(f.bkMode).raw(&f.ratio, 8);
  if (FileVersionAtLeast(f.version, "XP.h")) {
    r.i32(f.tag).i32(f.userDataCount.value_or(static_cast<std::int32_t>(f.userData.size())));
    for (const auto& [key, value] : f.userData) r.str(key).str(value);
  }
  r.i32(f.layerCount.value_or(static_cast<std::int32_t>(f.layers.size())));
  for (const TLayerFields& l : f.layers) r.str(l.name).i32(l.id).i32(l.visible);
  return r.i32(f.currentLayer);
}

struct TEntry {
  std::string classTag;
  TBytes record;
};

inline TBytes Drawing(const THeaderFields& header, const std::vector<TEntry>& shapes,
                      std::optional<std::int32_t> shapeCount = std::nullopt) {
  TRecordBytes r = Header(header);
  r.i32(shapeCount.value_or(static_cast<std::int32_t>(shapes.size())));
  for (const TEntry& e : shapes) FixText(r, e.classTag, 16).append(e.record);
  return r.bytes;
}

// The line record: the base record and the four arrow fields.
inline TRecordBytes LineRecord(const std::string& version, const TRecordFields& fields,
                               std::uint8_t arrowStyle = ADouble) {
  return BaseRecord(version, fields).i32(30).u8(12).u8(3).u8(arrowStyle);
}

// A rectangle, a text, a connector and an image, each tail as its version has it.
inline std::vector<TEntry> GoldenShapes(const std::string& v) {
  const auto since = [&](const char* tag) { return FileVersionAtLeast(v, tag); };
  TRecordBytes text = BaseRecord(v, {.name = "Note", .id = 9, .points = Box(0, 0, 40, 20)});
  text.u8(1).u8(0);  // border, not solid
  if (since("XP.a")) text.i32(2).str("one").str("two").u8(tlCenter).u8(taRightJustify).u8(1);
  TRecordBytes link = LineRecord(v, {.name = "Wire", .id = 2, .layer = 7, .points = {{110, 45}, {200, 10}}});
  link.i32(0).i32(1).i32(3).i32(2);  // from shape 0's link point 1 to shape 3's link point 2
  if (since("XP.5")) link.u8(lldsHV);
  TRecordBytes image = BaseRecord(v, {.name = "Photo", .id = 4, .layer = 3, .points = Box(200, 0, 260, 30)});
  image.i64(0);  // no picture
  if (since("XP.9")) image.i32(5).i32(-5).u8(1).u8(0).u8(1);
  if (since("XP.i")) image.i32(clLime).i32(0x7F000001);  // tmFixed in the low byte, noise above it
  return {{"TMyRectangle", BaseRecord(v, {.name = "Box", .id = 5, .layer = 3, .points = Box(10, 20, 110, 70)}).bytes},
          {"TMyText", text.bytes},
          {"TMyLinkLine", link.bytes},
          {"TMyImage", image.bytes}};
}

inline TBytes GoldenDrawing(const std::string& version) {
  THeaderFields header;
  header.version = version;
  return Drawing(header, GoldenShapes(version));
}

inline std::string GoldenPath(const std::string& version) { return DataPath("drawings/drawing-" + version + ".zlt"); }

// A group of two members and a connector between them, on block layers 3
// and 7, with ids far from the canvas's.
inline std::vector<TEntry> GroupAndConnector() {
  TRecordBytes link = LineRecord("XP.j", {.name = "W", .id = 53, .layer = 7});
  link.i32(0).i32(0).i32(1).i32(0).u8(lldsLine);  // from member A to member B
  return {
      {"TMyRectangle",
       BaseRecord("XP.j", {.name = "A", .id = 50, .layer = 3, .parent = 2, .points = Box(0, 0, 5, 5)}).bytes},
      {"TMyEllipse",
       BaseRecord("XP.j", {.name = "B", .id = 51, .layer = 7, .parent = 2, .points = Box(9, 0, 15, 5)}).bytes},
      {"TMyGroup",
       BaseRecord("XP.j", {.name = "G", .id = 52, .layer = 3, .children = {0, 1}, .points = Box(0, 0, 15, 5)}).bytes},
      {"TMyLinkLine", link.bytes}};
}

// ---------------------------------------------------------------------------
// Drawings made with the canvas

// A 3 x 2 picture with three colours in its first row.
inline TBitmap SmallPicture() {
  TBitmap bitmap(3, 2, pf24bit);
  std::uint8_t* row = bitmap.ScanLine(0);
  const std::uint8_t bgr[] = {0, 0, 255, 0, 255, 0, 255, 0, 0};
  std::copy(std::begin(bgr), std::end(bgr), row);
  return bitmap;
}

template <typename T>
inline T& Kind(TMyCAD& cad, const std::string& classTag) {
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i)
    if (cad.GetShapeByNo(i)->ClassName() == classTag) return dynamic_cast<T&>(*cad.GetShapeByNo(i));
  throw std::logic_error("no " + classTag);
}

// A shape of every class tag, with the header fields and the fields of each
// record's tail set away from their defaults. Every centre is the centre of
// its points' box, as loading makes it.
inline void BuildEveryKind(TMyCAD& cad) {
  cad.resize(500, 400);
  cad.SetColorOfBackGround(0x0A0B0C);
  cad.SetTheUNIT(dm);
  cad.SetBkBitmap(SmallPicture());
  cad.SetBkBitmapMode(LeftTop);
  cad.SetRatio(1.5);
  cad.SetTag(7);
  cad.UserData().AddKeyandValue("a", "1");
  const std::int32_t hidden = cad.NewLayer("Hidden", false);
  cad.SetCurrentLayerId(0);
  float x = 0;
  for (const std::string& tag : kClassTags) {
    // The combine has no points, so that its angle is stored as it is.
    cad.AddShapeByCode2(tag, "", tag == "TMyCombine" ? TArrMyPoint{} : Box(x, 10, x + 20, 40), 0);
    x += 30;
  }
  auto& rect = Kind<TMyRectangle>(cad, "TMyRectangle");
  rect.LayerId = hidden;
  rect.UserData().AddKeyandValue("key", "value");
  rect.SetMultiInfo({"m1", "m2"});
  rect.SetMultiInfoAlignment(taLeftJustify);
  rect.SetInfo("info");
  rect.SetCaption("caption");
  rect.Pen().SetColor(clRed);
  rect.Pen().SetStyle(psDash);
  rect.Pen().SetWidth(3);
  rect.Pen().SetMode(pmXor);
  const TBitmap pattern = SmallPicture();
  rect.Brush().SetBitmap(&pattern);
  rect.Font().SetSize(12);
  rect.Font().SetStyle(fsBold | fsUnderline);
  rect.LinkLines = {11};
  auto& ellipse = Kind<TMyEllipse>(cad, "TMyEllipse");
  ellipse.SetGradientStyle(gsLinearH);
  ellipse.SetColorBegin(clYellow);
  ellipse.SetColorEnd(clNavy);
  ellipse.SetLogUse(true);
  ellipse.SetLogWidth(20);
  ellipse.SetLocked(true);
  auto& polygon = Kind<TMyPolygon>(cad, "TMyPolygon");
  polygon.SetVisible(false);
  polygon.SetPenStyleJoinType(psjtBEVEL);
  polygon.SetPenStyleEndCapType(psectFLAT);
  polygon.SetHotShow(false);
  polygon.SetResizeEnable(false);
  polygon.SetRotateEnable(false);
  polygon.Brush().SetStyle(bsCross);
  auto& group = Kind<TMyGroup>(cad, "TMyGroup");
  group.ChildShapes = {rect.ShapeNo, ellipse.ShapeNo};
  rect.ParentId = ellipse.ParentId = group.ShapeNo;
  Kind<TMyCombine>(cad, "TMyCombine").SetAngle(0.75f);
  auto& line = Kind<TMyLine>(cad, "TMyLine");
  line.SetArrowStyle(ADouble);
  line.SetArrowAngle(25);
  line.SetArrowLength(9);
  line.SetArrowOffset(2);
  auto& rule = Kind<TMyRuleLine>(cad, "TMyRuleLine");
  rule.SetShowUserInfo(true);
  rule.SetTickStyle(tsNone);
  rule.SetUserInfo("12 mm");
  auto& link = Kind<TMyLinkLine>(cad, "TMyLinkLine");
  link.SetStartSpNo(0);
  link.SetStartSpPtId(1);
  link.SetEndSpNo(2);
  link.SetEndSpPtId(3);
  link.SetLinkLineDrawStyle(lldsVH);
  Kind<TMyLineLinkLine>(cad, "TMyLineLinkLine").SetLinkLineDrawStyle(lldsHV);
  auto& arc = Kind<TMyElliArc>(cad, "TMyElliArc");
  arc.SetArcMode(amEllipse);
  arc.SetArcStyle(asPie);
  auto& text = Kind<TMyText>(cad, "TMyText");
  text.SetIsBorder(true);
  text.SetIsSolid(true);
  text.SetLines({"first", "", "third"});
  text.SetVAlignment(tlBottom);
  text.SetHAlignment(taRightJustify);
  text.SetWordWrap(true);
  auto& image = Kind<TMyImage>(cad, "TMyImage");
  image.Bitmap() = SmallPicture();
  image.SetBrightness(10);
  image.SetContrast(-3);
  image.SetTransparent(true);
  image.SetBorder(true);
  image.SetGrayScale(true);
  image.SetTransparentColor(clFuchsia);
  image.SetTransparentMode(tmFixed);
  Kind<TMyLinkPoint>(cad, "TMyLinkPoint").SetSize(7);
}

// A canvas with content of its own, which failed loads must leave alone.
inline void FillWithOldDrawing(TMyCAD& cad) {
  cad.resize(320, 240);
  cad.SetColorOfBackGround(clGreen);
  cad.SetTag(-1);
  cad.UserData().AddKeyandValue("old", "data");
  cad.NewLayer("Old", true);
  cad.AddShapeByCode2("TMyEllipse", "Old0", Box(1, 2, 30, 40), 0);
  cad.AddShapeByCode2("TMyLine", "Old1", {{0, 0}, {9, 9}}, 0);
}

}  // namespace lumatrex::test
