#include <algorithm>
#include <span>

#include "refusal.h"
#include "sdpModifiers/codecLists.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/parse.h"
#include "trace.h"

// Which audio codecs a body offers, and in which order. The codec slots of the summary and the text change together.

namespace sdpneg {
namespace {

/// A codec list of at most 20 values, followed by zeros; what does not fit is left out.
class CodecList {
 public:
  void add(unsigned char codec) {
    if (count_ < MAX_SDP_NEGOTIATOR_AUDIO_CODECS) values_[count_++] = codec;
  }
  std::span<const unsigned char> values() const { return {values_, static_cast<std::size_t>(count_)}; }
  /// All 20.
  const unsigned char* data() const { return values_; }
  int count() const { return count_; }

 private:
  unsigned char values_[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {};
  int count_ = 0;
};

/// The given codecs that the body has, in the given order, and behind them telephone events and comfort noise of the
/// body. Empty when there are no common codecs.
CodecList inGivenOrder(std::span<const unsigned char> slots, std::span<const unsigned char> given) {
  CodecList result;
  for (const unsigned char codec : given) {
    if (holds(slots, codec)) result.add(codec);
  }
  if (result.count() == 0) return result;
  for (const unsigned char codec : slots) {
    if (isAlwaysKept(codec) && !holds(result.values(), codec)) result.add(codec);
  }
  return result;
}

/// The body's codecs that are given, with its telephone events and comfort noise, in its own order. Empty when there
/// are no common codecs besides those two.
CodecList inOwnOrder(std::span<const unsigned char> slots, std::span<const unsigned char> given) {
  CodecList result;
  bool common = false;
  for (const unsigned char codec : slots) {
    if (!isAlwaysKept(codec) && !holds(given, codec)) continue;
    common = common || !isAlwaysKept(codec);
    result.add(codec);
  }
  return common ? result : CodecList();
}

/// The slots with one codec moved to the front.
CodecList withFirst(std::span<const unsigned char> slots, unsigned char codec) {
  CodecList result;
  result.add(codec);
  bool moved = false;
  for (const unsigned char each : slots) {
    if (each == codec && !moved) {
      moved = true;
    } else {
      result.add(each);
    }
  }
  return result;
}

/// Puts codecs into the slots of a summary and drops the periods behind them.
void replaceAudioCodecs(sSdpParsedData& data, const unsigned char* codecs, int count) {
  std::fill(std::begin(data.audioCodec), std::end(data.audioCodec), SDP_NO_CODEC);
  std::copy_n(codecs, count, data.audioCodec);
  std::fill(data.packetizationPeriod + count, std::end(data.packetizationPeriod), SDP_PACKETIZATION_NOT_SET);
}

/// Puts a codec order into the text, which is not parsed again.
/// @return false when there is a text that cannot follow
bool orderText(cSdpNegotiator& object, const unsigned char* order, int count) {
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (object.getSDP(buffer, sizeof buffer) != 0) return !object.isSdpPresent();
  SdpText text(buffer);
  bool followed = statusOf(reorderCodecs(text, order)) == 0;
  if (count != 0) {
    followed = followed && object.setRawSDP(buffer) == 0;
  } else {
    // An order without codecs leaves none to the m-line: the text stays that it was tried on.
    object.getRawSDP(buffer, sizeof buffer);
  }
  trace::debug("Updated SDP: %s", buffer);
  return followed;
}

/// Puts a codec order into slots and text. The object stays as it was when its text cannot follow.
/// @param data the object's own
void applyCodecOrder(cSdpNegotiator& object, sSdpParsedData& data, const unsigned char* order, int count) {
  const cSdpNegotiator before = object;
  replaceAudioCodecs(data, order, count);
  if (!orderText(object, order, count)) object = before;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpRestrictAudioCodecsTo(const unsigned char* codecs, int count,
                                                        bool reorder) {
  trace::progress("Request to restrict audio codecs from the SDP.");
  if (codecs == nullptr) {
    tell({.reason = SDP_REFUSED_NO_CODECS});
    return 0;
  }
  const auto slots = valuesOf(parsedData.audioCodec, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  const auto given = valuesOf(codecs, count);
  const CodecList result = reorder ? inGivenOrder(slots, given) : inOwnOrder(slots, given);
  if (result.count() == 0) {
    tell({.reason = SDP_REFUSED_NO_COMMON_CODEC});
    return 0;
  }
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  buffer[0] = '\0';
  // An empty object has an empty text. A part of one would be taken for all of it.
  if (getSDP(buffer, sizeof buffer) != 0 && isSdpPresent()) return 0;
  replaceAudioCodecs(parsedData, result.data(), result.count());
  SdpText text(buffer);
  const auto edit = [&](SdpText& body, sDescription& description, bool& describes) {
    statusOf(reorder ? reorderCodecs(body, result.data(), description, describes)
                     : removeCodecs(body, result.data(), description, describes));
  };
  if (!editAndParseDecoded({*this, parsedData, rawSdp}, text, edit)) sdpParse(buffer, SDP_TYPE_UNKNOWN);
  return 1;
}

unsigned short cSdpNegotiator::sdpChangeAudioCodecPreference(unsigned char codec) {
  const char* const name = getAudioCodecText(codec);
  if (codec == SDP_NO_CODEC || isAlwaysKept(codec)) {
    tell({.reason = SDP_REFUSED_CODEC_NOT_TO_PREFER, .what = name});
    return 0;
  }
  if (parsedData.audioCodec[0] == codec) return 0;
  trace::debug("Request to change AudioCodec %s preference", name);
  const auto slots = valuesOf(parsedData.audioCodec, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  if (!holds(slots, codec)) {
    tell({.reason = SDP_REFUSED_CODEC_NOT_IN_BODY, .what = name});
    return 0;
  }
  const CodecList order = withFirst(slots, codec);
  trace::debug("Num Of Final Codecs= %d", order.count());
  applyCodecOrder(*this, parsedData, order.data(), order.count());
  return 0;
}

unsigned short cSdpNegotiator::sdpReorderAudioCodecPreference(const unsigned char* codecs, int count) {
  if (codecs == nullptr || codecs[0] == SDP_NO_CODEC) {
    tell({.reason = SDP_REFUSED_INVALID_ORDER});
    return 0;
  }
  trace::debug("Request to change AudioCodec preference");
  trace::debug("Num Of Final Codecs= %d", count);
  // The list is taken as it is: what the slots held is not asked.
  unsigned char order[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {};
  const int taken = std::clamp(count, 0, MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  std::copy_n(codecs, taken, order);
  applyCodecOrder(*this, parsedData, order, taken);
  return 0;
}
