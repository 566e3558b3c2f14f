#include <algorithm>
#include <cstdint>
#include <cstring>
#include <span>
#include <string_view>

#include "attributeKinds.h"
#include "attributeLines.h"
#include "encodingNames.h"
#include "sdpNegotiatorParser.h"
#include "text/search.h"
#include "videoCodecRules.h"
#include "videoFormats.h"
#include "vocabulary.h"

// Which codec a video format stands for, and its H.264 level.

namespace sdpneg {
namespace {

bool matches(const VideoRule& rule, std::string_view name, std::string_view format) {
  switch (rule.test) {
    case VideoTest::namePrefix:
      return startsWith(name, rule.text);
    case VideoTest::namePrefixAnyCase:
      return startsWithNoCase(name, rule.text);
    case VideoTest::wholeName:
      return name == rule.text;
    case VideoTest::wholeFormat:
      return format == rule.text;
  }
  return false;
}

constexpr std::size_t kProfileLevelIdLength = 6;
constexpr int kNoProfileLevelId = -1;

/// Baseline, main and extended. The digit-only ones have no case.
bool isKnownProfile(std::string_view profileByte) {
  return profileByte == "42" || equalNoCase(profileByte, "4d") || profileByte == "58";
}

/// The two levels that share a level byte: constraint flag 3, the lowest bit of this digit, tells them apart.
eH264_profile_id levelOfConstraints(char digit) {
  const std::size_t value = std::string_view("0123456789abcdef").find(lower(digit));
  if (value == npos) return H264_LEVEL_1;
  return value % 2 != 0 ? H264_LEVEL_1B : H264_LEVEL_1_1;
}

int h264LevelOf(std::string_view profileLevelId) {
  if (profileLevelId.size() < kProfileLevelIdLength) return kNoProfileLevelId;
  if (!isKnownProfile(profileLevelId.substr(0, 2))) return H264_LEVEL_1;
  const std::string_view levelByte = profileLevelId.substr(4, 2);
  if (equalNoCase(levelByte, "0b")) return levelOfConstraints(profileLevelId[2]);
  for (const H264LevelRule& rule : kH264LevelRules) {
    if (equalNoCase(levelByte, rule.levelByte)) return rule.level;
  }
  return H264_LEVEL_1;
}

/// The level that an fmtp line gives for a format.
int h264LevelOf(const a_line::entry& line, std::string_view format) {
  constexpr std::string_view parameter = "profile-level-id=";
  if (!textStartsWith(line.value, format)) return kNoProfileLevelId;
  const std::string_view value = line.value;
  const std::size_t at = value.find(parameter);
  return at == npos ? kNoProfileLevelId : h264LevelOf(value.substr(at + parameter.size()));
}

int h264LevelOf(std::span<const a_line::entry> lines, std::string_view format) {
  for (const a_line::entry& line : lines) {
    if (!kFmtpPrefix.matches(line.name)) continue;
    const int level = h264LevelOf(line, format);
    if (level != kNoProfileLevelId) return level;
  }
  return H264_LEVEL_1;
}

int h264LevelOf(const AttributeIndex& lines, std::string_view format) {
  int level = kNoProfileLevelId;
  constexpr KindSet kinds(AttributeKind::fmtp, AttributeKind::longerFmtp);
  lines.forEach(kinds, [&](const a_line::entry& line, AttributeKind) {
    level = h264LevelOf(line, format);
    return level == kNoProfileLevelId;
  });
  return level != kNoProfileLevelId ? level : H264_LEVEL_1;
}

bool isStatic(std::string_view format) {
  return std::find(std::begin(kStaticPayloads), std::end(kStaticPayloads), format) !=
         std::end(kStaticPayloads);
}

/// @param lines of the m-line, or the index of them
template <typename Lines>
codecDetailStruct detailIn(unsigned int kind, const Lines& lines, const char* format) {
  codecDetailStruct detail;
  detail.kind = kind == MEDIA_VIDEO ? CODEC_DETAIL_VIDEO : CODEC_DETAIL_APPLICATION;
  const std::string_view text = viewOf(format);
  const std::string_view name = findEncodingName(lines, format);
  if (name.empty() && !isStatic(text)) return detail;
  detail.codec = videoCodecOf(name.empty() ? text : name, text);
  if (detail.codec == kCodecH264) detail.profile = h264LevelOf(lines, text);
  return detail;
}

}  // namespace

std::uint8_t videoCodecOf(std::string_view name, std::string_view format) {
  for (const VideoRule& rule : kVideoRules) {
    if (matches(rule, name, format)) return rule.codec;
  }
  return SDP_NO_CODEC;
}

codecDetailStruct detailOf(unsigned int kind, std::span<const a_line::entry> lines, const char* format) {
  return detailIn(kind, lines, format);
}

codecDetailStruct detailOf(unsigned int kind, const AttributeIndex& lines, const char* format) {
  return detailIn(kind, lines, format);
}

}  // namespace sdpneg

using namespace sdpneg;

unsigned char sdpParserMessage::convertVideoCodec(const char* encodingName, const char* format) {
  if (encodingName == nullptr) return SDP_NO_CODEC;
  return videoCodecOf(encodingName, viewOf(format));
}

bool sdpParserMessage::isStaticPayload(const char* format) { return isStatic(viewOf(format)); }

int sdpParserMessage::decodeH264ProfileString(const char* profileLevelId) {
  using namespace sdpneg;
  if (profileLevelId == nullptr) return kNoProfileLevelId;
  return h264LevelOf({profileLevelId, strnlen(profileLevelId, kProfileLevelIdLength)});
}

int sdpParserMessage::decodeH264ProfileId(const a_line* attributes, const char* format) {
  using namespace sdpneg;
  return format != nullptr ? h264LevelOf(entriesOf(attributes), format) : H264_LEVEL_1;
}

unsigned char sdpParserMessage::getMediaCodec(const char* begin, const char* end, const char* format) {
  using namespace sdpneg;
  if (isStaticPayload(format)) return convertVideoCodec(format, format);
  const std::string_view name = findEncodingName(begin, end, format);
  return name.empty() ? SDP_NO_CODEC : videoCodecOf(name, format);
}
