#include "mLine.h"

#include "lineFormats.h"
#include "singleLine.h"

// Media lines (RFC 4566 5.14).

namespace sdpcodec {

namespace {

unsigned int mediaTypeOf(std::string_view name) {
  static constexpr struct {
    std::string_view name;
    eMediaType type;
  } kTypes[] = {{"audio", MEDIA_AUDIO}, {"video", MEDIA_VIDEO},     {"application", MEDIA_APPLICATION},
                {"image", MEDIA_IMAGE}, {"message", MEDIA_MESSAGE}, {"text", MEDIA_TEXT}};
  for (const auto& known : kTypes) {
    if (name == known.name) return known.type;
  }
  return 0;
}

// Returns whether all formats fitted.
bool readFormats(LineFields& fields, const char* readable, m_line& line) {
  bool whole = true;
  line.formatCount = 0;
  while (!fields.atEnd()) {
    if (line.formatCount == SDP_FORMAT_CAPACITY) return false;
    whole &= copyField(line.formats[line.formatCount++], fields.take(), readable);
  }
  return whole;
}

}  // namespace

Problem readMedia(std::string_view value, const char* readable, m_line& line) {
  LineFields fields(value, readable);
  if (fields.atEnd()) return expected("a media name", fields.position());
  const std::string_view media = fields.take();
  if (fields.atEnd() || !isDigit(*fields.position())) return expected("a port", fields.position());
  const std::string_view port = fields.take();
  if (fields.atEnd()) return expected("a transport", fields.position());
  const std::size_t suffix = positionOf('/', port, readable);
  line.mediaType = mediaTypeOf(media);
  bool whole = copyField(line.media, media, readable);
  whole &= copyField(line.port, port.substr(0, suffix), readable);
  whole &= copyField(line.portSuffix, port.substr(suffix), readable);
  whole &= copyField(line.transport, fields.take(), readable);
  whole &= readFormats(fields, readable, line);
  line.incomplete = whole ? 0 : 1;
  return {};
}

void writeMedia(TextWriter& out, const m_line& line) {
  if (!out.reserve(sizeof line + SDP_FORMAT_CAPACITY + 16)) return;
  LineWriter text = out.line('m');
  text.put(line.media).put(' ').put(line.port).put(line.portSuffix).put(' ').put(line.transport);
  for (int i = 0; i < usable(line.formatCount, SDP_FORMAT_CAPACITY); ++i) text.put(' ').put(line.formats[i]);
  out.endLine(text);
}

}  // namespace sdpcodec

using namespace sdpcodec;

const char* sdp_MgetPort(const m_line* line) { return line != nullptr ? line->port : nullptr; }

const char* sdp_MgetTransport(const m_line* line) { return line != nullptr ? line->transport : nullptr; }

int sdp_MgetNoOfFormats(const m_line* line) {
  return line != nullptr ? usable(line->formatCount, SDP_FORMAT_CAPACITY) : 0;
}

const char* sdp_MgetFormat(const m_line* line, int index) {
  if (line == nullptr || !inList(index, line->formatCount, SDP_FORMAT_CAPACITY)) return nullptr;
  return line->formats[index];
}

unsigned short sdp_Mdecode_r(m_line* line, const char*& position, char* error, int& errorLine,
                             int& errorColumn) {
  return decodeSingleLine(
      'm', position, error, errorLine, errorColumn,
      line == nullptr
          ? nullptr
          : +[](std::string_view value, const char* readable,
                void* record) { return readMedia(value, readable, *static_cast<m_line*>(record)); },
      line);
}
