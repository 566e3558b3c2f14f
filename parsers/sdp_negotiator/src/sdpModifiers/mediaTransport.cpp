#include "sdpModifiers/mediaTransport.h"

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/transport.h"
#include "text/fixedText.h"
#include "text/sections.h"
#include "trace.h"

// The transport of the m-lines of chosen media.

namespace sdpneg {

namespace {

using Transport = FixedText<kLongestTransport + 1>;

/// One name of media, and the transports to change.
struct Change {
  int number;
  std::string_view name;
  std::string_view from;
  std::string_view to;

  int nameLength() const { return static_cast<int>(name.size()); }
};

/// Sets the third field of an m-line that ends in LF, unless no blank ends it.
Refusal setTransport(SdpText& text, const Line& mLine, std::string_view transport) {
  const std::size_t begin = transportBehindRuns(text.view(), mLine);
  trace::info(" sdpSetMediaTransportType() method. startOfTransport=[%s]", text.view().data() + begin);
  const std::size_t end = blankFrom(text.view(), mLine, begin);
  if (end == npos || startsWith(text.view().substr(begin), transport)) return {};
  trace::info(" sdpSetMediaTransportType() Step-3. Changing transport type");
  if (text.replace({begin, end}, transport) == Edit::done) return {};
  return {.reason = SDP_REFUSED_TRANSPORT_DOES_NOT_FIT};
}

/// @return a refusal that has been told
Refusal visitMLine(SdpText& text, std::size_t at, const Change& change) {
  if (!hasMediaName(text.view(), at, change.name)) {
    trace::info(" sdpSetMediaTransportType() Step-5. Changing transport type");
    trace::info(" sdpSetMediaTransportType() method. sdp_buffer=[%s]", text.view().data());
    return {};
  }
  trace::info(" sdpSetMediaTransportType():Found media line with mediaType=%.*s", change.nameLength(),
              change.name.data());
  const Line mLine = lineAt(text.view(), at);
  Refusal refusal;
  if (mLine.terminated && contains(content(text.view(), mLine), change.from)) {
    refusal = setTransport(text, mLine, change.to);
  }
  if (refusal) tell(refusal);
  trace::info(" sdpSetMediaTransportType() Step-4. exiting if (endMline != NULL)");
  return refusal;
}

/// @return the last refusal; all have been told
Refusal visitMedia(SdpText& text, const Change& change) {
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
  trace::info(" sdpSetMediaTransportType() method. Enter");
  trace::info("sdpSetMediaTransportType() method. change mediaLines=%d", static_cast<int>(names.size()));
  Refusal last = refusalOfArguments(text, from, to);
  if (last) {
    tell(last);
  } else {
    const Transport transport = Transport().add(to);
    int number = 0;
    for (const std::string_view whole : names) {
      const std::string_view name = whole.substr(0, whole.find('\0'));
      const Refusal refusal = visitMedia(text, {number++, name, from, transport.view()});
      if (refusal) last = refusal;
    }
  }
  trace::info(" sdpSetMediaTransportType() method. Exit");
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
