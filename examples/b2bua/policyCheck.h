#ifndef B2BUA_POLICY_CHECK_H
#define B2BUA_POLICY_CHECK_H

#include <string>

#include "bodyLines.h"
#include "options.h"

namespace b2bua {

/// Reads a body that is about to go out, as tolerantly as its receiver may, whatever changed it.
/// @param keysSuffice  whether a plain m-line with keys counts as secure: the answer to a best-effort offer
/// @return what of it the policy forbids; empty for nothing. No part of the body is in it.
std::string whatIsForbidden(const Policy& policy, const std::string& body, bool keysSuffice);

/// @return whether a candidate (RFC 8839) has an address of the family that the policy does not keep
bool isOtherFamily(const Policy& policy, const Attribute& candidate);

/// @param name  an encoding's, in lower case
/// @return whether a codec of the policy has it
bool isAllowedCodec(const Policy& policy, const std::string& name);

/// Telephone events and comfort noise go with a codec, and are none.
/// @param name  an encoding's, in lower case
bool isCompanion(std::string_view name);

}  // namespace b2bua

#endif
