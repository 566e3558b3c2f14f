#include "inspection/bodyLines.h"

#include <algorithm>

#include "text/anyLines.h"

namespace tool {

BodyLines::BodyLines(std::string_view body, std::size_t firstLine) : body_(body), firstLine_(firstLine) {
  sdpneg::AnyLines rest(body);
  while (!rest.atEnd()) {
    const std::string_view line = rest.next().content;
    if (sdpneg::startsWith(line, "m=")) media_.push_back(lines_.size());
    lines_.push_back({firstLine + lines_.size(), line});
  }
}

std::size_t BodyLines::mediaLine(std::size_t index) const {
  return index < media_.size() ? lines_[media_[index]].number : 0;
}

Place BodyLines::mediaField(std::size_t index, std::size_t field) const {
  return index < media_.size() ? fieldOf(media_[index], field) : Place{};
}

Place BodyLines::mediaConnectionField(std::size_t index, std::size_t field) const {
  if (index >= media_.size()) return {};
  return connectionField(media_[index], sectionEnd(index + 1), field);
}

Place BodyLines::sessionConnectionField(std::size_t field) const {
  return connectionField(0, sectionEnd(0), field);
}

Place BodyLines::offset(std::size_t offset) const {
  const char* at = body_.data() + offset;
  for (const Line& line : lines_) {
    const char* end = line.text.data() + line.text.size();
    if (at <= end)
      return {line.number, at < line.text.data() ? 1 : static_cast<std::size_t>(at - line.text.data()) + 1};
  }
  return {lines_.empty() ? firstLine_ : lines_.back().number + 1, 1};
}

std::string_view BodyLines::textFrom(std::size_t line, std::size_t column) const {
  const auto found = std::find_if(lines_.begin(), lines_.end(),
                                  [&](const Line& each) { return each.number == firstLine_ + line - 1; });
  if (found == lines_.end() || column == 0 || column > found->text.size()) return {};
  return found->text.substr(column - 1);
}

std::size_t BodyLines::sectionEnd(std::size_t index) const {
  return index < media_.size() ? media_[index] : lines_.size();
}

Place BodyLines::connectionField(std::size_t begin, std::size_t end, std::size_t field) const {
  for (std::size_t i = begin; i < end; ++i) {
    if (sdpneg::startsWith(lines_[i].text, "c=")) return fieldOf(i, field);
  }
  return {};
}

Place BodyLines::fieldOf(std::size_t index, std::size_t field) const {
  const std::string_view line = lines_[index].text;
  sdpneg::Words words(line.substr(2), " \t");
  std::string_view word = words.next();
  for (std::size_t i = 0; i < field; ++i) word = words.next();
  const std::size_t column = word.empty() ? line.size() : static_cast<std::size_t>(word.data() - line.data());
  return {lines_[index].number, column + 1};
}

}  // namespace tool
