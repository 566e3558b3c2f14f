#ifndef SDP_DOCUMENT_CODEC_LIST_H
#define SDP_DOCUMENT_CODEC_LIST_H

// Lists that name codecs.

#include <optional>
#include <string_view>

#include "formatTable.h"

namespace sdp::core {

/// NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS, or a payload type.
struct CodecListEntry {
  EncodingName name;  ///< or the payload type
  std::optional<std::uint32_t> clock;
  std::optional<std::uint32_t> channels;
  bool isPayload = false;

  bool names(const FormatEntry& format) const;
};

bool isCodecList(std::string_view list);

/// Reads the entries of a list into room that is kept.
/// @return false when an entry has another form
bool readCodecList(std::string_view list, std::vector<CodecListEntry>& entries);

/// The number of the first entry that names a format; the number of entries when none does.
std::size_t placeIn(const std::vector<CodecListEntry>& entries, const FormatEntry& format);

}  // namespace sdp::core

#endif
