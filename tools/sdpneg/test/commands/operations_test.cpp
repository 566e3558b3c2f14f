#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <regex>
#include <set>
#include <sstream>

#include "process.h"
#include "testFiles.h"

// Every operation of the library that changes a body can be asked for on the command line.

namespace {

using Names = std::set<std::string>;

/// Operations that stand behind commands.
const std::map<std::string, std::string> commands = {{"sdpUpdateAnswer", "update-answer"},
                                                     {"isSdpVersionIncreased", "version-increased"},
                                                     {"sdpModifyVersionAndMlines", "align"},
                                                     {"sdpParse", "inspect"},
                                                     {"uncompressObject", "unpack"}};

/// Operations that are not meant to be asked for.
const std::map<std::string, std::string> unasked = {
    {"empty", "makes an empty object"},
    {"initAudioCodecs", "empties a part of the summary"},
    {"initPacketizationPeriod", "empties a part of the summary"},
    {"initSdpDescriptor", "empties a part of the summary"},
    {"setRawSDP", "stores a text without a look at it"},
    {"setParsedData", "takes a summary, and parts of it into the text: `mode` and `silence` do that"}};

/// This group changes the summary alone, which ends with the next parse.
constexpr std::string_view summaryGroup = "Settings";

/// A header's text without comments other than the names of groups, in front of what is private.
std::string declarations(const std::string& header, const std::string& className) {
  const std::size_t begin = header.find(className + " {");
  EXPECT_NE(begin, std::string::npos);
  std::istringstream lines(header.substr(begin, header.find("\n private:", begin) - begin));
  std::string text;
  for (std::string line; std::getline(lines, line);) {
    const std::size_t comment = line.find("//");
    const std::size_t group = line.find("/// @name ");
    text += group != std::string::npos ? line.substr(group) + ";" : line.substr(0, comment);
    text += "\n";
  }
  return text;
}

/// The operations of a class that `wanted` accepts, by the group and the declaration.
Names operationsIn(const std::string& text,
                   bool (*wanted)(const std::string& group, const std::string& declaration)) {
  Names names;
  std::string group;
  std::istringstream pieces(text);
  for (std::string piece; std::getline(pieces, piece, ';');) {
    const std::size_t named = piece.find("/// @name ");
    if (named != std::string::npos) group = piece.substr(named + 10, piece.find(" (", named) - named - 10);
    std::smatch match;
    if (named != std::string::npos || !std::regex_search(piece, match, std::regex("(\\w+)\\("))) continue;
    if (wanted(group, piece)) names.insert(match[1]);
  }
  return names;
}

bool changesObject(const std::string& group, const std::string& declaration) {
  return group != summaryGroup && declaration.find("static ") == std::string::npos &&
         !std::regex_search(declaration, std::regex("\\)\\s*const\\s*$"));
}

bool isAny(const std::string& /*group*/, const std::string& /*declaration*/) { return true; }

Names requestOperations() {
  Names names;
  std::istringstream lines(runSdpneg({"requests", "--operations"}).out);
  for (std::string line; std::getline(lines, line);) {
    std::istringstream words(line);
    std::string word;
    words >> word;  // the request
    while (words >> word) names.insert(word);
  }
  return names;
}

/// The requests of the document layer, by their functions. `disableSections` is `disable` for several at once, which
/// the tool has as several requests.
Names documentFunctions() {
  const std::string header = readBytes(SDPNEG_DOCUMENT_HEADER);
  const std::regex function("\\nSDP_DOCUMENT_API Refusal (\\w+)\\(Document& document");
  Names names;
  for (auto found = std::sregex_iterator(header.begin(), header.end(), function);
       found != std::sregex_iterator(); ++found) {
    if ((*found)[1] != "perform" && (*found)[1] != "disableSections")
      names.insert("sdp::" + (*found)[1].str());
  }
  return names;
}

const std::string negotiator = declarations(readBytes(SDPNEG_NEGOTIATOR_HEADER), "cSdpNegotiator");
const std::string modifiers = declarations(readBytes(SDPNEG_MODIFIERS_HEADER), "sdpModifications");

TEST(Operations, ThatChangeABodyAreReached) {
  const Names changing = operationsIn(negotiator, changesObject);
  ASSERT_TRUE(changing.contains("sdpIncVersion"));  // the first and the last of the header
  ASSERT_TRUE(changing.contains("sdpLimitVideoMediaBandwidth"));
  ASSERT_FALSE(changing.contains("getSDP"));
  ASSERT_FALSE(changing.contains("setMediaPort"));
  const Names requests = requestOperations();
  for (const std::string& name : changing) {
    EXPECT_TRUE(requests.contains(name) || commands.contains(name) || unasked.contains(name))
        << name << " is reached by no request and no command";
  }
  const Names ofDocuments = documentFunctions();
  ASSERT_EQ(ofDocuments.size(), 12U);
  for (const std::string& name : ofDocuments) EXPECT_TRUE(requests.contains(name)) << name;
}

TEST(Operations, ThatAreNamedExist) {
  const Names own = operationsIn(negotiator, isAny);
  const Names edits = operationsIn(modifiers, isAny);
  const Names ofDocuments = documentFunctions();
  constexpr std::string_view prefix = "sdpModifications::";
  for (const std::string& name : requestOperations()) {
    const bool isEdit = name.starts_with(prefix);
    const bool isKnown = isEdit ? edits.contains(name.substr(prefix.size()))
                                : own.contains(name) || ofDocuments.contains(name);
    EXPECT_TRUE(isKnown) << name;
  }
  for (const auto& [name, command] : commands) {
    EXPECT_TRUE(own.contains(name)) << name;
    EXPECT_EQ(runSdpneg({command, "--help"}).status, 0) << command;
  }
  for (const auto& [name, reason] : unasked) EXPECT_TRUE(own.contains(name)) << name << ": " << reason;
}

TEST(Operations, AreListedForEveryRequest) {
  std::istringstream requests(runSdpneg({"requests"}).out);
  std::istringstream operations(runSdpneg({"requests", "--operations"}).out);
  std::string line;
  for (std::string request; std::getline(requests, request);) {
    ASSERT_TRUE(std::getline(operations, line)) << request;
    const std::string name = request.substr(0, request.find(' '));
    EXPECT_TRUE(line.starts_with(name + " ") && line.size() > name.size() + 1) << line;
  }
  EXPECT_FALSE(std::getline(operations, line)) << line;
}

}  // namespace
