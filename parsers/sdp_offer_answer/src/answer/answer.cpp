// Making answers.

#include <algorithm>
#include <new>
#include <stdexcept>

#include "answer/sectionWriter.h"
#include "answer/sessionWriter.h"
#include "sdpAnswer.h"

namespace sdp {
namespace {

using namespace exchange;

bool hasVersionLine(const Document& document) {
  for (const Line& line : document.session().lines()) {
    if (line.content.starts_with("v=")) return true;
  }
  return false;
}

/// Whether an offer wants media, and no section is accepted.
bool isAllRefused(const std::vector<AnsweredSection>& sections) {
  const auto counts = [](const AnsweredSection& section) {
    return section.outcome == SectionOutcome::accepted;
  };
  const auto asks = [](const AnsweredSection& section) {
    return section.outcome != SectionOutcome::disabled;
  };
  return std::any_of(sections.begin(), sections.end(), asks) &&
         std::none_of(sections.begin(), sections.end(), counts);
}

std::string textOfAnswer(const Sides& sides, const Matches& matches) {
  const WritingContext context(sides, matches);
  Lines before;
  writeVersion(sides, before);
  Lines behind;
  writeSession(sides, matches, context.sessionCredentials, behind);
  for (const Section& offered : sides.offer.sections()) {
    const Accepted* const section = matches.find(offered.index());
    if (section == nullptr) {
      writeRefused(offered, behind);
    } else {
      SectionWriter(context, *section, behind).write();
    }
  }
  before.add({originLine(sides, before.text(), behind.text())});
  before.append(behind);
  return std::move(before.text());
}

Answer answerOf(const Document& offer, const Document& local, const AnswerOptions& options) {
  Answer answer;
  if (local.sectionCount() == 0) {
    answer.failure = AnswerFailure::noLocalSection;
  } else if (offer.sectionCount() == 0 && !hasVersionLine(offer)) {
    answer.failure = AnswerFailure::brokenOffer;
  } else {
    const Sides sides(offer, local, options);
    const Matches matches(sides);
    answer.sections = matches.sections();
    if (isAllRefused(answer.sections)) {
      answer.failure = AnswerFailure::nothingAccepted;
    } else {
      answer.text = textOfAnswer(sides, matches);
    }
  }
  return answer;
}

Answer failed(AnswerFailure failure) {
  Answer answer;
  answer.failure = failure;
  return answer;
}

}  // namespace

Answer makeAnswer(const Document& offer, const Document& local, const AnswerOptions& options) noexcept {
  try {
    return answerOf(offer, local, options);
  } catch (const std::bad_alloc&) {
    return failed(AnswerFailure::noMemory);
  } catch (const std::length_error&) {
    return failed(AnswerFailure::noMemory);
  } catch (const TextTooLong&) {
    return failed(AnswerFailure::textTooLong);
  }
}

}  // namespace sdp
