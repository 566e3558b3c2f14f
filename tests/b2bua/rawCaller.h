#ifndef B2BUA_TEST_RAW_CALLER_H
#define B2BUA_TEST_RAW_CALLER_H

#include <string>

#include "processes.h"

/// A caller that sends any bytes as a body: sipp's scenarios name their bodies' files beforehand.
class RawCaller {
 public:
  /// @param engine  HOST:PORT, IPv4
  explicit RawCaller(const std::string& engine);
  ~RawCaller();
  RawCaller(const RawCaller&) = delete;
  RawCaller& operator=(const RawCaller&) = delete;

  /// Makes a call, and ends it if it was answered.
  /// @return the final status of the INVITE; 0 when there was none, -1 when the BYE got none
  int call(const std::string& body, milliseconds longest);

 private:
  std::string request(const std::string& method, const std::string& branch, const std::string& toTag,
                      const std::string& body) const;
  void send(const std::string& message) const;
  /// @return the final response to a request of this call; empty when there was none
  std::string finalResponse(const std::string& method, milliseconds longest) const;

  std::string engine_;
  std::string local_;
  int descriptor_ = -1;
  int number_ = 0;
};

#endif
