#include <algorithm>
#include <cstring>
#include <new>

#include "descriptionView.h"
#include "encodingNames.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "steps.h"
#include "videoFormats.h"
#include "vocabulary.h"

// Lists of media, and what of the video goes into a summary.

namespace sdpneg {
namespace {

void takeCodecs(mediaStruct& entry, Section& section) {
  const m_line& line = section.media().mLine;
  const int count = sdp_MgetNoOfFormats(&line);
  entry.codecs.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const codecDetailStruct detail =
        detailOf(section.kind(), section.attributes().lines(), sdp_MgetFormat(&line, i));
    if (detail.codec != SDP_NO_CODEC) entry.codecs.push_back(detail);
  }
}

std::uint32_t flagsOf(const sDescription& description, const mDescription& media) {
  const std::uint32_t flags = contains(transportOf(media), "SAVP") ? MEDIA_FLAG_SECURE : MEDIA_FLAG_PLAIN;
  const char* type = addressTypeOf(media.cLine);
  if (type == nullptr) type = addressTypeOf(description.cLine);
  if (type == nullptr) return flags;
  return flags | (viewOf(type) == kIp4 ? MEDIA_FLAG_ADDRESS_IP4 : MEDIA_FLAG_ADDRESS_OTHER);
}

/// The entry of that label; null when there is none or the label is empty.
mediaStruct* labelled(std::vector<mediaStruct>& list, std::string_view label) {
  const auto entry = std::find_if(list.begin(), list.end(),
                                  [label](const mediaStruct& each) { return each.label == label; });
  return label.empty() || entry == list.end() ? nullptr : &*entry;
}

/// The label of a section; empty when it has none.
std::string_view labelOf(Section& section) {
  std::string_view label;
  section.attributes().forEach(KindSet(AttributeKind::label), [&](const a_line::entry& line, AttributeKind) {
    label = line.value;
    return false;
  });
  return label;
}

bool isListed(Section& section) {
  return (section.kind() == MEDIA_VIDEO || section.kind() == MEDIA_APPLICATION) && section.port() != 0;
}

void addMedia(std::vector<mediaStruct>& list, Body& body, Section& section) {
  const std::string_view label = labelOf(section);
  if (mediaStruct* known = labelled(list, label)) {
    known->flags |= flagsOf(body.description(), section.media());
    return;
  }
  mediaStruct& entry = list.emplace_back();
  entry.mediaType = section.kind();
  entry.label = label;
  entry.flags = flagsOf(body.description(), section.media());
  entry.mode = firstGiven(section.attributes().mode(), body.sessionMode());
  entry.bandwidth = sdp_BgetBandwidthValue(&section.media().bLine);
  takeCodecs(entry, section);
}

/// Whether a medium of the list shares the entry of one in front of it.
bool sharesEntry(std::span<Section> before, Section& section) {
  const std::string_view label = labelOf(section);
  return !label.empty() && std::any_of(before.begin(), before.end(), [label](Section& each) {
    return isListed(each) && labelOf(each) == label;
  });
}

/// The format among those of an m-line that an rtpmap value is of; null when there is none.
const char* formatOf(const m_line& line, std::string_view word) {
  for (const auto& format : formatsOf(line)) {
    if (textStartsWith(format, word) && format[word.size()] == '\0') return format;
  }
  return nullptr;
}

/// Takes the levels of those formats whose rtpmap line names H.264.
void takeH264Levels(sSdpParsedData& data, Section& video) {
  const AttributeIndex& attributes = video.attributes();
  attributes.forEach(KindSet(AttributeKind::rtpmap), [&](const a_line::entry& line, AttributeKind) {
    const RtpMap map = rtpMapOf(line.value);
    if (!textStartsWith(map.name, "H264") || map.format.size() >= SDP_FORMAT_SIZE) return true;
    const char* const format = formatOf(video.media().mLine, map.format);
    if (format == nullptr) return true;
    // The line may not be the first one of its format.
    const codecDetailStruct detail = detailOf(MEDIA_VIDEO, attributes, format);
    if (detail.codec == kCodecH264) data.h264Profile = std::max(data.h264Profile, detail.profile);
    return true;
  });
}

void takeListed(sSdpParsedData& data, Section& video, unsigned char sessionMode) {
  const unsigned char mode = firstGiven(video.attributes().mode(), sessionMode);
  if (mode == CONNECTION_MODE_RECVONLY) data.sdpAttributes |= SDP_ATTR_RECVONLY_VIDEO;
  data.videoBandwidth = std::max(data.videoBandwidth, sdp_BgetBandwidthValue(&video.media().bLine));
  takeH264Levels(data, video);
}

/// Empties a list that there is no memory for.
template <typename List>
unsigned short withoutMemory(List& list) {
  list.clear();
  return refuse({.reason = SDP_REFUSED_NO_MEMORY_FOR_MEDIA});
}

}  // namespace

void takeVideoList(sSdpParsedData& data, Body& body) {
  if (!body.holds(MEDIA_VIDEO)) return;
  const std::span<Section> sections = body.sections();
  for (std::size_t i = 0; i < sections.size(); ++i) {
    if (sections[i].kind() != MEDIA_VIDEO || !isListed(sections[i])) continue;
    if (!sharesEntry(sections.first(i), sections[i])) takeListed(data, sections[i], body.sessionMode());
  }
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned char sdpParserMessage::getConnectionMode(const a_line* attributes) {
  return AttributeIndex(attributes).mode();
}

unsigned short sdpParserMessage::getMedia(const sDescription& description, std::vector<mediaStruct>& media) {
  Body body(description);
  media.clear();
  try {
    for (Section& section : body.sections()) {
      if (isListed(section)) addMedia(media, body, section);
    }
  } catch (const std::bad_alloc&) {
    return withoutMemory(media);
  }
  return 0;
}

unsigned short sdpParserMessage::getMLines(const sDescription& description,
                                           std::vector<mDescription>& mLines) {
  const auto media = mediaOf(description);
  mLines.clear();
  try {
    mLines.resize(media.size());
  } catch (const std::bad_alloc&) {
    return withoutMemory(mLines);
  }
  for (std::size_t i = 0; i < media.size(); ++i) sdp_copyMedia(&mLines[i], &media[i]);
  return 0;
}
