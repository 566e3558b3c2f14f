#include "commands/createCommand.h"

#include <algorithm>
#include <iterator>

#include "cMsgIPAddress.h"
#include "commands/exitStatus.h"
#include "inspection/names.h"
#include "inspection/refusal.h"
#include "requests/wholeNumber.h"
#include "sdpNegotiator.h"
#include "text/search.h"

namespace tool {
namespace {

/// The codecs that the library writes into a new body. It passes over other names, which nobody means.
constexpr std::string_view kCodecNames[] = {"PCMU", "PCMA", "G729", "G723", "telephone-event"};

/// The name of a codec as the library wants it.
std::string_view codecNamed(std::string_view word) {
  const auto found = std::find_if(std::begin(kCodecNames), std::end(kCodecNames),
                                  [word](std::string_view name) { return sdpneg::equalNoCase(name, word); });
  if (found != std::end(kCodecNames)) return *found;
  std::string names;
  for (const std::string_view name : kCodecNames) names.append(names.empty() ? "" : ", ").append(name);
  throw UsageError{"CODEC is one of " + names + ", not '" + std::string(word) + "'"};
}

/// The codecs of all operands from the third on, separated by commas.
std::string codecList(const std::vector<std::string>& operands) {
  std::string list;
  for (std::size_t i = 2; i < operands.size(); ++i) {
    sdpneg::Words words(operands[i], ",");
    for (auto word = words.next(); !word.empty(); word = words.next()) {
      list.append(list.empty() ? "" : ",").append(codecNamed(word));
    }
  }
  return list;
}

int createAnswer(const Arguments& arguments, Streams streams) {
  if (!arguments.operands().empty() || arguments.has("--inactive")) {
    throw UsageError{"--dummy-answer goes with --ipv6 and --session-only alone"};
  }
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  int length = 0;
  cSdpNegotiator::generateDummyAnswer(text, arguments.has("--session-only"), length,
                                      arguments.has("--ipv6") ? kIpVersion6 : kIpVersion4);
  streams.out.write(text);
  return exitSuccess;
}

/// The library writes the address type IP4 for every address; the one of an IPv6 address is put right.
std::string withAddressType(std::string text, const std::string& address) {
  if (!cMsgIPAddress::isIPv6(address.c_str())) return text;
  const std::string wrong = "IN IP4 " + address;
  for (std::size_t at = text.find(wrong); at != std::string::npos; at = text.find(wrong, at + 1)) {
    text.replace(at, wrong.size(), "IN IP6 " + address);
  }
  return text;
}

int createBody(const std::string& address, unsigned int port, const std::string& codecs, bool inactive,
               Streams streams) {
  const RefusalWatch watch;
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  const unsigned short status =
      cSdpNegotiator::sdpCreateMessage(text, address.c_str(), port, codecs.c_str(), inactive);
  if (status != 0) {
    writeProblem(streams.err, "", {{}, "create is refused: " + explainRefusedRequest(watch, status)});
    return exitRefused;
  }
  streams.out.write(withAddressType(text, address));
  return exitSuccess;
}

}  // namespace

int runCreate(const Arguments& arguments, Streams streams) {
  if (arguments.has("--dummy-answer")) return createAnswer(arguments, streams);
  if (arguments.has("--ipv6") || arguments.has("--session-only")) {
    throw UsageError{"--ipv6 and --session-only go with --dummy-answer"};
  }
  const std::vector<std::string>& operands = arguments.operands();
  if (operands.size() < 2) throw UsageError{"ADDRESS and PORT are wanted, or --dummy-answer"};
  const auto port = wholeNumber<unsigned int>(operands[1]);
  if (!port) throw UsageError{"PORT is a number, not '" + operands[1] + "'"};
  return createBody(operands[0], *port, codecList(operands), arguments.has("--inactive"), streams);
}

}  // namespace tool
