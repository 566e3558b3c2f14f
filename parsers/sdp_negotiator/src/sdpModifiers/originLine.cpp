#include "sdpModifiers/originLine.h"

#include <sys/time.h>

#include <algorithm>
#include <concepts>
#include <cstring>
#include <limits>
#include <optional>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "text/search.h"
#include "trace.h"
#include "vocabulary.h"

// The o-line: rebuilt, or its version replaced or raised.

namespace sdpneg {

namespace {

/// A version's place by the spaces counted from the text's start: it stands behind the second one and ends
/// before the third, in a text whose lines before the o-line hold none.
struct VersionField {
  std::size_t space;  ///< the space in front of it
  std::size_t end;    ///< the space behind it; the text's end when there is none
};

std::optional<VersionField> versionField(std::string_view text) {
  const std::size_t first = text.find(' ');
  const std::size_t second = first == npos ? npos : text.find(' ', first + 1);
  if (second == npos) return std::nullopt;
  return VersionField{second, orEnd(text.find(' ', second + 1), text)};
}

/// Replaces a version's field and cuts the text at its capacity.
/// @return where the o-line's LF stands then; nothing, with the text unchanged, when it would have none
std::optional<std::size_t> replaceVersion(SdpText& text, std::size_t oLine, std::string_view version) {
  const std::optional<VersionField> field = versionField(text.view());
  if (!field) return std::nullopt;
  const std::size_t longestText = text.size() + text.room();
  const std::size_t begin = field->space + 1;
  version = version.substr(0, longestText - begin);
  const std::size_t behind = begin + version.size();
  const std::size_t kept = std::min(text.size() - field->end, longestText - behind);
  // The o-line's LF is looked for where the o-line stood, in the text as it will be.
  std::size_t lf = text.view().substr(0, begin).find('\n', oLine);
  if (lf == npos) {
    const std::string_view tail = text.view().substr(field->end, kept);
    const std::size_t found = tail.find('\n', oLine > behind ? oLine - behind : 0);
    if (found == npos) return std::nullopt;
    lf = behind + found;
  }
  text.truncate(field->end + kept);
  text.replace({begin, field->end}, version);
  return lf;
}

Refusal replaceVersionNumber(SdpText& text, const char* operation, std::integral auto version,
                             unsigned short& oLineEnd) {
  trace::progress("Entering %s() method.", operation);
  if (const Refusal refusal = refusalOfBuffer(text, operation)) return refusal;
  const std::size_t oLine = findAnywhere(text.view(), kOriginLine);
  if (oLine == npos) return {.reason = SDP_REFUSED_NO_O_LINE};
  const std::optional<std::size_t> lf = replaceVersion(text, oLine, FixedText<64>().add(version).view());
  if (!lf) return {.reason = SDP_REFUSED_UNENDED_O_LINE};
  oLineEnd = static_cast<unsigned short>(*lf + 1);
  trace::progress("The version of o-line has been replaced. Exiting...");
  return {};
}

/// The address type and address of a new o-line.
struct OriginAddress {
  const char* type;
  const char* address;
};

/// @param between the text from the old o-line to the s-line, asked for its address type when no ip is given
std::optional<OriginAddress> originAddress(const GivenAddress& given, std::string_view between) {
  if (given.text == nullptr) {
    return contains(between, kIp6) ? OriginAddress{kIp6, "::"} : OriginAddress{kIp4, "0.0.0.0"};
  }
  if (given.version == kIpVersionUnknown) return std::nullopt;
  return OriginAddress{addressTypeOf(given.version), given.text};
}

using OriginLineText = decltype(NewOriginLine::line);

/// Composes a new o-line, which its text cuts.
/// @param line empty before
void composeOriginLine(OriginLineText& line, std::string_view id, std::string_view version,
                       OriginAddress address) {
  line.add("o=ZEV ").add(id).add(" ").add(version).add(" IN ");
  line.add(address.type).add(" ").add(address.address).add("\r\n");
}

/// All that stands from "o=" to "s=", in the place of which an o-line is put; its end is npos when there is no "s=".
std::optional<Span> originSpan(std::string_view text) {
  const std::size_t oLine = findAnywhere(text, kOriginLine);
  if (oLine == npos) return std::nullopt;
  return Span{oLine, findAnywhere(text, kSessionNameLine, oLine)};
}

/// Puts a new o-line in the place of another.
Refusal putOriginLine(SdpText& text, Span old, std::string_view composed, unsigned short& oLineEnd) {
  // A line that was cut before its LF ends the text.
  const Line line = lineAt(composed, 0);
  if (!line.terminated) old.end = text.size();
  if (text.replace(old, composed.substr(0, line.next())) != Edit::done) {
    return {.reason = SDP_REFUSED_NO_ROOM, .operation = "sdpModifyOLine", .what = "new o-line"};
  }
  oLineEnd = static_cast<unsigned short>(old.begin + line.next());
  if (!line.terminated) return {.reason = SDP_REFUSED_ORIGIN_CUT};
  return {};
}

/// The third word of a line's content. Spaces alone separate words, as where a version is replaced.
std::string_view thirdWord(std::string_view line) {
  Words words(line, " ");
  words.next();
  words.next();
  return words.next();
}

/// How a version is raised: the digits that take the place of its last characters.
struct Raised {
  FixedText<24> digits;
  std::size_t replaced;
};

/// What follows a version, which is the number that the field begins with, 0 without one; nothing when 64 bits do not
/// hold it. The zeros in front of a plain number stay; another field must not become shorter.
std::optional<Raised> successor(std::string_view version) {
  const auto number = numberOrZero<long long>(version);
  if (number == std::numeric_limits<long long>::max()) return std::nullopt;
  const FixedText<24> next = FixedText<24>().add(number + 1);
  if (std::all_of(version.begin(), version.end(), isDigit)) {
    return Raised{next, std::min(next.size(), version.size())};
  }
  if (next.size() != version.size() && next.size() != version.size() + 1) return std::nullopt;
  return Raised{next, version.size()};
}

/// Raises the version of an o-line; one with fewer than three words stays as it is.
Refusal raiseVersion(SdpText& text, std::size_t oLine) {
  const Line line = lineAt(text.view(), oLine);
  if (!line.terminated) return {.reason = SDP_REFUSED_UNENDED_O_LINE};
  const std::string_view version = thirdWord(content(text.view(), line));
  if (version.empty()) return {};
  const std::optional<Raised> next = successor(version);
  if (!next) return {.reason = SDP_REFUSED_VERSION_TOO_LONG};
  const std::size_t end = static_cast<std::size_t>(version.data() - text.view().data()) + version.size();
  if (text.replace({end - next->replaced, end}, next->digits.view()) != Edit::done) {
    return {.reason = SDP_REFUSED_NO_ROOM, .operation = "sdpIncVersion", .what = "raised version"};
  }
  return {};
}

}  // namespace

void composeSessionId(char* id, long seconds, long microseconds) {
  constexpr std::size_t kSecondsDigits = 6;
  constexpr long kMoreDigits = 1'000'000;
  if (seconds >= kMoreDigits) {
    auto left = static_cast<unsigned int>(seconds % kMoreDigits);
    for (std::size_t i = kSecondsDigits; i > 0; left /= 10) id[--i] = static_cast<char>('0' + left % 10);
  } else if (const FixedText<24> all = FixedText<24>().add(seconds); all.size() > kSecondsDigits) {
    all.view().copy(id, kSecondsDigits, all.size() - kSecondsDigits);
  }
  id[kSecondsDigits] = '\0';
  char* const end = id + std::strlen(id);
  end[FixedText<24>().add(microseconds).view().copy(end, 3)] = '\0';
}

namespace {

void composeSessionIdNow(char* id) {
  timeval now{};
  gettimeofday(&now, nullptr);
  composeSessionId(id, now.tv_sec, now.tv_usec);
}

}  // namespace

Refusal modifyOriginLine(SdpText& text, const char* sessionId, const char* version, const GivenAddress& given,
                         unsigned short& oLineEnd) {
  constexpr const char* kOperation = "sdpModifyOLine";
  const auto shown = [](const char* value) { return value != nullptr ? value : "(null)"; };
  const bool tracing = isTracing();
  if (tracing) {
    trace::progress("Entering sdpModifyOLine() method. sessionId=[%s] version=[%s] ip=[%s]", shown(sessionId),
                    shown(version), shown(given.text));
  }
  if (text.isNull()) return {.reason = SDP_REFUSED_NO_ORIGIN_BUFFER};
  if (const Refusal refusal = refusalOfBuffer(text, kOperation)) return refusal;
  const std::optional<Span> old = originSpan(text.view());
  if (!old) return {.reason = SDP_REFUSED_ORIGIN_WITHOUT_O_LINE};
  if (old->end == npos) return {.reason = SDP_REFUSED_ORIGIN_WITHOUT_S_LINE};
  const std::optional<OriginAddress> address =
      originAddress(given, text.view().substr(old->begin, old->end - old->begin));
  if (!address) return {.reason = SDP_REFUSED_ORIGIN_ADDRESS};
  const std::string_view id = viewOf(sessionId);
  if (const Refusal refusal = refusalOfLineTexts({id, viewOf(version), viewOf(given.text)}, kOperation)) {
    return refusal;
  }
  OriginLineText composed;
  composeOriginLine(composed, id, viewOf(version), *address);
  const Refusal refusal = putOriginLine(text, *old, composed.view(), oLineEnd);
  if (tracing && !refusal) trace::info("The o-line has been changed. Exiting...");
  return refusal;
}

Refusal renewOriginLine(SdpText& text, const GivenAddress& address, unsigned short& oLineEnd) {
  char id[16] = "";
  composeSessionIdNow(id);
  return modifyOriginLine(text, id, id, address, oLineEnd);
}

bool makeOriginLine(NewOriginLine& made, std::string_view text, const GivenAddress& address) {
  const std::optional<Span> old = originSpan(text);
  if (!old || old->end == npos || address.version == kIpVersionUnknown) return false;
  made.old = *old;
  char id[16] = "";
  composeSessionIdNow(id);
  composeOriginLine(made.line, id, id, {addressTypeOf(address.version), address.text});
  return !made.line.cut();
}

void renewOriginLineIfThere(SdpText& text, unsigned short& oLineEnd) {
  const Refusal refusal = renewOriginLine(text, GivenAddress(nullptr), oLineEnd);
  switch (refusal.reason) {
    case SDP_REFUSED_ORIGIN_WITHOUT_O_LINE:
    case SDP_REFUSED_ORIGIN_WITHOUT_S_LINE:
      mention(refusal);
      break;
    default:
      statusOf(refusal);
  }
}

Refusal setOriginVersion(SdpText& text, unsigned int version, unsigned short& oLineEnd) {
  return replaceVersionNumber(text, "sdpReplaceVersionNumber", version, oLineEnd);
}

Refusal setOriginVersion(SdpText& text, long long version, unsigned short& oLineEnd) {
  return replaceVersionNumber(text, "sdpReplaceVersionNumberLong", version, oLineEnd);
}

Refusal raiseOriginVersion(SdpText& text) {
  trace::progress("Entering sdpIncVersion() method.");
  if (const Refusal refusal = refusalOfBuffer(text, "sdpIncVersion")) return refusal;
  const std::size_t oLine = findAnywhere(text.view(), kOriginLine);
  if (oLine == npos) return {.reason = SDP_REFUSED_NO_O_LINE};
  if (const Refusal refusal = raiseVersion(text, oLine)) return refusal;
  trace::progress("The version of o-line has been increased by one. Exiting...");
  return {};
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceVersionNumber(char* sdp, unsigned int version,
                                                         unsigned short& oLineEnd) {
  SdpText text(sdp);
  return statusOf(setOriginVersion(text, version, oLineEnd));
}

unsigned short sdpModifications::sdpReplaceVersionNumberLong(char* sdp, long long version,
                                                             unsigned short& oLineEnd) {
  SdpText text(sdp);
  return statusOf(setOriginVersion(text, version, oLineEnd));
}

unsigned short sdpModifications::sdpModifyOLine(char* sdp, const char* sessionId, const char* version,
                                                const char* ip, unsigned short& oLineEnd) {
  SdpText text(sdp);
  return statusOf(modifyOriginLine(text, sessionId, version, GivenAddress(ip), oLineEnd));
}

unsigned short sdpModifications::sdpModifyOLine(char* sdp, const char* ip, unsigned short& oLineEnd) {
  SdpText text(sdp);
  return statusOf(renewOriginLine(text, GivenAddress(ip), oLineEnd));
}

unsigned short sdpModifications::sdpIncVersion(char* sdp) {
  SdpText text(sdp);
  return statusOf(raiseOriginVersion(text));
}

char* sdpModifications::generateOLine(char* idOut) {
  if (idOut != nullptr) composeSessionIdNow(idOut);
  return idOut;
}
