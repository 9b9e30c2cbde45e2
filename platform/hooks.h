// Replaceable answers to the questions the library puts to the user or to the
// host: message boxes, the multi-line text dialog, ending the application and
// the printer queries of the shape drawing mode. The defaults are console
// behaviour; the widget layer installs real dialogs when a QApplication runs,
// and a host (or a test) may install its own.
#pragma once

#include <cstdint>
#include <functional>
#include <string>

namespace lumatrex {

class TCanvas;

struct TPlatformHooks {
  // Shows a modal message box with a fixed text.
  std::function<void(const std::string& text)> ShowMessage;
  // Ends the application after a fatal message.
  std::function<void()> Terminate;
  // Modal multi-line text dialog: Text holds the lines joined with '\n' on
  // entry and on OK; returns false when cancelled.
  std::function<bool(const std::string& caption, std::string& text)> EditText;
  // Whether Canvas draws on the printer, and the printer's colour count
  // (2 for a monochrome device).
  std::function<bool(const TCanvas& canvas)> IsPrinterCanvas;
  std::function<std::int32_t()> PrinterNumColors;
};

// The hooks in force; assign members to replace them. Unset members fall back
// to the defaults.
TPlatformHooks& PlatformHooks();

// Convenience calls through the hooks.
void ShowMessage(const std::string& text);
void TerminateApplication();
bool EditTextDialog(const std::string& caption, std::string& text);
bool IsPrinterCanvas(const TCanvas& canvas);
std::int32_t PrinterNumColors();

}  // namespace lumatrex
