#include <algorithm>
#include <cstdint>

#include "fieldNumbers.h"
#include "mediaAddress.h"
#include "payloadCodecs.h"
#include "sdpNegotiatorParser.h"
#include "steps.h"
#include "vocabulary.h"

// The audio of a description: which m-line counts, its codecs and its attributes.

namespace sdpneg {
namespace {

/// The first audio m-line in use. One that is not in use is taken when no other m-line follows it.
/// @param chosen receives it, or null
/// @return 1 for a refusal of a port up to it, which is told, else 0
unsigned short chooseAudio(Body& body, int noOfMDs, Section*& chosen) {
  chosen = nullptr;
  const auto sections = body.sections(noOfMDs);
  for (Section& section : sections) {
    if (section.kind() != MEDIA_AUDIO) continue;
    if (checkPort("audio", body, section) != 0) return 1;
    if (section.port() == 0 && &section != &sections.back()) continue;
    chosen = &section;
    break;
  }
  return 0;
}

void takeCodecs(sSdpParsedData& data, Section& audio, unsigned int& count) {
  const PayloadCodecs codecs(audio.attributes());
  std::size_t place = count;
  for (const auto& format : formatsOf(audio.media().mLine)) {
    if (place >= MAX_SDP_NEGOTIATOR_AUDIO_CODECS) break;
    const std::uint8_t codec = codecs.of(format);
    data.audioCodec[place] = firstCodec(codec, data.audioCodec[place]);
    place += static_cast<std::size_t>(codec != SDP_NO_CODEC);
  }
  count = static_cast<unsigned int>(place);
}

/// Reads the attribute lines of an audio m-line in their order.
class AudioAttributes {
 public:
  AudioAttributes(sSdpParsedData& data, int noOfFormats, unsigned char* periods)
      : data_(data), noOfFormats_(noOfFormats), periods_(periods) {}

  /// Reads the lines.
  void readAll(const AttributeIndex& attributes) {
    constexpr KindSet others(AttributeKind::mptime, AttributeKind::ptime, AttributeKind::silenceSupp,
                             AttributeKind::ecan, AttributeKind::gpmd);
    constexpr KindSet all(AttributeKind::mptime, AttributeKind::ptime, AttributeKind::silenceSupp,
                          AttributeKind::ecan, AttributeKind::gpmd, AttributeKind::fmtp);
    const auto readOne = [this](const a_line::entry& line, AttributeKind kind) { return read(line, kind); };
    // Of the parameters of codecs those of G.729 count.
    if (placesOf(kCodecG729, data_) != 0) {
      attributes.forEach(all, readOne);
    } else {
      attributes.forEach(others, readOne);
    }
  }

 private:
  /// @return false when the lines behind this one are not to be read
  bool read(const a_line::entry& line, AttributeKind kind) {
    const char* value = valueOf(line);
    switch (kind) {
      case AttributeKind::mptime:
        return sdpParserMessage::setCodecMptime(periods_, noOfFormats_, value) == 0;
      case AttributeKind::ptime:
        return readPtime(line);
      case AttributeKind::silenceSupp:
        return sdpParserMessage::setSilenceSuppression(data_, value) == 0;
      case AttributeKind::ecan:
        sdpParserMessage::setEchoCancellation(data_, value);
        return true;
      case AttributeKind::gpmd:
        if (value != nullptr) readVoiceBandData(value);
        return true;
      default:
        if (value != nullptr) readAnnexB(value);
        return true;
    }
  }

  bool readPtime(const a_line::entry& line) {
    const Leading<int> period = shortNumberOf<kPayloadDigits>(line.value);
    bool valid = true;
    if (period.length != 0 && line.value[period.length] == '\0') {
      data_.packetizationPeriod[0] = static_cast<std::uint8_t>(std::min<int>(period.value, UINT8_MAX));
    } else {
      valid = sdpParserMessage::setCodecPtime(data_, valueOf(line)) == 0;
    }
    if (periods_ != nullptr) periods_[0] = data_.packetizationPeriod[0];
    return valid;
  }

  /// A line against voice-band data behind one for it, both of one payload, cancels what the lines set.
  void readVoiceBandData(const char* value) {
    if (value[0] != '0' && value[0] != '8') return;
    bool& wanted = value[0] == '0' ? pcmuWanted_ : pcmaWanted_;
    if (sdpParserMessage::setVoiceBandData(data_, value) == 0) {
      wanted = true;
    } else if (wanted) {
      data_.silenceSuppression = FEATURE_STATE_NOT_SPECIFIED;
      data_.echoCancellation = FEATURE_STATE_NOT_SPECIFIED;
      data_.gainControl = -1;
    }
  }

  /// The form with a colon is the one that is known; RFC 4856 writes an equals sign.
  void readAnnexB(const char* value) {
    // Most lines are of another payload type.
    if (value[0] != ' ' && (value[0] != '1' || (value[1] != ' ' && value[1] != '8'))) return;
    if (sdpParserMessage::strcmpwospaces(value, "18annexb:no") == 0) {
      sdpParserMessage::setG729AnnexB(data_, noOfFormats_, kCodecG729AnnexA);
    } else if (sdpParserMessage::strcmpwospaces(value, "18annexb:yes") == 0) {
      sdpParserMessage::setG729AnnexB(data_, noOfFormats_, kCodecG729AnnexAWithAnnexB);
    }
  }

  sSdpParsedData& data_;
  int noOfFormats_;
  unsigned char* periods_;
  bool pcmuWanted_ = false;
  bool pcmaWanted_ = false;
};

}  // namespace

unsigned short takeAudio(sSdpParsedData& data, Body& body, unsigned int& count, int noOfMDs,
                         unsigned char* periods) {
  Section* audio = nullptr;
  if (chooseAudio(body, noOfMDs, audio) != 0) return 1;
  if (audio == nullptr) return 0;
  if (hasConnection(audio->connection()) && takeAddressOf(data, body, *audio) != 0) return 1;
  data.mediaType |= MEDIA_AUDIO;
  data.port = static_cast<std::uint32_t>(audio->port());
  takeCodecs(data, *audio, count);
  data.sessionMode = firstGiven(audio->attributes().mode(), data.sessionMode);
  const int noOfFormats = static_cast<int>(formatsOf(audio->media().mLine).size());
  AudioAttributes(data, noOfFormats, periods).readAll(audio->attributes());
  return 0;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::findFirstAudio(sSdpParsedData& data, sDescription& description,
                                                unsigned int& count, int noOfMDs, unsigned char* periods) {
  noteKind(description, noOfMDs, MEDIA_AUDIO);
  Body body(description);
  return takeAudio(data, body, count, noOfMDs, periods);
}
