#ifndef OBJECT_TEST_SUPPORT_H
#define OBJECT_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>
#include <string>
#include <vector>

#include "sdpNegotiator.h"

// The sanitizers bring an allocator of their own and make everything slower.
#if defined(__SANITIZE_ADDRESS__) || defined(__SANITIZE_THREAD__)
#define SDP_TEST_SANITIZED 1
#elif defined(__has_feature)
#if __has_feature(address_sanitizer) || __has_feature(thread_sanitizer)
#define SDP_TEST_SANITIZED 1
#endif
#endif

/// The bytes of an object, as they travel.
struct Record {
  sSdpParsedData data;
  char raw[SDP_STORED_TEXT_SIZE];

  /// The record of an object that was reset.
  Record() : raw{} { data.init(); }
  explicit Record(const cSdpNegotiator& object) { *this = std::bit_cast<Record>(object); }

  Record& text(const std::string& plain) {
    EXPECT_LE(plain.size(), sizeof raw);
    plain.copy(raw, sizeof raw);
    return *this;
  }
  cSdpNegotiator object() const { return std::bit_cast<cSdpNegotiator>(*this); }
};

inline bool sameBytes(const cSdpNegotiator& a, const cSdpNegotiator& b) {
  return std::memcmp(&a, &b, sizeof a) == 0;
}

inline cSdpNegotiator emptyObject() { return Record().object(); }

/// An object that was given a text without a parse.
inline cSdpNegotiator objectWithText(const std::string& text) {
  cSdpNegotiator object = emptyObject();
  EXPECT_EQ(object.setRawSDP(text.c_str()), 0);
  return object;
}

inline cSdpNegotiator parsedObject(const std::string& body) {
  cSdpNegotiator object;
  EXPECT_EQ(object.sdpParse(body.c_str(), SDP_TYPE_OFFER), 0) << body;
  return object;
}

inline std::string textOf(const cSdpNegotiator& object) {
  std::vector<char> buffer(MAX_SDP_PROTOCOL_DATA_SIZE + 1, '\x7e');
  EXPECT_EQ(object.getRawSDP(buffer.data(), static_cast<unsigned int>(buffer.size())), 0);
  return buffer.data();
}

inline std::string sessionLines(const std::string& address = "192.0.2.1") {
  return "v=0\r\no=alice 1 1 IN IP4 192.0.2.9\r\ns=-\r\nc=IN " + std::string("IP4 ") + address +
         "\r\nt=0 0\r\n";
}

inline std::string audioBody() { return sessionLines() + "m=audio 5004 RTP/AVP 0 8\r\n"; }

/// The body with attribute lines behind it, in all `length` characters.
inline std::string paddedTo(std::size_t length, std::string body = audioBody()) {
  const std::string prefix = "a=note:";
  constexpr std::size_t longest = 300;
  constexpr std::size_t shortest = 12;
  while (body.size() < length) {
    std::size_t line = std::min(length - body.size(), longest);
    if (const std::size_t rest = length - body.size() - line; rest != 0 && rest < shortest) line -= shortest;
    EXPECT_GE(line, prefix.size() + 2);
    body += prefix + std::string(line - prefix.size() - 2, 'p') + "\r\n";
  }
  EXPECT_EQ(body.size(), length);
  return body;
}

/// A body of some `length` characters whose attribute values hold nothing that repeats.
inline std::string incompressibleBody(std::size_t length) {
  std::string body = audioBody();
  std::uint64_t state = 1;
  while (body.size() < length) {
    body += "a=note:";
    for (int i = 0; i < 300; ++i) {
      state = state * 6364136223846793005U + 1442695040888963407U;
      body += "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789+/"[state >> 58U];
    }
    body += "\r\n";
  }
  return body;
}

/// An object whose deflated text is damaged.
inline cSdpNegotiator damagedObject() {
  Record damaged(parsedObject(paddedTo(3000)));
  damaged.raw[20] = static_cast<char>(damaged.raw[20] ^ 0x55);
  return damaged.object();
}

#endif
