#include "mediaAddress.h"
#include "refusal.h"
#include "sdpNegotiatorParser.h"
#include "vocabulary.h"

// The audio of a description: which m-line counts, its codecs and its attributes.

namespace sdpneg {
namespace {

/// The first audio m-line in use. One that is not in use is taken when no other m-line follows it.
/// @param chosen receives it, or null
/// @return a refusal of a port up to it
Refusal chooseAudio(sDescription& description, int noOfMDs, mDescription*& chosen) {
  chosen = nullptr;
  const auto media = mediaOf(description, noOfMDs);
  for (mDescription& each : media) {
    if (each.mLine.mediaType != MEDIA_AUDIO) continue;
    description.mediaKinds |= MEDIA_AUDIO;
    if (const Refusal refusal = checkPort("audio", description, each)) return refusal;
    if (portOf(each) == 0 && &each != &media.back()) continue;
    chosen = &each;
    break;
  }
  return {};
}

void takeCodecs(sSdpParsedData& data, const mDescription& audio, unsigned int& count) {
  for (int i = 0; i < sdp_MgetNoOfFormats(&audio.mLine); ++i) {
    if (count >= MAX_SDP_NEGOTIATOR_AUDIO_CODECS) return;
    const unsigned char codec = sdpParserMessage::convertCodec(sdp_MgetFormat(&audio.mLine, i), &audio.aLine);
    if (codec != SDP_NO_CODEC) data.audioCodec[count++] = codec;
  }
}

/// Reads the attribute lines of an audio m-line in their order.
class AudioAttributes {
 public:
  AudioAttributes(sSdpParsedData& data, int noOfFormats, unsigned char* periods)
      : data_(data), noOfFormats_(noOfFormats), periods_(periods) {}

  /// @return false when the lines behind this one are not to be read
  bool read(const a_line::entry& line) {
    const char* value = valueOf(line);
    if (isNamed(line, "mptime")) return sdpParserMessage::setCodecMptime(periods_, noOfFormats_, value) == 0;
    if (isNamed(line, "ptime")) return readPtime(value);
    if (isNamed(line, "silenceSupp")) return sdpParserMessage::setSilenceSuppression(data_, value) == 0;
    if (isNamed(line, "ecan")) sdpParserMessage::setEchoCancellation(data_, value);
    if (isNamed(line, "gpmd") && value != nullptr) readVoiceBandData(value);
    if (isNamed(line, "fmtp") && value != nullptr) readAnnexB(value);
    return true;
  }

 private:
  bool readPtime(const char* value) {
    const bool valid = sdpParserMessage::setCodecPtime(data_, value) == 0;
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
}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpParserMessage::findFirstAudio(sSdpParsedData& data, sDescription& description,
                                                unsigned int& count, int noOfMDs, unsigned char* periods) {
  mDescription* audio = nullptr;
  if (const Refusal refusal = chooseAudio(description, noOfMDs, audio)) {
    return refuse(refusal);
  }
  if (audio == nullptr) return 0;
  if (hasConnection(audio->cLine)) {
    const Refusal refusal = takeAddressOf(data, description, *audio);
    if (refusal) return refuse(refusal);
  }
  data.mediaType |= MEDIA_AUDIO;
  data.port = static_cast<std::uint32_t>(portOf(*audio));
  takeCodecs(data, *audio, count);
  data.sessionMode = firstGiven(getConnectionMode(&audio->aLine), data.sessionMode);
  AudioAttributes reader(data, sdp_MgetNoOfFormats(&audio->mLine), periods);
  for (const a_line::entry& line : entriesOf(&audio->aLine)) {
    if (!reader.read(line)) break;
  }
  return 0;
}
