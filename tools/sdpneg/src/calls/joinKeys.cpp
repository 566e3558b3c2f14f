#include "calls/joinKeys.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "input/messageHeader.h"
#include "text/lines.h"
#include "text/search.h"

namespace tool {
namespace {

/// Longer values tell nothing.
constexpr std::size_t kMostValue = 512;
/// Characters of a value that people are told.
constexpr std::size_t kMostDetail = 256;
/// Of which a message gives so many at most.
constexpr std::size_t kMostKeys = 16;

// What keys begin with.
constexpr std::string_view kNamed = "n";       ///< a header that the user named, and its value
constexpr std::string_view kNamedValue = "v";  ///< its value, which may be a Call-ID
constexpr std::string_view kCallId = "c";
constexpr std::string_view kSession = "s";
constexpr std::string_view kCharging = "i";

enum class HeaderKind : std::uint8_t {
  callId,    ///< the whole value is one
  dialog,    ///< a Call-ID with tags behind it
  session,   ///< RFC 7989
  charging,  ///< RFC 7315 4.6
};

struct JoiningHeader {
  std::string_view name;
  HeaderKind kind;
};

/// What back-to-back user agents write into the legs that they make, and what names a dialog (RFC 3891, 3911, 4538).
constexpr std::array kJoiningHeaders = {
    JoiningHeader{"X-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-CallID", HeaderKind::callId},
    JoiningHeader{"X-CID", HeaderKind::callId},
    JoiningHeader{"X-Original-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Orig-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Initial-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Inbound-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Incoming-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Ingress-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Parent-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Related-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Other-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Peer-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Leg-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-A-Leg-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Global-Call-ID", HeaderKind::callId},
    JoiningHeader{"X-Call-UUID", HeaderKind::callId},
    JoiningHeader{"X-Correlation-ID", HeaderKind::callId},
    JoiningHeader{"X-Session-ID", HeaderKind::callId},
    JoiningHeader{"Original-Call-ID", HeaderKind::callId},
    JoiningHeader{"Related-Call-ID", HeaderKind::callId},
    JoiningHeader{"Correlation-ID", HeaderKind::callId},
    JoiningHeader{"Replaces", HeaderKind::dialog},
    JoiningHeader{"Join", HeaderKind::dialog},
    JoiningHeader{"Target-Dialog", HeaderKind::dialog},
    JoiningHeader{"Session-ID", HeaderKind::session},
    JoiningHeader{"P-Charging-Vector", HeaderKind::charging},
};

constexpr std::size_t kLetters = 32;
constexpr std::size_t indexOfLetter(char letter) { return static_cast<unsigned char>(letter) % kLetters; }

/// By the first letter: a bit for each length that a joining header has.
constexpr std::array<std::uint32_t, kLetters> kLengths = [] {
  std::array<std::uint32_t, kLetters> lengths{};
  for (const JoiningHeader& header : kJoiningHeaders)
    lengths[indexOfLetter(header.name.front())] |= std::uint32_t{1} << header.name.size();
  return lengths;
}();

/// Whether a field may be one of them, which few are.
bool mayJoin(std::string_view name) {
  if (name.empty() || name.size() >= 32) return false;
  return (kLengths[indexOfLetter(name.front())] >> name.size() & 1U) != 0;
}

std::string joined(std::string_view kind, std::string_view text) { return std::string(kind).append(text); }

std::string lowered(std::string_view text) {
  std::string result(text);
  std::ranges::transform(result, result.begin(), sdpneg::lower);
  return result;
}

/// Gathers the keys of a message.
class Keys {
 public:
  void add(JoinedBy by, std::string_view kind, std::string_view text, const HeaderLines::Field& field) {
    if (text.empty() || text.size() > kMostValue || keys_.size() == kMostKeys) return;
    const std::string value = unfolded(field.value.substr(0, kMostDetail));
    keys_.push_back({by, joined(kind, text), std::string(field.name) + ": " + value});
  }

  void addNamed(std::string_view name, const HeaderLines::Field& field) {
    const std::string value = unfolded(field.value);
    if (value.empty()) return;
    add(JoinedBy::joinHeader, kNamed, lowered(name) + ":" + value, field);
    add(JoinedBy::joinHeader, kNamedValue, value, field);
  }

