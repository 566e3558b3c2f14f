#include "calls/bodyParts.h"

#include <cstddef>

#include "calls/sdpFacts.h"
#include "sdpDocument.h"

namespace tool {
namespace {

template <typename Lines>
std::size_t sizeOf(const Lines& lines) {
  std::size_t size = 0;
  for (const sdp::Line& line : lines) size += line.content.size() + line.end.size();
  return size;
}

}  // namespace

std::vector<BodyPart> bodyParts(std::string_view sdp) {
  std::vector<BodyPart> parts;
  sdp::Document body;
  if (body.read(sdp)) return {{"session", sdp}};
  std::size_t begin = sizeOf(body.session().lines());
  parts.push_back({"session", sdp.substr(0, begin)});
  for (const sdp::Section& section : body.sections()) {
    const std::size_t size = sizeOf(section.lines());
    const std::string media = section.isReadable() ? " " + shownPiece(section.media(), 16) : std::string();
    parts.push_back({std::to_string(section.index()) + media, sdp.substr(begin, size)});
    begin += size;
  }
  return parts;
}

}  // namespace tool
