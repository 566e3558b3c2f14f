#include "sdpModifiers/dummyPlan.h"

#include <cstdint>
#include <optional>

#include "sdpModifiers/changes.h"
#include "sdpModifiers/connection.h"
#include "sdpModifiers/connectionMode.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/ports.h"
#include "text/blocks.h"
#include "text/mLineFields.h"
#include "text/sections.h"
#include "vocabulary.h"

// The changes that make a dummy body, found by the notes in their order.

namespace sdpneg {

namespace {

/// Whether a line has a number of fields in the plainest way, as `hasPlainFields`, character by character.
bool hasFieldsOneByOne(const char* line, unsigned int fields) {
  const char* at = line + kOriginLine.size();
  for (unsigned int left = fields; left > 0; --left) {
    const char* const field = at;
    while (static_cast<unsigned char>(*at) > ' ') ++at;
    if (at == field || *field == '/' || (left > 1 && *at++ != ' ')) return false;
  }
  return *at == '\n' || (*at == '\r' && at[1] == '\n');
}

/// Whether a line's value is a number of fields with one space in front of each but the first, none of which begins as a
/// suffix does. The codec accepts an o-line and a c-line that have theirs in this way; it accepts others, too.
/// @param line from its letter through its LF
bool hasPlainFields(std::string_view text, const Span& line, unsigned int fields) {
  using namespace blocks;
  const char* const at = text.data() + line.begin;
  const std::size_t size = line.end - line.begin;
  if (size > kWindow || text.size() - line.begin < kWindow) return hasFieldsOneByOne(at, fields);
  const std::size_t end = size - (at[size - 2] == '\r' ? 2 : 1);
  const std::uint64_t value = ((std::uint64_t{1} << end) - 1) >> kOriginLine.size() << kOriginLine.size();
  std::uint64_t spaces = bitsOfWindow(at, [](Block block) { return where(block, ' '); }) & value;
  const std::uint64_t controls = bitsOfWindow(at, [](Block block) { return whereUpTo(block, ' ' - 1); });
  const std::uint64_t slashes = bitsOfWindow(at, [](Block block) { return where(block, '/'); });
  const std::uint64_t begins = spaces << 1 | std::uint64_t{1} << kOriginLine.size();
  if (((controls & value) | (begins & (spaces | slashes | ~value))) != 0) return false;
  for (unsigned int more = fields - 2; more > 0; --more) spaces &= spaces - 1;
  return spaces != 0 && (spaces & (spaces - 1)) == 0;
}

class DummyPlan {
 public:
  DummyPlan(const NotedText& text, const DummyRequest& request, OldLines old)
      : text_(text),
        view_(text.view()),
        request_(request),
        old_(old),
        connection_(request.address),
        closed_(text, MEDIA_AUDIO, request.address.version == kIpVersion4 ? kIpVersion6 : kIpVersion4),
        port_(digitsOf(request.port)) {
    const DummyKind& kind = request.kind;
    if (!kind.hold || (!kind.answer && kind.third)) {
      oneWay_ = nameOf(kind.hold ? CONNECTION_MODE_RECVONLY : CONNECTION_MODE_INACTIVE);
    } else if (nextMLine(text.notes()) != npos) {
      mode_.emplace(view_, kind.answer ? CONNECTION_MODE_INACTIVE : CONNECTION_MODE_RECVONLY, kAudioAndVideo,
                    changes_);
    }
  }

  /// @return false for a text that is not one of those
  bool take() {
    // Where the text ends in LF, every line has one.
    bool usual = view_.ends_with('\n') && !connection_.refusal() && connection_.line().ends_with('\n');
    usual = usual && !(request_.keepSecure && isReservedPort(request_.port));
    usual = usual && (!request_.modifyOLine || takeOriginLine());
    text_.notes().eachOfAll([&](Noted what, std::size_t at) { usual = usual && takeNote(what, at); });
    if (mode_) mode_->end();
    return usual && (old_ == OldLines::accepted || portsArePlain_);
  }

  const PlannedChanges& changes() const { return changes_; }
  /// Where the new o-line ends, if there is one.
  std::optional<unsigned short> oLineEnd() const { return oLineEnd_; }

 private:
  /// All that changes else is to stand behind it.
  bool takeOriginLine() {
    if (!makeOriginLine(origin_, view_, request_.address)) return false;
    if (text_.notes().first() < origin_.old.end) return false;
    const std::size_t begin = origin_.old.begin;
    const bool isLine = isLineStart(begin) && lineAt(view_, begin).next() == origin_.old.end;
    if (old_ == OldLines::judged && (!isLine || !hasPlainFields(view_, origin_.old, 6))) return false;
    changes_.add(origin_.old, origin_.line.view());
    oLineEnd_ = static_cast<unsigned short>(origin_.old.begin + origin_.line.size());
    return true;
  }

