// Addresses that those who get them cannot reach.

#include <algorithm>
#include <array>
#include <cstdint>
#include <set>
#include <string_view>
#include <tuple>
#include <utility>

#include "calls/troubleFinder.h"

namespace tool {
namespace {

/// An address that is given, and where.
struct Given {
  std::string_view address;
  std::size_t line = 0;  ///< of the body; 0 for the one that tells the connection
};

bool isPrivateText(std::string_view address) {
  const std::optional<IpAddress> known = parseAddress(address);
  return known && isPrivate(*known);
}

template <typename Lines>
std::optional<std::size_t> findConnectionLine(const Lines& lines) {
  std::size_t number = 0;
  for (const sdp::Line& line : lines) {
    if (line.content.starts_with("c=")) return number;
    ++number;
  }
  return std::nullopt;
}

std::size_t connectionLineOf(const sdp::Document& body, const sdp::Section& section) {
  if (const auto line = findConnectionLine(section.lines())) return section.lineNumber() + *line;
  const auto line = findConnectionLine(body.session().lines());
  return line ? *line + 1 : 0;
}

/// Of a section with candidates the first address, where each one is private or only a name; a public one will do.
std::optional<Given> privateCandidate(const sdp::Section& section) {
  std::optional<Given> found;
  std::size_t number = section.lineNumber();
  for (const sdp::Line& line : section.lines()) {
    const std::size_t here = number++;
    if (!line.content.starts_with("a=candidate:")) continue;
    const std::string_view address = sdp::Fields(line.content)[4];
    if (isPrivateText(address)) {
      if (!found) found = Given{address, here};
    } else if (parseAddress(address)) {
      return std::nullopt;
    }
  }
  return found;
}

std::optional<Given> privateAddress(const sdp::Section& section) {
  if (section.hasIce() && section.candidateCount() != 0) return privateCandidate(section);
  const std::string_view address = addressOf(section);
  if (!isPrivateText(address)) return std::nullopt;
  return Given{address};
}

/// The private addresses that each sender has given.
using Told = std::set<std::pair<std::string, std::string>>;
/// A body and its sender.
using Sent = std::tuple<std::string_view, AddressFamily, std::array<std::uint8_t, 16>>;

void lookAt(TroubleFinder& finder, std::size_t number, Told& told) {
  if (finder.bodies().factsOf(number, number).isReachable) {
    finder.bodies().passOver(number, number);
    return;
  }
  const sdp::Document* const body = finder.bodies().of(number);
  if (body == nullptr) return;
  bool isReachable = true;
  const CallMessage& message = finder.call().messages[number];
  for (const sdp::Section& section : body->sections()) {
    if (!isActive(section) || section.port() == 0) continue;
    const std::optional<Given> given = privateAddress(section);
    if (!given) continue;
    isReachable = false;
    const std::string sender = message.flow.source.address.text();
    if (!told.insert({sender, std::string(given->address)}).second) continue;
    const bool isCandidate = given->line != 0;
    const std::size_t line = isCandidate ? given->line : connectionLineOf(*body, section);
    finder.tell("private-address", {number, section.index(), line},
                shownPiece(section.media()) + ": " + shownPiece(given->address) +
                    " is private, and goes to " + message.flow.destination.address.text() +
                    (isCandidate ? "; no candidate is public" : ""));
  }
  if (isReachable) finder.bodies().factsOf(number, number).isReachable = true;
}

}  // namespace

void findAddressTroubles(TroubleFinder& finder) {
  Told told;
  NumberedKeys<Sent> sent;
  for (std::size_t i = 0; i < finder.call().messages.size(); ++i) {
    const CallMessage& message = finder.call().messages[i];
    if (message.sdpSize == 0 || message.retransmissionOf) continue;
    if (!isPublic(message.flow.destination.address)) continue;
    const IpAddress& sender = message.flow.source.address;
    const std::size_t before = sent.size();
    if (sent.add({message.sdp(), sender.family, sender.bytes}) == before) lookAt(finder, i, told);
  }
}

}  // namespace tool
