#include "input/inputFiles.h"

#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <filesystem>
#include <system_error>
#include <utility>

#include "input/captureFile.h"
#include "input/descriptor.h"

namespace tool {
namespace {

namespace fs = std::filesystem;

constexpr const char* kStandardInputName = "(standard input)";

/// Adds the bodies of one folder and notes its own folders.
std::error_code listFolder(const fs::path& folder, std::vector<Input>& found,
                           std::vector<fs::path>& folders) {
  std::error_code error;
  fs::directory_iterator entry(folder, error);
  for (; !error && entry != fs::directory_iterator(); entry.increment(error)) {
    std::error_code gone;  // an entry may vanish meanwhile; then it is neither
    if (fs::is_directory(entry->symlink_status(gone))) {
      folders.push_back(entry->path());
    } else if (entry->path().extension() == ".sdp" && entry->is_regular_file(gone)) {
      found.push_back({entry->path().string(), false, std::nullopt});
    }
  }
  return error;
}

/// All bodies below a folder, sorted, and the folders that cannot be read.
std::vector<Input> listBelow(const std::string& name) {
  std::vector<Input> found;
  std::vector<fs::path> folders{name};
  while (!folders.empty()) {
    const fs::path folder = std::move(folders.back());
    folders.pop_back();
    const std::error_code error = listFolder(folder, found, folders);
    if (error) found.push_back({folder.string(), false, cannotRead(error.message())});
  }
  if (found.empty()) found.push_back({name, false, Problem{{}, "holds no file *.sdp"}});
  std::sort(found.begin(), found.end(), [](const Input& a, const Input& b) { return a.name < b.name; });
  return found;
}

}  // namespace

Input inputOf(const std::string& operand) {
  if (operand == "-") return {kStandardInputName, true, std::nullopt};
  return {operand, false, std::nullopt};
}

InputList listInputs(const std::vector<std::string>& operands) {
  InputList list;
  list.several = operands.size() > 1;
  for (const std::string& operand : operands) {
    std::error_code error;
    if (operand != "-" && fs::is_directory(operand, error)) {
      list.several = true;
      std::vector<Input> below = listBelow(operand);
      std::move(below.begin(), below.end(), std::back_inserter(list.inputs));
    } else {
      list.inputs.push_back(inputOf(operand));
    }
  }
  if (operands.empty()) list.inputs.push_back(inputOf("-"));
  return list;
}

Problem cannotRead(const std::string& why) { return {{}, "cannot be read: " + why}; }

Problem tooLong(std::size_t maxSize) { return {{}, "is longer than " + std::to_string(maxSize) + " bytes"}; }

InputBytes readInput(const Input& input, std::size_t maxSize) {
  if (input.problem) return {{}, input.problem};
  if (input.name.empty()) return {{}, Problem{{}, "an empty word names no file"}};
  const Descriptor file(input);
  if (file.number() < 0) return {{}, cannotRead(std::generic_category().message(errno))};
  std::string bytes;
  char buffer[16384];
  while (bytes.size() <= maxSize) {
    const ssize_t length = ::read(file.number(), buffer, sizeof buffer);
    if (length == 0) return {std::move(bytes), std::nullopt};
    if (length > 0) {
      bytes.append(buffer, static_cast<std::size_t>(length));
    } else if (errno != EINTR) {
      return {{}, cannotRead(std::generic_category().message(errno))};
    }
  }
  const auto capture = captureProblem(bytes);
  return {{}, capture ? capture : tooLong(maxSize)};
}

}  // namespace tool
