#include <cstddef>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"

// Quality-of-service preconditions (RFC 3312).

namespace {

using namespace sdpneg;

using PreconditionLines = FixedText<256>;

constexpr const char* kStatuses[] = {"a=curr:", "a=des:", "a=conf:"};
constexpr const char* kTypes[] = {"qos", "token"};
constexpr const char* kStrengths[] = {" mandatory", " optional", " none", " failure", " unknown"};
constexpr const char* kStatusTypes[] = {" e2e", " local", " remote"};
constexpr const char* kDirections[] = {" none", " send", " recv", " sendrecv"};
constexpr unsigned int kFirstStatus = 1;

/// Adds the text of a field's value.
/// @return false, with a trace, for a value that the field does not have
template <std::size_t N>
bool addField(PreconditionLines& lines, const char* const (&texts)[N], unsigned int value,
              const char* refusal) {
  if (value >= N) {
    trace::error("%s", refusal);
    return false;
  }
  lines.add(texts[value]);
  return true;
}

bool addLine(PreconditionLines& lines, const sSdpPrecondions& condition) {
  const bool desired = condition.status == SDP_PRECONDITION_DESIRED;
  if (!addField(lines, kStatuses, condition.status - kFirstStatus, "Invalid precondition status."))
    return false;
  if (!addField(lines, kTypes, condition.type, "Invalid precondition type.")) return false;
  if (desired && !addField(lines, kStrengths, condition.strength, "Invalid precondition strength tag."))
    return false;
  if (!addField(lines, kStatusTypes, condition.statusType, "Invalid precondition status type.")) return false;
  if (!addField(lines, kDirections, condition.direction, "Invalid precondition direction tag.")) return false;
  lines.add("\r\n");
  return true;
}

unsigned short refuseSize() {
  trace::error("The new sdpLength is larger than allowedSdpSize.");
  return 1;
}

unsigned short appendLines(SdpText& text, const PreconditionLines& lines, unsigned int allowedSdpSize) {
  if (lines.cut() || text.size() + lines.size() + 2 >= allowedSdpSize) return refuseSize();
  const FixedText<258> added = FixedText<258>().add(missingLineEnd(text.view())).add(lines.view());
  if (text.append(added.view()) != Edit::done) return refuseSize();
  trace::progress("Precondition attributes have been added to the SDP.");
  return 0;
}

bool isPrecondition(std::string_view line) {
  return startsWith(line, "a=curr:") || startsWith(line, "a=des:") || startsWith(line, "a=conf:");
}

/// The next precondition line, from the LF in front of it up to the LF that ends it.
std::optional<Span> nextPrecondition(std::string_view text, std::size_t from) {
  for (std::size_t line = findLine(text, "a=", from); line != npos; line = findLine(text, "a=", line)) {
    if (!isPrecondition(text.substr(line))) continue;
    const Line found = lineAt(text, line);
    if (!found.terminated) return std::nullopt;
    return Span{line - 1, found.lf};
  }
  return std::nullopt;
}

}  // namespace

unsigned short sdpModifications::sdpInsertPrecondions(char* sdp, unsigned int allowedSdpSize, int enable,
                                                      int count, const sSdpPrecondions* list) {
  if (enable != 1) {
    trace::progress("Precondition attributes have been added to the SDP.");
    return 0;
  }
  SdpText text(sdp);
  if (!adopted(text, "sdpInsertPrecondions")) return 1;
  if (findAnywhere(text.view(), "m=audio") == npos) {
    trace::error("No audio <mline> found.");
    return 1;
  }
  if (list == nullptr && count > 0) {
    trace::error("sdpInsertPrecondions(): There is no list of preconditions. Exiting.");
    return 1;
  }
  PreconditionLines lines;
  for (int i = 0; i < count; ++i) {
    if (!addLine(lines, list[i])) return 1;
  }
  return appendLines(text, lines, allowedSdpSize);
}

unsigned short sdpModifications::sdpDelPreconditions(char* sdp) {
  trace::progress("Entering sdpDelPreconditions() method.");
  SdpText text(sdp);
  std::size_t removed = 0;
  if (adopted(text, "sdpDelPreconditions")) removed = text.eraseEach(nextPrecondition);
  trace::progress("Total precondition attributes removed from the SDP = %d. Exiting...",
                  static_cast<int>(removed));
  return 0;
}
