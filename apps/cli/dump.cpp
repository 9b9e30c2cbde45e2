#include "dump.h"

#include <set>
#include <string>

#include "shapes/arc.h"
#include "shapes/connectors.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/text.h"

namespace lumatrex::cli {

namespace {

TJson Point(const TMyPoint& p) { return TJson::Array().Add(TJson::Float(p.X)).Add(TJson::Float(p.Y)); }

TJson Points(const TArrMyPoint& points) {
  TJson list = TJson::Array();
  for (const TMyPoint& p : points) list.Add(Point(p));
  return list;
}

template <typename T>
TJson Numbers(const std::vector<T>& numbers) {
  TJson list = TJson::Array();
  for (const T n : numbers) list.Add(TJson::Int(n));
  return list;
}

TJson Lines(const TStringList& lines) {
  TJson list = TJson::Array();
  for (const std::string& line : lines) list.Add(TJson::Bytes(line));
  return list;
}

TJson UserData(const TUserData& userData) {
  TJson list = TJson::Array();
  for (const TUserDataRecord& r : userData.Records())
    list.Add(TJson::Array().Add(TJson::Bytes(r.Key)).Add(TJson::Bytes(r.Value)));
  return list;
}

std::int32_t BitsPerPixel(TPixelFormat format) {
  switch (format) {
    case pf1bit:
      return 1;
    case pf4bit:
    case pf8bit:
    case pfCustom:
      return 8;
    case pf15bit:
    case pf16bit:
      return 16;
    case pf24bit:
      return 24;
    case pfDevice:
    case pf32bit:
      return 32;
  }
  return 0;
}

TJson Bitmap(const TBitmap* bitmap) {
  if (!bitmap || bitmap->Empty()) return TJson::Null();
  return TJson::Object()
      .Set("Width", TJson::Int(bitmap->Width()))
      .Set("Height", TJson::Int(bitmap->Height()))
      .Set("BitsPerPixel", TJson::Int(BitsPerPixel(bitmap->PixelFormat())));
}

// The fields of the shape base record, which every class stores.
TJson BaseFields(const TMyShape& s) {
  TJson shape = TJson::Object();
  shape.Set("Class", TJson::Bytes(s.ClassName()))
      .Set("Name", TJson::Bytes(s.GetName()))
      .Set("ShapeId", TJson::Int(s.ShapeId))
      .Set("ShapeNo", TJson::Int(s.ShapeNo))
      .Set("LayerId", TJson::Int(s.LayerId))
      .Set("ParentId", TJson::Int(s.ParentId))
      .Set("ChildShapes", Numbers(s.ChildShapes))
      .Set("LinkLines", Numbers(s.LinkLines))
      .Set("Points", Points(s.Points))
      .Set("LinkPoints", Points(s.LinkPoints))
      .Set("CenterPoint", Point(s.CenterPoint))
      .Set("Tag", TJson::Int(s.GetTag()))
      .Set("Angle", TJson::Float(s.GetAngle()))
      .Set("Brush", TJson::Object()
                        .Set("Color", TJson::Int(s.Brush().Color()))
                        .Set("Style", TJson::Int(s.Brush().Style()))
                        .Set("Bitmap", Bitmap(s.Brush().Bitmap())))
      .Set("Caption", TJson::Bytes(s.GetCaption()))
      .Set("ColorBegin", TJson::Int(s.GetColorBegin()))
      .Set("ColorEnd", TJson::Int(s.GetColorEnd()))
      .Set("Font", TJson::Object()
                       .Set("Name", TJson::Bytes(s.Font().Name()))
                       .Set("Charset", TJson::Int(s.Font().Charset()))
                       .Set("Color", TJson::Int(s.Font().Color()))
                       .Set("Height", TJson::Int(s.Font().Height()))
                       .Set("Size", TJson::Int(s.Font().Size()))
                       .Set("Pitch", TJson::Int(s.Font().Pitch()))
                       .Set("Style", TJson::Int(s.Font().Style())))
      .Set("GradientStyle", TJson::Int(s.GetGradientStyle()))
      .Set("Info", TJson::Bytes(s.GetInfoText()))
      .Set("Pen", TJson::Object()
                      .Set("Color", TJson::Int(s.Pen().Color()))
                      .Set("Mode", TJson::Int(s.Pen().Mode()))
                      .Set("Style", TJson::Int(s.Pen().Style()))
                      .Set("Width", TJson::Int(s.Pen().Width())))
      .Set("UserData", UserData(s.UserData()))
      .Set("IsFlipHorz", TJson::Bool(s.GetIsFlipHorz()))
      .Set("IsFlipVert", TJson::Bool(s.GetIsFlipVert()))
      .Set("Visible", TJson::Bool(s.GetVisible()))
      .Set("MultiInfo", Lines(s.GetMultiInfo()))
      .Set("MultiInfoAlignment", TJson::Int(s.GetMultiInfoAlignment()))
      .Set("LogHeight", TJson::Int(s.GetLogHeight()))
      .Set("LogUse", TJson::Bool(s.GetLogUse()))
      .Set("LogWidth", TJson::Int(s.GetLogWidth()))
      .Set("Locked", TJson::Bool(s.GetLocked()))
      .Set("PenStyleEndCapType", TJson::Int(s.GetPenStyleEndCapType()))
      .Set("PenStyleJoinType", TJson::Int(s.GetPenStyleJoinType()))
      .Set("HotShow", TJson::Bool(s.GetHotShow()))
      .Set("ResizeEnable", TJson::Bool(s.GetResizeEnable()))
      .Set("RotateEnable", TJson::Bool(s.GetRotateEnable()));
  return shape;
}

// The classes whose record is the line record; the poly-lines and polygons
// derive from TMyLine but store the base record only.
bool StoresLineRecord(const std::string& className) {
  static const std::set<std::string> classes = {"TMyLine", "TMyFreeLine", "TMyRuleLine", "TMyLinkLine",
                                                "TMyLineLinkLine"};
  return classes.contains(className);
}

// The tail fields of each class, after the base record.
void AddClassFields(const TMyShape& s, TJson& shape) {
  if (const auto* line = dynamic_cast<const TMyLine*>(&s); line && StoresLineRecord(s.ClassName()))
    shape.Set("ArrowAngle", TJson::Int(line->GetArrowAngle()))
        .Set("ArrowLength", TJson::Int(line->GetArrowLength()))
        .Set("ArrowOffset", TJson::Int(line->GetArrowOffset()))
        .Set("ArrowStyle", TJson::Int(line->GetArrowStyle()));
  if (const auto* rule = dynamic_cast<const TMyRuleLine*>(&s))
    shape.Set("ShowUserInfo", TJson::Bool(rule->GetShowUserInfo()))
        .Set("TickStyle", TJson::Int(rule->GetTickStyle()))
        .Set("UserInfo", TJson::Bytes(rule->GetUserInfo()));
  if (const auto* link = dynamic_cast<const TMyLinkLine*>(&s))
    shape.Set("StartSpNo", TJson::Int(link->GetStartSpNo()))
        .Set("StartSpPtId", TJson::Int(link->GetStartSpPtId()))
        .Set("EndSpNo", TJson::Int(link->GetEndSpNo()))
        .Set("EndSpPtId", TJson::Int(link->GetEndSpPtId()))
        .Set("LinkLineDrawStyle", TJson::Int(link->GetLinkLineDrawStyle()));
  if (const auto* arc = dynamic_cast<const TMyElliArc*>(&s))
    shape.Set("ArcMode", TJson::Int(arc->GetArcMode())).Set("ArcStyle", TJson::Int(arc->GetArcStyle()));
  if (const auto* text = dynamic_cast<const TMyText*>(&s))
    shape.Set("IsBorder", TJson::Bool(text->GetIsBorder()))
        .Set("IsSolid", TJson::Bool(text->GetIsSolid()))
        .Set("Lines", Lines(text->GetLines()))
        .Set("VAlignment", TJson::Int(text->GetVAlignment()))
        .Set("HAlignment", TJson::Int(text->GetHAlignment()))
        .Set("WordWrap", TJson::Bool(text->GetWordWrap()));
  if (const auto* image = dynamic_cast<const TMyImage*>(&s))
    shape.Set("Bitmap", Bitmap(&image->Bitmap()))
        .Set("Brightness", TJson::Int(image->GetBrightness()))
        .Set("Contrast", TJson::Int(image->GetContrast()))
        .Set("Transparent", TJson::Bool(image->GetTransparent()))
        .Set("Border", TJson::Bool(image->GetBorder()))
        .Set("GrayScale", TJson::Bool(image->GetGrayScale()))
        .Set("TransparentColor", TJson::Int(image->GetTransparentColor()))
        .Set("TransparentMode", TJson::Int(image->GetTransparentMode()));
  if (const auto* linkPoint = dynamic_cast<const TMyLinkPoint*>(&s))
    shape.Set("Size", TJson::Int(linkPoint->GetSize()));
}

TJson Shape(const TMyShape& s) {
  TJson shape = BaseFields(s);
  AddClassFields(s, shape);
  return shape;
}

}  // namespace

TJson DumpDrawing(TMyCAD& cad) {
  TJson layers = TJson::Array();
  for (const LayerRec& layer : cad.Layers())
    layers.Add(TJson::Object()
                   .Set("LayerName", TJson::Bytes(layer.LayerName))
                   .Set("LayerId", TJson::Int(layer.LayerId))
                   .Set("Visible", TJson::Bool(layer.Visible)));
  TJson shapes = TJson::Array();
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) shapes.Add(Shape(*cad.GetShapeByNo(i)));
  TJson drawing = TJson::Object();
  drawing.Set("Version", TJson::Bytes(cad.GetDiskFileVersion()))
      .Set("ColorOfBackGround", TJson::Int(cad.GetColorOfBackGround()))
      .Set("Width", TJson::Int(cad.width()))
      .Set("Height", TJson::Int(cad.height()))
      .Set("TheUNIT", TJson::Int(cad.GetTheUNIT()))
      .Set("BkBitmap", Bitmap(&cad.GetBkBitmap()))
      .Set("BkBitmapMode", TJson::Int(cad.GetBkBitmapMode()))
      .Set("Ratio", TJson::Double(cad.GetRatio()))
      .Set("Tag", TJson::Int(cad.GetTag()))
      .Set("UserData", UserData(cad.UserData()))
      .Set("Layers", std::move(layers))
      .Set("CurrentLayerId", TJson::Int(cad.GetCurrentLayerId()))
      .Set("Shapes", std::move(shapes));
  return drawing;
}

TJson DumpLibrary(const std::string& tag, const std::vector<std::unique_ptr<TCmbShape>>& entries) {
  TJson list = TJson::Array();
  for (const auto& entry : entries) {
    TJson shapes = TJson::Array();
    for (const auto& s : entry->Shapes) shapes.Add(Shape(*s));
    list.Add(TJson::Object()
                 .Set("Name", TJson::Bytes(entry->Name))
                 .Set("Width", TJson::Int(entry->Width))
                 .Set("Height", TJson::Int(entry->Height))
                 .Set("UserData", UserData(entry->UserData))
                 .Set("Shapes", std::move(shapes)));
  }
  return TJson::Object().Set("Tag", TJson::Bytes(tag)).Set("Entries", std::move(list));
}

}  // namespace lumatrex::cli