  void addKnown(HeaderKind kind, const HeaderLines::Field& field) {
    const std::string value = unfolded(field.value);
    switch (kind) {
      case HeaderKind::callId:
        return add(JoinedBy::callIdHeader, kCallId, value, field);
      case HeaderKind::dialog: {
        const std::string_view callId = valueWithoutParameters(value);
        return add(JoinedBy::callIdHeader, kCallId, callId, field);
      }
      case HeaderKind::session:
        addSession(valueWithoutParameters(value), field);
        return addSession(findParameter(value, "remote").value_or(""), field);
      case HeaderKind::charging:
        // It is a parameter that has no value in front.
        return add(JoinedBy::callIdHeader, kCharging, findParameter(";" + value, "icid-value").value_or(""),
                   field);
    }
  }

  std::vector<JoinKey> taken() { return std::move(keys_); }

 private:
  /// A party that is not known has zeros.
  void addSession(std::string_view uuid, const HeaderLines::Field& field) {
    if (uuid.find_first_not_of('0') == std::string_view::npos) return;
    add(JoinedBy::callIdHeader, kSession, lowered(uuid), field);
  }

  std::vector<JoinKey> keys_;
};

/// The value of an SDP line, empty where there is none.
std::string_view lineValue(std::string_view sdp, std::string_view prefix, std::size_t from = 0) {
  const std::size_t begin = sdpneg::findLine(sdp, prefix, from);
  if (begin == sdpneg::npos) return {};
  return sdpneg::content(sdp, sdpneg::lineAt(sdp, begin)).substr(prefix.size());
}

/// "192.0.2.1 4000"; empty where no media go there.
std::string firstMediaOf(std::string_view sdp) {
  const std::size_t section = sdpneg::findLine(sdp, "m=");
  if (section == sdpneg::npos) return {};
  sdpneg::Words words(lineValue(sdp, "m=", section - 1));
  words.next();
  const std::string_view port = words.next();
  const std::size_t next = sdpneg::orEnd(sdpneg::findLine(sdp, "m=", section), sdp);
  std::string_view connection = lineValue(sdp.substr(0, next), "c=", section - 1);
  if (connection.empty()) connection = lineValue(sdp.substr(0, section), "c=");
  sdpneg::Words fields(connection);
  fields.next();
  fields.next();
  const std::string_view address = fields.next();
  const bool isUsed =
      !address.empty() && address != "0.0.0.0" && address != "::" && port != "0" && port != "9";
  return isUsed && !port.empty() ? std::string(address).append(" ").append(port) : std::string();
}

}  // namespace

std::string_view JoinKey::callId() const {
  const bool isCallId = sdpneg::startsWith(text, kNamedValue) || sdpneg::startsWith(text, kCallId);
  return isCallId ? std::string_view(text).substr(1) : std::string_view();
}

bool JoinKey::joinsEqual() const { return !sdpneg::startsWith(text, kNamedValue); }

std::vector<JoinKey> headerKeys(const SipView& view, const std::vector<std::string>& joinHeaders) {
  Keys keys;
  for (const std::string& name : joinHeaders) {
    for (const HeaderLines::Field& field : view.fields()) {
      if (isHeaderName(field.name, name)) keys.addNamed(name, field);
    }
  }
  for (const HeaderLines::Field& field : view.fields()) {
    if (!mayJoin(field.name)) continue;
    for (const JoiningHeader& header : kJoiningHeaders) {
      if (sdpneg::equalNoCase(field.name, header.name)) keys.addKnown(header.kind, field);
    }
  }
  return keys.taken();
}

std::vector<std::string> keysOfCallId(std::string_view callId) {
  return {joined(kNamedValue, callId), joined(kCallId, callId)};
}

std::optional<OriginKey> originKeyOf(std::string_view sdp) {
  const std::string_view line = lineValue(sdp, "o=");
  sdpneg::Words words(line);
  const std::string_view user = words.next();
  const std::string_view session = words.next();
  if (session.empty() || line.size() > kMostValue) return std::nullopt;
  OriginKey origin;
  origin.line = line;
  const std::string media = firstMediaOf(sdp);
  if (!media.empty() && media.size() <= kMostValue) {
    origin.media = std::string(user).append(" ").append(session).append(" ").append(media);
  }
  return origin;
}

}  // namespace tool
