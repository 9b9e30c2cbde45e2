// Paths of the data the tests read, and the golden files they compare with.
#pragma once

#include <string>
#include <vector>

namespace lumatrex::test {

// Path of a file under the repository's tests/data folder.
std::string DataPath(const std::string& relative);
// Path of the shared conformance data, or empty when it is not beside the checkout.
std::string SharedTestData(const std::string& relative);
// The rows of a table under tests/data: a row a line, its cells split at '|'
// and trimmed; blank lines and lines starting with '#' are notes.
std::vector<std::vector<std::string>> DataTable(const std::string& relative);
// The bytes of a file, or empty when it cannot be read.
std::string ReadFileBytes(const std::string& path);
// Compares Actual (text or bytes) with the file under tests/data; after an
// intended change of the output, LUMATREX_UPDATE_GOLDEN=1 rewrites the file.
void ExpectGoldenFile(const std::string& actual, const std::string& relative);

}  // namespace lumatrex::test
