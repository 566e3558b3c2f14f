#ifndef B2BUA_TRANSPORTS_H
#define B2BUA_TRANSPORTS_H

#include <string>
#include <vector>

#include "options.h"
#include "sip.h"
#include "tlsContext.h"

namespace b2bua {

/// The ways over which the engine sends and receives.
class Transports {
 public:
  /// @param listen  HOST:PORT; port 0 takes a free one
  Transports(const std::string& listen, const TransportOptions& options);

  /// Listens; to be called once. Throws std::runtime_error when it cannot.
  Owned<nta_agent_t> open(su_root_t* root, nta_message_f* onMessage, nta_agent_magic_t* magic);
  /// HOST:PORT
  std::string address() const;
  std::string portOf(const std::string& transport) const;
  /// @param address  HOST:PORT
  bool isOwn(const std::string& address) const;
  /// Contact of the engine over a transport; over its first one when it has no such.
  std::string contact(const std::string& transport) const;
  /// @return the transport over which a message came
  std::string of(msg_t* message) const;
  /// Closes connections that came beyond the limit, of those who have most of them.
  /// @return how many
  unsigned long closeSome() const;
  /// For connections from now on.
  /// @return false when they cannot be used, and the old ones stay
  bool readCertificates() const {
    return tls_ == nullptr || readCertificatesInto(tls_, options_.certificates);
  }

 private:
  void add(const std::string& name);

  const TransportOptions& options_;
  std::string host_;
  std::string port_;
  nta_agent_t* agent_ = nullptr;
  SSL_CTX* tls_ = nullptr;  ///< the stack's
};

}  // namespace b2bua

#endif
