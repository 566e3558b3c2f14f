#include "output/json.h"

#include <utility>

#include "output/printable.h"

namespace tool {

Json orNull(std::string_view text) { return text.empty() ? Json(nullptr) : Json(text); }

std::string jsonText(const Json& json) {
  return printableJson(json.dump(2, ' ', false, Json::error_handler_t::replace));
}

// Line feeds inside values are escaped, so all are breaks.
std::string indented(const std::string& text, std::string_view by) {
  std::string moved;
  moved.reserve(2 * text.size());
  std::size_t begin = 0;
  for (std::size_t lf = text.find('\n'); lf != std::string::npos; lf = text.find('\n', begin)) {
    moved.append(text, begin, lf + 1 - begin).append(by);
    begin = lf + 1;
  }
  return moved.append(text, begin);
}

JsonList::JsonList(BufferedOutput& out, const Json& object, std::string by) : out_(out), by_(std::move(by)) {
  constexpr std::string_view kEnd = "]\n}";
  std::string text = jsonText(object);
  text.resize(text.size() - kEnd.size());
  out_.write(indented(text, by_));
}

std::string JsonList::begin() {
  constexpr std::string_view kElement = "    ";
  if (!isEmpty_) out_.write(",");
  isEmpty_ = false;
  std::string by = by_;
  by += kElement;
  out_.write("\n");
  out_.write(by);
  return by;
}

void JsonList::end(const Json& more) {
  out_.write(isEmpty_ ? "]" : "\n" + by_ + "  ]");
  if (!more.empty()) {
    constexpr std::string_view kBegin = "{";
    out_.write(",");
    out_.write(indented(jsonText(more).substr(kBegin.size()), by_));
    return;
  }
  out_.write("\n" + by_ + "}");
}

}  // namespace tool
