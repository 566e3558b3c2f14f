#include "sipMessage.h"

#include <osipparser2/osip_parser.h>

#include <charconv>
#include <cstdio>
#include <memory>

namespace b2bua {

namespace {

using OsipMessage = std::unique_ptr<osip_message_t, void (*)(osip_message_t*)>;

std::string textOf(const char* text) { return text != nullptr ? text : ""; }

/// The text of an osip record by its `..._to_str`.
template <typename Record>
std::string textOf(int (*write)(const Record*, char**), const Record* record) {
  char* text = nullptr;
  if (record == nullptr || write(record, &text) != 0 || text == nullptr) return "";
  std::string copy = text;
  osip_free(text);
  return copy;
}

std::string parameter(osip_list_t* parameters, std::string name) {
  osip_generic_param_t* found = nullptr;
  osip_generic_param_get_byname(parameters, name.data(), &found);
  return found != nullptr ? textOf(found->gvalue) : "";
}

template <typename Record>
std::vector<std::string> textsOf(int (*write)(const Record*, char**), const osip_list_t& list) {
  std::vector<std::string> texts;
  for (int i = 0; osip_list_eol(&list, i) == 0; ++i) {
    texts.push_back(textOf(write, static_cast<const Record*>(osip_list_get(&list, i))));
  }
  return texts;
}

/// osip has resolved the escapes, behind which anything may have stood.
std::string escapedUser(const char* user) {
  std::string escaped;
  for (const char c : textOf(user)) {
    char code[4] = {c, '\0'};
    const bool plain = (c >= '0' && c <= '9') || (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z') ||
                       std::string_view("-_.!~*'()&=+$,;?/").find(c) != std::string_view::npos;
    if (!plain)
      std::snprintf(code, sizeof code, "%%%02X", static_cast<unsigned int>(static_cast<unsigned char>(c)));
    escaped += code;
  }
  return escaped;
}

std::string addressOf(const osip_from_t& header) {
  const std::string name = textOf(header.displayname);
  return name + (name.empty() ? "<" : " <") + textOf(&osip_uri_to_str, header.url) + ">";
}

/// RFC 3581 with an rport in the Via, else the sender's address with the port that the Via names.
Endpoint replyAddress(osip_via_t& via, const Endpoint& source) {
  osip_generic_param_t* rport = nullptr;
  char name[] = "rport";
  osip_via_param_get_byname(&via, name, &rport);
  if (rport != nullptr) return source;
  return Endpoint::of(source.hostAndPort().first, via.port != nullptr ? via.port : "5060").value_or(source);
}

bool readNumber(const char* text, unsigned int& number) {
  const std::string_view digits = text != nullptr ? text : "";
  const auto [end, error] = std::from_chars(digits.data(), digits.data() + digits.size(), number);
  return error == std::errc() && end == digits.data() + digits.size();
}

bool readHeaders(osip_message_t& from, SipMessage& to) {
  if (from.from == nullptr || from.from->url == nullptr || from.to == nullptr || from.call_id == nullptr ||
      from.cseq == nullptr || from.cseq->method == nullptr || !readNumber(from.cseq->number, to.cseq)) {
    return false;
  }
  to.method = from.cseq->method;
  to.callId = textOf(&osip_call_id_to_str, from.call_id);
  to.from = textOf(&osip_from_to_str, from.from);
  to.fromAddress = addressOf(*from.from);
  to.fromTag = parameter(&from.from->gen_params, "tag");
  to.to = textOf(&osip_to_to_str, from.to);
  to.toTag = parameter(&from.to->gen_params, "tag");
  to.recordRoutes = textsOf(&osip_record_route_to_str, from.record_routes);
  if (const auto* contact = static_cast<const osip_contact_t*>(osip_list_get(&from.contacts, 0))) {
    to.contact = textOf(&osip_uri_to_str, contact->url);
  }
  if (from.content_type != nullptr) {
    to.contentType = textOf(from.content_type->type) + "/" + textOf(from.content_type->subtype);
  }
  osip_header_t* warning = nullptr;
  if (osip_message_header_get_byname(&from, "warning", 0, &warning) >= 0)
    to.warning = textOf(warning->hvalue);
  return true;
}

void readBody(const osip_message_t& from, SipMessage& to) {
  const auto* body = static_cast<const osip_body_t*>(osip_list_get(&from.bodies, 0));
  if (body != nullptr && body->body != nullptr) to.body.assign(body->body, body->length);
}

std::string contentLines(const std::string& body) {
  return (body.empty() ? "" : "Content-Type: application/sdp\r\n") +
         ("Content-Length: " + std::to_string(body.size())) + "\r\n\r\n" + body;
}

}  // namespace

void prepareSip() {
  parser_init();
  osip_trace_initialize_func(END_TRACE_LEVEL,
                             [](const char*, int, osip_trace_level_t, const char*, va_list) {});
}

std::optional<SipMessage> parseSip(std::string_view datagram, const Endpoint& source) {
  osip_message_t* raw = nullptr;
  if (osip_message_init(&raw) != 0) return std::nullopt;
  const OsipMessage parsed(raw, &osip_message_free);
  // osip wants a NUL behind the text.
  const std::string text(datagram);
  SipMessage message;
  if (osip_message_parse(raw, text.c_str(), text.size()) != 0 || !readHeaders(*raw, message))
    return std::nullopt;
  auto* via = static_cast<osip_via_t*>(osip_list_get(&raw->vias, 0));
  if (via == nullptr) return std::nullopt;
  message.branch = parameter(&via->via_params, "branch");
  if (MSG_IS_REQUEST(raw)) {
    if (message.method != textOf(raw->sip_method) || raw->req_uri == nullptr) return std::nullopt;
    message.requestUser = escapedUser(raw->req_uri->username);
    message.replyTo = replyAddress(*via, source);
    const auto [host, port] = source.hostAndPort();
    osip_message_fix_last_via_header(raw, host.c_str(), std::stoi(port));
    message.vias = textsOf(&osip_via_to_str, raw->vias);
  } else {
    if (raw->status_code < 100 || raw->status_code > 699) return std::nullopt;
    message.status = raw->status_code;
    message.reason = textOf(raw->reason_phrase);
  }
  readBody(*raw, message);
  return message;
}

std::string SipRequest::text(const std::string& via) const {
  std::string text = method + " " + uri + " SIP/2.0\r\nVia: " + via + "\r\n";
  if (!routes.empty()) text += "Route: " + routes + "\r\n";
  text += "Max-Forwards: 70\r\nFrom: " + from + "\r\nTo: " + to + "\r\nCall-ID: " + callId +
          "\r\nCSeq: " + std::to_string(cseq) + " " + method + "\r\n";
  if (!contact.empty()) text += "Contact: <" + contact + ">\r\n";
  return text + contentLines(body);
}

std::string SipResponse::text(const SipMessage& request) const {
  const char* const usual = osip_message_get_reason(status);
  std::string text = "SIP/2.0 " + std::to_string(status) + " " +
                     (!reason.empty()    ? reason
                      : usual != nullptr ? usual
                                         : "Unknown") +
                     "\r\n";
  for (const std::string& via : request.vias) text += "Via: " + via + "\r\n";
  for (const std::string& route : request.recordRoutes) text += "Record-Route: " + route + "\r\n";
  text += "From: " + request.from + "\r\nTo: " + request.to +
          (toTag.empty() || !request.toTag.empty() ? "" : ";tag=" + toTag) +
          "\r\nCall-ID: " + request.callId + "\r\nCSeq: " + std::to_string(request.cseq) + " " +
          request.method + "\r\n";
  if (!contact.empty()) text += "Contact: <" + contact + ">\r\n";
  return text + headers + contentLines(body);
}

std::string routesOf(const std::vector<std::string>& recordRoutes) {
  std::string value;
  for (const std::string& route : recordRoutes) value += (value.empty() ? "" : ", ") + route;
  return value;
}

Endpoint endpointOfUri(const std::string& uri, const Endpoint& otherwise) {
  osip_uri_t* parsed = nullptr;
  if (osip_uri_init(&parsed) != 0) return otherwise;
  std::optional<Endpoint> endpoint;
  if (osip_uri_parse(parsed, uri.c_str()) == 0 && parsed->host != nullptr) {
    endpoint = Endpoint::of(parsed->host, parsed->port != nullptr ? parsed->port : "5060");
  }
  osip_uri_free(parsed);
  const bool sameFamily = endpoint && endpoint->address.ss_family == otherwise.address.ss_family;
  return sameFamily ? *endpoint : otherwise;
}

}  // namespace b2bua
