#include <algorithm>
#include <cstring>
#include <new>
#include <string_view>

#include "sdpModifiers/originLine.h"
#include "sdpModifiers/originLineCopy.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"

// The origin line (RFC 4566 5.2). What changes it stores the text without parsing it again: of the summary
// only the line's own place changes.

namespace sdpneg {
namespace {

constexpr std::size_t kLongestId = 64;

/// Copies a text into a field of a record, cut to it.
template <std::size_t N>
void copyInto(char (&field)[N], std::string_view text) {
  field[text.copy(field, N - 1)] = '\0';
}

/// The next of an o-line's fields, which are separated by single blanks.
std::string_view takeField(std::string_view& line) {
  const std::size_t blank = std::min(line.find(' '), line.size());
  const std::string_view field = line.substr(0, blank);
  line.remove_prefix(std::min(blank + 1, line.size()));
  return field;
}

void splitOriginLine(std::string_view line, o_line& record) {
  line.remove_prefix(std::min<std::size_t>(2, line.size()));
  copyInto(record.userName, takeField(line));
  copyInto(record.sessionId, takeField(line));
  copyInto(record.sessionVersion, takeField(line));
  copyInto(record.networkType, takeField(line));
  copyInto(record.addressType, takeField(line));
  copyInto(record.address, line);
  record.present = 1;
}

bool isSame(const char* a, const char* b) { return viewOf(a) == viewOf(b); }

/// The o-line of a text, without its end, by the offsets of a summary; empty when they do not lie in the
/// text.
std::string_view originLine(const sSdpParsedData& data, const char* text) {
  const std::size_t start = data.oLineStart;
  const std::size_t end = data.oLineEnd;
  if (end > std::strlen(text) || end < start + 2) return {};
  return {text + start, end - start - (text[end - 2] == '\r' ? 2 : 1)};
}

/// The first line of what an object's offsets name as its o-line, and no more when they span several.
std::string_view firstLineOf(std::string_view line) {
  const auto end = std::find_if(line.begin(), line.end(), [](char c) { return c == '\r' || c == '\n'; });
  return line.substr(0, static_cast<std::size_t>(end - line.begin()));
}

/// The o-line of an object, in a text of its own.
class OriginLineOf {
 public:
  explicit OriginLineOf(const cSdpNegotiator& object) {
    text_[0] = '\0';
    if (!object.isSdpPresent()) {
      trace::error("The object is empty. Returning an empty o-line.");  // an answer like another
      return;
    }
    object.getRawSDP(text_, sizeof text_);
    line_ = originLine(object.getParsedData(), text_);
  }
  std::string_view view() const { return line_; }

