#include "sdpModifiers/videoLimits.h"

#include <algorithm>
#include <cstdlib>
#include <memory>
#include <optional>
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
/// Digits of a profile-level-id.
constexpr std::size_t kLevelIdLength = 6;
constexpr std::size_t kLongestBandwidthLine = 55;

/// An index outside the table is level 1.
const char* levelText(int id) { return kLevelTexts[id >= 0 && id < kLevels ? id : 0]; }

Refusal refusalOfLevel(eH264_profile_id id) {
  if (id != H264_PROFILE_NOT_PRESENT && static_cast<int>(id) != -1) return {};
  return {.reason = SDP_REFUSED_H264_LEVEL, .number = static_cast<int>(id)};
}

/// Whether a line goes on for so many characters from an offset on.
bool hasCharacters(std::string_view text, std::size_t at, std::size_t count) {
  // Behind them, a CR may be part of the line's end.
  const std::string_view near = text.substr(0, std::min(text.size(), at + count + 2));
  return content(near, lineAt(near, at)).size() >= count;
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
    if (level == -1 || id >= level || !hasCharacters(text.view(), at, kLevelIdLength)) continue;
    text.replace({at + 4, at + 6}, levelText(id));
    ++changed;
  }
  return changed;
}

struct BandwidthCounts {
  int found = 0;
  int modified = 0;
};

/// A b-line with its value lowered, in the codec's form; empty when it stays as it is. Its text is used again for another.
class LoweredBandwidth {
 public:
  void lower(const char* line, unsigned int maxBandwidth) {
    line_ = {};
    b_line bandwidth;
    int first = 0;
    int second = 0;
    if (sdp_Bdecode_r(&bandwidth, line, nullptr, first, second) != 0) return;
    if (sdp_BgetBandwidthValue(&bandwidth) <= maxBandwidth) return;
    bandwidth.entries[0].value = maxBandwidth;
    char* text = text_.release();
    int length = 0;
    if (sdp_Bencode_r(&bandwidth, text, length, size_) == 0)
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
  int size_ = 0;
  std::string_view line_;
};

/// Caps the b-lines of video sections, which end at the next "m=" wherever that stands.
class BandwidthCaps {
 public:
  explicit BandwidthCaps(unsigned int maxBandwidth) : maxBandwidth_(maxBandwidth) {}

  std::optional<Change> next(std::string_view text, std::size_t room) {
    while (inSection_ || enterSection(text)) {
      const std::size_t found = findLine(text.substr(0, end_), kBandwidth, at_);
      if (found == npos) {
        leaveSection(end_);
        continue;
      }
      ++counts_.found;
      const Line line = lineAt(text, found);
      if (!line.terminated) break;
      at_ = line.begin;
      if (const auto change = cap(text, line); change && takes(*change) <= room) {
        ++counts_.modified;
        if (end_ < line.next()) goOnBehind(text, line);
        return change;
      }
    }
    return std::nullopt;
  }

  const BandwidthCounts& counts() const { return counts_; }

 private:
  bool enterSection(std::string_view text) {
    at_ = nextMAnywhereOf(text, kVideo, at_);
    inSection_ = at_ != npos;
    if (inSection_) end_ = sectionEndAnywhere(text, at_ + kMLine.size());
    return inSection_;
  }

  void leaveSection(std::size_t from) {
    inSection_ = false;
    at_ = from;
  }

  std::optional<Change> cap(std::string_view text, const Line& line) {
    lowered_.lower(text.data() + line.begin, maxBandwidth_);
    if (lowered_.line().empty()) return std::nullopt;
    return Change{{line.begin, line.next()}, lowered_.line()};
  }

  /// The next "m=" stood in a line that was changed. The section behind it is that of the last one in the line's new
  /// text, if there is one.
  void goOnBehind(std::string_view text, const Line& line) {
    const std::string_view last =
        lowered_.line().substr(std::min(lowered_.line().rfind(kMLine), lowered_.line().size()));
    leaveSection(line.next());
    inSection_ = nextMAnywhereOf(last, kVideo) == 0;
    if (!inSection_) return;
    at_ = line.lf;
    end_ = sectionEndAnywhere(text, line.next());
  }

  static constexpr std::string_view kBandwidth = "b=";

  unsigned int maxBandwidth_;
  bool inSection_ = false;
  std::size_t at_ = 0;   ///< where the search goes on
  std::size_t end_ = 0;  ///< of the section
  LoweredBandwidth lowered_;
  BandwidthCounts counts_;
};

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
  BandwidthCaps caps(maxBandwidth);
  if (adopted(text, "sdpApplyBLine")) {
    text.changeEach(
        [&](std::string_view view, std::size_t /*from*/, std::size_t room) { return caps.next(view, room); });
  }
  trace::info("Exiting sdpApplyBLine method: Found total %i b-lines, modified %i of them",
              caps.counts().found, caps.counts().modified);
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
