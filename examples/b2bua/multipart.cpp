#include "multipart.h"

#include <cstring>
#include <vector>

#include "bodyLines.h"

namespace b2bua {

namespace {

std::string_view withoutLineEnd(std::string_view text) {
  if (text.ends_with('\n')) text.remove_suffix(1);
  if (text.ends_with('\r')) text.remove_suffix(1);
  return text;
}

/// The parts between the delimiters, each with its headers. The line end in front of a delimiter belongs to it.
std::vector<std::string_view> partsOf(std::string_view body, const std::string& delimiter) {
  std::vector<std::string_view> parts;
  std::size_t part = std::string_view::npos;
  for (std::size_t line = 0; line < body.size();) {
    const std::size_t end = std::min(body.find('\n', line), body.size());
    if (body.substr(line).starts_with(delimiter)) {
      if (part != std::string_view::npos) parts.push_back(withoutLineEnd(body.substr(part, line - part)));
      part = std::min(end + 1, body.size());
      if (body.substr(line + delimiter.size()).starts_with("--")) return parts;
    }
    line = end + 1;
  }
  return parts;  // what follows the last delimiter is cut off, or an epilogue
}

/// The headers of a part, and its content.
struct Part {
  explicit Part(std::string_view text) {
    while (!text.empty()) {
      const std::size_t end = std::min(text.find('\n'), text.size());
      const std::string_view line = text.substr(0, end);
      text.remove_prefix(std::min(end + 1, text.size()));
      if (line.empty() || line == "\r") break;
      headers.push_back(attributeOf("a=" + std::string(line)));
    }
    content = text;
  }

  /// @return the value of a header in lower case, empty without one
  std::string header(std::string_view name) const {
    for (const Attribute& each : headers) {
      if (each.name == name) return lowerCase(each.value);
    }
    return "";
  }

  std::vector<Attribute> headers;
  std::string_view content;
};

bool isSdp(const Part& part) {
  const std::string type = part.header("content-type");
  return type.substr(0, type.find_first_of("; \t")) == "application/sdp";
}

/// The last line's end may be what stood in front of the delimiter.
std::string withLineEnd(std::string_view text) {
  return std::string(text) + (text.empty() || text.ends_with('\n') ? "" : "\r\n");
}

bool isEncoded(const Part& part) {
  const std::string encoding = part.header("content-transfer-encoding");
  return !encoding.empty() && encoding != "7bit" && encoding != "8bit" && encoding != "binary";
}

std::string_view unquoted(std::string_view text) {
  return text.size() > 1 && text.front() == '"' && text.back() == '"' ? text.substr(1, text.size() - 2)
                                                                      : text;
}

bool startsWith(const char* type, const char* name) {
  return su_casenmatch(type, name, std::strlen(name)) != 0;
}

}  // namespace

std::optional<std::string> sdpPartOf(std::string_view body, std::string_view boundary) {
  std::optional<std::string> sdp;
  for (const std::string_view text : partsOf(body, "--" + std::string(boundary))) {
    const Part part(text);
    if (sdp || !isSdp(part)) {
      if (part.header("content-disposition").find("handling=required") != std::string::npos)
        return std::nullopt;
    } else if (isEncoded(part)) {
      return std::nullopt;
    } else {
      sdp = withLineEnd(part.content);
    }
  }
  return sdp;
}

std::optional<std::string> sdpOf(const sip_t& message) {
  const sip_payload_t* const payload = message.sip_payload;
  if (payload == nullptr || payload->pl_len == 0) return "";
  std::string body(payload->pl_data, payload->pl_len);
  const sip_content_type_t* const type = message.sip_content_type;
  if (type == nullptr) return std::nullopt;
  if (su_casematch(type->c_type, kSdp) != 0) return body;
  const char* const boundary = msg_params_find(type->c_params, "boundary");
  if (!startsWith(type->c_type, "multipart/") || boundary == nullptr) return std::nullopt;
  return sdpPartOf(body, unquoted(boundary));
}

}  // namespace b2bua
