#ifndef SDPNEG_SECRETS_H
#define SDPNEG_SECRETS_H

#include "calls/call.h"

namespace tool {

/// Masks in the texts of a call what no reader of a page or log should see: keys of a=crypto and a=key-mgmt, ice-pwd,
/// fingerprints, credentials of Authorization and Proxy-Authorization and the like, passwords in SIP URIs. Each becomes "[key 1]", the same one
/// the same number in the whole call, so that it can be seen where a hop changed a key. The places of SDP bodies follow.
void maskSecrets(Call& call);
/// Masks them in what is told of a call beside its messages: its parties, and by what its legs are joined.
void maskSecretsTold(Call& call);

}  // namespace tool

#endif
