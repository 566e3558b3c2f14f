// The formats that both sides have.

#include <algorithm>
#include <set>

#include "agreedFeedback.h"
#include "agreedParts.h"
#include "codecs.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// The formats of one section that another has as well.
/// @param areSame whether a format of the one is the same as one of the other
template <typename AreSame>
std::vector<AgreedCodec> commonOf(const CodecList& ours, const CodecList& theirs,
                                  const CommonFeedback& feedback, AreSame areSame) {
  std::vector<AgreedCodec> common;
  for (const Codec& codec : ours) {
    const Codec* same = theirs.find(codec.payload);
    if (same == nullptr || !areSame(codec, *same)) {
      const auto found = std::find_if(theirs.begin(), theirs.end(),
                                      [&](const Codec& candidate) { return areSame(codec, candidate); });
      if (found == theirs.end()) continue;
      same = &*found;
    }
    AgreedCodec agreed;
    agreed.payload = codec.payload;
    agreed.name = codec.name;
    agreed.clockRate = codec.clockRate;
    agreed.channels = codec.channels;
    agreed.fmtp = codec.parameters();
    agreed.feedback = feedback.of(ours.placeOf(codec), theirs.placeOf(*same));
    agreed.isCompanion = codec.isCompanion;
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
