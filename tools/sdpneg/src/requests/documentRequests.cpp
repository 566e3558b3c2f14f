#include <array>

#include "requests/requestTable.h"
#include "sdpDocumentRequests.h"

// Requests of the document layer, which judges their arguments itself.

namespace tool {
namespace {

template <std::size_t Size>
bool fits(const std::array<std::string_view, Size>& words) {
  return !sdp::checkArguments(words);
}

bool isMedia(std::string_view word) { return fits<2>({"disable", word}); }
bool isCodecList(std::string_view word) { return fits<2>({"keep-codecs", word}); }
bool isLiteral(std::string_view word) { return fits<3>({"anchor", word, "1024"}); }
bool isAnchorPort(std::string_view word) { return fits<3>({"anchor", "192.0.2.1", word}); }
bool isProfile(std::string_view word) { return fits<2>({"set-profile", word}); }
bool areAttributeNames(std::string_view word) { return fits<2>({"strip-attributes", word}); }
bool isDirection(std::string_view word) { return fits<2>({"direction", word}); }

constexpr std::string_view kMedia[] = {"audio", "video", "text", "application", "message", "image", "all"};
constexpr std::string_view kProfiles[] = {"RTP/AVP",   "RTP/AVPF",         "RTP/SAVP",
                                          "RTP/SAVPF", "UDP/TLS/RTP/SAVP", "UDP/TLS/RTP/SAVPF"};
constexpr std::string_view kDirections[] = {"sendrecv", "sendonly", "recvonly", "inactive"};

constexpr RequestArgument kMediaArgument = {.name = "MEDIA",
                                            .expects = "a section's number, mid=VALUE, or one of these words",
                                            .values = kMedia,
                                            .accepts = isMedia,
                                            .optional = true};
constexpr RequestArgument kListArgument = {
    .name = "LIST",
    .expects = "codecs between commas, each NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS or a payload type",
    .accepts = isCodecList};

constexpr RequestArgument kCodecArguments[] = {kListArgument, kMediaArgument};
constexpr RequestArgument kAnchorArguments[] = {
    {.name = "ADDRESS", .expects = "an IPv4 or IPv6 address", .accepts = isLiteral},
    {.name = "PORT", .expects = "an even port from 1024 to 65534", .accepts = isAnchorPort}};
constexpr RequestArgument kProfileArguments[] = {
    {.name = "PROFILE", .expects = "a profile of RTP", .values = kProfiles, .accepts = isProfile},
    kMediaArgument};
constexpr RequestArgument kMediaArguments[] = {kMediaArgument};
constexpr RequestArgument kStripArguments[] = {
    {.name = "NAMES",
     .expects = "names of attributes between commas, which may end in *",
     .accepts = areAttributeNames},
    kMediaArgument};
constexpr RequestArgument kDirectionArguments[] = {
    {.name = "DIRECTION", .expects = "a direction", .values = kDirections, .accepts = isDirection},
    kMediaArgument};
constexpr RequestArgument kDisableArguments[] = {
    {.name = "MEDIA", .expects = kMediaArgument.expects, .values = kMedia, .accepts = isMedia}};

constexpr RequestRow kRows[] = {
    {"keep-codecs", kCodecArguments,
     "Keep the codecs of a LIST, and what serves them; sections without go to port 0.", nullptr,
     "sdp::keepCodecs"},
    {"drop-codecs", kCodecArguments,
     "Drop the codecs of a LIST, and what served them; sections without go to port 0.", nullptr,
     "sdp::dropCodecs"},
    {"order-codecs", kCodecArguments, "Put the codecs of a LIST first, in its order.", nullptr,
     "sdp::orderCodecs"},
    {"anchor", kAnchorArguments, "Lead all media by way of one address, from a port on; ICE goes.", nullptr,
     "sdp::anchor"},
    {"set-profile", kProfileArguments,
     "Give RTP sections a profile, and take out the keys that do not go with it.", nullptr,
     "sdp::setProfile"},
    {"opportunistic", kMediaArguments, "Give secure sections a plain profile, and leave their keys.", nullptr,
     "sdp::makeOpportunistic"},
    {"secure-only", kMediaArguments, "Give plain sections with keys the secure profile of these.", nullptr,
     "sdp::makeSecureOnly"},
    {"unbundle", {}, "Dissolve the BUNDLE groups; anchor is meant to follow.", nullptr, "sdp::unbundle"},
    {"strip-attributes", kStripArguments, "Take attributes out by their names.", nullptr,
     "sdp::stripAttributes"},
    {"direction", kDirectionArguments, "Give sections a direction.", nullptr, "sdp::setDirection"},
    {"disable", kDisableArguments, "Set port 0, and take the sections out of their groups.", nullptr,
     "sdp::disable"},
    {"canonical",
     {},
     "Write the form on which all readers agree, or refuse what has none.",
     nullptr,
     "sdp::canonicalise"}};

}  // namespace

std::span<const RequestRow> documentRequests() { return kRows; }

}  // namespace tool
