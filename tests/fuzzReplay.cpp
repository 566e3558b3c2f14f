// Runs a fuzz target without libFuzzer: over each file that the arguments name (folders with all that is in
// them), then over prefixes and small changes of each file. The same inputs run every time.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

namespace fs = std::filesystem;
using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t prefixesPerFile = 64;
constexpr int changesPerFile = 64;

// Bytes that mean something in an SDP body, and some that should not.
constexpr std::uint8_t telling[] = {'\r', '\n', 0,   ' ', ':', '=',  '/', '%',
                                    '-',  '0',  '9', 'm', 'a', 0x80, 0xFF};

class Replay {
 public:
  void file(const fs::path& path) {
    const Bytes whole = read(path);
    run(whole);
    prefixes(whole);
    changes(whole);
  }
  std::size_t inputs() const { return inputs_; }

 private:
  static Bytes read(const fs::path& path) {
    std::ifstream in(path, std::ios::binary);
    return Bytes(std::istreambuf_iterator<char>(in), {});
  }

  // The input is a block of exactly its size, so that a sanitizer sees a read behind it.
  void run(const Bytes& input) {
    const auto exact = std::make_unique<std::uint8_t[]>(input.size());
    std::copy(input.begin(), input.end(), exact.get());
    LLVMFuzzerTestOneInput(exact.get(), input.size());
    ++inputs_;
  }

  void prefixes(const Bytes& whole) {
    const std::size_t step = whole.size() / prefixesPerFile + 1;
    for (std::size_t size = 0; size < whole.size(); size += step) {
      run(Bytes(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size)));
    }
  }

  void changes(const Bytes& whole) {
    if (whole.empty()) return;
    for (int i = 0; i < changesPerFile; ++i) run(changed(whole));
  }

  Bytes changed(Bytes bytes) {
    const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(next() % bytes.size());
    const std::uint8_t value = telling[next() % std::size(telling)];
    switch (next() % 4) {
      case 0:
        *at = value;
        break;
      case 1:
        bytes.insert(at, value);
        break;
      case 2:
        bytes.insert(at, next() % 600, value);  // longer than the fields of a description
        break;
      default:
        bytes.erase(at, at + std::min<std::ptrdiff_t>(8, bytes.end() - at));
    }
    return bytes;
  }

  // A linear congruential generator: the inputs must not differ between machines.
  std::size_t next() {
    state_ = state_ * 6364136223846793005U + 1442695040888963407U;
    return static_cast<std::size_t>(state_ >> 33U);
  }

  std::uint64_t state_ = 1;
  std::size_t inputs_ = 0;
};

std::vector<fs::path> filesIn(const fs::path& path) {
  if (!fs::is_directory(path)) return {path};
  std::vector<fs::path> files;
  for (const auto& entry : fs::recursive_directory_iterator(path)) {
    if (entry.is_regular_file()) files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

}  // namespace

int main(int argc, char** argv) {
  Replay replay;
  std::size_t files = 0;
  for (int i = 1; i < argc; ++i) {
    for (const fs::path& path : filesIn(argv[i])) {
      if (!fs::is_regular_file(path)) {
        std::fprintf(stderr, "%s: no such file\n", path.c_str());
        return 1;
      }
      replay.file(path);
      ++files;
    }
  }
  std::printf("%zu inputs from %zu files\n", replay.inputs(), files);
  return files > 0 ? 0 : 1;
}