  bool takeNote(Noted what, std::size_t at) {
    switch (what) {
      case Noted::mLine:
        return takeMLine(at);
      case Noted::cLine:
        return takeCLine(at);
      case Noted::direction:
        takeDirection(at);
        return true;
      case Noted::keyManagement:
      case Noted::ice:
        return isLineStart(at) && removeAttribute(lineFrom(at));
      case Noted::crypto:
        break;
    }
    return true;
  }

  bool isLineStart(std::size_t at) const { return at != 0 && view_[at - 1] == '\n'; }
  std::string_view lineOf(const Span& line) const { return view_.substr(line.begin, line.end - line.begin); }

  bool takeCLine(std::size_t at) {
    if (!replacesConnection_) return true;
    replacesConnection_ = false;
    const Span line = lineFrom(at);
    changes_.add(line, connection_.line());
    return old_ == OldLines::accepted || hasPlainFields(view_, line, 3);
  }

  bool removeAttribute(const Span& line) {
    changes_.add(line, {});
    return old_ == OldLines::accepted || isAcceptedAttribute(lineOf(line));
  }

  /// A port that begins with a digit may be any other one.
  void replacePort(const Span& field, std::string_view digits) {
    changes_.add(field, digits);
    const auto isBlank = [this](std::size_t at) { return view_[at] == ' ' || view_[at] == '\t'; };
    portsArePlain_ =
        portsArePlain_ && isDigit(view_[field.begin]) && isBlank(field.begin - 1) && isBlank(field.end);
  }
  Span lineFrom(std::size_t at) const { return {at, lineAt(view_, at).next()}; }

  void takeDirection(std::size_t at) {
    if (mode_) mode_->direction(at);
    if (oneWay_.empty()) return;
    const Span word{at + kAttribute.size(), at + kAttribute.size() + kDirectionLength};
    const eConnectionMode mode = directionOf(view_.substr(word.begin, kDirectionLength));
    if (mode == CONNECTION_MODE_SENDONLY || mode == CONNECTION_MODE_RECVONLY) changes_.add(word, oneWay_);
  }

  /// @return false for audio whose port is not read, and where it is not known what closing it does to its transport
  bool takeMLine(std::size_t at) {
    if (mode_) mode_->mLine(at);
    const Line mLine = lineAt(view_, at);
    const bool isAudio = startsWith(view_.substr(at + kMLine.size()), "audio");
    std::optional<unsigned short> port;
    if (!closed_.contain(mLine)) {
      port = portAt(view_, at);
    } else if (request_.keepSecure && closed_.isSecureOne()) {
      port = reopenPort(mLine);
    } else {
      port = setPort(mLine, kClosedPort, 0);
    }
    replacesConnection_ = isAudio && port.value_or(0) != 0;
    return !isAudio || port;
  }

  /// @return the port that the m-line has then, if it has one
  std::optional<unsigned short> setPort(const Line& mLine, std::string_view digits, unsigned short port) {
    const std::optional<Span> field = portToReplace(view_, mLine, digits);
    if (!field) return portAt(view_, mLine.begin);
    replacePort(*field, digits);
    return port;
  }

  /// Closes the port of secure audio, and opens it again with another one.
  /// @return as `setPort`; nothing for a line whose port is not in front of its transport
  std::optional<unsigned short> reopenPort(const Line& mLine) {
    const std::optional<Span> field = portToReplace(view_, mLine, kClosedPort);
    const std::size_t behind = field ? field->end : mLine.begin;
    if (!contains(view_.substr(behind, mLine.lf - behind), kSecureTransport)) return std::nullopt;
    const bool opens = request_.port != 0 && closed_.hasVersion(mLine, request_.address.version);
    if (!opens || !field)
      return setPort(mLine, opens ? port_.view() : kClosedPort, opens ? request_.port : 0);
    replacePort(*field, port_.view());
    return request_.port;
  }

  const NotedText& text_;
  std::string_view view_;
  const DummyRequest& request_;
  OldLines old_;
  PlannedChanges changes_;
  NewConnection connection_;
  PortsToClose closed_;
  PortDigits port_;
  NewOriginLine origin_;
  std::optional<ModePlan> mode_;
  std::string_view oneWay_;  ///< what overwrites all directions of one way, where the plan of a mode does not
  std::optional<unsigned short> oLineEnd_;
  bool replacesConnection_ = true;  ///< the next c-line, until the next m-line
  bool portsArePlain_ = true;
};

}  // namespace

bool isAcceptedAttribute(std::string_view line) {
  const std::size_t cr = line.find('\r');
  return cr == npos || cr + 2 == line.size();
}

bool makeDummyAtOnce(NotedText& text, const DummyRequest& request, unsigned short& oLineEnd, OldLines old) {
  if (text.tracing() || !text.isPlannable()) return false;
  DummyPlan plan(text, request, old);
  if (!plan.take() || !text.make(plan.changes())) return false;
  oLineEnd = plan.oLineEnd().value_or(oLineEnd);
  return true;
}

}  // namespace sdpneg
