#ifndef SDPNEG_ANONYMIZER_H
#define SDPNEG_ANONYMIZER_H

#include <string>
#include <string_view>

#include "calls/anonymousText.h"
#include "captures/capturedMessage.h"

// Captures that can be shown to others: who speaks and where is replaced, what the protocol does stays.

namespace tool {

/// Replaces addresses, numbers, names and hosts in the messages of a run: the same value by the same one, different values
/// by different ones. It keeps hashes of distinct values and no text.
///
/// What is known to be somebody's from one place, a display name or the user of a URI, is found in all others from that
/// message on. Keys, passwords
/// and what they are proved by become others of the same length. Ports, tags, ids and codecs stay; a Call-ID stays where nothing in it is an address, a name or a
/// number, and what repeats it in any header comes out as it does.
class Anonymizer {
 public:
  /// @param key numbers follow from it; what is replaced under one that others know can be turned back
  explicit Anonymizer(const HashKey& key = HashKey::random()) : replacements_(key) {}

  std::string text(std::string_view message);
  Flow flow(const Flow& flow);

  /// A message with its text and its addresses replaced.
  /// @return it serves until the next call
  CapturedMessage message(const CapturedMessage& message);

 private:
  Replacements replacements_;
  std::string text_;
};

}  // namespace tool

#endif
