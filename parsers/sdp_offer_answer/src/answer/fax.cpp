// T.38 in answers.

#include "answer/fax.h"

#include <algorithm>
#include <array>

#include "parameters.h"
#include "text/search.h"

namespace sdp::exchange {
namespace {

constexpr std::string_view kErrorCorrection = "T38FaxUdpEC";
/// Numbers of which the lower counts.
constexpr std::array<std::string_view, 3> kLimits{"T38FaxVersion", "T38MaxBitRate", "T38FaxMaxBuffer"};

/// The first field of an attribute; nothing where there is none.
std::optional<std::string_view> valueOf(const Section& section, std::string_view name) {
  const std::optional<Attribute> attribute = section.attribute(name);
  if (!attribute) return std::nullopt;
  return attribute->fields()[0];
}

}  // namespace

bool differInRateManagement(const Section& offered, const Section& local) {
  constexpr std::string_view kName = "T38FaxRateManagement";
  const std::optional<std::string_view> theirs = valueOf(offered, kName);
  const std::optional<std::string_view> ours = valueOf(local, kName);
  return theirs && ours && !sdpneg::equalNoCase(*theirs, *ours);
}

bool isNegotiatedForFax(std::string_view name) {
  return name == kErrorCorrection || std::find(kLimits.begin(), kLimits.end(), name) != kLimits.end();
}

std::optional<std::string> answeredForFax(const Attribute& local, const Section& offered) {
  const std::optional<std::string_view> theirs = valueOf(offered, local.name);
  const std::string_view ours = local.fields()[0];
  if (local.name == kErrorCorrection) {
    if (!theirs || !sdpneg::equalNoCase(*theirs, ours)) return std::nullopt;
    return std::string(*theirs);
  }
  std::string value(local.value.value_or(std::string_view()));
  const std::optional<std::uint64_t> limit = theirs ? readNumber(*theirs) : std::nullopt;
  const std::optional<std::uint64_t> own = readNumber(ours);
  if (!limit || !own || *own <= *limit) return value;
  return value.replace(value.find(ours), ours.size(), *theirs);
}

}  // namespace sdp::exchange
