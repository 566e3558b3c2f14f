#ifndef SDPNEG_STREAMS_H
#define SDPNEG_STREAMS_H

#include <string>
#include <string_view>

#include "input/place.h"

namespace tool {

/// An open output file. What is written goes out at once and whole; after a failure nothing more does.
class Output {
 public:
  explicit Output(int descriptor) : descriptor_(descriptor) {}

  void write(std::string_view text);

  /// Whether everything could be written so far.
  bool good() const { return error_ == 0; }
  /// Whether writing failed because the pipe's reader has gone, which is no error: it has seen enough.
  bool closedByReader() const;
  /// What made writing fail, in words.
  std::string failure() const;
  bool isTerminal() const;

 private:
  int descriptor_;
  int error_ = 0;
};

/// Standard output and standard error.
struct Streams {
  Output& out;
  Output& err;
};

/// Writes a text that came from an input: as it is, but to a terminal, which its control characters could steer,
/// printable.
void writeText(Output& out, std::string_view text);

/// Writes "sdpneg: NAME:LINE:COLUMN: REASON", without what is not known.
void writeProblem(Output& err, std::string_view name, const Problem& problem);

/// Whether the terminal can do more than write line by line.
bool isCapableTerminal(const Output& output);

}  // namespace tool

#endif
