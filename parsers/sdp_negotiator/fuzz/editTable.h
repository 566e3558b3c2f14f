#ifndef FUZZ_EDIT_TABLE_H
#define FUZZ_EDIT_TABLE_H

#include <cstdint>
#include <span>
#include <string>

#include "editBuffer.h"
#include "sdpNegotiator.h"

// Tables of edits: one of them, chosen by the input, edits a text, and what comes of it is parsed.

struct Edit {
  unsigned short (*run)(char* sdp, Values values);
  int settles;  ///< the run behind which another changes nothing; 0 for none
};

inline void editAndParse(std::span<const Edit> edits, const std::string& before, Values values) {
  const Edit& edit = edits[values.number<std::uint8_t>() % edits.size()];
  const auto once = [&](char* sdp) { return edit.run(sdp, values); };
  unsigned short status = 0;
  const std::string after = run(before, once, status);
  if (after.size() >= kCapacity) return;
  cSdpNegotiator object;
  object.sdpParse(after.c_str(), SDP_TYPE_OFFER);
  if (edit.settles == 0 || status != 0) return;
  unsigned short again = 0;
  std::string settled = after;
  for (int runs = 1; runs < edit.settles; ++runs) settled = run(settled, once, again);
  require(run(settled, once, again) == settled && again == 0);
}

/// A target's work on an input, which is a text up to its first NUL with values at its end: an edit of the text, one of
/// the text filled up, and what else the target does with the text.
template <typename Then>
int editInput(std::span<const Edit> edits, const std::uint8_t* data, std::size_t size, Then then) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  Values values(input);
  const std::string text = input.substr(0, input.find('\0')).substr(0, kCapacity);
  editAndParse(edits, text, values);
  editAndParse(edits, filled(text, values.number<std::uint8_t>() % 64U), values);
  then(text, values);
  return 0;
}

/// An address of either version, none, or any word.
inline std::string addressOf(Values& values) {
  const char* const addresses[] = {"192.0.2.1", "2001:db8::1", "", "0.0.0.0"};
  const std::size_t which = values.number<std::uint8_t>() % 5U;
  return which < 4 ? std::string(addresses[which]) : values.word();
}

#endif
