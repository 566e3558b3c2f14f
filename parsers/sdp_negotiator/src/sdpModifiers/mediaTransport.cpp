#include "sdpModifiers/mediaTransport.h"

#include <algorithm>
#include <bitset>
#include <climits>
#include <iterator>
#include <optional>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/changes.h"
#include "sdpModifiers/transport.h"
#include "sessionDescription.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"

// The transport of the m-lines of chosen media.

namespace sdpneg {

namespace {

using Transport = FixedText<kLongestTransport + 1>;

/// One name of media, and the transports to change.
struct NamedChange {
  int number;
  std::string_view name;
  std::string_view from;
  std::string_view to;

  int nameLength() const { return static_cast<int>(name.size()); }
};

/// Whether an m-line ends in LF and names a transport.
bool namesTransport(std::string_view text, const Line& mLine, std::string_view transport) {
  return mLine.terminated && contains(content(text, mLine), transport);
}

/// The change of the third field of an m-line; nothing when no blank ends it, and when it begins with the transport.
std::optional<Change> transportChange(std::string_view text, const Line& mLine, std::string_view transport) {
  const std::size_t begin = transportBehindRuns(text, mLine);
  const std::size_t end = blankFrom(text, mLine, begin);
  if (end == npos || startsWith(text.substr(begin), transport)) return std::nullopt;
  return Change{{begin, end}, transport};
}

/// The change of the m-line at an offset, if it is to have one.
std::optional<Change> mLineChange(std::string_view text, std::size_t at, std::string_view from,
                                  std::string_view to) {
  const Line mLine = lineAt(text, at);
  return namesTransport(text, mLine, from) ? transportChange(text, mLine, to) : std::nullopt;
}

constexpr Refusal kDoesNotFit = {.reason = SDP_REFUSED_TRANSPORT_DOES_NOT_FIT};

void traceChange(std::string_view text, std::size_t at, const NamedChange& change) {
  trace::info(" sdpSetMediaTransportType():Found media line with mediaType=%.*s", change.nameLength(),
              change.name.data());
  const Line mLine = lineAt(text, at);
  if (!namesTransport(text, mLine, change.from)) return;
  trace::info(" sdpSetMediaTransportType() method. startOfTransport=[%s]",
              text.data() + transportBehindRuns(text, mLine));
  if (transportChange(text, mLine, change.to)) {
    trace::info(" sdpSetMediaTransportType() Step-3. Changing transport type");
  }
}

/// @return a refusal that has been told
Refusal visitMLine(SdpText& text, std::size_t at, const NamedChange& change) {
  if (!hasMediaName(text.view(), at, change.name)) {
    trace::info(" sdpSetMediaTransportType() Step-5. Changing transport type");
    trace::info(" sdpSetMediaTransportType() method. sdp_buffer=[%s]", text.view().data());
    return {};
  }
  traceChange(text.view(), at, change);
  Refusal refusal;
  const auto made = mLineChange(text.view(), at, change.from, change.to);
  if (made && text.replace(made->span, made->inserted) != Edit::done) {
    refusal = kDoesNotFit;
    tell(refusal);
  }
  trace::info(" sdpSetMediaTransportType() Step-4. exiting if (endMline != NULL)");
  return refusal;
}

/// Changes the m-lines of a name, each with its traces.
/// @return the last refusal; all have been told
Refusal visitMedia(SdpText& text, const NamedChange& change) {
  trace::info(" sdpSetMediaTransportType() Step-1:Change transport for m line[%d] =[%.*s]", change.number,
              change.nameLength(), change.name.data());
  trace::info("sdpSetMediaTransportType() . mLine=[%s]", text.view().data());
  Refusal last;
  forEachMLine(text, [&](std::size_t at) {
    trace::info(" sdpSetMediaTransportType() Step-2:Into while statement for [%d] mLine=[%s]", change.number,
                text.view().data() + at);
    const Refusal refusal = visitMLine(text, at, change);
    if (refusal) last = refusal;
  });
  return last;
}

/// Changes name after name without traces. A name that comes again is not gone through again where nothing was changed
/// since, for what did not fit then does not fit now.
class UntracedChanges {
 public:
  /// @return the last refusal; all have been told
  Refusal make(SdpText& text, const NamedChange& change) {
    Pass& pass = passOf(change.name);
    if (pass.behind != changes_ || pass.name != change.name) {
      pass = {change.name, 0, kNever};
      const unsigned int before = changes_;
      goThrough(text, change, pass.refused);
      // What it changed itself may have made room.
      if (changes_ == before) pass.behind = changes_;
    }
    tellAgain(kDoesNotFit, pass.refused);
    return pass.refused != 0 ? kDoesNotFit : Refusal();
  }

