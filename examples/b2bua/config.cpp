#include "config.h"

#include <charconv>
#include <fstream>
#include <functional>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string_view>

namespace b2bua {

const char* const kUsage =
    "usage: b2bua --target HOST:PORT [options]\n"
    "  --target HOST:PORT         where the calls go; numeric\n"
    "  --listen HOST:PORT         where they come from (127.0.0.1:5060); port 0 takes a free one\n"
    "  --policy FILE              what is done to the bodies\n"
    "  --state redis://HOST:PORT  keeps the established calls there, for the next process\n"
    "  --show                     each body before and after on standard output\n"
    "  --log FILE                 instead of standard error\n"
    "  --trace                    the library's own lines in the log too\n"
    "  --max-calls N              at a time (10000)\n";

namespace {

Endpoint endpointOf(const std::string& text) {
  if (const auto endpoint = Endpoint::parse(text)) return *endpoint;
  throw std::invalid_argument("no numeric HOST:PORT: " + text);
}

std::size_t numberOf(const std::string& text) {
  std::size_t number = 0;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), number);
  if (error == std::errc() && end == text.data() + text.size() && number > 0) return number;
  throw std::invalid_argument("no number: " + text);
}

std::string trimmed(std::string_view text) {
  const std::size_t first = text.find_first_not_of(" \t\r");
  if (first == std::string_view::npos) return "";
  return std::string(text.substr(first, text.find_last_not_of(" \t\r") - first + 1));
}

/// @return the place of a word in a list; the enumerations stand in the same order
template <typename Value>
Value choose(const std::string& word, const std::vector<std::string_view>& words) {
  for (std::size_t i = 0; i < words.size(); ++i) {
    if (word == words[i]) return static_cast<Value>(i);
  }
  throw std::runtime_error("unknown value: " + word);
}

void readAudioCodecs(Policy& policy, const std::string& value) {
  policy.audioCodecs.clear();
  std::istringstream names(value);
  for (std::string name; std::getline(names, name, ',');) {
    const std::string word = trimmed(name);
    unsigned char codec = cSdpNegotiator::getRtpMapAudioCodecValue(word.c_str());
    if (codec == SDP_NO_CODEC) codec = cSdpNegotiator::getAudioCodecValue(word.c_str());
    if (codec == SDP_NO_CODEC) throw std::runtime_error("unknown codec: " + word);
    policy.audioCodecs.push_back(codec);
  }
  if (policy.audioCodecs.size() > MAX_SDP_NEGOTIATOR_AUDIO_CODECS) {
    throw std::runtime_error("more than 20 codecs");
  }
}

void readVideo(Policy& policy, const std::string& value) {
  std::istringstream words(value);
  std::string word;
  words >> word;
  policy.video = choose<Video>(word, {"on", "off", "cap"});
  if (policy.video == Video::capped) {
    if (!(words >> policy.videoBandwidth >> word)) throw std::runtime_error("expected cap KBIT LEVEL");
    policy.videoLevel = choose<eH264_profile_id>(word, {"1", "1b", "1.1", "1.2", "1.3", "2", "2.1", "2.2",
                                                        "3", "3.1", "3.2", "4", "4.1", "4.2", "5", "5.1"});
  }
  if (words >> word) throw std::runtime_error("one word too many: " + word);
}

void readAddressFamily(Policy& policy, const std::string& value) {
  constexpr eIPAddressVersion versions[] = {IP_VERSION_UNKNOWN, IP_VERSION_4, IP_VERSION_6};
  policy.addressFamily = versions[choose<std::size_t>(value, {"any", "ipv4", "ipv6"})];
}

void readConnectionAddress(Policy& policy, const std::string& value) {
  if (!cMsgIPAddress::isValid(value.c_str())) throw std::runtime_error("no address: " + value);
  policy.connectionAddress = value;
}

void readLine(Policy& policy, const std::string& line) {
  static const std::map<std::string, void (*)(Policy&, const std::string&)> readers = {
      {"audio-codecs", readAudioCodecs},
      {"video", readVideo},
      {"ice",
       [](Policy& p, const std::string& value) {
         p.removeIce = choose<bool>(value, {"keep", "remove"});
       }},
      {"security",
       [](Policy& p, const std::string& value) {
         p.security = choose<Security>(value, {"as-is", "plain", "secure", "best-effort-1", "best-effort-2"});
       }},
      {"address-family", readAddressFamily},
      {"connection-address", readConnectionAddress}};
  const std::string text = trimmed(line.substr(0, line.find('#')));
  if (text.empty()) return;
  const std::size_t equals = std::min(text.find('='), text.size());
  const auto reader = readers.find(trimmed(text.substr(0, equals)));
  if (reader == readers.end() || equals == text.size()) throw std::runtime_error("unknown key: " + text);
  reader->second(policy, trimmed(text.substr(equals + 1)));
}

}  // namespace

Options readOptions(int count, char** arguments) {
  Options options;
  options.listen = endpointOf("127.0.0.1:5060");
  const std::map<std::string, bool*> switches = {
      {"--show", &options.show}, {"--trace", &options.trace}, {"--help", &options.help}};
  const std::map<std::string, std::function<void(const std::string&)>> settings = {
      {"--target", [&](const std::string& value) { options.target = endpointOf(value); }},
      {"--listen", [&](const std::string& value) { options.listen = endpointOf(value); }},
      {"--max-calls", [&](const std::string& value) { options.maxCalls = numberOf(value); }},
      {"--policy", [&](const std::string& value) { options.policyFile = value; }},
      {"--state", [&](const std::string& value) { options.state = value; }},
      {"--log", [&](const std::string& value) { options.logFile = value; }}};
  for (int i = 1; i < count; ++i) {
    const std::string name = arguments[i];
    if (const auto found = switches.find(name); found != switches.end()) {
      *found->second = true;
    } else if (const auto setting = settings.find(name); setting != settings.end() && i + 1 < count) {
      setting->second(arguments[++i]);
    } else {
      throw std::invalid_argument("unknown or incomplete: " + name);
    }
  }
  if (options.help) return options;
  if (options.target.length == 0) throw std::invalid_argument("--target is missing");
  if (options.target.address.ss_family != options.listen.address.ss_family) {
    throw std::invalid_argument("--listen and --target have different address families");
  }
  return options;
}

Policy readPolicy(const std::string& file) {
  Policy policy;
  std::ifstream input(file);
  if (!input) throw std::runtime_error(file + ": cannot be read");
  std::string line;
  for (int number = 1; std::getline(input, line); ++number) {
    try {
      readLine(policy, line);
    } catch (const std::runtime_error& error) {
      throw std::runtime_error(file + ":" + std::to_string(number) + ": " + error.what());
    }
  }
  return policy;
}

}  // namespace b2bua
