#include "platform/fonts.h"

#include <QFontDatabase>
#include <QFontMetricsF>
#include <QGuiApplication>
#include <algorithm>
#include <cmath>

// Q_INIT_RESOURCE names a global function, so it is called outside our namespace.
static void InitFontResource() { Q_INIT_RESOURCE(fonts); }

namespace lumatrex {

namespace {

void RegisterBundledFonts() {
  static const bool registered = [] {
    InitFontResource();
    QFontDatabase::addApplicationFont(QStringLiteral(":/lumatrex/fonts/DejaVuSans.ttf"));
    QFontDatabase::addApplicationFont(QStringLiteral(":/lumatrex/fonts/DejaVuSans-Bold.ttf"));
    return true;
  }();
  (void)registered;
}

// Far beyond any real text, and within what Qt's font metrics hold (their
// ascent wraps above about 17,600 pixels): a corrupt height can neither
// overflow when negated nor hand the font engine a size it cannot measure.
constexpr std::int64_t kMaxEmPixels = 16384;

int ClampEm(std::int64_t pixels) { return static_cast<int>(std::clamp<std::int64_t>(pixels, 1, kMaxEmPixels)); }

// The em size in pixels for a TFont height.
int EmPixels(const TFont& font, QFont face) {
  const std::int64_t height = font.Height();
  if (height < 0) return ClampEm(-height);
  if (height == 0) return ClampEm(std::llround(8.0 * font.PixelsPerInch() / 72.0));
  // A cell height: scale by the face's em-to-cell ratio, measured large.
  face.setPixelSize(1000);
  const QFontMetricsF metrics(face);
  return ClampEm(std::llround(static_cast<double>(height) * 1000.0 / (metrics.ascent() + metrics.descent())));
}

}  // namespace

bool FontsAvailable() {
  if (!qobject_cast<QGuiApplication*>(QCoreApplication::instance())) return false;
  RegisterBundledFonts();
  return true;
}

QFont ToQFont(const TFont& font, std::int32_t characterExtra) {
  QFont face(QString::fromStdString(font.Name()));
  face.setBold((font.Style() & fsBold) != 0);
  face.setItalic((font.Style() & fsItalic) != 0);
  face.setUnderline((font.Style() & fsUnderline) != 0);
  face.setStrikeOut((font.Style() & fsStrikeOut) != 0);
  face.setFixedPitch(font.Pitch() == fpFixed);
  face.setHintingPreference(QFont::PreferNoHinting);
  face.setStyleStrategy(font.Quality() == fqNonAntialiased ? QFont::NoAntialias : QFont::PreferAntialias);
  face.setPixelSize(EmPixels(font, face));
  if (characterExtra != 0) face.setLetterSpacing(QFont::AbsoluteSpacing, characterExtra);
  return face;
}

}  // namespace lumatrex
