// Sets of numbers in parameters.

#include "parameterSets.h"

#include <algorithm>

#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kLastDigit = 15;  // the events of a telephone's keys are 0 to 15

/// Numbers and ranges of numbers with commas between. What is neither, or out of range, is passed over.
template <std::size_t Size>
std::bitset<Size> readSet(std::string_view text) {
  std::bitset<Size> set;
  while (!text.empty()) {
    const std::size_t comma = std::min(text.find(','), text.size());
    const std::string_view entry = trimmed(text.substr(0, comma));
    text.remove_prefix(std::min(comma + 1, text.size()));
    const std::size_t dash = std::min(entry.find('-'), entry.size());
    const std::optional<std::uint64_t> first = readNumber(trimmed(entry.substr(0, dash)));
    const std::optional<std::uint64_t> last =
        dash == entry.size() ? first : readNumber(trimmed(entry.substr(dash + 1)));
    if (!first || !last) continue;
    for (std::uint64_t n = *first; n <= *last && n < Size; ++n) set.set(n);
  }
  return set;
}

void addNumber(std::string& text, std::size_t number) { text += std::to_string(number); }

}  // namespace

std::optional<ModeSet> modesOf(const Codec& codec) {
  const std::optional<std::string_view> value = parameterOf(codec.parameters(), "mode-set");
  if (!value) return std::nullopt;
  return readSet<16>(*value);
}

std::string textOf(const ModeSet& modes) {
  std::string text;
  for (std::size_t mode = 0; mode < modes.size(); ++mode) {
    if (!modes[mode]) continue;
    if (!text.empty()) text += ',';
    addNumber(text, mode);
  }
  return text;
}

EventSet eventsOf(const Codec& codec) {
  std::string_view text = trimmed(codec.parameters());
  constexpr std::string_view kName = "events=";
  if (sdpneg::startsWithNoCase(text, kName)) text.remove_prefix(kName.size());
  EventSet events = readSet<256>(text.substr(0, text.find(';')));
  if (events.none() && text.empty()) {
    for (std::size_t event = 0; event <= kLastDigit; ++event) events.set(event);
  }
  return events;
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
