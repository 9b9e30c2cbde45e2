// Runs a fuzz target's entry point over files, without libFuzzer: so that
// the ordinary test suite (any compiler) replays the seed corpus and every
// input a fuzzer once crashed on. Arguments are files or folders.
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

void Replay(const std::filesystem::path& file) {
  std::ifstream in(file, std::ios::binary);
  const std::vector<std::uint8_t> bytes((std::istreambuf_iterator<char>(in)), std::istreambuf_iterator<char>());
  std::printf("%s\n", file.c_str());
  std::fflush(stdout);  // the last name printed is the input that crashed
  LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
}

}  // namespace

int main(int argc, char** argv) {
  int replayed = 0;
  for (int i = 1; i < argc; ++i) {
    const std::filesystem::path path(argv[i]);
    if (!std::filesystem::exists(path)) continue;  // a target with no regressions yet
    if (!std::filesystem::is_directory(path)) {
      Replay(path);
      ++replayed;
      continue;
    }
    for (const auto& entry : std::filesystem::directory_iterator(path))
      if (entry.is_regular_file()) {
        Replay(entry.path());
        ++replayed;
      }
  }
  std::printf("%d inputs replayed\n", replayed);
  return replayed > 0 ? 0 : 1;
}
