#include "transports.h"

#include <sofia-sip/nta_tport.h>
#include <sofia-sip/tport.h>
#include <sofia-sip/tport_tag.h>

#include <sys/resource.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <map>
#include <stdexcept>

#include "connections.h"
#include "heads.h"

namespace b2bua {

namespace {

constexpr unsigned int kReceiveBuffer = 1 << 20;  ///< for what comes while the engine waits for the store

constexpr unsigned int kSafeDatagram =
    1'300;  ///< what is longer goes by TCP where there is one (RFC 3261 18.1.1)
constexpr unsigned int kLongestRinging = 180'000;  ///< ms; the stack has no limit of its own for a user agent

/// The stack's word for an agent without transports, which are added one by one.
const url_string_t* withoutTransports() {
  return reinterpret_cast<const url_string_t*>(-1);  // NOLINT(performance-no-int-to-ptr)
}

/// Each connection is one; what the usual limit allows would soon be none for anything else.
void allowFiles() {
  rlimit limit{};
  if (getrlimit(RLIMIT_NOFILE, &limit) != 0) return;
  limit.rlim_cur = limit.rlim_max;
  setrlimit(RLIMIT_NOFILE, &limit);
}

}  // namespace

Transports::Transports(const std::string& listen, const TransportOptions& options)
    : options_(options),
      host_(listen.substr(0, listen.rfind(':'))),
      port_(listen.substr(listen.rfind(':') + 1)) {
  if (port_ == "0") port_ = "*";
}

Owned<nta_agent_t> Transports::open(su_root_t* root, nta_message_f* onMessage, nta_agent_magic_t* magic) {
  if (options_.names != std::vector<std::string>{"udp"}) allowFiles();
  Owned<nta_agent_t> agent(
      nta_agent_create(root, withoutTransports(), onMessage, magic, NTATAG_UA(1),
                       NTATAG_MAXSIZE(kLongestMessage), NTATAG_MCLASS(messagesWithHeads()),
                       NTATAG_UDP_MTU(options_.has("tcp") ? kSafeDatagram : kLongestMessage),
                       NTATAG_TIMER_C(kLongestRinging), NTATAG_PASS_100(1), TAG_END()));
  if (!agent) throw std::runtime_error("no SIP stack");
  agent_ = agent.get();
  for (const char* const name : {"udp", "tcp", "tls"}) {
    if (!options_.has(name)) continue;
    add(name);
    // The free port of the first one is that of the others.
    if (port_ == "*") port_ = nta_agent_contact(agent_)->m_url->url_port;
  }
  return agent;
}

std::string Transports::portOf(const std::string& transport) const {
  return transport == "tls" ? std::to_string(options_.tlsPort) : port_;
}

void Transports::add(const std::string& name) {
  if (name == "tls" && access((options_.certificates + "/agent.pem").c_str(), R_OK) != 0)
    throw std::runtime_error(options_.certificates + "/agent.pem: cannot be read");
  const std::string place = host_ + ":" + portOf(name);
  const std::string url = (name == "tls" ? "sips:" : "sip:") + place + ";transport=" + name;
  const unsigned int verify = options_.verifyCallers ? TPTLS_VERIFY_ALL : TPTLS_VERIFY_OUTGOING;
  int status = 0;
  SSL_CTX* const context = contextOf([&] {
    status = nta_agent_add_tport(agent_, urlOf(url), TPTAG_IDLE(1'000 * options_.idleSeconds),
                                 TPTAG_TIMEOUT(1'000 * options_.idleSeconds), TPTAG_UDP_RMEM(kReceiveBuffer),
                                 TAG_IF(name == "tls", TPTAG_CERTIFICATE(options_.certificates.c_str())),
                                 TAG_IF(name == "tls", TPTAG_TLS_VERIFY_POLICY(verify)), TAG_END());
  });
  if (status != 0) throw std::runtime_error("cannot listen at " + place + " (" + name + ")");
  if (context == nullptr) return;
  tls_ = context;
  saveMemory(context);
  if (!readCertificates())
    throw std::runtime_error(options_.certificates + ": agent.pem and cafile.pem cannot be used");
}

std::string Transports::address() const {
  return host_ + ":" + portOf(options_.has("udp") ? "udp" : options_.names.front());
}

bool Transports::isOwn(const std::string& address) const {
  return std::ranges::any_of(options_.names,
                             [&](const std::string& name) { return address == host_ + ":" + portOf(name); });
}

std::string Transports::contact(const std::string& transport) const {
  const std::string& name = options_.has(transport) ? transport : options_.names.front();
  return "<sip:" + host_ + ":" + portOf(name) + ";transport=" + name + ">";
}

std::string Transports::of(msg_t* message) const {
  const tport_t* const way = tport_delivered_by(nta_agent_tports(agent_), message);
  const std::string name = way != nullptr ? tport_name(way)->tpn_proto : "";
  return options_.has(name) ? name : options_.names.front();
}

unsigned long Transports::closeSome() const {
  if (!options_.has("tcp") && !options_.has("tls")) return 0;
  std::map<std::string, std::vector<int>> bySource;
  const std::vector<Connection> connections = connectionsTo({portOf("tcp"), portOf("tls")});
  for (const Connection& each : connections) bySource[each.peer.host].push_back(each.descriptor);
  std::size_t all = connections.size();
  unsigned long closed = 0;
  for (; all > options_.maxConnections; --all, ++closed) {
    const auto most =
        std::ranges::max_element(bySource, {}, [](const auto& each) { return each.second.size(); });
    // The stack learns it as if the other side had closed it.
    shutdown(most->second.back(), SHUT_RDWR);
    most->second.pop_back();
  }
  return closed;
}

}  // namespace b2bua
