// Runs a fuzz target without libFuzzer: over each file that the arguments name (folders with all that is in
// them), then over prefixes and small changes of each file. Every run has the inputs of the one before.
//
// Files are read through the C library: the memory sanitizer knows what that writes, but not what the standard C++
// library's own functions do.

#include <dirent.h>
#include <sys/stat.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <iterator>
#include <memory>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

using Bytes = std::vector<std::uint8_t>;

constexpr std::size_t prefixesPerFile = 64;
constexpr int changesPerFile = 64;

// Bytes that mean something in an SDP body, and some that should not.
constexpr std::uint8_t telling[] = {'\r', '\n', 0,   ' ', ':', '=',  '/', '%',
                                    '-',  '0',  '9', 'm', 'a', 0x80, 0xFF};

class Replay {
 public:
  void file(const Bytes& whole) {
    run(whole);
    prefixes(whole);
    changes(whole);
  }
  std::size_t inputs() const { return inputs_; }

 private:
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

// What a path names: a folder, a file or nothing.
unsigned int kindOf(const std::string& path) {
  struct stat status {};
  return stat(path.c_str(), &status) == 0 ? status.st_mode & S_IFMT : 0;
}

std::vector<std::string> entriesOf(const std::string& folder) {
  std::vector<std::string> entries;
  DIR* const open = opendir(folder.c_str());
  if (open == nullptr) return entries;
  while (const dirent* const entry = readdir(open)) {
    const std::string name = entry->d_name;
    if (name != "." && name != "..") entries.push_back(folder + "/" + name);
  }
  closedir(open);
  return entries;
}

std::vector<std::string> filesIn(const std::string& path) {
  std::vector<std::string> files;
  std::vector<std::string> left{path};
  while (!left.empty()) {
    const std::string next = left.back();
    left.pop_back();
    if (kindOf(next) == S_IFDIR) {
      for (const std::string& entry : entriesOf(next)) left.push_back(entry);
    } else if (kindOf(next) == S_IFREG) {
      files.push_back(next);
    }
  }
  std::sort(files.begin(), files.end());
  return files;
}

bool read(const std::string& path, Bytes& bytes) {
  std::FILE* const file = std::fopen(path.c_str(), "rb");
  if (file == nullptr) return false;
  bytes.clear();
  std::uint8_t piece[4096];
  std::size_t length = 0;
  while ((length = std::fread(piece, 1, sizeof piece, file)) != 0)
    bytes.insert(bytes.end(), piece, piece + length);
  const bool whole = std::ferror(file) == 0;
  std::fclose(file);
  return whole;
}

}  // namespace

int main(int argc, char** argv) {
  Replay replay;
  std::size_t files = 0;
  Bytes bytes;
  for (int i = 1; i < argc; ++i) {
    if (kindOf(argv[i]) == 0) {
      std::fprintf(stderr, "%s: no such file\n", argv[i]);
      return 1;
    }
    for (const std::string& path : filesIn(argv[i])) {
      if (!read(path, bytes)) {
        std::fprintf(stderr, "%s: cannot be read\n", path.c_str());
        return 1;
      }
      replay.file(bytes);
      ++files;
    }
  }
  std::printf("%zu inputs from %zu files\n", replay.inputs(), files);
  return files > 0 ? 0 : 1;
}
