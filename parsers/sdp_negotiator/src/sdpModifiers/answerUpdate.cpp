#include <algorithm>
#include <bitset>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

// An answer follows a new offer that differs from the old one in its codecs only (RFC 3264 8).

namespace {

using namespace sdpneg;

/// Formats of an m-line that is rebuilt.
constexpr int kFormatLimit = 20;

/// Characters of a port that are compared.
constexpr std::size_t kPortLength = 5;

/// Codec values, without SDP_NO_CODEC.
using CodecSet = std::bitset<256>;
/// Formats of an m-line by their index.
using FormatSet = std::bitset<SDP_FORMAT_CAPACITY>;

unsigned short refuseFor(const char* reason) {
  trace::error("%s", reason);
  return 1;
}

unsigned short decodeOrRefuse(sDescription& description, const char* text, const char* refusal) {
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short start = 0;
  unsigned short end = 0;
  if (sdp_decodeOpt_r(&description, text, SDP_TYPE_UNKNOWN, error, false, start, end) == 0) return 0;
  refuseFor(refusal);
  return refuseFor(error);
}

bool isActive(const mDescription& media) { return portOf(media) != 0; }

bool isActiveAudio(const mDescription& media) {
  return media.mLine.mediaType == MEDIA_AUDIO && isActive(media);
}

std::uint8_t codecOf(const mDescription& media, int format) {
  return sdpParserMessage::convertCodec(sdp_MgetFormat(&media.mLine, format), &media.aLine);
}

bool haveDifferentAddresses(const sDescription& a, const sDescription& b) {
  const char* const first = sdp_CgetAddress(&a.cLine, 0);
  const char* const second = sdp_CgetAddress(&b.cLine, 0);
  return first != nullptr && second != nullptr && !equalNoCase(first, second);
}

std::string_view comparedPort(const mDescription& media) {
  return std::string_view(sdp_MgetPort(&media.mLine)).substr(0, kPortLength);
}

/// The port of the first active audio m-line; empty when there is none.
std::string_view firstAudioPort(const sDescription& offer) {
  for (const mDescription& media : mediaOf(offer)) {
    if (isActiveAudio(media)) return comparedPort(media);
  }
  return {};
}

/// What counts of a new offer.
struct Offer {
  int activeAudio = 0;
  std::string_view port;          ///< of the last active audio m-line
  CodecSet codecs;                ///< of all active audio m-lines
  const m_line* video = nullptr;  ///< the first one, active or not
};

Offer lookAtOffer(const sDescription& description) {
  Offer offer;
  for (const mDescription& media : mediaOf(description)) {
    if (media.mLine.mediaType == MEDIA_VIDEO && offer.video == nullptr) offer.video = &media.mLine;
    if (!isActiveAudio(media)) continue;
    ++offer.activeAudio;
    offer.port = comparedPort(media);
    for (int i = 0; i < sdp_MgetNoOfFormats(&media.mLine); ++i) offer.codecs.set(codecOf(media, i));
  }
  offer.codecs.reset(SDP_NO_CODEC);
  return offer;
}

/// What counts of an answer.
struct Answer {
  int activeAudio = 0;
  mDescription* audio = nullptr;           ///< the last active one
  std::uint8_t firstCodec = SDP_NO_CODEC;  ///< the first known one of all active audio m-lines
  bool hasVideo = false;
};

std::uint8_t firstCodecOf(const mDescription& media) {
  for (int i = 0; i < sdp_MgetNoOfFormats(&media.mLine); ++i) {
    if (const std::uint8_t codec = codecOf(media, i); codec != SDP_NO_CODEC) return codec;
  }
  return SDP_NO_CODEC;
}

/// @return nothing for an answer with an active secure m-line
std::optional<Answer> lookAtAnswer(sDescription& description) {
  Answer answer;
  for (mDescription& media : mediaOf(description)) {
    if (contains(transportOf(media), "RTP/SAVP") && isActive(media)) return std::nullopt;
    answer.hasVideo = answer.hasVideo || media.mLine.mediaType == MEDIA_VIDEO;
    if (!isActiveAudio(media)) continue;
    ++answer.activeAudio;
    answer.audio = &media;
    if (answer.firstCodec == SDP_NO_CODEC) answer.firstCodec = firstCodecOf(media);
  }
  return answer;
}

/// The formats whose codec is known and not in a set.
FormatSet formatsBeyond(const CodecSet& codecs, const mDescription& media) {
  FormatSet formats;
  for (int i = 0; i < sdp_MgetNoOfFormats(&media.mLine); ++i) {
    const std::uint8_t codec = codecOf(media, i);
    formats.set(static_cast<std::size_t>(i), codec != SDP_NO_CODEC && !codecs.test(codec));
  }
  return formats;
}

/// Whether an rtpmap or fmtp line goes with its format. Only the leading characters of the format are compared, so
/// the lines of payload type 9 go when 96 is dropped.
bool goesWith(const FormatSet& dropped, const m_line& mLine, const a_line::entry& line) {
  if (!textStartsWith(line.name, "rtpmap") && !textStartsWith(line.name, "fmtp")) return false;
  const std::string_view value = line.value;
  const std::size_t space = value.find(' ');
  if (space == npos) return false;
  for (std::size_t i = 0; i < dropped.size(); ++i) {
    if (dropped.test(i) && startsWith(mLine.formats[i], value.substr(0, space))) return true;
  }
  return false;
}

void dropAttributes(mDescription& media, const FormatSet& dropped) {
  a_line::entry* const begin = media.aLine.entries;
  const auto goes = [&](const a_line::entry& line) { return goesWith(dropped, media.mLine, line); };
  media.aLine.count =
      static_cast<int>(std::remove_if(begin, begin + sdp_AgetNoOfAs(&media.aLine), goes) - begin);
}

void dropFormats(m_line& line, const FormatSet& dropped) {
  int kept = 0;
  for (int i = 0; i < sdp_MgetNoOfFormats(&line) && kept < kFormatLimit; ++i) {
    if (dropped.test(static_cast<std::size_t>(i))) continue;
    if (kept != i) std::memcpy(line.formats[kept], line.formats[i], sizeof line.formats[i]);
    ++kept;
  }
  line.formatCount = kept;
}

/// Writes the answer anew without the dropped formats.
unsigned short rebuild(char* result, sDescription& answer, mDescription& audio, const FormatSet& dropped) {
  if (!sdp_isComplete(&answer)) {
    return refuseFor("sdpUpdateSdp(): The sdpAnswer holds more than can be written anew. Exiting.");
  }
  dropAttributes(audio, dropped);
  dropFormats(audio.mLine, dropped);
  SdpText text(result);
  return statusOf(replaceByEncoded(text, answer, "sdpUpdateSdp", "new sdpAnswer"));
}

/// Adds a rejected video m-line.
unsigned short rejectVideo(char* result, const m_line& offered) {
  const char* const format = sdp_MgetFormat(&offered, 0);
  if (format == nullptr) {
    return refuseFor("sdpUpdateSdp(): The video m-line of the newSdpOffer has no format. Exiting.");
  }
  SdpText text(result);
  FixedText<256> line;
  line.add(missingLineEnd(text.view())).add("m=video 0 RTP/AVP ").add(format).add("\r\n");
  if (text.append(line.view()) == Edit::done) return 0;
  return refuseFor("sdpUpdateSdp(): The video m-line does not fit the SDP buffer. Exiting.");
}

unsigned short answerVideo(char* result, const Answer& answer, const m_line& offered) {
  if (!answer.hasVideo) return rejectVideo(result, offered);
  return sdpModifications::sdpDisablePort(result, MEDIA_VIDEO, kIpVersionUnknown);
}

/// Applies to an answer's text what differs between two offers.
/// @param concerned whether the new offer dropped a codec or has video
unsigned short update(char* result, sDescription& answer, const sDescription& oldOffer,
                      const sDescription& newOffer, bool& concerned) {
  if (haveDifferentAddresses(oldOffer, newOffer)) {
    return refuseFor("Different IPs between the two Offers. Exiting");
  }
  const Offer offer = lookAtOffer(newOffer);
  if (!equalNoCase(firstAudioPort(oldOffer), offer.port)) {
    return refuseFor("Different ports between the two Offers. Exiting.");
  }
  if (offer.activeAudio > 1) {
    return refuseFor("More than one active non-secure audio m lines found in new offer. Exiting.");
  }
  const std::optional<Answer> own = lookAtAnswer(answer);
  if (!own) return refuseFor("The sdpAnswer contains security. Cannot update the SDP.");
  if (!offer.codecs.test(own->firstCodec)) {
    return refuseFor("The first codec in the sdpAnswer is not present to the SDP Offer.");
  }
  if (own->activeAudio > 1) {
    return refuseFor("More than one active non-secure audio m lines found in answer. Exiting.");
  }
  const FormatSet dropped = formatsBeyond(offer.codecs, *own->audio);
  concerned = dropped.any() || offer.video != nullptr;
  if (dropped.any() && rebuild(result, answer, *own->audio, dropped) != 0) return 1;
  return offer.video != nullptr ? answerVideo(result, *own, *offer.video) : 0;
}

/// The texts of an update.
struct Texts {
  const char* answer;
  const char* oldOffer;
  const char* newOffer;
};

/// Decodes the texts and updates a copy of the answer.
unsigned short updateCopy(char* result, const Texts& texts, bool& concerned) {
  return withDescription([&](sDescription& answer) {
    return withDescription([&](sDescription& oldOffer) {
      return withDescription([&](sDescription& newOffer) -> unsigned short {
        if (decodeOrRefuse(answer, texts.answer, "The sdpAnswer is malformed, exiting.") != 0) return 1;
        if (decodeOrRefuse(oldOffer, texts.oldOffer, "The oldSdpOffer is malformed, exiting.") != 0) return 1;
        if (decodeOrRefuse(newOffer, texts.newOffer, "The newSdpOffer is malformed, exiting.") != 0) return 1;
        return update(result, answer, oldOffer, newOffer, concerned);
      });
    });
  });
}

}  // namespace

unsigned short sdpModifications::sdpUpdateSdp(char* sdpAnswer, char* oldSdpOffer, char* newSdpOffer,
                                              int& length, unsigned short& oLineEnd, bool modifyOLine) {
  SdpText answer(sdpAnswer);
  length = static_cast<int>(answer.size());
  for (const SdpText& text : {answer, SdpText(oldSdpOffer), SdpText(newSdpOffer)}) {
    if (!adopted(text, "sdpUpdateSdp")) return 1;
  }
  // The answer stays as it is until everything has been done.
  char result[MAX_SDP_PROTOCOL_DATA_SIZE];
  result[answer.view().copy(result, sizeof result - 1)] = '\0';
  bool concerned = false;
  if (updateCopy(result, {sdpAnswer, oldSdpOffer, newSdpOffer}, concerned) != 0) return 1;
  unsigned short newEnd = oLineEnd;
  if (concerned && modifyOLine && sdpModifyOLine(result, nullptr, newEnd) != 0) {
    return refuseFor("Failed to update the o-line in the sdpAnswer.");
  }
  answer.replace({0, answer.size()}, result);
  oLineEnd = newEnd;
  length = static_cast<int>(answer.size());
  trace::progress("Exiting sdpUpdateAnswer()");
  return 0;
}
