// Paths of the data the tests read.
#pragma once

#include <string>
#include <vector>

namespace lumatrex::test {

// Path of a file under the repository's tests/data folder.
std::string DataPath(const std::string& relative);
// The lines of a text file under tests/data, blank lines left out and each
// cut at its first '#', which starts a note.
std::vector<std::string> DataLines(const std::string& relative);
// Path of the shared conformance data, or empty when it is not beside the checkout.
std::string SharedTestData(const std::string& relative);

}  // namespace lumatrex::test