 private:
  static constexpr std::size_t kMostNames = SDP_MEDIA_CAPACITY;
  static constexpr unsigned int kNever = ~0U;

  /// What the last pass for a name met, and how many changes there had been behind it.
  struct Pass {
    std::string_view name;
    unsigned int refused = 0;
    unsigned int behind = kNever;
  };

  /// The pass of a name; one that is to be overwritten when there is none.
  Pass& passOf(std::string_view name) {
    Pass* const end = passes_ + std::min(count_, kMostNames);
    Pass* const found = std::find_if(passes_, end, [name](const Pass& pass) { return pass.name == name; });
    return found != end ? *found : passes_[count_++ % kMostNames];
  }

  void goThrough(SdpText& text, const NamedChange& change, unsigned int& refused) {
    std::size_t at = 0;
    text.changeEach(
        [&](std::string_view view, std::size_t /*from*/, std::size_t room) -> std::optional<Change> {
          for (at = nextMLineOf(view, change.name, at); at != npos; at = nextMLineOf(view, change.name, at)) {
            if (!hasMediaName(view, at, change.name)) continue;
            const auto made = mLineChange(view, at, change.from, change.to);
            if (!made) continue;
            if (takes(*made) > room) {
              ++refused;
              continue;
            }
            ++changes_;
            return made;
          }
          return std::nullopt;
        });
  }

  Pass passes_[kMostNames];
  std::size_t count_ = 0;
  unsigned int changes_ = 0;
};

/// Names of media, all of them at once: whether an m-line has one of them takes no longer for many. Only for names that
/// end with an m-line's first field at the latest, so that no change of a transport makes a difference to them.
class MediaNames {
 public:
  /// Room for as many as a description has m-lines; more are not taken.
  static constexpr std::size_t kMost = SDP_MEDIA_CAPACITY;

  /// @return false for a name that is none of those that can be taken
  bool add(std::string_view name) {
    const bool plain = std::none_of(name.begin(), name.end(), [](char c) { return c <= ' ' || c == '='; });
    if (!plain) return false;
    if (name.empty()) return true;  // no m-line has it, see `hasMediaName`
    const auto at = std::lower_bound(names_, names_ + count_, name);
    // One that begins with another says nothing that the other does not.
    if (at != names_ + count_ && startsWith(*at, name)) return replaceFrom(at, name);
    if (at != names_ && startsWith(name, at[-1])) return true;
    if (count_ == kMost) return false;
    std::copy_backward(at, names_ + count_, names_ + count_ + 1);
    *at = name;
    ++count_;
    begins_.set(static_cast<unsigned char>(name[0]));
    return true;
  }

  /// Whether an m-line has one of them.
  bool holdOneOf(std::string_view text, std::size_t mLine) const {
    const std::string_view rest = text.substr(mLine + kMLine.size());
    if (rest.empty() || !begins_.test(static_cast<unsigned char>(rest[0]))) return false;
    // What begins with a name sorts behind it, and no other name stands between the two.
    const auto behind = std::upper_bound(names_, names_ + count_, rest);
    return behind != names_ && startsWith(rest, behind[-1]);
  }

 private:
  bool replaceFrom(std::string_view* at, std::string_view name) {
    auto* const end =
        std::find_if(at, names_ + count_, [name](std::string_view n) { return !startsWith(n, name); });
    *at = name;
    if (end != at + 1) count_ = static_cast<std::size_t>(std::copy(end, names_ + count_, at + 1) - names_);
    return true;
  }

  std::string_view names_[kMost];
  std::size_t count_ = 0;
  std::bitset<UCHAR_MAX + 1> begins_;  ///< what they begin with, as few other media do
};

/// The changes of all m-lines of some media, name after name or all at once: the same, where each fits in any order and
/// none of them makes another possible.
class ChangesAtOnce {
 public:
  ChangesAtOnce(const MediaNames& names, std::string_view from, std::string_view to)
      : names_(names), from_(from), to_(to) {}

