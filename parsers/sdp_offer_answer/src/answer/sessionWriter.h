#ifndef SDP_OFFER_ANSWER_SESSION_WRITER_H
#define SDP_OFFER_ANSWER_SESSION_WRITER_H

// Writing the session of an answer, and its refused sections.

#include <string>
#include <string_view>

#include "answer/credentials.h"
#include "answer/lines.h"
#include "answer/sides.h"

namespace sdp::exchange {

/// Writes what stands in front of the o-line.
void writeVersion(const Sides& sides, Lines& out);
/// Writes what stands behind the o-line, up to the sections.
/// @param credentials those that stay in the session
void writeSession(const Sides& sides, const Matches& matches, const SessionCredentials& credentials,
                  Lines& out);
/// The o-line: with an answer before, its session id, and its version, raised where the rest differs.
/// @param before what stands in front of it
/// @param behind what stands behind it, sections included
std::string originLine(const Sides& sides, std::string_view before, std::string_view behind);

/// Writes an offered section with port 0.
void writeRefused(const Section& offered, Lines& out);

}  // namespace sdp::exchange

#endif
