#include "sdpModifiers/codecRecords.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>

#include "sdpModifiers/codecLists.h"
#include "sdpNegotiatorParser/attributeKinds.h"
#include "sdpNegotiatorParser/descriptionView.h"
#include "sdpNegotiatorParser/payloadCodecs.h"
#include "vocabulary.h"

// Codec lists of the audio sections of a description, edited in the record.

namespace sdpneg {

namespace {

/// The codecs of an audio section's formats and lines, as they were before an edit.
struct Codecs {
  explicit Codecs(const mDescription& audio)
      : noOfFormats(sdp_MgetNoOfFormats(&audio.mLine)), noOfLines(sdp_AgetNoOfAs(&audio.aLine)) {
    const AttributeIndex index(&audio.aLine);
    const PayloadCodecs codecs(index);
    for (int i = 0; i < noOfFormats; ++i) formats[i] = codecs.of(audio.mLine.formats[i]);
    index.forEach(KindSet(AttributeKind::rtpmap, AttributeKind::fmtp),
                  [&](const a_line::entry& line, AttributeKind) {
                    const std::ptrdiff_t at = &line - audio.aLine.entries;
                    isOfFormat[at] = true;
                    lines[at] = codecs.of(line.value);
                    return true;
                  });
  }

  int noOfFormats;
  int noOfLines;
  std::uint8_t formats[SDP_FORMAT_CAPACITY] = {};
  bool isOfFormat[SDP_ATTRIBUTE_CAPACITY] = {};     ///< whether a line is an rtpmap or fmtp line
  std::uint8_t lines[SDP_ATTRIBUTE_CAPACITY] = {};  ///< of these
};

/// A section without attributes has those of the session, as the codec reads it.
void setAttributeCount(mDescription& audio, int count) {
  audio.aLine.count = count;
  if (count == 0) audio.linePresence &= ~static_cast<unsigned int>(SDP_HAS_A_LINE);
}

template <typename Edit>
void forEachAudio(sDescription& description, Edit edit) {
  for (mDescription& media : mediaOf(description)) {
    if (media.mLine.mediaType == MEDIA_AUDIO) edit(media, Codecs(media));
  }
}

void keepCodecsOf(mDescription& audio, const Codecs& codecs, std::span<const unsigned char> keep) {
  const auto isKept = [keep](std::uint8_t codec) {
    return isAlwaysKept(codec) || (codec != SDP_NO_CODEC && holds(keep, codec));
  };
  m_line& mLine = audio.mLine;
  int formats = 0;
  for (int i = 0; i < codecs.noOfFormats; ++i) {
    if (!isKept(codecs.formats[i])) continue;
    if (formats != i) std::copy_n(mLine.formats[i], SDP_FORMAT_SIZE, mLine.formats[formats]);
    ++formats;
  }
  mLine.formatCount = formats;
  a_line& block = audio.aLine;
  int lines = 0;
  for (int i = 0; i < codecs.noOfLines; ++i) {
    if (codecs.isOfFormat[i] && !isKept(codecs.lines[i])) continue;
    if (lines != i) block.entries[lines] = block.entries[i];
    ++lines;
  }
  setAttributeCount(audio, lines);
}

void orderFormats(m_line& mLine, const Codecs& codecs, std::span<const unsigned char> order) {
  char formats[MAX_SDP_NEGOTIATOR_AUDIO_CODECS][SDP_FORMAT_SIZE];
  int count = 0;
  for (const unsigned char codec : order) {
    const std::uint8_t* const end = codecs.formats + codecs.noOfFormats;
    const std::uint8_t* const first = std::find(codecs.formats, end, codec);
    if (first == end) continue;
    std::copy_n(mLine.formats[first - codecs.formats], SDP_FORMAT_SIZE, formats[count++]);
  }
  for (int i = 0; i < count; ++i) std::copy_n(formats[i], SDP_FORMAT_SIZE, mLine.formats[i]);
  mLine.formatCount = count;
}

void orderAttributes(mDescription& audio, const Codecs& codecs, std::span<const unsigned char> order) {
  const auto lines = entriesOf(&audio.aLine);
  a_line ordered;
  ordered.count = 0;
  const auto take = [&](std::size_t i) { ordered.entries[ordered.count++] = lines[i]; };
  for (const unsigned char codec : order) {
    for (std::size_t i = 0; i < lines.size(); ++i) {
      if (codecs.isOfFormat[i] && codecs.lines[i] == codec) take(i);
    }
  }
  for (std::size_t i = 0; i < lines.size(); ++i) {
    if (!codecs.isOfFormat[i]) take(i);
  }
  sdp_Acopy(&audio.aLine, &ordered);
  setAttributeCount(audio, ordered.count);
}

}  // namespace

void keepCodecs(sDescription& description, std::span<const unsigned char> keep) {
  forEachAudio(description,
               [keep](mDescription& audio, const Codecs& codecs) { keepCodecsOf(audio, codecs, keep); });
}

void orderCodecs(sDescription& description, std::span<const unsigned char> order) {
  forEachAudio(description, [order](mDescription& audio, const Codecs& codecs) {
    orderFormats(audio.mLine, codecs, order);
    orderAttributes(audio, codecs, order);
  });
}

}  // namespace sdpneg
