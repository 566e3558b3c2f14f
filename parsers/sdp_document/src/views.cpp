// What is asked of the session and of sections.

#include "sdpDocumentViews.h"

#include "fieldReader.h"
#include "keys.h"
#include "model.h"

namespace sdp {
namespace {

using core::Kind;
using core::kNone;

std::optional<Attribute> firstOf(const Range<AttributeCursor>& attributes) {
  const auto first = attributes.begin();
  return first == attributes.end() ? std::nullopt : std::optional(*first);
}

std::optional<Connection> connectionOf(const core::Model& model, const core::Part& part) {
  const core::Index line = core::connectionLineOf(model, part);
  if (line == kNone) return std::nullopt;
  return core::connectionIn(model.lines[line]);
}

/// The first field of the first attribute of a kind; empty without one.
std::string_view fieldOf(const core::Model& model, const core::Part& part, Kind kind) {
  const core::Index line = core::firstOf(model, part, core::one(kind));
  return line == kNone ? std::string_view() : core::firstFieldOf(model.lines[line]);
}

/// Of the section, or of the session when the section has no such attribute.
std::string_view inheritedField(const core::Model& model, const core::Part& section, Kind kind) {
  return fieldOf(model, core::has(model, section, kind) ? section : model.session(), kind);
}

}  // namespace

// --- the session -----------------------------------------------------------------------------------------

Range<LineCursor> Session::lines() const noexcept {
  return Range<LineCursor>(LineCursor(*model_, model_->session()));
}
Range<AttributeCursor> Session::attributes() const noexcept {
  return Range<AttributeCursor>(AttributeCursor(*model_, model_->session(), std::nullopt));
}
Range<AttributeCursor> Session::attributes(std::string_view name) const noexcept {
  return Range<AttributeCursor>(AttributeCursor(*model_, model_->session(), name));
}
std::optional<Attribute> Session::attribute(std::string_view name) const noexcept {
  return firstOf(attributes(name));
}
bool Session::has(std::string_view name) const noexcept { return attribute(name).has_value(); }
Range<BandwidthCursor> Session::bandwidths() const noexcept {
  return Range<BandwidthCursor>(BandwidthCursor(LineCursor(*model_, model_->session())));
}
std::optional<Connection> Session::connection() const noexcept {
  return connectionOf(*model_, model_->session());
}
std::optional<Direction> Session::direction() const noexcept {
  return core::ownDirectionOf(*model_, model_->session());
}
Range<GroupCursor> Session::groups() const noexcept {
  return Range<GroupCursor>(GroupCursor(AttributeCursor(*model_, model_->session(), "group")));
}

// --- a section: lines and attributes -----------------------------------------------------------------------

Range<LineCursor> Section::lines() const noexcept { return Range<LineCursor>(LineCursor(*model_, *part_)); }
Range<AttributeCursor> Section::attributes() const noexcept {
  return Range<AttributeCursor>(AttributeCursor(*model_, *part_, std::nullopt));
}
Range<AttributeCursor> Section::attributes(std::string_view name) const noexcept {
  return Range<AttributeCursor>(AttributeCursor(*model_, *part_, name));
}
std::optional<Attribute> Section::attribute(std::string_view name) const noexcept {
  return firstOf(attributes(name));
}
bool Section::has(std::string_view name) const noexcept { return attribute(name).has_value(); }
Range<BandwidthCursor> Section::bandwidths() const noexcept {
  return Range<BandwidthCursor>(BandwidthCursor(LineCursor(*model_, *part_)));
}

// --- a section: its m-line -----------------------------------------------------------------------------------

std::uint32_t Section::index() const noexcept { return model_->indexOf(*part_); }
std::size_t Section::lineNumber() const noexcept { return part_->number; }
bool Section::isReadable() const noexcept { return part_->m.readable; }
std::string_view Section::media() const noexcept {
  return isReadable() ? part_->m.media : std::string_view();
}
std::uint16_t Section::port() const noexcept { return part_->m.portNumber; }
std::uint64_t Section::portCount() const noexcept { return part_->m.portCount; }
std::string_view Section::transport() const noexcept {
  return isReadable() ? part_->m.transport : std::string_view();
}
bool Section::isRtp() const noexcept { return isReadable() && core::isRtp(*part_); }
bool Section::isDisabled() const noexcept { return isReadable() && core::isDisabled(*model_, *part_); }

Range<FormatCursor> Section::formats() const noexcept {
  return Range<FormatCursor>(FormatCursor(*model_, *part_));
}

std::optional<Format> Section::format(std::string_view payloadType) const noexcept {
  FormatCursor cursor(*model_, *part_);
  for (Format format; cursor.next(format);) {
    if (format.format == payloadType) return format;
  }
  return std::nullopt;
}

// --- a section: what it has of its own or from the session ---------------------------------------------------

std::optional<Connection> Section::connection() const noexcept {
  if (!isReadable()) return std::nullopt;
  return connectionOf(*model_, *part_);
}
Direction Section::direction() const noexcept { return core::directionOf(*model_, *part_); }
Security Section::security() const noexcept {
  return isReadable() ? core::securityOf(*model_, *part_) : Security::plain;
}
std::string_view Section::mid() const noexcept {
  return isReadable() ? core::midOf(*model_, *part_) : std::string_view();
}
std::string_view Section::label() const noexcept {
  return isReadable() ? fieldOf(*model_, *part_, Kind::label) : std::string_view();
}
bool Section::isBundleOnly() const noexcept { return isReadable() && core::isBundleOnly(*model_, *part_); }

std::optional<std::uint32_t> Section::bundle() const noexcept {
  if (!isReadable()) return std::nullopt;
  model_->groups.read(*model_);
  const core::Index mid = model_->groups.midOf(*model_, *part_);
  if (mid == kNone || model_->groups.mids[mid].bundle == kNone) return std::nullopt;
  return model_->groups.mids[mid].bundle;
}

std::optional<Rtcp> Section::rtcp() const noexcept {
  const core::Index line = core::firstOf(*model_, *part_, core::one(Kind::rtcp));
  if (!isReadable() || line == kNone) return std::nullopt;
  const Fields fields(core::valueOf(model_->lines[line]).value_or(std::string_view()));
  return Rtcp{core::numberOf(fields[0]), fields[3]};
}

bool Section::hasRtcpMux() const noexcept {
  return isReadable() && core::has(*model_, *part_, Kind::rtcpMux);
}

Range<CryptoCursor> Section::crypto() const noexcept {
  return Range<CryptoCursor>(
      CryptoCursor(isReadable() ? AttributeCursor(*model_, *part_, "crypto") : AttributeCursor()));
}

std::string_view Section::fingerprintHash() const noexcept {
  return isReadable() ? inheritedField(*model_, *part_, Kind::fingerprint) : std::string_view();
}
std::string_view Section::setup() const noexcept {
  return isReadable() ? inheritedField(*model_, *part_, Kind::setup) : std::string_view();
}
bool Section::hasIce() const noexcept {
  return isReadable() && core::hasKey(*model_, *part_, Kind::iceUfrag);
}

std::size_t Section::candidateCount() const noexcept {
  std::size_t count = 0;
  if (isReadable()) core::forEach(*model_, *part_, core::one(Kind::candidate), [&](core::Index) { ++count; });
  return count;
}

bool Section::usesTrickleIce() const noexcept {
  if (!isReadable()) return false;
  if (!model_->sessionTrickles) model_->sessionTrickles = core::hasTrickle(*model_, model_->session());
  return *model_->sessionTrickles || core::hasTrickle(*model_, *part_);
}

}  // namespace sdp
