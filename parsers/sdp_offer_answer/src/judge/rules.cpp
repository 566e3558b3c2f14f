// The names of rules, and how bad it is to break them.

#include <array>

#include "sdpAnswerJudge.h"

namespace sdp {
namespace {

struct RuleRow {
  AnswerRule rule;
  std::string_view name;
  Severity severity = Severity::error;
};

constexpr RuleRow kRules[] = {
    {AnswerRule::sectionCount, "section-count"},
    {AnswerRule::sectionMedia, "section-media"},
    {AnswerRule::transport, "transport"},
    {AnswerRule::noFormat, "no-format"},
    {AnswerRule::direction, "direction"},
    {AnswerRule::noAddress, "no-address"},
    {AnswerRule::noPort, "no-port"},
    {AnswerRule::disabledAccepted, "disabled-accepted"},
    {AnswerRule::refusedInGroup, "refused-in-group"},
    {AnswerRule::codecNotOffered, "codec-not-offered", Severity::warning},
    {AnswerRule::payloadChanged, "payload-changed"},
    {AnswerRule::noCodec, "no-codec"},
    {AnswerRule::codecParameters, "codec-parameters"},
    {AnswerRule::h264Profile, "h264-profile"},
    {AnswerRule::h264Mode, "h264-mode"},
    {AnswerRule::h264Level, "h264-level"},
    {AnswerRule::groupNotOffered, "group-not-offered"},
    {AnswerRule::groupWithoutSection, "group-without-section"},
    {AnswerRule::bundleOnlyAlone, "bundle-only-alone"},
    {AnswerRule::midNotOffered, "mid-not-offered"},
    {AnswerRule::midMissing, "mid-missing"},
    {AnswerRule::muxMissing, "mux-missing"},
    {AnswerRule::rtcpMuxNotOffered, "rtcp-mux-not-offered"},
    {AnswerRule::extmapNotOffered, "extmap-not-offered"},
    {AnswerRule::iceNotOffered, "ice-not-offered"},
    {AnswerRule::iceShort, "ice-short"},
    {AnswerRule::payloadTwice, "payload-twice"},
    {AnswerRule::payloadReserved, "payload-reserved", Severity::warning},
    {AnswerRule::noRtpmap, "no-rtpmap"},
    {AnswerRule::rtxWithoutCodec, "rtx-without-codec"},
    {AnswerRule::cryptoTag, "crypto-tag"},
    {AnswerRule::cryptoSuite, "crypto-suite"},
    {AnswerRule::cryptoCount, "crypto-count"},
    {AnswerRule::noKey, "no-key"},
    {AnswerRule::noFingerprint, "no-fingerprint"},
    {AnswerRule::noSetup, "no-setup"},
    {AnswerRule::setupNotOffered, "setup-not-offered"},
    {AnswerRule::setupActpass, "setup-actpass"},
    {AnswerRule::setupRole, "setup-role"},
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
