// When formats of two sections are the same.

#include <algorithm>
#include <array>
#include <span>

#include "codecs.h"
#include "h264.h"
#include "parameterSets.h"
#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

/// A parameter that both must have the same, without regard to case.
struct Agreed {
  std::string_view name;
  std::string_view otherwise;  ///< what holds where it is missing
};

constexpr std::array<Agreed, 1> kH264{{{"packetization-mode", "0"}}};
constexpr std::array<Agreed, 3> kH265{{{"profile-id", "1"}, {"tier-flag", "0"}, {"tx-mode", "SRST"}}};
constexpr std::array<Agreed, 1> kVp9{{{"profile-id", "0"}}};
constexpr std::array<Agreed, 1> kAv1{{{"profile", "0"}}};
constexpr std::array<Agreed, 3> kAmr{{{"octet-align", "0"}, {"crc", "0"}, {"robust-sorting", "0"}}};

std::span<const Agreed> agreedOf(Family family) {
  switch (family) {
    case Family::h264:
      return kH264;
    case Family::h265:
      return kH265;
    case Family::vp9:
      return kVp9;
    case Family::av1:
      return kAv1;
    case Family::amr:
      return kAmr;
    default:
      return {};
  }
}

bool isInterleaved(const Codec& codec) {
  return codec.family == Family::amr && codec.hasParameter("interleaving");
}

bool agree(const Codec& x, const Codec& y) {
  for (const Agreed& agreed : agreedOf(x.family)) {
    const std::string_view a = x.parameter(agreed.name).value_or(agreed.otherwise);
    if (!sdpneg::equalNoCase(a, y.parameter(agreed.name).value_or(agreed.otherwise))) return false;
  }
  return isInterleaved(x) == isInterleaved(y);
}

/// A format without profile-level-id, or with something else there, is of any profile.
bool haveSameProfile(const Codec& x, const Codec& y) {
  const std::optional<ProfileLevelId> a = profileLevelIdOf(x);
  const std::optional<ProfileLevelId> b = profileLevelIdOf(y);
  return !a || !b || profileOf(*a) == profileOf(*b);
}

bool haveCommonModes(const Codec& x, const Codec& y) {
  const std::optional<ModeSet> a = modesOf(x);
  const std::optional<ModeSet> b = modesOf(y);
  return !a || !b || (*a & *b).any();
}

/// All but formats that serve others by their payload types.
bool areSameAlone(const Codec& x, const Codec& y) {
  if (!agree(x, y)) return false;
  if (x.family == Family::h264) return haveSameProfile(x, y);
  if (x.family == Family::amr) return haveCommonModes(x, y);
  return x.family != Family::telephoneEvent || (eventsOf(x) & eventsOf(y)).any();
}

bool isForOthers(const Codec& codec) { return codec.family == Family::rtx || codec.family == Family::red; }

using Known = KnownPairs;

/// Two lists, and what is known of their formats already.
struct Comparison {
  const CodecList& a;
  const CodecList& b;
  Known* known;  ///< by format of a and of b; null where nothing is kept

  bool areSame(const Codec& x, const Codec& y) const;
  bool areSameButRtx(const Codec& x, const Codec& y) const;
  bool haveSameCarried(const Codec& x, const Codec& y) const;
  /// Whether two payload types stand for the same, neither of them red or rtx.
  bool areSamePayloads(std::string_view p, std::string_view q) const {
    const Codec* const x = a.find(p);
    const Codec* const y = b.find(q);
    return x != nullptr && y != nullptr && !isForOthers(*x) && !isForOthers(*y) && areSameButRtx(*x, *y);
  }
};

/// What red carries is the same in order, where both tell it.
bool Comparison::haveSameCarried(const Codec& x, const Codec& y) const {
  Payloads ours(x.carried());
  Payloads others(y.carried());
  std::string_view p = ours.next();
  std::string_view q = others.next();
  if (p.empty() || q.empty()) return true;
  for (; !p.empty() && !q.empty(); p = ours.next(), q = others.next()) {
    if (!areSamePayloads(p, q)) return false;
  }
  return p.empty() && q.empty();
}

/// Formats of one encoding, compared but once where that is kept: many rtx may serve one of them.
bool Comparison::areSameButRtx(const Codec& x, const Codec& y) const {
  enum : std::uint8_t { unknown, same, different };
  if (!haveSameEncoding(x, y)) return false;
  const auto compare = [&] { return x.family == Family::red ? haveSameCarried(x, y) : areSameAlone(x, y); };
  if (known == nullptr) return compare();
  std::uint8_t& result = known->at(a.placeOf(x) * b.size() + b.placeOf(y), a.size() * b.size());
  if (result == unknown) result = compare() ? same : different;
  return result == same;
}

bool Comparison::areSame(const Codec& x, const Codec& y) const {
  if (x.family != Family::rtx) return areSameButRtx(x, y);
  if (!haveSameEncoding(x, y)) return false;
  const Codec* const served = a.find(x.apt());
  const Codec* const other = b.find(y.apt());
  return served != nullptr && other != nullptr && served->family != Family::rtx &&
         areSameButRtx(*served, *other);
}

}  // namespace

std::string agreementOf(const Codec& codec) {
  std::string text;
  for (const Agreed& agreed : agreedOf(codec.family)) {
    const std::string_view value = codec.parameter(agreed.name).value_or(agreed.otherwise);
    for (const char c : value) text += sdpneg::lower(c);
    text += ';';
  }
  if (isInterleaved(codec)) text += "interleaving";
  return text;
}

bool haveSameEncoding(const Codec& x, const Codec& y) {
  return !x.name.empty() && x.clockRate == y.clockRate && x.channels == y.channels &&
         sdpneg::equalNoCase(x.name, y.name);
}

bool areSame(const CodecList& a, const Codec& x, const CodecList& b, const Codec& y) {
  return Comparison{a, b, nullptr}.areSame(x, y);
}

bool Sameness::areSame(const Codec& x, const Codec& y) { return Comparison{*a_, *b_, &known_}.areSame(x, y); }

}  // namespace sdp::exchange
