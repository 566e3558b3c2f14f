#include <iterator>

#include "inspection/names.h"
#include "requests/requestArguments.h"
#include "requests/requestTable.h"

// Requests for m-lines, addresses and directions.

namespace tool {
namespace {

constexpr std::string_view kDirections[] = {"sendonly", "recvonly", "inactive"};
constexpr std::string_view kDirectedMedia[] = {"audio", "video"};

unsigned char directionOf(std::string_view word) {
  constexpr unsigned char modes[] = {CONNECTION_MODE_SENDONLY, CONNECTION_MODE_RECVONLY,
                                     CONNECTION_MODE_INACTIVE};
  return modes[indexOf(kDirections, word)];
}

constexpr RequestArgument kModeArguments[] = {
    {.name = "DIRECTION", .expects = "a direction", .values = kDirections},
    {.name = "MEDIA", .expects = "a kind of media", .values = kDirectedMedia, .optional = true}};

unsigned short setMode(cSdpNegotiator& object, RequestInput& input) {
  constexpr int masks[] = {1, 2, 64};  // audio, video, both
  const std::size_t media =
      input.words.size() > 1 ? indexOf(kDirectedMedia, input.words[1]) : std::size(kDirectedMedia);
  return object.sdpReplaceMode(directionOf(input.words[0]), masks[media]);
}

constexpr RequestArgument kAddressArguments[] = {
    {.name = "IP", .expects = "an IP address", .accepts = isAddress}};

unsigned short setAddress(cSdpNegotiator& object, RequestInput& input) {
  return object.sdpReplaceCxIP(input.word(0));
}

constexpr std::string_view kDisabledMedia[] = {"audio",       "video", "message", "image",
                                               "application", "text",  "secure",  "plain"};

constexpr RequestArgument kPortOffArguments[] = {
    {.name = "MEDIA", .expects = "a kind of media", .values = kDisabledMedia}};

unsigned short portOff(cSdpNegotiator& object, RequestInput& input) {
  constexpr unsigned int masks[] = {MEDIA_AUDIO, MEDIA_VIDEO,       MEDIA_MESSAGE,
                                    MEDIA_IMAGE, MEDIA_APPLICATION, MEDIA_TEXT};
  const std::size_t media = indexOf(kDisabledMedia, input.words[0]);
  if (media < std::size(masks)) return object.sdpDisablePort(masks[media]);
  return media == std::size(masks) ? object.sdpDisableSAVPPorts() : object.sdpDisableAVPPorts();
}

constexpr std::string_view kRemovedLines[] = {"all"};

constexpr RequestArgument kRemoveVideoArguments[] = {
    {.name = "LINES", .expects = "which lines", .values = kRemovedLines, .optional = true}};

unsigned short removeVideo(cSdpNegotiator& object, RequestInput& input) {
  return input.words.empty() ? object.sdpRemoveVideoMedia() : object.sdpRemoveAllVideoMedia();
}

constexpr RequestRow kRows[] = {
    {"mode", kModeArguments, "Restrict the direction of the session and its media.", setMode,
     "sdpReplaceMode"},
    {"address", kAddressArguments, "Replace the first c-line.", setAddress, "sdpReplaceCxIP"},
    {"port-off", kPortOffArguments, "Set port 0; with video, for application too.", portOff,
     "sdpDisablePort sdpDisableSAVPPorts sdpDisableAVPPorts"},
    {"remove-video", kRemoveVideoArguments,
     "Set port 0 for video; with all, take the sections' lines out too.", removeVideo,
     "sdpRemoveVideoMedia sdpRemoveAllVideoMedia"}};

}  // namespace

std::span<const RequestRow> mediaRequests() { return kRows; }

}  // namespace tool
