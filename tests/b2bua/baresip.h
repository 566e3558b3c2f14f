#ifndef B2BUA_TEST_BARESIP_H
#define B2BUA_TEST_BARESIP_H

#include <string>
#include <vector>

#include "calls.h"

/// A baresip that answers by itself.
class Baresip {
 public:
  struct Setup {
    std::string account = "audio_codecs=PCMU/8000/1,PCMA/8000/1";  ///< parameters of its account
    std::vector<std::string> modules = {};                         ///< besides the ones that it needs
    std::string source = "aubridge,nothing";                       ///< what it says; nothing by default
  };

  /// @param dial  what it calls as soon as it runs; nothing when empty
  Baresip(const TemporaryFolder& folder, const std::string& user, const std::string& dial,
          const Setup& setup);

  const std::string& port() const { return port_; }
  Process& process() { return process_; }
  bool says(const std::string& text) const { return process_.output().find(text) != std::string::npos; }
  /// Does what one would type at its console, such as "hold".
  void command(const std::string& text) const;

  /// The body of a message in its trace of what it sends and gets; empty without one.
  /// @param start  first line, and what stands before it
  std::string body(const std::string& start) const;

 private:
  std::vector<std::string> prepare(const TemporaryFolder& folder, const std::string& user,
                                   const std::string& dial, const Setup& setup) const;

  std::string port_;
  std::string console_;  ///< port
  Process process_;
};

#endif
