#ifndef SDPNEG_JSON_H
#define SDPNEG_JSON_H

#include <nlohmann/json.hpp>
#include <optional>
#include <string>
#include <string_view>

#include "output/bufferedOutput.h"

// The form of all JSON output.

namespace tool {

using Json = nlohmann::ordered_json;

/// The text, or null for an empty one.
Json orNull(std::string_view text);

template <typename Value>
Json orNull(const std::optional<Value>& value) {
  return value ? Json(*value) : Json(nullptr);
}

/// A document as text; bytes that are no UTF-8 become U+FFFD.
std::string jsonText(const Json& json);

/// A document's text with every line but the first moved in.
std::string indented(const std::string& text, std::string_view by);

/// Writes an object with a list that may be too long to be held, one element after the other.
class JsonList {
 public:
  /// @param object with an empty list as its last member, behind what is known before the list is
  /// @param by     how far the object's lines are moved in
  JsonList(BufferedOutput& out, const Json& object, std::string by);
  /// Is to be called in front of each element.
  /// @return how far its lines are moved in
  std::string begin();
  /// Is to be called behind the last.
  /// @param more an object with what is known only now: its members follow the list
  void end(const Json& more = Json::object());

 private:
  BufferedOutput& out_;
  std::string by_;
  bool isEmpty_ = true;
};

}  // namespace tool

#endif
