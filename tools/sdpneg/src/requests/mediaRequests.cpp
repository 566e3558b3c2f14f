#include <iterator>

#include "inspection/names.h"
#include "requests/requestArguments.h"
#include "requests/requestTable.h"

// Requests for m-lines, addresses and directions.

namespace tool {
namespace {

constexpr std::string_view directions[] = {"sendonly", "recvonly", "inactive"};
constexpr std::string_view directedMedia[] = {"audio", "video"};

unsigned char directionOf(std::string_view word) {
  constexpr unsigned char modes[] = {CONNECTION_MODE_SENDONLY, CONNECTION_MODE_RECVONLY,
                                     CONNECTION_MODE_INACTIVE};
  return modes[indexOf(directions, word)];
}

constexpr RequestArgument modeArguments[] = {
    {.name = "DIRECTION", .expects = "a direction", .values = directions},
    {.name = "MEDIA", .expects = "a kind of media", .values = directedMedia, .optional = true}};

unsigned short setMode(cSdpNegotiator& object, RequestInput& input) {
  constexpr int masks[] = {1, 2, 64};  // audio, video, both
  const std::size_t media =
      input.words.size() > 1 ? indexOf(directedMedia, input.words[1]) : std::size(directedMedia);
  return object.sdpReplaceMode(directionOf(input.words[0]), masks[media]);
}

constexpr RequestArgument addressArguments[] = {
    {.name = "IP", .expects = "an IP address", .accepts = isAddress}};

unsigned short setAddress(cSdpNegotiator& object, RequestInput& input) {
  return object.sdpReplaceCxIP(input.word(0));
}

constexpr std::string_view disabledMedia[] = {"audio",       "video", "message", "image",
                                              "application", "text",  "secure",  "plain"};

constexpr RequestArgument portOffArguments[] = {
    {.name = "MEDIA", .expects = "a kind of media", .values = disabledMedia}};

unsigned short portOff(cSdpNegotiator& object, RequestInput& input) {
  constexpr unsigned int masks[] = {MEDIA_AUDIO, MEDIA_VIDEO,       MEDIA_MESSAGE,
                                    MEDIA_IMAGE, MEDIA_APPLICATION, MEDIA_TEXT};
  const std::size_t media = indexOf(disabledMedia, input.words[0]);
  if (media < std::size(masks)) return object.sdpDisablePort(masks[media]);
  return media == std::size(masks) ? object.sdpDisableSAVPPorts() : object.sdpDisableAVPPorts();
}

constexpr std::string_view removedLines[] = {"all"};

constexpr RequestArgument removeVideoArguments[] = {
    {.name = "LINES", .expects = "which lines", .values = removedLines, .optional = true}};

unsigned short removeVideo(cSdpNegotiator& object, RequestInput& input) {
  return input.words.empty() ? object.sdpRemoveVideoMedia() : object.sdpRemoveAllVideoMedia();
}

constexpr RequestRow rows[] = {
    {"mode", modeArguments, "Restrict the direction of the session and its media.", setMode,
     "sdpReplaceMode"},
    {"address", addressArguments, "Replace the first c-line.", setAddress, "sdpReplaceCxIP"},
    {"port-off", portOffArguments, "Set port 0; with video, for application too.", portOff,
     "sdpDisablePort sdpDisableSAVPPorts sdpDisableAVPPorts"},
    {"remove-video", removeVideoArguments,
     "Set port 0 for video; with all, take the sections' lines out too.", removeVideo,
     "sdpRemoveVideoMedia sdpRemoveAllVideoMedia"}};

}  // namespace

std::span<const RequestRow> mediaRequests() { return rows; }

}  // namespace tool
