#include "support/test_paths.h"

#include <filesystem>

namespace lumatrex::test {

std::string DataPath(const std::string& relative) {
  return std::string(LUMATREX_SOURCE_DIR) + "/tests/data/" + relative;
}

std::string SharedTestData(const std::string& relative) {
  const std::string path = std::string(LUMATREX_SHARED_TESTDATA) + "/" + relative;
  return std::filesystem::exists(path) ? path : std::string();
}

}  // namespace lumatrex::test
