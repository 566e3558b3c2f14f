#ifndef REQUEST_SAMPLES_H
#define REQUEST_SAMPLES_H

#include <cstddef>
#include <string_view>
#include <vector>

// Requests with right arguments, for tests that try all of them on many bodies.

namespace requestSamples {

using Request = std::vector<std::string_view>;

/// A kind of request: what its first argument and its selection may be. One that takes none has none.
struct Kind {
  std::string_view name;
  std::vector<std::string_view> first;
  std::vector<std::string_view> second;
  bool mayLackSecond;
};

inline const std::vector<Kind>& kinds() {
  static const std::vector<std::string_view> lists = {"PCMU",
                                                      "PCMA,telephone-event",
                                                      "opus",
                                                      "opus,telephone-event",
                                                      "PCMU,telephone-event,CN",
                                                      "VP8",
                                                      "VP8,red,ulpfec,rtx",
                                                      "0,8,101",
                                                      "pcma/8000,telephone-event/8000",
                                                      "opus/48000/2,red",
                                                      "opus/48000/1",
                                                      "H264,red,flexfec-03",
                                                      "G722,G729,13",
                                                      "nosuch",
                                                      "telephone-event",
                                                      "96,97,98,99",
                                                      "rtx,red,ulpfec",
                                                      "AV1,VP9,opus,red,telephone-event",
                                                      "VP8,opus,PCMU",
                                                      "red,CN,96"};
  static const std::vector<std::string_view> media = {
      "all",     "audio", "video", "1", "2",  "mid=0", "mid=1", "mid=audio", "application",
      "message", "text",  "image", "3", "99", "mid=",  "0",     "mid=video", "mid=a"};
  static const std::vector<std::string_view> few = {"all", "audio", "2"};
  static const std::vector<Kind> all = {
      {"keep-codecs", lists, few, true},
      {"drop-codecs", lists, few, true},
      {"order-codecs", lists, few, true},
      {"anchor",
       {"192.0.2.250", "2001:db8::250", "0.0.0.0", "::", "255.255.255.255"},
       {"40000", "1024", "65534", "65532", "65520", "2000", "9998", "00010000"},
       false},
      {"set-profile",
       {"RTP/AVP", "RTP/AVPF", "RTP/SAVP", "RTP/SAVPF", "UDP/TLS/RTP/SAVP", "UDP/TLS/RTP/SAVPF"},
       {"all", "audio", "video", "1", "2", "mid=0"},
       true},
      {"opportunistic", {}, media, true},
      {"secure-only", {}, media, true},
      {"unbundle", {}, {}, true},
      {"strip-attributes",
       {"candidate", "ice-*,fingerprint", "*", "rtcp*,extmap", "group,mid,bundle-only,x", "rtpmap,fmtp",
        "ssrc,ssrc-group,msid", "nosuch", "sendrecv,recvonly,sendonly,inactive", "m*,s*"},
       {"all", "audio", "1"},
       true},
      {"direction",
       {"sendrecv", "sendonly", "recvonly", "inactive"},
       {"all", "audio", "video", "1", "2", "mid=0", "99", "application", "mid=1"},
       true},
      {"disable", {}, media, false},
      {"canonical", {}, {}, true},
  };
  return all;
}

/// A request chosen by three numbers of any size.
inline Request chosen(std::size_t kind, std::size_t first, std::size_t second) {
  const Kind& of = kinds()[kind % kinds().size()];
  Request request{of.name};
  if (!of.first.empty()) request.push_back(of.first[first % of.first.size()]);
  const std::size_t choices = of.second.size() + (of.mayLackSecond ? 1 : 0);
  const std::size_t choice = choices == 0 ? 0 : second % choices;
  if (choice < of.second.size()) request.push_back(of.second[choice]);
  return request;
}

/// All of a kind.
inline std::vector<Request> allOf(std::size_t kind) {
  const Kind& of = kinds()[kind];
  std::vector<Request> requests;
  for (std::size_t first = 0; first < (of.first.empty() ? 1 : of.first.size()); ++first) {
    const std::size_t choices = of.second.size() + (of.mayLackSecond ? 1 : 0);
    for (std::size_t second = 0; second < choices; ++second) requests.push_back(chosen(kind, first, second));
  }
  return requests;
}

}  // namespace requestSamples

#endif
