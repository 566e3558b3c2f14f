#include "sdpModifiers/anat.h"
#include "sdpModifiers/recordText.h"
#include "sdpModifiers/removedMLines.h"
#include "sdpNegotiator.h"
#include "sdpNegotiator/request.h"
#include "trace.h"
#include "vocabulary.h"

// Alternative network address types (RFC 4091): leaving one address version, and putting the other's m-lines back.

namespace sdpneg {
namespace {

constexpr std::size_t kRecordSize = 26;

/// The address type of a version; null for another value.
const char* knownTypeOf(eIPAddressVersion version) {
  return version == kIpVersion4 || version == kIpVersion6 ? addressTypeOf(version) : nullptr;
}

}  // namespace
}  // namespace sdpneg

using namespace sdpneg;

unsigned short cSdpNegotiator::sdpRemoveANAT(eIPAddressVersion version, char* removed, bool flag) {
  const char* const type = knownTypeOf(version);
  trace::progress("Request to remove ANAT media net_type=%s.", type != nullptr ? type : "INVALID");
  clearRecord(removed, kRecordSize);
  if (type == nullptr) {
    return asStatus(tell({.reason = SDP_REFUSED_NO_IP_VERSION, .number = static_cast<int>(version)}));
  }
  if (!isAnatPresent()) return asStatus(tell({.reason = SDP_REFUSED_NO_ANAT}));
  editWithOLineAndParse(*this, [&](SdpText& text, unsigned short& oLineEnd) {
    removeAnat(text, version, removed, oLineEnd, flag);
  });
  return asStatus(trace::progress("sdpRemoveANAT output is [%s]", recordText<76>(codesOf(removed)).text()));
}

unsigned short cSdpNegotiator::sdpReInsertANAT(char* removed, bool flag) {
  trace::progress("Request to re-insert the ANAT media.");
  if (removed == nullptr) return asStatus(tell({.reason = SDP_REFUSED_NO_ANAT_RECORD}));
  return editWithOLineAndParse(
      *this, [&](SdpText& text, unsigned short& oLineEnd) { reinsertAnat(text, removed, oLineEnd, flag); });
}
