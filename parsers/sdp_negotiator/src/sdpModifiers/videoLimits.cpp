#include "sdpModifiers/videoLimits.h"

#include <cstdlib>
#include <memory>
#include <string_view>

#include "sdpModifiers.h"
#include "sdpModifiers/adopt.h"
#include "sdpNegotiatorParser.h"
#include "sessionDescription.h"
#include "text/sections.h"
#include "trace.h"
#include "vocabulary.h"

// Levels and bandwidths of video sections.

namespace sdpneg {

namespace {

/// The last two digits of a profile-level-id (RFC 6184 8.1), by the level's index; 1b and 1.1 share theirs.
constexpr const char* kLevelTexts[] = {"0A", "0B", "0B", "0C", "0D", "14", "15", "16",
                                       "1E", "1F", "20", "28", "29", "2A", "32", "33"};
constexpr int kLevels = static_cast<int>(std::size(kLevelTexts));
constexpr std::string_view kVideo = "video";
constexpr std::size_t kLongestBandwidthLine = 55;

/// An index outside the table is level 1.
const char* levelText(int id) { return kLevelTexts[id >= 0 && id < kLevels ? id : 0]; }

Refusal refusalOfLevel(eH264_profile_id id) {
  if (id != H264_PROFILE_NOT_PRESENT && static_cast<int>(id) != -1) return {};
  return {.reason = SDP_REFUSED_H264_LEVEL, .number = static_cast<int>(id)};
}

/// Lowers the levels of one video section.
/// @return how many were changed
int lowerLevels(SdpText& text, std::size_t mLine, int id) {
  constexpr std::string_view kParameter = "profile-level-id=";
  const std::size_t end = sectionEnd(text.view(), mLine);
  int changed = 0;
  for (std::size_t at = findAnywhere(text.view().substr(0, end), kParameter, mLine); at != npos;
       at = findAnywhere(text.view().substr(0, end), kParameter, at)) {
    at += kParameter.size();
    const int level = sdpParserMessage::decodeH264ProfileString(text.view().data() + at);
    const Line line = lineAt(text.view(), at);
    if (level == -1 || id >= level || content(text.view(), line).size() < 6) continue;
    text.replace({at + 4, at + 6}, levelText(id));
    ++changed;
  }
  return changed;
}

struct BandwidthCounts {
  int found = 0;
  int modified = 0;
};

/// A b-line with its value lowered, in the codec's form; empty when it stays as it is.
class LoweredBandwidth {
 public:
  LoweredBandwidth(const char* line, unsigned int maxBandwidth) {
    b_line bandwidth;
    int first = 0;
    int second = 0;
    if (sdp_Bdecode_r(&bandwidth, line, nullptr, first, second) != 0) return;
    if (sdp_BgetBandwidthValue(&bandwidth) <= maxBandwidth) return;
    bandwidth.entries[0].value = maxBandwidth;
    char* text = nullptr;
    int length = 0;
    int size = 0;
    if (sdp_Bencode_r(&bandwidth, text, length, size) == 0)
      line_ = std::string_view(text, static_cast<std::size_t>(length));
    text_.reset(text);
    if (line_.size() > kLongestBandwidthLine) line_ = {};
  }
  std::string_view line() const { return line_; }

 private:
  struct Free {
    void operator()(char* text) const { std::free(text); }
  };
  std::unique_ptr<char, Free> text_;
  std::string_view line_;
};

/// Caps the b-lines of one video section, which ends at the next "m=" wherever that stands.
void capBandwidths(SdpText& text, std::size_t mLine, unsigned int maxBandwidth, BandwidthCounts& counts) {
  std::size_t end = sectionEndAnywhere(text.view(), mLine + kMLine.size());
  for (std::size_t at = findLine(text.view().substr(0, end), "b=", mLine); at != npos;
       at = findLine(text.view().substr(0, end), "b=", at)) {
    ++counts.found;
    const Line line = lineAt(text.view(), at);
    if (!line.terminated) return;
    const LoweredBandwidth lowered(text.view().data() + at, maxBandwidth);
    if (lowered.line().empty() || text.replace({at, line.next()}, lowered.line()) != Edit::done) continue;
    ++counts.modified;
    if (end < line.next()) return;  // the "m=" stood in the old line
    end = end - (line.next() - at) + lowered.line().size();
  }
}

}  // namespace

Refusal lowerH264Levels(SdpText& text, eH264_profile_id id) {
  trace::progress("Entering sdpModifyProfileId() method. h264ProfileId=%i", static_cast<int>(id));
  if (const Refusal refusal = refusalOfLevel(id)) return refusal;
  if (const Refusal refusal = refusalOfBuffer(text, "sdpModifyProfileId")) return refusal;
  int changed = 0;
  forEachMLineOf(text, kVideo, [&](std::size_t mLine) { changed += lowerLevels(text, mLine, id); });
  trace::info("Exiting sdpModifyProfileId() method: modified profile-level-id in %i a-lines", changed);
  return {};
}

void lowerBandwidths(SdpText& text, unsigned int maxBandwidth) {
  trace::progress("Entering sdpApplyBLine method: max bandwidth=%u", maxBandwidth);
  BandwidthCounts counts;
  if (adopted(text, "sdpApplyBLine")) {
    for (std::size_t mLine = nextMAnywhereOf(text.view(), kVideo); mLine != npos;
         mLine = nextMAnywhereOf(text.view(), kVideo, mLine + kMLine.size())) {
      capBandwidths(text, mLine, maxBandwidth, counts);
    }
  }
  trace::info("Exiting sdpApplyBLine method: Found total %i b-lines, modified %i of them", counts.found,
              counts.modified);
}

}  // namespace sdpneg

using namespace sdpneg;

bool sdpModifications::decodeProfileIntToString(char* out, eH264_profile_id id) {
  if (statusOf(refusalOfLevel(id)) != 0 || out == nullptr) return false;
  const std::string_view text = levelText(id);
  out[text.copy(out, 2)] = '\0';
  return true;
}

bool sdpModifications::decodeProfileIntToString(char* out, const unsigned char* videoCodecs, int count,
                                                eH264_profile_id id) {
  for (int i = 0; videoCodecs != nullptr && i < count && videoCodecs[i] != 0; ++i) {
    if (videoCodecs[i] == kCodecH264) return decodeProfileIntToString(out, id);
  }
  return true;
}

unsigned short sdpModifications::sdpModifyProfileId(char* sdp, eH264_profile_id id) {
  SdpText text(sdp);
  return statusOf(lowerH264Levels(text, id));
}

unsigned short sdpModifications::sdpApplyBLine(char* sdp, unsigned int maxBandwidth) {
  SdpText text(sdp);
  lowerBandwidths(text, maxBandwidth);
  return 0;
}
