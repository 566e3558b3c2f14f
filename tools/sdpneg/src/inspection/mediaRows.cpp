#include "inspection/mediaRows.h"

#include <algorithm>
#include <array>

#include "inspection/heldMedia.h"
#include "inspection/names.h"
#include "output/printable.h"
#include "sdpNegotiatorParser.h"

namespace tool {
namespace {

std::vector<MediaFormat> formatsOf(const mDescription& media) {
  std::vector<MediaFormat> formats;
  for (int i = 0; i < sdp_MgetNoOfFormats(&media.mLine); ++i) {
    const char* format = sdp_MgetFormat(&media.mLine, i);
    char name[SDP_ENCODING_NAME_SIZE] = "";
    sdpParserMessage::getEncodingName(&media, format, name, sizeof name);
    formats.push_back({format, name});
  }
  return formats;
}

MediaRow rowOf(const mDescription& media) {
  MediaRow row{};
  row.media = media.mLine.media;
  row.port = std::string(media.mLine.port) + media.mLine.portSuffix;
  row.active = portOf(media) != 0;
  row.transport = transportOf(media);
  row.direction = directionName(sdpParserMessage::getConnectionMode(&media.aLine));
  row.label = sdpneg::viewOf(sdp_AfindAttribute(&media.aLine, "label"));
  if (hasConnection(media.cLine)) {
    row.connection = {sdp_CgetAddressType(&media.cLine, 0), sdp_CgetAddress(&media.cLine, 0)};
  }
  if (media.bLine.count > 0) row.bandwidth = sdp_BgetBandwidthValue(&media.bLine);
  row.formats = formatsOf(media);
  return row;
}

// --- the table -------------------------------------------------------------------------------------------

constexpr std::size_t kColumnCount = 9;
constexpr std::size_t kLongestFormats = 48;

/// The cells of a row; the formats, which come last, may take several lines.
struct Cells {
  std::array<std::string, kColumnCount> text;
  std::vector<std::string> formats;
};

std::string orDash(const std::string& text) { return text.empty() ? "-" : printable(text); }

/// Distributes formats over lines.
std::vector<std::string> formatLines(const std::vector<MediaFormat>& formats) {
  std::vector<std::string> lines(1);
  for (const MediaFormat& each : formats) {
    const std::string word = printable(each.format) + (each.name.empty() ? "" : " " + printable(each.name));
    std::string& line = lines.back();
    if (line.empty()) {
      line = word;
    } else if (line.size() + 2 + word.size() <= kLongestFormats) {
      line += ", " + word;
    } else {
      line += ',';
      lines.push_back(word);
    }
  }
  return lines;
}

Cells cellsOf(const MediaRow& row) {
  return {
      {std::to_string(row.number), std::to_string(row.line), orDash(row.media), orDash(row.port),
       orDash(row.transport), orDash(row.direction), orDash(row.connection ? row.connection->address : ""),
       row.bandwidth ? std::to_string(*row.bandwidth) : "-", orDash(row.label)},
      formatLines(row.formats)};
}

std::string line(const std::array<std::string, kColumnCount>& cells, std::string_view last,
                 const std::array<std::size_t, kColumnCount>& widths) {
  std::string text;
  for (std::size_t i = 0; i < kColumnCount; ++i) {
    text += "  " + cells[i] + std::string(widths[i] - cells[i].size(), ' ');
  }
  text += "  ";
  text += last;
  text.resize(text.find_last_not_of(' ') + 1);
  return text += '\n';
}

std::string layOut(const std::vector<Cells>& rows) {
  std::array<std::size_t, kColumnCount> widths{};
  for (const Cells& row : rows) {
    for (std::size_t i = 0; i < kColumnCount; ++i) widths[i] = std::max(widths[i], row.text[i].size());
  }
  std::string table;
  for (const Cells& row : rows) {
    table += line(row.text, row.formats.front(), widths);
    for (std::size_t i = 1; i < row.formats.size(); ++i) table += line({}, row.formats[i], widths);
  }
  return table;
}

}  // namespace

std::vector<MediaRow> mediaRowsOf(const Inspection& inspection) {
  std::vector<MediaRow> rows;
  for (const mDescription& media : heldMedia(*inspection.description)) {
    MediaRow row = rowOf(media);
    row.line = rows.size() < inspection.mediaLines.size() ? inspection.mediaLines[rows.size()] : 0;
    rows.push_back(std::move(row));
    rows.back().number = rows.size();
  }
  return rows;
}

std::string mediaTable(const Inspection& inspection) {
  std::vector<Cells> rows;
  rows.push_back(
      {{"m-line", "line", "media", "port", "transport", "direction", "address", "bandwidth", "label"},
       {"formats"}});
  for (const MediaRow& row : mediaRowsOf(inspection)) rows.push_back(cellsOf(row));
  return layOut(rows);
}

}  // namespace tool
