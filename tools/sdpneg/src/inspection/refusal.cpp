#include "inspection/refusal.h"

#include <algorithm>
#include <iterator>
#include <memory>
#include <optional>
#include <string>

#include "inspection/heldMedia.h"
#include "sdpNegotiator.h"
#include "sdpNegotiatorParser.h"

namespace tool {
namespace {

constexpr int errorFlag = 4;
constexpr int infoFlag = 2;
constexpr unsigned short storingFailed = 2;
constexpr std::size_t portField = 1;
constexpr std::size_t addressField = 2;

/// What a refusal is about.
struct Refused {
  const sDescription& description;
  const BodyLines& lines;
};

/// Runs one step of the parse over the first `noOfMDs` media.
using Step = unsigned short (*)(sDescription& description, int noOfMDs);

unsigned short stepAudio(sDescription& description, int noOfMDs) {
  sSdpParsedData data;
  data.init();
  unsigned int count = 0;
  unsigned char periods[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {};
  return sdpParserMessage::findFirstAudio(data, description, count, noOfMDs, periods);
}

unsigned short stepVideo(sDescription& description, int noOfMDs) {
  sSdpParsedData data;
  data.init();
  return sdpParserMessage::findFirstVideo(data, description, noOfMDs);
}

unsigned short stepImage(sDescription& description, int noOfMDs) {
  sSdpParsedData data;
  data.init();
  return sdpParserMessage::findFirstImage(data, description, noOfMDs);
}

/// An audio m-line that is not in use is chosen where it is the last, which it is not for the whole body.
bool isLastByCount(const sDescription& description, int index) {
  const auto media = heldMedia(description);
  const mDescription& each = media[static_cast<std::size_t>(index)];
  return static_cast<std::size_t>(index) + 1 < media.size() && portOf(each) == 0;
}

/// The m-line that the parse refuses, in the order of its steps: the first one with which a step fails.
/// @return -1 when no step fails
int refusedMedia(const sDescription& original) {
  const auto description = std::make_unique_for_overwrite<sDescription>();
  sdp_copyDescription(description.get(), &original);
  sdpParserMessage::sdpPreProcessDescription(*description);
  const int noOfMDs = sdp_getNoOfMDs(description.get());
  for (const Step step : {&stepAudio, &stepVideo, &stepImage}) {
    if (step(*description, noOfMDs) == 0) continue;
    for (int i = 0; i < std::min(noOfMDs, SDP_MEDIA_CAPACITY); ++i) {
      if (!isLastByCount(*description, i) && step(*description, i + 1) != 0) return i;
    }
  }
  return -1;
}

std::string quoted(const char* text) { return std::string("\"") + (text != nullptr ? text : "") + "\""; }

std::string mediaName(const sDescription& description, int index) {
  return "m-line " + std::to_string(index + 1) + " (" + description.media[index].mLine.media + ")";
}

Problem explainSessionType(const Refused& body, std::string_view /*trace*/) {
  const c_line& line = body.description.cLine;
  const char* type = sdp_CgetAddressType(&line, 0);
  const bool isIP4 = sdpneg::equalNoCase(sdpneg::viewOf(type), "IP4");
  return {body.lines.sessionConnectionField(addressField),
          "the session's c-line has the type " + std::string(sdpneg::viewOf(type)) + ", but " +
              quoted(sdp_CgetAddress(&line, 0)) + " is no " + (isIP4 ? "IPv4" : "IPv6") + " address"};
}

Problem explainCount(const Refused& body, std::string_view /*trace*/) {
  return {body.lines.mediaField(SDP_MEDIA_CAPACITY, 0),
          "the body has " + std::to_string(sdp_getNoOfMDs(&body.description)) + " m-lines, and at most " +
              std::to_string(SDP_MEDIA_CAPACITY) + " are read"};
}

Problem explainPort(const Refused& body, std::string_view trace) {
  const int index = refusedMedia(body.description);
  if (index < 0) return {{}, std::string(trace)};
  const mDescription& media = body.description.media[index];
  return {body.lines.mediaField(static_cast<std::size_t>(index), portField),
          "the port of " + mediaName(body.description, index) + ", " + sdp_MgetPort(&media.mLine) + ", is " +
              (portOf(media) < 1024 ? "below 1024" : "above 65535")};
}

Problem explainAddress(const Refused& body, std::string_view trace) {
  const int index = refusedMedia(body.description);
  if (index < 0) return {{}, std::string(trace)};
  const auto media = static_cast<std::size_t>(index);
  const c_line& own = body.description.media[index].cLine;
  const bool inherited = !hasConnection(own);
  const std::string address = quoted(sdp_CgetAddress(inherited ? &body.description.cLine : &own, 0));
  const std::string name = mediaName(body.description, index);
  return {inherited ? body.lines.sessionConnectionField(addressField)
                    : body.lines.mediaConnectionField(media, addressField),
          (inherited ? "the session's c-line, which " + name + " has its address from, names " + address
                     : "the c-line of " + name + " names " + address) +
              ", which is no IP address"};
}

Problem explainLength(const Refused& body, std::string_view /*trace*/) {
  return {body.lines.offset(MAX_SDP_PROTOCOL_DATA_SIZE),
          "the body is longer than " + std::to_string(MAX_SDP_PROTOCOL_DATA_SIZE) + " characters"};
}

Problem explainMemory(const Refused& /*body*/, std::string_view /*trace*/) { return {{}, "out of memory"}; }

struct Explanation {
  std::string_view trace;  ///< what the trace line contains
  bool endsParse;          ///< whether a line that the parse ends follows it
  Problem (*explain)(const Refused& body, std::string_view trace);
};

constexpr Explanation explanations[] = {{"The c-line is malformed.", true, explainSessionType},
                                        {"The noOfMDs > ", true, explainCount},
                                        {"Invalid port number found in m=", true, explainPort},
                                        {"Invalid ip address (", true, explainAddress},
                                        {"There is no memory", true, explainMemory},
                                        {"exceeds MAX_SDP_PROTOCOL_DATA_SIZE", false, explainLength}};

constexpr std::string_view noDummy = "Failed to create a dummy SDP";

/// Errors that are traced behind what failed, or that are none.
constexpr std::string_view sayNothing[] = {noDummy, "The ICE attributes have been removed.",
                                           "The o-line has been changed.",
                                           "Preconditions attributes cannot add to the buffer"};

bool saysNothing(std::string_view line) {
  return std::any_of(std::begin(sayNothing), std::end(sayNothing),
                     [line](std::string_view each) { return sdpneg::contains(line, each); });
}

/// The lines of a flag, without those that say nothing and without the line that says that the parse ended for the one before it.
/// @param ended receives whether there was such a line
std::vector<std::string_view> errorsOf(std::span<const TraceLine> trace, bool& ended, int flag) {
  std::vector<std::string_view> errors;
  for (const TraceLine& line : trace) {
    if (line.flag == flag && !saysNothing(line.text)) errors.emplace_back(line.text);
  }
  ended = !errors.empty() && sdpneg::contains(errors.back(), "Exiting sdpParse() method. Exiting...");
  if (ended) errors.pop_back();
  return errors;
}

std::string cannotBeStored() {
  return "the text cannot be stored: it does not deflate into " + std::to_string(SDP_STORED_TEXT_SIZE) +
         " bytes";
}

/// A line of a trace in plain words where its own are for the library's developers.
std::string inWords(std::string_view line) {
  std::string words(withoutPrefix(line));
  // The body itself has been read before.
  if (words.starts_with("line ")) return "what comes of it cannot be read: " + words;
  if (!sdpneg::contains(line, "The noOfMDs > ")) return words;
  return "what comes of it has more than the " + std::to_string(SDP_MEDIA_CAPACITY) +
         " m-lines that are read";
}

/// The last line about room in the text. Some edits trace it as a detail, and other edits follow.
std::optional<std::string> explainRoom(std::span<const TraceLine> trace) {
  const auto last = std::find_if(trace.rbegin(), trace.rend(), [](const TraceLine& line) {
    return sdpneg::contains(line.text, "ot enough room") ||
           sdpneg::contains(line.text, "overflow the buffer");
  });
  if (last == trace.rend()) return std::nullopt;
  return std::string(withoutPrefix(last->text));
}

}  // namespace

Problem explainRefusal(const std::vector<TraceLine>& trace, const sDescription& description,
                       const BodyLines& lines) {
  bool ended = false;
  const std::vector<std::string_view> errors = errorsOf(trace, ended, errorFlag);
  const std::string_view error = errors.empty() ? std::string_view() : errors.back();
  const Refused body{description, lines};
  for (const Explanation& each : explanations) {
    if (ended == each.endsParse && sdpneg::contains(error, each.trace)) return each.explain(body, error);
  }
  if (ended) return {{}, std::string(error)};
  // What is left is the storing step, which refuses without a trace. Errors before it were none to the parse.
  return {lines.bodyPlace(1, 1), cannotBeStored()};
}

std::string explainRefusedRequest(std::span<const TraceLine> trace, unsigned short status) {
  bool ended = false;
  std::vector<std::string_view> errors = errorsOf(trace, ended, errorFlag);
  if (status == storingFailed && !ended) return cannotBeStored();
  if (!errors.empty()) return inWords(errors.back());
  if (auto room = explainRoom(trace)) return *room;
  // Some requests report their refusals as information; what a dummy is made of is none.
  bool unused = false;
  errors = errorsOf(trace, unused, infoFlag);
  const bool made = !trace.empty() && sdpneg::contains(trace.back().text, noDummy);
  if (!errors.empty() && !made) return std::string(withoutPrefix(errors.back()));
  if (trace.empty()) return "status " + std::to_string(status);
  return std::string(withoutPrefix(trace.back().text));
}

std::string explainRefusedText(std::span<const TraceLine> trace) {
  // Only the storing step refuses without a trace.
  return explainRefusedRequest(trace, storingFailed);
}

std::span<const TraceLine> beforeParse(std::span<const TraceLine> trace) {
  const auto parse = std::find_if(trace.begin(), trace.end(), [](const TraceLine& line) {
    return sdpneg::contains(line.text, "Entering sdpParse() method");
  });
  return trace.first(static_cast<std::size_t>(parse - trace.begin()));
}

bool hasError(std::span<const TraceLine> trace) {
  return std::any_of(trace.begin(), trace.end(),
                     [](const TraceLine& line) { return line.flag == errorFlag; });
}

std::string_view withoutPrefix(std::string_view line) { return line.substr(line.find(':') + 1); }

}  // namespace tool
