// Where calls come from and go to.

#include <arpa/inet.h>

#include <algorithm>

#include <CLI/CLI.hpp>

#include "optionTopics.h"
#include "passedHeaders.h"

namespace b2bua {

namespace {

/// It is where the parties are to send to.
std::string checkNoWildcard(const std::string& text) {
  in6_addr six{};
  in_addr four{};
  const std::string host = hostOf(text);
  const bool isFour = inet_pton(AF_INET, host.c_str(), &four) == 1;
  const bool isSix = inet_pton(AF_INET6, host.c_str(), &six) == 1;
  const auto isZero = [](unsigned char byte) { return byte == 0; };
  const bool mapped =
      isSix && IN6_IS_ADDR_V4MAPPED(&six) && std::all_of(six.s6_addr + 12, six.s6_addr + 16, isZero);
  const bool wildcard =
      (isFour && four.s_addr == INADDR_ANY) || (isSix && IN6_IS_ADDR_UNSPECIFIED(&six)) || mapped;
  return wildcard ? "no wildcard address, since it is the Contact too: " + text : "";
}

}  // namespace

std::string hostOf(const std::string& endpoint) {
  const std::string host = endpoint.substr(0, endpoint.rfind(':'));
  return host.starts_with('[') && host.ends_with(']') ? host.substr(1, host.size() - 2) : host;
}

std::string checkAddress(const std::string& text) {
  return cMsgIPAddress::isValid(text.c_str()) ? "" : "no address: " + text;
}

std::string checkEndpoint(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  unsigned short port = 0;
  const bool valid = colon != std::string::npos && CLI::detail::lexical_cast(text.substr(colon + 1), port);
  return valid && checkAddress(hostOf(text)).empty() ? "" : "no numeric HOST:PORT: " + text;
}

namespace {

Target targetOf(const std::string& text) {
  const std::optional<Target> target = readTarget(text);
  if (!target)
    throw CLI::ValidationError("--target", "no HOST:PORT[;transport=..][;weight=N][;priority=N]: " + text);
  const std::string wrong = checkEndpoint(target->address);
  if (!wrong.empty()) throw CLI::ValidationError("--target", wrong);
  return *target;
}

}  // namespace

void addCallOptions(CLI::App& app, Options& options) {
  app.add_option_function<std::vector<std::string>>(
         "--target",
         [&](const std::vector<std::string>& texts) {
           options.targets.clear();
           for (const std::string& text : texts) options.targets.push_back(targetOf(text));
         },
         "HOST:PORT[;transport=udp|tcp|tls][;weight=N][;priority=N] where the calls go; numeric; may be repeated")
      ->allow_extra_args(false);
  app.add_option("--target-seconds", options.targetSeconds,
                 "of silence, after which a call goes on to the next target")
      ->check(CLI::Range(1U, 30U))
      ->capture_default_str();
  app.add_option("--follow-redirects", options.followRedirects,
                 "contacts of 3xx that are tried for a call; 0 passes 3xx on without them")
      ->check(CLI::Range(0U, 16U))
      ->capture_default_str();
  app.add_option("--pass-headers", options.passHeaders,
                 "names of headers that go on to the other side, with commas; X-* for all that begin so")
      ->delimiter(',')
      ->check(checkPassedHeader)
      ->capture_default_str();
  app.add_option("--listen", options.listen, "HOST:PORT where they come from; port 0 takes a free one")
      ->check(checkEndpoint)
      ->check(checkNoWildcard)
      ->capture_default_str();
  app.add_option("--session-expires", options.session.interval,
                 "seconds after which a call without a sign of life ends; 0 for none")
      ->check(CLI::Range(0U, 86'400U))
      ->capture_default_str();
  app.add_option("--min-se", options.session.minimum, "seconds, the least that a party may ask for")
      ->check(CLI::Range(1U, 86'400U))
      ->capture_default_str();
}

void addTransportOptions(CLI::App& app, Options& options) {
  TransportOptions& ways = options.transports;
  app.add_option("--transports", ways.names, "udp, tcp and tls, with commas; the address is that of --listen")
      ->delimiter(',')
      ->check(CLI::IsMember({"udp", "tcp", "tls"}))
      ->capture_default_str();
  app.add_option("--tls-port", ways.tlsPort, "instead of that of --listen")
      ->check(CLI::Range(1U, 65'535U))
      ->capture_default_str();
  app.add_option(
      "--certificates", ways.certificates,
      "folder with agent.pem, certificate and key of the engine, and cafile.pem, who vouches for others");
  app.add_flag("--verify-callers", ways.verifyCallers, "who connects by TLS needs a certificate, too");
  app.add_option("--max-connections", ways.maxConnections, "at a time")->capture_default_str();
  app.add_option("--idle-seconds", ways.idleSeconds, "after which a connection is closed")
      ->check(CLI::Range(1U, 86'400U))
      ->capture_default_str();
}

}  // namespace b2bua
