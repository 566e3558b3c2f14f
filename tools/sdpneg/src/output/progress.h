#ifndef SDPNEG_PROGRESS_H
#define SDPNEG_PROGRESS_H

#include <chrono>
#include <cstddef>

#include "output/streams.h"

namespace tool {

/// A progress bar on standard error, when that is a terminal and there is much to do.
class Progress {
 public:
  Progress(Output& err, std::size_t total);

  /// Shows how much is done, a few times a second at most.
  void show(std::size_t done);
  /// Makes room for a line of text.
  void hide();

 private:
  Output& err_;
  std::size_t total_;
  bool enabled_;
  std::size_t shownWidth_ = 0;
  std::chrono::steady_clock::time_point next_;
};

}  // namespace tool

#endif
