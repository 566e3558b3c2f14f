#ifndef SDP_OFFER_ANSWER_BODIES_H
#define SDP_OFFER_ANSWER_BODIES_H

// Bodies of a dialog as documents.

#include <string_view>
#include <vector>

#include "sdpDialog.h"
#include "sdpDocument.h"

namespace sdp::exchange {

/// Throws std::bad_alloc when memory ran out, and std::length_error when a text is too long. Of the rest nothing is
/// thrown: it cannot be, where sections are asked first whether they can be read.
void require(const Refusal& refusal);

/// Reads a body; throws as require().
void read(Document& document, std::string_view text);

/// Whether something in it is a session description: a v-line, or a section.
bool isDescription(const Document& document);

/// The first section that cannot be read; 0 when all can.
std::uint32_t firstUnreadable(const Document& document);

/// Whether a section is there, can be read, and is not disabled.
bool isAlive(const Document& document, std::uint32_t section);

/// The direction of hold for one that was without.
Direction held(Direction direction);

/// The directions of all sections.
std::vector<Direction> directionsOf(const Document& document);

/// Whether hold concerns a section: RTP flows there. Chats, data and fax have nothing to hold (RFC 8841 knows no
/// directions).
bool isHoldable(const Section& section);

/// Gives each section that hold concerns the direction that `choose(section, present)` tells.
template <typename Choose>
void setDirections(Document& document, Choose choose) {
  struct Change {
    std::uint32_t section;
    Direction direction;
  };
  std::vector<Change>
      changes;  // first all questions, then all edits: asking between them would read the text anew
  for (const Section& section : document.sections()) {
    if (!isHoldable(section)) continue;
    changes.push_back({section.index(), choose(section.index(), section.direction())});
  }
  for (const Change& change : changes) require(document.setDirection(change.section, change.direction));
}

}  // namespace sdp::exchange

#endif
