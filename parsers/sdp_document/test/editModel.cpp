#include "editModel.h"

#include <algorithm>
#include <vector>

#include "plainBody.h"

namespace plain {
namespace {

using Kind = Edit::Kind;

struct OwnLine {
  std::string content;
  std::string end;
};
using OwnLines = std::vector<OwnLine>;

bool hasAnyOf(std::string_view text, std::string_view characters) {
  return text.find_first_of(characters) != std::string_view::npos;
}
constexpr std::string_view kEndsOfLines("\r\n\0", 3);
bool staysInLine(std::string_view text) { return !hasAnyOf(text, kEndsOfLines); }
bool isName(std::string_view text) { return !text.empty() && staysInLine(text) && !hasAnyOf(text, " \t:"); }

bool isAttribute(const OwnLine& line) { return line.content.starts_with("a="); }
bool isNamed(const OwnLine& line, std::string_view name) {
  return isAttribute(line) && attributeName(line.content) == name;
}
bool isDirection(const OwnLine& line) {
  return isAttribute(line) && sdp::directionOf(attributeName(line.content)).has_value();
}

/// The line that an edit adds or puts in another's place.
std::string attributeLine(const Edit& edit) {
  return "a=" + edit.text + (edit.value ? ":" + *edit.value : std::string());
}

void addBehind(OwnLines& lines, std::size_t at, const std::string& content) {
  if (!lines[at].end.ends_with("\n")) lines[at].end = "\r\n";
  const OwnLine added = {content, lines[at].end};
  lines.insert(lines.begin() + static_cast<std::ptrdiff_t>(at) + 1, added);
}

bool addAtEnd(OwnLines& lines, const std::string& content) {
  std::size_t end = lines.size();
  while (end != 0 && lines[end - 1].content.empty()) --end;
  if (end != 0) addBehind(lines, end - 1, content);
  return end != 0;
}

/// Where a word of an m-line begins, from 0.
std::size_t placeOf(const PlainSection& section, std::size_t word) {
  return static_cast<std::size_t>(section.words[word].data() - section.mLine.data());
}

void replaceWord(OwnLines& lines, const PlainSection& section, std::size_t word, const std::string& text) {
  lines[0].content.replace(placeOf(section, word), section.words[word].size(), text);
}

sdp::Reason setFormats(OwnLines& lines, const PlainSection& section, const std::string& formats) {
  const Words words = wordsOf(formats);
  if (words.empty() || !staysInLine(formats)) return sdp::Reason::wrongText;
  // What says the same in another spelling stays.
  if (wordsOf(std::string_view(lines[0].content).substr(placeOf(section, 3))) == words)
    return sdp::Reason::none;
  lines[0].content.resize(placeOf(section, 3));
  for (const std::string_view word : words) {
    lines[0].content.append(word.data() == words[0].data() ? "" : " ").append(word);
  }
  return sdp::Reason::none;
}

sdp::Reason setConnection(OwnLines& lines, bool ofSession, const std::string& address) {
  // Addresses of the samples alone: what has a colon is IPv6.
  if (address.empty() || hasAnyOf(address, " %gx")) return sdp::Reason::wrongAddress;
  const std::string content = (address.find(':') == std::string::npos ? "c=IN IP4 " : "c=IN IP6 ") + address;
  for (OwnLine& line : lines) {
    if (!line.content.starts_with("c=")) continue;
    const auto says = [](std::string_view text) { return wordsOf(text.substr(2)); };
    if (says(line.content) != says(content)) line.content = content;
    return sdp::Reason::none;
  }
  std::size_t behind = ofSession ? 0 : 1;
  std::size_t found = behind;
  for (; behind < lines.size(); ++behind) {
    const std::string& text = lines[behind].content;
    if (ofSession && text.empty()) continue;
    if (ofSession ? !hasAnyOf(text.substr(0, 1), "vosiuep") : !text.starts_with("i=")) break;
    found = behind + 1;
  }
  if (found == 0) return sdp::Reason::noSuchSection;
  addBehind(lines, found - 1, content);
  return sdp::Reason::none;
}

void setDirection(OwnLines& lines, const OwnLines& session, sdp::Direction direction) {
  const std::string word(textOf(direction));
  const auto first = std::find_if(lines.begin(), lines.end(), isDirection);
  if (first == lines.end()) {
    const auto ofSession = std::find_if(session.begin(), session.end(), isDirection);
    const std::string_view holds =
        ofSession == session.end() ? "sendrecv" : attributeName(ofSession->content);
    if (holds != word) addAtEnd(lines, "a=" + word);
    return;
  }
  first->content = "a=" + word;
  lines.erase(std::remove_if(first + 1, lines.end(), isDirection), lines.end());
}

sdp::Reason setAttribute(OwnLines& lines, const Edit& edit) {
  if (!isName(edit.text) || !staysInLine(edit.value.value_or(""))) return sdp::Reason::wrongText;
  if (edit.kind == Kind::setAttribute) {
    for (OwnLine& line : lines) {
      if (!isNamed(line, edit.text)) continue;
      line.content = attributeLine(edit);
      return sdp::Reason::none;
    }
  }
  return addAtEnd(lines, attributeLine(edit)) ? sdp::Reason::none : sdp::Reason::noSuchSection;
}

sdp::Reason change(std::vector<OwnLines>& parts, const PlainSection& section, const Edit& edit) {
  OwnLines& lines = parts[edit.section];
  switch (edit.kind) {
    case Kind::port: {
      const std::string_view field = section.port();
      const std::size_t slash = std::min(field.find('/'), field.size());
      const std::string number(field.substr(0, slash));
      if (std::stoul(number) == edit.port) return sdp::Reason::none;
      replaceWord(lines, section, 1, std::to_string(edit.port).append(field.substr(slash)));
      return sdp::Reason::none;
    }
    case Kind::transport:
      if (edit.text.empty() || !staysInLine(edit.text) || hasAnyOf(edit.text, " \t"))
        return sdp::Reason::wrongText;
      replaceWord(lines, section, 2, edit.text);
      return sdp::Reason::none;
    case Kind::formats:
      return setFormats(lines, section, edit.text);
    case Kind::connection:
      return setConnection(lines, edit.section == 0, edit.text);
    case Kind::direction:
      setDirection(lines, parts[0], edit.direction);
      return sdp::Reason::none;
    case Kind::setAttribute:
    case Kind::addAttribute:
      return setAttribute(lines, edit);
    default:
      std::erase_if(lines, [&edit](const OwnLine& line) { return isNamed(line, edit.text); });
      return sdp::Reason::none;
  }
}

template <std::size_t count>
const char* oneOf(const char* const (&texts)[count], std::size_t number) {
  return texts[number % count];
}

constexpr const char* kTransports[] = {
    "RTP/AVP", "RTP/SAVPF", "UDP/TLS/RTP/SAVPF", "TCP/RTP/AVP", "udptl", "UDP/DTLS/SCTP", "", "a b"};
constexpr const char* kFormats[] = {"0", "0 8 101", "96 97 98 99 100", "8\t 8  0 ", "long-text", "1234 96",
                                    " ", "0\n8"};
constexpr const char* kAddresses[] = {"192.0.2.7", "2001:db8::7", "0.0.0.0",        "::", "fe80::1%x",
                                      "",          "host.xyz",    "255.255.255.255"};
constexpr const char* kNames[] = {"x",
                                  "mid",
                                  "group",
                                  "ice-options",
                                  "bundle-only",
                                  "sendonly",
                                  "rtpmap",
                                  "fmtp",
                                  "rtcp-fb",
                                  "label",
                                  "fingerprint",
                                  "setup",
                                  "crypto",
                                  "inactive",
                                  "ice-ufrag",
                                  "rtcp",
                                  "candidate",
                                  "key-mgmt",
                                  "x:y",
                                  "",
                                  "x y",
                                  "tool",
                                  "a-longer-name-than-most"};
constexpr const char* kValues[] = {"",
                                   "0",
                                   "1",
                                   "BUNDLE 0 1",
                                   "BUNDLE 1 2 0",
                                   "LS 0 1",
                                   "trickle",
                                   "x trickle",
                                   "96 opus/48000/2",
                                   "96 apt=97",
                                   "* nack",
                                   "96 nack pli",
                                   "97 rtx/90000",
                                   "sha-256 AA",
                                   "9 IN IP4 0.0.0.0",
                                   "x\ny"};

}  // namespace

Edit chosenEdit(std::size_t kind, std::size_t section, std::size_t first, std::size_t second,
                std::size_t sections) {
  Edit edit{static_cast<Kind>(kind % 8), static_cast<std::uint32_t>(section % (sections + 2))};
  switch (edit.kind) {
    case Kind::port:
      edit.port = static_cast<std::uint16_t>(first % 3 == 0 ? 0 : first * 256 + second);
      break;
    case Kind::transport:
      edit.text = oneOf(kTransports, first);
      break;
    case Kind::formats:
      edit.text = oneOf(kFormats, first);
      break;
    case Kind::connection:
      edit.text = oneOf(kAddresses, first);
      break;
    case Kind::direction:
      edit.direction = static_cast<sdp::Direction>(first % 4);
      break;
    default:
      edit.text = oneOf(kNames, first);
      // Long ones, so that what edits made outgrows the text.
      if (second % 29 == 28) {
        edit.value = std::string(second % 256 * 64, 'y');
      } else if (second % 5 != 0) {
        edit.value = oneOf(kValues, second);
      }
  }
  return edit;
}

sdp::Refusal perform(sdp::Document& document, const Edit& edit) {
  switch (edit.kind) {
    case Kind::port:
      return document.setPort(edit.section, edit.port);
    case Kind::transport:
      return document.setTransport(edit.section, edit.text);
    case Kind::formats:
      return document.setFormats(edit.section, edit.text);
    case Kind::connection:
      return document.setConnection(edit.section, edit.text);
    case Kind::direction:
      return document.setDirection(edit.section, edit.direction);
    case Kind::setAttribute:
      return document.setAttribute(edit.section, edit.text, edit.value);
    case Kind::addAttribute:
      return document.addAttribute(edit.section, edit.text, edit.value);
    default:
      return document.removeAttributes(edit.section, edit.text);
  }
}

Edited edited(std::string_view text, const Edit& edit) {
  const PlainBody body(text);
  Edited result{sdp::Reason::none, std::string(text)};
  const bool alsoOfSession = edit.kind >= Kind::connection && edit.kind != Kind::direction;
  if (edit.section > body.sectionCount() || (edit.section == 0 && !alsoOfSession)) {
    result.reason = sdp::Reason::noSuchSection;
  } else if (edit.section != 0 && !body.sections[edit.section].readable) {
    result.reason = sdp::Reason::unreadableSection;
  }
  if (result.reason != sdp::Reason::none) return result;
  std::vector<OwnLines> parts(body.sections.size());
  for (const PlainLine& line : body.lines) {
    parts[line.section].push_back({std::string(line.content), std::string(line.end)});
  }
  result.reason = change(parts, body.sections[edit.section], edit);
  if (result.reason != sdp::Reason::none) return result;
  result.text.clear();
  for (const OwnLines& lines : parts) {
    for (const OwnLine& line : lines) result.text.append(line.content).append(line.end);
  }
  return result;
}

std::string wordsFor(const Edit& edit) {
  constexpr const char* kWords[] = {"setPort",      "setTransport", "setFormats",   "setConnection",
                                    "setDirection", "setAttribute", "addAttribute", "removeAttributes"};
  return std::string(kWords[static_cast<std::size_t>(edit.kind)])
      .append(" of section ")
      .append(std::to_string(edit.section))
      .append(" \"")
      .append(edit.text)
      .append("\" \"")
      .append(edit.value.value_or("-").substr(0, 80))
      .append("\" ")
      .append(std::to_string(edit.port))
      .append(" ")
      .append(textOf(edit.direction));
}

}  // namespace plain
