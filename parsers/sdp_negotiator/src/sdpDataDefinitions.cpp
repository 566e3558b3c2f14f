#include "sdpDataDefinitions.h"

#include <algorithm>
#include <iterator>
#include <type_traits>

// The codec tables, and records in their initial state.

// The records travel as bytes, so an address class of the host's must keep to the layout as well.
static_assert(sizeof(cMsgIPAddress) == 20 && alignof(cMsgIPAddress) == 4);
static_assert(sizeof(sSdpParsedData) == 132 && sizeof(sSDPDescriptor) == 24);
static_assert(std::is_trivial_v<sSdpParsedData> && std::is_standard_layout_v<sSdpParsedData>);
static_assert(std::is_trivial_v<sSDPDescriptor> && std::is_standard_layout_v<sSDPDescriptor>);

void sSdpParsedData::init() {
  *this = sSdpParsedData{};
  address.init();
  port = SDP_PORT_NOT_SET;
  std::fill(std::begin(packetizationPeriod), std::end(packetizationPeriod), SDP_PACKETIZATION_NOT_SET);
  T38MaxBitRate = SDP_T38_MAX_BIT_RATE_NOT_SET;
  h264Profile = H264_PROFILE_NOT_PRESENT;
  state = 1;
  sessionMode = CONNECTION_MODE_SENDRECV;
}

bool sSdpParsedData::isInitialized() const {
  return audioCodec[0] == SDP_NO_CODEC && packetizationPeriod[0] == SDP_PACKETIZATION_NOT_SET &&
         address.isZero() && h264Profile == H264_PROFILE_NOT_PRESENT && port == SDP_PORT_NOT_SET &&
         mediaType == 0 && T38MaxBitRate == SDP_T38_MAX_BIT_RATE_NOT_SET && bandwidth == 0 &&
         sdpAttributes == 0 && oLineStart == 0 && oLineEnd == 0 && gainControl == 0 &&
         echoCancellation == 0 && echoCancelDirection == 0 && silenceSuppression == 0 &&
         resourceReserve == 0 && sessionMode == CONNECTION_MODE_SENDRECV && videoBandwidth == 0 &&
         videoMode == CONNECTION_MODE_NONE;
}

void sSDPDescriptor::init() {
  address.init();
  port = SDP_PORT_NOT_SET;
}

// The tables have one row per line.
// clang-format off
const audioCodecRow audioCodecTable[AUDIO_CODEC_TABLE_ROWS] = {
    {"PCMA", "G711ALAW64K", 1, AUDIO_CODEC_KIND_AUDIO},
    {"PCMA@56", "G711ALAW56K", 2, AUDIO_CODEC_KIND_AUDIO},
    {"PCMU", "G711ULAW64K", 3, AUDIO_CODEC_KIND_AUDIO},
    {"PCMU@56", "G711ULAW56K", 4, AUDIO_CODEC_KIND_AUDIO},
    {"G722", "G722_64K", 5, AUDIO_CODEC_KIND_AUDIO},
    {"G722@56", "G722_56K", 6, AUDIO_CODEC_KIND_AUDIO},
    {"G722@48", "G722_48K", 7, AUDIO_CODEC_KIND_AUDIO},
    {"G723", "G7231", 8, AUDIO_CODEC_KIND_AUDIO},
    {"G728", "G728", 9, AUDIO_CODEC_KIND_AUDIO},
    {"G729", "G729", 10, AUDIO_CODEC_KIND_AUDIO},
    {"G729A", "G729ANNEXA", 11, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "IS11172_CAP", 12, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "IS13818_CAP", 13, AUDIO_CODEC_KIND_AUDIO},
    {"G729B", "G729WANNEXB", 14, AUDIO_CODEC_KIND_AUDIO},
    {"G729AB", "G729ANNEXAWANNEXB", 15, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "G7231ANX_CAP", 16, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "GSMFULLRATE", 17, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "GSMHALFRATE", 18, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "GSMENHFRATE", 19, AUDIO_CODEC_KIND_AUDIO},
    {"G726-40", "G726_40", 20, AUDIO_CODEC_KIND_AUDIO},
    {"G726-32", "G726_32", 21, AUDIO_CODEC_KIND_AUDIO},
    {"G726-24", "G726_24", 22, AUDIO_CODEC_KIND_AUDIO},
    {"G726-16", "G726_16", 23, AUDIO_CODEC_KIND_AUDIO},
    {"G729E", "G729E", 24, AUDIO_CODEC_KIND_AUDIO},
    // Two names of the same loose T.38 capability.
    {"NOT_SPECIFIED", "T38_LOOSE", 25, AUDIO_CODEC_KIND_FAX},
    {"NOT_SPECIFIED", "T_38_FAX", 25, AUDIO_CODEC_KIND_FAX},
    {"iLBC", "ILBC", 26, AUDIO_CODEC_KIND_AUDIO},
    {"BV16", "BV16", 27, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "T38_IMAGE", 28, AUDIO_CODEC_KIND_FAX},
    {"telephone-event", "TELEPHONE_EVENT", 29, AUDIO_CODEC_KIND_OTHER},
    {"CLEARMODE", "CLEARMODE", 30, AUDIO_CODEC_KIND_OTHER},
    {"AMR", "AMR", 31, AUDIO_CODEC_KIND_AUDIO},
    {"AMR-WB", "AMR_WB", 32, AUDIO_CODEC_KIND_AUDIO},
    {"MP4A-LATM/32000", "AAC_LC", 33, AUDIO_CODEC_KIND_AUDIO},
    {"G7221/32000@24", "G7221_24", 34, AUDIO_CODEC_KIND_AUDIO},
    {"G7221/32000@32", "G7221_32", 35, AUDIO_CODEC_KIND_AUDIO},
    {"G7221/32000@48", "G7221_48", 36, AUDIO_CODEC_KIND_AUDIO},
    {"NOT_SPECIFIED", "COMFORT_NOISE", 37, AUDIO_CODEC_KIND_AUDIO},
    {"OPUS", "OPUS", 38, AUDIO_CODEC_KIND_AUDIO},
    {"", "", SDP_NO_CODEC, AUDIO_CODEC_KIND_OTHER},
};

const videoCodecRow videoCodecTable[VIDEO_CODEC_TABLE_ROWS] = {
    {"H263", 1},
    {"H264", 2},
    {"MPEG4", 3},
    {"Ce1B", 4},
    {"JPEG", 5},
    {"nv", 6},
    {"H261", 7},
    {"MPV", 8},
    {"MP2T", 9},
    {"H263-1998", 10},
    {"H263-2000", 11},
    {"VP8", 12},
    {"H224", 13},
    {"", SDP_NO_CODEC},
};
// clang-format on
