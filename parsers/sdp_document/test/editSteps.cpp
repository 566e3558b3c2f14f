#include "editSteps.h"

#include "documentDump.h"
#include "editModel.h"
#include "requestSamples.h"
#include "sdpDocumentRequests.h"

namespace plain {

EditSteps::EditSteps(sdp::Document& document, std::string_view body, std::size_t dumpEach)
    : document_(document), text_(body), dumpEach_(dumpEach) {
  if (document_.read(body)) complaint_ = "a body is not read";
}

std::string EditSteps::step(std::size_t kind, std::size_t a, std::size_t b, std::size_t c) {
  constexpr std::size_t kEdits = 8;
  constexpr std::size_t kKinds = kEdits + 4;
  switch (kind % kKinds) {
    case kEdits:
      request(a, b, c);
      break;
    case kEdits + 1:
      ask(a);
      break;
    case kEdits + 2:  // Lines that lie behind each other, for what moves them.
      for (std::size_t n = 0; n < 12; ++n) edit(6, a, b + n, c + n);
      break;
    case kEdits + 3:
      for (std::size_t n = 0; n < 12; ++n) edit(kind / kKinds + n, a + n, b, c + n);
      break;
    default:
      edit(kind % kKinds, a, b, c);
  }
  return complaint_;
}

void EditSteps::edit(std::size_t kind, std::size_t a, std::size_t b, std::size_t c) {
  const Edit chosen = chosenEdit(kind, a, b, c, document_.sectionCount());
  const Edited expected = edited(text_, chosen);
  const sdp::Refusal refusal = perform(document_, chosen);
  if (refusal.reason != expected.reason) {
    complaint_ = "\"" + std::string(textOf(refusal.reason)) + "\" in place of \"" +
                 std::string(textOf(expected.reason)) + "\": " + wordsFor(chosen);
  }
  text_ = expected.text;
  compare(wordsFor(chosen));
}

void EditSteps::request(std::size_t a, std::size_t b, std::size_t c) {
  const requestSamples::Request chosen = requestSamples::chosen(a, b, c);
  sdp::Document fresh;
  if (fresh.read(text_)) complaint_ = "a text of ours is not read";
  const sdp::Refusal expected = sdp::perform(fresh, chosen);
  const sdp::Refusal refusal = sdp::perform(document_, chosen);
  // Lines count as the text was read, which is not the same for both.
  if (refusal.reason != expected.reason || refusal.section != expected.section ||
      document_.explanation() != fresh.explanation()) {
    complaint_ = "refused otherwise: " + std::string(chosen[0]);
  }
  text_ = fresh.text();
  compare(chosen[0]);
}

/// Asks for what tables are made for, of one section and then of all.
void EditSteps::ask(std::size_t a) {
  sdp::Document fresh;
  if (fresh.read(text_)) complaint_ = "a text of ours is not read";
  const auto told = [a](const sdp::Document& asked) {
    const auto chosen = static_cast<std::uint32_t>(a % (asked.sectionCount() + 1));
    std::size_t sum = asked.section(chosen).formats().size();
    for (const sdp::Section& section : asked.sections()) {
      sum = 31 * sum + section.bundle().value_or(7) + (section.usesTrickleIce() ? 1U : 0U);
    }
    return sum;
  };
  if (told(document_) != told(fresh)) complaint_ = "a question is answered otherwise";
}

void EditSteps::compare(std::string_view what) {
  if (!complaint_.empty()) return;
  if (document_.text() != text_) {
    complaint_.append("another text than expected: ").append(what);
    return;
  }
  if (++compared_ % dumpEach_ != 0) return;
  sdp::Document fresh;
  if (fresh.read(text_) || documentDump::dumpOf(fresh) != documentDump::dumpOf(document_)) {
    complaint_.append("a document is not what its text is: ").append(what);
  }
}

}  // namespace plain
