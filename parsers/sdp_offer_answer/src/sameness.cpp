// When formats of two sections are the same.

#include <algorithm>

#include "codecs.h"
#include "h264.h"
#include "parameterSets.h"
#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// Whether a parameter that is a number is the same in both.
bool agree(const Codec& x, const Codec& y, std::string_view name, std::uint64_t otherwise) {
  return numberOf(x.parameters(), name, otherwise) == numberOf(y.parameters(), name, otherwise);
}

/// A format without profile-level-id is of any profile.
bool haveSameH264Profile(const Codec& x, const Codec& y) {
  const std::optional<std::string_view> a = parameterOf(x.parameters(), "profile-level-id");
  const std::optional<std::string_view> b = parameterOf(y.parameters(), "profile-level-id");
  if (!a || !b) return true;
  const std::optional<ProfileLevelId> idOfA = readProfileLevelId(*a);
  const std::optional<ProfileLevelId> idOfB = readProfileLevelId(*b);
  if (!idOfA || !idOfB) return sdpneg::equalNoCase(*a, *b);
  return isSameProfile(*idOfA, *idOfB);
}

bool haveSameTxMode(const Codec& x, const Codec& y) {
  const auto modeOf = [](const Codec& codec) {
    return parameterOf(codec.parameters(), "tx-mode").value_or("SRST");
  };
  return sdpneg::equalNoCase(modeOf(x), modeOf(y));
}

bool haveSameAmr(const Codec& x, const Codec& y) {
  if (!agree(x, y, "octet-align", 0) || !agree(x, y, "crc", 0) || !agree(x, y, "robust-sorting", 0))
    return false;
  const auto isInterleaved = [](const Codec& codec) {
    return parameterOf(codec.parameters(), "interleaving").has_value();
  };
  if (isInterleaved(x) != isInterleaved(y)) return false;
  const std::optional<ModeSet> a = modesOf(x);
  const std::optional<ModeSet> b = modesOf(y);
  return !a || !b || (*a & *b).any();
}

/// All but formats that serve others by their payload types.
bool areSameAlone(const Codec& x, const Codec& y) {
  if (!haveSameEncoding(x, y)) return false;
  switch (x.family) {
    case Family::h264:
      return haveSameH264Profile(x, y) && agree(x, y, "packetization-mode", 0);
    case Family::h265:
      return agree(x, y, "profile-id", 1) && agree(x, y, "tier-flag", 0) && haveSameTxMode(x, y);
    case Family::vp9:
      return agree(x, y, "profile-id", 0);
    case Family::av1:
      return agree(x, y, "profile", 0);
    case Family::amr:
      return haveSameAmr(x, y);
    case Family::telephoneEvent:
      return (eventsOf(x) & eventsOf(y)).any();
    default:
      return true;
  }
}

bool isForOthers(const Codec& codec) { return codec.family == Family::rtx || codec.family == Family::red; }

/// Whether two payload types stand for the same, neither of them red or rtx.
bool areSamePayloads(const CodecList& a, std::string_view p, const CodecList& b, std::string_view q) {
  const Codec* const x = a.find(p);
  const Codec* const y = b.find(q);
  return x != nullptr && y != nullptr && !isForOthers(*x) && !isForOthers(*y) && areSameAlone(*x, *y);
}

/// What red carries is the same in order, where both tell it.
bool haveSameCarried(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y) {
  std::string_view others = y.carried();
  if (x.carried().empty() || others.empty()) return true;
  const bool fit = forEachCarried(x.carried(), [&](std::string_view payload) {
    if (others.empty()) return false;
    const std::size_t slash = std::min(others.find('/'), others.size());
    const std::string_view other = others.substr(0, slash);
    others.remove_prefix(std::min(slash + 1, others.size()));
    return areSamePayloads(a, payload, b, other);
  });
  return fit && others.empty();
}

bool haveSameApt(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y) {
  const Codec* const served = a.find(x.apt());
  const Codec* const other = b.find(y.apt());
  if (served == nullptr || other == nullptr) return false;
  if (served->family == Family::red && other->family == Family::red) {
    return haveSameEncoding(*served, *other) && haveSameCarried(a, *served, b, *other);
  }
  return areSamePayloads(a, served->payload, b, other->payload);
}

}  // namespace

bool haveSameEncoding(const Codec& x, const Codec& y) {
  return !x.name.empty() && x.clockRate == y.clockRate && x.channels == y.channels &&
         sdpneg::equalNoCase(x.name, y.name);
}

bool areSame(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y) {
  if (!areSameAlone(x, y)) return false;
  if (x.family == Family::red) return haveSameCarried(a, x, b, y);
  if (x.family == Family::rtx) return haveSameApt(a, x, b, y);
  return true;
}

}  // namespace sdp::exchange
