// The formats that both sides have.

#include <algorithm>
#include <set>

#include "agreedFeedback.h"
#include "agreedParts.h"
#include "codecs.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The codec of a list that is the same as one of another list, under the same number first; null where there is none.
/// @param areSame whether a format of the other list is the same as one of this
template <typename AreSame>
const Codec* sameOf(const Codec& codec, const CodecList& theirs, AreSame areSame) {
  const Codec* const numbered = theirs.find(codec.payload);
  if (numbered != nullptr && areSame(codec, *numbered)) return numbered;
  const auto found = std::find_if(theirs.begin(), theirs.end(),
                                  [&](const Codec& candidate) { return areSame(codec, candidate); });
  return found == theirs.end() ? nullptr : &*found;
}

/// Whether nothing but parameters, or an rtpmap that is missing, makes two formats of one number differ.
bool areNamedAlike(const Codec& x, const Codec& y) {
  return x.name.empty() || y.name.empty() || sdpneg::equalNoCase(x.name, y.name);
}

/// The codec under the number of one that has no other in common: by its name it is meant, and what is wrong with its
/// parameters the judge tells. Null where it is none.
template <typename AreSame>
const Codec* meantOf(const CodecList& ours, const Codec& codec, const CodecList& theirs, AreSame areSame) {
  const Codec* const numbered = theirs.find(codec.payload);
  if (numbered == nullptr || !areNamedAlike(codec, *numbered)) return nullptr;
  if (codec.family == Family::rtx || numbered->family == Family::rtx) {
    const Codec* const served = ours.find(codec.apt());
    const Codec* const other = theirs.find(numbered->apt());
    if (served == nullptr || other == nullptr || served->payload != other->payload) return nullptr;
    if (!areNamedAlike(*served, *other)) return nullptr;
  }
  const auto areSameBack = [&](const Codec& other, const Codec& own) { return areSame(own, other); };
  return sameOf(*numbered, ours, areSameBack) == nullptr ? numbered : nullptr;
}

/// The formats of one section that another has as well.
/// @param areSame whether a format of the one is the same as one of the other
template <typename AreSame>
std::vector<AgreedCodec> commonOf(const CodecList& ours, const CodecList& theirs,
                                  const CommonFeedback& feedback, AreSame areSame) {
  std::vector<AgreedCodec> common;
  for (const Codec& codec : ours) {
    const Codec* same = sameOf(codec, theirs, areSame);
    if (same == nullptr) same = meantOf(ours, codec, theirs, areSame);
    if (same == nullptr) continue;
    const Codec& named = codec.name.empty() ? *same : codec;
    AgreedCodec agreed;
    agreed.payload = codec.payload;
    agreed.name = named.name;
    agreed.clockRate = named.clockRate;
    agreed.channels = named.channels;
    agreed.fmtp = codec.parameters();
    agreed.feedback = feedback.of(ours.placeOf(codec), theirs.placeOf(*same));
    agreed.isCompanion = named.isCompanion;
    common.push_back(std::move(agreed));
  }
  return common;
}

/// Formats of sections without RTP are words.
std::vector<AgreedCodec> commonWords(const Section& section, const Section& other) {
  const auto lower = [](std::string_view word) {
    std::string text(word);
    std::transform(text.begin(), text.end(), text.begin(), sdpneg::lower);
    return text;
  };
  std::set<std::string> theirs;
  for (const Format& format : other.formats()) theirs.insert(lower(format.format));
  std::vector<AgreedCodec> common;
  for (const Format& format : section.formats()) {
    if (theirs.erase(lower(format.format)) == 0) continue;
    common.emplace_back().payload = format.format;
  }
  return common;
}

}  // namespace

void fillCodecs(AgreedSection& agreed, const Section& local, const Section& remote) {
  if (!local.isRtp() || !remote.isRtp()) {
    agreed.local.codecs = commonWords(local, remote);
    agreed.remote.codecs = commonWords(remote, local);
    return;
  }
  const CodecList ours(local);
  const CodecList theirs(remote);
  const FeedbackValues ourFeedback(local, ours);
  const FeedbackValues theirFeedback(remote, theirs);
  Sameness sameness(ours, theirs);
  agreed.local.codecs =
      commonOf(ours, theirs, CommonFeedback(ourFeedback, theirFeedback),
               [&](const Codec& own, const Codec& other) { return sameness.areSame(own, other); });
  agreed.remote.codecs =
      commonOf(theirs, ours, CommonFeedback(theirFeedback, ourFeedback),
               [&](const Codec& other, const Codec& own) { return sameness.areSame(own, other); });
}

}  // namespace sdp::exchange
