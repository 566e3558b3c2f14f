#include "requests/originFields.h"
#include "requests/requestArguments.h"
#include "requests/requestTable.h"
#include "requests/wholeNumber.h"

// Requests for the o-line.

namespace tool {
namespace {

/// A version is digits (RFC 4566 9), though the library takes a sign.
bool isVersionNumber(std::string_view word) {
  return !word.starts_with('-') && wholeNumber<long long>(word).has_value();
}

constexpr RequestArgument kSetVersionArguments[] = {
    {.name = "N", .expects = "a whole number from 0 to 9223372036854775807", .accepts = isVersionNumber}};

unsigned short setVersion(cSdpNegotiator& object, RequestInput& input) {
  input.refusal = setObstacle(object).value_or("");
  if (!input.refusal.empty()) return 1;
  const auto version = wholeNumber<unsigned int>(input.words[0]);
  if (version) return object.sdpSetVersionNumber(*version);
  return object.sdpSetVersionNumberLong(wholeNumber<long long>(input.words[0]).value_or(0));
}

unsigned short increaseVersion(cSdpNegotiator& object, RequestInput& input) {
  input.refusal = raiseObstacle(object).value_or("");
  return input.refusal.empty() ? object.sdpIncVersion() : static_cast<unsigned short>(1);
}

constexpr RequestArgument kModifyOriginArguments[] = {
    {.name = "ID", .expects = "a session id without blanks", .accepts = isField},
    {.name = "VERSION", .expects = "a session version without blanks", .accepts = isField},
    {.name = "IP", .expects = "an IP address", .accepts = isAddress, .optional = true}};

unsigned short modifyOrigin(cSdpNegotiator& object, RequestInput& input) {
  return object.sdpModifyOLine(input.word(0), input.word(1), input.word(2));
}

constexpr RequestArgument kCopyOriginArguments[] = {
    {.name = "FILE", .expects = "a body or SIP message", .isFile = true}};

unsigned short copyOrigin(cSdpNegotiator& object, RequestInput& input) {
  return object.copyOLine(input.other ? &*input.other : nullptr);
}

constexpr RequestRow kRows[] = {
    {"set-version", kSetVersionArguments, "Set the session version of the o-line.", setVersion,
     "sdpSetVersionNumber sdpSetVersionNumberLong"},
    {"increase-version",
     {},
     "Raise the session version of the o-line by one.",
     increaseVersion,
     "sdpIncVersion"},
    {"modify-origin", kModifyOriginArguments,
     "Write a new o-line; without an address, with the unspecified one.", modifyOrigin, "sdpModifyOLine",
     true},
    {"renew-origin",
     {},
     "Write a new o-line with id and version by the time of day.",
     plainRequest<&cSdpNegotiator::sdpModifyOLine>,
     "sdpModifyOLine"},
    {"copy-origin", kCopyOriginArguments, "Take the o-line of another body over.", copyOrigin, "copyOLine"}};

}  // namespace

std::span<const RequestRow> originRequests() { return kRows; }

}  // namespace tool
