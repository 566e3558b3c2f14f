#include <algorithm>
#include <iterator>
#include <string>

#include "requests/requestArguments.h"
#include "requests/requestTable.h"
#include "requests/wholeNumber.h"

// Requests for the set of m-lines and for whole bodies.

namespace tool {
namespace {

unsigned short removeZeroPorts(cSdpNegotiator& object, RequestInput& /*input*/) {
  object.sdpRemoveMlinesZeroPort();
  return 0;
}

constexpr std::size_t kLongestTransport = 14;  // of which the library takes no more characters

bool isNewTransport(std::string_view word) { return isField(word) && word.size() <= kLongestTransport; }

constexpr RequestArgument kSetTransportArguments[] = {
    {.name = "FROM", .expects = "a transport, or a part of it, without blanks", .accepts = isField},
    {.name = "TO",
     .expects = "a transport of at most 14 characters without blanks",
     .accepts = isNewTransport}};

unsigned short setTransport(cSdpNegotiator& object, RequestInput& input) {
  input.idle = "no m-line holds FROM, or all that do begin with TO already";
  object.sdpModifyTransportTypes(input.word(0), input.word(1));
  return 0;
}

constexpr std::string_view kMatches[] = {"media", "transport", "keep"};

constexpr RequestArgument kMatchArguments[] = {
    {.name = "FILE", .expects = "a body or SIP message", .isFile = true},
    {.name = "BY", .expects = "what is compared", .values = kMatches, .optional = true}};

unsigned short matchMLines(cSdpNegotiator& object, RequestInput& input) {
  const std::size_t by = input.words.size() > 1 ? indexOf(kMatches, input.words[1]) : 0;
  char other[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (!input.other || input.other->getSDP(other, sizeof other) != 0) return 1;
  return editText(object,
                  [&](char* text) { return sdpModifications::correctMLines(other, text, by == 2, by != 0); });
}

/// The video sections of another body, the last one ended by a line end; nothing, with the reason, when it has none.
std::string videoOf(cSdpNegotiator& other, RequestInput& input) {
  char sections[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (!other.contains("\nm=video")) {
    input.refusal = "the other body has no video";
  } else if (other.sdpGetVideoDescriptions(sections, sizeof sections, false) != 1 || sections[0] == '\0') {
    input.refusal = "the other body has video without a c-line, or too much of it";
  } else {
    const std::string text(sections);
    return text.back() == '\n' ? text : text + "\n";
  }
  return {};
}

constexpr RequestArgument kAddVideoArguments[] = {
    {.name = "FILE", .expects = "a body or SIP message", .isFile = true}};

unsigned short addVideo(cSdpNegotiator& object, RequestInput& input) {
  if (!input.other) return 1;
  const std::string sections = videoOf(*input.other, input);
  if (sections.empty()) return 1;
  if (object.contains("video") && !object.contains("m=video")) {
    input.refusal = "the body says \"video\" but has no m-line of it, and so no place for one";
    return 1;
  }
  object.sdpAddVideoDescriptions(sections.c_str());
  return 0;
}

unsigned short cutVideo(cSdpNegotiator& object, RequestInput& input) {
  char sections[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (!object.contains("\nm=video")) {
    input.idle = "the body has no video";
    return 0;
  }
  // The library says 1 when it is done. Its only refusals are a body without c-line and one that cannot be stored.
  if (!object.contains("c=")) input.refusal = "the body has no c-line";
  return object.sdpGetVideoDescriptions(sections, sizeof sections, true) == 1 ? 0 : 1;
}

constexpr std::string_view kDummyKinds[] = {"answer", "ack", "recvonly-ack"};
constexpr std::string_view kHoldStates[] = {"hold", "active"};

bool isPort(std::string_view word) { return wholeNumber<unsigned short>(word).has_value(); }

/// Whether all names between commas are names of rtpmap lines, which the library reads here itself.
bool areEncodingNames(std::string_view word) {
  const auto names = splitAt(word, ',');
  return areAudioCodecs(word) && std::all_of(names.begin(), names.end(), [](std::string_view name) {
           return cSdpNegotiator::getRtpMapAudioCodecValue(std::string(name).c_str()) != SDP_NO_CODEC;
         });
}

constexpr RequestArgument kDummyArguments[] = {
    {.name = "KIND", .expects = "a kind of dummy", .values = kDummyKinds},
    {.name = "IP", .expects = "an IP address", .accepts = isAddress},
    {.name = "PORT", .expects = "a port of 0 to 65535", .accepts = isPort},
    {.name = "STATE", .expects = "a state", .values = kHoldStates, .optional = true},
    {.name = "CODECS",
     .expects = "names of audio codecs between commas, as rtpmap lines have them",
     .accepts = areEncodingNames,
     .optional = true,
     .names = audioEncodingNames}};

/// Why the codecs of a dummy cannot be restricted to those of an argument.
std::string codecRefusal(const cSdpNegotiator& object, std::size_t kind, std::string_view names) {
  if (kind != 1) return "only an ack takes codecs";
  const auto& own = object.getParsedData().audioCodec;
  const auto codecs = *audioCodecsOf(names);
  const bool shared = std::any_of(codecs.begin(), codecs.end(), [&own](unsigned char codec) {
    return std::find(std::begin(own), std::end(own), codec) != std::end(own);
  });
  return shared ? "" : "the body has none of these codecs";
}

unsigned short createDummy(cSdpNegotiator& object, RequestInput& input) {
  const std::size_t kind = indexOf(kDummyKinds, input.words[0]);
  const char* const ip = input.word(1);
  const auto port = wholeNumber<unsigned short>(input.words[2]).value_or(0);
  const bool hold = input.words.size() < 4 || indexOf(kHoldStates, input.words[3]) == 0;
  const char* const codecs = input.word(4);
  if (codecs != nullptr) input.refusal = codecRefusal(object, kind, codecs);
  if (!input.refusal.empty()) return 1;
  if (kind == 0) return object.createDummyAnswer(hold, ip, port);
  if (kind == 2) return object.createDummy(false, hold, ip, port);
  return codecs != nullptr ? object.createDummyAck(hold, ip, port, codecs)
                           : object.createDummyAck(hold, ip, port);
}

bool isNumber(std::string_view word) { return wholeNumber<unsigned int>(word).has_value(); }

constexpr RequestArgument kDummyOfferArguments[] = {
    {.name = "ID", .expects = "a whole number of 32 bits", .accepts = isNumber},
    {.name = "VERSION", .expects = "a whole number of 32 bits", .accepts = isNumber},
    {.name = "FAMILY", .expects = "an address family", .values = kAddressFamilies, .optional = true}};

unsigned short dummyOffer(cSdpNegotiator& object, RequestInput& input) {
  const auto number = [&](std::size_t i) { return wholeNumber<unsigned int>(input.words[i]).value_or(0); };
  return object.sdpCreateRmDummyOffer(number(0), number(1), input.words.size() > 2 && input.words[2] == "6");
}

constexpr RequestRow kRows[] = {
    {"remove-zero-ports",
     {},
     "Remove the m-lines with port 0; the lines that follow them stay.",
     removeZeroPorts,
     "sdpRemoveMlinesZeroPort",
     false,
     Takes::any},
    {"set-transport", kSetTransportArguments,
     "Give the m-lines that have the transport FROM the transport TO.", setTransport,
     "sdpModifyTransportTypes", true},
    {"match-mlines", kMatchArguments,
     "Add the m-lines of another body that are missing; with keep, remove those that it has not.",
     matchMLines, "sdpModifications::correctMLines", false, Takes::any},
    {"add-video", kAddVideoArguments, "Put the video of another body in the place of the own, or at the end.",
     addVideo, "sdpAddVideoDescriptions", true, Takes::video},
    {"cut-video",
     {},
     "Take the video sections out.",
     cutVideo,
     "sdpGetVideoDescriptions",
     false,
     Takes::video},
    {"dummy", kDummyArguments,
     "Turn a received body into one that stands for the own, on hold unless active.", createDummy,
     "createDummy createDummyAnswer createDummyAck"},
    {"dummy-offer", kDummyOfferArguments, "Replace the body by an offer that stands for one to come.",
     dummyOffer, "sdpCreateRmDummyOffer", false, Takes::any}};

}  // namespace

std::span<const RequestRow> bodyRequests() { return kRows; }

}  // namespace tool
