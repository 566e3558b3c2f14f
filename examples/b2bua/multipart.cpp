#include "multipart.h"

#include <map>

#include "bodyLines.h"

namespace b2bua {

namespace {

/// A part, and what of it is read so far.
struct Part {
  void add(std::string_view line) {
    if (!isInContent) {
      isInContent = line.empty();
      const Attribute header = attributeOf("a=" + std::string(line));
      headers.emplace(header.name, header.value);
    } else if (!line.empty()) {  // The last line's end may be what stood in front of the delimiter.
      content.append(line).append("\r\n");
    }
  }

  /// @return its value, empty without one
  std::string header(const char* name) const {
    const auto found = headers.find(name);
    return found != headers.end() ? found->second : "";
  }
  bool isSdp() const {
    const std::string type = header("content-type");
    return type.substr(0, type.find_first_of("; ")) == kSdp;
  }
  bool isRequired() const {
    return header("content-disposition").find("handling=required") != std::string::npos;
  }
  bool isEncoded() const {
    const std::string encoding = header("content-transfer-encoding");
    return !encoding.empty() && encoding != "7bit" && encoding != "8bit" && encoding != "binary";
  }

  std::map<std::string, std::string> headers;  ///< all in lower case
  std::string content;
  bool isInContent = false;
};

}  // namespace

// The stack's own parser of parts reads beyond the end of a body that is shorter than its boundary.
std::optional<std::string> sdpPartOf(std::string_view body, std::string_view boundary) {
  const std::string delimiter = "--" + std::string(boundary);
  std::optional<std::string> sdp;
  std::optional<Part> part;  // none in front of the first delimiter
  for (const std::string_view line : linesOf(body)) {
    if (!line.starts_with(delimiter)) {
      if (part) part->add(line);
      continue;
    }
    const bool isSdp = part && !sdp && part->isSdp();
    if (part && (isSdp ? part->isEncoded() : part->isRequired())) return std::nullopt;
    if (isSdp) sdp = part->content;
    if (line.substr(delimiter.size()).starts_with("--")) break;
    part.emplace();
  }
  return sdp;  // what follows the last delimiter is cut off, or an epilogue
}

std::optional<std::string> sdpOf(const sip_t& message) {
  const sip_payload_t* const payload = message.sip_payload;
  if (payload == nullptr || payload->pl_len == 0) return "";
  std::string body(payload->pl_data, payload->pl_len);
  const sip_content_type_t* const type = message.sip_content_type;
  if (type == nullptr) return std::nullopt;
  if (su_casematch(type->c_type, kSdp) != 0) return body;
  const char* const boundary = msg_params_find(type->c_params, "boundary");
  constexpr std::string_view kMultipart = "multipart/";
  if (su_casenmatch(type->c_type, kMultipart.data(), kMultipart.size()) == 0 || boundary == nullptr)
    return std::nullopt;
  std::string_view text = boundary;
  if (text.size() > 1 && text.front() == '"' && text.back() == '"') text = text.substr(1, text.size() - 2);
  return sdpPartOf(body, text);
}

}  // namespace b2bua
