#ifndef SDPNEG_BUFFERED_OUTPUT_H
#define SDPNEG_BUFFERED_OUTPUT_H

#include <string>
#include <string_view>

#include "output/streams.h"

namespace tool {

/// Collects small pieces for an output. What is left goes out with it.
class BufferedOutput {
 public:
  explicit BufferedOutput(Output& out) : out_(out) {}
  ~BufferedOutput() { flush(); }
  BufferedOutput(const BufferedOutput&) = delete;
  BufferedOutput& operator=(const BufferedOutput&) = delete;

  void write(std::string_view piece) {
    constexpr std::size_t kMost = std::size_t{64} * 1024;
    pieces_ += piece;
    if (pieces_.size() >= kMost) flush();
  }
  /// Whether more can be written.
  bool good() const { return out_.good(); }

 private:
  void flush() {
    out_.write(pieces_);
    pieces_.clear();
  }

  Output& out_;
  std::string pieces_;
};

}  // namespace tool

#endif
