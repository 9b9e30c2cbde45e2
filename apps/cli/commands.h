// The commands of the lumatrex tool. Each takes the arguments after its name
// and returns the exit status; failures throw the errors below, which main
// reports on standard error.
#pragma once

#include <stdexcept>
#include <string>
#include <vector>

namespace lumatrex::cli {

// A failure to report (exit status 1): a file that cannot be read, written
// or understood. The message names the file.
class ECliError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// Wrong arguments (exit status 2).
class EUsageError : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

// "expected 1 argument", "expected 3 arguments": the usage error for a
// wrong count of arguments.
std::string Expected(std::size_t count);

// The library asked to end the application after a message it has already
// shown (a drawing with shapes but no layer); exit status 1.
class EEndRequested : public std::runtime_error {
 public:
  EEndRequested() : std::runtime_error("the application was asked to end") {}
};

// Message boxes print to standard error; a request to end the application is
// recorded and turned into EEndRequested by the command that caused it.
void InstallConsoleHooks();

int Dump(const std::vector<std::string>& args);
int Convert(const std::vector<std::string>& args);
int Render(const std::vector<std::string>& args);
int Lib(const std::vector<std::string>& args);
int Dxf(const std::vector<std::string>& args);

}  // namespace lumatrex::cli
