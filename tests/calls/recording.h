#ifndef RECORDED_CALLS_RECORDING_H
#define RECORDED_CALLS_RECORDING_H

#include <gtest/gtest.h>

#include <cstddef>
#include <nlohmann/json.hpp>
#include <string>
#include <vector>

#include "../b2bua/calls.h"

// Recordings of loopback, and what the tool and other programs read in them.

namespace recorded {

using Json = nlohmann::json;

inline const std::string kHost = "127.0.0.1";

/// A SIP message of a recording.
struct Message {
  std::string first;  ///< method or status
  std::string callId;
  std::string body;

  bool operator==(const Message&) const = default;
};

void PrintTo(const Message& message, std::ostream* out);

/// What records.
enum class With {
  dumpcap,        ///< the loopback interface, into pcapng
  tcpdumpCooked,  ///< all interfaces, into pcap with cooked frames
};

/// Records from its making to its stop.
class Recorder {
 public:
  /// @param filter an expression of libpcap
  Recorder(const TemporaryFolder& folder, const std::string& filter, With with = With::dumpcap);

  /// Whether it may record here.
  bool isRecording() const { return isRecording_; }
  const std::string& file() const { return file_; }
  std::size_t size() const;
  /// Ends it when everything has arrived that was sent before.
  void stop();

 private:
  void waitUntilQuiet() const;

  std::string file_;
  Process process_;
  bool isRecording_ = false;
};

/// What `sdpneg calls --json --bodies` makes of a recording.
Json callsOf(const std::string& file, std::vector<std::string> options = {});

/// All messages of calls, in the order of the recording.
std::vector<Message> messagesOf(const Json& report);

/// The same as tshark decodes it.
std::vector<Message> messagesOfTshark(const TemporaryFolder& folder, const std::string& file);

/// Frames of whatever kind, by tshark.
std::size_t framesOf(const TemporaryFolder& folder, const std::string& file);

/// What sngrep reads without its screen.
struct SngrepReading {
  std::size_t dialogs = 0;
  std::vector<Message> messages;  ///< those that it saved, as tshark decodes them
};

/// @param filter an expression of libpcap; empty for all frames
SngrepReading readingOfSngrep(const TemporaryFolder& folder, const std::string& file,
                              const std::string& filter = {});

/// Call-IDs of all calls.
std::size_t dialogsOf(const Json& report);

}  // namespace recorded

#endif
