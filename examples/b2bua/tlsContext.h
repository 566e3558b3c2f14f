#ifndef B2BUA_TLS_CONTEXT_H
#define B2BUA_TLS_CONTEXT_H

#include <openssl/ssl.h>

#include <functional>
#include <string>

// What the stack leaves undone of TLS. It does not show its context, so OpenSSL is asked for it.

namespace b2bua {

/// @param make  has the stack make it
/// @return null when it has made none; it stays the stack's
SSL_CTX* contextOf(const std::function<void()>& make);

/// Gives back most of the memory of a connection that has ended, all of which the stack forgets: 9 kB of 25 to 50 stay.
void saveMemory(SSL_CTX* context);

/// Reads agent.pem, with certificates between its own and its authority if there are some, and cafile.pem; connections that
/// are there keep what they have.
/// @return whether they can be used; when not, nothing changes
bool readCertificatesInto(SSL_CTX* context, const std::string& folder);

}  // namespace b2bua

#endif
