#include <cstring>
#include <string_view>

#include "errorText.h"
#include "lineFormats.h"
#include "lineReader.h"
#include "sessionDescription.h"

// From a text to its description, line by line.

namespace sdpcodec {

namespace {

void resetSession(sDescription& description) {
  description.oLine.present = 0;
  description.cLine.count = 0;
  description.bLine.count = 0;
  description.bLine.incomplete = 0;
  description.aLine.count = 0;
  description.noOfMDs = 0;
  description.linePresence = 0;
  description.mediaKinds = 0;
  description.incomplete = 0;
  description.eLine.count = 0;
  description.pLine.count = 0;
  description.tLine.count = 0;
  description.rLine.count = 0;
  description.vLine.text[0] = '\0';
  description.sLine.text[0] = '\0';
  description.iLine.text[0] = '\0';
  description.uLine.text[0] = '\0';
  description.zLine.text[0] = '\0';
  description.kLine.text[0] = '\0';
}

void resetMedia(mDescription& media) {
  media.cLine.count = 0;
  media.bLine.count = 0;
  media.bLine.incomplete = 0;
  media.aLine.count = 0;
  media.linePresence = 0;
  media.iLine.text[0] = '\0';
  media.kLine.text[0] = '\0';
}

// Fills a description line by line. The records that lines of the section at hand go to change with each
// m-line; behind the last media description that is held they go nowhere.
class Decoder {
 public:
  Decoder(sDescription& description, const LineReader& lines) : description_(description), lines_(lines) {}

  Problem read(std::string_view line);

 private:
  Problem readMediaLine(std::string_view value);
  Problem readSectionLine(char letter, std::string_view value);
  Problem readSessionLine(char letter, std::string_view value);
  template <typename Section>
  Problem readInto(Section& section, char letter, std::string_view value);
  template <typename Line>
  void readOnce(std::string_view value, unsigned int bit, unsigned int& presence, Line& line);

  void noteCut(bool cut) { description_.incomplete |= cut ? 1 : 0; }

