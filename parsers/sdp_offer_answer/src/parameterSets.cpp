// Sets of numbers in parameters.

#include "parameterSets.h"

#include <algorithm>

#include "parameters.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kLastDigit = 15;  // the events of a telephone's keys are 0 to 15

/// Adds `N` or `N-M` to a set.
/// @return false when it is neither, or out of range
template <std::size_t Size>
bool addRange(std::string_view range, std::bitset<Size>& set) {
  const std::size_t dash = std::min(range.find('-'), range.size());
  const std::optional<std::uint64_t> first = readNumber(trimmed(range.substr(0, dash)));
  const std::optional<std::uint64_t> last =
      dash == range.size() ? first : readNumber(trimmed(range.substr(dash + 1)));
  if (!first || !last || *first > *last || *last >= Size) return false;
  for (std::uint64_t n = *first; n <= *last; ++n) set.set(n);
  return true;
}

/// Numbers and ranges of numbers with commas between.
template <std::size_t Size>
struct ReadSet {
  std::bitset<Size> set;
  bool isWhole = true;  ///< nothing else stands there
};
template <std::size_t Size>
ReadSet<Size> readSet(std::string_view text) {
  ReadSet<Size> read;
  for (;;) {
    const std::size_t comma = text.find(',');
    read.isWhole = addRange(trimmed(text.substr(0, comma)), read.set) && read.isWhole;
    if (comma == std::string_view::npos) return read;
    text.remove_prefix(comma + 1);
  }
}

/// Takes the next mode off a list with commas; empty when there is none left.
std::string_view takeMode(std::string_view& list) {
  std::string_view mode;
  while (mode.empty() && !list.empty()) {
    const std::size_t comma = std::min(list.find(','), list.size());
    mode = trimmed(list.substr(0, comma));
    list.remove_prefix(std::min(comma + 1, list.size()));
  }
  return mode;
}

std::size_t bitOf(std::string_view mode) {
  const std::optional<std::uint64_t> number = readNumber(mode);
  return number && *number < kOtherMode ? static_cast<std::size_t>(*number) : kOtherMode;
}

void addNumber(std::string& text, std::size_t number) { text += std::to_string(number); }

}  // namespace

std::optional<ModeSet> modesOf(const Codec& codec) {
  const std::optional<std::string_view> value = codec.parameter("mode-set");
  if (!value) return std::nullopt;
  ModeSet modes;
  std::string_view rest = *value;
  for (std::string_view mode = takeMode(rest); !mode.empty(); mode = takeMode(rest)) modes.set(bitOf(mode));
  return modes;
}

std::string textOfCommonModes(std::string_view local, const ModeSet& others) {
  std::string text;
  for (std::string_view mode = takeMode(local); !mode.empty(); mode = takeMode(local)) {
    if (!others[bitOf(mode)]) continue;
    if (!text.empty()) text += ',';
    text += mode;
  }
  return text;
}

std::string_view eventListOf(std::string_view parameters) {
  return trimmed(parameters.substr(0, parameters.find(';')));
}

EventSet eventsOf(const Codec& codec) {
  const ReadSet<256> events = readSet<256>(eventListOf(codec.parameters()));
  if (events.isWhole) return events.set;
  EventSet digits;
  for (std::size_t event = 0; event <= kLastDigit; ++event) digits.set(event);
  return digits;
}

std::string textOf(const EventSet& events) {
  std::string text;
  for (std::size_t first = 0; first < events.size(); ++first) {
    if (!events[first]) continue;
    std::size_t last = first;
    while (last + 1 < events.size() && events[last + 1]) ++last;
    if (!text.empty()) text += ',';
    addNumber(text, first);
    if (last != first) addNumber(text += '-', last);
    first = last;
  }
  return text;
}

}  // namespace sdp::exchange
