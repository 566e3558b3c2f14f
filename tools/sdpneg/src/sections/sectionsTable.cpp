#include "sections/sectionsTable.h"

#include <unordered_set>
#include <utility>
#include <vector>

#include "output/columns.h"
#include "output/printable.h"

namespace tool {
namespace {

std::string orDash(std::string_view text) { return text.empty() ? "-" : printable(text); }

/// The names of a section's formats, each once; of those without a name themselves.
std::string codecsOf(const sdp::Section& section) {
  std::string text;
  std::unordered_set<std::string_view> told;
  for (const sdp::Format& format : section.formats()) {
    const std::string_view name = format.encoding ? format.encoding->name : format.format;
    if (!told.insert(name).second) continue;
    text.append(text.empty() ? "" : ", ").append(printable(name));
  }
  return text;
}

std::string portOf(const sdp::Section& section) {
  const std::string count = section.portCount() == 1 ? "" : "/" + std::to_string(section.portCount());
  return std::to_string(section.port()) + count;
}

Cell securityOf(const sdp::Section& section) {
  const sdp::Security security = section.security();
  const bool isPlain = security == sdp::Security::plain || security == sdp::Security::osrtp;
  return {std::string(textOf(security)), security == sdp::Security::keyless ? Style::bad
                                         : isPlain                          ? Style::warning
                                                                            : Style::good};
}

std::vector<Cell> rowOf(const sdp::Section& section, std::size_t firstLine) {
  const std::string number = std::to_string(section.index());
  if (!section.isReadable()) {
    return {{number},
            {"unreadable m-line, line " + std::to_string(firstLine + section.lineNumber() - 1), Style::bad}};
  }
  const auto connection = section.connection();
  const auto bundle = section.bundle();
  return {{number},
          {orDash(section.mid())},
          {orDash(section.media())},
          {orDash(connection ? connection->address : std::string_view())},
          {portOf(section), section.isDisabled() ? std::optional(Style::warning) : std::nullopt},
          {orDash(section.transport())},
          securityOf(section),
          {std::string(textOf(section.direction()))},
          {section.hasRtcpMux() ? "yes" : "-"},
          {bundle ? std::to_string(*bundle) : "-"},
          {codecsOf(section)}};
}

constexpr std::string_view kHeadings[] = {"section",  "mid",       "media",    "address", "port",  "profile",
                                          "security", "direction", "rtcp-mux", "bundle",  "codecs"};

}  // namespace

std::string sectionsTable(const sdp::Document& document, std::size_t firstLine, const Palette& palette) {
  if (document.sectionCount() == 0) return "  no sections\n";
  std::vector<std::vector<Cell>> rows(1);
  for (const std::string_view heading : kHeadings) rows[0].push_back({std::string(heading), Style::label});
  for (const sdp::Section& section : document.sections()) rows.push_back(rowOf(section, firstLine));
  return inColumns(rows, palette);
}

}  // namespace tool
