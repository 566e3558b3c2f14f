#ifndef SDPNEG_CAPTURE_SET_H
#define SDPNEG_CAPTURE_SET_H

#include <cstddef>
#include <cstdint>
#include <deque>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "captures/capture.h"

// Several inputs as one capture.

namespace tool {

class CaptureSet {
 public:
  /// @param sink gets the messages of all inputs by their times; those of one input stay in its order
  CaptureSet(const std::vector<Input>& inputs, const CaptureOptions& options, MessageSink sink);
  ~CaptureSet();
  CaptureSet(const CaptureSet&) = delete;
  CaptureSet& operator=(const CaptureSet&) = delete;

  /// Reads a little more of the inputs.
  /// @return whether there may be more
  bool step();
  /// Gives up what is open, for those who do not read to the end.
  void finish();

  std::size_t messages() const { return messages_; }
  /// Bytes of all files that were read.
  std::size_t position() const;
  /// How often that was seen in all inputs.
  std::size_t count(CaptureTrouble trouble) const;
  /// What is wrong with inputs, by their names.
  std::vector<std::pair<std::string, Problem>> problems() const;

 private:
  struct Held {
    CapturedMessage message;
    std::string text;
  };
  struct Part {
    std::string name;
    std::deque<Held> held;
    std::int64_t time = INT64_MIN;  ///< the latest one that was seen
    std::unique_ptr<CaptureOutput> output;
    std::unique_ptr<Capture> capture;
    bool isDone = false;
  };

  void deliver(CapturedMessage message);
  void hold(Part& part, const CapturedMessage& message);
  void deliverFirst();

  MessageSink sink_;
  std::vector<std::unique_ptr<Part>> parts_;
  std::size_t messages_ = 0;
};

}  // namespace tool

#endif
