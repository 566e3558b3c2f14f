#ifndef SDPNEG_SECTIONS_TABLE_H
#define SDPNEG_SECTIONS_TABLE_H

#include <string>

#include "output/colour.h"
#include "sdpDocument.h"

namespace tool {

/// The sections of a body as the lines of a table, made printable; one line each.
/// @param firstLine the line of the input with which the body begins
std::string sectionsTable(const sdp::Document& document, std::size_t firstLine, const Palette& palette);

}  // namespace tool

#endif
