#include "options.h"

#include <arpa/inet.h>

#include <algorithm>
#include <cctype>
#include <fstream>

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
  if (names.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS)
    throw CLI::ValidationError("--audio-codecs", "more than 20 codecs");
  policy.audioCodecs.clear();
  for (const std::string& name : names) {
    unsigned char codec = cSdpNegotiator::getRtpMapAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) codec = cSdpNegotiator::getAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) throw CLI::ValidationError("--audio-codecs", "unknown codec: " + name);
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
    throw CLI::ValidationError("--video", "video is on, off or cap BANDWIDTH LEVEL");
  }
  policy.videoLevel = static_cast<eH264_profile_id>(level - levels.begin());
}

std::string checkAddress(const std::string& text) {
  return cMsgIPAddress::isValid(text.c_str()) ? "" : "no address: " + text;
}

/// @return the address without brackets
std::string hostOf(const std::string& endpoint) {
  const std::string host = endpoint.substr(0, endpoint.rfind(':'));
  return host.starts_with('[') && host.ends_with(']') ? host.substr(1, host.size() - 2) : host;
}

std::string checkEndpoint(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  unsigned short port = 0;
  const bool valid = colon != std::string::npos && CLI::detail::lexical_cast(text.substr(colon + 1), port);
  return valid && checkAddress(hostOf(text)).empty() ? "" : "no numeric HOST:PORT: " + text;
}

/// It is where the parties are to send to.
std::string checkNoWildcard(const std::string& text) {
  in6_addr six{};
  in_addr four{};
  const std::string host = hostOf(text);
  const bool isFour = inet_pton(AF_INET, host.c_str(), &four) == 1;
  const bool isSix = inet_pton(AF_INET6, host.c_str(), &six) == 1;
  const auto isZero = [](unsigned char byte) { return byte == 0; };
  const bool mapped =
      isSix && IN6_IS_ADDR_V4MAPPED(&six) && std::all_of(six.s6_addr + 12, six.s6_addr + 16, isZero);
  const bool wildcard =
      (isFour && four.s_addr == INADDR_ANY) || (isSix && IN6_IS_ADDR_UNSPECIFIED(&six)) || mapped;
  return wildcard ? "no wildcard address, since it is the Contact too: " + text : "";
}

std::string trimmed(const std::string& text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  return first == std::string::npos ? "" : text.substr(first, text.find_last_not_of(" \t\r") + 1 - first);
}

bool hasWord(const std::string& text, const std::string& word) {
  const auto ends = [&](std::size_t at) {
    return at >= text.size() || (std::isalnum(text[at]) == 0 && text[at] != '-');
  };
  for (std::size_t at = text.find(word); at != std::string::npos; at = text.find(word, at + 1)) {
    const bool begins = at == 0 || std::isalnum(text[at - 1]) == 0;
    if (begins && ends(at + word.size())) return true;
  }
  return false;
}

}  // namespace

void addOptions(CLI::App& app, Options& options) {
  Policy& policy = options.policy;
  app.add_option("--target", options.target, "HOST:PORT where the calls go; numeric")
      ->required()
      ->check(checkEndpoint);
  app.add_option("--listen", options.listen, "HOST:PORT where they come from; port 0 takes a free one")
      ->check(checkEndpoint)
      ->check(checkNoWildcard)
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

// The error names the rule, but not where it stands.
std::string placeOf(const CLI::ParseError& error, const CLI::App& app,
                    const std::vector<std::string>& words) {
  const CLI::Option* const policy = app.get_config_ptr();
  if (error.get_exit_code() == 0 || policy == nullptr || policy->count() == 0) return "";
  const std::string name = policy->as<std::string>();
  std::ifstream file(name);
  int number = 0;
  std::string place;
  for (std::string line; std::getline(file, line);) {
    ++number;
    const std::string key = trimmed(line.substr(0, line.find_first_of("=#;")));
    const auto isKey = [&](const std::string& word) { return word.substr(0, word.find('=')) == "--" + key; };
    // There are no sections of rules.
    if (key.starts_with('[') && place.empty()) place = name + ":" + std::to_string(number) + ": ";
    if (!key.empty() && hasWord(error.what(), key) && std::ranges::none_of(words, isKey))
      place = name + ":" + std::to_string(number) + ": ";
  }
  return place;
}

}  // namespace b2bua
