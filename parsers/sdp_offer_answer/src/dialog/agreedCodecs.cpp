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

/// The codec of a list that is the same as one of another list, under the same number first; null where there is none.
const Codec* sameOf(const CodecList& ours, const Codec& codec, const CodecList& theirs) {
  const Codec* const numbered = theirs.find(codec.payload);
  if (numbered != nullptr && areSame(ours, codec, theirs, *numbered)) return numbered;
  const auto found = std::find_if(theirs.begin(), theirs.end(), [&](const Codec& candidate) {
    return areSame(ours, codec, theirs, candidate);
  });
  return found == theirs.end() ? nullptr : &*found;
}

/// Whether nothing but parameters, or an rtpmap that is missing, makes two formats of one number differ.
bool areNamedAlike(const Codec& x, const Codec& y) {
  return x.name.empty() || y.name.empty() || sdpneg::equalNoCase(x.name, y.name);
}

/// The codec under the number of one that has no other in common: by its name it is meant, and what is wrong with its
/// parameters the judge tells. Null where it is none.
const Codec* meantOf(const CodecList& ours, const Codec& codec, const CodecList& theirs) {
  const Codec* const numbered = theirs.find(codec.payload);
  if (numbered == nullptr || !areNamedAlike(codec, *numbered)) return nullptr;
  if (codec.family == Family::rtx || numbered->family == Family::rtx) {
    const Codec* const served = ours.find(codec.apt());
    const Codec* const other = theirs.find(numbered->apt());
    if (served == nullptr || other == nullptr || served->payload != other->payload) return nullptr;
    if (!areNamedAlike(*served, *other)) return nullptr;
  }
  return sameOf(theirs, *numbered, ours) == nullptr ? numbered : nullptr;
}

/// The formats of one section that another has as well.
/// @param theirs codecs of `other`
std::vector<AgreedCodec> commonOf(const Section& section, const CodecList& ours, const Section& other,
                                  const CodecList& theirs) {
  std::vector<AgreedCodec> common;
  for (const Codec& codec : ours) {
    const Codec* same = sameOf(ours, codec, theirs);
    if (same == nullptr) same = meantOf(ours, codec, theirs);
    if (same == nullptr) continue;
    const std::optional<Format> format = section.format(codec.payload);
    if (!format) continue;
    AgreedCodec agreed;
    agreed.payload = codec.payload;
    const Codec& named = codec.name.empty() ? *same : codec;
    agreed.name = named.name;
    agreed.clockRate = named.clockRate;
    agreed.channels = named.channels;
    agreed.fmtp = format->fmtp.value_or(std::string_view());
    agreed.feedback = feedbackOf(*format, other.format(same->payload));
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