 private:
  char text_[MAX_SDP_PROTOCOL_DATA_SIZE];
  std::string_view line_;
};

/// Puts a line with CR LF in the place of an object's o-line and stores the text.
/// @param start,oLineEnd where the object has recorded its o-line
unsigned short takeOriginLine(cSdpNegotiator& object, std::size_t start, std::uint16_t& oLineEnd,
                              std::string_view line) {
  const Span old = {start, oLineEnd};
  const std::size_t end = old.begin + line.size() + 2;
  char buffer[MAX_SDP_PROTOCOL_DATA_SIZE];
  buffer[0] = '\0';
  // An empty object starts from an empty text; a text that cannot be expanded stays as it is.
  const unsigned short expanded = object.getSDP(buffer, sizeof buffer);
  if (expanded != 0 && object.isSdpPresent()) return expanded;
  trace::progress("copyOLine(): request to replace existing o-line with [%.*s] len=[%i]",
                  static_cast<int>(line.size()), line.data(), static_cast<int>(line.size()));
  trace::progress("copyOLine(): SDP length change is %i characters",
                  static_cast<int>(end) - static_cast<int>(old.end));
  SdpText text(buffer);
  if (const Refusal refusal = replaceOriginLine(text, old, line)) return refuse(refusal);
  return storeWithEnd(object, buffer, static_cast<std::uint16_t>(end), oLineEnd);
}

/// Whether an object has a line for its o-line; tells by a trace.
/// @return 0 when it has, else 1
unsigned short compareOriginLine(const cSdpNegotiator& object, std::string_view line) {
  if (OriginLineOf(object).view() == line) {
    trace::progress("The o-line is the same as the given one.");
    return 0;
  }
  trace::debug("Different o-line");
  return 1;
}

/// A fresh array with a text and its NUL; null when there is no memory.
char* newText(std::string_view text) {
  char* const copy = new (std::nothrow) char[text.size() + 1];
  if (copy != nullptr) copy[text.copy(copy, text.size())] = '\0';
  return copy;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::getOLine(char*& line, int& length) const {
  const OriginLineOf own(*this);
  line = newText(own.view());
  length = line != nullptr ? static_cast<int>(own.view().size()) : 0;
  return 0;
}

void cSdpNegotiator::getOLine(o_line& record) const {
  std::memset(&record, 0, sizeof record);
  const OriginLineOf own(*this);
  if (!own.view().empty()) splitOriginLine(own.view(), record);
}

unsigned short cSdpNegotiator::compareSdpOLine(const char* line) const {
  if (line == nullptr) return refuse({.reason = SDP_REFUSED_NO_O_LINE_GIVEN});
  return compareOriginLine(*this, line);
}

unsigned short cSdpNegotiator::compareSdpOLine(const cSdpNegotiator* other) const {
  if (other == nullptr) return refuse({.reason = SDP_REFUSED_NO_OBJECT_TO_COMPARE});
  return compareOriginLine(*this, OriginLineOf(*other).view());
}

bool cSdpNegotiator::compareSdpOLineUpdate(const cSdpNegotiator* other) const {
  if (other == nullptr) return false;
  o_line incoming;
  o_line own;
  other->getOLine(incoming);
  getOLine(own);
  if (viewOf(sdp_OgetUserName(&incoming)).empty() || viewOf(sdp_OgetUserName(&own)).empty()) return false;
  const auto incomingVersion = numberOrZero<long long>(viewOf(sdp_OgetSessionVersion(&incoming)));
  const auto ownVersion = numberOrZero<long long>(viewOf(sdp_OgetSessionVersion(&own)));
  trace::progress("sdp session version In %lld version of Vob %lld", incomingVersion, ownVersion);
  const auto same = [&](const char* (*field)(const o_line*)) {
    return isSame(field(&incoming), field(&own));
  };
  return same(sdp_OgetUserName) && same(sdp_OgetSessionId) && incomingVersion <= ownVersion &&
         same(sdp_OgetNetworkType) && same(sdp_OgetAddressType) && same(sdp_OgetAddress);
}

unsigned short cSdpNegotiator::copyOLine(const cSdpNegotiator* other) {
  unsigned short status = 1;
  if (other != nullptr) {
    const OriginLineOf others(*other);
    const std::string_view line = firstLineOf(others.view());
    status = line.size() > 1 ? takeOriginLine(*this, parsedData.oLineStart, parsedData.oLineEnd, line) : 0;
  } else {
    tell({.reason = SDP_REFUSED_NULL, .operation = "copyOLine"});
  }
  trace::progress("copyOLine(): returning %s", status == 0 ? "SUCCESS" : "FAILURE");
  return status;
}

unsigned short cSdpNegotiator::sdpSetVersionNumber(unsigned int version) {
  trace::progress("Request to set the version of o-line to:%u.", version);
  return editOriginLine(*this, parsedData.oLineEnd, [&](SdpText& text, unsigned short& end) {
    return setOriginVersion(text, version, end);
  });
}

unsigned short cSdpNegotiator::sdpSetVersionNumberLong(long long version) {
  trace::progress("Request to set the version of o-line to:%lld.", version);
  return editOriginLine(*this, parsedData.oLineEnd, [&](SdpText& text, unsigned short& end) {
    return setOriginVersion(text, version, end);
  });
}

unsigned short cSdpNegotiator::sdpModifyOLine(const char* sessionId, const char* version, const char* ip) {
  const auto isId = [](const char* text) {
    return text != nullptr && strnlen(text, kLongestId + 1) <= kLongestId;
  };
  if (!isId(sessionId) || !isId(version)) {
    return asStatus(tell({.reason = SDP_REFUSED_ORIGIN_IDS}));
  }
  trace::progress("Request to set the session-id to:(%s) and the version to:(%s).", sessionId, version);
  return editOriginLine(*this, parsedData.oLineEnd, [&](SdpText& text, unsigned short& end) {
    return modifyOriginLine(text, sessionId, version, GivenAddress(ip), end);
  });
}

unsigned short cSdpNegotiator::sdpModifyOLine(const char* sessionId, const char* version) {
  return sdpModifyOLine(sessionId, version, nullptr);
}

unsigned short cSdpNegotiator::sdpModifyOLine() {
  trace::progress("Request to modify the o-line based on the timestamp.");
  return editOriginLine(*this, parsedData.oLineEnd, [&](SdpText& text, unsigned short& end) {
    return renewOriginLine(text, GivenAddress(nullptr), end);
  });
}

unsigned short cSdpNegotiator::sdpIncVersion() {
  trace::progress("Request to increase the version of o-line by 1.");
  // The o-line's recorded end stays where it is, also where the version gains a digit.
  return editAndKeep(*this, kStored, raiseOriginVersion);
}
