// What is asked of offer and answer for each section.

#include "judge/bodies.h"

#include <utility>

namespace sdp::exchange {

MLineFields::MLineFields(const Section& section) {
  for (const Line& line : section.lines()) {
    const Fields fields(line.content.substr(2));  // behind "m="
    Fields::Iterator field = fields.begin();
    media = *field;
    port = *++field;
    transport = *++field;
    return;
  }
}

std::string_view midOf(const Section& section) {
  const std::optional<Attribute> mid = section.attribute("mid");
  return mid ? mid->fields()[0] : std::string_view();
}

namespace {

/// Whether the first c-line of a section, which need not be there, has an address.
bool hasOwnAddress(const Section& section) {
  for (const Line& line : section.lines()) {
    if (line.content.starts_with("c=")) return !Fields(line.content.substr(2))[2].empty();
  }
  return false;
}

}  // namespace

AnswerGroups::AnswerGroups(const Document& offer, const Document& answer, const Bundles& bundles)
    : bundles_(&bundles), groups_(bundles.groupCount()) {
  std::vector<std::string_view> named;
  for (const sdp::Group& group : answer.session().groups()) {
    for (const std::string_view mid : group.mids) named.push_back(mid);
  }
  named_ = Words(std::move(named));
  for (const Section& section : answer.sections()) {
    const std::optional<std::uint32_t> number = bundles.groupOf(section.index());
    if (!number || section.port() == 0) continue;
    Group& group = groups_[*number];
    group.hasAddress = group.hasAddress || hasOwnAddress(section);
    group.hasPort = group.hasPort || offer.section(section.index()).port() != 0;
  }
}

bool AnswerGroups::isOf(std::uint32_t section, bool Group::*what) const {
  const std::optional<std::uint32_t> group = bundles_->groupOf(section);
  return group && groups_[*group].*what;
}

Bodies::Bodies(const Document& offered, const Document& answered)
    : offer(offered),
      answer(answered),
      offerBundles(offered),
      answerBundles(answered),
      groups(offered, answered, answerBundles),
      offeredExtmaps(offered.session().attributes("extmap")),
      offeredCryptos(offered, offerBundles) {}

Pair::Pair(const Bodies& both, std::uint32_t index)
    : bodies(both), number(index), offered(both.offer.section(index)), answered(both.answer.section(index)) {}

}  // namespace sdp::exchange
