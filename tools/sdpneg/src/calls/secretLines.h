#ifndef SDPNEG_SECRET_LINES_H
#define SDPNEG_SECRET_LINES_H

#include <cstddef>
#include <string_view>
#include <vector>

#include "calls/secretFinder.h"

// The secrets of a value whose kind is known. All of it counts but what is known to be none.

namespace tool {

/// Blanks of any kind, NUL among them.
bool isGap(char c);
bool isLineEnd(char c);
/// Of names of headers and attributes.
bool isNameCharacter(char c);

/// Where a value ends that begins at `begin`: its line with the folded ones behind it, and with what stands behind a line
/// end and begins no line.
std::size_t endOfLines(std::string_view text, std::size_t begin);

using SecretPlaces = std::vector<SecretPlace>;

/// Each word.
void maskTokens(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places);
/// Each word but the first where it may stand.
void maskBehind(std::string_view text, std::size_t begin, std::size_t end, bool (*mayStand)(std::string_view),
                SecretPlaces& places);
bool isKeyProtocol(std::string_view word);
bool isHashName(std::string_view word);
/// What stands behind the method.
void maskKeyLine(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places);
/// Keys behind tag and suite; lifetimes, MKIs and the known session parameters stay.
void maskCrypto(std::string_view text, std::size_t begin, std::size_t end, SecretPlaces& places);
/// The values of all parameters, and what has no name; of challenges what tells how to answer stays.
void maskCredentials(std::string_view text, std::size_t begin, std::size_t end, bool isChallenge,
                     SecretPlaces& places);

}  // namespace tool

#endif
