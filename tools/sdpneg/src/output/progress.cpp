#include "output/progress.h"

#include <algorithm>
#include <string>

namespace tool {
namespace {

constexpr std::size_t kManyInputs = 50;
constexpr std::size_t kBarWidth = 40;
constexpr std::chrono::milliseconds kInterval(100);

}  // namespace

Progress::Progress(Output& err, std::size_t total)
    : err_(err), total_(total), enabled_(total >= kManyInputs && isCapableTerminal(err)) {}

void Progress::show(std::size_t done) {
  if (!enabled_) return;
  const auto now = std::chrono::steady_clock::now();
  if (now < next_) return;
  next_ = now + kInterval;
  const std::size_t filled = std::min(kBarWidth, done * kBarWidth / total_);
  std::string line = "[" + std::string(filled, '#') + std::string(kBarWidth - filled, '.') + "] ";
  line += std::to_string(done) + "/" + std::to_string(total_);
  shownWidth_ = line.size();
  err_.write("\r" + line);
}

void Progress::hide() {
  if (shownWidth_ == 0) return;
  err_.write("\r" + std::string(shownWidth_, ' ') + "\r");
  shownWidth_ = 0;
  next_ = {};
}

}  // namespace tool
