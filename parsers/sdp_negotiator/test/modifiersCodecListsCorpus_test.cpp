#include <cstdio>
#include <memory>
#include <string_view>

#include "modifiersTestSupport.h"
#include "sdpNegotiatorParser.h"
#include "sessionDescription.h"
#include "testFiles.h"
#include "text/search.h"

// Codec lists of all bodies at hand: a complete body comes out as its description rebuilt, and of an incomplete one
// nothing else changes.

namespace {

std::unique_ptr<sDescription> decoded(const std::string& body) {
  auto description = std::make_unique<sDescription>();
  unsigned short start = 0;
  unsigned short end = 0;
  const unsigned short status =
      sdp_decodeOpt_r(description.get(), body.c_str(), SDP_TYPE_UNKNOWN, nullptr, false, start, end);
  return status == 0 ? std::move(description) : nullptr;
}

std::string encoded(const sDescription& description) {
  char* text = nullptr;
  int length = 0;
  int size = 0;
  EXPECT_EQ(sdp_encode_r(&description, SDP_TYPE_UNKNOWN, text, length, size), 0);
  const std::string result = text;
  std::free(text);
  return result;
}

bool isFormatLine(const a_line::entry& entry) {
  const std::string_view name = entry.name;
  return name == "rtpmap" || name == "fmtp";
}

void addFormat(m_line& line, const char* format) {
  ASSERT_LT(line.formatCount, SDP_FORMAT_CAPACITY);
  std::memcpy(line.formats[line.formatCount++], format, SDP_FORMAT_SIZE);
}

void addAttribute(a_line& block, const a_line::entry& entry) {
  ASSERT_LT(block.count, SDP_ATTRIBUTE_CAPACITY);
  block.entries[block.count++] = entry;
}

using Codecs = std::vector<unsigned char>;

bool isKept(const Codecs& keep, unsigned char codec) {
  return codec == 29 || codec == 37 || (codec != 0 && std::count(keep.begin(), keep.end(), codec) != 0);
}

void rebuildKept(const mDescription& from, mDescription& to, const Codecs& keep) {
  for (int i = 0; i < from.mLine.formatCount; ++i) {
    const char* format = from.mLine.formats[i];
    if (isKept(keep, sdpParserMessage::convertCodec(format, &from.aLine))) addFormat(to.mLine, format);
  }
  for (int i = 0; i < from.aLine.count; ++i) {
    const a_line::entry& entry = from.aLine.entries[i];
    if (!isFormatLine(entry) || isKept(keep, sdpParserMessage::convertCodec(entry.value, &from.aLine)))
      addAttribute(to.aLine, entry);
  }
}

void rebuildOrdered(const mDescription& from, mDescription& to, const Codecs& order) {
  for (const unsigned char codec : order) {
    for (int i = 0; i < from.mLine.formatCount; ++i) {
      if (sdpParserMessage::convertCodec(from.mLine.formats[i], &from.aLine) != codec) continue;
      addFormat(to.mLine, from.mLine.formats[i]);
      break;
    }
    for (int i = 0; i < from.aLine.count; ++i) {
      const a_line::entry& entry = from.aLine.entries[i];
      if (isFormatLine(entry) && sdpParserMessage::convertCodec(entry.value, &from.aLine) == codec)
        addAttribute(to.aLine, entry);
    }
  }
  for (int i = 0; i < from.aLine.count; ++i) {
    if (!isFormatLine(from.aLine.entries[i])) addAttribute(to.aLine, from.aLine.entries[i]);
  }
}

using Rebuild = void (*)(const mDescription& from, mDescription& to, const Codecs& codecs);

std::string rebuilt(sDescription& description, const Codecs& codecs, Rebuild rebuild) {
  const auto from = std::make_unique<mDescription>();
  for (int i = 0; i < description.noOfMDs; ++i) {
    mDescription& media = description.media[i];
    if (media.mLine.mediaType != MEDIA_AUDIO) continue;
    sdp_copyMedia(from.get(), &media);
    media.mLine.formatCount = 0;
    media.aLine.count = 0;
    rebuild(*from, media, codecs);
  }
  return encoded(description);
}

/// Lines with their ends.
std::vector<std::string> linesOf(const std::string& text) {
  std::vector<std::string> lines;
  for (std::size_t at = 0; at < text.size();) {
    std::size_t end = std::min(text.find_first_of("\r\n", at), text.size());
    end += text.compare(end, 2, "\r\n") == 0 ? 2U : end < text.size() ? 1U : 0U;
    lines.push_back(text.substr(at, end - at));
    at = end;
  }
  return lines;
}

std::vector<std::string> wordsOf(const std::string& line) {
  std::vector<std::string> words;
  sdpneg::Words rest(line);
  for (std::string_view word = rest.next(); !word.empty(); word = rest.next()) words.emplace_back(word);
  return words;
}

/// Whether an m-line differs from another at most in formats that it lacks.
bool onlyLosesFormats(const std::string& before, const std::string& after) {
  const std::vector<std::string> all = wordsOf(before);
  const std::vector<std::string> left = wordsOf(after);
  if (left.size() < 3 || all.size() < 3 || !std::equal(all.begin(), all.begin() + 3, left.begin()))
    return false;
  std::size_t used = 3;
  for (std::size_t i = 3; i < all.size(); ++i) used += used < left.size() && all[i] == left[used] ? 1U : 0U;
  return used == left.size();
}

/// Whether only formats, rtpmap and fmtp lines of audio sections went.
bool onlyLosesCodecs(const std::string& before, const std::string& after) {
  const std::vector<std::string> left = linesOf(after);
  std::size_t used = 0;
  bool audioSection = false;
  for (const std::string& line : linesOf(before)) {
    if (line.rfind("m=", 0) == 0) audioSection = wordsOf(line)[0] == "m=audio";
    const bool same = used < left.size() && left[used] == line;
    if (same) {
      ++used;
    } else if (audioSection && line.rfind("m=", 0) == 0) {
      if (used == left.size() || !onlyLosesFormats(line, left[used])) return false;
      ++used;
    } else if (!audioSection || (line.rfind("a=rtpmap", 0) != 0 && line.rfind("a=fmtp", 0) != 0)) {
      return false;
    }
  }
  return used == left.size();
}

bool isAcceptedAudio(const std::string& body) {
  if (body.size() >= EditBuffer::capacity) return false;
  cSdpNegotiator object;
  return object.sdpParse(body.c_str(), SDP_TYPE_OFFER) == 0 &&
         (object.getParsedData().mediaType & MEDIA_AUDIO) != 0;
}

/// @return whether the body's description is complete
bool expectProperties(const std::string& body, const Codecs& codecs, const std::string& name) {
  const auto description = decoded(body);
  const bool complete = sdp_isComplete(description.get());
  unsigned char list[MAX_SDP_NEGOTIATOR_AUDIO_CODECS] = {};
  std::copy(codecs.begin(), codecs.end(), list);
  EditBuffer kept(body);
  EXPECT_EQ(sdpModifications::sdpRemoveCodecs(kept.data(), list), 0) << name;
  if (complete) {
    const std::string form = encoded(*description);
    kept.expect(rebuilt(*description, codecs, rebuildKept), name);
    EXPECT_TRUE(onlyLosesCodecs(form, kept.text())) << name;
    EditBuffer ordered(body);
    EXPECT_EQ(sdpModifications::sdpCodecsReordering(ordered.data(), list), 0) << name;
    ordered.expect(rebuilt(*decoded(body), codecs, rebuildOrdered), name);
  } else {
    EXPECT_TRUE(onlyLosesCodecs(body, kept.text())) << name << "\n" << kept.text();
  }
  const std::string once = kept.text();
  EXPECT_EQ(sdpModifications::sdpRemoveCodecs(kept.data(), list), 0) << name;
  kept.expect(once, name + ", a second time");
  return complete;
}

TEST(CodecListsCorpus, ARestrictionOfAnyBodyChangesNothingElse) {
  auto files = sdpFilesBelow(SDP_TEST_SOURCE_DIR "/parsers/sdp/test/bodies");
  if (const std::string folder = corpusFolder(); !folder.empty()) {
    const auto more = sdpFilesBelow(folder);
    files.insert(files.end(), more.begin(), more.end());
  }
  int complete = 0;
  int incomplete = 0;
  for (const auto& file : files) {
    const std::string body = readBytes(file).c_str();
    if (!isAcceptedAudio(body)) continue;
    for (const Codecs& codecs : {Codecs{1}, Codecs{38, 10, 3}, Codecs{35, 29, 5, 31}}) {
      ++(expectProperties(body, codecs, file.string()) ? complete : incomplete);
    }
  }
  EXPECT_GT(complete, 0);
  std::printf("%d restrictions of complete bodies, %d of incomplete ones\n", complete, incomplete);
}

}  // namespace
