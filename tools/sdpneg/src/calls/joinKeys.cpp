#include "calls/joinKeys.h"

#include <algorithm>
#include <array>
#include <cstdint>
#include <utility>

#include "calls/keyedHash.h"
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

/// The lines of a body that tell where it comes from. Its first line is none of them.
struct OriginLines {
  std::string_view origin;
  std::string_view connection;  ///< of the session
  std::string_view media;       ///< the first one
  std::string_view ownConnection;
};

OriginLines originLinesOf(std::string_view sdp) {
  OriginLines lines;
  const auto takeFirst = [](std::string_view& first, std::string_view line) {
    if (first.data() == nullptr) first = line.substr(2);
  };
  std::size_t sections = 0;
  for (std::size_t at = sdpneg::lineAt(sdp, 0).next(); at + 1 < sdp.size();) {
    const sdpneg::Line line = sdpneg::lineAt(sdp, at);
    if (sdp[at + 1] == '=') {
      const std::string_view content = sdpneg::content(sdp, line);
      if (sdp[at] == 'o') takeFirst(lines.origin, content);
      if (sdp[at] == 'm' && ++sections == 1) takeFirst(lines.media, content);
      if (sdp[at] == 'c' && sections < 2)
        takeFirst(sections == 0 ? lines.connection : lines.ownConnection, content);
      if (sections == 2 && lines.origin.data() != nullptr) break;
    }
    at = line.next();
  }
  return lines;
}

/// An address and a port, where media go there.
struct FirstMedia {
  std::string_view address;
  std::string_view port;

  explicit operator bool() const { return !address.empty() && !port.empty(); }
};

FirstMedia firstMediaOf(const OriginLines& lines) {
  sdpneg::Words words(lines.media);
  words.next();
  const std::string_view port = words.next();
  sdpneg::Words fields(lines.ownConnection.empty() ? lines.connection : lines.ownConnection);
  fields.next();
  fields.next();
  const std::string_view address = fields.next();
  const bool isUsed = address != "0.0.0.0" && address != "::" && port != "0" && port != "9";
  return isUsed ? FirstMedia{address, port} : FirstMedia{};
}

JoinHash hashOf(std::string_view text) { return KeyedHasher()(text); }

}  // namespace

std::string_view JoinKey::callId() const {
  const bool isCallId = sdpneg::startsWith(text, kNamedValue) || sdpneg::startsWith(text, kCallId);
  return isCallId ? std::string_view(text).substr(1) : std::string_view();
}

bool JoinKey::joinsEqual() const { return !sdpneg::startsWith(text, kNamedValue); }

JoinHash JoinKey::hash() const { return hashOf(text); }

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

std::vector<JoinHash> keysOfCallId(std::string_view callId) {
  return {hashOf(joined(kNamedValue, callId)), hashOf(joined(kCallId, callId))};
}

std::optional<OriginKey> originKeyOf(std::string_view sdp) {
  // Lines and media are told apart though their hashes are of the same key.
  constexpr JoinHash kWhole = 0x9E3779B97F4A7C15U;
  const OriginLines lines = originLinesOf(sdp);
  sdpneg::Words words(lines.origin);
  const std::string_view user = words.next();
  const std::string_view session = words.next();
  if (session.empty() || lines.origin.size() > kMostValue) return std::nullopt;
  OriginKey origin;
  origin.line = lines.origin;
  origin.whole = hashOf(lines.origin) ^ kWhole;
  const FirstMedia media = firstMediaOf(lines);
  if (media && media.address.size() + 1 + media.port.size() <= kMostValue) {
    std::string text;
    text.reserve(user.size() + session.size() + media.address.size() + media.port.size() + 3);
    for (const std::string_view part : {user, session, media.address}) text.append(part).append(" ");
    origin.media = hashOf(text.append(media.port));
  }
  return origin;
}

}  // namespace tool
