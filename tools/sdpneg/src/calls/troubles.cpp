#include "calls/troubles.h"

#include <array>

#include "calls/troubleFinder.h"

namespace tool {
namespace {

constexpr std::array<TroubleRule, 13> kRules = {{
    {"no-common-codec", false, "an answer was taken, and has no codec that was offered"},
    {"private-address", false, "media are wanted at a private address, by a body for a public peer"},
    {"hop-lost-candidates", false, "a hop took ICE candidates away, and left the rest of ICE or the address"},
    {"hop-lost-keys", false, "a hop took keys away, and left the secure profile or the address"},
    {"profile-without-keys", false, "a hop made a profile secure, and there are no keys"},
    {"one-way", false, "the call began with media that do not go both ways, or without audio"},
    {"dtmf-clock", false, "both have telephone-event, at no common clock rate"},
    {"version-not-raised", false, "a later body differs, and the version of its o-line is not higher"},
    {"version-raised-without-change", true,
     "the version of an o-line is higher, and nothing else of the body differs"},
    {"hold-not-resumed", true, "the call ended while it was on hold"},
    {"retransmission-differs", false, "a message was sent again with another body"},
    {"t38-refused", true, "a change to fax by T.38 was refused"},
    {"not-all-told", true, "there are more troubles than are told, or more bodies than are looked at"},
}};

}  // namespace

std::span<const TroubleRule> troubleRules() { return kRules; }

void findTroubles(Call& call) {
  BodyCache bodies;
  bodies.begin(call);
  findTroubles(call, bodies);
}

void findTroubles(Call& call, BodyCache& bodies) {
  call.troubles.clear();
  TroubleFinder finder(call, bodies);
  findHopTroubles(finder);
  findDirectionTroubles(finder);
  findAddressTroubles(finder);
  findCodecTroubles(finder);
  findHoldTroubles(finder);
  findFaxTroubles(finder);
  findRepetitionTroubles(finder);
  findJudgedTroubles(finder);
  finder.finish();
}

}  // namespace tool
