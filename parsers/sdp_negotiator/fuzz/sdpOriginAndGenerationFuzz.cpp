// Edits any text in the buffer that the operations assume: the origin line's edits, the transport of an
// m-line and the doubling of m-lines; and writes texts from values. The values come from the input's end.

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

#include "editBuffer.h"
#include "sdpModifiers.h"
#include "sdpModifiers/originLine.h"

namespace {

using M = sdpModifications;

constexpr std::size_t kLongest = kCapacity - 1;
constexpr unsigned short kUnset = 65535;
constexpr auto npos = std::string::npos;

std::size_t findFrom(const std::string& text, char c, std::size_t from) {
  return from == npos ? npos : text.find(c, from);
}

/// The text with its version replaced, as a plain program would do it; empty when that is refused.
std::string withVersion(const std::string& text, const std::string& version) {
  const std::size_t oLine = text.size() < kCapacity ? text.find("o=") : npos;
  const std::size_t first = text.find(' ');
  const std::size_t second = findFrom(text, ' ', first == npos ? npos : first + 1);
  if (oLine == npos || second == npos) return {};
  const std::size_t third = text.find(' ', second + 1);
  std::string after = text.substr(0, second) + ' ' + version + (third == npos ? "" : text.substr(third));
  after.resize(std::min(after.size(), kLongest));
  return after.find('\n', oLine) == npos ? std::string() : after;
}

template <typename Edit>
void replaceVersion(const std::string& before, const std::string& version, Edit edit) {
  unsigned short end = kUnset;
  unsigned short status = 0;
  const std::string after = run(
      before, [&](char* sdp) { return edit(sdp, end); }, status);
  const std::string wanted = withVersion(before, version);
  require(status == (wanted.empty() ? 1 : 0) && after == (wanted.empty() ? before : wanted));
  require(end == (wanted.empty() ? kUnset : wanted.find('\n', before.find("o=")) + 1));
}

void replaceVersions(const std::string& before, Values values) {
  const auto number = values.number<unsigned int>();
  const auto large = values.number<long long>();
  replaceVersion(before, std::to_string(number), [&](char* sdp, unsigned short& end) {
    return M::sdpReplaceVersionNumber(sdp, number, end);
  });
  replaceVersion(before, std::to_string(large), [&](char* sdp, unsigned short& end) {
    return M::sdpReplaceVersionNumberLong(sdp, large, end);
  });
}

void modifyOriginLine(const std::string& before, Values values) {
  const char* const addresses[] = {nullptr, "192.0.2.1", "2001:db8::1", ""};
  const char* ip = addresses[values.number<std::uint8_t>() % 4];
  const std::string id = values.word();
  const std::string version = values.word();
  const std::string word = values.word();
  if (ip != nullptr && *ip == '\0') ip = word.c_str();
  unsigned short end = kUnset;
  unsigned short status = 0;
  const std::string after = run(
      before, [&](char* sdp) { return M::sdpModifyOLine(sdp, id.c_str(), version.c_str(), ip, end); },
      status);
  if (status == 1) {
    require(after == before ? end == kUnset || end == after.size() : end == after.size());
    return;
  }
  const std::size_t oLine = before.find("o=");
  const std::string head = before.substr(0, oLine);
  require(after.substr(0, oLine + 6) == head + "o=ZEV ");
  require(end == after.find('\n', oLine) + 1 && end - oLine <= 336);
  require(after.substr(end) == before.substr(before.find("s=", oLine)));
}

void modifyOriginLineByTime(const std::string& before) {
  unsigned short end = kUnset;
  unsigned short status = 0;
  const std::string after = run(
      before, [&](char* sdp) { return M::sdpModifyOLine(sdp, nullptr, end); }, status);
  require(status == 0 ? end <= after.size() && after[end - 1U] == '\n' : after == before && end == kUnset);
}

void raiseVersion(const std::string& before) {
  unsigned short status = 0;
  const std::string after = run(before, M::sdpIncVersion, status);
  if (after == before) return;
  require(status == 0 && after.size() - before.size() <= 1);
  const std::size_t oLine = before.find("o=");
  const auto differs = std::mismatch(before.begin(), before.end(), after.begin(), after.end());
  const auto at = static_cast<std::size_t>(differs.first - before.begin());
  require(at > oLine + 1 && at < before.find('\n', oLine));
}

void doubleMLines(const std::string& before) {
  unsigned short status = 0;
  const std::string after = run(before, M::sdpBuild2mLineSDP, status);
  require(status == 0 && after.size() >= before.size());
  const std::size_t mLine = before.find("m=");
  const bool alone = mLine == npos || before.find('\n', mLine) == npos;
  require(!alone || after == before);
  require(after.compare(0, mLine, before, 0, mLine) == 0);
  unsigned short again = 0;
  require(run(after, M::sdpBuild2mLineSDP, again).size() >= after.size());
}

void setTransport(const std::string& before, Values values) {
  const std::string expected = values.word();
  const std::string transport = values.word();
  const std::size_t end = values.number<std::uint16_t>();
  unsigned short status = 0;
  const std::string after = run(
      before,
      [&](char* sdp) {
        return M::sdpReplaceMLineTransportProtocol(sdp, sdp + std::min(end, kCapacity), expected.c_str(),
                                                   transport.c_str());
      },
      status);
  const bool isThere = end <= before.size() && before.substr(0, end).find(expected) != npos;
  require(status == 1 ? after == before : isThere);
  const std::string taken = transport.substr(0, 14);
  require(after == before || after.find(taken) != npos);
}

void editText(const std::string& before, const Values& values) {
  replaceVersions(before, values);
  modifyOriginLine(before, values);
  modifyOriginLineByTime(before);
  raiseVersion(before);
  doubleMLines(before);
  setTransport(before, values);
}

void encode(Values values) {
  sSdpParsedData data;
  data.init();
  data.address.setIPAddress(values.word().c_str());
  data.port = values.number<std::uint32_t>();
  data.packetizationPeriod[0] = values.number<std::uint8_t>();
  data.silenceSuppression = values.number<std::uint8_t>();
  for (auto& codec : data.audioCodec) codec = values.number<std::uint8_t>() % 32;
  Buffer buffer("");
  int length = -1;
  require(M::sdpEncoder(buffer.data(), data, values.number<int>(), length) == 0);
  const std::string text = buffer.text();
  require(length == static_cast<int>(text.size()) && text.size() < 1024);
  require(text.substr(text.size() - 2) == "\r\n");
}

/// The status of a request, by the address that it is to write.
unsigned short statusFor(const std::string& ip) {
  const auto isControl = [](char c) { return static_cast<unsigned char>(c) < ' ' || c == '\x7F'; };
  return std::any_of(ip.begin(), ip.end(), isControl) ? 1 : 0;
}

void request(const std::string& text, Values values) {
  const std::string cText = text.c_str();
  const std::string ip = values.word();
  Buffer buffer("");
  const bool inactive = values.number<std::uint8_t>() % 2 != 0;
  const auto port = values.number<unsigned int>();
  require(M::createSDPUserRequest(buffer.data(), ip.c_str(), port, cText.c_str(), inactive) ==
          statusFor(ip.c_str()));
  require(buffer.text().size() < kCapacity);
  const unsigned short status = statusFor(cText.c_str());
  require(M::createSDPUserRequest(buffer.data(), cText.c_str(), 1, ip.c_str(), inactive) == status);
  require(buffer.text().size() < kCapacity);
  require(status == 1 || buffer.text().compare(0, 5, "v=0\r\n") == 0);
}

void writeSmallTexts(Values values) {
  const auto line = std::make_unique<char[]>(30);
  const auto code = values.number<char>();
  const bool secure = values.number<std::uint8_t>() % 2 != 0;
  const int length = M::buildDummyMLine(line.get(), code, secure);
  require(length == static_cast<int>(strnlen(line.get(), 30)) && length < 30);
  const auto id = std::make_unique<char[]>(10);
  const long seconds = values.number<long>();
  sdpneg::composeSessionId(id.get(), seconds, values.number<long>());
  require(strnlen(id.get(), 10) < 10);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const std::string input(reinterpret_cast<const char*>(data), size);
  Values values(input);
  const std::string text = input.substr(0, input.find('\0'));
  editText(text.substr(0, kCapacity), values);
  editText(filled(text, values.number<std::uint8_t>() % 64U), values);
  encode(values);
  request(input, values);
  writeSmallTexts(values);
  return 0;
}
