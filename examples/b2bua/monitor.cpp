#include "monitor.h"

#include <httplib.h>

#include <csignal>
#include <future>
#include <map>
#include <mutex>
#include <stdexcept>

#include "connections.h"
#include "options.h"

namespace b2bua {

namespace {

constexpr std::size_t kThreads = 4;
constexpr std::chrono::milliseconds kMoment{1};
constexpr std::chrono::seconds kLongestRequest{2};
constexpr time_t kLongestSilence =
    1;  ///< s, in front of a request; whoever says nothing has a thread for so long
constexpr std::chrono::seconds kOldestSnapshot{3};  ///< of a loop that lives; there is one each second
constexpr unsigned int kMostSnapshots = 3;          ///< that a connection sees
constexpr std::size_t kMostConnections = 64;
constexpr const char* kMetricsType = "text/plain; version=0.0.4; charset=utf-8";

void tell(httplib::Response& response, const std::string& trouble) {
  response.status = trouble.empty() ? 200 : 503;
  response.set_content((trouble.empty() ? "ok" : trouble) + "\n", "text/plain");
}

}  // namespace

struct Monitor::Server {
  ~Server();

  httplib::Server http;
  std::mutex mutex;
  Snapshot snapshot;  ///< guarded by `mutex`
  int port = 0;
  std::string host;                          ///< empty for any
  std::map<std::string, unsigned int> seen;  ///< connections, and how often
  std::future<bool> ended;                   ///< of the thread; it goes first

  void closeSlow();
  /// Without the library's own table of paths, which are regular expressions.
  void answer(const httplib::Request& request, httplib::Response& response);
};

void Monitor::Server::answer(const httplib::Request& request, httplib::Response& response) {
  std::unique_lock lock(mutex);
  const Snapshot now = snapshot;
  lock.unlock();
  const bool stands = std::chrono::steady_clock::now() - now.time > kOldestSnapshot;
  const std::string trouble = stands ? "the engine does not work" : "";
  if (request.method != "GET" && request.method != "HEAD") {
    response.status = 405;
  } else if (request.path == "/metrics") {
    response.set_content(metricsOf(now), kMetricsType);
  } else if (request.path == "/healthz") {
    tell(response, trouble);
  } else if (request.path == "/readyz") {
    tell(response, stands ? trouble : now.notReady);
  } else {
    response.status = 404;
  }
}

Monitor::Server::~Server() {
  // Before it listens, it would not hear that it is to stop.
  while (ended.valid() && !http.is_running() && ended.wait_for(kMoment) != std::future_status::ready) {
  }
  http.stop();
}

/// The library would wait as long as now and then a byte comes, takes headers without an end, and all that connect.
void Monitor::Server::closeSlow() {
  std::map<std::string, unsigned int> now;
  std::size_t count = 0;
  for (const Connection& each : connectionsTo({std::to_string(port)})) {
    if (!host.empty() && each.own.host != host) continue;
    const std::string name = each.peer.host + " " + each.peer.port;
    now[name] = seen[name] + 1;
    if (++count > kMostConnections || now[name] > kMostSnapshots) shutdown(each.descriptor, SHUT_RDWR);
  }
  seen = std::move(now);
}

Monitor::Monitor(const std::string& address) {
  if (address.empty()) return;
  server_ = std::make_shared<Server>();
  Server& server = *server_;
  server.http.new_task_queue = [] { return new httplib::ThreadPool(kThreads); };
  server.http.set_read_timeout(kLongestRequest);
  server.http.set_keep_alive_max_count(1);
  server.http.set_keep_alive_timeout(kLongestSilence);
  server.http.set_payload_max_length(0);
  // Two engines do not share a port, which is the library's own way.
  server.http.set_socket_options([](socket_t socket) {
    const int yes = 1;
    setsockopt(socket, SOL_SOCKET, SO_REUSEADDR, &yes, sizeof yes);
  });
  server.http.set_pre_routing_handler([&server](const auto& request, auto& response) {
    server.answer(request, response);
    return httplib::Server::HandlerResponse::Handled;
  });
  const std::string host = hostOf(address);
  if (host != "0.0.0.0" && host != "::") server.host = host;
  server.port = std::stoi(address.substr(address.rfind(':') + 1));
  if (server.port == 0) {
    server.port = server.http.bind_to_any_port(host);
  } else if (!server.http.bind_to_port(host, server.port)) {
    server.port = -1;
  }
  if (server.port < 0) throw std::runtime_error("cannot listen at " + address);
  // Signals are for the main thread.
  sigset_t all;
  sigset_t former;
  sigfillset(&all);
  pthread_sigmask(SIG_SETMASK, &all, &former);
  server.ended = std::async(std::launch::async, [&server] { return server.http.listen_after_bind(); });
  pthread_sigmask(SIG_SETMASK, &former, nullptr);
}

int Monitor::port() const { return server_ ? server_->port : 0; }

void Monitor::show(const Snapshot& snapshot) {
  if (!server_) return;
  server_->closeSlow();
  const std::lock_guard lock(server_->mutex);
  server_->snapshot = snapshot;
}

}  // namespace b2bua
