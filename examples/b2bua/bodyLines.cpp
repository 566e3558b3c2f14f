#include "bodyLines.h"

#include <algorithm>
#include <charconv>

namespace b2bua {

namespace {

bool isBlank(char c) { return static_cast<unsigned char>(c) <= ' '; }

std::string_view trimmed(std::string_view text) {
  while (!text.empty() && isBlank(text.front())) text.remove_prefix(1);
  while (!text.empty() && isBlank(text.back())) text.remove_suffix(1);
  return text;
}

BodyLine lineOf(std::string_view bytes) {
  BodyLine line;
  line.bytes = bytes;
  std::string_view rest = trimmed(bytes);
  if (rest.empty()) return line;
  const char type = lowerCase(rest.substr(0, 1)).front();
  rest = trimmed(rest.substr(1));
  if (!rest.starts_with('=')) return line;
  line.type = type;
  line.value = trimmed(rest.substr(1));
  return line;
}

BodySection sectionOf(const BodyLine& mLine) {
  BodySection section;
  std::vector<std::string> words = wordsOf(mLine.value);
  words.resize(std::max<std::size_t>(words.size(), 3));
  section.media = lowerCase(words[0]);
  section.port = words[1];
  section.transport = lowerCase(words[2]);
  section.formats.assign(words.begin() + 3, words.end());
  return section;
}

struct StaticFormat {
  const char* format;
  const char* name;
  unsigned long clock;
};

constexpr StaticFormat kStaticFormats[] = {
    {"0", "pcmu", 8'000}, {"3", "gsm", 8'000},     {"4", "g723", 8'000},  {"8", "pcma", 8'000},
    {"9", "g722", 8'000}, {"13", "cn", 8'000},     {"15", "g728", 8'000}, {"18", "g729", 8'000},
    {"19", "cn", 8'000},  {"2", "g726-32", 8'000},
};

/// @param value  of an rtpmap behind its format
Format mappedFormat(std::string_view value) {
  const std::size_t slash = value.find('/');
  Format format{lowerCase(trimmed(value.substr(0, slash))), 8'000};
  if (slash != std::string_view::npos) {
    const std::string_view clock = trimmed(value.substr(slash + 1));
    std::from_chars(clock.data(), clock.data() + clock.size(), format.clock);
  }
  return format;
}

}  // namespace

std::string lowerCase(std::string_view text) {
  std::string lower(text);
  for (char& c : lower) {
    if (c >= 'A' && c <= 'Z') c = static_cast<char>(c - 'A' + 'a');
  }
  return lower;
}

std::vector<std::string> wordsOf(std::string_view text) {
  std::vector<std::string> words;
  std::string word;
  for (const char c : text) {
    if (!isBlank(c)) {
      word += c;
    } else if (!word.empty()) {
      words.push_back(std::move(word));
      word.clear();
    }
  }
  if (!word.empty()) words.push_back(word);
  return words;
}

Attribute attributeOf(std::string_view value) {
  const auto split = [](std::string_view text) {
    text = trimmed(text);
    const auto ends = [](char c) { return c == ':' || isBlank(c); };
    const auto end = std::ranges::find_if(text, ends);
    const std::string name = lowerCase(std::string_view(text.begin(), end));
    text = trimmed(std::string_view(end, text.end()));
    if (text.starts_with(':')) text.remove_prefix(1);
    return Attribute{name, std::string(trimmed(text))};
  };
  Attribute attribute = split(value);
  if (attribute.name != "acap") return attribute;
  const std::size_t blank = std::min(attribute.value.find_first_of(" \t"), attribute.value.size());
  return split(std::string_view(attribute.value).substr(blank));
}

bool BodySection::isActive() const {
  const std::string number = port.substr(0, port.find('/'));
  const bool hasPort = number.empty() || number.find_first_not_of('0') != std::string::npos;
  return !media.empty() && (hasPort || has({"bundle-only"}));
}

std::vector<Attribute> BodySection::attributes() const {
  std::vector<Attribute> all;
  for (const BodyLine& line : lines) {
    if (line.type == 'a') all.push_back(attributeOf(line.value));
  }
  return all;
}

bool BodySection::has(std::initializer_list<std::string_view> names) const {
  return std::ranges::any_of(attributes(), [&](const Attribute& attribute) {
    return std::ranges::find(names, attribute.name) != names.end();
  });
}

BodyLines::BodyLines(std::string_view body) : sections(1) {
  while (!body.empty()) {
    const std::size_t end = std::min(body.find_first_of("\r\n"), body.size());
    const std::size_t next = end + (body.substr(end).starts_with("\r\n") ? 2 : end < body.size() ? 1 : 0);
    const BodyLine line = lineOf(body.substr(0, next));
    if (line.type == 'm') sections.push_back(sectionOf(line));
    sections.back().lines.push_back(line);
    body.remove_prefix(next);
  }
}

std::string BodyLines::text() const {
  std::string text;
  for (const BodySection& section : sections) {
    for (const BodyLine& line : section.lines) {
      // The last line of a body may have no end, and be the last no more.
      if (!text.empty() && text.back() != '\n' && text.back() != '\r') text += "\r\n";
      text += line.bytes;
    }
  }
  return text;
}

std::vector<Format> formatsOf(const BodySection& section, const std::string& format) {
  std::vector<Format> formats;
  for (const Attribute& attribute : section.attributes()) {
    const std::size_t blank = std::min(attribute.value.find_first_of(" \t"), attribute.value.size());
    if (attribute.name == "rtpmap" && attribute.value.substr(0, blank) == format)
      formats.push_back(mappedFormat(std::string_view(attribute.value).substr(blank)));
  }
  if (!formats.empty()) return formats;
  for (const StaticFormat& known : kStaticFormats) {
    if (format == known.format) return {{known.name, known.clock}};
  }
  return {{}};
}

}  // namespace b2bua
