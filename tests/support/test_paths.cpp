#include "support/test_paths.h"

#include <gtest/gtest.h>

#include <QtGlobal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <sstream>

namespace lumatrex::test {

std::string DataPath(const std::string& relative) {
  return std::string(LUMATREX_SOURCE_DIR) + "/tests/data/" + relative;
}

std::string SharedTestData(const std::string& relative) {
  const std::string path = std::string(LUMATREX_SHARED_TESTDATA) + "/" + relative;
  return std::filesystem::exists(path) ? path : std::string();
}

std::vector<std::vector<std::string>> DataTable(const std::string& relative) {
  std::ifstream file(DataPath(relative));
  EXPECT_TRUE(file.is_open()) << "cannot read " << relative;
  std::vector<std::vector<std::string>> rows;
  for (std::string line; std::getline(file, line);) {
    if (line.empty() || line.starts_with('#')) continue;
    std::vector<std::string>& row = rows.emplace_back();
    std::istringstream cells(line);
    for (std::string cell; std::getline(cells, cell, '|');) {
      const std::size_t first = cell.find_first_not_of(' '), last = cell.find_last_not_of(' ');
      row.push_back(first == std::string::npos ? "" : cell.substr(first, last - first + 1));
    }
  }
  return rows;
}

std::string ReadFileBytes(const std::string& path) {
  std::ifstream file(path, std::ios::binary);
  return std::string(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
}

void ExpectGoldenFile(const std::string& actual, const std::string& relative) {
  const std::string path = DataPath(relative);
  if (qEnvironmentVariableIsSet("LUMATREX_UPDATE_GOLDEN")) {
    std::ofstream file(path, std::ios::binary);
    file << actual;
    ASSERT_TRUE(file.flush()) << "cannot write " << path;
    return;
  }
  EXPECT_EQ(actual, ReadFileBytes(path)) << "differs from " << path;
}

}  // namespace lumatrex::test
