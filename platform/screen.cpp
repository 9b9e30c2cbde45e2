#include "platform/screen.h"

#include <QGuiApplication>
#include <QScreen>
#include <cmath>

namespace lumatrex {

namespace {
std::int32_t g_override = 0;
}

std::int32_t ScreenPixelsPerInch() {
  if (g_override > 0) return g_override;
  if (auto* app = qobject_cast<QGuiApplication*>(QCoreApplication::instance())) {
    if (const QScreen* screen = app->primaryScreen())
      return static_cast<std::int32_t>(std::lround(screen->logicalDotsPerInch()));
  }
  return 96;
}

void SetScreenPixelsPerInch(std::int32_t value) { g_override = value > 0 ? value : 0; }

}  // namespace lumatrex
