// Every test program runs headless on a fixed screen: the offscreen platform,
// 96 pixels per inch and the library's bundled font, so that text extents and
// pixels are the same on every machine. Message boxes print instead of
// blocking, and an unexpected "end the application" fails the test.
#include <gtest/gtest.h>

#include <QApplication>
#include <cstdio>

#include "platform/hooks.h"
#include "platform/screen.h"

int main(int argc, char** argv) {
  qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication app(argc, argv);
  lumatrex::SetScreenPixelsPerInch(96);
  lumatrex::TPlatformHooks& hooks = lumatrex::PlatformHooks();
  hooks.ShowMessage = [](const std::string& text) { std::fprintf(stderr, "[message box] %s\n", text.c_str()); };
  hooks.Terminate = [] { ADD_FAILURE() << "the library asked to end the application"; };
  hooks.EditText = [](const std::string&, std::string&) { return false; };
  ::testing::InitGoogleTest(&argc, argv);
  return RUN_ALL_TESTS();
}
