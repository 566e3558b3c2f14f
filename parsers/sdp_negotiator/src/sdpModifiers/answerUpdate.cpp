#include "sdpModifiers/answerUpdate.h"

#include <algorithm>
#include <bitset>
#include <cstdint>
#include <cstring>
#include <optional>
#include <string_view>
#include <utility>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/codecText.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/ports.h"
#include "sdpNegotiatorParser.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/withDescription.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

// An answer follows a new offer that differs from the old one in its codecs only (RFC 3264 8).

namespace sdpneg {

namespace {

constexpr const char* kOperation = "sdpUpdateSdp";

/// Formats of an m-line that is rebuilt.
constexpr int kFormatLimit = 20;

/// Characters of a port that are compared.
constexpr std::size_t kPortLength = 5;

/// Codec values, without SDP_NO_CODEC.
using CodecSet = std::bitset<256>;
/// Formats of an m-line by their index.
using FormatSet = std::bitset<SDP_FORMAT_CAPACITY>;

bool isActive(const mDescription& media) { return portOf(media) != 0; }

bool isActiveAudio(const mDescription& media) {
  return media.mLine.mediaType == MEDIA_AUDIO && isActive(media);
}

std::uint8_t codecOf(const mDescription& media, int format) {
  return sdpParserMessage::convertCodec(sdp_MgetFormat(&media.mLine, format), &media.aLine);
}

std::string_view comparedPort(const mDescription& media) {
  return std::string_view(sdp_MgetPort(&media.mLine)).substr(0, kPortLength);
}

/// The address of a session; nothing without one.
using Address = std::optional<FixedText<SDP_ADDRESS_SIZE>>;
/// As much of a port as is compared.
using Port = FixedText<kPortLength + 1>;

Address sessionAddress(const sDescription& offer) {
  const char* const address = sdp_CgetAddress(&offer.cLine, 0);
  return address != nullptr ? Address(FixedText<SDP_ADDRESS_SIZE>().add(address)) : std::nullopt;
}

bool areDifferent(const Address& a, const Address& b) { return a && b && !equalNoCase(a->view(), b->view()); }

/// What counts of an old offer.
struct OldOffer {
  Address address;
  Port port;  ///< of the first active audio m-line; empty when there is none
};

OldOffer lookAtOldOffer(const sDescription& description) {
  OldOffer offer;
  offer.address = sessionAddress(description);
  for (const mDescription& media : mediaOf(description)) {
    if (!isActiveAudio(media)) continue;
    offer.port.add(comparedPort(media));
    break;
  }
  return offer;
}

/// What counts of a new offer.
struct Offer {
  Address address;
  int activeAudio = 0;
  Port port;              ///< of the last active audio m-line
  CodecSet codecs;        ///< of all active audio m-lines
  bool hasVideo = false;  ///< active or not
  FixedText<SDP_FORMAT_SIZE>
      videoFormat;  ///< the first one of the first video m-line; empty when it has none
};

Offer lookAtOffer(const sDescription& description) {
  Offer offer;
  offer.address = sessionAddress(description);
  for (const mDescription& media : mediaOf(description)) {
    if (media.mLine.mediaType == MEDIA_VIDEO && !offer.hasVideo) {
      offer.hasVideo = true;
      offer.videoFormat.add(viewOf(sdp_MgetFormat(&media.mLine, 0)));
    }
    if (!isActiveAudio(media)) continue;
    ++offer.activeAudio;
    offer.port = Port().add(comparedPort(media));
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
    if (contains(transportOf(media), kSecureTransport) && isActive(media)) return std::nullopt;
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
Refusal rebuild(SdpText& text, sDescription& answer, mDescription& audio, const FormatSet& dropped) {
  if (!sdp_isComplete(&answer)) return {.reason = SDP_REFUSED_ANSWER_NOT_HELD};
  dropAttributes(audio, dropped);
  dropFormats(audio.mLine, dropped);
  return replaceByEncoded(text, answer, kOperation, "new sdpAnswer");
}

/// Adds a rejected video m-line.
Refusal rejectVideo(SdpText& text, std::string_view format) {
  if (format.empty()) return {.reason = SDP_REFUSED_VIDEO_WITHOUT_FORMAT};
  FixedText<256> line;
  line.add(missingLineEnd(text.view())).add("m=video 0 RTP/AVP ").add(format).add("\r\n");
  return text.append(line.view()) == Edit::done ? Refusal() : refusalOfRoom(kOperation, "video m-line");
}

Refusal answerVideo(SdpText& text, const Answer& answer, const Offer& offer) {
  if (!answer.hasVideo) return rejectVideo(text, offer.videoFormat.view());
  return setMediaPort(text, MEDIA_VIDEO, kIpVersionUnknown, sdpModifications::MEDIA_SECURITY_ANY, 0);
}

/// Why an answer cannot follow an offer.
Refusal refusalOfAnswer(const std::optional<Answer>& answer, const Offer& offer) {
  if (!answer) return {.reason = SDP_REFUSED_ANSWER_IS_SECURE};
  if (!offer.codecs.test(answer->firstCodec)) return {.reason = SDP_REFUSED_ANSWER_CODEC_NOT_OFFERED};
  if (answer->activeAudio > 1) return {.reason = SDP_REFUSED_ANSWER_WITH_MANY_AUDIO};
  return {};
}

/// Applies to an answer's text what differs between two offers.
/// @param concerned whether the new offer dropped a codec or has video
Refusal update(SdpText& text, sDescription& answer, const OldOffer& oldOffer, const Offer& offer,
               bool& concerned) {
  if (areDifferent(oldOffer.address, offer.address)) {
    return {.reason = SDP_REFUSED_OFFERS_DIFFER_IN_ADDRESS, .field = SDP_REFUSAL_FIELD_ADDRESS};
  }
  if (!equalNoCase(oldOffer.port.view(), offer.port.view())) {
    return {.reason = SDP_REFUSED_OFFERS_DIFFER_IN_PORT, .field = SDP_REFUSAL_FIELD_PORT};
  }
  if (offer.activeAudio > 1) return {.reason = SDP_REFUSED_OFFER_WITH_MANY_AUDIO};
  const std::optional<Answer> own = lookAtAnswer(answer);
  if (const Refusal refusal = refusalOfAnswer(own, offer)) return refusal;
  const FormatSet dropped = formatsBeyond(offer.codecs, *own->audio);
  concerned = dropped.any() || offer.hasVideo;
  if (dropped.any()) {
    if (const Refusal refusal = rebuild(text, answer, *own->audio, dropped)) return refusal;
  }
  return offer.hasVideo ? answerVideo(text, *own, offer) : Refusal();
}

/// Decodes a text and calls `work` with its description. Never inlined: the descriptions of two texts would stand on
/// the stack together.
/// @return the codec's refusal, or what `work` returns
template <typename Work>
[[gnu::noinline]] Refusal withDecoded(const SdpText& text, Work work) {
  return withDescription([&](sDescription& description) -> Refusal {
    const Refusal refusal = decode(description, text.view());
    return refusal ? refusal : work(description);
  });
}

/// @return the refusal of a text that cannot be decoded
template <typename Result>
Refusal lookAt(const SdpText& text, Result (*look)(const sDescription&), Result& result) {
  return withDecoded(text, [&](const sDescription& description) -> Refusal {
    result = look(description);
    return {};
  });
}

/// The refusal of one of the texts. One of the codec is told first, with the text's name, and gives way to another.
Refusal named(Refusal refusal, const char* which) {
  if (refusal.reason != SDP_REFUSED_BODY) return refusal;
  tell({.reason = SDP_REFUSED_MALFORMED_ANSWER, .what = which});
  refusal.reason = SDP_REFUSED_NOT_DECODED;
  return refusal;
}

/// The refusal of an offer, with its name. A malformed answer is told in its place, although it is decoded behind the
/// offers.
Refusal namedOffer(const SdpText& answer, const Refusal& refusal, const char* which) {
  const Refusal ofAnswer = withDecoded(answer, [](const sDescription&) { return Refusal(); });
  return ofAnswer ? named(ofAnswer, "sdpAnswer") : named(refusal, which);
}

/// Decodes the texts, one after the other, and updates the answer's.
Refusal decodeAndUpdate(SdpText& text, const SdpText& oldText, const SdpText& newText, bool& concerned) {
  OldOffer oldOffer;
  Offer offer;
  if (const Refusal refusal = lookAt(oldText, lookAtOldOffer, oldOffer)) {
    return namedOffer(text, refusal, "oldSdpOffer");
  }
  if (const Refusal refusal = lookAt(newText, lookAtOffer, offer)) {
    return namedOffer(text, refusal, "newSdpOffer");
  }
  const Refusal refusal = withDecoded(
      text, [&](sDescription& answer) { return update(text, answer, oldOffer, offer, concerned); });
  return named(refusal, "sdpAnswer");
}

/// Updates an answer in place; what it is after a refusal does not count.
Refusal updateInPlace(SdpText& text, const SdpText& oldOffer, const SdpText& newOffer,
                      unsigned short& oLineEnd, bool modifyOLine) {
  bool concerned = false;
  if (const Refusal refusal = decodeAndUpdate(text, oldOffer, newOffer, concerned)) return refusal;
  if (!concerned || !modifyOLine) return {};
  const Refusal ofOrigin = renewOriginLine(text, GivenAddress(nullptr), oLineEnd);
  if (!ofOrigin) return {};
  tell(ofOrigin);
  return {.reason = SDP_REFUSED_ANSWER_O_LINE};
}

}  // namespace

Refusal updateAnswer(SdpText& answer, const SdpText& oldOffer, const SdpText& newOffer,
                     unsigned short& oLineEnd, bool modifyOLine) {
  for (const SdpText* const text : {&std::as_const(answer), &oldOffer, &newOffer}) {
    if (const Refusal refusal = refusalOfBuffer(*text, kOperation)) return refusal;
  }
  // The answer stays as it is until everything has been done.
  char copy[MAX_SDP_PROTOCOL_DATA_SIZE];
  copy[answer.view().copy(copy, sizeof copy - 1)] = '\0';
  SdpText result(copy, std::min(sizeof copy, answer.size() + answer.room() + 1));
  unsigned short newEnd = oLineEnd;
  const Refusal refusal = updateInPlace(result, oldOffer, newOffer, newEnd, modifyOLine);
  if (refusal) return refusal;
  answer.replace({0, answer.size()}, result.view());
  oLineEnd = newEnd;
  trace::progress("Exiting sdpUpdateAnswer()");
  return {};
}

}  // namespace sdpneg

unsigned short sdpModifications::sdpUpdateSdp(char* sdpAnswer, char* oldSdpOffer, char* newSdpOffer,
                                              int& length, unsigned short& oLineEnd, bool modifyOLine) {
  using namespace sdpneg;
  SdpText answer(sdpAnswer);
  const unsigned short status =
      statusOf(updateAnswer(answer, SdpText(oldSdpOffer), SdpText(newSdpOffer), oLineEnd, modifyOLine));
  length = static_cast<int>(answer.size());
  return status;
}
