#include "inspection/inspection.h"

#include <new>
#include <utility>

#include "input/captureFile.h"
#include "input/inputFiles.h"
#include "input/sipMessage.h"
#include "inspection/refusal.h"
#include "inspection/videoCodecs.h"
#include "sdpNegotiatorParser.h"

namespace tool {
namespace {

/// Decodes a text that the library has decoded before.
DescriptionPointer decode(const char* text) {
  auto description = std::make_unique_for_overwrite<sDescription>();
  unsigned short oLineStart = 0;
  unsigned short oLineEnd = 0;
  sdp_decodeOpt_r(description.get(), text, SDP_TYPE_UNKNOWN, nullptr, false, oLineStart, oLineEnd);
  return description;
}

/// Finds in the description what an object does not keep. A text that requests do not take has no list of media and
/// no video codecs.
void askFurther(const cSdpNegotiator& object, Inspection& inspection) {
  char text[MAX_SDP_PROTOCOL_DATA_SIZE];
  if (object.getSDP(text, sizeof text) != 0) return;
  sdpParserMessage::getMedia(*inspection.description, inspection.media);
  inspection.videoCodecs = videoCodecsOf(*inspection.description);
}

/// Parses, and asks further where all is wanted, with the traces of that.
/// @return why the body is refused
std::optional<sSdpRefusal> parse(const char* text, Detail detail, Inspection& inspection) {
  const TraceLines trace;
  cSdpNegotiator object;
  std::optional<sSdpRefusal> refusal;
  if (object.sdpParse(text, SDP_TYPE_UNKNOWN) != 0) {
    refusal = sdpLastRefusal();
  } else {
    inspection.object = object;
    if (detail == Detail::all) {
      inspection.description = decode(text);
      askFurther(object, inspection);
    }
  }
  inspection.trace = trace.lines();
  return refusal;
}

/// That a text is no SDP says more than that it is refused unread.
sSdpRefusal whyRefused(const char* text, const sSdpRefusal& refusal) {
  if (refusal.reason != SDP_REFUSED_EMPTY_TEXT && refusal.reason != SDP_REFUSED_TEXT_TOO_LONG) return refusal;
  const RefusalWatch watch;
  sSdpParsedData data;
  data.init();
  sdpParserMessage::sdpParse(text, SDP_TYPE_UNKNOWN, data);
  return watch.saw(SDP_REFUSED_NOT_DECODED) ? sdpLastRefusal() : refusal;
}

void inspectRefused(const char* text, const BodyLines& lines, const sSdpRefusal& refusal,
                    Inspection& inspection) {
  if (refusal.reason == SDP_REFUSED_NOT_DECODED) {
    inspection.result = Result::undecodable;
    inspection.problem = explainDecoding(refusal, lines);
    return;
  }
  inspection.result = Result::refused;
  inspection.description = decode(text);
  inspection.problem = explainRefusal(refusal, *inspection.description, lines);
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

void readDocument(std::string_view bytes, std::size_t firstLine, Inspection& inspection) {
  inspection.firstLine = firstLine;
  if (inspection.document.emplace().read(bytes)) throw std::bad_alloc();  // no input is too long
}

void inspectBody(std::string_view bytes, std::size_t firstLine, Detail detail, Inspection& inspection) {
  const std::size_t nul = bytes.find('\0');
  const std::string text(bytes.substr(0, nul));
  const BodyLines lines(text, firstLine);
  if (const auto refusal = parse(text.c_str(), detail, inspection)) {
    inspectRefused(text.c_str(), lines, whyRefused(text.c_str(), *refusal), inspection);
  } else {
    inspection.result = Result::parsed;
  }
  if (inspection.isSdp()) {
    for (std::size_t i = 0; i < lines.mediaCount(); ++i) inspection.mediaLines.push_back(lines.mediaLine(i));
  }
  if (inspection.description && inspection.object) {
    inspection.bestEffort = bestEffortOf(*inspection.object, *inspection.description);
  }
  if (detail == Detail::all) readDocument(bytes, firstLine, inspection);
  if (nul != std::string_view::npos) noteNul(bytes.size(), nul, lines, inspection);
}

}  // namespace

Inspection inspect(std::string_view bytes, Detail detail) {
  if (auto capture = captureProblem(bytes)) return unreadable(std::move(*capture));
  BodyRange body = findSdpBody(bytes);
  if (body.problem) return unreadable(std::move(*body.problem));
  if (body.range.begin == body.range.end) return unreadable({{1, 1}, "there is no text"});
  const std::string_view text = body.range.of(bytes);
  const std::size_t firstLine = placeOf(bytes, body.range.begin).line;
  Inspection inspection;
  if (bytes.size() > kMaxInputSize) {
    inspection = unreadable(tooLong(kMaxInputSize));
    if (detail == Detail::all) readDocument(text, firstLine, inspection);
  } else {
    inspectBody(text, firstLine, detail, inspection);
  }
  inspection.notes = std::move(body.notes);
  return inspection;
}

bool Inspection::isWhole() const {
  return result == Result::parsed && !problem && object->getRawSdpSize() != 0 &&
         sdp_isComplete(description.get());
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
