#include "sections/sectionsJson.h"

#include <optional>
#include <set>
#include <string>
#include <utility>

namespace tool {
namespace {

Json fieldsJson(const sdp::Fields& fields) {
  Json list = Json::array();
  for (const std::string_view field : fields) list.push_back(field);
  return list;
}

/// A key as it is written, so that two that differ in bytes that are no UTF-8 alone are one.
std::string keyOf(std::string_view type) {
  return Json::parse(Json(type).dump(-1, ' ', false, Json::error_handler_t::replace)).get<std::string>();
}

/// Of two of one type the first counts.
Json bandwidthJson(const sdp::Range<sdp::BandwidthCursor>& bandwidths) {
  Json::object_t object;
  std::set<std::string> types;
  for (const sdp::Bandwidth& bandwidth : bandwidths) {
    std::string type = keyOf(bandwidth.type);
    // Looked for in the set: the object would be searched from its beginning.
    if (types.insert(type).second) object.emplace_back(std::move(type), orNull(bandwidth.value));
  }
  return object;
}

Json connectionField(const std::optional<sdp::Connection>& connection,
                     std::string_view sdp::Connection::*field) {
  return connection ? orNull((*connection).*field) : Json(nullptr);
}

Json rtcpJson(const std::optional<sdp::Rtcp>& rtcp) {
  if (!rtcp) return nullptr;
  return {{"port", orNull(rtcp->port)}, {"address", orNull(rtcp->address)}};
}

Json cryptoJson(const sdp::Section& section) {
  Json list = Json::array();
  for (const sdp::Crypto& crypto : section.crypto()) {
    list.push_back({{"tag", orNull(crypto.tag)}, {"suite", orNull(crypto.suite)}});
  }
  return list;
}

/// Whether something is so; null in an unreadable section.
Json flag(const sdp::Section& section, bool value) {
  return section.isReadable() ? Json(value) : Json(nullptr);
}

Json textIn(const sdp::Section& section, std::string_view text) {
  return section.isReadable() ? Json(text) : Json(nullptr);
}

Json iceJson(const sdp::Section& section) {
  return {{"ufrag", flag(section, section.hasIce())},
          {"candidates", section.isReadable() ? Json(section.candidateCount()) : Json(nullptr)},
          {"trickle", flag(section, section.usesTrickleIce())}};
}

/// All of a section but its formats.
Json sectionJson(const sdp::Section& section, std::size_t firstLine) {
  const std::optional<sdp::Connection> connection = section.connection();
  const bool readable = section.isReadable();
  return {{"index", section.index()},
          {"line", firstLine + section.lineNumber() - 1},
          {"readable", readable},
          {"media", textIn(section, section.media())},
          {"port", readable ? Json(section.port()) : Json(nullptr)},
          {"portCount", readable ? Json(section.portCount()) : Json(nullptr)},
          {"transport", textIn(section, section.transport())},
          {"address", connectionField(connection, &sdp::Connection::address)},
          {"addressType", connectionField(connection, &sdp::Connection::addressType)},
          {"direction", textIn(section, textOf(section.direction()))},
          {"disabled", flag(section, section.isDisabled())},
          {"mid", orNull(section.mid())},
          {"label", orNull(section.label())},
          {"bundle", orNull(section.bundle())},
          {"bundleOnly", flag(section, section.isBundleOnly())},
          {"rtcp", rtcpJson(section.rtcp())},
          {"rtcpMux", flag(section, section.hasRtcpMux())},
          {"security", textIn(section, textOf(section.security()))},
          {"crypto", cryptoJson(section)},
          {"fingerprint", orNull(section.fingerprintHash())},
          {"setup", orNull(section.setup())},
          {"ice", iceJson(section)},
          {"bandwidth", readable ? bandwidthJson(section.bandwidths()) : Json::object()},
          {"formats", Json::array()}};
}

Json feedbackJson(const sdp::Format& format) {
  Json list = Json::array();
  for (const std::string_view value : format.feedback()) list.push_back(value);
  return list;
}

/// What attributes say of payload types goes with RTP alone.
Json formatJson(const sdp::Format& format, bool isRtp) {
  const std::optional<sdp::Encoding>& encoding = format.encoding;
  return {{"format", format.format},
          {"name", encoding ? Json(encoding->name) : Json(nullptr)},
          {"clock", encoding ? Json(encoding->clockRate) : Json(nullptr)},
          {"channels", encoding ? Json(encoding->channels) : Json(nullptr)},
          {"fmtp", orNull(format.fmtp)},
          {"feedback", isRtp ? feedbackJson(format) : Json(nullptr)},
          {"apt", orNull(format.apt)}};
}

}  // namespace

Json sessionJson(const sdp::Document& document) {
  const sdp::Session session = document.session();
  const std::optional<sdp::Connection> connection = session.connection();
  const std::optional<sdp::Direction> direction = session.direction();
  Json groups = Json::array();
  for (const sdp::Group& group : session.groups()) {
    groups.push_back({{"semantics", orNull(group.semantics)}, {"mids", fieldsJson(group.mids)}});
  }
  return {{"address", connectionField(connection, &sdp::Connection::address)},
          {"addressType", connectionField(connection, &sdp::Connection::addressType)},
          {"direction", direction ? Json(textOf(*direction)) : Json(nullptr)},
          {"groups", std::move(groups)},
          {"iceLite", session.has("ice-lite")},
          {"bandwidth", bandwidthJson(session.bandwidths())}};
}

void writeSections(BufferedOutput& out, JsonList& list, const sdp::Document& document,
                   std::size_t firstLine) {
  for (const sdp::Section& section : document.sections()) {
    if (!out.good()) return;
    JsonList formats(out, sectionJson(section, firstLine), list.begin());
    for (const sdp::Format& format : section.formats()) {
      const std::string by = formats.begin();
      out.write(indented(jsonText(formatJson(format, section.isRtp())), by));
    }
    formats.end();
  }
}

}  // namespace tool
