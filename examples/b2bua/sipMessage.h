#ifndef B2BUA_SIP_MESSAGE_H
#define B2BUA_SIP_MESSAGE_H

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "endpoint.h"

namespace b2bua {

/// What the engine reads of a SIP message (RFC 3261).
struct SipMessage {
  int status = 0;      ///< 0 for a request
  std::string method;  ///< of the request; of the CSeq in a response
  std::string reason;
  std::string requestUser;  ///< user part of the request URI
  std::string callId;
  std::string from;         ///< the header's value with its tag
  std::string fromAddress;  ///< the same without parameters
  std::string fromTag;
  std::string to;
  std::string toTag;
  unsigned int cseq = 0;
  std::string branch;  ///< of the topmost Via
  std::vector<std::string> vias;
  std::vector<std::string> recordRoutes;
  std::string contact;      ///< URI of the first Contact
  std::string contentType;  ///< "application/sdp"
  std::string warning;
  std::string body;
  Endpoint replyTo;  ///< where responses to this request go (RFC 3261 18.2.2, RFC 3581)
};

/// Once, before any message: readies the parser, which else writes to standard output what it makes of them.
void prepareSip();

/// @return the message; none when it is no SIP message or lacks what every message must have
std::optional<SipMessage> parseSip(std::string_view datagram, const Endpoint& source);

/// A request to send, without its Via.
struct SipRequest {
  std::string method;
  std::string uri;
  std::string callId;
  std::string from;
  std::string to;
  unsigned int cseq = 0;
  std::string routes;  ///< value of a Route header, or empty
  std::string contact;
  std::string body;
  Endpoint destination;

  std::string text(const std::string& via) const;
};

/// A response to send. Reason, tag and headers may be empty.
struct SipResponse {
  int status = 0;
  std::string reason{};
  std::string toTag{};
  std::string contact{};
  std::string headers{};  ///< whole header lines
  std::string body{};

  std::string text(const SipMessage& request) const;
};

/// @return the value of a Route header for these Record-Route values
std::string routesOf(const std::vector<std::string>& recordRoutes);

/// @return where a request to this URI goes; `otherwise` when its host is a name
Endpoint endpointOfUri(const std::string& uri, const Endpoint& otherwise);

}  // namespace b2bua

#endif
