#ifndef SDPNEG_SECTIONS_JSON_H
#define SDPNEG_SECTIONS_JSON_H

#include <string>

#include "output/json.h"
#include "sdpDocument.h"

// The JSON of sections. Its keys are described in docs/tool.md and in data/sections.schema.json; no body adds or
// withholds one, and they do not change while "format" stays 1.

namespace tool {

/// What is not in the sections.
Json sessionJson(const sdp::Document& document);

/// Writes the elements of a list.
/// @param firstLine the line of the input with which the body begins
void writeSections(BufferedOutput& out, JsonList& list, const sdp::Document& document, std::size_t firstLine);

}  // namespace tool

#endif
