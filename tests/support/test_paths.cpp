#include "support/test_paths.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>

namespace lumatrex::test {

std::string DataPath(const std::string& relative) {
  return std::string(LUMATREX_SOURCE_DIR) + "/tests/data/" + relative;
}

std::vector<std::string> DataLines(const std::string& relative) {
  std::ifstream in(DataPath(relative));
  if (!in) ADD_FAILURE() << "cannot read " << DataPath(relative);
  std::vector<std::string> lines;
  for (std::string line; std::getline(in, line);) {
    line.erase(std::min(line.find('#'), line.size()));
    if (line.find_first_not_of(" \t\r") != std::string::npos) lines.push_back(line);
  }
  return lines;
}

std::string SharedTestData(const std::string& relative) {
  const std::string path = std::string(LUMATREX_SHARED_TESTDATA) + "/" + relative;
  return std::filesystem::exists(path) ? path : std::string();
}

}  // namespace lumatrex::test
