#include "redirects.h"

#include <sofia-sip/hostdomain.h>

#include <algorithm>
#include <cstdlib>
#include <functional>
#include <map>

#include "bodyLines.h"

namespace b2bua {

namespace {

constexpr std::size_t kMostContacts = 16;  ///< that are looked at
constexpr std::size_t kLongestUser = 256;

/// @return the value of the parameter that tells it; TLS for a SIPS URI, which wants nothing less
std::string transportIn(const url_t& url) {
  char text[8] = "";
  if (url_param(url.url_params, "transport", text, sizeof text) > static_cast<isize_t>(sizeof text))
    return "?";
  std::string name = lowerCase(text);
  if (url.url_type != url_sips) return name;
  return name.empty() || name == "tcp" || name == "tls" ? "tls" : "?";
}

/// @return empty for one that cannot be tried
std::string uriOf(const url_t& url, const TransportOptions& ways) {
  if ((url.url_type != url_sip && url.url_type != url_sips) || url.url_host == nullptr) return "";
  if (host_is_ip_address(url.url_host) == 0) return "";
  const std::string transport = transportIn(url);
  const std::string user = url.url_user != nullptr ? url.url_user : "";
  if (user.size() > kLongestUser || !isUser(user) || !ways.has(transport.empty() ? "udp" : transport))
    return "";
  const std::string port = url.url_port != nullptr ? url.url_port : transport == "tls" ? "5061" : "5060";
  return "sip:" + (user.empty() ? "" : user + "@") + url.url_host + ":" + port +
         (transport.empty() ? "" : ";transport=" + transport);
}

/// @return 0 for what is no preference, be it a number that cannot be compared
double preferenceOf(const sip_contact_t& contact) {
  const double q = contact.m_q != nullptr ? std::strtod(contact.m_q, nullptr) : 1.0;
  return q >= 0.0 && q <= 1.0 ? q : 0.0;
}

}  // namespace

bool isUser(std::string_view user) {
  return std::ranges::all_of(user, [](unsigned char c) {
    return c > ' ' && c != 0x7f &&
           std::string_view("<>\"@").find(static_cast<char>(c)) == std::string_view::npos;
  });
}

std::vector<std::string> redirectionsIn(const sip_t& response, const TransportOptions& ways) {
  std::multimap<double, std::string, std::greater<>> found;  // those of one preference in their order
  std::size_t count = 0;
  for (const sip_contact_t* each = response.sip_contact; each != nullptr && count++ < kMostContacts;
       each = each->m_next) {
    const std::string uri = uriOf(*each->m_url, ways);
    if (!uri.empty()) found.emplace(preferenceOf(*each), uri);
  }
  std::vector<std::string> uris;
  for (const auto& [q, uri] : found) uris.push_back(uri);
  return uris;
}

}  // namespace b2bua
