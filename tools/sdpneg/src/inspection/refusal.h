#ifndef SDPNEG_REFUSAL_H
#define SDPNEG_REFUSAL_H

#include <string>

#include "inspection/bodyLines.h"
#include "sdpRefusal.h"
#include "sessionDescription.h"

// Why the library refuses bodies and requests, in words for their reader.

namespace tool {

/// Tells what the library has refused since it was made.
class RefusalWatch {
 public:
  /// Whether it has refused something.
  bool sawOne() const { return sdpLastRefusal().number != before_; }
  /// Whether the last refusal is one with that reason.
  bool saw(eSdpRefusal reason) const { return sawOne() && sdpLastRefusal().reason == reason; }
  /// Whether it has refused something that was to be done.
  bool sawFailure() const { return sawOne() && sdpLastRefusal().kind != SDP_REFUSAL_KIND_NOTHING; }

 private:
  unsigned int before_ = sdpLastRefusal().number;
};

/// What is wrong with a text that is no SDP, as the codec tells it.
Problem explainDecoding(const sSdpRefusal& refusal, const BodyLines& lines);

/// What is wrong with a body that is SDP and that the analysis or the storing refuses.
/// @param description the decoded body
Problem explainRefusal(const sSdpRefusal& refusal, const sDescription& description, const BodyLines& lines);

/// Why a request was refused, or a text that it had made.
/// @param watch  made before the request
/// @param status what the request returned
std::string explainRefusedRequest(const RefusalWatch& watch, unsigned short status);

}  // namespace tool

#endif
