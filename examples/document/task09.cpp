// Works through a policy that names requests, as it may stand in a file of settings. All of it is done, or nothing.

#include <utility>

#include "bodies.h"

namespace {

constexpr std::string_view kPolicy[] = {
    "canonical",
    "keep-codecs PCMA,PCMU,telephone-event audio",
    "disable video",
    "strip-attributes x-*",
};

/// Tells faults of the policy when it is loaded, before there is a call.
bool isRight() {
  for (const std::string_view request : kPolicy) {
    if (const sdp::Refusal refusal = sdp::checkArguments(request)) {
      std::cout << request << ": " << textOf(refusal.reason) << '\n';
      return false;
    }
  }
  return true;
}

bool apply(sdp::Document& offer) {
  sdp::Document changed = offer;  // each request is done whole or not at all; the copy makes it so for all
  for (const std::string_view request : kPolicy) {
    if (sdp::perform(changed, request)) {
      std::cout << request << ": " << changed.explanation() << '\n';
      return false;
    }
  }
  offer = std::move(changed);
  return true;
}

}  // namespace

int main() {
  sdp::Document offer;
  if (!isRight() || offer.read(kPhoneOffer) || !apply(offer)) return 1;
  for (const sdp::Section& section : offer.sections()) {
    std::cout << section.lines().begin()->content << '\n';
  }
  return 0;
}
