#include "calls/bodyShapes.h"

#include <algorithm>

#include "calls/sdpFacts.h"
#include "text/lines.h"
#include "text/search.h"

namespace tool {
namespace {

/// Longer bodies have keys and candidates, and hardly one is like another.
constexpr std::size_t kLongest = 2048;
/// Bytes of shapes that are kept.
constexpr std::size_t kMostBytes = std::size_t{256} * 1024;

constexpr std::string_view kPort = "4000";
constexpr std::string_view kAddress4 = "192.0.2.1";
constexpr std::string_view kAddress6 = "2001:db8::1";

/// A port by which nothing is meant but itself.
bool isUsualPort(std::string_view text) {
  const bool isNumber = !text.empty() && text.size() <= 5 && text.front() != '0' &&
                        std::ranges::all_of(text, [](char c) { return sdpneg::isDigit(c); });
  return isNumber && text != "9" && sdpneg::numberOrZero<std::uint32_t>(text) <= 65535;
}

bool isUsualAddress(std::string_view text, AddressFamily family) {
  const std::optional<IpAddress> address = parseAddress(text);
  return address && address->family == family && isPublic(*address);
}

/// Where something of a line is left out, and what stands for it.
struct Change {
  std::string_view left;
  std::string_view instead;
};

Change changeOfMedia(std::string_view line) {
  const std::size_t begin = line.find(' ') + 1;
  if (begin == 0) return {};
  const std::string_view behind = line.substr(begin);
  const std::string_view port = behind.substr(0, std::min(behind.find(' '), behind.size()));
  return isUsualPort(port) ? Change{port, kPort} : Change{};
}

Change changeOf(std::string_view line) {
  constexpr std::string_view kConnection = "c=IN IP";
  if (sdpneg::startsWith(line, "m=")) return changeOfMedia(line);
  if (sdpneg::startsWith(line, "o=")) {
    const bool hasOdd = std::ranges::any_of(line, [](char c) { return sdpneg::isControl(c); });
    return hasOdd ? Change{} : Change{line.substr(2), ""};
  }
  if (!sdpneg::startsWith(line, kConnection)) return {};
  const std::string_view behind = line.substr(kConnection.size());
  const bool isIp6 = sdpneg::startsWith(behind, "6 ");
  if (!isIp6 && !sdpneg::startsWith(behind, "4 ")) return {};
  const std::string_view address = behind.substr(2);
  if (!isUsualAddress(address, isIp6 ? AddressFamily::ip6 : AddressFamily::ip4)) return {};
  return {address, isIp6 ? kAddress6 : kAddress4};
}

}  // namespace

std::string shapeOf(std::string_view sdp) {
  std::string shape;
  shape.reserve(sdp.size());
  std::size_t written = 0;
  for (std::size_t at = 0; at < sdp.size();) {
    const sdpneg::Line line = sdpneg::lineAt(sdp, at);
    at = line.next();
    const Change change = changeOf(sdpneg::content(sdp, line));
    if (change.left.data() == nullptr) continue;
    const auto begin = static_cast<std::size_t>(change.left.data() - sdp.data());
    shape.append(sdp, written, begin - written).append(change.instead);
    written = begin + change.left.size();
  }
  return shape.append(sdp, written);
}

void BodyShapes::makeRoom() {
  if (bytes_ < kMostBytes && pairs_.size() < kMostPairs) return;
  shapes_.clear();
  bytes_ = 0;
  pairs_ = WordKeys(kMostPairs);
  facts_.clear();
}

BodyShapes::Shape BodyShapes::of(std::string_view sdp) {
  if (sdp.size() > kLongest) return 0;
  std::string shape = shapeOf(sdp);
  const auto found = shapes_.find(shape);
  if (found != shapes_.end()) return found->second;
  if (bytes_ >= kMostBytes) return 0;
  bytes_ += shape.size();
  return shapes_.emplace(std::move(shape), static_cast<Shape>(shapes_.size() + 1)).first->second;
}

ShapeFacts& BodyShapes::factsOf(Shape first, Shape second) {
  const WordKeys::Key pair{first, second};
  const bool hasRoom =
      first != 0 && second != 0 && (pairs_.size() < kMostPairs || pairs_.find(pair) != pairs_.size());
  if (!hasRoom) {
    unknown_ = {};
    return unknown_;
  }
  const std::size_t number = pairs_.add(pair);
  if (number == facts_.size()) facts_.emplace_back();
  return facts_[number];
}

}  // namespace tool
