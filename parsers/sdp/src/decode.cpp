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
  Decoder(sDescription& description, const char* readable) : description_(description), readable_(readable) {}

  /// Reads a line if it is an attribute's.
  bool readAttributeLine(std::string_view line);
  /// Reads a line of another kind.
  Problem read(std::string_view line);

 private:
  Problem readMediaLine(std::string_view value);
  Problem readSectionLine(char letter, std::string_view value);
  Problem readSessionLine(char letter, std::string_view value);
  template <typename Section>
  Problem readInto(Section& section, char letter, std::string_view value);
  template <typename Line>
  void readOnce(std::string_view value, unsigned int bit, unsigned int& presence, Line& line);

  template <typename Section>
  void readAttributeInto(Section& section, std::string_view value) {
    if (!readAttribute(value, readable_, section.aLine)) noteCut(true);
    section.linePresence |= SDP_HAS_A_LINE;
  }

  void noteCut(bool cut) {
    if (cut) description_.incomplete = 1;
  }

  sDescription& description_;
  const char* const readable_;
  mDescription* media_ = nullptr;
  bool timeLeftOut_ = false;  // the last time line was left out; its repeats go with it
};

// A line of a kind that stands once: a second one is left out.
template <typename Line>
void Decoder::readOnce(std::string_view value, unsigned int bit, unsigned int& presence, Line& line) {
  if ((presence & bit) != 0) return noteCut(true);
  noteCut(!copyField(line.text, value, readable_));
  presence |= bit;
}

template <typename Section>
Problem Decoder::readInto(Section& section, char letter, std::string_view value) {
  bool cut = false;
  Problem problem;
  switch (letter) {
    case 'b':
      problem = readBandwidth(value, readable_, section.bLine);
      cut = section.bLine.incomplete != 0;
      section.linePresence |= SDP_HAS_B_LINE;
      break;
    case 'c':
      problem = readConnection(value, readable_, section.cLine, cut);
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
    return readOnlyBandwidth(value, readable_, ignored);
  }
  if (letter == 'c') {
    c_line ignored;
    bool cut = false;
    ignored.count = 0;
    return readConnection(value, readable_, ignored, cut);
  }
  return {};
}

Problem Decoder::readMediaLine(std::string_view value) {
  if (description_.noOfMDs >= SDP_MEDIA_CAPACITY) {
    m_line ignored;
    const Problem problem = readMedia(value, readable_, ignored);
    media_ = nullptr;
    ++description_.noOfMDs;
    noteCut(true);
    return problem;
  }
  mDescription& media = description_.media[description_.noOfMDs];
  if (const Problem problem = readMedia(value, readable_, media.mLine)) return problem;
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
      readEntry(value, readable_, d.eLine, cut);
      d.linePresence |= SDP_HAS_E_LINE;
      break;
    case 'p':
      readEntry(value, readable_, d.pLine, cut);
      d.linePresence |= SDP_HAS_P_LINE;
      break;
    case 't':
      readEntry(value, readable_, d.tLine, cut);
      timeLeftOut_ = cut && d.tLine.count == SDP_TIME_CAPACITY;
      d.linePresence |= SDP_HAS_T_LINE;
      break;
    case 'r':
      cut = timeLeftOut_;
      if (!timeLeftOut_) readRepeat(value, readable_, d.tLine.count, d.rLine, cut);
      d.linePresence |= SDP_HAS_R_LINE;
      break;
    case 'o': {
      o_line again;
      const bool repeated = d.oLine.present != 0;
      const Problem problem = readOrigin(value, readable_, repeated ? again : d.oLine, cut);
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

bool Decoder::readAttributeLine(std::string_view line) {
  if (!line.starts_with("a=")) return false;
  line.remove_prefix(2);
  if (media_ != nullptr) {
    readAttributeInto(*media_, line);
  } else if (description_.noOfMDs == 0) {
    readAttributeInto(description_, line);
  }
  return true;
}

Problem Decoder::read(std::string_view line) {
  if (!isLetter(line[0])) return expected("a line of a letter, an equals sign and a value", line.data());
  if (line.size() < 2 || line[1] != '=') return expected("an equals sign behind the letter", line.data() + 1);
  const std::string_view value = line.substr(2);
  switch (line[0]) {
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

// Goes to the next line that is not empty.
bool nextFilled(LineReader& lines) {
  while (lines.next()) {
    if (!lines.line().empty()) return true;
  }
  return false;
}

constexpr const char* kFirstLineWanted = "a first line \"v=\"";

// Reads all lines; the reader stays at the line of a problem.
Problem decodeLines(LineReader& lines, sDescription& description, OriginOffsets& origin) {
  if (!nextFilled(lines)) return expected(kFirstLineWanted, lines.position());
  Decoder decoder(description, lines.textEnd());
  bool first = true;
  do {
    if (lines.loneCr() != nullptr) return expected(kLineEndWanted, lines.loneCr());
    const std::string_view line = lines.line();
    if (first && !line.starts_with("v=")) return expected(kFirstLineWanted, line.data());
    first = false;
    if (decoder.readAttributeLine(line)) continue;
    if (const Problem problem = decoder.read(line)) return problem;
    if (origin.end == 0 && description.oLine.present != 0) origin = {lines.startOffset(), lines.endOffset()};
  } while (nextFilled(lines));
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
