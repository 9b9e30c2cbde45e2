#include "support/test_paths.h"

#include <gtest/gtest.h>

#include <QtGlobal>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace lumatrex::test {

std::string DataPath(const std::string& relative) {
  return std::string(LUMATREX_SOURCE_DIR) + "/tests/data/" + relative;
}

std::string SharedTestData(const std::string& relative) {
  const std::string path = std::string(LUMATREX_SHARED_TESTDATA) + "/" + relative;
  return std::filesystem::exists(path) ? path : std::string();
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
