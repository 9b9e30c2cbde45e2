// The system clipboard, as the canvas's cut, copy and paste use it. Needs a
// running QGuiApplication (a headless one does: its clipboard lives in the
// process).
#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "platform/bitmap.h"

namespace lumatrex {

// Everything put on the clipboard at once, each in the form other programs
// look for.
struct TClipboardContent {
  // Bytes under MIME types ("application/x-lumatrex-shapes", ...), in the
  // order offered.
  std::vector<std::pair<std::string, std::vector<std::uint8_t>>> Data;
  // A picture; an empty bitmap offers none.
  TBitmap Picture;
  // UTF-8 text; empty offers none.
  std::string Text;
};

// Replaces what the clipboard holds by Content.
void SetClipboardContent(const TClipboardContent& content);
// The bytes the clipboard holds under MimeType; nothing when it holds none.
std::optional<std::vector<std::uint8_t>> ClipboardData(const std::string& mimeType);
// The clipboard's picture into Picture; false, Picture untouched, when it
// holds none.
bool ClipboardPicture(TBitmap& picture);
// The clipboard's text (UTF-8); empty when it holds none.
std::string ClipboardText();

}  // namespace lumatrex
