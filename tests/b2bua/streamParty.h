#ifndef B2BUA_TEST_STREAM_PARTY_H
#define B2BUA_TEST_STREAM_PARTY_H

#include <openssl/ssl.h>

#include <memory>
#include <string>

#include "processes.h"

/// A SIP party over TCP or TLS that sends what it is told: it connects, or takes the next connection.
class StreamParty {
 public:
  /// @param folder  with agent.pem and cafile.pem for TLS; TCP when empty
  explicit StreamParty(const std::string& folder = "");
  ~StreamParty();
  StreamParty(const StreamParty&) = delete;
  StreamParty& operator=(const StreamParty&) = delete;

  /// HOST:PORT where it listens.
  std::string address() const { return "127.0.0.1:" + port_; }
  const std::string& port() const { return port_; }
  /// @param from  an address of the loopback network
  /// @return whether there is a connection then
  bool connect(const std::string& port, const std::string& from = "127.0.0.1");
  bool accept(milliseconds longest);
  void send(const std::string& message) const;
  /// @param start  of the message; others are dropped
  /// @return the next one like that, with its body; empty when none came
  std::string receive(const std::string& start, milliseconds longest);
  /// @return whether the other side has closed the connection in that time
  bool isClosed(milliseconds longest);

 private:
  bool begin(int descriptor, bool client);
  bool isReadable(milliseconds longest) const;
  bool readMore(milliseconds longest);

  std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> context_;
  std::unique_ptr<SSL, void (*)(SSL*)> tls_;
  int listener_ = -1;
  int descriptor_ = -1;
  std::string port_;
  std::string received_;
};

#endif
