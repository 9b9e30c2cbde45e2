// lumatrex lib FILE SUBCOMMAND ...: listing and editing shape libraries.
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>

#include "files.h"
#include "geometry/geometry.h"

namespace lumatrex::cli {

namespace {

using TArgs = std::vector<std::string>;

void ExpectArguments(const TArgs& args, std::size_t count, const char* subcommand) {
  if (args.size() != count)
    throw EUsageError(std::string("lib ") + subcommand + ": " + Expected(count));
}

std::vector<TMyShape*> AllShapes(const TMyCAD& cad) {
  std::vector<TMyShape*> shapes;
  for (std::int32_t i = 0; i < cad.GetShapesCount(); ++i) shapes.push_back(cad.GetShapeByNo(i));
  return shapes;
}

int List(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 0, "list");
  const TLibManager lib = OpenLibraryForReading(file);
  InFile(file, [&] {
    for (std::int32_t i = 0; i < lib.GetcmbShapesCount(); ++i) std::printf("%s\n", lib.GetCmbShapesNameByID(i).c_str());
  });
  return EXIT_SUCCESS;
}

// The whole drawing becomes the entry, stored at the size of its shapes, with
// the drawing's user data.
int Add(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 2, "add");
  const std::string& name = args[0];
  if (name.empty() || name.size() > 255) throw EUsageError("entry names are 1 to 255 bytes long");
  TLibManager lib = OpenLibraryForEditing(file);
  TMyCAD cad;
  LoadDrawing(cad, args[1]);
  const std::vector<TMyShape*> shapes = AllShapes(cad);
  const TMyRect box = CmbShapeBounds(shapes);
  const bool added = InFile(file, [&] {
    return lib.AppendNewShape(name, shapes, cad.UserData(), Round(static_cast<long double>(box.Right) - box.Left),
                              Round(static_cast<long double>(box.Bottom) - box.Top));
  });
  if (!added) throw ECliError(file + ": an entry named \"" + name + "\" exists");
  SaveLibrary(lib, file);
  return EXIT_SUCCESS;
}

// The entry becomes a drawing of its stored size, its shapes placed at the
// origin and its user data the drawing's.
int Extract(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 2, "extract");
  const TLibManager lib = OpenLibraryForReading(file);
  const std::unique_ptr<TCmbShape> entry = InFile(file, [&] { return lib.GetCmbShape(args[0]); });
  if (!entry) throw ECliError(file + ": no entry named \"" + args[0] + "\"");
  TMyCAD cad;
  cad.resize(std::max(entry->Width, 1), std::max(entry->Height, 1));
  cad.UserData().SetUserDataRecord(entry->UserData.Records());
  InFile(file, [&] { cad.AddUserDefineShapefromLib(lib, args[0]); });
  InFile(args[1], [&] { return cad.SaveToFile(args[1]); });
  return EXIT_SUCCESS;
}

int Delete(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 1, "delete");
  TLibManager lib = OpenLibraryForEditing(file);
  if (!lib.DeleteShape(args[0])) throw ECliError(file + ": no entry named \"" + args[0] + "\"");
  SaveLibrary(lib, file);
  return EXIT_SUCCESS;
}

int Rename(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 2, "rename");
  if (args[1].empty() || args[1].size() > 255) throw EUsageError("entry names are 1 to 255 bytes long");
  TLibManager lib = OpenLibraryForEditing(file);
  std::int64_t position = 0, size = 0;
  if (!lib.GetExistShape(args[0], position, size)) throw ECliError(file + ": no entry named \"" + args[0] + "\"");
  if (!lib.RenameCmbShapeName(args[0], args[1])) throw ECliError(file + ": an entry named \"" + args[1] + "\" exists");
  SaveLibrary(lib, file);
  return EXIT_SUCCESS;
}

// Opening for editing upgrades; the file is rewritten only when its tag was old.
int Upgrade(const std::string& file, const TArgs& args) {
  ExpectArguments(args, 0, "upgrade");
  const std::string tag = InFile(file, [&] { return ReadLibFileTag(file); });
  TLibManager lib = OpenLibraryForEditing(file);
  if (tag == kCurrentLibTag) {
    std::printf("%s: already %s\n", file.c_str(), kCurrentLibTag);
    return EXIT_SUCCESS;
  }
  SaveLibrary(lib, file);
  std::printf("%s: %s -> %s\n", file.c_str(), tag.c_str(), kCurrentLibTag);
  return EXIT_SUCCESS;
}

}  // namespace

int Lib(const std::vector<std::string>& args) {
  static const std::map<std::string, std::function<int(const std::string&, const TArgs&)>> subcommands = {
      {"list", List}, {"add", Add}, {"extract", Extract}, {"delete", Delete}, {"rename", Rename}, {"upgrade", Upgrade},
  };
  if (args.size() < 2) throw EUsageError("lib needs a library file and a subcommand");
  const auto it = subcommands.find(args[1]);
  if (it == subcommands.end()) throw EUsageError("unknown lib subcommand \"" + args[1] + "\"");
  return it->second(args[0], TArgs(args.begin() + 2, args.end()));
}

}  // namespace lumatrex::cli
