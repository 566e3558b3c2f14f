#ifndef SDP_ANALYSIS_BODY_H
#define SDP_ANALYSIS_BODY_H

#include <algorithm>
#include <optional>
#include <span>
#include <string_view>

#include "attributeKinds.h"
#include "descriptionView.h"
#include "vocabulary.h"

// A decoded body as the steps of the analysis ask it. What several of them ask is read once.

namespace sdpneg {

/// What of a body is read at once. For a single question little is; media have only what is their own then. For the
/// analysis ports and attribute lines are, and media have what the session has and they have not.
enum class BodyReading : bool { whenAsked, whole };

class Body;

/// A media description in place.
class Section {
 public:
  // The members are set by the body that the section belongs to: those of unused sections are never touched.
  Section() {}  // NOLINT(modernize-use-equals-default)

  const mDescription& media() const { return *media_; }
  unsigned int kind() const { return media_->mLine.mediaType; }
  /// Its own c-lines, or the session's: then the first one alone counts.
  const c_line& connection() const { return *connection_; }

  int port() {
    if (!hasPort_) port_ = portOf(*media_);
    hasPort_ = true;
    return port_;
  }

  /// Its own attribute lines, or those that it inherits.
  const AttributeIndex& attributes() {
    if (attributes_ == nullptr) {
      own_.read(&media_->aLine);
      attributes_ = &own_;
    }
    return *attributes_;
  }

 private:
  friend class Body;

  /// @param inherited what there is to inherit
  void look(const mDescription& media, unsigned int inherited, const Body& body);

  const mDescription* media_;
  const c_line* connection_;
  const AttributeIndex* attributes_;
  int port_;
  bool hasPort_;
  AttributeIndex own_;
};

/// An address text with what it reads as.
class ReadAddress {
 public:
  /// Reads an address; the one that was read last is not read again.
  /// @param text null, or a text that stays as it is for as long as it is the last
  const cMsgIPAddress& read(const char* text) {
    return isRead_ && text == text_ ? address_ : readAnother(text);
  }
  eIPAddressVersion versionOf(const char* text) { return read(text).getIPAddressVersion(); }

 private:
  const cMsgIPAddress& readAnother(const char* text);

  bool isRead_ = false;
  const char* text_ = nullptr;
  cMsgIPAddress address_;
};

/// The attribute lines of a whole body.
struct HeldLines {
  std::size_t count;  ///< inherited ones counted once
  KindSet kinds;
};

/// A decoded body.
class Body {
 public:
  explicit Body(const sDescription& description, BodyReading reading = BodyReading::whenAsked);
  Body(const Body&) = delete;
  Body& operator=(const Body&) = delete;

  const sDescription& description() const { return description_; }
  /// The attribute lines of the session.
  const AttributeIndex& session() {
    if (!hasSession_) readSession();
    return session_;
  }
  /// The sections that are held.
  std::span<Section> sections() { return std::span(sections_).first(count_); }
  /// Those of them among the first `noOfMDs`.
  std::span<Section> sections(int noOfMDs) {
    return sections().first(static_cast<std::size_t>(std::clamp(noOfMDs, 0, static_cast<int>(count_))));
  }
  /// What the session and all sections hold together. Reads the attribute lines of each.
  const HeldLines& lines() {
    if (!hasLines_) readLines();
    return lines_;
  }
  /// Whether a section of that kind is held.
  bool holds(eMediaType kind) const { return (kinds_ & kind) != 0; }
  bool holdsOtherThan(eMediaType kind) const { return (kinds_ & ~static_cast<unsigned int>(kind)) != 0; }
  /// Whether a section may have another transport than RTP/AVP.
  bool mayHaveOtherTransport() const { return otherTransport_; }
  /// The c-lines of all sections in use, where they are known to be the same ones; null when there is no such section.
  std::optional<const c_line*> connectionOfAll() const {
    if (!oneConnection_) return std::nullopt;
    return inUse_ ? sections_[0].connection_ : nullptr;
  }
  /// The direction of media that have none of their own.
  unsigned char sessionMode() { return firstGiven(session().mode(), CONNECTION_MODE_SENDRECV); }
  ReadAddress& addresses() { return addresses_; }

 private:
  void readSession();
  void readLines();
  void addLines(const AttributeIndex& attributes) {
    lines_.count += attributes.lines().size();
    lines_.kinds.add(attributes.kinds());
  }

  friend class Section;

  const sDescription& description_;
  std::size_t count_;
  unsigned int kinds_ = 0;
  bool hasSession_ = false;
  bool hasLines_ = false;
  // What is known of all sections when a body has been read whole.
  bool otherTransport_;
  bool oneConnection_;
  bool inUse_;
  HeldLines lines_;
  AttributeIndex session_;
  ReadAddress addresses_;
  Section sections_[SDP_MEDIA_CAPACITY];
};

}  // namespace sdpneg

#endif
