#ifndef CODEC_TEST_SUPPORT_H
#define CODEC_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "sessionDescription.h"

/// A body decoded from an exactly sized buffer, so that the sanitizers see a read behind its NUL.
struct Decoded {
  std::unique_ptr<sDescription> description = std::make_unique_for_overwrite<sDescription>();
  unsigned short status = 99;
  unsigned short oLineStart = 99;
  unsigned short oLineEnd = 99;
  std::string error;

  explicit Decoded(const std::string& text) {
    // What earlier use left in a record must not show.
    std::memset(static_cast<void*>(description.get()), 0xA5, sizeof(sDescription));
    const auto exact = std::make_unique<char[]>(text.size() + 1);
    std::memcpy(exact.get(), text.c_str(), text.size() + 1);
    char message[SDP_ERROR_TEXT_SIZE];
    status =
        sdp_decodeOpt_r(description.get(), exact.get(), SDP_TYPE_OFFER, message, false, oLineStart, oLineEnd);
    error = message;
  }

  const sDescription& operator*() const { return *description; }
  const sDescription* operator->() const { return description.get(); }
  sDescription* get() const { return description.get(); }
  bool complete() const { return sdp_isComplete(description.get()); }
};

inline std::string encoded(const sDescription& description) {
  char* text = nullptr;
  int length = -1;
  int size = -1;
  EXPECT_EQ(sdp_encode_r(&description, SDP_TYPE_OFFER, text, length, size), 0);
  if (text == nullptr) return "(nothing)";
  EXPECT_EQ(std::strlen(text), static_cast<std::size_t>(length));
  EXPECT_GT(size, length);
  std::string result(text);
  std::free(text);
  return result;
}

inline const std::string kHead = "v=0\r\no=- 1 1 IN IP4 192.0.2.1\r\ns=-\r\n";

#endif
