#ifndef SDPNEG_TEST_PROCESS_H
#define SDPNEG_TEST_PROCESS_H

#include <filesystem>
#include <optional>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

// Runs sdpneg as a process of its own.

/// How a run is set up. The environment is the test's, without NO_COLOR and with TERM=xterm.
struct Surroundings {
  std::string input = {};                                             ///< what standard input gives
  std::vector<std::pair<std::string, std::string>> environment = {};  ///< set on top
  bool outputToTerminal = false;
  bool errorsToTerminal = false;
  std::optional<std::string> outputFile = std::nullopt;      ///< instead of a pipe
  std::optional<unsigned int> fileSizeLimit = std::nullopt;  ///< bytes that a file may grow to
  bool readOneLine = false;                                  ///< of standard output, then close it
};

/// What a run gave. A terminal turns LF into CR LF.
struct Outcome {
  int status = -1;  ///< the exit status, or 128 and the signal's number
  std::string out;
  std::string err;
};

Outcome runSdpneg(const std::vector<std::string>& arguments, const Surroundings& surroundings = {});

/// A folder that lasts as long as it.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  /// Writes a file, and its folders.
  /// @return its path
  std::string write(const std::string& name, std::string_view bytes) const;
  std::string path(const std::string& name = "") const;

 private:
  std::filesystem::path folder_;
};

/// Puts CR LF in place of each LF.
std::string withCrLf(std::string_view text);

/// A text with every piece replaced.
std::string replaced(std::string text, std::string_view from, std::string_view to);

#endif
