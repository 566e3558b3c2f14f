#ifndef FUZZ_EDIT_TABLE_H
#define FUZZ_EDIT_TABLE_H

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

#endif