  std::optional<Change> next(std::string_view text) {
    for (at_ = nextMLine(text, at_); at_ != npos; at_ = nextMLine(text, at_)) {
      if (!names_.holdOneOf(text, at_)) continue;
      if (const auto change = mLineChange(text, at_, from_, to_)) return change;
    }
    return std::nullopt;
  }

 private:
  const MediaNames& names_;
  std::string_view from_;
  std::string_view to_;
  std::size_t at_ = 0;
};

/// Whether a transport that was set is found as it is when its line is looked at again.
bool isOneWord(std::string_view transport) {
  return !transport.empty() && transport.find_first_of(" \t") == npos;
}

/// Makes all changes in one pass, without traces.
/// @param change all but its name
/// @param names  any range of texts
/// @return whether that could be done; otherwise nothing was
template <typename Names>
bool changeAtOnce(SdpText& text, const NamedChange& change, const Names& names) {
  MediaNames all;
  const auto take = [&](std::string_view name) { return all.add(name.substr(0, name.find('\0'))); };
  if (!isOneWord(change.to) || !std::all_of(std::begin(names), std::end(names), take)) return false;
  PlannedChanges planned;
  ChangesAtOnce found(all, change.from, change.to);
  for (auto made = found.next(text.view()); made; made = found.next(text.view())) {
    planned.add(made->span, made->inserted);
  }
  if (!planned.fitInto(text)) return false;
  if (planned.areHeld()) {
    planned.makeIn(text);
    return true;
  }
  ChangesAtOnce changes(all, change.from, change.to);
  text.changeEach([&](std::string_view view, std::size_t, std::size_t) { return changes.next(view); });
  return true;
}

/// Makes the changes name after name.
/// @param change all but its name
/// @return the last refusal; all have been told
template <typename Names>
Refusal setEach(SdpText& text, NamedChange change, const Names& names, bool tracing) {
  Refusal last;
  // No m-line names what the text does not.
  if (!tracing && (!contains(text.view(), change.from) || changeAtOnce(text, change, names))) return last;
  UntracedChanges untraced;
  for (const std::string_view whole : names) {
    change.name = whole.substr(0, whole.find('\0'));
    const Refusal refusal = tracing ? visitMedia(text, change) : untraced.make(text, change);
    if (refusal) last = refusal;
    ++change.number;
  }
  return last;
}

Refusal refusalOfArguments(const SdpText& text, const char* from, const char* to) {
  constexpr const char* kOperation = "sdpSetMediaTransportType";
  if (from == nullptr || to == nullptr) {
    return {.reason = SDP_REFUSED_NO_TRANSPORTS, .operation = kOperation};
  }
  const Refusal refusal = refusalOfBuffer(text, kOperation);
  return refusal ? refusal : refusalOfLineTexts({to}, kOperation);
}

/// @param names any range of texts
/// @return the last refusal; all have been told
template <typename Names>
Refusal setTransports(SdpText& text, const char* from, const char* to, const Names& names) {
  const bool tracing = isTracing();
  if (tracing) {
    trace::info(" sdpSetMediaTransportType() method. Enter");
    trace::info("sdpSetMediaTransportType() method. change mediaLines=%d", static_cast<int>(names.size()));
  }
  Refusal last = refusalOfArguments(text, from, to);
  if (last) {
    tell(last);
  } else {
    const Transport transport = Transport().add(to);
    last = setEach(text, {0, {}, from, transport.view()}, names, tracing);
  }
  if (tracing) trace::info(" sdpSetMediaTransportType() method. Exit");
  return last;
}

}  // namespace

Refusal setMediaTransport(SdpText& text, const char* from, const char* to,
                          std::span<const std::string_view> names) {
  return setTransports(text, from, to, names);
}

Refusal setMediaTransport(SdpText& text, const char* from, const char* to,
                          std::span<const std::string> names) {
  return setTransports(text, from, to, names);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpSetMediaTransportType(char* sdp, const char* fromTransport,
                                                          const char* toTransport,
                                                          const std::vector<std::string>& mediaNames) {
  SdpText text(sdp);
  setMediaTransport(text, fromTransport, toTransport, mediaNames);
  return 0;
}
