#include "files.h"

#include <QFileInfo>
#include <filesystem>

#include "platform/hooks.h"

namespace lumatrex::cli {

namespace {

// Set by the terminate hook: the library wants the application to end.
bool endRequested = false;

std::string CheckedLibraryTag(const std::string& file) {
  const std::string tag = InFile(file, [&] { return ReadLibFileTag(file); });
  if (tag != kOldLibTag && LibTagToFileVersion(tag).empty()) throw ECliError(file + ": not a shape library");
  return tag;
}

}  // namespace

void InstallConsoleHooks() {
  TPlatformHooks& hooks = PlatformHooks();
  hooks.ShowMessage = [](const std::string& text) { std::fprintf(stderr, "lumatrex: %s\n", text.c_str()); };
  hooks.Terminate = [] { endRequested = true; };
  hooks.EditText = [](const std::string&, std::string&) { return false; };
}

void LoadDrawing(TMyCAD& cad, const std::string& file) {
  // A file too short to hold the creator (an empty or a small text file) is
  // simply not a drawing; where its bytes ran out would tell the user nothing.
  const bool drawing = InFile(file, [&] {
    try {
      return TMyCAD::IsZOLTFile(file);
    } catch (const EReadError&) {
      return false;
    }
  });
  if (!drawing) throw ECliError(file + ": not a Lumatrex drawing file");
  const bool loaded = InFile(file, [&] { return cad.LoadFromFile(file); });
  if (endRequested) throw EEndRequested();
  if (!loaded) throw ECliError(file + ": not a Lumatrex drawing file");
}

bool IsImageFileName(const std::string& file) {
  const QString suffix = QFileInfo(QString::fromStdString(file)).suffix().toLower();
  return suffix == "png" || suffix == "jpg" || suffix == "jpeg" || suffix == "bmp" || suffix == "svg" ||
         suffix == "pdf";
}

TLibManager OpenLibraryForReading(const std::string& file) {
  const std::string tag = CheckedLibraryTag(file);
  TLibManager lib;
  InFile(file, [&] { tag == kOldLibTag ? lib.LoadFromOldFile(file) : lib.LoadFromFile(file); });
  return lib;
}

TLibManager OpenLibraryForEditing(const std::string& file) {
  TLibManager lib;
  if (std::filesystem::exists(file)) InFile(file, [&] { lib.LoadForEditing(file); });
  return lib;
}

void SaveLibrary(TLibManager& lib, const std::string& file) {
  InFile(file, [&] { lib.SaveToFile(file); });
}

TLibraryContent ReadLibraryAsStored(const std::string& file) {
  TLibraryContent content;
  content.Tag = CheckedLibraryTag(file);
  InFile(file, [&] {
    if (content.Tag == kOldLibTag) {
      TFileStream stream(file, fmOpenRead);
      content.Entries = ReadOldLibrary(stream, nullptr);
      return;
    }
    TLibManager lib;
    lib.LoadFromFile(file);
    for (std::int32_t i = 0; i < lib.GetcmbShapesCount(); ++i)
      content.Entries.push_back(lib.GetCmbShape(lib.GetCmbShapesNameByID(i), kAsStored));
  });
  return content;
}

}  // namespace lumatrex::cli
