#ifndef B2BUA_REASONS_H
#define B2BUA_REASONS_H

#include <sdpDocument.h>

#include <string>
#include <string_view>

namespace b2bua {

/// @return why the library refused a body just now, without what could break a line or a quoted text
std::string lastReason();

/// @return why a body has no form on which all readers agree, with the line and nothing of what stands there
std::string reasonOf(const sdp::Refusal& refusal);

/// @return why a document refuses to be read or a request, of which it tells no keys
std::string reasonOf(const sdp::Document& document);

/// @param reason  why the library refuses a body: what it found in a line may be part of a key
/// @return the reason, with no more of a line about keys or passwords than its attribute's name
std::string withoutSecrets(const std::string& reason, std::string_view body);

/// @return a text, of one line or more, in which nothing is left of keys, passwords and fingerprints but what they are
std::string withoutKeys(std::string_view text);

/// @return a text without what was found in a line
std::string withoutFound(std::string_view text);

/// @return what the other side is told: reasons with names of functions and records are only for the log
std::string toldReason(const std::string& reason);

}  // namespace b2bua

#endif
