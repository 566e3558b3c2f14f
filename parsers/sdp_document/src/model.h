#ifndef SDP_DOCUMENT_MODEL_H
#define SDP_DOCUMENT_MODEL_H

// What a document consists of: the text, the index of its lines and sections, and what requests need on the way.
// Nothing here is given back between bodies, so that a document in use allocates nothing.

#include <array>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "arena.h"
#include "formatTable.h"
#include "groupTable.h"
#include "lineList.h"
#include "lines.h"
#include "parts.h"
#include "requests/codecList.h"
#include "requests/leaderTable.h"

namespace sdp::core {

/// How many mids a line can name at most; 0 when it is no group.
inline std::size_t mostMidsOf(const Line& line) { return line.kind == Kind::group ? line.length / 2 : 0; }

/// A line as it was before an edit.
struct Before {
  Part* part;
  Index index;
  Line line;
};

/// A line that is to stand behind another of its part.
struct Addition {
  Part* part;
  Index behind;
  Line line;
};

/// What reading looks at behind a text's end.
inline constexpr std::size_t kReadRoom = kReadAhead;

struct Model {
  std::string text;        ///< as it was read
  Arena arena;             ///< the lines that edits made
  mutable LineList lines;  ///< of all parts; asking makes chains of them
  PartList parts;
  std::size_t unused = 0;     ///< places among the lines that are of no part
  std::vector<Index> places;  ///< parts by where they lie, for who moves all
  std::size_t length = 0;     ///< of the text as edited
  std::size_t linesRead = 0;
  std::size_t mostMids = 0;     ///< that the lines of groups can name
  std::size_t mostFormats = 0;  ///< that the m-lines can have

  mutable std::array<Index, kKinds> sessionFirst{};  ///< where a kind may first stand in the session
  mutable std::optional<bool> sessionTrickles;
  mutable FormatTable formats;
  mutable GroupTable groups;
  mutable std::string rendered;
  mutable bool isRendered = true;

  // The request in hand.
  std::vector<Before> before;  ///< the lines that it replaced
  std::vector<Index> removed;  ///< the lines that it took away
  std::size_t lengthBefore = 0;
  std::size_t mostMidsBefore = 0;
  Arena::Place arenaBefore;
  std::vector<Addition> additions;  ///< they take their places when it is done
  std::vector<Index> chosen;        ///< the sections that it is about
  std::vector<Index> ports;         ///< by section: the one that it gets, or kNone
  LeaderTable leaders;
  std::vector<Index> leading;  ///< by group
  std::vector<GroupTransport> transports;
  std::vector<GroupTransport> transportsNow;
  std::vector<Index> heirs;  ///< those that take the port of one that is put away
  std::vector<CodecListEntry> list;
  std::vector<Occurrence> ordered;
  std::vector<std::uint32_t> clocks;  ///< of the codecs that stay
  std::string explanation;

  const Part& session() const { return parts[0]; }
  std::size_t sectionCount() const { return parts.size() - 1; }
  Index indexOf(const Part& part) const { return static_cast<Index>(&part - parts.begin()); }
};

/// Takes a text of at most Document::kMaximumLength characters.
void read(Model& model, std::string_view text);

/// Makes room for what may be asked of a model, so that asking allocates nothing.
void reserveForQuestions(Model& model);
void reserveForFormats(Model& model);
void reserveForGroups(Model& model);

/// The text with all edits.
std::string_view render(const Model& model);

/// Reads port and count from the port field of an m-line that has all its fields.
void readPortField(MLine& m);
/// Reads the m-line of a section anew.
void readMLine(Model& model, Part& section);

// --- finding ---------------------------------------------------------------------------------------------

/// The first line of a part that is of one of the kinds.
Index firstOf(const Model& model, const Part& part, Kinds kinds);
inline bool has(const Model& model, const Part& part, Kind kind) {
  return firstOf(model, part, one(kind)) != kNone;
}

/// Calls `visit(Index)` for each line of a part that is of one of the kinds, in their order.
template <typename Visit>
void forEach(const Model& model, const Part& part, Kinds kinds, Visit visit) {
  if ((part.kinds & kinds) == 0) return;
  const Line* const lines = model.lines.begin();
  const Index end = part.end;
  for (Index i = part.first; i < end; ++i) {
    if (lines[i].gone == 0 && sdp::core::has(kinds, lines[i].kind)) visit(i);
  }
}

/// The name of an attribute line.
std::string_view nameOf(const Line& line);
/// What stands behind its colon; nothing where there is none.
std::optional<std::string_view> valueOf(const Line& line);
/// The first field of an attribute of a known name; empty where there is none.
std::string_view firstFieldOf(const Line& line);

/// To be called when lines of the session lie elsewhere than before.
void findSessionKinds(const Model& model);

/// Whether a line is of the session.
inline bool isOfSession(const Model& model, Index line) {
  return line - model.session().first < model.session().end - model.session().first;
}

// --- what a section is -----------------------------------------------------------------------------------

inline bool isRtp(const Part& section) { return section.m.transport.find("RTP/") != std::string_view::npos; }
inline bool isTcp(const Part& section) { return section.m.transport.starts_with("TCP"); }
inline bool isBundleOnly(const Model& model, const Part& section) {
  return has(model, section, Kind::bundleOnly);
}
inline bool isDisabled(const Model& model, const Part& section) {
  return section.m.portNumber == 0 && !isBundleOnly(model, section);
}
/// The first field of the first mid; empty without one.
std::string_view midOf(const Model& model, const Part& section);

}  // namespace sdp::core

#endif
