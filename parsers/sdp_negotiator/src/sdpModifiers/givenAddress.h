#ifndef SDP_MODIFIERS_GIVEN_ADDRESS_H
#define SDP_MODIFIERS_GIVEN_ADDRESS_H

#include <string_view>

#include "cMsgIPAddress.h"
#include "text/search.h"
#include "vocabulary.h"

// Addresses that callers give.

namespace sdpneg {

/// An address, which may be null, with its version, so that the address class is asked once.
struct GivenAddress {
  explicit GivenAddress(const char* ip)
      : text(ip), version(ip != nullptr ? cMsgIPAddress::getIPAddressVersion(ip) : kIpVersionUnknown) {}

  const char* text;
  eIPAddressVersion version;  ///< unknown for what is no address
};

}  // namespace sdpneg

#endif
