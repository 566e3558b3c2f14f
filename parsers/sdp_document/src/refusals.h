#ifndef SDP_DOCUMENT_REFUSALS_H
#define SDP_DOCUMENT_REFUSALS_H

// Making refusals, and their explanation for people.

#include <initializer_list>

#include "model.h"
#include "sdpDocumentRefusal.h"

namespace sdp::core {

/// A refusal because of a section.
inline Refusal refusalIn(const Model& model, const Part& section, Reason reason) {
  return {reason, model.indexOf(section), section.number};
}

/// Says of a refusal what people want to know: "section 1 (audio): no common codec". What comes from the document is
/// shown as addForPeople has it.
/// @param details behind that, after a colon
void explain(Model& model, const Refusal& refusal, std::initializer_list<std::string_view> details = {});

/// A refusal because of an argument, which is explained.
Refusal refuseArgument(Model& model, Reason reason, std::string_view argument);

/// Adds a piece of a document to a text for people: cut when it is long, and with control characters, bytes that are no
/// UTF-8 and what changes the direction of writing escaped, so that it can neither end a line of a log nor turn it round.
void addForPeople(std::string& text, std::string_view piece);

}  // namespace sdp::core

#endif
