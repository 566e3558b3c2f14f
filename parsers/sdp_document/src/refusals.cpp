// Refusals in words.

#include "refusals.h"

#include <algorithm>

#include "text/shown.h"

namespace sdp {

std::string_view textOf(Reason reason) noexcept {
  switch (reason) {
    case Reason::none:
      return "";
    case Reason::noMemory:
      return "out of memory";
    case Reason::textTooLong:
      return "more than 67108864 characters";
    case Reason::unknownRequest:
      return "unknown request";
    case Reason::argumentCount:
      return "too few or too many arguments";
    case Reason::wrongCodecList:
      return "not a list of codecs (NAME, NAME/CLOCK, NAME/CLOCK/CHANNELS, payload types)";
    case Reason::wrongMedia:
      return "not a media selection (audio, video, text, application, message, image, all, a number, mid=VALUE)";
    case Reason::wrongAddress:
      return "not an IPv4 or IPv6 address";
    case Reason::wrongPort:
      return "not an even port from 1024 to 65534";
    case Reason::wrongProfile:
      return "not a profile (RTP/AVP, RTP/AVPF, RTP/SAVP, RTP/SAVPF, UDP/TLS/RTP/SAVP, UDP/TLS/RTP/SAVPF)";
    case Reason::wrongDirection:
      return "not a direction (sendrecv, sendonly, recvonly, inactive)";
    case Reason::wrongNames:
      return "not a list of attribute names";
    case Reason::wrongText:
      return "a text that does not fit its line";
    case Reason::noSuchSection:
      return "no such section";
    case Reason::unreadableSection:
      return "unreadable m-line";
    case Reason::noCommonCodec:
      return "no common codec";
    case Reason::noPortLeft:
      return "no port left up to 65534";
    case Reason::pathAttribute:
      return "a=path may tell an address";
    case Reason::noKeys:
      return "neither crypto nor key-mgmt";
    case Reason::noFingerprint:
      return "no fingerprint";
    case Reason::sessionKeysInUse:
      return "rests on keys of the session that would go";
    case Reason::differentTransports:
      return "other transport than the rest of its BUNDLE group";
    case Reason::nulCharacter:
      return "a NUL";
    case Reason::loneCarriageReturn:
      return "a CR that ends no line";
    case Reason::noLine:
      return "not a lower-case letter and \"=\"";
    case Reason::noVersionLine:
      return "the first line is no v-line";
  }
  return "";
}

namespace core {
namespace {

constexpr std::size_t kLongestPiece = 64;

void addEscaped(std::string& text, std::string_view bytes) {
  constexpr std::string_view kDigits = "0123456789abcdef";
  for (const char c : bytes) {
    const auto byte = static_cast<unsigned char>(c);
    text.append("\\x").append(1, kDigits[byte / 16U]).append(1, kDigits[byte % 16U]);
  }
}

}  // namespace

void addForPeople(std::string& text, std::string_view piece) {
  for (std::size_t at = 0, length = 0; at < piece.size(); at += length) {
    const sdpneg::Character character = sdpneg::firstCharacter(piece.substr(at));
    length = std::max(character.length, std::size_t{1});
    if (at + length > kLongestPiece) {
      text.append("...");
      return;
    }
    const std::string_view bytes = piece.substr(at, length);
    if (sdpneg::isShown(character)) {
      text.append(bytes);
    } else {
      addEscaped(text, bytes);
    }
  }
}

void explain(Model& model, const Refusal& refusal, std::initializer_list<std::string_view> details) {
  std::string& text = model.explanation;
  text.clear();
  if (refusal.section != 0) {
    text.append("section ").append(std::to_string(refusal.section));
    const MLine& m = model.parts[refusal.section].m;
    if (!m.media.empty()) {
      text.append(" (");
      addForPeople(text, m.media);
      text.append(")");
    }
    text.append(": ");
  }
  text.append(textOf(refusal.reason));
  if (details.size() != 0) text.append(": ");
  for (const std::string_view detail : details) text.append(detail);
}

Refusal refuseArgument(Model& model, Reason reason, std::string_view argument) {
  const Refusal refusal{.reason = reason};
  std::string shown;
  addForPeople(shown, argument);
  if (argument.empty()) shown = "(nothing)";
  explain(model, refusal, {shown});
  return refusal;
}

}  // namespace core
}  // namespace sdp
