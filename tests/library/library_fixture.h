// Shared pieces of the library tests: a scratch folder and the golden entries.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <filesystem>
#include <fstream>
#include <string>

#include "library/lib_bytes.h"
#include "library/lib_manager.h"

namespace lumatrex::test {

// A fresh folder per test, removed afterwards; the process id keeps two
// builds running the same test at once apart.
class TScratchFolder {
 public:
  TScratchFolder() {
    const auto* info = ::testing::UnitTest::GetInstance()->current_test_info();
    path_ = std::filesystem::temp_directory_path() /
            ("lumatrex-" + std::string(info->test_suite_name()) + "-" + info->name() + "-" + std::to_string(getpid()));
    std::filesystem::remove_all(path_);
    std::filesystem::create_directories(path_);
  }
  ~TScratchFolder() { std::filesystem::remove_all(path_); }
  std::string File(const std::string& name) const { return (path_ / name).string(); }
  std::string Write(const std::string& name, const TBytes& bytes) const {
    std::ofstream(File(name), std::ios::binary)
        .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
    return File(name);
  }
  TBytes Read(const std::string& name) const {
    std::ifstream in(File(name), std::ios::binary);
    return TBytes(std::istreambuf_iterator<char>(in), std::istreambuf_iterator<char>());
  }

 private:
  std::filesystem::path path_;
};

// A library manager holding Bytes.
inline TLibManager Library(const TBytes& bytes) {
  TLibManager lib;
  lib.SetBytes(bytes);
  return lib;
}

// "Pump": a rectangle spanning the unit square (drawn 40 x 20) with a link
// point kept at its absolute place (100, 200), and one user data record.
inline TBytes PumpEntry() {
  const std::vector<std::pair<std::string, std::string>> userData = {{"part", "P-1"}};
  return EntryBytes("Pump", 40, 20, &userData,
                    {ShapeBytes("XP.j", Shape("TMyRectangle", "Shape0", 0, {{0, 0}, {1, 1}}, {0.5f, 0.5f})),
                     ShapeBytes("XP.j", Shape("TMyLinkPoint", "Shape1", 1, {{100, 200}}, {100, 200}))});
}

// A one-rectangle entry of the current layout with no user data.
inline TBytes BoxEntry(const std::string& name) {
  const std::vector<std::pair<std::string, std::string>> none;
  return EntryBytes(name, 10, 10, &none,
                    {ShapeBytes("XP.j", Shape("TMyRectangle", name, 0, {{0, 0}, {1, 1}}, {0.5f, 0.5f}))});
}

}  // namespace lumatrex::test
