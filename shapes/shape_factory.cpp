#include "shapes/shape_factory.h"

#include <string_view>

#include "shapes/arc.h"
#include "shapes/bezier.h"
#include "shapes/bspline.h"
#include "shapes/closed_shapes.h"
#include "shapes/connectors.h"
#include "shapes/groups.h"
#include "shapes/image.h"
#include "shapes/lines.h"
#include "shapes/text.h"

namespace lumatrex {

namespace {

template <typename T>
std::unique_ptr<TMyShape> Make(TMyShapeOwner* owner) {
  return std::make_unique<T>(owner);
}

using TShapeMaker = std::unique_ptr<TMyShape> (*)(TMyShapeOwner*);

struct TNamedKind {
  std::string_view name;
  TShapeMaker make;
};

constexpr TNamedKind kKinds[] = {
    {"TMyRectangle", Make<TMyRectangle>},   {"TMyEllipse", Make<TMyEllipse>},
    {"TMyPolygon", Make<TMyPolygon>},       {"TMyPolyLine", Make<TMyPolyLine>},
    {"TMyPolyBezier", Make<TMyPolyBezier>}, {"TMyBLine", Make<TMyBLine>},
    {"TMyFreeLine", Make<TMyFreeLine>},     {"TMyGroup", Make<TMyGroup>},
    {"TMyCombine", Make<TMyCombine>},       {"TMyLine", Make<TMyLine>},
    {"TMyRuleLine", Make<TMyRuleLine>},     {"TMyLinkLine", Make<TMyLinkLine>},
    {"TMyLineLinkLine", Make<TMyLineLinkLine>}, {"TMyElliArc", Make<TMyElliArc>},
    {"TMyText", Make<TMyText>},             {"TMyImage", Make<TMyImage>},
    {"TMyLinkPoint", Make<TMyLinkPoint>},
};

// Without leading and trailing spaces and control characters.
std::string_view Trimmed(std::string_view text) {
  auto blank = [](char c) { return static_cast<unsigned char>(c) <= ' '; };
  while (!text.empty() && blank(text.front())) text.remove_prefix(1);
  while (!text.empty() && blank(text.back())) text.remove_suffix(1);
  return text;
}

}  // namespace

std::unique_ptr<TMyShape> CreateShapeByClassName(const std::string& className, TMyShapeOwner* owner) {
  const std::string_view name = Trimmed(className);
  for (const TNamedKind& kind : kKinds)
    if (kind.name == name) return kind.make(owner);
  return nullptr;
}

std::unique_ptr<TMyShape> CreateShapeByDrawTool(TDrawTool tool, TMyShapeOwner* owner) {
  switch (tool) {
    case SpLine: return Make<TMyLine>(owner);
    case SpRuleLine: return Make<TMyRuleLine>(owner);
    case SpPolyLine: return Make<TMyPolyLine>(owner);
    case SpRectangle: return Make<TMyRectangle>(owner);
    case SpLinkPoint: return Make<TMyLinkPoint>(owner);
    case SpLineLinkLine: return Make<TMyLineLinkLine>(owner);
    case SpLinkLine: return Make<TMyLinkLine>(owner);
    case SpEllipse: return Make<TMyEllipse>(owner);
    case SpText: return Make<TMyText>(owner);
    case SpImage: return Make<TMyImage>(owner);
    case SpPolygon: return Make<TMyPolygon>(owner);
    case SpPolyBezier: return Make<TMyPolyBezier>(owner);
    case SpElliArc: return Make<TMyElliArc>(owner);
    case SpFreeLine: return Make<TMyFreeLine>(owner);
    case SpBLine: return Make<TMyBLine>(owner);
    default: return nullptr;
  }
}

}  // namespace lumatrex
