// Reading the formats of a section.

#include "codecs.h"

#include <algorithm>
#include <array>
#include <numeric>

#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::size_t kUsualFormats = 8;  ///< of a section; for more the list grows

struct FamilyName {
  std::string_view name;
  Family family;
};

constexpr std::array<FamilyName, 12> kFamilies{{
    {"H264", Family::h264},
    {"H265", Family::h265},
    {"VP9", Family::vp9},
    {"AV1", Family::av1},
    {"AMR", Family::amr},
    {"AMR-WB", Family::amr},
    {"G729", Family::g729},
    {"iLBC", Family::ilbc},
    {"telephone-event", Family::telephoneEvent},
    {"CN", Family::comfortNoise},
    {"rtx", Family::rtx},
    {"red", Family::red},
}};

Family familyOf(std::string_view name) {
  for (const FamilyName& known : kFamilies) {
    if (sdpneg::equalNoCase(known.name, name)) return known.family;
  }
  return Family::other;
}

Codec codecOf(const Format& format) {
  Codec codec;
  codec.payload = format.format;
  codec.isCompanion = format.isCompanion;
  if (format.encoding && readNumber(format.format)) {
    codec.name = format.encoding->name;
    codec.clockRate = format.encoding->clockRate;
    codec.channels = format.encoding->channels;
    codec.family = familyOf(codec.name);
  }
  return codec;
}

std::string_view aptOf(const Codec& rtx) {
  const std::string_view value = Fields(rtx.parameter("apt").value_or(std::string_view()))[0];
  return readNumber(value) ? value : std::string_view();
}

std::string_view carriedBy(const Codec& red) {
  const std::string_view text = red.parameters();
  return Fields(text.substr(0, text.find(';')))[0];
}

}  // namespace

std::optional<std::string_view> Codec::parameter(std::string_view wanted) const {
  for (const std::string_view parameters : fmtps) {
    const std::optional<std::string_view> value = parameterOf(parameters, wanted);
    if (value && !value->empty()) return value;
  }
  return std::nullopt;
}

bool Codec::hasParameter(std::string_view wanted) const {
  return std::any_of(fmtps.begin(), fmtps.end(), [wanted](std::string_view parameters) {
    return parameterOf(parameters, wanted).has_value();
  });
}

std::string_view Payloads::next() {
  while (!rest_.empty()) {
    const std::size_t slash = std::min(rest_.find('/'), rest_.size());
    const std::string_view payload = rest_.substr(0, slash);
    rest_.remove_prefix(std::min(slash + 1, rest_.size()));
    if (readNumber(payload)) return payload;
  }
  return {};
}

CodecList::CodecList(const Section& section) {
  readFormats(section);
  if (section.isRtp()) readParameters(section);
}

void CodecList::readFormats(const Section& section) {
  codecs_.reserve(kUsualFormats);
  for (const Format& format : section.formats()) codecs_.push_back(codecOf(format));
  byPayload_.resize(codecs_.size());
  std::iota(byPayload_.begin(), byPayload_.end(), 0);
  const auto isLess = [this](std::uint32_t a, std::uint32_t b) {
    return codecs_[a].payload != codecs_[b].payload ? codecs_[a].payload < codecs_[b].payload : a < b;
  };
  std::sort(byPayload_.begin(), byPayload_.end(), isLess);
  const auto isSame = [this](std::uint32_t a, std::uint32_t b) {
    return codecs_[a].payload == codecs_[b].payload;
  };
  byPayload_.erase(std::unique(byPayload_.begin(), byPayload_.end(), isSame), byPayload_.end());
  hasRepeated_ = byPayload_.size() != codecs_.size();
  if (!hasRepeated_) return;
  // Of those that stand there twice the first counts.
  std::vector<std::uint32_t> kept = byPayload_;
  std::sort(kept.begin(), kept.end());
  std::vector<Codec> codecs;
  codecs.reserve(kept.size());
  for (const std::uint32_t i : kept) codecs.push_back(codecs_[i]);
  codecs_.swap(codecs);
  for (std::uint32_t& i : byPayload_) {
    i = static_cast<std::uint32_t>(std::lower_bound(kept.begin(), kept.end(), i) - kept.begin());
  }
}

void CodecList::readParameters(const Section& section) {
  struct Line {
    const Codec* codec;
    std::string_view parameters;
  };
  std::vector<Line> lines;
  for (const Attribute& attribute : section.attributes("fmtp")) {
    const Fields fields = attribute.fields();
    const Fields::Iterator payload = fields.begin();
    const Codec* const codec = payload == Fields::end() ? nullptr : find(*payload);
    if (codec != nullptr) lines.push_back({codec, trimmed(payload.rest())});
  }
  std::stable_sort(lines.begin(), lines.end(),
                   [](const Line& a, const Line& b) { return a.codec < b.codec; });
  fmtps_.reserve(lines.size());
  for (const Line& line : lines) fmtps_.push_back(line.parameters);
  for (std::size_t i = 0; i < lines.size();) {
    const std::size_t first = i;
    while (i < lines.size() && lines[i].codec == lines[first].codec) ++i;
    Codec& codec = codecs_[static_cast<std::size_t>(lines[first].codec - codecs_.data())];
    codec.fmtp = fmtps_[first];
    codec.fmtps = std::span(fmtps_).subspan(first, i - first);
    if (codec.family == Family::rtx) codec.served = aptOf(codec);
    if (codec.family == Family::red) codec.served = carriedBy(codec);
  }
}

const Codec* CodecList::find(std::string_view payload) const {
  const auto place = std::lower_bound(
      byPayload_.begin(), byPayload_.end(), payload,
      [this](std::uint32_t i, std::string_view wanted) { return codecs_[i].payload < wanted; });
  return place != byPayload_.end() && codecs_[*place].payload == payload ? &codecs_[*place] : nullptr;
}

}  // namespace sdp::exchange
