#include <algorithm>
#include <iterator>

#include "mediaAddress.h"
#include "mediaList.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
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

/// Whether an address is of the type that stands before it; types other than these two have any.
bool isOfItsType(const c_line& line) {
  const char* type = sdp_CgetAddressType(&line, 0);
  const char* address = sdp_CgetAddress(&line, 0);
  if (type == nullptr || address == nullptr) return true;
  if (equalNoCase(type, kIp4)) return cMsgIPAddress::isIPv4(address);
  return !equalNoCase(type, kIp6) || cMsgIPAddress::isIPv6(address);
}

void takeSession(sSdpParsedData& data, const sDescription& description, const char* sdp) {
  data.bandwidth = sdp_BgetBandwidthValue(&description.bLine);
  data.sessionMode =
      firstGiven(sdpParserMessage::getConnectionMode(&description.aLine), CONNECTION_MODE_SENDRECV);
  sdpParserMessage::checkForMickey(data, description);
  sdpParserMessage::checkIce(sdp, data);
  // Without any ICE attribute there is no candidate either, and that leaves the match as it is.
  if ((data.sdpAttributes & (SDP_ATTR_ICE_LITE | SDP_ATTR_FULL_ICE)) != 0) {
    sdpParserMessage::checkFullIceAttributes(sdp, data, description);
  }
}

/// A body without m-lines names at most the address of its session; one that is invalid is traced only.
void finishWithoutMedia(sSdpParsedData& data, const sDescription& description) {
  if (hasConnection(description.cLine)) {
    const Refusal refusal = takeAddress(data, description.cLine, 0);
    if (refusal) mention(refusal);
  }
  data.gainControl = kGainWithoutMedia;
  trace::progress("The gain control value is set to: %d", data.gainControl);
}

/// Telephone events of any media count as an audio codec. In a full list they take the last place.
void addTelephoneEvent(sSdpParsedData& data, std::string_view sdp, unsigned int& count) {
  std::uint8_t* const end = data.audioCodec + count;
  if (std::find(data.audioCodec, end, kCodecTelephoneEvent) != end || !contains(sdp, "telephone-event"))
    return;
  if (count == MAX_SDP_NEGOTIATOR_AUDIO_CODECS) --count;
  data.audioCodec[count++] = kCodecTelephoneEvent;
}

unsigned short takeOtherMedia(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  using Finder = unsigned short (*)(sSdpParsedData&, sDescription&, int);
  static constexpr Finder finders[] = {sdpParserMessage::findFirstVideo, sdpParserMessage::findFirstMsg,
                                       sdpParserMessage::findFirstTxt, sdpParserMessage::findFirstImage,
                                       sdpParserMessage::findApplication};
  for (const Finder find : finders) {
    if (find(data, description, noOfMDs) != 0) return 1;
  }
  return 0;
}

/// The audio codecs and the media that follow them, in the order in which they overwrite each other.
/// @return 1 for a port or address that is refused
unsigned short takeMedia(sSdpParsedData& data, sDescription& description, const char* sdp, int noOfMDs) {
  sdpParserMessage::containsSecureMedia(data, description, noOfMDs);
  unsigned int count = 0;
  unsigned char periods[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
  std::fill(std::begin(periods), std::end(periods), SDP_PACKETIZATION_NOT_SET);
  if (sdpParserMessage::findFirstAudio(data, description, count, noOfMDs, periods) != 0) return 1;
  addTelephoneEvent(data, viewOf(sdp), count);
  if (takeOtherMedia(data, description, noOfMDs) != 0) return 1;
  // All codecs get the one period, also where the body lists one per codec or a range.
  std::fill_n(data.packetizationPeriod, count, periods[0]);
  return 0;
}

/// Media that indicate no version have the session's.
void takeIPVersion(sSdpParsedData& data, const sDescription& description) {
  const unsigned int version = sdpParserMessage::checkMediaStreamsForIPIndication(description);
  const bool isIPv6 = version == kIpVersionUnknown
                          ? cMsgIPAddress::isIPv6(sdp_CgetAddress(&description.cLine, 0))
                          : version == kIpVersion6;
  if (isIPv6) data.sdpAttributes |= SDP_ATTR_IPV6;
}

/// Whether the session's address and the number of m-lines let a body be analysed.
Refusal checkDescription(const sDescription& description) {
  if (!isOfItsType(description.cLine)) {
    return {.reason = SDP_REFUSED_SESSION_ADDRESS_TYPE, .field = SDP_REFUSAL_FIELD_ADDRESS_TYPE};
  }
  constexpr int kMost = MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS;
  if (sdp_getNoOfMDs(&description) <= kMost) return {};
  return {.reason = SDP_REFUSED_TOO_MANY_M_LINES, .limit = kMost, .section = kMost + 1};
}

unsigned short analyse(sSdpParsedData& data, sDescription& description, const char* sdp) {
  sdpParserMessage::sdpPreProcessDescription(description);
  takeSession(data, description, sdp);
  if (const Refusal refusal = checkDescription(description)) return refuse(refusal);
  const int noOfMDs = sdp_getNoOfMDs(&description);
  if (noOfMDs == 0) {
    finishWithoutMedia(data, description);
    return 0;
  }
  if (takeMedia(data, description, sdp, noOfMDs) != 0) return 1;
  takeVideoList(data, description);
  takeIPVersion(data, description);
  trace::progress("Exiting sdpParse() method");
  return 0;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::sdpParse(const char* sdp, eSdpType type, sSdpParsedData& data) {
  return withDescription([&](sDescription& description) {
    const unsigned short status = decode(description, sdp, type, data);
    return status != 0 ? status : analyse(data, description, sdp);
  });
}
