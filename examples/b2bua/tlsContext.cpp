#include "tlsContext.h"

#include <memory>
#include <unordered_map>

namespace b2bua {

namespace {

SSL_CTX* newest = nullptr;
std::unordered_map<int, SSL*> sessions;  ///< that were last on their descriptors

void onContext(void* context, void*, CRYPTO_EX_DATA*, int, long, void*) {
  newest = static_cast<SSL_CTX*>(context);
}

/// A session whose descriptor is that of another one by now has ended.
void onEvent(const SSL* session, int event, int) {
  if (event != SSL_CB_HANDSHAKE_START) return;
  SSL*& last = sessions[SSL_get_fd(session)];
  if (last == session) return;
  if (last != nullptr) {
    SSL_clear(last);
    SSL_free_buffers(last);
  }
  last = const_cast<SSL*>(session);
}

/// Another version of the stack may free its sessions.
void onFree(void* session, void*, CRYPTO_EX_DATA*, int, long, void*) {
  std::erase_if(sessions, [&](const auto& each) { return each.second == session; });
}

}  // namespace

SSL_CTX* contextOf(const std::function<void()>& make) {
  [[maybe_unused]] static const int index = SSL_CTX_get_ex_new_index(0, nullptr, onContext, nullptr, nullptr);
  newest = nullptr;
  make();
  return newest;
}

void saveMemory(SSL_CTX* context) {
  [[maybe_unused]] static const int index = SSL_get_ex_new_index(0, nullptr, nullptr, nullptr, onFree);
  SSL_CTX_set_mode(context, SSL_MODE_RELEASE_BUFFERS);
  SSL_CTX_set_info_callback(context, onEvent);
}

bool readCertificatesInto(SSL_CTX* context, const std::string& folder) {
  const std::unique_ptr<SSL_CTX, void (*)(SSL_CTX*)> read(SSL_CTX_new(TLS_method()), SSL_CTX_free);
  const std::string own = folder + "/agent.pem";
  STACK_OF(X509)* between = nullptr;
  if (SSL_CTX_use_certificate_chain_file(read.get(), own.c_str()) != 1 ||
      SSL_CTX_use_PrivateKey_file(read.get(), own.c_str(), SSL_FILETYPE_PEM) != 1 ||
      SSL_CTX_load_verify_locations(read.get(), (folder + "/cafile.pem").c_str(), nullptr) != 1 ||
      SSL_CTX_get0_chain_certs(read.get(), &between) != 1 ||
      SSL_CTX_use_cert_and_key(context, SSL_CTX_get0_certificate(read.get()),
                               SSL_CTX_get0_privatekey(read.get()), between, 1) != 1)
    return false;
  SSL_CTX_set1_cert_store(context, SSL_CTX_get_cert_store(read.get()));
  return true;
}

}  // namespace b2bua
