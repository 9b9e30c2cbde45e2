#include "shapes/text.h"

#include <cmath>

#include "persistence/stream_io.h"
#include "platform/canvas.h"
#include "shapes/drawing_modes.h"
#include "shapes/outline.h"
#include "shapes/record_version.h"

namespace lumatrex {

TMyText::TMyText(TMyShapeOwner* owner) : TMyRectangle(owner) {}

void TMyText::Assign(const TMyShape& source) {
  TMyRectangle::Assign(source);
  if (const auto* text = dynamic_cast<const TMyText*>(&source)) {
    isBorder_ = text->isBorder_;
    isSolid_ = text->isSolid_;
    lines_ = text->lines_;
    vAlignment_ = text->vAlignment_;
    hAlignment_ = text->hAlignment_;
    wordWrap_ = text->wordWrap_;
    characterSpace_ = text->characterSpace_;
  }
}

void TMyText::SaveToStream(TStream& stream) const {
  TMyRectangle::SaveToStream(stream);
  WriteBool(stream, isBorder_);
  WriteBool(stream, isSolid_);
  WriteValue<std::int32_t>(stream, static_cast<std::int32_t>(lines_.size()));
  for (const std::string& line : lines_) WriteLString(stream, line);
  WriteValue(stream, static_cast<std::uint8_t>(vAlignment_));
  WriteValue(stream, static_cast<std::uint8_t>(hAlignment_));
  WriteBool(stream, wordWrap_);
}

void TMyText::LoadFromStream(TStream& stream) {
  TMyRectangle::LoadFromStream(stream);
  isBorder_ = ReadBool(stream, "text border");
  isSolid_ = ReadBool(stream, "text solid");
  if (!FileVersionAtLeast(RecordVersion(*this), "XP.a")) return;
  lines_.assign(static_cast<std::size_t>(ReadCount(stream, 4, "text lines")), std::string());
  for (std::string& line : lines_) line = ReadLString(stream, "text line");
  vAlignment_ = ReadOrdinal(stream, tlBottom, "text vertical alignment");
  hAlignment_ = ReadOrdinal(stream, taCenter, "text horizontal alignment");
  wordWrap_ = ReadBool(stream, "text word wrap");
}

// ---- layout ------------------------------------------------------------------------------------

namespace {

long double Distance(const TMyPoint& a, const TMyPoint& b) {
  return std::hypot(static_cast<long double>(b.X) - a.X, static_cast<long double>(b.Y) - a.Y);
}

// Words go on a line while they fit; a single word wider than the frame
// keeps a line of its own rather than being cut.
void WrapInto(TCanvas& canvas, const std::string& line, long double width, std::vector<std::string>& out) {
  std::string current;
  std::size_t from = 0;
  while (from <= line.size()) {
    std::size_t space = line.find(' ', from);
    if (space == std::string::npos) space = line.size();
    const std::string word = line.substr(from, space - from);
    const std::string joined = current.empty() ? word : current + " " + word;
    if (!current.empty() && canvas.TextWidth(joined) > width) {
      out.push_back(current);
      current = word;
    } else {
      current = joined;
    }
    from = space + 1;
  }
  out.push_back(current);
}

}  // namespace

long double TMyText::FrameWidth() const { return Points.size() < 4 ? 0 : Distance(Points[0], Points[1]); }
long double TMyText::FrameHeight() const { return Points.size() < 4 ? 0 : Distance(Points[0], Points[3]); }

TFont TMyText::LayoutFont() const {
  TFont font;
  font.Assign(Font());
  if (GetLogUse() && GetLogHeight() > 0) font.SetHeight(-GetLogHeight());
  return font;
}

std::vector<std::string> TMyText::LaidOutLines(TCanvas& canvas) {
  canvas.Font().Assign(LayoutFont());
  canvas.SetTextCharacterExtra(characterSpace_);
  if (!wordWrap_) return lines_;
  const long double stretch = GetLogUse() && GetLogHeight() > 0 ? static_cast<long double>(GetLogWidth()) / GetLogHeight() : 1;
  std::vector<std::string> laid;
  for (const std::string& line : lines_) WrapInto(canvas, line, FrameWidth() / stretch, laid);
  return laid;
}

TXForm TMyText::BeginFrameText(TCanvas& canvas) {
  const TXForm previous = canvas.WorldTransform();
  const long double zoom = Zoom(), width = FrameWidth(), height = FrameHeight();
  const long double stretch = GetLogUse() && GetLogHeight() > 0 ? static_cast<long double>(GetLogWidth()) / GetLogHeight() : 1;
  const TMyPoint& o = Points[0];
  const long double ux = (static_cast<long double>(Points[1].X) - o.X) / width;
  const long double uy = (static_cast<long double>(Points[1].Y) - o.Y) / width;
  const long double vx = (static_cast<long double>(Points[3].X) - o.X) / height;
  const long double vy = (static_cast<long double>(Points[3].Y) - o.Y) / height;
  TXForm frame;
  frame.eM11 = static_cast<float>(zoom * stretch * ux);
  frame.eM12 = static_cast<float>(zoom * stretch * uy);
  frame.eM21 = static_cast<float>(zoom * vx);
  frame.eM22 = static_cast<float>(zoom * vy);
  frame.eDx = static_cast<float>(zoom * o.X);
  frame.eDy = static_cast<float>(zoom * o.Y);
  canvas.SetWorldTransform(frame);
  canvas.SetBkMode(bkTransparent);
  return previous;
}

void TMyText::TextOutLines(TCanvas& canvas) {
  const std::vector<std::string> laid = LaidOutLines(canvas);
  const long double stretch = GetLogUse() && GetLogHeight() > 0 ? static_cast<long double>(GetLogWidth()) / GetLogHeight() : 1;
  const long double width = FrameWidth() / stretch, height = FrameHeight();
  const std::int32_t lineHeight = canvas.TextHeight("Ag");
  const long double block = static_cast<long double>(lineHeight) * static_cast<long double>(laid.size());
  long double y = vAlignment_ == tlTop ? 0 : vAlignment_ == tlCenter ? (height - block) / 2 : height - block;
  for (const std::string& line : laid) {
    const long double free = width - canvas.TextWidth(line);
    const long double x = hAlignment_ == taLeftJustify ? 0 : hAlignment_ == taRightJustify ? free : free / 2;
    canvas.TextOut(Round(x), Round(y), line);
    y += lineHeight;
  }
}

// ---- drawing -------------------------------------------------------------------------------------

void TMyText::Draw(TCanvas& canvas) {
  if (Points.size() < 4 || FrameWidth() <= 0 || FrameHeight() <= 0) return;
  const std::vector<TPoint> frame = RoundPoints({GetPointInZoom(0), GetPointInZoom(1), GetPointInZoom(2), GetPointInZoom(3)});
  SetDrawShapeMode(*this, canvas);
  if (isSolid_) {
    const TPenStyle pen = canvas.Pen().Style();
    canvas.Pen().SetStyle(psClear);
    canvas.Polygon(frame);
    canvas.Pen().SetStyle(pen);
  }
  const TRect clip = canvas.ClipRect();
  canvas.SetClipPolygon(frame);
  const TXForm previous = BeginFrameText(canvas);
  TextOutLines(canvas);
  canvas.SetWorldTransform(previous);
  canvas.SetTextCharacterExtra(0);
  canvas.ClearClipRect();
  canvas.SetClipRect(clip);
  if (isBorder_) {
    SetDrawShapeMode(*this, canvas);
    SetPS(canvas, canvas.Pen().Style(), canvas.Pen().Color(), canvas.Pen().Width());
    StrokeClosedChain(canvas, frame);
  }
}

void TMyText::GetPathPoints(TCanvas& canvas, std::vector<TPoint>& points, std::vector<std::uint8_t>& types) {
  points.clear();
  types.clear();
  if (Points.size() < 4 || FrameWidth() <= 0 || FrameHeight() <= 0) return;
  const TXForm previous = BeginFrameText(canvas);
  canvas.BeginPath();
  TextOutLines(canvas);
  canvas.EndPath();
  canvas.FlattenPath();
  canvas.GetPath(points, types);
  canvas.AbortPath();
  canvas.SetWorldTransform(previous);
  canvas.SetTextCharacterExtra(0);
}

}  // namespace lumatrex
