#include "shapes/measures.h"

#include <cstdio>

#include "platform/screen.h"

namespace lumatrex {

namespace {

constexpr long double kMmPerInch = 25.4L;

struct TMeasure {
  long double value;
  const char* name;
};

// Power is 1 for lengths and 2 for areas: metric units scale by that power.
TMeasure InUnit(long double pixels, long double ratio, TUnits unit, int power) {
  const long double ppi = ScreenPixelsPerInch();
  const long double scale = power == 1 ? ratio / ppi : ratio * ratio / (ppi * ppi);
  const long double inches = scale * pixels;
  const long double mmPer = power == 1 ? kMmPerInch : kMmPerInch * kMmPerInch;
  const long double mms = inches * mmPer;
  const long double ten = power == 1 ? 10 : 100;
  const bool area = power == 2;
  switch (unit) {
    case pixel: return {(power == 1 ? ratio : ratio * ratio) * pixels, area ? "pixel(s)2" : "pixel(s)"};
    case mm: break;
    case cm: return {mms / ten, area ? "cm2" : "cm"};
    case dm: return {mms / (ten * ten), area ? "dm2" : "dm"};
    case m: return {mms / (ten * ten * ten), area ? "m2" : "m"};
    case inch: return {inches, area ? "inch2" : "in"};
  }
  return {mms, area ? "mm2" : "mm"};
}

std::string Format(const char* label, const TMeasure& measure) {
  char text[96];
  std::snprintf(text, sizeof text, "%s%9.2Lf%s", label, measure.value, measure.name);
  return text;
}

}  // namespace

std::string AreaText(long double s, long double ratio, TUnits unit) {
  return Format("Area=", InUnit(s, ratio, unit, 2));
}

std::string LengthText(long double l, long double ratio, TUnits unit) {
  return Format("Length=", InUnit(l, ratio, unit, 1));
}

}  // namespace lumatrex
