#include <algorithm>
#include <iterator>

#include "descriptionView.h"
#include "sdpNegotiatorParser.h"
#include "trace.h"
#include "vocabulary.h"
#include "withDescription.h"

using namespace sdpneg;

namespace sdpneg {
namespace {

constexpr std::int16_t gainWithoutMedia = 4;

unsigned short decode(sDescription& description, const char* sdp, eSdpType type, sSdpParsedData& data) {
  char error[SDP_ERROR_TEXT_SIZE];
  const unsigned short status =
      sdp_decodeOpt_r(&description, sdp, type, error, false, data.oLineStart, data.oLineEnd);
  if (status != 0) {
    trace::error("%s", error);
  } else if (!sdp_isComplete(&description)) {
    trace::info("The SDP was not decoded completely: some of it was left out.");
  }
  return status;
}

/// Whether an address is of the type that stands before it; types other than "IP4" and "IP6" have any.
bool isOfItsType(const c_line& line) {
  const char* type = sdp_CgetAddressType(&line, 0);
  const char* address = sdp_CgetAddress(&line, 0);
  if (type == nullptr || address == nullptr) return true;
  if (equalNoCase(type, "IP4")) return cMsgIPAddress::isIPv4(address);
  return !equalNoCase(type, "IP6") || cMsgIPAddress::isIPv6(address);
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
unsigned short finishWithoutMedia(sSdpParsedData& data, const sDescription& description) {
  if (hasConnection(description.cLine)) sdpParserMessage::getIpAddr(data, description.cLine);
  data.gainControl = gainWithoutMedia;
  trace::progress("The gain control value is set to: %d", data.gainControl);
  return 0;
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

void takeVideo(sSdpParsedData& data, const mediaStruct& video) {
  if (video.mode == CONNECTION_MODE_RECVONLY) data.sdpAttributes |= SDP_ATTR_RECVONLY_VIDEO;
  data.videoBandwidth = std::max(data.videoBandwidth, video.bandwidth);
  for (const codecDetailStruct& detail : video.codecs) {
    if (detail.codec == kCodecH264) data.h264Profile = std::max(data.h264Profile, detail.profile);
  }
}

unsigned short takeVideoList(sSdpParsedData& data, const sDescription& description) {
  std::vector<mediaStruct> media;
  const unsigned short status = sdpParserMessage::getMedia(description, media);
  for (const mediaStruct& each : media) {
    if (each.mediaType == MEDIA_VIDEO) takeVideo(data, each);
  }
  return status;
}

/// Media that indicate no version have the session's.
void takeIPVersion(sSdpParsedData& data, const sDescription& description) {
  const unsigned int version = sdpParserMessage::checkMediaStreamsForIPIndication(description);
  const bool isIPv6 = version == sdpneg::kIpVersionUnknown
                          ? cMsgIPAddress::isIPv6(sdp_CgetAddress(&description.cLine, 0))
                          : version == sdpneg::kIpVersion6;
  if (isIPv6) data.sdpAttributes |= SDP_ATTR_IPV6;
}

unsigned short analyse(sSdpParsedData& data, sDescription& description, const char* sdp) {
  sdpParserMessage::sdpPreProcessDescription(description);
  takeSession(data, description, sdp);
  if (!isOfItsType(description.cLine)) {
    trace::error("The c-line is malformed. There is no correspondance between IP address and IP type.");
    return 1;
  }
  const int noOfMDs = sdp_getNoOfMDs(&description);
  if (noOfMDs == 0) return finishWithoutMedia(data, description);
  if (noOfMDs > MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS) {
    trace::error("The noOfMDs > %d; data corrupted!", MAX_SDP_NEGOTIATOR_MEDIA_DESCRIPTIONS);
    return 1;
  }
  if (takeMedia(data, description, sdp, noOfMDs) != 0) return 1;
  const unsigned short status = takeVideoList(data, description);
  takeIPVersion(data, description);
  trace::progress("Exiting sdpParse() method");
  return status;
}

}  // namespace
}  // namespace sdpneg

unsigned short sdpParserMessage::sdpParse(const char* sdp, eSdpType type, sSdpParsedData& data) {
  return sdpneg::withDescription([&](sDescription& description) {
    const unsigned short status = sdpneg::decode(description, sdp, type, data);
    return status != 0 ? status : sdpneg::analyse(data, description, sdp);
  });
}
