#ifndef EDIT_MODEL_H
#define EDIT_MODEL_H

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

#include "sdpDocument.h"

// Edits of one section, done on a text in the plainest way, for judging what a document does: it shares nothing with the
// library's own editing.

namespace plain {

struct Edit {
  enum class Kind : std::uint8_t {
    port,
    transport,
    formats,
    connection,
    direction,
    setAttribute,
    addAttribute,
    removeAttributes
  };

  Kind kind;
  std::uint32_t section;
  std::uint16_t port = 0;
  sdp::Direction direction = sdp::Direction::sendrecv;
  std::string text{};  ///< the transport, the formats, the address, or the name of an attribute
  std::optional<std::string> value = std::nullopt;
};

/// An edit out of numbers of any size, of a document of so many sections; one in a few is to be refused.
Edit chosenEdit(std::size_t kind, std::size_t section, std::size_t first, std::size_t second,
                std::size_t sections);

sdp::Refusal perform(sdp::Document& document, const Edit& edit);

struct Edited {
  sdp::Reason reason;
  std::string text;
};
/// What an edit makes of a text.
Edited edited(std::string_view text, const Edit& edit);

/// An edit in words, for messages.
std::string wordsFor(const Edit& edit);

}  // namespace plain

#endif
