#include "targets.h"

#include <algorithm>
#include <sstream>
#include <tuple>

#include "wholeNumber.h"

namespace b2bua {

namespace {

constexpr std::chrono::seconds kRest{10};
constexpr unsigned int kMost = 10'000;  ///< weight and priority

bool readShare(std::string_view text, unsigned int least, unsigned int& number) {
  return readNumber(text, number) && number >= least && number <= kMost;
}

bool readParameter(std::string_view text, Target& target) {
  const std::size_t equals = std::min(text.find('='), text.size());
  const std::string_view name = text.substr(0, equals);
  const std::string_view value = text.substr(std::min(equals + 1, text.size()));
  if (name == "weight") return readShare(value, 1, target.weight);
  if (name == "priority") return readShare(value, 0, target.priority);
  target.transport = value;
  return name == "transport" && (value == "udp" || value == "tcp" || value == "tls");
}

}  // namespace

std::optional<Target> readTarget(const std::string& text) {
  Target target;
  std::istringstream words(text + ";");
  std::getline(words, target.address, ';');
  for (std::string word; std::getline(words, word, ';');) {
    if (!readParameter(word, target)) return std::nullopt;
  }
  return target;
}

Targets::Targets(std::vector<Target> all) : all_(std::move(all)) {
  for (const Target& target : all_) restsUntil_[target.place()];
}

/// Each draws a time, the shorter the greater its weight: who is first among some is so as often as its share of their
/// weights says.
std::vector<std::string> Targets::order() {
  std::vector<std::tuple<bool, unsigned int, double, std::string>> drawn;
  for (const Target& target : all_) {
    const double time = std::exponential_distribution<double>(target.weight)(random_);
    drawn.emplace_back(restsUntil_[target.place()] > Clock::now(), target.priority, time, target.place());
  }
  std::ranges::sort(drawn);
  std::vector<std::string> places;
  places.reserve(drawn.size());
  for (const auto& each : drawn) places.push_back(std::get<std::string>(each));
  return places;
}

/// After its rest, one call finds out about a target, the others wait for what becomes of that.
void Targets::tried(const std::string& place) {
  const auto found = restsUntil_.find(place);
  if (found != restsUntil_.end() && found->second != Clock::time_point()) failed(place);
}

void Targets::answered(const std::string& place) {
  if (restsUntil_.contains(place)) restsUntil_[place] = {};
}

void Targets::failed(const std::string& place) {
  if (restsUntil_.contains(place)) restsUntil_[place] = Clock::now() + kRest;
}

}  // namespace b2bua
