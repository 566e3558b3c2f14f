// The names of rules, and how bad it is to break them.

#include <array>

#include "sdpAnswerJudge.h"

namespace sdp {
namespace {

struct RuleRow {
  std::string_view name;
  AnswerRule rule;
  Severity severity = Severity::error;
};

constexpr RuleRow kRules[] = {
    {"section-count", AnswerRule::sectionCount},
    {"section-media", AnswerRule::sectionMedia},
    {"transport", AnswerRule::transport},
    {"no-format", AnswerRule::noFormat},
    {"direction", AnswerRule::direction},
    {"no-address", AnswerRule::noAddress},
    {"no-port", AnswerRule::noPort},
    {"disabled-accepted", AnswerRule::disabledAccepted},
    {"refused-in-group", AnswerRule::refusedInGroup},
    {"codec-not-offered", AnswerRule::codecNotOffered, Severity::warning},
    {"payload-changed", AnswerRule::payloadChanged},
    {"no-codec", AnswerRule::noCodec},
    {"codec-parameters", AnswerRule::codecParameters},
    {"h264-profile", AnswerRule::h264Profile},
    {"h264-mode", AnswerRule::h264Mode},
    {"h264-level", AnswerRule::h264Level},
    {"group-not-offered", AnswerRule::groupNotOffered},
    {"group-without-section", AnswerRule::groupWithoutSection},
    {"bundle-only-alone", AnswerRule::bundleOnlyAlone},
    {"mid-not-offered", AnswerRule::midNotOffered},
    {"mid-missing", AnswerRule::midMissing},
    {"mux-missing", AnswerRule::muxMissing},
    {"rtcp-mux-not-offered", AnswerRule::rtcpMuxNotOffered},
    {"extmap-not-offered", AnswerRule::extmapNotOffered},
    {"ice-not-offered", AnswerRule::iceNotOffered},
    {"ice-short", AnswerRule::iceShort},
    {"payload-twice", AnswerRule::payloadTwice},
    {"payload-reserved", AnswerRule::payloadReserved, Severity::warning},
    {"no-rtpmap", AnswerRule::noRtpmap},
    {"rtx-without-codec", AnswerRule::rtxWithoutCodec},
    {"crypto-tag", AnswerRule::cryptoTag},
    {"crypto-suite", AnswerRule::cryptoSuite},
    {"crypto-count", AnswerRule::cryptoCount},
    {"no-key", AnswerRule::noKey},
    {"no-fingerprint", AnswerRule::noFingerprint},
    {"no-setup", AnswerRule::noSetup},
    {"setup-not-offered", AnswerRule::setupNotOffered},
    {"setup-actpass", AnswerRule::setupActpass},
    {"setup-role", AnswerRule::setupRole},
};

constexpr bool isInOrder() {
  std::size_t place = 0;
  for (const RuleRow& row : kRules) {
    if (static_cast<std::size_t>(row.rule) != place++) return false;
  }
  return place == static_cast<std::size_t>(AnswerRule::setupRole) + 1;
}
static_assert(isInOrder());

const RuleRow* rowOf(AnswerRule rule) {
  const auto place = static_cast<std::size_t>(rule);
  return place < std::size(kRules) ? &kRules[place] : nullptr;
}

}  // namespace

std::string_view textOf(AnswerRule rule) noexcept {
  const RuleRow* const row = rowOf(rule);
  return row == nullptr ? std::string_view() : row->name;
}

Severity severityOf(AnswerRule rule) noexcept {
  const RuleRow* const row = rowOf(rule);
  return row == nullptr ? Severity::error : row->severity;
}

std::string_view textOf(Severity severity) noexcept {
  return severity == Severity::warning ? "warning" : "error";
}

}  // namespace sdp
