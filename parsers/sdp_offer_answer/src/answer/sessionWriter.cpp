// Writing the session of an answer.

#include "answer/sessionWriter.h"

#include <algorithm>
#include <array>
#include <set>

#include "answer/iceAttributes.h"
#include "answer/sectionWriter.h"
#include "plainText.h"

namespace sdp::exchange {
namespace {

/// The first line of a kind ("o="); empty without one.
std::string_view firstLine(const Session& session, std::string_view kind) {
  for (const Line& line : session.lines()) {
    if (line.content.starts_with(kind)) return line.content;
  }
  return {};
}

void writeAll(const Session& session, std::string_view kind, Lines& out) {
  for (const Line& line : session.lines()) {
    if (line.content.starts_with(kind)) out.add({line.content});
  }
}

void writeFirst(const Session& session, std::string_view kind, std::string_view otherwise, Lines& out) {
  const std::string_view line = firstLine(session, kind);
  if (!line.empty() || !otherwise.empty()) out.add({line.empty() ? otherwise : line});
}

/// The c-line of the session, else that of the first section that has one: browsers want one here.
void writeConnection(const Document& local, Lines& out) {
  std::string_view connection = firstLine(local.session(), "c=");
  for (const Section& section : local.sections()) {
    if (!connection.empty()) break;
    for (const Line& line : section.lines()) {
      if (connection.empty() && line.content.starts_with("c=")) connection = line.content;
    }
  }
  if (!connection.empty()) out.add({connection});
}

void writeTimes(const Document& offer, Lines& out) {
  bool hasTime = false;
  for (const Line& line : offer.session().lines()) {
    if (!line.content.starts_with("t=") || !isPlain(line.content)) continue;
    out.add({line.content});
    hasTime = true;
  }
  if (!hasTime) out.add({"t=0 0"});
}

/// Attributes of the local session that are no such, that each section has for itself, or that answers never have.
constexpr std::array<std::string_view, 36> kNotOfSession{"sendrecv",
                                                         "sendonly",
                                                         "recvonly",
                                                         "inactive",
                                                         "fingerprint",
                                                         "setup",
                                                         "tls-id",
                                                         "ice-ufrag",
                                                         "ice-pwd",
                                                         "extmap",
                                                         "candidate",
                                                         "end-of-candidates",
                                                         "remote-candidates",
                                                         "ice-mismatch",
                                                         "key-mgmt",
                                                         "crypto",
                                                         "rtcp-mux",
                                                         "rtcp-mux-only",
                                                         "rtcp-rsize",
                                                         "rtcp",
                                                         "mid",
                                                         "bundle-only",
                                                         "simulcast",
                                                         "rid",
                                                         "tcap",
                                                         "acap",
                                                         "pcfg",
                                                         "rtpmap",
                                                         "fmtp",
                                                         "rtcp-fb",
                                                         "imageattr",
                                                         "framesize",
                                                         "gpmd",
                                                         "ice-lite",
                                                         "ice-options",
                                                         "ice-pacing"};

bool isOfIceSession(std::string_view name) {
  return name == "ice-lite" || name == "ice-options" || name == "ice-pacing";
}

void writeGroups(const Matches& matches, Lines& out) {
  for (const AnsweredGroup& group : matches.groups()) {
    std::string mids;
    std::set<std::string_view> written;
    for (const std::size_t member : group.members) {
      const std::string_view mid = matches.accepted()[member].offered.mid();
      if (written.insert(mid).second) mids.append(" ").append(mid);
    }
    out.add({"a=group:BUNDLE", mids});
  }
}

bool hasIce(const Sides& sides, const Matches& matches) {
  for (std::uint32_t index = 1; index <= matches.sections().size(); ++index) {
    const Accepted* const section = matches.find(index);
    if (section != nullptr && hasAnsweredIce(sides, *section)) return true;
  }
  return false;
}

void writeAttributes(const Sides& sides, const Matches& matches, Lines& out) {
  const bool withIce = hasIce(sides, matches);
  bool areGroupsWritten = false;
  for (const Attribute& attribute : sides.local.session().attributes()) {
    const std::string_view name = attribute.name;
    if (name == "group") {
      if (areGroupsWritten || attribute.fields()[0] != "BUNDLE") continue;
      writeGroups(matches, out);
      areGroupsWritten = true;
    } else if (name == "extmap-allow-mixed") {
      if (sides.offer.session().has(name)) out.add(attribute);
    } else if (isOfIceSession(name)) {
      if (withIce) out.add(attribute);
    } else if (std::find(kNotOfSession.begin(), kNotOfSession.end(), name) == kNotOfSession.end()) {
      out.add(attribute);
    }
  }
}

}  // namespace

void writeVersion(const Sides& sides, Lines& out) { writeFirst(sides.local.session(), "v=", "v=0", out); }

void writeSession(const Sides& sides, const Matches& matches, Lines& out) {
  const Session session = sides.local.session();
  writeFirst(session, "s=", "s=-", out);
  writeFirst(session, "i=", "", out);
  writeFirst(session, "u=", "", out);
  writeAll(session, "e=", out);
  writeAll(session, "p=", out);
  writeConnection(sides.local, out);
  writeAll(session, "b=", out);
  writeTimes(sides.offer, out);
  writeAttributes(sides, matches, out);
}

void writeRefused(const Section& offered, Lines& out) {
  std::string_view mLine = (*offered.lines().begin()).content.substr(2);
  const auto next = [&mLine](std::string_view otherwise) {
    const std::string_view field = plainOrEmpty(Fields::takeField(mLine));
    return field.empty() ? otherwise : field;
  };
  const std::string_view media = next("audio");
  next("");
  const std::string_view transport = next("RTP/AVP");
  out.add({"m=", media, " 0 ", transport, " ", next("0")});
  const std::optional<Attribute> mid = offered.attribute("mid");
  const std::string_view value = mid ? plainOrEmpty(mid->fields()[0]) : std::string_view();
  if (!value.empty()) out.addAttribute("mid", value);
}

}  // namespace sdp::exchange
