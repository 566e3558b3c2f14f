#include <cstddef>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/transport.h"
#include "text/fixedText.h"
#include "text/lines.h"
#include "trace.h"

// The transport of the m-lines of chosen media.

namespace {

using namespace sdpneg;

using Transport = FixedText<longestTransport + 1>;

/// Whether the first place of a media name from an m-line on is right behind its "m=".
bool isOfMedia(std::string_view text, std::size_t mLine, std::string_view name) {
  constexpr std::size_t kBehindPrefix = 2;
  return text.substr(mLine, kBehindPrefix + name.size()).find(name) == kBehindPrefix;
}

constexpr std::string_view kBlanks = " \t";

/// Where the third field of an m-line begins, behind the media name and the port. Runs of blanks separate the fields,
/// as the codec reads them.
/// @return the line's LF when it has fewer fields
std::size_t transportStart(std::string_view text, const Line& mLine) {
  const std::string_view all = text.substr(0, mLine.lf);
  std::size_t at = all.find_first_not_of(kBlanks, mLine.begin + 2);
  for (int passed = 0; passed < 2; ++passed) {
    at = all.find_first_not_of(kBlanks, all.find_first_of(kBlanks, at));
  }
  return at == npos ? mLine.lf : at;
}

/// Sets the third field of an m-line that ends in LF, unless no blank ends it.
void setTransport(SdpText& text, const Line& mLine, std::string_view transport) {
  const std::string_view view = text.view();
  const std::size_t begin = transportStart(view, mLine);
  trace::info(" sdpSetMediaTransportType() method. startOfTransport=[%s]", view.data() + begin);
  const std::size_t end = view.substr(0, mLine.lf).find_first_of(kBlanks, begin);
  if (end == npos || startsWith(view.substr(begin), transport)) return;
  trace::info(" sdpSetMediaTransportType() Step-3. Changing transport type");
  if (text.replace({begin, end}, transport) != Edit::done) {
    trace::error("sdpSetMediaTransportType(): The new transport does not fit the SDP buffer.");
  }
}

void visitMLine(SdpText& text, std::size_t at, const char* name, std::string_view from,
                std::string_view transport) {
  if (!isOfMedia(text.view(), at, name)) {
    trace::info(" sdpSetMediaTransportType() Step-5. Changing transport type");
    trace::info(" sdpSetMediaTransportType() method. sdp_buffer=[%s]", text.view().data());
    return;
  }
  trace::info(" sdpSetMediaTransportType():Found media line with mediaType=%s", name);
  const Line mLine = lineAt(text.view(), at);
  if (mLine.terminated && contains(content(text.view(), mLine), from)) setTransport(text, mLine, transport);
  trace::info(" sdpSetMediaTransportType() Step-4. exiting if (endMline != NULL)");
}

void visitMedia(SdpText& text, int number, const char* name, std::string_view from,
                std::string_view transport) {
  trace::info(" sdpSetMediaTransportType() Step-1:Change transport for m line[%d] =[%s]", number, name);
  trace::info("sdpSetMediaTransportType() . mLine=[%s]", text.view().data());
  for (std::size_t at = findLine(text.view(), "m="); at != npos; at = findLine(text.view(), "m=", at)) {
    trace::info(" sdpSetMediaTransportType() Step-2:Into while statement for [%d] mLine=[%s]", number,
                text.view().data() + at);
    visitMLine(text, at, name, from, transport);
  }
}

}  // namespace

unsigned short sdpModifications::sdpSetMediaTransportType(char* sdp, const char* fromTransport,
                                                          const char* toTransport,
                                                          const std::vector<std::string>& mediaNames) {
  trace::info(" sdpSetMediaTransportType() method. Enter");
  trace::info("sdpSetMediaTransportType() method. change mediaLines=%d", static_cast<int>(mediaNames.size()));
  SdpText text(sdp);
  if (fromTransport == nullptr || toTransport == nullptr) {
    trace::error("sdpSetMediaTransportType(): A transport is null. Exiting.");
  } else if (adopted(text, "sdpSetMediaTransportType") &&
             areLineTexts({toTransport}, "sdpSetMediaTransportType")) {
    const Transport transport = Transport().add(toTransport);
    int number = 0;
    for (const std::string& name : mediaNames) {
      visitMedia(text, number++, name.c_str(), fromTransport, transport.view());
    }
  }
  trace::info(" sdpSetMediaTransportType() method. Exit");
  return 0;
}
