#include "inspection/inspection.h"

#include <algorithm>
#include <iterator>
#include <utility>

#include "input/captureFile.h"
#include "input/sipMessage.h"
#include "inspection/refusal.h"
#include "text/search.h"

namespace tool {
namespace {

/// The codec's words with what it quotes as it stands in the text. The codec puts "?" for every byte that is no
/// printable ASCII character.
std::string withQuotation(std::string words, std::string_view text) {
  constexpr std::string_view kFound = ", found \"";
  const std::size_t found = words.find(kFound);
  const std::size_t end = words.rfind('"');
  if (found == std::string::npos || end < found + kFound.size()) return words;
  const std::size_t begin = found + kFound.size();
  for (std::size_t i = begin; i < end && i - begin < text.size(); ++i) {
    const char c = text[i - begin];
    const bool hidden = words[i] == '?' && (c < ' ' || c > '~');
    if (!hidden && words[i] != c) return words;  // it quotes something else
    words[i] = c;
  }
  return words;
}

/// The codec's message "line N, column M: what", as a place of the input.
Problem decodingProblem(std::string_view message, const BodyLines& lines) {
  const auto number = [&message](std::string_view word) -> std::size_t {
    if (!sdpneg::startsWith(message, word)) return 0;
    const auto leading = sdpneg::leadingNumber<std::size_t>(message.substr(word.size()));
    if (!leading) return 0;
    message.remove_prefix(word.size() + leading->length);
    return leading->value;
  };
  const std::size_t line = number("line ");
  const std::size_t column = number(", column ");
  if (column != 0 && sdpneg::startsWith(message, ": ")) message.remove_prefix(2);
  if (line == 0) return {{}, std::string(message)};
  return {lines.bodyPlace(line, std::max<std::size_t>(column, 1)),
          withQuotation(std::string(message), lines.textFrom(line, column))};
}

/// Decodes a text ended by NUL.
/// @return the problem of a text that is no SDP
std::optional<Problem> decode(const char* text, const BodyLines& lines, sDescription& description) {
  char error[SDP_ERROR_TEXT_SIZE] = "";
  unsigned short oLineStart = 0;
  unsigned short oLineEnd = 0;
  if (sdp_decodeOpt_r(&description, text, SDP_TYPE_UNKNOWN, error, false, oLineStart, oLineEnd) == 0) {
    return std::nullopt;
  }
  return decodingProblem(error, lines);
}

/// Parses and asks what the object does not keep, with the traces of all of it.
unsigned short parse(const char* text, Inspection& inspection) {
  const TraceLines trace;
  cSdpNegotiator object;
  const unsigned short status = object.sdpParse(text, SDP_TYPE_UNKNOWN);
  if (status == 0) {
    unsigned char codecs[SDP_VIDEO_CODEC_LIST_SIZE];
    unsigned int attributes = 0;
    object.getMedia(inspection.media);
    object.getVideoCodecs(codecs, attributes);
    const auto end = std::find(std::begin(codecs), std::end(codecs), SDP_NO_CODEC);
    inspection.videoCodecs.assign(std::begin(codecs), end);
    inspection.object = object;
  }
  inspection.trace = trace.lines();
  return status;
}

void inspectDecoded(const char* text, const BodyLines& lines, Inspection& inspection) {
  for (std::size_t i = 0; i < lines.mediaCount(); ++i) inspection.mediaLines.push_back(lines.mediaLine(i));
  const unsigned short status = parse(text, inspection);
  inspection.result = status == 0 ? Result::parsed : Result::refused;
  if (inspection.object) inspection.bestEffort = bestEffortOf(*inspection.object, *inspection.description);
  if (status != 0) inspection.problem = explainRefusal(inspection.trace, *inspection.description, lines);
}

/// The library reads up to a NUL. That there is one is what is wrong with an input that is fine otherwise.
void noteNul(std::size_t length, std::size_t nul, const BodyLines& lines, Inspection& inspection) {
  const std::string what = "a NUL byte ends the text";
  if (!inspection.problem) {
    inspection.problem =
        Problem{lines.offset(nul), what + "; " + std::to_string(length - nul) + " bytes are not read"};
    return;
  }
  const Place place = lines.offset(nul);
  inspection.problem->reason +=
      "; " + what + " at line " + std::to_string(place.line) + ", column " + std::to_string(place.column);
}

void inspectBody(std::string_view bytes, std::size_t firstLine, Inspection& inspection) {
  const std::size_t nul = bytes.find('\0');
  const std::string text(bytes.substr(0, nul));
  const BodyLines lines(text, firstLine);
  inspection.description = std::make_unique_for_overwrite<sDescription>();
  inspection.problem = decode(text.c_str(), lines, *inspection.description);
  if (inspection.problem) {
    inspection.result = Result::undecodable;
    parse(text.c_str(), inspection);  // for its traces
    inspection.description.reset();
  } else {
    inspectDecoded(text.c_str(), lines, inspection);
  }
  if (nul != std::string_view::npos) noteNul(bytes.size(), nul, lines, inspection);
}

}  // namespace

Inspection inspect(std::string_view bytes) {
  if (auto capture = captureProblem(bytes)) return unreadable(std::move(*capture));
  BodyRange body = findSdpBody(bytes);
  if (body.problem) return unreadable(std::move(*body.problem));
  if (body.range.begin == body.range.end) return unreadable({{1, 1}, "there is no text"});
  Inspection inspection;
  inspection.notes = std::move(body.notes);
  inspectBody(body.range.of(bytes), placeOf(bytes, body.range.begin).line, inspection);
  return inspection;
}

Inspection unreadable(Problem problem) {
  Inspection inspection;
  inspection.problem = std::move(problem);
  return inspection;
}

const char* resultName(Result result) {
  switch (result) {
    case Result::parsed:
      return "parsed";
    case Result::refused:
      return "refused";
    case Result::undecodable:
      return "undecodable";
    default:
      return "unreadable";
  }
}

}  // namespace tool
