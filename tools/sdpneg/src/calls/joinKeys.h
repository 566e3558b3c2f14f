#ifndef SDPNEG_JOIN_KEYS_H
#define SDPNEG_JOIN_KEYS_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "calls/call.h"
#include "captures/sipView.h"

// What of a message tells that its leg belongs to another one.

namespace tool {

/// What stands for a key in tables: its hash of this run.
using JoinHash = std::uint64_t;

/// A text that legs of one call have in common.
struct JoinKey {
  JoinedBy by = JoinedBy::first;
  std::string text;    ///< told apart from those of another kind by what it begins with
  std::string detail;  ///< for people: "X-Call-ID: abc"

  /// What may be another leg's Call-ID; empty where it is none.
  std::string_view callId() const;
  /// Whether legs that both have it belong together.
  bool joinsEqual() const;
  JoinHash hash() const;
};

/// The keys that the headers of a message give, the strongest first.
/// @param joinHeaders those that the user named
std::vector<JoinKey> headerKeys(const SipView& view, const std::vector<std::string>& joinHeaders);

/// The keys that headers give which name a leg.
std::vector<JoinHash> keysOfCallId(std::string_view callId);

/// What an SDP body tells of where it comes from.
struct OriginKey {
  std::string_view line;          ///< the o-line's value
  JoinHash whole = 0;             ///< of that
  std::optional<JoinHash> media;  ///< of its user and session id, and the address and port of the first media
  std::string detail() const { return "o=" + std::string(line); }
};

/// Nothing for a body without a usable o-line.
std::optional<OriginKey> originKeyOf(std::string_view sdp);

}  // namespace tool

#endif
