// What is done to the bodies.

#include <algorithm>

#include <CLI/CLI.hpp>

#include "namedRequests.h"
#include "optionFiles.h"
#include "optionTopics.h"

namespace b2bua {

namespace {

using Words = std::vector<std::string>;

const std::vector<std::pair<std::string, Security>> kSecurities = {{"as-is", Security::asIs},
                                                                   {"plain", Security::plain},
                                                                   {"secure", Security::secure},
                                                                   {"best-effort-1", Security::bestEffort1},
                                                                   {"best-effort-2", Security::bestEffort2}};
const std::vector<std::pair<std::string, bool>> kIce = {{"keep", false}, {"remove", true}};
const std::vector<std::pair<std::string, eIPAddressVersion>> kFamilies = {
    {"any", IP_VERSION_UNKNOWN}, {"ipv4", IP_VERSION_4}, {"ipv6", IP_VERSION_6}};

void readAudioCodecs(const Words& names, Policy& policy) {
  if (names.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS)
    throw WordError("audio-codecs", "more than 20 codecs", MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  policy.audioCodecs.clear();
  for (const std::string& name : names) {
    unsigned char codec = cSdpNegotiator::getRtpMapAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) codec = cSdpNegotiator::getAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC)
      throw WordError("audio-codecs", "unknown codec: " + name, policy.audioCodecs.size());
    policy.audioCodecs.push_back(codec);
  }
}

/// on, off or cap BANDWIDTH LEVEL; the levels stand in the order of their enumeration.
void readVideo(const Words& words, Policy& policy) {
  static const Words levels = {"1", "1b",  "1.1", "1.2", "1.3", "2",   "2.1", "2.2",
                               "3", "3.1", "3.2", "4",   "4.1", "4.2", "5",   "5.1"};
  const auto check = [](bool right, std::size_t word) {
    if (!right) throw WordError("video", "video is on, off or cap BANDWIDTH LEVEL", word);
  };
  policy.video = words[0] == "on" ? Video::on : words[0] == "off" ? Video::off : Video::capped;
  if (policy.video != Video::capped) return check(words.size() == 1, 1);
  check(words[0] == "cap" && words.size() >= 3, 0);
  check(words.size() == 3, 3);
  check(CLI::detail::lexical_cast(words[1], policy.videoBandwidth), 1);
  const auto level = std::ranges::find(levels, words[2]);
  check(level != levels.end(), 2);
  policy.videoLevel = static_cast<eH264_profile_id>(level - levels.begin());
}

}  // namespace

void addPolicyOptions(CLI::App& app, Policy& policy) {
  app.add_option_function<Words>(
         "--audio-codecs", [&](const Words& names) { readAudioCodecs(names, policy); },
         "only these, in this order, with commas")
      ->delimiter(',');
  app.add_option_function<Words>(
      "--video", [&](const Words& words) { readVideo(words, policy); }, "on, off or cap BANDWIDTH LEVEL");
  app.add_option("--ice", policy.removeIce, "keep or remove")
      ->transform(CLI::CheckedTransformer(kIce).description(""));
  app.add_option("--security", policy.security, "as-is, plain, secure, best-effort-1 or best-effort-2")
      ->transform(CLI::CheckedTransformer(kSecurities).description(""));
  app.add_option("--address-family", policy.addressFamily,
                 "any, ipv4 or ipv6: the media of an ANAT offer that stay")
      ->transform(CLI::CheckedTransformer(kFamilies).description(""));
  app.add_option("--connection-address", policy.connectionAddress, "put into the first c-line")
      ->check(checkAddress);
  for (std::size_t list = 0; list < policy.requests.size(); ++list) {
    app.add_option_function<Words>(
           "--" + keyOf(list),
           [&policy, list](const Words& lines) { policy.requests[list] = readRequests(list, lines); },
           list == 0 ? "requests of the document layer, with ; between: what is done to the bodies of a party"
                     : "")
        ->delimiter(';');
  }
}

}  // namespace b2bua
