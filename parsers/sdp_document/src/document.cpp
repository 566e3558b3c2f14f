// The document itself: taking a text, giving it back, copies.

#include "sdpDocument.h"

#include <new>
#include <utility>

#include "access.h"
#include "refusals.h"

namespace sdp {
namespace {

/// Making it allocates nothing, and asking it writes nothing.
const core::Model& emptyModel() noexcept {
  static const core::Model model;
  return model;
}

}  // namespace

static_assert(Document::kMaximumLength == core::kLargestText);

const core::Model& DocumentAccess::model(const Document& document) noexcept {
  return document.model_ == nullptr ? emptyModel() : *document.model_;
}

core::Model* DocumentAccess::changeable(Document& document) noexcept {
  if (document.model_ == nullptr) {
    try {
      document.model_ = std::make_unique<core::Model>();
    } catch (const std::bad_alloc&) {
      return nullptr;
    }
  }
  return document.model_.get();
}

Document::Document() noexcept = default;
Document::Document(Document&& other) noexcept = default;
Document::~Document() = default;

Document::Document(const Document& other) noexcept { (void)read(other.text()); }

Document& Document::operator=(const Document& other) noexcept {
  if (this != &other) (void)read(other.text());
  return *this;
}

Document& Document::operator=(Document&& other) noexcept {
  model_ = std::move(other.model_);
  return *this;
}

Refusal Document::read(std::string_view text) noexcept {
  core::Model* const model = DocumentAccess::changeable(*this);
  if (model == nullptr) return {.reason = Reason::noMemory};
  Refusal refusal;
  if (text.size() > kMaximumLength) refusal.reason = Reason::textTooLong;
  try {
    model->explanation.clear();
    core::read(*model, refusal ? std::string_view() : text);
    if (refusal) core::explain(*model, refusal);
    return refusal;
  } catch (const std::bad_alloc&) {
  } catch (const std::length_error&) {
  }
  model_.reset();
  return {.reason = Reason::noMemory};
}

std::string_view Document::text() const noexcept { return core::render(DocumentAccess::model(*this)); }

std::size_t Document::lineCount() const noexcept { return DocumentAccess::model(*this).linesRead; }

Session Document::session() const noexcept { return Session(DocumentAccess::model(*this)); }

std::uint32_t Document::sectionCount() const noexcept {
  return static_cast<std::uint32_t>(DocumentAccess::model(*this).sectionCount());
}

Section Document::section(std::uint32_t index) const noexcept {
  const core::Model& model = DocumentAccess::model(*this);
  if (index == 0 || index > model.sectionCount()) return Section();
  return Section(model, model.parts[index]);
}

Range<SectionCursor> Document::sections() const noexcept {
  return Range<SectionCursor>(SectionCursor(DocumentAccess::model(*this)));
}

std::string_view Document::explanation() const noexcept { return DocumentAccess::model(*this).explanation; }

Section::Section() noexcept : Section(emptyModel(), emptyModel().session()) {}

}  // namespace sdp
