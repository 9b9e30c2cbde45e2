#include "platform/hooks.h"

#include <cstdio>
#include <cstdlib>

namespace lumatrex {

TPlatformHooks& PlatformHooks() {
  static TPlatformHooks hooks;
  return hooks;
}

void ShowMessage(const std::string& text) {
  if (PlatformHooks().ShowMessage) return PlatformHooks().ShowMessage(text);
  std::fprintf(stderr, "%s\n", text.c_str());
}

void TerminateApplication() {
  if (PlatformHooks().Terminate) return PlatformHooks().Terminate();
  std::exit(EXIT_FAILURE);
}

bool EditTextDialog(const std::string& caption, std::string& text) {
  if (PlatformHooks().EditText) return PlatformHooks().EditText(caption, text);
  return false;
}

bool IsPrinterCanvas(const TCanvas& canvas) {
  return PlatformHooks().IsPrinterCanvas && PlatformHooks().IsPrinterCanvas(canvas);
}

std::int32_t PrinterNumColors() {
  if (PlatformHooks().PrinterNumColors) return PlatformHooks().PrinterNumColors();
  return -1;  // a colour device
}

}  // namespace lumatrex
