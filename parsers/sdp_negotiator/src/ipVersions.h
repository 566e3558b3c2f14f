#ifndef SDP_IP_VERSIONS_H
#define SDP_IP_VERSIONS_H

#include "cMsgIPAddress.h"

namespace sdpneg {

// A host's own address class may name these otherwise; the values are fixed.
inline constexpr auto ipVersionUnknown = static_cast<eIPAddressVersion>(0);
inline constexpr auto ipVersion4 = static_cast<eIPAddressVersion>(2);
inline constexpr auto ipVersion6 = static_cast<eIPAddressVersion>(10);

}  // namespace sdpneg

#endif
