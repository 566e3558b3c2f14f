#include "calls/anonymousSdp.h"

#include <algorithm>
#include <array>
#include <utility>

#include "calls/anonymousUri.h"
#include "text/anyLines.h"
#include "text/search.h"

namespace tool {
namespace {

constexpr auto npos = std::string_view::npos;

/// How the value of an attribute is written.
enum class Form {
  protocol,
  fingerprint,
  crypto,
  keyManagement,
  secret,
  open,
  candidate,
  connection,
  source,
  product,
  hidden,
  renamed
};

constexpr std::array<std::pair<std::string_view, Form>, 64> kAttributes = {{
    {"rtpmap", Form::protocol},
    {"fmtp", Form::protocol},
    {"ptime", Form::protocol},
    {"maxptime", Form::protocol},
    {"minptime", Form::protocol},
    {"mptime", Form::protocol},
    {"sendrecv", Form::protocol},
    {"sendonly", Form::protocol},
    {"recvonly", Form::protocol},
    {"inactive", Form::protocol},
    {"setup", Form::protocol},
    {"connection", Form::protocol},
    {"fingerprint", Form::fingerprint},
    {"crypto", Form::crypto},
    {"key-mgmt", Form::keyManagement},
    {"zrtp-hash", Form::keyManagement},
    {"ice-ufrag", Form::protocol},
    {"ice-pwd", Form::secret},
    {"ice-options", Form::protocol},
    {"ice-lite", Form::protocol},
    {"ice-pacing", Form::protocol},
    {"end-of-candidates", Form::protocol},
    {"rtcp-mux", Form::protocol},
    {"rtcp-mux-only", Form::protocol},
    {"rtcp-rsize", Form::protocol},
    {"rtcp-fb", Form::protocol},
    {"rtcp-xr", Form::protocol},
    {"ssrc-group", Form::protocol},
    {"extmap", Form::protocol},
    {"extmap-allow-mixed", Form::protocol},
    {"framerate", Form::protocol},
    {"framesize", Form::protocol},
    {"imageattr", Form::protocol},
    {"rid", Form::protocol},
    {"simulcast", Form::protocol},
    {"sctp-port", Form::protocol},
    {"sctpmap", Form::protocol},
    {"max-message-size", Form::protocol},
    {"dcmap", Form::protocol},
    {"silencesupp", Form::protocol},
    {"ecan", Form::protocol},
    {"gpmd", Form::protocol},
    {"curr", Form::protocol},
    {"des", Form::protocol},
    {"conf", Form::protocol},
    {"accept-types", Form::protocol},
    {"accept-wrapped-types", Form::protocol},
    {"quality", Form::protocol},
    {"orient", Form::protocol},
    {"type", Form::protocol},
    {"charset", Form::protocol},
    {"sdplang", Form::protocol},
    {"lang", Form::protocol},
    {"maxprate", Form::protocol},
    {"label", Form::open},
    {"alt", Form::protocol},
    {"remote-candidates", Form::protocol},
    {"candidate", Form::candidate},
    {"rtcp", Form::connection},
    {"ssrc", Form::source},
    {"tool", Form::product},
    {"identity", Form::hidden},
    {"tls-id", Form::renamed},
    {"nortpproxy", Form::protocol},
}};

Form formOf(std::string_view name) {
  for (const auto& [one, form] : kAttributes) {
    if (sdpneg::equalNoCase(one, name)) return form;
  }
  return sdpneg::startsWithNoCase(name, "T38") ? Form::protocol : Form::open;
}

/// Writes fields with blanks between them, each by its number from 0 and the one before it.
template <typename WriteField>
void writeFields(std::string_view text, std::string& out, const WriteField& writeField) {
  std::string_view before;
  std::size_t number = 0;
  for (std::size_t at = 0;;) {
    const std::size_t end = std::min(text.find(' ', at), text.size());
    const std::string_view field = text.substr(at, end - at);
    if (!field.empty()) {
      writeField(number++, before, field);
      before = field;
    }
    if (end == text.size()) return;
    out += ' ';
    at = end + 1;
  }
}

/// Writes fields of the protocol, hosts where one stands.
template <typename IsHost>
void writeWithHosts(Replacements& replacements, std::string_view text, std::string& out,
                    const IsHost& isHost) {
  writeFields(text, out, [&](std::size_t number, std::string_view before, std::string_view field) {
    if (!isHost(number, before)) return writeText(replacements, field, Care::protocol, out);
    const std::size_t slash = std::min(field.find('/'), field.size());  // of a multicast address's scope
    writeHost(replacements, field.substr(0, slash), out);
    writeText(replacements, field.substr(slash), Care::protocol, out);
  });
}

bool followsNet(std::size_t, std::string_view before) {
  return sdpneg::equalNoCase(before, "IP4") || sdpneg::equalNoCase(before, "IP6");
}

/// A name that stands for itself alone, as long as the one it is for.
void writeRenamed(Replacements& replacements, std::string_view value, std::string& out) {
  std::string given = replacements.names.word(value);
  replacements.names.learn(value);
  if (given.size() < value.size()) given.insert(4, value.size() - given.size(), '0');
  out += given;
}

/// "sha-256 4A:AD:...", "mikey AQAFgM0X...", "1.10 fe30efd0...": a secret behind what it is for.
void writeNamedSecret(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t begin = value.rfind(' ') + 1;  // 0 where there is none
  writeText(replacements, value.substr(0, begin), Care::protocol, out);
  writeSecret(replacements, value.substr(begin), out);
}

/// "1 AES_CM_128_HMAC_SHA1_80 inline:key|2^20|1:4;inline:key", with parameters behind (RFC 4568).
void writeCrypto(Replacements& replacements, std::string_view value, std::string& out) {
  constexpr std::string_view kInline = "inline:";
  for (std::size_t at = 0; at < value.size();) {
    const std::size_t key = std::min(sdpneg::findNoCase(value, kInline, at), value.size());
    const std::size_t begin = std::min(key + kInline.size(), value.size());
    const std::size_t end = std::min(value.find_first_of("|; ", begin), value.size());
    writeText(replacements, value.substr(at, begin - at), Care::protocol, out);
    writeSecret(replacements, value.substr(begin, end - begin), out);
    at = end;
  }
}

/// "base64:key", "clear:key" or "prompt" (RFC 4566 5.12).
void writeKey(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t colon = std::min(value.find(':'), value.size());
  if (sdpneg::startsWithNoCase(value, "uri:")) return writeOpen(replacements, value, out);
  const bool isKey = colon == value.size() && !sdpneg::equalNoCase(value, "prompt");  // without its method
  if (isKey) return writeSecret(replacements, value, out);
  writeText(replacements, value.substr(0, colon), Care::protocol, out);
  writeSecret(replacements, value.substr(colon), out);
}

/// "12345 cname:user@host".
void writeSource(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t blank = std::min(value.find(' '), value.size());
  writeText(replacements, value.substr(0, blank), Care::protocol, out);
  const std::string_view attribute = value.substr(blank);
  const std::size_t colon = attribute.find(':');
  if (colon == npos) return writeText(replacements, attribute, Care::open, out);
  const bool isName = sdpneg::startsWithNoCase(attribute.substr(attribute.find_first_not_of(' ')), "cname:");
  writeText(replacements, attribute.substr(0, colon + 1), Care::protocol, out);
  writeText(replacements, attribute.substr(colon + 1), isName ? Care::name : Care::open, out);
}

void writeAttributeValue(Replacements& replacements, Form form, std::string_view value, std::string& out) {
  switch (form) {
    case Form::protocol:
      return writeText(replacements, value, Care::protocol, out);
    case Form::fingerprint:
    case Form::keyManagement:
      return writeNamedSecret(replacements, value, out);
    case Form::crypto:
      return writeCrypto(replacements, value, out);
    case Form::secret:
      return writeSecret(replacements, value, out);
    case Form::open:
      return writeOpen(replacements, value, out);
    case Form::candidate:
      return writeWithHosts(replacements, value, out, [](std::size_t number, std::string_view before) {
        return number == 4 || sdpneg::equalNoCase(before, "raddr");
      });
    case Form::connection:
      return writeWithHosts(replacements, value, out, followsNet);
    case Form::source:
      return writeSource(replacements, value, out);
    case Form::product:
      return writeText(replacements, value, Care::product, out);
    case Form::hidden:
      return writeHidden(value, out);
    case Form::renamed:
      return writeRenamed(replacements, value, out);
  }
}

void writeAttribute(Replacements& replacements, std::string_view value, std::string& out) {
  // "acap:1 crypto:1 ..." offers another attribute (RFC 5939).
  constexpr std::string_view kCapability = "acap:";
  if (sdpneg::startsWithNoCase(value, kCapability)) {
    const std::size_t number = value.find_first_not_of("0123456789", kCapability.size());
    const std::size_t begin = std::min(value.find_first_not_of(' ', number), value.size());
    writeText(replacements, value.substr(0, begin), Care::protocol, out);
    value.remove_prefix(begin);
  }
  const std::size_t colon = value.find(':');
  const std::string_view name = value.substr(0, colon);
  writeText(replacements, name, Care::protocol, out);
  if (colon == npos) return;
  out += ':';
  writeAttributeValue(replacements, formOf(name), value.substr(colon + 1), out);
}

/// "user 1 1 IN IP4 host".
void writeOrigin(Replacements& replacements, std::string_view value, std::string& out) {
  const std::size_t blank = std::min(value.find(' '), value.size());
  const std::string_view user = value.substr(0, blank);
  if (!writeNumber(replacements, user, out)) writeText(replacements, user, Care::name, out);
  writeWithHosts(replacements, value.substr(blank), out, followsNet);
}

void writeTelephone(Replacements& replacements, std::string_view value, std::string& out) {
  if (!writeNumber(replacements, value, out)) writeText(replacements, value, Care::name, out);
}

void writeLine(Replacements& replacements, std::string_view line, std::string& out) {
  if (line.size() < 2 || line[1] != '=') return writeOpen(replacements, line, out);
  out += line.substr(0, 2);
  const std::string_view value = line.substr(2);
  switch (line[0]) {
    case 'a':
      return writeAttribute(replacements, value, out);
    case 'o':
      return writeOrigin(replacements, value, out);
    case 'c':
      return writeWithHosts(replacements, value, out, followsNet);
    case 's':
    case 'i':
      return writeText(replacements, value, Care::prose, out);
    case 'e':
      return writeText(replacements, value, Care::name, out);
    case 'k':
      return writeKey(replacements, value, out);
    case 'p':
      return writeTelephone(replacements, value, out);
    case 'v':
    case 'm':
    case 'b':
    case 't':
    case 'r':
    case 'z':
      return writeText(replacements, value, Care::protocol, out);
    default:
      return writeOpen(replacements, value, out);
  }
}

}  // namespace

void writeSdp(Replacements& replacements, std::string_view body, std::string& out) {
  sdpneg::AnyLines lines(body);
  while (!lines.atEnd()) {
    const sdpneg::AnyLine line = lines.next();
    writeLine(replacements, line.content, out);
    out += line.end();
  }
}

}  // namespace tool
