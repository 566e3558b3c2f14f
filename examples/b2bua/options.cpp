#include "options.h"

#include <algorithm>

#include <CLI/CLI.hpp>

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
  if (names.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS) throw CLI::ValidationError("more than 20 codecs");
  policy.audioCodecs.clear();
  for (const std::string& name : names) {
    unsigned char codec = cSdpNegotiator::getRtpMapAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) codec = cSdpNegotiator::getAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) throw CLI::ValidationError("unknown codec: " + name);
    policy.audioCodecs.push_back(codec);
  }
}

/// on, off or cap BANDWIDTH LEVEL; the levels stand in the order of their enumeration.
void readVideo(const Words& words, Policy& policy) {
  static const Words levels = {"1", "1b",  "1.1", "1.2", "1.3", "2",   "2.1", "2.2",
                               "3", "3.1", "3.2", "4",   "4.1", "4.2", "5",   "5.1"};
  policy.video = words[0] == "on" ? Video::on : words[0] == "off" ? Video::off : Video::capped;
  if (policy.video != Video::capped && words.size() == 1) return;
  const auto level = std::ranges::find(levels, words.back());
  if (words.size() != 3 || words[0] != "cap" || level == levels.end() ||
      !CLI::detail::lexical_cast(words[1], policy.videoBandwidth)) {
    throw CLI::ValidationError("video is on, off or cap BANDWIDTH LEVEL");
  }
  policy.videoLevel = static_cast<eH264_profile_id>(level - levels.begin());
}

std::string checkAddress(const std::string& text) {
  return cMsgIPAddress::isValid(text.c_str()) ? "" : "no address: " + text;
}

std::string checkEndpoint(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  std::string host = text.substr(0, colon);
  if (host.starts_with('[') && host.ends_with(']')) host = host.substr(1, host.size() - 2);
  unsigned short port = 0;
  const bool valid = colon != std::string::npos && CLI::detail::lexical_cast(text.substr(colon + 1), port);
  return valid && checkAddress(host).empty() ? "" : "no numeric HOST:PORT: " + text;
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  Policy& policy = options.policy;
  app.add_option("--target", options.target, "HOST:PORT where the calls go; numeric")
      ->required()
      ->check(checkEndpoint);
  app.add_option("--listen", options.listen, "HOST:PORT where they come from; port 0 takes a free one")
      ->check(checkEndpoint)
      ->capture_default_str();
  app.add_option("--state", options.state,
                 "redis://HOST:PORT keeps the established calls, for the next process");
  app.add_option("--log", options.logFile, "file instead of standard error");
  app.add_option("--max-calls", options.maxCalls, "at a time")->capture_default_str();
  app.add_option("--max-invites", options.maxInvites, "per second")->capture_default_str();
  app.add_option("--max-transactions", options.maxTransactions,
                 "at a time, with those of the last 32 seconds")
      ->capture_default_str();
  app.add_flag("--show", options.show, "each body before and after on standard output");
  app.add_flag("--trace", options.trace, "the library's own lines in the log too");
  app.set_config("--policy", "",
                 "file with rules: lines NAME = VALUE with the options below, without hyphens");
  app.allow_config_extras(false);

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
}

}  // namespace b2bua
