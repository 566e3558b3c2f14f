#ifndef SDPNEG_FILE_REPLACEMENT_H
#define SDPNEG_FILE_REPLACEMENT_H

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "input/place.h"
#include "output/streams.h"

namespace tool {

/// As replaceFile(), for bytes that come bit by bit. The file stays as it was unless finish() is called.
class FileReplacement {
 public:
  explicit FileReplacement(const std::string& name);
  ~FileReplacement();
  FileReplacement(const FileReplacement&) = delete;
  FileReplacement& operator=(const FileReplacement&) = delete;

  /// Why nothing can be written, so far.
  std::optional<Problem> problem() const;
  /// Where the bytes go; only where there is no problem.
  Output& output();
  /// Puts the new file into the place of the other. To be called once.
  /// @return what is wrong
  std::optional<Problem> finish();

 private:
  class Parts;
  std::unique_ptr<Parts> parts_;
  std::optional<Problem> problem_;
};

/// Writes a file so that it is never seen half written: into a new one in the same folder, which then takes its
/// name. A file that is there already keeps its mode, and its owner where the user may set it; what a symbolic
/// link leads to is written, and the link stays; one that leads to no file is refused. When SIGINT, SIGTERM or
/// SIGHUP ends the program meanwhile, the file is as it was, and the new one is gone.
/// @return what is wrong; the file is as it was then, and nothing else is left behind
std::optional<Problem> replaceFile(const std::string& name, std::string_view bytes);

}  // namespace tool

#endif
