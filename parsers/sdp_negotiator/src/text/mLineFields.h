#ifndef SDP_TEXT_M_LINE_FIELDS_H
#define SDP_TEXT_M_LINE_FIELDS_H

#include <optional>
#include <string_view>

#include "text/fixedText.h"
#include "text/sections.h"

// The fields of an m-line, "m=<media> <port> <transport> <formats>" (RFC 4566 5.14). Edits differ in what separates
// two fields and in what they take for a port or a transport, and the difference is part of what they do, so each way
// to read a field has a name.

namespace sdpneg {

/// Digits that a port is written with at most.
inline constexpr std::size_t kLongestPort = 7;

/// The port of an m-line that is closed.
inline constexpr std::string_view kClosedPort = "0";

/// The port of an m-line, 0 to 65535 with white space behind it; any white space, and any run of it, separates words.
/// @param line through its LF; its first character is skipped, so that it may be the LF in front of the m-line
std::optional<unsigned short> portOf(std::string_view line);

/// The port of the line that begins at an offset, or behind the LF that stands there; nothing for one without LF.
std::optional<unsigned short> portAt(std::string_view text, std::size_t at);

/// Whether an m-line reads as one of RTP with port 0. No other port than "0" counts, not "00" or "0/2" either.
inline bool hasZeroPortOfRtp(std::string_view mLine) { return contains(mLine, " 0 RTP"); }

/// How a port is written: at most seven digits of it.
using PortDigits = FixedText<kLongestPort + 1>;
inline PortDigits digitsOf(unsigned int port) { return PortDigits().add(port); }

/// Where an m-line's port is replaced by digits; nothing for a line without port field, or with one that begins with them.
std::optional<Span> portToReplace(std::string_view text, const Line& line, std::string_view digits);

/// That as a change of the m-line at an offset.
/// @param digits those that the change inserts
std::optional<Change> portChange(std::string_view text, std::size_t mLine, const PortDigits& digits);

/// Rewrites the port of the m-line at `line`. A line without port field, or with one that begins with the new digits,
/// stays as it is.
Edit replacePort(SdpText& text, const Line& line, unsigned int port);

/// Where the transport begins as the codec reads it: behind the media name and the port, where runs of blanks separate
/// fields.
/// @return the line's LF when it has fewer fields
std::size_t transportBehindRuns(std::string_view text, const Line& mLine);

/// The blank at or behind an offset of a line; npos without one in front of the line's LF.
std::size_t blankFrom(std::string_view text, const Line& mLine, std::size_t from);

/// The transport where each blank ends a field, so that two in a row enclose an empty one: from behind the second blank
/// to the next. Without that one it runs to the line's end, in front of which a CR is no blank, and is none to be set.
std::optional<Span> transportBehindBlanks(std::string_view text, const Line& mLine);

/// Whether an m-line names a secure transport (RFC 3711), wherever on the line.
inline bool isSecure(std::string_view text, const Line& mLine) {
  return contains(content(text, mLine), "RTP/SAVP");
}

/// Whether the first place of a media name from an m-line on is right behind its "m=".
inline bool hasMediaName(std::string_view text, std::size_t mLine, std::string_view name) {
  return text.substr(mLine, kMLine.size() + name.size()).find(name) == kMLine.size();
}

}  // namespace sdpneg

#endif
