#include <algorithm>
#include <iterator>

#include "refusal.h"
#include "sdpNegotiator.h"
#include "vocabulary.h"

// Values that are set in the summary alone.

namespace sdpneg {
namespace {

constexpr unsigned char kLargestAudioCodec = 38;
constexpr unsigned int kAllMediaTypes = 63;
constexpr unsigned char kLargestResourceReserve = 3;

/// Entries of a list of `count` that fit the 20 slots.
int slotsFor(int count) { return std::clamp(count, 0, MAX_SDP_NEGOTIATOR_AUDIO_CODECS); }

bool isAudioCodec(unsigned char codec) {
  if (codec <= kLargestAudioCodec) return true;
  tell({.reason = SDP_REFUSED_INVALID_CODEC, .number = codec});
  return false;
}

/// -1 stands for the first free slot.
bool isSlot(int slot) {
  if (slot >= -1 && slot < MAX_SDP_NEGOTIATOR_AUDIO_CODECS) return true;
  tell({.reason = SDP_REFUSED_INVALID_SLOT, .number = slot});
  return false;
}

/// Puts a value into a slot, or into the first one that holds `unused`; without one nothing happens.
void putInSlot(unsigned char (&slots)[MAX_SDP_NEGOTIATOR_AUDIO_CODECS], int slot, unsigned char unused,
               unsigned char value) {
  unsigned char* const place =
      slot >= 0 ? slots + slot : std::find(std::begin(slots), std::end(slots), unused);
  if (place != std::end(slots)) *place = value;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::setAudioCodecs(const unsigned char* codecs, int count) {
  if (codecs == nullptr) {
    initAudioCodecs();
    return refuse({.reason = SDP_REFUSED_NO_CODECS_GIVEN});
  }
  // The list may be the object's own.
  unsigned char list[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
  unsigned char* const end = std::copy_n(codecs, slotsFor(count), list);
  initAudioCodecs();
  if (!std::all_of(list, end, isAudioCodec)) return 1;
  std::copy(list, end, parsedData.audioCodec);
  return 0;
}

bool cSdpNegotiator::addAudioCodec(unsigned char codec, int slot) {
  if (!isSlot(slot) || !isAudioCodec(codec)) return true;
  putInSlot(parsedData.audioCodec, slot, SDP_NO_CODEC, codec);
  return false;
}

unsigned short cSdpNegotiator::setPacketizationPeriod(const unsigned char* periods, int count) {
  if (periods == nullptr) return refuse({.reason = SDP_REFUSED_NO_PERIODS_GIVEN});
  if (periods != parsedData.packetizationPeriod) {
    std::copy_n(periods, slotsFor(count), parsedData.packetizationPeriod);
  }
  return 0;
}

bool cSdpNegotiator::setPacketizationPeriod(unsigned char period, int slot) {
  if (!isSlot(slot)) return true;
  putInSlot(parsedData.packetizationPeriod, slot, SDP_PACKETIZATION_NOT_SET, period);
  return false;
}

unsigned short cSdpNegotiator::setMediaPort(unsigned int port) {
  if (!isMediaPort(port)) {
    return refuse({.reason = SDP_REFUSED_MESSAGE_PORT,
                   .number = static_cast<int>(port),
                   .field = SDP_REFUSAL_FIELD_PORT});
  }
  parsedData.port = port;
  return 0;
}

unsigned short cSdpNegotiator::setMediaType(unsigned int mediaType) {
  if (mediaType > kAllMediaTypes) {
    return refuse({.reason = SDP_REFUSED_INVALID_MEDIA_TYPE, .number = static_cast<int>(mediaType)});
  }
  parsedData.mediaType = mediaType;
  return 0;
}

unsigned short cSdpNegotiator::setResourceReserve(unsigned char value) {
  if (value > kLargestResourceReserve) {
    return refuse({.reason = SDP_REFUSED_INVALID_RESERVATION, .number = value});
  }
  parsedData.resourceReserve = value;
  return 0;
}

unsigned short cSdpNegotiator::setEchoCancellation(unsigned char value) {
  parsedData.echoCancellation = value;
  return 0;
}

unsigned short cSdpNegotiator::setEchoCancelDirection(unsigned char value) {
  parsedData.echoCancelDirection = value;
  return 0;
}

unsigned short cSdpNegotiator::setT38MaxBitRate(unsigned int value) {
  parsedData.T38MaxBitRate = value;
  return 0;
}

unsigned short cSdpNegotiator::setSdpAttributes(unsigned int value) {
  parsedData.sdpAttributes = value;
  return 0;
}

unsigned short cSdpNegotiator::setGainControl(short value) {
  parsedData.gainControl = value;
  return 0;
}

unsigned short cSdpNegotiator::setBandwidth(unsigned int value) {
  parsedData.bandwidth = value;
  return 0;
}

unsigned short cSdpNegotiator::setSdpDescriptor(sSDPDescriptor descriptor) {
  parsedData.address = descriptor.address;
  parsedData.port = descriptor.port;
  return 0;
}
