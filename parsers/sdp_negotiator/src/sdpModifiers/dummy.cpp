#include <string_view>

#include "cMsgIPAddress.h"
#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpModifiers/sdes.h"
#include "text/lines.h"
#include "trace.h"
#include "vocabulary.h"

// A received body as a dummy body of the library's own.

namespace {

using namespace sdpneg;

constexpr int kAnyMedia = -1;
constexpr int kAllButAudio = ~static_cast<int>(MEDIA_AUDIO);
constexpr int kAudioAndVideo = 64;

/// Leaves a port only to audio of one address version; to secure audio only when that is wanted.
unsigned short closePorts(char* sdp, eIPAddressVersion version, bool keepSecure, unsigned short port) {
  using M = sdpModifications;
  const eIPAddressVersion other = version == kIpVersion4 ? kIpVersion6 : kIpVersion4;
  unsigned short status = M::sdpSetMediaPort(sdp, kAnyMedia, kIpVersionUnknown, M::MEDIA_SECURITY_SECURE, 0);
  if (status != 0) return status;
  // Neither is a reason to give up: what cannot be closed keeps its port.
  M::sdpDisablePort(sdp, kAllButAudio, kIpVersionUnknown);
  M::sdpSetMediaPort(sdp, MEDIA_AUDIO, other, M::MEDIA_SECURITY_ANY, 0);
  if (keepSecure) status = M::sdpSetMediaPort(sdp, MEDIA_AUDIO, version, M::MEDIA_SECURITY_SECURE, port);
  return status;
}

unsigned short replaceAddresses(char* sdp, const char* ip, unsigned short& oLineEnd, bool modifyOLine) {
  if (modifyOLine) {
    const unsigned short status = sdpModifications::sdpModifyOLine(sdp, ip, oLineEnd);
    if (status != 0) return status;
  }
  return sdpModifications::sdpModifyCLines(sdp, ip);
}

/// Overwrites every one-way direction, whether of the session or of a section.
void overwriteOneWay(char* sdp, std::string_view direction) {
  SdpText text(sdp);
  for (std::size_t line = findLine(text.view(), "a="); line != npos;
       line = findLine(text.view(), "a=", line)) {
    const std::size_t at = line + 2;
    const eConnectionMode mode = directionOf(text.view().substr(at, kDirectionLength));
    if (mode == CONNECTION_MODE_SENDONLY || mode == CONNECTION_MODE_RECVONLY) {
      text.replace({at, at + kDirectionLength}, direction);
    }
  }
}

unsigned short setDirections(char* sdp, bool answer, bool hold, bool third) {
  constexpr unsigned char kReceiveOnly = 2;
  constexpr unsigned char kInactive = 4;
  if (hold && (answer || !third)) {
    return sdpModifications::sdpReplaceMode(sdp, answer ? kInactive : kReceiveOnly, kAudioAndVideo);
  }
  overwriteOneWay(sdp, hold ? "recvonly" : "inactive");
  return 0;
}

/// Gives the crypto attributes of every section keys of its own. A line of another kind that begins with "m" begins
/// a section too, which ends at the next m-line like the others.
unsigned short replaceKeys(char* sdp) {
  constexpr std::string_view kMLine = "\nm";
  SdpText text(sdp);
  // Searched for anew only once passed or edited, so that sections without crypto attributes cost next to nothing.
  std::size_t end = 0;
  std::size_t crypto = 0;
  std::size_t at = findAnywhere(text.view(), kMLine);
  while (at != npos) {
    if (end <= at + 1) end = orEnd(findLine(text.view(), "m=", at + 1), text.view());
    if (crypto < at) crypto = orEnd(findAnywhere(text.view(), "a=crypto:", at), text.view());
    if (crypto < end) {
      if (const Refusal refusal = addSdesLine(text, at)) return refuse(refusal);
      end = 0;
      crypto = 0;
    }
    at = findAnywhere(text.view(), kMLine, at + kMLine.size() + 1);
  }
  return 0;
}

}  // namespace

unsigned short sdpModifications::sdpCreateDummy(char* sdp, bool answer, bool holdFlag, bool third,
                                                const char* ip, unsigned short port, int& length,
                                                unsigned short& oLineEnd, bool modifyOLine) {
  if (ip == nullptr) {
    trace::invalidArgument("sdpCreateDummy(): NULL IP provided. Cannot create dummy SDP.");
    return 1;
  }
  if (!adopted(SdpText(sdp), "sdpCreateDummy") || !areLineTexts({ip}, "sdpCreateDummy")) return 1;
  const bool sdesOnly = isSDESonly(sdp);
  if (sdesOnly) trace::invalidArgument("FRN4034: SRTP-only scenario with SDES only.");
  const bool single = isSingleMLineSdp(sdp);
  sdpRemoveSecureAttributes(sdp, "a=key-mgmt:");
  const eIPAddressVersion version = cMsgIPAddress::getIPAddressVersion(ip);
  if (const unsigned short status = closePorts(sdp, version, single || sdesOnly, port)) return status;
  if (const unsigned short status = replaceAddresses(sdp, ip, oLineEnd, modifyOLine)) return status;
  sdpRemoveICE(sdp);
  const unsigned short result = setDirections(sdp, answer, holdFlag, third);
  if (sdesOnly) {
    if (const unsigned short status = replaceKeys(sdp)) return status;
  }
  length = static_cast<int>(SdpText(sdp).size());
  if (result != 0) return result;
  trace::progress("A dummy SDP message has been succesfully created.");
  return 0;
}

unsigned short sdpModifications::sdpCreateDummy(char* sdp, bool answer, bool holdFlag, const char* ip,
                                                unsigned short port, int& length, unsigned short& oLineEnd,
                                                bool modifyOLine) {
  return sdpCreateDummy(sdp, answer, holdFlag, false, ip, port, length, oLineEnd, modifyOLine);
}
