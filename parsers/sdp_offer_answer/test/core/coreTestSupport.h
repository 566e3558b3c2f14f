#ifndef CORE_TEST_SUPPORT_H
#define CORE_TEST_SUPPORT_H

#include <gtest/gtest.h>

#include <string>
#include <string_view>

#include "sdpDocument.h"

namespace coreTest {

/// A document of lines with `|` for their ends.
inline sdp::Document documentOf(std::string_view text) {
  std::string lines;
  for (const char c : text) lines += c == '|' ? '\n' : c;
  sdp::Document document;
  EXPECT_FALSE(document.read(lines));
  return document;
}

}  // namespace coreTest

#endif
