#include "options.h"

#include <CLI/CLI.hpp>
#include <functional>
#include <variant>

#include "namedRequests.h"
#include "optionFiles.h"
#include "passedHeaders.h"
#include "wholeNumber.h"

namespace b2bua {

namespace {

using Words = std::vector<std::string>;

// -- values

// What is wrong with a text, or nothing.

std::string checkAddress(const std::string& text) {
  return cMsgIPAddress::isValid(text.c_str()) ? "" : "no address: " + text;
}

std::string checkEndpoint(const std::string& text) {
  const std::size_t colon = text.rfind(':');
  unsigned short port = 0;
  const bool valid = colon != std::string::npos && readNumber(std::string_view(text).substr(colon + 1), port);
  return valid && checkAddress(hostOf(text)).empty() ? "" : "no numeric HOST:PORT: " + text;
}

/// Where somebody else listens.
std::string checkPeer(const std::string& text) {
  return text.ends_with(":0") ? "no port: " + text : checkEndpoint(text);
}

/// Parties are to send to it.
std::string checkContact(const std::string& text) {
  constexpr std::array<std::string_view, 3> kWildcards = {"0.0.0.0", "::", "::ffff:0.0.0.0"};
  cMsgIPAddress address{};
  char host[64];
  address.setIPAddress(hostOf(text).c_str());
  address.getIPAddressText(host, sizeof host);
  const bool isWildcard = std::ranges::find(kWildcards, host) != kWildcards.end();
  std::string wrong = checkEndpoint(text);
  if (!wrong.empty() || !isWildcard) return wrong;
  return "no wildcard address, since it is the Contact too: " + text;
}

std::string checkTarget(const std::string& text) {
  const std::optional<Target> target = readTarget(text);
  if (target) return checkPeer(target->address);
  return "no HOST:PORT[;transport=..][;weight=N][;priority=N]: " + text;
}

// What makes something of words; some throw WordError.

/// FIRST-LAST, from an even port on.
bool readPorts(std::string_view text, MediaOptions& media) {
  const std::size_t hyphen = std::min(text.find('-'), text.size() - 1);
  return readNumber(text.substr(0, hyphen), media.firstPort) &&
         readNumber(text.substr(hyphen + 1), media.lastPort) && media.firstPort >= kLowestPort &&
         media.firstPort % 2 == 0 && media.lastPort > media.firstPort;
}

std::string readMedia(const Words& words, MediaOptions& media) {
  const std::string udp = "udp:";
  const bool isRelay = words[0] == "rtpengine" && words.size() == 2 && words[1].starts_with(udp);
  const bool isAnchor = words[0] == "anchor" && words.size() == 3;
  media.kind = isRelay ? MediaKind::rtpengine : isAnchor ? MediaKind::anchor : MediaKind::none;
  if (isRelay) {
    media.relay = words[1].substr(udp.size());
    return checkPeer(media.relay);
  }
  if (isAnchor) {
    media.relay = words[1];
    return !readPorts(words[2], media) ? "no ports from an even one on: " + words[2] : checkAddress(words[1]);
  }
  return words == Words{"none"} ? "" : "media is none, rtpengine udp:HOST:PORT or anchor ADDRESS FIRST-LAST";
}

std::string readAudioCodecs(const Words& names, Policy& policy) {
  if (names.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS)
    throw WordError("audio-codecs", "more than 20 codecs", MAX_SDP_NEGOTIATOR_AUDIO_CODECS);
  policy.audioCodecs.clear();
  for (const std::string& name : names) {
    unsigned char codec = cSdpNegotiator::getRtpMapAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) codec = cSdpNegotiator::getAudioCodecValue(name.c_str());
    if (codec == SDP_NO_CODEC) return "unknown codec: " + name;
    policy.audioCodecs.push_back(codec);
  }
  return "";
}

/// on, off or cap BANDWIDTH LEVEL; the levels stand in the order of their enumeration.
std::string readVideo(const Words& words, Policy& policy) {
  static const Words levels = {"1", "1b",  "1.1", "1.2", "1.3", "2",   "2.1", "2.2",
                               "3", "3.1", "3.2", "4",   "4.1", "4.2", "5",   "5.1"};
  const auto check = [](bool right, std::size_t word) {
    if (!right) throw WordError("video", "video is on, off or cap BANDWIDTH LEVEL", word);
  };
  policy.video = words[0] == "on" ? Video::on : words[0] == "off" ? Video::off : Video::capped;
  check(policy.video == Video::capped || words.size() == 1, 1);
  if (policy.video != Video::capped) return "";
  check(words[0] == "cap" && words.size() >= 3, 0);
  check(words.size() == 3, 3);
  check(readNumber(words[1], policy.videoBandwidth), 1);
  const auto level = std::ranges::find(levels, words[2]);
  check(level != levels.end(), 2);
  policy.videoLevel = static_cast<eH264_profile_id>(level - levels.begin());
  return "";
}

/// @return what is wrong, or nothing
using Reader = std::function<std::string(const Words&)>;

/// One of some names.
/// @param values  what they stand for; without them the enumeration is in their order
template <typename Choice>
Reader oneOf(Choice& choice, const Words& names, const std::vector<Choice>& values = {}) {
  return [&choice, names, values](const Words& words) {
    const auto named = std::ranges::find(names, words[0]);
    if (named == names.end()) return "none of " + CLI::detail::join(names, ", ") + ": " + words[0];
    const auto index = static_cast<std::size_t>(named - names.begin());
    choice = values.empty() ? static_cast<Choice>(index) : static_cast<Choice>(values[index]);
    return std::string();
  };
}

// -- the options by topics

struct Row {
  std::string name;
  std::variant<bool*, unsigned int*, std::string*, Words*, Reader> value;
  std::string help;
  CLI::Validator check{};
  char delimiter = '\0';  ///< of options that have several words
};

CLI::Validator range(unsigned int least, unsigned int most) {
  return CLI::Range(least, most, std::to_string(least) + "-" + std::to_string(most));
}

CLI::Validator by(std::string (*check)(const std::string&)) { return {check, ""}; }

CLI::Option* add(CLI::App& app, const Row& row, bool* value) {
  return app.add_flag(row.name, *value, row.help);
}

CLI::Option* add(CLI::App& app, const Row& row, const Reader& read) {
  const auto take = [name = row.name, read](const Words& words) {
    if (const std::string wrong = read(words); !wrong.empty()) throw CLI::ValidationError(name, wrong);
  };
  CLI::Option* const option = app.add_option_function<Words>(row.name, take, row.help);
  return row.delimiter == '\0' ? option->expected(1) : option->delimiter(row.delimiter);
}

template <typename Value>
CLI::Option* add(CLI::App& app, const Row& row, Value* value) {
  CLI::Option* const option = app.add_option(row.name, *value, row.help)->capture_default_str();
  if constexpr (std::is_same_v<Value, unsigned int>) option->type_name(kNumber);
  return option->delimiter(row.delimiter);
}

// None is `required` for the command line: it may stand in the configuration.
void add(CLI::App& app, const char* topic, const std::vector<Row>& rows) {
  for (const Row& row : rows) {
    const auto addRow = [&](const auto& value) { return add(app, row, value); };
    std::visit(addRow, row.value)->check(row.check)->group(topic);
  }
}

void addTopics(CLI::App& app, Options& o) {
  const auto readTargets = [&o](const Words& texts) {
    o.targets.clear();
    for (const std::string& text : texts) o.targets.push_back(*readTarget(text));
    return std::string();
  };
  add(app, "Calls",
      {{"--target", readTargets,
        "HOST:PORT[;transport=udp|tcp|tls][;weight=N][;priority=N] where calls go; may be repeated",
        by(checkTarget), ','},
       {"--target-seconds", &o.targetSeconds, "of silence, then a call goes on to the next one",
        range(1, 30)},
       {"--follow-redirects", &o.followRedirects, "contacts of 3xx that a call tries", range(0, 16)},
       {"--pass-headers", &o.passHeaders, "for the other side, X-* for all such", by(checkPassedHeader), ','},
       {"--listen", &o.listen, "HOST:PORT where calls come from, port 0 for a free one", by(checkContact)},
       {"--session-expires", &o.session.interval, "seconds without a sign of life, 0 for any",
        range(0, 86'400)},
       {"--min-se", &o.session.minimum, "seconds, the least that a party may ask for", range(1, 86'400)}});
  TransportOptions& ways = o.transports;
  add(app, "Transports",
      {{"--transports", &ways.names, "at the address of --listen", CLI::IsMember({"udp", "tcp", "tls"}), ','},
       {"--tls-port", &ways.tlsPort, "instead of that of --listen", range(1, 65'535)},
       {"--certificates", &ways.certificates,
        "folder with agent.pem, certificate and key, and cafile.pem, who vouches for others"},
       {"--verify-callers", &ways.verifyCallers, "who connects by TLS needs a certificate, too"},
       {"--max-connections", &ways.maxConnections, "at a time"},
       {"--idle-seconds", &ways.idleSeconds, "after which a connection is closed", range(1, 86'400)}});
  add(app, "Limits",
      {{"--max-calls", &o.maxCalls, "at a time"},
       {"--max-invites", &o.maxInvites, "in a second"},
       {"--max-transactions", &o.maxTransactions, "at a time, with those of the last 32 seconds"},
       {"--max-calls-per-source", &o.maxCallsPerSource, "new ones in a second, 0 for any number"},
       {"--max-messages-per-source", &o.maxMessagesPerSource, "in a second, 0 for any number"},
       {"--max-memory", &o.maxMemory, "MB with which further calls are taken, 0 for any"},
       {"--trusted", &o.trusted, "addresses without limits of their own", by(checkAddress), ','}});
  add(app, "Service",
      {{"--state", &o.state, "redis://HOST:PORT or redis+sentinel://HOST:PORT,.../NAME, which keeps calls"},
       {"--log", &o.logFile, "file instead of standard error"},
       {"--log-format", oneOf(o.logFormat, {"text", "json"}), "text, or json: an object a line"},
       {"--http", &o.http, "HOST:PORT of /metrics, /healthz and /readyz", by(checkEndpoint)},
       {"--drain-seconds", &o.drainSeconds, "that running calls have after SIGTERM"},
       {"--show", &o.show, "each body before and after on standard output"},
       {"--trace", &o.trace, "the library's own lines in the log too"}});
}

/// The options that may stand in a policy, too.
void addRules(CLI::App& app, MediaOptions& media, Policy& policy) {
  const Words parties = {"as-is", "rtp", "srtp", "webrtc"};
  const Words securities = {"as-is", "plain", "secure", "best-effort-1", "best-effort-2"};
  const std::vector versions = {IP_VERSION_UNKNOWN, IP_VERSION_4, IP_VERSION_6};
  const char* const offered = "as-is, rtp, srtp or webrtc: what rtpengine offers there";
  const auto readMediaWords = [&](const Words& words) { return readMedia(words, media); };
  const auto readCodecs = [&](const Words& words) { return readAudioCodecs(words, policy); };
  const auto readVideoWords = [&](const Words& words) { return readVideo(words, policy); };
  std::vector<Row> rows = {
      {"--media", readMediaWords, "none, rtpengine udp:HOST:PORT or anchor ADDRESS FIRST-LAST", {}, ' '},
      {"--media-caller", oneOf(media.parties[0], parties), offered},
      {"--media-target", oneOf(media.parties[1], parties), offered},
      {"--audio-codecs", readCodecs, "only these, in this order", {}, ','},
      {"--video", readVideoWords, "on, off or cap BANDWIDTH LEVEL", {}, ' '},
      {"--ice", oneOf(policy.removeIce, {"keep", "remove"}), "keep or remove"},
      {"--security", oneOf(policy.security, securities), "as-is, plain, secure or best-effort-1, -2"},
      {"--address-family", oneOf(policy.addressFamily, {"any", "ipv4", "ipv6"}, versions),
       "any, ipv4 or ipv6: the media of an ANAT offer that stay"},
      {"--connection-address", &policy.connectionAddress, "put into all c-lines but those on hold",
       by(checkAddress)}};
  const char* help = "requests of the document layer for the bodies of a party, with ; between";
  for (std::size_t list = 0; list < policy.requests.size(); ++list, help = "likewise") {
    const auto read = [&policy, list](const Words& lines) {
      policy.requests[list] = readRequests(list, lines);
      return std::string();
    };
    rows.push_back({"--" + keyOf(list), read, help, {}, ';'});
  }
  add(app, "Keys", rows);
}

/// What contradicts something else.
void checkTogether(const Options& options) {
  const auto check = [](bool right, const char* name, const std::string& wrong) {
    if (!right) throw CLI::ValidationError(name, wrong);
  };
  const MediaOptions& media = options.media;
  const Security security = options.policy.security;
  check(media.kind == MediaKind::none || options.policy.connectionAddress.empty(), "--media",
        "media and connection-address both say where media go");
  for (const PartyKind party : media.parties) {
    if (party == PartyKind::asIs) continue;
    check(media.kind == MediaKind::rtpengine, "--media",
          "media-caller and media-target need media = rtpengine");
    check((security != Security::plain || party == PartyKind::rtp) &&
              (security != Security::secure || party != PartyKind::rtp) &&
              (!options.policy.removeIce || party != PartyKind::webrtc),
          "--media", "media-caller or media-target is against the policy");
  }
  check(options.session.interval == 0 || options.session.interval >= options.session.minimum,
        "--session-expires", "less than --min-se");
  for (const Target& target : options.targets) {
    const std::string name = target.transport.empty() ? "udp" : target.transport;
    check(options.transports.has(name), "--target", name + " is none of --transports: " + target.place());
  }
  if (options.targets.empty() && options.checked.empty()) throw CLI::RequiredError("--target");
}

}  // namespace

std::string hostOf(const std::string& endpoint) {
  const std::string host = endpoint.substr(0, endpoint.rfind(':'));
  return host.starts_with('[') && host.ends_with(']') ? host.substr(1, host.size() - 2) : host;
}

void parseOptions(CLI::App& app, Options& options, const Words& words) {
  app.get_formatter()->column_width(46);
  addTopics(app, options);
  app.add_option("--config", options.configFile, "TOML with these options, without hyphens")
      ->configurable(false);
  CLI::Option* const policy =
      app.add_option("--policy", options.policyFile, "rules as lines KEY = VALUE, see below");
  app.add_option("--check-policy", options.checked,
                 "a policy, and files with bodies: shows what it does to them, without a call")
      ->excludes(policy)
      ->configurable(false);
  app.set_version_flag("--version", "b2bua " B2BUA_VERSION);
  CLI::App& rules = *app.add_option_group("Policy", "What is done to bodies; a policy may have these, too.");
  addRules(rules, options.media, options.policy);
  app.parse(Words(words.rbegin(), words.rend()));
  if (!options.configFile.empty()) readConfigFile(app, options.configFile);
  const std::string& rulesFile = options.checked.empty() ? options.policyFile : options.checked.front();
  if (!rulesFile.empty()) readPolicyFile(rules, rulesFile);
  checkTogether(options);
}

}  // namespace b2bua
