// What the edits of the origin line and the writing of texts cost on a body of 1 kB and on one of 18 kB, beside
// a memmove of the same text, which every edit that changes its length does at least for what stands behind.
//
//   sdpEditBench [--benchmark_... options]
//
// Each round restores the body by a memcpy, which "restore" measures alone, and edits it.

#include <benchmark/benchmark.h>

#include <cstdio>
#include <cstring>
#include <string>

#include "sdpModifiers.h"

namespace {

using Edit = unsigned short (*)(char*);
using M = sdpModifications;

char text[MAX_SDP_PROTOCOL_DATA_SIZE];
unsigned short oLineEnd;

/// A body of about so many characters with an audio and a video section.
std::string bodyOf(std::size_t size) {
  const std::string video = "m=video 49172 RTP/AVP 97\r\na=rtpmap:97 H264/90000\r\n";
  const std::string note = "a=candidate:1 1 UDP 2130706431 192.0.2.1 49170 typ host\r\n";
  std::string body =
      "v=0\r\no=alice 2890844526 9999 IN IP4 192.0.2.1\r\ns=-\r\nc=IN IP4 192.0.2.1\r\nt=0 0\r\n"
      "m=audio 49170 RTP/AVP 0 8\r\na=rtpmap:0 PCMU/8000\r\na=rtpmap:8 PCMA/8000\r\n";
  while (body.size() + video.size() + note.size() < size) body += note;
  return body + video;
}

void onlyMove(benchmark::State& state, const std::string& body) {
  body.copy(text, body.size());
  std::size_t from = 0;
  for (auto _ : state) {
    std::memmove(text + (1 - from), text + from, body.size());
    benchmark::ClobberMemory();
    from = 1 - from;
  }
}

void onlyRestore(benchmark::State& state, const std::string& body) {
  for (auto _ : state) {
    std::memcpy(text, body.c_str(), body.size() + 1);
    benchmark::ClobberMemory();
  }
}

void restoreAndEdit(benchmark::State& state, const std::string& body, Edit edit) {
  for (auto _ : state) {
    std::memcpy(text, body.c_str(), body.size() + 1);
    if (edit(text) != 0) return state.SkipWithError("the edit was refused");
    benchmark::ClobberMemory();
  }
  if (body == text) state.SkipWithError("the edit changed nothing");
}

unsigned short setTransport(char* sdp) {
  char* const mLine = std::strstr(sdp, "m=");
  return M::sdpReplaceMLineTransportProtocol(mLine, std::strchr(mLine, '\n'), "RTP/AVP", "RTP/SAVP");
}

struct Named {
  const char* name;
  Edit edit;
};

constexpr Named kEdits[] = {
    {"sdpReplaceVersionNumber", [](char* sdp) { return M::sdpReplaceVersionNumber(sdp, 10000, oLineEnd); }},
    {"sdpReplaceVersionNumberLong",
     [](char* sdp) { return M::sdpReplaceVersionNumberLong(sdp, 1700000000000, oLineEnd); }},
    {"sdpModifyOLine",
     [](char* sdp) { return M::sdpModifyOLine(sdp, "123456789", "12345", "192.0.2.2", oLineEnd); }},
    {"sdpModifyOLine by time", [](char* sdp) { return M::sdpModifyOLine(sdp, "192.0.2.2", oLineEnd); }},
    {"sdpIncVersion, one digit more", M::sdpIncVersion},
    {"sdpReplaceMLineTransportProtocol", setTransport},
    {"sdpBuild2mLineSDP", M::sdpBuild2mLineSDP},
};

void registerAll(const std::string& size, const std::string& body) {
  const auto add = [&](const std::string& name, auto step) {
    benchmark::RegisterBenchmark((size + ": " + name).c_str(), step);
  };
  add("memmove", [body](benchmark::State& s) { onlyMove(s, body); });
  add("restore", [body](benchmark::State& s) { onlyRestore(s, body); });
  for (const Named& one : kEdits) {
    add(one.name, [body, &one](benchmark::State& s) { restoreAndEdit(s, body, one.edit); });
  }
}

char removed[25];

/// Edits on a body of 18 kB that consists of what they remove.
struct Removal {
  const char* name;
  const char* line;
  Edit edit;
};

constexpr Removal kRemovals[] = {
    {"sdpRemoveICE", "a=candidate:1 1 UDP 2130706431 192.0.2.1 49170 typ host\r\n", M::sdpRemoveICE},
    {"sdpRemoveCandidates", "a=candidate:1 1 UDP 2130706431 192.0.2.1 49170 typ host\r\n",
     M::sdpRemoveCandidates},
    {"sdpRemoveSecureAttributes", "a=crypto:1 AES_CM_128_HMAC_SHA1_80 inline:MDEyMzQ1Njc4OWFiY2RlZg==\r\n",
     [](char* sdp) { return M::sdpRemoveSecureAttributes(sdp, "a=crypto"); }},
    {"sdpRemoveDTLSAttributes",
     "a=setup:actpass\r\na=fingerprint:sha-256 "
     "12:DF:3E:5D:49:6B:19:E5:7C:AB:4A:AD:B9:B1:3F:82:18:3B:54:02:12:DF:3E:5D:49:6B:19:E5:7C:AB:4A:AD\r\n",
     M::sdpRemoveDTLSAttributes},
    {"sdpDelPreconditions", "a=curr:qos e2e none\r\n", M::sdpDelPreconditions},
    {"sdpRemoveMline", "m=audio 49170 RTP/AVP 0\r\n",
     [](char* sdp) -> unsigned short {
       M::sdpRemoveMline(sdp, removed, oLineEnd, "RTP/AVP", false);
       return 0;
     }},
    {"sdpRemoveSecurity", "m=audio 49170 RTP/SAVP 0\r\n",
     [](char* sdp) -> unsigned short {
       M::sdpRemoveSecurity(sdp, removed, oLineEnd, false);
       return 0;
     }},
    {"sdpRemoveAnat", "m=audio 49170 RTP/AVP 0\r\nc=IN IP4 192.0.2.1\r\n",
     [](char* sdp) {
       return M::sdpRemoveAnat(sdp, static_cast<eIPAddressVersion>(2), removed, oLineEnd, false);
     }},
    // Each line joins onto the m-line when the one in front of it has gone.
    {"addSDESLine", "a=crypto:1 0 x\r\n",
     [](char* sdp) { return M::addSDESLine(std::strstr(sdp, "\na=crypto")); }},
    {"sdpRemoveMlinesZeroPort", "m=audio 0 RTP/AVP 0\r\n", M::sdpRemoveMlinesZeroPort},
};

void registerRemovals(std::size_t size) {
  for (const Removal& one : kRemovals) {
    std::string body = "v=0\r\no=alice 1 1 IN IP4 192.0.2.1\r\ns=-\r\nt=0 0\r\n";
    while (body.size() + std::strlen(one.line) < size) body += one.line;
    benchmark::RegisterBenchmark((std::string("all of 18 kB: ") + one.name).c_str(),
                                 [body, &one](benchmark::State& s) { restoreAndEdit(s, body, one.edit); });
  }
}

void encode(benchmark::State& state) {
  sSdpParsedData data;
  data.init();
  data.port = 49170;
  constexpr unsigned char codecs[] = {3, 1, 10, 29};
  std::memcpy(data.audioCodec, codecs, sizeof codecs);
  int length = 0;
  for (auto _ : state) {
    M::sdpEncoder(text, data, 1, length);
    benchmark::ClobberMemory();
  }
}

void request(benchmark::State& state) {
  for (auto _ : state) {
    M::createSDPUserRequest(text, "192.0.2.1", 49170, "PCMU,PCMA,G729,telephone-event", false);
    benchmark::ClobberMemory();
  }
}

}  // namespace

int main(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  for (const std::size_t size : {1000U, 18000U}) {
    const std::string body = bodyOf(size);
    std::printf("a body of %zu characters\n", body.size());
    registerAll(size == 1000 ? "1 kB" : "18 kB", body);
  }
  registerRemovals(18000);
  benchmark::RegisterBenchmark("sdpEncoder", encode);
  benchmark::RegisterBenchmark("createSDPUserRequest", request);
  benchmark::RunSpecifiedBenchmarks();
  benchmark::Shutdown();
  return 0;
}
