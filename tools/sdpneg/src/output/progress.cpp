#include "output/progress.h"

#include <algorithm>
#include <string>

namespace tool {
namespace {

constexpr std::size_t manyInputs = 50;
constexpr std::size_t barWidth = 40;
constexpr std::chrono::milliseconds interval(100);

}  // namespace

Progress::Progress(Output& err, std::size_t total)
    : err_(err), total_(total), enabled_(total >= manyInputs && isCapableTerminal(err)) {}

void Progress::show(std::size_t done) {
  const auto now = std::chrono::steady_clock::now();
  if (!enabled_ || now < next_) return;
  next_ = now + interval;
  const std::size_t filled = std::min(barWidth, done * barWidth / total_);
  std::string line = "[" + std::string(filled, '#') + std::string(barWidth - filled, '.') + "] ";
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
