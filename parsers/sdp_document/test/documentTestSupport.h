#ifndef DOCUMENT_TEST_SUPPORT_H
#define DOCUMENT_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <initializer_list>
#include <string>
#include <string_view>
#include <vector>

#include "sdpDocumentRequests.h"

// Bodies in tables are written with `|` for the end of a line, so that each case is read with LF and with CR LF.

namespace documentTest {

/// Four lines, so that what stands behind them begins with line 5.
inline constexpr std::string_view kHead = "v=0|o=- 1 1 IN IP4 192.0.2.1|s=-|t=0 0|";

inline std::string withEnds(std::string_view text, std::string_view end) {
  std::string result;
  for (const char c : text) c == '|' ? result.append(end) : result.append(1, c);
  return result;
}

/// The words of a request, which blanks separate.
inline std::vector<std::string_view> wordsOf(std::string_view request) {
  std::vector<std::string_view> words;
  while (!request.empty()) {
    const std::size_t blank = request.find(' ');
    words.push_back(request.substr(0, blank));
    request.remove_prefix(blank == std::string_view::npos ? request.size() : blank + 1);
  }
  return words;
}

inline sdp::Document documentOf(std::string_view text) {
  sdp::Document document;
  EXPECT_FALSE(document.read(text));
  EXPECT_EQ(document.text(), text);
  return document;
}

/// A document of the head and what is given, with LF.
inline sdp::Document documentBehindHead(std::string_view text) {
  return documentOf(withEnds(std::string(kHead).append(text), "\n"));
}

inline void expectRefusal(const sdp::Refusal& refusal, sdp::Reason reason, std::uint32_t section,
                          std::size_t line) {
  EXPECT_EQ(textOf(refusal.reason), textOf(reason));
  EXPECT_EQ(refusal.section, section);
  EXPECT_EQ(refusal.line, line);
}

/// A request that is done. Both texts stand behind the head.
struct Done {
  const char* what;
  const char* request;
  const char* before;
  const char* after;
};

inline void expectDone(std::initializer_list<Done> cases) {
  for (const Done& c : cases) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      SCOPED_TRACE(std::string(c.what) + ": " + c.request + (end.size() == 1 ? ", LF" : ", CR LF"));
      const std::string head = withEnds(kHead, end);
      sdp::Document document = documentOf(head + withEnds(c.before, end));
      EXPECT_FALSE(perform(document, wordsOf(c.request)));
      EXPECT_EQ(document.text(), head + withEnds(c.after, end));
      EXPECT_EQ(document.explanation(), "");
    }
  }
}

/// A request that changes nothing, and is no failure.
struct Unchanged {
  const char* what;
  const char* request;
  const char* text;
};

inline void expectUnchanged(std::initializer_list<Unchanged> cases) {
  for (const Unchanged& c : cases) expectDone({{c.what, c.request, c.text, c.text}});
}

/// A request that is refused.
struct Refused {
  const char* what;
  const char* request;
  const char* text;  ///< behind the head
  sdp::Reason reason;
  std::uint32_t section;
  std::size_t line;
  const char* explanation;
};

inline void expectRefused(std::initializer_list<Refused> cases) {
  for (const Refused& c : cases) {
    for (const std::string_view end : {"\n", "\r\n"}) {
      SCOPED_TRACE(std::string(c.what) + ": " + c.request + (end.size() == 1 ? ", LF" : ", CR LF"));
      const std::string text = withEnds(std::string(kHead).append(c.text), end);
      sdp::Document document = documentOf(text);
      expectRefusal(perform(document, wordsOf(c.request)), c.reason, c.section, c.line);
      EXPECT_EQ(document.text(), text);
      EXPECT_EQ(document.explanation(), c.explanation);
    }
  }
}

}  // namespace documentTest

#endif
