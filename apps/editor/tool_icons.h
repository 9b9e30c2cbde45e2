// Tool-bar pictures for the drawing tools, drawn here so that they look the
// same on every desktop, whatever icon theme is installed.
#pragma once

#include <QIcon>

namespace lumatrex::editor {

// A picture of Tool (a TDrawTool or kHandTool); an empty icon for a tool
// without one.
QIcon ToolIcon(int tool);

}  // namespace lumatrex::editor
