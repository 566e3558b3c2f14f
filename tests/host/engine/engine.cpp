// An engine with a trace facility, an address class and a codec library of its own: tells whether the
// negotiator library works with those.

#include <dlfcn.h>
#include <hostIPAddress.h>
#include <hostTrace.h>
#include <sdpDataDefinitions.h>
#include <sdpNegotiatorTrace.h>
#include <sessionDescription.h>

#include <cstdio>
#include <memory>
#include <string>

namespace {

int failures = 0;

void expect(bool holds, const char* what) {
  std::printf("%s %s\n", holds ? "ok    " : "FAILED", what);
  if (!holds) ++failures;
}

void traceGoesToTheHost() {
  const std::string registration =
      "init;facility SDP_NEGOTIATOR;flag SDP_NEGOTIATOR 1 DEBUG;flag SDP_NEGOTIATOR 2 INFO;flag SDP_NEGOTIATOR 4 ERROR;";
  expect(hostTraceCalls() == registration, "the library registered with the host's trace facility at load");
  hostTraceCalls().clear();
  cNegotTraceManager::writeTraceMsg(4, 3, "port %d", 5004);
  expect(hostTraceCalls().rfind("test 77 2;line 77 4 3 ", 0) == 0,
         "a line asks the flag and is written by the host");
  expect(hostTraceCalls().find("port 5004") != std::string::npos, "the host receives the finished line");
}

void addressesAreTheHosts() {
  const int before = hostAddressResets();
  sSdpParsedData data;
  data.init();
  expect(hostAddressResets() > before, "the records hold the host's address class");
  expect(data.address.getIPAddressVersion() == HOST_IP_NONE, "and reset it");
}

std::string libraryOf(void* function) {
  Dl_info found{};
  return dladdr(function, &found) != 0 && found.dli_fname != nullptr ? found.dli_fname : "";
}

void codecIsTheHosts() {
  expect(libraryOf(reinterpret_cast<void*>(&sdp_decodeOpt_r)).find("libhost_codec") != std::string::npos,
         "decoding stands in the host's codec library");
  const auto body = std::make_unique_for_overwrite<sDescription>();
  unsigned short start = 0;
  unsigned short end = 0;
  expect(sdp_decodeOpt_r(body.get(), "v=0\r\nm=audio 5004 RTP/AVP 8\r\n", SDP_TYPE_OFFER, nullptr, false,
                         start, end) == 0 &&
             sdp_getNoOfMDs(body.get()) == 1,
         "and decodes");
}

}  // namespace

int main() {
  traceGoesToTheHost();
  addressesAreTheHosts();
  codecIsTheHosts();
  return failures == 0 ? 0 : 1;
}
