// Where media are led.

#include <CLI/CLI.hpp>

#include "optionTopics.h"

namespace b2bua {

namespace {

using Words = std::vector<std::string>;

constexpr const char* kForm = "media is none, rtpengine udp:HOST:PORT or anchor ADDRESS FIRST-LAST";

const std::vector<std::pair<std::string, PartyKind>> kParties = {{"as-is", PartyKind::asIs},
                                                                 {"rtp", PartyKind::rtp},
                                                                 {"srtp", PartyKind::srtp},
                                                                 {"webrtc", PartyKind::webrtc}};

/// FIRST-LAST, from an even port on.
bool readPorts(const std::string& text, MediaOptions& media) {
  const std::size_t hyphen = std::min(text.find('-'), text.size() - 1);
  return CLI::detail::lexical_cast(text.substr(0, hyphen), media.firstPort) &&
         CLI::detail::lexical_cast(text.substr(hyphen + 1), media.lastPort) &&
         media.firstPort >= kLowestPort && media.firstPort % 2 == 0 && media.lastPort > media.firstPort;
}

void readMedia(const Words& words, MediaOptions& media) {
  media.kind = MediaKind::none;
  const std::string udp = "udp:";
  const bool isRelay = words[0] == "rtpengine" && words.size() == 2 && words[1].starts_with(udp);
  const bool isAnchor = words[0] == "anchor" && words.size() == 3;
  if (!isRelay && !isAnchor) {
    if (words != Words{"none"}) throw CLI::ValidationError("--media", kForm);
    return;
  }
  media.kind = isRelay ? MediaKind::rtpengine : MediaKind::anchor;
  media.relay = isRelay ? words[1].substr(udp.size()) : words[1];
  const std::string wrong = isRelay ? checkEndpoint(media.relay) : checkAddress(media.relay);
  if (!wrong.empty()) throw CLI::ValidationError("--media", wrong);
  if (isAnchor && !readPorts(words[2], media))
    throw CLI::ValidationError("--media", "no ports from an even one on: " + words[2]);
}

}  // namespace

void addMediaOptions(CLI::App& app, MediaOptions& media) {
  app.add_option_function<Words>(
         "--media", [&](const Words& words) { readMedia(words, media); },
         "none, rtpengine udp:HOST:PORT or anchor ADDRESS FIRST-LAST")
      ->delimiter(' ');  // as one word too, such as a string of the configuration
  std::size_t side = 0;
  for (const char* name : {"--media-caller", "--media-target"})
    app.add_option(name, media.parties[side++], "as-is, rtp, srtp or webrtc: what rtpengine offers there")
        ->transform(CLI::CheckedTransformer(kParties).description(""));
}

std::string conflictOf(const Options& options) {
  const MediaOptions& media = options.media;
  const Security security = options.policy.security;
  if (media.kind != MediaKind::none && !options.policy.connectionAddress.empty())
    return "media and connection-address both say where media go";
  for (const PartyKind party : media.parties) {
    if (party == PartyKind::asIs) continue;
    if (media.kind != MediaKind::rtpengine) return "media-caller and media-target need media = rtpengine";
    if ((security == Security::plain && party != PartyKind::rtp) ||
        (security == Security::secure && party == PartyKind::rtp) ||
        (options.policy.removeIce && party == PartyKind::webrtc))
      return "media-caller or media-target is against the policy";
  }
  return "";
}

}  // namespace b2bua
