#include <string>
#include <vector>

#include "requests/requestArguments.h"
#include "requests/requestTable.h"

// Requests for attribute lines.

namespace tool {
namespace {

constexpr std::string_view kSwitchStates[] = {"on", "off"};
constexpr unsigned char kSwitchValues[] = {FEATURE_STATE_ON, FEATURE_STATE_OFF};
constexpr std::string_view kEchoSides[] = {"f", "b", "fb"};

constexpr RequestArgument kSilenceArguments[] = {
    {.name = "STATE", .expects = "a state", .values = kSwitchStates}};

unsigned short setSilence(cSdpNegotiator& object, RequestInput& input) {
  return object.sdpInsertSilenceSuppression(kSwitchValues[indexOf(kSwitchStates, input.words[0])]);
}

constexpr RequestArgument kEchoArguments[] = {
    {.name = "STATE", .expects = "a state", .values = kSwitchStates},
    {.name = "SIDE", .expects = "a side", .values = kEchoSides}};

unsigned short setEcho(cSdpNegotiator& object, RequestInput& input) {
  const std::size_t state = indexOf(kSwitchStates, input.words[0]);
  const std::size_t side = indexOf(kEchoSides, input.words[1]);
  const std::string line =
      std::string("\na=ecan:").append(kEchoSides[side]).append(" ").append(kSwitchStates[state]).append(" ");
  if (object.contains("\nm=audio") && object.contains(line.c_str())) {
    input.idle = "the body has this echo cancellation";
    return 0;
  }
  return object.sdpInsertEchoCancellation(kSwitchValues[state], static_cast<unsigned char>(side + 1));
}

constexpr std::string_view kStatuses[] = {"curr", "des", "conf"};
constexpr std::string_view kTypes[] = {"qos", "token"};
constexpr std::string_view kStrengths[] = {"mandatory", "optional", "none", "failure", "unknown"};
constexpr std::string_view kStatusTypes[] = {"e2e", "local", "remote"};
constexpr std::string_view kPreconditionDirections[] = {"none", "send", "recv", "sendrecv"};

/// Reads "curr:qos:e2e:none", or "des:qos:mandatory:e2e:sendrecv".
std::optional<sSdpPrecondions> preconditionOf(std::string_view text) {
  std::vector<std::string_view> words = splitAt(text, ':');
  const bool desired = indexOf(kStatuses, words[0]) == 1;
  if (words.size() == 4 && !desired) words.insert(words.begin() + 2, kStrengths[0]);  // which is not written
  if (words.size() != 5) return std::nullopt;
  const std::span<const std::string_view> fields[] = {kStatuses, kTypes, kStrengths, kStatusTypes,
                                                      kPreconditionDirections};
  unsigned int values[5] = {};
  for (std::size_t i = 0; i < words.size(); ++i) {
    values[i] = static_cast<unsigned int>(indexOf(fields[i], words[i]));
    if (values[i] == fields[i].size()) return std::nullopt;
  }
  return sSdpPrecondions{values[0] + 1, values[1], values[2], values[3], values[4]};
}

std::optional<std::vector<sSdpPrecondions>> preconditionsOf(std::string_view texts) {
  std::vector<sSdpPrecondions> list;
  for (const std::string_view text : splitAt(texts, ',')) {
    const std::optional<sSdpPrecondions> each = preconditionOf(text);
    if (!each) return std::nullopt;
    list.push_back(*each);
  }
  return list;
}

bool arePreconditions(std::string_view word) { return preconditionsOf(word).has_value(); }

constexpr RequestArgument kAddPreconditionsArguments[] = {
    {.name = "LIST",
     .expects = "preconditions between commas, such as curr:qos:e2e:none or des:qos:mandatory:e2e:sendrecv",
     .accepts = arePreconditions}};

unsigned short addPreconditions(cSdpNegotiator& object, RequestInput& input) {
  const std::vector<sSdpPrecondions> list = *preconditionsOf(input.words[0]);
  return object.sdpInsertPrecondions(1, static_cast<int>(list.size()), list.data());
}

constexpr RequestRow kRows[] = {{"silence", kSilenceArguments, "Add silence suppression lines.", setSilence,
                                 "sdpInsertSilenceSuppression"},
                                {"echo", kEchoArguments, "Add an echo cancellation line to the audio.",
                                 setEcho, "sdpInsertEchoCancellation"},
                                {"add-preconditions", kAddPreconditionsArguments, "Add precondition lines.",
                                 addPreconditions, "sdpInsertPrecondions"},
                                {"remove-preconditions",
                                 {},
                                 "Remove the precondition lines.",
                                 plainRequest<&cSdpNegotiator::sdpDelPrecondions>,
                                 "sdpDelPrecondions"}};

}  // namespace

std::span<const RequestRow> attributeRequests() { return kRows; }

}  // namespace tool
