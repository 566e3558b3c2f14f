#include <algorithm>
#include <iterator>

#include "mediaAddress.h"
#include "payloadCodecs.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/sdpParse.h"
#include "steps.h"
#include "text/find.h"
#include "text/lines.h"
#include "text/pairs.h"
#include "trace.h"
#include "vocabulary.h"
#include "withDescription.h"

// The parse: from a text to its description, and from that to a summary, step by step.

namespace sdpneg {
namespace {

constexpr std::int16_t kGainWithoutMedia = 4;

/// The number that stands behind a word of a codec's message; 0 where it is worded otherwise.
int numberBehind(std::string_view message, std::string_view word) {
  const std::size_t at = message.find(word);
  return at == npos ? 0 : numberOrZero<int>(message.substr(at + word.size()));
}

/// @return the codec's status
unsigned short decode(sDescription& description, const char* sdp, eSdpType type, sSdpParsedData& data) {
  char error[SDP_ERROR_TEXT_SIZE];
  const unsigned short status =
      sdp_decodeOpt_r(&description, sdp, type, error, false, data.oLineStart, data.oLineEnd);
  if (status != 0) {
    const std::string_view message = error;
    const std::string_view place = message.substr(0, message.find(':'));
    tell({.reason = SDP_REFUSED_NOT_DECODED,
          .what = message,
          .line = numberBehind(place, "line "),
          .column = numberBehind(place, "column ")});
  } else if (!sdp_isComplete(&description)) {
    trace::info("The SDP was not decoded completely: some of it was left out.");
  }
  return status;
}

/// The version that an address type stands for, its letters in either case.
eIPAddressVersion versionOfType(const char* type) {
  if (lower(type[0]) != 'i' || lower(type[1]) != 'p') return kIpVersionUnknown;
  if (type[2] == '4' && type[3] == '\0') return kIpVersion4;
  return type[2] == '6' && type[3] == '\0' ? kIpVersion6 : kIpVersionUnknown;
}

/// Whether an address is of the type that stands before it; types other than these two have any.
bool isOfItsType(const c_line& line, ReadAddress& addresses) {
  if (!hasConnection(line)) return true;
  const eIPAddressVersion version = versionOfType(addressTypeOf(line));
  return version == kIpVersionUnknown || addresses.versionOf(addressOf(line)) == version;
}

void takeSession(sSdpParsedData& data, Body& body, const BodyText& sdp) {
  data.bandwidth = sdp_BgetBandwidthValue(&body.description().bLine);
  data.sessionMode = body.sessionMode();
  findMikey(data, body);
  const bool mayMatch = findIce(data, body, sdp);
  // Without any ICE attribute there is no candidate either, and that leaves the match as it is.
  if (mayMatch && (data.sdpAttributes & (SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE)) != 0) {
    matchCandidates(data, body.description(), sdp.text);
  }
}

/// A body without m-lines names at most the address of its session; one that is invalid is traced only.
void finishWithoutMedia(sSdpParsedData& data, Body& body) {
  const c_line& line = body.description().cLine;
  if (hasConnection(line) && !takeAddress(data, body.addresses(), line)) mention(refusalOfAddress(line, 0));
  data.gainControl = kGainWithoutMedia;
  trace::progress("The gain control value is set to: %d", data.gainControl);
}

constexpr std::string_view kTelephoneEvent = "telephone-event";
/// Two characters of it that stand in few other places.
constexpr std::size_t kRarePair = kTelephoneEvent.find("-e");

BodyText lookAt(std::string_view text) {
  const PairCounts counts =
      countPairs(text, {'a', '=', true}, {kTelephoneEvent[kRarePair], kTelephoneEvent[kRarePair + 1]});
  return {text, counts.one, counts.other != 0};
}

bool holdsTelephoneEvent(const BodyText& sdp) {
  return sdp.mayHoldTelephoneEvent && findByPair(sdp.text, kTelephoneEvent, kRarePair) != npos;
}

/// Telephone events of any media count as an audio codec. In a full list they take the last place.
void addTelephoneEvent(sSdpParsedData& data, const BodyText& sdp, unsigned int& count) {
  const unsigned int listed = placesOf(kCodecTelephoneEvent, data) & ((1U << count) - 1);
  if (listed != 0 || !holdsTelephoneEvent(sdp)) return;
  if (count == MAX_SDP_NEGOTIATOR_AUDIO_CODECS) --count;
  data.audioCodec[count++] = kCodecTelephoneEvent;
}

unsigned short takeOtherMedia(sSdpParsedData& data, Body& body, int noOfMDs) {
  if (!body.holdsOtherThan(MEDIA_AUDIO)) return 0;
  const bool refused = takeVideo(data, body, noOfMDs) != 0 || takeMessage(data, body, noOfMDs) != 0 ||
                       takeText(data, body, noOfMDs) != 0 || takeImage(data, body, noOfMDs) != 0 ||
                       takeApplication(data, body, noOfMDs) != 0;
  return refused ? 1 : 0;
}

/// The audio codecs and the media that follow them, in the order in which they overwrite each other.
/// @return 1 for a port or address that is refused
unsigned short takeMedia(sSdpParsedData& data, Body& body, const BodyText& sdp, int noOfMDs) {
  findSecureMedia(data, body, noOfMDs);
  unsigned int count = 0;
  unsigned char periods[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
  std::fill(std::begin(periods), std::end(periods), SDP_PACKETIZATION_NOT_SET);
  if (takeAudio(data, body, count, noOfMDs, periods) != 0) return 1;
  addTelephoneEvent(data, sdp, count);
  if (takeOtherMedia(data, body, noOfMDs) != 0) return 1;
  // All codecs get the one period, also where the body lists one per codec or a range.
  std::fill_n(data.packetizationPeriod, count, periods[0]);
  return 0;
}

/// Media that indicate no version have the session's.
void takeIPVersion(sSdpParsedData& data, Body& body) {
  unsigned int version = indicatedVersion(body);
  if (version == kIpVersionUnknown) {
    version = static_cast<unsigned int>(body.addresses().versionOf(addressOf(body.description().cLine)));
  }
  if (version == kIpVersion6) data.sdpAttributes |= SDP_ATTR_IPV6;
}

/// Whether the session's address and the number of m-lines let a body be analysed.
Refusal checkDescription(Body& body) {
  if (!isOfItsType(body.description().cLine, body.addresses())) {
    return {.reason = SDP_REFUSED_SESSION_ADDRESS_TYPE, .field = SDP_REFUSAL_FIELD_ADDRESS_TYPE};
  }
  constexpr int kMost = MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS;
  if (sdp_getNoOfMDs(&body.description()) <= kMost) return {};
  return {.reason = SDP_REFUSED_TOO_MANY_M_LINES, .limit = kMost, .section = kMost + 1};
}

}  // namespace

void takeOriginPlace(sSdpParsedData& data, const sDescription& description, std::string_view text) {
  data.oLineStart = 0;
  data.oLineEnd = 0;
  const std::size_t start = description.oLine.present != 0 ? findLine(text, kOriginLine) : npos;
  if (start == npos) return;
  const std::size_t end = lineAt(text, start).next();
  if (end > UINT16_MAX) return;
  data.oLineStart = static_cast<std::uint16_t>(start);
  data.oLineEnd = static_cast<std::uint16_t>(end);
}

unsigned short analyse(sSdpParsedData& data, const sDescription& description, std::string_view sdp) {
  const BodyText text = lookAt(sdp);
  Body body(description, BodyReading::whole);
  takeSession(data, body, text);
  if (const Refusal refusal = checkDescription(body)) return refuse(refusal);
  const int noOfMDs = sdp_getNoOfMDs(&description);
  if (noOfMDs == 0) {
    finishWithoutMedia(data, body);
    return 0;
  }
  if (takeMedia(data, body, text, noOfMDs) != 0) return 1;
  takeVideoList(data, body);
  takeIPVersion(data, body);
  trace::progress("Exiting sdpParse() method");
  return 0;
}

unsigned short parseText(sSdpParsedData& data, std::string_view sdp, eSdpType type) {
  return withDescription([&](sDescription& description) {
    const unsigned short status = decode(description, sdp.data(), type, data);
    return status != 0 ? status : analyse(data, description, sdp);
  });
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::sdpParse(const char* sdp, eSdpType type, sSdpParsedData& data) {
  return parseText(data, viewOf(sdp), type);
}
