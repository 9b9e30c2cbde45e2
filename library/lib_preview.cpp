// Preview pictures of library entries.
#include <algorithm>
#include <cmath>

#include "library/lib_manager.h"
#include "platform/canvas.h"

namespace lumatrex {

namespace {

// Blank pixels around the drawing, so that pens at the edge show whole.
constexpr std::int32_t kPreviewMargin = 4;

// The entry's stored size scaled to fit the bitmap inside the margin, with
// its aspect ratio kept, and centred.
TCmbShapePlacement FitInto(std::int32_t storedWidth, std::int32_t storedHeight, std::int32_t width,
                           std::int32_t height) {
  const long double w = std::max<long double>(std::abs(static_cast<long double>(storedWidth)), 1);
  const long double h = std::max<long double>(std::abs(static_cast<long double>(storedHeight)), 1);
  const long double roomW = std::max(width - 2 * kPreviewMargin, 1);
  const long double roomH = std::max(height - 2 * kPreviewMargin, 1);
  const long double scale = std::min(roomW / w, roomH / h);
  return {static_cast<float>((width - w * scale) / 2), static_cast<float>((height - h * scale) / 2),
          static_cast<float>(w * scale), static_cast<float>(h * scale)};
}

}  // namespace

TBitmap TLibManager::GetCmbShapeImage(const std::string& name, std::int32_t width, std::int32_t height) const {
  if (width <= 0 || height <= 0) return {};
  const std::vector<TEntrySpan> spans = Walk();
  const TEntrySpan* span = Find(spans, name);
  if (!span) return {};
  std::int32_t storedWidth = 0, storedHeight = 0;
  stream_.SetPosition(span->Body);
  ReadWidthHeight(stream_, storedWidth, storedHeight);
  const std::unique_ptr<TCmbShape> entry =
      ReadEntryAt(*span, GetLibTag(), FitInto(storedWidth, storedHeight, width, height));

  TBitmap picture(width, height, pf24bit);
  TCanvas& canvas = picture.Canvas();
  canvas.Brush().SetColor(clWhite);
  canvas.Brush().SetStyle(bsSolid);
  canvas.FillRect(Rect(0, 0, width, height));
  for (TMyShape* shape : entry->ShapesInPaintOrder())
    if (!IsLinkPointShape(*shape)) shape->Draw(canvas);
  return picture;
}

}  // namespace lumatrex
