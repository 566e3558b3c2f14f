#include <limits>

#include "inspection/names.h"
#include "requests/requestArguments.h"
#include "requests/requestTable.h"
#include "requests/wholeNumber.h"

// Requests for codecs and what they may take.

namespace tool {
namespace {

constexpr std::string_view orders[] = {"kept", "given"};
bool isBandwidth(std::string_view word) { return wholeNumber<unsigned int>(word).has_value(); }

constexpr RequestArgument kAudioCodecs = {.name = "CODECS",
                                          .expects = "names of audio codecs between commas",
                                          .accepts = areAudioCodecs,
                                          .names = audioCodecNames};

constexpr RequestArgument restrictArguments[] = {
    kAudioCodecs, {.name = "ORDER", .expects = "an order", .values = orders, .optional = true}};

unsigned short restrictAudio(cSdpNegotiator& object, RequestInput& input) {
  const auto codecs = *audioCodecsOf(input.words[0]);
  const bool given = input.words.size() > 1 && indexOf(orders, input.words[1]) == 1;
  // The library says 1 when it has restricted the codecs.
  const auto count = static_cast<int>(codecs.size());
  if (object.sdpRestrictAudioCodecsTo(codecs.data(), count, given) == 1) return 0;
  if (object.contains("\nm=audio")) return 1;
  input.idle = "the body has no audio";
  return 0;
}

bool isFirst(const cSdpNegotiator& object, unsigned char codec) {
  return object.getParsedData().audioCodec[0] == codec;
}

constexpr RequestArgument preferArguments[] = {{.name = "CODEC",
                                                .expects = "the name of an audio codec",
                                                .accepts = isAudioCodec,
                                                .names = audioCodecNames}};

unsigned short preferAudio(cSdpNegotiator& object, RequestInput& input) {
  const unsigned char codec = audioCodecOf(input.words[0]);
  object.sdpChangeAudioCodecPreference(codec);
  return isFirst(object, codec) ? 0 : 1;
}

constexpr RequestArgument reorderArguments[] = {kAudioCodecs};

unsigned short reorderAudio(cSdpNegotiator& object, RequestInput& input) {
  const auto codecs = *audioCodecsOf(input.words[0]);
  object.sdpReorderAudioCodecPreference(codecs.data(), static_cast<int>(codecs.size()));
  return isFirst(object, codecs[0]) ? 0 : 1;
}

constexpr RequestArgument bandwidthArguments[] = {
    {.name = "N", .expects = "a whole number of 32 bits, as the b-lines have it", .accepts = isBandwidth}};

unsigned short capVideoBandwidth(cSdpNegotiator& object, RequestInput& input) {
  const unsigned int limit = wholeNumber<unsigned int>(input.words[0]).value_or(0);
  const unsigned int current = object.getParsedData().videoBandwidth;
  if (limit >= current) {
    input.idle = "the bandwidth of the video is " + std::to_string(current);
    return 0;
  }
  return object.sdpLimitVideoMediaBandwidth(limit, H264_PROFILE_NOT_PRESENT);
}

constexpr RequestArgument levelArguments[] = {
    {.name = "LEVEL", .expects = "an H.264 level", .values = h264LevelNames}};

unsigned short capH264Level(cSdpNegotiator& object, RequestInput& input) {
  const auto level = static_cast<eH264_profile_id>(indexOf(h264LevelNames, input.words[0]));
  const std::int32_t current = object.getParsedData().h264Profile;
  if (level >= current) {
    const std::string name = h264LevelName(current);
    input.idle = name.empty() ? "the body has no H.264" : "the highest level is " + name;
    return 0;
  }
  object.sdpLimitVideoMediaBandwidth(std::numeric_limits<unsigned int>::max(), level);
  return object.getParsedData().h264Profile != current ? 0 : 1;
}

constexpr RequestArgument restrictVideoArguments[] = {{.name = "CODECS",
                                                       .expects = "names of video codecs between commas",
                                                       .accepts = areVideoCodecs,
                                                       .names = videoCodecNames}};

unsigned short restrictVideo(cSdpNegotiator& object, RequestInput& input) {
  const auto codecs = *videoCodecsOf(input.words[0]);
  // The library says 1 when it has restricted the codecs.
  if (object.sdpRestrictVideoCodecsTo(codecs.data(), static_cast<int>(codecs.size())) == 1) return 0;
  if (object.contains("\nm=video")) return 1;
  input.idle = "the body has no video";
  return 0;
}

constexpr RequestRow rows[] = {
    {"restrict-audio", restrictArguments, "Keep these audio codecs, in the body's order or the given one.",
     restrictAudio, "sdpRestrictAudioCodecsTo"},
    {"prefer-audio", preferArguments, "Put an audio codec of the body first.", preferAudio,
     "sdpChangeAudioCodecPreference"},
    {"reorder-audio", reorderArguments, "Keep these audio codecs in this order; others go.", reorderAudio,
     "sdpReorderAudioCodecPreference"},
    {"restrict-video", restrictVideoArguments,
     "Keep these video codecs, of which each video section must have one.", restrictVideo,
     "sdpRestrictVideoCodecsTo"},
    {"cap-video-bandwidth", bandwidthArguments, "Lower the b-lines of the video that are above N.",
     capVideoBandwidth, "sdpLimitVideoMediaBandwidth"},
    {"cap-h264-level", levelArguments, "Lower the H.264 levels that are above LEVEL.", capH264Level,
     "sdpLimitVideoMediaBandwidth"}};

}  // namespace

std::span<const RequestRow> codecRequests() { return rows; }

}  // namespace tool
