// The formats that both sides have.

#include <algorithm>
#include <unordered_set>

#include "agreedParts.h"
#include "codecs.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

std::vector<std::string> feedbackOf(const Format& format, const std::optional<Format>& other) {
  std::vector<std::string> common;
  if (!other) return common;
  std::unordered_set<std::string_view> theirs;
  for (const std::string_view value : other->feedback()) theirs.insert(value);
  for (const std::string_view value : format.feedback()) {
    if (theirs.erase(value) != 0) common.emplace_back(value);
  }
  return common;
}

/// The formats of one section that another has as well.
/// @param theirs codecs of `other`
std::vector<AgreedCodec> commonOf(const Section& section, const CodecList& ours, const Section& other,
                                  const CodecList& theirs) {
  std::vector<AgreedCodec> common;
  for (const Codec& codec : ours) {
    const Codec* same = theirs.find(codec.payload);
    if (same == nullptr || !areSame(ours, codec, theirs, *same)) {
      const auto found = std::find_if(theirs.begin(), theirs.end(), [&](const Codec& candidate) {
        return areSame(ours, codec, theirs, candidate);
      });
      if (found == theirs.end()) continue;
      same = &*found;
    }
    const std::optional<Format> format = section.format(codec.payload);
    if (!format) continue;
    AgreedCodec agreed;
    agreed.payload = codec.payload;
    agreed.name = codec.name;
    agreed.clockRate = codec.clockRate;
    agreed.channels = codec.channels;
    agreed.fmtp = format->fmtp.value_or(std::string_view());
    agreed.feedback = feedbackOf(*format, other.format(same->payload));
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
  std::unordered_set<std::string> theirs;
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
  agreed.local.codecs = commonOf(local, ours, remote, theirs);
  agreed.remote.codecs = commonOf(remote, theirs, local, ours);
}

}  // namespace sdp::exchange
