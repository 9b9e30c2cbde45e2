// Paths of the data the tests read.
#pragma once

#include <string>

namespace lumatrex::test {

// Path of a file under the repository's tests/data folder.
std::string DataPath(const std::string& relative);
// Path of the shared conformance data, or empty when it is not beside the checkout.
std::string SharedTestData(const std::string& relative);

}  // namespace lumatrex::test
