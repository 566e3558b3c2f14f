#include <algorithm>
#include <new>

#include "descriptionView.h"
#include "mediaList.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "videoFormats.h"
#include "vocabulary.h"

// Lists of media, and what of the video goes into a summary.

namespace sdpneg {
namespace {

void takeCodecs(mediaStruct& entry, const mDescription& media) {
  const int count = sdp_MgetNoOfFormats(&media.mLine);
  entry.codecs.reserve(static_cast<std::size_t>(count));
  for (int i = 0; i < count; ++i) {
    const codecDetailStruct detail = detailOf(media, sdp_MgetFormat(&media.mLine, i));
    if (detail.codec != SDP_NO_CODEC) entry.codecs.push_back(detail);
  }
}

std::uint32_t flagsOf(const sDescription& description, const mDescription& media) {
  const std::uint32_t flags = contains(transportOf(media), "SAVP") ? MEDIA_FLAG_SECURE : MEDIA_FLAG_PLAIN;
  const char* type = sdp_CgetAddressType(&media.cLine, 0);
  if (type == nullptr) type = sdp_CgetAddressType(&description.cLine, 0);
  if (type == nullptr) return flags;
  return flags | (viewOf(type) == kIp4 ? MEDIA_FLAG_ADDRESS_IP4 : MEDIA_FLAG_ADDRESS_OTHER);
}

/// The entry of that label; null when there is none or the label is empty.
mediaStruct* labelled(std::vector<mediaStruct>& list, std::string_view label) {
  const auto entry = std::find_if(list.begin(), list.end(),
                                  [label](const mediaStruct& each) { return each.label == label; });
  return label.empty() || entry == list.end() ? nullptr : &*entry;
}

std::string_view labelOf(const mDescription& media) {
  return viewOf(sdp_AfindAttribute(&media.aLine, "label"));
}

/// The direction of the session's media that have none of their own.
unsigned char sessionModeOf(const sDescription& description) {
  return firstGiven(sdpParserMessage::getConnectionMode(&description.aLine), CONNECTION_MODE_SENDRECV);
}

unsigned char modeOf(const mDescription& media, unsigned char sessionMode) {
  return firstGiven(sdpParserMessage::getConnectionMode(&media.aLine), sessionMode);
}

void addMedia(std::vector<mediaStruct>& list, const sDescription& description, const mDescription& media,
              unsigned char sessionMode) {
  const std::string_view label = labelOf(media);
  if (mediaStruct* known = labelled(list, label)) {
    known->flags |= flagsOf(description, media);
    return;
  }
  mediaStruct& entry = list.emplace_back();
  entry.mediaType = media.mLine.mediaType;
  entry.label = label;
  entry.flags = flagsOf(description, media);
  entry.mode = modeOf(media, sessionMode);
  entry.bandwidth = sdp_BgetBandwidthValue(&media.bLine);
  takeCodecs(entry, media);
}

bool isListed(const mDescription& media) {
  const unsigned int kind = media.mLine.mediaType;
  return (kind == MEDIA_VIDEO || kind == MEDIA_APPLICATION) && portOf(media) != 0;
}

/// Whether a medium of the list shares the entry of one in front of it.
bool sharesEntry(std::span<const mDescription> before, const mDescription& media) {
  const std::string_view label = labelOf(media);
  return !label.empty() && std::any_of(before.begin(), before.end(), [label](const mDescription& each) {
    return isListed(each) && labelOf(each) == label;
  });
}

void takeVideo(sSdpParsedData& data, const mDescription& video, unsigned char sessionMode) {
  if (modeOf(video, sessionMode) == CONNECTION_MODE_RECVONLY) data.sdpAttributes |= SDP_ATTR_RECVONLY_VIDEO;
  data.videoBandwidth = std::max(data.videoBandwidth, sdp_BgetBandwidthValue(&video.bLine));
  for (int i = 0; i < sdp_MgetNoOfFormats(&video.mLine); ++i) {
    const codecDetailStruct detail = detailOf(video, sdp_MgetFormat(&video.mLine, i));
    if (detail.codec == kCodecH264) data.h264Profile = std::max(data.h264Profile, detail.profile);
  }
}

/// Empties a list that there is no memory for.
template <typename List>
unsigned short withoutMemory(List& list) {
  list.clear();
  return refuse({.reason = SDP_REFUSED_NO_MEMORY_FOR_MEDIA});
}

}  // namespace

void takeVideoList(sSdpParsedData& data, const sDescription& description) {
  const auto media = mediaOf(description);
  const unsigned char sessionMode = sessionModeOf(description);
  for (std::size_t i = 0; i < media.size(); ++i) {
    if (media[i].mLine.mediaType != MEDIA_VIDEO || !isListed(media[i])) continue;
    if (!sharesEntry(media.first(i), media[i])) takeVideo(data, media[i], sessionMode);
  }
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned char sdpParserMessage::getConnectionMode(const a_line* attributes) {
  unsigned char mode = CONNECTION_MODE_NONE;
  for (const a_line::entry& line : entriesOf(attributes)) {
    if (!mayBeDirection(line.name)) continue;
    mode = firstGiven(static_cast<unsigned char>(directionOf(line.name)), mode);
  }
  return mode;
}

unsigned short sdpParserMessage::getMedia(const sDescription& description, std::vector<mediaStruct>& media) {
  const unsigned char sessionMode = sessionModeOf(description);
  media.clear();
  try {
    for (const mDescription& each : mediaOf(description)) {
      if (isListed(each)) addMedia(media, description, each, sessionMode);
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
