#include "requests/originFields.h"

#include <string_view>
#include <vector>

#include "inspection/bodyInput.h"
#include "inspection/summaryValues.h"
#include "requests/requestArguments.h"
#include "text/search.h"

namespace tool {
namespace {

using Fields = std::vector<std::string_view>;

/// Whether the network type and the address type stand at a place among the fields.
bool areTypes(const Fields& fields, std::size_t at) {
  return at + 1 < fields.size() && sdpneg::equalNoCase(fields[at], "IN") &&
         (sdpneg::equalNoCase(fields[at + 1], "IP4") || sdpneg::equalNoCase(fields[at + 1], "IP6"));
}

/// The types follow the version, which is to be the third field. A line without them is left to the library.
std::optional<std::string> obstacle(const Fields& fields) {
  constexpr std::size_t kTypes = 3;
  if (areTypes(fields, kTypes)) return std::nullopt;
  for (std::size_t at = 0; at < fields.size(); ++at) {
    if (areTypes(fields, at)) {
      return "by the library's count \"IN\" of the o-line is field " + std::to_string(at + 1) +
             " and not 4, so another field would be taken for the version";
    }
  }
  return std::nullopt;
}

}  // namespace

std::optional<std::string> raiseObstacle(const cSdpNegotiator& object) {
  const std::string line = originLineOf(object);
  sdpneg::Words words(line);
  Fields fields;
  for (auto word = words.next(); !word.empty(); word = words.next()) fields.push_back(word);
  return obstacle(fields);
}

std::optional<std::string> setObstacle(const cSdpNegotiator& object) {
  const std::string text = bodyText(object).substr(0, object.getParsedData().oLineEnd);
  return obstacle(splitAt(text, ' '));
}

}  // namespace tool
