#include "codecLookup.h"
#include "sdpNegotiator.h"

// Codec values and their names.

using namespace sdpneg;

unsigned char cSdpNegotiator::getAudioCodecValue(const char* codecText) {
  return codecValue(audioCodecTable, &audioCodecRow::textName, codecText);
}

unsigned char cSdpNegotiator::getRtpMapAudioCodecValue(const char* encodingName) {
  return codecValue(audioCodecTable, &audioCodecRow::encodingName, encodingName);
}

unsigned char cSdpNegotiator::getVideoCodecValue(const char* encodingName) {
  return codecValue(videoCodecTable, &videoCodecRow::encodingName, encodingName);
}

const char* cSdpNegotiator::getAudioCodecText(unsigned char value) {
  return codecName(audioCodecTable, &audioCodecRow::textName, value);
}

const char* cSdpNegotiator::getVideoCodecText(unsigned char value) {
  return codecName(videoCodecTable, &videoCodecRow::encodingName, value);
}
