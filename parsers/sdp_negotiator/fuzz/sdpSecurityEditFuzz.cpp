// Edits any text as engines do to move it between its secure, plain and best-effort forms, its address families and
// its sets of m-lines, with any record of removed m-lines; classifies it, and parses what comes of it.

#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "editTable.h"
#include "sdpModifiers.h"
#include "sdpNegotiator.h"

namespace {

using M = sdpModifications;

constexpr std::size_t kCodes = 25;

/// A record in a block of exactly its size. One that is read holds any codes, without a 0 behind them perhaps.
class Record {
 public:
  Record() : bytes_(std::make_unique<char[]>(kCodes)) {}
  explicit Record(Values& values) : Record() {
    for (std::size_t i = 0; i < kCodes; ++i) bytes_[i] = values.number<char>();
  }
  char* data() { return bytes_.get(); }

 private:
  std::unique_ptr<char[]> bytes_;
};

const char* transportOf(Values& values) {
  const char* const transports[] = {"RTP/AVP",   "RTP/SAVP", "RTP/AVPF",
                                    "RTP/SAVPF", "udptl",    "UDP/TLS/RTP/SAVPF"};
  return transports[values.number<std::uint8_t>() % 6U];
}

bool flagOf(Values& values) { return values.number<std::uint8_t>() % 2U != 0; }

unsigned short oLineEnd;
int length;

constexpr Edit kEdits[] = {
    {[](char* sdp, Values) -> unsigned short {
       M::sdpRemoveAnatAttributes(sdp);
       return 0;
     },
     1},
    {[](char* sdp, Values) -> unsigned short {
       M::sdpApplyAnatAttributes(sdp);
       return 0;
     },
     0},
    {[](char* sdp, Values) { return M::sdpRemoveDualStackIce(sdp); }, 0},
    {[](char* sdp, Values values) -> unsigned short {
       Record record;
       M::sdpRemoveMline(sdp, record.data(), oLineEnd, transportOf(values), false);
       return 0;
     },
     1},
    {[](char* sdp, Values values) -> unsigned short {
       Record record;
       M::sdpRemoveSecurity(sdp, record.data(), oLineEnd, flagOf(values));
       return 0;
     },
     0},
    {[](char* sdp, Values) {
       Record record;
       return M::sdpDisableSRTPMediaStreams(sdp, record.data(), oLineEnd);
     },
     0},
    {[](char* sdp, Values values) {
       Record record(values);
       return M::sdpReplaceTransProtocol(sdp, record.data(), oLineEnd, flagOf(values));
     },
     0},
    {[](char* sdp, Values values) {
       Record record;
       const auto from = static_cast<eSecurityType>(values.number<std::uint8_t>() % 7U);
       const auto to = static_cast<eSecurityType>(values.number<std::uint8_t>() % 7U);
       const unsigned short status = M::sdpChangeSdpType(sdp, from, to, record.data(), oLineEnd);
       return static_cast<unsigned short>(status != 0 ? 1 : 0);
     },
     0},
    {[](char* sdp, Values values) {
       Record record;
       const auto family = static_cast<eIPAddressVersion>(flagOf(values) ? 2 : 10);
       return M::sdpRemoveAnat(sdp, family, record.data(), oLineEnd, flagOf(values));
     },
     0},
    {[](char* sdp, Values values) {
       Record record(values);
       return M::sdpReInsertAnat(sdp, record.data(), oLineEnd, flagOf(values));
     },
     0},
    {[](char* sdp, Values values) { return M::sdpModifyCLines(sdp, addressOf(values).c_str()); }, 0},
    {[](char* sdp, Values values) { return M::sdpModifyCLinesAllLines(sdp, addressOf(values).c_str()); }, 0},
    {[](char* sdp, Values) { return M::sdpRemoveMlinesZeroPort(sdp); }, 0},
    {[](char* sdp, Values values) {
       const std::vector<std::string> names = {"audio", "video", "application"};
       const char* const from = transportOf(values);
       return M::sdpSetMediaTransportType(sdp, from, transportOf(values), names);
     },
     0},
    {[](char* sdp, Values values) {
       const unsigned int size = values.number<std::uint16_t>();
       const auto out = std::make_unique<char[]>(size);
       return M::getVideoDescriptions(sdp, out.get(), size, flagOf(values));
     },
     0},
    {[](char* sdp, Values values) {
       const std::string ip = addressOf(values);
       const bool answer = flagOf(values);
       const bool hold = flagOf(values);
       const bool third = flagOf(values);
       return M::sdpCreateDummy(sdp, answer, hold, third, ip.c_str(), values.number<std::uint16_t>(), length,
                                oLineEnd, flagOf(values));
     },
     0},
    {[](char* sdp, Values values) {
       const std::size_t at = values.number<std::uint16_t>();
       const std::size_t end = strnlen(sdp, kCapacity);
       if (end == kCapacity) return M::addSDESLine(nullptr);
       // The operation takes a place in a buffer of its own capacity.
       Buffer own(std::string(sdp + std::min(at, end)));
       return M::addSDESLine(own.data());
     },
     0},
};

void classify(const std::string& text) {
  Buffer buffer(text);
  std::vector<mDescription> mLines;
  if (M::getMLines(buffer.data(), mLines) != 0) return;
  const eSecurityType two = M::is2mLineBeSrtp(mLines);
  const eSecurityType one = M::is1mLineBeSrtp(mLines);
  require(two == BE_SRTP_2m_LINE || two == SRTP_UKNOWN);
  require(one == BE_SRTP_1m_LINE || one == SRTP_UKNOWN);
  require(mLines.empty() || one == SRTP_UKNOWN || two == SRTP_UKNOWN);
}

void compareAndMatch(const std::string& text, Values values) {
  const std::string other = text.substr(std::min<std::size_t>(values.number<std::uint16_t>(), text.size()));
  Buffer old(text);
  Buffer fresh(other);
  const int order = M::compareNumberOfMLines(old.data(), fresh.data());
  require(order >= -2 && order <= 1);
  const bool keep = flagOf(values);
  const bool transport = flagOf(values);
  unsigned short status = 0;
  run(
      other, [&](char* sdp) { return M::correctMLines(old.data(), sdp, keep, transport); }, status);
  require(order != -2 || text.size() >= kCapacity || status == 1);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return editInput(kEdits, data, size, [](const std::string& text, Values values) {
    classify(text);
    compareAndMatch(text, values);
    M::isSDESonly(text.c_str());
  });
}
