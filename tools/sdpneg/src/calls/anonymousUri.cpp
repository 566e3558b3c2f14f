#include "calls/anonymousUri.h"

#include <algorithm>
#include <array>
#include <utility>

#include "text/search.h"

namespace tool {
namespace {

using sdpneg::isDigit;

constexpr auto npos = std::string_view::npos;

/// What the value of a parameter is.
enum class Value { open, opaque, secret, protocol, host, user, context, uri, realm };

constexpr std::array<std::pair<std::string_view, Value>, 79> kParameters = {{
    {"tag", Value::opaque},
    {"branch", Value::opaque},
    {"to-tag", Value::opaque},
    {"from-tag", Value::opaque},
    {"local-tag", Value::opaque},
    {"remote-tag", Value::opaque},
    {"nonce", Value::secret},
    {"nextnonce", Value::secret},
    {"cnonce", Value::secret},
    {"opaque", Value::secret},
    {"response", Value::secret},
    {"rspauth", Value::secret},
    {"nc", Value::protocol},
    {"received", Value::host},
    {"maddr", Value::host},
    {"host", Value::host},
    {"orig-ioi", Value::host},
    {"term-ioi", Value::host},
    {"icid-generated-at", Value::host},
    {"related-icid-generated-at", Value::host},
    {"phone-context", Value::context},
    {"tgrp", Value::user},
    {"trunk-context", Value::context},
    {"rn", Value::user},
    {"cic", Value::user},
    {"ext", Value::user},
    {"isub", Value::user},
    {"utran-cell-id-3gpp", Value::user},
    {"cgi-3gpp", Value::user},
    {"i-wlan-node-id", Value::user},
    {"username", Value::user},
    {"realm", Value::realm},
    {"uri", Value::uri},
    {"domain", Value::uri},
    {"info", Value::uri},
    {"rport", Value::protocol},
    {"ttl", Value::protocol},
    {"transport", Value::protocol},
    {"comp", Value::protocol},
    {"method", Value::protocol},
    {"user", Value::protocol},
    {"lr", Value::protocol},
    {"q", Value::protocol},
    {"expires", Value::protocol},
    {"reg-id", Value::protocol},
    {"alias", Value::protocol},
    {"keep", Value::protocol},
    {"algorithm", Value::protocol},
    {"alg", Value::protocol},
    {"ppt", Value::protocol},
    {"qop", Value::protocol},
    {"stale", Value::protocol},
    {"cause", Value::protocol},
    {"refresher", Value::protocol},
    {"handling", Value::protocol},
    {"index", Value::protocol},
    {"counter", Value::protocol},
    {"privacy", Value::protocol},
    {"screen", Value::protocol},
    {"party", Value::protocol},
    {"reason-code", Value::protocol},
    {"retry-after", Value::protocol},
    {"duration", Value::protocol},
    {"boundary", Value::protocol},
    {"charset", Value::protocol},
    {"type", Value::protocol},
    {"level", Value::protocol},
    {"purpose", Value::protocol},
    {"min", Value::protocol},
    {"events", Value::protocol},
    {"methods", Value::protocol},
    {"schemes", Value::protocol},
    {"mobility", Value::protocol},
    {"npdi", Value::protocol},
    {"ob", Value::protocol},
    {"early-only", Value::protocol},
    {"text-direct", Value::protocol},
    {"isfocus", Value::protocol},
    {"q850", Value::protocol},
}};

Value valueOf(std::string_view name) {
  for (const auto& [one, value] : kParameters) {
    if (sdpneg::equalNoCase(one, name)) return value;
  }
  return Value::open;
}

bool isBlank(char c) { return c == ' ' || c == '\t' || c == '\r' || c == '\n'; }

/// Text without blanks around it, and the blanks in front.
std::pair<std::string_view, std::string_view> withoutBlanks(std::string_view text) {
  std::size_t begin = 0;
  while (begin < text.size() && isBlank(text[begin])) ++begin;
  std::size_t end = text.size();
  while (end > begin && isBlank(text[end - 1])) --end;
  return {text.substr(0, begin), text.substr(begin, end - begin)};
}

/// A user as it stands in a URI: a number, or words.
void writeUser(Replacements& replacements, std::string_view user, std::string& out) {
  const std::string plain = unescaped(replacements, user);
  std::string written;
  const std::optional<AddressInText> address = leadingIp4(plain);
  if ((address && address->size == plain.size()) || !writeNumber(replacements, plain, written)) {
    writeText(replacements, plain, Care::name, written);
  }
  if (plain == user) {
    out += written;
  } else {
    writeEscaped(written, "-_.!~*'()&=+$,;?/", out);
  }
}

/// Pieces with ';' between them.
template <typename Write>
void writePieces(std::string_view text, std::string_view separators, std::string& out, const Write& write) {
  for (std::size_t at = 0;;) {
    const std::size_t end = findUnquoted(text, separators, at);
    write(text.substr(at, end - at));
    if (end == text.size()) return;
    out += text[end];
    at = end + 1;
  }
}

/// "user;parameter:password".
void writeUserInfo(Replacements& replacements, std::string_view text, std::string& out) {
  const std::size_t colon = std::min(text.find(':'), text.size());
  bool isFirst = true;
  writePieces(text.substr(0, colon), ";", out, [&](std::string_view piece) {
    if (std::exchange(isFirst, false)) {
      writeUser(replacements, piece, out);
    } else {
      writeParameter(replacements, piece, out);
    }
  });
  if (colon == text.size()) return;
  out += ':';
  writeHidden(text.substr(colon + 1), out);
}

/// "host:port".
void writeHostAndPort(Replacements& replacements, std::string_view text, std::string& out) {
  const std::size_t bracket = text.starts_with('[') ? text.find(']') : npos;
  std::size_t end = bracket != npos ? bracket + 1 : std::min(text.find(':'), text.size());
  if (bracket == npos && end != text.size() && text.find(':', end + 1) != npos) end = text.size();
  writeHost(replacements, text.substr(0, end), out);
  const std::string_view port = text.substr(end);
  const bool isPort =
      port.size() <= 6 && std::all_of(port.begin() + (port.empty() ? 0 : 1), port.end(), isDigit);
  writeText(replacements, port, isPort ? Care::protocol : Care::opaque, out);
}

/// Headers within a URI: what stands in front of their parameters first, then these.
void writeHeaders(Replacements& replacements, std::string_view text, std::string& out) {
  writePieces(text, "&", out, [&](std::string_view header) {
    const std::size_t value = header.find('=');
    if (value == npos) return writeText(replacements, header, Care::open, out);
    writeText(replacements, header.substr(0, value), Care::protocol, out);
    out += '=';
    const std::string plain = unescaped(replacements, header.substr(value + 1));
    std::string written;
    bool isFirst = true;
    writePieces(plain, ";", written, [&](std::string_view piece) {
      if (std::exchange(isFirst, false)) {
        writeText(replacements, piece, Care::open, written);
      } else {
        writeParameter(replacements, piece, written);
      }
    });
    if (written == plain) {
      writeText(replacements, header.substr(value + 1), Care::protocol, out);
    } else {
      writeEscaped(written, "-_.!~*'()[]/?:+$", out);
    }
  });
}

/// "user@host:port;parameters?headers".
void writeSipUri(Replacements& replacements, std::string_view rest, std::string& out) {
  const std::size_t at = rest.find('@');
  if (at != npos) {
    writeUserInfo(replacements, rest.substr(0, at), out);
    out += '@';
    rest.remove_prefix(at + 1);
  }
  const std::size_t hostEnd = std::min(rest.find_first_of(";?"), rest.size());
  writeHostAndPort(replacements, rest.substr(0, hostEnd), out);
  const std::size_t headers = std::min(rest.find('?', hostEnd), rest.size());
  bool isFirst = true;
  writePieces(rest.substr(hostEnd, headers - hostEnd), ";", out, [&](std::string_view piece) {
    if (!std::exchange(isFirst, false)) writeParameter(replacements, piece, out);
  });
  if (headers == rest.size()) return;
  out += '?';
  writeHeaders(replacements, rest.substr(headers + 1), out);
}

void writeTelUri(Replacements& replacements, std::string_view rest, std::string& out) {
  bool isFirst = true;
  writePieces(rest, ";", out, [&](std::string_view piece) {
    if (std::exchange(isFirst, false)) {
      writeUser(replacements, piece, out);
    } else {
      writeParameter(replacements, piece, out);
    }
  });
}

/// "//user@host:port/path".
void writeUrl(Replacements& replacements, std::string_view rest, std::string& out) {
  out += "//";
  rest.remove_prefix(2);
  const std::size_t end = std::min(rest.find_first_of("/?#;"), rest.size());
  std::string_view authority = rest.substr(0, end);
  const std::size_t at = authority.rfind('@');
  if (at != npos) {
    writeUserInfo(replacements, authority.substr(0, at), out);
    out += '@';
    authority.remove_prefix(at + 1);
  }
  writeHostAndPort(replacements, authority, out);
  writeText(replacements, rest.substr(end), Care::open, out);
}

enum class Scheme { none, sip, tel, url, urn };

Scheme schemeOf(std::string_view scheme) {
  constexpr std::array<std::pair<std::string_view, Scheme>, 20> kSchemes = {{
      {"sip", Scheme::sip},  {"sips", Scheme::sip},   {"im", Scheme::sip},    {"pres", Scheme::sip},
      {"xmpp", Scheme::sip}, {"mailto", Scheme::sip}, {"h323", Scheme::sip},  {"tel", Scheme::tel},
      {"fax", Scheme::tel},  {"modem", Scheme::tel},  {"http", Scheme::url},  {"https", Scheme::url},
      {"ws", Scheme::url},   {"wss", Scheme::url},    {"msrp", Scheme::url},  {"msrps", Scheme::url},
      {"ftp", Scheme::url},  {"rtsp", Scheme::url},   {"rtsps", Scheme::url}, {"urn", Scheme::urn},
  }};
  for (const auto& [one, kind] : kSchemes) {
    if (sdpneg::equalNoCase(one, scheme)) return kind;
  }
  return Scheme::none;
}

void writeUrn(Replacements& replacements, std::string_view rest, std::string& out) {
  if (sdpneg::startsWithNoCase(rest, "uuid:") && beginsWithUuid(rest.substr(5))) {
    out += rest.substr(0, 5);
    out += replacements.names.uuid(rest.substr(5, 36));
    rest.remove_prefix(41);
  }
  writeText(replacements, rest, Care::opaque, out);
}

void writeValue(Replacements& replacements, std::string_view text, Value value, std::string& out) {
  switch (value) {
    case Value::open:
      return writeOpen(replacements, text, out);
    case Value::secret:
      return writeSecret(replacements, text, out);
    case Value::opaque:
      return writeText(replacements, text, Care::opaque, out);
    case Value::protocol:
      return writeText(replacements, text, Care::protocol, out);
    case Value::uri:
      return writeUri(replacements, text, out);
    case Value::host:
      return writeHostAndPort(replacements, text, out);
    case Value::realm:
      return writeHost(replacements, text, out);
    case Value::context:
      if (text.starts_with('+')) return writeUser(replacements, text, out);
      return writeHost(replacements, text, out);
    case Value::user:
      break;
  }
  const std::size_t at = text.find('@');
  if (sdpneg::startsWithNoCase(text, "sip:") || sdpneg::startsWithNoCase(text, "sips:")) {
    writeUri(replacements, text, out);
  } else if (at != npos) {
    writeSipUri(replacements, text, out);
  } else {
    writeUser(replacements, text, out);
  }
}

}  // namespace

std::size_t findUnquoted(std::string_view text, std::string_view characters, std::size_t from) {
  bool isQuoted = false;
  for (std::size_t at = from; at < text.size(); ++at) {
    if (text[at] == '"') {
      isQuoted = !isQuoted;
    } else if (isQuoted && text[at] == '\\') {
      ++at;
    } else if (!isQuoted && characters.find(text[at]) != npos) {
      return at;
    }
  }
  return text.size();
}

void writeUri(Replacements& replacements, std::string_view uri, std::string& out) {
  const std::size_t colon = uri.find(':');
  const Scheme scheme = colon == npos ? Scheme::none : schemeOf(uri.substr(0, colon));
  if (scheme == Scheme::none) return writeText(replacements, uri, Care::open, out);
  const std::string_view rest = uri.substr(colon + 1);
  if (scheme == Scheme::url && !rest.starts_with("//")) return writeText(replacements, uri, Care::open, out);
  out += uri.substr(0, colon + 1);
  switch (scheme) {
    case Scheme::sip:
      return writeSipUri(replacements, rest, out);
    case Scheme::tel:
      return writeTelUri(replacements, rest, out);
    case Scheme::url:
      return writeUrl(replacements, rest, out);
    default:
      return writeUrn(replacements, rest, out);
  }
}

void writeOpen(Replacements& replacements, std::string_view text, std::string& out) {
  std::size_t plainFrom = 0;
  for (std::size_t colon = text.find(':'); colon != npos; colon = text.find(':', colon + 1)) {
    constexpr std::size_t kLongestScheme = 8;
    std::size_t begin = colon;
    while (begin > plainFrom && colon - begin < kLongestScheme && isWordCharacter(text[begin - 1])) --begin;
    if (schemeOf(text.substr(begin, colon - begin)) == Scheme::none) continue;
    const std::size_t end = std::min(text.find_first_of(" \t\r\n<>\",", colon), text.size());
    writeText(replacements, text.substr(plainFrom, begin - plainFrom), Care::open, out);
    writeUri(replacements, text.substr(begin, end - begin), out);
    plainFrom = colon = end;
  }
  writeText(replacements, text.substr(std::min(plainFrom, text.size())), Care::open, out);
}

void writeParameter(Replacements& replacements, std::string_view parameter, std::string& out) {
  const std::size_t equal = parameter.find('=');
  if (equal == npos) return writeOpen(replacements, parameter, out);
  const std::string_view name = withoutBlanks(parameter.substr(0, equal)).second;
  writeText(replacements, parameter.substr(0, equal), Care::protocol, out);
  out += '=';
  const auto [blanks, value] = withoutBlanks(parameter.substr(equal + 1));
  out += blanks;
  const Value kind = valueOf(name);
  writeQuoted(value, out,
              [&](std::string_view text, std::string& to) { writeValue(replacements, text, kind, to); });
  out += parameter.substr(equal + 1 + blanks.size() + value.size());
}

}  // namespace tool
