#ifndef SDP_DOCUMENT_H
#define SDP_DOCUMENT_H

#include <memory>
#include <string_view>

#include "sdpDocumentRefusal.h"
#include "sdpDocumentViews.h"

// A document: any SDP body, read, asked and edited section by section.

namespace sdp {

/// An SDP body of any kind (RFC 4566), each line of which it keeps as it came. It is asked by views, and changed by the
/// edits here and the requests of sdpDocumentRequests.h, which change the least bytes.
///
/// A document is valid from its construction on, as an empty text. One that is used again allocates nothing once it has
/// held a body of that size. Asking it uses tables of its own, so that a document is used by one thread at a time, also
/// where it is const. Documents are independent: each thread may have its own.
///
/// Views (Session, Section and what these give) point into the document: they stay valid until the next edit, request
/// or reading, also one that is refused, and until it is moved, assigned to or destroyed.
class SDP_DOCUMENT_API Document {
 public:
  /// The most characters that a text may have.
  static constexpr std::size_t kMaximumLength = std::size_t{64} * 1024 * 1024;

  /// An empty text. Allocates nothing.
  Document() noexcept;
  /// A copy for which memory is lacking is empty.
  Document(const Document& other) noexcept;
  /// What was moved from is empty.
  Document(Document&& other) noexcept;
  /// Takes over the text as the other has it now; one for which memory is lacking leaves this document empty.
  Document& operator=(const Document& other) noexcept;
  /// What was moved from is empty.
  Document& operator=(Document&& other) noexcept;
  ~Document();

  /// Takes a copy of a text in place of what the document held. Any text is taken, also an empty one, one without a
  /// v-line, and one with NUL in it: what does not look like SDP is kept and told as lines.
  /// @param text at most kMaximumLength characters, not NUL-terminated; it may be part of this document's own text
  /// @return textTooLong or noMemory; the document is then empty
  Refusal read(std::string_view text) noexcept;
  /// The text with all edits. Not NUL-terminated. Valid until the next edit, request or reading. Asked for the first
  /// time since one of these, it is put together in one pass over all lines: a chain of edits asks for it at its end.
  std::string_view text() const noexcept;
  /// How many lines the text had as it was read; edits do not change the number.
  std::size_t lineCount() const noexcept;

  /// What stands before the first section.
  Session session() const noexcept;
  /// How many lines begin with `m=`, unreadable sections included.
  std::uint32_t sectionCount() const noexcept;
  /// @param index from 1
  /// @return an unreadable section of index 0 when there is none of this index
  Section section(std::uint32_t index) const noexcept;
  /// All sections in their order, unreadable ones included.
  Range<SectionCursor> sections() const noexcept;

  /// What was last refused, for people: "section 1 (audio): no common codec: it has opus; kept would be PCMA". One
  /// line in UTF-8. What a body or an argument would break it with is shown as `\x0a`: control characters, bytes that are
  /// no UTF-8, and characters that change the direction of writing. Never has keys. Empty when the last edit, request or
  /// reading was not refused, and when memory ran out. Valid until the next.
  std::string_view explanation() const noexcept;

  // Edits of one section, counted from 1. What is refused changes nothing; all may return noMemory and textTooLong. An
  // edit does what it is told and judges nothing else: requests are what keeps sections consistent. One that sets what is
  // there already changes nothing: numbers compare as numbers, texts field by field, so that leading zeros and further
  // blanks stay. An edit costs at most what its section, or the session, is long, whatever else the document has and
  // whatever is asked between two edits.

  /// Sets the port; a `/count` stays, and so does `05004` for 5004.
  /// @return noSuchSection or unreadableSection, as for all edits of a section
  Refusal setPort(std::uint32_t section, std::uint16_t port) noexcept;
  /// Sets the transport ("RTP/AVP"), any word. Keys stay as they are.
  /// @return wrongText when the transport is no field of an m-line
  Refusal setTransport(std::uint32_t section, std::string_view transport) noexcept;
  /// Takes formats as fields with a blank between, at least one. Attributes of formats stay. The same formats
  /// in the same order stay with the blanks between them.
  /// @return wrongText when there is none, or an end of a line among them
  Refusal setFormats(std::uint32_t section, std::string_view formats) noexcept;
  /// Sets the c-line of a section, or of the session as section 0: the first is replaced, and where there is none one
  /// is added behind the m-line and its i-lines, in the session in front of what stands behind a c-line there. One that
  /// has these three fields and no other stays; another spelling of the address is another text.
  /// @param address a literal of either family (RFC 4566, section 5.7)
  /// @return wrongAddress when it is none; noSuchSection also for a session without a line
  Refusal setConnection(std::uint32_t section, std::string_view address) noexcept;
  /// Sets the direction of a section: its first direction attribute is replaced, further ones go; without one a line is
  /// added at its end, unless it has this direction already.
  Refusal setDirection(std::uint32_t section, Direction direction) noexcept;
  /// Sets the first attribute of a name, and adds one at the end of the section, or of the session as section 0, when
  /// there is none.
  /// @param name compared exactly
  /// @param value nothing for an attribute without one
  /// @return wrongText when name or value would not stay within the line, or the name has a blank or a colon;
  /// noSuchSection as addAttribute
  Refusal setAttribute(std::uint32_t section, std::string_view name,
                       std::optional<std::string_view> value = std::nullopt) noexcept;
  /// Adds an attribute at the end of the section, or of the session as section 0: behind the last line that is not
  /// empty, with its line end.
  /// @return wrongText as setAttribute; noSuchSection also for a session without a line that is not empty
  Refusal addAttribute(std::uint32_t section, std::string_view name,
                       std::optional<std::string_view> value = std::nullopt) noexcept;
  /// Removes all attributes of a name from the section, or from the session as section 0. Without one nothing changes,
  /// and that is no failure.
  Refusal removeAttributes(std::uint32_t section, std::string_view name) noexcept;

 private:
  friend struct DocumentAccess;
  std::unique_ptr<core::Model> model_;
};

}  // namespace sdp

#endif
