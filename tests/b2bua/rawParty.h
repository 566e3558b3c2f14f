#ifndef B2BUA_TEST_RAW_PARTY_H
#define B2BUA_TEST_RAW_PARTY_H

#include <string>

#include "processes.h"

/// What a request says of itself.
struct RawRequest {
  std::string method = "INVITE";
  int call = 1;              ///< makes Call-ID, the From tag and the branch
  int cseq = 1;              ///< of the request, and of the INVITE that an ACK or CANCEL belongs to
  std::string user = "bob";  ///< in the Request-URI
  std::string toTag = "";
  std::string body = "";
  std::string contentType = "application/sdp";
  std::string branch = "";   ///< of the INVITE that it belongs to; empty for one of its own
  std::string header = "";   ///< one more, with its CR LF
  std::string from = "";     ///< address in the From header; empty for <sip:alice@...>
  std::string to = "";       ///< in the To header; empty for <sip:bob@...>
  std::string contact = "";  ///< Contact; empty for <sip:alice@...>, "none" for no such header
};

/// A SIP party that sends what it is told, byte for byte: sipp's scenarios behave, and name their bodies' files
/// beforehand.
class RawParty {
 public:
  /// @param host  an address of the loopback network
  explicit RawParty(const std::string& host = "127.0.0.1");
  ~RawParty();
  RawParty(const RawParty&) = delete;
  RawParty& operator=(const RawParty&) = delete;

  const std::string& port() const { return port_; }
  std::string address() const { return host_ + ":" + port_; }

  void send(const std::string& to, const std::string& message) const;
  /// @param start  of the message
  /// @param part   that is in it, too
  /// @return the next message like that, others are dropped; empty when none came
  /// @param from   receives where it came from, on this host
  std::string receive(const std::string& start, const std::string& part, milliseconds longest,
                      std::string* from = nullptr) const;

  /// Sends a request to the engine.
  void request(const std::string& engine, const RawRequest& asked) const;
  /// Sends it and waits for its final response.
  /// @return that; empty when none came
  std::string ask(const std::string& engine, const RawRequest& asked, milliseconds longest) const;
  /// Answers a request that came from the engine.
  /// @param status  with its phrase, such as "200 OK"
  std::string respond(const std::string& engine, const std::string& request, const std::string& status,
                      const std::string& body = "") const;

 private:
  std::string host_;
  int descriptor_ = -1;
  std::string port_;
};

/// @return 0 for what is no response
int statusOf(const std::string& message);
/// @return the tag in the To header, with its ";tag="; empty without one
std::string toTagOf(const std::string& message);
/// @return a header's line without its name; empty without one
std::string headerOf(const std::string& message, const std::string& name);

#endif
