#include "sdpModifiers/preconditions.h"

#include <algorithm>
#include <span>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Quality-of-service preconditions (RFC 3312).

namespace sdpneg {

namespace {

void traceAdded() { trace::progress("Precondition attributes have been added to the SDP."); }

using PreconditionLines = FixedText<256>;

constexpr const char* kTypes[] = {"qos", "token"};
constexpr const char* kStrengths[] = {" mandatory", " optional", " none", " failure", " unknown"};
constexpr const char* kStatusTypes[] = {" e2e", " local", " remote"};
constexpr const char* kDirections[] = {" none", " send", " recv", " sendrecv"};
constexpr unsigned int kFirstStatus = 1;

/// A field of a record: what it is called, and the texts of its values.
struct Field {
  const char* name;
  std::span<const char* const> texts;
  unsigned int value;
  bool present = true;
};

/// Adds a line; refuses it at the first value that its field does not have.
Refusal addLine(PreconditionLines& lines, const sSdpPrecondions& condition) {
  const bool desired = condition.status == SDP_PRECONDITION_DESIRED;
  const Field fields[] = {{"status", kPreconditions, condition.status - kFirstStatus},
                          {"type", kTypes, condition.type},
                          {"strength tag", kStrengths, condition.strength, desired},
                          {"status type", kStatusTypes, condition.statusType},
                          {"direction tag", kDirections, condition.direction}};
  for (const Field& field : fields) {
    if (!field.present) continue;
    if (field.value >= field.texts.size()) {
      return {.reason = SDP_REFUSED_PRECONDITION_FIELD, .what = field.name};
    }
    lines.add(field.texts[field.value]);
  }
  lines.add("\r\n");
  return {};
}

Refusal appendLines(SdpText& text, const PreconditionLines& lines, unsigned int allowedSize) {
  constexpr Refusal kNoRoom = {.reason = SDP_REFUSED_NO_ROOM_FOR_PRECONDITIONS};
  if (lines.cut() || text.size() + lines.size() + 2 >= allowedSize) return kNoRoom;
  const FixedText<258> added = FixedText<258>().add(missingLineEnd(text.view())).add(lines.view());
  if (text.append(added.view()) != Edit::done) return kNoRoom;
  traceAdded();
  return {};
}

bool isPrecondition(std::string_view line) {
  return std::ranges::any_of(kPreconditions, [line](const char* name) { return startsWith(line, name); });
}

/// The next precondition line, from the LF in front of it up to the LF that ends it.
std::optional<Span> nextPrecondition(std::string_view text, std::size_t from) {
  for (std::size_t line = findLine(text, kAttribute, from); line != npos;
       line = findLine(text, kAttribute, line)) {
    if (!isPrecondition(text.substr(line))) continue;
    const Line found = lineAt(text, line);
    if (!found.terminated) return std::nullopt;
    return Span{line - 1, found.lf};
  }
  return std::nullopt;
}

}  // namespace

Refusal insertPreconditions(SdpText& text, unsigned int allowedSize, int enable, int count,
                            const sSdpPrecondions* list) {
  if (enable != 1) {
    traceAdded();
    return {};
  }
  if (const Refusal refusal = refusalOfBuffer(text, "sdpInsertPrecondions")) return refusal;
  if (nextMAnywhereOf(text.view(), "audio") == npos) return {.reason = SDP_REFUSED_NO_AUDIO};
  if (list == nullptr && count > 0) return {.reason = SDP_REFUSED_NO_PRECONDITIONS};
  PreconditionLines lines;
  for (int i = 0; i < count; ++i) {
    if (const Refusal refusal = addLine(lines, list[i])) return refusal;
  }
  return appendLines(text, lines, allowedSize);
}

void removePreconditions(SdpText& text) {
  trace::progress("Entering sdpDelPreconditions() method.");
  std::size_t removed = 0;
  if (adopted(text, "sdpDelPreconditions")) removed = text.eraseEach(nextPrecondition);
  trace::progress("Total precondition attributes removed from the SDP = %d. Exiting...",
                  static_cast<int>(removed));
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpInsertPrecondions(char* sdp, unsigned int allowedSdpSize, int enable,
                                                      int count, const sSdpPrecondions* list) {
  SdpText text(sdp);
  return statusOf(insertPreconditions(text, allowedSdpSize, enable, count, list));
}

unsigned short sdpModifications::sdpDelPreconditions(char* sdp) {
  SdpText text(sdp);
  removePreconditions(text);
  return 0;
}
