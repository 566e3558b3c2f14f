#ifndef SDP_DOCUMENT_H
#define SDP_DOCUMENT_H

#include <memory>
#include <string_view>

#include "sdpDocumentRefusal.h"
#include "sdpDocumentViews.h"

namespace sdp {

/// An SDP body of any kind (RFC 4566), each line of which it keeps as it came. It is asked by views, and changed by
/// the edits here and the requests of sdpDocumentRequests.h, which change the least bytes.
///
/// A document is valid from its construction on, as an empty text. One that is used again allocates nothing once it
/// has held a body of that size. Asking it uses tables of its own, so that a document is used by one thread at a time,
/// also where it is const.
class SDP_DOCUMENT_API Document {
 public:
  /// The most characters that a text may have.
  static constexpr std::size_t kMaximumLength = std::size_t{64} * 1024 * 1024;

  Document() noexcept;
  /// A copy for which memory is lacking is empty.
  Document(const Document& other) noexcept;
  /// What was moved from is empty.
  Document(Document&& other) noexcept;
  Document& operator=(const Document& other) noexcept;
  Document& operator=(Document&& other) noexcept;
  ~Document();

  /// Takes a copy of a text in place of what the document held.
  /// @return textTooLong or noMemory; the document is then empty
  Refusal read(std::string_view text) noexcept;
  /// The text with all edits. Valid until the next edit or reading.
  std::string_view text() const noexcept;
  /// How many lines the text had as it was read.
  std::size_t lineCount() const noexcept;

  Session session() const noexcept;
  std::uint32_t sectionCount() const noexcept;
  /// @param index from 1
  /// @return an unreadable section of index 0 when there is none of this index
  Section section(std::uint32_t index) const noexcept;
  Range<SectionCursor> sections() const noexcept;

  /// What was last refused, for people: "section 1 (audio): no common codec: it has opus; kept would be PCMA". Empty when
  /// the last edit, request or reading was not refused. Valid until the next.
  std::string_view explanation() const noexcept;

  // Edits of one section. What is refused changes nothing.

  /// @return noSuchSection or unreadableSection, as for all edits of a section
  Refusal setPort(std::uint32_t section, std::uint16_t port) noexcept;
  /// @return wrongText when the transport is no field of an m-line
  Refusal setTransport(std::uint32_t section, std::string_view transport) noexcept;
  /// Takes formats as fields with a blank between, at least one. Attributes of formats stay.
  /// @return wrongText when there is none, or an end of a line among them
  Refusal setFormats(std::uint32_t section, std::string_view formats) noexcept;
  /// Sets the c-line of a section, or of the session as section 0: the first is replaced, and where there is none one is
  /// added behind the m-line and its i-lines, in the session in front of what stands behind a c-line there.
  /// @param address a literal of either family (RFC 4566, section 5.7)
  /// @return wrongAddress when it is none
  Refusal setConnection(std::uint32_t section, std::string_view address) noexcept;
  Refusal setDirection(std::uint32_t section, Direction direction) noexcept;
  /// Sets the first attribute of a name, and adds one at the end of the section, or of the session as section 0, when
  /// there is none.
  /// @param value nothing for an attribute without one
  /// @return wrongText when name or value would not stay within the line
  Refusal setAttribute(std::uint32_t section, std::string_view name,
                       std::optional<std::string_view> value = std::nullopt) noexcept;
  /// Adds an attribute at the end of the section, or of the session as section 0.
  Refusal addAttribute(std::uint32_t section, std::string_view name,
                       std::optional<std::string_view> value = std::nullopt) noexcept;
  /// Removes all attributes of a name from the section, or from the session as section 0.
  Refusal removeAttributes(std::uint32_t section, std::string_view name) noexcept;

 private:
  friend struct DocumentAccess;
  std::unique_ptr<core::Model> model_;
};

}  // namespace sdp

#endif
