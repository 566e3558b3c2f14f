#ifndef SDPNEG_NEW_FILE_H
#define SDPNEG_NEW_FILE_H

#include <filesystem>
#include <string>

namespace tool {

/// A file beside another one that goes away unless it takes the other's place. It goes away as well when SIGINT,
/// SIGTERM or SIGHUP ends the process; one of these that is ignored stays so. There may be kMost at a time.
class NewFile {
 public:
  static constexpr int kMost = 4;

  explicit NewFile(const std::filesystem::path& target);
  ~NewFile();
  NewFile(const NewFile&) = delete;
  NewFile& operator=(const NewFile&) = delete;

  /// The open file; -1, with errno, when it could not be made.
  int number() const { return number_; }
  const std::string& path() const { return path_; }
  bool close();
  bool takePlaceOf(const std::filesystem::path& target);

 private:
  std::string path_;
  int number_;
  bool created_;
};

}  // namespace tool

#endif
