// Any two texts as offer and answer, with a line of `#` alone between them: they are judged the same each time, findings
// are told of sections that are there, in their order, each once, and in one line that may be shown.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>
#include <string_view>

#include "sdpAnswerJudge.h"

namespace {

using sdp::AnswerRule;
using sdp::Finding;

void require(bool holds) {
  if (!holds) std::abort();
}

bool isBefore(const Finding& a, const Finding& b) {
  return a.section != b.section ? a.section < b.section : a.rule < b.rule;
}

bool isSame(const Finding& a, const Finding& b) {
  return a.section == b.section && a.rule == b.rule && a.text == b.text;
}

void checkText(std::string_view text) {
  require(!text.empty());
  for (const char c : text) require(static_cast<unsigned char>(c) >= ' ' && c != '\x7F');
}

/// Rules that are told of a section once at most.
bool isToldOnce(AnswerRule rule) {
  return rule < AnswerRule::codecNotOffered || rule == AnswerRule::noCodec ||
         (rule >= AnswerRule::bundleOnlyAlone && rule <= AnswerRule::rtcpMuxNotOffered) ||
         rule == AnswerRule::iceNotOffered || rule >= AnswerRule::cryptoCount;
}

void checkFindings(const std::vector<Finding>& findings, std::uint32_t sections) {
  for (std::size_t i = 0; i < findings.size(); ++i) {
    require(findings[i].section <= sections);
    require(!textOf(findings[i].rule).empty());
    checkText(findings[i].text);
    if (i == 0) continue;
    require(!isBefore(findings[i], findings[i - 1]));
    require(isBefore(findings[i - 1], findings[i]) || !isToldOnce(findings[i].rule));
  }
}

/// What a body as the answer to itself cannot break.
void checkMirror(const sdp::Document& document) {
  constexpr AnswerRule kNever[] = {
      AnswerRule::sectionCount,      AnswerRule::sectionMedia,     AnswerRule::transport,
      AnswerRule::noFormat,          AnswerRule::codecNotOffered,  AnswerRule::payloadChanged,
      AnswerRule::noCodec,           AnswerRule::codecParameters,  AnswerRule::h264Profile,
      AnswerRule::h264Mode,          AnswerRule::h264Level,        AnswerRule::groupNotOffered,
      AnswerRule::midNotOffered,     AnswerRule::midMissing,       AnswerRule::muxMissing,
      AnswerRule::rtcpMuxNotOffered, AnswerRule::extmapNotOffered, AnswerRule::disabledAccepted,
      AnswerRule::bundleOnlyAlone,   AnswerRule::noSetup,          AnswerRule::setupNotOffered};
  for (const Finding& finding : sdp::checkAnswer(document, document).findings) {
    require(std::find(std::begin(kNever), std::end(kNever), finding.rule) == std::end(kNever));
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string_view text(reinterpret_cast<const char*>(data), size);
  constexpr std::string_view kBetween = "\n#\n";
  const std::size_t end = std::min(text.find(kBetween), text.size());
  sdp::Document offer;
  sdp::Document answer;
  require(!offer.read(text.substr(0, end)));
  require(!answer.read(text.substr(std::min(end + kBetween.size(), text.size()))));

  const sdp::Judgement judgement = sdp::checkAnswer(offer, answer);
  require(judgement.isComplete);
  checkFindings(judgement.findings, std::min(offer.sectionCount(), answer.sectionCount()));
  const sdp::Judgement again = sdp::checkAnswer(offer, answer);
  require(std::equal(judgement.findings.begin(), judgement.findings.end(), again.findings.begin(),
                     again.findings.end(), isSame));
  checkMirror(offer);
  checkMirror(answer);
  return 0;
}
