#include "requests/sideEffects.h"

#include <algorithm>
#include <utility>

#include "text/anyLines.h"

namespace tool {
namespace {

using Texts = std::vector<std::string_view>;

struct MLine {
  std::size_t line;  ///< counted from 1
  std::string_view media;
  Texts formats;
};

/// What of a body is compared.
struct Body {
  Texts lines;
  std::vector<MLine> media;
  Texts mids;
  Texts bundled;  ///< the sections that BUNDLE groups name
};

bool has(const Texts& texts, std::string_view text) {
  return std::find(texts.begin(), texts.end(), text) != texts.end();
}

void addWords(sdpneg::Words& words, Texts& texts) {
  for (auto word = words.next(); !word.empty(); word = words.next()) texts.push_back(word);
}

void readLine(std::string_view line, Body& body) {
  constexpr std::string_view kMedia = "m=";
  constexpr std::string_view kMid = "a=mid:";
  constexpr std::string_view kBundle = "a=group:BUNDLE";
  body.lines.push_back(line);
  if (sdpneg::startsWith(line, kMedia)) {
    sdpneg::Words words(line.substr(kMedia.size()));
    MLine media = {body.lines.size(), words.next(), {}};
    words.next();  // the port
    words.next();  // the transport
    addWords(words, media.formats);
    body.media.push_back(std::move(media));
  } else if (sdpneg::startsWith(line, kMid)) {
    body.mids.push_back(sdpneg::Words(line.substr(kMid.size())).next());
  } else if (sdpneg::startsWith(line, kBundle)) {
    sdpneg::Words words(line.substr(kBundle.size()));
    addWords(words, body.bundled);
  }
}

Body read(std::string_view text) {
  Body body;
  sdpneg::AnyLines rest(text);
  while (!rest.atEnd()) readLine(rest.next().content, body);
  return body;
}

auto ofMedia(std::string_view media) {
  return [media](const MLine& each) { return sdpneg::equalNoCase(each.media, media); };
}

std::size_t countOf(const Body& body, std::string_view media) {
  return static_cast<std::size_t>(std::count_if(body.media.begin(), body.media.end(), ofMedia(media)));
}

/// The m-line that was the same one before: it has as many of its media in front of it.
const MLine* earlier(const Body& before, const Body& after, const MLine& line) {
  const MLine* const begin = after.media.data();
  auto ahead = std::count_if(begin, &line, ofMedia(line.media));
  const auto found = std::find_if(before.media.begin(), before.media.end(), [&](const MLine& each) {
    return sdpneg::equalNoCase(each.media, line.media) && ahead-- == 0;
  });
  return found != before.media.end() ? &*found : nullptr;
}

bool isRepeated(const Texts& formats, std::string_view format) {
  return std::count(formats.begin(), formats.end(), format) > 1;
}

void noteFormats(const Body& before, const Body& after, std::vector<std::string>& effects) {
  for (const MLine& line : after.media) {
    const MLine* const own = earlier(before, after, line);
    if (line.formats.empty() && (own == nullptr || !own->formats.empty())) {
      effects.push_back("leaves an m-line without a format, line " + std::to_string(line.line));
    }
    Texts told;
    for (const std::string_view format : line.formats) {
      if (own == nullptr || !isRepeated(line.formats, format) || isRepeated(own->formats, format)) continue;
      if (has(told, format)) continue;
      told.push_back(format);
      effects.push_back("leaves the format " + std::string(format) + " more than once in the m-line, line " +
                        std::to_string(line.line));
    }
  }
}

/// The first empty line that was none before.
void noteEmptyLines(const Body& before, const Body& after, std::vector<std::string>& effects) {
  const auto count = [](const Body& body) { return std::count(body.lines.begin(), body.lines.end(), ""); };
  if (count(after) <= count(before)) return;
  const auto changed =
      std::mismatch(before.lines.begin(), before.lines.end(), after.lines.begin(), after.lines.end()).second;
  const auto found = std::find(changed, after.lines.end(), "");
  effects.push_back("leaves an empty line, line " + std::to_string(found - after.lines.begin() + 1));
}

void noteLostSections(const Body& before, const Body& after, Takes takes, std::vector<std::string>& effects) {
  if (takes == Takes::any) return;
  Texts told;
  for (const MLine& line : before.media) {
    const std::size_t had = countOf(before, line.media);
    const std::size_t left = countOf(after, line.media);
    const bool meant = takes == Takes::video && sdpneg::equalNoCase(line.media, "video");
    if (left >= had || meant || has(told, line.media)) continue;
    told.push_back(line.media);
    effects.push_back("loses " + std::to_string(had - left) + " of " + std::to_string(had) + " " +
                      std::string(line.media) + (had == 1 ? " section" : " sections"));
  }
}

void noteBundle(const Body& before, const Body& after, std::vector<std::string>& effects) {
  for (const std::string_view mid : after.bundled) {
    if (has(after.mids, mid) || !has(before.mids, mid)) continue;
    effects.push_back("leaves a BUNDLE group that names " + std::string(mid) + ", a section that is gone");
  }
}

}  // namespace

std::vector<std::string> sideEffects(std::string_view before, std::string_view after, Takes takes) {
  const Body old = read(before);
  const Body left = read(after);
  std::vector<std::string> effects;
  noteFormats(old, left, effects);
  noteEmptyLines(old, left, effects);
  noteLostSections(old, left, takes, effects);
  noteBundle(old, left, effects);
  return effects;
}

}  // namespace tool
