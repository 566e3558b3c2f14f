#include "requestTable.h"

#include <algorithm>
#include <iterator>

#include "cMsgIPAddress.h"
#include "names.h"
#include "text/search.h"
#include "wholeNumber.h"

namespace tool {
namespace {

constexpr std::string_view directions[] = {"sendonly", "recvonly", "inactive"};
constexpr std::string_view mediaKinds[] = {"audio", "video"};
constexpr std::string_view switchStates[] = {"on", "off"};

bool isVersionNumber(std::string_view word) { return wholeNumber<long long>(word).has_value(); }

/// A word that may stand in an o-line as one of its fields.
bool isField(std::string_view word) {
  return !word.empty() && std::all_of(word.begin(), word.end(), [](char c) {
    return static_cast<unsigned char>(c) > ' ' && c != '\x7f';
  });
}

bool isAddress(std::string_view word) { return cMsgIPAddress::isValid(std::string(word).c_str()); }

/// Where a word stands among the values of an argument.
std::size_t indexOf(std::span<const std::string_view> values, std::string_view word) {
  const auto found = std::find_if(values.begin(), values.end(), [word](std::string_view value) {
    return sdpneg::equalNoCase(value, word);
  });
  return static_cast<std::size_t>(found - values.begin());
}

unsigned char directionOf(std::string_view word) {
  unsigned char mode = CONNECTION_MODE_SENDONLY;
  while (mode < CONNECTION_MODE_INACTIVE && !sdpneg::equalNoCase(directionName(mode), word)) ++mode;
  return mode;
}

constexpr RequestArgument setVersionArguments[] = {
    {.name = "N", .expects = "a whole number of 64 bits", .accepts = isVersionNumber}};

unsigned short setVersion(cSdpNegotiator& object, const RequestInput& input) {
  return object.sdpSetVersionNumberLong(wholeNumber<long long>(input.words[0]).value_or(0));
}

unsigned short increaseVersion(cSdpNegotiator& object, const RequestInput& /*input*/) {
  return object.sdpIncVersion();
}

constexpr RequestArgument modifyOriginArguments[] = {
    {.name = "ID", .expects = "a session id without blanks", .accepts = isField},
    {.name = "VERSION", .expects = "a session version without blanks", .accepts = isField},
    {.name = "IP", .expects = "an IP address", .accepts = isAddress, .optional = true}};

unsigned short modifyOrigin(cSdpNegotiator& object, const RequestInput& input) {
  return object.sdpModifyOLine(input.word(0), input.word(1), input.word(2));
}

unsigned short renewOrigin(cSdpNegotiator& object, const RequestInput& /*input*/) {
  return object.sdpModifyOLine();
}

constexpr RequestArgument copyOriginArguments[] = {
    {.name = "FILE", .expects = "a body or SIP message", .isFile = true}};

unsigned short copyOrigin(cSdpNegotiator& object, const RequestInput& input) {
  return object.copyOLine(input.other ? &*input.other : nullptr);
}

constexpr RequestArgument modeArguments[] = {
    {.name = "DIRECTION", .expects = "a direction", .values = directions},
    {.name = "MEDIA", .expects = "a kind of media", .values = mediaKinds, .optional = true}};

unsigned short setMode(cSdpNegotiator& object, const RequestInput& input) {
  constexpr int masks[] = {1, 2, 64};  // audio, video, both
  const std::size_t media =
      input.words.size() > 1 ? indexOf(mediaKinds, input.words[1]) : std::size(mediaKinds);
  return object.sdpReplaceMode(directionOf(input.words[0]), masks[media]);
}

constexpr RequestArgument silenceArguments[] = {
    {.name = "STATE", .expects = "a state", .values = switchStates}};

unsigned short setSilence(cSdpNegotiator& object, const RequestInput& input) {
  constexpr unsigned char states[] = {FEATURE_STATE_ON, FEATURE_STATE_OFF};
  return object.sdpInsertSilenceSuppression(states[indexOf(switchStates, input.words[0])]);
}

constexpr RequestRow requests[] = {
    {"set-version", setVersionArguments, "Set the session version of the o-line.", setVersion},
    {"increase-version", {}, "Raise the session version of the o-line by one.", increaseVersion},
    {"modify-origin", modifyOriginArguments,
     "Write a new o-line; without an address, with the unspecified one.", modifyOrigin, true},
    {"renew-origin", {}, "Write a new o-line with id and version by the time of day.", renewOrigin},
    {"copy-origin", copyOriginArguments, "Take the o-line of another body over.", copyOrigin},
    {"mode", modeArguments, "Restrict the direction of the session and its media.", setMode},
    {"silence", silenceArguments, "Add silence suppression lines.", setSilence}};

}  // namespace

std::span<const RequestRow> requestTable() { return requests; }

const RequestRow* findRequest(std::string_view name) {
  const auto found = std::find_if(std::begin(requests), std::end(requests),
                                  [name](const RequestRow& row) { return row.name == name; });
  return found != std::end(requests) ? found : nullptr;
}

bool isAccepted(const RequestArgument& argument, std::string_view word) {
  if (!argument.values.empty()) return indexOf(argument.values, word) < argument.values.size();
  return argument.accepts == nullptr || argument.accepts(word);
}

std::string requestSynopsis(const RequestRow& request) {
  std::string out(request.name);
  for (const RequestArgument& argument : request.arguments) {
    out.append(argument.optional ? " [" : " ").append(argument.values.empty() ? argument.name : "");
    for (const std::string_view value : argument.values) {
      out.append(value == argument.values.front() ? "" : "|").append(value);
    }
    out.append(argument.optional ? "]" : "");
  }
  return out;
}

std::string argumentHelp(const RequestArgument& argument) {
  std::string out(argument.expects);
  for (std::size_t i = 0; i < argument.values.size(); ++i) {
    const bool last = i + 1 == argument.values.size();
    out.append(i == 0 ? ": " : last ? " or " : ", ").append(argument.values[i]);
  }
  return out;
}

}  // namespace tool
