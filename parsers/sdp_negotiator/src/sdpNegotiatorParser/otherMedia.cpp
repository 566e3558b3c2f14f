#include <algorithm>
#include <iterator>

#include "mediaAddress.h"
#include "sdpNegotiatorParser.h"
#include "steps.h"
#include "vocabulary.h"

// Media other than audio: video, fax, messages, text.

namespace sdpneg {
namespace {

/// The first video m-line in use that is not inactive. Each one in use up to it leaves its direction.
Section* chooseVideo(sSdpParsedData& data, Body& body, int noOfMDs) {
  for (Section& section : body.sections(noOfMDs)) {
    if (section.kind() != MEDIA_VIDEO || section.port() == 0) continue;
    data.videoMode = firstGiven(section.attributes().mode(), body.sessionMode());
    if (data.videoMode != CONNECTION_MODE_INACTIVE) return &section;
  }
  return nullptr;
}

/// The first m-line of a kind when it is in use; those behind it do not count.
Section* firstInUse(Body& body, int noOfMDs, eMediaType kind) {
  if (!body.holds(kind)) return nullptr;
  for (Section& section : body.sections(noOfMDs)) {
    if (section.kind() == kind) return section.port() != 0 ? &section : nullptr;
  }
  return nullptr;
}

/// Notes a kind whose first m-line is in use.
unsigned short noteFirst(sSdpParsedData& data, Body& body, int noOfMDs, eMediaType kind) {
  if (firstInUse(body, noOfMDs, kind) != nullptr) data.mediaType |= kind;
  return 0;
}

bool hasT38Format(const m_line& line) {
  const int count = std::min(sdp_MgetNoOfFormats(&line), MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  for (int i = 0; i < count; ++i) {
    if (viewOf(sdp_MgetFormat(&line, i)) == "t38") return true;
  }
  return false;
}

void takeT38(sSdpParsedData& data, Section& image) {
  image.attributes().forEach(KindSet(AttributeKind::t38MaxBitRate),
                             [&](const a_line::entry& line, AttributeKind) {
                               const std::string_view value = line.value;
                               if (!value.empty()) data.T38MaxBitRate = numberOrZero<std::uint32_t>(value);
                               return true;
                             });
  if (!hasT38Format(image.media().mLine)) return;
  std::uint8_t* const end = std::end(data.audioCodec);
  std::uint8_t* const place = std::find(data.audioCodec, end, SDP_NO_CODEC);
  if (place != end) *place = kCodecT38Image;
}

}  // namespace

unsigned short takeVideo(sSdpParsedData& data, Body& body, int noOfMDs) {
  if (!body.holds(MEDIA_VIDEO)) return 0;
  Section* const video = chooseVideo(data, body, noOfMDs);
  if (video == nullptr) return 0;
  data.mediaType |= MEDIA_VIDEO;
  if (data.port == 0) data.mediaType &= ~static_cast<std::uint32_t>(MEDIA_AUDIO);
  if (data.videoMode == CONNECTION_MODE_RECVONLY) data.sdpAttributes |= SDP_ATTR_RECVONLY_VIDEO;
  return addressWithoutAudio(data, body, *video, "video");
}

unsigned short takeMessage(sSdpParsedData& data, Body& body, int noOfMDs) {
  return noteFirst(data, body, noOfMDs, MEDIA_MESSAGE);
}

unsigned short takeText(sSdpParsedData& data, Body& body, int noOfMDs) {
  return noteFirst(data, body, noOfMDs, MEDIA_TEXT);
}

unsigned short takeImage(sSdpParsedData& data, Body& body, int noOfMDs) {
  Section* const image = firstInUse(body, noOfMDs, MEDIA_IMAGE);
  if (image == nullptr) return 0;
  data.mediaType |= MEDIA_IMAGE;
  takeT38(data, *image);
  return addressWithoutAudio(data, body, *image, "image");
}

unsigned short takeApplication(sSdpParsedData& data, Body& body, int noOfMDs) {
  if (!body.holds(MEDIA_APPLICATION)) return 0;
  for (Section& section : body.sections(noOfMDs)) {
    if (section.kind() != MEDIA_APPLICATION || section.port() == 0) continue;
    data.mediaType |= MEDIA_APPLICATION;
    break;
  }
  return 0;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::findFirstVideo(sSdpParsedData& data, sDescription& description,
                                                int noOfMDs) {
  noteKind(description, noOfMDs, MEDIA_VIDEO);
  Body body(description);
  return takeVideo(data, body, noOfMDs);
}

unsigned short sdpParserMessage::findFirstMsg(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  noteKind(description, noOfMDs, MEDIA_MESSAGE);
  Body body(description);
  return takeMessage(data, body, noOfMDs);
}

unsigned short sdpParserMessage::findFirstTxt(sSdpParsedData& data, sDescription& description, int noOfMDs) {
  noteKind(description, noOfMDs, MEDIA_TEXT);
  Body body(description);
  return takeText(data, body, noOfMDs);
}

unsigned short sdpParserMessage::findFirstImage(sSdpParsedData& data, sDescription& description,
                                                int noOfMDs) {
  Body body(description);
  if (firstInUse(body, noOfMDs, MEDIA_IMAGE) != nullptr) description.mediaKinds |= MEDIA_IMAGE;
  return takeImage(data, body, noOfMDs);
}

unsigned short sdpParserMessage::findApplication(sSdpParsedData& data, sDescription& description,
                                                 int noOfMDs) {
  noteKind(description, noOfMDs, MEDIA_APPLICATION);
  Body body(description);
  return takeApplication(data, body, noOfMDs);
}
