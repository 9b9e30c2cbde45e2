// Reading and writing the files the commands work on, with errors that name
// the file.
#pragma once

#include <memory>
#include <string>
#include <vector>

#include "canvas/tmycad.h"
#include "commands.h"
#include "library/lib_manager.h"

namespace lumatrex::cli {

// Runs Fn; stream and picture errors come back as ECliError prefixed with
// File.
template <typename Fn>
auto InFile(const std::string& file, Fn fn) {
  try {
    return fn();
  } catch (const EStreamError& e) {
    throw ECliError(file + ": " + e.what());
  } catch (const EInvalidGraphic& e) {
    throw ECliError(file + ": " + e.what());
  }
}

// Loads the drawing File onto Cad. Throws ECliError when it is not a drawing
// or damaged, EEndRequested when the library asked to end the application.
void LoadDrawing(TMyCAD& cad, const std::string& file);

// Whether the name ends in an image type the render command writes.
bool IsImageFileName(const std::string& file);

// A library opened to be read: "ZOLTLIBX" libraries as they are (entries
// read by their own tag), "ZOLTLIB2.1" ones converted in memory.
TLibManager OpenLibraryForReading(const std::string& file);
// A library opened to be changed: upgraded to the current tag in memory, or
// a new empty library when File does not exist.
TLibManager OpenLibraryForEditing(const std::string& file);
void SaveLibrary(TLibManager& lib, const std::string& file);

// A library's tag and its entries at their stored coordinates.
struct TLibraryContent {
  std::string Tag;
  std::vector<std::unique_ptr<TCmbShape>> Entries;
};
TLibraryContent ReadLibraryAsStored(const std::string& file);

}  // namespace lumatrex::cli
