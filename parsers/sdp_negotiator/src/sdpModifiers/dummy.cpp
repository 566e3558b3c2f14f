#include "sdpModifiers/dummy.h"

#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/attributeRemoval.h"
#include "sdpModifiers/connectionLines.h"
#include "sdpModifiers/connectionMode.h"
#include "sdpModifiers/dummyPlan.h"
#include "sdpModifiers/mediaSet.h"
#include "sdpModifiers/notes.h"
#include "sdpModifiers/originLine.h"
#include "sdpModifiers/ports.h"
#include "sdpModifiers/sdes.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// A received body as a dummy body of the library's own.

namespace sdpneg {

namespace {

constexpr const char* kOperation = "sdpCreateDummy";
constexpr int kAllButAudio = ~static_cast<int>(MEDIA_AUDIO);

/// Closes the ports that a dummy does not keep, request after request.
Refusal closeEachKind(NotedText& text, eIPAddressVersion other) {
  using M = sdpModifications;
  const Refusal secure = setMediaPort(text, kAnyMedia, kIpVersionUnknown, M::MEDIA_SECURITY_SECURE, 0);
  if (secure) return secure;
  // Neither is a reason to give up: what cannot be closed keeps its port.
  disablePorts(text, kAllButAudio, kIpVersionUnknown);
  statusOf(setMediaPort(text, MEDIA_AUDIO, other, M::MEDIA_SECURITY_ANY, 0));
  return {};
}

/// Leaves a port only to audio of one address version; to secure audio only when that is wanted.
Refusal closePorts(NotedText& text, eIPAddressVersion version, bool keepSecure, unsigned short port) {
  const eIPAddressVersion other = version == kIpVersion4 ? kIpVersion6 : kIpVersion4;
  bool hasSecure = true;
  if (text.tracing()) {
    if (const Refusal refusal = closeEachKind(text, other)) return refusal;
  } else {
    hasSecure = closePortsBut(text, MEDIA_AUDIO, other);
  }
  return keepSecure && hasSecure
             ? setMediaPort(text, MEDIA_AUDIO, version, sdpModifications::MEDIA_SECURITY_SECURE, port)
             : Refusal();
}

Refusal replaceOriginLine(NotedText& text, const GivenAddress& address, unsigned short& oLineEnd) {
  const std::size_t before = text.text().size();
  const std::size_t begin = findAnywhere(text.view(), kOriginLine);
  if (const Refusal refusal = renewOriginLine(text.text(), address, oLineEnd)) return refusal;
  text.noteReplaced({begin, oLineEnd + before - text.text().size()}, {begin, oLineEnd});
  return {};
}

Refusal replaceAddresses(NotedText& text, const GivenAddress& address, unsigned short& oLineEnd,
                         bool modifyOLine) {
  if (modifyOLine) {
    if (const Refusal refusal = replaceOriginLine(text, address, oLineEnd)) return refusal;
  }
  return replaceSessionAndAudioConnections(text, address);
}

/// Overwrites every one-way direction, whether of the session or of a section.
void overwriteOneWay(NotedText& text, eConnectionMode direction) {
  for (std::size_t line = text.notes().find(Noted::direction, 0); line != npos;
       line = text.notes().find(Noted::direction, line + 1)) {
    const std::size_t at = line + kAttribute.size();
    const eConnectionMode mode = directionOf(text.view().substr(at, kDirectionLength));
    if (mode == CONNECTION_MODE_SENDONLY || mode == CONNECTION_MODE_RECVONLY) {
      text.replace({at, at + kDirectionLength}, nameOf(direction));
    }
  }
  text.settle();
}

Refusal setDirections(NotedText& text, const DummyKind& kind) {
  if (kind.hold && (kind.answer || !kind.third)) {
    const unsigned char mode = kind.answer ? CONNECTION_MODE_INACTIVE : CONNECTION_MODE_RECVONLY;
    return replaceMode(text, mode, kAudioAndVideo);
  }
  overwriteOneWay(text, kind.hold ? CONNECTION_MODE_RECVONLY : CONNECTION_MODE_INACTIVE);
  return {};
}

/// Gives the crypto attributes of every section keys of its own. A line of another kind that begins with "m" begins
/// a section too, which ends at the next m-line like the others.
Refusal replaceKeys(SdpText& text) {
  constexpr std::string_view kAnyM = "\nm";
  // Searched for anew only once passed or edited, so that sections without crypto attributes cost next to nothing.
  std::size_t end = 0;
  std::size_t crypto = 0;
  std::size_t at = findAnywhere(text.view(), kAnyM);
  while (at != npos) {
    if (end <= at + 1) end = sectionEnd(text.view(), at + 1);
    if (crypto < at) crypto = orEnd(findAnywhere(text.view(), kCrypto, at), text.view());
    if (crypto < end) {
      if (const Refusal refusal = addSdesLine(text, at)) return refusal;
      end = 0;
      crypto = 0;
    }
    at = findAnywhere(text.view(), kAnyM, at + kAnyM.size() + 1);
  }
  return {};
}

Refusal refusalOfArguments(const SdpText& text, const char* ip) {
  if (ip == nullptr) return {.reason = SDP_REFUSED_NO_DUMMY_ADDRESS};
  const Refusal refusal = refusalOfBuffer(text, kOperation);
  return refusal ? refusal : refusalOfLineTexts({ip}, kOperation);
}

}  // namespace

namespace {

/// Makes the edits of a dummy one after the other, but for its keys.
/// @param status receives that of the directions
/// @return a refusal that ends it all
Refusal makeDummy(NotedText& text, const DummyRequest& request, unsigned short& oLineEnd,
                  unsigned short& status) {
  const GivenAddress& address = request.address;
  removeKeyManagement(text);
  if (const Refusal refusal = closePorts(text, address.version, request.keepSecure, request.port)) {
    return refusal;
  }
  if (const Refusal refusal = replaceAddresses(text, address, oLineEnd, request.modifyOLine)) return refusal;
  removeIce(text);
  status = statusOf(setDirections(text, request.kind));
  return {};
}

}  // namespace

unsigned short createDummy(SdpText& text, const DummyKind& kind, const char* ip, unsigned short port,
                           int& length, unsigned short& oLineEnd, bool modifyOLine) {
  if (const Refusal refusal = refusalOfArguments(text, ip)) return refuse(refusal);
  NotedText noted(text);
  const bool sdesOnly = isSdesOnly(text.view(), noted.notes());
  // No refusal: readers of traces know this line by the pair of one.
  if (sdesOnly) trace::invalidArgument("FRN4034: SRTP-only scenario with SDES only.");
  const bool single = hasSingleMLine(text);
  const GivenAddress address(ip);
  const DummyRequest request{kind, address, port, single || sdesOnly, modifyOLine};
  // Keys are replaced, and the length is given, in spite of a refusal of directions.
  unsigned short status = 0;
  if (!makeDummyAtOnce(noted, request, oLineEnd, OldLines::accepted)) {
    if (const Refusal refusal = makeDummy(noted, request, oLineEnd, status)) return refuse(refusal);
  }
  if (sdesOnly) {
    if (const Refusal refusal = replaceKeys(text)) return refuse(refusal);
  }
  length = static_cast<int>(text.size());
  if (status == 0 && noted.tracing()) trace::progress("A dummy SDP message has been succesfully created.");
  return status;
}

namespace {

/// Whether the codec accepts the lines whose keys are replaced, each a line of its own.
bool areCryptoLinesAccepted(const NotedText& text) {
  const std::string_view view = text.view();
  bool accepted = true;
  text.notes().each(Noted::crypto, 0, [&](std::size_t at) {
    accepted =
        at != 0 && view[at - 1] == '\n' && isAcceptedAttribute(view.substr(at, lineAt(view, at).next() - at));
    return accepted;
  });
  return accepted;
}

}  // namespace

Undecoded createDummyUndecoded(SdpText& text, const DummyKind& kind, const char* ip, unsigned short port,
                               bool modifyOLine) {
  if (refusalOfArguments(text, ip)) return Undecoded::untouched;
  NotedText noted(text);
  const bool sdesOnly = isSdesOnly(text.view(), noted.notes());
  const std::size_t first = nextMLine(noted.notes());
  const bool single = first != npos && nextMLine(noted.notes(), first) == npos;
  const GivenAddress address(ip);
  unsigned short oLineEnd = 0;
  if (sdesOnly && !areCryptoLinesAccepted(noted)) return Undecoded::untouched;
  const DummyRequest request{kind, address, port, single || sdesOnly, modifyOLine};
  if (!makeDummyAtOnce(noted, request, oLineEnd, OldLines::judged)) return Undecoded::untouched;
  return sdesOnly && replaceKeys(text) ? Undecoded::lost : Undecoded::made;
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned short sdpModifications::sdpCreateDummy(char* sdp, bool answer, bool holdFlag, bool third,
                                                const char* ip, unsigned short port, int& length,
                                                unsigned short& oLineEnd, bool modifyOLine) {
  SdpText text(sdp);
  return createDummy(text, {answer, holdFlag, third}, ip, port, length, oLineEnd, modifyOLine);
}

unsigned short sdpModifications::sdpCreateDummy(char* sdp, bool answer, bool holdFlag, const char* ip,
                                                unsigned short port, int& length, unsigned short& oLineEnd,
                                                bool modifyOLine) {
  return sdpCreateDummy(sdp, answer, holdFlag, false, ip, port, length, oLineEnd, modifyOLine);
}
