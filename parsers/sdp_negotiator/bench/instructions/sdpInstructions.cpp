// What scripts/check-instructions counts the instructions of: decoding, parsing and five requests, each over the same
// short bodies, in a function of its own that is called once behind a round that warms up. Nothing of it depends on where
// the program, its arguments or its environment stand in memory, so that the counts are the same wherever it is built and
// run alike.
//
//   sdpInstructions FOLDER       the folder of the bodies; prints how many lines they have
//   sdpInstructions --built-as   what the counts hold for: compiler, build and C library

#include <fcntl.h>
#include <gnu/libc-version.h>
#include <unistd.h>

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>

#include "sdpNegotiator.h"
#include "sessionDescription.h"

namespace {

// All are stored as they are: what deflates counts by itself, and differently on each processor.
constexpr const char* kBodies[] = {
    "staticPayloads.sdp", "audioOffer.sdp",  "heldVideo.sdp",     "fax.sdp",
    "anat.sdp",           "securePhone.sdp", "preconditions.sdp", "audioVideo.sdp",
    "bestEffort.sdp",     "secureRoom.sdp",  "manyCodecs.sdp",    "iceAudio.sdp",
    "webAudio.sdp",       "iceVideo.sdp",    "meeting.sdp",       "webVideo.sdp"};
constexpr std::size_t kCount = sizeof kBodies / sizeof kBodies[0];
constexpr const char* kOther =
    "v=0\r\no=other 8000000000 12 IN IP4 198.51.100.200\r\ns=-\r\nc=IN IP4 198.51.100.200\r\n"
    "t=0 0\r\nm=audio 40000 RTP/AVP 0\r\n";

struct alignas(4096) Everything {
  char texts[kCount][4096];
  cSdpNegotiator parsed[kCount];
  cSdpNegotiator objects[kCount];
  cSdpNegotiator other;
  sDescription description;
};
Everything all;
unsigned int failures = 0;

void expect(bool holds) { failures += holds ? 0U : 1U; }

void decode() {
  for (const auto& text : all.texts) {
    char error[SDP_ERROR_TEXT_SIZE];
    unsigned short start = 0;
    unsigned short end = 0;
    expect(sdp_decodeOpt_r(&all.description, text, SDP_TYPE_OFFER, error, false, start, end) == 0);
  }
}

void parse() {
  for (std::size_t i = 0; i < kCount; ++i) expect(all.objects[i].sdpParse(all.texts[i], SDP_TYPE_OFFER) == 0);
}

// All but the fax, which has no audio, are rewritten.
void restrictAudioCodecs() {
  constexpr unsigned char codecs[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {3, 1, 10, 31};  // PCMU, PCMA, G729, AMR
  std::size_t rewritten = 0;
  for (cSdpNegotiator& each : all.objects) rewritten += each.sdpRestrictAudioCodecsTo(codecs, 4, false);
  expect(rewritten == kCount - 1);
}

void replaceMode() {
  for (cSdpNegotiator& each : all.objects) expect(each.sdpReplaceMode(CONNECTION_MODE_SENDONLY, 0) == 0);
}

void modifyTransportTypes() {
  for (cSdpNegotiator& each : all.objects) each.sdpModifyTransportTypes("RTP/AVP", "RTP/SAVP");
}

// With the o-line of the other side: one of this side's has the time of day.
void createDummy() {
  for (cSdpNegotiator& each : all.objects) {
    expect(each.createDummy(true, false, false, "192.0.2.99", 5004, false) == 0);
  }
}

void copyOLine() {
  for (cSdpNegotiator& each : all.objects) expect(each.copyOLine(&all.other) == 0);
}

}  // namespace

// What is counted: by these names.
#define SDP_COUNTED(name, step) \
  extern "C" __attribute__((noinline, visibility("default"))) void name() { step(); }
SDP_COUNTED(count_decode, decode)
SDP_COUNTED(count_sdpParse, parse)
SDP_COUNTED(count_sdpRestrictAudioCodecsTo, restrictAudioCodecs)
SDP_COUNTED(count_sdpReplaceMode, replaceMode)
SDP_COUNTED(count_sdpModifyTransportTypes, modifyTransportTypes)
SDP_COUNTED(count_createDummy, createDummy)
SDP_COUNTED(count_copyOLine, copyOLine)
#undef SDP_COUNTED

namespace {

/// By system calls alone, and into memory that has its place: whatever else would take memory of the heap.
bool readTexts(const char* folder) {
  if (chdir(folder) != 0) return false;
  for (std::size_t i = 0; i < kCount; ++i) {
    const int file = open(kBodies[i], O_RDONLY | O_CLOEXEC);
    const ssize_t length = file < 0 ? -1 : read(file, all.texts[i], sizeof all.texts[i] - 1);
    if (file >= 0) close(file);
    if (length <= 0 || length >= SDP_STORED_TEXT_SIZE) {
      std::fprintf(stderr, "sdpInstructions: %s is missing or too long\n", kBodies[i]);
      return false;
    }
  }
  return true;
}

void restore() { std::copy_n(all.parsed, kCount, all.objects); }

/// Each request once on the parsed bodies, uncounted and then counted.
void run(void (*uncounted)(), void (*counted)()) {
  restore();
  uncounted();
  for (const cSdpNegotiator& each : all.objects) expect(each.getParsedData().storedSdpLength == 0);
  restore();
  counted();
}

void runAll() {
  run(decode, count_decode);
  run(parse, count_sdpParse);
  run(restrictAudioCodecs, count_sdpRestrictAudioCodecsTo);
  run(replaceMode, count_sdpReplaceMode);
  run(modifyTransportTypes, count_sdpModifyTransportTypes);
  run(createDummy, count_createDummy);
  run(copyOLine, count_copyOLine);
}

/// Arguments and environment stand at the top of the stack, and where it goes on from there depends on them. Text that is
/// searched or copied takes more or fewer steps as it is aligned.
__attribute__((noinline)) void onAlignedStack(void (*step)()) {
  constexpr std::uintptr_t kPage = 4096;
  const auto place = reinterpret_cast<std::uintptr_t>(__builtin_frame_address(0));
  auto* const padding = static_cast<volatile char*>(__builtin_alloca(kPage + place % kPage));
  padding[0] = 0;
  step();
}

}  // namespace

int main(int argc, char** argv) {
  if (argc == 2 && std::strcmp(argv[1], "--built-as") == 0) {
    std::printf("%s, glibc %s\n", SDP_BUILT_AS, gnu_get_libc_version());
    return 0;
  }
  if (argc != 2 || !readTexts(argv[1])) return 2;
  parse();
  std::copy_n(all.objects, kCount, all.parsed);
  expect(all.other.sdpParse(kOther, SDP_TYPE_OFFER) == 0);
  onAlignedStack(runAll);
  if (failures != 0) {
    std::fprintf(stderr, "sdpInstructions: %u of the steps failed\n", failures);
    return 2;
  }
  std::ptrdiff_t lines = 0;
  for (const auto& text : all.texts) lines += std::count(text, text + std::strlen(text), '\n');
  std::printf("%td\n", lines);
  return 0;
}
