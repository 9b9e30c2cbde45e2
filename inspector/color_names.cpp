#include "inspector/color_names.h"

namespace lumatrex {

namespace {
constexpr TNamedColor kColors[] = {
    {"clBlack", clBlack},     {"clMaroon", clMaroon},   {"clGreen", clGreen},
    {"clOlive", clOlive},     {"clNavy", clNavy},       {"clPurple", clPurple},
    {"clTeal", clTeal},       {"clGray", clGray},       {"clSilver", clSilver},
    {"clRed", clRed},         {"clLime", clLime},       {"clYellow", clYellow},
    {"clBlue", clBlue},       {"clFuchsia", clFuchsia}, {"clAqua", clAqua},
    {"clWhite", clWhite},     {"clWindow", clWindow},   {"clWindowText", clWindowText},
    {"clBtnFace", clBtnFace}, {"clHighlight", clHighlight},
};
}  // namespace

std::span<const TNamedColor> StandardColors() { return kColors; }

QString ColorToText(TColor color) {
  for (const TNamedColor& c : kColors)
    if (c.color == color) return QString::fromLatin1(c.name);
  return QStringLiteral("$%1").arg(static_cast<quint32>(color), 8, 16, QLatin1Char('0')).toUpper();
}

bool TextToColor(const QString& text, TColor& color) {
  const QString t = text.trimmed();
  for (const TNamedColor& c : kColors) {
    if (t.compare(QLatin1String(c.name), Qt::CaseInsensitive) == 0) {
      color = c.color;
      return true;
    }
  }
  if (!t.startsWith(QLatin1Char('$')) || t.size() < 2 || t.size() > 9) return false;
  bool ok = false;
  const quint32 value = t.mid(1).toUInt(&ok, 16);
  if (ok) color = static_cast<TColor>(value);
  return ok;
}

}  // namespace lumatrex
