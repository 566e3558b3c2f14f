#include "calls/causes.h"

#include <array>

namespace tool {
namespace {

/// Hops and exchanges that are gone back through.
constexpr int kMostSteps = 64;

std::string_view wordOf(Way way) {
  constexpr std::array<std::string_view, 6> kWords = {"missing",  "refused",  "inactive",
                                                      "sendonly", "recvonly", "sendrecv"};
  return kWords[static_cast<std::size_t>(way)];
}

Way wayAt(TroubleFinder& finder, std::size_t message, std::uint32_t section) {
  if (finder.call().messages[message].sdpSize == 0) return Way::missing;
  const sdp::Document* const body = finder.bodies().of(message);
  return body == nullptr ? Way::missing : wayOf(*body, section);
}

/// Whether an answer can say no more, as the offer is.
bool followsFrom(Way offered, Way answered) {
  switch (offered) {
    case Way::sendonly:
      return answered == Way::recvonly || answered == Way::sendrecv;
    case Way::recvonly:
      return answered == Way::sendonly || answered == Way::sendrecv;
    case Way::inactive:
      return answered > Way::refused;
    case Way::refused:
      return answered == Way::refused;
    default:
      return false;
  }
}

}  // namespace

Way wayOf(const sdp::Document& body, std::uint32_t section) {
  const sdp::Section asked = body.section(section);
  if (!asked.isReadable()) return Way::missing;
  if (asked.isDisabled()) return Way::refused;
  switch (meantDirection(asked)) {
    case sdp::Direction::sendrecv:
      return Way::sendrecv;
    case sdp::Direction::sendonly:
      return Way::sendonly;
    case sdp::Direction::recvonly:
      return Way::recvonly;
    case sdp::Direction::inactive:
      break;
  }
  return Way::inactive;
}

Cause causeOf(TroubleFinder& finder, std::size_t answer, std::uint32_t section) {
  Cause cause;
  cause.place = {answer, section};
  cause.after = wayAt(finder, answer, section);
  for (int steps = 0; steps < kMostSteps; ++steps) {
    const std::size_t here = cause.place.message;
    if (const Exchange* const exchange = finder.answeredBy(here); exchange != nullptr) {
      const Way offered = wayAt(finder, exchange->offer, section);
      if (followsFrom(offered, cause.after) && exchange->offer < here) {
        cause.place.message = exchange->offer;
        cause.after = offered;
        continue;
      }
    }
    const std::size_t before = finder.cameAs(here);
    if (before == kNowhere) break;
    cause.before = wayAt(finder, before, section);
    cause.isHop = cause.before != Way::missing && cause.before != cause.after;
    if (cause.isHop || cause.before == Way::missing) break;
    cause.place.message = before;
  }
  return cause;
}

std::string textOf(const TroubleFinder& finder, const Cause& cause, std::string_view media) {
  const Flow& flow = finder.call().messages[cause.place.message].flow;
  std::string text = shownPiece(media, 16) + " ";
  if (cause.isHop) {
    const bool isRefused = cause.after == Way::refused;
    text.append("came as ").append(wordOf(cause.before)).append(isRefused ? " and was " : " and was made ");
  } else {
    text += "is ";
  }
  text += wordOf(cause.after);
  const std::string source = flow.source.address.text();
  if (cause.after == Way::refused) text += " with port 0";
  if (cause.isHop || cause.after == Way::refused) text += " by " + source;
  switch (cause.after) {
    case Way::sendonly:
      return text + ": " + flow.destination.address.text() + " does not send";
    case Way::recvonly:
      return text + ": " + source + " does not send";
    default:
      return text + ": nobody sends";
  }
}

}  // namespace tool
