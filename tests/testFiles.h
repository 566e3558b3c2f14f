#ifndef TEST_FILES_H
#define TEST_FILES_H

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

/// The bytes of a file.
inline std::string readBytes(const std::filesystem::path& path) {
  std::ifstream file(path, std::ios::binary);
  return {std::istreambuf_iterator<char>(file), {}};
}

/// All SDP bodies below a folder, in a fixed order.
inline std::vector<std::filesystem::path> sdpFilesBelow(const std::filesystem::path& folder) {
  std::vector<std::filesystem::path> files;
  for (const auto& entry : std::filesystem::recursive_directory_iterator(folder)) {
    if (entry.is_regular_file() && entry.path().extension() == ".sdp") files.push_back(entry.path());
  }
  std::sort(files.begin(), files.end());
  return files;
}

/// The folder of a larger collection of bodies, from the environment; empty when there is none.
inline std::string corpusFolder() {
  const char* folder = std::getenv("SDP_CORPUS_DIR");
  return folder != nullptr ? folder : "";
}

#endif
