#ifndef DOCUMENT_DUMP_H
#define DOCUMENT_DUMP_H

#include <string>

#include "sdpDocument.h"

// Everything that can be asked of a document, as a text. Two documents with one text have one dump: numbers of lines, which
// count as the text was read, are left out.

namespace documentDump {

class Dump {
 public:
  std::string take(const sdp::Document& document) {
    add("session");
    part(document.session());
    for (const sdp::Group& group : document.session().groups()) {
      add("group", group.semantics);
      for (const std::string_view mid : group.mids) add("mid", mid);
    }
    if (const auto direction = document.session().direction()) add("direction", textOf(*direction));
    for (const sdp::Section& found : document.sections()) section(found);
    return text_;
  }

 private:
  void add(std::string_view key, std::string_view value = {}) {
    text_.append(key).append("=").append(value).append("\n");
  }
  void add(std::string_view key, std::uint64_t value) { add(key, std::to_string(value)); }
  void addIf(std::string_view key, const std::optional<std::uint64_t>& value) {
    add(key, value ? std::to_string(*value) : "-");
  }

  template <typename Part>
  void part(const Part& part) {
    for (const sdp::Line& line : part.lines()) {
      add("line", line.content);
      add("end", line.end);
    }
    for (const sdp::Attribute& attribute : part.attributes()) {
      add("attribute", attribute.name);
      if (attribute.value) add("value", *attribute.value);
      // Those of a name are found by it, whether the library knows that or not.
      add("of this name", part.attributes(attribute.name).size());
      add("first", part.attribute(attribute.name)->value.value_or("-"));
      for (const std::string_view field : attribute.fields()) add("field", field);
    }
    for (const sdp::Bandwidth& bandwidth : part.bandwidths()) {
      add("bandwidth", bandwidth.type);
      addIf("kbit", bandwidth.value);
    }
    if (const auto connection = part.connection()) {
      add("address type", connection->addressType);
      add("address", connection->address);
    }
  }

  void format(const sdp::Format& format) {
    add("format", format.format);
    if (format.encoding) {
      add("encoding", format.encoding->name);
      add("clock", format.encoding->clockRate);
      add("channels", format.encoding->channels);
    }
    if (format.fmtp) add("fmtp", *format.fmtp);
    addIf("apt", format.apt);
    add("companion", format.isCompanion);
    for (const std::string_view value : format.feedback()) add("feedback", value);
  }

  void section(const sdp::Section& section) {
    add("section", section.index());
    add("readable", section.isReadable());
    part(section);
    add("media", section.media());
    add("port", section.port());
    add("count", section.portCount());
    add("transport", section.transport());
    add("rtp", section.isRtp());
    add("disabled", section.isDisabled());
    add("direction", textOf(section.direction()));
    add("security", textOf(section.security()));
    for (const sdp::Format& found : section.formats()) format(found);
    add("mid", section.mid());
    add("label", section.label());
    add("bundle-only", section.isBundleOnly());
    addIf("bundle", section.bundle());
    if (const auto rtcp = section.rtcp()) {
      addIf("rtcp", rtcp->port);
      add("rtcp address", rtcp->address);
    }
    add("rtcp-mux", section.hasRtcpMux());
    for (const sdp::Crypto& crypto : section.crypto()) {
      addIf("tag", crypto.tag);
      add("suite", crypto.suite);
    }
    add("fingerprint", section.fingerprintHash());
    add("setup", section.setup());
    add("ice", section.hasIce());
    add("candidates", section.candidateCount());
    add("trickle", section.usesTrickleIce());
  }

  std::string text_;
};

inline std::string dumpOf(const sdp::Document& document) { return Dump().take(document); }

}  // namespace documentDump

#endif