  sDescription& description_;
  const LineReader& lines_;
  mDescription* media_ = nullptr;
  bool timeLeftOut_ = false;  // the last time line was left out; its repeats go with it
};

// A line of a kind that stands once: a second one is left out.
template <typename Line>
void Decoder::readOnce(std::string_view value, unsigned int bit, unsigned int& presence, Line& line) {
  if ((presence & bit) != 0) return noteCut(true);
  noteCut(!copyField(line.text, value, lines_.textEnd()));
  presence |= bit;
}

template <typename Section>
Problem Decoder::readInto(Section& section, char letter, std::string_view value) {
  bool cut = false;
  Problem problem;
  switch (letter) {
    case 'a':
      cut = !readAttribute(value, lines_.textEnd(), section.aLine);
      section.linePresence |= SDP_HAS_A_LINE;
      break;
    case 'b':
      problem = readBandwidth(value, lines_.textEnd(), section.bLine);
      cut = section.bLine.incomplete != 0;
      section.linePresence |= SDP_HAS_B_LINE;
      break;
    case 'c':
      problem = readConnection(value, lines_.textEnd(), section.cLine, cut);
      section.linePresence |= SDP_HAS_C_LINE;
      break;
    case 'i':
      readOnce(value, SDP_HAS_I_LINE, section.linePresence, section.iLine);
      break;
    default:
      readOnce(value, SDP_HAS_K_LINE, section.linePresence, section.kLine);
      break;
  }
  noteCut(cut);
  return problem;
}

// The lines that the session and each media description may have.
Problem Decoder::readSectionLine(char letter, std::string_view value) {
  if (media_ != nullptr) return readInto(*media_, letter, value);
  if (description_.noOfMDs == 0) return readInto(description_, letter, value);
  // Behind the media descriptions that are held a line is checked and left out.
  if (letter == 'b') {
    b_line ignored;
    return readOnlyBandwidth(value, lines_.textEnd(), ignored);
  }
  if (letter == 'c') {
    c_line ignored;
    bool cut = false;
    ignored.count = 0;
    return readConnection(value, lines_.textEnd(), ignored, cut);
  }
  return {};
}

Problem Decoder::readMediaLine(std::string_view value) {
  if (description_.noOfMDs >= SDP_MEDIA_CAPACITY) {
    m_line ignored;
    const Problem problem = readMedia(value, lines_.textEnd(), ignored);
    media_ = nullptr;
    ++description_.noOfMDs;
    noteCut(true);
    return problem;
  }
  mDescription& media = description_.media[description_.noOfMDs];
  if (const Problem problem = readMedia(value, lines_.textEnd(), media.mLine)) return problem;
  resetMedia(media);
  noteCut(media.mLine.incomplete != 0);
  media_ = &media;
  ++description_.noOfMDs;
  return {};
}

// The lines of the session alone, wherever they stand.
Problem Decoder::readSessionLine(char letter, std::string_view value) {
  sDescription& d = description_;
  bool cut = false;
  switch (letter) {
    case 'v':
      readOnce(value, SDP_HAS_V_LINE, d.linePresence, d.vLine);
      break;
    case 's':
      readOnce(value, SDP_HAS_S_LINE, d.linePresence, d.sLine);
      break;
    case 'u':
      readOnce(value, SDP_HAS_U_LINE, d.linePresence, d.uLine);
      break;
    case 'z':
      readOnce(value, SDP_HAS_Z_LINE, d.linePresence, d.zLine);
      break;
    case 'e':
      readEntry(value, lines_.textEnd(), d.eLine, cut);
      d.linePresence |= SDP_HAS_E_LINE;
      break;
    case 'p':
      readEntry(value, lines_.textEnd(), d.pLine, cut);
      d.linePresence |= SDP_HAS_P_LINE;
      break;
    case 't':
      readEntry(value, lines_.textEnd(), d.tLine, cut);
      timeLeftOut_ = cut && d.tLine.count == SDP_TIME_CAPACITY;
      d.linePresence |= SDP_HAS_T_LINE;
      break;
    case 'r':
      cut = timeLeftOut_;
      if (!timeLeftOut_) readRepeat(value, lines_.textEnd(), d.tLine.count, d.rLine, cut);
      d.linePresence |= SDP_HAS_R_LINE;
      break;
    case 'o': {
      o_line again;
      const bool repeated = d.oLine.present != 0;
      const Problem problem = readOrigin(value, lines_.textEnd(), repeated ? again : d.oLine, cut);
      d.linePresence |= SDP_HAS_O_LINE;
      noteCut(cut || repeated);
      return problem;
    }
    default:  // a letter that RFC 4566 does not know
      cut = true;
      break;
  }
  noteCut(cut);
  return {};
}

Problem Decoder::read(std::string_view line) {
  if (!isLetter(line[0])) return expected("a line of a letter, an equals sign and a value", line.data());
  if (line.size() < 2 || line[1] != '=') return expected("an equals sign behind the letter", line.data() + 1);
  const std::string_view value = line.substr(2);
  switch (line[0]) {
    case 'a':
    case 'b':
    case 'c':
    case 'i':
    case 'k':
      return readSectionLine(line[0], value);
    case 'm':
      return readMediaLine(value);
    default:
      return readSessionLine(line[0], value);
  }
}

struct OriginOffsets {
  std::size_t start = 0;
  std::size_t end = 0;
};

// Reads all lines; the reader stays at the line of a problem.
Problem decodeLines(LineReader& lines, sDescription& description, OriginOffsets& origin) {
  Decoder decoder(description, lines);
  bool first = true;
  while (lines.next()) {
    const std::string_view line = lines.line();
    if (lines.loneCr() != nullptr) return expected(kLineEndWanted, lines.loneCr());
    if (line.empty()) continue;
    if (first && (line[0] != 'v' || line.size() < 2 || line[1] != '=')) {
      return expected("a first line \"v=\"", line.data());
    }
    first = false;
    const bool hadOrigin = description.oLine.present != 0;
    if (const Problem problem = decoder.read(line)) return problem;
    if (!hadOrigin && description.oLine.present != 0) origin = {lines.startOffset(), lines.endOffset()};
  }
  if (first) return expected("a first line \"v=\"", lines.position());
  return {};
}

}  // namespace
}  // namespace sdpcodec

using namespace sdpcodec;

unsigned short sdp_decodeOpt_r(sDescription* description, const char* text, eSdpType /*type*/, char* error,
                               bool /*option*/, unsigned short& oLineStart, unsigned short& oLineEnd) {
  oLineStart = 0;
  oLineEnd = 0;
  if (description == nullptr) {
    writeError(error, {1, 1}, "a record to decode into", {}, true);
    return 1;
  }
  resetSession(*description);
  if (text == nullptr) {
    writeError(error, {1, 1}, "a first line \"v=\"", {}, true);
    return 1;
  }
  const std::string_view body(text);
  LineReader lines(body);
  OriginOffsets origin;
  if (const Problem problem = decodeLines(lines, *description, origin)) {
    resetSession(*description);
    // A text of empty lines only has its problem behind the last of them.
    const bool behindAll = problem.at == text + body.size() && lines.line().empty();
    const std::string_view line = behindAll ? body.substr(body.size()) : lines.line();
    unsigned int column = 1;
    writeLineError(error, lines.number() + (behindAll ? 1U : 0U), line, problem,
                   line.data() + line.size() == text + body.size(), column);
    return 1;
  }
  if (error != nullptr) error[0] = '\0';
  if (origin.end <= UINT16_MAX) {
    oLineStart = static_cast<unsigned short>(origin.start);
    oLineEnd = static_cast<unsigned short>(origin.end);
  }
  return 0;
}
