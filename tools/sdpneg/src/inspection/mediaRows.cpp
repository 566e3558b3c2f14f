#include "inspection/mediaRows.h"

#include <utility>

#include "inspection/heldMedia.h"
#include "inspection/names.h"
#include "output/columns.h"
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

constexpr std::size_t kLongestFormats = 48;

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

/// Adds a row; the formats, which come last, may take several lines.
void addRow(const MediaRow& row, std::vector<std::vector<Cell>>& rows) {
  const std::vector<std::string> formats = formatLines(row.formats);
  rows.push_back({{std::to_string(row.number)},
                  {std::to_string(row.line)},
                  {orDash(row.media)},
                  {orDash(row.port)},
                  {orDash(row.transport)},
                  {orDash(row.direction)},
                  {orDash(row.connection ? row.connection->address : "")},
                  {row.bandwidth ? std::to_string(*row.bandwidth) : "-"},
                  {orDash(row.label)},
                  {formats.front()}});
  for (std::size_t i = 1; i < formats.size(); ++i) {
    std::vector<Cell> below(rows.front().size());
    below.back().text = formats[i];
    rows.push_back(std::move(below));
  }
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
  std::vector<std::vector<Cell>> rows;
  rows.push_back({{"m-line"},
                  {"line"},
                  {"media"},
                  {"port"},
                  {"transport"},
                  {"direction"},
                  {"address"},
                  {"bandwidth"},
                  {"label"},
                  {"formats"}});
  for (const MediaRow& row : mediaRowsOf(inspection)) addRow(row, rows);
  return inColumns(rows, Palette(false));
}

}  // namespace tool
