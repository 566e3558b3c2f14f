// Edits any text as engines do to narrow codecs, cap video, add attributes, move addresses and disable media, and
// parses what comes of it. Which values an edit is given, the input's end says.

#include <cstdint>
#include <cstring>
#include <string>

#include "editTable.h"
#include "sdpModifiers.h"
#include "sdpNegotiator.h"

namespace {

using M = sdpModifications;

/// A list of 20 codec values, mostly ones that bodies have.
struct Codecs {
  explicit Codecs(Values& values) {
    for (unsigned char& codec : list) codec = values.number<std::uint8_t>() % 40;
  }
  unsigned char list[MAX_SDP_NEGOTIATOR_AUDIO_CODECS];
};

template <typename Enumeration>
Enumeration oneOf(Values& values, int first, int count) {
  return static_cast<Enumeration>(first + values.number<std::uint8_t>() % count);
}

constexpr Edit kEdits[] = {
    // A description that was not held whole may be so behind the first run; the second writes it in the codec's form.
    {[](char* sdp, Values values) { return M::sdpRemoveCodecs(sdp, Codecs(values).list); }, 2},
    {[](char* sdp, Values values) { return M::sdpCodecsReordering(sdp, Codecs(values).list); }, 0},
    {[](char* sdp, Values values) {
       return M::sdpModifyProfileId(sdp, oneOf<eH264_profile_id>(values, -2, 20));
     },
     1},
    {[](char* sdp, Values values) { return M::sdpApplyBLine(sdp, values.number<std::uint32_t>()); }, 1},
    {[](char* sdp, Values values) {
       return M::sdpInsertEchoCancellation(sdp, oneOf<unsigned char>(values, 0, 4),
                                           oneOf<unsigned char>(values, 0, 5));
     },
     0},
    {[](char* sdp, Values values) {
       sSdpParsedData data;
       data.init();
       data.audioCodec[0] = values.number<std::uint8_t>();
       return M::sdpInsertSilenceSuppression(sdp, oneOf<unsigned char>(values, 0, 4), data);
     },
     0},
    {[](char* sdp, Values values) {
       sSdpPrecondions list[16];
       for (sSdpPrecondions& each : list) {
         each = {oneOf<unsigned int>(values, 1, 4), oneOf<unsigned int>(values, 0, 3),
                 oneOf<unsigned int>(values, 0, 6), oneOf<unsigned int>(values, 0, 4),
                 oneOf<unsigned int>(values, 0, 5)};
       }
       const auto allowed = values.number<std::uint32_t>() % 30000U;
       return M::sdpInsertPrecondions(sdp, allowed, 1, oneOf<int>(values, 0, 17), list);
     },
     0},
    {[](char* sdp, Values) { return M::sdpDelPreconditions(sdp); }, 1},
    {[](char* sdp, Values values) { return M::sdpReplaceCxIP(sdp, addressOf(values).c_str()); }, 1},
    {[](char* sdp, Values values) {
       const int types[] = {-1, 1, 2, 4, 8, 16, 32, 3};
       const int type = types[values.number<std::uint8_t>() % 8];
       const auto version = static_cast<eIPAddressVersion>(values.number<std::uint8_t>() % 12);
       return M::sdpSetMediaPort(sdp, type, version, oneOf<M::eMediaSecurityType>(values, 0, 3),
                                 values.number<std::uint32_t>());
     },
     1},
    {[](char* sdp, Values values) {
       return M::sdpDisablePort(sdp, values.number<std::int8_t>(), static_cast<eIPAddressVersion>(0));
     },
     1},
    {[](char* sdp, Values values) {
       return M::sdpRemoveVideoMedia(sdp, values.number<std::uint8_t>() % 2 != 0);
     },
     0},
    {[](char* sdp, Values values) {
       return M::sdpReplaceMode(sdp, oneOf<unsigned char>(values, 0, 6), oneOf<int>(values, 0, 4));
     },
     0},
    {[](char* sdp, Values) { return M::sdpRemoveSecureAttributes(sdp, "a=key-mgmt:"); }, 1},
    {[](char* sdp, Values) { return M::sdpRemoveDTLSAttributes(sdp); }, 0},
    {[](char* sdp, Values) { return M::sdpRemoveICE(sdp); }, 1},
    {[](char* sdp, Values) { return M::sdpRemoveCandidates(sdp); }, 1},
};

void restrictObject(const std::string& text, Values values) {
  cSdpNegotiator object;
  if (object.sdpParse(text.c_str(), SDP_TYPE_OFFER) != 0) return;
  const Codecs codecs(values);
  const auto count = static_cast<int>(values.number<std::int8_t>());
  unsigned char given[INT8_MAX];  // as many as any count
  for (std::size_t i = 0; i < sizeof given; ++i) given[i] = codecs.list[i % sizeof codecs.list];
  cSdpNegotiator fresh = object;
  switch (values.number<std::uint8_t>() % 4) {
    case 0:
      object.sdpChangeAudioCodecPreference(codecs.list[0]);
      return;
    case 1:
      object.sdpReorderAudioCodecPreference(given, count);
      return;
    default:
      break;
  }
  if (object.sdpRestrictAudioCodecsTo(given, count, count % 2 != 0) == 0) {
    require(std::memcmp(&object, &fresh, sizeof object) == 0);
    return;
  }
  // The summary is that of the new text.
  char stored[kCapacity];
  if (object.getSDP(stored, sizeof stored) != 0) return;
  require(fresh.sdpParse(stored, SDP_TYPE_UNKNOWN) == 0);
  require(std::memcmp(&object, &fresh, sizeof object) == 0);
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  return editInput(kEdits, data, size, restrictObject);
}
