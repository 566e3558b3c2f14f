#ifndef B2BUA_BODY_LINES_H
#define B2BUA_BODY_LINES_H

#include <string>
#include <string_view>
#include <vector>

namespace b2bua {

/// A line as the most tolerant reader takes it: any case, blanks anywhere, any line end or none.
struct BodyLine {
  char type = 0;      ///< lower case; 0 for what is no line of a body
  std::string value;  ///< without the blanks around it
  std::string bytes;  ///< as it stands, with its end
};

/// An attribute; the one that a capability offers (RFC 5939) counts for itself.
struct Attribute {
  std::string name;  ///< lower case; what is in front of the first colon or blank
  std::string value;
};

/// The session, or an m-line and what follows it.
struct BodySection {
  std::string media;      ///< lower case; empty for the session
  std::string port;       ///< as it stands
  std::string transport;  ///< lower case
  std::vector<std::string> formats;
  std::vector<BodyLine> lines;  ///< the m-line first

  /// @return whether media may flow: only a port of zeros says no, and not where the section shares that of another
  /// (RFC 8843)
  bool isActive() const;
  std::vector<Attribute> attributes() const;
  /// @return whether an attribute has one of the names
  bool has(std::initializer_list<std::string_view> names) const;
};

/// All of a body; the session is the first section.
struct BodyLines {
  explicit BodyLines(std::string_view body);

  std::string text() const;

  std::vector<BodySection> sections;
};

std::string lowerCase(std::string_view text);
/// The words between blanks.
std::vector<std::string> wordsOf(std::string_view text);
Attribute attributeOf(std::string_view value);

/// A format of an m-line.
struct Format {
  std::string name;  ///< encoding name, lower case; empty when nothing tells it
  unsigned long clock = 0;

  /// Telephone events and comfort noise go with a codec, and are none.
  bool isCodec() const { return name != "telephone-event" && name != "cn"; }
};

/// What a section says of a format: each rtpmap line, or without one the static assignment (RFC 3551 6).
std::vector<Format> formatsOf(const BodySection& section, const std::string& format);

}  // namespace b2bua

#endif
