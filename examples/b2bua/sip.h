#ifndef B2BUA_SIP_H
#define B2BUA_SIP_H

#include <memory>
#include <string>

namespace b2bua {
class Engine;
struct Leg;
}  // namespace b2bua

// What the stack hands to the callbacks of dialogs and transactions.
#define NTA_AGENT_MAGIC_T b2bua::Engine
#define NTA_LEG_MAGIC_T b2bua::Leg
#define NTA_INCOMING_MAGIC_T b2bua::Leg
#define NTA_OUTGOING_MAGIC_T b2bua::Leg
#define NTA_RELIABLE_MAGIC_T b2bua::Leg
#include <sofia-sip/msg_addr.h>
#include <sofia-sip/nta.h>
#include <sofia-sip/nta_stateless.h>
#include <sofia-sip/nta_tag.h>
#include <sofia-sip/sip_header.h>
#include <sofia-sip/sip_status.h>
#include <sofia-sip/sip_tag.h>
#include <sofia-sip/su_string.h>
#include <sofia-sip/su_wait.h>
#include <sofia-sip/url_tag.h>

namespace b2bua {

/// Gives an object of the stack back to it; what is on its way in a transaction is still sent.
struct Release {
  void operator()(su_root_t* root) const { su_root_destroy(root); }
  void operator()(su_timer_t* timer) const { su_timer_destroy(timer); }
  void operator()(nta_agent_t* agent) const { nta_agent_destroy(agent); }
  void operator()(msg_t* message) const { msg_destroy(message); }
  void operator()(nta_leg_t* dialog) const { nta_leg_destroy(dialog); }
  void operator()(nta_incoming_t* transaction) const { nta_incoming_destroy(transaction); }
  void operator()(nta_outgoing_t* transaction) const { nta_outgoing_destroy(transaction); }
};

constexpr const char* k100rel = "100rel";
constexpr const char* kTimer = "timer";
constexpr const char* kAllow = "Allow: INVITE, ACK, CANCEL, BYE, OPTIONS, PRACK, UPDATE, INFO";

template <typename Object>
using Owned = std::unique_ptr<Object, Release>;

/// A URL as text where the stack takes it made up, too.
inline const url_string_t* urlOf(const std::string& text) {
  return reinterpret_cast<const url_string_t*>(text.c_str());
}

/// The value of one header.
///
/// The encoder leaves out what does not fit, and counts it; it wants more room than it says, so a value counts only when
/// some is left. The stack's own function for this takes the exact size, and returns memory that nobody wrote.
inline std::string headerValue(const sip_header_t* header) {
  constexpr std::size_t kUnused = 16;
  constexpr std::size_t kLargest = 1 << 20;
  std::string value(256, '\0');
  while (value.size() <= kLargest) {
    const auto length = sip_header_field_e(value.data(), static_cast<isize_t>(value.size()), header, 0);
    if (length >= 0 && static_cast<std::size_t>(length) + kUnused <= value.size()) {
      value.resize(static_cast<std::size_t>(length));
      return value;
    }
    value.assign(2 * value.size(), '\0');
  }
  return "";
}

/// The value of a header, and of those of its kind behind it.
template <typename Header>
std::string headerText(const Header* first) {
  std::string text;
  for (auto* header = reinterpret_cast<const sip_header_t*>(first); header != nullptr;
       header = header->sh_next) {
    text += (text.empty() ? "" : ", ") + headerValue(header);
  }
  return text;
}

inline std::string bodyOf(const sip_t& message) {
  const sip_payload_t* const body = message.sip_payload;
  return body == nullptr ? "" : std::string(body->pl_data, body->pl_len);
}

}  // namespace b2bua

#endif
