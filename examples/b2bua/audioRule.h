#ifndef B2BUA_AUDIO_RULE_H
#define B2BUA_AUDIO_RULE_H

#include "mediaPolicy.h"

namespace b2bua {

/// Keeps the audio codecs of the policy, in its order, and of the telephone events and the comfort noise those that
/// run on the clock of a codec that stays.
/// @return why the body cannot be used; empty when it can
std::string restrictAudio(const Policy& policy, Body& body, OfferChanges& changes);

}  // namespace b2bua

#endif
