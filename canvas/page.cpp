#include <array>
#include <cmath>

#include "canvas/tmycad.h"
#include "platform/screen.h"

namespace lumatrex {

namespace {

struct TPaperMm {
  double shortSide;
  double longSide;
};

// ISO 216 sizes in millimetres, in TPageStyle order (A0..A5, B3..B5).
constexpr std::array<TPaperMm, 9> kPaper = {{{841, 1189},
                                             {594, 841},
                                             {420, 594},
                                             {297, 420},
                                             {210, 297},
                                             {148, 210},
                                             {353, 500},
                                             {250, 353},
                                             {176, 250}}};

std::int32_t MmToPixels(double mm) { return Round(mm / 25.4L * ScreenPixelsPerInch()); }

}  // namespace

void TMyCAD::ApplyPageSize() {
  if (pageStyle_ == CustomerPage) return;
  const TPaperMm paper = kPaper[pageStyle_];
  const std::int32_t shortSide = MmToPixels(paper.shortSide), longSide = MmToPixels(paper.longSide);
  const bool portrait = pageOrientation_ == 0;
  pageWidth_ = portrait ? shortSide : longSide;
  pageHeight_ = portrait ? longSide : shortSide;
}

void TMyCAD::SetPageStyle(TPageStyle value) {
  pageStyle_ = value;
  ApplyPageSize();
  Invalidate();
}

void TMyCAD::SetPageWidth(std::int32_t value) { StoreAndRepaint(pageWidth_, value); }
void TMyCAD::SetPageHeight(std::int32_t value) { StoreAndRepaint(pageHeight_, value); }

void TMyCAD::SetPageOrientation(std::int32_t value) {
  pageOrientation_ = value;
  ApplyPageSize();
  Invalidate();
}

TPageStyle TMyCAD::GetPageStyleByWH(std::int32_t width, std::int32_t height) const {
  for (std::size_t i = 0; i < kPaper.size(); ++i) {
    const std::int32_t a = MmToPixels(kPaper[i].shortSide), b = MmToPixels(kPaper[i].longSide);
    if ((width == a && height == b) || (width == b && height == a)) return static_cast<TPageStyle>(i);
  }
  return CustomerPage;
}

void TMyCAD::SetPageHead(const std::string& value) { StoreAndRepaint(pageHead_, value); }
void TMyCAD::SetPageFoot(const std::string& value) { StoreAndRepaint(pageFoot_, value); }
void TMyCAD::SetPageHeadAlignment(std::int32_t value) { StoreAndRepaint(pageHeadAlignment_, value); }
void TMyCAD::SetPageFootAlignment(std::int32_t value) { StoreAndRepaint(pageFootAlignment_, value); }
void TMyCAD::SetPageHeadToTop(std::int32_t value) { StoreAndRepaint(pageHeadToTop_, value); }
void TMyCAD::SetPageFootToBottom(std::int32_t value) { StoreAndRepaint(pageFootToBottom_, value); }
void TMyCAD::SetPrintABorder(bool value) { StoreAndRepaint(printABorder_, value); }
void TMyCAD::SetPrintABordertoLeft(std::uint8_t value) { StoreAndRepaint(borderLeft_, value); }
void TMyCAD::SetPrintABordertoTop(std::uint8_t value) { StoreAndRepaint(borderTop_, value); }
void TMyCAD::SetPrintABordertoRight(std::uint8_t value) { StoreAndRepaint(borderRight_, value); }
void TMyCAD::SetPrintABordertoBottom(std::uint8_t value) { StoreAndRepaint(borderBottom_, value); }
void TMyCAD::SetPrintBackground(bool value) { StoreAndRepaint(printBackground_, value); }
void TMyCAD::SetAntialiased(bool value) { StoreAndRepaint(antialiased_, value); }

TMyRect TMyCAD::GetShapesLTRB(const std::vector<TMyShape*>& shapes) const {
  TArrMyPoint corners;
  for (const TMyShape* shape : shapes)
    if (shape && shape->GetPointsCount() > 0) {
      const TMyRect r = GetPointsLTRB(shape->Points);
      corners.push_back({r.Left, r.Top});
      corners.push_back({r.Right, r.Bottom});
    }
  return GetPointsLTRB(corners);
}

TMyRect TMyCAD::GetShapesLTRBinZoom(const std::vector<TMyShape*>& shapes) const {
  const TMyRect r = GetShapesLTRB(shapes);
  const long double z = zoom_;
  return {static_cast<float>(r.Left * z), static_cast<float>(r.Top * z), static_cast<float>(r.Right * z),
          static_cast<float>(r.Bottom * z)};
}

}  // namespace lumatrex
