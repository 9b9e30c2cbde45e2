// Shared by the fuzz targets: a failed invariant aborts (libFuzzer keeps the
// input), and targets that need Qt get a headless application once.
#pragma once

#include <QApplication>

#include "check.h"
#include "platform/hooks.h"
#include "platform/screen.h"

namespace lumatrex::fuzz {

// The offscreen platform at 96 pixels per inch, with message and terminate
// hooks that do nothing: a drawing without layers asks to end the program.
inline void EnsureHeadlessApp() {
  static QApplication* app = [] {
    qputenv("QT_QPA_PLATFORM", "offscreen");
    static int argc = 1;
    static char name[] = "fuzz";
    static char* argv[] = {name, nullptr};
    auto* created = new QApplication(argc, argv);
    SetScreenPixelsPerInch(96);
    TPlatformHooks& hooks = PlatformHooks();
    hooks.ShowMessage = [](const std::string&) {};
    hooks.Terminate = [] {};
    hooks.EditText = [](const std::string&, std::string&) { return false; };
    return created;
  }();
  (void)app;
}

}  // namespace lumatrex::fuzz
