#ifndef SDP_OFFER_ANSWER_SECTION_WRITER_H
#define SDP_OFFER_ANSWER_SECTION_WRITER_H

// Writing a section of an answer.

#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "answer/credentials.h"
#include "answer/extensions.h"
#include "answer/feedback.h"
#include "answer/formatParameters.h"
#include "answer/lines.h"
#include "answer/sides.h"

namespace sdp::exchange {

/// What holds for all sections that are written.
struct WritingContext {
  const Sides& sides;
  const Document* previous;
  std::optional<Bundles> previousBundles;
  SessionCredentials sessionCredentials;
  ExtensionMap sessionExtensions;  ///< of the offer
  bool isMixOffered;               ///< the offer's session has extmap-allow-mixed

  std::vector<std::string_view>
      groupRoles;  ///< by group of the answer: the role of its first section that had one

  WritingContext(const Sides& theSides, const Matches& matches);
  /// The DTLS role that the section of a number had in the answer before; empty without.
  std::string_view previousRole(std::uint32_t section) const;
};

/// Writes one accepted section: the lines of the local one in their order, as they are to be, and behind them what
/// comes from elsewhere.
class SectionWriter {
 public:
  SectionWriter(const WritingContext& context, const Accepted& section, Lines& out);
  void write();

 private:
  struct Rule;
  static const Rule* ruleOf(std::string_view name);

  void writeHead();
  void writeAttribute(const Attribute& attribute);
  void copy(const Attribute& attribute);
  void takeMid(const Attribute& attribute);
  void takeDirection(const Attribute& attribute);
  void takeIfOffered(const Attribute& attribute);
  void takeRtcpMux(const Attribute& attribute);
  void takeRtcp(const Attribute& attribute);
  void takeMuxOnly(const Attribute& attribute);
  void takeMix(const Attribute& attribute);
  void takeCrypto(const Attribute& attribute);
  void takeFingerprint(const Attribute& attribute);
  void takeSetup(const Attribute& attribute);
  void takeTlsId(const Attribute& attribute);
  void takeIce(const Attribute& attribute);
  void takeExtension(const Attribute& attribute);
  void takeFormat(const Attribute& attribute);
  void takeParameters(const Attribute& attribute);
  void takeFeedback(const Attribute& attribute);
  void takeFax(const Attribute& attribute);
  void leaveOut(const Attribute& attribute);

  void writeLines(const Section& from, std::string_view kind);
  Direction direction() const;
  void writeMid();
  void writeSetup();
  void writeIceOfLeader();
  void writeFeedback(std::string_view payload, std::string_view rest);
  void addKeys();
  void addIce();
  void addInherited(std::uint32_t local, Credential credential);
  void addFormats();

  /// The formats that are answered for a local payload type, in the order of the answer.
  const std::vector<std::size_t>& answersTo(std::string_view localPayload) const;
  bool isMuxed() const { return section_.offered.hasRtcpMux() && section_.local.hasRtcpMux(); }

  const WritingContext& context_;
  const Sides& sides_;
  const Accepted& section_;
  Lines& out_;
  bool hasIce_;
  bool needsSetup_;
  OfferedFeedback feedback_;
  ExtensionMap extensions_;
  std::vector<std::vector<std::size_t>> answers_;  ///< by local format: numbers of pairs
  std::vector<FormatParameters> parameters_;       ///< by pair
  std::vector<std::size_t> fmtpCount_;             ///< by local format: fmtp that were met
  std::vector<bool> hasRtpmap_;                    ///< by local format
  std::vector<Extension> writtenExtensions_;
  std::set<std::string, std::less<>> writtenFeedback_;
  bool isCryptoWritten_ = false;
  bool isSetupWritten_ = false;
  bool isIceWritten_ = false;
  bool isDirectionWritten_ = false;
  bool isMidWritten_ = false;
};

}  // namespace sdp::exchange

#endif
