#include "sdpModifiers/originLine.h"

#include <sys/time.h>

#include <algorithm>
#include <concepts>
#include <cstring>
#include <limits>
#include <optional>

#include "cMsgIPAddress.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "text/search.h"
#include "trace.h"

namespace sdpneg {

namespace {

constexpr std::size_t kLongestText = MAX_SDP_PROTOCOL_DATA_SIZE - 1;

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
  const std::size_t begin = field->space + 1;
  version = version.substr(0, kLongestText - begin);
  const std::size_t behind = begin + version.size();
  const std::size_t kept = std::min(text.size() - field->end, kLongestText - behind);
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

unsigned short replaceVersionNumber(char* sdp, const char* operation, std::integral auto version,
                                    unsigned short& oLineEnd) {
  trace::progress("Entering %s() method.", operation);
  SdpText text(sdp);
  if (!adopted(text, operation)) return 1;
  const std::size_t oLine = findAnywhere(text.view(), "o=");
  if (oLine == npos) {
    trace::error("No <oline> found. Exiting.");
    return 1;
  }
  const std::optional<std::size_t> lf = replaceVersion(text, oLine, FixedText<64>().add(version).view());
  if (!lf) {
    trace::error("Bad <oline> termination. Exiting.");
    return 1;
  }
  oLineEnd = static_cast<unsigned short>(*lf + 1);
  trace::progress("The version of o-line has been replaced. Exiting...");
  return 0;
}

/// The address type and address of a new o-line.
struct OriginAddress {
  const char* type;
  const char* address;
};

/// @param between the text from the old o-line to the s-line, asked for its address type when no ip is given
std::optional<OriginAddress> originAddress(const char* ip, std::string_view between) {
  if (ip == nullptr) {
    return contains(between, "IP6") ? OriginAddress{"IP6", "::"} : OriginAddress{"IP4", "0.0.0.0"};
  }
  const int version = cMsgIPAddress::getIPAddressVersion(ip);
  if (version == 0) return std::nullopt;
  return OriginAddress{version == 2 ? "IP4" : "IP6", ip};
}

unsigned short refuse(int flag, int level, const char* reason) {
  cNegotTraceManager::writeTraceMsg(flag, level, "%s", reason);
  return 1;
}

/// Puts a new o-line, cut at 336 characters, in the place of all that stands from "o=" to "s=".
unsigned short rebuildOriginLine(SdpText& text, Span old, std::string_view id, std::string_view version,
                                 OriginAddress address, unsigned short& oLineEnd) {
  FixedText<337> composed;
  composed.add("o=ZEV ").add(id).add(" ").add(version).add(" IN ");
  composed.add(address.type).add(" ").add(address.address).add("\r\n");
  // A line that was cut before its LF ends the text.
  const Line line = lineAt(composed.view(), 0);
  if (!line.terminated) old.end = text.size();
  if (text.replace(old, composed.view().substr(0, line.next())) != Edit::done) {
    return refuse(4, 3, "sdpModifyOLine(): The new o-line does not fit the SDP buffer. Exiting.");
  }
  oLineEnd = static_cast<unsigned short>(old.begin + line.next());
  if (!line.terminated) return refuse(2, 2, "Bad termination of s-line. Exiting...");
  trace::info("The o-line has been changed. Exiting...");
  return 0;
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
unsigned short raiseVersion(SdpText& text, std::size_t oLine) {
  const Line line = lineAt(text.view(), oLine);
  if (!line.terminated) return refuse(4, 3, "Bad <oline> termination. Exiting.");
  const std::string_view version = thirdWord(content(text.view(), line));
  if (version.empty()) return 0;
  const std::optional<Raised> next = successor(version);
  if (!next) return refuse(4, 3, "Attempt to increment <oline> version past maximum length. Exiting.");
  const std::size_t end = static_cast<std::size_t>(version.data() - text.view().data()) + version.size();
  if (text.replace({end - next->replaced, end}, next->digits.view()) != Edit::done) {
    return refuse(4, 3, "sdpIncVersion(): The raised version does not fit the SDP buffer. Exiting.");
  }
  return 0;
}

}  // namespace

void composeSessionId(char* id, long seconds, long microseconds) {
  constexpr std::size_t kSecondsDigits = 6;
  const FixedText<24> all = FixedText<24>().add(seconds);
  if (all.size() > kSecondsDigits) all.view().copy(id, kSecondsDigits, all.size() - kSecondsDigits);
  id[kSecondsDigits] = '\0';
  char* const end = id + std::strlen(id);
  end[FixedText<24>().add(microseconds).view().copy(end, 3)] = '\0';
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpReplaceVersionNumber(char* sdp, unsigned int version,
                                                         unsigned short& oLineEnd) {
  return replaceVersionNumber(sdp, "sdpReplaceVersionNumber", version, oLineEnd);
}

unsigned short sdpModifications::sdpReplaceVersionNumberLong(char* sdp, long long version,
                                                             unsigned short& oLineEnd) {
  return replaceVersionNumber(sdp, "sdpReplaceVersionNumberLong", version, oLineEnd);
}

unsigned short sdpModifications::sdpModifyOLine(char* sdp, const char* sessionId, const char* version,
                                                const char* ip, unsigned short& oLineEnd) {
  const auto shown = [](const char* text) { return text != nullptr ? text : "(null)"; };
  trace::progress("Entering sdpModifyOLine() method. sessionId=[%s] version=[%s] ip=[%s]", shown(sessionId),
                  shown(version), shown(ip));
  if (sdp == nullptr) return refuse(2, 2, "The raw sdp buffer is empty. Exiting...");
  SdpText text(sdp);
  if (!adopted(text, "sdpModifyOLine")) return 1;
  const std::size_t oLine = findAnywhere(text.view(), "o=");
  if (oLine == npos) return refuse(2, 2, "The o-line is not present within the SDP. Exiting...");
  const std::size_t sLine = findAnywhere(text.view(), "s=", oLine);
  if (sLine == npos) return refuse(2, 2, "The s-line is not present within the SDP. Exiting...");
  const std::optional<OriginAddress> address = originAddress(ip, text.view().substr(oLine, sLine - oLine));
  if (!address) return refuse(2, 3, "sdpModifyOLine(): The provided IP is not valid, exiting");
  if (!areLineTexts({viewOf(sessionId), viewOf(version), viewOf(ip)}, "sdpModifyOLine")) return 1;
  return rebuildOriginLine(text, {oLine, sLine}, viewOf(sessionId), viewOf(version), *address, oLineEnd);
}

unsigned short sdpModifications::sdpModifyOLine(char* sdp, const char* ip, unsigned short& oLineEnd) {
  char id[16] = "";
  return sdpModifyOLine(sdp, generateOLine(id), id, ip, oLineEnd);
}

unsigned short sdpModifications::sdpIncVersion(char* sdp) {
  trace::progress("Entering sdpIncVersion() method.");
  SdpText text(sdp);
  if (!adopted(text, "sdpIncVersion")) return 1;
  const std::size_t oLine = findAnywhere(text.view(), "o=");
  if (oLine == npos) return refuse(4, 3, "No <oline> found. Exiting.");
  const unsigned short status = raiseVersion(text, oLine);
  if (status == 0) {
    trace::progress("The version of o-line has been increased by one. Exiting...");
  }
  return status;
}

char* sdpModifications::generateOLine(char* idOut) {
  if (idOut == nullptr) return nullptr;
  timeval now{};
  gettimeofday(&now, nullptr);
  composeSessionId(idOut, now.tv_sec, now.tv_usec);
  return idOut;
}
