#include "redirects.h"

#include <sofia-sip/hostdomain.h>

#include <algorithm>
#include <cstdlib>
#include <utility>

namespace b2bua {

namespace {

constexpr std::size_t kMostContacts = 16;  ///< that are looked at
constexpr std::size_t kLongestUser = 256;

/// @return the value of the parameter that tells it; TLS for a SIPS URI, which wants nothing less
std::string transportIn(const url_t& url) {
  char text[8] = "";
  const bool told = url_has_param(&url, "transport") != 0;
  if (told && url_param(url.url_params, "transport", text, sizeof text) > static_cast<isize_t>(sizeof text))
    return "?";
  std::string name = text;
  std::ranges::transform(name, name.begin(),
                         [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c + 32) : c; });
  if (url.url_type == url_sips && (name.empty() || name == "tcp")) return "tls";
  return url.url_type == url_sips && name != "tls" ? "?" : name;
}

/// @return empty for one that cannot be tried
std::string uriOf(const url_t& url, const TransportOptions& ways) {
  if ((url.url_type != url_sip && url.url_type != url_sips) || url.url_host == nullptr) return "";
  if (host_is_ip4_address(url.url_host) == 0 && host_is_ip6_reference(url.url_host) == 0) return "";
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
  std::vector<std::pair<double, std::string>> found;
  std::size_t count = 0;
  for (const sip_contact_t* each = response.sip_contact; each != nullptr && count++ < kMostContacts;
       each = each->m_next) {
    const std::string uri = uriOf(*each->m_url, ways);
    if (!uri.empty()) found.emplace_back(preferenceOf(*each), uri);
  }
  std::ranges::stable_sort(found, std::ranges::greater(), [](const auto& contact) { return contact.first; });
  std::vector<std::string> uris;
  uris.reserve(found.size());
  for (auto& [q, uri] : found) uris.push_back(std::move(uri));
  return uris;
}

}  // namespace b2bua
