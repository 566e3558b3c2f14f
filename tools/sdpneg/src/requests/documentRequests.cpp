#include <array>

#include "requests/requestTable.h"
#include "sdpDocumentRequests.h"

// Requests of the document layer, which judges their arguments itself.

namespace tool {
namespace {

template <std::size_t size>
bool fits(const std::array<std::string_view, size>& words) {
  return !sdp::checkArguments(words);
}

bool isMedia(std::string_view word) { return fits<2>({"disable", word}); }
bool isCodecList(std::string_view word) { return fits<2>({"keep-codecs", word}); }
bool isLiteral(std::string_view word) { return fits<3>({"anchor", word, "1024"}); }
bool isAnchorPort(std::string_view word) { return fits<3>({"anchor", "192.0.2.1", word}); }
bool isProfile(std::string_view word) { return fits<2>({"set-profile", word}); }
bool areAttributeNames(std::string_view word) { return fits<2>({"strip-attributes", word}); }
bool isDirection(std::string_view word) { return fits<2>({"direction", word}); }

constexpr std::string_view media[] = {"audio", "video", "text", "application", "message", "image", "all"};
constexpr std::string_view profiles[] = {"RTP/AVP",   "RTP/AVPF",         "RTP/SAVP",
                                         "RTP/SAVPF", "UDP/TLS/RTP/SAVP", "UDP/TLS/RTP/SAVPF"};
constexpr std::string_view directions[] = {"sendrecv", "sendonly", "recvonly", "inactive"};

constexpr RequestArgument mediaArgument = {.name = "MEDIA",
                                           .expects = "a section's number, mid=VALUE, or one of these words",
                                           .values = media,
                                           .accepts = isMedia,
                                           .optional = true};
constexpr RequestArgument listArgument = {
    .name = "LIST",
    .expects = "codecs between commas, each NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS or a payload type",
    .accepts = isCodecList};

constexpr RequestArgument codecArguments[] = {listArgument, mediaArgument};
constexpr RequestArgument anchorArguments[] = {
    {.name = "ADDRESS", .expects = "an IPv4 or IPv6 address", .accepts = isLiteral},
    {.name = "PORT", .expects = "an even port from 1024 to 65534", .accepts = isAnchorPort}};
constexpr RequestArgument profileArguments[] = {
    {.name = "PROFILE", .expects = "a profile of RTP", .values = profiles, .accepts = isProfile},
    mediaArgument};
constexpr RequestArgument mediaArguments[] = {mediaArgument};
constexpr RequestArgument stripArguments[] = {
    {.name = "NAMES",
     .expects = "names of attributes between commas, which may end in *",
     .accepts = areAttributeNames},
    mediaArgument};
constexpr RequestArgument directionArguments[] = {
    {.name = "DIRECTION", .expects = "a direction", .values = directions, .accepts = isDirection},
    mediaArgument};
constexpr RequestArgument disableArguments[] = {
    {.name = "MEDIA", .expects = mediaArgument.expects, .values = media, .accepts = isMedia}};

constexpr RequestRow rows[] = {
    {"keep-codecs", codecArguments,
     "Keep the codecs of a LIST, and what serves them; sections without go to port 0.", nullptr,
     "sdp::keepCodecs"},
    {"drop-codecs", codecArguments,
     "Drop the codecs of a LIST, and what served them; sections without go to port 0.", nullptr,
     "sdp::dropCodecs"},
    {"order-codecs", codecArguments, "Put the codecs of a LIST first, in its order.", nullptr,
     "sdp::orderCodecs"},
    {"anchor", anchorArguments, "Lead all media by way of one address, from a port on; ICE goes.", nullptr,
     "sdp::anchor"},
    {"set-profile", profileArguments,
     "Give RTP sections a profile, and take out the keys that do not go with it.", nullptr,
     "sdp::setProfile"},
    {"opportunistic", mediaArguments, "Give secure sections a plain profile, and leave their keys.", nullptr,
     "sdp::makeOpportunistic"},
    {"secure-only", mediaArguments, "Give plain sections with keys the secure profile of these.", nullptr,
     "sdp::makeSecureOnly"},
    {"unbundle", {}, "Dissolve the BUNDLE groups; anchor is meant to follow.", nullptr, "sdp::unbundle"},
    {"strip-attributes", stripArguments, "Take attributes out by their names.", nullptr,
     "sdp::stripAttributes"},
    {"direction", directionArguments, "Give sections a direction.", nullptr, "sdp::setDirection"},
    {"disable", disableArguments, "Set port 0, and take the sections out of their groups.", nullptr,
     "sdp::disable"},
    {"canonical",
     {},
     "Write the form on which all readers agree, or refuse what has none.",
     nullptr,
     "sdp::canonicalise"}};

}  // namespace

std::span<const RequestRow> documentRequests() { return rows; }

}  // namespace tool
